// Release step of the process-wide window cache (see dsp_free_internal).
#pragma once

#include <cstdint>

namespace dsp_window {

// Destroys every cached window and frees the cache; the next windowing call
// starts an empty one. Harmless when the cache is already empty.
int32_t release_window_cache();

}  // namespace dsp_window
