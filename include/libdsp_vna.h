/*
 * libdsp_vna — network-analyzer routines on plain caller-owned arrays:
 * display-trace scaling, search, formatting, smoothing and phase unwrap,
 * control of the floating-point unit, and error correction (complex
 * matrices, one-port error terms, one-port, enhanced-response and two-port
 * correction).
 *
 * None of these functions uses the dsp record. Complex arrays are double *
 * holding interleaved (re, im) pairs, contiguous: point k at indices 2k and
 * 2k + 1 (layout-compatible with std::complex<double>; a C++ caller may pass
 * reinterpret_cast<double *>(v.data())). Index ranges are half-open
 * [start, stop) of point indices. Every function with a count n does nothing
 * when n <= 0.
 *
 * Names: vfpd_ and vfpdb work on doubles, vfpsb on single-precision floats;
 * the single-precision forms compute in single precision throughout.
 */
#ifndef LIBDSP_VNA_H
#define LIBDSP_VNA_H

#include <stdint.h>

#include "libdsp_api.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------- */
/* Trace routines: scaling, mapping, search, expansion, formatting           */
/* ------------------------------------------------------------------------- */

/* buf[i] *= k for i < n, in place. */
DSP_API void vfpsbMul1(float k, float *buf, int32_t n);
DSP_API void vfpdbMul1(double k, double *buf, int32_t n);
/* Block forms of vfpsbMul1 / vfpdbMul1: bit-identical results, vectorised.
 * They leave the vector-length field (LEN) of the control word 0 on return
 * when n > 0. */
DSP_API void vfpsbMul2(float k, float *buf, int32_t n);
DSP_API void vfpdbMul2(double k, double *buf, int32_t n);

/* Maps [lo, hi] linearly onto [outLo, outHi]:
 *   scale = (outHi - outLo) / (hi - lo), once per call (the integer span is
 *           formed exactly, then rounded to the working precision);
 *   dst[i] = int of ((src[i] - lo) * scale + outLo), the product rounded
 *           before the addition.
 * The conversion truncates toward zero, saturates at INT32_MIN / INT32_MAX
 * and gives 0 for NaN. hi = lo is not guarded (the scale is infinite or NaN
 * and the results saturate). The vfpsb forms compute in single precision,
 * the vfpdb forms in double. src and dst must not overlap. */
DSP_API void vfpsb_ScaleToInt(const float *src, int32_t n, float lo, float hi, int32_t *dst,
                              int32_t outLo, int32_t outHi);
DSP_API void vfpdb_ScaleToInt(const double *src, int32_t n, double lo, double hi, int32_t *dst,
                              int32_t outLo, int32_t outHi);
/* Block forms of the two above: bit-identical results, vectorised; they leave
 * LEN 0 on return when n > 0. */
DSP_API void vfpsb_ScaleToInt2(const float *src, int32_t n, float lo, float hi, int32_t *dst,
                               int32_t outLo, int32_t outHi);
DSP_API void vfpdb_ScaleToInt2(const double *src, int32_t n, double lo, double hi, int32_t *dst,
                               int32_t outLo, int32_t outHi);
/* dst[i] = (src[i] - lo) * scale + outLo with scale = (outHi - outLo) /
 * (hi - lo). src and dst may be the same array. */
DSP_API void vfpdb_ScaleToFP(const double *src, int32_t n, double lo, double hi, double *dst,
                             double outLo, double outHi);

/* Index of the largest of buf[start .. stop-1]: the first of equal maxima;
 * a NaN never wins (a NaN at start is kept, nothing compares greater than
 * it). Returns start without reading the buffer when start + 1 >= stop. */
DSP_API int32_t vfpd_FindMax(const double *buf, int32_t start, int32_t stop);
/* As vfpd_FindMax over [start, stop) without [exclStart, exclStop). When
 * start lies in the excluded span the search begins at exclStop, and -1 is
 * returned when exclStop >= stop. */
DSP_API int32_t vfpd_FindMax2(const double *buf, int32_t start, int32_t stop, int32_t exclStart,
                              int32_t exclStop);
