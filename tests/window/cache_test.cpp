// The window cache, observed through the allocator hooks: a cached window is
// reused without allocating; a window that must be built into a slot grows
// that slot's record.
#include "support/alloc_hooks.hpp"
#include "window/reference.hpp"

namespace {

using namespace window_test;
using dsp_test::Record;
using dsp_test::ScopedAllocHooks;

// Windows with a Hann window of n points and reports the growths it caused.
int growths_for(ScopedAllocHooks &hooks, int n, int flags = 0)
{
    Record s(std::vector<double>(static_cast<std::size_t>(n), 1.0));
    hooks.reset_counts();
    EXPECT_EQ(dspi_window(s.get(), DSP_WINDOW_HANN, flags | DSP_WINDOW_NO_ROTATE), 0);
    const int grown = hooks.counts().total();
    const auto a = mode_coefficients(raw_cosine(DSP_WINDOW_HANN), flags & DSP_WINDOW_SCALE_MASK);
    EXPECT_TRUE(close_to(s.values(), cosine_window(a, n, n), 1e-13L)) << n;
    return grown;
}

TEST(WindowCache, RepeatedWindowsAllocateNothing)
{
    ASSERT_EQ(dsp_free_internal(), 0);
    ScopedAllocHooks hooks;
    EXPECT_EQ(growths_for(hooks, 1024), 1);
    EXPECT_EQ(growths_for(hooks, 1024), 0);
    // Rotation flags do not change the window; the scaling mode does.
    EXPECT_EQ(growths_for(hooks, 1024, DSP_WINDOW_NO_ROTATE), 0);
    EXPECT_EQ(growths_for(hooks, 1024, DSP_WINDOW_SCALE_POWER), 1);
    EXPECT_EQ(growths_for(hooks, 1024, DSP_WINDOW_SCALE_POWER), 0);

    // Own lengths match within the tolerant comparison.
    Record s(std::vector<double>(512, 1.0));
    ASSERT_EQ(dspi_window2(s.get(), DSP_WINDOW_HAMMING, DSP_WINDOW_OWN_LENGTH, 300.0), 0);
    hooks.reset_counts();
    ASSERT_EQ(dspi_window2(s.get(), DSP_WINDOW_HAMMING, DSP_WINDOW_OWN_LENGTH, 300.0 * (1 + 2e-15)), 0);
    EXPECT_EQ(hooks.counts().total(), 0);
    ASSERT_EQ(dspi_window2(s.get(), DSP_WINDOW_HAMMING, DSP_WINDOW_OWN_LENGTH, 300.5), 0);
    EXPECT_EQ(hooks.counts().total(), 1);
    EXPECT_EQ(dsp_free_internal(), 0);
}

TEST(WindowCache, SixteenSlotsReplacedRoundRobin)
{
    ASSERT_EQ(dsp_free_internal(), 0);
    ScopedAllocHooks hooks;
    // Slot i holds 100 - i points, so a later window built into a slot of a
    // shorter one has to grow it.
    for (int i = 0; i < 16; ++i) EXPECT_EQ(growths_for(hooks, 100 - i), 1) << i;
    for (int i = 0; i < 16; ++i) EXPECT_EQ(growths_for(hooks, 100 - i), 0) << i;
    // The 17th distinct window replaces the first one.
    EXPECT_EQ(growths_for(hooks, 200), 1);
    EXPECT_EQ(growths_for(hooks, 100), 1);  // rebuilt into the next slot
    for (int i = 2; i < 16; ++i) EXPECT_EQ(growths_for(hooks, 100 - i), 0) << i;

    // Replacement continues after the slot used last, a hit included.
    ASSERT_EQ(dsp_free_internal(), 0);
    for (int i = 0; i < 16; ++i) growths_for(hooks, 100 - i);
    EXPECT_EQ(growths_for(hooks, 95), 0);   // slot 5
    EXPECT_EQ(growths_for(hooks, 300), 1);  // replaces slot 6 (94 points)
    EXPECT_EQ(growths_for(hooks, 94), 1);   // rebuilt into slot 7
    EXPECT_EQ(growths_for(hooks, 92), 0);
    EXPECT_EQ(growths_for(hooks, 100), 0);

    // A replacement whose build fails leaves the slot empty, not holding the
    // window it had before under the new key.
    Record s(std::vector<double>(400, 1.0));
    hooks.fail_from(0);
    EXPECT_EQ(dspi_window(s.get(), DSP_WINDOW_HANN, 0), -1);
    hooks.never_fail();
    EXPECT_EQ(growths_for(hooks, 400), 1);
    EXPECT_EQ(dsp_free_internal(), 0);
}

TEST(WindowCache, FreeInternalReleasesAndLaterCallsRebuild)
{
    ASSERT_EQ(dsp_free_internal(), 0);
    ScopedAllocHooks hooks;
    EXPECT_EQ(growths_for(hooks, 256), 1);
    EXPECT_EQ(growths_for(hooks, 128), 1);
    hooks.reset_counts();
    EXPECT_EQ(dsp_free_internal(), 0);
    EXPECT_EQ(hooks.counts().frees, 2);
    EXPECT_EQ(dsp_free_internal(), 0);
    EXPECT_EQ(growths_for(hooks, 256), 1);
    EXPECT_EQ(growths_for(hooks, 256), 0);
    EXPECT_EQ(dsp_free_internal(), 0);
}

TEST(WindowCache, FailedBuildsLeaveSignalAndNoEntry)
{
    ASSERT_EQ(dsp_free_internal(), 0);
    ScopedAllocHooks hooks;
    const std::vector<double> x = {1, 2, 3, 4, 5, 6, 7, 8};
    for (int mode : {DSP_WINDOW_SCALE_AMPLITUDE, DSP_WINDOW_SCALE_POWER}) {
        const Values w = cosine_window(mode_coefficients(raw_cosine(DSP_WINDOW_BLACKMAN), mode), 8, 8);
        Values want;
        for (std::size_t i = 0; i < 8; ++i) want.push_back(x[i] * w[i]);
        // The slot a failed build took holds no window: the next call with
        // the same key builds it again instead of using it.
        const int failures = dsp_test::for_each_failing_growth(hooks, [&](int k) {
            hooks.never_fail();
            Record s(x);
            hooks.fail_from(k);
            const int status = dspi_window(s.get(), DSP_WINDOW_BLACKMAN, mode | DSP_WINDOW_NO_ROTATE);
            if (status != 0) {
                EXPECT_EQ(s.values(), x);
            } else {
                EXPECT_TRUE(close_to(s.values(), want, 1e-13L));
            }
            return status == 0;
        });
        EXPECT_EQ(failures, 1);
    }
    EXPECT_EQ(dsp_free_internal(), 0);
}

}  // namespace
