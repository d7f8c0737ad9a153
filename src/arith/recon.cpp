// Reconstruction of a full conjugate-symmetric spectrum from its half.
#include "core/record.hpp"

#include <cstdint>

extern "C" {

int32_t dspi_orecon(dsp *s, int32_t odd)
{
    const int32_t n = s->points;
    if (n < 2 || (!odd && n < 3)) return 0;
    // Even full length: point n-1 is the Nyquist point and occurs once. Odd
    // full length: every point but the zero-frequency one is mirrored.
    const int64_t full = 2 * (static_cast<int64_t>(n) - 1) + (odd ? 1 : 0);
    if (full > INT32_MAX) return -1;
    s->points = static_cast<int32_t>(full);
    if (dsp_realloc(s, n, s->complex) != 0) return -1;

    const std::size_t first_mirrored = static_cast<std::size_t>(odd ? n - 1 : n - 2);
    const std::size_t start = static_cast<std::size_t>(n);
    double *x = s->data;
    if (s->complex) {
        for (std::size_t i = first_mirrored, at = start; i >= 1; --i, ++at) {
            x[2 * at] = x[2 * i];
            x[2 * at + 1] = -x[2 * i + 1];
        }
    } else {
        for (std::size_t i = first_mirrored, at = start; i >= 1; --i, ++at) x[at] = x[i];
    }
    return 0;
}

int32_t dspi_recon(dsp *s) { return dspi_orecon(s, 0); }

}  // extern "C"
