// Sums, means and the root mean square of a record.
#include "core/numeric.hpp"
#include "stats/block_sum.hpp"
#include "stats/scalar_result.hpp"

#include <cmath>

using dsp_stats::point_count;
using dsp_stats::store_point;

namespace {

// Block sums of the real and imaginary parts (imaginary 0 for real records).
std::array<double, 2> sum_parts(const dsp *src)
{
    const double *x = src->data;
    const std::size_t n = point_count(src);
    if (!src->complex) return {dsp_core::block_sum(n, [x](std::size_t i) { return x[i]; }), 0.0};
    return dsp_core::block_sums<2>(n, [x](std::size_t i, std::array<double, 2> &acc) {
        acc[0] += x[2 * i];
        acc[1] += x[2 * i + 1];
    });
}

double magsq_total(const dsp *src)
{
    const double *x = src->data;
    const std::size_t n = point_count(src);
    if (!src->complex) return dsp_core::block_sum(n, [x](std::size_t i) { return dsp_core::capped_magsq(x[i], 0.0); });
    return dsp_core::block_sum(n, [x](std::size_t i) { return dsp_core::capped_magsq(x[2 * i], x[2 * i + 1]); });
}

}  // namespace

extern "C" {

int32_t dsps_sum(const dsp *src, dsp *result)
{
    const std::array<double, 2> s = sum_parts(src);
    return store_point(result, src->complex != 0, s[0], s[1]);
}

int32_t dsps_mean(const dsp *src, dsp *result)
{
    const std::size_t n = point_count(src);
    std::array<double, 2> s = sum_parts(src);
    if (n > 0) {
        const double scale = 1.0 / static_cast<double>(n);
        s[0] *= scale;
        s[1] *= scale;
    }
    return store_point(result, src->complex != 0, s[0], s[1]);
}

int32_t dsps_magsq_sum(const dsp *src, dsp *result) { return store_point(result, false, magsq_total(src)); }

int32_t dsps_rms(const dsp *src, dsp *result)
{
    const std::size_t n = point_count(src);
    const double rms = n > 0 ? std::sqrt(magsq_total(src) / static_cast<double>(n)) : 0.0;
    return store_point(result, false, rms);
}

}  // extern "C"
