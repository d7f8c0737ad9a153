// The spectrum front end on small cases worked out by hand: selection,
// windowing and rotation, scaling, zero padding, one- and two-sided output,
// and the way back.
#include "support/alloc_hooks.hpp"
#include "support/dft_oracle.hpp"
#include "support/random_values.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

using dsp_test::Record;
using V = std::vector<double>;

namespace {

void expect_near_all(const V &got, const V &want, double tol = 1e-14)
{
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) EXPECT_NEAR(got[i], want[i], tol) << "at " << i;
}

// One-sided spectrum (1/N) of a real sequence, by the direct sum.
V half(const V &x)
{
    V out;
    for (const dsp_test::LComplex &c : dsp_test::naive_dft({x.begin(), x.end()}, -1, 1.0L / x.size(), x.size() / 2 + 1))
        out.insert(out.end(), {static_cast<double>(c.real()), static_cast<double>(c.imag())});
    return out;
}

// Periodic Hann window in amplitude scaling, centred on n/2.
double hann(int i, int n) { return 1.0 + std::cos(2.0 * M_PI * (i - n / 2) / n); }

}  // namespace

TEST(FftFront, EachFlagOnHandDerivedCases)
{
    const V one_to_eight{1, 2, 3, 4, 5, 6, 7, 8}, ones(8, 1.0), six{1, 2, 3, 4, 5, 6};
    const double r = 8.0 / 6.0, t = 8.0 / 3.0;
    V cosine(8), turning(16), eight(16, 0.0), padded(16, 0.0);
    for (int i = 0; i < 8; ++i) {
        cosine[i] = 0.5 + std::sin(M_PI * i / 4);
        turning[2 * i] = std::cos(M_PI * i / 4);
        turning[2 * i + 1] = -std::sin(M_PI * i / 4);
        padded[i] = 4.0 * (i + 1);
    }
    eight[2 * 3] = 1.0;
    const int32_t U = DSP_WINDOW_UNIFORM, H = DSP_WINDOW_HANN, inverse_two_sided = DSP_FFT_INVERSE | DSP_FFT_TWO_SIDED;
    struct Case {
        V in;
        bool complex_flag;
        int32_t nfft;
        double fraction;
        int32_t window, flags, points;
        V want;
        double tol = 1e-14;
    };
    const Case cases[] = {
        // Whole input: x2, then 1/N: [2, 4, 6, 8] -> 5, -1 + j, -1.
        {{1, 2, 3, 4}, false, 0, 0.0, U, 0, 3, {5, 0, -1, 1, -1, 0}, 0},
        // nfft 4, fraction 0.5: [1, 2] x2, padded to 4 after the data and
        // rescaled by 4/2: [4, 8, 0, 0] -> 3, 1 - 2j, -1.
        {one_to_eight, false, 4, 0.5, U, 0, 3, {3, 0, 1, -2, -1, 0}, 0},
        // 8 x 0.7 = 5.6 takes 6 points, padded to 8 with the ratio 8/6.
        {one_to_eight, false, 8, 0.7, U, 0, 5, half({2 * r, 4 * r, 6 * r, 8 * r, 10 * r, 12 * r, 0, 0})},
        // A product a rounding above a whole number takes that number: 8 x
        // (0.375 + 1 ulp) is 3 + 2^-51, three points padded with the ratio 8/3.
        {one_to_eight, false, 8, std::nextafter(0.375, 1.0), U, 0, 5, half({2 * t, 4 * t, 6 * t, 0, 0, 0, 0, 0})},
        // Fractions outside (0, 1] mean the whole; nfft above the input pads;
        // nfft that is no power of two rounds up to one.
        {one_to_eight, false, 16, 0.0, U, 0, 9, half(padded)},
        {one_to_eight, false, 16, -1.0, U, 0, 9, half(padded)},
        {one_to_eight, false, 16, 1.5, U, 0, 9, half(padded)},
        {one_to_eight, false, 5, 1.0, U, 0, 5, half({2, 4, 6, 8, 10, 12, 14, 16})},
        // Hann rotated to index 0 is 1 + cos(2 pi n / 8): bins 0 and +-1 only.
        // Two-sided (no x2), zero frequency moved to point 4.
        {ones, false, 0, 1.0, H, DSP_FFT_TWO_SIDED, 8, {0, 0, 0, 0, 0, 0, 0.5, 0, 1, 0, 0.5, 0, 0, 0, 0, 0}},
        // The window is as long as the selection, which stops at the input's
        // end: Hann of 4 points, [0, 1, 2, 1] rotated to [2, 1, 0, 1], x2,
        // split around the zeros with the ratio 8/4.
        {{1, 1, 1, 1}, false, 8, 1.0, H, 0, 5, half({8, 4, 0, 0, 0, 0, 0, 4})},
        // Centred: the whole input, scaled by N2 instead of 2, one-sided.
        {ones, false, 3, 0.25, H, DSP_FFT_CENTERED, 5, {8, 0, 4, 0, 0, 0, 0, 0, 0, 0}},
        // Complex input is always two-sided: e^(j pi n / 2) is bin 1, read x2.
        {{1, 0, 0, 1, -1, 0, 0, -1}, true, 0, 1.0, U, 0, 4, {0, 0, 0, 0, 0, 0, 2, 0}},
        // Zero phase rotates even the uniform window: [3, 4, 1, 2] x2.
        {{1, 2, 3, 4}, false, 64, 0.1, U, DSP_FFT_ZERO_PHASE, 3, {5, 0, 1, -1, -1, 0}},
        // No window, but a window type still rotates, and padding splits the
        // rotated data around the zeros with the ratio 8/4.
        {{1, 2, 3, 4}, false, 8, 1.0, DSP_WINDOW_HAMMING, DSP_FFT_NO_WINDOW, 5, half({12, 16, 0, 0, 0, 0, 4, 8})},
        // No window and the uniform type: no rotation, padding after the data.
        {{1, 2, 3, 4}, false, 8, 1.0, U, DSP_FFT_NO_WINDOW, 5, half({4, 8, 12, 16, 0, 0, 0, 0})},
        // Raw: a plain complex FFT of the zero-padded input, nothing else; the
        // raw inverse pads to four points and sums without a factor.
        {{1, 2, 3}, false, 1024, 0.5, H, DSP_FFT_RAW, 4, {1.5, 0, -0.5, -0.5, 0.5, 0, -0.5, 0.5}, 0},
        {{1, 2, 3}, false, 0, 1.0, U, DSP_FFT_RAW | DSP_FFT_INVERSE, 4, {6, 0, -2, 2, 2, 0, -2, -2}, 0},
        // Six points, padded to eight: rotated to [4, 5, 6, 1, 2, 3] and split
        // around the zeros. Centred: x8, padding unscaled. Zero phase, with or
        // without the window: x2, padding rescaled by 8/6.
        {six, false, 0, 1.0, U, DSP_FFT_CENTERED, 5, half({32, 40, 48, 0, 0, 8, 16, 24})},
        {six, false, 0, 1.0, U, DSP_FFT_ZERO_PHASE, 5, half({8 * r, 10 * r, 12 * r, 0, 0, 2 * r, 4 * r, 6 * r})},
        {six, false, 0, 1.0, U, DSP_FFT_ZERO_PHASE | DSP_FFT_NO_WINDOW, 5,
         half({8 * r, 10 * r, 12 * r, 0, 0, 2 * r, 4 * r, 6 * r})},
        // A one-sided spectrum of four points means nfft 2 x 4 - 2 = 6, so
        // N2 = 8: padded to five points. X0 = 1, X1 = -j: 1 + 2 sin(pi n / 4), x0.5.
        {{1, 0, 0, -1, 0, 0, 0, 0}, true, 0, 1.0, U, DSP_FFT_INVERSE, 8, cosine, 1e-15},
        // Two-sided input is taken whole and fitted around zero frequency
        // without rescaling. Frequency -1 of four points (centred index 1)
        // padded to eight: e^(-j pi n / 4); of eight points (centred index 3)
        // cut to four: (-j)^n.
        {{0, 0, 1, 0, 0, 0, 0, 0}, true, 8, 1.0, U, inverse_two_sided, 8, turning, 1e-15},
        {eight, true, 4, 1.0, U, inverse_two_sided, 4, {1, 0, 0, -1, -1, 0, 0, 1}, 1e-15},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << (&c - cases));
        Record in(c.in, c.complex_flag, 0.5), out;
        ASSERT_EQ(dsph_fft(in.get(), out.get(), c.nfft, c.fraction, c.window, c.flags), 0);
        EXPECT_EQ(out->points, c.points);
        expect_near_all(out.values(), c.want, c.tol);
        EXPECT_EQ(in.values(), c.in);
    }
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

