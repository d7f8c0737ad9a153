// Sums, moments, order statistics, means and histograms against long double
// oracles, sorted copies and closed forms; refusals and failing growth.
#include "support/alloc_hooks.hpp"
#include "support/random_values.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

using dsp_test::Record;
using V = std::vector<double>;
using Stat = int32_t (*)(const dsp *, dsp *);

namespace {
const double kNaN = std::numeric_limits<double>::quiet_NaN();

V apply(Stat f, const V &x, bool complex_flag = false)
{
    Record s(x, complex_flag), r;
    EXPECT_EQ(f(s.get(), r.get()), 0);
    return r.values();
}

double scalar(Stat f, const V &x) { return apply(f, x).at(0); }

// A statistic of x (interleaved when complex) against values derived by
// hand; tolerance 0 asks for the exact value.
struct Case {
    Stat f;
    V x;
    bool complex_flag;
    V want;
    double tol;
};

void check(std::initializer_list<Case> cases)
{
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << (&c - cases.begin()));
        const V got = apply(c.f, c.x, c.complex_flag);
        ASSERT_EQ(got.size(), c.want.size());
        for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], c.want[i], c.tol) << "value " << i;
    }
}

// Mean and central moments m2, m3, m4 of real data, in long double.
std::array<long double, 4> moments_of(const V &x)
{
    std::array<long double, 4> m{};
    for (double v : x) m[0] += v;
    m[0] /= x.size();
    for (double v : x) {
        const long double d = v - m[0];
        m[1] += d * d / x.size();
        m[2] += d * d * d / x.size();
        m[3] += d * d * d * d / x.size();
    }
    return m;
}
}  // namespace

TEST(StatsSums, BlockSummationKeepsLongSumsAccurate)
{
    // A million tenths: the naive running sum drifts, the block sum does not.
    const V tenths(1000000, 0.1);
    const long double exact = 1000000.0L * static_cast<long double>(0.1);
    double naive = 0;
    for (double v : tenths) naive += v;
    EXPECT_LT(std::fabs(scalar(dsps_sum, tenths) - exact), std::fabs(naive - exact) / 50) << naive;

    const V c = dsp_test::uniform_values(2 * 7000, 3, 8.0);
    long double re = 0, im = 0;
    for (std::size_t i = 0; i < 7000; ++i) re += c[2 * i], im += c[2 * i + 1];
    const V sum = apply(dsps_sum, c, true), mean = apply(dsps_mean, c, true);
    EXPECT_NEAR(sum.at(0), static_cast<double>(re), 1e-10);
    EXPECT_NEAR(sum.at(1), static_cast<double>(im), 1e-10);
    EXPECT_NEAR(mean.at(1), static_cast<double>(im / 7000), 1e-14);

    const V x = dsp_test::uniform_values(4097, 5, 3.0);
    long double s = 0;
    for (double v : x) s += static_cast<long double>(v) * v;
    EXPECT_NEAR(scalar(dsps_rms, x), std::sqrt(static_cast<double>(s / 4097)), 1e-14);
    check({{dsps_mean, {1, 1, 3, -1}, true, {2, 0}, 0},
           // Squared magnitudes: a part beyond 1e100 counts as 1e100.
           {dsps_magsq_sum, {3, 4, 0, 1, 1e101, 0}, true, {26.0 + 1e100}, 0},
           {dsps_magsq_sum, {-2, 1e101}, false, {4.0 + 1e100}, 0},
           {dsps_rms, {3, 4, 0, 0}, true, {std::sqrt(12.5)}, 0}});
}

