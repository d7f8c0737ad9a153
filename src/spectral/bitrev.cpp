// Bit-reversal permutation driven by the cached swap and fixed-point lists,
// so no reversed index is recomputed per call.
#include "core/numeric.hpp"
#include "spectral/fft_engine.hpp"

namespace dsp_spectral {
namespace {

template <int Width>
void swap_pairs(double *x, const int32_t *swaps)
{
    for (const int32_t *p = swaps; *p != 0; p += 2) {
        double *a = x + Width * static_cast<std::size_t>(p[0]);
        double *b = x + Width * static_cast<std::size_t>(p[1]);
        for (int w = 0; w < Width; ++w) {
            const double t = a[w];
            a[w] = b[w];
            b[w] = t;
        }
    }
}

template <int Width>
void swap_pairs_scaled(double *x, const BitrevTables &t, double scale)
{
    for (const int32_t *p = t.swaps; *p != 0; p += 2) {
        double *a = x + Width * static_cast<std::size_t>(p[0]);
        double *b = x + Width * static_cast<std::size_t>(p[1]);
        for (int w = 0; w < Width; ++w) {
            const double keep = a[w];
            a[w] = b[w] * scale;
            b[w] = keep * scale;
        }
    }
    for (const int32_t *f = t.fixed; *f != kFixedEnd; ++f) {
        double *a = x + Width * static_cast<std::size_t>(*f);
        for (int w = 0; w < Width; ++w) a[w] *= scale;
    }
}

int32_t reverse_record(dsp *s, bool scaled)
{
    const int bits = transform_bits(s->points);
    BitrevTables t;
    if (bits < 0 || !bitrev_tables(bits, t)) return -1;
    const int width = s->complex ? 2 : 1;
    if (scaled)
        bit_reverse_scaled(s->data, width, t, 1.0 / s->points);
    else
        bit_reverse(s->data, width, t);
    return 0;
}

}  // namespace

int transform_bits(int32_t n)
{
    // Doubling a counter from 1 while it is below n: n is a power of two
    // exactly when the counter lands on it (n < 1 never does).
    int64_t counter = 1;
    int bits = 0;
    while (counter < n) {
        counter *= 2;
        ++bits;
    }
    return counter == n ? bits : -1;
}

bool transform_tables(int bits, TransformTables &out)
{
    return twiddle_levels(bits, out.twiddles) && bitrev_tables(bits, out.reversal);
}

void bit_reverse(double *x, int width, const BitrevTables &t)
{
    if (width == 2)
        swap_pairs<2>(x, t.swaps);
    else
        swap_pairs<1>(x, t.swaps);
}

void bit_reverse_scaled(double *x, int width, const BitrevTables &t, double scale)
{
    if (width == 2)
        swap_pairs_scaled<2>(x, t, scale);
    else
        swap_pairs_scaled<1>(x, t, scale);
}

void transform_delta(dsp *s, int32_t n)
{
    s->delta = s->delta == 0.0 ? dsp_core::kHuge : 1.0 / (n * s->delta);
}

}  // namespace dsp_spectral

extern "C" {

int32_t dspi_bitrev(dsp *s) { return dsp_spectral::reverse_record(s, false); }

int32_t dspi_bitrev_scale(dsp *s) { return dsp_spectral::reverse_record(s, true); }

}  // extern "C"
