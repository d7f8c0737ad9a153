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

#include "libdsp_api.h"

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
 * if its imaginary parts were 0; a NaN imaginary part of a complex b against a
 * real a gives +1. Returns -1 (verdict untouched) when the point counts
 * differ. */
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
 * of dspi_zpad2), scaled by n/old (or its square root); the end placement
 * keeps the last n points unscaled in every mode. Invalid flags give -1 with
 * the record untouched. n < 0 counts as 0. */
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
/* Binary operations                                                         */
/* ------------------------------------------------------------------------- */
/* Two records combined point by point into a result: first operand, second
 * operand, result. Any mix of real and complex operands is accepted (a real
 * operand counts as imaginary part 0). Unless stated otherwise the operands
 * must have equal point counts (else -1, nothing written); the result takes
 * their point count and the mean of their deltas, is complex when either
 * operand is, and may be either operand itself: it then grows in place,
 * keeping the values still to be read. */

/* first + second. Unequal lengths are allowed: the shorter operand is
 * extended with zeros to the longer one's point count. */
DSP_API int32_t dspb_add(const dsp *a, const dsp *b, dsp *r);
/* first - second, zero-padding the shorter operand as dspb_add does. */
DSP_API int32_t dspb_sub(const dsp *a, const dsp *b, dsp *r);
/* first * second. */
DSP_API int32_t dspb_mul(const dsp *a, const dsp *b, dsp *r);
/* first * conj(second); a real second operand makes this dspb_mul. */
DSP_API int32_t dspb_conj_mul(const dsp *a, const dsp *b, dsp *r);
/* first / second. A zero divisor never gives an infinity: the quotient is 0
 * when the dividend is zero too, else +1e100 (both parts for complex results)
 * whatever the dividend's sign. A complex divisor counts as zero when its
 * squared magnitude is not > 0 (it underflows, or is NaN); the quotient is
 * then 0 only when the dividend and both divisor parts are exactly 0. */
DSP_API int32_t dspb_div(const dsp *a, const dsp *b, dsp *r);
/* Exponential average: second + weight * (first - second), with the first
 * operand the new trace and the second the running average (weight 1 gives
 * the new trace). The weight is not range-checked. */
DSP_API int32_t dspb_avg_add(const dsp *a, const dsp *b, dsp *r, double weight);
/* Per point the operand with the smaller value; complex points are compared
 * by squared magnitude (1e100 for a part beyond +-1e100 or NaN) and copied
 * whole. Ties go to the second operand. */
DSP_API int32_t dspb_min(const dsp *a, const dsp *b, dsp *r);
/* As dspb_min, taking the larger value or magnitude; ties to the second. */
DSP_API int32_t dspb_max(const dsp *a, const dsp *b, dsp *r);
/* Complex record from real parts re and imaginary parts im (both real, equal
 * lengths, else -1). r may be re or im. */
DSP_API int32_t dspb_ritoc(const dsp *re, const dsp *im, dsp *r);
/* Interleaves: r gets 2n points a[0], b[0], a[1], b[1], ... and delta equal
 * to half the mean delta. Complex when either operand is. */
DSP_API int32_t dspb_inter(const dsp *a, const dsp *b, dsp *r);
/* Product of two polynomials with ascending coefficients (full linear
 * convolution): na + nb - 1 points, none when either operand is empty. Any
 * lengths. r may be an operand (the product is then formed aside). */
DSP_API int32_t dspb_pmul(const dsp *a, const dsp *b, dsp *r);
/* One-point result: sum of a[i] * b[i], without conjugation; 0 for empty
 * operands. Complex when either operand is; r's delta is left as it was. */
DSP_API int32_t dspbs_dot(const dsp *a, const dsp *b, dsp *r);

