// Histogram of a record's values (magnitudes for complex records).
#include "core/numeric.hpp"
#include "stats/scalar_result.hpp"

#include <cmath>

using dsp_core::kHuge;

namespace {

// A value at the upper edge lo + bins * width, or a hair above it (up to 10
// units in the last place, as computing the edge may round up), still counts
// in the last bin.
constexpr double kUpperEdgeSlack = 1.0000000000000022;

// Magnitude, or kHuge for a part beyond +-kHuge.
inline double magnitude(double re, double im)
{
    return (dsp_core::beyond_huge(re) || dsp_core::beyond_huge(im)) ? kHuge : std::sqrt(re * re + im * im);
}

int32_t count_into(const dsp *src, dsp *hist, double lo, double width, int32_t bins)
{
    hist->complex = 0;
    hist->delta = width;
    hist->points = bins;
    if (dsp_alloc(hist) != 0 || dspi_zero(hist) != 0) return -1;
    const double *x = src->data;
    const std::size_t n = dsp_stats::point_count(src);
    const double top = static_cast<double>(bins);
    for (std::size_t i = 0; i < n; ++i) {
        const double v = src->complex ? magnitude(x[2 * i], x[2 * i + 1]) : x[i];
        double t = v - lo;
        if (width != 0.0) t = t / width;
        else if (t != 0.0) t = kHuge;
        if (t >= 0.0 && t < top) {
            hist->data[static_cast<std::size_t>(t)] += 1.0;
        } else if (bins > 0 && t >= top && t < top * kUpperEdgeSlack) {
            hist->data[static_cast<std::size_t>(t) - 1] += 1.0;
        }
    }
    return 0;
}

}  // namespace

extern "C" {

int32_t dsps_hist(const dsp *src, dsp *result, double lo, double width, int32_t bins)
{
    const bool shared = result == src || (result->data != nullptr && result->data == src->data);
    if (!shared) return count_into(src, result, lo, width, bins);
    // The counts would overwrite the values being counted: count aside.
    dsp counts;
    dsp_init(&counts);
    int32_t status = count_into(src, &counts, lo, width, bins);
    if (status == 0) status = dsp_copy(result, &counts);
    dsp_destroy(&counts);
    return status;
}

}  // extern "C"
