// In-place mathematical functions: guard boundaries, complex rules, refusal
// of complex records. Each row: function, input, expected output and a
// relative tolerance (absolute where 0 is expected); 0 asks for the exact
// value. An expected NaN asks for a NaN.
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using dsp_test::Record;
using V = std::vector<double>;

namespace {
const double kPi = 3.141592653589793;
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kExpLimit = 230.25850929940458;  // ln 1e100, rounded
const double kLnTiny = -708.3964185322641;
const double kLog10Tiny = -307.6526555685888;
const double kTiny = 2.2250738585072014e-308;
const double kLog10E = 0.4342944819032518;

double above(double x) { return std::nextafter(x, 1e308); }
double below(double x) { return std::nextafter(x, -1e308); }

using Fn = int32_t (*)(dsp *);

struct Case {
    const char *name;
    Fn f;
    bool complex_flag;
    V in, want;
    double tol;
};

void check(const std::vector<Case> &cases)
{
    for (const Case &c : cases) {
        Record r(c.in, c.complex_flag);
        ASSERT_EQ(c.f(r.get()), 0) << c.name;
        const V got = r.values();
        ASSERT_EQ(got.size(), c.want.size()) << c.name;
        for (std::size_t i = 0; i < got.size(); ++i) {
            const double w = c.want[i];
            if (std::isnan(w))
                EXPECT_TRUE(std::isnan(got[i])) << c.name << " [" << i << "]";
            else if (c.tol > 0)
                EXPECT_NEAR(got[i], w, w == 0 ? c.tol : c.tol * std::fabs(w)) << c.name << " [" << i << "]";
            else
                EXPECT_EQ(got[i], w) << c.name << " [" << i << "]";
        }
    }
}
}  // namespace

TEST(MathGuards, ExponentialAndHyperbolicArgumentsStopAtLnHuge)
{
    check({
        // The rounded limit lies a hair above ln 1e100: e^limit itself
        // (1.000000000000011e100) is taken there, only beyond it the cap.
        {"exp at limit", dspi_exp, false, {kExpLimit}, {std::exp(kExpLimit)}, 0},
        {"exp beyond", dspi_exp, false, {above(kExpLimit), 0.0, -800.0}, {1e100, 1, 0}, 0},
        {"cexp beyond", dspi_exp, true, {231, 0, 0, kPi}, {1e100, 0, -1, 0}, 1e-15},
        {"cexp at limit", dspi_exp, true, {kExpLimit, 0}, {std::exp(kExpLimit), 0}, 0},
        {"cosh at limits", dspi_cosh, false, {kExpLimit, -kExpLimit}, {0.5e100, 0.5e100}, 1e-13},
        {"cosh beyond", dspi_cosh, false, {above(kExpLimit), below(-kExpLimit), kNaN, 0}, {1e100, 1e100, 1e100, 1}, 0},
        {"sinh at limits", dspi_sinh, false, {kExpLimit, -kExpLimit}, {0.5e100, -0.5e100}, 1e-13},
        {"sinh beyond", dspi_sinh, false, {above(kExpLimit), below(-kExpLimit), kNaN}, {1e100, -1e100, -1e100}, 0},
        {"tanh", dspi_tanh, false, {0.5, -1000}, {0.46211715726000974, -1}, 1e-15},
        {"exp10", dspi_exp10, false, {2, -3}, {100, 1e-3}, 1e-14},
        {"exp10 at limit", dspi_exp10, false, {100}, {1e100}, 1e-13},
        {"exp10 beyond", dspi_exp10, false, {above(100.0), -1e100}, {1e100, 0}, 0},
        // A value below -1e100 (or NaN) and every later value are left as they are.
        {"exp10 stops", dspi_exp10, false, {2, -1e101, 3}, {100, -1e101, 3}, 1e-14},
        {"exp10 NaN stops", dspi_exp10, false, {1, kNaN, 1}, {10, kNaN, 1}, 1e-14},
        {"exp10 stops at once", dspi_exp10, false, {below(-1e100), 2}, {below(-1e100), 2}, 0},
        {"cexp10 caps", dspi_exp10, true, {-1e101, 0, 101, 0, kNaN, 0}, {-1e100, 0, 1e100, 0, -1e100, 0}, 0},
        {"cexp10 phase", dspi_exp10, true, {1, 0.5 / 2.302585092994046 * kPi}, {0, 10}, 1e-14},
    });
}

