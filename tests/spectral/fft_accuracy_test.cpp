// Accuracy of the complex and real transforms on every kernel path this
// machine runs, against directly evaluated long-double DFT sums.
#include "spectral/kernels.hpp"
#include "support/dft_oracle.hpp"
#include "support/random_values.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cfloat>
#include <vector>

using dsp_spectral::KernelPath;
using dsp_test::LComplex;
using dsp_test::Record;
using V = std::vector<double>;

namespace {

// Restores the kernel path a test changed.
class PathGuard {
public:
    PathGuard() : saved_(dsp_spectral::active_kernel_path()) {}
    ~PathGuard() { dsp_spectral::select_kernel_path(saved_); }

private:
    KernelPath saved_;
};

std::vector<KernelPath> paths_here()
{
    std::vector<KernelPath> paths;
    for (KernelPath p : {KernelPath::portable, KernelPath::sse2, KernelPath::avx2}) {
        PathGuard guard;
        if (dsp_spectral::select_kernel_path(p)) paths.push_back(p);
    }
    return paths;
}

// Points of interleaved (re, im) pairs, or of real values.
std::vector<LComplex> points_of(const V &values, bool interleaved)
{
    std::vector<LComplex> z;
    for (std::size_t i = 0; i < values.size(); i += interleaved ? 2 : 1)
        z.emplace_back(values[i], interleaved ? values[i + 1] : 0.0);
    return z;
}

V interleaved(const std::vector<LComplex> &z)
{
    V v;
    for (const LComplex &c : z) v.insert(v.end(), {static_cast<double>(c.real()), static_cast<double>(c.imag())});
    return v;
}

}  // namespace

TEST(FftAccuracy, TransformsMatchTheDirectSumOnEveryPath)
{
    const std::vector<KernelPath> paths = paths_here();
    ASSERT_GE(paths.size(), 2u) << "an x86-64 machine runs at least the portable and SSE2 paths";
    PathGuard guard;
    for (int bits = 0; bits <= 14; ++bits) {
        const std::size_t n = std::size_t{1} << bits;
        const double budget = (bits + 2) * DBL_EPSILON;  // about log2 N roundings, relative to the signal
        const V x = dsp_test::uniform_values(2 * n, 100 + bits, 1.0), real(x.begin(), x.begin() + n);
        const std::vector<LComplex> forward = dsp_test::naive_dft(points_of(x, true), -1, 1.0L / n, n);
        const std::vector<LComplex> inverse = dsp_test::naive_dft(points_of(x, true), +1, 1.0L, n);
        const std::vector<LComplex> half = dsp_test::naive_dft(points_of(real, false), -1, 1.0L / n, n / 2 + 1);
        V portable;
        for (KernelPath p : paths) {
            SCOPED_TRACE(testing::Message() << "path " << static_cast<int>(p) << " N=" << n);
            dsp_spectral::select_kernel_path(p);
            Record f(x, true), i(x, true), r(real);
            ASSERT_EQ(dspi_fft(f.get(), 0), 0);
            ASSERT_EQ(dspi_fft(i.get(), 1), 0);
            ASSERT_EQ(dspi_rfft(r.get()), 0);
            ASSERT_EQ(f.values().size(), 2 * n);
            ASSERT_EQ(r.values().size(), 2 * (n / 2 + 1));
            EXPECT_LE(dsp_test::relative_rms_error(f.values(), forward), budget);
            EXPECT_LE(dsp_test::relative_rms_error(i.values(), inverse), budget);
            EXPECT_LE(dsp_test::relative_rms_error(r.values(), half), budget);
            // Every vector path agrees with its portable twin to rounding; SSE2
            // does the same operations in the same order, so exactly.
            if (p == KernelPath::portable) {
                portable = f.values();
            } else if (p == KernelPath::sse2) {
                EXPECT_EQ(f.values(), portable);
            } else {
                EXPECT_LE(dsp_test::relative_rms_error(f.values(), points_of(portable, true)), budget);
            }
            if (n < 2) continue;
            EXPECT_EQ(r.values()[1], 0.0);
            EXPECT_EQ(r.values().back(), 0.0);
            // The inverse of the exact half spectrum is the input itself.
            Record back(interleaved(half), true);
            ASSERT_EQ(dspi_irfft(back.get()), 0);
            ASSERT_EQ(back->complex, 0);
            ASSERT_EQ(back.values().size(), n);
            EXPECT_LE(dsp_test::relative_rms_error(interleaved(points_of(back.values(), false)), points_of(real, false)),
                      budget);
        }
    }
}

// The butterflies at index 0 multiply by w^0 = 1, which the kernels skip: the
// three-multiplication product would compute re as (re + im) - im and lose
// a small real part beside a large imaginary one. An impulse at 0 passes
// only through index 0 of every block, so its flat spectrum comes out exact.
TEST(FftAccuracy, ImpulseAtZeroGivesAnExactFlatSpectrumOnEveryPath)
{
    PathGuard guard;
    const double re = 3.0;
    const double im = 0x1p60;
    for (int bits = 2; bits <= 12; ++bits) {
        const std::size_t n = std::size_t{1} << bits;
        V x(2 * n, 0.0);
        x[0] = re;
        x[1] = im;
        for (KernelPath p : paths_here()) {
            SCOPED_TRACE(testing::Message() << "path " << static_cast<int>(p) << " N=" << n);
            dsp_spectral::select_kernel_path(p);
            Record f(x, true), i(x, true);
            ASSERT_EQ(dspi_fft(f.get(), 0), 0);
            ASSERT_EQ(dspi_fft(i.get(), 1), 0);
            for (std::size_t k = 0; k < n; ++k) {
                ASSERT_EQ(f->data[2 * k], re / n) << "k " << k;
                ASSERT_EQ(f->data[2 * k + 1], im / n) << "k " << k;
                ASSERT_EQ(i->data[2 * k], re) << "k " << k;
                ASSERT_EQ(i->data[2 * k + 1], im) << "k " << k;
            }
        }
    }
}