/* ------------------------------------------------------------------------- */
/* In-place mathematical functions                                           */
/* ------------------------------------------------------------------------- */
/* One function applied to every value, first to last; points, complex flag
 * and delta are kept and nothing is allocated. Functions without a complex
 * rule refuse complex records (-1, record unchanged). No function produces an
 * infinity from a pole or an overflow: such results are +-1e100, 0.0 or the
 * logarithm floor (the logarithm of 2.2250738585072014e-308). Arguments of
 * exp, cosh, sinh and besi0 are limited to ln(1e100) = 230.25850929940458,
 * exponents of exp10 to 100. (A reciprocal of a subnormal value still
 * overflows.) */

/* |x|. Real records only; the magnitude of a complex record is dspi_mag. */
DSP_API int32_t dspi_abs(dsp *s);
/* atan(x). Real records only. */
DSP_API int32_t dspi_atan(dsp *s);
/* cos(x). Real records only. */
DSP_API int32_t dspi_cos(dsp *s);
/* sin(x). Real records only. */
DSP_API int32_t dspi_sin(dsp *s);
/* tan(x). Real records only. */
DSP_API int32_t dspi_tan(dsp *s);
/* tanh(x). Real records only. */
DSP_API int32_t dspi_tanh(dsp *s);
/* Bessel function J0(x). Real records only. */
DSP_API int32_t dspi_besj0(dsp *s);
/* Bessel function J1(x). Real records only. */
DSP_API int32_t dspi_besj1(dsp *s);
/* acos(x); 0.0 for |x| > 1. Real records only. */
DSP_API int32_t dspi_acos(dsp *s);
/* asin(x); 0.0 for |x| > 1. Real records only. */
DSP_API int32_t dspi_asin(dsp *s);
/* cosh(x); 1e100 for |x| > 230.25850929940458 or NaN. Real records only. */
DSP_API int32_t dspi_cosh(dsp *s);
/* sinh(x); 1e100 above 230.25850929940458, -1e100 below its negative (and
 * for NaN). Real records only. */
DSP_API int32_t dspi_sinh(dsp *s);
/* sin(x) / x (no factor pi), 1.0 at 0. Real records only. */
DSP_API int32_t dspi_sinc(dsp *s);
/* Modified Bessel function I0(x) by the library's own power series (|x| up
 * to 20) and asymptotic expansion; 1e100 for |x| > 230.25850929940458 or NaN.
 * Real records only. */
DSP_API int32_t dspi_besi0(dsp *s);
/* Bessel function Y0(x); 0.0 for x <= 0 or NaN. Real records only. */
DSP_API int32_t dspi_besy0(dsp *s);
/* Bessel function Y1(x); 0.0 for x <= 0 or NaN. Real records only. */
DSP_API int32_t dspi_besy1(dsp *s);
/* -x; both parts of complex points. */
DSP_API int32_t dspi_neg(dsp *s);
/* e^x; 1e100 above 230.25850929940458. Complex: e^re (1e100 above the same
 * limit) times (cos im, sin im). */
DSP_API int32_t dspi_exp(dsp *s);
/* 10^x; 1e100 above 100. On a real record a value below -1e100 or NaN stops
 * the pass: it and all values after it are left unchanged (status 0).
 * Complex: magnitude 10^re (1e100 above 100, -1e100 below -1e100 or NaN),
 * phase im * ln 10. */
DSP_API int32_t dspi_exp10(dsp *s);
/* Natural logarithm; real values below 2.2250738585072014e-308 (zero,
 * negative, NaN) give -708.3964185322641. Complex: (ln |z|, phase); |z|^2
 * below the floor gives (-708.3964185322641, 0); a part beyond +-1e100 or NaN
 * gives (ln 1e100 / 2, phase of the parts clamped to +-1e100). */
DSP_API int32_t dspi_log(dsp *s);
/* Base-10 logarithm; real values below 2.2250738585072014e-308 give
 * -307.6526555685888. Complex: parts clamped to +-1e100 (NaN to -1e100), then
 * (log10 |z|, phase * log10(e)); |z|^2 below the floor gives
 * (-307.6526555685888, 0). This is dspi_db with factor 1. */
