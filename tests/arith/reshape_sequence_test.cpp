// Level crossings, differences, integration, offset, scaling, clipping and
// the reconstruction of a symmetric spectrum.
#include "support/alloc_hooks.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using dsp_test::Record;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(ReshapeSequence, EdgeFindsInterpolatedCrossings)
{
    Record peak({0, 2, 0}, false, 0.5);
    ASSERT_EQ(dspi_edge(peak.get(), 3, 1.0), 0);
    EXPECT_EQ(peak.values(), (std::vector<double>{0.25, 0.75}));
    EXPECT_EQ(peak->delta, 1.0);

    // Triangle wave 0 1 2 3 2 1 0 1 ... of period 6: level 1.5 is crossed
    // rising at 1.5 + 6k and falling at 4.5 + 6k samples.
    const int n = 40;
    const double delta = 0.25;
    std::vector<double> wave;
    for (int i = 0; i < n; ++i) wave.push_back(std::abs((i + 3) % 6 - 3) * 1.0);
    std::vector<double> rising, falling, both;
    for (int k = 0; 6 * k + 2 < n; ++k) rising.push_back((1.5 + 6 * k) * delta);
    for (int k = 0; 6 * k + 5 < n; ++k) falling.push_back((4.5 + 6 * k) * delta);
    for (std::size_t k = 0; k < rising.size(); ++k) {
        both.push_back(rising[k]);
        if (k < falling.size()) both.push_back(falling[k]);
    }
    const std::vector<std::pair<int, std::vector<double>>> cases = {
        {1, rising}, {2, falling}, {3, both}, {0, {}}};
    for (const auto &c : cases) {
        Record r(wave, false, delta);
        ASSERT_EQ(dspi_edge(r.get(), c.first, 1.5), 0);
        EXPECT_EQ(r.values(), c.second) << "mode " << c.first;
    }

    // A step that starts on the level counts; one that ends on it does not.
    Record touch({1, 1, 2, 1, 1, 0});
    ASSERT_EQ(dspi_edge(touch.get(), 3, 1.0), 0);
    EXPECT_EQ(touch.values(), (std::vector<double>{1.0, 4.0}));

    Record empty;
    EXPECT_EQ(dspi_edge(empty.get(), 3, 0.0), 0);
    Record c({0, 0, 2, 0}, true);
    EXPECT_EQ(dspi_edge(c.get(), 3, 1.0), -1);
    EXPECT_EQ(c.values(), (std::vector<double>{0, 0, 2, 0}));
}

TEST(ReshapeSequence, IntegAndDifferAgainstRunningSums)
{
    // Small integers and delta 0.5 keep every sum exact.
    const int n = 50;
    std::vector<double> x, complex_x;
    for (int i = 0; i < n; ++i) {
        x.push_back(i % 7 - 3.0);
        complex_x.insert(complex_x.end(), {x.back(), i * 2.0});
    }

    Record r(x, false, 0.5);
    ASSERT_EQ(dspi_integ(r.get()), 0);
    long double sum = 0;
    for (int i = 0; i < n; ++i) {
        sum += 0.5L * x[static_cast<std::size_t>(i)];
        EXPECT_EQ(r->data[i], static_cast<double>(sum)) << i;
    }
    ASSERT_EQ(dspi_differ(r.get()), 0);
    EXPECT_EQ(r.values(), x);

    Record c(complex_x, true, 0.5);
    ASSERT_EQ(dspi_integ(c.get()), 0);
    for (int i = 0; i < n; ++i) EXPECT_EQ(c->data[2 * i + 1], 0.5 * i * (i + 1)) << i;
    ASSERT_EQ(dspi_differ(c.get()), 0);
    EXPECT_EQ(c.values(), complex_x);
}

// Hand-derived cases of the in-place operations without a running state.
TEST(ReshapeSequence, DifferencesOffsetAndScaleByHand)
{
    struct Case {
        const char *what;
        int32_t (*op)(dsp *);
        std::vector<double> in;
        bool complex_flag;
        std::vector<double> out;
        double delta = 1.0;
    };
    for (const Case &c : std::vector<Case>{
             // Each step adds x * delta to the previous sum: 0.2 + 0.5 is 0.7,
             // while (1 + 1 + 5) * 0.1 would be 0.7000000000000001.
             {"integ in steps", dspi_integ, {1, 1, 5}, false, {0.1, 0.2, 0.7}, 0.1},
             {"differ", dspi_differ, {4, 7, 5}, false, {16, 12, -8}, 0.25},
             {"differ at delta 0", dspi_differ, {1, 3}, false, {1e100, 2e100}, 0.0},
             // 5 + 3x + 2x^2 + 7x^3 -> 3 + 4x + 21x^2
             {"pdiffer", dspi_pdiffer, {5, 3, 2, 7}, false, {3, 4, 21}},
             {"complex pdiffer", dspi_pdiffer, {1, 1, 2, -1, 3, 0.5}, true, {2, -1, 6, 1}},
             {"pdiffer of a constant", dspi_pdiffer, {9}, false, {}},
             {"offset", [](dsp *s) { return dspi_offset(s, 0.5); }, {1, -2, 3}, false, {1.5, -1.5, 3.5}},
             {"complex offset", [](dsp *s) { return dspi_offset(s, -1); }, {1, -2, 3, 4}, true, {0, -2, 2, 4}},
             {"scale", [](dsp *s) { return dspi_scale(s, -2.5); }, {0.4, -1.3, 2, 8}, true, {-1, 3.25, -5, -20}},
             {"scale of nothing", [](dsp *s) { return dspi_scale(s, -2.5); }, {}, true, {}},
         }) {
        Record r(c.in, c.complex_flag, c.delta);
        ASSERT_EQ(c.op(r.get()), 0) << c.what;
        EXPECT_EQ(r.values(), c.out) << c.what;
        EXPECT_EQ(r->delta, c.delta) << c.what;
    }
}

