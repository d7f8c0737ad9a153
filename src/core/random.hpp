// The library's random source: the C runtime's rand(), seeded once on first
// use from the millisecond clock. Shared by shuffling and the generators.
#pragma once

#include <cstdint>

namespace dsp_core {

// Milliseconds of a monotonic clock (the tick count of the seed).
uint32_t tick_count_ms();

// Seeds rand() on the first draw of any kind; never reseeds.
void ensure_random_seeded();

// A non-negative 31-bit integer from three rand() draws: bits 16-30 from the
// first draw's low 15 bits, bit 15 from the second's lowest bit, bits 0-14
// from the third's low 15 bits.
int32_t random31();

}  // namespace dsp_core
