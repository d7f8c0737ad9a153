// Simple running and affine operations on one record: level crossings,
// differences, integration, offset, scaling and clipping.
#include "core/numeric.hpp"
#include "core/record.hpp"

#include <utility>

namespace {

constexpr int32_t kRising = 1;
constexpr int32_t kFalling = 2;

}  // namespace

extern "C" {

int32_t dspi_edge(dsp *s, int32_t mode, double level)
{
    if (s->complex) return -1;
    if (s->points <= 0) return 0;
    double *x = s->data;
    const int32_t n = s->points;
    // Crossing i is written at index count <= i, behind every value still to
    // be read, so the record's own storage holds the result.
    int32_t count = 0;
    double a = x[0];
    for (int32_t i = 0; i + 1 < n; ++i) {
        const double b = x[i + 1];
        const bool rising = (mode & kRising) && a <= level && level < b;
        const bool falling = (mode & kFalling) && a >= level && level > b;
        if (rising || falling) x[count++] = (i + (level - a) / (b - a)) * s->delta;
        a = b;
    }
    s->points = count;
    s->delta = 1.0;
    return 0;
}

int32_t dspi_differ(dsp *s)
{
    const double f = s->delta == 0.0 ? dsp_core::kHuge : 1.0 / s->delta;
    const std::size_t w = s->complex ? 2 : 1;
    const std::size_t total = dsp_core::doubles_of(s);
    double *x = s->data;
    // From the end backwards, so each difference still sees its original
    // predecessor; the first point's predecessor is 0.
    for (std::size_t k = total; k-- > w;) x[k] = (x[k] - x[k - w]) * f;
    for (std::size_t k = 0; k < w && k < total; ++k) x[k] *= f;
    return 0;
}

int32_t dspi_integ(dsp *s)
{
    const double d = s->delta;
    const std::size_t w = s->complex ? 2 : 1;
    const std::size_t total = dsp_core::doubles_of(s);
    double *x = s->data;
    for (std::size_t k = 0; k < w && k < total; ++k) x[k] = x[k] * d;
    for (std::size_t k = w; k < total; ++k) x[k] = x[k - w] + x[k] * d;
    return 0;
}

int32_t dspi_pdiffer(dsp *s)
{
    if (s->points <= 0) return 0;
    const std::size_t w = s->complex ? 2 : 1;
    const std::size_t n = static_cast<std::size_t>(s->points);
    double *x = s->data;
    for (std::size_t i = 1; i < n; ++i) {
        for (std::size_t part = 0; part < w; ++part)
            x[(i - 1) * w + part] = static_cast<double>(i) * x[i * w + part];
    }
    s->points -= 1;
    return 0;
}

int32_t dspi_offset(dsp *s, double c)
{
    const std::size_t w = s->complex ? 2 : 1;
    const std::size_t total = dsp_core::doubles_of(s);
    for (std::size_t k = 0; k < total; k += w) s->data[k] += c;
    return 0;
}

int32_t dspi_scale(dsp *s, double k)
{
    const std::size_t total = dsp_core::doubles_of(s);
    for (std::size_t i = 0; i < total; ++i) s->data[i] *= k;
    return 0;
}

int32_t dspi_limit(dsp *s, int32_t, double a, double b, int32_t *clipped)
{
    if (a > b) std::swap(a, b);
    const double lo = a;
    const double hi = b;
    const std::size_t total = dsp_core::doubles_of(s);
    double *x = s->data;
    bool changed = false;
    for (std::size_t k = 0; k < total; ++k) {
        if (x[k] > hi) {
            x[k] = hi;
            changed = true;
        } else if (!(x[k] >= lo)) {
            // NaN fails every comparison and is clipped to the lower bound.
            x[k] = lo;
            changed = true;
        }
    }
    if (clipped) *clipped = changed ? 1 : 0;
    return 0;
}

}  // extern "C"
