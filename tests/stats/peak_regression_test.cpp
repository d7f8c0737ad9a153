// Peak search and refinement; straight-line fit with its statistics.
#include "support/alloc_hooks.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>
#include <vector>

using dsp_test::Record;
using V = std::vector<double>;

namespace {
const long double kPiL = 3.141592653589793238462643383279L;

V peak(const V &x, int32_t flags, int32_t index = 0, bool complex_flag = false)
{
    Record s(x, complex_flag), r;
    EXPECT_EQ(dsps_peak(s.get(), r.get(), flags, index), 0);
    EXPECT_EQ(r->complex, 0);
    return r.values();
}

// Spectrum of a Hann-windowed cosine of amplitude 1 at bin k0 + offset,
// N = 256, by a long double DFT over bins 0..40 (interleaved re, im).
V hann_tone_spectrum(double offset)
{
    const int n = 256;
    std::vector<long double> x(n);
    for (int i = 0; i < n; ++i) {
        const long double w = 0.5L - 0.5L * std::cos(2 * kPiL * i / n);
        x[i] = w * std::cos(2 * kPiL * (20 + offset) * i / n + 0.7L);
    }
    V spectrum;
    for (int k = 0; k <= 40; ++k) {
        long double re = 0, im = 0;
        for (int i = 0; i < n; ++i) {
            re += x[i] * std::cos(2 * kPiL * k * i / n);
            im -= x[i] * std::sin(2 * kPiL * k * i / n);
        }
        spectrum.insert(spectrum.end(), {static_cast<double>(re), static_cast<double>(im)});
    }
    return spectrum;
}
}  // namespace

TEST(StatsPeak, SearchIndexAndPlainRefinement)
{
    EXPECT_EQ(peak({1, 5, 3, 5, 2}, DSP_PEAK_MAX), (V{5, 1}));  // the first extreme wins
    EXPECT_EQ(peak({1, -5, 3, -5, 2}, DSP_PEAK_MIN), (V{-5, 1}));
    EXPECT_EQ(peak({1, 5, 3}, DSP_PEAK_AT_INDEX, 2), (V{3, 2}));
    EXPECT_EQ(peak({1, 5, 3}, DSP_PEAK_AT_INDEX, -4), (V{1, 0}));
    EXPECT_EQ(peak({1, 5, 3}, DSP_PEAK_AT_INDEX, 3), (V{3, 2}));
    EXPECT_EQ(peak({3, 4, 0, 6, 1, 1}, DSP_PEAK_MAX, 0, true), (V{36, 1}));  // squared magnitude
    EXPECT_EQ(peak({3, 4, 1e101, 0, 1, 1}, DSP_PEAK_MAX, 0, true), (V{1e100, 1}));
    EXPECT_EQ(peak({3e100, 2e100}, DSP_PEAK_MIN), (V{3e100, 0}));  // none below 1e100
    EXPECT_EQ(peak({}, DSP_PEAK_PARABOLIC), (V{0, 0}));

    Record s({1, 2, 3}), r({7});
    EXPECT_EQ(dsps_peak(s.get(), r.get(), 0x400, 0), -1);
    EXPECT_EQ(dsps_peak(s.get(), r.get(), 0x700, 0), -1);
    ASSERT_EQ(dsps_peak(s.get(), s.get(), DSP_PEAK_MAX, 0), 0);  // the source as the result
    EXPECT_EQ(s.values(), (V{3, 2}));
}

TEST(StatsPeak, ParabolicAndGaussianVerticesAreExactOnTheirShapes)
{
    V parabola, gaussian;
    for (int i = 0; i < 8; ++i) {
        parabola.push_back(5.0 - (i - 2.3) * (i - 2.3));
        gaussian.push_back(3.0 * std::exp(-0.7 * (i - 4.6) * (i - 4.6)));
    }
    V p = peak(parabola, DSP_PEAK_PARABOLIC);
    EXPECT_NEAR(p[0], 5.0, 1e-14);
    EXPECT_NEAR(p[1], 2.3, 1e-14);
    V g = peak(gaussian, DSP_PEAK_GAUSSIAN);
    EXPECT_NEAR(g[0], 3.0, 1e-14);
    EXPECT_NEAR(g[1], 4.6, 1e-14);
    // A parabola through a Gaussian's samples misses; a log-parabola does not.
    EXPECT_GT(std::fabs(peak(gaussian, DSP_PEAK_PARABOLIC)[0] - 3.0), 1e-3);
    // Minimum search with the parabola finds the vertex of a dip:
    // 4 - 5x + 2x^2 through (0, 4), (1, 1), (2, 2) bottoms out at (1.25, 0.875).
    EXPECT_EQ(peak({4, 1, 2, 5}, DSP_PEAK_MIN | DSP_PEAK_PARABOLIC), (V{0.875, 1.25}));
}

