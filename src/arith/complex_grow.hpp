// Turning a real record complex in place.
#pragma once

#include "core/record.hpp"

namespace dsp_arith {

// Makes a real record of n points complex and writes point i as
// to_pair(x[i], re, im). The storage doubles in place, so the points are
// filled from the last one down: no real value is overwritten before it is
// read. Returns -1 (record complex, without storage) when growth fails.
template <typename ToPair>
int32_t grow_real_to_complex(dsp *s, ToPair to_pair)
{
    const int32_t n = s->points;
    s->complex = 1;
    if (dsp_realloc(s, n, 0) != 0) return -1;
    double *d = s->data;
    for (int32_t i = n - 1; i >= 0; --i) {
        const double x = d[i];
        to_pair(x, d[2 * i], d[2 * i + 1]);
    }
    return 0;
}

// Makes a complex record real, point i = f(re, im), packed from the first
// point up so every pair is read before its slot is reused.
template <typename ToValue>
void pack_complex_to_real(dsp *s, ToValue f)
{
    double *d = s->data;
    s->complex = 0;
    for (int32_t i = 0; i < s->points; ++i) d[i] = f(d[2 * i], d[2 * i + 1]);
}

}  // namespace dsp_arith
