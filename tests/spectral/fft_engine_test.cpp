// The transforms' contract on small hand-checked cases: lengths, scaling,
// the spacing update, bit reversal and the plain-array wrapper.
#include "support/dft_oracle.hpp"
#include "support/random_values.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <vector>

using dsp_test::Record;
using V = std::vector<double>;

TEST(FftEngine, RefusedInputsLeaveTheSignal)
{
    for (int32_t n : {0, 3, 6, 12}) {
        SCOPED_TRACE(n);
        const V x = dsp_test::uniform_values(static_cast<std::size_t>(n), 1, 1.0);
        Record s(x, false, 0.25);
        EXPECT_EQ(dspi_fft(s.get(), 0), -1);
        EXPECT_EQ(dspi_fft(s.get(), 1), -1);
        EXPECT_EQ(dspi_rfft(s.get()), -1);
        EXPECT_EQ(dspi_bitrev(s.get()), -1);
        EXPECT_EQ(dspi_bitrev_scale(s.get()), -1);
        EXPECT_EQ(s.values(), x);
        EXPECT_EQ(s->complex, 0);
        EXPECT_EQ(s->delta, 0.25);
    }
    Record negative;
    negative->points = -4;
    EXPECT_EQ(dspi_fft(negative.get(), 0), -1);
    Record complex_input({1.0, 0.0, 2.0, 0.0}, true);
    EXPECT_EQ(dspi_rfft(complex_input.get()), -1);
    EXPECT_EQ(complex_input.values(), V({1.0, 0.0, 2.0, 0.0}));
}

TEST(FftEngine, SmallTransformsByHandAndTheSpacing)
{
    enum Op { kForward, kInverse, kReal, kRealInverse };
    struct Case {
        Op op;
        V x;
        bool complex_flag;
        double delta;
        V want;
        double want_delta;  // 1 / (N delta), 1e100 for delta 0
    };
    // [a, b] -> [(a+b)/2, (a-b)/2] forward, [a+b, a-b] inverse. [1, 2, 3, 4]:
    // sum 10, X1 = (1 - 3) + j(4 - 2) = -2 + 2j, X2 = -2, X3 = -2 - 2j; forward / 4.
    const Case cases[] = {
        {kForward, {3.5}, false, 0.25, {3.5}, 4.0},  // one point stays real
        {kForward, {3, 1}, false, 2.0, {2, 0, 1, 0}, 0.25},
        {kInverse, {1, 2, 5, -4}, true, 1.0, {6, -2, -4, 6}, 0.5},
        {kReal, {3, 1}, false, 0.5, {2, 0, 1, 0}, 1.0},
        {kReal, {-2}, false, 1.0, {-2, 0}, 1.0},
        {kForward, {1, 2, 3, 4}, false, 0.0, {2.5, 0, -0.5, 0.5, -0.5, 0, -0.5, -0.5}, 1e100},
        {kReal, {1, 2, 3, 4}, false, 0.125, {2.5, 0, -0.5, 0.5, -0.5, 0}, 2.0},
        {kRealInverse, {2.5, 0, -0.5, 0.5, -0.5, 0}, true, 2.0, {1, 2, 3, 4}, 0.125},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << (&c - cases));
        Record s(c.x, c.complex_flag, c.delta);
        const int32_t status = c.op == kForward  ? dspi_fft(s.get(), 0)
                               : c.op == kInverse ? dspi_fft(s.get(), 1)
                               : c.op == kReal    ? dspi_rfft(s.get())
                                                  : dspi_irfft(s.get());
        ASSERT_EQ(status, 0);
        EXPECT_EQ(s.values(), c.want);
        EXPECT_DOUBLE_EQ(s->delta, c.want_delta);
    }
}

TEST(FftEngine, BitReversalPermutesPointsAndScales)
{
    for (int bits : {0, 3, 5, 9}) {  // even and odd bit counts
        SCOPED_TRACE(bits);
        const int n = 1 << bits;
        V ramp(n), pairs(2 * n);
        for (int i = 0; i < n; ++i) {
            ramp[i] = i + 1;
            pairs[2 * i] = i + 1;
            pairs[2 * i + 1] = -i;
        }
        Record real(ramp, false, 3.0), real_scaled(ramp), pair(pairs, true), pair_scaled(pairs, true);
        ASSERT_EQ(dspi_bitrev(real.get()), 0);
        ASSERT_EQ(dspi_bitrev_scale(real_scaled.get()), 0);
        ASSERT_EQ(dspi_bitrev(pair.get()), 0);
        ASSERT_EQ(dspi_bitrev_scale(pair_scaled.get()), 0);
        EXPECT_EQ(real->delta, 3.0);
        for (int i = 0; i < n; ++i) {
            const int r = dsp_test::bit_reversed(i, bits);
            EXPECT_EQ(real->data[i], r + 1);
            EXPECT_EQ(real_scaled->data[i], (r + 1.0) / n);
            EXPECT_EQ(pair->data[2 * i], r + 1);
            EXPECT_EQ(pair->data[2 * i + 1], -r);
            EXPECT_EQ(pair_scaled->data[2 * i], (r + 1.0) / n);
            EXPECT_EQ(pair_scaled->data[2 * i + 1], -r / static_cast<double>(n));
        }
    }
}

TEST(FftEngine, PlainArrayWrapperTransformsComplexArraysOnly)
{
    const V x = dsp_test::uniform_values(32, 5, 1.0);
    V array = x;
    Record s(x, true);
    ASSERT_EQ(cf_dspi_fft(array.data(), 16, 1, 0), 0);
    ASSERT_EQ(dspi_fft(s.get(), 0), 0);
    EXPECT_EQ(array, s.values());
    ASSERT_EQ(cf_dspi_fft(array.data(), 16, 1, 1), 0);
    for (std::size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(array[i], x[i], 1e-15);

    V real = x;
    EXPECT_EQ(cf_dspi_fft(real.data(), 32, 0, 0), -1);
    EXPECT_EQ(real, x);
    EXPECT_EQ(cf_dspi_fft(array.data(), 12, 1, 0), -1);
    EXPECT_EQ(cf_dspi_fft(nullptr, 16, 1, 0), -1);
}
