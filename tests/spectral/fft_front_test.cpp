// The spectrum front end on small cases worked out by hand: selection,
// windowing and rotation, scaling, zero padding, one- and two-sided output,
// and the way back.
#include "support/dft_oracle.hpp"
#include "support/alloc_hooks.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

using dsp_test::LComplex;
using dsp_test::Record;

namespace {

void expect_near_all(const std::vector<double> &got, const std::vector<double> &want, double tol = 1e-14)
{
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) EXPECT_NEAR(got[i], want[i], tol) << "at " << i;
}

// One-sided spectrum (1/N) of a real sequence, by the direct sum.
std::vector<double> half_spectrum(const std::vector<double> &x)
{
    std::vector<LComplex> z(x.begin(), x.end());
    std::vector<double> out;
    for (const LComplex &c : dsp_test::naive_dft(z, -1, 1.0L / x.size(), x.size() / 2 + 1)) {
        out.push_back(static_cast<double>(c.real()));
        out.push_back(static_cast<double>(c.imag()));
    }
    return out;
}

// Periodic Hann window in amplitude scaling, centred on n/2.
double hann(int i, int n) { return 1.0 + std::cos(2.0 * M_PI * (i - n / 2) / n); }

}  // namespace

TEST(FftFront, SelectionScalingAndZeroPaddingAfterTheData)
{
    Record in({1, 2, 3, 4, 5, 6, 7, 8}, false, 0.5);
    Record out;
    // Whole input: x2, then 1/N: [2,4,6,8] -> 5, -1 + j, -1.
    Record four({1, 2, 3, 4}, false, 0.5);
    ASSERT_EQ(dsph_fft(four.get(), out.get(), 0, 0.0, DSP_WINDOW_UNIFORM, 0), 0);
    EXPECT_EQ(out.values(), std::vector<double>({5, 0, -1, 1, -1, 0}));
    EXPECT_EQ(out->delta, 0.5);
    EXPECT_EQ(four.values(), std::vector<double>({1, 2, 3, 4}));
    // nfft 4, fraction 0.5: [1, 2] x2, padded to 4 after the data and
    // rescaled by 4/2: [4, 8, 0, 0] -> 3, 1 - 2j, -1.
    ASSERT_EQ(dsph_fft(in.get(), out.get(), 4, 0.5, DSP_WINDOW_UNIFORM, 0), 0);
    EXPECT_EQ(out.values(), std::vector<double>({3, 0, 1, -2, -1, 0}));
    // A fraction that is no whole number of points rounds up: 8 x 0.7 = 5.6
    // takes 6 points, padded to 8 with the ratio 8/6.
    ASSERT_EQ(dsph_fft(in.get(), out.get(), 8, 0.7, DSP_WINDOW_UNIFORM, 0), 0);
    const double r = 8.0 / 6.0;
    expect_near_all(out.values(), half_spectrum({2 * r, 4 * r, 6 * r, 8 * r, 10 * r, 12 * r, 0, 0}));
    // A product a rounding above a whole number takes that number: 8 x
    // (0.375 + 1 ulp) is 3 + 2^-51, three points padded with the ratio 8/3.
    ASSERT_EQ(dsph_fft(in.get(), out.get(), 8, std::nextafter(0.375, 1.0), DSP_WINDOW_UNIFORM, 0), 0);
    const double t = 8.0 / 3.0;
    expect_near_all(out.values(), half_spectrum({2 * t, 4 * t, 6 * t, 0, 0, 0, 0, 0}));
    // Fractions outside (0, 1] mean the whole; nfft above the input pads.
    for (double fraction : {0.0, -1.0, 1.5}) {
        ASSERT_EQ(dsph_fft(in.get(), out.get(), 16, fraction, DSP_WINDOW_UNIFORM, 0), 0);
        std::vector<double> padded;
        for (int i = 1; i <= 8; ++i) padded.push_back(4.0 * i);
        padded.resize(16, 0.0);
        expect_near_all(out.values(), half_spectrum(padded));
    }
    // nfft that is no power of two rounds up to one.
    ASSERT_EQ(dsph_fft(in.get(), out.get(), 5, 1.0, DSP_WINDOW_UNIFORM, 0), 0);
    EXPECT_EQ(out->points, 5);
    // The transform length stops at 2^30: the padding to it is made to fail,
    // which leaves the attempted length behind.
    for (int32_t nfft : {(1 << 30) + 1, INT_MAX}) {
        Record one({1.0}), big({0.0});
        dsp_test::ScopedAllocHooks hooks;
        hooks.fail_from(0);
        EXPECT_EQ(dsph_fft(one.get(), big.get(), nfft, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_NO_WINDOW), -1);
        EXPECT_EQ(big->points, 1 << 30);
    }
}

