// Searches for trace extremes against references built from the standard
// algorithms, with the replacement rules the searches promise.
#include "libdsp_vna.h"
#include "trace_values.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

using trace_test::kInf;
using trace_test::kNaN;

namespace {

// Index into `indices` of the minimum a "replace unless >=" scan reports
// when its candidate starts as the first listed element: after the last NaN
// the next element takes over unconditionally, then the first of equal
// minima of the rest wins (std::min_element).
std::size_t min_position(const std::vector<double> &buf, const std::vector<int32_t> &indices)
{
    std::size_t from = 0;
    for (std::size_t p = 0; p < indices.size(); ++p)
        if (std::isnan(buf[indices[p]])) from = p + 1 < indices.size() ? p + 1 : p;
    auto less = [&](int32_t a, int32_t b) { return buf[a] < buf[b]; };
    return static_cast<std::size_t>(std::min_element(indices.begin() + from, indices.end(), less) - indices.begin());
}

// The maximum: std::max_element keeps its candidate unless something is
// strictly greater, NaN never is, exactly the promised rule.
int32_t max_reference(const std::vector<double> &buf, const std::vector<int32_t> &indices)
{
    auto less = [&](int32_t a, int32_t b) { return buf[a] < buf[b]; };
    return *std::max_element(indices.begin(), indices.end(), less);
}

std::vector<int32_t> range(int32_t from, int32_t to)
{
    std::vector<int32_t> r;
    for (int32_t i = from; i < to; ++i) r.push_back(i);
    return r;
}

// Indices of [start, stop) outside [exclStart, exclStop), in scan order:
// when start is excluded the search begins at exclStop. Empty means -1.
std::vector<int32_t> searched_indices(int32_t start, int32_t stop, int32_t exclStart, int32_t exclStop)
{
    int32_t first = start;
    if (start >= exclStart && start < exclStop) first = exclStop;
    std::vector<int32_t> r;
    for (int32_t i = first; i < stop; ++i)
        if (i == first || !(i >= exclStart && i < exclStop)) r.push_back(i);
    return r;
}

// Small integers (many ties) with NaN and infinities sprinkled in.
std::vector<double> tied_values(std::size_t n, unsigned seed, bool with_nan)
{
    std::mt19937 rng(seed);
    std::vector<double> v(n);
    for (double &x : v) {
        unsigned pick = rng() % 20;
        x = pick == 0 && with_nan ? kNaN : pick == 1 ? kInf : pick == 2 ? -kInf : double(int(rng() % 9) - 4);
    }
    return v;
}

}  // namespace

TEST(TraceFindMax, MatchesMaxElementWithTiesNaNAndRanges)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        const std::vector<double> buf = tied_values(40, seed, true);
        const int32_t start = static_cast<int32_t>(seed % 13), stop = start + 2 + static_cast<int32_t>(seed % 27);
        ASSERT_EQ(vfpd_FindMax(buf.data(), start, stop), max_reference(buf, range(start, stop))) << seed;
    }
    // A NaN where the search starts is kept: nothing compares greater.
    const std::vector<double> nan_first = {kNaN, 5.0, 9.0};
    EXPECT_EQ(vfpd_FindMax(nan_first.data(), 0, 3), 0);
    EXPECT_EQ(vfpd_FindMax(nan_first.data(), 1, 3), 2);
    // Fewer than two elements: start, without reading the buffer.
    EXPECT_EQ(vfpd_FindMax(nullptr, 5, 6), 5);
    EXPECT_EQ(vfpd_FindMax(nullptr, 5, 5), 5);
    EXPECT_EQ(vfpd_FindMax(nullptr, 9, 2), 9);
    EXPECT_EQ(vfpd_FindMax(nullptr, INT32_MAX, INT32_MAX), INT32_MAX);
}

