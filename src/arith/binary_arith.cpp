// Point-by-point arithmetic of two records: add, subtract, multiply, divide,
// exponential averaging.
//
// Loops that mix a real and a complex operand run from the last point down:
// when the result is the real operand, its storage has just been doubled in
// place with point i still at index i while its output goes to 2i and 2i+1,
// so descending order never overwrites a value that is still to be read.
#include "arith/binary_shape.hpp"
#include "core/numeric.hpp"

using dsp_arith::Kinds;
using dsp_arith::Shaped;

namespace {

// dspb_add and dspb_sub accept operands of different lengths: the shorter
// one is copied and extended with zeros to the longer one's length.
template <typename Combine>
int32_t with_zero_padding(const dsp *first, const dsp *second, dsp *result, Combine combine)
{
    if (first->points == second->points) return combine(first, second, result);
    const bool first_shorter = first->points < second->points;
    const int32_t longer_points = first_shorter ? second->points : first->points;
    dsp padded;
    dsp_init(&padded);
    int32_t status = dsp_copy(&padded, first_shorter ? first : second);
    if (status == 0) status = dspi_zpad(&padded, longer_points);
    if (status == 0) status = first_shorter ? combine(&padded, second, result) : combine(first, &padded, result);
    const int32_t destroyed = dsp_destroy(&padded);
    return status != 0 ? status : destroyed;
}

int32_t add_equal(const dsp *first, const dsp *second, dsp *result)
{
    Shaped s;
    if (dsp_arith::shape_operands(first, second, result, s) != 0) return -1;
    switch (s.kinds) {
    case Kinds::RealReal:
        for (std::size_t i = 0; i < s.n; ++i) s.r[i] = s.a[i] + s.b[i];
        break;
    case Kinds::ComplexComplex:
        for (std::size_t j = 0; j < 2 * s.n; ++j) s.r[j] = s.a[j] + s.b[j];
        break;
    case Kinds::RealComplex:
        for (std::size_t i = s.n; i-- > 0;) {
            const double x = s.a[i], re = s.b[2 * i], im = s.b[2 * i + 1];
            s.r[2 * i] = x + re;
            s.r[2 * i + 1] = im;
        }
        break;
    case Kinds::ComplexReal:
        for (std::size_t i = s.n; i-- > 0;) {
            const double y = s.b[i], re = s.a[2 * i], im = s.a[2 * i + 1];
            s.r[2 * i] = re + y;
            s.r[2 * i + 1] = im;
        }
        break;
    }
    return 0;
}

int32_t sub_equal(const dsp *first, const dsp *second, dsp *result)
{
    Shaped s;
    if (dsp_arith::shape_operands(first, second, result, s) != 0) return -1;
    switch (s.kinds) {
    case Kinds::RealReal:
        for (std::size_t i = 0; i < s.n; ++i) s.r[i] = s.a[i] - s.b[i];
        break;
    case Kinds::ComplexComplex:
        for (std::size_t j = 0; j < 2 * s.n; ++j) s.r[j] = s.a[j] - s.b[j];
        break;
    case Kinds::RealComplex:
        for (std::size_t i = s.n; i-- > 0;) {
            const double x = s.a[i], re = s.b[2 * i], im = s.b[2 * i + 1];
            s.r[2 * i] = x - re;
            s.r[2 * i + 1] = -im;
        }
        break;
    case Kinds::ComplexReal:
        for (std::size_t i = s.n; i-- > 0;) {
            const double y = s.b[i], re = s.a[2 * i], im = s.a[2 * i + 1];
            s.r[2 * i] = re - y;
            s.r[2 * i + 1] = im;
        }
        break;
    }
    return 0;
}

// Product with the second operand conjugated when conjugate is set.
int32_t multiply(const dsp *first, const dsp *second, dsp *result, bool conjugate)
{
    Shaped s;
    if (dsp_arith::shape_operands(first, second, result, s) != 0) return -1;
    switch (s.kinds) {
    case Kinds::RealReal:
        for (std::size_t i = 0; i < s.n; ++i) s.r[i] = s.a[i] * s.b[i];
        break;
    case Kinds::ComplexComplex:
        for (std::size_t i = 0; i < s.n; ++i) {
            const double a = s.a[2 * i], b = s.a[2 * i + 1], c = s.b[2 * i], d = s.b[2 * i + 1];
            if (conjugate) {
                s.r[2 * i] = a * c + b * d;
                s.r[2 * i + 1] = b * c - a * d;
            } else {
                dsp_arith::complex_product(a, b, c, d, s.r[2 * i], s.r[2 * i + 1]);
            }
        }
        break;
    case Kinds::RealComplex:
        for (std::size_t i = s.n; i-- > 0;) {
            const double x = s.a[i], c = s.b[2 * i], d = s.b[2 * i + 1];
            s.r[2 * i] = x * c;
            s.r[2 * i + 1] = conjugate ? -(x * d) : x * d;
        }
        break;
    case Kinds::ComplexReal:
        for (std::size_t i = s.n; i-- > 0;) {
            const double y = s.b[i], re = s.a[2 * i], im = s.a[2 * i + 1];
            s.r[2 * i] = re * y;
            s.r[2 * i + 1] = im * y;
        }
        break;
    }
    return 0;
}

using dsp_core::kHuge;

// Division by zero never yields an infinity: 0 when the dividend is zero as
// well, else +kHuge whatever the dividend's sign.
inline void complex_quotient(double a, double b, double c, double e, double &re, double &im)
{
    const double d = c * c + e * e;
    if (d > 0.0) {
        const double r = 1.0 / d;
        re = (a * c + b * e) * r;
        im = (b * c - a * e) * r;
    } else {
        const bool all_zero = a == 0.0 && b == 0.0 && c == 0.0 && e == 0.0;
        re = all_zero ? 0.0 : kHuge;
        im = re;
    }
}

}  // namespace

