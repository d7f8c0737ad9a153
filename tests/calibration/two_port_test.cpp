// Two-port correction against a forward model of the same error terms.
#include "calibration/calib_support.hpp"
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

using calib_test::C;
using calib_test::CL;
using calib_test::V;
using Group = std::array<V, 4>;  // entries 11, 12, 21, 22

namespace {

Group random_group(std::size_t n, std::mt19937 &gen, double lo, double hi)
{
    return {calib_test::random_points(n, gen, lo, hi), calib_test::random_points(n, gen, lo, hi),
            calib_test::random_points(n, gen, lo, hi), calib_test::random_points(n, gen, lo, hi)};
}

struct Terms {
    Group t, e, o;
};

// The correction is c = N (I + N.e)^-1 with N = (m - o) / t element-wise.
// Read backwards, column j of N solves (I - S diag(e_0j, e_1j)) N_j = S_j,
// and m = N.t + o: the measurement of a device S through the terms.
Group measure(const Group &dut, const Terms &terms, std::size_t n)
{
    Group m{V(n), V(n), V(n), V(n)};
    for (std::size_t k = 0; k < n; ++k) {
        const CL s[2][2] = {{CL(dut[0][k]), CL(dut[1][k])}, {CL(dut[2][k]), CL(dut[3][k])}};
        for (int j = 0; j < 2; ++j) {
            const CL a00 = 1.0L - s[0][0] * CL(terms.e[j][k]),
                     a01 = -s[0][1] * CL(terms.e[2 + j][k]);
            const CL a10 = -s[1][0] * CL(terms.e[j][k]),
                     a11 = 1.0L - s[1][1] * CL(terms.e[2 + j][k]);
            const CL det = a00 * a11 - a01 * a10;
            const CL nj[2] = {(a11 * s[0][j] - a01 * s[1][j]) / det,
                              (a00 * s[1][j] - a10 * s[0][j]) / det};
            for (int i = 0; i < 2; ++i) {
                const int e = 2 * i + j;
                const CL v = nj[i] * CL(terms.t[e][k]) + CL(terms.o[e][k]);
                m[e][k] = C(double(v.real()), double(v.imag()));
            }
        }
    }
    return m;
}

int32_t correct(const Terms &x, const Group &m, std::array<C *, 4> c, int32_t start, int32_t stop,
                bool isolation = true)
{
    const C *o12 = isolation ? x.o[1].data() : nullptr, *o21 = isolation ? x.o[2].data() : nullptr;
    return Correct2Port(x.t[0].data(), x.t[1].data(), x.t[2].data(), x.t[3].data(), x.e[0].data(),
                        x.e[1].data(), x.e[2].data(), x.e[3].data(), x.o[0].data(), o12, o21,
                        x.o[3].data(), m[0].data(), m[1].data(), m[2].data(), m[3].data(), c[0],
                        c[1], c[2], c[3], start, stop);
}

}  // namespace

TEST(CalibTwoPort, CorrectionRecoversTheDevice)
{
    const std::size_t n = 401;
    std::mt19937 gen(17);
    Terms terms{random_group(n, gen, 0.5, 1.2), random_group(n, gen, 0.01, 0.3), random_group(n, gen, 0.01, 0.2)};
    for (std::size_t k = 0; k < n; ++k) terms.o[1][k] *= 1e-3, terms.o[2][k] *= 1e-3;  // small isolation
    const Group dut = random_group(n, gen, 0.0, 0.9);
    const Group m = measure(dut, terms, n);
    Group c{V(n, C(5, 5)), V(n, C(5, 5)), V(n, C(5, 5)), V(n, C(5, 5))};
    EXPECT_EQ(correct(terms, m, {c[0].data(), c[1].data(), c[2].data(), c[3].data()}, 1, int32_t(n - 1)), int32_t(n - 2));
    for (int e = 0; e < 4; ++e) {
        EXPECT_EQ(c[e][0], C(5, 5));
        EXPECT_EQ(c[e][n - 1], C(5, 5));
        for (std::size_t k = 1; k < n - 1; ++k) EXPECT_LE(std::abs(c[e][k] - dut[e][k]), 1e-12) << e << " " << k;
    }
    // Entries may be dropped: the ones given get the same values.
    V only12(n, C(5, 5)), only21(n, C(5, 5));
    correct(terms, m, {nullptr, only12.data(), only21.data(), nullptr}, 1, int32_t(n - 1));
    EXPECT_EQ(only12, c[1]);
    EXPECT_EQ(only21, c[2]);
    // Null isolation arrays are zero isolation.
    Terms isolated = terms;
    isolated.o[1] = isolated.o[2] = V(n, 0.0);
    Group with_zero = c, with_null = c;
    correct(isolated, m, {with_zero[0].data(), with_zero[1].data(), with_zero[2].data(), with_zero[3].data()}, 0, int32_t(n));
    correct(terms, m, {with_null[0].data(), with_null[1].data(), with_null[2].data(), with_null[3].data()}, 0, int32_t(n), false);
    EXPECT_EQ(with_zero, with_null);
}

TEST(CalibTwoPort, NullArraysIdealTermsAndBadPoints)
{
    const std::size_t n = 8;
    std::mt19937 gen(2);
    const Group ones{V(n, 1.0), V(n, 1.0), V(n, 1.0), V(n, 1.0)}, zeros{V(n, 0.0), V(n, 0.0), V(n, 0.0), V(n, 0.0)};
    const Terms ideal{ones, zeros, zeros};
    const Group m = random_group(n, gen, 0.0, 1.0);
    Group c = zeros;
    const std::array<C *, 4> out = {c[0].data(), c[1].data(), c[2].data(), c[3].data()};
    EXPECT_EQ(correct(ideal, m, out, 0, int32_t(n)), int32_t(n));
    EXPECT_EQ(c, m);

    // Each array that must be given, taken away in turn: 0, nothing written,
    // even for an empty range.
    const Group fresh{V(n, 7.0), V(n, 7.0), V(n, 7.0), V(n, 7.0)};
    const Group *groups[4] = {&ideal.t, &ideal.e, &ideal.o, &m};
    for (int group = 0; group < 4; ++group)
        for (int e = 0; e < 4; ++e) {
            if (group == 2 && (e == 1 || e == 2)) continue;  // isolation may be null
            const C *a[4][4];
            for (int g = 0; g < 4; ++g)
                for (int f = 0; f < 4; ++f) a[g][f] = (*groups[g])[f].data();
            a[group][e] = nullptr;
            for (int32_t stop : {int32_t(n), 0}) {
                c = fresh;
                EXPECT_EQ(Correct2Port(a[0][0], a[0][1], a[0][2], a[0][3], a[1][0], a[1][1], a[1][2], a[1][3], a[2][0], a[2][1],
                                       a[2][2], a[2][3], a[3][0], a[3][1], a[3][2], a[3][3], out[0], out[1], out[2], out[3], 0, stop),
                          0);
                EXPECT_EQ(c, fresh);
            }
        }
    c = fresh;
    EXPECT_EQ(correct(ideal, m, out, 5, 2), -3);
    EXPECT_EQ(c, fresh);

    // A zero tracking value makes its point NaN; the next point is exact.
    Terms bad = ideal;
    bad.t[2][3] = 0;
    correct(bad, m, out, 3, 5);
    EXPECT_TRUE(std::isnan(c[2][3].real()));
    for (int e = 0; e < 4; ++e) EXPECT_EQ(c[e][4], m[e][4]);
}
