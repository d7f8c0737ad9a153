// Transforms of plain caller arrays, through a temporary record that borrows
// the caller's storage.
#include "libdsp.h"

extern "C" {

int32_t cf_dspi_fft(double *data, int32_t points, int32_t complex_flag, int32_t inverse)
{
    // A real array would have to double in place to become complex, which a
    // caller's array cannot; only complex data is accepted.
    if (!data || !complex_flag) return -1;
    dsp s;
    dsp_init(&s);
    s.data = data;
    s.points = points;
    s.complex = 1;
    const int32_t status = dspi_fft(&s, inverse);
    dsp_destroy(&s);
    return status;
}

}  // extern "C"
