// The line-fit engine and the two exports that deliver its block.
#include "stats/regression.hpp"

#include "stats/block_sum.hpp"
#include "stats/scalar_result.hpp"

#include <cmath>

namespace {

// numerator / denominator, or 0 where the denominator is 0.
inline double ratio_or_zero(double numerator, double denominator)
{
    return denominator != 0.0 ? numerator / denominator : 0.0;
}

}  // namespace

namespace dsp_core {

int32_t line_fit(const dsp *src, double (&fit)[kLineFitValues])
{
    if (src->complex) return -1;
    for (double &v : fit) v = 0.0;
    const std::size_t n = dsp_stats::point_count(src);
    if (n == 0) return 0;
    const double *y = src->data;
    const double delta = src->delta;
    const double count = static_cast<double>(n);
    const double mean_x = delta * (count - 1.0) / 2.0;
    const double mean_y = block_sum(n, [y](std::size_t i) { return y[i]; }) / count;

    // Centred sums: no cancellation for records far from the origin.
    const std::array<double, 3> s =
        block_sums<3>(n, [y, delta, mean_x, mean_y](std::size_t i, std::array<double, 3> &acc) {
            const double dx = static_cast<double>(i) * delta - mean_x;
            const double dy = y[i] - mean_y;
            acc[0] += dx * dx;
            acc[1] += dx * dy;
            acc[2] += dy * dy;
        });
    const double sxx = s[0], sxy = s[1], syy = s[2];
    const double slope = ratio_or_zero(sxy, sxx);
    const double intercept = mean_y - slope * mean_x;

    double largest = 0.0, smallest = 0.0;
    std::size_t largest_at = 0, smallest_at = 0;
    const double sse = block_sum(n, [&](std::size_t i) {
        const double r = y[i] - (intercept + slope * (static_cast<double>(i) * delta));
        if (i == 0 || r > largest) {
            largest = r;
            largest_at = i;
        }
        if (i == 0 || r < smallest) {
            smallest = r;
            smallest_at = i;
        }
        return r * r;
    });

    const double dof = count - 2.0;
    const double residual_variance = n > 2 ? sse / dof : 0.0;
    fit[kFitIntercept] = intercept;
    fit[kFitSlope] = slope;
    fit[kFitCorrelation] = ratio_or_zero(sxy, std::sqrt(sxx * syy));
    fit[kFitDetermination] = syy != 0.0 ? 1.0 - sse / syy : 0.0;
    fit[kFitInterceptError] = sxx != 0.0 ? std::sqrt(residual_variance * (1.0 / count + mean_x * mean_x / sxx)) : 0.0;
    fit[kFitSlopeError] = sxx != 0.0 ? std::sqrt(residual_variance / sxx) : 0.0;
    fit[kFitResidualError] = std::sqrt(residual_variance);
    fit[kFitResidualRms] = std::sqrt(sse / count);
    fit[kFitLargestResidual] = largest;
    fit[kFitLargestResidualAt] = static_cast<double>(largest_at) * delta;
    fit[kFitSmallestResidual] = smallest;
    fit[kFitSmallestResidualAt] = static_cast<double>(smallest_at) * delta;
    fit[kFitResidualSpan] = largest - smallest;
    fit[kFitResidualSumSquares] = sse;
    fit[kFitTotalSumSquares] = syy;
    fit[kFitF] = ratio_or_zero(syy - sse, residual_variance);
    fit[kFitMeanAbscissa] = mean_x;
    fit[kFitMeanValue] = mean_y;
    fit[kFitPoints] = count;
    fit[kFitDegreesOfFreedom] = n > 2 ? dof : 0.0;
    return 0;
}

}  // namespace dsp_core

namespace {

int32_t deliver_fit(const dsp *src, dsp *result, int32_t values)
{
    double fit[dsp_core::kLineFitValues];
    if (dsp_core::line_fit(src, fit) != 0) return -1;
    return dsp_stats::store_values(result, fit, values);
}

}  // namespace

extern "C" {

int32_t dsps_lin_regres(const dsp *src, dsp *result) { return deliver_fit(src, result, 2); }

int32_t dsps_lin_regres2(const dsp *src, dsp *result) { return deliver_fit(src, result, dsp_core::kLineFitValues); }

}  // extern "C"
