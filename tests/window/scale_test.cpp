// Scale factors and noise bandwidths against the mean and root mean square of
// the unscaled windows, computed here from their closed forms.
#include "window/reference.hpp"

namespace {

using namespace window_test;

double scale_of(int type, int flags, int n, double length = 0.0)
{
    double s = -1.0;
    const bool own = flags & DSP_WINDOW_OWN_LENGTH;
    EXPECT_EQ(own ? dsp_window2_scale(&s, type, flags, n, length) : dsp_window_scale(&s, type, flags, n), 0)
        << "type " << type << " flags " << flags << " n " << n;
    return s;
}

// The scale factor times what it stands for, 1 when right: 1 / mean (times
// the flat-top gain) or 1 / rms of the unscaled window.
long double scale_ratio(double scale, const Values &raw, int mode, long double gain = 1)
{
    return scale * (mode == DSP_WINDOW_SCALE_AMPLITUDE ? mean(raw) / gain : rms(raw));
}

TEST(WindowScale, CosineTablesIncludeAliasedHarmonics)
{
    for (const RawCosine &c : raw_cosines()) {
        const int terms = static_cast<int>(c.a.size());
        for (int mode : {DSP_WINDOW_SCALE_AMPLITUDE, DSP_WINDOW_SCALE_POWER})
            for (int n = 1; n <= 2 * terms + 2; ++n) {
                const int points = n > 2 * terms + 1 ? 1000 : n;
                EXPECT_NEAR(scale_ratio(scale_of(c.type, mode, points), cosine_window(c.a, points, points), mode, c.gain),
                            1.0, 1e-12) << "type " << c.type << " mode " << mode << " n " << points;
            }
    }
    EXPECT_EQ(scale_of(DSP_WINDOW_HANN, DSP_WINDOW_SCALE_AMPLITUDE, 8), 2.0);
    EXPECT_EQ(scale_of(DSP_WINDOW_P301, DSP_WINDOW_SCALE_AMPLITUDE, 64), 0.9994484 / 0.239523981482822);
    for (int type = 0; type <= 24; ++type) {
        EXPECT_EQ(scale_of(type, DSP_WINDOW_SCALE_NONE, 64), 1.0);
        EXPECT_EQ(scale_of(type, DSP_WINDOW_SCALE_AMPLITUDE, 0), 1.0);
    }
}

TEST(WindowScale, GeneratedWindowsAreMeasured)
{
    for (int mode : {DSP_WINDOW_SCALE_AMPLITUDE, DSP_WINDOW_SCALE_POWER}) {
        for (int n : {2, 7, 8, 64, 65})
            for (int type = 1; type <= 24; type = type == 1 ? 14 : type + 1)
                for (int flags : {0, type == 1 ? 0 : DSP_WINDOW_SYMMETRIC})
                    EXPECT_NEAR(scale_ratio(scale_of(type, mode | flags, n), fixed_shape(type, n, flags != 0), mode),
                                1.0, type <= 19 ? 1e-10 : 1e-12) << "type " << type << " flags " << flags << " n " << n;
        // Own lengths: the flat top keeps its gain, the uniform window
        // covers ceil(L) points.
        const RawCosine &flat = raw_cosine(DSP_WINDOW_FLATTOP);
        EXPECT_NEAR(scale_ratio(scale_of(DSP_WINDOW_FLATTOP, mode | DSP_WINDOW_OWN_LENGTH, 64, 33.0),
                                own_length_cosine(flat.a, 64, 33.0), mode, flat.gain), 1.0, 1e-12);
        EXPECT_NEAR(scale_of(DSP_WINDOW_UNIFORM, mode | DSP_WINDOW_OWN_LENGTH, 64, 15.5), mode == 0 ? 4.0 : 2.0, 1e-15);
    }
}

TEST(WindowScale, NoiseBandwidth)
{
    auto enbw = [](int type, int n) {
        double e = -1.0;
        EXPECT_EQ(dsp_window_enbw(&e, type, n), 0);
        return e;
    };
    // (a0^2 + sum(ak^2) / 2) / a0^2 for cosine sums; the flat tops report it
    // times the square of their gain.
    for (const RawCosine &c : raw_cosines())
        EXPECT_NEAR(enbw(c.type, 4096), power_sum(c.a) / (c.a[0] * static_cast<long double>(c.a[0])) * c.gain * c.gain, 1e-12);
    EXPECT_NEAR(enbw(DSP_WINDOW_HANN, 4096), 1.5, 1e-12);
    EXPECT_NEAR(enbw(DSP_WINDOW_BLACKMAN_HARRIS4, 4096), 2.0212, 5e-5);
    EXPECT_NEAR(enbw(DSP_WINDOW_FLATTOP, 4096) / (0.9996403 * 0.9996403), 3.8221, 5e-5);
    EXPECT_NEAR(enbw(DSP_WINDOW_BARTLETT, 64), 4.0 * (64 * 64 + 2) / (3.0 * 64 * 64), 1e-13);
    EXPECT_EQ(enbw(DSP_WINDOW_UNIFORM, 100), 1.0);
    // An own length of half the record doubles the bandwidth in its bins.
    double e = 0.0;
    EXPECT_EQ(dsp_window2_enbw(&e, DSP_WINDOW_HANN, 4096, 2048.0), 0);
    EXPECT_NEAR(e, 3.0, 1e-12);
    // No points left: both factors are 0.0, so the bandwidth is 0 / 0.
    EXPECT_EQ(scale_of(DSP_WINDOW_HANN, DSP_WINDOW_OWN_LENGTH, 64, 0.0), 0.0);
    EXPECT_EQ(dsp_window2_enbw(&e, DSP_WINDOW_HANN, 64, 0.0), 0);
    EXPECT_TRUE(std::isnan(e));
}

TEST(WindowScale, Refusals)
{
    double s = 7.0;
    EXPECT_EQ(dsp_window_scale(nullptr, DSP_WINDOW_HANN, 0, 8), -1);
    EXPECT_EQ(dsp_window_scale(&s, DSP_WINDOW_HANN, 3, 8), -1);
    EXPECT_EQ(dsp_window_scale(&s, DSP_WINDOW_HANN, DSP_WINDOW_OWN_LENGTH, 8), -1);
    EXPECT_EQ(dsp_window_scale(&s, 25, 0, 8), -1);
    EXPECT_EQ(dsp_window_scale(&s, -1, 1, 8), -1);
    for (int type : {1, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24})
        EXPECT_EQ(dsp_window2_scale(&s, type, DSP_WINDOW_OWN_LENGTH, 8, 4.0), -1) << type;
    EXPECT_EQ(dsp_window_enbw(nullptr, DSP_WINDOW_HANN, 8), -1);
    EXPECT_EQ(dsp_window_enbw(&s, 25, 8), -1);
    EXPECT_EQ(dsp_window2_enbw(&s, DSP_WINDOW_KAISER70, 8, 8.0), -1);
    EXPECT_EQ(s, 7.0);
    // Measuring needs a temporary window: every growth failure is reported.
    dsp_test::ScopedAllocHooks hooks;
    const int failures = dsp_test::for_each_failing_growth(hooks, [&](int) {
        double m = 7.0;
        const int status = dsp_window_scale(&m, DSP_WINDOW_KAISER90, DSP_WINDOW_SCALE_POWER, 300);
        EXPECT_TRUE(status == 0 || m == 7.0);
        return status == 0;
    });
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(hooks.counts().frees, hooks.counts().allocs - failures);
}

}  // namespace
