// Real-input FFT and its inverse. The N real values are transformed as N/2
// complex points z[n] = x[2n] + j x[2n+1] (their storage is already laid out
// so), and the one-sided spectrum is untangled from that half-length result.
#include "spectral/fft_engine.hpp"
#include "spectral/kernels.hpp"

namespace {

using dsp_spectral::Twiddles;

// With F the half-length transform scaled by 1/(N/2), the spectrum scaled by
// 1/N is, for k = 0..N/2 and h = N/2 (F[h] = F[0]),
//   X[k] = (S - P)/4 and X[h-k] = conj(S + P)/4,
//   S = F[k] + conj F[h-k], P = j w^k (F[k] - conj F[h-k]), w = exp(-2 pi j/N).
void untangle(double *x, int32_t h, const Twiddles &tw)
{
    const double f0_re = x[0];
    const double f0_im = x[1];
    x[0] = 0.5 * (f0_re + f0_im);
    x[1] = 0.0;
    x[2 * h] = 0.5 * (f0_re - f0_im);
    x[2 * h + 1] = 0.0;
    for (int32_t k = 1; k < h / 2; ++k) {
        double *a = x + 2 * k;
        double *b = x + 2 * (h - k);
        const double s_re = a[0] + b[0];
        const double s_im = a[1] - b[1];
        const double d_re = a[0] - b[0];
        const double d_im = a[1] + b[1];
        // D w^k with three multiplications, then times j.
        const double t = tw.cos1[k] * (d_re + d_im);
        const double dw_re = t + d_im * tw.pairs1[2 * k];
        const double dw_im = t + d_re * tw.pairs1[2 * k + 1];
        const double p_re = -dw_im;
        const double p_im = dw_re;
        a[0] = 0.25 * (s_re - p_re);
        a[1] = 0.25 * (s_im - p_im);
        b[0] = 0.25 * (s_re + p_re);
        b[1] = -0.25 * (s_im + p_im);
    }
    // k = h/2: w^k = -j, so X = conj(F[h/2]) / 2.
    x[h] *= 0.5;
    x[h + 1] *= -0.5;
}

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
    complex_kernel()(s->data, bits - 1, tables.twiddles, false);
    bit_reverse_scaled(s->data, 2, tables.reversal, 1.0 / h);
    untangle(s->data, h, twiddle_view(full, n));
    transform_delta(s, n);
    return 0;
}

int32_t dspi_irfft(dsp *s)
{
    if (dspi_orecon(s, 0) != 0 || dspi_fft(s, 1) != 0 || dspi_real(s) != 0) return -1;
    return 0;
}

}  // extern "C"