TEST(FftFront, UnitSineOnABinReadsItsAmplitudeThroughTheFlatTop)
{
    const int n = 256;
    for (double amplitude : {1.0, 0.25}) {
        V x(n);
        for (int i = 0; i < n; ++i) x[i] = amplitude * std::sin(2.0 * M_PI * 16 * i / n);
        Record in(x), out;
        ASSERT_EQ(dsph_fft(in.get(), out.get(), 0, 1.0, DSP_WINDOW_FLATTOP, 0), 0);
        ASSERT_EQ(out->points, n / 2 + 1);
        // The window's amplitude gain, just below 1 by design; far from the
        // tone the flat top leaves nothing.
        EXPECT_NEAR(std::hypot(out->data[32], out->data[33]), 0.9996403 * amplitude, 1e-12);
        EXPECT_LT(std::hypot(out->data[2 * 40], out->data[2 * 40 + 1]), 1e-12);
    }
}

TEST(FftFront, InverseRecoversTheWindowedInput)
{
    const int n = 16;
    const V x = dsp_test::uniform_values(n, 21, 1.0);
    struct Case {
        int32_t window, flags, nfft;
        double fraction;
    };
    // Length and fraction that the whole-input flags must ignore, both ways;
    // with nfft 32 and fraction 0.5 the selection and padding are undone (the
    // Hann data split around the zeros, the uniform data followed by them).
    for (Case c : {Case{0, 0, 0, 1.0}, Case{2, 0, 0, 1.0}, Case{0, 0, 32, 0.5}, Case{2, 0, 32, 0.5},
                   Case{0, DSP_FFT_TWO_SIDED, 0, 1.0}, Case{2, DSP_FFT_TWO_SIDED, 0, 1.0},
                   Case{2, DSP_FFT_CENTERED, 5, 0.3}, Case{0, DSP_FFT_CENTERED, 5, 0.3},
                   Case{2, DSP_FFT_ZERO_PHASE, 5, 0.3}, Case{0, DSP_FFT_ZERO_PHASE, 5, 0.3},
                   Case{3, DSP_FFT_NO_WINDOW, 0, 1.0}, Case{0, DSP_FFT_RAW, 5, 0.3}}) {
        SCOPED_TRACE(testing::Message() << "window " << c.window << " flags " << c.flags << " nfft " << c.nfft);
        Record in(x, false, 0.1), spectrum, back;
        ASSERT_EQ(dsph_fft(in.get(), spectrum.get(), c.nfft, c.fraction, c.window, c.flags), 0);
        ASSERT_EQ(dsph_fft(spectrum.get(), back.get(), c.nfft, c.fraction, c.window, c.flags | DSP_FFT_INVERSE), 0);
        ASSERT_EQ(back->points, n);
        EXPECT_NEAR(back->delta, 0.1, 1e-15);
        const bool windowed = !(c.flags & (DSP_FFT_NO_WINDOW | DSP_FFT_RAW)) && c.window == 2;
        for (int i = 0; i < n; ++i) {
            EXPECT_NEAR(back->complex ? back->data[2 * i] : back->data[i], windowed ? x[i] * hann(i, n) : x[i], 1e-14)
                << "at " << i;
            if (back->complex) {
                EXPECT_NEAR(back->data[2 * i + 1], 0.0, 1e-14);
            }
        }
    }
    // A two-sided spectrum of real input, inverted as two-sided input: no x2
    // forward, x0.5 back.
    Record in(x), two_sided, back;
    ASSERT_EQ(dsph_fft(in.get(), two_sided.get(), 0, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_TWO_SIDED), 0);
    ASSERT_EQ(dsph_fft(two_sided.get(), back.get(), 0, 1.0, DSP_WINDOW_UNIFORM,
                       DSP_FFT_INVERSE | DSP_FFT_INPUT_TWO_SIDED), 0);
    for (int i = 0; i < n; ++i) EXPECT_NEAR(back->data[2 * i], x[i] / 2.0, 1e-14);
}

