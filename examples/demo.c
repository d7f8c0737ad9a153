/* A spectrum measurement, as an instrument makes one: a test signal of two
 * tones of known amplitude and frequency plus a little noise is transformed
 * through a flat-top window (dsph_fft), converted to decibels (dspi_db), and
 * its two peaks are found (dsps_peak) and compared with the true values. The
 * spectrum is drawn as an SVG picture, by default next to this program. */
#include <libdsp.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "svg_plot.h"

enum { POINTS = 4096, GUARD_BINS = 12 };

static const double sample_rate = 1.0e6; /* Hz */

typedef struct tone {
    double frequency; /* Hz */
    double amplitude; /* V peak */
} tone;

/* Uniform noise in [-1, 1) from a small fixed generator, so every run shows
 * the same picture. */
static double noise(unsigned *state)
{
    *state = *state * 1103515245u + 12345u;
    return (double)((*state >> 8) & 0xffffff) / 8388608.0 - 1.0;
}

static double level_db(double amplitude) { return 20.0 * log10(amplitude); }

/* The largest peak of a dB spectrum, its level read at the top bin (a flat
 * top reads any tone there within a few thousandths of a dB) and its
 * frequency from a parabola through the three top bins of the dB trace. */
static int find_peak(const dsp *spectrum_db, double *frequency, double *level)
{
    dsp top, refined;
    dsp_init(&top);
    dsp_init(&refined);
    int status = dsps_peak(spectrum_db, &top, DSP_PEAK_MAX | DSP_PEAK_NONE, 0);
    if (status == 0) status = dsps_peak(spectrum_db, &refined, DSP_PEAK_MAX | DSP_PEAK_PARABOLIC, 0);
    if (status == 0) {
        *level = top.data[0];
        *frequency = refined.data[1] * spectrum_db->delta;
    }
    dsp_destroy(&top);
    dsp_destroy(&refined);
    return status;
}

/* The picture goes next to the program unless a path is given. */
static void picture_path(char *buf, size_t len, int argc, char **argv)
{
    if (argc > 1) {
        snprintf(buf, len, "%s", argv[1]);
        return;
    }
    const char *slash = strrchr(argv[0], '/');
    const int dir = slash ? (int)(slash - argv[0] + 1) : 0;
    snprintf(buf, len, "%.*sspectrum.svg", dir, argv[0]);
}

int main(int argc, char **argv)
{
    const tone tones[2] = {{123.4e3, 1.0}, {271.9e3, 0.02}};
    const double noise_rms = 1e-4;
    dsp signal, spectrum, masked;
    dsp_init(&signal);
    dsp_init(&spectrum);
    dsp_init(&masked);
    int status = 0;

    signal.points = POINTS;
    signal.delta = 1.0 / sample_rate;
    if (dsp_alloc(&signal) != 0) return 1;
    unsigned seed = 2026;
    for (int32_t i = 0; i < POINTS; ++i) {
        const double t = i * signal.delta;
        double v = noise_rms * sqrt(3.0) * noise(&seed);
        for (int k = 0; k < 2; ++k) v += tones[k].amplitude * sin(2.0 * M_PI * tones[k].frequency * t + 0.3 * k);
        signal.data[i] = v;
    }

    /* One-sided spectrum of amplitudes, bin spacing in delta. */
    if (dsph_fft(&signal, &spectrum, 0, 1.0, DSP_WINDOW_FLATTOP, 0) != 0 || dspi_mag(&spectrum) != 0 ||
        dspi_db(&spectrum, 20.0) != 0) {
        fprintf(stderr, "spectrum failed\n");
        status = 1;
        goto done;
    }
    printf("libdsp %d: spectrum of %d samples at %.0f kHz, flat-top window, bin spacing %.1f Hz\n\n",
           (int)dsp_version(), POINTS, sample_rate / 1e3, spectrum.delta);

    /* The second tone is found once the first one's main lobe is masked. */
    svg_marker markers[2];
    char labels[2][64];
    double found_frequency[2], found_level[2];
    if (dsp_copy(&masked, &spectrum) != 0) {
        status = 1;
        goto done;
    }
    for (int k = 0; k < 2; ++k) {
        if (find_peak(&masked, &found_frequency[k], &found_level[k]) != 0) {
            status = 1;
            goto done;
        }
        const int32_t bin = (int32_t)floor(found_frequency[k] / masked.delta + 0.5);
        for (int32_t b = bin - GUARD_BINS; b <= bin + GUARD_BINS; ++b)
            if (b >= 0 && b < masked.points) masked.data[b] = -400.0;
    }
    printf("tone  frequency (kHz)        level (dBV peak)\n");
    printf("      true      measured     true      measured\n");
    for (int k = 0; k < 2; ++k) {
        /* Peaks are found largest first; the tones are listed by amplitude too. */
        printf("%d     %-9.3f %-12.3f %-9.3f %.3f\n", k + 1, tones[k].frequency / 1e3, found_frequency[k] / 1e3,
               level_db(tones[k].amplitude), found_level[k]);
        snprintf(labels[k], sizeof labels[k], "%.3f kHz, %.2f dB", found_frequency[k] / 1e3, found_level[k]);
        markers[k] = (svg_marker){found_frequency[k] / 1e3, found_level[k], labels[k]};
    }

    double *freq = malloc(sizeof(double) * (size_t)spectrum.points);
    if (!freq) {
        status = 1;
        goto done;
    }
    for (int32_t i = 0; i < spectrum.points; ++i) freq[i] = i * spectrum.delta / 1e3;
    const svg_plot plot = {"Two tones through a flat-top window (libdsp dsph_fft)",
                           "frequency (kHz)",
                           "level (dBV peak)",
                           0.0,
                           sample_rate / 2e3,
                           -160.0,
                           10.0,
                           50.0,
                           20.0};
    char path[1024];
    picture_path(path, sizeof path, argc, argv);
    if (svg_write_plot(path, &plot, freq, spectrum.data, spectrum.points, markers, 2) != 0) {
        fprintf(stderr, "cannot write %s\n", path);
        status = 1;
    } else {
        printf("\nspectrum picture: %s\n", path);
    }
    free(freq);

done:
    dsp_destroy(&signal);
    dsp_destroy(&spectrum);
    dsp_destroy(&masked);
    return status;
}
