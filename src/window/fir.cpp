// Windows for FIR design, derived from the filter length and a width
// normalised to the sampling rate. All are symmetric (the taps of a
// linear-phase filter), unscaled and not rotated.
#include "core/numeric.hpp"
#include "window/window.hpp"

#include <cmath>

namespace {

constexpr int32_t kFirFlags = DSP_WINDOW_NO_ROTATE | DSP_WINDOW_SYMMETRIC | DSP_WINDOW_SCALE_NONE;

// Kaiser's design formula: beta for a stop-band attenuation of a dB.
double kaiser_beta(double a)
{
    if (a > 50.0) return 0.1102 * (a - 8.7);
    if (a >= 21.0) return 0.5842 * std::exp(0.4 * std::log(a - 21.0)) + 0.07886 * (a - 21.0);
    return 0.0;
}

// Sinc lobe to pi / (2k) with exponent k x.
int32_t sinc_power(dsp *s, double k, double x)
{
    return dspi_window_sinc(s, (dsp_core::kPi / 2.0) / k, k * x, kFirFlags);
}

// The exponent fitted to the normalised width; a zero width gives the
// degenerate lobe of exponent 0 (all ones).
double fitted_k(double x)
{
    if (dsp_core::tolerant_equal(x, 0.0)) return 1e100;
    if (x <= 1.25) return 0.386 / x + 0.453;
    if (x < 5.0) return 0.774 - 0.0251 * x;
    return 0.648;
}

}  // namespace

extern "C" int32_t dspi_window_fir(dsp *s, int32_t type, double parameter)
{
    const int32_t n = s->points;
    switch (type) {
    case DSP_WINDOW_FIR_GAUSS:
        if (n < 1 || dsp_core::tolerant_equal(parameter, 0.0)) return 0;
        return dspi_window_gauss(s, 1.0 / (n * parameter * dsp_core::kPi), kFirFlags);
    case DSP_WINDOW_FIR_KAISER:
        if (n < 1) return 0;
        return dspi_window_kaiser(s, kaiser_beta((n - 1) * parameter * 14.36 + 7.95), kFirFlags);
    case DSP_WINDOW_FIR_SINC: return sinc_power(s, 0.62, n * parameter);
    case DSP_WINDOW_FIR_SINC_FITTED: {
        const double x = 1.12 * n * parameter;
        return sinc_power(s, fitted_k(x), x);
    }
    default: return dspi_window(s, type, kFirFlags);
    }
}
