// Searches for trace extremes against references built from the standard
// algorithms, with the replacement rules the searches promise.
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <random>
#include <vector>

namespace {

const double kInf = INFINITY, kNaN = NAN;

// Of the listed indices, in scan order, the one a "replace unless >="
// search reports when its candidate starts as the first of them: after the
// last NaN the next element takes over unconditionally, then the first of
// equal minima of the rest wins (std::min_element).
int32_t min_reference(const std::vector<double> &buf, const std::vector<int32_t> &order)
{
    auto from = order.begin();
    for (auto p = order.begin(); p != order.end(); ++p)
        if (std::isnan(buf[*p])) from = p + 1 == order.end() ? p : p + 1;
    return *std::min_element(from, order.end(), [&](int32_t a, int32_t b) { return buf[a] < buf[b]; });
}

// std::max_element keeps its candidate unless something is strictly
// greater, which NaN never is: exactly the promised rule.
int32_t max_reference(const std::vector<double> &buf, const std::vector<int32_t> &order)
{
    return *std::max_element(order.begin(), order.end(), [&](int32_t a, int32_t b) { return buf[a] < buf[b]; });
}

// Indices of [start, stop) outside [exclStart, exclStop) in scan order; a
// search starting inside the span begins at exclStop.
std::vector<int32_t> searched(int32_t start, int32_t stop, int32_t exclStart = 0, int32_t exclStop = 0)
{
    const int32_t first = start >= exclStart && start < exclStop ? exclStop : start;
    std::vector<int32_t> r;
    for (int32_t i = first; i < stop; ++i)
        if (i == first || i < exclStart || i >= exclStop) r.push_back(i);
    return r;
}

// Small integers (many ties) with infinities and, if asked, NaN.
std::vector<double> tied_values(unsigned seed, bool with_nan)
{
    std::mt19937 rng(seed);
    std::vector<double> v(40);
    for (double &x : v) {
        const unsigned pick = rng() % 20;
        x = pick == 0 && with_nan ? kNaN : pick == 1 ? kInf : pick == 2 ? -kInf : double(int(rng() % 9) - 4);
    }
    return v;
}

}  // namespace

TEST(TraceFind, MaxAndMinMatchTheirReferencesWithTiesAndNaN)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        std::vector<double> buf = tied_values(seed, true);
        const int32_t start = seed % 13, stop = start + 2 + seed % 27;
        if (seed % 5 == 0) buf[start] = kNaN;  // a NaN candidate is never replaced
        ASSERT_EQ(vfpd_FindMax(buf.data(), start, stop), max_reference(buf, searched(start, stop))) << seed;
        // The minimum scans start+1 .. stop-1 with a candidate at DBL_MAX,
        // modelled as an extra element listed first.
        std::vector<int32_t> order = searched(start + 1, stop);
        order.insert(order.begin(), static_cast<int32_t>(buf.size()));
        buf.push_back(DBL_MAX);
        const int32_t found = min_reference(buf, order);
        ASSERT_EQ(vfpd_FindMin(buf.data(), start, stop), found == order[0] ? start : found) << seed;
    }
    // Fewer than two elements: start, without reading the buffer.
    EXPECT_EQ(vfpd_FindMax(nullptr, 9, 2), 9);
    EXPECT_EQ(vfpd_FindMax(nullptr, INT32_MAX, INT32_MAX), INT32_MAX);
    EXPECT_EQ(vfpd_FindMin(nullptr, 3, 4), 3);
    // Deliberate asymmetry: the minimum never compares the first element.
    EXPECT_EQ(vfpd_FindMin(std::vector<double>{-7.0, 3.0}.data(), 0, 2), 1);
    EXPECT_EQ(vfpd_FindMax(std::vector<double>{7.0, -3.0}.data(), 0, 2), 0);
    // Nothing below the largest finite double: start.
    EXPECT_EQ(vfpd_FindMin(std::vector<double>{0.0, DBL_MAX, kInf}.data(), 0, 3), 0);
    // A NaN is taken, and the element after it replaces it whatever it is.
    const std::vector<double> nans = {0.0, -5.0, kNaN, kInf, 1.0};
    EXPECT_EQ(vfpd_FindMin(nans.data(), 0, 3), 2);
    EXPECT_EQ(vfpd_FindMin(nans.data(), 0, 4), 3);
}

TEST(TraceFind, OutsideSpanMatchesReferencesOverRandomSpans)
{
    std::mt19937 rng(42);
    for (unsigned trial = 0; trial < 3000; ++trial) {
        const std::vector<double> buf = tied_values(trial, trial % 3 != 0);
        const int32_t start = rng() % 30, stop = rng() % 31;
        const int32_t exclStart = int32_t(rng() % 32) - 1, exclStop = int32_t(rng() % 32) - 1;
        int32_t expected_max = start, expected_min = start;
        if (start >= exclStart && start < exclStop && exclStop >= stop) {
            expected_max = expected_min = -1;  // everything searched is excluded
        } else if (start < stop) {
            const std::vector<int32_t> order = searched(start, stop, exclStart, exclStop);
            expected_max = max_reference(buf, order);
            expected_min = min_reference(buf, order);
        }
        ASSERT_EQ(vfpd_FindMax2(buf.data(), start, stop, exclStart, exclStop), expected_max) << trial;
        ASSERT_EQ(vfpd_FindMin2(buf.data(), start, stop, exclStart, exclStop), expected_min) << trial;
    }
}

TEST(TraceFind, MinMaxFindsBothExtremesInOnePass)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        const std::vector<double> buf = tied_values(seed, false);
        const int32_t start = seed % 7, stop = start + 2 + seed % 31;
        int32_t mx = -5, mn = -5;
        ASSERT_EQ(vfpd_FindMinMax(buf.data(), start, stop, &mx, &mn), 1);
        ASSERT_EQ(mx, std::max_element(buf.begin() + start, buf.begin() + stop) - buf.begin()) << seed;
        ASSERT_EQ(mn, std::min_element(buf.begin() + start, buf.begin() + stop) - buf.begin()) << seed;
    }
    // {buf, start, stop, status, max, min}: a NaN first stays the maximum; a
    // NaN inside becomes the minimum and so does the element after it, which
    // is then no maximum candidate; start = stop is accepted.
    const std::vector<double> nan_first = {kNaN, 3.0, 1.0, 5.0}, nan_inside = {2.0, kNaN, 7.0, 1.0};
    const struct {
        const double *buf;
        int32_t start, stop, status, max, min;
    } cases[] = {{nan_first.data(), 0, 4, 1, 0, 2}, {nan_inside.data(), 0, 4, 1, 0, 3},
                 {nan_inside.data(), 3, 3, 1, 3, 3}, {nan_inside.data(), 3, 2, 0, -5, -5}, {nullptr, 0, 4, 0, -5, -5}};
    for (const auto &c : cases) {
        int32_t mx = -5, mn = -5;
        EXPECT_EQ(vfpd_FindMinMax(c.buf, c.start, c.stop, &mx, &mn), c.status);
        EXPECT_EQ(mx, c.max);
        EXPECT_EQ(mn, c.min);
    }
    // Refusals write nothing.
    int32_t index = -5;
    EXPECT_EQ(vfpd_FindMinMax(nan_inside.data(), 0, 4, nullptr, &index), 0);
    EXPECT_EQ(vfpd_FindMinMax(nan_inside.data(), 0, 4, &index, nullptr), 0);
    EXPECT_EQ(index, -5);
}
