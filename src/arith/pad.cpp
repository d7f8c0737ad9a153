// Zero padding and its inverse, with placement and amplitude scaling.
#include "core/record.hpp"

#include <cmath>
#include <cstring>

namespace {

// The scaling mode equal to the whole mask (3) is invalid.

bool valid_placement(int32_t placement)
{
    return placement == DSP_PAD_FRONT || placement == DSP_PAD_CENTER || placement == DSP_PAD_END ||
           placement == DSP_PAD_SPLIT;
}

// The amplitude factor of a length change from `from` to `to` points (always
// new / old); `scaling` is false when the mode asks for none or the ratio is
// undefined.
struct Amplitude {
    bool scaling = false;
    double factor = 1.0;
};

Amplitude amplitude(int32_t mode, int32_t to, int32_t from, bool defined)
{
    Amplitude a;
    if (mode == DSP_PAD_SCALE_NONE || !defined) return a;
    a.scaling = true;
    a.factor = static_cast<double>(to) / static_cast<double>(from);
    if (mode == DSP_PAD_SCALE_SQRT) a.factor = std::sqrt(a.factor);
    return a;
}

int32_t nonnegative(int32_t v) { return v > 0 ? v : 0; }

// Where the shorter record's points sit in the longer one: a front part of
// front_len points at front_at, and a back part, the last back_len points,
// at the end.
struct Layout {
    std::size_t front_at;
    std::size_t front_len;
    std::size_t back_len;
};

Layout layout(int32_t placement, int32_t longer, int32_t shorter)
{
    const auto count = [](int32_t v) { return static_cast<std::size_t>(v); };
    switch (placement) {
    case DSP_PAD_CENTER: {
        // The extra point of an odd difference goes in front when the longer
        // count is even and the shorter odd: the offset is longer/2 -
        // shorter/2, so a centred zero-frequency point stays centred.
        int32_t at = (longer - shorter) / 2;
        if (longer % 2 == 0 && shorter % 2 != 0) ++at;
        return {count(at), count(shorter), 0};
    }
    case DSP_PAD_END: return {count(longer - shorter), count(shorter), 0};
    case DSP_PAD_SPLIT: return {0, count((shorter + 1) / 2), count(shorter / 2)};
    default: return {0, count(shorter), 0};
    }
}

// Moves `count` doubles from `from` to the same or a later position `to`,
// scaling them on the way, last first, so that overlapping source values are
// read before they are overwritten.
void move_back(double *x, std::size_t from, std::size_t to, std::size_t count, const Amplitude &a)
{
    if (!a.scaling) {
        std::memmove(x + to, x + from, count * sizeof(double));
        return;
    }
    for (std::size_t k = count; k-- > 0;) x[to + k] = x[from + k] * a.factor;
}

// Moves `count` doubles from `from` to the same or an earlier position `to`,
// scaling them on the way, first first.
void move_front(double *x, std::size_t from, std::size_t to, std::size_t count, const Amplitude &a)
{
    if (!a.scaling) {
        std::memmove(x + to, x + from, count * sizeof(double));
        return;
    }
    for (std::size_t k = 0; k < count; ++k) x[to + k] = x[from + k] * a.factor;
}

void clear(double *x, std::size_t begin, std::size_t end)
{
    if (end > begin) std::memset(x + begin, 0, (end - begin) * sizeof(double));
}

}  // namespace

extern "C" {

int32_t dspi_zpad(dsp *s, int32_t n)
{
    const int32_t old = nonnegative(s->points);
    if (old >= n) return 0;
    s->points = n;
    if (dsp_realloc(s, old, s->complex) != 0) return -1;
    clear(s->data, dsp_core::doubles_for(old, s->complex), dsp_core::doubles_of(s));
    return 0;
}

int32_t dspi_zero(dsp *s)
{
    const int32_t n = s->points;
    s->points = 0;
    return dspi_zpad(s, n);
}

int32_t dspi_zpad2(dsp *s, int32_t n, int32_t flags)
{
    const int32_t old = nonnegative(s->points);
    if (old >= n) return 0;
    s->points = n;
    if (dsp_realloc(s, old, s->complex) != 0) return -1;

    // The flags are checked only after the growth: a caller that passes
    // invalid flags gets the longer record with its new part not cleared.
    const int32_t mode = flags & DSP_PAD_SCALE_MASK;
    if (mode == DSP_PAD_SCALE_MASK) return -1;
    const int32_t placement = flags & DSP_PAD_PLACEMENT_MASK;
    if (!valid_placement(placement)) return -1;

    const Amplitude a = amplitude(mode, n, old, old > 0);
    const std::size_t w = s->complex ? 2 : 1;
    const Layout at = layout(placement, n, old);
    const std::size_t front_end = w * (at.front_at + at.front_len);
    const std::size_t back_start = w * (static_cast<std::size_t>(n) - at.back_len);
    double *x = s->data;
    // The back part first: it moves furthest, past where the front part lands.
    move_back(x, w * at.front_len, back_start, w * at.back_len, a);
    move_back(x, 0, w * at.front_at, w * at.front_len, a);
    clear(x, 0, w * at.front_at);
    clear(x, front_end, back_start);
    return 0;
}

int32_t dspi_unzpad(dsp *s, int32_t n, int32_t flags)
{
    const int32_t old = nonnegative(s->points);
    n = nonnegative(n);
    if (old <= n) return 0;

    const int32_t mode = flags & DSP_PAD_SCALE_MASK;
    const int32_t placement = flags & DSP_PAD_PLACEMENT_MASK;
    if (mode == DSP_PAD_SCALE_MASK || !valid_placement(placement)) return -1;

    const Amplitude a = amplitude(mode, n, old, n > 0);
    const std::size_t w = s->complex ? 2 : 1;
    const Layout at = layout(placement, old, n);
    const std::size_t back_start = w * (static_cast<std::size_t>(old) - at.back_len);
    double *x = s->data;
    move_front(x, w * at.front_at, 0, w * at.front_len, a);
    move_front(x, back_start, w * at.front_len, w * at.back_len, a);
    s->points = n;
    return 0;
}

}  // extern "C"
