// The floating-point control word in the shape of the ARM VFP FPSCR, on
// every host. The exported get_fpscr/set_fpscr/set_runfast are thin wrappers
// over these; other families use them to save the caller's word on entry and
// write it back before returning. The bit layout is in libdsp_vna.h.
#pragma once

#include <cstdint>

namespace dsp_trace {

// The calling thread's control word.
uint32_t read_fpscr();
// Writes the whole control word of the calling thread.
void write_fpscr(uint32_t value);
// Clears the vector-length field, as the block forms do before returning.
void clear_vector_length();

}  // namespace dsp_trace