TEST(MathGuards, LogarithmsAreFlooredAtTheSmallestNormal)
{
    // Complex natural logarithm: |z|^2 exactly at the floor is kept, just
    // below it floors; huge parts take |z|^2 = 1e100 and clamped phase parts.
    const double root = std::sqrt(kTiny);  // 2^-511 exactly
    check({
        {"log", dspi_log, false, {std::exp(1.0)}, {1}, 1e-15},
        {"log floor", dspi_log, false, {0, -1, kNaN, kTiny, below(kTiny)}, {kLnTiny, kLnTiny, kLnTiny, kLnTiny, kLnTiny}, 0},
        {"log10", dspi_log10, false, {1000, 1e-300}, {3, -300}, 1e-15},
        {"log10 floor", dspi_log10, false, {0, -5, kNaN}, {kLog10Tiny, kLog10Tiny, kLog10Tiny}, 0},
        {"clog floor", dspi_log, true, {root, 0, below(root), 0, 0, 0}, {0.5 * std::log(kTiny), 0, kLnTiny, 0, kLnTiny, 0}, 0},
        // A NaN real part clamps to -1e100.
        {"clog", dspi_log, true, {-1, 0, 1e101, -1, kNaN, 1}, {0, kPi, 115.12925464970229, -1e-100, 115.12925464970229, kPi}, 1e-14},
        {"clog10", dspi_log10, true, {0, 10, 1e101, 0, kNaN, 0}, {1, kPi / 2 * kLog10E, 100, 0, 100, kPi * kLog10E}, 1e-14},
        {"clog10 floor", dspi_log10, true, {0, 0}, {kLog10Tiny, 0}, 0},
    });
}

TEST(MathGuards, PowersRootsAndReciprocals)
{
    check({
        {"sqrt", dspi_sqrt, false, {16, -4, kNaN, 0}, {4, 0, 0, 0}, 0},
        {"csqrt", dspi_sqrt, true, {-4, 0, 3, 4}, {0, 2, 2, 1}, 1e-15},
        {"csqrt exact", dspi_sqrt, true, {0, 0, 1e101, 0}, {0, 0, 1e50, 0}, 0},  // |z| taken as 1e100
        {"square", dspi_square, false, {3, -1e100, above(1e100), below(-1e100), kNaN}, {9, 1e200, 1e100, 1e100, 1e100}, 0},
        {"csquare", dspi_square, true, {1, 1, 1e101, 0, kNaN, 1}, {0, 2, 1e200, 0, 1e200, -2e100}, 0},
        {"recip", dspi_recip, false, {4, 0, -0.5}, {0.25, 1e100, -2}, 0},
        {"crecip", dspi_recip, true, {0, 0, 0, 2, 1e101, 0}, {0, 0, 0, -0.5, 1e101 * 1e-100, 0}, 0},
        {"crecip 3+4i", dspi_recip, true, {3, 4}, {0.12, -0.16}, 1e-15},
        {"neg", dspi_neg, false, {1, -2, 0}, {-1, 2, -0.0}, 0},
        {"cneg", dspi_neg, true, {1, -2}, {-1, 2}, 0},
        {"abs", dspi_abs, false, {-3, 2, -0.0}, {3, 2, 0}, 0},
    });
    Record sub({5e-324}), zero({0, 0}, true);
    ASSERT_EQ(dspi_recip(sub.get()), 0);
    EXPECT_TRUE(std::isinf(sub->data[0]));  // the reciprocal of a subnormal overflows
    ASSERT_EQ(dspi_recip(zero.get()), 0);
    EXPECT_TRUE(std::signbit(zero->data[1]));  // 1e100 times -0
}

