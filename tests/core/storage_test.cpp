// Record life cycle, growth through dsp_alloc/dsp_realloc and the allocator hooks.
#include "support/alloc_hooks.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <vector>

using dsp_test::Record;
using dsp_test::ScopedAllocHooks;

namespace {
// Hooks that record what the library hands them.
struct Seen {
    int32_t points = -1, complex_flag = -1, allocated = -1, old_points = -1, old_complex = -1;
    const double *data = nullptr;
};
Seen seen;

int spy_alloc(dsp *s)
{
    seen.points = s->points;
    seen.complex_flag = s->complex;
    seen.allocated = s->allocated;
    seen.data = s->data;
    if (s->allocated > 0) std::free(s->data);
    s->data = static_cast<double *>(std::malloc(sizeof(double) * (s->complex ? 2 : 1) * s->points));
    return 12345;  // ignored by the library
}

int spy_realloc(dsp *s, int32_t old_points, int32_t old_complex)
{
    seen.old_points = old_points;
    seen.old_complex = old_complex;
    seen.data = s->data;
    s->data = static_cast<double *>(std::realloc(s->data, sizeof(double) * (s->complex ? 2 : 1) * s->points));
    return -7;  // ignored by the library
}
}  // namespace

TEST(RecordLifeCycle, InitAndDestroyResetEveryField)
{
    dsp s;
    s.delta = 3.0;
    s.data = reinterpret_cast<double *>(0x1);
    s.allocated = -4;
    s.points = 9;
    s.complex = 1;
    s.reserved = 77;
    const auto expect_reset = [&s] {
        EXPECT_EQ(s.delta, 1.0);
        EXPECT_EQ(s.data, nullptr);
        EXPECT_EQ(s.allocated + s.points + s.complex + s.reserved, 0);
    };
    EXPECT_EQ(dsp_init(&s), 0);
    expect_reset();
    s.points = 3;
    s.complex = 1;
    s.delta = 0.25;
    s.reserved = 5;
    ASSERT_EQ(dsp_alloc(&s), 0);
    EXPECT_EQ(dsp_destroy(&s), 0);
    expect_reset();
    EXPECT_EQ(dsp_destroy(&s), 0);  // destroying an empty record is harmless
}

TEST(RecordStorage, AllocSizesAndReuse)
{
    ScopedAllocHooks hooks;
    Record s;
    EXPECT_EQ(dsp_alloc(s.get()), 0);  // 0 points: nothing to allocate
    EXPECT_EQ(hooks.counts().total(), 0);
    EXPECT_EQ(s->data, nullptr);

    s->points = 5;
    s->complex = 1;
    ASSERT_EQ(dsp_alloc(s.get()), 0);
    EXPECT_EQ(s->allocated, 10);  // a complex point takes two doubles
    EXPECT_EQ(hooks.counts().allocs, 1);

    // Shrinking and regrowing within capacity touches no allocator and keeps contents.
    for (int i = 0; i < 10; ++i) s->data[i] = i;
    s->points = 2;
    s->complex = 0;
    EXPECT_EQ(dsp_alloc(s.get()), 0);
    s->points = 5;
    s->complex = 1;
    EXPECT_EQ(dsp_realloc(s.get(), 2, 0), 0);
    EXPECT_EQ(dsp_alloc(s.get()), 0);
    EXPECT_EQ(hooks.counts().total(), 1);
    EXPECT_EQ(s->allocated, 10);
    EXPECT_EQ(s->data[9], 9.0);
}

TEST(RecordStorage, CallerAttachedStorageIsNeverFreed)
{
    // Stack arrays: freeing either would be reported by the sanitizers.
    double attached[4] = {1, 2, 3, 4};
    dsp s = dsp_test::attached_record(attached, 4);
    EXPECT_EQ(dsp_destroy(&s), 0);
    EXPECT_EQ(attached[3], 4.0);

    // dsp_alloc replaces the pointer by fresh storage.
    s.data = attached;
    s.points = 3;
    ASSERT_EQ(dsp_alloc(&s), 0);
    EXPECT_NE(s.data, attached);
    EXPECT_EQ(s.allocated, 3);
    dsp_destroy(&s);

    // dsp_realloc copies at most old points (doubled when old complex).
    double pairs[6] = {1, -1, 2, -2, 3, -3};
    s = dsp_test::attached_record(pairs, 2, 1);
    ASSERT_EQ(dsp_realloc(&s, 3, 1), 0);  // needs 4 doubles: only 4 of the 6 are copied
    EXPECT_NE(s.data, pairs);
    EXPECT_EQ(std::vector<double>(s.data, s.data + 4), (std::vector<double>{1, -1, 2, -2}));
    dsp_destroy(&s);

    s = dsp_test::attached_record(pairs, 5);
    ASSERT_EQ(dsp_realloc(&s, 1, 1), 0);  // one complex point: 2 doubles kept
    EXPECT_EQ(s.data[0], 1.0);
    EXPECT_EQ(s.data[1], -1.0);
    dsp_destroy(&s);
    EXPECT_EQ(pairs[5], -3.0);
}

