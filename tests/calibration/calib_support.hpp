// Shared helpers of the error-correction tests: random complex values, a
// long-double reference inverse and a global operator new that can count
// and fail allocations.
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

// Operator new of the test binary: while counting, every allocation is
// counted, and from the fail_from-th one on each throws std::bad_alloc.
struct Allocations {
    bool counting = false;
    long count = 0;
    long fail_from = -1;
};
Allocations &allocations();

// Counts the allocations made while it lives.
class CountAllocations {
public:
    explicit CountAllocations(long fail_from = -1) { allocations() = {true, 0, fail_from}; }
    ~CountAllocations() { allocations().counting = false; }
    long count() const { return allocations().count; }
};

}  // namespace calib_test
