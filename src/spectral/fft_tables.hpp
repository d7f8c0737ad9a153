// Process-wide tables of the FFT engine: bit-reversal swap pairs, bit-reversal
// fixed points and twiddle factors, each cached per transform size until
// dsp_free_internal releases them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dsp_spectral {

// Largest number of index bits a transform can have (points are int32).
constexpr int kMaxBits = 30;

// The swap list holds (i, j) index pairs ending with a 0 word (index 0 maps
// onto itself, so it never starts a pair). The fixed-point list ends with
// kFixedEnd, since 0 is itself a fixed point.
constexpr int32_t kFixedEnd = 0x12345678;

// The swap list begins with `tiles` tiles: 16 pairs (32 for an odd bit
// count, each pair followed by its twin a middle bit higher) that exchange
// four rows of four consecutive points with four other such rows, transposed:
// pair 4s + t exchanges point t of the first row s with point s of the
// second row t. The rows start at the first point of pairs 4s and t. The
// remaining pairs follow one by one.
struct BitrevTables {
    const int32_t *swaps;
    const int32_t *fixed;
    int32_t tiles;
    bool twins;  // odd bit count: every pair is followed by its twin
};

// Tables for n = 2^bits points; false when one of them cannot be built.
bool bitrev_tables(int bits, BitrevTables &out);

// Twiddle table of an n-point block (n >= 4), 3n/2 doubles keyed by that
// length. With q = n/4 and w = exp(-2 pi j / n) it holds, for k = 0..q-1,
// the three-multiplication form (cos t, -(cos t + sin t), sin t - cos t) of
// w^k and of w^3k, laid out for the kernels as
//   cos of w^k [q] | (sin - cos, -(cos + sin)) pairs of w^k [2q] |
//   cos of w^3k [q] | pairs of w^3k [2q].
struct Twiddles {
    const double *cos1;
    const double *pairs1;
    const double *cos3;
    const double *pairs3;
};
inline Twiddles twiddle_view(const double *table, int32_t n)
{
    const int32_t q = n / 4;
    return Twiddles{table, table + q, table + 3 * q, table + 4 * q};
}

// The table for an n-point block, built on first use; null on failure.
const double *twiddle_table(int32_t n);

// The tables of every block size a transform of 2^bits points runs through
// (2^bits, 2^(bits-1), ... down to 4), indexed by block bits; false when one
// cannot be built.
struct TwiddleLevels {
    const double *by_bits[kMaxBits + 1];
};
bool twiddle_levels(int bits, TwiddleLevels &out);

// Release steps registered with dsp_free_internal.
int32_t release_bitrev_tables();
int32_t release_twiddle_tables();

// Allocation of the cache lists and tables goes through these two calls, so
// a test can count table allocations or make them fail.
struct TableAllocator {
    void *(*allocate)(std::size_t bytes);
    void *(*reallocate)(void *block, std::size_t bytes);
};
TableAllocator set_table_allocator(TableAllocator allocator);

}  // namespace dsp_spectral
