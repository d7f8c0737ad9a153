// Kaiser, Gauss, Tukey, sinc-lobe, caller cosine-sum and FIR design windows
// against their closed forms.
#include "window/reference.hpp"

#include <functional>

namespace {

using namespace window_test;
using dsp_test::Record;

const int kNoRotate = DSP_WINDOW_NO_ROTATE;

// Each generator on n ones, not rotated.
auto kaiser(int n, double beta, int f) { return read_window(n, [=](dsp *s) { return dspi_window_kaiser(s, beta, f | kNoRotate); }); }
auto gauss(int n, double sigma, int f) { return read_window(n, [=](dsp *s) { return dspi_window_gauss(s, sigma, f | kNoRotate); }); }
auto tukey(int n, double r, int f) { return read_window(n, [=](dsp *s) { return dspi_window_tukey(s, r, f | kNoRotate); }); }
auto lobe(int n, double extent, double q, int f)
{
    return read_window(n, [=](dsp *s) { return dspi_window_sinc(s, extent, q, f | kNoRotate); });
}

TEST(WindowParametric, ShapesFollowTheirClosedForms)
{
    // Kaiser's modes 2 and 3 alike divide by the peak I0(beta); one point is 1.0.
    for (int n : {1, 2, 3, 8, 9, 64}) {
        for (int sym : {0, DSP_WINDOW_SYMMETRIC}) {
            SCOPED_TRACE(testing::Message() << "n " << n << " symmetric " << sym);
            for (int mode : {0, 1, 2, 3}) {
                for (double beta : {0.0, 3.5, 20.5, -8.0, 150.0})
                    EXPECT_TRUE(close_to(kaiser(n, beta, mode | sym), normalised(kaiser_shape(n, sym, beta), mode), 1e-12L));
                if (mode == 3) continue;  // the other shapes give zeros in mode 3: below
                EXPECT_TRUE(close_to(gauss(n, 0.2, mode | sym), normalised(gauss_shape(n, sym, 0.2L), mode), 1e-12L));
                for (double r : {0.25, 0.5, 1.0, 1.5})
                    EXPECT_TRUE(close_to(tukey(n, r, mode | sym), normalised(tukey_shape(n, sym, r), mode), 1e-12L)) << r;
                for (double q : {1.0, 2.0, 0.0, 1.5})  // extent 4 is beyond the first zero at pi
                    EXPECT_TRUE(close_to(lobe(n, 4.0, q, mode | sym), normalised(lobe_shape(n, sym, 4.0L, q), mode), 1e-12L)) << q;
            }
        }
    }
    EXPECT_EQ(kaiser(2, 5.0, 2)[1], 1.0);
    const double e2 = std::exp(-2.0), e05 = std::exp(-0.5);
    EXPECT_EQ(gauss(5, 0.2, 2), (std::vector<double>{e2, e05, 1.0, e05, e2}));
    // Mode 3 leaves zeros, deliberately.
    EXPECT_EQ(gauss(9, 0.2, 3), std::vector<double>(9, 0.0));
    EXPECT_EQ(tukey(9, 0.5, 3), std::vector<double>(9, 0.0));
    EXPECT_EQ(lobe(9, 3.0, 1.0, 3), std::vector<double>(9, 0.0));
}

TEST(WindowParametric, LimitsAndDegenerateParameters)
{
    // Out-of-range beta on either side becomes the positive limit, a lower
    // one in the power mode; I0 near 1e198 stays finite.
    const double limit = 460.51701859880916;
    for (int mode : {0, 1, 2, 3}) {
        const double edge = mode == 1 ? 230.25850929940458 : limit;
        for (double beyond : {1000.0, -1.3 * edge}) EXPECT_EQ(kaiser(33, beyond, mode), kaiser(33, edge, mode)) << mode;
        EXPECT_NE(kaiser(33, edge * (1 - 1e-12), mode), kaiser(33, edge, mode)) << mode;
    }
    EXPECT_TRUE(close_to(kaiser(33, limit, 0), normalised(kaiser_shape(33, false, limit), 0), 1e-12L));
    // Sigma 0 keeps only the centre (the middle pair when symmetric).
    EXPECT_EQ(gauss(5, 0.0, 2), (std::vector<double>{0, 0, 1, 0, 0}));
    EXPECT_EQ(gauss(4, 0.0, 0 | DSP_WINDOW_SYMMETRIC), (std::vector<double>{0, 2, 2, 0}));
    // Tukey: the far point of an even length is exactly 0 for any taper, even
    // one too short to move the flat top's edge, and 1 without taper.
    EXPECT_EQ(tukey(8, 0.25, 2), (std::vector<double>{0, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(tukey(8, 1e-17, 2), (std::vector<double>{0, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(tukey(8, 0.0, 2), std::vector<double>(8, 1.0));
    // Beyond the first zero (8 points, extent 4: the far point at x = 4) the
    // exponents 1 and 2 are recognised within the tolerant equality.
    const double u = std::sin(4.0) / 4.0;
    EXPECT_EQ(lobe(8, 4.0, 1.0 + 4e-16, 2)[0], u);
    EXPECT_EQ(lobe(8, 4.0, 2.0 * (1.0 + 4e-16), 2)[0], u * u);
    EXPECT_EQ(lobe(8, 4.0, 1.0 + 1e-14, 2)[0], 0.0);
}

TEST(WindowParametric, RotationAndCallerCosineSum)
{
    const std::vector<double> x = {1, 2, 3, 4, 5, 6, 7};
    const auto w = read_window(7, [](dsp *s) { return dspi_window_tukey(s, 0.5, kNoRotate); });
    Record s(x, false, 0.5);
    ASSERT_EQ(dspi_window_tukey(s.get(), 0.5, 0), 0);
    for (int i = 0; i < 7; ++i) EXPECT_EQ(s->data[i], x[(i + 3) % 7] * w[(i + 3) % 7]);
    EXPECT_EQ(s->delta, 0.5);

    // Always rotated: undo by reading index (i + n/2) % n.
    auto caller_cos = [](const std::vector<double> &a, int n) {
        Record c(a);
        auto got = read_window(n, [&](dsp *r) { return dspi_window_cos(r, c.get()); });
        std::rotate(got.begin(), got.begin() + (n - n / 2), got.end());
        return got;
    };
    EXPECT_TRUE(close_to(caller_cos({0.3, -0.2, 0.7}, 10), cosine_window(std::vector<double>{0.3, -0.2, 0.7}, 10, 10), 1e-13L));
    EXPECT_EQ(caller_cos({3.0}, 5), std::vector<double>(5, 3.0));
    EXPECT_EQ(caller_cos({}, 5), std::vector<double>(5, 0.0));
    const Record complex_coefficients({0.5, 0.0, 0.5, 0.0}, true);
    EXPECT_TRUE(refuses(x, [&](dsp *r) { return dspi_window_cos(r, complex_coefficients.get()); }));
}

TEST(WindowParametric, FirDesignWindows)
{
    const int n = 33;
    auto fir = [&](int type, double p) { return read_window(n, [=](dsp *s) { return dspi_window_fir(s, type, p); }); };
    EXPECT_TRUE(close_to(fir(DSP_WINDOW_FIR_GAUSS, 0.05), gauss_shape(n, false, 1 / (n * 0.05L * kPi)), 1e-12L));
    EXPECT_EQ(fir(DSP_WINDOW_FIR_GAUSS, 0.0), std::vector<double>(n, 1.0));
    // Kaiser's formula in its three ranges of attenuation.
    for (double p : {0.1, 0.05, 0.02}) {
        const long double a = (n - 1) * p * 14.36L + 7.95L;
        const long double beta = a > 50 ? 0.1102L * (a - 8.7L) : a >= 21 ? 0.5842L * std::pow(a - 21, 0.4L) + 0.07886L * (a - 21) : 0;
        EXPECT_TRUE(close_to(fir(DSP_WINDOW_FIR_KAISER, p), kaiser_shape(n, true, beta), 1e-12L)) << p;
    }
    EXPECT_EQ(read_window(1, [](dsp *s) { return dspi_window_fir(s, DSP_WINDOW_FIR_KAISER, 0.3); }), std::vector<double>{1.0});
    EXPECT_TRUE(close_to(fir(DSP_WINDOW_FIR_SINC, 0.1), lobe_shape(n, false, kPi / 1.24L, 0.62L * n * 0.1L), 1e-12L));
    for (double p : {-0.01, 0.02, 0.03, 0.1, 0.2}) {  // a negative width takes the small-width formula
        const long double x = 1.12L * n * p;
        const long double k = x <= 1.25L ? 0.386L / x + 0.453L : x < 5 ? 0.774L - 0.0251L * x : 0.648L;
        EXPECT_TRUE(close_to(fir(DSP_WINDOW_FIR_SINC_FITTED, p), lobe_shape(n, false, kPi / 2 / k, k * x), 1e-12L)) << p;
    }
    EXPECT_EQ(fir(DSP_WINDOW_FIR_SINC_FITTED, 0.0), std::vector<double>(n, 1.0));
    // Catalogue types with symmetric placement: only the parametric ones.
    EXPECT_TRUE(close_to(fir(DSP_WINDOW_KAISER70, 0.0), fixed_shape(DSP_WINDOW_KAISER70, n, true), 1e-12L));
    for (int type : {DSP_WINDOW_HANN, DSP_WINDOW_FLAT7, DSP_WINDOW_BARTLETT, 99})
        EXPECT_TRUE(refuses({1, 2, 3}, [=](dsp *s) { return dspi_window_fir(s, type, 0.1); })) << type;
}

TEST(WindowParametric, FailuresLeaveTheSignal)
{
    const std::vector<double> x = {5, 4, 3, 2, 1, 0, -1, -2};
    const Record coefficients({0.5, 0.5});
    // The shapes with flags also refuse an own length.
    const std::function<int(dsp *, int)> shapes[] = {
        [](dsp *s, int f) { return dspi_window_kaiser(s, 6.0, f); },
        [](dsp *s, int f) { return dspi_window_gauss(s, 0.3, f | 1); },
        [](dsp *s, int f) { return dspi_window_tukey(s, 0.5, f); },
        [](dsp *s, int f) { return dspi_window_sinc(s, 3.0, 1.0, f | 1); },
    };
    for (const auto &shape : shapes) {
        EXPECT_EQ(failures_leaving_signal(x, [&](dsp *s) { return shape(s, 0); }), 1);
        EXPECT_TRUE(refuses(x, [&](dsp *s) { return shape(s, DSP_WINDOW_OWN_LENGTH); }));
    }
    EXPECT_EQ(failures_leaving_signal(x, [&](dsp *s) { return dspi_window_cos(s, coefficients.get()); }), 1);
    EXPECT_EQ(failures_leaving_signal(x, [](dsp *s) { return dspi_window_fir(s, DSP_WINDOW_FIR_KAISER, 0.1); }), 1);
}

}  // namespace
