// Point-by-point arithmetic of two records, checked against std::complex and
// long double evaluations of the same quantities.
#include "support/alloc_hooks.hpp"
#include "support/random_values.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <limits>
#include <tuple>
#include <vector>

using dsp_test::Record;
using V = std::vector<double>;
using C = std::complex<double>;

namespace {

V random_values(std::size_t n, unsigned seed) { return dsp_test::uniform_values(n, seed, 10.0); }

// Point i of an operand given as doubles (real when !complex_flag).
C point(const V &v, bool complex_flag, std::size_t i) { return complex_flag ? C(v[2 * i], v[2 * i + 1]) : C(v[i], 0.0); }

// Interleaved (re, im) pairs, or the real parts alone for a real result.
V flatten(const std::vector<C> &points, bool complex_flag)
{
    V out;
    for (C c : points) {
        out.push_back(c.real());
        if (complex_flag) out.push_back(c.imag());
    }
    return out;
}

using Binary = std::function<int32_t(const dsp *, const dsp *, dsp *)>;

struct Member {
    const char *name;
    Binary op;
};

const std::vector<Member> &element_members()
{
    static const std::vector<Member> members = {
        {"add", dspb_add},
        {"sub", dspb_sub},
        {"mul", dspb_mul},
        {"conj_mul", dspb_conj_mul},
        {"div", dspb_div},
        {"avg_add", [](const dsp *a, const dsp *b, dsp *r) { return dspb_avg_add(a, b, r, 0.3); }},
        {"min", dspb_min},
        {"max", dspb_max},
        {"inter", dspb_inter},
        {"pmul", dspb_pmul},
        {"dot", dspbs_dot},
        {"ritoc", dspb_ritoc},
    };
    return members;
}

// Status, values, points, complex flag and delta of a call's result.
using Outcome = std::tuple<int32_t, V, int32_t, int32_t, double>;
Outcome outcome(int32_t status, const Record &r) { return {status, r.values(), r->points, r->complex, r->delta}; }

}  // namespace

TEST(BinaryArith, AddSubMulAgreeWithComplexArithmeticForEveryMix)
{
    const std::size_t n = 9;
    for (int kinds = 0; kinds < 4; ++kinds) {
        const bool ca = kinds & 1, cb = kinds & 2;
        const V av = random_values(ca ? 2 * n : n, 11 + kinds), bv = random_values(cb ? 2 * n : n, 23 + kinds);
        Record a(av, ca, 1.0), b(bv, cb, 3.0);
        const std::string what = "kinds " + std::to_string(kinds);
        std::vector<C> sum, diff, prod, conj_prod;
        for (std::size_t i = 0; i < n; ++i) {
            const C x = point(av, ca, i), y = point(bv, cb, i);
            sum.push_back(x + y);
            diff.push_back(x - y);
            prod.push_back(x * y);
            conj_prod.push_back(x * std::conj(y));
        }
        // A real second operand has nothing to conjugate: the plain product.
        const std::pair<Binary, const std::vector<C> *> ops[] = {
            {dspb_add, &sum}, {dspb_sub, &diff}, {dspb_mul, &prod}, {dspb_conj_mul, &conj_prod}};
        for (const auto &op : ops) {
            Record r;
            ASSERT_EQ(op.first(a.get(), b.get(), r.get()), 0);
            EXPECT_EQ(r->delta, 2.0) << what;
            EXPECT_EQ(r->complex, kinds != 0 ? 1 : 0) << what;
            EXPECT_EQ(r.values(), flatten(*op.second, kinds != 0)) << what;
        }
    }
}

TEST(BinaryArith, AddAndSubZeroPadTheShorterOperand)
{
    Record shorter({1, 2, 3}, false, 1.0), longer({10, 20, 30, 40, 50}, false, 2.0), r;
    ASSERT_EQ(dspb_add(shorter.get(), longer.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{11, 22, 33, 40, 50}));
    EXPECT_EQ(r->delta, 1.5);
    ASSERT_EQ(dspb_sub(shorter.get(), longer.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{-9, -18, -27, -40, -50}));
    ASSERT_EQ(dspb_sub(longer.get(), shorter.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{9, 18, 27, 40, 50}));

    // Complex longer operand, real shorter one as the result.
    Record c({1, 1, 2, 2, 3, 3, 4, 4}, true);
    ASSERT_EQ(dspb_add(shorter.get(), c.get(), shorter.get()), 0);
    EXPECT_EQ(shorter.values(), (V{2, 1, 4, 2, 6, 3, 4, 4}));
    EXPECT_EQ(longer.values(), (V{10, 20, 30, 40, 50}));

    Record empty;
    ASSERT_EQ(dspb_sub(empty.get(), longer.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{-10, -20, -30, -40, -50}));

    for (const Member &m : element_members()) {
        const std::string name = m.name;
        if (name == "add" || name == "sub" || name == "pmul") continue;
        Record out({7, 8});
        EXPECT_EQ(m.op(shorter.get(), longer.get(), out.get()), -1) << name;
        EXPECT_EQ(out.values(), (V{7, 8})) << name;
    }
}

