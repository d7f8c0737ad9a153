// Generation of any catalogue window: the table-driven cosine sums, the
// triangle, and the parametric shapes with the catalogue's fixed parameters.
#include "core/numeric.hpp"
#include "window/tables.hpp"
#include "window/window.hpp"

namespace dsp_window {
namespace {

// Kaiser70 .. Kaiser120: beta for 70 .. 120 dB side-lobe attenuation.
const double kKaiserBeta[] = {9.473960131326246,  10.751776690564654, 12.014077292090791,
                              13.264372446115681, 14.505082414495599, 15.73795091271457};
// Gauss60 .. Gauss80: relative widths.
const double kGaussSigma[] = {0.1583722, 0.1442161, 0.1328102};
// Type 24, the unnamed Tukey window.
constexpr double kTukeyTaper = 0.25;

}  // namespace

int32_t generate_catalogue(dsp *w, int32_t type, int32_t flags, double length)
{
    if (w->complex) return -1;
    if (w->points <= 0) return 0;
    if (type == DSP_WINDOW_BARTLETT) return generate_triangle(w, flags);
    if (const CosineTable *table = cosine_table(type)) {
        const double *a = coefficients_for(*table, scaling_mode(flags));
        if (!a) return -1;
        if (type == DSP_WINDOW_UNIFORM) return generate_uniform(w, a[0], flags, length);
        return generate_cosine_sum(w, a, table->terms, flags, length);
    }
    if (type >= DSP_WINDOW_KAISER70 && type <= DSP_WINDOW_KAISER120)
        return generate_kaiser(w, kKaiserBeta[type - DSP_WINDOW_KAISER70], flags);
    if (type >= DSP_WINDOW_GAUSS60 && type <= DSP_WINDOW_GAUSS80)
        return generate_gauss(w, kGaussSigma[type - DSP_WINDOW_GAUSS60], flags);
    if (type == DSP_WINDOW_SINC_LOBE) return generate_sinc_lobe(w, dsp_core::kPi, 1.0, flags);
    if (type == 24) return generate_tukey(w, kTukeyTaper, flags);
    return -1;
}

}  // namespace dsp_window
