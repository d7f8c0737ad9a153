// Catalogue windows through dspi_window / dspi_window2 against their closed
// forms, in every scaling mode, for odd and even lengths and own lengths.
#include "window/reference.hpp"

namespace {

using namespace window_test;
using dsp_test::Record;

std::vector<double> catalogue(int type, int flags, int n, double length = 0.0)
{
    return read_window(n, [&](dsp *s) { return dspi_window2(s, type, flags | DSP_WINDOW_NO_ROTATE, length); });
}

TEST(WindowCatalogue, CosineSumsFollowTheirCoefficients)
{
    for (const RawCosine &c : raw_cosines())
        for (int mode : kModes)
            for (int n : {1, 2, 3, 7, 8, 31, 64, 2500}) {
                const auto w = catalogue(c.type, mode, n);
                EXPECT_TRUE(close_to(w, cosine_window(mode_coefficients(c, mode), n, n), 1e-12L))
                    << "type " << c.type << " mode " << mode << " n " << n;
                // Mean or RMS of the scaled window; small n alias: see the scale tests.
                if (mode == DSP_WINDOW_SCALE_NONE || n < 2 * static_cast<int>(c.a.size())) continue;
                const Values got(w.begin(), w.end());
                EXPECT_NEAR(mode == 0 ? mean(got) : rms(got), mode == 0 ? c.gain : 1.0, 1e-12) << c.type;
            }
    // Sample 1024 right of the centre has its angle step recomputed as a
    // product rather than accumulated; the triangle recomputes its value.
    EXPECT_EQ(catalogue(DSP_WINDOW_HANN, DSP_WINDOW_SCALE_NONE, 4001)[2000 + 1024],
              0.5 + 0.5 * std::cos(1024 * (6.283185307179586 / 4001)));
    EXPECT_EQ(catalogue(DSP_WINDOW_BARTLETT, DSP_WINDOW_SCALE_NONE, 4001)[2000 + 1024], 1.0 - 2.0 * 1024 / 4001);
    // Each term's angle is the previous term's plus the step: for Flat7 two
    // points from the centre of 11, k * step would round differently.
    const std::vector<double> &a = raw_cosine(DSP_WINDOW_FLAT7).a;
    const double step = 6.283185307179586 / 11 + 6.283185307179586 / 11;
    double value = a[0], angle = 0.0;
    for (std::size_t k = 1; k < a.size(); ++k) value += a[k] * std::cos(angle += step);
    const auto flat7 = catalogue(DSP_WINDOW_FLAT7, DSP_WINDOW_SCALE_NONE, 11);
    EXPECT_EQ(flat7[7], value);
}

TEST(WindowCatalogue, OwnLengthKeepsExactlyThatManyPoints)
{
    const int own = DSP_WINDOW_OWN_LENGTH;
    for (int type : {DSP_WINDOW_HANN, DSP_WINDOW_HAMMING, DSP_WINDOW_FLATTOP})
        for (int mode : kModes)
            for (int n : {16, 17})
                for (double length : {0.0, 1.0, 4.0, 7.0, 10.5, 12.0, 16.0, 17.0, 20.5})
                    EXPECT_TRUE(close_to(catalogue(type, mode | own, n, length),
                                         own_length_cosine(mode_coefficients(raw_cosine(type), mode), n, length), 1e-12L))
                        << "type " << type << " mode " << mode << " n " << n << " L " << length;
    // A negative length keeps only the centre.
    EXPECT_EQ(catalogue(DSP_WINDOW_HANN, DSP_WINDOW_SCALE_NONE | own, 5, -3.0), (std::vector<double>{0, 0, 1, 0, 0}));
    // A length equal to n up to rounding is the whole window.
    EXPECT_TRUE(close_to(catalogue(DSP_WINDOW_HAMMING, own, 16, 16.0 * (1 - 1e-15)),
                         cosine_window(mode_coefficients(raw_cosine(DSP_WINDOW_HAMMING), 0), 16, 16), 1e-13L));
    // The uniform window covers the first ceil(L) points, at least one.
    for (double length : {0.0, 2.5, 3.0000000000000004, 9.0, 40.0}) {
        const auto ones = static_cast<std::size_t>(std::clamp(std::ceil(length * (1 - 1e-14)), 1.0, 12.0));
        std::vector<double> want(12, 0.0);
        std::fill(want.begin(), want.begin() + static_cast<long>(ones), 1.0);
        EXPECT_EQ(catalogue(DSP_WINDOW_UNIFORM, own, 12, length), want) << length;
    }
}

TEST(WindowCatalogue, TriangleAndParametricTypesFollowTheirClosedForms)
{
    for (int type = 1; type <= 24; type = type == 1 ? 14 : type + 1)
        for (int mode : kModes)
            for (int flags : {0, type == 1 ? 0 : DSP_WINDOW_SYMMETRIC})  // the triangle has no symmetric form
                for (int n : {1, 2, 7, 8, 64, 65})
                    EXPECT_TRUE(close_to(catalogue(type, mode | flags, n),
                                         normalised(fixed_shape(type, n, flags != 0), mode), 1e-12L))
                        << "type " << type << " mode " << mode << " flags " << flags << " n " << n;
}

TEST(WindowCatalogue, RotationAndComplexRecords)
{
    const std::vector<double> ramp = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (int n : {8, 9}) {
        const std::vector<double> x(ramp.begin(), ramp.begin() + n);
        const auto w = catalogue(DSP_WINDOW_BLACKMAN, 0, n);
        std::vector<double> pairs;
        for (double v : x) pairs.insert(pairs.end(), {v, -2 * v});
        for (int flags : {0, DSP_WINDOW_NO_ROTATE}) {
            Record s(x, false, 0.25), c(pairs, true);
            ASSERT_EQ(dspi_window(s.get(), DSP_WINDOW_BLACKMAN, flags), 0);
            ASSERT_EQ(dspi_window(c.get(), DSP_WINDOW_BLACKMAN, flags), 0);
            EXPECT_EQ(s->delta, 0.25);
            // Rotation moves the window's centre n/2 to index 0.
            for (int i = 0; i < n; ++i) {
                const int from = flags ? i : (i + n / 2) % n;
                EXPECT_EQ(s->data[i], x[from] * w[from]) << i;
                EXPECT_EQ(c->data[2 * i], x[from] * w[from]);
                EXPECT_EQ(c->data[2 * i + 1], -2 * x[from] * w[from]);
            }
        }
    }
    // The uniform window: untouched, rotated only on request, even with an
    // own length.
    Record u(ramp);
    EXPECT_EQ(dspi_window(u.get(), DSP_WINDOW_UNIFORM, 0), 0);
    EXPECT_EQ(dspi_window(u.get(), DSP_WINDOW_UNIFORM, DSP_WINDOW_NO_ROTATE | DSP_WINDOW_SYMMETRIC), 0);
    EXPECT_EQ(dspi_window2(u.get(), DSP_WINDOW_UNIFORM, DSP_WINDOW_OWN_LENGTH, 9.0), 0);
    EXPECT_EQ(u.values(), ramp);
    EXPECT_EQ(dspi_window(u.get(), DSP_WINDOW_UNIFORM, DSP_WINDOW_ROTATE_UNIFORM), 0);
    EXPECT_EQ(u.values(), (std::vector<double>{5, 6, 7, 8, 9, 1, 2, 3, 4}));
    Record v(ramp);
    EXPECT_EQ(dspi_window2(v.get(), DSP_WINDOW_UNIFORM, DSP_WINDOW_OWN_LENGTH | DSP_WINDOW_ROTATE_UNIFORM, 7.0), 0);
    EXPECT_EQ(v.values(), (std::vector<double>{5, 6, 7, 0, 0, 1, 2, 3, 4}));
}

TEST(WindowCatalogue, RefusedRequestsLeaveTheSignal)
{
    const std::vector<double> x = {3, 1, 4, 1, 5, 9, 2, 6};
    auto refused = [&](int type, int flags, double length) {
        return refuses(x, [&](dsp *s) { return dspi_window2(s, type, flags, length); });
    };
    for (int type = 0; type <= 24; ++type) EXPECT_TRUE(refused(type, 3, 8.0)) << "mode 3, type " << type;
    for (int type = 1; type <= 13; ++type) EXPECT_TRUE(refused(type, DSP_WINDOW_SYMMETRIC, 0.0)) << type;
    // The triangle and the parametric windows have no own length.
    for (int type = 14; type <= 24; ++type) EXPECT_TRUE(refused(type, DSP_WINDOW_OWN_LENGTH, 8.0)) << type;
    EXPECT_TRUE(refused(DSP_WINDOW_BARTLETT, DSP_WINDOW_OWN_LENGTH, 8.0));
    for (int type : {-1, 25, 100}) EXPECT_TRUE(refused(type, 0, 0.0)) << type;
    EXPECT_TRUE(refused(DSP_WINDOW_UNIFORM, DSP_WINDOW_OWN_LENGTH | DSP_WINDOW_SYMMETRIC, 8.0));
    EXPECT_TRUE(refuses(x, [](dsp *s) { return dspi_window(s, DSP_WINDOW_HANN, DSP_WINDOW_OWN_LENGTH); }));
    Record empty;
    EXPECT_EQ(dspi_window(empty.get(), DSP_WINDOW_HANN, 0), 0);
    EXPECT_EQ(empty->points, 0);
}

}  // namespace