TEST(BinaryArith, DivisionByZeroGivesZeroOrHugeNeverInfinity)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        V dividend;
        bool dividend_complex;
        V divisor;
        bool divisor_complex;
        V expected;
    };
    // Zero, NaN and underflowing divisors never give an infinity: 0 for 0/0,
    // 1e100 in every part otherwise (even 0 over an underflowing complex divisor).
    for (const Case &c : std::vector<Case>{
             {{1, -1, 0, 6, nan}, false, {0, 0, 0, -4, 0}, false, {1e100, 1e100, 0, -1.5, 1e100}},
             {{3, 4, 0, 0, -0.0, 0, 6, -8}, true, {0, 0, 0, 2}, false, {1e100, 1e100, 0, 0, 0, 0, 3, -4}},
             {{-3, 4, 0, 0, 1, 1}, true, {0, 0, 0, 0, 1e-200, 0}, true, {1e100, 1e100, 0, 0, 1e100, 1e100}},
             {{2, 0, 5, -1, 0}, false, {0, 0, 0, 0, 0, 2, nan, 0, 1e-200, 0}, true,
              {1e100, 1e100, 0, 0, 0, -2.5, 1e100, 1e100, 1e100, 1e100}},
         }) {
        Record x(c.dividend, c.dividend_complex), y(c.divisor, c.divisor_complex), r;
        ASSERT_EQ(dspb_div(x.get(), y.get(), r.get()), 0);
        EXPECT_EQ(r.values(), c.expected);
    }

    // Non-zero quotients against long double complex division.
    const std::size_t n = 50;
    for (int kinds = 1; kinds < 4; ++kinds) {
        const bool c1 = kinds & 1, c2 = kinds & 2;
        const V av = random_values(c1 ? 2 * n : n, 5), bv = random_values(c2 ? 2 * n : n, 6);
        Record x(av, c1), y(bv, c2), out;
        ASSERT_EQ(dspb_div(x.get(), y.get(), out.get()), 0);
        for (std::size_t i = 0; i < n; ++i) {
            const C p = point(av, c1, i), d = point(bv, c2, i);
            const std::complex<long double> e =
                std::complex<long double>(p.real(), p.imag()) / std::complex<long double>(d.real(), d.imag());
            const double tol = 4e-16 * std::abs(std::complex<double>(e.real(), e.imag()));
            EXPECT_NEAR(out.values()[2 * i], static_cast<double>(e.real()), tol) << kinds << " " << i;
            EXPECT_NEAR(out.values()[2 * i + 1], static_cast<double>(e.imag()), tol) << kinds << " " << i;
        }
    }
}

TEST(BinaryArith, AverageAddMovesTheRunningAverageByTheWeight)
{
    struct Case {
        V fresh;
        bool fresh_complex;
        V average;
        bool average_complex;
        double weight;
        V expected;
    };
    // A real operand counts as imaginary part 0; the weight is not
    // range-checked: 2 extrapolates.
    for (const Case &c : std::vector<Case>{
             {{4, 8, -2}, false, {0, 8, 2}, false, 0.25, {1, 8, 1}},
             {{4, 8, 2, -2}, true, {0, 6}, false, 0.25, {1, 2, 5, -0.5}},
             {{4, 2}, false, {0, 8, 6, -4}, true, 0.25, {1, 6, 5, -3}},
             {{4, 8, 2, -2}, true, {0, 8, 6, -4}, true, 0.5, {2, 8, 4, -3}},
             {{4, 8, -2}, false, {0, 8, 2}, false, 2.0, {8, 8, -6}},
         }) {
        Record fresh(c.fresh, c.fresh_complex), avg(c.average, c.average_complex), r;
        ASSERT_EQ(dspb_avg_add(fresh.get(), avg.get(), r.get(), c.weight), 0);
        EXPECT_EQ(r.values(), c.expected);
    }
}

