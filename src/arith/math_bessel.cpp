// Bessel functions in place. The Y functions are 0.0 where they are not
// defined (x <= 0); I0 is capped at kHuge beyond ln(kHuge).
#include "arith/bessel.hpp"
#include "arith/math_common.hpp"

#include <cmath>

using dsp_arith::apply_real;

extern "C" {

int32_t dspi_besj0(dsp *s)
{
    return apply_real(s, [](double x) { return ::j0(x); });
}

int32_t dspi_besj1(dsp *s)
{
    return apply_real(s, [](double x) { return ::j1(x); });
}

int32_t dspi_besy0(dsp *s)
{
    return apply_real(s, [](double x) { return x > 0.0 ? ::y0(x) : 0.0; });
}

int32_t dspi_besy1(dsp *s)
{
    return apply_real(s, [](double x) { return x > 0.0 ? ::y1(x) : 0.0; });
}

int32_t dspi_besi0(dsp *s)
{
    return apply_real(s, [](double x) {
        return std::fabs(x) <= dsp_arith::kExpLimit ? dsp_core::bessel_i0(x) : dsp_core::kHuge;
    });
}

}  // extern "C"
