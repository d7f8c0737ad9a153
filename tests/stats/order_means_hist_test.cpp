// Median, extremes, geometric and harmonic means, histograms.
#include "support/alloc_hooks.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

using dsp_test::Record;
using V = std::vector<double>;

namespace {
const double kNaN = std::numeric_limits<double>::quiet_NaN();

V apply(int32_t (*f)(const dsp *, dsp *), const V &x, bool complex_flag = false)
{
    Record s(x, complex_flag), r;
    EXPECT_EQ(f(s.get(), r.get()), 0);
    return r.values();
}
}  // namespace

TEST(StatsOrder, MedianOfASortedCopy)
{
    EXPECT_EQ(apply(dsps_median, {3, 1, 2, 10}), (V{2.5}));
    EXPECT_EQ(apply(dsps_median, {5}), (V{5}));
    std::mt19937 gen(4);
    std::uniform_real_distribution<double> dist(-100, 100);
    for (std::size_t n : {1u, 2u, 99u, 100u}) {
        V x(n);
        for (double &v : x) v = dist(gen);
        V sorted = x;
        std::sort(sorted.begin(), sorted.end());
        const double want = n % 2 ? sorted[n / 2] : (sorted[n / 2 - 1] + sorted[n / 2]) * 0.5;
        Record s(x), r;
        ASSERT_EQ(dsps_median(s.get(), r.get()), 0);
        EXPECT_EQ(r.values(), (V{want})) << n;
        EXPECT_EQ(s.values(), x);  // the source is not sorted
    }
    // Complex: by squared magnitude, then real part, then imaginary part.
    using P = std::tuple<double, double, double>;
    V c;
    std::vector<P> keyed;
    for (int i = 0; i < 10; ++i) {
        const double re = (i % 3) - 1.0, im = (i % 4) - 2.0;
        c.insert(c.end(), {re, im});
        keyed.emplace_back(re * re + im * im, re, im);
    }
    std::sort(keyed.begin(), keyed.end());
    const V m = apply(dsps_median, c, true);
    EXPECT_EQ(m[0], (std::get<1>(keyed[4]) + std::get<1>(keyed[5])) * 0.5);
    EXPECT_EQ(m[1], (std::get<2>(keyed[4]) + std::get<2>(keyed[5])) * 0.5);
}

TEST(StatsOrder, ExtremesStartFromHuge)
{
    EXPECT_EQ(apply(dsps_min, {2e100, 3e100}), (V{1e100}));
    EXPECT_EQ(apply(dsps_max, {-2e100, -3e100}), (V{-1e100}));
    EXPECT_EQ(apply(dsps_min, {4, -2, 7, -2}), (V{-2}));
    EXPECT_EQ(apply(dsps_max, {4, -2, 7, 7}), (V{7}));
    EXPECT_EQ(apply(dsps_max, {kNaN, 3, 1}), (V{3}));  // a NaN is taken, then replaced
    EXPECT_TRUE(std::isnan(apply(dsps_max, {1, kNaN})[0]));
    // Complex: the whole point; ties keep the earlier one.
    EXPECT_EQ(apply(dsps_min, {3, 4, 0, 5, 1, 1, 1, -1}, true), (V{1, 1}));
    EXPECT_EQ(apply(dsps_max, {3, 4, 0, 5, 1, 1}, true), (V{3, 4}));
    EXPECT_EQ(apply(dsps_min, {1e101, 0, 0, 1e50}, true), (V{1e100, 1e100}));  // nothing below 1e100
    EXPECT_EQ(apply(dsps_max, {1e101, 0, 0, 1e51}, true), (V{0, 1e51}));  // 1e101 ranks as 1e100 only
    EXPECT_EQ(apply(dsps_max, {}, true), (V{0, 0}));
}

TEST(StatsMeans, GeometricMeanOfThePlainProduct)
{
    EXPECT_NEAR(apply(dsps_gmean, {2, 8})[0], 4.0, 1e-15);
    EXPECT_NEAR(apply(dsps_gmean, {-2, -8})[0], 4.0, 1e-15);  // the product is positive
    EXPECT_EQ(apply(dsps_gmean, {2, -8}), (V{0}));
    EXPECT_EQ(apply(dsps_gmean, {2, 0, 8}), (V{0}));
    EXPECT_EQ(apply(dsps_gmean, {1e-200, 1e-200}), (V{0}));  // the product underflows
    EXPECT_EQ(apply(dsps_gmean, {1e-160, 1e-160}), (V{0}));  // a subnormal product is below the floor
    EXPECT_TRUE(std::isinf(apply(dsps_gmean, {1e200, 1e200})[0]));  // and may overflow
    // i * i = -1: magnitude 1, phase pi / 2.
    const V c = apply(dsps_gmean, {0, 1, 0, 1}, true);
    EXPECT_NEAR(c[0], 0.0, 1e-15);
    EXPECT_NEAR(c[1], 1.0, 1e-15);
    const V d = apply(dsps_gmean, {2, 0, 0, 8}, true);  // 16i: 4 at 45 degrees
    EXPECT_NEAR(d[0], 4 / std::sqrt(2.0), 1e-14);
    EXPECT_NEAR(d[1], 4 / std::sqrt(2.0), 1e-14);
    EXPECT_EQ(apply(dsps_gmean, {0, 0, 3, 1}, true), (V{0, 0}));
}

