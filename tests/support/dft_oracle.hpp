// Reference transforms for the FFT and spectrum tests: the defining sums
// evaluated directly in long double, with every angle reduced exactly
// (n k mod N) before its cosine and sine are taken.
#pragma once

#include <cmath>
#include <complex>
#include <cstddef>
#include <vector>

namespace dsp_test {

using LComplex = std::complex<long double>;

// X[k] = scale * sum x[n] exp(sign * 2 pi j n k / N) for k < bins.
inline std::vector<LComplex> naive_dft(const std::vector<LComplex> &x, int sign, long double scale,
                                       std::size_t bins)
{
    const std::size_t n = x.size();
    const long double two_pi = 6.283185307179586476925286766559L;
    std::vector<long double> c(n), s(n);
    for (std::size_t r = 0; r < n; ++r) {
        c[r] = std::cos(two_pi * static_cast<long double>(r) / static_cast<long double>(n));
        s[r] = sign * std::sin(two_pi * static_cast<long double>(r) / static_cast<long double>(n));
    }
    std::vector<LComplex> out(bins);
    for (std::size_t k = 0; k < bins; ++k) {
        long double re = 0.0L, im = 0.0L;
        std::size_t r = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const long double xr = x[i].real(), xi = x[i].imag();
            re += xr * c[r] - xi * s[r];
            im += xr * s[r] + xi * c[r];
            r += k;
            if (r >= n) r -= n;
        }
        out[k] = LComplex(re * scale, im * scale);
    }
    return out;
}

// v with its bits reversed over a field of `bits` bits.
inline int bit_reversed(int v, int bits)
{
    int r = 0;
    for (int b = 0; b < bits; ++b) r |= ((v >> b) & 1) << (bits - 1 - b);
    return r;
}

// Root-mean-square error of interleaved doubles against a reference,
// relative to the reference's root mean square.
inline double relative_rms_error(const std::vector<double> &got, const std::vector<LComplex> &ref)
{
    long double err = 0.0L, norm = 0.0L;
    for (std::size_t k = 0; k < ref.size(); ++k) {
        const long double dr = got[2 * k] - ref[k].real();
        const long double di = got[2 * k + 1] - ref[k].imag();
        err += dr * dr + di * di;
        norm += std::norm(ref[k]);
    }
    return static_cast<double>(std::sqrt(err / norm));
}

}  // namespace dsp_test
