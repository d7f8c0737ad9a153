// Decibel view of a record.
#include "core/numeric.hpp"
#include "libdsp.h"

#include <cmath>

extern "C" int32_t dspi_db(dsp *s, double factor)
{
    using dsp_core::kLogFloor;
    const double floor_level = std::log10(kLogFloor) * factor;
    double *d = s->data;
    if (!s->complex) {
        for (int32_t i = 0; i < s->points; ++i) {
            const double x = d[i];
            d[i] = x >= kLogFloor ? std::log10(x) * factor : floor_level;
        }
        return 0;
    }
    for (int32_t i = 0; i < s->points; ++i) {
        // Parts pinned to +-1e100 (NaN to the lower bound) keep the power finite.
        const double re = dsp_core::clamp_huge(d[2 * i]);
        const double im = dsp_core::clamp_huge(d[2 * i + 1]);
        const double p = re * re + im * im;
        if (p >= kLogFloor) {
            d[2 * i] = std::log10(p) * factor * 0.5;
            d[2 * i + 1] = std::atan2(im, re) * factor * dsp_core::kLog10E;
        } else {
            d[2 * i] = floor_level;
            d[2 * i + 1] = 0.0;
        }
    }
    return 0;
}