/* Index of the smallest of buf[start+1 .. stop-1]: buf[start] itself is never
 * compared, and start is returned when no element there is below the largest
 * finite double (or when start + 1 >= stop). An element replaces the
 * candidate when it is not >= it: a NaN replaces it, and the element after a
 * NaN candidate replaces that. First of equal minima. */
DSP_API int32_t vfpd_FindMin(const double *buf, int32_t start, int32_t stop);
/* As vfpd_FindMax2 for the minimum, with vfpd_FindMin's replacement rule;
 * unlike vfpd_FindMin it does compare the first element of the search. */
DSP_API int32_t vfpd_FindMin2(const double *buf, int32_t start, int32_t stop, int32_t exclStart,
                              int32_t exclStop);
/* Both extremes in one pass. Returns 0 without writing when start > stop or
 * any pointer is null. Otherwise both indices start at start (start = stop is
 * accepted) and, for each later element, one not >= the minimum becomes the
 * minimum, else one above the maximum becomes the maximum. Returns 1. */
DSP_API int32_t vfpd_FindMinMax(const double *buf, int32_t start, int32_t stop, int32_t *maxIndex,
                                int32_t *minIndex);

/* n values from first to last, linearly spaced: out[i] = i * step + first
 * with step = (last - first) / (n - 1); out[0] and out[n-1] are stored
 * exactly as given. */
DSP_API void vfpd_ExpandLinear(double *out, int32_t n, double first, double last);
/* n values from first to last, spaced evenly on a log10 scale; writes nothing
 * unless first > 0 and last > 0. The end points are stored exactly. */
DSP_API void vfpd_ExpandLog(double *out, int32_t n, double first, double last);

/* Formats of vfpd_FormatBuffer. */
#define VFPD_FORMAT_LOG_MAG     0 /* 10 log10(re^2 + im^2), dB; -inf at 0 */
#define VFPD_FORMAT_LIN_MAG     1 /* sqrt(re^2 + im^2) */
#define VFPD_FORMAT_PHASE       2 /* atan2(im, re) in degrees, not unwrapped */
#define VFPD_FORMAT_SWR         3 /* (g + 1) / (1 - g), g = |z|; 1e6 if g > 0.999998 */
#define VFPD_FORMAT_RETURN_LOSS 4 /* -10 log10(re^2 + im^2), dB; +inf at 0 */

/* out[k] = format of complex point k of cpx, for k in [start, stop) (the
 * same index k in both arrays). Any other format writes nothing. */
DSP_API void vfpd_FormatBuffer(int32_t format, const double *cpx, double *out, int32_t start,
                               int32_t stop);

/* ------------------------------------------------------------------------- */
/* Trace routines: smoothing and phase unwrap                                */
/* ------------------------------------------------------------------------- */

/*
 * Centred moving average of the points i = start, start+1, ... of a buffer of
 * n points. The half-width of point i is min(i, n-1-i, aperture/2), so the
 * span narrows near both ends of the whole buffer. The pass ends at the
 * first point whose span would reach beyond stop - 1 (and never passes
 * n - 1): returns the number of points written from start on.
 * Returns 0 when start = stop (checked first); -1 when start < 0, stop < 0,
 * start > stop - 1, or the aperture is even or below 3.
 * isPhase = 0: plain average, with a running sum while the width is unchanged
 * (its rounding drift is accepted). isPhase != 0: src holds radians; each
 * span is unwrapped against its preceding element before averaging, and the
 * mean is wrapped back into [-pi, pi].
 * src and dst must be different arrays.
 */
DSP_API int32_t vfpd_Smooth(const double *src, double *dst, int32_t n, int32_t start, int32_t stop,
                            int32_t aperture, int32_t isPhase);
/* Polar moving average of complex points, with the spans, checks and result
 * of vfpd_Smooth: the mean magnitude A and the mean of the angles atan2(re, im)
 * (real part first, not unwrapped) P give the point (A cos P, A sin P). A
 * span of width 1 (the first and last point of the buffer) therefore returns
 * the point with its real and imaginary parts exchanged. */
