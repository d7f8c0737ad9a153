// Trace routines on 1M-point buffers against plain C++ loops doing the same
// job: std::max_element / std::min_element for the searches, a loop calling
// log10 for the log-magnitude format, and a plain scaling loop for the
// mappings. Ratios are libdsp time over baseline time (below 1 is faster).
#include "libdsp_vna.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace {

constexpr int32_t kPoints = 1 << 20;

// A noisy trace: a slow ripple under Gaussian noise, as a sweep looks.
const std::vector<double> &trace()
{
    static const std::vector<double> data = [] {
        std::mt19937 rng(1);
        std::normal_distribution<double> noise(0.0, 0.5);
        std::vector<double> v(kPoints);
        for (int32_t i = 0; i < kPoints; ++i) v[i] = -30.0 + 3.0 * std::sin(i * 1e-4) + noise(rng);
        return v;
    }();
    return data;
}

const std::vector<float> &trace_f()
{
    static const std::vector<float> data(trace().begin(), trace().end());
    return data;
}

// Reflection coefficients inside the unit circle.
const std::vector<double> &reflection()
{
    static const std::vector<double> data = [] {
        std::mt19937 rng(2);
        std::uniform_real_distribution<double> u(-0.7, 0.7);
        std::vector<double> v(2 * static_cast<std::size_t>(kPoints));
        for (double &x : v) x = u(rng);
        return v;
    }();
    return data;
}

void set_items(benchmark::State &state) { state.SetItemsProcessed(state.iterations() * kPoints); }

// Searches -----------------------------------------------------------------

void BM_FindMax_libdsp(benchmark::State &state)
{
    const double *buf = trace().data();
    for (auto _ : state) benchmark::DoNotOptimize(vfpd_FindMax(buf, 0, kPoints));
    set_items(state);
}
BENCHMARK(BM_FindMax_libdsp);

void BM_FindMax_std_max_element(benchmark::State &state)
{
    const std::vector<double> &v = trace();
    for (auto _ : state) benchmark::DoNotOptimize(std::max_element(v.begin(), v.end()));
    set_items(state);
}
BENCHMARK(BM_FindMax_std_max_element);

void BM_FindMin_libdsp(benchmark::State &state)
{
    const double *buf = trace().data();
    for (auto _ : state) benchmark::DoNotOptimize(vfpd_FindMin(buf, 0, kPoints));
    set_items(state);
}
BENCHMARK(BM_FindMin_libdsp);

void BM_FindMin_std_min_element(benchmark::State &state)
{
    const std::vector<double> &v = trace();
    for (auto _ : state) benchmark::DoNotOptimize(std::min_element(v.begin() + 1, v.end()));
    set_items(state);
}
BENCHMARK(BM_FindMin_std_min_element);

void BM_FindMax2_libdsp(benchmark::State &state)
{
    const double *buf = trace().data();
    for (auto _ : state) benchmark::DoNotOptimize(vfpd_FindMax2(buf, 0, kPoints, kPoints / 2 - 500, kPoints / 2 + 500));
    set_items(state);
}
BENCHMARK(BM_FindMax2_libdsp);

// The same search as two std::max_element calls around the excluded span.
void BM_FindMax2_std_max_element(benchmark::State &state)
{
    const std::vector<double> &v = trace();
    for (auto _ : state) {
        auto left = std::max_element(v.begin(), v.begin() + kPoints / 2 - 500);
        auto right = std::max_element(v.begin() + kPoints / 2 + 500, v.end());
        benchmark::DoNotOptimize(*right > *left ? right : left);
    }
    set_items(state);
}
BENCHMARK(BM_FindMax2_std_max_element);

void BM_FindMinMax_libdsp(benchmark::State &state)
{
    const double *buf = trace().data();
    int32_t max_index = 0, min_index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(vfpd_FindMinMax(buf, 0, kPoints, &max_index, &min_index));
        benchmark::DoNotOptimize(max_index);
        benchmark::DoNotOptimize(min_index);
    }
    set_items(state);
}
BENCHMARK(BM_FindMinMax_libdsp);

