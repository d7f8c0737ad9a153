// Peak search with optional refinement of the peak's height and position
// between samples.
#include "core/numeric.hpp"
#include "libdsp.h"
#include "stats/scalar_result.hpp"

#include <algorithm>
#include <cmath>

using dsp_core::kHuge;

namespace {

// Gain of the log-ratio refinement. The main lobe of a Hann window puts the
// amplitude ratio of the two neighbours of a tone at offset d bins at
// (1 + d)(2 + d) / ((1 - d)(2 - d)): its logarithm is 3d near the bin centre
// and ln 5 = 3.22d at the half bin. With d = c ln(ratio) and c between 1/3
// and 0.311 the position stays within 0.01 bin across the whole bin. The same
// lobe falls off as ln(1 / W(d)) = (pi^2/6 - 1) d^2 + ... = 0.645 d^2, close to
// 2c d^2, which serves as the height correction (within 0.6%).
constexpr double kLobeGain = 0.315563649157834;

// The value ranked: the value itself, or the squared magnitude (capped).
inline double ranked(const double *x, bool complex_flag, std::size_t i)
{
    return complex_flag ? dsp_core::capped_magsq(x[2 * i], x[2 * i + 1]) : x[i];
}

std::size_t peak_index(const dsp *src, std::size_t n, int32_t flags, int32_t index)
{
    if (flags & DSP_PEAK_AT_INDEX) {
        if (index < 0) return 0;
        return std::min(static_cast<std::size_t>(index), n - 1);
    }
    const bool minimum = (flags & DSP_PEAK_MIN) != 0;
    double best = minimum ? kHuge : -kHuge;
    std::size_t k = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const double v = ranked(src->data, src->complex != 0, i);
        // The first extreme wins ties; the maximum search takes a value when
        // the best so far is not >= it.
        if (minimum ? v < best : !(best >= v)) {
            best = v;
            k = i;
        }
    }
    return k;
}

struct Peak {
    double height;
    double position;
};

// Vertex of the parabola through three samples.
Peak parabolic(double ym, double y0, double yp, double k)
{
    const double a = (yp - 2.0 * y0 + ym) / 2.0;
    const double b = (yp - ym) / 2.0;
    return {y0 - b * b / (4.0 * a), k - b / (2.0 * a)};
}

// The logarithmic refinements need positive samples with y0 a local peak.
inline bool log_refinable(double ym, double y0, double yp) { return ym > 0.0 && yp > 0.0 && y0 >= ym && y0 >= yp; }

// Vertex of the parabola through the logarithms: exact for a Gaussian lobe.
// Falls back to the sample when the three logarithms lie on a line.
Peak gaussian(double ym, double y0, double yp, double k)
{
    const double down_left = std::log(y0) - std::log(ym);
    const double down_right = std::log(y0) - std::log(yp);
    const double curvature = down_left + down_right;  // ln(y0^2 / (ym yp))
    if (!(curvature > 0.0)) return {y0, k};
    const double ratio = down_left - down_right;  // ln(yp / ym)
    const double d = ratio / (2.0 * curvature);
    return {y0 * std::exp(ratio * d / 4.0), k + d};
}

// Offset from the neighbours' log ratio alone, for a Hann lobe. Squared
// magnitudes have twice the log ratio and the squared height correction.
Peak hann_ratio(double ym, double y0, double yp, double k, bool squared)
{
    const double ratio = std::log(yp) - std::log(ym);
    const double d = std::clamp(kLobeGain * (squared ? ratio / 2.0 : ratio), -0.5, 0.5);
    const double correction = (squared ? 4.0 : 2.0) * kLobeGain * d * d;
    return {y0 * std::exp(correction), k + d};
}

}  // namespace

extern "C" {

int32_t dsps_peak(const dsp *src, dsp *result, int32_t flags, int32_t index)
{
    const std::size_t n = dsp_stats::point_count(src);
    if (n == 0) {
        const double none[2] = {0.0, 0.0};
        return dsp_stats::store_values(result, none, 2);
    }
    const int32_t refinement = flags & DSP_PEAK_REFINE_MASK;
    if (refinement > DSP_PEAK_HANN_RATIO) return -1;
    const bool complex_flag = src->complex != 0;
    const std::size_t k = peak_index(src, n, flags, index);
    const double y0 = ranked(src->data, complex_flag, k);
    Peak peak{y0, static_cast<double>(k)};
    if (refinement != DSP_PEAK_NONE && k > 0 && k + 1 < n) {
        const double ym = ranked(src->data, complex_flag, k - 1);
        const double yp = ranked(src->data, complex_flag, k + 1);
        const double at = static_cast<double>(k);
        if (refinement == DSP_PEAK_PARABOLIC) peak = parabolic(ym, y0, yp, at);
        else if (log_refinable(ym, y0, yp))
            peak = refinement == DSP_PEAK_GAUSSIAN ? gaussian(ym, y0, yp, at) : hann_ratio(ym, y0, yp, at, complex_flag);
    }
    const double values[2] = {peak.height, peak.position};
    return dsp_stats::store_values(result, values, 2);
}

}  // extern "C"
