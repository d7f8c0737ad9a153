// Axis expansion and display formats against closed forms.
#include "libdsp_vna.h"
#include "trace_values.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>
#include <vector>

using trace_test::kInf;
using trace_test::kNaN;

TEST(TraceExpand, LinearAxisKeepsItsEndPointsExact)
{
    std::vector<double> out(10, -1.0);
    vfpd_ExpandLinear(out.data(), 8, 0.0, 7.0);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(out[i], i);
    EXPECT_EQ(out[8], -1.0);

    // 0.1 .. 0.3 in 4 points: the last point computed as 3 * step + 0.1
    // would miss 0.3; it is stored as given.
    const double step = (0.3 - 0.1) / 3;
    ASSERT_NE(3 * step + 0.1, 0.3);
    vfpd_ExpandLinear(out.data(), 4, 0.1, 0.3);
    EXPECT_EQ(out[0], 0.1);
    EXPECT_EQ(out[3], 0.3);
    for (int i = 1; i < 3; ++i) {
        long double exact = 0.1L + i * (0.3L - 0.1L) / 3;
        EXPECT_NEAR(out[i], static_cast<double>(exact), 1e-16) << i;
    }

    // Descending axes and the short cases.
    vfpd_ExpandLinear(out.data(), 3, 5.0, -5.0);
    EXPECT_EQ(out[1], 0.0);
    std::vector<double> one = {-1.0, -1.0};
    vfpd_ExpandLinear(one.data(), 1, 3.0, 4.0);
    EXPECT_EQ(one, (std::vector<double>{3.0, -1.0}));
    vfpd_ExpandLinear(one.data(), 2, 8.0, 9.0);
    EXPECT_EQ(one, (std::vector<double>{8.0, 9.0}));
    vfpd_ExpandLinear(one.data(), 0, 1.0, 2.0);
    vfpd_ExpandLinear(one.data(), -4, 1.0, 2.0);
    EXPECT_EQ(one, (std::vector<double>{8.0, 9.0}));
}

TEST(TraceExpand, LogAxisIsGeometricAndNeedsPositiveEnds)
{
    std::vector<double> out(6, -1.0);
    vfpd_ExpandLog(out.data(), 4, 1.0, 1000.0);
    EXPECT_EQ(out[0], 1.0);
    EXPECT_DOUBLE_EQ(out[1], 10.0);
    EXPECT_DOUBLE_EQ(out[2], 100.0);
    EXPECT_EQ(out[3], 1000.0);
    EXPECT_EQ(out[4], -1.0);

    // 300 kHz .. 3 GHz in 201 points: a constant ratio 10^(4/200).
    std::vector<double> axis(201);
    vfpd_ExpandLog(axis.data(), 201, 3e5, 3e9);
    EXPECT_EQ(axis.front(), 3e5);
    EXPECT_EQ(axis.back(), 3e9);
    const long double ratio = std::pow(10.0L, 4.0L / 200);
    for (int i = 1; i < 201; ++i) EXPECT_NEAR(axis[i] / axis[i - 1], static_cast<double>(ratio), 1e-12) << i;

    // Nothing unless both ends are positive; n = 1 writes only the first.
    std::vector<double> untouched = {-1.0, -1.0, -1.0};
    for (double bad : {0.0, -2.0, kNaN}) {
        vfpd_ExpandLog(untouched.data(), 3, bad, 10.0);
        vfpd_ExpandLog(untouched.data(), 3, 10.0, bad);
    }
    vfpd_ExpandLog(untouched.data(), 0, 1.0, 10.0);
    EXPECT_EQ(untouched, (std::vector<double>{-1.0, -1.0, -1.0}));
    vfpd_ExpandLog(untouched.data(), 1, 5.0, 50.0);
    EXPECT_EQ(untouched, (std::vector<double>{5.0, -1.0, -1.0}));
}

