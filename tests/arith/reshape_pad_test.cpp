// Zero padding, its inverse and clearing.
#include "support/alloc_hooks.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using dsp_test::Record;
using Points = std::vector<std::vector<double>>;  // one inner vector per point

const int kScalings[] = {DSP_PAD_SCALE_RATIO, DSP_PAD_SCALE_SQRT, DSP_PAD_SCALE_NONE};
const int kPlacements[] = {DSP_PAD_FRONT, DSP_PAD_CENTER, DSP_PAD_END, DSP_PAD_SPLIT};

Points sample_points(int count, bool complex_flag)
{
    Points p;
    for (int i = 0; i < count; ++i)
        p.push_back(complex_flag ? std::vector<double>{i + 1.0, -0.5 * (i + 1)} : std::vector<double>{i + 1.0});
    return p;
}

std::vector<double> flatten(const Points &p)
{
    std::vector<double> v;
    for (const auto &point : p) v.insert(v.end(), point.begin(), point.end());
    return v;
}

Points scaled(Points p, int scaling, int to, int from)
{
    if (scaling == DSP_PAD_SCALE_NONE || from == 0 || to == 0) return p;
    const double ratio = static_cast<double>(to) / from;
    const double f = scaling == DSP_PAD_SCALE_SQRT ? std::sqrt(ratio) : ratio;
    for (auto &point : p)
        for (double &v : point) v *= f;
    return p;
}

// Padding to `longer` points, built from pieces: the data block lands at
// `longer / 2 - shorter / 2` when centred, which keeps the point at index
// shorter / 2 (the zero frequency after a swap of halves) at index longer / 2.
Points padded_reference(const Points &data, int longer, int scaling, int placement, std::size_t w)
{
    const int shorter = static_cast<int>(data.size());
    const Points kept = scaled(data, scaling, longer, shorter);
    const std::vector<double> zero(w, 0.0);
    Points out;
    auto zeros = [&](int count) { out.insert(out.end(), static_cast<std::size_t>(count), zero); };
    switch (placement) {
    case DSP_PAD_FRONT:
        out = kept;
        zeros(longer - shorter);
        break;
    case DSP_PAD_CENTER:
        zeros(longer / 2 - shorter / 2);
        out.insert(out.end(), kept.begin(), kept.end());
        zeros(longer - static_cast<int>(out.size()));
        break;
    case DSP_PAD_END:
        zeros(longer - shorter);
        out.insert(out.end(), kept.begin(), kept.end());
        break;
    default: {
        const int front = shorter - shorter / 2;
        out.assign(kept.begin(), kept.begin() + front);
        zeros(longer - shorter);
        out.insert(out.end(), kept.begin() + front, kept.end());
    }
    }
    return out;
}

Points unpadded_reference(const Points &data, int shorter, int scaling, int placement)
{
    const int longer = static_cast<int>(data.size());
    Points out;
    switch (placement) {
    case DSP_PAD_FRONT: out.assign(data.begin(), data.begin() + shorter); break;
    case DSP_PAD_CENTER: {
        const int at = longer / 2 - shorter / 2;
        out.assign(data.begin() + at, data.begin() + at + shorter);
        break;
    }
    case DSP_PAD_END: return Points(data.end() - shorter, data.end());  // never rescaled
    default:
        out.assign(data.begin(), data.begin() + (shorter - shorter / 2));
        out.insert(out.end(), data.end() - shorter / 2, data.end());
    }
    return scaled(out, scaling, shorter, longer);
}

TEST(ReshapePad, ZpadExtendsWithZerosAndZeroClears)
{
    Record r({1, 2, 3}, false, 0.25), c({1, -1, 2, -2}, true), empty;
    ASSERT_EQ(dspi_zpad(r.get(), 5), 0);
    ASSERT_EQ(dspi_zpad(r.get(), 2), 0);  // never truncates
    ASSERT_EQ(dspi_zpad(c.get(), 3), 0);
    ASSERT_EQ(dspi_zpad(empty.get(), 2), 0);
    EXPECT_EQ(r.values(), (std::vector<double>{1, 2, 3, 0, 0}));
    EXPECT_EQ(r->delta, 0.25);
    EXPECT_EQ(c.values(), (std::vector<double>{1, -1, 2, -2, 0, 0}));
    EXPECT_EQ(empty.values(), (std::vector<double>{0, 0}));

    const double *storage = c->data;
    ASSERT_EQ(dspi_zero(c.get()), 0);
    EXPECT_EQ(c.values(), std::vector<double>(6, 0.0));
    EXPECT_EQ(c->data, storage);

    // Caller-attached storage is never written: the record moves to its own.
    std::vector<double> mine = {5, 6, 7};
    dsp attached = dsp_test::attached_record(mine.data(), 3);
    ASSERT_EQ(dspi_zero(&attached), 0);
    EXPECT_NE(attached.data, mine.data());
    EXPECT_EQ(std::vector<double>(attached.data, attached.data + 3), std::vector<double>(3, 0.0));
    EXPECT_EQ(mine, (std::vector<double>{5, 6, 7}));
    dsp_destroy(&attached);
}

