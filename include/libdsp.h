/*
 * libdsp — numeric signal processing on the dsp signal record.
 *
 * Every function returns a signed 32-bit status: 0 on success, -1 on failure,
 * unless its comment says otherwise. Inputs of a failing call are left
 * unchanged; an output record is left as far as the call got.
 *
 * Nothing is locked: the allocator hooks, the caches and the random source are
 * process-wide. Call into the library from one thread at a time.
 *
 * Note for C callers: the record has a field named `complex`. <complex.h>
 * defines `complex` as a macro, so a translation unit that includes both must
 * include this header first or `#undef complex` before using the field.
 */
#ifndef LIBDSP_H
#define LIBDSP_H

#include <stdint.h>

#ifndef DSP_API
#if defined(__GNUC__)
#define DSP_API __attribute__((visibility("default")))
#else
#define DSP_API
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------- */
/* The signal record                                                         */
/* ------------------------------------------------------------------------- */

/*
 * A sequence of real or complex points with a sample spacing.
 *   delta      spacing between points (time or frequency step); 1.0 when empty
 *   data       samples; complex points are interleaved (re, im) pairs
 *   allocated  doubles of `data` the library owns; 0 means caller-attached or
 *              none, and the library never frees such storage
 *   points     number of points (a complex point counts once)
 *   complex    0 real, non-zero complex (the library writes 0 or 1)
 *   reserved   cleared by dsp_init and dsp_destroy, otherwise untouched
 * Storage grows and never shrinks until dsp_destroy.
 */
typedef struct dsp {
    double delta;
    double *data;
    int32_t allocated;
    int32_t points;
    int32_t complex;
    int32_t reserved;
} dsp;

/* ------------------------------------------------------------------------- */
/* Record life cycle, storage and allocator hooks                            */
/* ------------------------------------------------------------------------- */

/* Allocator hooks. Their return values are ignored by the library. */
/* allocate: give s->data room for the needed count of doubles (points, doubled
 * for complex); s already carries its new shape and still its old data and
 * allocated. Old contents need not survive; releasing an owned old block is
 * the hook's business. */
typedef int (*dsp_alloc_hook_t)(dsp *s);
/* reallocate: as allocate, but keep the first old_points (doubled when
 * old_complex) doubles. s->data is null on entry when the library detached
 * caller-attached storage; the library then copies the contents itself. */
typedef int (*dsp_realloc_hook_t)(dsp *s, int32_t old_points, int32_t old_complex);
/* free: release s->data. */
typedef int (*dsp_free_hook_t)(dsp *s);

/* Empties a record: data null, counts 0, delta 1.0. Always 0. Storage the
 * record held is forgotten, not freed: destroy before re-initialising. */
DSP_API int32_t dsp_init(dsp *s);
/* Frees owned storage (through the free hook if installed) and resets the
 * record as dsp_init does. Always 0. Caller-attached storage is never freed. */
DSP_API int32_t dsp_destroy(dsp *s);
/* Makes room for the needed count of doubles; contents are not kept. Returns
 * at once when the capacity suffices. On failure: -1, data null, allocated 0;
 * the shape fields keep the values the caller set. */
DSP_API int32_t dsp_alloc(dsp *s);
/* As dsp_alloc, but keeps the first old_points (doubled when old_complex)
 * doubles. Caller-attached storage is copied into fresh library storage. */
DSP_API int32_t dsp_realloc(dsp *s, int32_t old_points, int32_t old_complex);

/* Hook setters: store the current hook in *old_hook when old_hook is not null,
 * then install hook (null restores malloc/realloc/free). Always 0. Install
 * hooks before any record storage exists: a block must be released by the
 * allocator family that made it. */
DSP_API int32_t dsp_lib_alloc(dsp_alloc_hook_t hook, dsp_alloc_hook_t *old_hook);
DSP_API int32_t dsp_lib_realloc(dsp_realloc_hook_t hook, dsp_realloc_hook_t *old_hook);
DSP_API int32_t dsp_lib_free(dsp_free_hook_t hook, dsp_free_hook_t *old_hook);

