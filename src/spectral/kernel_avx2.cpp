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

// The tiles of the swap list (see BitrevTables) moved as whole rows: eight
// rows of four points are loaded before any is stored and transposed in
// registers. Done pair by pair, the stores to one row would be followed by
// loads from the next, whose address differs by a multiple of 4 KiB once
// rows are that far apart; the processor then takes the load for a possible
// read of the stored value and waits for the store.
template <bool Scaled>
const int32_t *reverse_tiles(double *x, const BitrevTables &t, double scale)
{
    const __m256d k = _mm256_set1_pd(scale);
    const auto put = [&](double *at, __m256d v) { _mm256_storeu_pd(at, Scaled ? _mm256_mul_pd(v, k) : v); };
    const auto row = [x](int32_t point) { return x + 2 * static_cast<std::size_t>(point); };
    const int32_t step = t.twins ? 4 : 2;  // words per pair
    const int32_t *tile = t.swaps;
    for (int32_t n = 0; n < t.tiles; ++n, tile += 16 * step) {
        for (const int32_t *list = tile; list < tile + step; list += 2) {
            double *a[4];
            double *b[4];
            __m256d va[4][2];
            __m256d vb[4][2];
            for (int i = 0; i < 4; ++i) {
                a[i] = row(list[4 * step * i]);
                b[i] = row(list[step * i + 1]);
                va[i][0] = _mm256_loadu_pd(a[i]);
                va[i][1] = _mm256_loadu_pd(a[i] + 4);
                vb[i][0] = _mm256_loadu_pd(b[i]);
                vb[i][1] = _mm256_loadu_pd(b[i] + 4);
            }
            // Point c of rows 0..3 of one side becomes row c of the other;
            // register h of a row holds its points 2h (low lane) and 2h + 1.
            for (int h = 0; h < 2; ++h) {
                put(b[2 * h], _mm256_permute2f128_pd(va[0][h], va[1][h], 0x20));
                put(b[2 * h] + 4, _mm256_permute2f128_pd(va[2][h], va[3][h], 0x20));
                put(b[2 * h + 1], _mm256_permute2f128_pd(va[0][h], va[1][h], 0x31));
                put(b[2 * h + 1] + 4, _mm256_permute2f128_pd(va[2][h], va[3][h], 0x31));
                put(a[2 * h], _mm256_permute2f128_pd(vb[0][h], vb[1][h], 0x20));
                put(a[2 * h] + 4, _mm256_permute2f128_pd(vb[2][h], vb[3][h], 0x20));
                put(a[2 * h + 1], _mm256_permute2f128_pd(vb[0][h], vb[1][h], 0x31));
                put(a[2 * h + 1] + 4, _mm256_permute2f128_pd(vb[2][h], vb[3][h], 0x31));
            }
        }
    }
    return tile;
}

}  // namespace

void avx2_kernel(double *x, int bits, const TwiddleLevels &tw, bool inverse)
{
    SplitRadix<Avx2Ops, Sse2Ops<true>>::transform(x, bits, tw, inverse);
}

void avx2_untangle(double *x, int32_t h, const Twiddles &tw)
{
    RealUntangle<Avx2Ops, Sse2Ops<true>>::run(x, h, tw);
}

void avx2_reverse(double *x, const BitrevTables &t)
{
    reverse_pairs<false>(x, reverse_tiles<false>(x, t, 1.0), t.fixed, 1.0);
}

void avx2_reverse_scaled(double *x, const BitrevTables &t, double scale)
{
    reverse_pairs<true>(x, reverse_tiles<true>(x, t, scale), t.fixed, scale);
}

}  // namespace dsp_spectral

#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif
