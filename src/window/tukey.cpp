// Tukey window: flat over the middle, raised-cosine tapers of total length
// N r at the ends.
#include "core/numeric.hpp"
#include "window/walk.hpp"

#include <cmath>

namespace dsp_window {

int32_t generate_tukey(dsp *w, double r, int32_t flags)
{
    if (!parametric_accepts(w, flags)) return -1;
    const int32_t n = w->points;
    if (n < 1) return 0;
    const double taper = n * r;
    const double flat = (1.0 - r) * n / 2;
    const double k = taper == 0.0 ? 0.0 : dsp_core::kTwoPi / taper;
    auto shape = [flat, k](double d) { return d <= flat ? 1.0 : 0.5 * (1.0 + std::cos((d - flat) * k)); };
    const bool split = splits_centre(flags, n);
    // The far point of an even length is where the taper ends: set to 0
    // without evaluating the cosine, or to 1 when there is no taper.
    auto far = [&](double d) { return split ? shape(d) : r <= 0.0 ? 1.0 : 0.0; };
    centred_walk(w->data, n, split, 1.0, shape(0.0), shape, far);
    return scale_walked(w, scaling_mode(flags));
}

}  // namespace dsp_window

extern "C" int32_t dspi_window_tukey(dsp *s, double r, int32_t flags)
{
    return dsp_window::apply_fresh_window(s, !dsp_window::has_flag(flags, DSP_WINDOW_NO_ROTATE),
                                          [=](dsp *w) { return dsp_window::generate_tukey(w, r, flags); });
}
