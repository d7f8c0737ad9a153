// Bit-reversal permutation driven by the cached swap and fixed-point lists,
// so no reversed index is recomputed per call.
#include "core/numeric.hpp"
#include "spectral/fft_engine.hpp"

#include "spectral/kernels.hpp"
#if defined(__x86_64__)
#include "spectral/sse2_ops.hpp"
#endif

namespace dsp_spectral {
namespace {

// Exchanges the two points of every listed pair (Width doubles each); the
// scaled form multiplies them on the way and then scales every fixed point.
template <int Width, bool Scaled>
void permute(double *x, const BitrevTables &t, double scale)
{
    for (const int32_t *p = t.swaps; *p != 0; p += 2) {
        double *a = x + Width * static_cast<std::size_t>(p[0]);
        double *b = x + Width * static_cast<std::size_t>(p[1]);
        for (int w = 0; w < Width; ++w) {
            const double keep = a[w];
            a[w] = Scaled ? b[w] * scale : b[w];
            b[w] = Scaled ? keep * scale : keep;
        }
    }
    if (!Scaled) return;
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

void bit_reverse_portable(double *x, int width, const BitrevTables &t)
{
    if (width == 2)
        permute<2, false>(x, t, 1.0);
    else
        permute<1, false>(x, t, 1.0);
}

void bit_reverse_scaled_portable(double *x, int width, const BitrevTables &t, double scale)
{
    if (width == 2)
        permute<2, true>(x, t, scale);
    else
        permute<1, true>(x, t, scale);
}

void portable_reverse(double *x, const BitrevTables &t) { permute<2, false>(x, t, 1.0); }

void portable_reverse_scaled(double *x, const BitrevTables &t, double scale) { permute<2, true>(x, t, scale); }

#if defined(__x86_64__)
void sse2_reverse(double *x, const BitrevTables &t) { reverse_pairs<false>(x, t.swaps, t.fixed, 1.0); }

void sse2_reverse_scaled(double *x, const BitrevTables &t, double scale)
{
    reverse_pairs<true>(x, t.swaps, t.fixed, scale);
}
#endif

void bit_reverse(double *x, int width, const BitrevTables &t)
{
    if (width == 2) return kernels().reverse(x, t);
    bit_reverse_portable(x, width, t);
}

void bit_reverse_scaled(double *x, int width, const BitrevTables &t, double scale)
{
    if (width == 2) return kernels().reverse_scaled(x, t, scale);
    bit_reverse_scaled_portable(x, width, t, scale);
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
