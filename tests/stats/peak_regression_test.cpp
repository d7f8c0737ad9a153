// Peak search and refinement; straight-line fit with its statistics.
#include "support/dft_oracle.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using dsp_test::Record;
using V = std::vector<double>;

namespace {
V peak(const V &x, int32_t flags, int32_t index = 0, bool complex_flag = false)
{
    Record s(x, complex_flag), r;
    EXPECT_EQ(dsps_peak(s.get(), r.get(), flags, index), 0);
    EXPECT_EQ(r->complex, 0);
    return r.values();
}

// Spectrum of a Hann-windowed cosine of amplitude 1 at bin 20 + offset,
// N = 256, by the direct sum over bins 0..40 (interleaved re, im).
V hann_tone_spectrum(double offset)
{
    const int n = 256;
    const long double pi = 3.141592653589793238462643383279L;
    std::vector<dsp_test::LComplex> x(n);
    for (int i = 0; i < n; ++i)
        x[i] = (0.5L - 0.5L * std::cos(2 * pi * i / n)) * std::cos(2 * pi * (20 + offset) * i / n + 0.7L);
    V spectrum;
    for (const dsp_test::LComplex &z : dsp_test::naive_dft(x, -1, 1.0L, 41))
        spectrum.insert(spectrum.end(), {static_cast<double>(z.real()), static_cast<double>(z.imag())});
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
    // The search ranks a part beyond 1e100 as squared magnitude 1e100; the
    // height reported is the point's own squared magnitude.
    EXPECT_EQ(peak({3, 4, 1e101, 0, 1, 1}, DSP_PEAK_MAX, 0, true), (V{1e101 * 1e101, 1}));
    EXPECT_EQ(peak({1e101, 0, 1e100, 1e100}, DSP_PEAK_MAX, 0, true), (V{2e200, 1}));  // 1e202 ranks as 1e100
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
    const V p = peak(parabola, DSP_PEAK_PARABOLIC), g = peak(gaussian, DSP_PEAK_GAUSSIAN);
    EXPECT_NEAR(p[0], 5.0, 1e-14);
    EXPECT_NEAR(p[1], 2.3, 1e-14);
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
    const double inf = std::numeric_limits<double>::infinity();
    for (int32_t refine : {DSP_PEAK_GAUSSIAN, DSP_PEAK_HANN_RATIO}) {
        SCOPED_TRACE(refine);
        EXPECT_EQ(peak({9, 3, 1}, refine), (V{9, 0}));                             // first point
        EXPECT_EQ(peak({1, 3, 9}, refine), (V{9, 2}));                             // last point
        EXPECT_EQ(peak({0, 9, 3}, refine), (V{9, 1}));                             // log of 0
        EXPECT_EQ(peak({-1, 9, 3}, refine), (V{9, 1}));                            // negative
        EXPECT_EQ(peak({4, 1, 2}, DSP_PEAK_MIN | refine), (V{1, 1}));              // a dip
        EXPECT_EQ(peak({1, 2, 5, 4}, DSP_PEAK_AT_INDEX | refine, 1), (V{2, 1}));    // not a peak
        EXPECT_EQ(peak({2, 2, 2}, DSP_PEAK_AT_INDEX | refine, 1), (V{2, 1}));       // flat: no curvature
        // Squared magnitudes that overflow have no usable logarithm.
        EXPECT_EQ(peak({1e200, 0, 2e200, 0, 1e200, 0}, DSP_PEAK_AT_INDEX | refine, 1, true), (V{inf, 1}));
    }
    // The ratio refinement never moves more than half a bin.
    EXPECT_EQ(peak({1e-30, 5, 4.9}, DSP_PEAK_HANN_RATIO)[1], 1.5);
}

// A Hann-windowed tone between bins: the refinements recover its frequency
// and amplitude (N/4 for a unit cosine) far better than the bin itself.
TEST(StatsPeak, RefinementsRecoverAToneBetweenBins)
{
    const double amplitude = 256 / 4.0;
    for (double offset : {0.0, 0.1, 0.25, 0.4, 0.5, -0.3}) {
        SCOPED_TRACE(offset);
        const V spectrum = hann_tone_spectrum(offset);
        V magnitudes;
        for (std::size_t k = 0; k < spectrum.size() / 2; ++k)
            magnitudes.push_back(std::hypot(spectrum[2 * k], spectrum[2 * k + 1]));
        const double freq = 20 + offset;
        const V gauss = peak(magnitudes, DSP_PEAK_GAUSSIAN), ratio = peak(magnitudes, DSP_PEAK_HANN_RATIO);
        EXPECT_LT(std::fabs(gauss[1] - freq), 0.02);
        EXPECT_LT(std::fabs(gauss[0] / amplitude - 1), 0.04);
        EXPECT_LT(std::fabs(ratio[1] - freq), 0.011);  // the bin itself is off by up to 0.5
        EXPECT_LT(std::fabs(ratio[0] / amplitude - 1), 0.007);
        // Squared magnitudes: the same position, the height in power.
        const V ratio_power = peak(spectrum, DSP_PEAK_HANN_RATIO, 0, true);
        EXPECT_NEAR(ratio_power[1], ratio[1], 1e-12);
        EXPECT_NEAR(ratio_power[0] / (amplitude * amplitude), (ratio[0] / amplitude) * (ratio[0] / amplitude), 1e-12);
        EXPECT_NEAR(peak(spectrum, DSP_PEAK_GAUSSIAN, 0, true)[1], gauss[1], 1e-12);
    }
}

TEST(StatsRegression, FitOfNoisyDataAgainstTheNormalEquations)
{
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
    const long double want[20] = {b0, b1, cxy / std::sqrt(cxx * cyy), 1 - sse / cyy,
                                  std::sqrt(s2 * (1.0L / n + (sx / n) * (sx / n) / cxx)), std::sqrt(s2 / cxx),
                                  std::sqrt(s2), std::sqrt(sse / n), hi, hi_at * delta, lo, lo_at * delta, hi - lo,
                                  sse, cyy, (cyy - sse) / s2, sx / n, sy / n, n, n - 2};
    Record noisy(y, false, delta), r;
    ASSERT_EQ(dsps_lin_regres2(noisy.get(), r.get()), 0);
    const V f = r.values();
    ASSERT_EQ(f.size(), 20u);
    for (int slot = 0; slot < 20; ++slot) {
        const double w = static_cast<double>(want[slot]);
        EXPECT_NEAR(f[slot], w, 1e-9 * std::max(1.0, std::fabs(w))) << slot;
    }
    ASSERT_EQ(dsps_lin_regres(noisy.get(), r.get()), 0);
    EXPECT_EQ(r.values(), V(f.begin(), f.begin() + 2));
}

TEST(StatsRegression, DegenerateRecords)
{
    Record one({4.5}), r;
    ASSERT_EQ(dsps_lin_regres2(one.get(), r.get()), 0);
    V want(20, 0.0);
    want[0] = want[17] = 4.5;
    want[18] = 1;
    EXPECT_EQ(r.values(), want);
    // No spread: slope, correlation, determination and F are 0.
    Record flat({2, 2, 2, 2});
    ASSERT_EQ(dsps_lin_regres2(flat.get(), r.get()), 0);
    const V f = r.values();
    EXPECT_EQ((V{f[0], f[1], f[2], f[3], f[15]}), (V{2, 0, 0, 0, 0}));
    Record empty;
    ASSERT_EQ(dsps_lin_regres2(empty.get(), r.get()), 0);
    EXPECT_EQ(r.values(), V(20, 0.0));
}
