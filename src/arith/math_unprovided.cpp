// Names that the interface declares but the library deliberately does not
// provide: every one of them refuses any record with -1 and changes nothing.
#include "libdsp.h"

namespace {

int32_t not_provided(dsp *) { return -1; }

}  // namespace

extern "C" {

int32_t dspi_erf(dsp *s) { return not_provided(s); }
int32_t dspi_erfc(dsp *s) { return not_provided(s); }
int32_t dspi_gamma(dsp *s) { return not_provided(s); }
int32_t dspi_lgamma(dsp *s) { return not_provided(s); }

}  // extern "C"
