// Pieces shared by the transforms: the length check, fetching the tables
// before the signal is touched, the bit-reversal permutation and the update
// of the sample spacing.
#pragma once

#include "libdsp.h"
#include "spectral/fft_tables.hpp"

#include <cstdint>

namespace dsp_spectral {

// log2(n) for a power of two n >= 1, else -1.
int transform_bits(int32_t n);

struct TransformTables {
    TwiddleLevels twiddles;
    BitrevTables reversal;
};

// Twiddles of every block of a 2^bits-point complex transform and its
// bit-reversal tables; false when a cache cannot grow.
bool transform_tables(int bits, TransformTables &out);

// Bit-reversal permutation of interleaved complex points (width 2) or real
// values (width 1). The scaled form also multiplies every value by `scale`.
void bit_reverse(double *x, int width, const BitrevTables &t);
void bit_reverse_scaled(double *x, int width, const BitrevTables &t, double scale);
// The plain-C++ twins of the two (the vector forms must match them exactly).
void bit_reverse_portable(double *x, int width, const BitrevTables &t);
void bit_reverse_scaled_portable(double *x, int width, const BitrevTables &t, double scale);

// A transform of n points turns spacing d into 1/(n d); spacing 0 gives 1e100.
void transform_delta(dsp *s, int32_t n);

}  // namespace dsp_spectral
