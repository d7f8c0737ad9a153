#include "calibration/calib_support.hpp"

#include "calibration/storage_cache.hpp"

#include <new>
#include <utility>

namespace calib_test {

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

namespace {
long allocation_count;
long failing_from;

void count_allocation(std::size_t)
{
    const long k = allocation_count++;
    if (failing_from >= 0 && k >= failing_from) throw std::bad_alloc();
}
}  // namespace

CountAllocations::CountAllocations(long fail_from)
{
    allocation_count = 0;
    failing_from = fail_from;
    dsp_calib::set_allocation_hook(count_allocation);
}

CountAllocations::~CountAllocations() { dsp_calib::set_allocation_hook(nullptr); }

long CountAllocations::count() const { return allocation_count; }

}  // namespace calib_test
