// Choice of the complex kernel: the widest variant the processor supports,
// decided once on first use.
#include "spectral/kernels.hpp"

namespace dsp_spectral {
namespace {

bool path_supported(KernelPath path)
{
    switch (path) {
    case KernelPath::portable: return true;
#if defined(__x86_64__)
    case KernelPath::sse2: return true;
    case KernelPath::avx2: return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
#else
    default: return false;
#endif
    }
    return false;
}

const Kernels portable_set = {portable_kernel, portable_untangle, portable_reverse, portable_reverse_scaled};
#if defined(__x86_64__)
const Kernels sse2_set = {sse2_kernel, sse2_untangle, sse2_reverse, sse2_reverse_scaled};
const Kernels avx2_set = {avx2_kernel, avx2_untangle, avx2_reverse, avx2_reverse_scaled};
#endif

const Kernels &kernels_of(KernelPath path)
{
    switch (path) {
#if defined(__x86_64__)
    case KernelPath::sse2: return sse2_set;
    case KernelPath::avx2: return avx2_set;
#endif
    default: return portable_set;
    }
}

KernelPath widest_path()
{
    if (path_supported(KernelPath::avx2)) return KernelPath::avx2;
    if (path_supported(KernelPath::sse2)) return KernelPath::sse2;
    return KernelPath::portable;
}

bool chosen = false;
KernelPath current = KernelPath::portable;

void choose_once()
{
    if (chosen) return;
    current = widest_path();
    chosen = true;
}

}  // namespace

const Kernels &kernels()
{
    choose_once();
    return kernels_of(current);
}

KernelPath active_kernel_path()
{
    choose_once();
    return current;
}

bool select_kernel_path(KernelPath path)
{
    if (!path_supported(path)) return false;
    current = path;
    chosen = true;
    return true;
}

}  // namespace dsp_spectral
