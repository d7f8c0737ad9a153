// Catalogue windows through dspi_window / dspi_window2 against their closed
// forms, in every scaling mode, for odd and even lengths and own lengths.
#include "window/reference.hpp"

#include <algorithm>

namespace {

using namespace window_test;
using dsp_test::Record;

const int kLengths[] = {1, 2, 3, 7, 8, 31, 64, 2500};
const int kModes[] = {DSP_WINDOW_SCALE_AMPLITUDE, DSP_WINDOW_SCALE_POWER, DSP_WINDOW_SCALE_NONE};

std::vector<double> catalogue(int type, int flags, int n, double length = 0.0)
{
    int status = -1;
    auto w = read_window(n, [&](dsp *s) { return dspi_window2(s, type, flags | DSP_WINDOW_NO_ROTATE, length); },
                         &status);
    EXPECT_EQ(status, 0) << "type " << type << " flags " << flags << " n " << n;
    return w;
}

// The support of an own length L < n around the centre: offsets -L/2 .. L/2,
// one fewer on the right for even L, so that L points remain.
bool inside_own_length(int m, double length)
{
    const int whole = static_cast<int>(std::floor(length));
    const bool even = whole % 2 == 0 && whole == length;
    return m >= -whole / 2 && m <= whole / 2 - (even ? 1 : 0);
}

Values own_length_cosine(const std::vector<long double> &a, int n, double length)
{
    if (length >= n) return cosine_window(a, n, length);
    Values w = cosine_window(a, n, length > 0 ? length : 1.0);
    for (int i = 0; i < n; ++i)
        if (!inside_own_length(i - n / 2, length)) w[static_cast<std::size_t>(i)] = 0.0L;
    return w;
}

TEST(WindowCatalogue, CosineSumsFollowTheirCoefficients)
{
    for (const RawCosine &c : raw_cosines()) {
        for (int mode : kModes) {
            for (int n : kLengths) {
                const auto w = catalogue(c.type, mode, n);
                EXPECT_TRUE(close_to(w, cosine_window(mode_coefficients(c, mode), n, n), 1e-12L))
                    << "type " << c.type << " mode " << mode << " n " << n;
                if (n < 2 * static_cast<int>(c.a.size())) continue;  // aliased: see the scale tests
                const Values got(w.begin(), w.end());
                if (mode == DSP_WINDOW_SCALE_AMPLITUDE) {
                    EXPECT_NEAR(mean(got), c.gain, 1e-12) << c.type;
                }
                if (mode == DSP_WINDOW_SCALE_POWER) {
                    EXPECT_NEAR(rms(got), 1.0, 1e-12) << c.type;
                }
            }
        }
    }
    // Even lengths are periodic: w[n-1] = w[1]; the peak sits at n/2.
    const auto hann = catalogue(DSP_WINDOW_HANN, DSP_WINDOW_SCALE_AMPLITUDE, 8);
    EXPECT_EQ(hann[4], 2.0);
    EXPECT_EQ(hann[7], hann[1]);
    EXPECT_NEAR(hann[0], 0.0, 1e-15);
    // Sample 1024 right of the centre has its angle step recomputed as a
    // product rather than accumulated.
    const auto long_hann = catalogue(DSP_WINDOW_HANN, DSP_WINDOW_SCALE_NONE, 4001);
    EXPECT_EQ(long_hann[2000 + 1024], 0.5 + 0.5 * std::cos(1024 * (6.283185307179586 / 4001)));
}

TEST(WindowCatalogue, TriangleIsScaledToItsMode)
{
    for (int mode : kModes) {
        for (int n : {1, 2, 3, 8, 9, 2500, 2501}) {
            const Values shape = centred(n, false, [n](long double d) { return 1.0L - 2.0L * d / n; });
            EXPECT_TRUE(close_to(catalogue(DSP_WINDOW_BARTLETT, mode, n), normalised(shape, mode), 1e-12L))
                << "mode " << mode << " n " << n;
        }
    }
    // Every 1024 samples the value is recomputed from its offset.
    EXPECT_EQ(catalogue(DSP_WINDOW_BARTLETT, DSP_WINDOW_SCALE_NONE, 4001)[2000 + 1024], 1.0 - 2.0 * 1024 / 4001);
}

TEST(WindowCatalogue, OwnLengthKeepsExactlyThatManyPoints)
{
    const int own = DSP_WINDOW_OWN_LENGTH;
    for (int type : {DSP_WINDOW_HANN, DSP_WINDOW_HAMMING, DSP_WINDOW_FLATTOP}) {
        for (int mode : kModes) {
            for (int n : {16, 17}) {
                for (double length : {0.0, 1.0, 4.0, 7.0, 10.5, 12.0, 16.0, 17.0, 20.5}) {
                    const auto a = mode_coefficients(raw_cosine(type), mode);
                    const auto w = catalogue(type, mode | own, n, length);
                    EXPECT_TRUE(close_to(w, own_length_cosine(a, n, length), 1e-12L))
                        << "type " << type << " mode " << mode << " n " << n << " L " << length;
                    if (type == DSP_WINDOW_HAMMING && length < n && length == std::floor(length)) {
                        EXPECT_EQ(std::count_if(w.begin(), w.end(), [](double v) { return v != 0.0; }), length);
                    }
                }
            }
        }
    }
    // A length equal to n up to rounding is the whole window.
    const double nearly = 16.0 * (1 - 1e-15);
    EXPECT_TRUE(close_to(catalogue(DSP_WINDOW_HAMMING, own, 16, nearly),
                         cosine_window(mode_coefficients(raw_cosine(DSP_WINDOW_HAMMING), 0), 16, 16), 1e-13L));
    // The uniform window covers the first ceil(L) points, at least one.
    for (double length : {0.0, 2.5, 3.0000000000000004, 9.0, 40.0}) {
        const auto w = catalogue(DSP_WINDOW_UNIFORM, own, 12, length);
        const long ones = std::count(w.begin(), w.end(), 1.0);
        EXPECT_EQ(ones, std::clamp(static_cast<long>(std::ceil(length * (1 - 1e-14))), 1L, 12L)) << length;
        EXPECT_TRUE(std::all_of(w.begin(), w.begin() + ones, [](double v) { return v == 1.0; }));
        EXPECT_EQ(std::count(w.begin(), w.end(), 0.0), 12 - ones);
    }
}

TEST(WindowCatalogue, ParametricTypesUseTheirFixedParameters)
{
    const double beta[] = {9.473960131326246,  10.751776690564654, 12.014077292090791,
                           13.264372446115681, 14.505082414495599, 15.73795091271457};
    const double sigma[] = {0.1583722, 0.1442161, 0.1328102};
    for (int type = 14; type <= 24; ++type) {
        for (int mode : kModes) {
            for (int flags : {0, DSP_WINDOW_SYMMETRIC}) {
                for (int n : {1, 2, 7, 8, 64, 65}) {
                    const bool split = flags && n % 2 == 0;
                    Values want;
                    if (type <= 19) {
                        const long double b = beta[type - 14];
                        const long double dd = flags ? n - 1 : n;
                        want = centred(n, split, [&](long double d) {
                            return bessel_i0(b * std::sqrt(std::max(0.0L, 1.0L - 4.0L * d * d / (dd * dd))));
                        });
                        want = n == 1 ? Values{1.0L} : mode == 2 ? scaled(want, 1.0L / bessel_i0(b)) : want;
                    } else if (type <= 22) {
                        const long double width = n * static_cast<long double>(sigma[type - 20]);
                        want = centred(n, split, [&](long double d) { return std::exp(-0.5L * d * d / (width * width)); });
                    } else if (type == 23) {
                        want = centred(n, split, [n](long double d) {
                            const long double x = d * 2.0L * kPi / n;
                            return x == 0 ? 1.0L : std::sin(x) / x;
                        });
                    } else {
                        const long double flat = 0.375L * n, taper = 0.25L * n;
                        want = centred(n, split, [&](long double d) {
                            return d <= flat ? 1.0L : 0.5L * (1.0L + std::cos(2.0L * kPi * (d - flat) / taper));
                        });
                    }
                    if (n > 1 || type > 19) want = normalised(want, mode);
                    EXPECT_TRUE(close_to(catalogue(type, mode | flags, n), want, 1e-12L))
                        << "type " << type << " mode " << mode << " flags " << flags << " n " << n;
                }
            }
        }
    }
}

TEST(WindowCatalogue, RotationAndComplexRecords)
{
    const std::vector<double> ramp = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (int n : {8, 9}) {
        const std::vector<double> x(ramp.begin(), ramp.begin() + n);
        const auto w = catalogue(DSP_WINDOW_BLACKMAN, 0, n);
        Record s(x, false, 0.25);
        ASSERT_EQ(dspi_window(s.get(), DSP_WINDOW_BLACKMAN, 0), 0);
        // The window's centre n/2 moves to index 0.
        for (int i = 0; i < n; ++i) {
            const int from = (i + n / 2) % n;
            EXPECT_EQ(s->data[i], x[from] * w[from]) << i;
        }
        EXPECT_EQ(s->delta, 0.25);

        std::vector<double> pairs;
        for (double v : x) pairs.insert(pairs.end(), {v, -2 * v});
        Record c(pairs, true);
        ASSERT_EQ(dspi_window(c.get(), DSP_WINDOW_BLACKMAN, DSP_WINDOW_NO_ROTATE), 0);
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(c->data[2 * i], x[i] * w[i]);
            EXPECT_EQ(c->data[2 * i + 1], -2 * x[i] * w[i]);
        }
    }
    // The uniform window: untouched, rotated only on request, even with an
    // own length.
    Record u(ramp);
    EXPECT_EQ(dspi_window(u.get(), DSP_WINDOW_UNIFORM, 0), 0);
    EXPECT_EQ(u.values(), ramp);
    EXPECT_EQ(dspi_window(u.get(), DSP_WINDOW_UNIFORM, DSP_WINDOW_NO_ROTATE | DSP_WINDOW_SYMMETRIC), 0);
    EXPECT_EQ(u.values(), ramp);
    EXPECT_EQ(dspi_window(u.get(), DSP_WINDOW_UNIFORM, DSP_WINDOW_ROTATE_UNIFORM), 0);
    EXPECT_EQ(u.values(), (std::vector<double>{5, 6, 7, 8, 9, 1, 2, 3, 4}));
    Record v(ramp);
    EXPECT_EQ(dspi_window2(v.get(), DSP_WINDOW_UNIFORM, DSP_WINDOW_OWN_LENGTH, 9.0), 0);
    EXPECT_EQ(v.values(), ramp);
    EXPECT_EQ(dspi_window2(v.get(), DSP_WINDOW_UNIFORM, DSP_WINDOW_OWN_LENGTH | DSP_WINDOW_ROTATE_UNIFORM, 7.0), 0);
    EXPECT_EQ(v.values(), (std::vector<double>{5, 6, 7, 0, 0, 1, 2, 3, 4}));
}