TEST(ReshapeSequence, LimitClipsToOrderedBounds)
{
    struct Case {
        std::vector<double> in;
        bool complex_flag;
        double a, b;
        std::vector<double> out;
        int32_t clipped;
    };
    // Values on the bounds are not clipped. A NaN bound is not reordered:
    // nothing exceeds a NaN upper bound, and everything fails a NaN lower bound.
    for (const Case &c : std::vector<Case>{
             {{-10, -5, 0, 5, 10, kNaN}, false, 5, -5, {-5, -5, 0, 5, 5, -5}, 1},
             {{-5, 0, 5}, false, -5, 5, {-5, 0, 5}, 0},
             {{2, kNaN, -3, 0.5}, true, 1, -1, {1, -1, -1, 0.5}, 1},
             {{}, false, 0, 1, {}, 0},
             {{-1, 3}, false, 0, kNaN, {0, 3}, 1},
             {{2}, false, kNaN, 5, {kNaN}, 1},
         }) {
        Record r(c.in, c.complex_flag);
        int32_t clipped = 7;
        ASSERT_EQ(dspi_limit(r.get(), 123, c.a, c.b, &clipped), 0);  // the second argument is unused
        EXPECT_PRED2(dsp_test::same_values, r.values(), c.out);
        EXPECT_EQ(clipped, c.clipped);
    }
    Record r({-1, 0.5, 2});
    ASSERT_EQ(dspi_limit(r.get(), 0, 0, 1, nullptr), 0);
    EXPECT_EQ(r.values(), (std::vector<double>{0, 0.5, 1}));
}

// The full spectrum of length `full` whose first half is `half`:
// X[k] = conj(X[full - k]) for k at or beyond the half's end.
std::vector<double> mirrored(const std::vector<double> &half, std::size_t w, std::size_t full)
{
    const std::size_t n = half.size() / w;
    std::vector<double> out(half);
    for (std::size_t k = n; k < full; ++k) {
        out.push_back(half[(full - k) * w]);
        if (w == 2) out.push_back(-half[(full - k) * w + 1]);
    }
    return out;
}

TEST(ReshapeSequence, OreconMirrorsConjugates)
{
    Record abc({1, 1, 2, 2, 3, 3}, true);  // dspi_recon is the even reconstruction
    ASSERT_EQ(dspi_recon(abc.get()), 0);
    EXPECT_EQ(abc.values(), (std::vector<double>{1, 1, 2, 2, 3, 3, 2, -2}));

    for (bool complex_flag : {false, true}) {
        const std::size_t w = complex_flag ? 2 : 1;
        for (int odd : {0, 1}) {
            for (int n = 0; n <= 7; ++n) {
                SCOPED_TRACE(testing::Message() << "n " << n << " odd " << odd << " complex " << complex_flag);
                std::vector<double> half;
                for (std::size_t i = 0; i < w * static_cast<std::size_t>(n); ++i) half.push_back(i + 1.0);
                Record r(half, complex_flag, 0.5);
                ASSERT_EQ(dspi_orecon(r.get(), odd), 0);
                const bool unchanged = n < 2 || (odd == 0 && n < 3);
                const std::size_t full = unchanged ? static_cast<std::size_t>(n) : 2 * static_cast<std::size_t>(n) - 2 + odd;
                EXPECT_EQ(r.values(), mirrored(half, w, full));
                EXPECT_EQ(r->delta, 0.5);
            }
        }
    }
}

TEST(ReshapeSequence, OreconGrowthFailureAndReuse)
{
    dsp_test::ScopedAllocHooks hooks;
    const int failures = dsp_test::for_each_failing_growth(hooks, [&](int k) {
        hooks.never_fail();
        Record r({1, 0, 2, 1, 3, 0}, true);
        hooks.fail_from(k);
        const int32_t status = dspi_orecon(r.get(), 1);
        if (status == 0) return true;
        EXPECT_EQ(status, -1);
        EXPECT_EQ(r->data, nullptr);
        EXPECT_EQ(r->allocated, 0);
        EXPECT_EQ(r->points, 5);
        return false;
    });
    EXPECT_EQ(failures, 1);

    Record r({1, 0, 2, 1, 3, 0}, true);
    ASSERT_EQ(dspi_orecon(r.get(), 1), 0);
    hooks.reset_counts();
    for (int round = 0; round < 3; ++round) {
        r->points = 3;
        ASSERT_EQ(dspi_orecon(r.get(), round % 2), 0);
    }
    EXPECT_EQ(hooks.counts().total(), 0);
}

}  // namespace
