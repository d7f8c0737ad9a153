// Random complex values for the error-correction tests.
#pragma once

#include <complex>
#include <cstddef>
#include <random>
#include <vector>

namespace calib_test {

using C = std::complex<double>;
using CL = std::complex<long double>;
using V = std::vector<C>;

// n values of magnitude in [lo, hi] and uniform phase.
inline V random_points(std::size_t n, std::mt19937 &gen, double lo, double hi)
{
    std::uniform_real_distribution<double> mag(lo, hi), phase(-3.14159, 3.14159);
    V v(n);
    for (C &z : v) z = std::polar(mag(gen), phase(gen));
    return v;
}

}  // namespace calib_test
