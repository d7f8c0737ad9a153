// Complex and polar readings of a record.
#include "support/alloc_hooks.hpp"
#include "support/random_values.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <random>
#include <vector>

using dsp_test::Record;
using dsp_test::ScopedAllocHooks;
using V = std::vector<double>;

namespace {
const double kPi = 3.141592653589793;
const double kNaN = std::numeric_limits<double>::quiet_NaN();

V random_values(std::size_t n, unsigned seed, double scale = 10.0) { return dsp_test::uniform_values(n, seed, scale); }

// One in-place operation on a hand-derived input and its exact result.
struct InPlaceCase {
    const char *what;
    int32_t (*op)(dsp *);
    V in;
    bool complex_in;
    V out;
    int32_t complex_out;
};

void check_in_place(const std::vector<InPlaceCase> &cases)
{
    for (const InPlaceCase &c : cases) {
        Record s(c.in, c.complex_in);
        ASSERT_EQ(c.op(s.get()), 0) << c.what;
        EXPECT_PRED2(dsp_test::same_values, s.values(), c.out) << c.what;
        EXPECT_EQ(s->complex, c.complex_out) << c.what;
    }
}
}  // namespace

TEST(ComplexForm, RealToComplexGrowsInPlaceFromTheTop)
{
    for (int n : {0, 1, 5, 7, 8, 33}) {
        V x(n), expected;
        for (int i = 0; i < n; ++i) {
            x[i] = i + 1.0;
            expected.insert(expected.end(), {x[i], 0.0});
        }
        Record s(x);
        ASSERT_EQ(dspi_rtoc(s.get()), 0);
        EXPECT_EQ(s->complex, 1);
        EXPECT_EQ(s.values(), expected) << "n = " << n;
        ASSERT_EQ(dspi_rtoc(s.get()), 0);  // already complex: no change
        EXPECT_EQ(s.values(), expected);
    }
}

TEST(ComplexForm, PartsConjugateMagnitudePhaseAndProducts)
{
    const double big = std::nextafter(-1e100, -1e300);
    check_in_place({
        {"conj", dspi_conj, {1, -2, 3, 4}, true, {1, 2, 3, -4}, 1},
        {"real", dspi_real, {1, -2, 3, 4}, true, {1, 3}, 0},
        {"imag", dspi_imag, {1, -2, 3, 4}, true, {-2, 4}, 0},
        {"real of real", dspi_real, {5, -6}, false, {5, -6}, 0},
        {"conj of real", dspi_conj, {5, -6}, false, {5, -6}, 0},
        {"imag of real", dspi_imag, {5, -6}, false, {0, 0}, 0},  // a real signal has no imaginary part
        {"rtop origin", dspi_rtop, {0, 0, -0.0, 0}, true, {0, 0, 0, 0}, 1},
        {"rtop real", dspi_rtop, {2, -3, 0, kNaN}, false, {2, 0, 3, kPi, 0, 0, kNaN, kPi}, 1},  // NaN is negative
        {"ptor of real", dspi_ptor, {1, 2}, false, {1, 2}, 0},
        {"mag", dspi_mag, {3, 4, -5, 12}, true, {5, 13}, 0},
        {"magsq", dspi_magsq, {3, 4, -5, 12}, true, {25, 169}, 0},
        {"phase", dspi_phase, {0, 0, -1, 0, 0, -2}, true, {0, kPi, -kPi / 2}, 0},
        {"mag of real", dspi_mag, {-2, 3}, false, {2, 3}, 0},
        {"magsq of real", dspi_magsq, {-2, 3, 0}, false, {4, 9, 0}, 0},
        {"phase of real", dspi_phase, {-2, 3, 0, kNaN}, false, {kPi, 0, 0, kPi}, 0},
        // Parts beyond +-1e100 (or NaN) count as 1e100; a square of exactly 1e200 is kept.
        {"magsq capped", dspi_magsq, {1e200, 0, 1e100, 1e100, -1e100, 0, big, 0, kNaN, 1}, true,
         {1e100, 2e200, 1e200, 1e100, 1e100}, 0},
        {"magsq of real capped", dspi_magsq, {1e101, -1e100, kNaN}, false, {1e100, 1e200, 1e100}, 0},
        {"timesi of real", dspi_timesi, {1, -2}, false, {0, 1, 0, -2}, 1},
        {"timesi", dspi_timesi, {0, 1, 0, -2}, true, {-1, 0, 2, 0}, 1},
        {"cscale", [](dsp *s) { return dspi_cscale(s, 3, 4); }, {1, 2, -3, 0.5}, true, {-5, 10, -11, -10.5}, 1},
        {"cscale of real", [](dsp *s) { return dspi_cscale(s, 3, -4); }, {2, -1, 0.5}, false, {6, -8, -3, 4, 1.5, -2}, 1},
        {"timesi of nothing", dspi_timesi, {}, false, {}, 0},
        {"cscale of nothing", [](dsp *s) { return dspi_cscale(s, 1, 1); }, {}, false, {}, 0},
        {"pztoc of nothing", dspi_pztoc, {}, false, {1}, 0},
        {"pztoc", dspi_pztoc, {1, 2}, false, {2, -3, 1}, 0},
        {"pztoc conjugate pair", dspi_pztoc, {0, 1, 0, -1}, true, {1, 0, 0, 0, 1, 0}, 1},  // x^2 + 1
    });
}