DSP_API int32_t dspi_log10(dsp *s);
/* Square root; 0.0 for negative real values and NaN. Complex: principal root
 * (magnitude 1e100 taken for a part beyond +-1e100 or NaN). */
DSP_API int32_t dspi_sqrt(dsp *s);
/* x^2; 1e100 for |x| > 1e100 or NaN. Complex: z^2 of the parts clamped to
 * +-1e100 (NaN to -1e100). */
DSP_API int32_t dspi_square(dsp *s);
/* 1/x; 1e100 for 0. Complex: conj(z) / |z|^2, with |z|^2 taken as 1e100 for
 * parts beyond +-1e100 and 1/|z|^2 as 1e100 for z = 0 (giving (0, -0)). */
DSP_API int32_t dspi_recip(dsp *s);
/* Declared but deliberately not provided: always -1, record unchanged. */
DSP_API int32_t dspi_erf(dsp *s);
DSP_API int32_t dspi_erfc(dsp *s);
DSP_API int32_t dspi_gamma(dsp *s);
DSP_API int32_t dspi_lgamma(dsp *s);

/* ------------------------------------------------------------------------- */
/* Descriptive statistics                                                    */
/* ------------------------------------------------------------------------- */
/* Scalar summaries of src delivered in the record result, which the function
 * reshapes (usually to one point) and whose delta it keeps unless stated.
 * result may be src itself. Long records are summed in blocks of 2048 values
 * so that rounding errors stay bounded. Where a value or deviation is clamped,
 * values above 1e100 count as 1e100 and values below -1e100 (and NaN) as
 * -1e100; a squared magnitude with a part beyond +-1e100 counts as 1e100.
 * An empty source gives 0 (with imaginary part 0 for complex results) unless
 * stated. */

/* Sum of the points; complex as src. */
DSP_API int32_t dsps_sum(const dsp *src, dsp *result);
/* Sum times 1/n; complex as src. */
DSP_API int32_t dsps_mean(const dsp *src, dsp *result);
/* Median in dspi_sort order (complex points by squared magnitude, then real,
 * then imaginary part); the mean of the two middle points for even n. */
DSP_API int32_t dsps_median(const dsp *src, dsp *result);
/* Smallest value, starting from 1e100 (values all above 1e100 give 1e100);
 * complex: the whole point of smallest squared magnitude, (1e100, 1e100)
 * when none is below 1e100. The first of equal candidates wins. */
DSP_API int32_t dsps_min(const dsp *src, dsp *result);
/* Largest value, starting from -1e100 (a NaN is taken); complex: the whole
 * point of largest squared magnitude. The first of equal candidates wins. */
DSP_API int32_t dsps_max(const dsp *src, dsp *result);
/* Sum of squared magnitudes (x^2 for real), clamped per point; real. */
DSP_API int32_t dsps_magsq_sum(const dsp *src, dsp *result);
/* Root of the mean squared magnitude; real. */
DSP_API int32_t dsps_rms(const dsp *src, dsp *result);
/* Population variance (sum of squared deviations / n); for complex records
 * the variance of the complex values (real and imaginary parts together).
 * Deviations are taken from K = (x[0] + x[n/2] + x[n-1]) / 3 and clamped,
 * which keeps the sums small for signals with a large offset. Real result. */
DSP_API int32_t dsps_pop_var(const dsp *src, dsp *result);
/* Sample variance: population variance * n / (n - 1) for n >= 2, else the
 * population variance. Real result. */
DSP_API int32_t dsps_samp_var(const dsp *src, dsp *result);
/* Square root of the population variance. Real result. */
DSP_API int32_t dsps_pop_stddev(const dsp *src, dsp *result);
/* Square root of the sample variance. Real result. */
DSP_API int32_t dsps_samp_stddev(const dsp *src, dsp *result);
/* Skewness m3 / m2^1.5 of a real record (complex: -1, result untouched);
 * 1e100 when the variance is 0 but m3 is not, 0 when both are. */