TEST(StatsMeans, HarmonicMean)
{
    EXPECT_EQ(apply(dsps_hmean, {1, 0, 2}), (V{0}));
    EXPECT_NEAR(apply(dsps_hmean, {1, 2, 4})[0], 12.0 / 7.0, 1e-15);
    EXPECT_EQ(apply(dsps_hmean, {1, -1}), (V{1e100}));  // the reciprocals cancel
    // (1+i) and (1-i): reciprocals (0.5, -0.5) and (0.5, 0.5) sum to 1.
    EXPECT_EQ(apply(dsps_hmean, {1, 1, 1, -1}, true), (V{2, 0}));
    const V c = apply(dsps_hmean, {0, 2, 2, 0}, true);  // 2 / (-0.5i + 0.5) = 2 + 2i
    EXPECT_NEAR(c[0], 2.0, 1e-15);
    EXPECT_NEAR(c[1], 2.0, 1e-15);
    EXPECT_EQ(apply(dsps_hmean, {1, 1, -1, -1}, true), (V{0, 0}));  // sum 0: 1e100 times 0
}

TEST(StatsHistogram, CountsWithTheUpperEdgeInTheLastBin)
{
    Record s({0, 0.5, 1.0, 1.5, 2.0}), r;
    ASSERT_EQ(dsps_hist(s.get(), r.get(), 0, 1, 2), 0);
    EXPECT_EQ(r.values(), (V{2, 3}));
    EXPECT_EQ(r->delta, 1.0);
    EXPECT_EQ(r->complex, 0);

    // Edges: lo + bins * width a few ulps above still counts, well above not;
    // below lo and NaN never count.
    const double edge = 3.0;
    Record t({edge, edge * (1 + 4.4e-16), edge * (1 + 4e-15), -0.001, kNaN, 0.0, 2.9999}), h;
    ASSERT_EQ(dsps_hist(t.get(), h.get(), 0.0, 1.0, 3), 0);
    EXPECT_EQ(h.values(), (V{1, 0, 3}));
    ASSERT_EQ(dsps_hist(t.get(), h.get(), -1.0, 0.5, 8), 0);
    EXPECT_EQ(h.values(), (V{0, 1, 1, 0, 0, 0, 0, 3}));
    EXPECT_EQ(h->delta, 0.5);

    // Width 0: only values equal to lo count, in bin 0.
    Record z({2, 2, 3});
    ASSERT_EQ(dsps_hist(z.get(), h.get(), 2.0, 0.0, 4), 0);
    EXPECT_EQ(h.values(), (V{2, 0, 0, 0}));

    // Complex points by magnitude; a part beyond 1e100 counts as 1e100.
    Record c({3, 4, 0, 1, 1e101, 0, 0.6, 0.8}, true);
    ASSERT_EQ(dsps_hist(c.get(), h.get(), 0.0, 2.5, 2), 0);
    EXPECT_EQ(h.values(), (V{2, 1}));
    ASSERT_EQ(dsps_hist(c.get(), h.get(), 0.0, 0.5e100, 2), 0);
    EXPECT_EQ(h.values(), (V{3, 1}));

    // The source as the result: counted aside, then copied back.
    ASSERT_EQ(dsps_hist(s.get(), s.get(), 0, 1, 3), 0);
    EXPECT_EQ(s.values(), (V{2, 2, 1}));
    EXPECT_EQ(s->complex, 0);
}

TEST(StatsHistogram, FailingGrowthLeavesTheSourceAndLeaksNothing)
{
    dsp_test::ScopedAllocHooks hooks;
    for (bool in_place : {false, true}) {
        const int failures = dsp_test::for_each_failing_growth(hooks, [&](int k) {
            hooks.never_fail();
            Record s({0.5, 1.5, 0.25}), r;
            hooks.fail_from(k);
            const int32_t status = dsps_hist(s.get(), in_place ? s.get() : r.get(), 0, 1, 4);
            hooks.never_fail();
            if (status == 0) return true;
            EXPECT_EQ(status, -1);
            if (!in_place) {
                EXPECT_EQ(s.values(), (V{0.5, 1.5, 0.25}));
            }
            return false;
        });
        EXPECT_EQ(failures, in_place ? 2 : 1);
    }
}
