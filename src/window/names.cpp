// Names of the window types: display names and the constant names of the
// public header, converted both ways.
#include "libdsp.h"

#include <cctype>
#include <cstring>

namespace {

struct WindowName {
    const char *name;
    int32_t type;
};

// Display names first, then constant names; within each group a type's
// first entry is its canonical name.
const WindowName kNames[] = {
    {"Uniform", 0},
    {"Rectangular", 0},
    {"None", 0},
    {"P000", 0},
    {"Bartlett", 1},
    {"Triangular", 1},
    {"Hann", 2},
    {"P110", 2},
    {"Hamming", 3},
    {"P100", 3},
    {"Blackman", 4},
    {"Blackman_Harris3", 5},
    {"P200", 5},
    {"Blackman_Harris4", 6},
    {"P310", 6},
    {"Lowleak", 6},
    {"Gausstop", 7},
    {"P400", 7},
    {"Flat4", 8},
    {"P301", 8},
    {"Flattop", 9},
    {"Flat5", 9},
    {"P401", 9},
    {"Flat6", 10},
    {"P511", 10},
    {"Flat7", 11},
    {"P611", 11},
    {"P501", 12},
    {"P601", 13},
    {"Kaiser70", 14},
    {"Kaiser80", 15},
    {"Kaiser90", 16},
    {"Kaiser100", 17},
    {"Kaiser110", 18},
    {"Kaiser120", 19},
    {"Gauss60", 20},
    {"Gauss70", 21},
    {"Gauss80", 22},
    {"Riemann", 23},
    {"Sinc_Lobe", 23},
    {"DSP_WINDOW_UNIFORM", 0},
    {"DSP_WINDOW_RECTANGULAR", 0},
    {"DSP_WINDOW_NONE", 0},
    {"DSP_WINDOW_P000", 0},
    {"DSP_WINDOW_BARTLETT", 1},
    {"DSP_WINDOW_TRIANGULAR", 1},
    {"DSP_WINDOW_HANN", 2},
    {"DSP_WINDOW_P110", 2},
    {"DSP_WINDOW_HAMMING", 3},
    {"DSP_WINDOW_P100", 3},
    {"DSP_WINDOW_BLACKMAN", 4},
    {"DSP_WINDOW_BLACKMAN_HARRIS3", 5},
    {"DSP_WINDOW_P200", 5},
    {"DSP_WINDOW_BLACKMAN_HARRIS4", 6},
    {"DSP_WINDOW_P310", 6},
    {"DSP_WINDOW_LOWLEAK", 6},
    {"DSP_WINDOW_GAUSSTOP", 7},
    {"DSP_WINDOW_P400", 7},
    {"DSP_WINDOW_FLAT4", 8},
    {"DSP_WINDOW_P301", 8},
    {"DSP_WINDOW_FLATTOP", 9},
    {"DSP_WINDOW_FLAT5", 9},
    {"DSP_WINDOW_P401", 9},
    {"DSP_WINDOW_FLAT6", 10},
    {"DSP_WINDOW_P511", 10},
    {"DSP_WINDOW_FLAT7", 11},
    {"DSP_WINDOW_P611", 11},
    {"DSP_WINDOW_P501", 12},
    {"DSP_WINDOW_P601", 13},
    {"DSP_WINDOW_KAISER70", 14},
    {"DSP_WINDOW_KAISER80", 15},
    {"DSP_WINDOW_KAISER90", 16},
    {"DSP_WINDOW_KAISER100", 17},
    {"DSP_WINDOW_KAISER110", 18},
    {"DSP_WINDOW_KAISER120", 19},
    {"DSP_WINDOW_GAUSS60", 20},
    {"DSP_WINDOW_GAUSS70", 21},
    {"DSP_WINDOW_GAUSS80", 22},
    {"DSP_WINDOW_RIEMANN", 23},
    {"DSP_WINDOW_SINC_LOBE", 23},
};

int lower(char c) { return std::tolower(static_cast<unsigned char>(c)); }

bool same_ignoring_case(const char *a, const char *b)
{
    for (; *a && *b; ++a, ++b)
        if (lower(*a) != lower(*b)) return false;
    return *a == *b;
}

}  // namespace

extern "C" {

int32_t dsp_window_to_str(int32_t type, char *buf, int32_t len)
{
    if (!buf || len < 1) return -1;
    for (const WindowName &entry : kNames) {
        if (entry.type != type) continue;
        std::strncpy(buf, entry.name, static_cast<std::size_t>(len));
        buf[len - 1] = '\0';
        return 0;
    }
    buf[0] = '\0';
    return -1;
}

int32_t dsp_window_from_str(const char *name, int32_t *type)
{
    if (!name || !type) return -1;
    for (const WindowName &entry : kNames) {
        if (same_ignoring_case(name, entry.name)) {
            *type = entry.type;
            return 0;
        }
    }
    *type = 0;
    return -1;
}

}  // extern "C"
