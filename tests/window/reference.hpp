// Independent references for the window tests: the defining raw coefficients,
// closed forms of every shape in long double, and reading a window back from
// the library by windowing a record of ones.
#pragma once

#include "support/alloc_hooks.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace window_test {

using Values = std::vector<long double>;
constexpr long double kPi = 3.141592653589793238462643383279L;
constexpr int kModes[] = {DSP_WINDOW_SCALE_AMPLITUDE, DSP_WINDOW_SCALE_POWER, DSP_WINDOW_SCALE_NONE};

// Raw (peak 1) cosine-sum coefficients of types 2..13 and, for the flat tops,
// the gain their amplitude scaling keeps.
struct RawCosine { int type; std::vector<double> a; double gain; };

inline const std::vector<RawCosine> &raw_cosines()
{
    static const std::vector<RawCosine> table = {
        {2, {0.5, 0.5}, 1.0}, {3, {0.54, 0.46}, 1.0}, {4, {0.42, 0.5, 0.08}, 1.0},
        {5, {0.424383190860823, 0.497339753968089, 0.078277055171088}, 1.0},
        {6, {0.355768, 0.487396, 0.144232, 0.012604}, 1.0},
        {7, {0.3232153788984078, 0.47149214396487166, 0.1755341299514293, 0.028496990099716707, 0.0012613570855745683}, 1.0},
        {8, {0.239523981482822, 0.458092235226179, 0.258487878813733, 0.0438959044772663}, 0.9994484},
        {9, {0.213283237831627, 0.414006058783449, 0.279055911943774, 0.0861666667911267, 0.00748812465002295}, 0.9996403},
        {10, {0.191847568346755, 0.375972989750395, 0.28442588877861, 0.122742011293553, 0.0237265428747444,
              0.00128499895594193}, 0.999760855},
        {11, {0.177865709213752, 0.350267506494545, 0.281638382006947, 0.144775183509154, 0.0403343233670632,
              0.00495730999606168, 0.000161585412477099}, 0.999820406},
        {12, {0.194193773561842, 0.380170365312055, 0.284064801584131, 0.118766633064811, 0.0217289855238924,
              0.00107544095326841}, 0.99974762},
        {13, {0.179324203849725, 0.352952756714861, 0.281965299769994, 0.142511435204976, 0.0385717630030842,
              0.0045365638065367, 0.00013797765082358}, 0.999813874},
    };
    return table;
}

inline const RawCosine &raw_cosine(int type) { return raw_cosines().at(static_cast<std::size_t>(type - 2)); }

// a0^2 + sum(ak^2) / 2: the mean square of the raw window over a period.
inline long double power_sum(const std::vector<double> &a)
{
    return std::inner_product(a.begin(), a.end(), a.begin(), 0.0L) / 2 + a[0] * static_cast<long double>(a[0]) / 2;
}

// The coefficients of a scaling mode, derived from the raw ones: amplitude
// raw / a0 times the gain, power raw / sqrt(power_sum), none raw.
inline std::vector<long double> mode_coefficients(const RawCosine &c, int mode)
{
    const long double f = mode == 0 ? c.gain / c.a[0] : mode == 1 ? 1 / std::sqrt(power_sum(c.a)) : 1;
    std::vector<long double> out;
    for (double v : c.a) out.push_back(v * f);
    return out;
}

