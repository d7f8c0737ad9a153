// Reference-counted complex matrix with copy-on-write, on the storage cache.
// Copying a handle shares its record; the first write through a handle that
// shares its record gives that handle a private copy.
#pragma once

#include "calibration/storage_cache.hpp"

#include <cstdint>

namespace dsp_calib {

class Matrix {
public:
    // rows x cols from the storage cache; elements are not cleared.
    static Matrix acquire(uint32_t rows, uint32_t cols);
    // rows x cols copied from interleaved (re, im) pairs. Row-major sources
    // are copied as they stand into a record made outside the cache;
    // column-major sources ((i, j) at j * rows + i) go through the cache.
    static Matrix from_array(uint32_t rows, uint32_t cols, const double *source, bool column_major);

    Matrix(const Matrix &other);
    Matrix &operator=(const Matrix &other);
    ~Matrix();

    uint32_t rows() const { return record_->rows; }
    uint32_t cols() const { return record_->cols; }
    uint32_t count() const { return record_->count; }
    // Element at a row-major linear index.
    Complex get(uint32_t index) const { return record_->elements[index]; }
    const Complex *elements() const { return record_->elements; }
    // Handles sharing this one's record, this one included.
    int32_t references() const { return record_->references; }

    // Writes one element (the record is made unique first).
    void set(uint32_t index, Complex value);
    // The elements, writable: the record is made unique first.
    Complex *unique_elements();

private:
    explicit Matrix(MatrixStorage *record) : record_(record) {}
    void make_unique();

    MatrixStorage *record_;
};

// q = a x b, q already rows(a) x cols(b) and distinct from a and b. Each
// element starts at (0, 0) and accumulates a(i, k) x b(k, j) for
// k = 0 .. cols(a) - 1 in that order; rows(b) is taken to equal cols(a).
void multiply_into(const Matrix &a, const Matrix &b, Matrix &q);
// a x b as a new matrix from the cache.
Matrix product(const Matrix &a, const Matrix &b);

// Smallest accepted pivot magnitude: 10^4 units of 2^-52.
constexpr double kSingularThreshold = 2.220446049250313e-12;

// Gauss-Jordan inversion in place with partial row pivoting. Returns false
// as soon as a column's best pivot magnitude is not >= kSingularThreshold
// (NaN included), leaving the matrix partly reduced.
bool invert_in_place(Matrix &m);

}  // namespace dsp_calib
