// Centred moving averages of a trace whose aperture shrinks near both ends
// of the whole buffer, so every span lies inside it.
#include "libdsp_vna.h"

#include "core/numeric.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

using dsp_core::kPi;
using dsp_core::kTwoPi;

constexpr int32_t kProceed = 1;

// 0 when there is nothing to do (checked first), -1 for a bad range or
// aperture, kProceed otherwise.
int32_t check_arguments(int32_t start, int32_t stop, int32_t aperture)
{
    if (start == stop) return 0;
    const int32_t last = stop >= 1 ? stop - 1 : stop;
    if (start < 0 || last < 0 || start > last) return -1;
    if (aperture < 3 || aperture % 2 == 0) return -1;
    return kProceed;
}

// Runs average(i, h) for i = start, start + 1, ... with the half-width h of
// point i, and stops at the first point whose span would pass stop - 1 (it
// is not written: the caller leaves room for the aperture or accepts the
// shorter result) or at the end of the buffer. Returns the points done.
template <typename Average>
int32_t for_each_span(int32_t n, int32_t start, int32_t stop, int32_t aperture, Average average)
{
    const int32_t last = stop - 1;
    int32_t i = start;
    for (; i < n; ++i) {
        const int32_t h = std::min({i, n - 1 - i, aperture / 2});
        if (i + h > last) break;
        average(i, h);
    }
    return i - start;
}

// Brings a mean phase back into [-pi, pi] by whole turns.
double wrap_phase(double m)
{
    if (m > kPi)
        m -= (1.0 + std::trunc((m - kPi) / kTwoPi)) * kTwoPi;
    else if (m < -kPi)
        m += (1.0 + std::trunc(-(m + kPi) / kTwoPi)) * kTwoPi;
    return m;
}

// Sum of term(j) over the span [i - h, i + h] of successive points: rebuilt
// whenever the width changes (and for the first point), otherwise slid by
// one element. The running sum's rounding drift is accepted for the speed.
template <typename Term>
class SlidingSum {
public:
    explicit SlidingSum(Term term) : term_(term) {}

    double over(int32_t i, int32_t h)
    {
        if (2 * h + 1 != width_) {
            width_ = 2 * h + 1;
            sum_ = 0.0;
            for (int32_t j = i - h; j <= i + h; ++j) sum_ += term_(j);
        } else {
            sum_ = sum_ - term_(i - h - 1) + term_(i + h);
        }
        return sum_;
    }

private:
    Term term_;
    double sum_ = 0.0;
    int32_t width_ = 0;
};

// Sum of the span [i - h, i + h] unwrapped as it goes. Each element is
// compared with the one before it, the first included, so a span that starts
// just after a jump already carries the turn.
double unwrapped_span_sum(const double *src, int32_t i, int32_t h)
{
    int32_t turns = 0;
    double sum = 0.0;
    for (int32_t j = i - h; j <= i + h; ++j) {
        if (j > 0) {
            double step = src[j] - src[j - 1];
            if (step < -kPi)
                ++turns;
            else if (step > kPi)
                --turns;
        }
        sum += src[j] + turns * kTwoPi;
    }
    return sum;
}

// Complex point k of an interleaved (re, im) array.
const double *point(const double *cpx, int32_t k) { return cpx + 2 * static_cast<std::ptrdiff_t>(k); }

double magnitude(const double *cpx, int32_t k)
{
    const double *z = point(cpx, k);
    return std::sqrt(z[0] * z[0] + z[1] * z[1]);
}

// Real part first: the angle measured from the imaginary axis, which this
// average has always used.
double angle(const double *cpx, int32_t k)
{
    const double *z = point(cpx, k);
    return std::atan2(z[0], z[1]);
}

}  // namespace

int32_t vfpd_Smooth(const double *src, double *dst, int32_t n, int32_t start, int32_t stop,
                    int32_t aperture, int32_t isPhase)
{
    const int32_t status = check_arguments(start, stop, aperture);
    if (status != kProceed) return status;

    if (isPhase) {
        return for_each_span(n, start, stop, aperture, [&](int32_t i, int32_t h) {
            dst[i] = wrap_phase(unwrapped_span_sum(src, i, h) / (2 * h + 1));
        });
    }
    SlidingSum sum([src](int32_t j) { return src[j]; });
    return for_each_span(n, start, stop, aperture,
                         [&](int32_t i, int32_t h) { dst[i] = sum.over(i, h) / (2 * h + 1); });
}

int32_t vfpd_SmoothCpx(const double *src, double *dst, int32_t n, int32_t start, int32_t stop,
                       int32_t aperture)
{
    const int32_t status = check_arguments(start, stop, aperture);
    if (status != kProceed) return status;

    // Magnitudes and angles are averaged separately, the angles without
    // unwrapping.
    SlidingSum magnitudes([src](int32_t j) { return magnitude(src, j); });
    SlidingSum angles([src](int32_t j) { return angle(src, j); });
    return for_each_span(n, start, stop, aperture, [&](int32_t i, int32_t h) {
        const double mean_magnitude = magnitudes.over(i, h) / (2 * h + 1);
        const double mean_angle = angles.over(i, h) / (2 * h + 1);
        double *out = dst + 2 * static_cast<std::ptrdiff_t>(i);
        out[0] = mean_magnitude * std::cos(mean_angle);
        out[1] = mean_magnitude * std::sin(mean_angle);
    });
}
