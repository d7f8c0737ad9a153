// The complex scalar, the copy-on-write matrix, the storage cache and the
// product of the error-correction kernel.
#include "calibration/calib_support.hpp"
#include "calibration/matrix.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

using calib_test::C;
using calib_test::CL;
using calib_test::V;
using dsp_calib::Complex;
using dsp_calib::Matrix;

namespace {

uint64_t bits(double v)
{
    uint64_t b;
    std::memcpy(&b, &v, sizeof b);
    return b;
}

int32_t live() { return dsp_calib::cache_state().live; }

}  // namespace

TEST(CalibComplex, DivisionMatchesTheQuotientAndGivesNanOnBadDivisors)
{
    using dsp_calib::divide;
    // Both branches (|im| >= |re| and below), against the long-double quotient.
    std::mt19937 gen(7);
    const V x = calib_test::random_points(2000, gen, 1e-3, 1e3), y = calib_test::random_points(2000, gen, 1e-3, 1e3);
    for (int i = 0; i < 2000; ++i) {
        const Complex q = divide({x[i].real(), x[i].imag()}, {y[i].real(), y[i].imag()});
        const CL ref = CL(x[i]) / CL(y[i]);
        EXPECT_LE(std::abs(CL(q.re, q.im) - ref), 4e-16L * std::abs(ref));
    }
    // Hand-derived; both branches scale by the reciprocal of the denominator
    // rather than dividing by it: 5 x (1/3) is one unit below 5/3.
    EXPECT_EQ(divide({3.0, 1.0}, {0.0, 2.0}).re, 0.5);
    EXPECT_EQ(divide({3.0, 1.0}, {0.0, 2.0}).im, -1.5);
    const double five_thirds = 5.0 * (1.0 / 3.0);
    ASSERT_NE(five_thirds, 5.0 / 3.0);
    EXPECT_EQ(divide({5.0, 0.0}, {3.0, 0.0}).re, five_thirds);
    EXPECT_EQ(divide({0.0, 5.0}, {0.0, 3.0}).re, five_thirds);
    for (Complex bad : {Complex{0.0, 0.0}, Complex{-0.0, 0.0}, Complex{NAN, 1.0}, Complex{1.0, NAN}, Complex{INFINITY, INFINITY}}) {
        const Complex z = divide({1.0, 2.0}, bad);
        EXPECT_EQ(bits(z.re), 0x7FF8000000000000ull);
        EXPECT_EQ(bits(z.im), 0x7FF8000000000000ull);
    }
    // An infinite part gets no extra handling: a finite value over (inf, 0) is 0.
    const Complex z = divide({1.0, 2.0}, {INFINITY, 0.0});
    EXPECT_EQ(z.re, 0.0);
    EXPECT_EQ(z.im, 0.0);
    const Complex p = dsp_calib::multiply({1.0, 2.0}, {3.0, -4.0});
    EXPECT_EQ(p.re, 11.0);
    EXPECT_EQ(p.im, 2.0);
}

TEST(CalibMatrix, HandlesShareUntilOneWrites)
{
    {
        Matrix a = Matrix::acquire(2, 2);
        for (uint32_t i = 0; i < 4; ++i) a.set(i, {double(i), -double(i)});
        const Complex *spare;
        {
            const Matrix released = Matrix::acquire(2, 2);
            spare = released.elements();
        }
        Matrix b = a;
        EXPECT_EQ(a.references(), 2);
        EXPECT_EQ(b.elements(), a.elements());
        b.set(3, {9.0, 9.0});
        EXPECT_EQ(b.elements(), spare);  // the private copy comes from the cache
        EXPECT_EQ(a.references(), 1);
        EXPECT_EQ(b.references(), 1);
        EXPECT_EQ(a.get(3).re, 3.0);
        EXPECT_EQ(b.get(3).re, 9.0);
        EXPECT_EQ(b.get(2).im, -2.0);  // the copy carries every element
        EXPECT_EQ(live(), 2);
        b = a;  // b's own record is released
        EXPECT_EQ(live(), 1);
        const Matrix &same = b;
        b = same;  // self-assignment and assignment between sharers free nothing
        a = b;
        EXPECT_EQ(a.references(), 2);
        EXPECT_EQ(a.get(1).im, -1.0);
    }
    EXPECT_EQ(live(), 0);

    // Column-major sources are transposed on the way in.
    const double cm[] = {1, 10, 2, 20, 3, 30, 4, 40, 5, 50, 6, 60};  // 2 x 3
    const Matrix t = Matrix::from_array(2, 3, cm, true);
    const double expect_re[] = {1, 3, 5, 2, 4, 6};
    for (uint32_t i = 0; i < 6; ++i) EXPECT_EQ(C(t.get(i).re, t.get(i).im), C(expect_re[i], 10 * expect_re[i]));
}