extern "C" {

int32_t dspb_add(const dsp *first, const dsp *second, dsp *result)
{
    return with_zero_padding(first, second, result, add_equal);
}

int32_t dspb_sub(const dsp *first, const dsp *second, dsp *result)
{
    return with_zero_padding(first, second, result, sub_equal);
}

int32_t dspb_mul(const dsp *first, const dsp *second, dsp *result) { return multiply(first, second, result, false); }

int32_t dspb_conj_mul(const dsp *first, const dsp *second, dsp *result)
{
    return multiply(first, second, result, second->complex != 0);
}

int32_t dspb_div(const dsp *first, const dsp *second, dsp *result)
{
    Shaped s;
    if (dsp_arith::shape_operands(first, second, result, s) != 0) return -1;
    switch (s.kinds) {
    case Kinds::RealReal:
        for (std::size_t i = 0; i < s.n; ++i) {
            const double x = s.a[i], y = s.b[i];
            s.r[i] = y == 0.0 ? (x == 0.0 ? 0.0 : kHuge) : x / y;
        }
        break;
    case Kinds::ComplexComplex:
        for (std::size_t i = 0; i < s.n; ++i) {
            complex_quotient(s.a[2 * i], s.a[2 * i + 1], s.b[2 * i], s.b[2 * i + 1], s.r[2 * i], s.r[2 * i + 1]);
        }
        break;
    case Kinds::RealComplex:
        for (std::size_t i = s.n; i-- > 0;) {
            const double x = s.a[i], c = s.b[2 * i], e = s.b[2 * i + 1];
            const double d = c * c + e * e;
            if (d > 0.0) {
                const double r = 1.0 / d;
                s.r[2 * i] = (c * x) * r;
                s.r[2 * i + 1] = (-e * x) * r;
            } else {
                const double v = (x == 0.0 && c == 0.0 && e == 0.0) ? 0.0 : kHuge;
                s.r[2 * i] = v;
                s.r[2 * i + 1] = v;
            }
        }
        break;
    case Kinds::ComplexReal:
        for (std::size_t i = s.n; i-- > 0;) {
            const double y = s.b[i], re = s.a[2 * i], im = s.a[2 * i + 1];
            if (y == 0.0) {
                const double v = (re == 0.0 && im == 0.0) ? 0.0 : kHuge;
                s.r[2 * i] = v;
                s.r[2 * i + 1] = v;
            } else {
                const double k = 1.0 / y;  // one division per point
                s.r[2 * i] = re * k;
                s.r[2 * i + 1] = im * k;
            }
        }
        break;
    }
    return 0;
}

int32_t dspb_avg_add(const dsp *first, const dsp *second, dsp *result, double weight)
{
    Shaped s;
    if (dsp_arith::shape_operands(first, second, result, s) != 0) return -1;
    switch (s.kinds) {
    case Kinds::RealReal:
        for (std::size_t i = 0; i < s.n; ++i) s.r[i] = s.b[i] + (s.a[i] - s.b[i]) * weight;
        break;
    case Kinds::ComplexComplex:
        for (std::size_t j = 0; j < 2 * s.n; ++j) s.r[j] = s.b[j] + (s.a[j] - s.b[j]) * weight;
        break;
    case Kinds::RealComplex:
        for (std::size_t i = s.n; i-- > 0;) {
            const double x = s.a[i], re = s.b[2 * i], im = s.b[2 * i + 1];
            s.r[2 * i] = re + (x - re) * weight;
            s.r[2 * i + 1] = (1.0 - weight) * im;
        }
        break;
    case Kinds::ComplexReal:
        for (std::size_t i = s.n; i-- > 0;) {
            const double y = s.b[i], re = s.a[2 * i], im = s.a[2 * i + 1];
            s.r[2 * i] = y + (re - y) * weight;
            s.r[2 * i + 1] = weight * im;
        }
        break;
    }
    return 0;
}

}  // extern "C"