DSP_API int32_t vfpd_SmoothCpx(const double *src, double *dst, int32_t n, int32_t start,
                               int32_t stop, int32_t aperture);
/* phase[k] = unwrapped atan2(im, re) of complex point k, radians, for k in
 * [start, stop): a step below -pi or above pi from phase[k-1] is corrected by
 * a whole turn (a NaN step counts as below -pi). A call with start > 1
 * continues an unwrap of [0, start) held in phase: its turn count is
 * trunc((phase[start-1] - phase[0]) / 2pi), which is exact while the angle
 * of point start-1 lies, within its turn, on the same side of the angle of
 * point 0 as the unwrapped phase has moved (see docs/trace.md). start > stop
 * writes nothing. */
DSP_API void vfpd_UnwrapPhase(const double *cpx, int32_t start, int32_t stop, double *phase);

/* ------------------------------------------------------------------------- */
/* Floating-point control                                                    */
/* ------------------------------------------------------------------------- */

/*
 * The control word is shaped like the ARM VFP status and control register
 * FPSCR; the bits in use:
 *   0 IOC invalid, 1 DZC divide by zero, 2 OFC overflow, 3 UFC underflow,
 *   4 IXC inexact, 7 IDC input denormal  (cumulative exception flags)
 *   16..18 LEN   vector length field (the block forms leave it 0)
 *   22..23 RMode rounding: 0 nearest, 1 toward +inf, 2 toward -inf, 3 toward 0
 *   24 FZ        flush-to-zero
 *   25 DN        default NaN
 * On 32-bit ARM with a VFP this is the real FPSCR. On x86-64 it is built from
 * MXCSR: FZ <-> MXCSR FZ and DAZ (reads 1 when FZ is set; a write sets or
 * clears both), RMode <-> MXCSR RC, the flags <-> MXCSR IE, ZE, OE, UE, PE,
 * DE. DN and LEN have no x86 equivalent and are kept per thread, so a write
 * reads back; other bits read 0 and are ignored. On AArch64 RMode, FZ and DN
 * map to FPCR and the flags to FPSR; LEN is kept per thread. Elsewhere the
 * rounding mode and flags come from <fenv.h> and FZ, DN and LEN are only
 * kept per thread. See docs/fpscr.md.
 */
#define FPSCR_FLAGS_MASK 0x0000009Fu
#define FPSCR_LEN_MASK   0x00070000u
#define FPSCR_RMODE_MASK 0x00C00000u
#define FPSCR_FZ         0x01000000u
#define FPSCR_DN         0x02000000u
#define FPSCR_RUNFAST    0x03000000u

/* The current control word of the calling thread. */
DSP_API uint32_t get_fpscr(void);
/* Writes value as the whole control word; returns the previous word. */
DSP_API uint32_t set_fpscr(uint32_t value);
/* Sets (enable != 0) or clears (enable = 0) FZ and DN together; returns the
 * word written. */
DSP_API uint32_t set_runfast(int32_t enable);
/* Returns b | 0x38; a is ignored. */
DSP_API uint32_t testASM(uint32_t a, uint32_t b);

/* ------------------------------------------------------------------------- */
/* Error correction                                                          */
/* ------------------------------------------------------------------------- */

/*
 * Complex matrices, one-port and two-port correction of network-analyzer
 * measurements. Every complex array is interleaved (re, im) double pairs;
 * point (or element) k is at indices 2k and 2k + 1. The per-point functions
 * read and write only points start .. stop - 1, and the range must lie
 * within every array passed.
 *
 * Complex arithmetic: plain products; quotients by Smith's method, where a
 * zero divisor or one with a NaN part gives (NaN, NaN) and the sweep goes on
 * with the next point.
 *
 * Allocation: the matrix code keeps a process-wide cache of four released
 * storage records, emptied when the last matrix is released; nothing is left
 * allocated between calls. An allocation failure, or a matrix of more than
 * 0x0FFFFFFF elements (a negative dimension counts as one above 2^31), throws
 * std::bad_alloc with the message "bad allocation"; these functions do not
 * catch it, so a C++ caller sees it (the matrices in use are released while
 * it unwinds). Not safe to call from two threads at once.
 */