void BM_FindMinMax_std_minmax_element(benchmark::State &state)
{
    const std::vector<double> &v = trace();
    for (auto _ : state) benchmark::DoNotOptimize(std::minmax_element(v.begin(), v.end()));
    set_items(state);
}
BENCHMARK(BM_FindMinMax_std_minmax_element);

// Log-magnitude format -------------------------------------------------------

void BM_FormatLogMag_libdsp(benchmark::State &state)
{
    const double *cpx = reflection().data();
    std::vector<double> out(kPoints);
    for (auto _ : state) {
        vfpd_FormatBuffer(VFPD_FORMAT_LOG_MAG, cpx, out.data(), 0, kPoints);
        benchmark::ClobberMemory();
    }
    set_items(state);
}
BENCHMARK(BM_FormatLogMag_libdsp);

void BM_FormatLogMag_plain_log10_loop(benchmark::State &state)
{
    const double *cpx = reflection().data();
    std::vector<double> out(kPoints);
    for (auto _ : state) {
        for (int32_t k = 0; k < kPoints; ++k) {
            double re = cpx[2 * k], im = cpx[2 * k + 1];
            out[k] = 10.0 * std::log10(re * re + im * im);
        }
        benchmark::ClobberMemory();
    }
    set_items(state);
}
BENCHMARK(BM_FormatLogMag_plain_log10_loop);

// Mapping to screen units ----------------------------------------------------

template <typename T, void (*Map)(const T *, int32_t, T, T, int32_t *, int32_t, int32_t)>
void BM_ScaleToInt(benchmark::State &state, const std::vector<T> &src)
{
    std::vector<int32_t> out(kPoints);
    for (auto _ : state) {
        Map(src.data(), kPoints, T(-40), T(-20), out.data(), 0, 479);
        benchmark::ClobberMemory();
    }
    set_items(state);
}

template <typename T>
void BM_ScaleToInt_plain_loop(benchmark::State &state, const std::vector<T> &src)
{
    std::vector<int32_t> out(kPoints);
    const T lo = T(-40), scale = T(479) / (T(-20) - lo), offset = T(0);
    for (auto _ : state) {
        for (int32_t i = 0; i < kPoints; ++i) out[i] = static_cast<int32_t>((src[i] - lo) * scale + offset);
        benchmark::ClobberMemory();
    }
    set_items(state);
}

void BM_ScaleToInt_double_libdsp(benchmark::State &s) { BM_ScaleToInt<double, vfpdb_ScaleToInt>(s, trace()); }
void BM_ScaleToInt_double_libdsp_block(benchmark::State &s) { BM_ScaleToInt<double, vfpdb_ScaleToInt2>(s, trace()); }
void BM_ScaleToInt_double_plain_loop(benchmark::State &s) { BM_ScaleToInt_plain_loop<double>(s, trace()); }
void BM_ScaleToInt_float_libdsp(benchmark::State &s) { BM_ScaleToInt<float, vfpsb_ScaleToInt>(s, trace_f()); }
void BM_ScaleToInt_float_libdsp_block(benchmark::State &s) { BM_ScaleToInt<float, vfpsb_ScaleToInt2>(s, trace_f()); }
void BM_ScaleToInt_float_plain_loop(benchmark::State &s) { BM_ScaleToInt_plain_loop<float>(s, trace_f()); }
BENCHMARK(BM_ScaleToInt_double_libdsp);
BENCHMARK(BM_ScaleToInt_double_libdsp_block);
BENCHMARK(BM_ScaleToInt_double_plain_loop);
BENCHMARK(BM_ScaleToInt_float_libdsp);
BENCHMARK(BM_ScaleToInt_float_libdsp_block);
BENCHMARK(BM_ScaleToInt_float_plain_loop);

}  // namespace
