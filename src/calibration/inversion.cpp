// Gauss-Jordan inversion with partial row pivoting.
#include "calibration/matrix.hpp"

#include <cmath>
#include <cstddef>
#include <utility>

namespace dsp_calib {
namespace {

// The row permutation of one inversion. Small systems (those of the
// per-point loops) keep it on the stack so that a loop over many points
// allocates nothing.
class Permutation {
public:
    explicit Permutation(uint32_t n)
        : heap_(n > kInline ? static_cast<int32_t *>(allocate_bytes(sizeof(int32_t) * n))
                            : nullptr),
          perm_(heap_ ? heap_ : inline_)
    {
        for (uint32_t i = 0; i < n; ++i) perm_[i] = static_cast<int32_t>(i);
    }
    ~Permutation() { free_bytes(heap_); }
    Permutation(const Permutation &) = delete;
    Permutation &operator=(const Permutation &) = delete;

    int32_t &operator[](uint32_t i) { return perm_[i]; }

private:
    static constexpr uint32_t kInline = 8;
    int32_t inline_[kInline];
    int32_t *heap_;
    int32_t *perm_;
};

double magnitude(Complex z) { return std::hypot(z.re, z.im); }

}  // namespace

bool invert_in_place(Matrix &m)
{
    const uint32_t n = m.rows();
    Complex *a = m.unique_elements();
    auto at = [a, n](uint32_t i, uint32_t j) -> Complex & {
        return a[static_cast<std::size_t>(i) * n + j];
    };
    Permutation perm(n);

    for (uint32_t k = 0; k < n; ++k) {
        // The first of equal maxima wins; a NaN magnitude never replaces the
        // candidate, and a NaN candidate fails the threshold below.
        uint32_t pivot = k;
        double best = magnitude(at(k, k));
        for (uint32_t r = k + 1; r < n; ++r) {
            const double mag = magnitude(at(r, k));
            if (mag > best) {
                best = mag;
                pivot = r;
            }
        }
        if (!(best >= kSingularThreshold)) return false;
        if (pivot != k) {
            std::swap(perm[k], perm[pivot]);
            for (uint32_t j = 0; j < n; ++j) std::swap(at(k, j), at(pivot, j));
        }
        // The pivot position takes the reciprocal, so that after the sweep
        // the matrix holds the inverse in place of the identity.
        const Complex r = divide({1.0, 0.0}, at(k, k));
        at(k, k) = {1.0, 0.0};
        for (uint32_t j = 0; j < n; ++j) at(k, j) = multiply(at(k, j), r);
        for (uint32_t i = 0; i < n; ++i) {
            if (i == k) continue;
            const Complex f = at(i, k);
            at(i, k) = {0.0, 0.0};
            for (uint32_t j = 0; j < n; ++j) at(i, j) = subtract(at(i, j), multiply(f, at(k, j)));
        }
    }

    // Exchanging rows of the matrix permutes the columns of its inverse: the
    // column now at position q belongs at position perm[q].
    for (uint32_t j = 0; j < n; ++j) {
        if (perm[j] == static_cast<int32_t>(j)) continue;
        uint32_t q = j + 1;
        while (perm[q] != static_cast<int32_t>(j)) ++q;
        for (uint32_t i = 0; i < n; ++i) std::swap(at(i, j), at(i, q));
        std::swap(perm[j], perm[q]);
    }
    return true;
}

}  // namespace dsp_calib