// Every member with its result being the first or the second operand gives
// exactly what it gives into a separate record, for every mix of kinds,
// including a real operand that turns complex while it is being read.
TEST(BinaryArith, InPlaceResultMatchesSeparateResultForEveryMember)
{
    const std::size_t n = 7;
    for (const Member &m : element_members()) {
        for (int kinds = 0; kinds < 4; ++kinds) {
            const bool ca = kinds & 1, cb = kinds & 2;
            const std::string what = std::string(m.name) + " kinds " + std::to_string(kinds);
            const V av = random_values(ca ? 2 * n : n, 100 + kinds), bv = random_values(cb ? 2 * n : n, 200 + kinds);
            Record a(av, ca, 0.5), b(bv, cb, 1.5), separate;
            const Outcome want = outcome(m.op(a.get(), b.get(), separate.get()), separate);
            if (std::string(m.name) == "ritoc" && kinds != 0) {
                EXPECT_EQ(std::get<0>(want), -1) << what;
                continue;
            }
            ASSERT_EQ(std::get<0>(want), 0) << what;
            // dspbs_dot keeps the result's own delta; all others set the mean.
            const bool keeps_delta = std::string(m.name) == "dot";
            for (bool into_second : {false, true}) {
                Record first(av, ca, 0.5), second(bv, cb, 1.5);
                Record &result = into_second ? second : first;
                Outcome got = outcome(m.op(first.get(), second.get(), result.get()), result);
                if (keeps_delta) {
                    EXPECT_EQ(std::get<4>(got), into_second ? 1.5 : 0.5) << what;
                    std::get<4>(got) = std::get<4>(want);
                }
                EXPECT_EQ(got, want) << what << (into_second ? " into second" : " into first");
                EXPECT_EQ((into_second ? first : second).values(), into_second ? av : bv) << what;
            }
            Record both(av, ca, 0.5);  // one record as both operands and the result
            Record alone(av, ca, 0.5), sep;
            const Outcome self = outcome(m.op(alone.get(), alone.get(), sep.get()), sep);
            Outcome got = outcome(m.op(both.get(), both.get(), both.get()), both);
            if (keeps_delta) std::get<4>(got) = std::get<4>(self);
            EXPECT_EQ(got, self) << what << " all one record";
        }
    }
}

TEST(BinaryArith, FailingGrowthReturnsMinusOneAndKeepsTheOperands)
{
    dsp_test::ScopedAllocHooks hooks;
    // How many growths can fail before the call succeeds; the operands are
    // checked unchanged after every attempt.
    const auto failures = [&hooks](const Member &m, const V &av, const V &bv, bool cb) {
        return dsp_test::for_each_failing_growth(hooks, [&](int k) {
            hooks.never_fail();
            Record a(av), b(bv, cb), r;
            hooks.fail_from(k);
            const int32_t status = m.op(a.get(), b.get(), r.get());
            hooks.never_fail();
            EXPECT_EQ(a.values(), av) << m.name;
            EXPECT_EQ(b.values(), bv) << m.name;
            EXPECT_TRUE(status == 0 || status == -1) << m.name;
            return status == 0;
        });
    };
    for (const Member &m : element_members()) {
        const std::string name = m.name;
        if (name == "ritoc") continue;
        EXPECT_EQ(failures(m, {1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}, false), 1) << name;
        // Padding: the copy, its growth and the result; product: the result.
        if (name == "add" || name == "sub" || name == "pmul") {
            EXPECT_EQ(failures(m, {1, 2, 3}, {1, 0, 2, 0, 3, 0, 4, 0, 5, 0}, true), name == "pmul" ? 1 : 3) << name;
        }
    }
}

TEST(BinaryArith, RepeatedCallsOfOneSizeAllocateNothing)
{
    Record a(random_values(64, 1), true), b(random_values(32, 2)), r;
    ASSERT_EQ(dspb_mul(a.get(), b.get(), r.get()), 0);
    dsp_test::ScopedAllocHooks hooks;
    for (const Member &m : element_members()) {
        if (std::string(m.name) == "ritoc") continue;
        Record out;
        ASSERT_EQ(m.op(a.get(), b.get(), out.get()), 0);
        hooks.reset_counts();
        ASSERT_EQ(m.op(a.get(), b.get(), out.get()), 0);
        EXPECT_EQ(hooks.counts().total(), 0) << m.name;
    }
}
