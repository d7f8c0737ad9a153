// The catalogue entry points dspi_window and dspi_window2, served from a
// process-wide cache of the 16 windows used most recently, so that the
// spectrum loop of an instrument costs one multiplication per sample.
#include "core/numeric.hpp"
#include "window/cache.hpp"
#include "window/window.hpp"

#include <new>

namespace {

constexpr int32_t kSlots = 16;
// Only these flags shape a window; the rotation flags act after it.
constexpr int32_t kShapeFlags = DSP_WINDOW_SCALE_MASK | DSP_WINDOW_SYMMETRIC | DSP_WINDOW_OWN_LENGTH;

struct Slot {
    dsp window;  // points = the signal length it was made for
    int32_t type;
    int32_t flags;  // flags & kShapeFlags
    double length;  // compared only for own-length windows
    bool valid;     // false while empty or after a failed build
};

// One block of slots, allocated on first use. They are filled in order; once
// all are taken, the slot after the one used last (by a hit or a build) is
// replaced, round robin.
Slot *slots = nullptr;
int32_t slots_taken = 0;
int32_t last_used = kSlots - 1;

bool have_block()
{
    if (slots) return true;
    slots = new (std::nothrow) Slot[kSlots];
    if (!slots) return false;
    for (int32_t i = 0; i < kSlots; ++i) {
        dsp_init(&slots[i].window);
        slots[i].valid = false;
    }
    slots_taken = 0;
    last_used = kSlots - 1;
    return true;
}

bool holds(const Slot &slot, int32_t points, int32_t type, int32_t flags, double length)
{
    if (!slot.valid || slot.window.points != points || slot.type != type || slot.flags != flags) return false;
    return !dsp_window::has_flag(flags, DSP_WINDOW_OWN_LENGTH) || dsp_core::tolerant_equal(slot.length, length);
}

Slot *find(int32_t points, int32_t type, int32_t flags, double length)
{
    for (int32_t i = 0; i < slots_taken; ++i) {
        if (holds(slots[i], points, type, flags, length)) {
            last_used = i;
            return &slots[i];
        }
    }
    return nullptr;
}

// A replaced slot keeps its record, which is only resized.
Slot &take()
{
    const int32_t i = slots_taken < kSlots ? slots_taken++ : (last_used + 1) % kSlots;
    last_used = i;
    return slots[i];
}

// The window of these points, type, flags and length, from the cache or
// built into a slot; null on failure (the slot is then left empty).
dsp *window_for(int32_t points, int32_t type, int32_t flags, double length)
{
    if (!have_block()) return nullptr;
    const int32_t key_flags = flags & kShapeFlags;
    if (Slot *hit = find(points, type, key_flags, length)) return &hit->window;
    Slot &slot = take();
    slot.valid = false;
    slot.type = type;
    slot.flags = key_flags;
    slot.length = length;
    slot.window.points = points;
    slot.window.complex = 0;
    if (dsp_alloc(&slot.window) != 0) return nullptr;
    if (dsp_window::generate_catalogue(&slot.window, type, flags, length) != 0) return nullptr;
    slot.valid = true;
    return &slot.window;
}

}  // namespace

namespace dsp_window {

int32_t release_window_cache()
{
    if (!slots) return 0;
    for (int32_t i = 0; i < kSlots; ++i)
        if (dsp_destroy(&slots[i].window) != 0) return -1;
    delete[] slots;
    slots = nullptr;
    slots_taken = 0;
    return 0;
}

}  // namespace dsp_window

extern "C" {

int32_t dspi_window(dsp *s, int32_t type, int32_t flags)
{
    if (dsp_window::has_flag(flags, DSP_WINDOW_OWN_LENGTH)) return -1;
    return dspi_window2(s, type, flags, 0.0);
}

int32_t dspi_window2(dsp *s, int32_t type, int32_t flags, double length)
{
    using dsp_window::has_flag;
    if (dsp_window::scaling_mode(flags) == 3) return -1;
    const bool own = has_flag(flags, DSP_WINDOW_OWN_LENGTH);
    // The uniform window over the whole record multiplies by 1.0: skip it.
    if (type == DSP_WINDOW_UNIFORM && !own) return has_flag(flags, DSP_WINDOW_ROTATE_UNIFORM) ? dspi_swap_halves2(s) : 0;
    dsp *window = window_for(s->points, type, flags, length);
    if (!window || dsp_window::multiply_by_window(s, window) != 0) return -1;
    // Rotation brings the window's centre to index 0, the phase reference of
    // a transform. A uniform window has no centre worth moving, so it is
    // rotated only on request.
    const bool rotate = type == DSP_WINDOW_UNIFORM ? has_flag(flags, DSP_WINDOW_ROTATE_UNIFORM)
                                                   : !has_flag(flags, DSP_WINDOW_NO_ROTATE);
    return rotate ? dspi_swap_halves2(s) : 0;
}

}  // extern "C"