// sum_k a_k cos(2 pi k m / period) over offsets m = i - n/2 from the centre.
template <typename T>
Values cosine_window(const std::vector<T> &a, int n, long double period)
{
    Values w(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        for (std::size_t k = 0; k < a.size(); ++k)
            w[static_cast<std::size_t>(i)] += a[k] * std::cos(2 * kPi * k * (i - n / 2) / period);
    return w;
}

// A cosine sum of period L cut to an own length L < n around the centre:
// offsets -L/2 .. L/2, one fewer on the right for even L, so L points remain.
template <typename T>
Values own_length_cosine(const std::vector<T> &a, int n, double length)
{
    Values w = cosine_window(a, n, length > 0 ? length : 1.0);
    if (length >= n) return w;
    const int whole = static_cast<int>(std::floor(length));
    const int right = whole / 2 - (whole % 2 == 0 && whole == length ? 1 : 0);
    for (int i = 0; i < n; ++i)
        if (i - n / 2 < -whole / 2 || i - n / 2 > right) w[static_cast<std::size_t>(i)] = 0.0L;
    return w;
}

inline long double mean(const Values &w) { return std::accumulate(w.begin(), w.end(), 0.0L) / w.size(); }
inline long double rms(const Values &w) { return std::sqrt(std::inner_product(w.begin(), w.end(), w.begin(), 0.0L) / w.size()); }

// The window scaled to mean 1 (mode 0), root mean square 1 (mode 1) or as is.
inline Values normalised(Values w, int mode)
{
    const long double f = mode == 0 ? 1 / mean(w) : mode == 1 ? 1 / rms(w) : 1;
    for (long double &v : w) v *= f;
    return w;
}

// I0 by its power series, summed until the terms stop mattering.
inline long double bessel_i0(long double x)
{
    long double term = 1.0L, sum = 1.0L;
    for (int k = 1; k < 2000 && term > sum * 1e-22L; ++k) sum += term *= x * x / 4 / (static_cast<long double>(k) * k);
    return sum;
}

// A shape f(distance) over n points centred on n/2, or, placed symmetrically,
// on (n - 1)/2: between n/2 - 1 and n/2 for even n.
template <typename Shape>
Values centred(int n, bool symmetric, Shape f)
{
    Values w(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) w[static_cast<std::size_t>(i)] = f(std::fabs(i - (symmetric ? (n - 1) / 2.0L : n / 2)));
    return w;
}

// I0(beta sqrt(1 - (2d/D)^2)) / I0(beta), D = n (n - 1 when symmetric); one point is 1.
inline Values kaiser_shape(int n, bool symmetric, long double beta)
{
    const long double dd = symmetric && n > 1 ? n - 1 : n;
    return centred(n, symmetric, [&](long double d) {
        return bessel_i0(beta * std::sqrt(std::max(0.0L, 1 - 4 * d * d / (dd * dd)))) / bessel_i0(beta);
    });
}

inline Values gauss_shape(int n, bool symmetric, long double sigma)
{
    return centred(n, symmetric, [&](long double d) { return std::exp(-0.5L * d * d / (n * sigma * n * sigma)); });
}

inline Values tukey_shape(int n, bool symmetric, long double r)
{
    const long double flat = (1 - r) * n / 2;
    return centred(n, symmetric, [&](long double d) { return d <= flat ? 1 : (1 + std::cos(2 * kPi * (d - flat) / (n * r))) / 2; });
}

// (sin(x)/x)^q with x = 2 extent d / n; beyond the first zero only the powers
// 0, 1 and 2 have a value, any other gives 0.
inline Values lobe_shape(int n, bool symmetric, long double extent, long double q)
{
    return centred(n, symmetric, [&](long double d) {
        const long double x = d * 2 * extent / n, u = x == 0 ? 1 : std::sin(x) / x;
        return u > 0 ? std::pow(u, q) : q == 1 ? u : q == 2 ? u * u : q == 0 ? 1 : 0;
    });
}

// Catalogue types 1 and 14..24 before scaling, with the catalogue's parameters.
inline Values fixed_shape(int type, int n, bool symmetric)
{
    static const long double beta[] = {9.473960131326246L,  10.751776690564654L, 12.014077292090791L,
                                       13.264372446115681L, 14.505082414495599L, 15.73795091271457L};
    static const long double sigma[] = {0.1583722L, 0.1442161L, 0.1328102L};
    if (type == 1) return centred(n, false, [n](long double d) { return 1 - 2 * d / n; });
    if (type <= 19) return kaiser_shape(n, symmetric, beta[type - 14]);
    if (type <= 22) return gauss_shape(n, symmetric, sigma[type - 20]);
    return type == 23 ? lobe_shape(n, symmetric, kPi, 1) : tukey_shape(n, symmetric, 0.25L);
}

// Multiplies a record of n ones by the window and reads it; the call must succeed.
template <typename Apply>
std::vector<double> read_window(int n, Apply apply)
{
    dsp_test::Record r(std::vector<double>(static_cast<std::size_t>(n), 1.0));
    EXPECT_EQ(apply(r.get()), 0) << "n " << n;
    return r.values();
}

// Largest |got - want| relative to the largest |want| (absolute below 1).
inline ::testing::AssertionResult close_to(const std::vector<double> &got, const Values &want, long double tol)
{
    long double peak = 1.0L;
    for (long double v : want) peak = std::max(peak, std::fabs(v));
    for (std::size_t i = 0; i < std::max(got.size(), want.size()); ++i)
        if (got.size() != want.size() || !(std::fabs(got[i] - want[i]) <= tol * peak))
            return ::testing::AssertionFailure() << "size " << got.size() << ", index " << i;
    return ::testing::AssertionSuccess();
}

// True when call fails on a record of x and leaves it as it was.
template <typename Call>
bool refuses(const std::vector<double> &x, Call call)
{
    dsp_test::Record s(x);
    return call(s.get()) == -1 && std::equal(x.begin(), x.end(), s->data);
}

// Runs call on a fresh record of x with growth k failing, k = 0, 1, ... until
// it succeeds; every failure must leave x untouched. Returns the failures.
template <typename Call>
int failures_leaving_signal(const std::vector<double> &x, Call call)
{
    dsp_test::ScopedAllocHooks hooks;
    return dsp_test::for_each_failing_growth(hooks, [&](int k) {
        hooks.never_fail();
        dsp_test::Record s(x);
        hooks.fail_from(k);
        const int status = call(s.get());
        EXPECT_TRUE(status == 0 || s.values() == x);
        return status == 0;
    });
}

}  // namespace window_test
