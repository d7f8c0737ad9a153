// One-port calibration on 100k frequency points against plain
// std::complex<double> loops of the same formulas: the correction
// (m - D) / ((m - D) S + R), and the per-point 3 x 3 solve of the error terms
// (Gauss-Jordan with partial pivoting, then x = A^-1 b). Items are points.
#include "libdsp_vna.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <complex>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace {

using C = std::complex<double>;
using V = std::vector<C>;
constexpr int32_t kPoints = 100000;

V random_points(unsigned seed, double lo, double hi)
{
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> mag(lo, hi), phase(-3.14159, 3.14159);
    V v(kPoints);
    for (C &z : v) z = std::polar(mag(rng), phase(rng));
    return v;
}

// Error terms, a measured device and the measured open, short and load.
struct Sweep {
    V d = random_points(1, 0.01, 0.2), s = random_points(2, 0.01, 0.3),
      r = random_points(3, 0.5, 1.2);
    V measured = random_points(4, 0.0, 1.0);
    V g0 = V(kPoints, C(1, 0)), g1 = V(kPoints, C(-1, 0)), g2 = V(kPoints, C(0.01, 0.005));
    V m0, m1, m2;
    Sweep()
    {
        for (int32_t k = 0; k < kPoints; ++k) {
            m0.push_back(d[k] + r[k] * g0[k] / (1.0 - s[k] * g0[k]));
            m1.push_back(d[k] + r[k] * g1[k] / (1.0 - s[k] * g1[k]));
            m2.push_back(d[k] + r[k] * g2[k] / (1.0 - s[k] * g2[k]));
        }
    }
};

const Sweep &sweep()
{
    static const Sweep s;
    return s;
}

void set_items(benchmark::State &state) { state.SetItemsProcessed(state.iterations() * kPoints); }

void BM_Correct1Port_libdsp(benchmark::State &state)
{
    const Sweep &w = sweep();
    V out(kPoints);
    for (auto _ : state) {
        Correct1Port(w.d.data(), w.s.data(), w.r.data(), w.measured.data(), out.data(), 0, kPoints);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    set_items(state);
}
BENCHMARK(BM_Correct1Port_libdsp)->Unit(benchmark::kMicrosecond);

void BM_Correct1Port_plain(benchmark::State &state)
{
    const Sweep &w = sweep();
    V out(kPoints);
    for (auto _ : state) {
        for (int32_t k = 0; k < kPoints; ++k) {
            const C t = w.measured[k] - w.d[k];
            out[k] = t / (t * w.s[k] + w.r[k]);
        }
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    set_items(state);
}
BENCHMARK(BM_Correct1Port_plain)->Unit(benchmark::kMicrosecond);

void BM_Compute1PortTerms_libdsp(benchmark::State &state)
{
    const Sweep &w = sweep();
    V m0, m1, m2;
    for (auto _ : state) {
        state.PauseTiming();  // the call overwrites its measurements
        m0 = w.m0, m1 = w.m1, m2 = w.m2;
        state.ResumeTiming();
        Compute1PortTerms(m0.data(), m1.data(), m2.data(), w.g0.data(), w.g1.data(), w.g2.data(), 0,
                          kPoints);
        benchmark::DoNotOptimize(m2.data());
        benchmark::ClobberMemory();
    }
    set_items(state);
}
BENCHMARK(BM_Compute1PortTerms_libdsp)->Unit(benchmark::kMicrosecond);

// The same solve in a plain loop: the system m_i = x1 + g_i x0 - g_i m_i x2
// in a local 3 x 3 array, inverted in place, then x = A^-1 m.
void solve_terms_plain(const C g[3], const C m[3], C terms[3])
{
    C a[3][3];
    int perm[3] = {0, 1, 2};
    for (int i = 0; i < 3; ++i) {
        a[i][0] = g[i];
        a[i][1] = 1.0;
        a[i][2] = -g[i] * m[i];
    }
    for (int k = 0; k < 3; ++k) {
        int p = k;
        for (int r = k + 1; r < 3; ++r)
            if (std::abs(a[r][k]) > std::abs(a[p][k])) p = r;
        if (!(std::abs(a[p][k]) >= 2.220446049250313e-12)) break;
        if (p != k) {
            std::swap(perm[k], perm[p]);
            for (int j = 0; j < 3; ++j) std::swap(a[k][j], a[p][j]);
        }
        const C piv = 1.0 / a[k][k];
        a[k][k] = 1.0;
        for (int j = 0; j < 3; ++j) a[k][j] *= piv;
        for (int i = 0; i < 3; ++i) {
            if (i == k) continue;
            const C f = a[i][k];
            a[i][k] = 0.0;
            for (int j = 0; j < 3; ++j) a[i][j] -= f * a[k][j];
        }
    }
    for (int j = 0; j < 3; ++j) {
        if (perm[j] == j) continue;
        int q = j + 1;
        while (perm[q] != j) ++q;
        for (int i = 0; i < 3; ++i) std::swap(a[i][j], a[i][q]);
        std::swap(perm[j], perm[q]);
    }
    C x[3];
    for (int i = 0; i < 3; ++i) x[i] = a[i][0] * m[0] + a[i][1] * m[1] + a[i][2] * m[2];
    terms[0] = x[1];
    terms[1] = -x[2];
    terms[2] = x[0] - x[1] * x[2];
}

void BM_Compute1PortTerms_plain(benchmark::State &state)
{
    const Sweep &w = sweep();
    V m0, m1, m2;
    for (auto _ : state) {
        state.PauseTiming();
        m0 = w.m0, m1 = w.m1, m2 = w.m2;
        state.ResumeTiming();
        for (int32_t k = 0; k < kPoints; ++k) {
            const C g[3] = {w.g0[k], w.g1[k], w.g2[k]}, m[3] = {m0[k], m1[k], m2[k]};
            C terms[3];
            solve_terms_plain(g, m, terms);
            m0[k] = terms[0], m1[k] = terms[1], m2[k] = terms[2];
        }
        benchmark::DoNotOptimize(m2.data());
        benchmark::ClobberMemory();
    }
    set_items(state);
}
BENCHMARK(BM_Compute1PortTerms_plain)->Unit(benchmark::kMicrosecond);

}  // namespace
