// Independent references for the window tests: the defining raw coefficients,
// closed forms of every shape in long double, and reading a window back from
// the library by windowing a record of ones.
#pragma once

#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace window_test {

using Values = std::vector<long double>;
constexpr long double kPi = 3.141592653589793238462643383279L;

// Raw (peak 1) cosine-sum coefficients of types 2..13 and, for the flat tops,
// the gain their amplitude scaling keeps.
struct RawCosine {
    int type;
    std::vector<double> a;
    double gain;
};

inline const std::vector<RawCosine> &raw_cosines()
{
    static const std::vector<RawCosine> table = {
        {2, {0.5, 0.5}, 1.0},
        {3, {0.54, 0.46}, 1.0},
        {4, {0.42, 0.5, 0.08}, 1.0},
        {5, {0.424383190860823, 0.497339753968089, 0.078277055171088}, 1.0},
        {6, {0.355768, 0.487396, 0.144232, 0.012604}, 1.0},
        {7, {0.3232153788984078, 0.47149214396487166, 0.1755341299514293, 0.028496990099716707,
             0.0012613570855745683},
         1.0},
        {8, {0.239523981482822, 0.458092235226179, 0.258487878813733, 0.0438959044772663}, 0.9994484},
        {9, {0.213283237831627, 0.414006058783449, 0.279055911943774, 0.0861666667911267, 0.00748812465002295},
         0.9996403},
        {10,
         {0.191847568346755, 0.375972989750395, 0.28442588877861, 0.122742011293553, 0.0237265428747444,
          0.00128499895594193},
         0.999760855},
        {11,
         {0.177865709213752, 0.350267506494545, 0.281638382006947, 0.144775183509154, 0.0403343233670632,
          0.00495730999606168, 0.000161585412477099},
         0.999820406},
        {12,
         {0.194193773561842, 0.380170365312055, 0.284064801584131, 0.118766633064811, 0.0217289855238924,
          0.00107544095326841},
         0.99974762},
        {13,
         {0.179324203849725, 0.352952756714861, 0.281965299769994, 0.142511435204976, 0.0385717630030842,
          0.0045365638065367, 0.00013797765082358},
         0.999813874},
    };
    return table;
}

inline const RawCosine &raw_cosine(int type)
{
    for (const RawCosine &c : raw_cosines())
        if (c.type == type) return c;
    throw std::out_of_range("not a cosine sum");
}

// a0^2 + sum(ak^2) / 2: the mean square of the raw window over a period.
inline long double power_sum(const std::vector<double> &a)
{
    long double p = static_cast<long double>(a[0]) * a[0];
    for (std::size_t k = 1; k < a.size(); ++k) p += 0.5L * a[k] * a[k];
    return p;
}

// The coefficients of a scaling mode, derived from the raw ones: amplitude
// raw / a0 times the gain, power raw / sqrt(power_sum), none raw.
inline std::vector<long double> mode_coefficients(const RawCosine &c, int mode)
{
    long double f = 1.0L;
    if (mode == 0) f = c.gain / static_cast<long double>(c.a[0]);
    if (mode == 1) f = 1.0L / std::sqrt(power_sum(c.a));
    std::vector<long double> out;
    for (double v : c.a) out.push_back(v * f);
    return out;
}

// sum_k a_k cos(2 pi k m / period) over offsets m = i - n/2 from the centre.
inline Values cosine_window(const std::vector<long double> &a, int n, long double period)
{
    Values w(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        const long double m = i - n / 2;
        long double v = 0.0L;
        for (std::size_t k = 0; k < a.size(); ++k) v += a[k] * std::cos(2.0L * kPi * k * m / period);
        w[static_cast<std::size_t>(i)] = v;
    }
    return w;
}

inline long double mean(const Values &w)
{
    long double s = 0.0L;
    for (long double v : w) s += v;
    return s / w.size();
}

inline long double rms(const Values &w)
{
    long double s = 0.0L;
    for (long double v : w) s += v * v;
    return std::sqrt(s / w.size());
}

inline Values scaled(Values w, long double f)
{
    for (long double &v : w) v *= f;
    return w;
}

// The window scaled to mean 1 (mode 0), root mean square 1 (mode 1) or as is.
inline Values normalised(const Values &w, int mode)
{
    if (mode == 0) return scaled(w, 1.0L / mean(w));
    if (mode == 1) return scaled(w, 1.0L / rms(w));
    return w;
}

// I0 by its power series, summed until the terms stop mattering.
inline long double bessel_i0(long double x)
{
    const long double q = x * x / 4.0L;
    long double term = 1.0L, sum = 1.0L;
    for (int k = 1; k < 2000 && term > sum * 1e-22L; ++k) {
        term *= q / (static_cast<long double>(k) * k);
        sum += term;
    }
    return sum;
}

// A shape f(distance) over n points centred on n/2, or between n/2 - 1 and
// n/2 when split.
template <typename Shape>
Values centred(int n, bool split, Shape f)
{
    Values w(static_cast<std::size_t>(n));
    const long double centre = n / 2 - (split ? 0.5L : 0.0L);
    for (int i = 0; i < n; ++i) w[static_cast<std::size_t>(i)] = f(std::fabs(i - centre));
    return w;
}

// Multiplies a record of n ones by the window (not rotated) and reads it.
template <typename Apply>
std::vector<double> read_window(int n, Apply apply, int *status = nullptr)
{
    dsp_test::Record r(std::vector<double>(static_cast<std::size_t>(n), 1.0));
    const int st = apply(r.get());
    if (status) *status = st;
    return r.values();
}

// Largest |got - want| relative to the largest |want| (absolute below 1).
inline ::testing::AssertionResult close_to(const std::vector<double> &got, const Values &want, long double tol)
{
    if (got.size() != want.size())
        return ::testing::AssertionFailure() << "size " << got.size() << " vs " << want.size();
    long double peak = 1.0L;
    for (long double v : want) peak = std::max(peak, std::fabs(v));
    for (std::size_t i = 0; i < got.size(); ++i) {
        if (!(std::fabs(got[i] - want[i]) <= tol * peak))
            return ::testing::AssertionFailure()
                   << "index " << i << ": " << got[i] << " vs " << static_cast<double>(want[i]);
    }
    return ::testing::AssertionSuccess();
}

}  // namespace window_test