/* out = a x b for a (m x n) and b (n x p), both read row-major; out receives
 * the m x p product column-major: element (i, j) at index j * m + i. Each
 * element is summed from (0, 0) over k = 0 .. n - 1 in order. Returns m * p,
 * or -1 with out untouched when n * n > m * n (32-bit products), that is
 * when the inner dimension exceeds the rows of a. out must not overlap a or
 * b. */
DSP_API int32_t MatrixMult(const double *a, const double *b, double *out, int32_t m, int32_t n,
                           int32_t p);
/* Replaces the n x n row-major matrix a by its inverse (Gauss-Jordan with
 * partial row pivoting; the first of equal-magnitude pivots wins). Returns 1
 * on success, 0 when a column's best pivot magnitude is below
 * 2.220446049250313e-12 (or NaN): a is then left unchanged. n = 0 returns 1.
 * The floating-point control word is restored to its value at entry. */
DSP_API int32_t invert(double *a, int32_t n);

/* One-port error model: a raw reflection m of a true reflection g is
 *   m = D + R g / (1 - S g)
 * with D directivity, S source match and R reflection tracking. */

/* Solves the error terms from three standards of true reflections g0, g1, g2
 * (three distinct values per point, the caller's choice of standards) and
 * their measured reflections, given in m0, m1, m2. On return m0 holds D, m1
 * holds S and m2 holds R, point by point. A singular point (two equal
 * standards) is not reported: its terms are whatever the partly reduced
 * system gives. Returns 0. The floating-point control word is restored to
 * its value at entry. Its matrices are allocated once per call, not per
 * point. */
DSP_API int32_t Compute1PortTerms(double *m0, double *m1, double *m2, const double *g0,
                                  const double *g1, const double *g2, int32_t start, int32_t stop);
/* corrected = (m - D) / ((m - D) S + R) per point. corrected may be the
 * measured array. Returns stop - start (nothing is written when
 * start >= stop). */
DSP_API int32_t Correct1Port(const double *directivity, const double *sourceMatch,
                             const double *reflectionTracking, const double *measured,
                             double *corrected, int32_t start, int32_t stop);
/* Enhanced-response correction of a reflection m and a transmission s with
 * the one-port terms D, S, R, load match L and transmission tracking T:
 *   den = R + S (m - D),  t21 = (R s) / (T den),
 *   s11 = (m - D) / den, minus L t21^2 when useLoadMatch is nonzero.
 * Either output may be null and is then not written; an output may be the
 * measured array of the same kind. Returns stop - start (nothing is written when
 * start >= stop). */
DSP_API int32_t ApplyEnhancedResponse(const double *directivity, const double *sourceMatch,
                                      const double *reflectionTracking, const double *loadMatch,
                                      const double *transmissionTracking,
                                      const double *measuredReflection,
                                      const double *measuredTransmission,
                                      double *correctedReflection, double *correctedTransmission,
                                      int32_t start, int32_t stop, unsigned char useLoadMatch);
/* Two-port correction. Five groups of four arrays, each group the entries
 * 11, 12, 21, 22 of a 2 x 2 matrix: t tracking, e match, o offset
 * (directivity on the diagonal, isolation off it), m measured, c corrected.
 * Per point: N = (m - o) / t and D = N e + I, both element by element;
 * c = N x D^-1 (matrix product). A singular D is not reported (the partly
 * reduced matrix is used). o12, o21 may be null (zero isolation); any c may
 * be null (that entry is not written). Returns 0, writing nothing, when any
 * other array is null (checked first, even for an empty range); otherwise
 * stop - start. Every input of a point is read before its outputs are
 * written, so a corrected array may be any of the input arrays. */
DSP_API int32_t Correct2Port(const double *t11, const double *t12, const double *t21,
                             const double *t22, const double *e11, const double *e12,
                             const double *e21, const double *e22, const double *o11,
                             const double *o12, const double *o21, const double *o22,
                             const double *m11, const double *m12, const double *m21,
                             const double *m22, double *c11, double *c12, double *c21,
                             double *c22, int32_t start, int32_t stop);

