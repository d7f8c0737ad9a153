// The last step of the real-input transform, written over the same ops as
// the complex kernel (see split_radix.hpp). The N real values were
// transformed as h = N/2 complex points; with F that result scaled by 1/h,
// the spectrum scaled by 1/N is, for k = 0..h (F[h] = F[0]),
//   X[k] = (S - P)/4 and X[h-k] = conj(S + P)/4,
//   S = F[k] + conj F[h-k], P = j w^k (F[k] - conj F[h-k]), w = exp(-2 pi j/N),
// computed in place for k and h - k together.
#pragma once

#include "spectral/fft_tables.hpp"

#include <cstdint>

namespace dsp_spectral {
namespace {

template <typename Wide, typename Narrow>
struct RealUntangle {
    template <typename O>
    static inline void pair(double *a, double *b, const Twiddles &tw, int32_t k)
    {
        const typename O::V fa = O::load(a);
        const typename O::V fb = O::conj(O::reverse(O::load(b)));
        const typename O::V s = O::add(fa, fb);
        const typename O::V p = O::times_j(O::template twiddle<false>(O::sub(fa, fb), tw.cos1 + k, tw.pairs1 + 2 * k));
        O::store(a, O::scale(O::sub(s, p), 0.25));
        O::store(b, O::reverse(O::conj(O::scale(O::add(s, p), 0.25))));
    }

    // x holds h + 1 points of room, F in the first h; tw is the table of the
    // full length N = 2h.
    static void run(double *x, int32_t h, const Twiddles &tw)
    {
        const double f0_re = x[0];
        const double f0_im = x[1];
        x[0] = 0.5 * (f0_re + f0_im);
        x[1] = 0.0;
        x[2 * h] = 0.5 * (f0_re - f0_im);
        x[2 * h + 1] = 0.0;
        const int32_t end = h / 2;
        int32_t k = 1;
        for (; k < end && k < Wide::width; ++k) pair<Narrow>(x + 2 * k, x + 2 * (h - k), tw, k);
        for (; k + Wide::width <= end; k += Wide::width) {
            pair<Wide>(x + 2 * k, x + 2 * (h - k - (Wide::width - 1)), tw, k);
        }
        for (; k < end; ++k) pair<Narrow>(x + 2 * k, x + 2 * (h - k), tw, k);
        // k = h/2: w^k = -j, so X = conj(F[h/2]) / 2.
        x[h] *= 0.5;
        x[h + 1] *= -0.5;
    }
};

}  // namespace
}  // namespace dsp_spectral
