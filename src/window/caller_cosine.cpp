// Cosine-sum window of the caller's coefficients, used as given.
#include "window/window.hpp"

extern "C" int32_t dspi_window_cos(dsp *s, const dsp *coefficients)
{
    if (coefficients->complex) return -1;
    return dsp_window::apply_fresh_window(s, true, [coefficients](dsp *w) {
        return dsp_window::generate_cosine_sum(w, coefficients->data, coefficients->points, 0, 0.0);
    });
}
