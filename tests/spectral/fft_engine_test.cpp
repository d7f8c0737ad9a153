// The transforms' contract on small hand-checked cases: lengths, scaling,
// the spacing update, bit reversal and the plain-array wrapper.
#include "support/dft_oracle.hpp"
#include "spectral/fft_engine.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <vector>

using dsp_test::Record;

TEST(FftEngine, LengthsThatAreNotPowersOfTwoFailAndLeaveTheSignal)
{
    for (int32_t n : {0, 3, 6, 12}) {
        SCOPED_TRACE(n);
        const std::vector<double> x = dsp_test::random_values(static_cast<std::size_t>(n), 1);
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
}

TEST(FftEngine, OneAndTwoPointsFollowTheDefinition)
{
    Record one({3.5}, false, 0.25);
    ASSERT_EQ(dspi_fft(one.get(), 0), 0);
    EXPECT_EQ(one->complex, 0);
    EXPECT_EQ(one.values(), std::vector<double>({3.5}));
    EXPECT_EQ(one->delta, 4.0);

    // [a, b] -> [(a+b)/2, (a-b)/2] forward, [a+b, a-b] inverse.
    Record two({3.0, 1.0}, false, 2.0);
    ASSERT_EQ(dspi_fft(two.get(), 0), 0);
    EXPECT_EQ(two->complex, 1);
    EXPECT_EQ(two.values(), std::vector<double>({2.0, 0.0, 1.0, 0.0}));
    EXPECT_EQ(two->delta, 0.25);
    Record pair({1.0, 2.0, 5.0, -4.0}, true);
    ASSERT_EQ(dspi_fft(pair.get(), 1), 0);
    EXPECT_EQ(pair.values(), std::vector<double>({6.0, -2.0, -4.0, 6.0}));

    Record real_two({3.0, 1.0}, false, 0.5);
    ASSERT_EQ(dspi_rfft(real_two.get()), 0);
    EXPECT_EQ(real_two->points, 2);
    EXPECT_EQ(real_two.values(), std::vector<double>({2.0, 0.0, 1.0, 0.0}));
    EXPECT_EQ(real_two->delta, 1.0);
    Record real_one({-2.0});
    ASSERT_EQ(dspi_rfft(real_one.get()), 0);
    EXPECT_EQ(real_one->complex, 1);
    EXPECT_EQ(real_one.values(), std::vector<double>({-2.0, 0.0}));
}

TEST(FftEngine, FourPointsByHandAndTheSpacing)
{
    // x = [1, 2, 3, 4]: sum 10, X1 = (1 - 3) + j(4 - 2) = -2 + 2j, X2 = -2, X3 = -2 - 2j; forward / 4.
    Record s({1.0, 2.0, 3.0, 4.0}, false, 0.0);
    ASSERT_EQ(dspi_fft(s.get(), 0), 0);
    EXPECT_EQ(s.values(), std::vector<double>({2.5, 0.0, -0.5, 0.5, -0.5, 0.0, -0.5, -0.5}));
    EXPECT_EQ(s->delta, 1e100);
    Record r({1.0, 2.0, 3.0, 4.0}, false, 0.125);
    ASSERT_EQ(dspi_rfft(r.get()), 0);
    EXPECT_EQ(r.values(), std::vector<double>({2.5, 0.0, -0.5, 0.5, -0.5, 0.0}));
    EXPECT_EQ(r->delta, 2.0);
    ASSERT_EQ(dspi_irfft(r.get()), 0);
    EXPECT_EQ(r.values(), std::vector<double>({1.0, 2.0, 3.0, 4.0}));
}

TEST(FftEngine, ForwardThenInverseRestoresDataAndSpacing)
{
    for (int32_t n : {4, 8, 64, 1024}) {
        SCOPED_TRACE(n);
        const std::vector<double> x = dsp_test::random_values(2 * static_cast<std::size_t>(n), 7);
        Record s(x, true, 0.003);
        ASSERT_EQ(dspi_fft(s.get(), 0), 0);
        EXPECT_DOUBLE_EQ(s->delta, 1.0 / (n * 0.003));
        ASSERT_EQ(dspi_fft(s.get(), 1), 0);
        EXPECT_DOUBLE_EQ(s->delta, 0.003);
        const std::vector<double> y = s.values();
        for (std::size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(y[i], x[i], 1e-14);

        Record r(std::vector<double>(x.begin(), x.begin() + n));
        ASSERT_EQ(dspi_rfft(r.get()), 0);
        EXPECT_EQ(r->points, n / 2 + 1);
        ASSERT_EQ(dspi_irfft(r.get()), 0);
        ASSERT_EQ(r->points, n);
        for (int32_t i = 0; i < n; ++i) EXPECT_NEAR(r->data[i], x[i], 1e-14);
    }
    Record complex_input({1.0, 0.0, 2.0, 0.0}, true);
    EXPECT_EQ(dspi_rfft(complex_input.get()), -1);
    EXPECT_EQ(complex_input.values(), std::vector<double>({1.0, 0.0, 2.0, 0.0}));
}

TEST(FftEngine, BitReversalPermutesPointsAndScales)
{
    Record real({0, 1, 2, 3, 4, 5, 6, 7}, false, 3.0);
    ASSERT_EQ(dspi_bitrev(real.get()), 0);
    EXPECT_EQ(real.values(), std::vector<double>({0, 4, 2, 6, 1, 5, 3, 7}));
    EXPECT_EQ(real->delta, 3.0);
    // 32 points (an odd bit count): index b4..b0 goes to b0..b4.
    std::vector<double> ramp(32), pairs(64);
    for (int i = 0; i < 32; ++i) {
        ramp[i] = i;
        pairs[2 * i] = i;
        pairs[2 * i + 1] = -i;
    }
    Record odd(ramp), complex_odd(pairs, true);
    ASSERT_EQ(dspi_bitrev_scale(odd.get()), 0);
    ASSERT_EQ(dspi_bitrev(complex_odd.get()), 0);
    for (int i = 0; i < 32; ++i) {
        int r = 0;
        for (int b = 0; b < 5; ++b) r |= ((i >> b) & 1) << (4 - b);
        EXPECT_EQ(odd->data[i], r / 32.0);
        EXPECT_EQ(complex_odd->data[2 * i], r);
        EXPECT_EQ(complex_odd->data[2 * i + 1], -r);
    }
    // Twice: the identity, or the input divided by N^2.
    const std::vector<double> x = dsp_test::random_values(2 * 512, 3);
    Record twice(x, true), scaled(x, true);
    for (int k = 0; k < 2; ++k) {
        ASSERT_EQ(dspi_bitrev(twice.get()), 0);
        ASSERT_EQ(dspi_bitrev_scale(scaled.get()), 0);
    }
    EXPECT_EQ(twice.values(), x);
    for (std::size_t i = 0; i < x.size(); ++i) EXPECT_EQ(scaled->data[i], x[i] / (512.0 * 512.0));
    Record single({9.0});
    EXPECT_EQ(dspi_bitrev_scale(single.get()), 0);
    EXPECT_EQ(single.values(), std::vector<double>({9.0}));
}

TEST(FftEngine, VectorPermutationMatchesItsPortableTwin)
{
    for (int bits = 2; bits <= 13; ++bits) {
        SCOPED_TRACE(bits);
        dsp_spectral::BitrevTables t;
        ASSERT_TRUE(dsp_spectral::bitrev_tables(bits, t));
        const std::vector<double> x = dsp_test::random_values(std::size_t{2} << bits, 11);
        std::vector<double> a = x, b = x, c = x, d = x;
        dsp_spectral::bit_reverse(a.data(), 2, t);
        dsp_spectral::bit_reverse_portable(b.data(), 2, t);
        dsp_spectral::bit_reverse_scaled(c.data(), 2, t, 0.1);
        dsp_spectral::bit_reverse_scaled_portable(d.data(), 2, t, 0.1);
        EXPECT_EQ(a, b);
        EXPECT_EQ(c, d);
        EXPECT_NE(a, x);
    }
}

TEST(FftEngine, PlainArrayWrapperTransformsComplexArraysOnly)
{
    const std::vector<double> x = dsp_test::random_values(32, 5);
    std::vector<double> array = x;
    Record s(x, true);
    ASSERT_EQ(cf_dspi_fft(array.data(), 16, 1, 0), 0);
    ASSERT_EQ(dspi_fft(s.get(), 0), 0);
    EXPECT_EQ(array, s.values());
    ASSERT_EQ(cf_dspi_fft(array.data(), 16, 1, 1), 0);
    for (std::size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(array[i], x[i], 1e-15);

    std::vector<double> real = x;
    EXPECT_EQ(cf_dspi_fft(real.data(), 32, 0, 0), -1);
    EXPECT_EQ(real, x);
    EXPECT_EQ(cf_dspi_fft(array.data(), 12, 1, 0), -1);
    EXPECT_EQ(cf_dspi_fft(nullptr, 16, 1, 0), -1);
}
