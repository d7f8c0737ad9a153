// The centred walk of the parametric shapes: values of the shape at growing
// distances from the centre c = points / 2, stored on both sides at once.
#pragma once

#include "window/window.hpp"

namespace dsp_window {

// Parametric generators refuse an own length and a complex record.
inline bool parametric_accepts(const dsp *w, int32_t flags)
{
    return !has_flag(flags, DSP_WINDOW_OWN_LENGTH) && !w->complex;
}

// Symmetric placement of an even length puts the centre between points
// c - 1 and c; odd lengths always have a centre point.
inline bool splits_centre(int32_t flags, int32_t n)
{
    return has_flag(flags, DSP_WINDOW_SYMMETRIC) && n % 2 == 0;
}

// `count` steps from distance `start`: each value goes right of the centre
// (from c, or from c + 1 when c holds the centre point) and to the mirrored
// point on the left. Returns the distance after the last step.
template <typename Shape>
double walk_outwards(double *x, int32_t n, bool split, int32_t count, double start, double step, Shape shape)
{
    const int32_t c = n / 2;
    int32_t right = split ? c : c + 1;
    int32_t left = c - 1;
    double distance = start;
    for (int32_t j = 0; j < count; ++j) {
        const double v = shape(distance);
        x[right++] = v;
        x[left--] = v;
        distance += step;
    }
    return distance;
}

// The whole walk of the Gauss, Tukey and sinc-lobe windows over n >= 1
// points. An even length leaves the far-left point over, which gets
// far(distance) at the next distance; when the centre is split, the far-right
// point mirrors it.
template <typename Shape, typename Far>
void centred_walk(double *x, int32_t n, bool split, double step, double centre, Shape shape, Far far)
{
    if (!split) x[n / 2] = centre;
    const double next = walk_outwards(x, n, split, (n - 1) / 2, split ? step / 2 : step, step, shape);
    if (n % 2 == 0) {
        x[0] = far(next);
        if (split) x[n - 1] = x[0];
    }
}

// Scaling of the walked shapes: by 1 / mean (mode 0), 1 / root mean square
// (mode 1), none (mode 2), or by 0.0 (mode 3, which leaves zeros).
int32_t scale_walked(dsp *w, int32_t mode);

}  // namespace dsp_window
