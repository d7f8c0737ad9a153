// Scaling and linear mapping of trace buffers: block forms against plain
// forms, truncation and saturation, single precision kept single.
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace {

const double kInf = INFINITY, kNaN = NAN;

// n values, mostly moderate, salted with NaN, infinities, huge values,
// subnormals and signed zeros at pseudo-random places.
template <typename T>
std::vector<T> awkward_values(std::size_t n, unsigned seed, T moderate_range)
{
    using L = std::numeric_limits<T>;
    const T specials[] = {L::quiet_NaN(), L::infinity(), -L::infinity(), L::max(), -L::max(), L::denorm_min(), T(0), -T(0)};
    std::mt19937 rng(seed);
    std::uniform_real_distribution<T> moderate(-moderate_range, moderate_range);
    std::vector<T> v(n);
    for (T &x : v) x = rng() % 2 ? specials[rng() % 8] : moderate(rng);
    return v;
}

// Every length from 0 to 100 and one long, odd one, so every split between
// vector body and leftover elements occurs; one element past n must stay.
template <typename Check>
void for_twin_lengths(Check check)
{
    for (int32_t n = 0; n <= 100; ++n) check(n);
    check(100003);
}

template <typename T>
void expect_multiply_twins(void (*plain)(T, T *, int32_t), void (*block)(T, T *, int32_t), T factor)
{
    for_twin_lengths([&](int32_t n) {
        std::vector<T> a = awkward_values<T>(n + 1u, n, T(1e3)), b = a;
        plain(factor, a.data(), n);
        block(factor, b.data(), n);
        ASSERT_EQ(std::memcmp(a.data(), b.data(), sizeof(T) * (n + 1u)), 0) << "n=" << n;
    });
}

template <typename T>
using MapFn = void (*)(const T *, int32_t, T, T, int32_t *, int32_t, int32_t);

template <typename T>
void expect_scale_twins(MapFn<T> plain, MapFn<T> block)
{
    // Ranges that send many values past both int32 limits, a screen range,
    // and a zero span (infinite or NaN scale).
    const struct {
        T lo, hi;
        int32_t outLo, outHi;
    } ranges[] = {{-1, 1, INT32_MIN, INT32_MAX}, {-4, 4, 0, 479}, {2, 2, -5, 5}};
    for (const auto &r : ranges)
        for_twin_lengths([&](int32_t n) {
            const std::vector<T> src = awkward_values<T>(n, 7u + n, T(4));
            std::vector<int32_t> a(n + 1u, 12345), b = a;
            plain(src.data(), n, r.lo, r.hi, a.data(), r.outLo, r.outHi);
            block(src.data(), n, r.lo, r.hi, b.data(), r.outLo, r.outHi);
            ASSERT_EQ(a, b) << "n=" << n;
            ASSERT_EQ(a[n], 12345);
        });
}

}  // namespace

TEST(TraceBlockForms, BitIdenticalToPlainForms)
{
    // Factors that overflow, give signed zeros and NaN, and subnormals.
    for (double k : {3.7, 1e300, -0.0, 1e-310}) expect_multiply_twins<double>(vfpdbMul1, vfpdbMul2, k);
    for (float k : {3.7f, 1e30f, -1e-40f}) expect_multiply_twins<float>(vfpsbMul1, vfpsbMul2, k);
    expect_scale_twins<double>(vfpdb_ScaleToInt, vfpdb_ScaleToInt2);
    expect_scale_twins<float>(vfpsb_ScaleToInt, vfpsb_ScaleToInt2);

    std::vector<double> d = {1.5, -2.0, 0.25, 8.0};
    vfpdbMul1(4.0, d.data(), 3);
    EXPECT_EQ(d, (std::vector<double>{6.0, -8.0, 1.0, 8.0}));
    for (int32_t n : {0, -1, INT32_MIN}) vfpsbMul2(2.0f, nullptr, n);  // n <= 0 touches nothing
}