DSP_API int32_t dsps_skew(const dsp *src, dsp *result);
/* Excess kurtosis m4 / m2^2 - 3 of a real record (complex: -1, result
 * untouched); -3.0 for an empty or constant record; 1e100 when m2^2 is 0 but
 * m4 is not. */
DSP_API int32_t dsps_excess(const dsp *src, dsp *result);
/* Geometric mean from the plain product P: exp(log(P) / n) when P is at least
 * 2.2250738585072014e-308, else 0 (any zero, a negative product or
 * underflow). Complex: the principal n-th root of the complex product, or 0
 * when |P|^2 is below that floor. A product that overflows gives infinity. */
DSP_API int32_t dsps_gmean(const dsp *src, dsp *result);
/* Harmonic mean n / sum(1/x); 0.0 when a real value is exactly 0; 1e100 when
 * the sum of reciprocals is 0. Complex: reciprocals as dspi_recip forms them
 * from the clamped parts. Complex as src. */
DSP_API int32_t dsps_hmean(const dsp *src, dsp *result);
/* Histogram of bins counts (doubles) over [lo, lo + bins * width): real,
 * delta = width. Complex points count by magnitude (1e100 for a part beyond
 * +-1e100). A value at the upper edge, or up to 10 units in the last place
 * above it, counts in the last bin; values below lo, above the range or NaN
 * are not counted. Width 0 counts only values equal to lo. */
DSP_API int32_t dsps_hist(const dsp *src, dsp *result, double lo, double width, int32_t bins);

/* Flags of dsps_peak: one search mode ORed with one refinement. */
#define DSP_PEAK_MAX            0x0000 /* search the largest value */
#define DSP_PEAK_MIN            0x2000 /* search the smallest value */
#define DSP_PEAK_AT_INDEX       0x1000 /* take the index argument (clamped) */
#define DSP_PEAK_NONE           0x0000 /* the sample itself */
#define DSP_PEAK_PARABOLIC      0x0100 /* parabola through three samples */
#define DSP_PEAK_GAUSSIAN       0x0200 /* log-parabola (Gaussian) through three samples */
#define DSP_PEAK_HANN_RATIO     0x0300 /* log ratio of the neighbours, Hann lobe */
#define DSP_PEAK_REFINE_MASK    0x0700

/* Peak of src: result = (height, position in samples), 2 real points. The
 * peak sample k is the index argument (flag DSP_PEAK_AT_INDEX; clamped to the
 * record) or the first largest (smallest with DSP_PEAK_MIN) value; complex
 * points are searched by squared magnitude (1e100 for a part beyond +-1e100
 * or NaN). y below means the value (real) or the plain squared magnitude
 * re^2 + im^2 (complex, not capped). Refinement by flags & 0x700:
 *   0x000  (y[k], k).
 *   0x100  vertex of the parabola through y[k-1], y[k], y[k+1].
 *   0x200  vertex of the parabola through ln y[k-1], ln y[k], ln y[k+1]:
 *          exact for a Gaussian lobe, for any window; with
 *          L = ln(y[k+1] / y[k-1]) and C = ln(y[k]^2 / (y[k-1] y[k+1])):
 *          position k + L / (2C), height y[k] exp(L^2 / (8C)).
 *   0x300  offset from the neighbours' log ratio alone, matched to the main
 *          lobe of a Hann window: d = c L, height y[k] exp(2 c d^2) with
 *          c = 0.315563649157834 for amplitudes (real records); for squared
 *          magnitudes (complex records) d = c L / 2 and height
 *          y[k] exp(4 c d^2). |d| is limited to 0.5.
 * Every refinement gives (y[k], k) at the first and last point. 0x100 on
 * three collinear samples has no vertex (the result is then not finite).
 * 0x200 and 0x300 give (y[k], k) unless y[k-1] and y[k+1] are positive and
 * y[k] is finite and at least both (for 0x200 also not equal to both): they
 * refine peaks only, never dips or samples whose logarithm cannot be taken.
 * An empty source gives (0, 0). Other refinement values: -1. result may be
 * src. */