TEST(RecordStorage, ReallocHookSeesDetachedCallerStorage)
{
    dsp_realloc_hook_t previous = nullptr;
    dsp_lib_realloc(spy_realloc, &previous);
    double attached[3] = {7, 8, 9};
    dsp s = dsp_test::attached_record(attached, 5);
    EXPECT_EQ(dsp_realloc(&s, 3, 0), 0);
    EXPECT_EQ(seen.data, nullptr);  // detached before the hook runs
    EXPECT_EQ(seen.old_points, 3);
    EXPECT_EQ(seen.old_complex, 0);
    EXPECT_EQ(s.allocated, 5);  // set by the library, whatever the hook returns
    EXPECT_EQ(std::vector<double>(s.data, s.data + 3), (std::vector<double>{7, 8, 9}));
    dsp_destroy(&s);
    dsp_lib_realloc(previous, nullptr);
}

TEST(RecordStorage, HookSettersSwapAndRestore)
{
    dsp_alloc_hook_t before = reinterpret_cast<dsp_alloc_hook_t>(0x1);
    EXPECT_EQ(dsp_lib_alloc(spy_alloc, &before), 0);
    EXPECT_EQ(before, nullptr);  // the runtime default
    dsp_alloc_hook_t current = nullptr;
    EXPECT_EQ(dsp_lib_alloc(spy_alloc, &current), 0);
    EXPECT_EQ(current, spy_alloc);

    Record s({1, 2});
    s->points = 3;
    s->complex = 1;
    seen = Seen{};
    ASSERT_EQ(dsp_alloc(s.get()), 0);
    // The hook sees the new shape with the old storage still attached.
    EXPECT_EQ(seen.points, 3);
    EXPECT_EQ(seen.complex_flag, 1);
    EXPECT_EQ(seen.allocated, 2);
    EXPECT_EQ(s->allocated, 6);

    EXPECT_EQ(dsp_lib_alloc(nullptr, nullptr), 0);  // back to malloc
    EXPECT_EQ(dsp_lib_free(nullptr, nullptr), 0);
    EXPECT_EQ(dsp_lib_realloc(nullptr, nullptr), 0);
}

TEST(RecordStorage, FailedGrowthLeavesNoStorageButKeepsShape)
{
    ScopedAllocHooks hooks;
    Record s({1, 2, 3});
    hooks.fail_from(0);
    s->points = 10;
    s->complex = 1;
    s->delta = 0.5;
    EXPECT_EQ(dsp_alloc(s.get()), -1);
    EXPECT_EQ(s->data, nullptr);
    EXPECT_EQ(s->allocated, 0);
    EXPECT_TRUE(s->points == 10 && s->complex == 1 && s->delta == 0.5);

    hooks.never_fail();
    s->points = 3;
    s->complex = 0;
    ASSERT_EQ(dsp_alloc(s.get()), 0);
    hooks.fail_from(0);
    s->points = 4;
    EXPECT_EQ(dsp_realloc(s.get(), 3, 0), -1);
    EXPECT_EQ(s->data, nullptr);
    EXPECT_EQ(s->allocated, 0);
    EXPECT_EQ(s->points, 4);
}

TEST(RecordStorage, ShapesBeyondTheCapacityFieldFail)
{
    for (bool keep : {false, true}) {
        Record s({1});
        s->points = INT32_MAX;
        s->complex = 1;  // 2^32 - 2 doubles do not fit the int32 capacity
        EXPECT_EQ(keep ? dsp_realloc(s.get(), 1, 0) : dsp_alloc(s.get()), -1);
        EXPECT_EQ(s->data, nullptr);
        EXPECT_EQ(s->allocated, 0);
    }
}

TEST(Library, HousekeepingCalls)
{
    EXPECT_EQ(dsp_version(), 205);
    EXPECT_EQ(dsp_lib_init(), 0);
    EXPECT_EQ(dsp_free_internal(), 0);
    EXPECT_EQ(dsp_free_internal(), 0);
}
