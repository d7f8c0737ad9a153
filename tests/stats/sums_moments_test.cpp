// Sums, means, variances and higher moments against long double oracles and
// closed forms.
#include "support/alloc_hooks.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

using dsp_test::Record;
using V = std::vector<double>;

namespace {

V random_values(std::size_t n, unsigned seed, double offset = 0.0)
{
    std::mt19937 gen(seed);
    std::normal_distribution<double> dist(0.0, 3.0);
    V v(n);
    for (double &x : v) x = offset + dist(gen) * (1.0 + 0.3 * std::sin(0.01 * x));
    return v;
}

double scalar(int32_t (*f)(const dsp *, dsp *), const V &x, bool complex_flag = false)
{
    Record s(x, complex_flag), r;
    EXPECT_EQ(f(s.get(), r.get()), 0);
    EXPECT_EQ(r->points, 1);
    return r->data[0];
}

// Central moments of real data in long double.
struct Moments {
    long double mean, m2, m3, m4;
};

Moments moments_of(const V &x)
{
    long double s = 0;
    for (double v : x) s += v;
    const long double mean = s / x.size();
    Moments m{mean, 0, 0, 0};
    for (double v : x) {
        const long double d = v - mean;
        m.m2 += d * d;
        m.m3 += d * d * d;
        m.m4 += d * d * d * d;
    }
    m.m2 /= x.size();
    m.m3 /= x.size();
    m.m4 /= x.size();
    return m;
}

}  // namespace

TEST(StatsSums, BlockSummationKeepsLongSumsAccurate)
{
    EXPECT_EQ(scalar(dsps_sum, V(5000, 1.0)), 5000.0);
    // A million tenths: the naive running sum drifts, the block sum does not.
    const V tenths(1000000, 0.1);
    const long double exact = 1000000.0L * static_cast<long double>(0.1);
    double naive = 0;
    for (double v : tenths) naive += v;
    const double blocked = scalar(dsps_sum, tenths);
    EXPECT_LT(std::fabs(blocked - exact), std::fabs(naive - exact) / 50) << naive << " " << blocked;

    const V c = random_values(2 * 7000, 3, 5.0);
    Record s(c, true), r;
    ASSERT_EQ(dsps_sum(s.get(), r.get()), 0);
    long double re = 0, im = 0;
    for (std::size_t i = 0; i < 7000; ++i) {
        re += c[2 * i];
        im += c[2 * i + 1];
    }
    EXPECT_EQ(r->complex, 1);
    EXPECT_NEAR(r.values()[0], static_cast<double>(re), 1e-10);
    EXPECT_NEAR(r.values()[1], static_cast<double>(im), 1e-10);
    ASSERT_EQ(dsps_mean(s.get(), r.get()), 0);
    EXPECT_NEAR(r.values()[0], static_cast<double>(re / 7000), 1e-14);

    Record pair({1, 1, 3, -1}, true);
    ASSERT_EQ(dsps_mean(pair.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{2, 0}));
}

TEST(StatsSums, SquaredMagnitudesAndRms)
{
    EXPECT_EQ(scalar(dsps_magsq_sum, {3, 4, 0, 1, 1e101, 0}, true), 26.0 + 1e100);
    EXPECT_EQ(scalar(dsps_magsq_sum, {-2, 1e101}), 4.0 + 1e100);
    EXPECT_EQ(scalar(dsps_rms, {3, 4, 0, 0}, true), std::sqrt(12.5));
    const V x = random_values(4097, 5);
    long double s = 0;
    for (double v : x) s += static_cast<long double>(v) * v;
    EXPECT_NEAR(scalar(dsps_rms, x), std::sqrt(static_cast<double>(s / 4097)), 1e-14);
}

