// MatrixMult and invert on caller arrays.
#include "calibration/calib_support.hpp"
#include "calibration/storage_cache.hpp"
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <vector>

using calib_test::C;
using calib_test::CL;
using calib_test::V;

namespace {

// Inverse of the row-major n x n matrix a: Gauss-Jordan elimination of
// [a | I] in long double, with row pivoting, leaves [I | a^-1].
std::vector<CL> reference_inverse(const V &a, int n)
{
    const int w = 2 * n;
    std::vector<CL> m(n * w);
    for (int i = 0; i < n; ++i) {
        std::copy_n(&a[i * n], n, &m[i * w]);
        m[i * w + n + i] = 1.0L;
    }
    for (int k = 0; k < n; ++k) {
        int p = k;
        for (int i = k + 1; i < n; ++i) p = std::abs(m[i * w + k]) > std::abs(m[p * w + k]) ? i : p;
        std::swap_ranges(&m[k * w], &m[k * w] + w, &m[p * w]);
        const CL pivot = m[k * w + k];
        for (int j = 0; j < w; ++j) m[k * w + j] /= pivot;
        for (int i = 0; i < n; ++i) {
            const CL f = m[i * w + k];
            if (i != k)
                for (int j = 0; j < w; ++j) m[i * w + j] -= f * m[k * w + j];
        }
    }
    std::vector<CL> inv(n * n);
    for (int i = 0; i < n; ++i) std::copy_n(&m[i * w + n], n, &inv[i * n]);
    return inv;
}

// A random n x n matrix whose diagonal dominates its column, so that
// elimination never exchanges rows; then its rows are permuted.
V dominant_matrix(int n, std::mt19937 &gen, const std::vector<int> &row_of)
{
    V d = calib_test::random_points(n * n, gen, 0.0, 1.0);
    for (int j = 0; j < n; ++j) {
        double off = 0;
        for (int i = 0; i < n; ++i) off += i == j ? 0.0 : std::abs(d[i * n + j]);
        d[j * n + j] = std::polar(off + 0.5 + std::abs(d[j * n + j]), std::arg(d[j * n + j]));
    }
    V a(n * n);
    for (int i = 0; i < n; ++i) std::copy_n(&d[row_of[i] * n], n, &a[i * n]);
    return a;
}

}  // namespace

TEST(CalibInvert, MatchesLongDoubleInverseWithAndWithoutRowExchanges)
{
    std::mt19937 gen(3);
    for (int n = 1; n <= 8; ++n) {
        std::vector<int> identity(n), reversed(n), shuffled(n);
        std::iota(identity.begin(), identity.end(), 0);
        std::reverse_copy(identity.begin(), identity.end(), reversed.begin());
        shuffled = identity;
        std::shuffle(shuffled.begin(), shuffled.end(), gen);
        for (const auto &rows : {identity, reversed, shuffled}) {
            V a = dominant_matrix(n, gen, rows);
            const std::vector<CL> ref = reference_inverse(a, n);
            ASSERT_EQ(invert(a.data(), n), 1);  // the std::complex overload
            long double err = 0, size = 0;
            for (int k = 0; k < n * n; ++k) {
                err = std::max(err, std::abs(CL(a[k]) - ref[k]));
                size = std::max(size, std::abs(ref[k]));
            }
            EXPECT_LE(err, 1e-14L * size) << "n " << n;
        }
    }
    // Hand-derived: the pivot row is multiplied by the pivot's reciprocal,
    // so [[3, 5], [0, 1]] inverts to [[1/3, -(5 x (1/3))], [0, 1]], one unit
    // away from -5/3.
    std::vector<double> small = {3, 0, 5, 0, 0, 0, 1, 0};
    ASSERT_EQ(invert(small.data(), 2), 1);
    EXPECT_EQ(small, (std::vector<double>{1.0 / 3.0, 0, -(5.0 * (1.0 / 3.0)), 0, 0, 0, 1, 0}));
    double untouched = 42.0;
    EXPECT_EQ(invert(&untouched, 0), 1);
    EXPECT_EQ(untouched, 42.0);
}

