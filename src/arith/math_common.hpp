// Limits and the loop shared by the in-place mathematical (dspi_) family.
#pragma once

#include "core/numeric.hpp"
#include "core/record.hpp"

#include <cstddef>

namespace dsp_arith {

// ln(kHuge): the largest argument handed to exp, cosh and sinh, so that no
// result exceeds the library's stand-in for infinity.
constexpr double kExpLimit = 230.25850929940458;
// log10(kHuge): the largest exponent of the base-10 exponential.
constexpr double kExp10Limit = 100.0;
constexpr double kLn10 = 2.302585092994046;

inline std::size_t point_count(const dsp *s) { return static_cast<std::size_t>(s->points > 0 ? s->points : 0); }

// Replaces every value of a real record by f(value), first to last.
// Complex records are refused with -1 and left unchanged.
template <typename F>
int32_t apply_real(dsp *s, F f)
{
    if (s->complex) return -1;
    double *x = s->data;
    const std::size_t n = point_count(s);
    for (std::size_t i = 0; i < n; ++i) x[i] = f(x[i]);
    return 0;
}

// Real records: f(value) per value; complex records: g(re, im) per point,
// which rewrites both parts.
template <typename F, typename G>
int32_t apply_either(dsp *s, F f, G g)
{
    if (!s->complex) return apply_real(s, f);
    double *x = s->data;
    const std::size_t n = point_count(s);
    for (std::size_t i = 0; i < n; ++i) g(x[2 * i], x[2 * i + 1]);
    return 0;
}

}  // namespace dsp_arith
