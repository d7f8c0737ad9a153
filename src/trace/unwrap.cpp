// Phase unwrap of complex trace points, resumable over successive ranges of
// one buffer.
#include "libdsp_vna.h"

#include "core/numeric.hpp"

#include <cmath>
#include <cstddef>

namespace {
constexpr double kTurnsPerRadian = 0.15915494309189535;
}

void vfpd_UnwrapPhase(const double *cpx, int32_t start, int32_t stop, double *phase)
{
    using dsp_core::kPi;
    using dsp_core::kTwoPi;
    if (start > stop) return;
    // A call that continues an earlier one recovers the turns counted so far
    // from what that call wrote. Truncation makes this exact only while the
    // angle of point start - 1 has not fallen back past that of point 0
    // within its turn; see docs/trace.md.
    double turns = 0.0;
    if (start > 1) turns = std::trunc((phase[start - 1] - phase[0]) * kTurnsPerRadian);
    for (int32_t k = start; k < stop; ++k) {
        const double *z = cpx + 2 * static_cast<std::ptrdiff_t>(k);
        const double p = turns * kTwoPi + std::atan2(z[1], z[0]);
        phase[k] = p;
        if (k == 0) continue;
        const double step = p - phase[k - 1];
        if (!(step >= -kPi)) {
            turns += 1.0;
            phase[k] = p + kTwoPi;
        } else if (step > kPi) {
            turns -= 1.0;
            phase[k] = p - kTwoPi;
        }
    }
}
