// Release steps of the process-wide caches. Each frees its cache and marks it
// empty, so the next use rebuilds it and a second release does nothing.
#pragma once

#include <cstdint>

namespace dsp_core {

using ReleaseStep = int32_t (*)();

}  // namespace dsp_core
