// Copying, appending and comparing records.
#include "core/record.hpp"

#include <cstring>

extern "C" {

// The one copy primitive: every copy of points between records goes here.
int32_t dspu_subvec(const dsp *src, dsp *dst, int32_t start, int32_t count)
{
    const int32_t available = src->points > 0 ? src->points : 0;
    if (start < 0) start = 0;
    if (start > available) start = available;
    if (count < 0) count = 0;
    if (count > available - start) count = available - start;

    // Read the source before the destination's shape changes: they may be one record.
    const double *const src_base = src->data;
    const double *from = src_base;
    const int32_t complex_flag = src->complex;
    dst->points = count;
    dst->complex = complex_flag;
    dst->delta = src->delta;
    if (dsp_alloc(dst) != 0) return -1;

    const std::size_t width = complex_flag ? 2 : 1;
    const std::size_t n = static_cast<std::size_t>(count) * width;
    if (n == 0) return 0;
    from += static_cast<std::size_t>(start) * width;
    // Compare with the source's storage as it was: extracting in place from
    // caller-attached storage lands in fresh storage and is a plain copy.
    if (dst->data != src_base)
        std::memcpy(dst->data, from, n * sizeof(double));
    else if (start != 0)
        std::memmove(dst->data, from, n * sizeof(double));
    return 0;
}

int32_t dsp_copy(dsp *dst, const dsp *src) { return dspu_subvec(src, dst, 0, src->points); }

int32_t dsp_copy_at_most(dsp *dst, const dsp *src, int32_t n) { return dspu_subvec(src, dst, 0, n); }

int32_t dsp_append(dsp *dst, const dsp *src)
{
    if (src->complex && !dst->complex && dspi_rtoc(dst) != 0) return -1;

    const int32_t old_points = dst->points > 0 ? dst->points : 0;
    const int32_t old_complex = dst->complex;
    const int32_t added = src->points > 0 ? src->points : 0;
    dst->points = old_points + added;
    if (dsp_realloc(dst, old_points, old_complex) != 0) return -1;

    const std::size_t n = static_cast<std::size_t>(added);
    if (n == 0) return 0;
    if (dst->complex && src->complex) {
        std::memcpy(dst->data + 2 * static_cast<std::size_t>(old_points), src->data, 2 * n * sizeof(double));
    } else if (dst->complex) {
        double *out = dst->data + 2 * static_cast<std::size_t>(old_points);
        for (std::size_t i = 0; i < n; ++i) {
            out[2 * i] = src->data[i];
            out[2 * i + 1] = 0.0;
        }
    } else {
        std::memcpy(dst->data + old_points, src->data, n * sizeof(double));
    }
    return 0;
}

}  // extern "C"

namespace {

// Verdict of one difference: +1 above tol, -1 below -tol or NaN, 0 inside.
inline int32_t judge(double d, double tol)
{
    if (d > tol) return 1;
    if (!(d >= -tol)) return -1;
    return 0;
}

int32_t compare_samples(const dsp *a, const dsp *b, double tol)
{
    const std::size_t n = static_cast<std::size_t>(a->points > 0 ? a->points : 0);
    const double *x = a->data;
    const double *y = b->data;
    int32_t v = 0;
    if (a->complex == b->complex) {
        const std::size_t count = a->complex ? 2 * n : n;
        for (std::size_t i = 0; i < count && v == 0; ++i) v = judge(x[i] - y[i], tol);
    } else if (a->complex) {
        for (std::size_t i = 0; i < n && v == 0; ++i) {
            v = judge(x[2 * i] - y[i], tol);
            if (v == 0) v = judge(x[2 * i + 1], tol);
        }
    } else {
        // The second record's imaginary part stands on the subtracted side,
        // so its verdict is mirrored (a NaN there counts as +1).
        for (std::size_t i = 0; i < n && v == 0; ++i) {
            v = judge(x[i] - y[2 * i], tol);
            if (v == 0) {
                const double im = y[2 * i + 1];
                if (im > tol)
                    v = -1;
                else if (!(im >= -tol))
                    v = 1;
            }
        }
    }
    return v;
}

}  // namespace

extern "C" int32_t dsp_cmp(const dsp *a, const dsp *b, double tol, int32_t *verdict)
{
    if (a->points != b->points) return -1;
    int32_t v = judge(a->delta - b->delta, tol);
    if (v == 0) v = compare_samples(a, b, tol);
    *verdict = v;
    return 0;
}
