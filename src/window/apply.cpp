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

namespace {

// x[i] *= v[i] over n points of `width` doubles each.
void multiply(double *x, const double *v, std::size_t n, std::size_t width)
{
    if (width == 1) {
        for (std::size_t i = 0; i < n; ++i) x[i] *= v[i];
        return;
    }
    for (std::size_t i = 0; i < n; ++i) {
        x[2 * i] *= v[i];
        x[2 * i + 1] *= v[i];
    }
}

// The product with the halves of an even count exchanged, in one pass: the
// same values that multiplying and then swapping the halves would give.
void multiply_swapping_halves(double *x, const double *v, std::size_t n, std::size_t width)
{
    const std::size_t h = n / 2;
    if (width == 1) {
        double *high = x + h;
        const double *vh = v + h;
        for (std::size_t i = 0; i < h; ++i) {
            const double first = x[i] * v[i];
            x[i] = high[i] * vh[i];
            high[i] = first;
        }
        return;
    }
    double *high = x + 2 * h;
    const double *vh = v + h;
    for (std::size_t i = 0; i < h; ++i) {
        const double re = x[2 * i] * v[i];
        const double im = x[2 * i + 1] * v[i];
        x[2 * i] = high[2 * i] * vh[i];
        x[2 * i + 1] = high[2 * i + 1] * vh[i];
        high[2 * i] = re;
        high[2 * i + 1] = im;
    }
}

}  // namespace

int32_t multiply_by_window(dsp *s, dsp *w, bool rotate)
{
    w->delta = s->delta;
    if (dsp_binary_shape(s, w, s) != 0) return -1;
    const std::size_t n = dsp_core::doubles_of(w);
    const std::size_t width = s->complex ? 2 : 1;
    if (rotate && n % 2 == 0) {
        multiply_swapping_halves(s->data, w->data, n, width);
        return 0;
    }
    multiply(s->data, w->data, n, width);
    return rotate ? dspi_swap_halves2(s) : 0;
}

}  // namespace dsp_window
