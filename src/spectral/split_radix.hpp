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
    static inline void butterfly(double *a, double *b, double *c, double *d, const Twiddles &tw, int32_t k)
    {
        const typename O::V va = O::load(a);
        const typename O::V vb = O::load(b);
        const typename O::V vc = O::load(c);
        const typename O::V vd = O::load(d);
        O::store(a, O::add(va, vc));
        O::store(b, O::add(vb, vd));
        const typename O::V r1 = O::sub(va, vc);
        const typename O::V r2 = O::sub(vb, vd);
        const typename O::V one = Inverse ? O::plus_j(r1, r2) : O::minus_j(r1, r2);
        const typename O::V three = Inverse ? O::minus_j(r1, r2) : O::plus_j(r1, r2);
        if (Twiddled) {
            O::store(c, O::template twiddle<Inverse>(one, tw.cos1 + k, tw.pairs1 + 2 * k));
            O::store(d, O::template twiddle<Inverse>(three, tw.cos3 + k, tw.pairs3 + 2 * k));
        } else {
            O::store(c, one);
            O::store(d, three);
        }
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

    static inline void pair(double *x)
    {
        const typename Narrow::V a = Narrow::load(x);
        const typename Narrow::V b = Narrow::load(x + 2);
        Narrow::store(x, Narrow::add(a, b));
        Narrow::store(x + 2, Narrow::sub(a, b));
    }

    template <int Bits, bool Inverse>
    static void leaf(double *x, const TwiddleLevels &tw)
    {
        if constexpr (Bits == 1) {
            pair(x);
        } else if constexpr (Bits >= 2) {
            constexpr int32_t n = int32_t{1} << Bits;
            stage<Inverse>(x, n, tw.by_bits[Bits]);
            leaf<Bits - 1, Inverse>(x, tw);
            leaf<Bits - 2, Inverse>(x + n, tw);
            leaf<Bits - 2, Inverse>(x + n + n / 2, tw);
        }
    }

    // Blocks of up to 16 points are unrolled at compile time.
    template <bool Inverse>
    static void block(double *x, int bits, const TwiddleLevels &tw)
    {
        switch (bits) {
        case 0: return;
        case 1: return leaf<1, Inverse>(x, tw);
        case 2: return leaf<2, Inverse>(x, tw);
        case 3: return leaf<3, Inverse>(x, tw);
        case 4: return leaf<4, Inverse>(x, tw);
        default: break;
        }
        const int32_t n = int32_t{1} << bits;
        stage<Inverse>(x, n, tw.by_bits[bits]);
        block<Inverse>(x, bits - 1, tw);
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
