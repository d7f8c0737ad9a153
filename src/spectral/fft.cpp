// The in-place complex FFT: forward with the factor 1/N, inverse without.
#include "spectral/fft_engine.hpp"
#include "spectral/kernels.hpp"

namespace {

// Two points need no tables: X0 = x0 + x1, X1 = x0 - x1, halved first when
// forward (halving before adding keeps the largest inputs from overflowing).
int32_t transform_two(dsp *s, bool inverse)
{
    if (dspi_rtoc(s) != 0) return -1;
    double *x = s->data;
    if (!inverse) {
        for (int i = 0; i < 4; ++i) x[i] *= 0.5;
    }
    const double re = x[0];
    const double im = x[1];
    x[0] = re + x[2];
    x[1] = im + x[3];
    x[2] = re - x[2];
    x[3] = im - x[3];
    return 0;
}

}  // namespace

extern "C" {

int32_t dspi_fft(dsp *s, int32_t inverse)
{
    using namespace dsp_spectral;
    const int32_t n = s->points;
    const int bits = transform_bits(n);
    if (bits < 0) return -1;
    if (n == 2) {
        if (transform_two(s, inverse != 0) != 0) return -1;
    } else if (n > 2) {
        // Tables first: a cache that cannot grow leaves the signal untouched.
        TransformTables tables;
        if (!transform_tables(bits, tables)) return -1;
        if (dspi_rtoc(s) != 0) return -1;
        kernels().transform(s->data, bits, tables.twiddles, inverse != 0);
        if (inverse)
            bit_reverse(s->data, 2, tables.reversal);
        else
            bit_reverse_scaled(s->data, 2, tables.reversal, 1.0 / n);
    }
    transform_delta(s, n);
    return 0;
}

}  // extern "C"
