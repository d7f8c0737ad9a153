// Ascending sort of real values, or of complex points by capped squared
// magnitude, then real part, then imaginary part.
#include "core/numeric.hpp"
#include "core/record.hpp"

#include <cstdlib>

namespace {

// Three-way comparison of two doubles. A NaN sorts below every number and
// equal to another NaN, which keeps the order total so that the result does
// not depend on the sorting algorithm.
int compare_values(double a, double b)
{
    if (a > b) return 1;
    if (a >= b) return 0;
    const bool a_nan = std::isnan(a);
    const bool b_nan = std::isnan(b);
    if (a_nan || b_nan) return static_cast<int>(b_nan) - static_cast<int>(a_nan);
    return -1;
}

// A part beyond +-1e100 (or NaN) counts as 1e100 before squaring, so huge and
// invalid points sort last by magnitude instead of overflowing.
double capped_part(double v) { return dsp_core::beyond_huge(v) ? dsp_core::kHuge : v; }

double sort_magnitude(const double *p)
{
    const double re = capped_part(p[0]);
    const double im = capped_part(p[1]);
    return re * re + im * im;
}

int compare_real(const void *a, const void *b)
{
    return compare_values(*static_cast<const double *>(a), *static_cast<const double *>(b));
}

int compare_complex(const void *a, const void *b)
{
    const double *p = static_cast<const double *>(a);
    const double *q = static_cast<const double *>(b);
    int c = compare_values(sort_magnitude(p), sort_magnitude(q));
    if (c == 0) c = compare_values(p[0], q[0]);
    if (c == 0) c = compare_values(p[1], q[1]);
    return c;
}

}  // namespace

extern "C" int32_t dspi_sort(dsp *s)
{
    if (s->points < 2) return 0;
    const std::size_t n = static_cast<std::size_t>(s->points);
    if (s->complex)
        std::qsort(s->data, n, 2 * sizeof(double), compare_complex);
    else
        std::qsort(s->data, n, sizeof(double), compare_real);
    return 0;
}
