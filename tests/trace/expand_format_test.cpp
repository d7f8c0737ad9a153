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

TEST(TraceExpand, AxesKeepTheirEndPointsExact)
{
    std::vector<double> out(10, -1.0);
    vfpd_ExpandLinear(out.data(), 8, 0.0, 7.0);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(out[i], i);
    EXPECT_EQ(out[8], -1.0);
    // 0.1 .. 0.3 in 4 points: 3 * step + 0.1 would miss 0.3; it is stored.
    ASSERT_NE(3 * ((0.3 - 0.1) / 3) + 0.1, 0.3);
    vfpd_ExpandLinear(out.data(), 4, 0.1, 0.3);
    EXPECT_EQ(out[3], 0.3);
    EXPECT_NEAR(out[1], 0.1 + 0.2 / 3, 1e-16);
    vfpd_ExpandLinear(out.data(), 1, 3.0, 4.0);  // only the first point
    EXPECT_EQ(out[0], 3.0);
    EXPECT_NEAR(out[1], 0.1 + 0.2 / 3, 1e-16);

    // 300 kHz .. 3 GHz in 201 points: a constant ratio 10^(4/200).
    std::vector<double> axis(202, -1.0);
    vfpd_ExpandLog(axis.data(), 201, 3e5, 3e9);
    EXPECT_EQ(axis[0], 3e5);
    EXPECT_EQ(axis[200], 3e9);
    EXPECT_EQ(axis[201], -1.0);
    const double ratio = static_cast<double>(std::pow(10.0L, 4.0L / 200));
    for (int i = 1; i < 201; ++i) ASSERT_NEAR(axis[i] / axis[i - 1], ratio, 1e-12) << i;

    // Nothing unless both ends are positive and n > 0; n = 1 writes out[0].
    std::vector<double> untouched = {-1.0, -1.0, -1.0};
    for (double bad : {0.0, -2.0, kNaN}) {
        vfpd_ExpandLog(untouched.data(), 3, bad, 10.0);
        vfpd_ExpandLog(untouched.data(), 3, 10.0, bad);
    }
    vfpd_ExpandLog(untouched.data(), 0, 1.0, 10.0);
    vfpd_ExpandLinear(untouched.data(), -4, 1.0, 2.0);
    vfpd_ExpandLog(untouched.data(), 1, 5.0, 50.0);
    EXPECT_EQ(untouched, (std::vector<double>{5.0, -1.0, -1.0}));
}

TEST(TraceFormat, EachFormatAgainstItsClosedForm)
{
    // Points: 3+4i, 0.1, i, -1, 0.5, 0.
    const std::vector<double> cpx = {3, 4, 0.1, 0, 0, 1, -1, 0, 0.5, 0, 0, 0};
    std::vector<double> out(6);
    auto run = [&](int32_t format) {
        std::fill(out.begin(), out.end(), -123.0);
        vfpd_FormatBuffer(format, cpx.data(), out.data(), 0, 6);
    };
    run(VFPD_FORMAT_LOG_MAG);
    EXPECT_DOUBLE_EQ(out[0], 10 * std::log10(25.0));
    EXPECT_DOUBLE_EQ(out[1], -20.0);
    EXPECT_EQ(out[5], -kInf);
    run(VFPD_FORMAT_LIN_MAG);
    EXPECT_EQ(out[0], 5.0);
    // Degrees use the factor 57.29577951307855, a little below 180/pi
    // (relative 6.6e-14): a right angle reads 89.999999999994.
    run(VFPD_FORMAT_PHASE);
    EXPECT_NEAR(out[2], static_cast<double>(std::acos(-1.0L) / 2 * 57.29577951307855L), 1e-13);
    EXPECT_LT(out[2], 90.0 - 1e-12);
    EXPECT_NEAR(out[3], static_cast<double>(std::acos(-1.0L) * 57.29577951307855L), 1e-13);
    run(VFPD_FORMAT_SWR);
    EXPECT_EQ(out[4], 3.0);  // (1 + 0.5) / (1 - 0.5)
    EXPECT_EQ(out[5], 1.0);
    EXPECT_EQ(out[0], 1e6);
    run(VFPD_FORMAT_RETURN_LOSS);
    EXPECT_DOUBLE_EQ(out[1], 20.0);
    EXPECT_EQ(out[5], kInf);
    for (int32_t other : {5, -1}) {
        run(other);
        EXPECT_EQ(out, std::vector<double>(6, -123.0));
    }

    // The SWR ceiling starts strictly above |z| = 0.999998.
    const double limit = 0.999998;
    const std::vector<double> edge = {limit, 0.0, 0.0, -limit, std::nextafter(limit, 2.0), 0.0};
    vfpd_FormatBuffer(VFPD_FORMAT_SWR, edge.data(), out.data(), 0, 3);
    EXPECT_EQ(out[0], (limit + 1.0) / (1.0 - limit));
    EXPECT_EQ(out[1], out[0]);
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
            const std::complex<long double> z(cpx[2 * k], cpx[2 * k + 1]);
            const long double g = std::abs(z);
            const long double expected[5] = {20 * std::log10(g), g, std::arg(z) * 57.29577951307855L,
                                             g > 0.999998L ? 1e6L : (1 + g) / (1 - g), -20 * std::log10(g)};
            if (k < 10 || k >= 40)
                ASSERT_EQ(out[k], -99.0) << k;
            else
                ASSERT_NEAR(out[k], static_cast<double>(expected[format]), 1e-12 * std::max(1.0L, std::fabs(expected[format])))
                    << "format " << format << " point " << k;
        }
    }
}
