// Sinc lobe: (sin(x)/x)^q from x = 0 at the centre out to x = extent at the
// edges.
#include "core/numeric.hpp"
#include "window/walk.hpp"

#include <cmath>

namespace dsp_window {
namespace {

// sin(x)/x raised to q through exp and log where it is positive. Beyond the
// first zero only the integer powers that have a real value are kept; any
// other power gives 0.
double lobe_point(double x, double q)
{
    const double u = x == 0.0 ? 1.0 : std::sin(x) / x;
    if (u > 0.0) return std::exp(q * std::log(u));
    if (dsp_core::tolerant_equal(q, 1.0)) return u;
    if (q == 0.0) return 1.0;
    if (dsp_core::tolerant_equal(q, 2.0)) return u * u;
    return 0.0;
}

}  // namespace

int32_t generate_sinc_lobe(dsp *w, double extent, double exponent, int32_t flags)
{
    if (!parametric_accepts(w, flags)) return -1;
    const int32_t n = w->points;
    if (n < 1) return 0;
    const double step = 2.0 * extent / n;
    auto shape = [exponent](double x) { return lobe_point(x, exponent); };
    centred_walk(w->data, n, splits_centre(flags, n), step, 1.0, shape, shape);
    return scale_walked(w, scaling_mode(flags));
}

}  // namespace dsp_window

extern "C" int32_t dspi_window_sinc(dsp *s, double extent, double exponent, int32_t flags)
{
    return dsp_window::apply_fresh_window(s, !dsp_window::has_flag(flags, DSP_WINDOW_NO_ROTATE), [=](dsp *w) {
        return dsp_window::generate_sinc_lobe(w, extent, exponent, flags);
    });
}