TEST(TraceFindMin, LeavesTheFirstElementOutAndTakesNaN)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        std::vector<double> buf = tied_values(40, seed, seed % 2 == 0);
        const int32_t start = static_cast<int32_t>(seed % 11), stop = start + 2 + static_cast<int32_t>(seed % 29);
        // The scan covers start+1 .. stop-1 with a candidate at DBL_MAX.
        std::vector<double> with_sentinel = buf;
        const std::vector<int32_t> scanned = range(start + 1, stop);
        std::vector<int32_t> order = {static_cast<int32_t>(buf.size())};
        order.insert(order.end(), scanned.begin(), scanned.end());
        with_sentinel.push_back(DBL_MAX);
        const int32_t found = order[min_position(with_sentinel, order)];
        const int32_t expected = found == static_cast<int32_t>(buf.size()) ? start : found;
        ASSERT_EQ(vfpd_FindMin(buf.data(), start, stop), expected) << seed;
    }
    // Deliberate asymmetry: the first element is never compared.
    const std::vector<double> two = {-7.0, 3.0};
    EXPECT_EQ(vfpd_FindMin(two.data(), 0, 2), 1);
    EXPECT_EQ(vfpd_FindMax(two.data(), 0, 2), 1);
    const std::vector<double> two_down = {7.0, -3.0};
    EXPECT_EQ(vfpd_FindMax(two_down.data(), 0, 2), 0);
    // Nothing below the largest finite double: start.
    const std::vector<double> high = {0.0, DBL_MAX, kInf, DBL_MAX};
    EXPECT_EQ(vfpd_FindMin(high.data(), 0, 4), 0);
    // A NaN is taken, and the element after it replaces it whatever it is.
    const std::vector<double> nans = {0.0, -5.0, kNaN, kInf, 1.0, kNaN};
    EXPECT_EQ(vfpd_FindMin(nans.data(), 0, 3), 2);
    EXPECT_EQ(vfpd_FindMin(nans.data(), 0, 4), 3);
    EXPECT_EQ(vfpd_FindMin(nans.data(), 0, 5), 4);
    EXPECT_EQ(vfpd_FindMin(nans.data(), 0, 6), 5);
    EXPECT_EQ(vfpd_FindMin(nullptr, 3, 4), 3);
    EXPECT_EQ(vfpd_FindMin(nullptr, 3, 1), 3);
}

TEST(TraceFindOutsideSpan, MatchesReferencesOverRandomSpans)
{
    std::mt19937 rng(42);
    for (int trial = 0; trial < 3000; ++trial) {
        const std::vector<double> buf = tied_values(30, static_cast<unsigned>(trial), trial % 3 != 0);
        const int32_t start = static_cast<int32_t>(rng() % 30), stop = static_cast<int32_t>(rng() % 31);
        const int32_t exclStart = static_cast<int32_t>(rng() % 32) - 1, exclStop = static_cast<int32_t>(rng() % 32) - 1;
        int32_t expected_max = -1, expected_min = -1;
        if (start >= exclStart && start < exclStop && exclStop >= stop) {
            // the whole search lies in the excluded span
        } else if (start >= stop) {
            expected_max = expected_min = start;
        } else {
            const std::vector<int32_t> order = searched_indices(start, stop, exclStart, exclStop);
            expected_max = max_reference(buf, order);
            expected_min = order[min_position(buf, order)];
        }
        ASSERT_EQ(vfpd_FindMax2(buf.data(), start, stop, exclStart, exclStop), expected_max)
            << start << " " << stop << " " << exclStart << " " << exclStop;
        ASSERT_EQ(vfpd_FindMin2(buf.data(), start, stop, exclStart, exclStop), expected_min)
            << start << " " << stop << " " << exclStart << " " << exclStop;
    }
}

