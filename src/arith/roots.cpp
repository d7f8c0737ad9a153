// Polynomial coefficients from its zeros.
#include "core/record.hpp"

extern "C" int32_t dspi_pztoc(dsp *s)
{
    const int32_t n = s->points > 0 ? s->points : 0;
    const bool cpx = s->complex != 0;
    dsp c;
    dsp_init(&c);
    c.points = n + 1;
    c.complex = cpx ? 1 : 0;
    if (dsp_alloc(&c) != 0 || dspi_zero(&c) != 0) {
        dsp_destroy(&c);
        return -1;
    }
    double *k = c.data;
    k[0] = 1.0;
    // Multiply by (x - r) for each root in turn, highest coefficient first so
    // each c[k-1] is read before it is updated.
    for (int32_t j = 0; j < n; ++j) {
        if (cpx) {
            const double rr = -s->data[2 * j], ri = -s->data[2 * j + 1];
            for (int32_t i = n; i >= 1; --i) {
                const double re = k[2 * i], im = k[2 * i + 1];
                k[2 * i] = (re * rr - im * ri) + k[2 * i - 2];
                k[2 * i + 1] = (re * ri + im * rr) + k[2 * i - 1];
            }
            const double re = k[0], im = k[1];
            k[0] = re * rr - im * ri;
            k[1] = re * ri + im * rr;
        } else {
            const double r = -s->data[j];
            for (int32_t i = n; i >= 1; --i) k[i] = k[i] * r + k[i - 1];
            k[0] = k[0] * r;
        }
    }
    const int32_t status = dsp_copy(s, &c);
    dsp_destroy(&c);
    return status;
}
