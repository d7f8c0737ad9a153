// Exponentials, logarithms and hyperbolic functions in place. Arguments are
// limited so that no result exceeds kHuge, and logarithms are floored at the
// smallest normal double, so traces stay finite for display.
#include "arith/math_common.hpp"

#include <cmath>

using dsp_arith::apply_either;
using dsp_arith::apply_real;
using dsp_arith::kExp10Limit;
using dsp_arith::kExpLimit;
using dsp_arith::kLn10;
using dsp_core::clamp_huge;
using dsp_core::kHuge;
using dsp_core::kLogFloor;

extern "C" {

int32_t dspi_exp(dsp *s)
{
    return apply_either(
        s, [](double x) { return x > kExpLimit ? kHuge : std::exp(x); },
        [](double &re, double &im) {
            const double m = re > kExpLimit ? kHuge : std::exp(re);
            const double phase = im;
            re = m * std::cos(phase);
            im = m * std::sin(phase);
        });
}

int32_t dspi_exp10(dsp *s)
{
    double *x = s->data;
    const std::size_t n = dsp_arith::point_count(s);
    if (s->complex) {
        for (std::size_t i = 0; i < n; ++i) {
            const double re = x[2 * i], a = x[2 * i + 1] * kLn10;
            double m;
            if (re > kExp10Limit) m = kHuge;
            else if (!(re >= -kHuge)) m = -kHuge;
            else m = std::exp(re * kLn10);
            x[2 * i] = m * std::cos(a);
            x[2 * i + 1] = m * std::sin(a);
        }
        return 0;
    }
    // A real value below -kHuge (or NaN) stops the pass: it and every value
    // after it are left as they are.
    for (std::size_t i = 0; i < n; ++i) {
        const double v = x[i];
        if (v > kExp10Limit) x[i] = kHuge;
        else if (v >= -kHuge) x[i] = std::exp(v * kLn10);
        else break;
    }
    return 0;
}

int32_t dspi_log(dsp *s)
{
    const double floor_log = std::log(kLogFloor);
    return apply_either(
        s, [floor_log](double x) { return x >= kLogFloor ? std::log(x) : floor_log; },
        [floor_log](double &re, double &im) {
            if (dsp_core::beyond_huge(re) || dsp_core::beyond_huge(im)) {
                // Out of range: the magnitude stands at kHuge and the clamped
                // parts give the phase.
                const double phase = std::atan2(clamp_huge(im), clamp_huge(re));
                re = 0.5 * std::log(kHuge);
                im = phase;
                return;
            }
            const double p = re * re + im * im;
            if (p < kLogFloor) {
                re = floor_log;
                im = 0.0;
                return;
            }
            const double phase = std::atan2(im, re);
            re = 0.5 * std::log(p);
            im = phase;
        });
}

// The complex base-10 logarithm is the decibel view with factor 1: parts
// clamped to +-kHuge, (log10 |z|, phase * log10(e)), floored below kLogFloor.
int32_t dspi_log10(dsp *s) { return dspi_db(s, 1.0); }

int32_t dspi_cosh(dsp *s)
{
    return apply_real(s, [](double x) { return (x > kExpLimit || !(x >= -kExpLimit)) ? kHuge : std::cosh(x); });
}

int32_t dspi_sinh(dsp *s)
{
    return apply_real(s, [](double x) {
        if (x > kExpLimit) return kHuge;
        return x >= -kExpLimit ? std::sinh(x) : -kHuge;
    });
}

int32_t dspi_tanh(dsp *s)
{
    return apply_real(s, [](double x) { return std::tanh(x); });
}

}  // extern "C"
