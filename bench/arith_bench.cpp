// Element-wise operations and sums on records against plain loops over
// std::vector in the same run (the physical baseline).
#include "libdsp.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

namespace {

struct Records {
    dsp a, b, r;
    explicit Records(int32_t n, bool complex_flag)
    {
        for (dsp *s : {&a, &b, &r}) {
            dsp_init(s);
            s->points = n;
            s->complex = complex_flag;
            dsp_alloc(s);
        }
        const std::size_t doubles = static_cast<std::size_t>(n) * (complex_flag ? 2 : 1);
        for (std::size_t i = 0; i < doubles; ++i) {
            a.data[i] = 1.0 + 1e-3 * static_cast<double>(i % 977);
            b.data[i] = 2.0 - 1e-3 * static_cast<double>(i % 613);
        }
    }
    ~Records()
    {
        for (dsp *s : {&a, &b, &r}) dsp_destroy(s);
    }
};

std::vector<double> filled(std::size_t n, double base, double step)
{
    std::vector<double> v(n);
    for (std::size_t i = 0; i < n; ++i) v[i] = base + step * static_cast<double>(i % 977);
    return v;
}

void BM_AddRealRecord(benchmark::State &state)
{
    Records rec(static_cast<int32_t>(state.range(0)), false);
    for (auto _ : state) {
        dspb_add(&rec.a, &rec.b, &rec.r);
        benchmark::DoNotOptimize(rec.r.data);
        benchmark::ClobberMemory();
    }
}

void BM_AddRealLoop(benchmark::State &state)
{
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::vector<double> a = filled(n, 1.0, 1e-3), b = filled(n, 2.0, -1e-3), r(n);
    for (auto _ : state) {
        for (std::size_t i = 0; i < n; ++i) r[i] = a[i] + b[i];
        benchmark::DoNotOptimize(r.data());
        benchmark::ClobberMemory();
    }
}

void BM_MulComplexRecord(benchmark::State &state)
{
    Records rec(static_cast<int32_t>(state.range(0)), true);
    for (auto _ : state) {
        dspb_mul(&rec.a, &rec.b, &rec.r);
        benchmark::DoNotOptimize(rec.r.data);
        benchmark::ClobberMemory();
    }
}

void BM_MulComplexLoop(benchmark::State &state)
{
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::vector<double> a = filled(2 * n, 1.0, 1e-3), b = filled(2 * n, 2.0, -1e-3), r(2 * n);
    for (auto _ : state) {
        for (std::size_t i = 0; i < n; ++i) {
            const double x = a[2 * i], y = a[2 * i + 1], u = b[2 * i], v = b[2 * i + 1];
            r[2 * i] = x * u - y * v;
            r[2 * i + 1] = y * u + x * v;
        }
        benchmark::DoNotOptimize(r.data());
        benchmark::ClobberMemory();
    }
}

void BM_SumRecord(benchmark::State &state)
{
    Records rec(static_cast<int32_t>(state.range(0)), false);
    for (auto _ : state) {
        dsps_sum(&rec.a, &rec.r);
        benchmark::DoNotOptimize(rec.r.data[0]);
    }
}

void BM_SumNaiveLoop(benchmark::State &state)
{
    const std::vector<double> a = filled(static_cast<std::size_t>(state.range(0)), 1.0, 1e-3);
    for (auto _ : state) {
        double s = 0.0;
        for (double v : a) s += v;
        benchmark::DoNotOptimize(s);
    }
}

}  // namespace

BENCHMARK(BM_AddRealRecord)->Arg(4096)->Arg(1 << 20);
BENCHMARK(BM_AddRealLoop)->Arg(4096)->Arg(1 << 20);
BENCHMARK(BM_MulComplexRecord)->Arg(4096)->Arg(1 << 20);
BENCHMARK(BM_MulComplexLoop)->Arg(4096)->Arg(1 << 20);
BENCHMARK(BM_SumRecord)->Arg(4096)->Arg(1 << 20);
BENCHMARK(BM_SumNaiveLoop)->Arg(4096)->Arg(1 << 20);
