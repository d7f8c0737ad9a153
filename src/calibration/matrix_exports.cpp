// MatrixMult and invert: the matrix kernel on caller arrays.
#include "calibration/control_word.hpp"
#include "calibration/matrix.hpp"
#include "libdsp_vna.h"

#include <cstddef>

namespace {

// Products of dimensions as the 32-bit arithmetic of the size test forms
// them, wrapping instead of overflowing.
int32_t wrapped_product(int32_t x, int32_t y)
{
    return static_cast<int32_t>(static_cast<uint32_t>(x) * static_cast<uint32_t>(y));
}

}  // namespace

extern "C" int32_t MatrixMult(const double *a, const double *b, double *out, int32_t m, int32_t n,
                              int32_t p)
{
    using dsp_calib::Matrix;
    // Only the inner dimension against the rows of a is checked.
    if (wrapped_product(n, n) > wrapped_product(m, n)) return -1;
    const uint32_t rows = static_cast<uint32_t>(m), inner = static_cast<uint32_t>(n),
                   cols = static_cast<uint32_t>(p);
    const Matrix left = Matrix::from_array(rows, inner, a, false);
    const Matrix right = Matrix::from_array(inner, cols, b, false);
    const Matrix q = dsp_calib::product(left, right);
    // Written column-major: (i, j) at j * m + i.
    for (uint32_t i = 0; i < rows; ++i) {
        for (uint32_t j = 0; j < cols; ++j) {
            const dsp_calib::Complex v = q.get(i * cols + j);
            const std::size_t at = 2 * (static_cast<std::size_t>(j) * rows + i);
            out[at] = v.re;
            out[at + 1] = v.im;
        }
    }
    return wrapped_product(m, p);
}

extern "C" int32_t invert(double *a, int32_t n)
{
    using dsp_calib::Matrix;
    const dsp_calib::SavedControlWord saved;
    const uint32_t size = static_cast<uint32_t>(n);
    // The work is done on a copy, so a singular matrix leaves a unchanged.
    Matrix m = Matrix::from_array(size, size, a, false);
    if (!dsp_calib::invert_in_place(m)) return 0;
    const dsp_calib::Complex *e = m.elements();
    for (std::size_t i = 0; i < m.count(); ++i) {
        a[2 * i] = e[i].re;
        a[2 * i + 1] = e[i].im;
    }
    return 1;
}
