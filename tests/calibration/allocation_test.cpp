// Storage of the correction functions: reused across the points of a call,
// nothing left live after it, and allocation failures reach the caller.
#include "calibration/calib_support.hpp"
#include "calibration/storage_cache.hpp"
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <vector>

using calib_test::C;
using calib_test::V;

namespace {

long allocation_count, failing_from;

// Counts the allocations of the matrix code while it lives; from the
// fail_from-th one on (0 = the next), each throws std::bad_alloc.
struct CountAllocations {
    explicit CountAllocations(long fail_from = LONG_MAX)
    {
        allocation_count = 0;
        failing_from = fail_from;
        dsp_calib::set_allocation_hook([](std::size_t) {
            if (allocation_count++ >= failing_from) throw std::bad_alloc();
        });
    }
    ~CountAllocations() { dsp_calib::set_allocation_hook(nullptr); }
};

// Inputs for every correction function at n points.
struct Sweep {
    int32_t n;
    V a, b, c, g0, g1, g2, out1, out2, out3, out4;
    explicit Sweep(int32_t points) : n(points), g0(n, 1.0), g1(n, -1.0), g2(n, 0.0)
    {
        std::mt19937 gen(1);
        for (V *v : {&a, &b, &c, &out1, &out2, &out3, &out4}) *v = calib_test::random_points(n, gen, 0.1, 1.0);
    }
};

const struct {
    const char *name;
    void (*run)(Sweep &);
    bool keeps_control_word;
} kCalls[] = {
    {"Compute1PortTerms",
     [](Sweep &s) { Compute1PortTerms(s.out1.data(), s.out2.data(), s.out3.data(), s.g0.data(), s.g1.data(), s.g2.data(), 0, s.n); },
     true},
    {"Correct2Port",
     [](Sweep &s) {
         Correct2Port(s.a.data(), s.b.data(), s.c.data(), s.a.data(), s.b.data(), s.c.data(), s.a.data(), s.b.data(),
                      s.g2.data(), nullptr, nullptr, s.g2.data(), s.a.data(), s.b.data(), s.c.data(), s.g0.data(),
                      s.out1.data(), s.out2.data(), s.out3.data(), s.out4.data(), 0, s.n);
     },
     false},
    {"invert", [](Sweep &s) { invert(s.out1.data(), 2); }, true},
    {"MatrixMult", [](Sweep &s) { MatrixMult(s.a.data(), s.b.data(), s.out1.data(), 4, 2, 2); }, false},
};

}  // namespace

TEST(CalibStorage, PointsReuseStorageAndNothingStaysLive)
{
    for (const auto &call : kCalls) {
        long per_call[2];
        for (int i = 0; i < 2; ++i) {
            Sweep sweep(i == 0 ? 8 : 4000);
            CountAllocations count;
            call.run(sweep);
            per_call[i] = allocation_count;
            EXPECT_EQ(dsp_calib::cache_state().live, 0) << call.name;
        }
        // The same count for 8 and for 4000 points, and at most one
        // allocation per matrix in use.
        EXPECT_EQ(per_call[0], per_call[1]) << call.name;
        EXPECT_LE(per_call[0], 3) << call.name;
    }
    // One-port correction and enhanced response allocate nothing at all.
    Sweep s(100);
    CountAllocations count;
    Correct1Port(s.a.data(), s.b.data(), s.c.data(), s.g0.data(), s.out1.data(), 0, 100);
    ApplyEnhancedResponse(s.a.data(), s.b.data(), s.c.data(), s.a.data(), s.b.data(), s.g0.data(), s.g1.data(),
                          s.out1.data(), s.out2.data(), 0, 100, 1);
    EXPECT_EQ(allocation_count, 0);
}

TEST(CalibStorage, EveryFailedAllocationReachesTheCallerAndReleasesAll)
{
    // Every call raises inexact flags on the way; those that keep the
    // control word must clear them again, on success and on failure.
    const uint32_t entry = get_fpscr() & ~FPSCR_FLAGS_MASK;
    for (const auto &call : kCalls) {
        int failures = 0;
        for (long k = 0;; ++k) {
            Sweep sweep(50);
            set_fpscr(entry);
            bool threw = false;
            try {
                CountAllocations count(k);
                call.run(sweep);
            } catch (const std::bad_alloc &e) {
                threw = true;
                EXPECT_STREQ(e.what(), "bad allocation") << call.name;
            }
            EXPECT_EQ(dsp_calib::cache_state().live, 0) << call.name << " failing " << k;
            if (call.keeps_control_word) {
                EXPECT_EQ(get_fpscr(), entry) << call.name;
            }
            if (!threw) break;
            ++failures;
        }
        EXPECT_GE(failures, 1) << call.name;
    }
}
