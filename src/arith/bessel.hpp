// Modified Bessel function of the first kind, order 0, by the library's own
// evaluation (power series up to 20, asymptotic expansion beyond).
#pragma once

namespace dsp_core {

// I0(x) without a range guard: finite for |x| up to about 709. dspi_besi0
// caps it at kHuge; the Kaiser windows need the unguarded values up to about
// 1e198 (x near 460).
double bessel_i0(double x);

}  // namespace dsp_core
