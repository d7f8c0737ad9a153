// In-place scaling of a trace buffer by a constant. The plain forms are the
// portable loops; the block forms do the same multiplications with the
// host's vector unit where there is one (SSE2 on x86), so every element gets
// the very same rounded product.
#include "libdsp_vna.h"
#include "trace/fpscr.hpp"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

void vfpsbMul1(float k, float *buf, int32_t n)
{
    for (int32_t i = 0; i < n; ++i) buf[i] = buf[i] * k;
}

void vfpdbMul1(double k, double *buf, int32_t n)
{
    for (int32_t i = 0; i < n; ++i) buf[i] = buf[i] * k;
}

void vfpsbMul2(float k, float *buf, int32_t n)
{
    if (n <= 0) return;
    int32_t i = 0;
#if defined(__SSE2__)
    const __m128 factor = _mm_set1_ps(k);
    for (; i + 8 <= n; i += 8) {
        __m128 a = _mm_loadu_ps(buf + i);
        __m128 b = _mm_loadu_ps(buf + i + 4);
        _mm_storeu_ps(buf + i, _mm_mul_ps(a, factor));
        _mm_storeu_ps(buf + i + 4, _mm_mul_ps(b, factor));
    }
#endif
    vfpsbMul1(k, buf + i, n - i);
    dsp_trace::clear_vector_length();
}

void vfpdbMul2(double k, double *buf, int32_t n)
{
    if (n <= 0) return;
    int32_t i = 0;
#if defined(__SSE2__)
    const __m128d factor = _mm_set1_pd(k);
    for (; i + 4 <= n; i += 4) {
        __m128d a = _mm_loadu_pd(buf + i);
        __m128d b = _mm_loadu_pd(buf + i + 2);
        _mm_storeu_pd(buf + i, _mm_mul_pd(a, factor));
        _mm_storeu_pd(buf + i + 2, _mm_mul_pd(b, factor));
    }
#endif
    vfpdbMul1(k, buf + i, n - i);
    dsp_trace::clear_vector_length();
}
