// Internal interface of the window family: the generators that write a window
// into a real record, and the steps shared by the entry points.
#pragma once

#include "core/record.hpp"

namespace dsp_window {

inline int32_t scaling_mode(int32_t flags) { return flags & DSP_WINDOW_SCALE_MASK; }
inline bool has_flag(int32_t flags, int32_t flag) { return (flags & flag) != 0; }

// Shapes walked sample by sample (an angle step, a falling value) are
// advanced by additions and recomputed from the sample index this often, so
// that the additions' rounding errors cannot pile up.
constexpr int32_t kRecomputeEvery = 1024;

// Catalogue window of `type` over all points of w (real; complex: -1), with
// the caller's flags and, for DSP_WINDOW_OWN_LENGTH, its length.
int32_t generate_catalogue(dsp *w, int32_t type, int32_t flags, double length);

// Cosine sum of `terms` coefficients centred on points / 2; with
// DSP_WINDOW_OWN_LENGTH only `length` points are non-zero. No coefficients
// give zeros. Refuses DSP_WINDOW_SYMMETRIC.
int32_t generate_cosine_sum(dsp *w, const double *coefficients, int32_t terms, int32_t flags, double length);
// Constant `value` over all points, or over the first ceil(length) (at least
// one) with DSP_WINDOW_OWN_LENGTH. Refuses DSP_WINDOW_SYMMETRIC.
int32_t generate_uniform(dsp *w, double value, int32_t flags, double length);
// Triangle peaking at points / 2. Refuses symmetric placement and own length.
int32_t generate_triangle(dsp *w, int32_t flags);
// Peak of the triangle in a scaling mode (0, 1 or 2) for n points.
double triangle_peak(int32_t mode, int32_t n);

// Parametric shapes; they refuse DSP_WINDOW_OWN_LENGTH and a complex w.
int32_t generate_kaiser(dsp *w, double beta, int32_t flags);
int32_t generate_gauss(dsp *w, double sigma, int32_t flags);
int32_t generate_tukey(dsp *w, double r, int32_t flags);
int32_t generate_sinc_lobe(dsp *w, double extent, double exponent, int32_t flags);

// Mean and root mean square of a real record, summed as dsps_mean and
// dsps_rms sum them (blocks of 2048 values); 0.0 for an empty record.
double window_mean(const dsp *w);
double window_rms(const dsp *w);

// s *= w point by point (both parts of complex points), with the shape rule
// of two-operand operations; w takes s's delta first so that it is kept.
int32_t multiply_by_window(dsp *s, dsp *w);

// The common frame of the parametric entry points: generate the window into
// a temporary record of s's length, multiply, rotate if asked, release.
template <typename Generate>
int32_t apply_fresh_window(dsp *s, bool rotate, Generate generate)
{
    dsp w;
    dsp_init(&w);
    w.points = s->points;
    int32_t status = dsp_alloc(&w);
    if (status == 0) status = generate(&w);
    if (status == 0) status = multiply_by_window(s, &w);
    if (status == 0 && rotate) status = dspi_swap_halves2(s);
    dsp_destroy(&w);
    return status;
}

}  // namespace dsp_window
