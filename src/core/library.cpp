// Library-wide housekeeping entry points.
#include "core/caches.hpp"
#include "libdsp.h"
#include "spectral/fft_tables.hpp"
#include "window/cache.hpp"

namespace {

// The caches are released in a fixed order, and a failing step stops the
// ones after it. A family that has no cache yet leaves its slot empty.
const dsp_core::ReleaseStep release_steps[] = {
    nullptr,  // filtering scratch records
    nullptr,  // resampler scratch record
    dsp_spectral::release_bitrev_tables,  // FFT bit-reversal tables
    nullptr,  // transform scratch record and buffer beside the DCT
    nullptr,  // DFT cached records
    nullptr,  // filter destination helper's scratch records
    dsp_spectral::release_twiddle_tables,  // FFT twiddle tables
    dsp_window::release_window_cache,  // window cache
};

}  // namespace

extern "C" {

int32_t dsp_lib_init(void) { return 0; }

int32_t dsp_free_internal(void)
{
    for (dsp_core::ReleaseStep step : release_steps) {
        if (step && step() < 0) return -1;
    }
    return 0;
}

int32_t dsp_version(void) { return 205; }

}  // extern "C"
