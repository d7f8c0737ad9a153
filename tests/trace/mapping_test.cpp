// Scaling and linear mapping of trace buffers: block forms against plain
// forms, truncation and saturation, single precision kept single.
#include "libdsp_vna.h"
#include "trace_values.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

using trace_test::awkward_values;
using trace_test::bits_of;
using trace_test::kInf;
using trace_test::kNaN;

namespace {

// Every length from 0 to 100 and one long, odd one, so every split between
// vector body and leftover elements occurs.
std::vector<int32_t> twin_lengths()
{
    std::vector<int32_t> lengths;
    for (int32_t n = 0; n <= 100; ++n) lengths.push_back(n);
    lengths.push_back(100003);
    return lengths;
}

template <typename T, typename Plain, typename Block>
void expect_multiply_twins(Plain plain, Block block, T factor, unsigned seed)
{
    for (int32_t n : twin_lengths()) {
        // One extra element past n must stay untouched by both.
        std::vector<T> a = awkward_values<T>(static_cast<std::size_t>(n) + 1, seed + n, T(1e3));
        std::vector<T> b = a;
        const T guard = a[n];
        plain(factor, a.data(), n);
        block(factor, b.data(), n);
        for (int32_t i = 0; i <= n; ++i) ASSERT_EQ(bits_of(a[i]), bits_of(b[i])) << "n=" << n << " i=" << i;
        ASSERT_EQ(bits_of(a[n]), bits_of(guard));
    }
}

template <typename T, typename Plain, typename Block>
void expect_scale_to_int_twins(Plain plain, Block block, T lo, T hi, int32_t outLo, int32_t outHi)
{
    for (int32_t n : twin_lengths()) {
        std::vector<T> src = awkward_values<T>(static_cast<std::size_t>(n), 7u + n, T(4));
        std::vector<int32_t> a(static_cast<std::size_t>(n) + 1, 12345), b = a;
        plain(src.data(), n, lo, hi, a.data(), outLo, outHi);
        block(src.data(), n, lo, hi, b.data(), outLo, outHi);
        ASSERT_EQ(a, b) << "n=" << n;
        ASSERT_EQ(a[n], 12345);
    }
}

}  // namespace

TEST(TraceMultiply, BlockFormsAreBitIdenticalToPlainForms)
{
    expect_multiply_twins<double>(vfpdbMul1, vfpdbMul2, 3.7, 1);
    expect_multiply_twins<double>(vfpdbMul1, vfpdbMul2, 1e300, 2);  // overflow to infinity
    expect_multiply_twins<double>(vfpdbMul1, vfpdbMul2, -0.0, 3);   // NaN and signed zeros
    expect_multiply_twins<double>(vfpdbMul1, vfpdbMul2, 1e-310, 4); // subnormal results
    expect_multiply_twins<float>(vfpsbMul1, vfpsbMul2, 3.7f, 5);
    expect_multiply_twins<float>(vfpsbMul1, vfpsbMul2, 1e30f, 6);
    expect_multiply_twins<float>(vfpsbMul1, vfpsbMul2, -1e-40f, 7);
}

TEST(TraceMultiply, ScalesInPlaceAndIgnoresNonPositiveCounts)
{
    std::vector<double> d = {1.5, -2.0, 0.25, 8.0};
    vfpdbMul1(4.0, d.data(), 3);
    EXPECT_EQ(d, (std::vector<double>{6.0, -8.0, 1.0, 8.0}));
    vfpdbMul2(0.5, d.data(), 4);
    EXPECT_EQ(d, (std::vector<double>{3.0, -4.0, 0.5, 4.0}));

    std::vector<float> f = {1.0f + 0x1p-23f, 3.0f};
    vfpsbMul1(0x1p24f, f.data(), 2);
    EXPECT_EQ(f[0], 16777218.0f);
    EXPECT_EQ(f[1], 50331648.0f);

    std::vector<double> untouched = {kNaN, 1.0};
    for (int32_t n : {0, -1, INT32_MIN}) {
        vfpdbMul1(2.0, untouched.data(), n);
        vfpdbMul2(2.0, untouched.data(), n);
        vfpsbMul1(2.0f, nullptr, n);
        vfpsbMul2(2.0f, nullptr, n);
    }
    EXPECT_EQ(untouched[1], 1.0);
}

