#include "support/alloc_hooks.hpp"

#include <cstdlib>

namespace dsp_test {
namespace {
AllocCounts tally;
int fail_countdown = -1;  // growths left before failures start; -1 never

bool should_fail()
{
    if (fail_countdown < 0) return false;
    if (fail_countdown == 0) return true;
    --fail_countdown;
    return false;
}

int counting_alloc(dsp *s)
{
    ++tally.allocs;
    if (s->allocated > 0) std::free(s->data);
    if (should_fail()) {
        s->data = nullptr;
        return 0;
    }
    std::size_t n = static_cast<std::size_t>(s->points) * (s->complex ? 2 : 1);
    s->data = static_cast<double *>(std::malloc(n * sizeof(double)));
    return 0;
}

int counting_realloc(dsp *s, int32_t, int32_t)
{
    ++tally.reallocs;
    if (should_fail()) {
        if (s->allocated > 0) std::free(s->data);
        s->data = nullptr;
        return 0;
    }
    std::size_t n = static_cast<std::size_t>(s->points) * (s->complex ? 2 : 1);
    s->data = static_cast<double *>(std::realloc(s->data, n * sizeof(double)));
    return 0;
}

int counting_free(dsp *s)
{
    ++tally.frees;
    std::free(s->data);
    return 0;
}
}  // namespace

ScopedAllocHooks::ScopedAllocHooks()
{
    tally = AllocCounts{};
    fail_countdown = -1;
    dsp_lib_alloc(counting_alloc, &old_alloc_);
    dsp_lib_realloc(counting_realloc, &old_realloc_);
    dsp_lib_free(counting_free, &old_free_);
}

ScopedAllocHooks::~ScopedAllocHooks()
{
    dsp_lib_alloc(old_alloc_, nullptr);
    dsp_lib_realloc(old_realloc_, nullptr);
    dsp_lib_free(old_free_, nullptr);
}

const AllocCounts &ScopedAllocHooks::counts() const { return tally; }
void ScopedAllocHooks::reset_counts() { tally = AllocCounts{}; }
void ScopedAllocHooks::fail_from(int k) { fail_countdown = k; }
void ScopedAllocHooks::never_fail() { fail_countdown = -1; }

}  // namespace dsp_test
