// The shared tolerant rounding and comparison, and the random source.
#include "core/numeric.hpp"
#include "core/random.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

using namespace dsp_core;

TEST(TolerantRounding, SlackBoundariesSaturationAndNaN)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double eps = 0x1p-52;
    struct Case {
        double x;
        int32_t ceil, floor;
    };
    for (const Case &c : std::vector<Case>{
             // A relative slack of about twenty units of 2^-52, and no more.
             {std::nextafter(3.0, 4.0), 3, 3},
             {std::nextafter(3.0, 2.0), 3, 3},
             {3.0 * (1 + 19 * eps), 3, 3},
             {3.0 * (1 + 24 * eps), 4, 3},
             {3.0 * (1 - 19 * eps), 3, 3},
             {3.0 * (1 - 24 * eps), 3, 2},
             {3.001, 4, 3},
             {2.999, 3, 2},
             {3.0, 3, 3},
             // Small values use an absolute slack.
             {0.0, 0, 0},
             {4.0e-15, 0, 0},
             {5.0e-15, 1, 0},
             {0.25, 1, 0},
             {1.0 - 4.0e-15, 1, 1},
             // Negatives and NaN give 0; large values saturate.
             {-0.5, 0, 0},
             {-7.0, 0, 0},
             {nan, 0, 0},
             {2147483646.5, 2147483647, 2147483646},
             {2147483647.0, 2147483647, 2147483647},
             {2147483647.5, 2147483647, 2147483647},
             {1e300, 2147483647, 2147483647},
         }) {
        EXPECT_EQ(tolerant_ceil(c.x), c.ceil) << c.x;
        EXPECT_EQ(tolerant_floor(c.x), c.floor) << c.x;
    }
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
