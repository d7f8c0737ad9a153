// Transforms of plain caller arrays, through a temporary record that borrows
// the caller's storage.
#include "core/record.hpp"

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

int32_t cf_dsph_fft(const double *in, double *out, int32_t points, int32_t complex_flag, double fraction,
                    int32_t window, int32_t flags)
{
    if (!in || !out) return -1;
    dsp source;
    dsp_init(&source);
    source.data = const_cast<double *>(in);  // only read: dsph_fft never changes its input
    source.points = points;
    source.complex = complex_flag ? 1 : 0;
    dsp result;
    dsp_init(&result);
    const int32_t status = dsph_fft(&source, &result, 0, fraction, window, flags);
    if (status == 0) {
        // The caller sized `out` like `in`; a shorter result fills it up with zeros.
        const std::size_t wanted = dsp_core::doubles_for(points, complex_flag);
        const std::size_t have = dsp_core::doubles_of(&result);
        for (std::size_t i = 0; i < wanted; ++i) out[i] = i < have ? result.data[i] : 0.0;
    }
    dsp_destroy(&result);
    return status;
}

}  // extern "C"