TEST(CalibMatrix, CacheKeepsFourMostRecentAndEmptiesWithTheLastLive)
{
    auto slot_cols = [] {
        std::vector<int> cols;
        for (const dsp_calib::MatrixStorage *s : dsp_calib::cache_state().slots)
            cols.push_back(s ? int(s->cols) : 0);
        return cols;
    };
    {
        const Matrix keep = Matrix::acquire(7, 7);
        const Complex *third = nullptr;
        {
            // Released last to first: 1 x 5 goes in first and is pushed out.
            Matrix m1 = Matrix::acquire(1, 1), m2 = Matrix::acquire(1, 2),
                   m3 = Matrix::acquire(1, 3), m4 = Matrix::acquire(1, 4),
                   m5 = Matrix::acquire(1, 5);
            third = m3.elements();
            EXPECT_EQ(live(), 6);
        }
        EXPECT_EQ(live(), 1);
        EXPECT_EQ(slot_cols(), (std::vector<int>{1, 2, 3, 4}));
        {
            const Matrix again = Matrix::acquire(1, 3);
            EXPECT_EQ(again.elements(), third);
            EXPECT_EQ(slot_cols(), (std::vector<int>{1, 2, 0, 4}));
            {
                const Matrix other = Matrix::acquire(3, 1);  // no slot has this shape
                EXPECT_EQ(slot_cols(), (std::vector<int>{1, 2, 0, 4}));
            }
            // 3 x 1 goes in front, the shift stopping at the empty slot.
            EXPECT_EQ(slot_cols(), (std::vector<int>{1, 1, 2, 4}));
        }
        // 1 x 3 in front of it then pushes 1 x 4 out of the last slot.
        EXPECT_EQ(slot_cols(), (std::vector<int>{3, 1, 1, 2}));
        EXPECT_EQ(dsp_calib::cache_state().slots[1]->rows, 3u);
        const double one[] = {1.0, 2.0};
        const Matrix direct = Matrix::from_array(1, 1, one, false);  // bypasses the cache
        EXPECT_EQ(slot_cols(), (std::vector<int>{3, 1, 1, 2}));
        const Matrix cached = Matrix::from_array(1, 1, one, true);
        EXPECT_EQ(slot_cols(), (std::vector<int>{3, 1, 0, 2}));
        EXPECT_EQ(cached.get(0).im, 2.0);
        EXPECT_EQ(live(), 3);
        // Of two slots with the wanted shape, the first (most recent) serves.
        const Complex *older = nullptr, *newer = nullptr;
        {
            const Matrix first = Matrix::acquire(2, 5), second = Matrix::acquire(2, 5);
            newer = first.elements();  // released after second
            older = second.elements();
        }
        const Matrix reused = Matrix::acquire(2, 5);
        EXPECT_EQ(reused.elements(), newer);
        EXPECT_NE(reused.elements(), older);
    }
    const dsp_calib::CacheState state = dsp_calib::cache_state();
    EXPECT_EQ(state.live, 0);
    EXPECT_EQ(state.reentry, 0);
    EXPECT_EQ(slot_cols(), (std::vector<int>{0, 0, 0, 0}));

    // Counts beyond 0x0FFFFFFF elements (here a negative dimension) throw
    // and leave the live count true.
    EXPECT_THROW(Matrix::acquire(uint32_t(-2), 1), std::bad_alloc);
    EXPECT_EQ(live(), 0);
}

// The product's values against long-double sums are checked through
// MatrixMult; here its exact order of addition.
TEST(CalibMatrix, ProductAddsInOrderFromZero)
{
    // (-1, 0) x (0, 0) is (-0, +0); added to the (0, 0) start it is +0.
    const double a[] = {-1.0, 0.0}, b[] = {0.0, 0.0};
    const Matrix q = dsp_calib::product(Matrix::from_array(1, 1, a, false), Matrix::from_array(1, 1, b, false));
    EXPECT_FALSE(std::signbit(q.get(0).re));
    // k ascending: 1 + 2^53 rounds back to 2^53 and the sum ends at 0; in
    // the other order it would end at 1.
    const double row[] = {1, 0, 0x1p53, 0, -0x1p53, 0}, ones[] = {1, 0, 1, 0, 1, 0};
    const Matrix dot = dsp_calib::product(Matrix::from_array(1, 3, row, false), Matrix::from_array(3, 1, ones, false));
    EXPECT_EQ(dot.get(0).re, 0.0);
}

TEST(CalibMatrix, FailedInversionStopsWherePivotingDid)
{
    // The in-place inversion of a row-major n x n matrix, what it leaves
    // written back to v.
    auto invert_values = [](V &v, uint32_t n) {
        Matrix m = Matrix::from_array(n, n, reinterpret_cast<const double *>(v.data()), false);
        const bool ok = dsp_calib::invert_in_place(m);
        for (uint32_t i = 0; i < n * n; ++i) v[i] = C(m.get(i).re, m.get(i).im);
        return ok;
    };
    // Column 0 ties |1| and |-1|: the first row is the pivot, row 1 becomes
    // (1, 0, 0), and column 1 has no pivot left. Had the tie gone to row 1,
    // the rows would have been exchanged and (0, 0) would read -1.
    V tie = {1, 1, 0, -1, -1, 0, 0, 0, 1};
    EXPECT_FALSE(invert_values(tie, 3));
    EXPECT_EQ(tie, (V{1, 1, 0, 1, 0, 0, 0, 0, 1}));

    // Pivots are ranked by |z|: of (5.3, 0), (3.8, 3.8) and (5, 2.5) the last
    // wins, though the first has the largest part and the second the largest
    // |re| + |im|. With column 1 empty the sweep stops after column 0, the
    // pivot row moved to row 0 and scaled by its reciprocal.
    const C first(5.3, 0), second(3.8, 3.8), third(5, 2.5);
    V ranked = {first, 0, 0, second, 0, 0, third, 0, 0};
    EXPECT_FALSE(invert_values(ranked, 3));
    const C column[] = {1.0 / third, -second / third, -first / third};
    for (uint32_t i = 0; i < 3; ++i) EXPECT_LE(std::abs(ranked[3 * i] - column[i]), 1e-15) << i;

    // A NaN first candidate is never replaced by a later row: column 0 has
    // no pivot, though row 1 would serve, and nothing is reduced.
    V nan_first = {NAN, 0, 1, 1};
    EXPECT_FALSE(invert_values(nan_first, 2));
    EXPECT_EQ(nan_first[2], 1.0);
    EXPECT_EQ(nan_first[3], 1.0);
}
