// In-place mathematical functions: guard boundaries, complex rules, refusal
// of complex records.
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
const double kExpLimit = 230.25850929940458;
const double kLnTiny = -708.3964185322641;
const double kLog10Tiny = -307.6526555685888;
const double kTiny = 2.2250738585072014e-308;

double above(double x) { return std::nextafter(x, 1e308); }
double below(double x) { return std::nextafter(x, -1e308); }

V apply(int32_t (*f)(dsp *), const V &x, bool complex_flag = false)
{
    Record r(x, complex_flag);
    EXPECT_EQ(f(r.get()), 0);
    return r.values();
}

using Fn = int32_t (*)(dsp *);
}  // namespace

TEST(MathGuards, ExponentialAndHyperbolicArgumentsStopAtLnHuge)
{
    V e = apply(dspi_exp, {kExpLimit, above(kExpLimit), 0.0, -800.0});
    EXPECT_NEAR(e[0], 1e100, 1e87);  // the rounded limit lies a hair above ln 1e100
    EXPECT_EQ(e[1], 1e100);
    EXPECT_EQ(e[2], 1.0);
    EXPECT_EQ(e[3], 0.0);
    V c = apply(dspi_exp, {231, 0, 0, kPi, kExpLimit, kPi / 2}, true);
    EXPECT_EQ(c[0], 1e100);
    EXPECT_EQ(c[1], 0.0);
    EXPECT_EQ(c[2], -1.0);
    EXPECT_NEAR(c[3], 0.0, 1e-15);
    EXPECT_NEAR(c[5], 1e100, 1e87);  // at the limit: e^re itself

    V ch = apply(dspi_cosh, {kExpLimit, above(kExpLimit), -kExpLimit, below(-kExpLimit), kNaN, 0});
    EXPECT_NEAR(ch[0], 0.5e100, 1e86);
    EXPECT_EQ(ch[1], 1e100);
    EXPECT_NEAR(ch[2], 0.5e100, 1e86);
    EXPECT_EQ(ch[3], 1e100);
    EXPECT_EQ(ch[4], 1e100);
    EXPECT_EQ(ch[5], 1.0);
    V sh = apply(dspi_sinh, {kExpLimit, above(kExpLimit), -kExpLimit, below(-kExpLimit), kNaN});
    EXPECT_NEAR(sh[0], 0.5e100, 1e86);
    EXPECT_EQ(sh[1], 1e100);
    EXPECT_NEAR(sh[2], -0.5e100, 1e86);
    EXPECT_EQ(sh[3], -1e100);
    EXPECT_EQ(sh[4], -1e100);
    V th = apply(dspi_tanh, {0.5, -1000});
    EXPECT_NEAR(th[0], 0.46211715726000974, 1e-16);
    EXPECT_EQ(th[1], -1.0);
}

TEST(MathGuards, BaseTenExponentialStopsAtHugeNegativeValues)
{
    V x = apply(dspi_exp10, {2, 100, above(100.0), -1e100, -3});
    EXPECT_NEAR(x[0], 100.0, 1e-13);
    EXPECT_NEAR(x[1], 1e100, 1e87);
    EXPECT_EQ(x[2], 1e100);
    EXPECT_EQ(x[3], 0.0);
    EXPECT_NEAR(x[4], 1e-3, 1e-18);
    // A value below -1e100 (or NaN) and every later value are left as they are.
    EXPECT_EQ(apply(dspi_exp10, {2, -1e101, 3})[1], -1e101);
    EXPECT_EQ(apply(dspi_exp10, {2, -1e101, 3})[2], 3.0);
    V n = apply(dspi_exp10, {1, kNaN, 1});
    EXPECT_NEAR(n[0], 10.0, 1e-14);
    EXPECT_TRUE(std::isnan(n[1]));
    EXPECT_EQ(n[2], 1.0);
    EXPECT_EQ(apply(dspi_exp10, {below(-1e100), 2}), (V{below(-1e100), 2}));

    V c = apply(dspi_exp10, {-1e101, 0, 101, 0, 1, 0.5 / 2.302585092994046 * kPi, kNaN, 0}, true);
    EXPECT_EQ(c[0], -1e100);
    EXPECT_EQ(c[1], 0.0);
    EXPECT_EQ(c[2], 1e100);
    EXPECT_NEAR(c[4], 0.0, 1e-14);  // phase pi/2
    EXPECT_NEAR(c[5], 10.0, 1e-14);
    EXPECT_EQ(c[6], -1e100);
}

