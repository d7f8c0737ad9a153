// MatrixMult and invert on caller arrays.
#include "calibration/calib_support.hpp"
#include "calibration/storage_cache.hpp"
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <vector>

using calib_test::C;
using calib_test::CL;

namespace {

// A random n x n matrix whose diagonal dominates its column, so that
// elimination never exchanges rows; then its rows are permuted.
std::vector<C> dominant_matrix(int n, std::mt19937 &gen, const std::vector<int> &row_of)
{
    std::vector<C> d(n * n);
    for (int j = 0; j < n; ++j) {
        double off = 0;
        for (int i = 0; i < n; ++i) {
            if (i == j) continue;
            d[i * n + j] = calib_test::random_polar(gen, 0.0, 1.0);
            off += std::abs(d[i * n + j]);
        }
        d[j * n + j] = calib_test::random_polar(gen, off + 0.5, off + 2.0);
    }
    std::vector<C> a(n * n);
    for (int i = 0; i < n; ++i) std::copy_n(&d[row_of[i] * n], n, &a[i * n]);
    return a;
}

double *pairs(std::vector<C> &v) { return reinterpret_cast<double *>(v.data()); }

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
            std::vector<C> a = dominant_matrix(n, gen, rows);
            const std::vector<CL> ref = calib_test::reference_inverse(a, n);
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
    const double below = std::nextafter(t, 0.0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    // 1 x 1: the magnitude of (t, 0) or (0, t) is exactly t.
    for (std::vector<double> a : {std::vector<double>{t, 0.0}, {0.0, t}}) {
        ASSERT_EQ(invert(a.data(), 1), 1);
        EXPECT_EQ(std::abs(std::complex<double>(a[0], a[1])), 1.0 / t);
    }
    // The second pivot at the threshold, and just below it or NaN.
    for (double last : {t, below, nan}) {
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

TEST(CalibInvert, RestoresTheControlWordOnEveryPath)
{
    // Without the restore the inexact 1/3 below would leave IXC set.
    const uint32_t entry = get_fpscr() & ~FPSCR_FLAGS_MASK;
    volatile double three = 3.0;
    for (uint32_t word : {entry, entry | FPSCR_FZ}) {
        std::vector<double> third = {three, 0.0};
        set_fpscr(word);
        EXPECT_EQ(invert(third.data(), 1), 1);
        EXPECT_EQ(get_fpscr(), word);
        std::vector<double> zero = {0.0, 0.0};
        EXPECT_EQ(invert(zero.data(), 1), 0);
        EXPECT_EQ(get_fpscr(), word);
        EXPECT_THROW(invert(third.data(), 0x4000), std::bad_alloc);
        EXPECT_EQ(get_fpscr(), word);
        volatile double q = 1.0 / three;  // the flag does rise without it
        (void)q;
        EXPECT_NE(get_fpscr() & FPSCR_FLAGS_MASK, 0u);
        set_fpscr(entry);
    }
}

TEST(CalibMatrixMult, ProductIsWrittenColumnMajorAndInnerSizeIsChecked)
{
    std::mt19937 gen(5);
    for (int m : {1, 2, 5})
        for (int n = 0; n <= m; ++n)
            for (int p : {1, 3}) {
                std::vector<C> a = calib_test::random_points(m * n, gen, 0.5, 2.0);
                std::vector<C> b = calib_test::random_points(n * p, gen, 0.5, 2.0);
                std::vector<C> out(m * p, C(-7.0, -7.0));
                ASSERT_EQ(MatrixMult(a.data(), b.data(), out.data(), m, n, p), m * p);
                for (int i = 0; i < m; ++i)
                    for (int j = 0; j < p; ++j) {
                        CL sum = 0;
                        for (int k = 0; k < n; ++k) sum += CL(a[i * n + k]) * CL(b[k * p + j]);
                        EXPECT_LE(std::abs(CL(out[j * m + i]) - sum), 1e-14L * (n + 1));
                    }
            }
    // Inner dimension above the rows of a: -1, nothing written.
    std::vector<C> a(6, C(1, 1)), b(6, C(1, 1)), out(4, C(-7.0, -7.0));
    EXPECT_EQ(MatrixMult(a.data(), b.data(), out.data(), 2, 3, 2), -1);
    EXPECT_EQ(out, std::vector<C>(4, C(-7.0, -7.0)));
    // The test compares the 32-bit products n * n and m * n as they wrap: an
    // inner dimension of 2^16 squares to 0 and passes against one row, and
    // n = -1 squares to 1 and fails against m * n = -3.
    const std::vector<C> ones(0x10000, C(1, 0));
    std::vector<C> dot(1, C(-7.0, -7.0));
    EXPECT_EQ(MatrixMult(ones.data(), ones.data(), dot.data(), 1, 0x10000, 1), 1);
    EXPECT_EQ(dot[0], C(0x10000, 0));
    EXPECT_EQ(MatrixMult(a.data(), b.data(), out.data(), 3, -1, 2), -1);
    EXPECT_EQ(out, std::vector<C>(4, C(-7.0, -7.0)));
    // An oversized product throws the library's bad_alloc through to the
    // caller, before writing anything.
    std::vector<C> big_a(0x4000, C(1, 0)), big_b(0x4001, C(1, 0));
    try {
        MatrixMult(big_a.data(), big_b.data(), out.data(), 0x4000, 1, 0x4001);
        ADD_FAILURE() << "no exception";
    } catch (const std::bad_alloc &e) {
        EXPECT_STREQ(e.what(), "bad allocation");
    }
    EXPECT_EQ(out, std::vector<C>(4, C(-7.0, -7.0)));
    EXPECT_EQ(dsp_calib::cache_state().live, 0);
    EXPECT_THROW(invert(pairs(big_a), -1), std::bad_alloc);
}