TEST(FftFront, WindowRotationAndTwoSidedOutput)
{
    Record ones(std::vector<double>(8, 1.0)), out;
    // Hann rotated to index 0 is 1 + cos(2 pi n / 8): bins 0 and +-1 only.
    // Two-sided (no x2), zero frequency moved to point 4.
    ASSERT_EQ(dsph_fft(ones.get(), out.get(), 0, 1.0, DSP_WINDOW_HANN, DSP_FFT_TWO_SIDED), 0);
    EXPECT_EQ(out->complex, 1);
    expect_near_all(out.values(), {0, 0, 0, 0, 0, 0, 0.5, 0, 1, 0, 0.5, 0, 0, 0, 0, 0});
    // The window is as long as the selection, which stops at the input's end:
    // Hann of 4 points, [0, 1, 2, 1] rotated to [2, 1, 0, 1], x2, split
    // around the zeros with the ratio 8/4.
    Record four(std::vector<double>(4, 1.0));
    ASSERT_EQ(dsph_fft(four.get(), out.get(), 8, 1.0, DSP_WINDOW_HANN, 0), 0);
    expect_near_all(out.values(), half_spectrum({8, 4, 0, 0, 0, 0, 0, 4}));
    // Centred: scaled by N2 instead of 2, one-sided.
    ASSERT_EQ(dsph_fft(ones.get(), out.get(), 3, 0.25, DSP_WINDOW_HANN, DSP_FFT_CENTERED), 0);
    expect_near_all(out.values(), {8, 0, 4, 0, 0, 0, 0, 0, 0, 0});
    // Complex input is always two-sided: e^(j pi n / 2) is bin 1, read x2.
    Record tone({1, 0, 0, 1, -1, 0, 0, -1}, true), out2;
    ASSERT_EQ(dsph_fft(tone.get(), out2.get(), 0, 1.0, DSP_WINDOW_UNIFORM, 0), 0);
    expect_near_all(out2.values(), {0, 0, 0, 0, 0, 0, 2, 0});
}

