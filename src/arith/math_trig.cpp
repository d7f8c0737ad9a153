// Trigonometric functions in place, with the guards that keep inverse
// functions and sinc defined everywhere.
#include "arith/math_common.hpp"

#include <cmath>

using dsp_arith::apply_real;

extern "C" {

int32_t dspi_cos(dsp *s)
{
    return apply_real(s, [](double x) { return std::cos(x); });
}

int32_t dspi_sin(dsp *s)
{
    return apply_real(s, [](double x) { return std::sin(x); });
}

int32_t dspi_tan(dsp *s)
{
    return apply_real(s, [](double x) { return std::tan(x); });
}

int32_t dspi_atan(dsp *s)
{
    return apply_real(s, [](double x) { return std::atan(x); });
}

// Outside [-1, 1] the inverse functions give 0.0 rather than NaN.
int32_t dspi_acos(dsp *s)
{
    return apply_real(s, [](double x) { return std::fabs(x) > 1.0 ? 0.0 : std::acos(x); });
}

int32_t dspi_asin(dsp *s)
{
    return apply_real(s, [](double x) { return std::fabs(x) > 1.0 ? 0.0 : std::asin(x); });
}

// Unnormalised: sin(x) / x, with its limit 1 at 0.
int32_t dspi_sinc(dsp *s)
{
    return apply_real(s, [](double x) { return x == 0.0 ? 1.0 : std::sin(x) / x; });
}

}  // extern "C"
