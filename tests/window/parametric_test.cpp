// Kaiser, Gauss, Tukey, sinc-lobe, caller cosine-sum and FIR design windows
// against their closed forms.
#include "support/alloc_hooks.hpp"
#include "window/reference.hpp"

#include <algorithm>
#include <functional>

namespace {

using namespace window_test;
using dsp_test::Record;
using Apply = std::function<int(dsp *)>;

const int kNoRotate = DSP_WINDOW_NO_ROTATE;
const int kModes[] = {DSP_WINDOW_SCALE_AMPLITUDE, DSP_WINDOW_SCALE_POWER, DSP_WINDOW_SCALE_NONE};

std::vector<double> generated(int n, const Apply &apply)
{
    int status = -1;
    auto w = read_window(n, apply, &status);
    EXPECT_EQ(status, 0) << "n " << n;
    return w;
}

Values kaiser_shape(int n, bool symmetric, long double beta)
{
    const long double d = symmetric ? n - 1 : n;
    return centred(n, symmetric && n % 2 == 0, [&](long double x) {
        return bessel_i0(beta * std::sqrt(std::max(0.0L, 1.0L - 4.0L * x * x / (d * d))));
    });
}

Values lobe_shape(int n, bool split, long double extent, long double q)
{
    return centred(n, split, [&](long double d) {
        const long double x = d * 2.0L * extent / n;
        const long double u = x == 0 ? 1.0L : std::sin(x) / x;
        if (u > 0) return std::pow(u, q);
        return q == 1 ? u : q == 2 ? u * u : q == 0 ? 1.0L : 0.0L;
    });
}

TEST(WindowParametric, KaiserShapeClampAndPeak)
{
    for (double beta : {0.0, 3.5, 20.5, -8.0, 150.0}) {
        for (int sym : {0, DSP_WINDOW_SYMMETRIC}) {
            for (int mode : {0, 1, 2, 3}) {
                for (int n : {2, 3, 8, 9, 64}) {
                    const Values shape = kaiser_shape(n, sym != 0, beta);
                    const Values want = mode >= 2 ? scaled(shape, 1.0L / bessel_i0(beta)) : normalised(shape, mode);
                    EXPECT_TRUE(close_to(generated(n, [&](dsp *s) { return dspi_window_kaiser(s, beta, mode | sym | kNoRotate); }),
                                         want, 1e-12L))
                        << "beta " << beta << " flags " << (mode | sym) << " n " << n;
                }
            }
        }
    }
    // Two points: the edge and the peak, divided by the peak.
    const auto two = generated(2, [](dsp *s) { return dspi_window_kaiser(s, 5.0, 2 | kNoRotate); });
    EXPECT_EQ(two[1], 1.0);
    EXPECT_DOUBLE_EQ(two[0], static_cast<double>(1.0L / bessel_i0(5.0L)));
    // One point is a factor 1.0 in every mode.
    for (int mode : {0, 1, 2, 3}) {
        Record one(std::vector<double>{3.0});
        EXPECT_EQ(dspi_window_kaiser(one.get(), 7.0, mode), 0);
        EXPECT_EQ(one.values(), std::vector<double>{3.0});
    }
    // Out-of-range beta becomes the positive limit; I0 near 1e198 stays finite.
    auto kaiser = [](double beta, int flags) {
        return generated(33, [=](dsp *s) { return dspi_window_kaiser(s, beta, flags | kNoRotate); });
    };
    const double limit = 460.51701859880916, power_limit = 230.25850929940458;
    for (int mode : {0, 2}) {
        EXPECT_EQ(kaiser(1000.0, mode), kaiser(limit, mode));
        EXPECT_EQ(kaiser(-1000.0, mode), kaiser(limit, mode));
        EXPECT_NE(kaiser(limit * (1 - 1e-12), mode), kaiser(limit, mode));
    }
    EXPECT_EQ(kaiser(1000.0, 1), kaiser(power_limit, 1));
    EXPECT_EQ(kaiser(-300.0, 1), kaiser(power_limit, 1));
    EXPECT_TRUE(close_to(kaiser(limit, 0), normalised(kaiser_shape(33, false, limit), 0), 1e-12L));
}

TEST(WindowParametric, GaussTukeyAndSincLobe)
{
    for (int n : {1, 2, 7, 8, 33}) {
        for (int sym : {0, DSP_WINDOW_SYMMETRIC}) {
            const bool split = sym && n % 2 == 0;
            for (int mode : kModes) {
                const int flags = mode | sym | kNoRotate;
                const Values gauss = centred(n, split, [n](long double d) { return std::exp(-0.5L * d * d / (n * n * 0.04L)); });
                EXPECT_TRUE(close_to(generated(n, [&](dsp *s) { return dspi_window_gauss(s, 0.2, flags); }),
                                     normalised(gauss, mode), 1e-12L));
                for (long double r : {0.25L, 0.5L, 1.0L}) {
                    const Values tukey = centred(n, split, [&](long double d) {
                        const long double flat = (1 - r) * n / 2;
                        return d <= flat ? 1.0L : 0.5L * (1 + std::cos(2 * kPi * (d - flat) / (n * r)));
                    });
                    EXPECT_TRUE(close_to(generated(n, [&](dsp *s) { return dspi_window_tukey(s, static_cast<double>(r), flags); }),
                                         normalised(tukey, mode), 1e-12L))
                        << "tukey r " << static_cast<double>(r) << " n " << n << " flags " << flags;
                }
                for (long double q : {1.0L, 2.0L, 0.0L, 1.5L}) {
                    const double extent = 4.0;  // beyond the first zero at pi
                    EXPECT_TRUE(close_to(generated(n, [&](dsp *s) { return dspi_window_sinc(s, extent, static_cast<double>(q), flags); }),
                                         normalised(lobe_shape(n, split, extent, q), mode), 1e-12L))
                        << "lobe q " << static_cast<double>(q) << " n " << n << " flags " << flags;
                }
            }
        }
    }
    const double e2 = std::exp(-2.0), e05 = std::exp(-0.5);
    EXPECT_EQ(generated(5, [](dsp *s) { return dspi_window_gauss(s, 0.2, 2 | kNoRotate); }),
              (std::vector<double>{e2, e05, 1.0, e05, e2}));
    const auto pair = generated(4, [](dsp *s) { return dspi_window_gauss(s, 0.3, 2 | DSP_WINDOW_SYMMETRIC | kNoRotate); });
    EXPECT_EQ(pair[1], pair[2]);
    EXPECT_EQ(pair[0], pair[3]);
    // Sigma 0 keeps only the centre (the middle pair when symmetric).
    EXPECT_EQ(generated(5, [](dsp *s) { return dspi_window_gauss(s, 0.0, 2 | kNoRotate); }),
              (std::vector<double>{0, 0, 1, 0, 0}));
    EXPECT_EQ(generated(4, [](dsp *s) { return dspi_window_gauss(s, 0.0, 0 | DSP_WINDOW_SYMMETRIC | kNoRotate); }),
              (std::vector<double>{0, 2, 2, 0}));
    // Tukey: the far point of an even length is exactly 0, or 1 without taper.
    EXPECT_EQ(generated(8, [](dsp *s) { return dspi_window_tukey(s, 0.25, 2 | kNoRotate); }),
              (std::vector<double>{0, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(generated(8, [](dsp *s) { return dspi_window_tukey(s, 0.0, 2 | kNoRotate); }), std::vector<double>(8, 1.0));
    // Mode 3 leaves zeros, deliberately.
    for (const Apply &apply : {Apply([](dsp *s) { return dspi_window_gauss(s, 0.2, 3); }),
                               Apply([](dsp *s) { return dspi_window_tukey(s, 0.5, 3); }),
                               Apply([](dsp *s) { return dspi_window_sinc(s, 3.0, 1.0, 3); })})
        EXPECT_EQ(generated(9, apply), std::vector<double>(9, 0.0));
}

TEST(WindowParametric, RotationAndCallerCosineSum)
{
    const std::vector<double> x = {1, 2, 3, 4, 5, 6, 7};
    const auto w = generated(7, [](dsp *s) { return dspi_window_tukey(s, 0.5, kNoRotate); });
    Record s(x, false, 0.5);
    ASSERT_EQ(dspi_window_tukey(s.get(), 0.5, 0), 0);
    for (int i = 0; i < 7; ++i) EXPECT_EQ(s->data[i], x[(i + 3) % 7] * w[(i + 3) % 7]);
    EXPECT_EQ(s->delta, 0.5);

    // Always rotated: undo by reading index (i + n/2) % n.
    auto caller_cos = [](const std::vector<double> &a, int n) {
        Record c(a);
        auto got = generated(n, [&](dsp *s) { return dspi_window_cos(s, c.get()); });
        std::rotate(got.begin(), got.begin() + (n - n / 2), got.end());
        return got;
    };
    EXPECT_TRUE(close_to(caller_cos({0.3, -0.2, 0.7}, 10), cosine_window({0.3L, -0.2L, 0.7L}, 10, 10), 1e-13L));
    EXPECT_EQ(caller_cos({3.0}, 5), std::vector<double>(5, 3.0));
    EXPECT_EQ(caller_cos({}, 5), std::vector<double>(5, 0.0));
    Record complex_coefficients({0.5, 0.0, 0.5, 0.0}, true);
    Record r(x);
    EXPECT_EQ(dspi_window_cos(r.get(), complex_coefficients.get()), -1);
    EXPECT_EQ(r.values(), x);
}

TEST(WindowParametric, FirDesignWindows)
{
    const int n = 33;
    auto fir = [&](int type, double p) { return generated(n, [=](dsp *s) { return dspi_window_fir(s, type, p); }); };
    const Values gauss = centred(n, false, [](long double d) { return std::exp(-0.5L * std::pow(d * 0.05L * kPi, 2)); });
    EXPECT_TRUE(close_to(fir(DSP_WINDOW_FIR_GAUSS, 0.05), gauss, 1e-12L));
    EXPECT_EQ(fir(DSP_WINDOW_FIR_GAUSS, 0.0), std::vector<double>(n, 1.0));
    // Kaiser's formula in its three ranges of attenuation.
    for (double p : {0.1, 0.05, 0.02}) {
        const long double a = (n - 1) * p * 14.36L + 7.95L;
        const long double beta = a > 50 ? 0.1102L * (a - 8.7L) : a >= 21 ? 0.5842L * std::pow(a - 21, 0.4L) + 0.07886L * (a - 21) : 0;
        EXPECT_TRUE(close_to(fir(DSP_WINDOW_FIR_KAISER, p), scaled(kaiser_shape(n, true, beta), 1 / bessel_i0(beta)), 1e-12L)) << p;
    }
    EXPECT_EQ(generated(1, [](dsp *s) { return dspi_window_fir(s, DSP_WINDOW_FIR_KAISER, 0.3); }), std::vector<double>{1.0});
    EXPECT_TRUE(close_to(fir(DSP_WINDOW_FIR_SINC, 0.1), lobe_shape(n, false, kPi / 1.24L, 0.62L * n * 0.1L), 1e-12L));
    for (double p : {0.02, 0.03, 0.1, 0.2}) {
        const long double x = 1.12L * n * p;
        const long double k = x <= 1.25L ? 0.386L / x + 0.453L : x < 5 ? 0.774L - 0.0251L * x : 0.648L;
        EXPECT_TRUE(close_to(fir(DSP_WINDOW_FIR_SINC_FITTED, p), lobe_shape(n, false, kPi / 2 / k, k * x), 1e-12L)) << p;
    }
    EXPECT_EQ(fir(DSP_WINDOW_FIR_SINC_FITTED, 0.0), std::vector<double>(n, 1.0));
    // Catalogue types with symmetric placement: only the parametric ones.
    EXPECT_TRUE(close_to(fir(DSP_WINDOW_KAISER70, 0.0), scaled(kaiser_shape(n, true, 9.473960131326246L), 1 / bessel_i0(9.473960131326246L)), 1e-12L));
    for (int refused : {DSP_WINDOW_HANN, DSP_WINDOW_FLAT7, DSP_WINDOW_BARTLETT, 99}) {
        Record s(std::vector<double>(8, 2.0));
        EXPECT_EQ(dspi_window_fir(s.get(), refused, 0.1), -1) << refused;
        EXPECT_EQ(s.values(), std::vector<double>(8, 2.0));
    }
}

TEST(WindowParametric, FailuresLeaveTheSignal)
{
    const std::vector<double> x = {5, 4, 3, 2, 1, 0, -1, -2};
    const Record coefficients({0.5, 0.5});
    const Apply calls[] = {
        [](dsp *s) { return dspi_window_kaiser(s, 6.0, 0); },
        [](dsp *s) { return dspi_window_gauss(s, 0.3, 1); },
        [](dsp *s) { return dspi_window_tukey(s, 0.5, 0); },
        [](dsp *s) { return dspi_window_sinc(s, 3.0, 1.0, 1); },
        [&](dsp *s) { return dspi_window_cos(s, coefficients.get()); },
        [](dsp *s) { return dspi_window_fir(s, DSP_WINDOW_FIR_KAISER, 0.1); },
    };
    for (const Apply &call : calls) {
        dsp_test::ScopedAllocHooks hooks;
        const int failures = dsp_test::for_each_failing_growth(hooks, [&](int k) {
            hooks.never_fail();
            Record s(x);
            hooks.fail_from(k);
            const int status = call(s.get());
            if (status != 0) {
                EXPECT_EQ(s.values(), x);
            }
            return status == 0;
        });
        EXPECT_EQ(failures, 1);
    }
    for (const Apply &own_length : {Apply([](dsp *s) { return dspi_window_kaiser(s, 6.0, DSP_WINDOW_OWN_LENGTH); }),
                                    Apply([](dsp *s) { return dspi_window_gauss(s, 0.3, DSP_WINDOW_OWN_LENGTH); }),
                                    Apply([](dsp *s) { return dspi_window_tukey(s, 0.5, DSP_WINDOW_OWN_LENGTH); }),
                                    Apply([](dsp *s) { return dspi_window_sinc(s, 3.0, 1.0, DSP_WINDOW_OWN_LENGTH); })}) {
        Record s(x);
        EXPECT_EQ(own_length(s.get()), -1);
        EXPECT_EQ(s.values(), x);
    }
}

}  // namespace
