// One-port calibration end to end: error terms from three standards, then
// correction of measured devices, as a network-analyzer user would run it.
#include "calibration/calib_support.hpp"
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using calib_test::C;
using calib_test::CL;
using calib_test::V;

namespace {

constexpr long double kPiL = 3.141592653589793238462643383279L;

C rounded(CL z) { return C(double(z.real()), double(z.imag())); }

// Random error terms of a test port at n frequency points.
struct PortTerms {
    V d, s, r;
    PortTerms(std::size_t n, std::mt19937 &gen)
        : d(calib_test::random_points(n, gen, 0.01, 0.2)), s(calib_test::random_points(n, gen, 0.01, 0.3)),
          r(calib_test::random_points(n, gen, 0.5, 1.2))
    {
    }
    // What the analyzer reads for a true reflection g, m = D + R g / (1 - S g),
    // formed in long double.
    C measure(std::size_t k, C g) const { return rounded(CL(d[k]) + CL(r[k]) * CL(g) / (1.0L - CL(s[k]) * CL(g))); }
};

double max_error(const V &got, const V &want, std::size_t from, std::size_t to)
{
    double e = 0;
    for (std::size_t k = from; k < to; ++k) e = std::max(e, std::abs(got[k] - want[k]));
    return e;
}

// Ideal standards, and offset standards of a coaxial kit: an open with
// fringing capacitance and a short with inductance, each behind a delay,
// and a load with a small reflection growing with frequency.
struct Kit {
    V open, shrt, load;
};

Kit offset_kit(std::size_t n)
{
    Kit kit{V(n), V(n), V(n)};
    for (std::size_t k = 0; k < n; ++k) {
        const long double w = 2 * kPiL * (10e6L + k * 20e9L / n);
        const CL delay = std::exp(CL(0, -2 * w * 30e-12L));
        const CL jx_open(0, w * 50e-15L * 50), jx_short(0, w * 20e-12L / 50);
        kit.open[k] = rounded((1.0L - jx_open) / (1.0L + jx_open) * delay);
        kit.shrt[k] = rounded((jx_short - 1.0L) / (jx_short + 1.0L) * delay);
        kit.load[k] = rounded(CL(0.01L * w / 1.3e11L, 0.005L));
    }
    return kit;
}

}  // namespace

TEST(CalibOnePort, CalibrationRecoversTermsAndCorrectsDevices)
{
    const std::size_t n = 1001;
    for (const Kit &kit : {Kit{V(n, 1.0), V(n, -1.0), V(n, 0.0)}, offset_kit(n)}) {
        std::mt19937 gen(21);
        const PortTerms truth(n, gen);
        V m0(n), m1(n), m2(n);
        for (std::size_t k = 0; k < n; ++k) {
            m0[k] = truth.measure(k, kit.open[k]);
            m1[k] = truth.measure(k, kit.shrt[k]);
            m2[k] = truth.measure(k, kit.load[k]);
        }
        // Points outside [2, n - 3) are not touched.
        const C mark(-9, -9);
        m0[1] = m1[1] = m2[1] = m0[n - 3] = mark;
        ASSERT_EQ(Compute1PortTerms(m0.data(), m1.data(), m2.data(), kit.open.data(), kit.shrt.data(), kit.load.data(), 2,
                                    int32_t(n - 3)),
                  0);
        EXPECT_EQ(m0[1], mark);
        EXPECT_EQ(m2[1], mark);
        EXPECT_EQ(m0[n - 3], mark);
        EXPECT_LE(max_error(m0, truth.d, 2, n - 3), 1e-14);
        EXPECT_LE(max_error(m1, truth.s, 2, n - 3), 1e-14);
        EXPECT_LE(max_error(m2, truth.r, 2, n - 3), 1e-14);

        const V device = calib_test::random_points(n, gen, 0.0, 1.0);
        V measured(n), corrected(n, mark);
        for (std::size_t k = 0; k < n; ++k) measured[k] = truth.measure(k, device[k]);
        EXPECT_EQ(Correct1Port(m0.data(), m1.data(), m2.data(), measured.data(), corrected.data(), 2, int32_t(n - 3)),
                  int32_t(n - 5));
        EXPECT_LE(max_error(corrected, device, 2, n - 3), 2e-14);
        EXPECT_EQ(corrected[1], mark);
        EXPECT_EQ(corrected[n - 3], mark);
        // In place gives the same values.
        Correct1Port(m0.data(), m1.data(), m2.data(), measured.data(), measured.data(), 2, int32_t(n - 3));
        EXPECT_TRUE(std::equal(&measured[2], &measured[n - 3], &corrected[2]));
    }
}

