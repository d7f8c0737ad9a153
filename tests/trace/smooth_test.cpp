// Trace smoothing against per-point averages computed directly in the test.
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

const long double kPiL = std::acos(-1.0L);
constexpr double kUnwritten = -777.0;

int32_t half_width(int32_t i, int32_t n, int32_t aperture) { return std::min({i, n - 1 - i, aperture / 2}); }

// The mean of term(j) over the span of point i, in long double.
template <typename Term>
long double direct_mean(int32_t i, int32_t n, int32_t aperture, Term term)
{
    const int32_t h = half_width(i, n, aperture);
    long double sum = 0;
    for (int32_t j = i - h; j <= i + h; ++j) sum += term(j);
    return sum / (2 * h + 1);
}

std::vector<double> noisy_trace(int32_t n, unsigned seed)
{
    std::mt19937 rng(seed);
    std::normal_distribution<double> noise(0.0, 0.3);
    std::vector<double> v(n);
    for (int32_t i = 0; i < n; ++i) v[i] = -20.0 + 5.0 * std::sin(0.1 * i) + noise(rng);
    return v;
}

}  // namespace

TEST(TraceSmooth, ArgumentChecksInOrder)
{
    const std::vector<double> src(10, 1.0);
    std::vector<double> dst(10, kUnwritten);
    // {start, stop, aperture, result}: start = stop comes first, before any
    // other check; then the range (last = stop - 1 for stop >= 1), then the
    // aperture, which must be odd and at least 3.
    const int32_t cases[][4] = {{4, 4, 2, 0},   {-3, -3, 1, 0},  {7, 7, 0, 0},   {-1, 5, 3, -1}, {6, 5, 3, -1},
                                {1, 0, 3, -1},  {0, -2, 3, -1},  {0, 5, -3, -1}, {0, 5, 0, -1},  {0, 5, 1, -1},
                                {0, 5, 2, -1},  {0, 5, 4, -1},   {0, 5, 10, -1}};
    for (const auto &c : cases) {
        EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, c[0], c[1], c[2], 0), c[3]) << c[0] << " " << c[1] << " " << c[2];
        EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, c[0], c[1], c[2], 1), c[3]);
        EXPECT_EQ(vfpd_SmoothCpx(src.data(), dst.data(), 5, c[0], c[1], c[2]), c[3]);
    }
    EXPECT_EQ(dst, std::vector<double>(10, kUnwritten));
}

TEST(TraceSmooth, MatchesDirectAveragesAndStopsWithTheRange)
{
    for (int32_t aperture : {3, 5, 31}) {
        for (int32_t n : {1, 2, 7, 1000}) {
            const std::vector<double> src = noisy_trace(n, aperture * 1000 + n);
            std::vector<double> dst(n + 1, kUnwritten);
            ASSERT_EQ(vfpd_Smooth(src.data(), dst.data(), n, 0, n, aperture, 0), n);
            for (int32_t i = 0; i < n; ++i)
                ASSERT_NEAR(dst[i], static_cast<double>(direct_mean(i, n, aperture, [&](int32_t j) { return src[j]; })), 1e-12)
                    << "n=" << n << " i=" << i;
            EXPECT_EQ(dst[0], src[0]);  // the ends are spans of width 1
            EXPECT_EQ(dst[n - 1], src[n - 1]);
            EXPECT_EQ(dst[n], kUnwritten);
        }
    }
    std::vector<double> out(5);
    // While the width stays, the sum slides (minus the point leaving, plus
    // the one entering) and keeps its rounding: 2^53 + 1 rounds to 2^53, so
    // the sum reads 0 once 2^53 has left and -1 once the 1 has left too.
    const std::vector<double> drift = {0x1p53, 1, 0, 0, 0};
    ASSERT_EQ(vfpd_Smooth(drift.data(), out.data(), 5, 0, 5, 3, 0), 5);
    EXPECT_EQ(out, (std::vector<double>{0x1p53, 0x1p53 / 3, 0.0, -1.0 / 3, 0.0}));

    // [12, 30) with aperture 7 in 40 points: point i needs i + 3 <= 29, so
    // 12 .. 26 are written and the count is 15.
    const std::vector<double> src = noisy_trace(40, 9);
    std::vector<double> dst(40, kUnwritten);
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 40, 12, 30, 7, 0), 15);
    for (int32_t i = 0; i < 40; ++i) {
        if (i >= 12 && i <= 26)
            EXPECT_NEAR(dst[i], static_cast<double>(direct_mean(i, 40, 7, [&](int32_t j) { return src[j]; })), 1e-12);
        else
            EXPECT_EQ(dst[i], kUnwritten) << i;
    }
    // A range past the buffer ends with it; a start beyond it writes nothing.
    std::fill(dst.begin(), dst.end(), kUnwritten);
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, 0, 15, 3, 0), 10);
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, 11, 15, 3, 0), 0);
    EXPECT_EQ(dst[10], kUnwritten);
}