TEST(FftFront, RefusedWindowsAndArgumentsAndThePlainArrays)
{
    const V x = dsp_test::uniform_values(16, 2, 1.0);
    Record in(x), out;
    for (int32_t window : {14, 15, 19, 20, 22, 23, 24, 25, -1})
        EXPECT_EQ(dsph_fft(in.get(), out.get(), 0, 1.0, window, 0), -1) << window;
    for (int32_t window = 0; window <= 13; ++window)
        EXPECT_EQ(dsph_fft(in.get(), out.get(), 0, 1.0, window, 0), window == 1 ? -1 : 0) << window;
    // Without a window the type only decides the rotation.
    EXPECT_EQ(dsph_fft(in.get(), out.get(), 0, 1.0, 20, DSP_FFT_NO_WINDOW), 0);
    EXPECT_EQ(dsph_fft(nullptr, out.get(), 0, 1.0, 0, 0), -1);
    EXPECT_EQ(dsph_fft(in.get(), nullptr, 0, 1.0, 0, 0), -1);

    // Plain arrays: five complex points cut to the input's eight doubles.
    Record eight(V(x.begin(), x.begin() + 8));
    ASSERT_EQ(dsph_fft(eight.get(), out.get(), 0, 0.0, DSP_WINDOW_HANN, 0), 0);
    const V full = out.values();
    V array(8, -7.0);
    ASSERT_EQ(cf_dsph_fft(x.data(), array.data(), 8, 0, 1.0, DSP_WINDOW_HANN, 0), 0);
    EXPECT_EQ(array, V(full.begin(), full.begin() + 8));
    // The way back gives eight real values for ten doubles of input.
    V back(10, -7.0);
    ASSERT_EQ(cf_dsph_fft(full.data(), back.data(), 5, 1, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_INVERSE), 0);
    Record spectrum(full, true), restored;
    ASSERT_EQ(dsph_fft(spectrum.get(), restored.get(), 0, 1.0, DSP_WINDOW_UNIFORM, DSP_FFT_INVERSE), 0);
    V want = restored.values();
    want.resize(10, 0.0);
    EXPECT_EQ(back, want);
    V untouched(8, -7.0);
    EXPECT_EQ(cf_dsph_fft(x.data(), untouched.data(), 8, 0, 1.0, 14, 0), -1);
    EXPECT_EQ(untouched, V(8, -7.0));
    EXPECT_EQ(cf_dsph_fft(nullptr, untouched.data(), 8, 0, 1.0, 0, 0), -1);
}
