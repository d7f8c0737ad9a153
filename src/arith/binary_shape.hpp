// Shaping and operand access shared by the two-operand (dspb_) family.
#pragma once

#include "core/record.hpp"

#include <cstddef>

namespace dsp_arith {

// Which operands are complex. Read before shaping: a result that is also an
// operand changes its complex flag while it is shaped.
enum class Kinds { RealReal, ComplexComplex, RealComplex, ComplexReal };

inline Kinds kinds_of(const dsp *first, const dsp *second)
{
    if (first->complex) return second->complex ? Kinds::ComplexComplex : Kinds::ComplexReal;
    return second->complex ? Kinds::RealComplex : Kinds::RealReal;
}

// Operand and result storage after the shape step, with the point count.
struct Shaped {
    Kinds kinds;
    std::size_t n;
    const double *a;
    const double *b;
    double *r;
};

// Applies the shape rule. The pointers are read afterwards, since growing a
// result that is one of the operands may move that operand's storage.
inline int32_t shape_operands(const dsp *first, const dsp *second, dsp *result, Shaped &out)
{
    out.kinds = kinds_of(first, second);
    out.n = static_cast<std::size_t>(first->points > 0 ? first->points : 0);
    if (dsp_binary_shape(first, second, result) != 0) return -1;
    out.a = first->data;
    out.b = second->data;
    out.r = result->data;
    return 0;
}

inline bool shares_storage(const dsp *result, const dsp *first, const dsp *second)
{
    return result->data == first->data || result->data == second->data;
}

// One complex product (a + ib)(c + id), in the library's fixed order.
inline void complex_product(double a, double b, double c, double d, double &re, double &im)
{
    re = a * c - b * d;
    im = b * c + a * d;
}

}  // namespace dsp_arith
