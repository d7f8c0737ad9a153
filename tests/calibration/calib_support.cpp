#include "calibration/calib_support.hpp"

#include <cstdlib>
#include <new>
#include <utility>

namespace calib_test {

Allocations &allocations()
{
    static Allocations state;
    return state;
}

std::vector<CL> reference_inverse(const std::vector<C> &a, int n)
{
    const std::size_t w = 2 * static_cast<std::size_t>(n);
    std::vector<CL> m(n * w);  // [a | I]
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) m[i * w + j] = CL(a[i * n + j].real(), a[i * n + j].imag());
        m[i * w + n + i] = 1.0L;
    }
    std::vector<int> col(n);  // column exchanges of the left half
    for (int j = 0; j < n; ++j) col[j] = j;
    for (int k = 0; k < n; ++k) {
        int pr = k, pc = k;
        for (int i = k; i < n; ++i)
            for (int j = k; j < n; ++j)
                if (std::abs(m[i * w + j]) > std::abs(m[pr * w + pc])) pr = i, pc = j;
        for (std::size_t j = 0; j < w; ++j) std::swap(m[k * w + j], m[pr * w + j]);
        for (int i = 0; i < n; ++i) std::swap(m[i * w + k], m[i * w + pc]);
        std::swap(col[k], col[pc]);
        const CL p = m[k * w + k];
        for (std::size_t j = 0; j < w; ++j) m[k * w + j] /= p;
        for (int i = 0; i < n; ++i) {
            if (i == k) continue;
            const CL f = m[i * w + k];
            for (std::size_t j = 0; j < w; ++j) m[i * w + j] -= f * m[k * w + j];
        }
    }
    // With columns of a exchanged, row k of the right half is row col[k] of
    // the inverse.
    std::vector<CL> inv(n * n);
    for (int k = 0; k < n; ++k)
        for (int j = 0; j < n; ++j) inv[col[k] * n + j] = m[k * w + n + j];
    return inv;
}

}  // namespace calib_test

void *operator new(std::size_t bytes)
{
    calib_test::Allocations &a = calib_test::allocations();
    if (a.counting) {
        const long k = a.count++;
        if (a.fail_from >= 0 && k >= a.fail_from) throw std::bad_alloc();
    }
    if (void *p = std::malloc(bytes ? bytes : 1)) return p;
    throw std::bad_alloc();
}

// The pair is malloc/free underneath; g++ cannot see that the operator new
// it pairs with is this one.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif
void operator delete(void *p) noexcept { std::free(p); }
void operator delete(void *p, std::size_t) noexcept { std::free(p); }
