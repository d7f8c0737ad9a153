// The complex split-radix kernel, written once over an "ops" type that does
// complex arithmetic on interleaved (re, im) doubles, some number of points
// per vector. Each instruction set includes this header with its own ops into
// its own translation unit; the unnamed namespace keeps the instances apart,
// so code compiled for one instruction set never stands in for another.
//
// Decimation in frequency, in place, result in bit-reversed order. A block of
// n points gets the L-shaped butterflies over its four quarters, then its
// first half and its last two quarters are transformed as blocks of their
// own. Depth first, so a block is finished while it is still in cache.
#pragma once

#include "spectral/fft_tables.hpp"

#include <cstdint>

namespace dsp_spectral {
namespace {

// Wide: the ops of the main loop (Wide::width points per vector). Narrow: one
// point per vector, used for the first points of a block, where k = 0 takes
// no twiddle and the wide loop would not start aligned on the block.
template <typename Wide, typename Narrow>
struct SplitRadix {
    // The L-shaped butterfly on quarters a, b, c, d at one index k:
    //   a + c, b + d, (r1 -+ j r2) w^k, (r1 +- j r2) w^3k,
    // with r1 = a - c, r2 = b - d; the inverse swaps the roles of +-j and
    // multiplies by the conjugate twiddles.
    template <typename O, bool Inverse, bool Twiddled>
    static inline void butterfly(typename O::V &a, typename O::V &b, typename O::V &c, typename O::V &d,
                                 const Twiddles &tw, int32_t k)
    {
        const typename O::V r1 = O::sub(a, c);
        const typename O::V r2 = O::sub(b, d);
        a = O::add(a, c);
        b = O::add(b, d);
        const typename O::V one = Inverse ? O::plus_j(r1, r2) : O::minus_j(r1, r2);
        const typename O::V three = Inverse ? O::minus_j(r1, r2) : O::plus_j(r1, r2);
        if constexpr (Twiddled) {
            c = O::template twiddle<Inverse>(one, tw.cos1 + k, tw.pairs1 + 2 * k);
            d = O::template twiddle<Inverse>(three, tw.cos3 + k, tw.pairs3 + 2 * k);
        } else {
            c = one;
            d = three;
        }
    }

    template <typename O, bool Inverse, bool Twiddled>
    static inline void butterfly(double *a, double *b, double *c, double *d, const Twiddles &tw, int32_t k)
    {
        typename O::V va = O::load(a);
        typename O::V vb = O::load(b);
        typename O::V vc = O::load(c);
        typename O::V vd = O::load(d);
        butterfly<O, Inverse, Twiddled>(va, vb, vc, vd, tw, k);
        O::store(a, va);
        O::store(b, vb);
        O::store(c, vc);
        O::store(d, vd);
    }

    template <bool Inverse>
    static inline void stage(double *x, int32_t n, const double *table)
    {
        const int32_t q = n / 4;
        const Twiddles tw = twiddle_view(table, n);
        double *a = x;
        double *b = x + 2 * q;
        double *c = x + 4 * q;
        double *d = x + 6 * q;
        butterfly<Narrow, Inverse, false>(a, b, c, d, tw, 0);
        const int32_t narrow_end = q < Wide::width ? q : Wide::width;
        for (int32_t k = 1; k < narrow_end; ++k) {
            butterfly<Narrow, Inverse, true>(a + 2 * k, b + 2 * k, c + 2 * k, d + 2 * k, tw, k);
        }
        for (int32_t k = narrow_end; k < q; k += Wide::width) {
            butterfly<Wide, Inverse, true>(a + 2 * k, b + 2 * k, c + 2 * k, d + 2 * k, tw, k);
        }
    }

    // The first stage of a block of n points fused with the first stage of
    // its first half: per index k < n/8 the eight points k + i n/8 are loaded
    // once, get the block's butterflies at k and k + n/8 and then the half's
    // butterfly at k. Saves one pass over the first half of every block.
    template <typename O, bool Inverse, bool FirstTwiddled>
    static inline void double_butterfly(double *x, int32_t e, const Twiddles &whole, const Twiddles &half, int32_t k)
    {
        typename O::V v[8];
        for (int i = 0; i < 8; ++i) v[i] = O::load(x + 2 * (k + i * e));
        butterfly<O, Inverse, FirstTwiddled>(v[0], v[2], v[4], v[6], whole, k);
        butterfly<O, Inverse, true>(v[1], v[3], v[5], v[7], whole, k + e);
        butterfly<O, Inverse, FirstTwiddled>(v[0], v[1], v[2], v[3], half, k);
        for (int i = 0; i < 8; ++i) O::store(x + 2 * (k + i * e), v[i]);
    }

