// The FPSCR-shaped control word: round trips, the host state behind each
// field, and the effect of flush-to-zero on arithmetic.
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cstdint>
#include <vector>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace {

// Puts the caller's control word back whatever a test did to it.
class KeepControlWord : public ::testing::Test {
protected:
    void SetUp() override { saved_ = get_fpscr(); }
    void TearDown() override { set_fpscr(saved_); }
    uint32_t saved_ = 0;
};

constexpr uint32_t kLen3 = 3u << 16;
constexpr uint32_t kIOC = 1u << 0, kDZC = 1u << 1, kOFC = 1u << 2, kUFC = 1u << 3, kIXC = 1u << 4;

uint32_t with_rounding(uint32_t word, uint32_t mode) { return (word & ~FPSCR_RMODE_MASK) | (mode << 22); }

}  // namespace

using TraceFpscr = KeepControlWord;

TEST_F(TraceFpscr, WrittenWordReadsBackAndPreviousIsReturned)
{
    const uint32_t clean = saved_ & ~FPSCR_FLAGS_MASK;
    const uint32_t word = with_rounding(clean, 3) | FPSCR_FZ | FPSCR_DN | kLen3;
    EXPECT_EQ(set_fpscr(word), saved_);
    EXPECT_EQ(get_fpscr(), word);
    EXPECT_EQ(set_fpscr(saved_), word);
    EXPECT_EQ(get_fpscr(), saved_);
    // Every field on its own.
    for (uint32_t field : {FPSCR_FZ, FPSCR_DN, 1u << 16, 2u << 16, 4u << 16, 1u << 22, 2u << 22}) {
        set_fpscr(clean | field);
        EXPECT_EQ(get_fpscr(), clean | field) << std::hex << field;
    }
}

TEST_F(TraceFpscr, RoundingFieldDrivesTheHostRoundingMode)
{
    const int host_modes[4] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
    volatile double one = 1.0, tiny = 0x1p-60;
    for (uint32_t mode = 0; mode < 4; ++mode) {
        set_fpscr(with_rounding(saved_, mode));
#if defined(__SSE2__)
        // MXCSR rounding control: 0 nearest, 1 down, 2 up, 3 toward zero.
        const uint32_t x86_modes[4] = {0, 2, 1, 3};
        EXPECT_EQ((_mm_getcsr() >> 13) & 3u, x86_modes[mode]) << mode;
#endif
        const double up = one + tiny, down = -one - tiny;
        EXPECT_EQ(up > 1.0, mode == 1) << mode;
        EXPECT_EQ(down < -1.0, mode == 2) << mode;
        set_fpscr(saved_);
        ASSERT_EQ(std::fesetround(host_modes[mode]), 0);
        EXPECT_EQ((get_fpscr() & FPSCR_RMODE_MASK) >> 22, mode);
    }
}

TEST_F(TraceFpscr, CumulativeFlagsFollowTheArithmetic)
{
    set_fpscr(saved_ & ~FPSCR_FLAGS_MASK);
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, 0u);
    volatile double zero = 0.0, one = 1.0, three = 3.0, big = 1e308, small = 1e-300;
    volatile double r = one / zero;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, kDZC);
    r = zero / zero;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, kDZC | kIOC);
    set_fpscr(saved_ & ~FPSCR_FLAGS_MASK);
    r = one / three;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, kIXC);
    r = big * big;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, kIXC | kOFC);
    r = small * small;
    EXPECT_EQ(get_fpscr() & FPSCR_FLAGS_MASK, kIXC | kOFC | kUFC);
    (void)r;
    // Writing the flags sets the host's flags.
    set_fpscr((saved_ & ~FPSCR_FLAGS_MASK) | kDZC | kOFC);
    EXPECT_TRUE(std::fetestexcept(FE_DIVBYZERO));
    EXPECT_TRUE(std::fetestexcept(FE_OVERFLOW));
#if defined(__SSE2__)
    // MXCSR flags: IE 0, DE 1, ZE 2, OE 3, UE 4, PE 5.
    EXPECT_EQ(_mm_getcsr() & 0x3fu, (1u << 2) | (1u << 3));
    set_fpscr(saved_ | FPSCR_FLAGS_MASK);
    EXPECT_EQ(_mm_getcsr() & 0x3fu, 0x3fu);
    set_fpscr(saved_ & ~FPSCR_FLAGS_MASK);
    EXPECT_EQ(_mm_getcsr() & 0x3fu, 0u);
#endif
}

#if defined(__SSE2__) || defined(__aarch64__) || (defined(__arm__) && defined(__ARM_FP))
TEST_F(TraceFpscr, RunfastFlushesSubnormalsToZero)
{
    volatile double a = 1e-160, b = 1e-160, subnormal = 1e-310, one = 1.0;
    set_runfast(0);
    ASSERT_GT(a * b, 0.0);  // 1e-320 is subnormal, not zero
    ASSERT_GT(subnormal * one, 0.0);
#if defined(__SSE2__)
    // MXCSR FZ (bit 15) and DAZ (bit 6) move together.
    const uint32_t fz_daz = (1u << 15) | (1u << 6);
    EXPECT_EQ(_mm_getcsr() & fz_daz, 0u);
    set_runfast(1);
    EXPECT_EQ(_mm_getcsr() & fz_daz, fz_daz);
    set_runfast(0);
#endif

    const uint32_t written = set_runfast(1);
    EXPECT_EQ(written & FPSCR_RUNFAST, FPSCR_RUNFAST);
    EXPECT_EQ(get_fpscr(), written);
    EXPECT_EQ(a * b, 0.0);           // a subnormal result is flushed
    EXPECT_EQ(subnormal * one, 0.0); // and so is a subnormal operand

    const uint32_t cleared = set_runfast(0);
    EXPECT_EQ(cleared & FPSCR_RUNFAST, 0u);
    EXPECT_EQ(cleared, written & ~FPSCR_RUNFAST);
    EXPECT_GT(a * b, 0.0);
}
#endif

#if defined(__SSE2__)
TEST_F(TraceFpscr, DenormalOperandFlagOnX86)
{
    set_fpscr(saved_ & ~(FPSCR_FLAGS_MASK | FPSCR_FZ));
    volatile double subnormal = 1e-310, two = 2.0;
    volatile double r = subnormal * two;
    (void)r;
    EXPECT_EQ(get_fpscr() & (1u << 7), 1u << 7);
}
#endif

TEST_F(TraceFpscr, BlockFormsClearTheVectorLength)
{
    std::vector<double> d = {1.0, 2.0};
    std::vector<float> f = {1.0f, 2.0f};
    std::vector<int32_t> out(2);
    using Call = void (*)(std::vector<double> &, std::vector<float> &, std::vector<int32_t> &, int32_t);
    const Call calls[] = {
        [](std::vector<double> &dd, std::vector<float> &, std::vector<int32_t> &, int32_t n) { vfpdbMul2(2.0, dd.data(), n); },
        [](std::vector<double> &, std::vector<float> &ff, std::vector<int32_t> &, int32_t n) { vfpsbMul2(2.0f, ff.data(), n); },
        [](std::vector<double> &dd, std::vector<float> &, std::vector<int32_t> &o, int32_t n) {
            vfpdb_ScaleToInt2(dd.data(), n, 0.0, 1.0, o.data(), 0, 10);
        },
        [](std::vector<double> &, std::vector<float> &ff, std::vector<int32_t> &o, int32_t n) {
            vfpsb_ScaleToInt2(ff.data(), n, 0.0f, 1.0f, o.data(), 0, 10);
        },
    };
    for (Call call : calls) {
        set_fpscr(saved_ | kLen3);
        call(d, f, out, 0);  // n <= 0 does nothing at all
        EXPECT_EQ(get_fpscr() & FPSCR_LEN_MASK, kLen3);
        call(d, f, out, 2);
        EXPECT_EQ(get_fpscr() & FPSCR_LEN_MASK, 0u);
    }
}

TEST(TraceTestAsm, SetsBitsThreeToFiveOfB)
{
    EXPECT_EQ(testASM(0, 0), 56u);
    EXPECT_EQ(testASM(0xffffffffu, 0), 56u);
    EXPECT_EQ(testASM(7, 0x100), 0x138u);
    EXPECT_EQ(testASM(0, 0x38), 0x38u);
    EXPECT_EQ(testASM(0, 0xffffffc7u), 0xffffffffu);
}
