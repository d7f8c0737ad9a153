// Gauss window exp(-0.5 (x / (N sigma))^2) at distance x from the centre.
#include "window/walk.hpp"

#include <algorithm>
#include <cmath>

namespace dsp_window {

int32_t generate_gauss(dsp *w, double sigma, int32_t flags)
{
    if (!parametric_accepts(w, flags)) return -1;
    const int32_t n = w->points;
    if (n < 1) return 0;
    double *x = w->data;
    const bool split = splits_centre(flags, n);
    if (sigma == 0.0) {
        // The limit of ever narrower bells: only the centre point remains.
        std::fill(x, x + n, 0.0);
        x[n / 2] = 1.0;
        if (split) x[n / 2 - 1] = 1.0;
    } else {
        const double nd = n;
        const double coefficient = -0.5 / (nd * nd * sigma * sigma);
        auto bell = [coefficient](double d) { return std::exp(d * d * coefficient); };
        centred_walk(x, n, split, 1.0, 1.0, bell, bell);
    }
    return scale_walked(w, scaling_mode(flags));
}

}  // namespace dsp_window

extern "C" int32_t dspi_window_gauss(dsp *s, double sigma, int32_t flags)
{
    return dsp_window::apply_fresh_window(s, !dsp_window::has_flag(flags, DSP_WINDOW_NO_ROTATE),
                                          [=](dsp *w) { return dsp_window::generate_gauss(w, sigma, flags); });
}
