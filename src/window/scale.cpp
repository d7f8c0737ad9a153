// Scale factors of the catalogue windows and their equivalent noise
// bandwidth. Cosine sums are scaled from their coefficient tables, without
// generating them; every other window is generated and measured.
#include "window/tables.hpp"
#include "window/window.hpp"

#include <cmath>

namespace {

using dsp_window::CosineTable;

// For n points the DFT-even cosine sum folds harmonic k onto k mod n, so for
// small n the harmonics that land on 0 add to the mean, and pairs whose sum
// or difference lands on 0 add to the mean square.
double table_scale(const CosineTable &table, int32_t mode, int32_t n)
{
    const double *t = dsp_window::coefficients_for(table, mode);
    const int32_t terms = table.terms;
    const double base = t[0] / table.raw[0];
    if (mode == DSP_WINDOW_SCALE_AMPLITUDE) {
        if (n >= terms) return base;
        double sum = 0.0;
        for (int32_t k = 0; k < terms; k += n) sum += t[k];
        return t[0] / sum * base;
    }
    if (n >= 2 * terms - 1) return base;
    // The power array has mean square 1 when nothing aliases.
    double sum = 1.0;
    for (int32_t j = 1; j < terms; ++j)
        if (2 * j % n == 0) sum += 0.5 * t[j] * t[j];
    for (int32_t j = 0; j < terms; ++j) {
        for (int32_t k = j + 1; k < terms; ++k) {
            if ((k - j) % n == 0) sum += t[j] * t[k];
            if ((k + j) % n == 0) sum += t[j] * t[k];
        }
    }
    return base / std::sqrt(sum);
}

// 1 / mean or 1 / root mean square of the unscaled window of n points; the
// flat tops keep their gain in the amplitude mode.
int32_t measured_scale(double *scale, int32_t type, int32_t flags, int32_t n, double length)
{
    const int32_t mode = dsp_window::scaling_mode(flags);
    const int32_t shape_flags = DSP_WINDOW_SCALE_NONE | (flags & (DSP_WINDOW_SYMMETRIC | DSP_WINDOW_OWN_LENGTH));
    dsp w;
    dsp_init(&w);
    w.points = n;
    int32_t status = dsp_alloc(&w);
    if (status == 0) status = dsp_window::generate_catalogue(&w, type, shape_flags, length);
    if (status == 0) {
        double value = mode == DSP_WINDOW_SCALE_AMPLITUDE ? dsp_window::window_mean(&w) : dsp_window::window_rms(&w);
        if (mode == DSP_WINDOW_SCALE_AMPLITUDE && dsp_window::is_flat_top(type))
            value /= dsp_window::cosine_table(type)->amplitude[0];
        *scale = value == 0.0 ? 0.0 : 1.0 / value;
    }
    dsp_destroy(&w);
    return status;
}

int32_t enbw_through_scales(double *enbw, int32_t type, int32_t n, int32_t own_length, double length)
{
    if (!enbw) return -1;
    double amplitude = 0.0;
    double power = 0.0;
    if (dsp_window2_scale(&amplitude, type, own_length | DSP_WINDOW_SCALE_AMPLITUDE, n, length) != 0) return -1;
    if (dsp_window2_scale(&power, type, own_length | DSP_WINDOW_SCALE_POWER, n, length) != 0) return -1;
    // An all-zero window has no bandwidth.
    const double ratio = power == 0.0 ? 0.0 : amplitude / power;
    *enbw = ratio * ratio;
    return 0;
}

}  // namespace

extern "C" {

int32_t dsp_window_scale(double *scale, int32_t type, int32_t flags, int32_t n)
{
    if (dsp_window::has_flag(flags, DSP_WINDOW_OWN_LENGTH)) return -1;
    return dsp_window2_scale(scale, type, flags, n, 0.0);
}

int32_t dsp_window2_scale(double *scale, int32_t type, int32_t flags, int32_t n, double length)
{
    if (!scale) return -1;
    const int32_t mode = dsp_window::scaling_mode(flags);
    if (mode == DSP_WINDOW_SCALE_NONE || n < 1) {
        *scale = 1.0;
        return 0;
    }
    if (mode == 3) return -1;
    if (!dsp_window::has_flag(flags, DSP_WINDOW_OWN_LENGTH)) {
        if (type == DSP_WINDOW_BARTLETT) {
            *scale = dsp_window::triangle_peak(mode, n);
            return 0;
        }
        if (const CosineTable *table = dsp_window::cosine_table(type)) {
            *scale = table_scale(*table, mode, n);
            return 0;
        }
    }
    if (type < 0 || type > 24) return -1;
    return measured_scale(scale, type, flags, n, length);
}

int32_t dsp_window_enbw(double *enbw, int32_t type, int32_t n) { return enbw_through_scales(enbw, type, n, 0, 0.0); }

int32_t dsp_window2_enbw(double *enbw, int32_t type, int32_t n, double length)
{
    return enbw_through_scales(enbw, type, n, DSP_WINDOW_OWN_LENGTH, length);
}

}  // extern "C"
