// Zero padding and its inverse, with placement and amplitude scaling.
#include "core/record.hpp"

#include <cmath>
#include <cstring>

namespace {

constexpr int32_t kScaleSqrt = 1;
constexpr int32_t kScaleNone = 2;
constexpr int32_t kScaleMask = 3;  // the mode equal to the whole mask is invalid

constexpr int32_t kPlaceFront = 0x000;
constexpr int32_t kPlaceCenter = 0x100;
constexpr int32_t kPlaceEnd = 0x200;
constexpr int32_t kPlaceSplit = 0x300;
constexpr int32_t kPlacementMask = 0x700;

bool valid_placement(int32_t placement)
{
    return placement == kPlaceFront || placement == kPlaceCenter || placement == kPlaceEnd ||
           placement == kPlaceSplit;
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
    if (mode == kScaleNone || !defined) return a;
    a.scaling = true;
    a.factor = static_cast<double>(to) / static_cast<double>(from);
    if (mode == kScaleSqrt) a.factor = std::sqrt(a.factor);
    return a;
}

int32_t nonnegative(int32_t v) { return v > 0 ? v : 0; }

// Offset of the shorter block of `shorter` points centred in `longer` points:
// the extra point of an odd difference goes in front when the longer count is
// even and the shorter odd, so that a centred zero-frequency point stays at
// index longer / 2.
int32_t centre_offset(int32_t longer, int32_t shorter)
{
    int32_t s = (longer - shorter) / 2;
    if (longer % 2 == 0 && shorter % 2 != 0) ++s;
    return s;
}

void scale_in_place(double *x, std::size_t count, const Amplitude &a)
{
    if (!a.scaling) return;
    for (std::size_t k = 0; k < count; ++k) x[k] *= a.factor;
}

// Moves `count` doubles from `from` to the later position `to`, last first,
// so that overlapping source values are read before they are overwritten.
void move_back(double *x, std::size_t from, std::size_t to, std::size_t count, const Amplitude &a)
{
    if (!a.scaling) {
        std::memmove(x + to, x + from, count * sizeof(double));
        return;
    }
    for (std::size_t k = count; k-- > 0;) x[to + k] = x[from + k] * a.factor;
}

// Moves `count` doubles from `from` to the earlier position `to`, first first.
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
    const int32_t mode = flags & kScaleMask;
    if (mode == kScaleMask) return -1;
    const int32_t placement = flags & kPlacementMask;
    if (!valid_placement(placement)) return -1;

    const Amplitude a = amplitude(mode, n, old, old > 0);
    const std::size_t w = s->complex ? 2 : 1;
    const std::size_t total = w * static_cast<std::size_t>(n);
    const std::size_t kept = w * static_cast<std::size_t>(old);
    double *x = s->data;

    if (placement == kPlaceFront) {
        scale_in_place(x, kept, a);
        clear(x, kept, total);
    } else if (placement == kPlaceCenter) {
        const std::size_t at = w * static_cast<std::size_t>(centre_offset(n, old));
        move_back(x, 0, at, kept, a);
        clear(x, 0, at);
        clear(x, at + kept, total);
    } else if (placement == kPlaceEnd) {
        const std::size_t at = total - kept;
        move_back(x, 0, at, kept, a);
        clear(x, 0, at);
    } else {
        const std::size_t front = w * static_cast<std::size_t>((old + 1) / 2);
        const std::size_t back = kept - front;
        scale_in_place(x, front, a);
        move_back(x, front, total - back, back, a);
        clear(x, front, total - back);
    }
    return 0;
}

int32_t dspi_unzpad(dsp *s, int32_t n, int32_t flags)
{
    const int32_t old = nonnegative(s->points);
    n = nonnegative(n);
    if (old <= n) return 0;

    const int32_t mode = flags & kScaleMask;
    const int32_t placement = flags & kPlacementMask;
    if (mode == kScaleMask || !valid_placement(placement)) return -1;

    const Amplitude a = amplitude(mode, n, old, n > 0);
    const std::size_t w = s->complex ? 2 : 1;
    const std::size_t total = w * static_cast<std::size_t>(old);
    const std::size_t kept = w * static_cast<std::size_t>(n);
    double *x = s->data;

    if (placement == kPlaceFront) {
        scale_in_place(x, kept, a);
    } else if (placement == kPlaceCenter) {
        move_front(x, w * static_cast<std::size_t>(centre_offset(old, n)), 0, kept, a);
    } else if (placement == kPlaceEnd) {
        move_front(x, total - kept, 0, kept, a);
    } else {
        const std::size_t front = w * static_cast<std::size_t>((n + 1) / 2);
        const std::size_t back = kept - front;
        scale_in_place(x, front, a);
        move_front(x, total - back, front, back, a);
    }
    s->points = n;
    return 0;
}

}  // extern "C"