TEST(TraceScaleToInt, TruncatesTowardZeroAndSaturates)
{
    std::vector<int32_t> dst(11);
    // [0, 1] onto the whole int32 range (scale 2^32 - 1): beyond a limit,
    // infinities included, a result stops at it; NaN gives 0; 0.5 maps to
    // -0.5 and truncates to 0. The single forms round the span to 2^32, so
    // 0.75 lands on 2^30 there instead of 2^30 - 0.75.
    const std::vector<double> wide = {0.0, 1.0, 2.0, -1.0, kInf, -kInf, kNaN, 1e300, -1e300, 0.5, 0.75};
    std::vector<int32_t> expected = {INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN, INT32_MAX, INT32_MIN,
                                     0,         INT32_MAX, INT32_MIN, 0,         1073741823};
    const std::vector<float> wide_f(wide.begin(), wide.end());
    for (MapFn<double> f : {vfpdb_ScaleToInt, vfpdb_ScaleToInt2}) {
        f(wide.data(), 11, 0.0, 1.0, dst.data(), INT32_MIN, INT32_MAX);
        EXPECT_EQ(dst, expected);
    }
    expected.back() = 1073741824;
    for (MapFn<float> f : {vfpsb_ScaleToInt, vfpsb_ScaleToInt2}) {
        f(wide_f.data(), 11, 0.0f, 1.0f, dst.data(), INT32_MIN, INT32_MAX);
        EXPECT_EQ(dst, expected);
    }

    // hi = lo: the scale is 10 / 0 = +inf, so values above lo saturate high,
    // values below saturate low, and lo itself gives 0 * inf = NaN, hence 0.
    const std::vector<double> flat = {3.0, 1.0, 2.0};
    vfpdb_ScaleToInt(flat.data(), 3, 2.0, 2.0, dst.data(), -5, 5);
    EXPECT_EQ(std::vector<int32_t>(dst.begin(), dst.begin() + 3), (std::vector<int32_t>{INT32_MAX, INT32_MIN, 0}));

    // Just inside and just outside the limits, mapped one to one: truncated
    // toward zero, not rounded.
    const std::vector<double> edges = {2147483646.9, 2147483647.5, 2147483648.0, -2147483648.9, -2147483649.0};
    vfpdb_ScaleToInt(edges.data(), 5, 0.0, 1.0, dst.data(), 0, 1);
    EXPECT_EQ(std::vector<int32_t>(dst.begin(), dst.begin() + 5),
              (std::vector<int32_t>{2147483646, INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN}));
}

TEST(TraceScaleToInt, SinglePrecisionFormsComputeInSinglePrecision)
{
    // 0.7f is 0.699999988...; times 100 that is 69.9999988 in double but
    // exactly 70 in single precision.
    const float x = 0.7f;
    ASSERT_EQ(static_cast<int32_t>(static_cast<double>(x) * 100.0), 69);
    ASSERT_EQ(x * 100.0f, 70.0f);
    int32_t out = 0;
    for (MapFn<float> f : {vfpsb_ScaleToInt, vfpsb_ScaleToInt2}) {
        f(&x, 1, 0.0f, 1.0f, &out, 0, 100);
        EXPECT_EQ(out, 70);
    }
    // outLo is rounded to single precision too: 16777217 becomes 16777216.
    const float zero_f = 0.0f;
    const double zero = 0.0;
    vfpsb_ScaleToInt(&zero_f, 1, 0.0f, 1.0f, &out, 16777217, 16777219);
    EXPECT_EQ(out, 16777216);
    vfpdb_ScaleToInt(&zero, 1, 0.0, 1.0, &out, 16777217, 16777219);
    EXPECT_EQ(out, 16777217);
}

TEST(TraceScaleToFP, MapsOntoADoubleRangeInPlace)
{
    // [0, 1] onto [1, -1], reversed, and extrapolated past the range.
    std::vector<double> v = {0.0, 0.5, 1.0, 2.0};
    vfpdb_ScaleToFP(v.data(), 4, 0.0, 1.0, v.data(), 1.0, -1.0);
    EXPECT_EQ(v, (std::vector<double>{1.0, 0.0, -1.0, -3.0}));
    vfpdb_ScaleToFP(v.data(), 0, 0.0, 1.0, v.data(), 5.0, 6.0);
    EXPECT_EQ(v[0], 1.0);
}
