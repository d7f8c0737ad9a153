// Record life cycle and the only two routines through which record storage
// grows, so that a host's allocator hooks see every growth.
#include "core/record.hpp"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {
dsp_alloc_hook_t alloc_hook = nullptr;
dsp_realloc_hook_t realloc_hook = nullptr;
dsp_free_hook_t free_hook = nullptr;

void reset_fields(dsp *s)
{
    s->delta = 1.0;
    s->data = nullptr;
    s->allocated = 0;
    s->points = 0;
    s->complex = 0;
    s->reserved = 0;
}

void release_owned(dsp *s)
{
    if (s->allocated <= 0) return;
    if (free_hook)
        free_hook(s);
    else
        std::free(s->data);
}

// A shape whose storage would not fit the int32 capacity field cannot be
// allocated: report it as an allocation failure.
bool exceeds_capacity(int64_t needed) { return needed > INT32_MAX; }

int32_t fail_allocation(dsp *s)
{
    s->data = nullptr;
    s->allocated = 0;
    return -1;
}

template <typename Hook>
int32_t swap_hook(Hook &slot, Hook hook, Hook *old_hook)
{
    if (old_hook) *old_hook = slot;
    slot = hook;
    return 0;
}
}  // namespace

extern "C" {

int32_t dsp_init(dsp *s)
{
    reset_fields(s);
    return 0;
}

int32_t dsp_destroy(dsp *s)
{
    release_owned(s);
    reset_fields(s);
    return 0;
}

int32_t dsp_alloc(dsp *s)
{
    const int64_t needed = dsp_core::needed_count(s->points, s->complex);
    if (needed <= s->allocated) return 0;
    if (exceeds_capacity(needed)) {
        release_owned(s);
        return fail_allocation(s);
    }
    if (alloc_hook) {
        alloc_hook(s);
    } else {
        // Caller-attached storage (allocated <= 0) is only replaced, never freed.
        if (s->allocated > 0) std::free(s->data);
        s->data = static_cast<double *>(std::malloc(static_cast<std::size_t>(needed) * sizeof(double)));
    }
    if (!s->data) return fail_allocation(s);
    s->allocated = static_cast<int32_t>(needed);
    return 0;
}

int32_t dsp_realloc(dsp *s, int32_t old_points, int32_t old_complex)
{
    const int64_t needed = dsp_core::needed_count(s->points, s->complex);
    if (needed <= s->allocated) return 0;
    if (exceeds_capacity(needed)) {
        release_owned(s);
        return fail_allocation(s);
    }

    // Caller-attached storage is detached and copied into library storage
    // afterwards: realloc must never be handed a block the library does not own.
    const double *attached = nullptr;
    if (s->allocated < 1 && s->data) {
        attached = s->data;
        s->data = nullptr;
    }
    if (realloc_hook) {
        realloc_hook(s, old_points, old_complex);
    } else {
        double *grown = static_cast<double *>(std::realloc(s->data, static_cast<std::size_t>(needed) * sizeof(double)));
        // The record loses its storage on failure; free the old block rather
        // than leak it.
        if (!grown) std::free(s->data);
        s->data = grown;
    }
    if (!s->data) return fail_allocation(s);
    if (attached) {
        std::size_t keep = dsp_core::doubles_for(old_points, old_complex);
        if (keep > static_cast<std::size_t>(needed)) keep = static_cast<std::size_t>(needed);
        std::memcpy(s->data, attached, keep * sizeof(double));
    }
    s->allocated = static_cast<int32_t>(needed);
    return 0;
}

int32_t dsp_lib_alloc(dsp_alloc_hook_t hook, dsp_alloc_hook_t *old_hook)
{
    return swap_hook(alloc_hook, hook, old_hook);
}

int32_t dsp_lib_realloc(dsp_realloc_hook_t hook, dsp_realloc_hook_t *old_hook)
{
    return swap_hook(realloc_hook, hook, old_hook);
}

int32_t dsp_lib_free(dsp_free_hook_t hook, dsp_free_hook_t *old_hook)
{
    return swap_hook(free_hook, hook, old_hook);
}

}  // extern "C"