TEST(StatsPeak, LogarithmicRefinementsFallBackWhereTheyCannotApply)
{
    for (int32_t refine : {DSP_PEAK_GAUSSIAN, DSP_PEAK_HANN_RATIO}) {
        EXPECT_EQ(peak({9, 3, 1}, refine), (V{9, 0})) << refine;                           // first point
        EXPECT_EQ(peak({1, 3, 9}, refine), (V{9, 2})) << refine;                           // last point
        EXPECT_EQ(peak({0, 9, 3}, refine), (V{9, 1})) << refine;                           // log of 0
        EXPECT_EQ(peak({-1, 9, 3}, refine), (V{9, 1})) << refine;                          // negative
        EXPECT_EQ(peak({4, 1, 2}, DSP_PEAK_MIN | refine), (V{1, 1})) << refine;            // a dip
        EXPECT_EQ(peak({1, 2, 5, 4}, DSP_PEAK_AT_INDEX | refine, 1), (V{2, 1})) << refine;  // not a peak
    }
    EXPECT_EQ(peak({2, 2, 2}, DSP_PEAK_AT_INDEX | DSP_PEAK_GAUSSIAN, 1), (V{2, 1}));  // flat: no curvature
    EXPECT_EQ(peak({2, 2, 2}, DSP_PEAK_AT_INDEX | DSP_PEAK_HANN_RATIO, 1), (V{2, 1}));
    // The ratio refinement never moves more than half a bin.
    EXPECT_EQ(peak({1e-30, 5, 4.9}, DSP_PEAK_HANN_RATIO)[1], 1.5);
}

// A Hann-windowed tone between bins: the refinements recover its frequency
// and amplitude (N/4 for a unit cosine) far better than the bin itself.
TEST(StatsPeak, RefinementsRecoverAToneBetweenBins)
{
    const double amplitude = 256 / 4.0;
    for (double offset : {0.0, 0.1, 0.25, 0.4, 0.5, -0.3}) {
        const V spectrum = hann_tone_spectrum(offset);
        V magnitudes;
        for (std::size_t k = 0; k < spectrum.size() / 2; ++k)
            magnitudes.push_back(std::hypot(spectrum[2 * k], spectrum[2 * k + 1]));
        const double freq = 20 + offset;
        const V plain = peak(magnitudes, DSP_PEAK_MAX);
        const V gauss = peak(magnitudes, DSP_PEAK_GAUSSIAN);
        const V ratio = peak(magnitudes, DSP_PEAK_HANN_RATIO);
        const V ratio_power = peak(spectrum, DSP_PEAK_HANN_RATIO, 0, true);
        const V gauss_power = peak(spectrum, DSP_PEAK_GAUSSIAN, 0, true);
        EXPECT_LT(std::fabs(gauss[1] - freq), 0.02) << offset;
        EXPECT_LT(std::fabs(gauss[0] / amplitude - 1), 0.04) << offset;
        EXPECT_LT(std::fabs(ratio[1] - freq), 0.011) << offset;
        EXPECT_LT(std::fabs(ratio[0] / amplitude - 1), 0.007) << offset;
        // Squared magnitudes: the same position, the height in power.
        EXPECT_NEAR(ratio_power[1], ratio[1], 1e-12) << offset;
        EXPECT_NEAR(ratio_power[0] / (amplitude * amplitude), (ratio[0] / amplitude) * (ratio[0] / amplitude), 1e-12);
        EXPECT_NEAR(gauss_power[1], gauss[1], 1e-12) << offset;
        if (std::fabs(offset) >= 0.25) {
            EXPECT_LT(std::fabs(ratio[1] - freq), std::fabs(plain[1] - freq) / 20) << offset;
            EXPECT_LT(std::fabs(ratio[0] - amplitude), std::fabs(plain[0] - amplitude) / 10) << offset;
        }
    }
}

