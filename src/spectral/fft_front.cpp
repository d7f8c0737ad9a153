// The spectrum front end: selection, window, scaling, zero padding and
// transform in one call, and the way back.
#include "core/numeric.hpp"
#include "libdsp.h"

namespace {

constexpr int32_t kLargestLength = int32_t{1} << 30;

// Flags that make the front end ignore the caller's length and fraction.
constexpr int32_t kWholeInput = DSP_FFT_CENTERED | DSP_FFT_ZERO_PHASE | DSP_FFT_RAW;

// The fraction of the transform length the data occupies: the whole when the
// flags ignore it or it lies outside (0, 1].
double used_fraction(double fraction, int32_t flags)
{
    if ((flags & kWholeInput) || !(fraction > 0.0 && fraction <= 1.0)) return 1.0;
    return fraction;
}

// Smallest power of two >= nfft, capped at 2^30; 1 for nfft <= 1.
int32_t power_of_two_at_least(int32_t nfft)
{
    int32_t n2 = 1;
    while (n2 < nfft && n2 < kLargestLength) n2 *= 2;
    return n2;
}

// Whether the data are rotated so that the window's centre sits at index 0.
bool rotated(int32_t window, int32_t flags)
{
    return window != DSP_WINDOW_UNIFORM || (flags & (DSP_FFT_CENTERED | DSP_FFT_ZERO_PHASE));
}

// Placement of the zeros: split around rotated data, else after the data;
// the centred mode keeps the scale, the others rescale by the change of
// length, so a tone keeps its level however much of the transform it fills.
int32_t pad_mode(int32_t window, int32_t flags)
{
    if (flags & DSP_FFT_CENTERED) return DSP_PAD_SPLIT | DSP_PAD_SCALE_NONE;
    if (rotated(window, flags)) return DSP_PAD_SPLIT | DSP_PAD_SCALE_RATIO;
    return DSP_PAD_FRONT | DSP_PAD_SCALE_RATIO;
}

int32_t forward(const dsp *in, dsp *out, int32_t nfft, double fraction, int32_t window, int32_t flags)
{
    if (flags & kWholeInput) nfft = 0;
    if (nfft < 1) nfft = in->points;
    const int32_t n2 = power_of_two_at_least(nfft);
    double length = n2 * used_fraction(fraction, flags);
    if (length > in->points) length = in->points;
    if (dspu_subvec(in, out, 0, dsp_core::tolerant_ceil(length)) != 0) return -1;

    if (!(flags & DSP_FFT_RAW)) {
        if (!(flags & DSP_FFT_NO_WINDOW)) {
            const int32_t window_flags = (flags & (DSP_FFT_CENTERED | DSP_FFT_ZERO_PHASE))
                                             ? DSP_WINDOW_OWN_LENGTH | DSP_WINDOW_ROTATE_UNIFORM
                                             : DSP_WINDOW_OWN_LENGTH;
            if (dspi_window2(out, window, window_flags, length) != 0) return -1;
        } else if (rotated(window, flags)) {
            if (dspi_swap_halves2(out) != 0) return -1;
        }
        if (flags & DSP_FFT_CENTERED) {
            if (out->points > 0 && dspi_scale(out, n2) != 0) return -1;
        } else if (!(flags & DSP_FFT_TWO_SIDED)) {
            // A one-sided spectrum folds the negative frequencies onto the
            // positive ones.
            if (dspi_scale(out, 2.0) != 0) return -1;
        }
    }

    const int32_t mode = (flags & DSP_FFT_RAW) ? DSP_PAD_FRONT | DSP_PAD_SCALE_NONE : pad_mode(window, flags);
    if (dspi_zpad2(out, n2, mode) != 0) return -1;

    if (flags & DSP_FFT_RAW) return dspi_fft(out, 0);
    if (!(flags & DSP_FFT_TWO_SIDED) && !in->complex) return dspi_rfft(out);
    if (dspi_fft(out, 0) != 0) return -1;
    return dspi_swap_halves(out);
}

int32_t inverse(const dsp *in, dsp *out, int32_t nfft, double fraction, int32_t window, int32_t flags)
{
    if (flags & kWholeInput) nfft = 0;
    const bool one_sided = !(flags & (DSP_FFT_TWO_SIDED | DSP_FFT_INPUT_TWO_SIDED));
    if (nfft < 1) nfft = (one_sided && !(flags & DSP_FFT_RAW)) ? 2 * in->points - 2 : in->points;
    const int32_t n2 = power_of_two_at_least(nfft);
    const int32_t length = dsp_core::tolerant_ceil(n2 * used_fraction(fraction, flags));

    if (flags & DSP_FFT_RAW) {
        if (dspu_subvec(in, out, 0, n2) != 0 || dspi_zpad(out, n2) != 0) return -1;
        return dspi_fft(out, 1);
    }
    if (one_sided) {
        const int32_t half = n2 / 2 + 1;
        if (dspu_subvec(in, out, 0, half) != 0 || dspi_zpad(out, half) != 0 || dspi_irfft(out) != 0) return -1;
    } else {
        if (dsp_copy(out, in) != 0 || dspi_swap_halves2(out) != 0) return -1;
        const int32_t fit = DSP_PAD_SPLIT | DSP_PAD_SCALE_NONE;
        const int32_t status = out->points > n2 ? dspi_unzpad(out, n2, fit) : dspi_zpad2(out, n2, fit);
        if (status != 0 || dspi_fft(out, 1) != 0) return -1;
    }

    if (dspi_unzpad(out, length, pad_mode(window, flags)) != 0) return -1;
    if (rotated(window, flags) && dspi_swap_halves(out) != 0) return -1;
    if (flags & DSP_FFT_CENTERED) {
        if (out->points > 0 && dspi_scale(out, 1.0 / out->points) != 0) return -1;
    } else if (!(flags & DSP_FFT_TWO_SIDED)) {
        if (dspi_scale(out, 0.5) != 0) return -1;
    }
    return 0;
}

}  // namespace

extern "C" {

int32_t dsph_fft(const dsp *in, dsp *out, int32_t nfft, double fraction, int32_t window, int32_t flags)
{
    if (!in || !out) return -1;
    if (flags & DSP_FFT_INVERSE) return inverse(in, out, nfft, fraction, window, flags);
    return forward(in, out, nfft, fraction, window, flags);
}

}  // extern "C"