TEST(ReshapePad, EveryPlacementAndScalingMatchesReference)
{
    for (bool complex_flag : {false, true}) {
        const std::size_t w = complex_flag ? 2 : 1;
        for (int scaling : kScalings) {
            for (int placement : kPlacements) {
                const int flags = scaling | placement;
                for (int shorter = 0; shorter <= 6; ++shorter) {
                    for (int longer = shorter + 1; longer <= shorter + 5; ++longer) {
                        SCOPED_TRACE(testing::Message() << "flags " << flags << " " << shorter << " <-> "
                                                        << longer << " complex " << complex_flag);
                        const Points data = sample_points(shorter, complex_flag);
                        Record up(flatten(data), complex_flag);
                        ASSERT_EQ(dspi_zpad2(up.get(), longer, flags), 0);
                        EXPECT_EQ(up.values(), flatten(padded_reference(data, longer, scaling, placement, w)));

                        const Points wide = sample_points(longer, complex_flag);
                        Record down(flatten(wide), complex_flag);
                        ASSERT_EQ(dspi_unzpad(down.get(), shorter, flags), 0);
                        EXPECT_EQ(down.values(), flatten(unpadded_reference(wide, shorter, scaling, placement)));
                    }
                }
            }
        }
    }
}

TEST(ReshapePad, InvalidFlags)
{
    // zpad2 grows first and checks its flags afterwards: the record is left
    // longer, its old values kept.
    for (int flags : {3, 0x400 | DSP_PAD_SCALE_NONE, 0x700, 0x503}) {
        Record r({1, 2, 3});
        EXPECT_EQ(dspi_zpad2(r.get(), 6, flags), -1);
        EXPECT_EQ(r->points, 6);
        EXPECT_GE(r->allocated, 6);
        EXPECT_EQ(std::vector<double>(r->data, r->data + 3), (std::vector<double>{1, 2, 3}));
    }
    // Nothing to grow: the flags are never looked at.
    Record full({1, 2, 3});
    EXPECT_EQ(dspi_zpad2(full.get(), 3, 3), 0);

    // unzpad checks before it touches anything.
    for (int flags : {3, 0x400, 0x600 | DSP_PAD_SCALE_NONE, 0x301 | 0x800 | 0x400}) {
        Record r({1, 2, 3, 4, 5}, false, 0.5);
        EXPECT_EQ(dspi_unzpad(r.get(), 2, flags), -1);
        EXPECT_EQ(r.values(), (std::vector<double>{1, 2, 3, 4, 5}));
        EXPECT_EQ(r->delta, 0.5);
    }
    Record shorter({1, 2}), to_nothing({1, 2});
    EXPECT_EQ(dspi_unzpad(shorter.get(), 5, 3), 0);  // nothing to cut: flags not looked at
    EXPECT_EQ(dspi_unzpad(to_nothing.get(), -3, DSP_PAD_SCALE_RATIO), 0);
    EXPECT_EQ(shorter->points, 2);
    EXPECT_EQ(to_nothing->points, 0);
}

TEST(ReshapePad, GrowthFailureLeavesEmptyStorage)
{
    dsp_test::ScopedAllocHooks hooks;
    using Grow = int32_t (*)(dsp *);
    const Grow grows[] = {
        [](dsp *s) { return dspi_zpad(s, 9); },
        [](dsp *s) { return dspi_zpad2(s, 9, DSP_PAD_CENTER); },
        [](dsp *s) { return dspi_zpad2(s, 9, 3); },
    };
    for (Grow grow : grows) {
        const int failures = dsp_test::for_each_failing_growth(hooks, [&](int k) {
            hooks.never_fail();
            Record r({1, 2, 3, 4}, true);
            hooks.fail_from(k);
            const int32_t status = grow(r.get());
            if (r->data != nullptr) return true;
            EXPECT_EQ(status, -1);
            EXPECT_EQ(r->allocated, 0);
            EXPECT_EQ(r->points, 9);
            return false;
        });
        EXPECT_EQ(failures, 1);
    }

    // dspi_zero grows only a record on caller-attached storage.
    std::vector<double> mine = {5, 6, 7};
    dsp attached = dsp_test::attached_record(mine.data(), 3);
    hooks.fail_from(0);
    EXPECT_EQ(dspi_zero(&attached), -1);
    hooks.never_fail();
    EXPECT_EQ(attached.data, nullptr);
    EXPECT_EQ(attached.allocated, 0);
    EXPECT_EQ(mine, (std::vector<double>{5, 6, 7}));
    dsp_destroy(&attached);
}

TEST(ReshapePad, SameSizeReprocessingAllocatesNothing)
{
    dsp_test::ScopedAllocHooks hooks;
    Record r(flatten(sample_points(5, true)), true);
    ASSERT_EQ(dspi_zpad2(r.get(), 16, DSP_PAD_SPLIT), 0);
    ASSERT_EQ(dspi_unzpad(r.get(), 5, DSP_PAD_SPLIT), 0);
    hooks.reset_counts();
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(dspi_zpad2(r.get(), 16, DSP_PAD_CENTER), 0);
        ASSERT_EQ(dspi_unzpad(r.get(), 5, DSP_PAD_CENTER), 0);
        ASSERT_EQ(dspi_zpad(r.get(), 12), 0);
        ASSERT_EQ(dspi_zero(r.get()), 0);
        r->points = 5;
    }
    EXPECT_EQ(hooks.counts().total(), 0);
}

}  // namespace