TEST(FftFront, ZeroPhaseNoWindowAndRawModes)
{
    Record in({1, 2, 3, 4}), out;
    // Zero phase rotates even the uniform window: [3, 4, 1, 2] x2 -> 5, 1 - j, -1.
    ASSERT_EQ(dsph_fft(in.get(), out.get(), 64, 0.1, DSP_WINDOW_UNIFORM, DSP_FFT_ZERO_PHASE), 0);
    expect_near_all(out.values(), {5, 0, 1, -1, -1, 0});
    // No window, but a window type still rotates, and padding splits the
    // rotated data around the zeros with the ratio 8/4:
    // [6, 8, 2, 4] -> [12, 16, 0, 0, 0, 0, 4, 8].
    ASSERT_EQ(dsph_fft(in.get(), out.get(), 8, 1.0, DSP_WINDOW_HAMMING, DSP_FFT_NO_WINDOW), 0);
    expect_near_all(out.values(), half_spectrum({12, 16, 0, 0, 0, 0, 4, 8}));
    // No window and the uniform type: no rotation, padding after the data.
    ASSERT_EQ(dsph_fft(in.get(), out.get(), 8, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_NO_WINDOW), 0);
    expect_near_all(out.values(), half_spectrum({4, 8, 12, 16, 0, 0, 0, 0}));
    // Raw: a plain complex FFT of the zero-padded input, nothing else.
    Record three({1, 2, 3}), raw;
    ASSERT_EQ(dsph_fft(three.get(), raw.get(), 1024, 0.5, DSP_WINDOW_HANN, DSP_FFT_RAW), 0);
    EXPECT_EQ(raw.values(), std::vector<double>({1.5, 0, -0.5, -0.5, 0.5, 0, -0.5, 0.5}));
    // Raw inverse: padded to four points, then summed without a factor.
    ASSERT_EQ(dsph_fft(three.get(), raw.get(), 0, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_RAW | DSP_FFT_INVERSE), 0);
    EXPECT_EQ(raw.values(), std::vector<double>({6, 0, -2, 2, 2, 0, -2, -2}));

    // Six points, padded to eight: rotated to [4, 5, 6, 1, 2, 3] and split
    // around the zeros. Centred: x8, padding unscaled. Zero phase, with or
    // without the window: x2, padding rescaled by 8/6.
    Record six({1, 2, 3, 4, 5, 6});
    ASSERT_EQ(dsph_fft(six.get(), out.get(), 0, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_CENTERED), 0);
    expect_near_all(out.values(), half_spectrum({32, 40, 48, 0, 0, 8, 16, 24}));
    const double r = 8.0 / 6.0;
    for (int32_t flags : {DSP_FFT_ZERO_PHASE, DSP_FFT_ZERO_PHASE | DSP_FFT_NO_WINDOW}) {
        ASSERT_EQ(dsph_fft(six.get(), out.get(), 0, 1.0, DSP_WINDOW_UNIFORM, flags), 0);
        expect_near_all(out.values(), half_spectrum({8 * r, 10 * r, 12 * r, 0, 0, 2 * r, 4 * r, 6 * r}));
    }
}

TEST(FftFront, UnitSineOnABinReadsItsAmplitudeThroughTheFlatTop)
{
    const int n = 256;
    for (double amplitude : {1.0, 0.25}) {
        std::vector<double> x(n);
        for (int i = 0; i < n; ++i) x[i] = amplitude * std::sin(2.0 * M_PI * 16 * i / n);
        Record in(x), out;
        ASSERT_EQ(dsph_fft(in.get(), out.get(), 0, 1.0, DSP_WINDOW_FLATTOP, 0), 0);
        ASSERT_EQ(out->points, n / 2 + 1);
        const double level = std::hypot(out->data[32], out->data[33]);
        // The window's amplitude gain, just below 1 by design.
        EXPECT_NEAR(level, 0.9996403 * amplitude, 1e-12);
        // Far from the tone the flat top leaves nothing.
        EXPECT_LT(std::hypot(out->data[2 * 40], out->data[2 * 40 + 1]), 1e-12);
    }
    // Uniform window, flags 0: the one-sided bin reads the amplitude exactly.
    std::vector<double> x(64);
    for (int i = 0; i < 64; ++i) x[i] = 3.0 * std::cos(2.0 * M_PI * 5 * i / 64);
    Record in(x), out;
    ASSERT_EQ(dsph_fft(in.get(), out.get(), 0, 1.0, DSP_WINDOW_UNIFORM, 0), 0);
    EXPECT_NEAR(out->data[10], 3.0, 1e-14);
}

