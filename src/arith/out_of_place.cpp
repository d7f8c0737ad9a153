// Magnitude, power and square root of a record into a second record.
#include "core/numeric.hpp"
#include "core/record.hpp"

#include <cmath>

namespace {

// Shapes dst like src (presented as real when as_real is set) and returns
// the source's samples and complex flag as they were before shaping: dst
// may be src itself.
struct Source {
    const double *data;
    bool complex_flag;
    int32_t points;
};

bool shape_like(const dsp *src, dsp *dst, bool as_real, Source &source)
{
    source = Source{src->data, src->complex != 0, src->points};
    dsp view = *src;
    if (as_real) view.complex = 0;
    // Shaping dst in place grows it only when its storage is caller-attached;
    // that storage is never freed, so the source samples stay readable.
    return dsp_binary_shape(&view, &view, dst) == 0;
}

template <typename Real, typename Complex>
int32_t to_real(const dsp *src, dsp *dst, Real real, Complex cpx)
{
    Source in{};
    if (!shape_like(src, dst, true, in)) return -1;
    double *out = dst->data;
    if (in.complex_flag) {
        for (int32_t i = 0; i < in.points; ++i) out[i] = cpx(in.data[2 * i], in.data[2 * i + 1]);
    } else {
        for (int32_t i = 0; i < in.points; ++i) out[i] = real(in.data[i]);
    }
    return 0;
}

}  // namespace

extern "C" {

int32_t dspu_mag(const dsp *src, dsp *dst)
{
    return to_real(src, dst, [](double x) { return std::fabs(x); },
                   [](double re, double im) { return std::hypot(re, im); });
}

int32_t dspu_magsq(const dsp *src, dsp *dst)
{
    return to_real(src, dst, [](double x) { return dsp_core::capped_magsq(x, 0.0); }, dsp_core::capped_magsq);
}

int32_t dspu_sqrt(const dsp *src, dsp *dst)
{
    Source in{};
    if (!shape_like(src, dst, false, in)) return -1;
    double *out = dst->data;
    if (!in.complex_flag) {
        for (int32_t i = 0; i < in.points; ++i) out[i] = in.data[i] >= 0.0 ? std::sqrt(in.data[i]) : 0.0;
        return 0;
    }
    for (int32_t i = 0; i < in.points; ++i) {
        const double re = in.data[2 * i], im = in.data[2 * i + 1];
        const double m = dsp_core::beyond_huge(re) || dsp_core::beyond_huge(im) ? dsp_core::kHuge
                                                                                : std::sqrt(re * re + im * im);
        const double r = std::sqrt(m);
        if (r > 0.0) {
            const double half = std::atan2(im, re) * 0.5;
            out[2 * i] = r * std::cos(half);
            out[2 * i + 1] = r * std::sin(half);
        } else {
            out[2 * i] = 0.0;
            out[2 * i + 1] = 0.0;
        }
    }
    return 0;
}

}  // extern "C"
