// The FPSCR-shaped control word on each host, and the exported control
// functions. Only 32-bit ARM with a VFP has the real register; elsewhere the
// word is assembled from the host's floating-point environment, and the bits
// the host lacks are kept per thread so that what is written reads back.
#include "trace/fpscr.hpp"

#include "libdsp_vna.h"

#if defined(__SSE2__)
#include <xmmintrin.h>
#elif !defined(__aarch64__) && !(defined(__arm__) && defined(__ARM_FP))
#include <cfenv>
#endif

namespace dsp_trace {
namespace {

#if defined(__SSE2__)

// Bits the x86 unit has no place for: default NaN and the vector length.
constexpr uint32_t kKeptBits = FPSCR_DN | FPSCR_LEN_MASK;
thread_local uint32_t kept_bits = 0;

constexpr uint32_t kMxcsrDaz = 1u << 6;
constexpr uint32_t kMxcsrFz = 1u << 15;
constexpr int kMxcsrRoundShift = 13;
constexpr int kFpscrRoundShift = 22;

// FPSCR flag bit -> MXCSR flag bit: invalid, divide by zero, overflow,
// underflow, inexact, input denormal.
struct FlagPair {
    uint32_t fpscr;
    uint32_t mxcsr;
};
constexpr FlagPair kFlagPairs[] = {
    {1u << 0, 1u << 0}, {1u << 1, 1u << 2}, {1u << 2, 1u << 3},
    {1u << 3, 1u << 4}, {1u << 4, 1u << 5}, {1u << 7, 1u << 1},
};
constexpr uint32_t kMxcsrFlags = 0x3fu;

// ARM numbers the directed modes +inf = 1, -inf = 2; x86 the other way
// round. Swapping the two bits converts in both directions.
constexpr uint32_t swap_round_bits(uint32_t mode) { return ((mode & 1u) << 1) | ((mode >> 1) & 1u); }

uint32_t host_read()
{
    uint32_t mx = _mm_getcsr();
    uint32_t word = kept_bits;
    for (const FlagPair &p : kFlagPairs)
        if (mx & p.mxcsr) word |= p.fpscr;
    word |= swap_round_bits((mx >> kMxcsrRoundShift) & 3u) << kFpscrRoundShift;
    if (mx & kMxcsrFz) word |= FPSCR_FZ;
    return word;
}

void host_write(uint32_t value)
{
    kept_bits = value & kKeptBits;
    // Exception masks (bits 7..12) stay as the host set them.
    uint32_t mx = _mm_getcsr() & ~(kMxcsrFlags | kMxcsrDaz | kMxcsrFz | (3u << kMxcsrRoundShift));
    for (const FlagPair &p : kFlagPairs)
        if (value & p.fpscr) mx |= p.mxcsr;
    mx |= swap_round_bits((value >> kFpscrRoundShift) & 3u) << kMxcsrRoundShift;
    // ARM's flush-to-zero flushes denormal inputs as well as results.
    if (value & FPSCR_FZ) mx |= kMxcsrFz | kMxcsrDaz;
    _mm_setcsr(mx);
}

#elif defined(__aarch64__)

// FPCR and FPSR share FPSCR's bit positions; only LEN is gone.
constexpr uint32_t kControlBits = FPSCR_RMODE_MASK | FPSCR_FZ | FPSCR_DN;
thread_local uint32_t kept_bits = 0;

uint32_t host_read()
{
    uint64_t fpcr, fpsr;
    __asm__ __volatile__("mrs %0, fpcr" : "=r"(fpcr));
    __asm__ __volatile__("mrs %0, fpsr" : "=r"(fpsr));
    return kept_bits | (static_cast<uint32_t>(fpcr) & kControlBits) |
           (static_cast<uint32_t>(fpsr) & FPSCR_FLAGS_MASK);
}

void host_write(uint32_t value)
{
    kept_bits = value & FPSCR_LEN_MASK;
    uint64_t fpcr, fpsr;
    __asm__ __volatile__("mrs %0, fpcr" : "=r"(fpcr));
    __asm__ __volatile__("mrs %0, fpsr" : "=r"(fpsr));
    fpcr = (fpcr & ~uint64_t{kControlBits}) | (value & kControlBits);
    fpsr = (fpsr & ~uint64_t{FPSCR_FLAGS_MASK}) | (value & FPSCR_FLAGS_MASK);
    __asm__ __volatile__("msr fpcr, %0" : : "r"(fpcr));
    __asm__ __volatile__("msr fpsr, %0" : : "r"(fpsr));
}

#elif defined(__arm__) && defined(__ARM_FP)

uint32_t host_read()
{
    uint32_t word;
    __asm__ __volatile__("vmrs %0, fpscr" : "=r"(word));
    return word;
}

void host_write(uint32_t value) { __asm__ __volatile__("vmsr fpscr, %0" : : "r"(value)); }

#else

// Portable: rounding and flags through <cfenv> where the host names them;
// flush-to-zero, default NaN, LEN and the input-denormal flag are only kept.
constexpr uint32_t kKeptBits = FPSCR_FZ | FPSCR_DN | FPSCR_LEN_MASK | (1u << 7);
thread_local uint32_t kept_bits = 0;

struct FlagPair {
    uint32_t fpscr;
    int fenv;
};
constexpr FlagPair kFlagPairs[] = {
#ifdef FE_INVALID
    {1u << 0, FE_INVALID},
#endif
#ifdef FE_DIVBYZERO
    {1u << 1, FE_DIVBYZERO},
#endif
#ifdef FE_OVERFLOW
    {1u << 2, FE_OVERFLOW},
#endif
#ifdef FE_UNDERFLOW
    {1u << 3, FE_UNDERFLOW},
#endif
#ifdef FE_INEXACT
    {1u << 4, FE_INEXACT},
#endif
    {0u, 0},
};

struct RoundPair {
    uint32_t fpscr_mode;
    int fenv;
};
constexpr RoundPair kRoundPairs[] = {
#ifdef FE_UPWARD
    {1u, FE_UPWARD},
#endif
#ifdef FE_DOWNWARD
    {2u, FE_DOWNWARD},
#endif
#ifdef FE_TOWARDZERO
    {3u, FE_TOWARDZERO},
#endif
#ifdef FE_TONEAREST
    {0u, FE_TONEAREST},
#endif
};

uint32_t host_read()
{
    uint32_t word = kept_bits;
    for (const FlagPair &p : kFlagPairs)
        if (p.fenv != 0 && std::fetestexcept(p.fenv)) word |= p.fpscr;
    int mode = std::fegetround();
    for (const RoundPair &r : kRoundPairs)
        if (r.fenv == mode) word |= r.fpscr_mode << 22;
    return word;
}

void host_write(uint32_t value)
{
    kept_bits = value & kKeptBits;
    for (const FlagPair &p : kFlagPairs) {
        if (p.fenv == 0) continue;
        if (value & p.fpscr)
            std::feraiseexcept(p.fenv);
        else
            std::feclearexcept(p.fenv);
    }
    uint32_t mode = (value & FPSCR_RMODE_MASK) >> 22;
    for (const RoundPair &r : kRoundPairs)
        if (r.fpscr_mode == mode) std::fesetround(r.fenv);
}

#endif

}  // namespace

uint32_t read_fpscr() { return host_read(); }

void write_fpscr(uint32_t value) { host_write(value); }

void clear_vector_length()
{
#if !defined(__SSE2__) && defined(__arm__) && defined(__ARM_FP)
    uint32_t word = host_read();
    if (word & FPSCR_LEN_MASK) host_write(word & ~FPSCR_LEN_MASK);
#else
    kept_bits &= ~FPSCR_LEN_MASK;
#endif
}

}  // namespace dsp_trace

uint32_t get_fpscr(void) { return dsp_trace::read_fpscr(); }

uint32_t set_fpscr(uint32_t value)
{
    uint32_t previous = dsp_trace::read_fpscr();
    dsp_trace::write_fpscr(value);
    return previous;
}

uint32_t set_runfast(int32_t enable)
{
    uint32_t word = dsp_trace::read_fpscr();
    word = enable ? (word | FPSCR_RUNFAST) : (word & ~FPSCR_RUNFAST);
    dsp_trace::write_fpscr(word);
    return word;
}

// Kept for callers that probe the library's presence: b with bits 3..5 set.
uint32_t testASM(uint32_t, uint32_t b) { return b | 0x38u; }
