// Axis expansion and display formats against closed forms.
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>
#include <vector>

namespace {
const double kInf = INFINITY, kNaN = NAN;
}

TEST(TraceExpand, AxesKeepTheirEndPointsExact)
{
    // Inside, i * step + first with the step rounded once: 0 .. 0.5 in 6
    // points has step 0.1 and puts 3 * 0.1 = 0.30000000000000004 at index 3.
    std::vector<double> out(7, -1.0);
    vfpd_ExpandLinear(out.data(), 6, 0.0, 0.5);
    EXPECT_EQ(out, (std::vector<double>{0, 0.1, 0.2, 0.30000000000000004, 0.4, 0.5, -1}));
    vfpd_ExpandLinear(out.data(), 1, 3.0, 4.0);  // only the first point
    EXPECT_EQ(out[0], 3.0);
    EXPECT_EQ(out[1], 0.1);
    // 0.1 .. 0.3 in 4 points: 3 * step + 0.1 would miss 0.3; it is stored.
    ASSERT_NE(3 * ((0.3 - 0.1) / 3) + 0.1, 0.3);
    vfpd_ExpandLinear(out.data(), 4, 0.1, 0.3);
    EXPECT_EQ(out[3], 0.3);

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

TEST(TraceFormat, EachFormatAgainstItsClosedFormInTheRangeOnly)
{
    // Random points: formats 0..4 of points 10..39 against long-double
    // closed forms; the rest of out is not written.
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

    // Points: i, 0, 1e200, 1e-200. The squares are summed as they stand, not
    // rescaled: 1e200 squared overflows to +inf, 1e-200 squared underflows.
    const std::vector<double> special = {0, 1, 0, 0, 1e200, 0, 1e-200, 0};
    const double expected[5][4] = {{0, -kInf, kInf, -kInf}, {1, 0, kInf, 0}, {90, 0, 0, 0},
                                   {1e6, 1, 1e6, 1}, {0, kInf, -kInf, kInf}};
    for (int32_t format = -1; format <= 5; ++format) {
        std::vector<double> out(4, -1.0);
        vfpd_FormatBuffer(format, special.data(), out.data(), 0, 4);
        if (format < 0 || format > 4) {
            EXPECT_EQ(out, std::vector<double>(4, -1.0)) << format;  // unknown formats write nothing
            continue;
        }
        // Degrees use the factor 57.29577951307855, a little below 180/pi
        // (relative 6.6e-14): a right angle reads 89.999999999994.
        const bool phase = format == VFPD_FORMAT_PHASE;
        if (phase) {
            EXPECT_NEAR(out[0], 90.0 - 6e-12, 1e-12);
        }
        for (int k = phase ? 1 : 0; k < 4; ++k) EXPECT_EQ(out[k], expected[format][k]) << format << " " << k;
    }

    // The SWR ceiling starts strictly above |z| = 0.999998.
    const double limit = 0.999998;
    const std::vector<double> edge = {limit, 0.0, 0.0, -limit, std::nextafter(limit, 2.0), 0.0};
    std::vector<double> out(3);
    vfpd_FormatBuffer(VFPD_FORMAT_SWR, edge.data(), out.data(), 0, 3);
    EXPECT_EQ(out[0], (limit + 1.0) / (1.0 - limit));
    EXPECT_EQ(out[1], out[0]);
    EXPECT_EQ(out[2], 1e6);
}
