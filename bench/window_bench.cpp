// Windowing a 4096-point record with a cached catalogue window, against a
// plain multiply loop over std::vector. Both refill their signal with ones
// every 32 passes, so that repeated products neither underflow into
// subnormals nor grow without bound.
#include "libdsp.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kPoints = 4096;
constexpr int kRefillEvery = 32;

void BM_WindowCachedHann4096(benchmark::State &state, int flags)
{
    dsp s;
    dsp_init(&s);
    s.points = kPoints;
    if (dsp_alloc(&s) != 0) {
        state.SkipWithError("allocation failed");
        return;
    }
    std::fill(s.data, s.data + kPoints, 1.0);
    dspi_window(&s, DSP_WINDOW_HANN, flags);  // builds the cached window
    int pass = 0;
    for (auto _ : state) {
        if (++pass == kRefillEvery) {
            std::fill(s.data, s.data + kPoints, 1.0);
            pass = 0;
        }
        benchmark::DoNotOptimize(dspi_window(&s, DSP_WINDOW_HANN, flags));
        benchmark::ClobberMemory();
    }
    dsp_destroy(&s);
    dsp_free_internal();
}

void BM_PlainMultiply4096(benchmark::State &state)
{
    std::vector<double> w(kPoints);
    for (int i = 0; i < kPoints; ++i) w[i] = 0.5 - 0.5 * std::cos(6.283185307179586 * i / kPoints);
    std::vector<double> x(kPoints, 1.0);
    int pass = 0;
    for (auto _ : state) {
        if (++pass == kRefillEvery) {
            std::fill(x.begin(), x.end(), 1.0);
            pass = 0;
        }
        for (int i = 0; i < kPoints; ++i) x[i] *= w[i];
        benchmark::DoNotOptimize(x.data());
        benchmark::ClobberMemory();
    }
}

}  // namespace

BENCHMARK_CAPTURE(BM_WindowCachedHann4096, unrotated, DSP_WINDOW_SCALE_NONE | DSP_WINDOW_NO_ROTATE);
BENCHMARK_CAPTURE(BM_WindowCachedHann4096, rotated, DSP_WINDOW_SCALE_NONE);
BENCHMARK(BM_PlainMultiply4096);
