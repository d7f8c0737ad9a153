// Real-input FFT and its inverse. The N real values are transformed as N/2
// complex points z[n] = x[2n] + j x[2n+1] (their storage is already laid out
// so), and the one-sided spectrum is untangled from that half-length result
// (real_untangle.hpp).
#include "spectral/fft_engine.hpp"
#include "spectral/kernels.hpp"

namespace {

int32_t transform_short(dsp *s)
{
    const int32_t n = s->points;
    if (dspi_rtoc(s) != 0) return -1;
    if (n == 2) {
        double *x = s->data;
        const double a = x[0];
        const double b = x[2];
        x[0] = (a + b) * 0.5;
        x[2] = (a - b) * 0.5;
    }
    return 0;
}

}  // namespace

extern "C" {

int32_t dspi_rfft(dsp *s)
{
    using namespace dsp_spectral;
    const int32_t n = s->points;
    const int bits = transform_bits(n);
    if (s->complex || bits < 0) return -1;
    if (n <= 2) {
        if (transform_short(s) != 0) return -1;
        transform_delta(s, n);
        return 0;
    }
    const int32_t h = n / 2;
    TransformTables tables;
    const double *full = twiddle_table(n);
    if (!full || !transform_tables(bits - 1, tables)) return -1;
    s->complex = 1;
    s->points = h + 1;
    if (dsp_realloc(s, n, 0) != 0) return -1;
    const Kernels &k = kernels();
    k.transform(s->data, bits - 1, tables.twiddles, false);
    bit_reverse_scaled(s->data, 2, tables.reversal, 1.0 / h);
    k.untangle(s->data, h, twiddle_view(full, n));
    transform_delta(s, n);
    return 0;
}

int32_t dspi_irfft(dsp *s)
{
    if (dspi_orecon(s, 0) != 0 || dspi_fft(s, 1) != 0 || dspi_real(s) != 0) return -1;
    return 0;
}

}  // extern "C"
