// Complex arithmetic on one interleaved point per 128-bit register, and the
// bit reversal of such points, for the x86 kernels. Fused selects fused
// multiply-add in the twiddle product (only where the including translation
// unit is compiled for FMA).
#pragma once

#include "spectral/fft_tables.hpp"

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

namespace dsp_spectral {
namespace {

template <bool Fused>
struct Sse2Ops {
    using V = __m128d;
    static constexpr int32_t width = 1;

    static V load(const double *p) { return _mm_loadu_pd(p); }
    static void store(double *p, V v) { _mm_storeu_pd(p, v); }
    static V add(V a, V b) { return _mm_add_pd(a, b); }
    static V sub(V a, V b) { return _mm_sub_pd(a, b); }
    static V swap(V a) { return _mm_shuffle_pd(a, a, 1); }
    // a - j b = (a.re + b.im, a.im - b.re); a + j b = (a.re - b.im, a.im + b.re)
    static V minus_j(V a, V b) { return _mm_add_pd(a, _mm_xor_pd(swap(b), _mm_set_pd(-0.0, 0.0))); }
    static V plus_j(V a, V b) { return _mm_add_pd(a, _mm_xor_pd(swap(b), _mm_set_pd(0.0, -0.0))); }
    static V conj(V a) { return _mm_xor_pd(a, _mm_set_pd(-0.0, 0.0)); }
    static V times_j(V a) { return _mm_xor_pd(swap(a), _mm_set_pd(0.0, -0.0)); }
    static V scale(V a, double k) { return _mm_mul_pd(a, _mm_set1_pd(k)); }
    static V reverse(V a) { return a; }

    // u * w = t + (u.im, u.re) * (sin - cos, -(cos + sin)), t = cos * (u.re + u.im).
    template <bool Conjugate>
    static V twiddle(V u, const double *cos_part, const double *pair)
    {
        const V flipped = swap(u);
        const V t = _mm_mul_pd(_mm_set1_pd(cos_part[0]), _mm_add_pd(u, flipped));
        V p = _mm_loadu_pd(pair);
        if constexpr (Conjugate) p = swap(p);
        if constexpr (Fused) {
            return _mm_fmadd_pd(flipped, p, t);
        } else {
            return _mm_add_pd(t, _mm_mul_pd(flipped, p));
        }
    }
};

// Bit reversal of complex points, one register each: exchanges the pairs of
// the swap list from `pairs` on (scaled on the way when Scaled), then scales
// the fixed points.
template <bool Scaled>
inline void reverse_pairs(double *x, const int32_t *pairs, const int32_t *fixed, double scale)
{
    const __m128d k = _mm_set1_pd(scale);
    for (const int32_t *p = pairs; *p != 0; p += 2) {
        double *a = x + 2 * static_cast<std::size_t>(p[0]);
        double *b = x + 2 * static_cast<std::size_t>(p[1]);
        __m128d va = _mm_loadu_pd(a);
        __m128d vb = _mm_loadu_pd(b);
        if (Scaled) {
            va = _mm_mul_pd(va, k);
            vb = _mm_mul_pd(vb, k);
        }
        _mm_storeu_pd(a, vb);
        _mm_storeu_pd(b, va);
    }
    if (!Scaled) return;
    for (const int32_t *f = fixed; *f != kFixedEnd; ++f) {
        double *a = x + 2 * static_cast<std::size_t>(*f);
        _mm_storeu_pd(a, _mm_mul_pd(_mm_loadu_pd(a), k));
    }
}

}  // namespace
}  // namespace dsp_spectral
