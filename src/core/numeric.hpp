// Shared numeric constants and tolerant rounding/comparison of doubles.
// Every family uses these; keep the one copy here.
#pragma once

#include <cmath>
#include <cstdint>

namespace dsp_core {

// Stand-in for infinity: overflowing results (division by zero, squares of
// huge values) are reported as +-kHuge so traces stay finite.
constexpr double kHuge = 1e100;

// Logarithms are floored at the smallest normal double.
constexpr double kLogFloor = 2.2250738585072014e-308;

constexpr double kPi = 3.14159265358979323846;
constexpr double kTwoPi = 6.28318530717958647692;
constexpr double kLog10E = 0.4342944819032518;

// Relative slack of the tolerant rounding: 20 units of 2^-52.
constexpr double kRoundSlack = 4.440892098500626e-15;
// Ratio window of the tolerant equality, and the band around zero inside
// which two values are only equal to each other.
constexpr double kEqualRatioLow = 0.9999999999999956;
constexpr double kEqualRatioHigh = 1.0000000000000044;
constexpr double kEqualZeroBand = 4.450147717014403e-307;

// Clamp a double (already rounded) to the int32 range used by the tolerant
// rounding: NaN and negatives give 0, values above INT32_MAX saturate.
inline int32_t clamp_to_count(double v)
{
    if (!(v >= 0.0)) return 0;
    if (v > 2147483647.0) return 0x7fffffff;
    return static_cast<int32_t>(v);
}

// Ceiling that forgives a relative error of 20 ulp-units, so that a count
// computed as 3.0000000000000004 still rounds up to 3.
inline int32_t tolerant_ceil(double x)
{
    if (!(x >= 0.0)) return 0;
    if (x > 2147483647.0) return 0x7fffffff;
    double c = x > 0.5 ? std::ceil(x * kEqualRatioLow) : std::ceil(x - kRoundSlack);
    return clamp_to_count(c);
}

// Floor with the same forgiveness: 2.9999999999999996 floors to 3.
inline int32_t tolerant_floor(double x)
{
    if (!(x >= 0.0)) return 0;
    if (x > 2147483647.0) return 0x7fffffff;
    double f = x > 0.5 ? std::floor(x * kEqualRatioHigh) : std::floor(x + kRoundSlack);
    return clamp_to_count(f);
}

// Equality up to a relative error of about 20 ulp-units. Near zero, where a
// ratio means nothing, both values must lie in the zero band.
inline bool tolerant_equal(double a, double b)
{
    if (a == b) return true;
    if (std::fabs(a) <= kEqualZeroBand) return std::fabs(b) <= kEqualZeroBand;
    double ratio = b / a;
    return ratio >= kEqualRatioLow && ratio <= kEqualRatioHigh;
}

// Squared-magnitude term with the library's overflow cap: a part beyond
// +-kHuge (or NaN) makes the whole result kHuge.
inline bool beyond_huge(double v) { return v > kHuge || !(v >= -kHuge); }

inline double capped_magsq(double re, double im)
{
    if (beyond_huge(re) || beyond_huge(im)) return kHuge;
    return re * re + im * im;
}

// Clamp to [-kHuge, kHuge]; NaN goes to the lower bound.
inline double clamp_huge(double v)
{
    if (v > kHuge) return kHuge;
    return v >= -kHuge ? v : -kHuge;
}

}  // namespace dsp_core
