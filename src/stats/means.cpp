// Geometric and harmonic means.
#include "arith/binary_shape.hpp"
#include "core/numeric.hpp"
#include "stats/block_sum.hpp"
#include "stats/scalar_result.hpp"

#include <cmath>

using dsp_core::clamp_huge;
using dsp_core::kHuge;
using dsp_core::kLogFloor;
using dsp_stats::point_count;
using dsp_stats::store_point;

extern "C" {

// The plain product, not a sum of logarithms: a zero or a negative product
// gives 0, and a product that overflows is not caught.
int32_t dsps_gmean(const dsp *src, dsp *result)
{
    const std::size_t n = point_count(src);
    const double *x = src->data;
    const bool complex_flag = src->complex != 0;
    if (n == 0) return store_point(result, complex_flag, 0.0, 0.0);
    const double count = static_cast<double>(n);
    if (!complex_flag) {
        double p = 1.0;
        for (std::size_t i = 0; i < n; ++i) p *= x[i];
        return store_point(result, false, p >= kLogFloor ? std::exp(std::log(p) / count) : 0.0);
    }
    double pre = 1.0, pim = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        double re, im;
        dsp_arith::complex_product(pre, pim, x[2 * i], x[2 * i + 1], re, im);
        pre = re;
        pim = im;
    }
    const double q = pre * pre + pim * pim;
    if (!(q >= kLogFloor)) return store_point(result, true, 0.0, 0.0);
    const double r = std::exp(std::log(q) / (2.0 * count));
    const double theta = std::atan2(pim, pre) / count;
    return store_point(result, true, r * std::cos(theta), r * std::sin(theta));
}

int32_t dsps_hmean(const dsp *src, dsp *result)
{
    const std::size_t n = point_count(src);
    const double *x = src->data;
    const double count = static_cast<double>(n);
    if (!src->complex) {
        for (std::size_t i = 0; i < n; ++i)
            if (x[i] == 0.0) return store_point(result, false, 0.0);
        if (n == 0) return store_point(result, false, 0.0);
        const double s = dsp_core::block_sum(n, [x](std::size_t i) { return 1.0 / x[i]; });
        return store_point(result, false, s == 0.0 ? kHuge : count / s);
    }
    // Reciprocals as dspi_recip forms them, from the clamped parts.
    const std::array<double, 2> s = dsp_core::block_sums<2>(n, [x](std::size_t i, std::array<double, 2> &acc) {
        const double re = clamp_huge(x[2 * i]), im = clamp_huge(x[2 * i + 1]);
        const double p = re * re + im * im;
        const double k = p > 0.0 ? 1.0 / p : kHuge;
        acc[0] += re * k;
        acc[1] += -im * k;
    });
    const double q = s[0] * s[0] + s[1] * s[1];
    const double k = q > 0.0 ? 1.0 / q : kHuge;
    return store_point(result, true, count * s[0] * k, count * -s[1] * k);
}

}  // extern "C"