TEST(WindowCatalogue, RefusedRequestsLeaveTheSignal)
{
    const std::vector<double> x = {3, 1, 4, 1, 5, 9, 2, 6};
    auto refused = [&](int type, int flags, double length) {
        Record s(x);
        const int status = dspi_window2(s.get(), type, flags, length);
        return status == -1 && std::equal(x.begin(), x.end(), s->data);
    };
    for (int type = 0; type <= 24; ++type) EXPECT_TRUE(refused(type, 3, 8.0)) << "mode 3, type " << type;
    for (int type : {-1, 25, 100}) EXPECT_TRUE(refused(type, 0, 0.0)) << type;
    for (int type = 1; type <= 13; ++type) EXPECT_TRUE(refused(type, DSP_WINDOW_SYMMETRIC, 0.0)) << type;
    // The triangle and the parametric windows have no own length.
    for (int type = 14; type <= 24; ++type) EXPECT_TRUE(refused(type, DSP_WINDOW_OWN_LENGTH, 8.0)) << type;
    EXPECT_TRUE(refused(DSP_WINDOW_BARTLETT, DSP_WINDOW_OWN_LENGTH, 8.0));
    EXPECT_TRUE(refused(DSP_WINDOW_UNIFORM, DSP_WINDOW_OWN_LENGTH | DSP_WINDOW_SYMMETRIC, 8.0));
    Record s(x);
    EXPECT_EQ(dspi_window(s.get(), DSP_WINDOW_HANN, DSP_WINDOW_OWN_LENGTH), -1);
    EXPECT_EQ(s.values(), x);
    Record empty;
    EXPECT_EQ(dspi_window(empty.get(), DSP_WINDOW_HANN, 0), 0);
    EXPECT_EQ(empty->points, 0);
}

}  // namespace
