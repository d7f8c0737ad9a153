// Steps shared by every windowing entry point: the window's mean and root
// mean square, and the multiplication of a record by a window.
#include "core/numeric.hpp"
#include "stats/block_sum.hpp"
#include "window/walk.hpp"

#include <cmath>

namespace dsp_window {

double window_mean(const dsp *w)
{
    const double *x = w->data;
    const std::size_t n = dsp_core::doubles_of(w);
    if (n == 0) return 0.0;
    return dsp_core::block_sum(n, [x](std::size_t i) { return x[i]; }) * (1.0 / static_cast<double>(n));
}

double window_rms(const dsp *w)
{
    const double *x = w->data;
    const std::size_t n = dsp_core::doubles_of(w);
    if (n == 0) return 0.0;
    const double sum = dsp_core::block_sum(n, [x](std::size_t i) { return dsp_core::capped_magsq(x[i], 0.0); });
    return std::sqrt(sum / static_cast<double>(n));
}

int32_t scale_walked(dsp *w, int32_t mode)
{
    switch (mode) {
    case DSP_WINDOW_SCALE_AMPLITUDE: return dspi_scale(w, 1.0 / window_mean(w));
    case DSP_WINDOW_SCALE_POWER: return dspi_scale(w, 1.0 / window_rms(w));
    case DSP_WINDOW_SCALE_NONE: return 0;
    default: return dspi_scale(w, 0.0);
    }
}

int32_t multiply_by_window(dsp *s, dsp *w)
{
    w->delta = s->delta;
    if (dsp_binary_shape(s, w, s) != 0) return -1;
    const double *v = w->data;
    double *x = s->data;
    const std::size_t n = dsp_core::doubles_of(w);
    if (s->complex) {
        for (std::size_t i = 0; i < n; ++i) {
            x[2 * i] *= v[i];
            x[2 * i + 1] *= v[i];
        }
    } else {
        for (std::size_t i = 0; i < n; ++i) x[i] *= v[i];
    }
    return 0;
}

}  // namespace dsp_window