DSP_API int32_t dsps_peak(const dsp *src, dsp *result, int32_t flags, int32_t index);

/* Straight-line least-squares fit y[k] = intercept + slope * x[k] of a real
 * record against its abscissa x[k] = k * delta (complex: -1). The two
 * coefficients, ascending: result = (intercept, slope), 2 real points. */
DSP_API int32_t dsps_lin_regres(const dsp *src, dsp *result);
/* The same fit with its statistics, 20 real points:
 *   0 intercept                      10 smallest residual (most negative)
 *   1 slope                          11 abscissa of the smallest residual
 *   2 correlation coefficient r      12 peak-to-peak residual (8 - 10)
 *   3 coefficient of determination  13 residual sum of squares
 *   4 standard error of intercept    14 total sum of squares about the mean
 *   5 standard error of slope        15 F statistic (regression / residual
 *   6 residual standard error           mean square)
 *     sqrt(SSres / (n - 2))          16 mean abscissa
 *   7 RMS residual sqrt(SSres / n)   17 mean value
 *   8 largest residual y - fit       18 number of points n
 *   9 abscissa of the largest        19 degrees of freedom n - 2 (0 for
 *                                       n < 3)
 * A statistic whose denominator is zero (n < 3, delta 0, a constant record)
 * is reported as 0; with fewer than two distinct abscissas the slope is 0
 * and the intercept is the mean. */
DSP_API int32_t dsps_lin_regres2(const dsp *src, dsp *result);

/* ------------------------------------------------------------------------- */
/* Windows                                                                   */
/* ------------------------------------------------------------------------- */
/* Spectral windows of the catalogue below, generated centred on point
 * c = points / 2: even lengths give the periodic (DFT-even) window whose
 * first point is its edge value. Windowing multiplies the record in place
 * (both parts of complex points; delta kept) and then rotates it with
 * dspi_swap_halves2 so that the window's centre lands on index 0, the phase
 * reference of a transform. */

/* Window types. Several constants share a value; the first name of a value is
 * its canonical one. Type 24 (a Tukey window with taper 0.25) has no name. */
#define DSP_WINDOW_UNIFORM            0  /* constant */
#define DSP_WINDOW_RECTANGULAR        0
#define DSP_WINDOW_NONE               0
#define DSP_WINDOW_P000               0
#define DSP_WINDOW_BARTLETT           1  /* triangle */
#define DSP_WINDOW_TRIANGULAR         1
#define DSP_WINDOW_HANN               2  /* cosine sums, 2 to 7 terms */
#define DSP_WINDOW_P110               2
#define DSP_WINDOW_HAMMING            3
#define DSP_WINDOW_P100               3
#define DSP_WINDOW_BLACKMAN           4
#define DSP_WINDOW_BLACKMAN_HARRIS3   5
#define DSP_WINDOW_P200               5
#define DSP_WINDOW_BLACKMAN_HARRIS4   6
#define DSP_WINDOW_P310               6
#define DSP_WINDOW_LOWLEAK            6
#define DSP_WINDOW_GAUSSTOP           7
#define DSP_WINDOW_P400               7
#define DSP_WINDOW_FLAT4              8  /* flat tops 8 to 13 */
#define DSP_WINDOW_P301               8
#define DSP_WINDOW_FLATTOP            9
#define DSP_WINDOW_FLAT5              9
#define DSP_WINDOW_P401               9
#define DSP_WINDOW_FLAT6             10
#define DSP_WINDOW_P511              10
#define DSP_WINDOW_FLAT7             11
#define DSP_WINDOW_P611              11
#define DSP_WINDOW_P501              12
#define DSP_WINDOW_P601              13
#define DSP_WINDOW_KAISER70          14  /* Kaiser, fixed beta */
#define DSP_WINDOW_KAISER80          15
#define DSP_WINDOW_KAISER90          16
#define DSP_WINDOW_KAISER100         17
#define DSP_WINDOW_KAISER110         18
#define DSP_WINDOW_KAISER120         19
#define DSP_WINDOW_GAUSS60           20  /* Gauss, fixed width */
#define DSP_WINDOW_GAUSS70           21
#define DSP_WINDOW_GAUSS80           22
#define DSP_WINDOW_RIEMANN           23  /* main lobe of sin(x)/x */
#define DSP_WINDOW_SINC_LOBE         23

