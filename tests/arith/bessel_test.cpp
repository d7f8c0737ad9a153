// The library's own I0 against an independent long double power series.
#include "arith/bessel.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

// Sum of q^k / (k!)^2 in long double until the terms stop mattering.
long double series_i0(long double x)
{
    const long double q = x * x / 4;
    long double term = 1, sum = 1;
    for (int k = 1; k < 5000; ++k) {
        term *= q / (static_cast<long double>(k) * k);
        sum += term;
        if (term < sum * 1e-21L) break;
    }
    return sum;
}

double ulps_off(double got, long double want)
{
    const double w = static_cast<double>(want);
    return static_cast<double>(std::fabs((got - want) / want)) / (std::nextafter(std::fabs(w), 1e308) / std::fabs(w) - 1.0);
}

}  // namespace

TEST(BesselI0, AgreesWithALongDoubleSeriesToAFewUlps)
{
    std::vector<double> xs;
    for (double x = -230.0; x <= 230.0; x += 0.0731) xs.push_back(x);
    for (double x : {0.0, 1e-10, 0.5, 19.999999, 20.0, 20.000001, 25.0, 230.0, -230.0}) xs.push_back(x);
    dsp_test::Record r(xs);
    ASSERT_EQ(dspi_besi0(r.get()), 0);
    const std::vector<double> got = r.values();
    double worst = 0;
    for (std::size_t i = 0; i < xs.size(); ++i) {
        const double off = ulps_off(got[i], series_i0(xs[i]));
        worst = std::max(worst, off);
        EXPECT_LE(off, 8.0) << "x = " << xs[i];
    }
    EXPECT_GT(worst, 0.0);  // the oracle is not the evaluator itself
}

TEST(BesselI0, ContinuousWhereTheSeriesHandsOverToTheExpansion)
{
    const double left = 20.0, right = std::nextafter(20.0, 21.0);
    const double a = dsp_core::bessel_i0(left), b = dsp_core::bessel_i0(right);
    // The step between neighbouring arguments is I1(20) * ulp(20) = I0 * 3.5e-15:
    // anything beyond a few ulps would be a seam between the two branches.
    EXPECT_GT(b, a);
    EXPECT_LT((b - a) / a, 1.2e-14);
    EXPECT_EQ(dsp_core::bessel_i0(-right), b);
    EXPECT_LE(ulps_off(dsp_core::bessel_i0(20.000001), series_i0(20.000001L)), 8.0);
}

TEST(BesselI0, UnguardedEvaluatorServesLargeArguments)
{
    for (double x : {231.0, 300.0, 460.0, -460.0}) {
        EXPECT_LE(ulps_off(dsp_core::bessel_i0(x), series_i0(x)), 8.0) << x;
    }
    EXPECT_GT(dsp_core::bessel_i0(460.0), 1e197);
    EXPECT_LT(dsp_core::bessel_i0(460.0), 1e199);
}
