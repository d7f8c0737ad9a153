// The shared tolerant rounding and comparison, and the random source.
#include "core/numeric.hpp"
#include "core/random.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

using namespace dsp_core;

TEST(TolerantRounding, ForgivesTwentyUlpUnitsAndNoMore)
{
    const double three_up = std::nextafter(3.0, 4.0);     // 3 + 2 ulp-units of 2^-52 relative
    const double three_down = std::nextafter(3.0, 2.0);
    EXPECT_EQ(tolerant_ceil(three_up), 3);
    EXPECT_EQ(tolerant_floor(three_down), 3);
    EXPECT_EQ(tolerant_ceil(3.0 * (1 + 19 * 0x1p-52)), 3);
    EXPECT_EQ(tolerant_ceil(3.0 * (1 + 24 * 0x1p-52)), 4);
    EXPECT_EQ(tolerant_floor(3.0 * (1 - 19 * 0x1p-52)), 3);
    EXPECT_EQ(tolerant_floor(3.0 * (1 - 24 * 0x1p-52)), 2);
    EXPECT_EQ(tolerant_ceil(3.001), 4);
    EXPECT_EQ(tolerant_floor(2.999), 2);
    EXPECT_EQ(tolerant_ceil(3.0), 3);
    EXPECT_EQ(tolerant_floor(3.0), 3);
}

TEST(TolerantRounding, SmallValuesUseAnAbsoluteSlack)
{
    EXPECT_EQ(tolerant_ceil(0.0), 0);
    EXPECT_EQ(tolerant_ceil(4.0e-15), 0);
    EXPECT_EQ(tolerant_ceil(5.0e-15), 1);
    EXPECT_EQ(tolerant_ceil(0.5), 1);
    EXPECT_EQ(tolerant_floor(1.0 - 4.0e-15), 1);
    EXPECT_EQ(tolerant_floor(0.25), 0);
}

TEST(TolerantRounding, SaturationNegativesAndNaN)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(tolerant_ceil(-0.5), 0);
    EXPECT_EQ(tolerant_floor(-7.0), 0);
    EXPECT_EQ(tolerant_ceil(nan), 0);
    EXPECT_EQ(tolerant_floor(nan), 0);
    EXPECT_EQ(tolerant_ceil(2147483647.5), 0x7fffffff);
    EXPECT_EQ(tolerant_floor(1e300), 0x7fffffff);
    EXPECT_EQ(tolerant_ceil(2147483646.5), 2147483647);
    EXPECT_EQ(tolerant_floor(2147483647.0), 2147483647);
}

TEST(TolerantEquality, RatioWindowAndZeroBand)
{
    EXPECT_TRUE(tolerant_equal(1.0, 1.0));
    EXPECT_TRUE(tolerant_equal(1.0, 0.9999999999999956));
    EXPECT_TRUE(tolerant_equal(1.0, 1.0000000000000044));
    EXPECT_FALSE(tolerant_equal(1.0, std::nextafter(0.9999999999999956, 0.0)));
    EXPECT_FALSE(tolerant_equal(1.0, std::nextafter(1.0000000000000044, 2.0)));
    EXPECT_TRUE(tolerant_equal(-2.0, -2.0 * (1 + 10 * 0x1p-52)));
    EXPECT_FALSE(tolerant_equal(-2.0, 2.0));
    EXPECT_TRUE(tolerant_equal(0.0, 4.450147717014403e-307));  // the band is inclusive
    EXPECT_TRUE(tolerant_equal(-4.450147717014403e-307, 0.0));
    EXPECT_TRUE(tolerant_equal(-4.4e-307, 1e-320));
    EXPECT_FALSE(tolerant_equal(0.0, 4.46e-307));
    EXPECT_FALSE(tolerant_equal(1e-300, 0.0));
    EXPECT_FALSE(tolerant_equal(std::numeric_limits<double>::quiet_NaN(), 1.0));
}

TEST(RandomSource, ThirtyOneBitsFromThreeDraws)
{
    ensure_random_seeded();
    for (unsigned seed : {1u, 7u, 12345u}) {
        std::srand(seed);
        const int r1 = std::rand(), r2 = std::rand(), r3 = std::rand();
        const long expected = (static_cast<long>(r1 & 0x7fff) << 16) | (static_cast<long>(r2 & 1) << 15) | (r3 & 0x7fff);
        std::srand(seed);
        const int32_t got = random31();
        EXPECT_EQ(got, expected);
        EXPECT_GE(got, 0);
    }
}