TEST(FftFront, InverseRecoversTheWindowedInput)
{
    const int n = 16;
    const std::vector<double> x = dsp_test::random_values(n, 21);
    struct Case {
        int32_t window, flags;
    };
    for (Case c : {Case{0, 0}, Case{2, 0}, Case{0, DSP_FFT_TWO_SIDED}, Case{2, DSP_FFT_TWO_SIDED},
                   Case{2, DSP_FFT_CENTERED}, Case{0, DSP_FFT_CENTERED}, Case{2, DSP_FFT_ZERO_PHASE},
                   Case{0, DSP_FFT_ZERO_PHASE}, Case{3, DSP_FFT_NO_WINDOW}, Case{0, DSP_FFT_RAW}}) {
        SCOPED_TRACE(testing::Message() << "window " << c.window << " flags " << c.flags);
        // Length and fraction that these flags must ignore, both ways.
        const bool whole = c.flags & (DSP_FFT_CENTERED | DSP_FFT_ZERO_PHASE | DSP_FFT_RAW);
        const int32_t nfft = whole ? 5 : 0;
        const double fraction = whole ? 0.3 : 1.0;
        Record in(x, false, 0.1), spectrum, back;
        ASSERT_EQ(dsph_fft(in.get(), spectrum.get(), nfft, fraction, c.window, c.flags), 0);
        ASSERT_EQ(dsph_fft(spectrum.get(), back.get(), nfft, fraction, c.window, c.flags | DSP_FFT_INVERSE), 0);
        ASSERT_EQ(back->points, n);
        EXPECT_NEAR(back->delta, 0.1, 1e-15);
        const bool windowed = !(c.flags & (DSP_FFT_NO_WINDOW | DSP_FFT_RAW)) && c.window == 2;
        for (int i = 0; i < n; ++i) {
            const double want = windowed ? x[i] * hann(i, n) : x[i];
            const double got = back->complex ? back->data[2 * i] : back->data[i];
            EXPECT_NEAR(got, want, 1e-14) << "at " << i;
            if (back->complex) {
                EXPECT_NEAR(back->data[2 * i + 1], 0.0, 1e-14);
            }
        }
    }
    // Selection and padding undone: nfft 32, half of it filled (the Hann
    // data split around the zeros, the uniform data followed by them).
    Record in(x);
    for (int32_t window : {DSP_WINDOW_UNIFORM, DSP_WINDOW_HANN}) {
        Record spectrum, back;
        ASSERT_EQ(dsph_fft(in.get(), spectrum.get(), 32, 0.5, window, 0), 0);
        ASSERT_EQ(spectrum->points, 17);
        ASSERT_EQ(dsph_fft(spectrum.get(), back.get(), 32, 0.5, window, DSP_FFT_INVERSE), 0);
        ASSERT_EQ(back->points, n);
        for (int i = 0; i < n; ++i) EXPECT_NEAR(back->data[i], window ? x[i] * hann(i, n) : x[i], 1e-14);
    }
    // A two-sided spectrum of real input, inverted as two-sided input.
    Record two_sided, back2;
    ASSERT_EQ(dsph_fft(in.get(), two_sided.get(), 0, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_TWO_SIDED), 0);
    ASSERT_EQ(dsph_fft(two_sided.get(), back2.get(), 0, 1.0, DSP_WINDOW_UNIFORM,
                       DSP_FFT_INVERSE | DSP_FFT_INPUT_TWO_SIDED), 0);
    for (int i = 0; i < n; ++i) EXPECT_NEAR(back2->data[2 * i], x[i] / 2.0, 1e-14);  // no x2 forward, x0.5 back
}

