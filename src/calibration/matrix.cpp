#include "calibration/matrix.hpp"

#include <algorithm>
#include <cstddef>

namespace dsp_calib {

Matrix Matrix::acquire(uint32_t rows, uint32_t cols) { return Matrix(acquire_storage(rows, cols)); }

Matrix Matrix::from_array(uint32_t rows, uint32_t cols, const double *source, bool column_major)
{
    Matrix m(column_major ? acquire_storage(rows, cols) : new_storage(rows, cols));
    Complex *e = m.record_->elements;
    for (uint32_t i = 0; i < rows; ++i) {
        for (uint32_t j = 0; j < cols; ++j) {
            const std::size_t from = column_major ? static_cast<std::size_t>(j) * rows + i
                                                  : static_cast<std::size_t>(i) * cols + j;
            e[static_cast<std::size_t>(i) * cols + j] = {source[2 * from], source[2 * from + 1]};
        }
    }
    return m;
}

Matrix::Matrix(const Matrix &other) : record_(other.record_) { ++record_->references; }

// The source's count goes up before the target's goes down, so assigning a
// handle to itself (or to a sharer of its record) never frees the record.
Matrix &Matrix::operator=(const Matrix &other)
{
    ++other.record_->references;
    if (--record_->references == 0) release_storage(record_);
    record_ = other.record_;
    return *this;
}

Matrix::~Matrix()
{
    if (--record_->references == 0) release_storage(record_);
}

void Matrix::make_unique()
{
    if (record_->references <= 1) return;
    MatrixStorage *copy = acquire_storage(record_->rows, record_->cols);
    std::copy(record_->elements, record_->elements + record_->count, copy->elements);
    --record_->references;
    record_ = copy;
}

void Matrix::set(uint32_t index, Complex value)
{
    make_unique();
    record_->elements[index] = value;
}

Complex *Matrix::unique_elements()
{
    make_unique();
    return record_->elements;
}

void multiply_into(const Matrix &a, const Matrix &b, Matrix &q)
{
    const uint32_t rows = a.rows(), inner = a.cols(), cols = b.cols();
    const Complex *x = a.elements();
    const Complex *y = b.elements();
    Complex *out = q.unique_elements();
    for (uint32_t i = 0; i < rows; ++i) {
        for (uint32_t j = 0; j < cols; ++j) {
            Complex sum{0.0, 0.0};
            for (uint32_t k = 0; k < inner; ++k)
                sum = add(sum, multiply(x[static_cast<std::size_t>(i) * inner + k],
                                        y[static_cast<std::size_t>(k) * cols + j]));
            out[static_cast<std::size_t>(i) * cols + j] = sum;
        }
    }
}

Matrix product(const Matrix &a, const Matrix &b)
{
    Matrix q = Matrix::acquire(a.rows(), b.cols());
    multiply_into(a, b, q);
    return q;
}

}  // namespace dsp_calib
