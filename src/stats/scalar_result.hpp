// Result handling shared by the statistics (dsps_) family.
#pragma once

#include "core/record.hpp"

#include <cstddef>

namespace dsp_stats {

inline std::size_t point_count(const dsp *s) { return static_cast<std::size_t>(s->points > 0 ? s->points : 0); }

// Reshapes result to one point and stores the value; its delta is kept. The
// value is computed before this is called, so the result may be the source.
inline int32_t store_point(dsp *result, bool complex_flag, double re, double im = 0.0)
{
    result->points = 1;
    result->complex = complex_flag ? 1 : 0;
    if (dsp_alloc(result) != 0) return -1;
    result->data[0] = re;
    if (complex_flag) result->data[1] = im;
    return 0;
}

// Stores values as a real record of count points; delta is kept.
inline int32_t store_values(dsp *result, const double *values, int32_t count)
{
    result->points = count;
    result->complex = 0;
    if (dsp_alloc(result) != 0) return -1;
    for (int32_t i = 0; i < count; ++i) result->data[i] = values[i];
    return 0;
}

}  // namespace dsp_stats