/* Reserved start-up entry point; does nothing. Always 0. */
DSP_API int32_t dsp_lib_init(void);
/* Releases every process-wide cache (tables, scratch records, the window
 * cache); each is rebuilt on its next use. 0, or -1 when a release step
 * failed (later steps are then skipped). Calling it twice is harmless. */
DSP_API int32_t dsp_free_internal(void);
/* The library version as an integer: 205 for 2.0.5. */
DSP_API int32_t dsp_version(void);

/* ------------------------------------------------------------------------- */
/* Copying, appending, comparing                                             */
/* ------------------------------------------------------------------------- */

/* dst becomes a copy of src (points, complex flag, delta, samples). */
DSP_API int32_t dsp_copy(dsp *dst, const dsp *src);
/* dst becomes a copy of the first n points of src (fewer if src is shorter). */
DSP_API int32_t dsp_copy_at_most(dsp *dst, const dsp *src, int32_t n);
/* dst becomes points start .. start+count-1 of src; start and count are
 * clamped to the source. Source first, destination second. src and dst may be
 * the same record: the range is then moved to the front. */
DSP_API int32_t dspu_subvec(const dsp *src, dsp *dst, int32_t start, int32_t count);
/* Appends src's points to dst. A complex src turns a real dst complex first;
 * a real src appended to a complex dst gets imaginary parts 0. dst keeps its
 * delta. dst and src must be different records. */
DSP_API int32_t dsp_append(dsp *dst, const dsp *src);
/* Compares delta, then the samples in storage order, with an absolute,
 * inclusive tolerance: *verdict = +1 at the first difference a - b above tol,
 * -1 at the first below -tol (or NaN), 0 when none. A real record compares as
 * if its imaginary parts were 0. Returns -1 (verdict untouched) when the point
 * counts differ. */
DSP_API int32_t dsp_cmp(const dsp *a, const dsp *b, double tol, int32_t *verdict);

/* ------------------------------------------------------------------------- */
/* Reshaping and simple sequence operations (in place)                       */
/* ------------------------------------------------------------------------- */

/* Padding flags of dspi_zpad2 and dspi_unzpad: one scaling mode ORed with one
 * placement. Scaling multiplies the kept values by new/old points (RATIO), by
 * its square root (SQRT), or not at all (NONE); scaling mode 3 is invalid. */
#define DSP_PAD_SCALE_RATIO     0x000
#define DSP_PAD_SCALE_SQRT      0x001
#define DSP_PAD_SCALE_NONE      0x002
#define DSP_PAD_SCALE_MASK      0x003
#define DSP_PAD_FRONT           0x000 /* data first, zeros at the end */
#define DSP_PAD_CENTER          0x100 /* data centred */
#define DSP_PAD_END             0x200 /* zeros first, data at the end */
#define DSP_PAD_SPLIT           0x300 /* data halves at both ends, zeros between */
#define DSP_PAD_PLACEMENT_MASK  0x700

/* Extends to n points with zeros at the end; never truncates. */
DSP_API int32_t dspi_zpad(dsp *s, int32_t n);
/* Extends to n points with the placement and scaling of flags. Never
 * truncates. Invalid flags give -1 after the record has grown (its new part
 * is then not cleared). Centre offset: (n - old) / 2, plus 1 when n is even
 * and old is odd. Split: the front part holds the extra point of an odd count. */
DSP_API int32_t dspi_zpad2(dsp *s, int32_t n, int32_t flags);
/* Shrinks to n points, keeping the part that the placement names (the inverse
 * of dspi_zpad2), scaled by n/old (or its square root). Invalid flags give -1
 * with the record untouched. n < 0 counts as 0. */
DSP_API int32_t dspi_unzpad(dsp *s, int32_t n, int32_t flags);
/* Sets every value to 0.0; the point count is kept. */
DSP_API int32_t dspi_zero(dsp *s);
/* Reverses the order of the points. */
DSP_API int32_t dspi_rev(dsp *s);
/* Drops the first k points; k < 0 changes nothing. */
DSP_API int32_t dspi_shift(dsp *s, int32_t k);
/* Random permutation (Fisher-Yates) drawn from the library's random source,
 * which is seeded once from the millisecond clock on first use. */