#ifdef __cplusplus
} /* extern "C" */

#include <complex>

/* The same functions on arrays of std::complex<double>, whose layout is the
 * interleaved pair. */
namespace libdsp_vna_detail {
inline const double *pairs(const std::complex<double> *z) { return reinterpret_cast<const double *>(z); }
inline double *pairs(std::complex<double> *z) { return reinterpret_cast<double *>(z); }
}  // namespace libdsp_vna_detail

inline int32_t MatrixMult(const std::complex<double> *a, const std::complex<double> *b,
                          std::complex<double> *out, int32_t m, int32_t n, int32_t p)
{
    using libdsp_vna_detail::pairs;
    return MatrixMult(pairs(a), pairs(b), pairs(out), m, n, p);
}
inline int32_t invert(std::complex<double> *a, int32_t n)
{
    return invert(libdsp_vna_detail::pairs(a), n);
}
inline int32_t Compute1PortTerms(std::complex<double> *m0, std::complex<double> *m1,
                                 std::complex<double> *m2, const std::complex<double> *g0,
                                 const std::complex<double> *g1, const std::complex<double> *g2,
                                 int32_t start, int32_t stop)
{
    using libdsp_vna_detail::pairs;
    return Compute1PortTerms(pairs(m0), pairs(m1), pairs(m2), pairs(g0), pairs(g1), pairs(g2),
                             start, stop);
}
inline int32_t Correct1Port(const std::complex<double> *directivity,
                            const std::complex<double> *sourceMatch,
                            const std::complex<double> *reflectionTracking,
                            const std::complex<double> *measured, std::complex<double> *corrected,
                            int32_t start, int32_t stop)
{
    using libdsp_vna_detail::pairs;
    return Correct1Port(pairs(directivity), pairs(sourceMatch), pairs(reflectionTracking),
                        pairs(measured), pairs(corrected), start, stop);
}
inline int32_t ApplyEnhancedResponse(const std::complex<double> *directivity,
                                     const std::complex<double> *sourceMatch,
                                     const std::complex<double> *reflectionTracking,
                                     const std::complex<double> *loadMatch,
                                     const std::complex<double> *transmissionTracking,
                                     const std::complex<double> *measuredReflection,
                                     const std::complex<double> *measuredTransmission,
                                     std::complex<double> *correctedReflection,
                                     std::complex<double> *correctedTransmission, int32_t start,
                                     int32_t stop, unsigned char useLoadMatch)
{
    using libdsp_vna_detail::pairs;
    return ApplyEnhancedResponse(pairs(directivity), pairs(sourceMatch), pairs(reflectionTracking),
                                 pairs(loadMatch), pairs(transmissionTracking),
                                 pairs(measuredReflection), pairs(measuredTransmission),
                                 pairs(correctedReflection), pairs(correctedTransmission), start,
                                 stop, useLoadMatch);
}
inline int32_t Correct2Port(const std::complex<double> *t11, const std::complex<double> *t12,
                            const std::complex<double> *t21, const std::complex<double> *t22,
                            const std::complex<double> *e11, const std::complex<double> *e12,
                            const std::complex<double> *e21, const std::complex<double> *e22,
                            const std::complex<double> *o11, const std::complex<double> *o12,
                            const std::complex<double> *o21, const std::complex<double> *o22,
                            const std::complex<double> *m11, const std::complex<double> *m12,
                            const std::complex<double> *m21, const std::complex<double> *m22,
                            std::complex<double> *c11, std::complex<double> *c12,
                            std::complex<double> *c21, std::complex<double> *c22, int32_t start,
                            int32_t stop)
{
    using libdsp_vna_detail::pairs;
    return Correct2Port(pairs(t11), pairs(t12), pairs(t21), pairs(t22), pairs(e11), pairs(e12),
                        pairs(e21), pairs(e22), pairs(o11), pairs(o12), pairs(o21), pairs(o22),
                        pairs(m11), pairs(m12), pairs(m21), pairs(m22), pairs(c11), pairs(c12),
                        pairs(c21), pairs(c22), start, stop);
}

extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif /* LIBDSP_VNA_H */