TEST(MathGuards, LogarithmsAreFlooredAtTheSmallestNormal)
{
    V x = apply(dspi_log, {std::exp(1.0), 0, -1, kNaN, kTiny, below(kTiny)});
    EXPECT_NEAR(x[0], 1.0, 1e-16);
    for (int i = 1; i < 6; ++i) EXPECT_EQ(x[i], kLnTiny) << i;
    V y = apply(dspi_log10, {1000, 0, -5, kNaN, 1e-300});
    EXPECT_NEAR(y[0], 3.0, 1e-15);
    EXPECT_EQ(y[1], kLog10Tiny);
    EXPECT_EQ(y[2], kLog10Tiny);
    EXPECT_EQ(y[3], kLog10Tiny);
    EXPECT_NEAR(y[4], -300.0, 1e-13);

    // Complex natural logarithm: |z|^2 exactly at the floor is kept, just
    // below it floors; huge parts take |z|^2 = 1e100 and clamped phase parts.
    const double root = std::sqrt(kTiny);  // 2^-511 exactly
    V c = apply(dspi_log, {root, 0, below(root), 0, -1, 0, 1e101, -1, kNaN, 1, 0, 0}, true);
    EXPECT_EQ(c[0], 0.5 * std::log(kTiny));
    EXPECT_EQ(c[1], 0.0);
    EXPECT_EQ(c[2], kLnTiny);
    EXPECT_EQ(c[3], 0.0);
    EXPECT_EQ(c[4], 0.0);
    EXPECT_NEAR(c[5], kPi, 1e-15);
    EXPECT_NEAR(c[6], 115.12925464970229, 1e-12);
    EXPECT_NEAR(c[7], -1e-100, 1e-115);
    EXPECT_NEAR(c[8], 115.12925464970229, 1e-12);
    EXPECT_NEAR(c[9], kPi, 1e-15);  // NaN real part clamps to -1e100
    EXPECT_EQ(c[10], kLnTiny);
    EXPECT_EQ(c[11], 0.0);

    V d = apply(dspi_log10, {0, 10, 1e101, 0, kNaN, 0, 0, 0}, true);
    EXPECT_NEAR(d[0], 1.0, 1e-15);
    EXPECT_NEAR(d[1], kPi / 2 * 0.4342944819032518, 1e-16);
    EXPECT_NEAR(d[2], 100.0, 1e-13);  // clamped to 1e100
    EXPECT_EQ(d[3], 0.0);
    EXPECT_NEAR(d[4], 100.0, 1e-13);  // NaN clamps to -1e100
    EXPECT_NEAR(d[5], kPi * 0.4342944819032518, 1e-15);
    EXPECT_EQ(d[6], kLog10Tiny);
    EXPECT_EQ(d[7], 0.0);
}

TEST(MathGuards, PowersRootsAndReciprocals)
{
    EXPECT_EQ(apply(dspi_sqrt, {16, -4, kNaN, 0}), (V{4, 0, 0, 0}));
    V r = apply(dspi_sqrt, {-4, 0, 3, 4, 0, 0, 1e101, 0}, true);
    EXPECT_NEAR(r[0], 0.0, 1e-15);
    EXPECT_EQ(r[1], 2.0);
    EXPECT_NEAR(r[2], 2.0, 1e-15);
    EXPECT_NEAR(r[3], 1.0, 1e-15);
    EXPECT_EQ(r[4], 0.0);
    EXPECT_EQ(r[5], 0.0);
    EXPECT_EQ(r[6], 1e50);  // magnitude taken as 1e100

    EXPECT_EQ(apply(dspi_square, {3, -1e100, above(1e100), below(-1e100), kNaN}), (V{9, 1e200, 1e100, 1e100, 1e100}));
    EXPECT_EQ(apply(dspi_square, {1, 1, 1e101, 0, kNaN, 1}, true), (V{0, 2, 1e200, 0, 1e200, -2e100}));

    V q = apply(dspi_recip, {4, 0, -0.5, 5e-324});
    EXPECT_EQ(V(q.begin(), q.begin() + 3), (V{0.25, 1e100, -2}));
    EXPECT_TRUE(std::isinf(q[3]));  // the reciprocal of a subnormal overflows
    V c = apply(dspi_recip, {0, 0, 0, 2, 1e101, 0, 3, 4}, true);
    EXPECT_EQ(c[0], 0.0);
    EXPECT_EQ(c[1], 0.0);
    EXPECT_TRUE(std::signbit(c[1]));  // 1e100 times -0
    EXPECT_EQ(c[2], 0.0);
    EXPECT_EQ(c[3], -0.5);
    EXPECT_EQ(c[4], 1e101 * 1e-100);  // |z|^2 taken as 1e100
    EXPECT_NEAR(c[6], 0.12, 1e-16);
    EXPECT_NEAR(c[7], -0.16, 1e-16);

    EXPECT_EQ(apply(dspi_neg, {1, -2, 0}), (V{-1, 2, -0.0}));
    EXPECT_EQ(apply(dspi_neg, {1, -2}, true), (V{-1, 2}));
    EXPECT_EQ(apply(dspi_abs, {-3, 2, -0.0}), (V{3, 2, 0}));
}