TEST(FftFront, InverseFitsTheSpectrumToTheTransformLength)
{
    // A one-sided spectrum of four points means nfft 2 x 4 - 2 = 6, so N2 = 8:
    // padded to five points. X0 = 1, X1 = -j: 1 + 2 sin(pi n / 4), x0.5.
    Record half({1, 0, 0, -1, 0, 0, 0, 0}, true), out;
    ASSERT_EQ(dsph_fft(half.get(), out.get(), 0, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_INVERSE), 0);
    ASSERT_EQ(out->complex, 0);
    ASSERT_EQ(out->points, 8);
    for (int i = 0; i < 8; ++i) EXPECT_NEAR(out->data[i], 0.5 + std::sin(M_PI * i / 4), 1e-15) << i;

    // Two-sided input is taken whole and fitted around zero frequency without
    // rescaling. Frequency -1 of four points (centred index 1) padded to
    // eight: e^(-j pi n / 4).
    const int32_t two_sided = DSP_FFT_INVERSE | DSP_FFT_TWO_SIDED;
    Record four({0, 0, 1, 0, 0, 0, 0, 0}, true);
    ASSERT_EQ(dsph_fft(four.get(), out.get(), 8, 1.0, DSP_WINDOW_UNIFORM, two_sided), 0);
    ASSERT_EQ(out->points, 8);
    for (int i = 0; i < 8; ++i) {
        EXPECT_NEAR(out->data[2 * i], std::cos(M_PI * i / 4), 1e-15) << i;
        EXPECT_NEAR(out->data[2 * i + 1], -std::sin(M_PI * i / 4), 1e-15) << i;
    }
    // Frequency -1 of eight points (centred index 3) cut to four: (-j)^n.
    std::vector<double> eight(16, 0.0);
    eight[2 * 3] = 1.0;
    Record long_input(eight, true);
    ASSERT_EQ(dsph_fft(long_input.get(), out.get(), 4, 1.0, DSP_WINDOW_UNIFORM, two_sided), 0);
    expect_near_all(out.values(), {1, 0, 0, -1, -1, 0, 0, 1});
}

TEST(FftFront, RefusedWindowsAndArguments)
{
    Record in(dsp_test::random_values(16, 2)), out;
    for (int32_t window : {1, 14, 15, 19, 20, 22, 23, 24, 25, -1}) {
        EXPECT_EQ(dsph_fft(in.get(), out.get(), 0, 1.0, window, 0), -1) << window;
    }
    for (int32_t window = 0; window <= 13; ++window) {
        if (window == 1) continue;
        EXPECT_EQ(dsph_fft(in.get(), out.get(), 0, 1.0, window, 0), 0) << window;
    }
    // Without a window the type only decides the rotation.
    EXPECT_EQ(dsph_fft(in.get(), out.get(), 0, 1.0, 20, DSP_FFT_NO_WINDOW), 0);
    EXPECT_EQ(dsph_fft(nullptr, out.get(), 0, 1.0, 0, 0), -1);
    EXPECT_EQ(dsph_fft(in.get(), nullptr, 0, 1.0, 0, 0), -1);
}

TEST(FftFront, PlainArraysAreSizedLikeTheInput)
{
    const std::vector<double> x = dsp_test::random_values(8, 9);
    Record in(x), out;
    ASSERT_EQ(dsph_fft(in.get(), out.get(), 0, 0.0, DSP_WINDOW_HANN, 0), 0);
    // Five complex points, cut to the input's eight doubles.
    std::vector<double> array(8, -7.0);
    ASSERT_EQ(cf_dsph_fft(x.data(), array.data(), 8, 0, 1.0, DSP_WINDOW_HANN, 0), 0);
    const std::vector<double> full = out.values();
    EXPECT_EQ(array, std::vector<double>(full.begin(), full.begin() + 8));
    // The way back gives eight real values for ten doubles of input.
    std::vector<double> back(10, -7.0);
    ASSERT_EQ(cf_dsph_fft(full.data(), back.data(), 5, 1, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_INVERSE), 0);
    Record spectrum(full, true), restored;
    ASSERT_EQ(dsph_fft(spectrum.get(), restored.get(), 0, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_INVERSE), 0);
    std::vector<double> want = restored.values();
    want.resize(10, 0.0);
    EXPECT_EQ(back, want);
    std::vector<double> untouched(8, -7.0);
    EXPECT_EQ(cf_dsph_fft(x.data(), untouched.data(), 8, 0, 1.0, 14, 0), -1);
    EXPECT_EQ(untouched, std::vector<double>(8, -7.0));
    EXPECT_EQ(cf_dsph_fft(nullptr, untouched.data(), 8, 0, 1.0, 0, 0), -1);
}
