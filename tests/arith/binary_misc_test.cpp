// Selection, building, interleaving, polynomial and dot products of two
// records, against hand-derived cases and long double evaluations.
#include "support/random_values.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using dsp_test::Record;
using V = std::vector<double>;

namespace {
const double kNaN = std::numeric_limits<double>::quiet_NaN();

V random_values(std::size_t n, unsigned seed) { return dsp_test::uniform_values(n, seed, 4.0); }

}  // namespace

TEST(BinarySelect, RealValuesAndTies)
{
    // min takes the second only when first >= second, max the first only
    // when first > second: a NaN on either side gives min the first and max
    // the second.
    Record a({1, 5, 3, -2, kNaN, 4}), b({2, 4, 3, -1, 0, kNaN}), r;
    ASSERT_EQ(dspb_min(a.get(), b.get(), r.get()), 0);
    EXPECT_PRED2(dsp_test::same_values, r.values(), (V{1, 4, 3, -2, kNaN, 4}));
    ASSERT_EQ(dspb_max(a.get(), b.get(), r.get()), 0);
    EXPECT_PRED2(dsp_test::same_values, r.values(), (V{2, 5, 3, -1, 0, kNaN}));
}

TEST(BinarySelect, ComplexPointsByCappedSquaredMagnitude)
{
    Record a({3, 4, 5, 0, 1, 1, 2e100, 0, 1e100, 0}, true);
    Record b({5, 0, 3, 4, 0, -2, 1e100, 1e100, 1e99, 0}, true);
    Record r;
    ASSERT_EQ(dspb_min(a.get(), b.get(), r.get()), 0);
    // Equal magnitudes go to the second operand both ways round. A part
    // beyond 1e100 caps the squared magnitude at 1e100, so (2e100, 0) ranks
    // below (1e100, 1e100), whose squared magnitude 2e200 is not capped.
    EXPECT_EQ(r.values(), (V{5, 0, 3, 4, 1, 1, 2e100, 0, 1e99, 0}));
    ASSERT_EQ(dspb_max(a.get(), b.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{5, 0, 3, 4, 0, -2, 1e100, 1e100, 1e100, 0}));

    // A real operand is a point with imaginary part 0; a NaN part counts as
    // squared magnitude 1e100, below the 1e198 of (1e99, 0).
    Record re({-6, 2, kNaN}), c({0, 5, 1, 1, 1e99, 0}, true);
    ASSERT_EQ(dspb_min(re.get(), c.get(), r.get()), 0);
    EXPECT_PRED2(dsp_test::same_values, r.values(), (V{0, 5, 1, 1, kNaN, 0}));
    ASSERT_EQ(dspb_max(re.get(), c.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{-6, 0, 2, 0, 1e99, 0}));
}

TEST(BinaryBuild, RealAndImaginaryPartsMakeAComplexRecord)
{
    Record re({1, 2, 3}, false, 1.0), im({-1, -2, -3}, false, 2.0), r;
    ASSERT_EQ(dspb_ritoc(re.get(), im.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{1, -1, 2, -2, 3, -3}));
    EXPECT_EQ(r->delta, 1.5);
    EXPECT_EQ(r->complex, 1);
    ASSERT_EQ(dspb_ritoc(re.get(), im.get(), im.get()), 0);  // grows in place
    EXPECT_EQ(im.values(), (V{1, -1, 2, -2, 3, -3}));
    Record out({9});
    EXPECT_EQ(dspb_ritoc(re.get(), im.get(), out.get()), -1);  // complex input
    Record shorter({1, 2});
    EXPECT_EQ(dspb_ritoc(re.get(), shorter.get(), out.get()), -1);
    EXPECT_EQ(out.values(), (V{9}));
}

TEST(BinaryBuild, InterleavingHalvesTheSpacing)
{
    Record a({1, 2, 3}, false, 1.0), b({10, 20, 30}, false, 1.0), r;
    ASSERT_EQ(dspb_inter(a.get(), b.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{1, 10, 2, 20, 3, 30}));
    EXPECT_EQ(r->delta, 0.5);
    EXPECT_EQ(r->points, 6);
    Record c({5, 6, 7, 8, 9, 10}, true, 3.0);
    ASSERT_EQ(dspb_inter(a.get(), c.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{1, 0, 5, 6, 2, 0, 7, 8, 3, 0, 9, 10}));
    EXPECT_EQ(r->delta, 1.0);
    Record d({1, 2});
    EXPECT_EQ(dspb_inter(a.get(), d.get(), r.get()), -1);
}

TEST(BinaryProducts, PolynomialProductIsTheFullConvolution)
{
    Record p({1, 1}), empty, r;
    ASSERT_EQ(dspb_pmul(p.get(), empty.get(), r.get()), 0);
    EXPECT_EQ(r->points, 0);

    // (x - i)(x + i) = x^2 + 1 with ascending coefficients.
    Record f({-0.0, -1, 1, 0}, true), g({0, 1, 1, 0}, true);
    ASSERT_EQ(dspb_pmul(f.get(), g.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{1, 0, 0, 0, 1, 0}));

    // Longer random operands against a long double convolution.
    const V a = random_values(37, 3), b = random_values(2 * 19, 4);
    Record ra(a), cb(b, true);
    ASSERT_EQ(dspb_pmul(ra.get(), cb.get(), r.get()), 0);
    ASSERT_EQ(r->points, 37 + 19 - 1);
    for (std::size_t k = 0; k < 55; ++k) {
        long double re = 0, im = 0;
        for (std::size_t i = 0; i < 37; ++i) {
            if (k < i || k - i >= 19) continue;
            re += static_cast<long double>(a[i]) * b[2 * (k - i)];
            im += static_cast<long double>(a[i]) * b[2 * (k - i) + 1];
        }
        EXPECT_NEAR(r.values()[2 * k], static_cast<double>(re), 1e-13) << k;
        EXPECT_NEAR(r.values()[2 * k + 1], static_cast<double>(im), 1e-13) << k;
    }
}

TEST(BinaryProducts, DotProductSumsWithoutConjugation)
{
    Record i({0, 1}, true), r;
    ASSERT_EQ(dspbs_dot(i.get(), i.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{-1, 0}));
    Record empty, e2, out({5, 6});
    out->delta = 7.0;
    ASSERT_EQ(dspbs_dot(empty.get(), e2.get(), out.get()), 0);
    EXPECT_EQ(out.values(), (V{0}));
    EXPECT_EQ(out->delta, 7.0);  // delta is left as it was

    const V a = random_values(1000, 8), b = random_values(1000, 9);
    Record ra(a), rb(b);
    ASSERT_EQ(dspbs_dot(ra.get(), rb.get(), r.get()), 0);
    long double sum = 0;
    for (std::size_t k = 0; k < a.size(); ++k) sum += static_cast<long double>(a[k]) * b[k];
    EXPECT_NEAR(r.values()[0], static_cast<double>(sum), 1e-11);
    Record shorter({1});
    EXPECT_EQ(dspbs_dot(ra.get(), shorter.get(), r.get()), -1);
}
