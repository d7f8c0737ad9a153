// Allocator hooks for tests: count every allocation the library makes
// through dsp_alloc/dsp_realloc/dsp_destroy and fail chosen ones on demand.
#pragma once

#include "libdsp.h"

#include <cstdint>

namespace dsp_test {

struct AllocCounts {
    int allocs = 0;
    int reallocs = 0;
    int frees = 0;
    int total() const { return allocs + reallocs; }
};

// Installs counting hooks for its lifetime and restores the previous ones.
// fail_from(k): the k-th growth from now on (0 = the next) and every later
// one fail, leaving the record without storage as an out-of-memory would.
class ScopedAllocHooks {
public:
    ScopedAllocHooks();
    ~ScopedAllocHooks();
    ScopedAllocHooks(const ScopedAllocHooks &) = delete;
    ScopedAllocHooks &operator=(const ScopedAllocHooks &) = delete;

    const AllocCounts &counts() const;
    void reset_counts();
    void fail_from(int k);
    void never_fail();

private:
    dsp_alloc_hook_t old_alloc_ = nullptr;
    dsp_realloc_hook_t old_realloc_ = nullptr;
    dsp_free_hook_t old_free_ = nullptr;
};

// Runs `attempt` with the k-th growth failing, for k = 0, 1, ... until a run
// succeeds; `attempt` returns the call's status. Returns the number of
// failing runs, so a caller can check that every allocation point was hit.
template <typename Attempt>
int for_each_failing_growth(ScopedAllocHooks &hooks, Attempt attempt, int limit = 64)
{
    for (int k = 0; k < limit; ++k) {
        hooks.fail_from(k);
        const bool ok = attempt(k);
        hooks.never_fail();
        if (ok) return k;
    }
    return limit;
}

}  // namespace dsp_test
