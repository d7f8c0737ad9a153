// Two-port correction of a full set of S-parameters with per-point terms.
// Each group of four arrays holds the entries of a 2 x 2 matrix in row-major
// order, e = 2i + j: S11, S12, S21, S22.
#include "calibration/matrix.hpp"
#include "libdsp_vna.h"

#include <cstdint>

namespace {

// Tracking, match and measured must all be given, and so must the offset
// diagonal (the directivities); isolation (offset off-diagonal) may be
// left out and then counts as zero.
bool terms_complete(const double *const tracking[4], const double *const match[4],
                    const double *const offset[4], const double *const measured[4])
{
    for (int e = 0; e < 4; ++e)
        if (!tracking[e] || !match[e] || !measured[e]) return false;
    return offset[0] && offset[3];
}

}  // namespace

extern "C" int32_t Correct2Port(const double *t11, const double *t12, const double *t21,
                                const double *t22, const double *e11, const double *e12,
                                const double *e21, const double *e22, const double *o11,
                                const double *o12, const double *o21, const double *o22,
                                const double *m11, const double *m12, const double *m21,
                                const double *m22, double *c11, double *c12, double *c21,
                                double *c22, int32_t start, int32_t stop)
{
    using namespace dsp_calib;
    const double *const tracking[4] = {t11, t12, t21, t22};
    const double *const match[4] = {e11, e12, e21, e22};
    const double *const offset[4] = {o11, o12, o21, o22};
    const double *const measured[4] = {m11, m12, m21, m22};
    double *const corrected[4] = {c11, c12, c21, c22};
    if (!terms_complete(tracking, match, offset, measured)) return 0;

    Matrix normalised = Matrix::acquire(2, 2);
    Matrix denominator = Matrix::acquire(2, 2);
    Matrix result = Matrix::acquire(2, 2);
    for (int32_t k = start; k < stop; ++k) {
        Complex *n = normalised.unique_elements();
        Complex *d = denominator.unique_elements();
        for (int e = 0; e < 4; ++e) {
            const Complex o = offset[e] ? load(offset[e], k) : Complex{0.0, 0.0};
            n[e] = divide(subtract(load(measured[e], k), o), load(tracking[e], k));
            d[e] = multiply(n[e], load(match[e], k));  // element by element
            if (e == 0 || e == 3) d[e] = add(d[e], {1.0, 0.0});
        }
        // As in the one-port solve, a singular point is not singled out: the
        // partly reduced matrix is used as it stands.
        invert_in_place(denominator);
        multiply_into(normalised, denominator, result);
        for (int e = 0; e < 4; ++e)
            if (corrected[e]) store(corrected[e], k, result.get(static_cast<uint32_t>(e)));
    }
    return point_count(start, stop);
}
