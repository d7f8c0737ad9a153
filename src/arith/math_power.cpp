// Sign, absolute value, powers, roots and reciprocals in place. Squares of
// parts beyond +-kHuge and reciprocals of zero are reported as kHuge.
#include "arith/math_common.hpp"

#include <cmath>

using dsp_arith::apply_either;
using dsp_arith::apply_real;
using dsp_core::beyond_huge;
using dsp_core::clamp_huge;
using dsp_core::kHuge;

extern "C" {

// Real records only: the magnitude of a complex record is dspi_mag.
int32_t dspi_abs(dsp *s)
{
    return apply_real(s, [](double x) { return std::fabs(x); });
}

int32_t dspi_neg(dsp *s)
{
    return apply_either(
        s, [](double x) { return -x; },
        [](double &re, double &im) {
            re = -re;
            im = -im;
        });
}

int32_t dspi_sqrt(dsp *s)
{
    return apply_either(
        s, [](double x) { return x >= 0.0 ? std::sqrt(x) : 0.0; },
        [](double &re, double &im) {
            const double m = (beyond_huge(re) || beyond_huge(im)) ? kHuge : std::sqrt(re * re + im * im);
            const double r = std::sqrt(m);
            if (r > 0.0) {
                const double half_phase = std::atan2(im, re) / 2.0;
                re = r * std::cos(half_phase);
                im = r * std::sin(half_phase);
            } else {
                re = 0.0;
                im = 0.0;
            }
        });
}

int32_t dspi_square(dsp *s)
{
    return apply_either(
        s, [](double x) { return beyond_huge(x) ? kHuge : x * x; },
        [](double &re, double &im) {
            const double a = clamp_huge(re), b = clamp_huge(im);
            re = a * a - b * b;
            im = 2.0 * a * b;
        });
}

int32_t dspi_recip(dsp *s)
{
    return apply_either(
        s, [](double x) { return x != 0.0 ? 1.0 / x : kHuge; },
        [](double &re, double &im) {
            const double p = dsp_core::capped_magsq(re, im);
            const double k = p > 0.0 ? 1.0 / p : kHuge;
            re = re * k;
            im = -im * k;
        });
}

}  // extern "C"