TEST(StatsRegression, FitOfALineAndOfNoisyData)
{
    V line;
    for (int k = 0; k < 10; ++k) line.push_back(2.0 + 0.5 * (k * 0.25));
    Record s(line, false, 0.25), r;
    ASSERT_EQ(dsps_lin_regres2(s.get(), r.get()), 0);
    V f = r.values();
    ASSERT_EQ(f.size(), 20u);
    EXPECT_NEAR(f[0], 2.0, 1e-14);
    EXPECT_NEAR(f[1], 0.5, 1e-14);
    EXPECT_NEAR(f[2], 1.0, 1e-14);
    EXPECT_NEAR(f[3], 1.0, 1e-14);
    for (int slot : {4, 5, 6, 7, 8, 10, 12, 13}) EXPECT_NEAR(f[slot], 0.0, 1e-14) << slot;
    EXPECT_NEAR(f[14], 0.125 * 0.125 * 82.5, 1e-13);  // (0.5 * 0.25)^2 * sum of (k - 4.5)^2
    EXPECT_EQ(f[16], 1.125);
    EXPECT_EQ(f[17], 2.5625);
    EXPECT_EQ(f[18], 10.0);
    EXPECT_EQ(f[19], 8.0);
    ASSERT_EQ(dsps_lin_regres(s.get(), r.get()), 0);
    EXPECT_EQ(r.values(), V(f.begin(), f.begin() + 2));

    // Noisy data against the normal equations in long double.
    std::mt19937 gen(12);
    std::normal_distribution<double> noise(0.0, 0.3);
    const std::size_t n = 5000;
    const double delta = 0.01;
    V y(n);
    for (std::size_t k = 0; k < n; ++k) y[k] = 100.0 - 3.0 * (k * delta) + noise(gen);
    long double sx = 0, sy = 0, sxx = 0, sxy = 0, syy = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const long double x = static_cast<long double>(k) * delta;
        sx += x, sy += y[k], sxx += x * x, sxy += x * y[k], syy += static_cast<long double>(y[k]) * y[k];
    }
    const long double cxx = sxx - sx * sx / n, cxy = sxy - sx * sy / n, cyy = syy - sy * sy / n;
    const long double b1 = cxy / cxx, b0 = (sy - b1 * sx) / n;
    long double sse = 0, hi = -1e30L, lo = 1e30L;
    std::size_t hi_at = 0, lo_at = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const long double e = y[k] - (b0 + b1 * (static_cast<long double>(k) * delta));
        sse += e * e;
        if (e > hi) hi = e, hi_at = k;
        if (e < lo) lo = e, lo_at = k;
    }
    const long double s2 = sse / (n - 2);
    Record noisy(y, false, delta);
    ASSERT_EQ(dsps_lin_regres2(noisy.get(), r.get()), 0);
    f = r.values();
    const double want[20] = {static_cast<double>(b0),
                             static_cast<double>(b1),
                             static_cast<double>(cxy / std::sqrt(cxx * cyy)),
                             static_cast<double>(1 - sse / cyy),
                             static_cast<double>(std::sqrt(s2 * (1.0L / n + (sx / n) * (sx / n) / cxx))),
                             static_cast<double>(std::sqrt(s2 / cxx)),
                             static_cast<double>(std::sqrt(s2)),
                             static_cast<double>(std::sqrt(sse / n)),
                             static_cast<double>(hi),
                             hi_at * delta,
                             static_cast<double>(lo),
                             lo_at * delta,
                             static_cast<double>(hi - lo),
                             static_cast<double>(sse),
                             static_cast<double>(cyy),
                             static_cast<double>((cyy - sse) / s2),
                             static_cast<double>(sx / n),
                             static_cast<double>(sy / n),
                             5000.0,
                             4998.0};
    for (int slot = 0; slot < 20; ++slot) {
        EXPECT_NEAR(f[slot], want[slot], 1e-9 * std::max(1.0, std::fabs(want[slot]))) << slot;
    }
}

TEST(StatsRegression, DegenerateRecords)
{
    Record one({4.5}), r;
    ASSERT_EQ(dsps_lin_regres2(one.get(), r.get()), 0);
    V want(20, 0.0);
    want[0] = 4.5;
    want[17] = 4.5;
    want[18] = 1;
    EXPECT_EQ(r.values(), want);

    Record flat({2, 2, 2, 2}), f;  // no spread: correlation and determination 0
    ASSERT_EQ(dsps_lin_regres2(flat.get(), f.get()), 0);
    EXPECT_EQ(f.values()[0], 2.0);
    EXPECT_EQ(f.values()[1], 0.0);
    EXPECT_EQ(f.values()[2], 0.0);
    EXPECT_EQ(f.values()[3], 0.0);
    EXPECT_EQ(f.values()[15], 0.0);

    Record empty, e;
    ASSERT_EQ(dsps_lin_regres2(empty.get(), e.get()), 0);
    EXPECT_EQ(e.values(), V(20, 0.0));

    Record c({1, 2, 3, 4}, true), out({8});
    EXPECT_EQ(dsps_lin_regres(c.get(), out.get()), -1);
    EXPECT_EQ(dsps_lin_regres2(c.get(), out.get()), -1);
    EXPECT_EQ(out.values(), (V{8}));

    dsp_test::ScopedAllocHooks hooks;
    const int failures = dsp_test::for_each_failing_growth(hooks, [&](int k) {
        hooks.never_fail();
        Record s({1, 3, 2}), res;
        hooks.fail_from(k);
        const int32_t status = dsps_lin_regres2(s.get(), res.get());
        hooks.never_fail();
        EXPECT_EQ(s.values(), (V{1, 3, 2}));
        return status == 0;
    });
    EXPECT_EQ(failures, 1);
}
