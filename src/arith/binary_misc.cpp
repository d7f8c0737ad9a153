// Two-operand operations with their own result shapes: building a complex
// record from two real ones, interleaving, polynomial product, dot product.
#include "arith/binary_shape.hpp"

#include <cstdint>

using dsp_arith::Kinds;

namespace {

// A point of either kind as a complex value (a real point has imaginary 0).
inline void point_at(const double *data, bool complex_flag, std::size_t i, double &re, double &im)
{
    re = complex_flag ? data[2 * i] : data[i];
    im = complex_flag ? data[2 * i + 1] : 0.0;
}

// Product of two points of either kind; a real factor scales the other
// point's parts directly (no products with its zero imaginary part).
inline void point_product(double are, double aim, bool a_complex, double bre, double bim, bool b_complex, double &re,
                          double &im)
{
    if (a_complex && b_complex) {
        dsp_arith::complex_product(are, aim, bre, bim, re, im);
    } else if (a_complex) {
        re = are * bre;
        im = aim * bre;
    } else {
        re = are * bre;
        im = are * bim;
    }
}

inline std::size_t count_of(const dsp *s) { return static_cast<std::size_t>(s->points > 0 ? s->points : 0); }

// Product of two ascending coefficient lists into a result that shares
// storage with neither operand.
int32_t polynomial_product(const dsp *first, const dsp *second, dsp *result)
{
    const bool a_complex = first->complex != 0, b_complex = second->complex != 0;
    const std::size_t na = count_of(first), nb = count_of(second);
    const int64_t points = (na > 0 && nb > 0) ? static_cast<int64_t>(na + nb) - 1 : 0;
    if (points > INT32_MAX) return -1;
    result->delta = (first->delta + second->delta) * 0.5;
    result->complex = (a_complex || b_complex) ? 1 : 0;
    result->points = static_cast<int32_t>(points);
    if (dsp_alloc(result) != 0 || dspi_zero(result) != 0) return -1;
    const double *a = first->data, *b = second->data;
    double *r = result->data;
    if (!result->complex) {
        for (std::size_t i = 0; i < na; ++i)
            for (std::size_t j = 0; j < nb; ++j) r[i + j] += a[i] * b[j];
        return 0;
    }
    for (std::size_t i = 0; i < na; ++i) {
        double are, aim;
        point_at(a, a_complex, i, are, aim);
        for (std::size_t j = 0; j < nb; ++j) {
            double bre, bim, re, im;
            point_at(b, b_complex, j, bre, bim);
            point_product(are, aim, a_complex, bre, bim, b_complex, re, im);
            r[2 * (i + j)] += re;
            r[2 * (i + j) + 1] += im;
        }
    }
    return 0;
}

}  // namespace

extern "C" {

int32_t dspb_ritoc(const dsp *re_parts, const dsp *im_parts, dsp *result)
{
    if (re_parts->complex || im_parts->complex || re_parts->points != im_parts->points) return -1;
    const std::size_t n = count_of(re_parts);
    const double delta = (re_parts->delta + im_parts->delta) * 0.5;
    const int32_t old_points = result->points, old_complex = result->complex;
    result->complex = 1;
    result->points = re_parts->points;
    result->delta = delta;
    // Grown keeping contents, so that a result that is one of the inputs still
    // holds its values; descending, as the real input spreads over 2n doubles.
    if (dsp_realloc(result, old_points, old_complex) != 0) return -1;
    const double *x = re_parts->data, *y = im_parts->data;
    double *r = result->data;
    for (std::size_t i = n; i-- > 0;) {
        const double re = x[i], im = y[i];
        r[2 * i] = re;
        r[2 * i + 1] = im;
    }
    return 0;
}

int32_t dspb_inter(const dsp *first, const dsp *second, dsp *result)
{
    if (first->points != second->points) return -1;
    if (first->points > INT32_MAX / 2) return -1;
    const Kinds kinds = dsp_arith::kinds_of(first, second);
    const bool a_complex = first->complex != 0, b_complex = second->complex != 0;
    const std::size_t n = count_of(first);
    const bool shared = dsp_arith::shares_storage(result, first, second);
    const double delta = (first->delta + second->delta) * 0.25;  // twice the points: half the mean spacing
    const int32_t old_complex = result->complex;
    result->points = static_cast<int32_t>(2 * n);
    result->complex = kinds == Kinds::RealReal ? 0 : 1;
    result->delta = delta;
    const int32_t grown = shared ? dsp_realloc(result, static_cast<int32_t>(n), old_complex) : dsp_alloc(result);
    if (grown != 0) return -1;
    const double *a = first->data, *b = second->data;
    double *r = result->data;
    // Descending: an operand that is the result spreads over twice its storage.
    if (!result->complex) {
        for (std::size_t i = n; i-- > 0;) {
            const double x = a[i], y = b[i];
            r[2 * i] = x;
            r[2 * i + 1] = y;
        }
        return 0;
    }
    for (std::size_t i = n; i-- > 0;) {
        double are, aim, bre, bim;
        point_at(a, a_complex, i, are, aim);
        point_at(b, b_complex, i, bre, bim);
        r[4 * i] = are;
        r[4 * i + 1] = aim;
        r[4 * i + 2] = bre;
        r[4 * i + 3] = bim;
    }
    return 0;
}

int32_t dspb_pmul(const dsp *first, const dsp *second, dsp *result)
{
    if (!dsp_arith::shares_storage(result, first, second)) return polynomial_product(first, second, result);
    // The product is accumulated over the whole result, so it cannot overwrite
    // an operand it is still reading: compute aside and copy.
    dsp product;
    dsp_init(&product);
    int32_t status = polynomial_product(first, second, &product);
    if (status == 0) status = dsp_copy(result, &product);
    const int32_t destroyed = dsp_destroy(&product);
    return destroyed != 0 ? destroyed : status;
}

int32_t dspbs_dot(const dsp *first, const dsp *second, dsp *result)
{
    if (first->points != second->points) return -1;
    const bool a_complex = first->complex != 0, b_complex = second->complex != 0;
    const std::size_t n = count_of(first);
    const bool shared = dsp_arith::shares_storage(result, first, second);
    const int32_t old_complex = result->complex;
    result->points = 1;
    result->complex = (a_complex || b_complex) ? 1 : 0;
    const int32_t grown = shared ? dsp_realloc(result, static_cast<int32_t>(n), old_complex) : dsp_alloc(result);
    if (grown != 0) return -1;
    const double *a = first->data, *b = second->data;
    if (!result->complex) {
        double sum = 0.0;
        for (std::size_t i = 0; i < n; ++i) sum += a[i] * b[i];
        result->data[0] = sum;
        return 0;
    }
    double sum_re = 0.0, sum_im = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        double are, aim, bre, bim, re, im;
        point_at(a, a_complex, i, are, aim);
        point_at(b, b_complex, i, bre, bim);
        point_product(are, aim, a_complex, bre, bim, b_complex, re, im);
        sum_re += re;
        sum_im += im;
    }
    result->data[0] = sum_re;
    result->data[1] = sum_im;
    return 0;
}

}  // extern "C"