/* Window flags: one scaling mode ORed with the bits below.
 *   AMPLITUDE  mean 1 (flat tops: mean equal to their gain, just below 1)
 *   POWER      root mean square 1
 *   NONE       unscaled, peak 1
 * Mode 3 is invalid for the catalogue; the parametric windows accept it:
 * Gauss, Tukey and sinc lobe then give all zeros, Kaiser is scaled as NONE. */
#define DSP_WINDOW_SCALE_AMPLITUDE    0
#define DSP_WINDOW_SCALE_POWER        1
#define DSP_WINDOW_SCALE_NONE         2
#define DSP_WINDOW_SCALE_MASK         3
/* Symmetric placement about c - 0.5 for even lengths; parametric windows
 * only (the triangle and cosine-sum windows refuse it, and so does the
 * uniform window with an own length). */
#define DSP_WINDOW_SYMMETRIC          4
/* The window has its own length (the length argument) and is zero outside
 * it; refused by the triangle and every parametric window. */
#define DSP_WINDOW_OWN_LENGTH         8
/* Rotate even the uniform window (which is otherwise not rotated). */
#define DSP_WINDOW_ROTATE_UNIFORM    16
/* Do not rotate after multiplying (every window but the uniform one). */
#define DSP_WINDOW_NO_ROTATE         32

/* FIR design windows of dspi_window_fir; parameter = width / sampling rate. */
#define DSP_WINDOW_FIR_GAUSS        100
#define DSP_WINDOW_FIR_KAISER       101
#define DSP_WINDOW_FIR_SINC         102
#define DSP_WINDOW_FIR_SINC_FITTED  103

/* Canonical display name of type into buf, at most len characters with
 * buf[len - 1] always the terminator (a longer name is cut). len < 1 or a
 * null buf: -1. Unknown or unnamed type: buf[0] = 0 and -1. */
DSP_API int32_t dsp_window_to_str(int32_t type, char *buf, int32_t len);
/* Type of a display name ("Hann") or constant name ("DSP_WINDOW_HANN"),
 * compared whole and in any letter case. No match: *type = 0 and -1. A null
 * argument: -1 with nothing written. */
DSP_API int32_t dsp_window_from_str(const char *name, int32_t *type);
/* dspi_window2(s, type, flags, 0.0); DSP_WINDOW_OWN_LENGTH is refused (-1). */
DSP_API int32_t dspi_window(dsp *s, int32_t type, int32_t flags);
/* Multiplies s by the catalogue window of its point count (with
 * DSP_WINDOW_OWN_LENGTH: of own length `length`, zero beyond it) and rotates
 * (see the flags). The uniform window without own length multiplies nothing.
 * Windows are kept in a process-wide cache of the 16 most recent ones, so a
 * repeated call costs one multiplication per value and allocates nothing;
 * dsp_free_internal empties the cache. Scaling mode 3, an unknown type or a
 * flag the window refuses: -1 with s unchanged. */
DSP_API int32_t dspi_window2(dsp *s, int32_t type, int32_t flags, double length);
/* dsp_window2_scale(scale, type, flags, n, 0.0); DSP_WINDOW_OWN_LENGTH is
 * refused (-1). */
