// Phase unwrapping of real phase traces.
#include "core/numeric.hpp"
#include "libdsp.h"

#include <algorithm>
#include <cmath>

namespace {
using dsp_core::kPi;
using dsp_core::kTwoPi;

// Brings x within pi of reference by whole turns; values already within
// reach are returned untouched (bit for bit).
inline double unwrap_against(double x, double reference)
{
    const double d = x - reference;
    if (!(d > kPi || !(d >= -kPi))) return x;
    double folded = std::fmod(d, kTwoPi);
    if (folded > kPi)
        folded -= kTwoPi;
    else if (folded < -kPi)
        folded += kTwoPi;
    return reference + folded;
}
}  // namespace

extern "C" {

int32_t dspi_unwrap(dsp *s)
{
    if (s->complex) return -1;
    // The reference starts at 0, so the first value is itself folded into
    // [-pi, pi].
    double reference = 0.0;
    for (int32_t i = 0; i < s->points; ++i) {
        s->data[i] = unwrap_against(s->data[i], reference);
        reference = s->data[i];
    }
    return 0;
}

int32_t dspi_unwrap_wnd(dsp *s, int32_t window)
{
    if (s->complex || window < 0) return -1;
    if (window == 1) return dspi_unwrap(s);
    double *d = s->data;
    const int32_t n = s->points;
    const int32_t m = std::min(window, n);
    double sum = 0.0;
    // Start-up: the mean of the values corrected so far.
    for (int32_t i = 0; i < m; ++i) {
        const double reference = i > 0 ? sum / i : 0.0;
        d[i] = unwrap_against(d[i], reference);
        sum += d[i];
    }
    // Steady state: a running mean over the last `window` corrected values.
    const double inverse = window > 0 ? 1.0 / window : 0.0;
    for (int32_t i = m; i < n; ++i) {
        const double reference = window > 0 ? sum * inverse : 0.0;
        d[i] = unwrap_against(d[i], reference);
        sum = sum + d[i] - d[i - window];
    }
    return 0;
}

}  // extern "C"
