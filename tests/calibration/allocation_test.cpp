// Storage of the correction functions: reused across the points of a call,
// nothing left live after it, and allocation failures reach the caller.
#include "calibration/calib_support.hpp"
#include "calibration/storage_cache.hpp"
#include "libdsp_vna.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

using calib_test::C;
using calib_test::CountAllocations;
using V = std::vector<C>;

namespace {

// Inputs for every correction function at n points.
struct Sweep {
    std::size_t n;
    V a, b, c, g0, g1, g2, out1, out2, out3, out4;
    explicit Sweep(std::size_t points) : n(points)
    {
        std::mt19937 gen(1);
        for (V *v : {&a, &b, &c, &out1, &out2, &out3, &out4})
            *v = calib_test::random_points(n, gen, 0.1, 1.0);
        g0.assign(n, C(1, 0));
        g1.assign(n, C(-1, 0));
        g2.assign(n, C(0, 0));
    }
    int32_t stop() const { return int32_t(n); }
    void terms()
    {
        Compute1PortTerms(out1.data(), out2.data(), out3.data(), g0.data(), g1.data(), g2.data(), 0,
                          stop());
    }
    void two_port()
    {
        Correct2Port(a.data(), b.data(), c.data(), a.data(), b.data(), c.data(), a.data(), b.data(),
                     g2.data(), nullptr, nullptr, g2.data(), a.data(), b.data(), c.data(),
                     g0.data(), out1.data(), out2.data(), out3.data(), out4.data(), 0, stop());
    }
    void invert4() { invert(out1.data(), 2); }
    void multiply() { MatrixMult(a.data(), b.data(), out1.data(), 4, 2, 2); }
};

struct Call {
    const char *name;
    std::function<void(Sweep &)> run;
    bool keeps_control_word;
};
const std::vector<Call> kCalls = {
    {"Compute1PortTerms", [](Sweep &s) { s.terms(); }, true},
    {"Correct2Port", [](Sweep &s) { s.two_port(); }, false},
    {"invert", [](Sweep &s) { s.invert4(); }, true},
    {"MatrixMult", [](Sweep &s) { s.multiply(); }, false},
};

}  // namespace

TEST(CalibStorage, PointsReuseStorageAndNothingStaysLive)
{
    for (const Call &call : kCalls) {
        long per_call[2];
        for (int i = 0; i < 2; ++i) {
            Sweep sweep(i == 0 ? 8 : 4000);
            CountAllocations count;
            call.run(sweep);
            per_call[i] = count.count();
            EXPECT_EQ(dsp_calib::cache_state().live, 0) << call.name;
        }
        // The same count for 8 and for 4000 points, and at most one
        // allocation per matrix in use.
        EXPECT_EQ(per_call[0], per_call[1]) << call.name;
        EXPECT_LE(per_call[0], 3) << call.name;
    }
    // One-port correction and enhanced response allocate nothing at all.
    Sweep sweep(100);
    CountAllocations count;
    Correct1Port(sweep.a.data(), sweep.b.data(), sweep.c.data(), sweep.g0.data(), sweep.out1.data(),
                 0, 100);
    ApplyEnhancedResponse(sweep.a.data(), sweep.b.data(), sweep.c.data(), sweep.a.data(),
                          sweep.b.data(), sweep.g0.data(), sweep.g1.data(), sweep.out1.data(),
                          sweep.out2.data(), 0, 100, 1);
    EXPECT_EQ(count.count(), 0);
}

TEST(CalibStorage, EveryFailedAllocationReachesTheCallerAndReleasesAll)
{
    const uint32_t entry = get_fpscr() & ~FPSCR_FLAGS_MASK;
    for (const Call &call : kCalls) {
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