TEST(MathGuards, TrigonometricDomainsAndBessel)
{
    check({
        // Outside [-1, 1] the inverse functions give 0; |x| = 1 itself is inside.
        {"acos", dspi_acos, false, {2, -1, 1, above(1.0), below(-1.0), 0.5}, {0, kPi, 0, 0, 0, kPi / 3}, 1e-15},
        {"asin", dspi_asin, false, {1, -1, above(1.0), below(-1.0), 0.5}, {kPi / 2, -kPi / 2, 0, 0, kPi / 6}, 1e-15},
        {"sinc", dspi_sinc, false, {0, kPi / 2, kPi, -kPi / 2}, {1, 2 / kPi, 0, 2 / kPi}, 1e-15},
        {"atan", dspi_atan, false, {1, -1e300}, {kPi / 4, -kPi / 2}, 1e-15},
        {"cos", dspi_cos, false, {kPi / 3}, {0.5}, 1e-15},
        {"sin", dspi_sin, false, {kPi / 6}, {0.5}, 1e-15},
        {"tan", dspi_tan, false, {kPi / 4}, {1}, 1e-15},
        // Tabulated values at x = 1; Y functions are 0 where they are not defined.
        {"j0", dspi_besj0, false, {1}, {0.7651976865579666}, 1e-15},
        {"j1", dspi_besj1, false, {1}, {0.4400505857449335}, 1e-15},
        {"y0", dspi_besy0, false, {1, 0, -1, kNaN}, {0.08825696421567696, 0, 0, 0}, 1e-14},
        {"y1", dspi_besy1, false, {1, 0, -1, kNaN}, {-0.7812128213002887, 0, 0, 0}, 1e-15},
        // I0 stops beyond ln(1e100) either side, and for NaN.
        {"i0 caps", dspi_besi0, false, {0, above(kExpLimit), below(-kExpLimit), kNaN}, {1, 1e100, 1e100, 1e100}, 0},
    });
    Record i0({kExpLimit, -kExpLimit});
    ASSERT_EQ(dspi_besi0(i0.get()), 0);
    EXPECT_GT(i0->data[0], 1e98);
    EXPECT_LT(i0->data[0], 1e100);
    EXPECT_EQ(i0->data[1], i0->data[0]);
}

TEST(MathRefusals, RealOnlyMembersRefuseComplexRecordsAndFourAreNotProvided)
{
    const Fn real_only[] = {dspi_abs,  dspi_atan, dspi_cos,   dspi_sin,   dspi_tan,   dspi_tanh,
                            dspi_besj0, dspi_besj1, dspi_acos, dspi_asin, dspi_cosh, dspi_sinh,
                            dspi_sinc, dspi_besi0, dspi_besy0, dspi_besy1};
    for (Fn f : real_only) {
        Record c({0.5, 0.25, -1, 2}, true), empty;
        EXPECT_EQ(f(c.get()), -1);
        EXPECT_EQ(c.values(), (V{0.5, 0.25, -1, 2}));
        EXPECT_EQ(f(empty.get()), 0);
    }
    for (Fn f : {dspi_erf, dspi_erfc, dspi_gamma, dspi_lgamma}) {
        Record r({0.5, 1}), c({0.5, 1}, true), empty;
        EXPECT_EQ(f(r.get()), -1);
        EXPECT_EQ(f(c.get()), -1);
        EXPECT_EQ(f(empty.get()), -1);
        EXPECT_EQ(r.values(), (V{0.5, 1}));
    }
    // Nothing changes the shape of a record.
    for (Fn f : {dspi_neg, dspi_exp, dspi_exp10, dspi_log, dspi_log10, dspi_sqrt, dspi_square, dspi_recip}) {
        Record c({0.5, 0.25, -1, 2}, true, 0.125);
        EXPECT_EQ(f(c.get()), 0);
        EXPECT_EQ(c->points, 2);
        EXPECT_EQ(c->complex, 1);
        EXPECT_EQ(c->delta, 0.125);
    }
}
