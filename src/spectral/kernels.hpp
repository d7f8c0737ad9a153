// The complex kernel in its instruction-set variants and the choice among
// them. Every variant computes the same transform to rounding; the portable
// one is the reference the others are tested against.
#pragma once

#include "spectral/fft_tables.hpp"

namespace dsp_spectral {

// In-place split-radix transform of 2^bits interleaved complex points (bits
// >= 0), result in bit-reversed order, unscaled; tw holds the twiddle table
// of every block size from 2^bits down to 4.
using ComplexKernel = void (*)(double *x, int bits, const TwiddleLevels &tw, bool inverse);
// The real transform's last step (real_untangle.hpp): h scaled half-length
// points in x (room for h + 1) become X[0..h]; tw is the table of length 2h.
using UntangleKernel = void (*)(double *x, int32_t h, const Twiddles &tw);

// The bit-reversal permutation of interleaved complex points; the scaled
// form also multiplies every value by `scale`. Every path gives the same
// values (only moves and exact products).
using ComplexReverse = void (*)(double *x, const BitrevTables &t);
using ComplexReverseScaled = void (*)(double *x, const BitrevTables &t, double scale);

struct Kernels {
    ComplexKernel transform;
    UntangleKernel untangle;
    ComplexReverse reverse;
    ComplexReverseScaled reverse_scaled;
};

void portable_kernel(double *x, int bits, const TwiddleLevels &tw, bool inverse);
void portable_untangle(double *x, int32_t h, const Twiddles &tw);
void portable_reverse(double *x, const BitrevTables &t);
void portable_reverse_scaled(double *x, const BitrevTables &t, double scale);
#if defined(__x86_64__)
void sse2_kernel(double *x, int bits, const TwiddleLevels &tw, bool inverse);
void sse2_untangle(double *x, int32_t h, const Twiddles &tw);
void sse2_reverse(double *x, const BitrevTables &t);
void sse2_reverse_scaled(double *x, const BitrevTables &t, double scale);
void avx2_kernel(double *x, int bits, const TwiddleLevels &tw, bool inverse);
void avx2_untangle(double *x, int32_t h, const Twiddles &tw);
void avx2_reverse(double *x, const BitrevTables &t);
void avx2_reverse_scaled(double *x, const BitrevTables &t, double scale);
#endif

enum class KernelPath { portable, sse2, avx2 };

// The path in use: the widest this processor supports unless a test chose one.
const Kernels &kernels();
KernelPath active_kernel_path();
// Chooses a path; false (nothing changed) when this build or processor lacks it.
bool select_kernel_path(KernelPath path);

}  // namespace dsp_spectral
