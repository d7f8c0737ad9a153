// The SSE2 complex kernel, the x86-64 baseline: one point per register.
#if defined(__x86_64__)

#include "spectral/kernels.hpp"
#include "spectral/real_untangle.hpp"
#include "spectral/split_radix.hpp"
#include "spectral/sse2_ops.hpp"

namespace dsp_spectral {

void sse2_kernel(double *x, int bits, const TwiddleLevels &tw, bool inverse)
{
    SplitRadix<Sse2Ops<false>, Sse2Ops<false>>::transform(x, bits, tw, inverse);
}

void sse2_untangle(double *x, int32_t h, const Twiddles &tw)
{
    RealUntangle<Sse2Ops<false>, Sse2Ops<false>>::run(x, h, tw);
}

}  // namespace dsp_spectral

#endif
