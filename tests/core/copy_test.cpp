// Copying, appending, comparing and the shape rule of two-operand operations.
#include "core/record.hpp"
#include "support/alloc_hooks.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using dsp_test::Record;
using dsp_test::ScopedAllocHooks;
using V = std::vector<double>;

namespace {
const double kNaN = std::numeric_limits<double>::quiet_NaN();

V subvec(const V &src, int32_t start, int32_t count, bool cpx = false)
{
    Record s(src, cpx, 0.25), d;
    EXPECT_EQ(dspu_subvec(s.get(), d.get(), start, count), 0);
    EXPECT_EQ(d->complex, cpx ? 1 : 0);
    EXPECT_EQ(d->delta, 0.25);
    EXPECT_EQ(s.values(), src);  // the source is never changed
    return d.values();
}
}  // namespace

TEST(Copy, SubvecClampsStartAndCount)
{
    const V x{0, 1, 2, 3, 4};
    EXPECT_EQ(subvec(x, -5, 2), (V{0, 1}));
    EXPECT_EQ(subvec(x, 7, 2), V{});
    EXPECT_EQ(subvec(x, 3, 100), (V{3, 4}));
    EXPECT_EQ(subvec(x, 1, -1), V{});
    EXPECT_EQ(subvec(x, 5, 0), V{});
    EXPECT_EQ(subvec({1, 2, 3, 4, 5, 6}, 1, 2, true), (V{3, 4, 5, 6}));  // whole complex points
}

TEST(Copy, SubvecWithinOneRecordMovesTheTailForward)
{
    Record s({0, 1, 2, 3, 4, 5, 6, 7});
    ASSERT_EQ(dspu_subvec(s.get(), s.get(), 3, 5), 0);  // overlapping ranges
    EXPECT_EQ(s.values(), (V{3, 4, 5, 6, 7}));
    ASSERT_EQ(dspu_subvec(s.get(), s.get(), 0, 2), 0);
    EXPECT_EQ(s.values(), (V{3, 4}));
}

TEST(Copy, SubvecWithinCallerAttachedStorageCopiesOut)
{
    for (int32_t start : {0, 1}) {
        double attached[4] = {1, 2, 3, 4};
        dsp s = dsp_test::attached_record(attached, 4);
        ASSERT_EQ(dspu_subvec(&s, &s, start, 3), 0);
        EXPECT_NE(s.data, attached);
        EXPECT_EQ(V(s.data, s.data + 3), (V{1.0 + start, 2.0 + start, 3.0 + start}));
        EXPECT_EQ(attached[0], 1.0);  // the caller's block is left as it was
        dsp_destroy(&s);
    }
}

TEST(Copy, CopyAndCopyAtMost)
{
    Record src({1, -1, 2, -2, 3, -3}, true, 0.125), dst({9, 9, 9, 9, 9, 9, 9, 9, 9});
    ASSERT_EQ(dsp_copy(dst.get(), src.get()), 0);
    EXPECT_EQ(dst->points, 3);
    EXPECT_EQ(dst->complex, 1);
    EXPECT_EQ(dst->delta, 0.125);
    EXPECT_EQ(dst.values(), src.values());
    ASSERT_EQ(dsp_copy_at_most(dst.get(), src.get(), 2), 0);
    EXPECT_EQ(dst.values(), (V{1, -1, 2, -2}));
    ASSERT_EQ(dsp_copy_at_most(dst.get(), src.get(), 50), 0);
    EXPECT_EQ(dst->points, 3);
}

TEST(Copy, RepeatedCopiesOfOneSizeAllocateOnce)
{
    ScopedAllocHooks hooks;
    Record src({1, 2, 3, 4}), dst;
    for (int i = 0; i < 5; ++i) ASSERT_EQ(dsp_copy(dst.get(), src.get()), 0);
    EXPECT_EQ(hooks.counts().total(), 2);  // the source's and the first copy's
}

TEST(Append, RealAndComplexCombinations)
{
    struct Case {
        V dst;
        bool dst_complex;
        V src;
        bool src_complex;
        V expected;
    };
    // The result is complex when either is; the destination keeps its spacing.
    for (const Case &c : std::vector<Case>{{{1, 2}, false, {3, 4, 5}, false, {1, 2, 3, 4, 5}},
                                           {{1, 2}, false, {3, -3}, true, {1, 0, 2, 0, 3, -3}},
                                           {{1, -1}, true, {3, 4}, false, {1, -1, 3, 0, 4, 0}},
                                           {{}, false, {5, 6}, false, {5, 6}}}) {
        Record dst(c.dst, c.dst_complex, 0.5), src(c.src, c.src_complex, 9.0);
        ASSERT_EQ(dsp_append(dst.get(), src.get()), 0);
        EXPECT_EQ(dst.values(), c.expected);
        EXPECT_EQ(dst->complex, c.dst_complex || c.src_complex ? 1 : 0);
        EXPECT_EQ(dst->delta, 0.5);
    }
}

