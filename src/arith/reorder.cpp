// Reordering the points of a record: reversal, shifting, shuffling and the
// rotation of halves for spectrum display. Complex points move as a whole.
#include "core/random.hpp"
#include "core/record.hpp"

#include <algorithm>

namespace {

std::size_t width(const dsp *s) { return s->complex ? 2 : 1; }

void swap_points(double *x, std::size_t w, std::size_t i, std::size_t j)
{
    std::swap_ranges(x + i * w, x + (i + 1) * w, x + j * w);
}

// Rotates n points left by r with one saved point, following the single
// cycle i -> i + r (mod n). That cycle covers every point only when n and r
// are coprime, which holds for the odd-length rotations below.
void rotate_left_coprime(double *x, std::size_t w, std::size_t n, std::size_t r)
{
    double saved[2];
    std::copy(x, x + w, saved);
    std::size_t at = 0;
    for (;;) {
        std::size_t next = at + r;
        if (next >= n) next -= n;
        if (next == 0) break;
        std::copy(x + next * w, x + (next + 1) * w, x + at * w);
        at = next;
    }
    std::copy(saved, saved + w, x + at * w);
}

// Swaps the halves of an even count. An odd count n = 2h + 1 rotates left by
// h + 1 (forward) or by h (its inverse); both shifts are coprime with n.
int32_t swap_halves(dsp *s, bool forward)
{
    if (s->points < 2) return 0;
    const std::size_t n = static_cast<std::size_t>(s->points);
    const std::size_t h = n / 2;
    const std::size_t w = width(s);
    if (n % 2 == 0) {
        for (std::size_t i = 0; i < h; ++i) swap_points(s->data, w, i, i + h);
    } else {
        rotate_left_coprime(s->data, w, n, forward ? h + 1 : h);
    }
    return 0;
}

}  // namespace

extern "C" {

int32_t dspi_rev(dsp *s)
{
    if (s->points < 2) return 0;
    const std::size_t n = static_cast<std::size_t>(s->points);
    const std::size_t w = width(s);
    for (std::size_t i = 0; i < n / 2; ++i) swap_points(s->data, w, i, n - 1 - i);
    return 0;
}

int32_t dspi_shift(dsp *s, int32_t k)
{
    if (k <= 0) return 0;
    return dspu_subvec(s, s, k, s->points > k ? s->points - k : 0);
}

int32_t dspi_shuffle(dsp *s)
{
    if (s->points < 2) return 0;
    const int32_t m = s->points;
    const std::size_t w = width(s);
    // Fisher-Yates from the front: point i swaps with one of the points from
    // i on, chosen by a fresh 31-bit draw.
    for (int32_t i = 0; i < m - 1; ++i) {
        const int32_t j = dsp_core::random31() % (m - i);
        if (j != 0)
            swap_points(s->data, w, static_cast<std::size_t>(i), static_cast<std::size_t>(i + j));
    }
    return 0;
}

int32_t dspi_swap_halves(dsp *s) { return swap_halves(s, true); }

int32_t dspi_swap_halves2(dsp *s) { return swap_halves(s, false); }

}  // extern "C"