TEST(CalibOnePort, IdealTermsEmptyRangesAndDegeneratePoints)
{
    std::mt19937 gen(4);
    const std::size_t n = 16;
    const V zero(n, 0.0), one(n, 1.0), measured = calib_test::random_points(n, gen, 0.0, 2.0);
    V out(n, C(5, 5));
    EXPECT_EQ(Correct1Port(zero.data(), zero.data(), one.data(), measured.data(), out.data(), 0, int32_t(n)), int32_t(n));
    EXPECT_EQ(out, measured);
    V untouched(n, C(5, 5));
    EXPECT_EQ(Correct1Port(zero.data(), zero.data(), one.data(), measured.data(), untouched.data(), 9, 4), -5);
    EXPECT_EQ(untouched, V(n, C(5, 5)));

    // Zero directivity and tracking with a zero measurement divide by zero:
    // a NaN point, and the next point is corrected as usual.
    V r = one;
    r[3] = 0.0;
    Correct1Port(zero.data(), zero.data(), r.data(), zero.data(), out.data(), 3, 5);
    EXPECT_TRUE(std::isnan(out[3].real()) && std::isnan(out[3].imag()));
    EXPECT_EQ(out[4], C(0, 0));

    // All three standards reflecting 0: the first pivot fails, the system
    // stays [[0,1,0],[0,1,0],[0,1,0]], and x = (m1, m1, m1) gives D = m1,
    // S = -m1, R = m1 - m1 m1. The next point is solved normally.
    V m0 = measured, m1 = calib_test::random_points(n, gen, 0.1, 1.0), m2 = m1;
    const C m = m1[0];
    V g0(n, 0.0), g1 = g0, g2 = g0;
    g0[1] = 1;
    g1[1] = -1;
    m0[1] = 0.1 + 0.5 * 1.0 / (1.0 - 0.2);  // D 0.1, S 0.2, R 0.5: open, short, load
    m1[1] = 0.1 + 0.5 * -1.0 / (1.0 + 0.2);
    m2[1] = 0.1;
    EXPECT_EQ(Compute1PortTerms(m0.data(), m1.data(), m2.data(), g0.data(), g1.data(), g2.data(), 0, 2), 0);
    EXPECT_EQ(m0[0], m);
    EXPECT_EQ(m1[0], -m);
    EXPECT_EQ(m2[0], m - C(m.real() * m.real() - m.imag() * m.imag(), m.real() * m.imag() + m.imag() * m.real()));
    EXPECT_LE(std::abs(m0[1] - 0.1) + std::abs(m1[1] - 0.2) + std::abs(m2[1] - 0.5), 3e-15);
}

// A reciprocal device with a matched output port, measured forward through
// the one-port terms, load match L and transmission tracking T:
//   G1 = S11 + L S21^2,  m = D + R G1 / (1 - S G1),  s = T S21 / (1 - S G1).
// Enhanced response returns S21 and, with the load-match term, S11.
TEST(CalibOnePort, EnhancedResponseUndoesTheForwardModel)
{
    const std::size_t n = 501;
    const int32_t all = int32_t(n);
    std::mt19937 gen(13);
    const PortTerms truth(n, gen);
    const V l = calib_test::random_points(n, gen, 0.01, 0.2), t = calib_test::random_points(n, gen, 0.5, 1.2);
    const V s11 = calib_test::random_points(n, gen, 0.0, 0.5), s21 = calib_test::random_points(n, gen, 0.1, 1.0);
    V m(n), s(n), g1(n);
    for (std::size_t k = 0; k < n; ++k) {
        const CL gl = CL(s11[k]) + CL(l[k]) * CL(s21[k]) * CL(s21[k]);
        g1[k] = rounded(gl);
        s[k] = rounded(CL(t[k]) * CL(s21[k]) / (1.0L - CL(truth.s[k]) * gl));
        m[k] = truth.measure(k, g1[k]);
    }
    auto enhanced = [&](C *refl, C *trans, int32_t start, int32_t stop, unsigned char use_load) {
        return ApplyEnhancedResponse(truth.d.data(), truth.s.data(), truth.r.data(), l.data(), t.data(), m.data(), s.data(),
                                     refl, trans, start, stop, use_load);
    };
    for (unsigned char use_load : {0, 1}) {
        V refl(n), trans(n), refl_only(n), trans_only(n);
        EXPECT_EQ(enhanced(refl.data(), trans.data(), 0, all, use_load), all);
        EXPECT_LE(max_error(trans, s21, 0, n), 1e-14);
        EXPECT_LE(max_error(refl, use_load ? s11 : g1, 0, n), 1e-14);
        // Each output alone gives the same values.
        enhanced(refl_only.data(), nullptr, 0, all, use_load);
        enhanced(nullptr, trans_only.data(), 0, all, use_load);
        EXPECT_EQ(refl_only, refl);
        EXPECT_EQ(trans_only, trans);
    }
    V out(n, C(5, 5));
    EXPECT_EQ(enhanced(out.data(), out.data(), 7, 7, 0), 0);
    EXPECT_EQ(out, V(n, C(5, 5)));

    // Hand-derived real point, D 1, S 1, R 9, L 3, T 13, m 3, s 3: den = 11,
    // t21 = (9 x 3) / (13 x 11) and s11 = 2 / 11 - 3 (t21 t21), every quotient
    // a product with the divisor's reciprocal. Other groupings, (R s / T) / den
    // or (L t21) t21, round differently here. Any nonzero flag uses L.
    const double t21 = (9.0 * 3.0) * (1.0 / (13.0 * 11.0));
    const double s11_lm = 2.0 * (1.0 / 11.0) - 3.0 * (t21 * t21);
    ASSERT_NE(t21, ((9.0 * 3.0) * (1.0 / 13.0)) * (1.0 / 11.0));
    ASSERT_NE(s11_lm, 2.0 * (1.0 / 11.0) - (3.0 * t21) * t21);
    const C d1(1), s1(1), r9(9), l3(3), t13(13), m3(3), s3(3);
    C refl1, trans1;
    EXPECT_EQ(ApplyEnhancedResponse(&d1, &s1, &r9, &l3, &t13, &m3, &s3, &refl1, &trans1, 0, 1, 2), 1);
    EXPECT_EQ(trans1, C(t21, 0));
    EXPECT_EQ(refl1, C(s11_lm, 0));
}