TEST(Compare, DeltaFirstThenSamplesWithInclusiveTolerance)
{
    struct Side {
        V values;
        bool complex_flag;
        double delta;
    };
    struct Case {
        Side a, b;
        double tol;
        int32_t verdict;
    };
    const auto side = [](V values, bool complex_flag = false, double delta = 1.0) {
        return Side{std::move(values), complex_flag, delta};
    };
    const Side slow = side({1, 2, 3}, false, 1.5), fast = side({1, 2, 3}), real = side({1, 2});
    for (const Case &c : std::vector<Case>{
             {slow, fast, 0.1, 1},
             {fast, slow, 0.1, -1},
             {slow, fast, 1.0, 0},
             {slow, fast, 0.5, 0},  // |difference| == tolerance counts as equal
             {side({1, 2, 3.25}), fast, 0.25, 0},
             {side({1, 2, 3.25}), fast, 0.125, 1},
             {fast, side({1, 2, 3.25}), 0.125, -1},
             {side({5, 0}), side({0, 9}), 0.0, 1},  // the first deciding difference stops
             {side({1, kNaN}), side({1, 1}), 10.0, -1},  // a NaN difference is "below"
             {side({1, 1}), side({1, kNaN}), 10.0, -1},
             // Mixed kinds: the first's imaginary part is judged against 0; the
             // second's stands on the subtracted side, so its verdict is mirrored.
             {side({1, 0.5, 2, 0}, true), real, 0.25, 1},
             {side({1, 0.5, 2, 0}, true), real, 0.5, 0},
             {real, side({1, 0.5, 2, 0}, true), 0.25, -1},
             {real, side({1, -0.5, 2, 0}, true), 0.25, 1},
             {side({1}), side({1, kNaN}, true), 1.0, 1},
             {side({1, kNaN}, true), side({1}), 1.0, -1},
             {side({1, 2, 3, 4}, true), side({1, 2, 3, 4.5}, true), 0.1, -1},
         }) {
        Record a(c.a.values, c.a.complex_flag, c.a.delta), b(c.b.values, c.b.complex_flag, c.b.delta);
        int32_t verdict = 42;
        EXPECT_EQ(dsp_cmp(a.get(), b.get(), c.tol, &verdict), 0);
        EXPECT_EQ(verdict, c.verdict) << "tolerance " << c.tol << ", first " << c.a.values[0];
    }
}

TEST(Compare, DifferentLengthsAreNotCompared)
{
    Record a({1, 2}), b({1, 2, 3});
    int32_t verdict = 42;
    EXPECT_EQ(dsp_cmp(a.get(), b.get(), 1.0, &verdict), -1);
    EXPECT_EQ(verdict, 42);
}

// Lengths, delta and complex flag of the shape rule are checked through every
// two-operand member in the binary arithmetic tests.
TEST(BinaryShape, ResultSharingAnInputKeepsItsValues)
{
    Record a({1, 2, 3}), c({0, 1, 0, 1, 0, 1}, true);
    ASSERT_EQ(dsp_binary_shape(a.get(), c.get(), a.get()), 0);
    EXPECT_EQ(a->complex, 1);
    EXPECT_EQ(a->allocated, 6);
    EXPECT_EQ(V(a->data, a->data + 3), (V{1, 2, 3}));  // real values survive the doubling

    // Caller-attached storage is copied with the result's old (real) size:
    // the sanitizers report any read past these three values.
    double attached[3] = {4, 5, 6};
    dsp s = dsp_test::attached_record(attached, 3);
    ASSERT_EQ(dsp_binary_shape(&s, c.get(), &s), 0);
    EXPECT_EQ(V(s.data, s.data + 3), (V{4, 5, 6}));
    dsp_destroy(&s);
}

TEST(CopyFailures, ReturnMinusOneAndLeaveInputsAlone)
{
    ScopedAllocHooks hooks;
    Record src({1, 2, 3, 4}, true);
    {
        Record dst;
        hooks.fail_from(0);
        EXPECT_EQ(dsp_copy(dst.get(), src.get()), -1);
        EXPECT_EQ(dsp_copy_at_most(dst.get(), src.get(), 1), -1);
        EXPECT_EQ(dspu_subvec(src.get(), dst.get(), 1, 1), -1);
        EXPECT_EQ(dst->allocated, 0);
        hooks.never_fail();
    }
    {
        Record dst({1, 2}), dst2({1, 2}, true);
        hooks.fail_from(0);  // the conversion to complex fails
        EXPECT_EQ(dsp_append(dst.get(), src.get()), -1);
        EXPECT_EQ(dst->data, nullptr);
        EXPECT_EQ(dsp_append(dst2.get(), src.get()), -1);  // the growth fails
        EXPECT_EQ(dst2->allocated, 0);
    }
    hooks.never_fail();
    EXPECT_EQ(src.values(), (V{1, 2, 3, 4}));
}
