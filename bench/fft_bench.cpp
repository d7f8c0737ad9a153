// FFT speed against FFTW 3 and KissFFT: complex forward transforms and
// real-input transforms, 2^6 .. 2^20 points.
//
// Every iteration copies the same input into the work buffer and transforms
// it there, for every library alike (an in-place transform repeated on its
// own output would drift towards denormal numbers); BM_copy_input times that
// copy alone. libdsp's time includes what its transform promises: the 1/N
// scaling and natural-order output. FFTW plans with FFTW_MEASURE before the
// timing starts and returns unscaled output. Debian's KissFFT is built for
// single precision only, so its figures are for float data.
#include "libdsp.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <vector>

#if defined(LIBDSP_HAVE_FFTW)
#include <fftw3.h>
#endif
#if defined(LIBDSP_HAVE_KISSFFT)
#include <kiss_fft.h>
#include <kiss_fftr.h>
#endif

namespace {

std::vector<double> bench_input(std::size_t count)
{
    std::mt19937_64 gen(7);
    std::uniform_real_distribution<double> dist(-1.0, 1.0);
    std::vector<double> v(count);
    for (double &d : v) d = dist(gen);
    return v;
}

void set_rate(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations());
    state.counters["points"] = static_cast<double>(state.range(0));
}

void BM_copy_input(benchmark::State &state)
{
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    const std::vector<double> input = bench_input(2 * n);
    std::vector<double> work(2 * n);
    for (auto _ : state) {
        std::memcpy(work.data(), input.data(), 2 * n * sizeof(double));
        benchmark::DoNotOptimize(work.data());
        benchmark::ClobberMemory();
    }
    set_rate(state);
}

void BM_libdsp_complex(benchmark::State &state)
{
    const int32_t n = static_cast<int32_t>(state.range(0));
    const std::vector<double> input = bench_input(2 * static_cast<std::size_t>(n));
    dsp s;
    dsp_init(&s);
    s.points = n;
    s.complex = 1;
    dsp_alloc(&s);
    std::memcpy(s.data, input.data(), input.size() * sizeof(double));
    dspi_fft(&s, 0);  // builds the tables outside the timing
    for (auto _ : state) {
        std::memcpy(s.data, input.data(), input.size() * sizeof(double));
        s.delta = 1.0;
        dspi_fft(&s, 0);
        benchmark::DoNotOptimize(s.data);
        benchmark::ClobberMemory();
    }
    dsp_destroy(&s);
    set_rate(state);
}

void BM_libdsp_real(benchmark::State &state)
{
    const int32_t n = static_cast<int32_t>(state.range(0));
    const std::vector<double> input = bench_input(static_cast<std::size_t>(n));
    dsp s;
    dsp_init(&s);
    s.points = n / 2 + 1;
    s.complex = 1;
    dsp_alloc(&s);
    for (auto _ : state) {
        s.points = n;
        s.complex = 0;
        s.delta = 1.0;
        std::memcpy(s.data, input.data(), input.size() * sizeof(double));
        dspi_rfft(&s);
        benchmark::DoNotOptimize(s.data);
        benchmark::ClobberMemory();
    }
    dsp_destroy(&s);
    set_rate(state);
}

#if defined(LIBDSP_HAVE_FFTW)
void BM_fftw_complex(benchmark::State &state)
{
    const int n = static_cast<int>(state.range(0));
    const std::vector<double> input = bench_input(2 * static_cast<std::size_t>(n));
    auto *buf = static_cast<fftw_complex *>(fftw_malloc(sizeof(fftw_complex) * n));
    fftw_plan plan = fftw_plan_dft_1d(n, buf, buf, FFTW_FORWARD, FFTW_MEASURE);
    for (auto _ : state) {
        std::memcpy(buf, input.data(), input.size() * sizeof(double));
        fftw_execute(plan);
        benchmark::DoNotOptimize(buf);
        benchmark::ClobberMemory();
    }
    fftw_destroy_plan(plan);
    fftw_free(buf);
    set_rate(state);
}

void BM_fftw_real(benchmark::State &state)
{
    const int n = static_cast<int>(state.range(0));
    const std::vector<double> input = bench_input(static_cast<std::size_t>(n));
    auto *in = static_cast<double *>(fftw_malloc(sizeof(double) * n));
    auto *out = static_cast<fftw_complex *>(fftw_malloc(sizeof(fftw_complex) * (n / 2 + 1)));
    fftw_plan plan = fftw_plan_dft_r2c_1d(n, in, out, FFTW_MEASURE);
    for (auto _ : state) {
        std::memcpy(in, input.data(), input.size() * sizeof(double));
        fftw_execute(plan);
        benchmark::DoNotOptimize(out);
        benchmark::ClobberMemory();
    }
    fftw_destroy_plan(plan);
    fftw_free(in);
    fftw_free(out);
    set_rate(state);
}
#endif

#if defined(LIBDSP_HAVE_KISSFFT)
void BM_kissfft_float_complex(benchmark::State &state)
{
    const int n = static_cast<int>(state.range(0));
    const std::vector<double> values = bench_input(2 * static_cast<std::size_t>(n));
    std::vector<kiss_fft_cpx> input(n), in(n), out(n);
    for (int i = 0; i < n; ++i) input[i] = kiss_fft_cpx{static_cast<float>(values[2 * i]), static_cast<float>(values[2 * i + 1])};
    kiss_fft_cfg cfg = kiss_fft_alloc(n, 0, nullptr, nullptr);
    for (auto _ : state) {
        std::memcpy(in.data(), input.data(), n * sizeof(kiss_fft_cpx));
        kiss_fft(cfg, in.data(), out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    kiss_fft_free(cfg);
    set_rate(state);
}

void BM_kissfft_float_real(benchmark::State &state)
{
    const int n = static_cast<int>(state.range(0));
    const std::vector<double> values = bench_input(static_cast<std::size_t>(n));
    std::vector<float> input(values.begin(), values.end()), in(n);
    std::vector<kiss_fft_cpx> out(n / 2 + 1);
    kiss_fftr_cfg cfg = kiss_fftr_alloc(n, 0, nullptr, nullptr);
    for (auto _ : state) {
        std::memcpy(in.data(), input.data(), n * sizeof(float));
        kiss_fftr(cfg, in.data(), out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    kiss_fftr_free(cfg);
    set_rate(state);
}
#endif

constexpr int64_t kSmallest = int64_t{1} << 6;
constexpr int64_t kLargest = int64_t{1} << 20;

}  // namespace

BENCHMARK(BM_copy_input)->RangeMultiplier(2)->Range(kSmallest, kLargest);
BENCHMARK(BM_libdsp_complex)->RangeMultiplier(2)->Range(kSmallest, kLargest);
BENCHMARK(BM_libdsp_real)->RangeMultiplier(2)->Range(kSmallest, kLargest);
#if defined(LIBDSP_HAVE_FFTW)
BENCHMARK(BM_fftw_complex)->RangeMultiplier(2)->Range(kSmallest, kLargest);
BENCHMARK(BM_fftw_real)->RangeMultiplier(2)->Range(kSmallest, kLargest);
#endif
#if defined(LIBDSP_HAVE_KISSFFT)
BENCHMARK(BM_kissfft_float_complex)->RangeMultiplier(2)->Range(kSmallest, kLargest);
BENCHMARK(BM_kissfft_float_real)->RangeMultiplier(2)->Range(kSmallest, kLargest);
#endif
