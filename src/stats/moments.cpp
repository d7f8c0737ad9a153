// Variance, standard deviation, skewness and excess kurtosis.
//
// Moments are accumulated on deviations from a shift value K, the mean of the
// first, middle and last values, and corrected afterwards: for a signal with
// a large offset the sums then stay small and lose no precision. Deviations
// are clamped to +-kHuge so that their powers stay finite as long as possible.
#include "core/numeric.hpp"
#include "stats/block_sum.hpp"
#include "stats/scalar_result.hpp"

#include <cmath>

using dsp_core::clamp_huge;
using dsp_core::kHuge;
using dsp_stats::point_count;
using dsp_stats::store_point;

namespace {

// K of the part at offset (0 real or real part, 1 imaginary part) with the
// given stride (1 real, 2 complex).
double shift_of(const double *x, std::size_t n, std::size_t stride, std::size_t offset)
{
    return (x[offset] + x[(n / 2) * stride + offset] + x[(n - 1) * stride + offset]) * 0.3333333333333333;
}

double population_variance(const dsp *src)
{
    const std::size_t n = point_count(src);
    if (n == 0) return 0.0;
    const double *x = src->data;
    const double count = static_cast<double>(n);
    if (!src->complex) {
        const double k = shift_of(x, n, 1, 0);
        const std::array<double, 2> s = dsp_core::block_sums<2>(n, [x, k](std::size_t i, std::array<double, 2> &acc) {
            const double d = clamp_huge(x[i] - k);
            acc[0] += d;
            acc[1] += d * d;
        });
        const double m1 = s[0] / count;
        return s[1] / count - m1 * m1;
    }
    const double kre = shift_of(x, n, 2, 0), kim = shift_of(x, n, 2, 1);
    const std::array<double, 4> s =
        dsp_core::block_sums<4>(n, [x, kre, kim](std::size_t i, std::array<double, 4> &acc) {
            const double dre = clamp_huge(x[2 * i] - kre), dim = clamp_huge(x[2 * i + 1] - kim);
            acc[0] += dre;
            acc[1] += dre * dre;
            acc[2] += dim;
            acc[3] += dim * dim;
        });
    const double m_re = s[0] / count, m_im = s[2] / count;
    return s[1] / count + s[3] / count - m_re * m_re - m_im * m_im;
}

// The population variance times n / (n - 1) for n >= 2, unchanged below.
double sample_variance(const dsp *src)
{
    const std::size_t n = point_count(src);
    const double var = population_variance(src);
    if (n < 2) return var;
    return var * static_cast<double>(n) / static_cast<double>(n - 1);
}

}  // namespace

extern "C" {

int32_t dsps_pop_var(const dsp *src, dsp *result) { return store_point(result, false, population_variance(src)); }

int32_t dsps_samp_var(const dsp *src, dsp *result) { return store_point(result, false, sample_variance(src)); }

int32_t dsps_pop_stddev(const dsp *src, dsp *result)
{
    return store_point(result, false, std::sqrt(population_variance(src)));
}

int32_t dsps_samp_stddev(const dsp *src, dsp *result)
{
    return store_point(result, false, std::sqrt(sample_variance(src)));
}

int32_t dsps_skew(const dsp *src, dsp *result)
{
    if (src->complex) return -1;
    const std::size_t n = point_count(src);
    if (n == 0) return store_point(result, false, 0.0);
    const double *x = src->data;
    const double count = static_cast<double>(n);
    const double k = shift_of(x, n, 1, 0);
    const std::array<double, 3> s = dsp_core::block_sums<3>(n, [x, k](std::size_t i, std::array<double, 3> &acc) {
        const double d = clamp_huge(x[i] - k);
        const double d2 = d * d;
        acc[0] += d;
        acc[1] += d2;
        acc[2] += d2 * d;
    });
    const double m1 = s[0] / count;
    const double v = s[1] / count - m1 * m1;
    const double m3 = s[2] / count - 3.0 * m1 * (s[1] / count) + 2.0 * m1 * m1 * m1;
    const double spread = v * std::sqrt(v);
    const double skew = spread == 0.0 ? (m3 != 0.0 ? kHuge : 0.0) : m3 / spread;
    return store_point(result, false, skew);
}

int32_t dsps_excess(const dsp *src, dsp *result)
{
    if (src->complex) return -1;
    const std::size_t n = point_count(src);
    if (n == 0) return store_point(result, false, -3.0);
    const double *x = src->data;
    const double count = static_cast<double>(n);
    // The mean itself, not a shift: the fourth moment is taken about it.
    const double mean = dsp_core::block_sum(n, [x](std::size_t i) { return clamp_huge(x[i]); }) / count;
    const std::array<double, 2> s = dsp_core::block_sums<2>(n, [x, mean](std::size_t i, std::array<double, 2> &acc) {
        const double d = clamp_huge(x[i] - mean);
        const double d2 = d * d;
        acc[0] += d2;
        acc[1] += d2 * d2;
    });
    const double m2 = s[0] / count, m4 = s[1] / count;
    const double m2sq = m2 * m2;
    const double excess = m2sq == 0.0 ? (m4 == 0.0 ? -3.0 : kHuge) : m4 / m2sq - 3.0;
    return store_point(result, false, excess);
}

}  // extern "C"