    template <bool Inverse>
    static inline void double_stage(double *x, int32_t n, const double *whole_table, const double *half_table)
    {
        const int32_t e = n / 8;
        const Twiddles whole = twiddle_view(whole_table, n);
        const Twiddles half = twiddle_view(half_table, n / 2);
        double_butterfly<Narrow, Inverse, false>(x, e, whole, half, 0);
        int32_t k = 1;
        for (; k < Wide::width; ++k) double_butterfly<Narrow, Inverse, true>(x, e, whole, half, k);
        for (; k < e; k += Wide::width) double_butterfly<Wide, Inverse, true>(x, e, whole, half, k);
    }

    // A small block held in registers (one point per value) from its first
    // stage to its last.
    template <int Bits, bool Inverse>
    static inline void leaf_values(typename Narrow::V *v, const TwiddleLevels &tw)
    {
        if constexpr (Bits == 1) {
            const typename Narrow::V a = v[0];
            v[0] = Narrow::add(a, v[1]);
            v[1] = Narrow::sub(a, v[1]);
        } else if constexpr (Bits >= 2) {
            constexpr int32_t n = int32_t{1} << Bits;
            constexpr int32_t q = n / 4;
            const Twiddles t = twiddle_view(tw.by_bits[Bits], n);
            butterfly<Narrow, Inverse, false>(v[0], v[q], v[2 * q], v[3 * q], t, 0);
            for (int32_t k = 1; k < q; ++k) butterfly<Narrow, Inverse, true>(v[k], v[k + q], v[k + 2 * q], v[k + 3 * q], t, k);
            leaf_values<Bits - 1, Inverse>(v, tw);
            leaf_values<Bits - 2, Inverse>(v + n / 2, tw);
            leaf_values<Bits - 2, Inverse>(v + n / 2 + q, tw);
        }
    }

    template <int Bits, bool Inverse>
    static void leaf(double *x, const TwiddleLevels &tw)
    {
        constexpr int32_t n = int32_t{1} << Bits;
        typename Narrow::V v[n];
        for (int32_t i = 0; i < n; ++i) v[i] = Narrow::load(x + 2 * i);
        leaf_values<Bits, Inverse>(v, tw);
        for (int32_t i = 0; i < n; ++i) Narrow::store(x + 2 * i, v[i]);
    }

    // Blocks of up to 16 points stay in registers; blocks of up to 128 points
    // are unrolled at compile time, so the many small blocks at the bottom of
    // the recursion cost no calls.
    template <int Bits, bool Inverse>
    static void fixed_block(double *x, const TwiddleLevels &tw)
    {
        if constexpr (Bits >= 1 && Bits <= 4) {
            leaf<Bits, Inverse>(x, tw);
        } else if constexpr (Bits > 4) {
            constexpr int32_t n = int32_t{1} << Bits;
            stage<Inverse>(x, n, tw.by_bits[Bits]);
            fixed_block<Bits - 1, Inverse>(x, tw);
            fixed_block<Bits - 2, Inverse>(x + n, tw);
            fixed_block<Bits - 2, Inverse>(x + n + n / 2, tw);
        }
    }

    template <bool Inverse>
    static void block(double *x, int bits, const TwiddleLevels &tw)
    {
        switch (bits) {
        case 0: return;
        case 1: return fixed_block<1, Inverse>(x, tw);
        case 2: return fixed_block<2, Inverse>(x, tw);
        case 3: return fixed_block<3, Inverse>(x, tw);
        case 4: return fixed_block<4, Inverse>(x, tw);
        case 5: return fixed_block<5, Inverse>(x, tw);
        case 6: return fixed_block<6, Inverse>(x, tw);
        case 7: return fixed_block<7, Inverse>(x, tw);
        default: break;
        }
        // Stages of the block and of its first half at once, then what is
        // left of the half (its quarter and two eighths) and the block's
        // last two quarters.
        const int32_t n = int32_t{1} << bits;
        double_stage<Inverse>(x, n, tw.by_bits[bits], tw.by_bits[bits - 1]);
        block<Inverse>(x, bits - 2, tw);
        block<Inverse>(x + n / 2, bits - 3, tw);
        block<Inverse>(x + n / 2 + n / 4, bits - 3, tw);
        block<Inverse>(x + n, bits - 2, tw);
        block<Inverse>(x + n + n / 2, bits - 2, tw);
    }

    static void transform(double *x, int bits, const TwiddleLevels &tw, bool inverse)
    {
        if (inverse)
            block<true>(x, bits, tw);
        else
            block<false>(x, bits, tw);
    }
};

}  // namespace
}  // namespace dsp_spectral
