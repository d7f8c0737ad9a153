// Trace smoothing against per-point averages computed directly in the test.
#include "libdsp_vna.h"
#include "trace_values.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr long double kPiL = 3.14159265358979323846264L;
constexpr double kUnwritten = -777.0;

int32_t half_width(int32_t i, int32_t n, int32_t aperture) { return std::min({i, n - 1 - i, aperture / 2}); }

// The mean of src over the span of point i, in long double.
double direct_mean(const std::vector<double> &src, int32_t i, int32_t n, int32_t aperture)
{
    const int32_t h = half_width(i, n, aperture);
    long double sum = 0;
    for (int32_t j = i - h; j <= i + h; ++j) sum += src[j];
    return static_cast<double>(sum / (2 * h + 1));
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
    // start = stop comes first, before any other check.
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, 4, 4, 2, 0), 0);
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, -3, -3, 1, 1), 0);
    EXPECT_EQ(vfpd_SmoothCpx(src.data(), dst.data(), 5, 7, 7, 0), 0);
    // Bad ranges.
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, -1, 5, 3, 0), -1);
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, 6, 5, 3, 0), -1);
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, 1, 0, 3, 0), -1);   // last = 0 < start
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, 0, -2, 3, 0), -1);  // last < 0
    EXPECT_EQ(vfpd_SmoothCpx(src.data(), dst.data(), 5, 3, 2, 3), -1);
    // Bad apertures.
    for (int32_t aperture : {-3, 0, 1, 2, 4, 10}) {
        EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, 0, 10, aperture, 0), -1) << aperture;
        EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), 10, 0, 10, aperture, 1), -1) << aperture;
        EXPECT_EQ(vfpd_SmoothCpx(src.data(), dst.data(), 5, 0, 5, aperture), -1) << aperture;
    }
    EXPECT_EQ(dst, std::vector<double>(10, kUnwritten));
}

TEST(TraceSmooth, WholeBufferMatchesDirectAverages)
{
    for (int32_t aperture : {3, 5, 9, 31}) {
        for (int32_t n : {1, 2, 7, 64, 1000}) {
            const std::vector<double> src = noisy_trace(n, static_cast<unsigned>(aperture * 1000 + n));
            std::vector<double> dst(n + 2, kUnwritten);
            ASSERT_EQ(vfpd_Smooth(src.data(), dst.data(), n, 0, n, aperture, 0), n);
            for (int32_t i = 0; i < n; ++i)
                ASSERT_NEAR(dst[i], direct_mean(src, i, n, aperture), 1e-12) << "n=" << n << " i=" << i;
            // The ends are spans of width 1.
            EXPECT_EQ(dst[0], src[0]);
            EXPECT_EQ(dst[n - 1], src[n - 1]);
            EXPECT_EQ(dst[n], kUnwritten);
            EXPECT_EQ(dst[n + 1], kUnwritten);
        }
    }
    // Widths 1, 3, 5, 3, 1 on a short buffer, exactly.
    const std::vector<double> five = {1, 2, 4, 8, 16};
    std::vector<double> out(5);
    ASSERT_EQ(vfpd_Smooth(five.data(), out.data(), 5, 0, 5, 99, 0), 5);
    EXPECT_EQ(out, (std::vector<double>{1.0, 7.0 / 3, 31.0 / 5, 28.0 / 3, 16.0}));
}

TEST(TraceSmooth, StopsWhereASpanWouldPassTheRange)
{
    const int32_t n = 40;
    const std::vector<double> src = noisy_trace(n, 9);
    // Aperture 5, range [0, 10): point i needs i + 2 <= 9 once h = 2, so
    // points 0 .. 7 are written.
    std::vector<double> dst(n, kUnwritten);
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), n, 0, 10, 5, 0), 8);
    for (int32_t i = 0; i < 8; ++i) EXPECT_NEAR(dst[i], direct_mean(src, i, n, 5), 1e-12) << i;
    for (int32_t i = 8; i < n; ++i) EXPECT_EQ(dst[i], kUnwritten) << i;

    // From the middle: [12, 30) with aperture 7 writes 12 .. 26.
    std::fill(dst.begin(), dst.end(), kUnwritten);
    EXPECT_EQ(vfpd_Smooth(src.data(), dst.data(), n, 12, 30, 7, 0), 15);
    for (int32_t i = 0; i < n; ++i) {
        if (i >= 12 && i <= 26)
            EXPECT_NEAR(dst[i], direct_mean(src, i, n, 7), 1e-12) << i;
        else
            EXPECT_EQ(dst[i], kUnwritten) << i;
    }

    // A range reaching past the buffer stops at its end.
    std::vector<double> short_dst(12, kUnwritten);
    EXPECT_EQ(vfpd_Smooth(src.data(), short_dst.data(), 10, 0, 15, 3, 0), 10);
    EXPECT_EQ(short_dst[10], kUnwritten);
    // Start beyond the buffer: nothing to do.
    EXPECT_EQ(vfpd_Smooth(src.data(), short_dst.data(), 10, 11, 15, 3, 0), 0);
    EXPECT_EQ(vfpd_Smooth(src.data(), short_dst.data(), 0, 0, 15, 3, 0), 0);
    EXPECT_EQ(short_dst[11], kUnwritten);
}

