// The triangle (Bartlett) window, peaking at c = points / 2.
#include "window/window.hpp"

#include <cmath>

namespace dsp_window {

double triangle_peak(int32_t mode, int32_t n)
{
    const double nn = static_cast<double>(n) * n;
    switch (mode) {
    case DSP_WINDOW_SCALE_AMPLITUDE: return n % 2 == 0 ? 2.0 : 2.0 * nn / (nn + 1.0);
    case DSP_WINDOW_SCALE_POWER: return std::sqrt(3.0 * nn / (nn + 2.0));
    default: return 1.0;
    }
}

int32_t generate_triangle(dsp *w, int32_t flags)
{
    if (has_flag(flags, DSP_WINDOW_SYMMETRIC | DSP_WINDOW_OWN_LENGTH)) return -1;
    const int32_t mode = scaling_mode(flags);
    if (mode == 3) return -1;
    const int32_t n = w->points;
    if (n <= 0) return 0;
    double *x = w->data;
    const double peak = triangle_peak(mode, n);
    const double fall = 2.0 * peak / n;
    const int32_t c = n / 2;
    x[c] = peak;
    double value = peak;
    for (int32_t m = 1; m <= (n - 1) / 2; ++m) {
        value = m % kRecomputeEvery == 0 ? peak * (1.0 - 2.0 * m / n) : value - fall;
        x[c + m] = x[c - m] = value;
    }
    if (n % 2 == 0) x[0] = 0.0;
    return 0;
}

}  // namespace dsp_window
