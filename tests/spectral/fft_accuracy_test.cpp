// Accuracy of the complex and real transforms on every kernel path this
// machine runs, against directly evaluated long-double DFT sums.
#include "support/dft_oracle.hpp"
#include "spectral/kernels.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <vector>

using dsp_spectral::KernelPath;
using dsp_test::LComplex;
using dsp_test::Record;

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

const char *path_name(KernelPath p)
{
    return p == KernelPath::portable ? "portable" : p == KernelPath::sse2 ? "sse2" : "avx2";
}

// An error bound of about log2 N units of rounding, relative to the signal.
double ulp_budget(int bits) { return (bits + 2) * DBL_EPSILON; }

std::vector<LComplex> to_complex(const std::vector<double> &interleaved)
{
    std::vector<LComplex> z(interleaved.size() / 2);
    for (std::size_t i = 0; i < z.size(); ++i) z[i] = LComplex(interleaved[2 * i], interleaved[2 * i + 1]);
    return z;
}

std::vector<double> rounded(const std::vector<LComplex> &z)
{
    std::vector<double> v;
    for (const LComplex &c : z) {
        v.push_back(static_cast<double>(c.real()));
        v.push_back(static_cast<double>(c.imag()));
    }
    return v;
}

}  // namespace

TEST(FftAccuracy, ComplexTransformsMatchTheDirectSumOnEveryPath)
{
    ASSERT_FALSE(paths_here().empty());
    EXPECT_GE(paths_here().size(), 2u) << "an x86-64 machine runs at least the portable and SSE2 paths";
    PathGuard guard;
    for (int bits = 0; bits <= 14; ++bits) {
        const std::size_t n = std::size_t{1} << bits;
        const std::vector<double> x = dsp_test::random_values(2 * n, 100 + bits);
        const std::vector<LComplex> forward = dsp_test::naive_dft(to_complex(x), -1, 1.0L / n, n);
        const std::vector<LComplex> inverse = dsp_test::naive_dft(to_complex(x), +1, 1.0L, n);
        std::vector<double> portable_forward;
        for (KernelPath p : paths_here()) {
            SCOPED_TRACE(testing::Message() << path_name(p) << " N=" << n);
            dsp_spectral::select_kernel_path(p);
            Record f(x, true, 0.5);
            ASSERT_EQ(dspi_fft(f.get(), 0), 0);
            EXPECT_EQ(f->points, static_cast<int32_t>(n));
            EXPECT_EQ(f->complex, 1);
            EXPECT_LE(dsp_test::relative_rms_error(f.values(), forward), ulp_budget(bits));
            Record i(x, true);
            ASSERT_EQ(dspi_fft(i.get(), 1), 0);
            EXPECT_LE(dsp_test::relative_rms_error(i.values(), inverse), ulp_budget(bits));
            // Every vector path agrees with its portable twin to rounding; SSE2
            // does the same operations in the same order, so exactly.
            if (p == KernelPath::portable) {
                portable_forward = f.values();
            } else if (p == KernelPath::sse2) {
                EXPECT_EQ(f.values(), portable_forward);
            } else {
                EXPECT_LE(dsp_test::relative_rms_error(f.values(), to_complex(portable_forward)), ulp_budget(bits));
            }
        }
    }
}

TEST(FftAccuracy, RealTransformMatchesTheDirectSumAndInvertsOnEveryPath)
{
    PathGuard guard;
    for (int bits = 0; bits <= 14; ++bits) {
        const std::size_t n = std::size_t{1} << bits;
        const std::vector<double> x = dsp_test::random_values(n, 300 + bits);
        std::vector<LComplex> xc(x.begin(), x.end());
        const std::vector<LComplex> half = dsp_test::naive_dft(xc, -1, 1.0L / n, n / 2 + 1);
        for (KernelPath p : paths_here()) {
            SCOPED_TRACE(testing::Message() << path_name(p) << " N=" << n);
            dsp_spectral::select_kernel_path(p);
            Record r(x);
            ASSERT_EQ(dspi_rfft(r.get()), 0);
            ASSERT_EQ(r->complex, 1);
            ASSERT_EQ(r->points, static_cast<int32_t>(n / 2 + 1));
            const std::vector<double> got = r.values();
            EXPECT_LE(dsp_test::relative_rms_error(got, half), ulp_budget(bits));
            if (n >= 2) {
                EXPECT_EQ(got[1], 0.0);
                EXPECT_EQ(got.back(), 0.0);
            }
            // The inverse of the exact half spectrum is the input itself.
            if (n >= 2) {
                Record back(rounded(half), true);
                ASSERT_EQ(dspi_irfft(back.get()), 0);
                ASSERT_EQ(back->complex, 0);
                ASSERT_EQ(back->points, static_cast<int32_t>(n));
                const std::vector<double> y = back.values();
                std::vector<double> y_pairs, x_pairs;
                std::vector<LComplex> x_ref;
                for (std::size_t k = 0; k < n; ++k) {
                    y_pairs.push_back(y[k]);
                    y_pairs.push_back(0.0);
                    x_ref.push_back(LComplex(x[k], 0.0L));
                }
                EXPECT_LE(dsp_test::relative_rms_error(y_pairs, x_ref), ulp_budget(bits));
            }
        }
    }
}
