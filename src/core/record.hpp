// Internal helpers on the dsp record shared by every family.
#pragma once

#include "libdsp.h"

#include <cstddef>

namespace dsp_core {

// Doubles a record of this shape occupies: points, doubled when complex.
inline std::size_t doubles_for(int32_t points, int32_t complex_flag)
{
    std::size_t n = points > 0 ? static_cast<std::size_t>(points) : 0;
    return complex_flag ? 2 * n : n;
}

inline std::size_t doubles_of(const dsp *s) { return doubles_for(s->points, s->complex); }

// The count dsp_alloc compares with `allocated`, in the library's int32 range.
inline int64_t needed_count(int32_t points, int32_t complex_flag)
{
    int64_t n = points;
    return complex_flag ? 2 * n : n;
}

}  // namespace dsp_core

// Shape rule of every two-operand operation: the inputs must have the same
// point count; the result gets the mean delta, is complex when either input
// is, takes the first input's point count and is grown so that an input it
// shares storage with survives (dsp_realloc) or freshly (dsp_alloc).
int32_t dsp_binary_shape(const dsp *first, const dsp *second, dsp *result);
