// Median, minimum and maximum. Complex points are ranked by squared
// magnitude and reported whole.
#include "core/numeric.hpp"
#include "stats/scalar_result.hpp"

using dsp_core::capped_magsq;
using dsp_core::kHuge;
using dsp_stats::point_count;
using dsp_stats::store_point;

extern "C" {

int32_t dsps_median(const dsp *src, dsp *result)
{
    const std::size_t n = point_count(src);
    const bool complex_flag = src->complex != 0;
    if (n == 0) return store_point(result, complex_flag, 0.0, 0.0);
    dsp sorted;
    dsp_init(&sorted);
    if (dsp_copy(&sorted, src) != 0 || dspi_sort(&sorted) != 0) {
        dsp_destroy(&sorted);
        return -1;
    }
    const std::size_t width = complex_flag ? 2 : 1;
    const double *upper = sorted.data + (n / 2) * width;
    double re = upper[0], im = complex_flag ? upper[1] : 0.0;
    if (n % 2 == 0) {
        const double *lower = upper - width;
        re = (lower[0] + re) * 0.5;
        if (complex_flag) im = (lower[1] + im) * 0.5;
    }
    dsp_destroy(&sorted);
    return store_point(result, complex_flag, re, im);
}

// The search starts from kHuge, so values all above it give kHuge.
int32_t dsps_min(const dsp *src, dsp *result)
{
    const std::size_t n = point_count(src);
    const double *x = src->data;
    if (n == 0) return store_point(result, src->complex != 0, 0.0, 0.0);
    if (!src->complex) {
        double best = kHuge;
        for (std::size_t i = 0; i < n; ++i)
            if (x[i] < best) best = x[i];
        return store_point(result, false, best);
    }
    double best = kHuge, re = kHuge, im = kHuge;
    for (std::size_t i = 0; i < n; ++i) {
        const double m = capped_magsq(x[2 * i], x[2 * i + 1]);
        if (m < best) {
            best = m;
            re = x[2 * i];
            im = x[2 * i + 1];
        }
    }
    return store_point(result, true, re, im);
}

// The search starts from -kHuge and takes a value whenever the best so far is
// not >= it, so a NaN is taken (and replaced by the next value).
int32_t dsps_max(const dsp *src, dsp *result)
{
    const std::size_t n = point_count(src);
    const double *x = src->data;
    if (n == 0) return store_point(result, src->complex != 0, 0.0, 0.0);
    if (!src->complex) {
        double best = -kHuge;
        for (std::size_t i = 0; i < n; ++i)
            if (!(best >= x[i])) best = x[i];
        return store_point(result, false, best);
    }
    double best = -kHuge, re = 0.0, im = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double m = capped_magsq(x[2 * i], x[2 * i + 1]);
        if (!(best >= m)) {
            best = m;
            re = x[2 * i];
            im = x[2 * i + 1];
        }
    }
    return store_point(result, true, re, im);
}

}  // extern "C"