TEST(StatsMoments, VarianceFromShiftedSums)
{
    EXPECT_EQ(scalar(dsps_pop_var, {1, 2, 3, 4}), 1.25);
    EXPECT_EQ(scalar(dsps_samp_var, {1, 2, 3, 4}), 1.6666666666666667);
    EXPECT_EQ(scalar(dsps_pop_var, {7}), 0.0);
    EXPECT_EQ(scalar(dsps_samp_var, {7}), 0.0);
    EXPECT_EQ(scalar(dsps_pop_stddev, {1, 3}), 1.0);
    EXPECT_EQ(scalar(dsps_samp_stddev, {1, 3}), std::sqrt(2.0));
    // Complex: the variance of the values, (|z - mean|^2) averaged.
    EXPECT_NEAR(scalar(dsps_pop_var, {1, 1, 3, -1}, true), 2.0, 1e-15);
    // A large offset: the shift keeps the sums small.
    EXPECT_NEAR(scalar(dsps_pop_var, {1e9 + 1, 1e9 + 2, 1e9 + 3, 1e9 + 4}), 1.25, 1e-6);

    for (double offset : {0.0, 1e6}) {
        const V x = random_values(6001, 7, offset);
        const Moments m = moments_of(x);
        const double var = static_cast<double>(m.m2);
        EXPECT_NEAR(scalar(dsps_pop_var, x), var, var * 1e-9);
        EXPECT_NEAR(scalar(dsps_samp_var, x), var * 6001 / 6000, var * 1e-9);
        EXPECT_NEAR(scalar(dsps_pop_stddev, x), std::sqrt(var), 1e-9);
        EXPECT_NEAR(scalar(dsps_samp_stddev, x), std::sqrt(var * 6001 / 6000), 1e-9);
        const double skew = static_cast<double>(m.m3 / std::pow(m.m2, 1.5L));
        const double excess = static_cast<double>(m.m4 / (m.m2 * m.m2) - 3);
        EXPECT_NEAR(scalar(dsps_skew, x), skew, offset == 0 ? 1e-12 : 1e-5);
        EXPECT_NEAR(scalar(dsps_excess, x), excess, offset == 0 ? 1e-12 : 1e-5);
    }
}

TEST(StatsMoments, SkewnessAndExcessEdgeCases)
{
    EXPECT_EQ(scalar(dsps_skew, {4, 4, 4}), 0.0);
    EXPECT_EQ(scalar(dsps_excess, {4, 4, 4}), -3.0);
    Record empty, r;
    ASSERT_EQ(dsps_excess(empty.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{-3.0}));
    ASSERT_EQ(dsps_skew(empty.get(), r.get()), 0);
    EXPECT_EQ(r.values(), (V{0.0}));
    // [0, 0, 0, 1]: mean 1/4, m2 = 3/16, m3 = 3/32, m4 = 21/256.
    EXPECT_NEAR(scalar(dsps_skew, {0, 0, 0, 1}), (3.0 / 32) / std::pow(3.0 / 16, 1.5), 1e-15);
    EXPECT_NEAR(scalar(dsps_excess, {0, 0, 0, 1}), (21.0 / 256) / (9.0 / 256) - 3, 1e-15);
    // Symmetric data has no skew; two values +-a have excess -2.
    EXPECT_NEAR(scalar(dsps_skew, {-3, -1, 0, 1, 3}), 0.0, 1e-16);
    EXPECT_EQ(scalar(dsps_excess, {-2, 2, -2, 2}), -2.0);
    for (auto f : {dsps_skew, dsps_excess}) {
        Record c({1, 2, 3, 4}, true), r({9});
        EXPECT_EQ(f(c.get(), r.get()), -1);
        EXPECT_EQ(r.values(), (V{9}));
    }
}

TEST(StatsSums, EmptySourcesGiveZero)
{
    for (auto f : {dsps_sum, dsps_mean, dsps_median, dsps_min, dsps_max, dsps_magsq_sum, dsps_rms, dsps_pop_var,
                   dsps_samp_var, dsps_pop_stddev, dsps_samp_stddev, dsps_gmean, dsps_hmean}) {
        for (bool complex_flag : {false, true}) {
            Record e, r({5, 5, 5});
            e->complex = complex_flag;
            r->delta = 3.0;
            ASSERT_EQ(f(e.get(), r.get()), 0);
            EXPECT_EQ(r->points, 1);
            for (double v : r.values()) EXPECT_EQ(v, 0.0);
            EXPECT_EQ(r->delta, 3.0);  // the result's delta is kept
        }
    }
}

TEST(StatsSums, ResultMayBeTheSourceAndFailuresLeaveItIntact)
{
    Record s({1, 2, 3, 4});
    ASSERT_EQ(dsps_pop_var(s.get(), s.get()), 0);
    EXPECT_EQ(s.values(), (V{1.25}));

    dsp_test::ScopedAllocHooks hooks;
    for (auto f : {dsps_sum, dsps_median, dsps_pop_var, dsps_skew}) {
        const int failures = dsp_test::for_each_failing_growth(hooks, [&](int k) {
            hooks.never_fail();
            Record src({3, 1, 2}), r;
            hooks.fail_from(k);
            const int32_t status = f(src.get(), r.get());
            hooks.never_fail();
            EXPECT_EQ(src.values(), (V{3, 1, 2}));
            if (status == 0) return true;
            EXPECT_EQ(status, -1);
            return false;
        });
        EXPECT_EQ(failures, f == dsps_median ? 2 : 1);
    }
    Record src({3, 1, 2}), r;
    ASSERT_EQ(dsps_median(src.get(), r.get()), 0);
    hooks.reset_counts();
    ASSERT_EQ(dsps_mean(src.get(), r.get()), 0);
    EXPECT_EQ(hooks.counts().total(), 0);
}