DSP_API int32_t dspi_shuffle(dsp *s);
/* Rotates so that the second half comes first (zero frequency to the centre):
 * [a b c d e] -> [d e a b c]. */
DSP_API int32_t dspi_swap_halves(dsp *s);
/* The inverse of dspi_swap_halves: [a b c d e] -> [c d e a b]. */
DSP_API int32_t dspi_swap_halves2(dsp *s);
/* Ascending order; complex points by squared magnitude (parts beyond +-1e100
 * or NaN count as 1e100), then real part, then imaginary part. A NaN sorts
 * below every number. */
DSP_API int32_t dspi_sort(dsp *s);
/* Replaces a real record by the positions (index times delta, linearly
 * interpolated) where consecutive values a, b cross level: mode 1 rising
 * (a <= level < b), 2 falling (a >= level > b), 3 both. delta becomes 1.0;
 * an empty record is unchanged. Complex: -1. */
DSP_API int32_t dspi_edge(dsp *s, int32_t mode, double level);
/* First difference divided by delta (x[-1] taken as 0; delta 0 multiplies by
 * 1e100). */
DSP_API int32_t dspi_differ(dsp *s);
/* Derivative of a polynomial with ascending coefficients; one point fewer. */
DSP_API int32_t dspi_pdiffer(dsp *s);
/* Running sum times delta. */
DSP_API int32_t dspi_integ(dsp *s);
/* Adds c to every real value (real parts only for complex records). */
DSP_API int32_t dspi_offset(dsp *s, double c);
/* Multiplies every double (both parts of complex points) by k. */
DSP_API int32_t dspi_scale(dsp *s, double k);
/* Clips every double to [min(a,b), max(a,b)]; NaN becomes the lower bound.
 * *clipped (may be null) is set to 1 when any value changed, else 0. The
 * second argument is ignored. */
DSP_API int32_t dspi_limit(dsp *s, int32_t unused, double a, double b, int32_t *clipped);
/* Extends a half spectrum of n points to the full conjugate-symmetric one:
 * 2(n-1) points for odd == 0 (point n-1 is the Nyquist point), 2n-1 points
 * otherwise. */
DSP_API int32_t dspi_orecon(dsp *s, int32_t odd);
/* dspi_orecon(s, 0). */
DSP_API int32_t dspi_recon(dsp *s);

/* ------------------------------------------------------------------------- */
/* Complex and polar representation                                          */
/* ------------------------------------------------------------------------- */
/* A polar record is a complex record holding (magnitude, phase in radians)
 * pairs; nothing marks the difference. Real-to-complex conversions grow the
 * storage in place. Squared magnitudes are capped at 1e100; logarithms are
 * floored at the smallest normal double. */

/* Real -> complex with imaginary parts 0; a complex record is unchanged. */
DSP_API int32_t dspi_rtoc(dsp *s);
/* Complex -> real parts; a real record is unchanged. */
DSP_API int32_t dspi_real(dsp *s);
/* Complex -> imaginary parts; a real record becomes all zeros (stays real). */
DSP_API int32_t dspi_imag(dsp *s);
/* Negates imaginary parts; a real record is unchanged. */
DSP_API int32_t dspi_conj(dsp *s);
/* To polar (magnitude, phase); a real x becomes (|x|, 0 or pi). */
DSP_API int32_t dspi_rtop(dsp *s);
/* From polar to rectangular; a real record is unchanged. */
DSP_API int32_t dspi_ptor(dsp *s);
/* Magnitude; the result is real. */
DSP_API int32_t dspi_mag(dsp *s);
/* Squared magnitude, 1e100 when a part exceeds +-1e100 or is NaN; real. */
DSP_API int32_t dspi_magsq(dsp *s);
/* Phase atan2(im, re) (0 at the origin); real x gives 0 or pi. Real result. */
DSP_API int32_t dspi_phase(dsp *s);
/* factor * log10: real values below the smallest normal double (zero,
 * negative, NaN) give factor * log10(2.2250738585072014e-308). A complex point
 * becomes (factor/2 * log10(re^2 + im^2), factor * log10(e) * phase), the
 * factor-scaled complex logarithm. Use 10 for power, 20 for amplitude. */