TEST(CalibInvert, SingularThresholdIsInclusiveAndSingularLeavesInputUnchanged)
{
    const double t = 2.220446049250313e-12;
    // 1 x 1: the magnitude of (t, 0) or (0, t) is exactly t.
    for (std::vector<double> a : {std::vector<double>{t, 0.0}, {0.0, t}}) {
        ASSERT_EQ(invert(a.data(), 1), 1);
        EXPECT_EQ(std::abs(C(a[0], a[1])), 1.0 / t);
    }
    // The second pivot at the threshold, and just below it or NaN.
    for (double last : {t, std::nextafter(t, 0.0), double(NAN)}) {
        std::vector<double> a = {1.0, 0.0, 0.0, 0.0, 0.0, 0.0, last, 0.0};
        const std::vector<double> in = a;
        const int32_t ok = invert(a.data(), 2);
        EXPECT_EQ(ok, last == t ? 1 : 0);
        if (ok) {
            EXPECT_EQ(a[6], 1.0 / t);
        } else {
            EXPECT_EQ(std::memcmp(a.data(), in.data(), sizeof(double) * a.size()), 0);
        }
    }
    std::vector<double> rank2 = {1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0, 7, 0, 8, 0, 9, 0};
    const std::vector<double> in = rank2;
    EXPECT_EQ(invert(rank2.data(), 3), 0);
    EXPECT_EQ(rank2, in);
}

TEST(CalibMatrixMult, ProductIsWrittenColumnMajorAndInnerSizeIsChecked)
{
    std::mt19937 gen(5);
    for (int m : {1, 2, 5})
        for (int n = 0; n <= m; ++n)
            for (int p : {1, 3}) {
                const V a = calib_test::random_points(m * n, gen, 0.5, 2.0), b = calib_test::random_points(n * p, gen, 0.5, 2.0);
                V out(m * p, C(-7.0, -7.0));
                ASSERT_EQ(MatrixMult(a.data(), b.data(), out.data(), m, n, p), m * p);
                for (int i = 0; i < m; ++i)
                    for (int j = 0; j < p; ++j) {
                        CL sum = 0;
                        for (int k = 0; k < n; ++k) sum += CL(a[i * n + k]) * CL(b[k * p + j]);
                        EXPECT_LE(std::abs(CL(out[j * m + i]) - sum), 1e-14L * (n + 1));
                    }
            }
    // Inner dimension above the rows of a: -1, nothing written.
    const V untouched(4, C(-7.0, -7.0));
    V a(6, C(1, 1)), b(6, C(1, 1)), out = untouched;
    EXPECT_EQ(MatrixMult(a.data(), b.data(), out.data(), 2, 3, 2), -1);
    // The test compares the 32-bit products n * n and m * n as they wrap: an
    // inner dimension of 2^16 squares to 0 and passes against one row, and
    // n = -1 squares to 1 and fails against m * n = -3.
    const V ones(0x10000, C(1, 0));
    V dot(1);
    EXPECT_EQ(MatrixMult(ones.data(), ones.data(), dot.data(), 1, 0x10000, 1), 1);
    EXPECT_EQ(dot[0], C(0x10000, 0));
    EXPECT_EQ(MatrixMult(a.data(), b.data(), out.data(), 3, -1, 2), -1);
    // An oversized product throws the library's bad_alloc through to the
    // caller, before writing anything; so does invert.
    V big_a(0x4000, C(1, 0)), big_b(0x4001, C(1, 0));
    try {
        MatrixMult(big_a.data(), big_b.data(), out.data(), 0x4000, 1, 0x4001);
        ADD_FAILURE() << "no exception";
    } catch (const std::bad_alloc &e) {
        EXPECT_STREQ(e.what(), "bad allocation");
    }
    EXPECT_EQ(out, untouched);
    EXPECT_EQ(dsp_calib::cache_state().live, 0);
    EXPECT_THROW(invert(big_a.data(), -1), std::bad_alloc);
}