TEST(TraceSmooth, PhaseAverageUnwrapsAndWrapsBack)
{
    // A rising and a falling phase, wrapped (their means pass pi and -pi):
    // each point is the mean of the true phase over its span, brought into
    // [-pi, pi].
    const int32_t n = 200;
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> jitter(-0.2, 0.2);
    std::vector<long double> truth(n);
    std::vector<double> wrapped(n), smoothed(n);
    for (long double slope : {0.7L, -0.7L}) {
        for (int32_t i = 0; i < n; ++i) {
            truth[i] = slope * i + jitter(rng) - 40.0L;
            wrapped[i] = static_cast<double>(std::remainder(truth[i], 2 * kPiL));
        }
        ASSERT_EQ(vfpd_Smooth(wrapped.data(), smoothed.data(), n, 0, n, 9, 1), n);
        for (int32_t i = 0; i < n; ++i) {
            const long double mean = direct_mean(i, n, 9, [&](int32_t j) { return truth[j]; });
            ASSERT_LE(std::fabs(smoothed[i]), kPiL) << i;
            ASSERT_NEAR(static_cast<double>(std::remainder(smoothed[i] - mean, 2 * kPiL)), 0.0, 1e-12) << i;
        }
    }
}

TEST(TraceSmoothCpx, PolarAverageWithExchangedPartsAtWidthOne)
{
    // Random points against the direct polar mean of each span, the angle
    // measured as atan2(re, im): a span of width 1, at either end, comes
    // back with its parts exchanged.
    const int32_t m = 300;
    std::mt19937 rng(8);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> src(2 * m), dst(2 * m + 2, kUnwritten);
    for (double &x : src) x = u(rng);
    ASSERT_EQ(vfpd_SmoothCpx(src.data(), dst.data(), m, 0, m, 7), m);
    for (int32_t i = 0; i < m; ++i) {
        const long double magnitude = direct_mean(i, m, 7, [&](int32_t j) { return std::hypot(src[2 * j] * 1.0L, src[2 * j + 1] * 1.0L); });
        const long double angle = direct_mean(i, m, 7, [&](int32_t j) { return std::atan2(src[2 * j] * 1.0L, src[2 * j + 1] * 1.0L); });
        ASSERT_NEAR(dst[2 * i], static_cast<double>(magnitude * std::cos(angle)), 1e-12) << i;
        ASSERT_NEAR(dst[2 * i + 1], static_cast<double>(magnitude * std::sin(angle)), 1e-12) << i;
    }
    EXPECT_NEAR(dst[0], src[1], 1e-15);
    EXPECT_EQ(dst[2 * m], kUnwritten);

    // The same sliding sums: on the positive imaginary axis the angle is 0
    // and the magnitudes drift as in the plain average.
    const std::vector<double> drift = {0, 0x1p53, 0, 1, 0, 0, 0, 0, 0, 0};
    ASSERT_EQ(vfpd_SmoothCpx(drift.data(), dst.data(), 5, 0, 5, 3), 5);
    const double drifted[5] = {0x1p53, 0x1p53 / 3, 0.0, -1.0 / 3, 0.0};
    for (int32_t i = 0; i < 5; ++i) EXPECT_EQ(dst[2 * i], drifted[i]) << i;
}