TEST(MathGuards, TrigonometricDomains)
{
    V a = apply(dspi_acos, {2, -1, 1, above(1.0), below(-1.0), 0.5});
    EXPECT_EQ(a[0], 0.0);
    EXPECT_NEAR(a[1], kPi, 1e-15);
    EXPECT_EQ(a[2], 0.0);
    EXPECT_EQ(a[3], 0.0);
    EXPECT_EQ(a[4], 0.0);
    EXPECT_NEAR(a[5], kPi / 3, 1e-15);
    V s = apply(dspi_asin, {1, -1, above(1.0), below(-1.0), 0.5});
    EXPECT_NEAR(s[0], kPi / 2, 1e-15);
    EXPECT_NEAR(s[1], -kPi / 2, 1e-15);
    EXPECT_EQ(s[2], 0.0);
    EXPECT_EQ(s[3], 0.0);
    EXPECT_NEAR(s[4], kPi / 6, 1e-15);
    V c = apply(dspi_sinc, {0, kPi / 2, kPi, -kPi / 2});
    EXPECT_EQ(c[0], 1.0);
    EXPECT_NEAR(c[1], 2 / kPi, 1e-16);
    EXPECT_NEAR(c[2], 0.0, 1e-16);
    EXPECT_NEAR(c[3], 2 / kPi, 1e-16);
    V t = apply(dspi_atan, {1, -1e300});
    EXPECT_NEAR(t[0], kPi / 4, 1e-16);
    EXPECT_NEAR(t[1], -kPi / 2, 1e-15);
    EXPECT_NEAR(apply(dspi_cos, {kPi / 3})[0], 0.5, 1e-15);
    EXPECT_NEAR(apply(dspi_sin, {kPi / 6})[0], 0.5, 1e-15);
    EXPECT_NEAR(apply(dspi_tan, {kPi / 4})[0], 1.0, 1e-15);
    EXPECT_TRUE(std::isnan(apply(dspi_cos, {kNaN})[0]));
}

TEST(MathGuards, BesselFunctionsOfTheFirstAndSecondKind)
{
    // Tabulated values at x = 1.
    EXPECT_NEAR(apply(dspi_besj0, {1})[0], 0.7651976865579666, 1e-15);
    EXPECT_NEAR(apply(dspi_besj1, {1})[0], 0.4400505857449335, 1e-15);
    EXPECT_NEAR(apply(dspi_besy0, {1})[0], 0.08825696421567696, 1e-15);
    EXPECT_NEAR(apply(dspi_besy1, {1})[0], -0.7812128213002887, 1e-15);
    // Y functions are 0 where they are not defined.
    EXPECT_EQ(apply(dspi_besy0, {0, -1, kNaN}), (V{0, 0, 0}));
    EXPECT_EQ(apply(dspi_besy1, {0, -1, kNaN}), (V{0, 0, 0}));
    // I0 stops at ln(1e100) either side, and for NaN.
    V i = apply(dspi_besi0, {0, kExpLimit, above(kExpLimit), -kExpLimit, below(-kExpLimit), kNaN});
    EXPECT_EQ(i[0], 1.0);
    EXPECT_GT(i[1], 1e98);
    EXPECT_LT(i[1], 1e100);
    EXPECT_EQ(i[2], 1e100);
    EXPECT_EQ(i[3], i[1]);
    EXPECT_EQ(i[4], 1e100);
    EXPECT_EQ(i[5], 1e100);
}

TEST(MathRefusals, RealOnlyMembersRefuseComplexRecordsAndFourAreNotProvided)
{
    const Fn real_only[] = {dspi_abs,  dspi_atan, dspi_cos,   dspi_sin,   dspi_tan,   dspi_tanh,
                            dspi_besj0, dspi_besj1, dspi_acos, dspi_asin, dspi_cosh, dspi_sinh,
                            dspi_sinc, dspi_besi0, dspi_besy0, dspi_besy1};
    for (Fn f : real_only) {
        Record c({0.5, 0.25, -1, 2}, true);
        EXPECT_EQ(f(c.get()), -1);
        EXPECT_EQ(c.values(), (V{0.5, 0.25, -1, 2}));
        Record empty;
        EXPECT_EQ(f(empty.get()), 0);
    }
    const Fn not_provided[] = {dspi_erf, dspi_erfc, dspi_gamma, dspi_lgamma};
    for (Fn f : not_provided) {
        Record r({0.5, 1}), c({0.5, 1}, true), empty;
        EXPECT_EQ(f(r.get()), -1);
        EXPECT_EQ(f(c.get()), -1);
        EXPECT_EQ(f(empty.get()), -1);
        EXPECT_EQ(r.values(), (V{0.5, 1}));
    }
    // Nothing changes the shape of a record.
    const Fn either[] = {dspi_neg, dspi_exp, dspi_exp10, dspi_log, dspi_log10, dspi_sqrt, dspi_square, dspi_recip};
    for (Fn f : either) {
        Record c({0.5, 0.25, -1, 2}, true, 0.125);
        EXPECT_EQ(f(c.get()), 0);
        EXPECT_EQ(c->points, 2);
        EXPECT_EQ(c->complex, 1);
        EXPECT_EQ(c->delta, 0.125);
    }
}
