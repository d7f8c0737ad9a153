// The SSE2 complex kernel, the x86-64 baseline: one point per register.
#if defined(__x86_64__)

#include "spectral/kernels.hpp"
#include "spectral/split_radix.hpp"
#include "spectral/sse2_ops.hpp"

namespace dsp_spectral {

void sse2_kernel(double *x, int bits, const TwiddleLevels &tw, bool inverse)
{
    SplitRadix<Sse2Ops<false>, Sse2Ops<false>>::transform(x, bits, tw, inverse);
}

}  // namespace dsp_spectral

#endif
