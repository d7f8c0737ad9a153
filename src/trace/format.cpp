// Complex reflection points to the displayed formats. One loop per format,
// so the choice is made once per call, not once per point.
#include "libdsp_vna.h"

#include <cmath>
#include <cstddef>

namespace {

constexpr double kDegreesPerRadian = 57.29577951307855;
// Reflection magnitudes above this give the SWR ceiling instead of the
// ever-steeper (1 + g) / (1 - g).
constexpr double kSwrMagnitudeLimit = 0.999998;
constexpr double kSwrCeiling = 1e6;

template <typename Format>
void format_range(const double *cpx, double *out, int32_t start, int32_t stop, Format format)
{
    for (int32_t k = start; k < stop; ++k) {
        const double *z = cpx + 2 * static_cast<std::ptrdiff_t>(k);
        out[k] = format(z[0], z[1]);
    }
}

inline double magsq(double re, double im) { return re * re + im * im; }

}  // namespace

// A zero point is not guarded: log10(0) gives -inf (format 0) and +inf
// (format 4), which a display clips anyway.
void vfpd_FormatBuffer(int32_t format, const double *cpx, double *out, int32_t start, int32_t stop)
{
    switch (format) {
    case VFPD_FORMAT_LOG_MAG:
        format_range(cpx, out, start, stop,
                     [](double re, double im) { return 10.0 * std::log10(magsq(re, im)); });
        break;
    case VFPD_FORMAT_LIN_MAG:
        format_range(cpx, out, start, stop, [](double re, double im) { return std::sqrt(magsq(re, im)); });
        break;
    case VFPD_FORMAT_PHASE:
        format_range(cpx, out, start, stop,
                     [](double re, double im) { return std::atan2(im, re) * kDegreesPerRadian; });
        break;
    case VFPD_FORMAT_SWR:
        format_range(cpx, out, start, stop, [](double re, double im) {
            double g = std::sqrt(magsq(re, im));
            return g > kSwrMagnitudeLimit ? kSwrCeiling : (g + 1.0) / (1.0 - g);
        });
        break;
    case VFPD_FORMAT_RETURN_LOSS:
        format_range(cpx, out, start, stop,
                     [](double re, double im) { return -10.0 * std::log10(magsq(re, im)); });
        break;
    default:
        break;
    }
}
