// Moving a record between its real, complex and polar readings.
#include "arith/complex_grow.hpp"
#include "core/numeric.hpp"

#include <cmath>

using dsp_arith::grow_real_to_complex;
using dsp_arith::pack_complex_to_real;

namespace {
// The phase of a real value: 0 for x >= 0, pi otherwise (NaN included).
inline double real_phase(double x) { return x >= 0.0 ? 0.0 : dsp_core::kPi; }

inline double polar_phase(double re, double im) { return (re == 0.0 && im == 0.0) ? 0.0 : std::atan2(im, re); }
}  // namespace

extern "C" {

int32_t dspi_rtoc(dsp *s)
{
    if (s->complex) return 0;
    return grow_real_to_complex(s, [](double x, double &re, double &im) {
        re = x;
        im = 0.0;
    });
}

int32_t dspi_real(dsp *s)
{
    if (!s->complex) return 0;
    pack_complex_to_real(s, [](double re, double) { return re; });
    return 0;
}

int32_t dspi_imag(dsp *s)
{
    if (s->complex) {
        pack_complex_to_real(s, [](double, double im) { return im; });
    } else {
        // A real signal's imaginary part is zero.
        for (int32_t i = 0; i < s->points; ++i) s->data[i] = 0.0;
    }
    return 0;
}

int32_t dspi_conj(dsp *s)
{
    if (!s->complex) return 0;
    for (int32_t i = 0; i < s->points; ++i) s->data[2 * i + 1] = -s->data[2 * i + 1];
    return 0;
}

int32_t dspi_rtop(dsp *s)
{
    if (!s->complex) {
        return grow_real_to_complex(s, [](double x, double &m, double &phi) {
            m = std::fabs(x);
            phi = real_phase(x);
        });
    }
    double *d = s->data;
    for (int32_t i = 0; i < s->points; ++i) {
        const double re = d[2 * i], im = d[2 * i + 1];
        d[2 * i] = std::hypot(re, im);
        d[2 * i + 1] = polar_phase(re, im);
    }
    return 0;
}

int32_t dspi_ptor(dsp *s)
{
    if (!s->complex) return 0;
    double *d = s->data;
    for (int32_t i = 0; i < s->points; ++i) {
        const double m = d[2 * i], phi = d[2 * i + 1];
        d[2 * i] = m * std::cos(phi);
        d[2 * i + 1] = m * std::sin(phi);
    }
    return 0;
}

int32_t dspi_mag(dsp *s)
{
    if (s->complex) {
        pack_complex_to_real(s, [](double re, double im) { return std::hypot(re, im); });
    } else {
        for (int32_t i = 0; i < s->points; ++i) s->data[i] = std::fabs(s->data[i]);
    }
    return 0;
}

int32_t dspi_magsq(dsp *s)
{
    if (s->complex) {
        pack_complex_to_real(s, dsp_core::capped_magsq);
    } else {
        for (int32_t i = 0; i < s->points; ++i) s->data[i] = dsp_core::capped_magsq(s->data[i], 0.0);
    }
    return 0;
}

int32_t dspi_phase(dsp *s)
{
    if (s->complex) {
        pack_complex_to_real(s, polar_phase);
    } else {
        for (int32_t i = 0; i < s->points; ++i) s->data[i] = real_phase(s->data[i]);
    }
    return 0;
}

int32_t dspi_timesi(dsp *s)
{
    if (s->points == 0) return 0;
    if (!s->complex) {
        return grow_real_to_complex(s, [](double x, double &re, double &im) {
            re = 0.0;
            im = x;
        });
    }
    double *d = s->data;
    for (int32_t i = 0; i < s->points; ++i) {
        const double re = d[2 * i];
        d[2 * i] = -d[2 * i + 1];
        d[2 * i + 1] = re;
    }
    return 0;
}

int32_t dspi_cscale(dsp *s, double a, double b)
{
    if (s->points == 0) return 0;
    if (!s->complex) {
        return grow_real_to_complex(s, [a, b](double x, double &re, double &im) {
            re = x * a;
            im = x * b;
        });
    }
    double *d = s->data;
    for (int32_t i = 0; i < s->points; ++i) {
        const double x = d[2 * i], y = d[2 * i + 1];
        d[2 * i] = x * a - y * b;
        d[2 * i + 1] = y * a + x * b;
    }
    return 0;
}

}  // extern "C"
