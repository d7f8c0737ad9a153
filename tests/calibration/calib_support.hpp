// Shared helpers of the error-correction tests: random complex values, a
// long-double reference inverse, and counting (and failing) the allocations
// of the matrix code.
#pragma once

#include <complex>
#include <cstddef>
#include <random>
#include <vector>

namespace calib_test {

using C = std::complex<double>;
using CL = std::complex<long double>;

// A value of magnitude in [lo, hi] and uniform phase.
inline C random_polar(std::mt19937 &gen, double lo, double hi)
{
    std::uniform_real_distribution<double> mag(lo, hi), phase(-3.14159, 3.14159);
    return std::polar(mag(gen), phase(gen));
}

inline std::vector<C> random_points(std::size_t n, std::mt19937 &gen, double lo, double hi)
{
    std::vector<C> v(n);
    for (C &z : v) z = random_polar(gen, lo, hi);
    return v;
}

// Inverse of the row-major n x n matrix a by Gaussian elimination in long
// double with complete pivoting.
std::vector<CL> reference_inverse(const std::vector<C> &a, int n);

// Counts the allocations of the matrix code while it lives; from the
// fail_from-th one on (0 = the next), each throws std::bad_alloc.
class CountAllocations {
public:
    explicit CountAllocations(long fail_from = -1);
    ~CountAllocations();
    CountAllocations(const CountAllocations &) = delete;
    CountAllocations &operator=(const CountAllocations &) = delete;
    long count() const;
};

}  // namespace calib_test
