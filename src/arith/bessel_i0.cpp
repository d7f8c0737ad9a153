#include "arith/bessel.hpp"

#include "core/numeric.hpp"

#include <array>
#include <cmath>

namespace {

// Below this |x| the power series converges quickly; above it the asymptotic
// expansion is the more accurate one.
constexpr double kSeriesLimit = 20.0;

// 1 / (k!)^2 for k = 0..33: I0(x) = sum of q^k / (k!)^2 with q = (x/2)^2.
// k! is exact in double up to 22! and rounded once per step beyond.
constexpr std::array<double, 34> series_coefficients()
{
    std::array<double, 34> c{};
    double factorial = 1.0;
    for (int k = 0; k < 34; ++k) {
        if (k > 0) factorial *= k;
        c[k] = 1.0 / (factorial * factorial);
    }
    return c;
}

// ((2k - 1)!!)^2 / k! for k = 0..21: I0(x) ~ e^x / sqrt(2 pi x) times the sum
// of c_k t^k with t = 1 / (8x). Recurrence c_k = c_(k-1) (2k - 1)^2 / k.
constexpr std::array<double, 22> asymptotic_coefficients()
{
    std::array<double, 22> c{};
    double v = 1.0;
    for (int k = 0; k < 22; ++k) {
        if (k > 0) v = v * ((2 * k - 1) * (2 * k - 1)) / k;
        c[k] = v;
    }
    return c;
}

constexpr std::array<double, 34> kSeries = series_coefficients();
constexpr std::array<double, 22> kAsymptotic = asymptotic_coefficients();

// Horner's rule from the highest coefficient down.
template <std::size_t N>
double horner(const std::array<double, N> &c, double x)
{
    double p = c[N - 1];
    for (std::size_t k = N - 1; k-- > 0;) p = p * x + c[k];
    return p;
}

}  // namespace

namespace dsp_core {

double bessel_i0(double x)
{
    const double a = std::fabs(x);
    if (a <= kSeriesLimit) {
        const double half = a / 2.0;
        return horner(kSeries, half * half);
    }
    const double t = 0.125 / a;
    return std::exp(a) * horner(kAsymptotic, t) / std::sqrt(a * kTwoPi);
}

}  // namespace dsp_core
