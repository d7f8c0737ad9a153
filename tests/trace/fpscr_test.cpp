// The FPSCR-shaped control word: round trips, the host state behind each
// field, and the effect of flush-to-zero on arithmetic.
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <utility>
#include <vector>

namespace {

// Puts the caller's control word back whatever a test did to it.
class TraceFpscr : public ::testing::Test {
protected:
    void SetUp() override { saved_ = get_fpscr(); }
    void TearDown() override { set_fpscr(saved_); }
    uint32_t saved_ = 0;
    uint32_t clean() const { return saved_ & ~(FPSCR_FLAGS_MASK | FPSCR_RMODE_MASK); }
};

constexpr uint32_t kLen3 = 3u << 16;
constexpr uint32_t kIOC = 1u << 0, kDZC = 1u << 1, kOFC = 1u << 2, kUFC = 1u << 3, kIXC = 1u << 4;

}  // namespace

TEST_F(TraceFpscr, WrittenWordReadsBackAndDrivesTheRounding)
{
    const uint32_t word = clean() | (3u << 22) | FPSCR_FZ | FPSCR_DN | kLen3;
    EXPECT_EQ(set_fpscr(word), saved_);
    EXPECT_EQ(get_fpscr(), word);
    EXPECT_EQ(set_fpscr(saved_), word);
    EXPECT_EQ(get_fpscr(), saved_);

    const int host_modes[4] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
    volatile double one = 1.0, tiny = 0x1p-60;
    for (uint32_t mode = 0; mode < 4; ++mode) {
        set_fpscr(clean() | (mode << 22));
        EXPECT_EQ(get_fpscr(), clean() | (mode << 22));
        const double up = one + tiny, down = -one - tiny;
        EXPECT_EQ(up > 1.0, mode == 1) << mode;
        EXPECT_EQ(down < -1.0, mode == 2) << mode;
        // And the other way round: the host's mode shows in the word.
        set_fpscr(saved_);
        ASSERT_EQ(std::fesetround(host_modes[mode]), 0);
        EXPECT_EQ((get_fpscr() & FPSCR_RMODE_MASK) >> 22, mode);
    }
}

TEST_F(TraceFpscr, CumulativeFlagsFollowTheArithmetic)
{
    set_fpscr(clean());
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, 0u);
    volatile double zero = 0.0, one = 1.0, three = 3.0, big = 1e308, small = 1e-300;
    volatile double r = one / zero;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, kDZC);
    r = zero / zero;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, kDZC | kIOC);
    set_fpscr(clean());
    r = one / three;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, kIXC);
    r = big * big;
    r = small * small;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, kIXC | kOFC | kUFC);
    (void)r;
    // Each written flag raises its own exception on the host.
    const std::pair<uint32_t, int> pairs[] = {{kIOC, FE_INVALID}, {kDZC, FE_DIVBYZERO}, {kOFC, FE_OVERFLOW}, {kUFC, FE_UNDERFLOW}, {kIXC, FE_INEXACT}};
    for (const auto &p : pairs) {
        std::feclearexcept(FE_ALL_EXCEPT);
        set_fpscr(clean() | p.first);
        EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), p.second);
    }
#if defined(__SSE2__)
    // A denormal operand raises IDC.
    set_fpscr(clean());
    volatile double subnormal = 1e-310;
    r = subnormal * three;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, 1u << 7);  // exact, so no underflow
#endif
}

#if defined(__SSE2__) || defined(__aarch64__) || (defined(__arm__) && defined(__ARM_FP))
TEST_F(TraceFpscr, RunfastFlushesSubnormalsToZero)
{
    volatile double a = 1e-160, b = 1e-160, subnormal = 1e-310, one = 1.0;
    set_runfast(0);
    ASSERT_GT(a * b, 0.0);  // 1e-320 is subnormal, not zero
    ASSERT_GT(subnormal * one, 0.0);

    const uint32_t written = set_runfast(1);
    EXPECT_EQ(written & FPSCR_RUNFAST, FPSCR_RUNFAST);
    EXPECT_EQ(get_fpscr(), written);
    EXPECT_EQ(a * b, 0.0);            // a subnormal result is flushed
    EXPECT_EQ(subnormal * one, 0.0);  // and so is a subnormal operand

    EXPECT_EQ(set_runfast(0), written & ~FPSCR_RUNFAST);
    EXPECT_GT(a * b, 0.0);
}
#endif

TEST_F(TraceFpscr, BlockFormsClearTheVectorLength)
{
    std::vector<double> d = {1.0, 2.0};
    std::vector<float> f = {1.0f, 2.0f};
    std::vector<int32_t> out(2);
    for (int which = 0; which < 4; ++which) {
        set_fpscr(saved_ | kLen3);
        for (int32_t n : {0, 2}) {  // n <= 0 does nothing at all
            if (which == 0) vfpdbMul2(2.0, d.data(), n);
            if (which == 1) vfpsbMul2(2.0f, f.data(), n);
            if (which == 2) vfpdb_ScaleToInt2(d.data(), n, 0.0, 1.0, out.data(), 0, 10);
            if (which == 3) vfpsb_ScaleToInt2(f.data(), n, 0.0f, 1.0f, out.data(), 0, 10);
            EXPECT_EQ(get_fpscr() & FPSCR_LEN_MASK, n > 0 ? 0u : kLen3) << which;
        }
    }
}

TEST(TraceTestAsm, SetsBitsThreeToFiveOfB)
{
    EXPECT_EQ(testASM(0xffffffffu, 0), 56u);
    EXPECT_EQ(testASM(7, 0x100), 0x138u);
    EXPECT_EQ(testASM(0, 0xffffffc7u), 0xffffffffu);
}
