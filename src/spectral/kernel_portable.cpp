// The portable complex kernel: plain double arithmetic, one point at a time.
// It serves processors without a vector variant and is the twin the vector
// variants are checked against.
#include "spectral/kernels.hpp"
#include "spectral/real_untangle.hpp"
#include "spectral/split_radix.hpp"

namespace dsp_spectral {
namespace {

struct ScalarOps {
    struct V {
        double re, im;
    };
    static constexpr int32_t width = 1;

    static V load(const double *p) { return V{p[0], p[1]}; }
    static void store(double *p, V v)
    {
        p[0] = v.re;
        p[1] = v.im;
    }
    static V add(V a, V b) { return V{a.re + b.re, a.im + b.im}; }
    static V sub(V a, V b) { return V{a.re - b.re, a.im - b.im}; }
    static V minus_j(V a, V b) { return V{a.re + b.im, a.im - b.re}; }
    static V plus_j(V a, V b) { return V{a.re - b.im, a.im + b.re}; }
    static V conj(V a) { return V{a.re, -a.im}; }
    static V times_j(V a) { return V{-a.im, a.re}; }
    static V scale(V a, double k) { return V{a.re * k, a.im * k}; }
    static V reverse(V a) { return a; }

    // u * w with three multiplications, from w's (cos, sin - cos,
    // -(cos + sin)); the conjugate of w exchanges the last two.
    template <bool Conjugate>
    static V twiddle(V u, const double *cos_part, const double *pair)
    {
        const double t = cos_part[0] * (u.re + u.im);
        const double for_re = Conjugate ? pair[1] : pair[0];
        const double for_im = Conjugate ? pair[0] : pair[1];
        return V{t + u.im * for_re, t + u.re * for_im};
    }
};

}  // namespace

void portable_kernel(double *x, int bits, const TwiddleLevels &tw, bool inverse)
{
    SplitRadix<ScalarOps, ScalarOps>::transform(x, bits, tw, inverse);
}

void portable_untangle(double *x, int32_t h, const Twiddles &tw)
{
    RealUntangle<ScalarOps, ScalarOps>::run(x, h, tw);
}

}  // namespace dsp_spectral
