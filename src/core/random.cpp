#include "core/random.hpp"

#include <cstdlib>
#include <ctime>

namespace dsp_core {
namespace {
bool random_seeded = false;
uint32_t random_seed_count = 0;
}  // namespace

uint32_t tick_count_ms()
{
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<uint32_t>(static_cast<uint64_t>(ts.tv_sec) * 1000u +
                                 static_cast<uint64_t>(ts.tv_nsec) / 1000000u);
}

void ensure_random_seeded()
{
    if (random_seeded) return;
    std::srand(tick_count_ms() + random_seed_count);
    ++random_seed_count;
    random_seeded = true;
}

int32_t random31()
{
    ensure_random_seeded();
    int32_t r1 = std::rand();
    int32_t r2 = std::rand();
    int32_t r3 = std::rand();
    return (((r1 & 0x7fff) << 1 | (r2 & 1)) << 15) | (r3 & 0x7fff);
}

}  // namespace dsp_core
