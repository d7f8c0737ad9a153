// The window cache, observed through the allocator hooks: a cached window is
// reused without allocating; a window that must be built into a slot grows
// that slot's record.
#include "window/reference.hpp"

namespace {

using namespace window_test;
using dsp_test::Record;
using dsp_test::ScopedAllocHooks;

// Windows n ones (with a Hann window unless told), checks the result and
// reports the growths it caused.
int growths_for(ScopedAllocHooks &hooks, int n, int flags = 0, int type = DSP_WINDOW_HANN, double length = 0.0)
{
    Record s(std::vector<double>(static_cast<std::size_t>(n), 1.0));
    hooks.reset_counts();
    EXPECT_EQ(dspi_window2(s.get(), type, flags | DSP_WINDOW_NO_ROTATE, length), 0);
    const int grown = hooks.counts().total();
    const auto a = mode_coefficients(raw_cosine(type), flags & DSP_WINDOW_SCALE_MASK);
    EXPECT_TRUE(close_to(s.values(), own_length_cosine(a, n, flags & DSP_WINDOW_OWN_LENGTH ? length : n), 1e-13L)) << n;
    return grown;
}

TEST(WindowCache, RepeatedWindowsAllocateNothingUntilReleased)
{
    ASSERT_EQ(dsp_free_internal(), 0);
    ScopedAllocHooks hooks;
    EXPECT_EQ(growths_for(hooks, 1024), 1);
    EXPECT_EQ(growths_for(hooks, 1024), 0);
    // Rotation flags do not change the window, nor does the length argument
    // without an own length; the scaling mode does.
    Record rotated(std::vector<double>(1024, 1.0));
    hooks.reset_counts();
    EXPECT_EQ(dspi_window(rotated.get(), DSP_WINDOW_HANN, 0), 0);
    EXPECT_EQ(dspi_window2(rotated.get(), DSP_WINDOW_HANN, DSP_WINDOW_ROTATE_UNIFORM, 123.0), 0);
    EXPECT_EQ(hooks.counts().total(), 0);
    EXPECT_EQ(growths_for(hooks, 1024, DSP_WINDOW_SCALE_POWER), 1);
    EXPECT_EQ(growths_for(hooks, 1024, DSP_WINDOW_SCALE_POWER), 0);
    // Own lengths match within the tolerant comparison.
    const int own = DSP_WINDOW_OWN_LENGTH;
    EXPECT_EQ(growths_for(hooks, 512, own, DSP_WINDOW_HAMMING, 600.0), 1);
    EXPECT_EQ(growths_for(hooks, 512, own, DSP_WINDOW_HAMMING, 600.0 * (1 + 2e-15)), 0);
    EXPECT_EQ(growths_for(hooks, 512, own, DSP_WINDOW_HAMMING, 600.5), 1);
    // dsp_free_internal releases the four windows; a later call rebuilds.
    hooks.reset_counts();
    EXPECT_EQ(dsp_free_internal(), 0);
    EXPECT_EQ(hooks.counts().frees, 4);
    EXPECT_EQ(dsp_free_internal(), 0);
    EXPECT_EQ(growths_for(hooks, 1024), 1);
    EXPECT_EQ(growths_for(hooks, 1024), 0);
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
    // A shorter window replacing slot 1 (99 points) reuses its storage.
    EXPECT_EQ(growths_for(hooks, 60), 0);

    // A replacement whose build fails, for storage or a refused shape, leaves
    // the signal unchanged and the slot empty, not holding its old window
    // under the new key: the next call builds the window again.
    const Values hann = cosine_window(mode_coefficients(raw_cosine(DSP_WINDOW_HANN), 0), 400, 400);
    EXPECT_EQ(failures_leaving_signal(std::vector<double>(400, 1.0), [&](dsp *s) {
                  const int status = dspi_window(s, DSP_WINDOW_HANN, DSP_WINDOW_NO_ROTATE);
                  EXPECT_TRUE(status != 0 || close_to(std::vector<double>(s->data, s->data + 400), hann, 1e-13L));
                  return status;
              }),
              1);
    Record s(std::vector<double>(400, 1.0));
    for (int attempt = 0; attempt < 2; ++attempt) EXPECT_EQ(dspi_window(s.get(), DSP_WINDOW_HANN, DSP_WINDOW_SYMMETRIC), -1);
    EXPECT_EQ(dsp_free_internal(), 0);
}

}  // namespace