TEST(TraceSmooth, PhaseAverageUnwrapsAndWrapsBack)
{
    // Three points across the +-pi seam: 2.9, -2.9 (= 2pi - 2.9), 2.9.
    const std::vector<double> seam = {2.9, -2.9, 2.9};
    std::vector<double> out(3, kUnwritten);
    ASSERT_EQ(vfpd_Smooth(seam.data(), out.data(), 3, 0, 3, 3, 1), 3);
    EXPECT_NEAR(out[1], static_cast<double>((2.9L + 2 * kPiL) / 3), 1e-15);
    EXPECT_EQ(out[0], 2.9);

    // 3.1, -3.1, -3.0: the mean 3.1888 lies beyond pi and comes back as
    // 3.1888 - 2pi.
    const std::vector<double> beyond = {3.1, -3.1, -3.0};
    ASSERT_EQ(vfpd_Smooth(beyond.data(), out.data(), 3, 0, 3, 3, 1), 3);
    EXPECT_NEAR(out[1], static_cast<double>((3.1L + (-3.1L + 2 * kPiL) + (-3.0L + 2 * kPiL)) / 3 - 2 * kPiL), 1e-15);

    // A steadily turning phase, wrapped: every smoothed point is the mean of
    // the true phase over its span, brought into [-pi, pi].
    const int32_t n = 200;
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> jitter(-0.2, 0.2);
    std::vector<long double> truth(n);
    std::vector<double> wrapped(n);
    for (int32_t i = 0; i < n; ++i) {
        truth[i] = 0.7L * i + jitter(rng) - 40.0L;
        wrapped[i] = static_cast<double>(std::remainder(truth[i], 2 * kPiL));
    }
    std::vector<double> smoothed(n, kUnwritten);
    ASSERT_EQ(vfpd_Smooth(wrapped.data(), smoothed.data(), n, 0, n, 9, 1), n);
    for (int32_t i = 0; i < n; ++i) {
        const int32_t h = half_width(i, n, 9);
        long double mean = 0;
        for (int32_t j = i - h; j <= i + h; ++j) mean += truth[j];
        mean /= 2 * h + 1;
        EXPECT_GE(smoothed[i], -static_cast<double>(kPiL)) << i;
        EXPECT_LE(smoothed[i], static_cast<double>(kPiL)) << i;
        EXPECT_NEAR(static_cast<double>(std::remainder(smoothed[i] - mean, 2 * kPiL)), 0.0, 1e-12) << i;
    }
}

TEST(TraceSmoothCpx, PolarAverageWithExchangedPartsAtWidthOne)
{
    // A constant point (a, b) averages to itself in the polar form that
    // measures angles as atan2(re, im): every point comes back as (b, a).
    const int32_t n = 9;
    std::vector<double> constant(2 * n);
    for (int32_t i = 0; i < n; ++i) {
        constant[2 * i] = 0.6;
        constant[2 * i + 1] = 0.8;
    }
    std::vector<double> out(2 * n + 2, kUnwritten);
    ASSERT_EQ(vfpd_SmoothCpx(constant.data(), out.data(), n, 0, n, 5), n);
    for (int32_t i = 0; i < n; ++i) {
        EXPECT_NEAR(out[2 * i], 0.8, 1e-15) << i;
        EXPECT_NEAR(out[2 * i + 1], 0.6, 1e-15) << i;
    }
    EXPECT_EQ(out[2 * n], kUnwritten);

    // Random points against the direct polar mean of each span; the end
    // points (width 1) are their own point with the parts exchanged.
    const int32_t m = 300;
    std::mt19937 rng(8);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> src(2 * m);
    for (double &x : src) x = u(rng);
    std::vector<double> dst(2 * m, kUnwritten);
    ASSERT_EQ(vfpd_SmoothCpx(src.data(), dst.data(), m, 0, m, 7), m);
    for (int32_t i = 0; i < m; ++i) {
        const int32_t h = half_width(i, m, 7);
        long double magnitude = 0, angle = 0;
        for (int32_t j = i - h; j <= i + h; ++j) {
            magnitude += std::hypot(static_cast<long double>(src[2 * j]), static_cast<long double>(src[2 * j + 1]));
            angle += std::atan2(static_cast<long double>(src[2 * j]), static_cast<long double>(src[2 * j + 1]));
        }
        magnitude /= 2 * h + 1;
        angle /= 2 * h + 1;
        ASSERT_NEAR(dst[2 * i], static_cast<double>(magnitude * std::cos(angle)), 1e-12) << i;
        ASSERT_NEAR(dst[2 * i + 1], static_cast<double>(magnitude * std::sin(angle)), 1e-12) << i;
    }
    EXPECT_NEAR(dst[0], src[1], 1e-15);
    EXPECT_NEAR(dst[1], src[0], 1e-15);
    EXPECT_NEAR(dst[2 * m - 2], src[2 * m - 1], 1e-15);
    EXPECT_NEAR(dst[2 * m - 1], src[2 * m - 2], 1e-15);

    // A short range stops like the plain average.
    std::vector<double> part(2 * m, kUnwritten);
    EXPECT_EQ(vfpd_SmoothCpx(src.data(), part.data(), m, 100, 120, 7), 17);
    EXPECT_EQ(part[2 * 117], kUnwritten);
    EXPECT_EQ(part[2 * 99 + 1], kUnwritten);
    EXPECT_NEAR(part[2 * 116], dst[2 * 116], 1e-13);
}