DSP_API int32_t dsp_window_scale(double *scale, int32_t type, int32_t flags, int32_t n);
/* *scale = the factor by which the window of n points in the flags' scaling
 * mode exceeds the unscaled one: 1 / mean (times the gain for flat tops),
 * 1 / root mean square, or 1.0 for DSP_WINDOW_SCALE_NONE and n < 1. Cosine
 * sums without own length are scaled from their coefficients, with the
 * harmonics that alias for small n; other windows are generated and measured
 * (0.0 when the measured value is 0). -1 for mode 3, an unknown type, or
 * flags the generated window refuses (an own length for the triangle and
 * types 14 to 24, an own length with DSP_WINDOW_SYMMETRIC for the others). */
DSP_API int32_t dsp_window2_scale(double *scale, int32_t type, int32_t flags, int32_t n, double length);
/* Equivalent noise bandwidth in bins, n * sum(w^2) / sum(w)^2, as the square
 * of the ratio of the amplitude and power scale factors; for flat tops that
 * includes the square of their gain. -1 for a null enbw or when a scale
 * factor fails. */
DSP_API int32_t dsp_window_enbw(double *enbw, int32_t type, int32_t n);
/* As dsp_window_enbw for the window of own length `length`; a length that
 * leaves every point 0 makes both factors 0.0 and gives NaN (0 / 0). */
DSP_API int32_t dsp_window2_enbw(double *enbw, int32_t type, int32_t n, double length);

/* Parametric windows. Each builds its window afresh (nothing is cached),
 * multiplies s by it and rotates unless DSP_WINDOW_NO_ROTATE is set. flags:
 * a scaling mode (mode 3 leaves all zeros, but see Kaiser) and
 * DSP_WINDOW_SYMMETRIC; DSP_WINDOW_OWN_LENGTH is refused (-1, s unchanged). */

/* Kaiser window I0(beta * sqrt(1 - (2x/D)^2)), D = points (points - 1 when
 * symmetric). |beta| is limited to 200 ln 10 (100 ln 10 in the power mode, so
 * that squares stay finite); a beta beyond the limit on either side becomes
 * +limit. Mode NONE and mode 3 divide by the peak I0(beta). One point gives
 * the factor 1.0 in every mode. */
DSP_API int32_t dspi_window_kaiser(dsp *s, double beta, int32_t flags);
/* Gauss window exp(-0.5 (x / (points * sigma))^2); sigma 0.0 keeps only the
 * centre point (the two middle points when symmetric). */
DSP_API int32_t dspi_window_gauss(dsp *s, double sigma, int32_t flags);
/* Tukey window: flat 1.0 over the middle (1 - r) of the points, cosine tapers
 * of total length r * points. r <= 0 is the uniform window. */
DSP_API int32_t dspi_window_tukey(dsp *s, double r, int32_t flags);
/* Lobe of sin(x)/x from x = 0 at the centre to x = extent at the edges,
 * raised to the power exponent. Where sin(x)/x <= 0 the value is sin(x)/x for
 * exponent 1, its square for 2, 1.0 for 0 and 0.0 for any other exponent. */
DSP_API int32_t dspi_window_sinc(dsp *s, double extent, double exponent, int32_t flags);
/* Cosine sum sum_k a[k] cos(2 pi k m / points) of the caller's coefficients
 * (a real record; complex: -1), not normalised; always rotated. No
 * coefficients give all zeros. */
DSP_API int32_t dspi_window_cos(dsp *s, const dsp *coefficients);
/* Windows for FIR design, symmetric, unscaled and not rotated, from the
 * normalised width `parameter`:
 *   DSP_WINDOW_FIR_GAUSS        Gauss, sigma = 1 / (points * parameter * pi);
 *                               parameter 0 leaves s unchanged
 *   DSP_WINDOW_FIR_KAISER       Kaiser with beta from the design formula for
 *                               the attenuation (points - 1) * parameter *
 *                               14.36 + 7.95 dB
 *   DSP_WINDOW_FIR_SINC         sinc lobe to pi / 1.24, exponent 0.62 *
 *                               points * parameter
 *   DSP_WINDOW_FIR_SINC_FITTED  sinc lobe with a fitted exponent
 * Any other type is dspi_window(s, type, symmetric | NONE | NO_ROTATE), which
 * the cosine-sum and triangle windows refuse (-1); the uniform window leaves
 * s unchanged. */