TEST(ComplexForm, PolarRoundTripAgainstLongDouble)
{
    const V x = random_values(64, 1);
    Record s(x, true);
    ASSERT_EQ(dspi_rtop(s.get()), 0);
    for (std::size_t i = 0; i < 32; ++i) {
        const std::complex<long double> z(x[2 * i], x[2 * i + 1]);
        EXPECT_NEAR(s->data[2 * i], static_cast<double>(std::abs(z)), 1e-15 * std::abs(z));
        EXPECT_NEAR(s->data[2 * i + 1], static_cast<double>(std::arg(z)), 1e-15);
    }
    ASSERT_EQ(dspi_ptor(s.get()), 0);
    for (std::size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(s->data[i], x[i], 1e-13);
}

TEST(ComplexForm, DecibelsWithFloorAndClamp)
{
    const double floor10 = static_cast<double>(std::log10(2.2250738585072014e-308L)) * 10;
    const auto expect_levels = [](const Record &r, const V &want) {
        ASSERT_EQ(r.values().size(), want.size());
        for (std::size_t i = 0; i < want.size(); ++i) EXPECT_DOUBLE_EQ(r->data[i], want[i]) << i;
    };
    // Zero, negatives, NaN and values below the smallest normal count as the
    // smallest normal: 10 log10 of it is -3076.526555685888.
    Record r({100, 0, -1, 1e-310, kNaN, 2.2250738585072014e-308});
    ASSERT_EQ(dspi_db(r.get(), 10.0), 0);
    EXPECT_EQ(r->complex, 0);
    expect_levels(r, {20, floor10, floor10, floor10, floor10, floor10});

    // Complex: level from the squared magnitude, phase times factor * log10(e).
    // A squared magnitude that underflows takes the floor; parts beyond 1e100
    // or NaN are pinned to 1e100 (here (1e100, -1e100): 2e200 and -pi/4); a
    // power of exactly the floor takes the logarithm.
    Record c({0, 1, 3, 4, 1e-200, 0, 1e200, kNaN, 0x1p-511, 0}, true);
    ASSERT_EQ(dspi_db(c.get(), 20.0), 0);
    EXPECT_EQ(c->complex, 1);
    expect_levels(c, {0, 20 * (kPi / 2) * 0.4342944819032518, 20 * std::log10(5.0),
                      20 * std::log10(std::exp(std::atan2(4.0, 3.0))), 2 * floor10, 0, 10 * std::log10(2e200),
                      20 * (-kPi / 4) * 0.4342944819032518, floor10, 0});
}

TEST(ComplexForm, PolynomialFromRandomRootsVanishesAtThem)
{
    Record scaled({1, 2}, false, 0.5);
    ASSERT_EQ(dspi_pztoc(scaled.get()), 0);
    EXPECT_EQ(scaled->delta, 1.0);

    const V roots = random_values(12, 5, 1.0);
    Record p(roots, true);
    ASSERT_EQ(dspi_pztoc(p.get()), 0);
    ASSERT_EQ(p->points, 7);
    for (std::size_t j = 0; j < 6; ++j) {
        const std::complex<long double> z(roots[2 * j], roots[2 * j + 1]);
        std::complex<long double> value = 0;
        for (int k = 6; k >= 0; --k) value = value * z + std::complex<long double>(p->data[2 * k], p->data[2 * k + 1]);
        EXPECT_LT(std::abs(value), 1e-13L);
    }
}

TEST(ComplexForm, OutOfPlaceMagnitudeAndRoot)
{
    Record src({3, 4, -6, 8}, true, 0.5), mag, power, root;
    ASSERT_EQ(dspu_mag(src.get(), mag.get()), 0);
    ASSERT_EQ(dspu_magsq(src.get(), power.get()), 0);
    ASSERT_EQ(dspu_sqrt(src.get(), root.get()), 0);
    EXPECT_EQ(mag.values(), (V{5, 10}));
    EXPECT_EQ(power.values(), (V{25, 100}));
    EXPECT_EQ(mag->delta, 0.5);
    EXPECT_EQ(mag->complex + power->complex, 0);
    EXPECT_EQ(src.values(), (V{3, 4, -6, 8}));  // the source is untouched
    ASSERT_EQ(root->complex, 1);
    for (int i = 0; i < 2; ++i) {
        const std::complex<long double> z = std::sqrt(std::complex<long double>(src->data[2 * i], src->data[2 * i + 1]));
        EXPECT_NEAR(root->data[2 * i], static_cast<double>(z.real()), 1e-15);
        EXPECT_NEAR(root->data[2 * i + 1], static_cast<double>(z.imag()), 1e-15);
    }

    Record neg({-4, 0}, true), rneg({-4, 9, kNaN}), huge({1e200, 0}, true), zero({0, 0}, true), res;
    ASSERT_EQ(dspu_sqrt(neg.get(), res.get()), 0);
    EXPECT_NEAR(res->data[0], 0.0, 1e-15);
    EXPECT_EQ(res->data[1], 2.0);
    ASSERT_EQ(dspu_sqrt(rneg.get(), res.get()), 0);
    EXPECT_EQ(res.values(), (V{0, 3, 0}));
    ASSERT_EQ(dspu_sqrt(huge.get(), res.get()), 0);  // |z| pinned to 1e100
    EXPECT_EQ(res.values(), (V{1e50, 0}));
    ASSERT_EQ(dspu_sqrt(zero.get(), res.get()), 0);
    EXPECT_EQ(res.values(), (V{0, 0}));
    Record edge({1e100, 1e100, kNaN, 1}, true);  // parts of +-1e100 are still in range; NaN is not
    ASSERT_EQ(dspu_sqrt(edge.get(), res.get()), 0);
    const std::complex<long double> edge_root = std::sqrt(std::complex<long double>(1e100L, 1e100L));
    EXPECT_NEAR(res->data[0], static_cast<double>(edge_root.real()), 1e35);
    EXPECT_NEAR(res->data[1], static_cast<double>(edge_root.imag()), 1e35);
    EXPECT_TRUE(std::isnan(res->data[2]) && std::isnan(res->data[3]));  // magnitude 1e100, phase NaN

    // In place: the destination is the source.
    Record self({-3, 4, 1e101, 0}, true);
    ASSERT_EQ(dspu_magsq(self.get(), self.get()), 0);
    EXPECT_EQ(self.values(), (V{25, 1e100}));
    ASSERT_EQ(dspu_mag(self.get(), self.get()), 0);
    EXPECT_EQ(self.values(), (V{25, 1e100}));
}

TEST(ComplexForm, OutOfPlaceReusesTheDestination)
{
    ScopedAllocHooks hooks;
    Record src({1, 2, 3, 4}, true), dst;
    for (int i = 0; i < 4; ++i) {
        ASSERT_EQ(dspu_mag(src.get(), dst.get()), 0);
        ASSERT_EQ(dspu_sqrt(src.get(), dst.get()), 0);
    }
    EXPECT_EQ(hooks.counts().total(), 3);  // source, first real result, first complex result
}

TEST(ComplexForm, FailedGrowthReportsAndLeavesTheStatedState)
{
    ScopedAllocHooks hooks;
    using Op = int32_t (*)(dsp *);
    for (Op op : {dspi_rtoc, dspi_rtop, dspi_timesi, +[](dsp *s) { return dspi_cscale(s, 1, 1); }}) {
        Record r({1, 2, 3});
        hooks.fail_from(0);
        EXPECT_EQ(op(r.get()), -1);
        hooks.never_fail();
        EXPECT_EQ(r->complex, 1);
        EXPECT_EQ(r->points, 3);
        EXPECT_EQ(r->allocated, 0);
        EXPECT_EQ(r->data, nullptr);
    }
    Record roots({1, 2, 3});
    hooks.fail_from(0);  // the work record cannot be had: the roots stay
    EXPECT_EQ(dspi_pztoc(roots.get()), -1);
    hooks.never_fail();
    EXPECT_EQ(roots.values(), (V{1, 2, 3}));
    hooks.fail_from(1);  // the copy back cannot grow the record
    EXPECT_EQ(dspi_pztoc(roots.get()), -1);
    hooks.never_fail();
    EXPECT_EQ(roots->allocated, 0);

    Record src({1, 2, 3}), dst;
    using Out = int32_t (*)(const dsp *, dsp *);
    for (Out op : {dspu_mag, dspu_magsq, dspu_sqrt}) {
        hooks.fail_from(0);
        EXPECT_EQ(op(src.get(), dst.get()), -1);
        hooks.never_fail();
        EXPECT_EQ(src.values(), (V{1, 2, 3}));
    }
}

TEST(Unwrap, AgainstThePreviousValue)
{
    // 3 - 2pi is within pi of 3; a first value is judged against 0. A step
    // folding to exactly +pi is kept as +pi, not turned into -pi.
    for (const auto &c : std::vector<std::pair<V, V>>{{{3.0, -3.0}, {3.0, 2 * kPi - 3.0}}, {{4.0}, {4.0 - 2 * kPi}}}) {
        Record r(c.first);
        ASSERT_EQ(dspi_unwrap(r.get()), 0);
        for (std::size_t i = 0; i < c.second.size(); ++i) EXPECT_DOUBLE_EQ(r->data[i], c.second[i]);
    }
    Record exact_pi({kPi + 2 * kPi});
    ASSERT_EQ(dspi_unwrap(exact_pi.get()), 0);
    EXPECT_EQ(exact_pi->data[0], kPi);

    // A wrapped linear phase comes back as the ramp (steps below pi).
    V ramp(200), wrapped(200);
    for (int i = 0; i < 200; ++i) {
        ramp[i] = 0.1 + 2.9 * i;
        wrapped[i] = std::atan2(std::sin(ramp[i]), std::cos(ramp[i]));
    }
    Record w(wrapped);
    ASSERT_EQ(dspi_unwrap(w.get()), 0);
    for (int i = 0; i < 200; ++i) EXPECT_NEAR(w->data[i], ramp[i], 1e-10);

    Record c({1, 2}, true), empty;
    EXPECT_EQ(dspi_unwrap(c.get()), -1);
    EXPECT_EQ(dspi_unwrap(empty.get()), 0);
}

TEST(Unwrap, AgainstAMovingMean)
{
    V noisy_ramp(300), wrapped(300);
    std::mt19937 gen(3);
    std::uniform_real_distribution<double> noise(-1.0, 1.0);
    for (int i = 0; i < 300; ++i) {
        noisy_ramp[i] = 0.05 * i + (i < 8 ? 1.0 : 1.7) * noise(gen);
        wrapped[i] = std::atan2(std::sin(noisy_ramp[i]), std::cos(noisy_ramp[i]));
    }

    // Window 1 is plain unwrapping, bit for bit.
    Record one(wrapped), plain(wrapped);
    ASSERT_EQ(dspi_unwrap_wnd(one.get(), 1), 0);
    ASSERT_EQ(dspi_unwrap(plain.get()), 0);
    EXPECT_EQ(one.values(), plain.values());

    // Jumps of up to 3.4 rad between neighbours defeat the previous-value
    // reference but not a mean over eight values.
    bool plain_fails = false;
    for (std::size_t i = 0; i < wrapped.size(); ++i) plain_fails |= std::fabs(plain->data[i] - noisy_ramp[i]) > 1.0;
    EXPECT_TRUE(plain_fails);
    Record eight(wrapped);
    ASSERT_EQ(dspi_unwrap_wnd(eight.get(), 8), 0);
    for (std::size_t i = 0; i < wrapped.size(); ++i) EXPECT_NEAR(eight->data[i], noisy_ramp[i], 1e-9) << i;

    // Window 3 by hand: during start-up the reference is the mean of the
    // values so far (1.5 before 4.5, which stays), then the mean of the last
    // three (2.5 before 6, which is folded although it is near its neighbour).
    Record hand({0.0, 3.0, 4.5, 6.0});
    ASSERT_EQ(dspi_unwrap_wnd(hand.get(), 3), 0);
    EXPECT_EQ(hand.values(), (V{0.0, 3.0, 4.5, 2.5 + (3.5 - 2 * kPi)}));
    // The steady mean is sum * (1/window): 3.5 * (1/3) lies one step below
    // 3.5 / 3, and a value just over pi above it is folded.
    Record rounding({0.0, 0.5, 3.0, std::nextafter(3.5 * (1.0 / 3) + kPi, 10.0)});
    ASSERT_EQ(dspi_unwrap_wnd(rounding.get(), 3), 0);
    EXPECT_LT(rounding->data[3], 0.0);

    // Window 0 folds each value on its own; a window longer than the record works too.
    Record zero({7.0, -7.0, 3.5}), longer({0.5, 0.5 + 2 * kPi});
    ASSERT_EQ(dspi_unwrap_wnd(zero.get(), 0), 0);
    ASSERT_EQ(dspi_unwrap_wnd(longer.get(), 10), 0);
    EXPECT_DOUBLE_EQ(zero->data[0], 7.0 - 2 * kPi);
    EXPECT_DOUBLE_EQ(zero->data[1], 2 * kPi - 7.0);
    EXPECT_DOUBLE_EQ(zero->data[2], 3.5 - 2 * kPi);
    EXPECT_DOUBLE_EQ(longer->data[1], 0.5);

    Record c({1, 2}, true), r({1.0});
    EXPECT_EQ(dspi_unwrap_wnd(c.get(), 3), -1);
    EXPECT_EQ(dspi_unwrap_wnd(r.get(), -1), -1);
    EXPECT_EQ(r.values(), V{1.0});
}
