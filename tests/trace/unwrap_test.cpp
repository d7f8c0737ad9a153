// Phase unwrap of complex points, in one call and continued over ranges.
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr long double kPiL = 3.14159265358979323846264L;
constexpr double kUnwritten = -777.0;

// Unit points whose true phase is first + slope * k. The first point is
// given exactly when it sits on the negative real axis, so its angle is
// +pi or -pi as the sign of its zero imaginary part says.
std::vector<double> ramp(int n, long double first, long double slope)
{
    std::vector<double> cpx(2 * n);
    for (int k = 0; k < n; ++k) {
        long double phase = first + slope * k;
        cpx[2 * k] = static_cast<double>(std::cos(phase));
        cpx[2 * k + 1] = static_cast<double>(std::sin(phase));
    }
    if (std::fabs(std::fabs(first) - kPiL) < 1e-18L) {
        cpx[0] = -1.0;
        cpx[1] = std::signbit(static_cast<double>(first)) ? -0.0 : 0.0;
    }
    return cpx;
}

}  // namespace

TEST(TraceUnwrap, FollowsRampsInOneCall)
{
    for (long double slope : {0.5L, -0.5L, 3.0L, -3.0L}) {
        const int n = 100;
        const std::vector<double> cpx = ramp(n, 1.0L, slope);
        std::vector<double> phase(n + 1, kUnwritten);
        vfpd_UnwrapPhase(cpx.data(), 0, n, phase.data());
        for (int k = 0; k < n; ++k)
            ASSERT_NEAR(phase[k], static_cast<double>(1.0L + slope * k), 1e-11) << "slope " << static_cast<double>(slope) << " k " << k;
        EXPECT_EQ(phase[n], kUnwritten);
    }
    // Any step that is not >= -pi turns the count up, a NaN step included:
    // a NaN point and the point after it each add a turn.
    std::vector<double> gap = ramp(5, 0.5L, 0.0L);
    gap[4] = gap[5] = std::nan("");  // point 2
    std::vector<double> phase(5);
    vfpd_UnwrapPhase(gap.data(), 0, 5, phase.data());
    EXPECT_TRUE(std::isnan(phase[2]));
    for (int k : {0, 1, 3, 4}) EXPECT_NEAR(phase[k], static_cast<double>(0.5L + (k > 2 ? 4 * kPiL : 0)), 1e-14) << k;
    // Empty and reversed ranges write nothing.
    const std::vector<double> before = phase;
    vfpd_UnwrapPhase(gap.data(), 4, 4, phase.data());
    vfpd_UnwrapPhase(gap.data(), 3, 1, phase.data());
    vfpd_UnwrapPhase(gap.data(), 0, -1, phase.data());
    EXPECT_EQ(std::memcmp(phase.data(), before.data(), sizeof(double) * 5), 0);
}

TEST(TraceUnwrap, ContinuedCallsMatchOneCall)
{
    // Falling from +pi and rising from -pi: the angle of every later point
    // lies on the side of the first one the phase moves to, so the turn
    // count recovered from the written phase is exact at every split.
    struct Case {
        long double first, slope;
    };
    for (Case c : {Case{kPiL, -0.45L}, Case{-kPiL, 0.45L}, Case{kPiL, -2.9L}}) {
        const int n = 80;
        const std::vector<double> cpx = ramp(n, c.first, c.slope);
        std::vector<double> whole(n);
        vfpd_UnwrapPhase(cpx.data(), 0, n, whole.data());
        for (int m = 1; m < n; ++m) {
            std::vector<double> parts(n, kUnwritten);
            vfpd_UnwrapPhase(cpx.data(), 0, m, parts.data());
            for (int k = m; k < n; ++k) ASSERT_EQ(parts[k], kUnwritten);
            vfpd_UnwrapPhase(cpx.data(), m, n, parts.data());
            ASSERT_EQ(parts, whole) << "split at " << m;
        }
    }
}

TEST(TraceUnwrap, ContinuationLimitOnASteepRamp)
{
    // Phase 2 + 1.5 k: point 4 has turned once (true 8.0) but its angle,
    // 8 - 2pi = 1.72, lies below that of point 0. The recovered count
    // trunc((8.0 - 2.0) / 2pi) = 0 is one short, and the phase also wraps
    // between points 4 and 5, so the one-turn correction of the first step
    // is used up by the wrap: the continued phase stays a turn low.
    const int n = 12;
    const std::vector<double> cpx = ramp(n, 2.0L, 1.5L);
    std::vector<double> whole(n), parts(n);
    vfpd_UnwrapPhase(cpx.data(), 0, n, whole.data());
    vfpd_UnwrapPhase(cpx.data(), 0, 5, parts.data());
    vfpd_UnwrapPhase(cpx.data(), 5, n, parts.data());
    for (int k = 0; k < n; ++k) {
        const long double truth = 2.0L + 1.5L * k;
        EXPECT_NEAR(whole[k], static_cast<double>(truth), 1e-12) << k;
        EXPECT_NEAR(parts[k], static_cast<double>(k < 5 ? truth : truth - 2 * kPiL), 1e-12) << k;
    }

    // Without a wrap at the split the first step repairs the short count.
    std::vector<double> repaired(n);
    vfpd_UnwrapPhase(cpx.data(), 0, 6, repaired.data());
    vfpd_UnwrapPhase(cpx.data(), 6, n, repaired.data());
    for (int k = 0; k < n; ++k) EXPECT_NEAR(repaired[k], whole[k], 1e-12) << k;
}
