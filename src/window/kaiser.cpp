// Kaiser window I0(beta sqrt(1 - (2x/D)^2)) at distance x from the centre.
#include "arith/bessel.hpp"
#include "window/walk.hpp"

#include <cmath>

namespace dsp_window {
namespace {

// Largest |beta|: I0(beta) stays near 1e198 and finite (200 ln 10); in the
// power mode its square must stay finite too (100 ln 10).
constexpr double kBetaLimit = 460.51701859880916;
constexpr double kPowerBetaLimit = 230.25850929940458;

}  // namespace

int32_t generate_kaiser(dsp *w, double beta, int32_t flags)
{
    if (!parametric_accepts(w, flags)) return -1;
    const int32_t n = w->points;
    if (n <= 0) return 0;
    double *x = w->data;
    if (n == 1) {
        x[0] = 1.0;
        return 0;
    }
    const int32_t mode = scaling_mode(flags);
    const double limit = mode == DSP_WINDOW_SCALE_POWER ? kPowerBetaLimit : kBetaLimit;
    // Out of range on either side becomes the positive limit: the window
    // depends on |beta| only.
    if (beta > limit || beta < -limit) beta = limit;

    const bool symmetric = has_flag(flags, DSP_WINDOW_SYMMETRIC);
    const bool split = splits_centre(flags, n);
    const double d = symmetric ? n - 1 : n;
    const double coefficient = 4.0 / (d * d);
    // Symmetric placement reaches the edges exactly: the end points are set
    // below rather than walked to.
    const int32_t count = (n - 1) / 2 - (symmetric && n % 2 == 1 ? 1 : 0);
    const double peak = dsp_core::bessel_i0(beta);
    if (!split) x[n / 2] = peak;
    walk_outwards(x, n, split, count, split ? 0.5 : 1.0, 1.0, [beta, coefficient](double distance) {
        return dsp_core::bessel_i0(beta * std::sqrt(1.0 - distance * distance * coefficient));
    });
    // The edges, where the root is 0: I0(0) = 1.
    if (symmetric) {
        x[0] = 1.0;
        x[n - 1] = 1.0;
    } else if (n % 2 == 0) {
        x[0] = 1.0;
    }

    double divisor = peak;
    if (mode == DSP_WINDOW_SCALE_AMPLITUDE) divisor = window_mean(w);
    if (mode == DSP_WINDOW_SCALE_POWER) divisor = window_rms(w);
    for (int32_t i = 0; i < n; ++i) x[i] /= divisor;
    return 0;
}

}  // namespace dsp_window

extern "C" int32_t dspi_window_kaiser(dsp *s, double beta, int32_t flags)
{
    return dsp_window::apply_fresh_window(s, !dsp_window::has_flag(flags, DSP_WINDOW_NO_ROTATE),
                                          [=](dsp *w) { return dsp_window::generate_kaiser(w, beta, flags); });
}
