// The three table caches of the FFT engine. Each is a list of {table, key}
// entries searched linearly and grown one entry at a time; a table, once
// built, never changes until dsp_free_internal releases the whole list.
#include "spectral/fft_tables.hpp"

#include "core/numeric.hpp"

#include <cmath>
#include <cstdlib>

namespace dsp_spectral {
namespace {

TableAllocator table_allocator = {std::malloc, std::realloc};

struct CacheEntry {
    void *table;
    int32_t key;
};

struct CacheList {
    CacheEntry *entries = nullptr;
    int32_t count = 0;
};

CacheList swap_cache;
CacheList fixed_cache;
CacheList twiddle_cache;

// The entry found last for each bit count, so that a transform, which needs
// a table per block size, skips the linear search of the lists; emptied
// with them.
struct Found {
    void *swaps[kMaxBits + 1];
    void *fixed[kMaxBits + 1];
    void *twiddles[kMaxBits + 1];
};
Found found = {};

int bits_of(int32_t n)
{
    int bits = 0;
    while ((int32_t{1} << bits) < n) ++bits;
    return bits;
}

void *find_table(const CacheList &list, int32_t key)
{
    for (int32_t i = 0; i < list.count; ++i) {
        if (list.entries[i].key == key) return list.entries[i].table;
    }
    return nullptr;
}

// Makes room for one more entry and a table of `bytes`. The count grows only
// once both exist, so a failed size is simply built again on the next call.
void *add_table(CacheList &list, int32_t key, std::size_t bytes)
{
    const std::size_t list_bytes = sizeof(CacheEntry) * (static_cast<std::size_t>(list.count) + 1);
    void *grown = list.entries ? table_allocator.reallocate(list.entries, list_bytes)
                               : table_allocator.allocate(list_bytes);
    if (!grown) return nullptr;
    list.entries = static_cast<CacheEntry *>(grown);
    void *table = table_allocator.allocate(bytes);
    if (!table) return nullptr;
    list.entries[list.count] = CacheEntry{table, key};
    ++list.count;
    return table;
}

void release_list(CacheList &list)
{
    for (int32_t i = 0; i < list.count; ++i) std::free(list.entries[i].table);
    std::free(list.entries);
    list.entries = nullptr;
    list.count = 0;
}

int32_t reverse_bits(int32_t v, int bits)
{
    int32_t r = 0;
    for (int b = 0; b < bits; ++b) r |= ((v >> b) & 1) << (bits - 1 - b);
    return r;
}

// An index splits into a high and a low half of h bits (and, for an odd bit
// count, a middle bit that reversal leaves in place). Reversal swaps the
// halves and reverses each, so pairs and fixed points follow from h-bit
// numbers alone: high half i with low half rev(j) pairs with high half j and
// low half rev(i).
//
// The pairs are listed by tiles of 4 x 4 (see BitrevTables): the rows with
// high halves rev(ti + s), s < 4, at low halves tj .. tj + 3 exchange with
// the rows rev(tj + t) at ti .. ti + 3, a transposition. Every row is four
// consecutive points, so each visit uses a whole cache line, and a kernel
// can move a tile as eight rows. The tiles with ti < tj come first; the
// diagonal tiles (ti = tj) exchange only among their own rows, four of their
// points being fixed, and are listed pair by pair after them.
struct SwapWriter {
    int32_t *out;
    int shift;
    int32_t half;
    bool odd;
    void put(int32_t high, int32_t low, int32_t twin_high, int32_t twin_low)
    {
        const int32_t p = (high << shift) + low;
        const int32_t q = (twin_high << shift) + twin_low;
        *out++ = p;
        *out++ = q;
        if (odd) {
            *out++ = p + half;
            *out++ = q + half;
        }
    }
};

constexpr int32_t kTileSide = 4;

int32_t tile_count(int bits)
{
    const int32_t side = (int32_t{1} << (bits / 2)) / kTileSide;
    return side * (side - 1) / 2;
}

void fill_swaps(int32_t *out, int bits)
{
    const int h = bits / 2;
    const int32_t half = int32_t{1} << h;
    SwapWriter w{out, bits % 2 ? h + 1 : h, half, bits % 2 != 0};
    const int32_t tile = half < kTileSide ? half : kTileSide;
    for (int32_t ti = 0; ti < half; ti += tile) {
        for (int32_t tj = ti + tile; tj < half; tj += tile) {
            for (int32_t s = 0; s < tile; ++s) {
                for (int32_t t = 0; t < tile; ++t) {
                    w.put(reverse_bits(ti + s, h), tj + t, reverse_bits(tj + t, h), ti + s);
                }
            }
        }
    }
    for (int32_t ti = 0; ti < half; ti += tile) {
        for (int32_t s = 0; s < tile; ++s) {
            for (int32_t t = s + 1; t < tile; ++t) {
                w.put(reverse_bits(ti + s, h), ti + t, reverse_bits(ti + t, h), ti + s);
            }
        }
    }
    *w.out = 0;
}

void fill_fixed(int32_t *out, int bits)
{
    const int h = bits / 2;
    const int32_t half = int32_t{1} << h;
    const int shift = bits % 2 ? h + 1 : h;
    for (int32_t i = 0; i < half; ++i) {
        const int32_t f = i + (reverse_bits(i, h) << shift);
        *out++ = f;
        if (bits % 2) *out++ = f + half;
    }
    *out = kFixedEnd;
}

const int32_t *bitrev_list(CacheList &list, void *&memo, int bits, std::size_t words, void (*fill)(int32_t *, int))
{
    if (!memo) memo = find_table(list, bits);
    if (memo) return static_cast<const int32_t *>(memo);
    auto *table = static_cast<int32_t *>(add_table(list, bits, words * sizeof(int32_t)));
    if (table) fill(table, bits);
    memo = table;
    return table;
}

// Feeds (k, cos, sin) of the angle 2 pi k / n to `put` for k = 0 .. n/4 - 1.
// The angles up to pi/4 come from an angle-addition recurrence re-seeded from
// cos and sin every 256 steps (bounding its rounding drift without a library
// call per entry); the mirror image about pi/4 reuses each value with cos
// and sin exchanged. The same calls always produce the same values.
//
// The addition cos(t + d) = cos t cos d - sin t sin d is evaluated as an
// increment, cos t - (a cos t + b sin t) with a = 1 - cos d = 2 sin^2(d/2)
// and b = sin d (likewise for the sine): cos d lies so close to 1 that the
// product form loses most of its bits to rounding, and its drift over 256
// steps would dominate the error of the whole transform.
template <typename Put>
void for_each_quarter_angle(int32_t n, Put put)
{
    const int32_t q = n / 4;
    const int32_t eighth = n / 8;
    const double step = dsp_core::kTwoPi / n;
    const double half_sin = std::sin(step / 2);
    const double a = 2.0 * half_sin * half_sin;
    const double b = std::sin(step);
    put(0, 1.0, 0.0);
    double c = 1.0;
    double s = 0.0;
    for (int32_t k = 1; k < eighth; ++k) {
        if (k % 256 == 0) {
            c = std::cos(step * k);
            s = std::sin(step * k);
        } else {
            const double next_c = c - (a * c + b * s);
            s = s - (a * s - b * c);
            c = next_c;
        }
        put(k, c, s);
        put(q - k, s, c);
    }
    if (n > 4) put(eighth, 0.7071067811865476, 0.7071067811865476);
}

void put_triple(double *cos_part, double *pairs, int32_t k, double c, double s)
{
    cos_part[k] = c;
    pairs[2 * k] = s - c;
    pairs[2 * k + 1] = -(c + s);
}

void fill_twiddles(double *table, int32_t n)
{
    const int32_t q = n / 4;
    double *cos1 = table;
    double *pairs1 = table + q;
    double *cos3 = table + 3 * q;
    double *pairs3 = table + 4 * q;
    // w^3k for 3k past a quarter turn: the angle is a quarter or a half turn
    // plus the angle of index j = 3k - q or 3k - 2q, whose (cos, sin) become
    // (-sin, cos) or (-cos, -sin).
    for_each_quarter_angle(n, [&](int32_t j, double c, double s) {
        put_triple(cos1, pairs1, j, c, s);
        if (j % 3 == 0) put_triple(cos3, pairs3, j / 3, c, s);
        if ((j + q) % 3 == 0) put_triple(cos3, pairs3, (j + q) / 3, -s, c);
        if ((j + 2 * q) % 3 == 0) put_triple(cos3, pairs3, (j + 2 * q) / 3, -c, -s);
    });
}

}  // namespace

bool bitrev_tables(int bits, BitrevTables &out)
{
    const std::size_t n = std::size_t{1} << bits;
    const std::size_t fixed_words = 2 * ((std::size_t{1} << (bits / 2)) + 1);
    out.swaps = bitrev_list(swap_cache, found.swaps[bits], bits, n, fill_swaps);
    if (!out.swaps) return false;
    out.fixed = bitrev_list(fixed_cache, found.fixed[bits], bits, fixed_words, fill_fixed);
    out.tiles = tile_count(bits);
    out.twins = bits % 2 != 0;
    return out.fixed != nullptr;
}

const double *twiddle_table(int32_t n)
{
    const int32_t key = n / 2 * 3;
    void *&memo = found.twiddles[bits_of(n)];
    if (!memo) memo = find_table(twiddle_cache, key);
    if (memo) return static_cast<const double *>(memo);
    auto *table = static_cast<double *>(add_table(twiddle_cache, key, sizeof(double) * static_cast<std::size_t>(key)));
    if (table) fill_twiddles(table, n);
    memo = table;
    return table;
}

bool twiddle_levels(int bits, TwiddleLevels &out)
{
    for (int b = 0; b <= kMaxBits; ++b) out.by_bits[b] = nullptr;
    for (int b = bits; b >= 2; --b) {
        out.by_bits[b] = twiddle_table(int32_t{1} << b);
        if (!out.by_bits[b]) return false;
    }
    return true;
}

int32_t release_bitrev_tables()
{
    release_list(swap_cache);
    release_list(fixed_cache);
    for (void *&t : found.swaps) t = nullptr;
    for (void *&t : found.fixed) t = nullptr;
    return 0;
}

int32_t release_twiddle_tables()
{
    release_list(twiddle_cache);
    for (void *&t : found.twiddles) t = nullptr;
    return 0;
}

TableAllocator set_table_allocator(TableAllocator allocator)
{
    const TableAllocator old = table_allocator;
    table_allocator = allocator;
    return old;
}

}  // namespace dsp_spectral