TEST(TraceScaleToInt, BlockFormsAreBitIdenticalToPlainForms)
{
    // Ranges that send many values past both int32 limits, a plain screen
    // range, and a zero span (infinite or NaN scale).
    expect_scale_to_int_twins<double>(vfpdb_ScaleToInt, vfpdb_ScaleToInt2, -1.0, 1.0, INT32_MIN, INT32_MAX);
    expect_scale_to_int_twins<double>(vfpdb_ScaleToInt, vfpdb_ScaleToInt2, -4.0, 4.0, 0, 479);
    expect_scale_to_int_twins<double>(vfpdb_ScaleToInt, vfpdb_ScaleToInt2, 2.0, 2.0, -5, 5);
    expect_scale_to_int_twins<float>(vfpsb_ScaleToInt, vfpsb_ScaleToInt2, -1.0f, 1.0f, INT32_MIN, INT32_MAX);
    expect_scale_to_int_twins<float>(vfpsb_ScaleToInt, vfpsb_ScaleToInt2, -4.0f, 4.0f, 0, 479);
    expect_scale_to_int_twins<float>(vfpsb_ScaleToInt, vfpsb_ScaleToInt2, 2.0f, 2.0f, -5, 5);
}

TEST(TraceScaleToInt, TruncatesTowardZeroAndSaturates)
{
    // [0, 10] onto [0, 100]: scale 10, so the results are 10 x, truncated.
    const std::vector<double> src = {0.0, 0.99, 1.01, 9.999, -0.05, -0.15, 10.0};
    const std::vector<int32_t> expected = {0, 9, 10, 99, 0, -1, 100};
    using Fn = void (*)(const double *, int32_t, double, double, int32_t *, int32_t, int32_t);
    for (Fn f : {Fn(vfpdb_ScaleToInt), Fn(vfpdb_ScaleToInt2)}) {
        std::vector<int32_t> dst(src.size());
        f(src.data(), static_cast<int32_t>(src.size()), 0.0, 10.0, dst.data(), 0, 100);
        EXPECT_EQ(dst, expected);
    }

    // [0, 1] onto the whole int32 range: the scale is 2^32 - 1 and every
    // result beyond a limit, infinities included, stops at it; NaN gives 0.
    // 0.5 maps to -0.5, truncated to 0. The last value shows the single
    // forms at work: their span rounds to 2^32, so 0.75 lands on 2^30
    // instead of 2^30 - 0.75.
    const std::vector<double> wide = {0.0, 1.0, 2.0, -1.0, kInf, -kInf, kNaN, 1e300, -1e300, 0.5, 0.75};
    std::vector<int32_t> expected_d = {INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN, INT32_MAX, INT32_MIN,
                                       0,         INT32_MAX, INT32_MIN, 0,         1073741823};
    std::vector<int32_t> expected_f = expected_d;
    expected_f.back() = 1073741824;
    std::vector<float> wide_f(wide.begin(), wide.end());
    for (int block = 0; block < 2; ++block) {
        std::vector<int32_t> d(wide.size()), s(wide.size());
        (block ? vfpdb_ScaleToInt2 : vfpdb_ScaleToInt)(wide.data(), 11, 0.0, 1.0, d.data(), INT32_MIN, INT32_MAX);
        (block ? vfpsb_ScaleToInt2 : vfpsb_ScaleToInt)(wide_f.data(), 11, 0.0f, 1.0f, s.data(), INT32_MIN, INT32_MAX);
        EXPECT_EQ(d, expected_d) << "block=" << block;
        EXPECT_EQ(s, expected_f) << "block=" << block;
    }

    // Just inside and just outside the limits.
    const std::vector<double> edges = {2147483646.9, 2147483647.0, 2147483647.5, 2147483648.0,
                                       -2147483648.0, -2147483648.9, -2147483649.0};
    std::vector<int32_t> e(edges.size());
    vfpdb_ScaleToInt(edges.data(), 7, 0.0, 1.0, e.data(), 0, 1);
    EXPECT_EQ(e, (std::vector<int32_t>{2147483646, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MIN,
                                      INT32_MIN, INT32_MIN}));
}