TEST(StatsMoments, VarianceSkewAndExcess)
{
    check({{dsps_pop_var, {1, 2, 3, 4}, false, {1.25}, 0},
           {dsps_samp_var, {1, 2, 3, 4}, false, {1.6666666666666667}, 0},
           {dsps_pop_var, {7}, false, {0}, 0},
           {dsps_samp_var, {7}, false, {0}, 0},
           {dsps_pop_stddev, {1, 3}, false, {1}, 0},
           {dsps_samp_stddev, {1, 3}, false, {std::sqrt(2.0)}, 0},
           {dsps_pop_var, {1, 1, 3, -1}, true, {2}, 1e-15},  // |z - mean|^2 averaged
           // A large offset: the shift keeps the sums small.
           {dsps_pop_var, {1e9 + 1, 1e9 + 2, 1e9 + 3, 1e9 + 4}, false, {1.25}, 1e-6},
           {dsps_skew, {4, 4, 4}, false, {0}, 0},
           {dsps_excess, {4, 4, 4}, false, {-3}, 0},
           {dsps_skew, {}, false, {0}, 0},
           {dsps_excess, {}, false, {-3}, 0},
           // [0, 0, 0, 1]: mean 1/4, m2 = 3/16, m3 = 3/32, m4 = 21/256.
           {dsps_skew, {0, 0, 0, 1}, false, {(3.0 / 32) / std::pow(3.0 / 16, 1.5)}, 1e-15},
           {dsps_excess, {0, 0, 0, 1}, false, {(21.0 / 256) / (9.0 / 256) - 3}, 1e-15},
           {dsps_skew, {-3, -1, 0, 1, 3}, false, {0}, 1e-16},  // symmetric
           {dsps_excess, {-2, 2, -2, 2}, false, {-2}, 0}});    // two values +-a

    for (double offset : {0.0, 1e6}) {
        V x = dsp_test::uniform_values(6001, 7, 5.0);
        for (double &v : x) v += offset;
        const std::array<long double, 4> m = moments_of(x);
        const double var = static_cast<double>(m[1]), samp = var * 6001 / 6000;
        EXPECT_NEAR(scalar(dsps_pop_var, x), var, var * 1e-9);
        EXPECT_NEAR(scalar(dsps_samp_var, x), samp, var * 1e-9);
        EXPECT_NEAR(scalar(dsps_pop_stddev, x), std::sqrt(var), 1e-9);
        EXPECT_NEAR(scalar(dsps_samp_stddev, x), std::sqrt(samp), 1e-9);
        const double tol = offset == 0 ? 1e-12 : 1e-5;
        EXPECT_NEAR(scalar(dsps_skew, x), static_cast<double>(m[2] / std::pow(m[1], 1.5L)), tol);
        EXPECT_NEAR(scalar(dsps_excess, x), static_cast<double>(m[3] / (m[1] * m[1]) - 3), tol);
    }
}

TEST(StatsSums, EmptySourcesGiveZeroAndKeepTheResultsDelta)
{
    for (Stat f : {dsps_sum, dsps_mean, dsps_median, dsps_min, dsps_max, dsps_magsq_sum, dsps_rms, dsps_pop_var,
                   dsps_samp_var, dsps_pop_stddev, dsps_samp_stddev, dsps_gmean, dsps_hmean}) {
        for (bool complex_flag : {false, true}) {
            Record e, r({5, 5, 5});
            e->complex = complex_flag;
            r->delta = 3.0;
            ASSERT_EQ(f(e.get(), r.get()), 0);
            EXPECT_EQ(r->points, 1);
            for (double v : r.values()) EXPECT_EQ(v, 0.0);
            EXPECT_EQ(r->delta, 3.0);
        }
    }
}

TEST(StatsOrder, MedianOfASortedCopy)
{
    EXPECT_EQ(apply(dsps_median, {3, 1, 2, 10}), (V{2.5}));
    for (std::size_t n : {1u, 2u, 99u, 100u}) {
        const V x = dsp_test::uniform_values(n, 4, 100.0);
        V sorted = x;
        std::sort(sorted.begin(), sorted.end());
        const double want = n % 2 ? sorted[n / 2] : (sorted[n / 2 - 1] + sorted[n / 2]) * 0.5;
        Record s(x), r;
        ASSERT_EQ(dsps_median(s.get(), r.get()), 0);
        EXPECT_EQ(r.values(), (V{want})) << n;
        EXPECT_EQ(s.values(), x);  // the source is not sorted
    }
    // Complex: by squared magnitude, then real part, then imaginary part.
    check({{dsps_median, {3, 4, 0, 5, 1, 1}, true, {0, 5}, 0},             // 2 < 25; 0 + 5i before 3 + 4i
           {dsps_median, {9, 9, 1, 1, 1, -1}, true, {1, 1}, 0},            // 1 - i before 1 + i
           {dsps_median, {3, 4, 0, 5, 1, 1, 1, -1}, true, {0.5, 3}, 0}});  // (1 + i + 5i) / 2
}

TEST(StatsOrder, ExtremesStartFromHuge)
{
    check({{dsps_min, {2e100, 3e100}, false, {1e100}, 0},
           {dsps_max, {-2e100, -3e100}, false, {-1e100}, 0},
           {dsps_min, {4, -2, 7, -2}, false, {-2}, 0},
           {dsps_max, {4, -2, 7, 7}, false, {7}, 0},
           {dsps_max, {kNaN, 3, 1}, false, {3}, 0},  // a NaN is taken, then replaced
           // Complex: the whole point; ties keep the earlier one.
           {dsps_min, {3, 4, 0, 5, 1, 1, 1, -1}, true, {1, 1}, 0},
           {dsps_max, {3, 4, 0, 5, 1, 1}, true, {3, 4}, 0},
           {dsps_min, {1e101, 0, 0, 1e50}, true, {1e100, 1e100}, 0},  // nothing below 1e100
           {dsps_max, {1e101, 0, 0, 1e51}, true, {0, 1e51}, 0}});     // 1e101 ranks as 1e100 only
    EXPECT_TRUE(std::isnan(scalar(dsps_max, {1, kNaN})));
}