DSP_API int32_t dspi_window_fir(dsp *s, int32_t type, double parameter);
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

/* Flags of the spectrum front end dsph_fft. */
#define DSP_FFT_INVERSE           1   /* the way back from a spectrum to the signal */
#define DSP_FFT_TWO_SIDED         2   /* two-sided spectrum even of real input, no x2
                                         (inverse: two-sided input, no x0.5) */
#define DSP_FFT_CENTERED          4   /* whole input, window centred, scaled by the
                                         transform length instead of 2 */
#define DSP_FFT_NO_WINDOW         8   /* no window; the rotation is still done */
#define DSP_FFT_ZERO_PHASE       16   /* whole input, window rotated to index 0 */
#define DSP_FFT_INPUT_TWO_SIDED  32   /* inverse only: the input is two-sided
                                         (the x0.5 stays) */
#define DSP_FFT_RAW             128   /* whole input, plain complex FFT: no window,
                                         scaling or centring */

/* Spectrum front end; in is never changed, out receives the result (in and
 * out must be different records). Forward (no DSP_FFT_INVERSE):
 *   N2 = the smallest power of two >= nfft (nfft < 1: in->points; at most
 *   2^30), L = N2 * fraction (fraction outside (0, 1]: 1), at most
 *   in->points. The first ceil(L) points of in are copied to out, multiplied
 *   by the window of own length L in amplitude scaling (flags 8 = own length,
 *   plus 16 with DSP_FFT_CENTERED or DSP_FFT_ZERO_PHASE) and rotated so that
 *   its centre is index 0 (the uniform window only with those flags), scaled
 *   by 2 (one-sided) or N2 (DSP_FFT_CENTERED), zero-padded to N2 (split
 *   around the rotated data, else after it; padding rescales by N2/ceil(L)
 *   except with DSP_FFT_CENTERED or DSP_FFT_RAW) and transformed: real input gives
 *   the one-sided spectrum of N2/2 + 1 points (dspi_rfft), complex input or
 *   DSP_FFT_TWO_SIDED the two-sided one with zero frequency at point N2/2.
 *   delta becomes the bin spacing 1/(N2 delta).
 * Inverse (DSP_FFT_INVERSE): the same steps backwards from a one-sided
 *   spectrum (nfft < 1: 2 * in->points - 2) or a two-sided one (taken whole
 *   and cut or padded around zero frequency to N2, unscaled); the result is
 *   cut to ceil(N2 * fraction) points, rotated back and scaled by 0.5 (by 1
 *   with DSP_FFT_TWO_SIDED, by 1/points with DSP_FFT_CENTERED). The window is
 *   not divided out.
 * Windows: the uniform window and the cosine sums 2..13 are accepted; the
 *   triangle (1) and the parametric windows 14..24 refuse an own length and
 *   give -1. Any failing step returns -1 at once, out as far as it got. */
DSP_API int32_t dsph_fft(const dsp *in, dsp *out, int32_t nfft, double fraction, int32_t window, int32_t flags);
/* dsph_fft(in_record, out_record, 0, fraction, window, flags) on caller
 * arrays: in holds `points` values (interleaved pairs when complex_flag),
 * out receives as many doubles as in holds, whatever the result's shape: a
 * longer result is cut, a shorter one is followed by zeros. On failure out is
 * left unchanged. Null arrays: -1. */
DSP_API int32_t cf_dsph_fft(const double *in, double *out, int32_t points, int32_t complex_flag,
                            double fraction, int32_t window, int32_t flags);

#ifdef __cplusplus
}
#endif

#endif /* LIBDSP_H */