TEST(TraceScaleToInt, SinglePrecisionFormsComputeInSinglePrecision)
{
    // 0.7f is 0.699999988...; times 100 that is 69.9999988 in double, but
    // rounds to exactly 70 in single precision.
    const float x = 0.7f;
    ASSERT_EQ(static_cast<int32_t>(static_cast<double>(x) * 100.0), 69);
    const float single = x * 100.0f;
    ASSERT_EQ(single, 70.0f);
    int32_t out = 0;
    vfpsb_ScaleToInt(&x, 1, 0.0f, 1.0f, &out, 0, 100);
    EXPECT_EQ(out, 70);
    vfpsb_ScaleToInt2(&x, 1, 0.0f, 1.0f, &out, 0, 100);
    EXPECT_EQ(out, 70);

    // The offset outLo is rounded to single precision as well: 16777217 is
    // not a float and becomes 16777216.
    const float lo = 0.0f;
    vfpsb_ScaleToInt(&lo, 1, 0.0f, 1.0f, &out, 16777217, 16777219);
    EXPECT_EQ(out, 16777216);
    vfpdb_ScaleToInt(std::vector<double>{0.0}.data(), 1, 0.0, 1.0, &out, 16777217, 16777219);
    EXPECT_EQ(out, 16777217);
}

TEST(TraceScaleToInt, NonPositiveCountsTouchNothing)
{
    std::vector<int32_t> dst = {7, 7};
    const std::vector<double> src = {1.0, 2.0};
    const std::vector<float> src_f = {1.0f, 2.0f};
    std::vector<double> dst_fp = {7.0, 7.0};
    for (int32_t n : {0, -3}) {
        vfpdb_ScaleToInt(src.data(), n, 0.0, 1.0, dst.data(), 0, 10);
        vfpdb_ScaleToInt2(src.data(), n, 0.0, 1.0, dst.data(), 0, 10);
        vfpsb_ScaleToInt(src_f.data(), n, 0.0f, 1.0f, dst.data(), 0, 10);
        vfpsb_ScaleToInt2(src_f.data(), n, 0.0f, 1.0f, dst.data(), 0, 10);
        vfpdb_ScaleToFP(src.data(), n, 0.0, 1.0, dst_fp.data(), 0.0, 10.0);
    }
    EXPECT_EQ(dst, (std::vector<int32_t>{7, 7}));
    EXPECT_EQ(dst_fp, (std::vector<double>{7.0, 7.0}));
}

TEST(TraceScaleToFP, MapsOntoADoubleRange)
{
    // [-50, 10] dB onto [400, 0] screen rows: scale -400/60, one row per
    // 0.15 dB; chosen points land exactly.
    const std::vector<double> src = {-50.0, 10.0, -20.0, -35.0, 40.0};
    std::vector<double> dst(src.size());
    vfpdb_ScaleToFP(src.data(), 5, -50.0, 10.0, dst.data(), 400.0, 0.0);
    const std::vector<double> expected = {400.0, 0.0, 200.0, 300.0, -200.0};
    for (std::size_t i = 0; i < src.size(); ++i) EXPECT_NEAR(dst[i], expected[i], 1e-12) << i;

    // In place.
    std::vector<double> in_place = {0.0, 0.5, 1.0};
    vfpdb_ScaleToFP(in_place.data(), 3, 0.0, 1.0, in_place.data(), -1.0, 1.0);
    EXPECT_EQ(in_place, (std::vector<double>{-1.0, 0.0, 1.0}));
}