TEST(TraceFormat, ClosedFormsOfEachFormat)
{
    // Points: 3+4i, 0.1, i, -1, 1-i, 0.5, 0.
    const std::vector<double> cpx = {3, 4, 0.1, 0, 0, 1, -1, 0, 1, -1, 0.5, 0, 0, 0};
    const int points = 7;
    std::vector<double> out(points);
    auto run = [&](int32_t format) {
        std::fill(out.begin(), out.end(), -123.0);
        vfpd_FormatBuffer(format, cpx.data(), out.data(), 0, points);
    };

    run(VFPD_FORMAT_LOG_MAG);
    EXPECT_DOUBLE_EQ(out[0], 10 * std::log10(25.0));
    EXPECT_DOUBLE_EQ(out[1], -20.0);
    EXPECT_EQ(out[2], 0.0);
    EXPECT_EQ(out[6], -kInf);

    run(VFPD_FORMAT_LIN_MAG);
    EXPECT_EQ(out[0], 5.0);
    EXPECT_EQ(out[3], 1.0);
    EXPECT_DOUBLE_EQ(out[4], std::sqrt(2.0));

    // Degrees use the factor 57.29577951307855, a little below 180/pi
    // (relative 6.6e-14): a right angle reads 89.999999999994.
    run(VFPD_FORMAT_PHASE);
    const long double factor = 57.29577951307855L, pi = 3.14159265358979323846264L;
    EXPECT_NEAR(out[0], static_cast<double>(std::atan2(4.0L, 3.0L) * factor), 1e-13);
    EXPECT_EQ(out[1], 0.0);
    EXPECT_NEAR(out[2], static_cast<double>(pi / 2 * factor), 1e-13);
    EXPECT_NEAR(out[3], static_cast<double>(pi * factor), 1e-13);
    EXPECT_NEAR(out[4], static_cast<double>(-pi / 4 * factor), 1e-13);
    EXPECT_LT(out[2], 90.0 - 1e-12);

    run(VFPD_FORMAT_SWR);
    EXPECT_EQ(out[5], 3.0);  // (1 + 0.5) / (1 - 0.5)
    EXPECT_EQ(out[6], 1.0);
    EXPECT_EQ(out[0], 1e6);  // |z| = 5: beyond the limit
    EXPECT_EQ(out[2], 1e6);

    run(VFPD_FORMAT_RETURN_LOSS);
    EXPECT_DOUBLE_EQ(out[1], 20.0);
    EXPECT_EQ(out[6], kInf);

    run(5);
    EXPECT_EQ(out, std::vector<double>(points, -123.0));
    run(-1);
    EXPECT_EQ(out, std::vector<double>(points, -123.0));
}

TEST(TraceFormat, SwrLimitIsStrictlyGreater)
{
    const double limit = 0.999998;
    const double above = std::nextafter(limit, 2.0);
    const std::vector<double> cpx = {limit, 0.0, 0.0, -limit, above, 0.0};
    std::vector<double> out(3);
    vfpd_FormatBuffer(VFPD_FORMAT_SWR, cpx.data(), out.data(), 0, 3);
    EXPECT_EQ(out[0], (limit + 1.0) / (1.0 - limit));  // |z| = limit exactly
    EXPECT_DOUBLE_EQ(out[1], out[0]);
    EXPECT_EQ(out[2], 1e6);
}

TEST(TraceFormat, WritesOnlyTheRangeAtTheSameIndices)
{
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> u(-2.0, 2.0);
    std::vector<double> cpx(2 * 50);
    for (double &x : cpx) x = u(rng);
    for (int32_t format = 0; format <= 4; ++format) {
        std::vector<double> out(50, -99.0);
        vfpd_FormatBuffer(format, cpx.data(), out.data(), 10, 40);
        for (int k = 0; k < 50; ++k) {
            if (k < 10 || k >= 40) {
                EXPECT_EQ(out[k], -99.0);
                continue;
            }
            const std::complex<long double> z(cpx[2 * k], cpx[2 * k + 1]);
            const long double g = std::abs(z);
            long double expected = 0;
            switch (format) {
            case 0: expected = 20 * std::log10(g); break;
            case 1: expected = g; break;
            case 2: expected = std::arg(z) * 57.29577951307855L; break;
            case 3: expected = g > 0.999998L ? 1e6L : (1 + g) / (1 - g); break;
            case 4: expected = -20 * std::log10(g); break;
            }
            EXPECT_NEAR(out[k], static_cast<double>(expected), 1e-12 * std::max(1.0L, std::fabs(expected)))
                << "format " << format << " point " << k;
        }
    }
    // An empty or reversed range writes nothing.
    std::vector<double> out(50, -99.0);
    vfpd_FormatBuffer(0, cpx.data(), out.data(), 20, 20);
    vfpd_FormatBuffer(0, cpx.data(), out.data(), 30, 20);
    EXPECT_EQ(out, std::vector<double>(50, -99.0));
}
