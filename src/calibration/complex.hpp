// Complex scalar of the error-correction code: a pair of doubles, real part
// first, laid out like the interleaved (re, im) pairs of the caller's arrays.
// The arithmetic is spelled out rather than taken from std::complex so that
// every path rounds the same way and a zero or NaN divisor gives a NaN point
// instead of an infinity.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace dsp_calib {

struct Complex {
    double re;
    double im;
};

// The quiet NaN with bits 0x7FF8000000000000, whatever the host's default.
inline double quiet_nan()
{
    const uint64_t bits = 0x7FF8000000000000ull;
    double v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

inline Complex nan_point() { return {quiet_nan(), quiet_nan()}; }

inline Complex add(Complex a, Complex b) { return {a.re + b.re, a.im + b.im}; }
inline Complex subtract(Complex a, Complex b) { return {a.re - b.re, a.im - b.im}; }
inline Complex negate(Complex a) { return {-a.re, -a.im}; }

inline Complex multiply(Complex a, Complex b)
{
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

// Smith's division: scales by the larger part of y so that |y|^2 is never
// formed. A NaN part, a zero divisor or a vanishing scaled denominator gives
// (NaN, NaN); an infinite part gets no extra handling.
inline Complex divide(Complex x, Complex y)
{
    if (std::isnan(y.re) || std::isnan(y.im)) return nan_point();
    if (std::fabs(y.im) >= std::fabs(y.re)) {
        if (y.im == 0.0) return nan_point();
        const double t = y.re / y.im;
        const double d = t * y.re + y.im;
        if (std::isnan(d) || d == 0.0) return nan_point();
        const double s = 1.0 / d;
        return {(x.re * t + x.im) * s, (x.im * t - x.re) * s};
    }
    const double t = y.im / y.re;
    const double d = y.re + t * y.im;
    if (std::isnan(d) || d == 0.0) return nan_point();
    const double s = 1.0 / d;
    return {(x.im * t + x.re) * s, (x.im - x.re * t) * s};
}

// Point k of an interleaved array. k is a point index; the double offset is
// formed in pointer width so that 2k cannot overflow.
inline Complex load(const double *array, int32_t k)
{
    const std::ptrdiff_t i = static_cast<std::ptrdiff_t>(k) * 2;
    return {array[i], array[i + 1]};
}

inline void store(double *array, int32_t k, Complex v)
{
    const std::ptrdiff_t i = static_cast<std::ptrdiff_t>(k) * 2;
    array[i] = v.re;
    array[i + 1] = v.im;
}

// The result of the per-point functions: stop - start, wrapping like the
// 32-bit subtraction it is (zero or negative when there is nothing to do).
inline int32_t point_count(int32_t start, int32_t stop)
{
    return static_cast<int32_t>(static_cast<uint32_t>(stop) - static_cast<uint32_t>(start));
}

}  // namespace dsp_calib