TEST(StatsMeans, GeometricOfThePlainProductAndHarmonic)
{
    const double h = 4 / std::sqrt(2.0);
    check({{dsps_gmean, {2, 8}, false, {4}, 1e-15},
           {dsps_gmean, {-2, -8}, false, {4}, 1e-15},  // the product is positive
           {dsps_gmean, {2, -8}, false, {0}, 0},
           {dsps_gmean, {2, 0, 8}, false, {0}, 0},
           {dsps_gmean, {1e-200, 1e-200}, false, {0}, 0},  // the product underflows
           {dsps_gmean, {1e-160, 1e-160}, false, {0}, 0},  // a subnormal product is below the floor
           {dsps_gmean, {0, 1, 0, 1}, true, {0, 1}, 1e-15},  // i * i = -1: magnitude 1, phase pi / 2
           {dsps_gmean, {2, 0, 0, 8}, true, {h, h}, 1e-14},  // 16i: 4 at 45 degrees
           {dsps_gmean, {0, 0, 3, 1}, true, {0, 0}, 0},
           {dsps_hmean, {1, 0, 2}, false, {0}, 0},
           {dsps_hmean, {1, 2, 4}, false, {12.0 / 7.0}, 1e-15},
           {dsps_hmean, {1, -1}, false, {1e100}, 0},  // the reciprocals cancel
           // (1+i) and (1-i): reciprocals (0.5, -0.5) and (0.5, 0.5) sum to 1.
           {dsps_hmean, {1, 1, 1, -1}, true, {2, 0}, 0},
           {dsps_hmean, {0, 2, 2, 0}, true, {2, 2}, 1e-15},  // 2 / (-0.5i + 0.5)
           {dsps_hmean, {1, 1, -1, -1}, true, {0, 0}, 0}});  // sum 0: 1e100 times 0
    EXPECT_TRUE(std::isinf(scalar(dsps_gmean, {1e200, 1e200})));  // the product may overflow
}

TEST(StatsHistogram, CountsWithTheUpperEdgeInTheLastBin)
{
    Record s({0, 0.5, 1.0, 1.5, 2.0}), h;
    ASSERT_EQ(dsps_hist(s.get(), h.get(), 0, 1, 2), 0);
    EXPECT_EQ(h.values(), (V{2, 3}));
    EXPECT_EQ(h->delta, 1.0);
    EXPECT_EQ(h->complex, 0);

    // Edges: lo + bins * width a few ulps above still counts, well above not;
    // below lo and NaN never count.
    Record t({3.0, 3.0 * (1 + 4.4e-16), 3.0 * (1 + 4e-15), -0.001, kNaN, 0.0, 2.9999});
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

TEST(StatsFailures, RefusalsAndFailingGrowthLeaveTheInputsAndLeakNothing)
{
    for (Stat f : {dsps_skew, dsps_excess, dsps_lin_regres, dsps_lin_regres2}) {  // real records only
        Record c({1, 2, 3, 4}, true), r({9});
        EXPECT_EQ(f(c.get(), r.get()), -1);
        EXPECT_EQ(r.values(), (V{9}));
    }
    using Call = std::function<int32_t(const dsp *, dsp *)>;
    const Call hist = [](const dsp *s, dsp *r) { return dsps_hist(s, r, 0, 1, 4); };
    struct Row {
        Call f;
        bool in_place;
        int failures;  // growth points: the result, and any temporary
    };
    dsp_test::ScopedAllocHooks hooks;
    const Row rows[] = {{dsps_sum, false, 1},  {dsps_median, false, 2},      {dsps_pop_var, false, 1},
                        {dsps_skew, false, 1}, {dsps_lin_regres2, false, 1}, {hist, false, 1},
                        {hist, true, 2}};
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::Message() << "row " << (&row - rows));
        const int failures = dsp_test::for_each_failing_growth(hooks, [&](int k) {
            hooks.never_fail();
            Record src({3, 1, 2}), r;
            hooks.fail_from(k);
            const int32_t status = row.f(src.get(), row.in_place ? src.get() : r.get());
            hooks.never_fail();
            if (!row.in_place) {
                EXPECT_EQ(src.values(), (V{3, 1, 2}));
            }
            EXPECT_TRUE(status == 0 || status == -1) << status;
            return status == 0;
        });
        EXPECT_EQ(failures, row.failures);
    }
    // The source may be the result; a repeated call of a size reuses storage.
    Record s({1, 2, 3, 4}), r;
    ASSERT_EQ(dsps_median(s.get(), r.get()), 0);
    hooks.reset_counts();
    ASSERT_EQ(dsps_mean(s.get(), r.get()), 0);
    EXPECT_EQ(hooks.counts().total(), 0);
    ASSERT_EQ(dsps_pop_var(s.get(), s.get()), 0);
    EXPECT_EQ(s.values(), (V{1.25}));
}