TEST(TraceFindOutsideSpan, HandPickedSpans)
{
    //                            0    1     2    3     4    5    6
    const std::vector<double> b = {1.0, 9.0, -9.0, 8.0, -8.0, 2.0, 3.0};
    EXPECT_EQ(vfpd_FindMax2(b.data(), 0, 7, 1, 3), 3);
    EXPECT_EQ(vfpd_FindMin2(b.data(), 0, 7, 1, 3), 4);
    EXPECT_EQ(vfpd_FindMin2(b.data(), 0, 7, 3, 5), 2);
    // Unlike vfpd_FindMin, vfpd_FindMin2 compares its first element.
    const std::vector<double> low_first = {-20.0, 1.0, 2.0};
    EXPECT_EQ(vfpd_FindMin2(low_first.data(), 0, 3, 5, 6), 0);
    EXPECT_EQ(vfpd_FindMin(low_first.data(), 0, 3), 1);
    // Start inside the span: the search begins at exclStop ...
    EXPECT_EQ(vfpd_FindMax2(b.data(), 1, 7, 0, 4), 6);
    EXPECT_EQ(vfpd_FindMin2(b.data(), 1, 7, 0, 4), 4);
    // ... and finds nothing when the span reaches stop.
    EXPECT_EQ(vfpd_FindMax2(b.data(), 2, 5, 1, 5), -1);
    EXPECT_EQ(vfpd_FindMin2(b.data(), 2, 5, 1, 9), -1);
    // An empty span excludes nothing.
    EXPECT_EQ(vfpd_FindMax2(b.data(), 0, 7, 3, 3), 1);
    EXPECT_EQ(vfpd_FindMin2(b.data(), 0, 7, 4, 1), 2);
    // Values outside [start, stop) are never looked at.
    const std::vector<double> fenced = {kInf, -kInf, 1.0, 2.0, 0.5, kInf, -kInf};
    EXPECT_EQ(vfpd_FindMax2(fenced.data(), 2, 5, 3, 4), 2);
    EXPECT_EQ(vfpd_FindMin2(fenced.data(), 2, 5, 3, 4), 4);
}

TEST(TraceFindMinMax, BothExtremesInOnePass)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        const std::vector<double> buf = tied_values(40, seed, false);
        const int32_t start = static_cast<int32_t>(seed % 7), stop = start + 2 + static_cast<int32_t>(seed % 31);
        int32_t max_index = -5, min_index = -5;
        ASSERT_EQ(vfpd_FindMinMax(buf.data(), start, stop, &max_index, &min_index), 1);
        auto first = buf.begin() + start, last = buf.begin() + stop;
        ASSERT_EQ(max_index, std::max_element(first, last) - buf.begin()) << seed;
        ASSERT_EQ(min_index, std::min_element(first, last) - buf.begin()) << seed;
    }
    // NaN first: it stays the maximum; the next element becomes the minimum.
    int32_t mx = -5, mn = -5;
    const std::vector<double> nan_first = {kNaN, 3.0, 1.0, 5.0};
    EXPECT_EQ(vfpd_FindMinMax(nan_first.data(), 0, 4, &mx, &mn), 1);
    EXPECT_EQ(mx, 0);
    EXPECT_EQ(mn, 2);
    // A NaN in the middle becomes the minimum, and so does the element
    // after it, which is then no longer a candidate for the maximum.
    const std::vector<double> nan_inside = {2.0, kNaN, 7.0, 1.0};
    EXPECT_EQ(vfpd_FindMinMax(nan_inside.data(), 0, 4, &mx, &mn), 1);
    EXPECT_EQ(mx, 0);
    EXPECT_EQ(mn, 3);
    // start = stop is accepted; one element needs no reading.
    EXPECT_EQ(vfpd_FindMinMax(nullptr, 4, 4, &mx, &mn), 0);
    EXPECT_EQ(vfpd_FindMinMax(nan_inside.data(), 3, 3, &mx, &mn), 1);
    EXPECT_EQ(mx, 3);
    EXPECT_EQ(mn, 3);
    // Refusals write nothing.
    mx = mn = -5;
    EXPECT_EQ(vfpd_FindMinMax(nan_inside.data(), 3, 2, &mx, &mn), 0);
    EXPECT_EQ(vfpd_FindMinMax(nan_inside.data(), 0, 4, nullptr, &mn), 0);
    EXPECT_EQ(vfpd_FindMinMax(nan_inside.data(), 0, 4, &mx, nullptr), 0);
    EXPECT_EQ(vfpd_FindMinMax(nullptr, 0, 4, &mx, &mn), 0);
    EXPECT_EQ(mx, -5);
    EXPECT_EQ(mn, -5);
}
