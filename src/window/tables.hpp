// Cosine-sum coefficient tables of the catalogue (types 0 and 2..13).
#pragma once

#include <cstdint>

namespace dsp_window {

// One stored array per scaling mode, all of `terms` coefficients a0, a1, ...
// raw sums to 1 (peak 1); power is raw / sqrt(a0^2 + sum(ak^2) / 2) (root
// mean square 1); amplitude is raw / a0 (mean 1), for the flat tops times
// their gain (amplitude[0]), which keeps their scalloping within the gain.
struct CosineTable {
    int32_t terms;
    const double *amplitude;
    const double *power;
    const double *raw;
};

// The table of a cosine-sum type, or null for any other type.
const CosineTable *cosine_table(int32_t type);

// The array of a scaling mode (0, 1, 2); null for mode 3.
const double *coefficients_for(const CosineTable &table, int32_t mode);

inline bool is_flat_top(int32_t type) { return type >= 8 && type <= 13; }

}  // namespace dsp_window
