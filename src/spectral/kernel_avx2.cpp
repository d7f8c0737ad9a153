// The AVX2/FMA complex kernel: two points per 256-bit register in the main
// loop, one per 128-bit register at the start of a block. Compiled for those
// extensions here only; the dispatch runs it only where the processor has
// them.
#if defined(__x86_64__)

#include <immintrin.h>

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2,fma"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2,fma")
#endif

#include "spectral/kernels.hpp"
#include "spectral/real_untangle.hpp"
#include "spectral/split_radix.hpp"
#include "spectral/sse2_ops.hpp"

namespace dsp_spectral {
namespace {

struct Avx2Ops {
    using V = __m256d;
    static constexpr int32_t width = 2;

    static V load(const double *p) { return _mm256_loadu_pd(p); }
    static void store(double *p, V v) { _mm256_storeu_pd(p, v); }
    static V add(V a, V b) { return _mm256_add_pd(a, b); }
    static V sub(V a, V b) { return _mm256_sub_pd(a, b); }
    static V swap(V a) { return _mm256_permute_pd(a, 0x5); }
    static V minus_j(V a, V b)
    {
        return _mm256_add_pd(a, _mm256_xor_pd(swap(b), _mm256_set_pd(-0.0, 0.0, -0.0, 0.0)));
    }
    static V plus_j(V a, V b) { return _mm256_addsub_pd(a, swap(b)); }
    static V conj(V a) { return _mm256_xor_pd(a, _mm256_set_pd(-0.0, 0.0, -0.0, 0.0)); }
    static V times_j(V a) { return _mm256_xor_pd(swap(a), _mm256_set_pd(0.0, -0.0, 0.0, -0.0)); }
    static V scale(V a, double k) { return _mm256_mul_pd(a, _mm256_set1_pd(k)); }
    // The two points in the opposite order.
    static V reverse(V a) { return _mm256_permute2f128_pd(a, a, 0x01); }

    // Two points with the twiddles of k and k + 1: the cosines are
    // duplicated across each point, the pairs are already interleaved.
    template <bool Conjugate>
    static V twiddle(V u, const double *cos_part, const double *pair)
    {
        const V flipped = swap(u);
        const V cosines = _mm256_permute_pd(_mm256_broadcast_pd(reinterpret_cast<const __m128d *>(cos_part)), 0xC);
        const V t = _mm256_mul_pd(cosines, _mm256_add_pd(u, flipped));
        V p = _mm256_loadu_pd(pair);
        if constexpr (Conjugate) p = swap(p);
        return _mm256_fmadd_pd(flipped, p, t);
    }
};

}  // namespace

void avx2_kernel(double *x, int bits, const TwiddleLevels &tw, bool inverse)
{
    SplitRadix<Avx2Ops, Sse2Ops<true>>::transform(x, bits, tw, inverse);
}

void avx2_untangle(double *x, int32_t h, const Twiddles &tw)
{
    RealUntangle<Avx2Ops, Sse2Ops<true>>::run(x, h, tw);
}

}  // namespace dsp_spectral

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif
