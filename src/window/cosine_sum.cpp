// Cosine sums w[c + m] = sum_k a_k cos(k m theta), centred on c = points / 2,
// and the uniform window, the cosine sum of one term.
#include "core/numeric.hpp"
#include "window/window.hpp"

#include <algorithm>
#include <cmath>

namespace dsp_window {
namespace {

// One sample: each term's angle is the previous term's plus the step. The
// centring supplies the alternating signs of an edge-anchored window.
double cosine_sum_at(const double *a, int32_t terms, double step)
{
    double value = a[0];
    double angle = 0.0;
    for (int32_t k = 1; k < terms; ++k) {
        angle += step;
        value += a[k] * std::cos(angle);
    }
    return value;
}

}  // namespace

int32_t generate_cosine_sum(dsp *w, const double *coefficients, int32_t terms, int32_t flags, double length)
{
    if (has_flag(flags, DSP_WINDOW_SYMMETRIC)) return -1;
    const int32_t n = w->points;
    if (n <= 0) return 0;
    double *x = w->data;
    if (terms <= 0) {
        std::fill(x, x + n, 0.0);
        return 0;
    }
    const bool own = has_flag(flags, DSP_WINDOW_OWN_LENGTH);
    const double theta = !own ? dsp_core::kTwoPi / n : length == 0.0 ? 0.0 : dsp_core::kTwoPi / length;
    // An own length of at least the record's gives the whole window, with
    // the own length's period.
    const bool whole = !own || length > n || dsp_core::tolerant_equal(length, static_cast<double>(n));
    const int32_t c = n / 2;
    const int32_t half = (n - 1) / 2;
    const int32_t floor_length = dsp_core::tolerant_floor(length);
    const int32_t last = whole ? half : std::min(floor_length / 2, half);

    double step = 0.0;
    auto advance = [&step, theta](int32_t m) { step = m % kRecomputeEvery == 0 ? m * theta : step + theta; };
    x[c] = cosine_sum_at(coefficients, terms, 0.0);
    for (int32_t m = 1; m <= last; ++m) {
        advance(m);
        x[c + m] = x[c - m] = cosine_sum_at(coefficients, terms, step);
    }
    if (whole) {
        // Even lengths: the first point is the edge, m = n / 2, which makes
        // the window periodic (w[n - 1] equals w[1]).
        if (n % 2 == 0) {
            advance(half + 1);
            x[0] = cosine_sum_at(coefficients, terms, step);
        }
        return 0;
    }
    std::fill(x, x + (c - last), 0.0);
    std::fill(x + c + last + 1, x + n, 0.0);
    // An even own length covers one point fewer on the right than on the
    // left, so that exactly `length` points are non-zero.
    if (floor_length % 2 == 0 && dsp_core::tolerant_equal(length, static_cast<double>(floor_length)))
        x[c + last] = 0.0;
    return 0;
}

int32_t generate_uniform(dsp *w, double value, int32_t flags, double length)
{
    if (has_flag(flags, DSP_WINDOW_SYMMETRIC)) return -1;
    const int32_t n = w->points;
    if (n <= 0) return 0;
    int32_t count = n;
    if (has_flag(flags, DSP_WINDOW_OWN_LENGTH)) count = std::clamp(dsp_core::tolerant_ceil(length), 1, n);
    std::fill(w->data, w->data + count, value);
    std::fill(w->data + count, w->data + n, 0.0);
    return 0;
}

}  // namespace dsp_window
