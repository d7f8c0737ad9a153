// Filling a buffer with evenly spaced values (frequency axes). The end points
// are stored as given, never computed, so an axis ends exactly where asked.
#include "libdsp_vna.h"

#include <cmath>

void vfpd_ExpandLinear(double *out, int32_t n, double first, double last)
{
    if (n <= 0) return;
    out[0] = first;
    if (n == 1) return;
    out[n - 1] = last;
    const double step = (last - first) / (n - 1);
    for (int32_t i = 1; i < n - 1; ++i) {
        double offset = i * step;
        out[i] = offset + first;
    }
}

void vfpd_ExpandLog(double *out, int32_t n, double first, double last)
{
    if (n <= 0 || !(first > 0.0) || !(last > 0.0)) return;
    out[0] = first;
    if (n == 1) return;
    const double a = std::log10(first);
    const double step = (std::log10(last) - a) / (n - 1);
    for (int32_t i = 1; i < n - 1; ++i) {
        double exponent = i * step;
        out[i] = std::pow(10.0, exponent + a);
    }
    out[n - 1] = last;
}
