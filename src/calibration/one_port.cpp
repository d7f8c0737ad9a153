// One-port calibration: error terms from three standards, and correction.
// The error model: a raw reflection m of a true reflection g is
//   m = D + R g / (1 - S g)
// with D directivity, S source match and R reflection tracking.
#include "calibration/control_word.hpp"
#include "calibration/matrix.hpp"
#include "libdsp_vna.h"

#include <cstdint>

using dsp_calib::Complex;
using dsp_calib::load;
using dsp_calib::point_count;
using dsp_calib::store;

// Rewritten as m_i = x1 + g_i x0 - g_i m_i x2, the model is linear in
// x = (R - D S, D, -S) for the three standards i; solve it point by point.
extern "C" int32_t Compute1PortTerms(double *m0, double *m1, double *m2, const double *g0,
                                     const double *g1, const double *g2, int32_t start,
                                     int32_t stop)
{
    using dsp_calib::Matrix;
    const dsp_calib::SavedControlWord saved;
    Matrix a = Matrix::acquire(3, 3);
    double *const measured[3] = {m0, m1, m2};
    const double *const model[3] = {g0, g1, g2};
    for (int32_t k = start; k < stop; ++k) {
        Complex m[3];
        Complex *e = a.unique_elements();
        for (int i = 0; i < 3; ++i) {
            const Complex g = load(model[i], k);
            m[i] = load(measured[i], k);
            e[3 * i] = g;
            e[3 * i + 1] = {1.0, 0.0};
            e[3 * i + 2] = dsp_calib::multiply(dsp_calib::negate(g), m[i]);
        }
        // A singular point is deliberately not singled out: the terms come
        // from the partly reduced matrix, and the sweep goes on.
        dsp_calib::invert_in_place(a);
        Matrix b = Matrix::acquire(3, 1);
        Complex *be = b.unique_elements();
        for (int i = 0; i < 3; ++i) be[i] = m[i];
        const Matrix x = dsp_calib::product(a, b);
        const Complex x0 = x.get(0), x1 = x.get(1), x2 = x.get(2);
        store(m0, k, x1);
        store(m1, k, dsp_calib::negate(x2));
        store(m2, k, dsp_calib::subtract(x0, dsp_calib::multiply(x1, x2)));
    }
    return 0;
}

extern "C" int32_t Correct1Port(const double *directivity, const double *sourceMatch,
                                const double *reflectionTracking, const double *measured,
                                double *corrected, int32_t start, int32_t stop)
{
    for (int32_t k = start; k < stop; ++k) {
        const Complex t = dsp_calib::subtract(load(measured, k), load(directivity, k));
        const Complex w = dsp_calib::add(dsp_calib::multiply(t, load(sourceMatch, k)),
                                         load(reflectionTracking, k));
        store(corrected, k, dsp_calib::divide(t, w));
    }
    return point_count(start, stop);
}

extern "C" int32_t ApplyEnhancedResponse(const double *directivity, const double *sourceMatch,
                                         const double *reflectionTracking, const double *loadMatch,
                                         const double *transmissionTracking,
                                         const double *measuredReflection,
                                         const double *measuredTransmission,
                                         double *correctedReflection, double *correctedTransmission,
                                         int32_t start, int32_t stop, unsigned char useLoadMatch)
{
    using namespace dsp_calib;
    for (int32_t k = start; k < stop; ++k) {
        const Complex r = load(reflectionTracking, k);
        const Complex offset = subtract(load(measuredReflection, k), load(directivity, k));
        const Complex den = add(r, multiply(load(sourceMatch, k), offset));
        // Needed for the load-match term even when it is not written.
        const Complex t21 = divide(multiply(r, load(measuredTransmission, k)),
                                   multiply(load(transmissionTracking, k), den));
        if (correctedTransmission) store(correctedTransmission, k, t21);
        if (correctedReflection) {
            Complex s11 = divide(offset, den);
            if (useLoadMatch) s11 = subtract(s11, multiply(load(loadMatch, k), multiply(t21, t21)));
            store(correctedReflection, k, s11);
        }
    }
    return point_count(start, stop);
}