DSP_API int32_t dspi_db(dsp *s, double factor);
/* Multiplies by i; a real record becomes complex (0, x). */
DSP_API int32_t dspi_timesi(dsp *s);
/* Multiplies by re + i*im; a real record becomes complex. */
DSP_API int32_t dspi_cscale(dsp *s, double re, double im);
/* Unwraps a real phase trace against the previous output value (the first
 * value is folded into [-pi, pi]). Complex: -1. */
DSP_API int32_t dspi_unwrap(dsp *s);
/* As dspi_unwrap, but against the mean of the last `window` outputs; window 0
 * folds every value on its own, window < 0 or a complex record gives -1. */
DSP_API int32_t dspi_unwrap_wnd(dsp *s, int32_t window);
/* Replaces a record of n roots by the n+1 ascending coefficients of the monic
 * polynomial with those roots; delta becomes 1.0. */
DSP_API int32_t dspi_pztoc(dsp *s);
/* dst = magnitudes of src (real). dst may be src. */
DSP_API int32_t dspu_mag(const dsp *src, dsp *dst);
/* dst = squared magnitudes of src, capped at 1e100 (real). dst may be src. */
DSP_API int32_t dspu_magsq(const dsp *src, dsp *dst);
/* dst = square roots of src: 0 for negative real values, the principal root
 * for complex points. dst may be src. */
DSP_API int32_t dspu_sqrt(const dsp *src, dsp *dst);

/* ------------------------------------------------------------------------- */
/* FFT                                                                       */
/* ------------------------------------------------------------------------- */
/* Lengths are powers of two (1, 2, 4, ... 2^30); any other point count gives
 * -1 with the signal untouched. Forward: X[k] = (1/N) sum x[n] e^(-j2pi nk/N);
 * inverse: x[n] = sum X[k] e^(+j2pi nk/N), without a factor, so a forward
 * transform followed by an inverse one restores the input. A transform of N
 * points replaces delta by 1/(N delta) (1e100 when delta is 0).
 * Tables (twiddles per block size, bit-reversal swap and fixed-point lists
 * per bit count) are built on the first transform of a size and kept until
 * dsp_free_internal; a table that cannot be built gives -1 with the signal
 * untouched, and is tried again on the next call. */

/* In-place complex FFT; inverse = 0 forward, non-zero inverse. A real signal
 * is first widened to complex (its storage doubles); a one-point signal is
 * left as it is (a real one stays real). */
DSP_API int32_t dspi_fft(dsp *s, int32_t inverse);
/* Forward FFT of a real signal of N points, in place: the result is complex
 * with N/2 + 1 points X[0] .. X[N/2] (imaginary parts of X[0] and X[N/2] are
 * 0), scaled by 1/N; the storage grows by two doubles. A complex signal gives
 * -1. One point becomes one complex point; two points become X0 = (x0+x1)/2,
 * X1 = (x0-x1)/2 (both points kept). */
DSP_API int32_t dspi_rfft(dsp *s);
/* Inverse of dspi_rfft: a one-sided spectrum of n points becomes 2(n-1) real
 * values (the conjugate-symmetric spectrum is rebuilt with dspi_orecon, then
 * transformed with dspi_fft(s, 1)). */
DSP_API int32_t dspi_irfft(dsp *s);
/* Bit-reversal permutation of the points (real values or complex pairs) in
 * place; delta unchanged. */
DSP_API int32_t dspi_bitrev(dsp *s);
/* The same permutation with every value multiplied by 1/N. */
DSP_API int32_t dspi_bitrev_scale(dsp *s);
/* dspi_fft on a caller's array of `points` interleaved complex values,
 * transformed in place (delta taken as 1.0). The array cannot grow, so it
 * must hold complex data: complex_flag = 0 or a null array gives -1. */
DSP_API int32_t cf_dspi_fft(double *data, int32_t points, int32_t complex_flag, int32_t inverse);

#ifdef __cplusplus
}
#endif

#endif /* LIBDSP_H */
