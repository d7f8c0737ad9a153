// Point-by-point selection of the smaller or larger of two records.
// Complex points are compared by squared magnitude and copied whole; ties go
// to the second operand.
#include "arith/binary_shape.hpp"
#include "core/numeric.hpp"

using dsp_arith::Kinds;
using dsp_arith::Shaped;

namespace {

enum class Pick { Smaller, Larger };

// True when the first operand's value wins. The smaller test is "not >=" so
// that a NaN on the first side is taken, as the real rule does.
inline bool first_wins(Pick pick, double first, double second)
{
    return pick == Pick::Smaller ? !(first >= second) : first > second;
}

int32_t select(const dsp *first, const dsp *second, dsp *result, Pick pick)
{
    Shaped s;
    if (dsp_arith::shape_operands(first, second, result, s) != 0) return -1;
    if (s.kinds == Kinds::RealReal) {
        for (std::size_t i = 0; i < s.n; ++i) s.r[i] = first_wins(pick, s.a[i], s.b[i]) ? s.a[i] : s.b[i];
        return 0;
    }
    const bool a_complex = s.kinds != Kinds::RealComplex;
    const bool b_complex = s.kinds != Kinds::ComplexReal;
    // Descending: a real operand that is also the result is growing in place.
    for (std::size_t i = s.n; i-- > 0;) {
        const double are = a_complex ? s.a[2 * i] : s.a[i];
        const double aim = a_complex ? s.a[2 * i + 1] : 0.0;
        const double bre = b_complex ? s.b[2 * i] : s.b[i];
        const double bim = b_complex ? s.b[2 * i + 1] : 0.0;
        const bool take_first =
            first_wins(pick, dsp_core::capped_magsq(are, aim), dsp_core::capped_magsq(bre, bim));
        s.r[2 * i] = take_first ? are : bre;
        s.r[2 * i + 1] = take_first ? aim : bim;
    }
    return 0;
}

}  // namespace

extern "C" {

int32_t dspb_min(const dsp *first, const dsp *second, dsp *result)
{
    return select(first, second, result, Pick::Smaller);
}

int32_t dspb_max(const dsp *first, const dsp *second, dsp *result)
{
    return select(first, second, result, Pick::Larger);
}

}  // extern "C"
