// Linear mapping of a trace onto integer screen units or another double
// range. Plain forms are the portable loops; the block forms run the same
// operations, in the same order, four or eight elements at a time with SSE2.
#include "libdsp_vna.h"
#include "trace/fpscr.hpp"

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

// (outHi - outLo) / (hi - lo) in the working precision T. The integer span
// is formed exactly, so outLo = INT32_MIN, outHi = INT32_MAX cannot wrap,
// and is rounded once to T.
template <typename T>
T mapping_scale(T lo, T hi, int32_t outLo, int32_t outHi)
{
    T span = static_cast<T>(static_cast<int64_t>(outHi) - static_cast<int64_t>(outLo));
    return span / (hi - lo);
}

// Truncation toward zero that saturates instead of overflowing; NaN gives 0.
template <typename T>
int32_t saturating_trunc(T v)
{
    if (v != v) return 0;
    if (v >= static_cast<T>(2147483648.0)) return INT32_MAX;
    if (v <= static_cast<T>(-2147483649.0)) return INT32_MIN;
    return static_cast<int32_t>(v);
}

// The product is rounded before the addition (no fused multiply-add).
template <typename T>
void scale_to_int(const T *src, int32_t n, T lo, T hi, int32_t *dst, int32_t outLo, int32_t outHi)
{
    if (n <= 0) return;
    const T scale = mapping_scale(lo, hi, outLo, outHi);
    const T offset = static_cast<T>(outLo);
    for (int32_t i = 0; i < n; ++i) {
        T product = (src[i] - lo) * scale;
        dst[i] = saturating_trunc(product + offset);
    }
}

#if defined(__SSE2__)
// The SSE2 conversion gives INT32_MIN for NaN and for anything out of range.
// That value is rare in a trace, so it is looked for first; where it shows,
// flipping every bit where v >= 2^31 turns it into INT32_MAX, and masking
// with "v is ordered" turns NaN into 0: the scalar rules exactly.
inline bool any_indefinite(__m128i converted)
{
    return _mm_movemask_epi8(_mm_cmpeq_epi32(converted, _mm_set1_epi32(INT32_MIN))) != 0;
}

inline __m128i fix_conversion(__m128i converted, __m128 too_big, __m128 ordered)
{
    converted = _mm_xor_si128(converted, _mm_castps_si128(too_big));
    return _mm_and_si128(converted, _mm_castps_si128(ordered));
}

// Lanes 0 and 2 of two double masks, as four 32-bit lanes.
inline __m128 narrow_masks(__m128d low, __m128d high)
{
    return _mm_shuffle_ps(_mm_castpd_ps(low), _mm_castpd_ps(high), _MM_SHUFFLE(2, 0, 2, 0));
}
#endif

}  // namespace

void vfpsb_ScaleToInt(const float *src, int32_t n, float lo, float hi, int32_t *dst, int32_t outLo,
                      int32_t outHi)
{
    scale_to_int(src, n, lo, hi, dst, outLo, outHi);
}

void vfpdb_ScaleToInt(const double *src, int32_t n, double lo, double hi, int32_t *dst,
                      int32_t outLo, int32_t outHi)
{
    scale_to_int(src, n, lo, hi, dst, outLo, outHi);
}

void vfpsb_ScaleToInt2(const float *src, int32_t n, float lo, float hi, int32_t *dst, int32_t outLo,
                       int32_t outHi)
{
    if (n <= 0) return;
    int32_t i = 0;
#if defined(__SSE2__)
    const __m128 low = _mm_set1_ps(lo);
    const __m128 scale = _mm_set1_ps(mapping_scale(lo, hi, outLo, outHi));
    const __m128 offset = _mm_set1_ps(static_cast<float>(outLo));
    const __m128 limit = _mm_set1_ps(2147483648.0f);
    for (; i + 4 <= n; i += 4) {
        __m128 v = _mm_add_ps(_mm_mul_ps(_mm_sub_ps(_mm_loadu_ps(src + i), low), scale), offset);
        __m128i r = _mm_cvttps_epi32(v);
        if (any_indefinite(r)) r = fix_conversion(r, _mm_cmpge_ps(v, limit), _mm_cmpord_ps(v, v));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(dst + i), r);
    }
#endif
    scale_to_int(src + i, n - i, lo, hi, dst + i, outLo, outHi);
    dsp_trace::clear_vector_length();
}

void vfpdb_ScaleToInt2(const double *src, int32_t n, double lo, double hi, int32_t *dst,
                       int32_t outLo, int32_t outHi)
{
    if (n <= 0) return;
    int32_t i = 0;
#if defined(__SSE2__)
    const __m128d low = _mm_set1_pd(lo);
    const __m128d scale = _mm_set1_pd(mapping_scale(lo, hi, outLo, outHi));
    const __m128d offset = _mm_set1_pd(static_cast<double>(outLo));
    const __m128d limit = _mm_set1_pd(2147483648.0);
    for (; i + 4 <= n; i += 4) {
        __m128d v0 = _mm_add_pd(_mm_mul_pd(_mm_sub_pd(_mm_loadu_pd(src + i), low), scale), offset);
        __m128d v1 = _mm_add_pd(_mm_mul_pd(_mm_sub_pd(_mm_loadu_pd(src + i + 2), low), scale), offset);
        __m128i r = _mm_unpacklo_epi64(_mm_cvttpd_epi32(v0), _mm_cvttpd_epi32(v1));
        if (any_indefinite(r))
            r = fix_conversion(r, narrow_masks(_mm_cmpge_pd(v0, limit), _mm_cmpge_pd(v1, limit)),
                               narrow_masks(_mm_cmpord_pd(v0, v0), _mm_cmpord_pd(v1, v1)));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(dst + i), r);
    }
#endif
    scale_to_int(src + i, n - i, lo, hi, dst + i, outLo, outHi);
    dsp_trace::clear_vector_length();
}

void vfpdb_ScaleToFP(const double *src, int32_t n, double lo, double hi, double *dst, double outLo,
                     double outHi)
{
    if (n <= 0) return;
    const double scale = (outHi - outLo) / (hi - lo);
    for (int32_t i = 0; i < n; ++i) {
        double product = (src[i] - lo) * scale;
        dst[i] = product + outLo;
    }
}
