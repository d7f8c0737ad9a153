// The table caches: contents, sizes, reuse, release and failure to grow.
#include "spectral/fft_engine.hpp"
#include "spectral/fft_tables.hpp"
#include "spectral/kernels.hpp"
#include "support/alloc_hooks.hpp"
#include "support/dft_oracle.hpp"
#include "support/random_values.hpp"
#include "support/record.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <vector>

using dsp_spectral::KernelPath;
using dsp_spectral::TableAllocator;
using dsp_test::Record;
using V = std::vector<double>;

namespace {

// Table allocations seen through the cache's allocator, with the k-th and
// later ones made to fail on request.
struct TableTally {
    std::vector<std::size_t> sizes;  // bytes of every allocate/reallocate call
    int fail_from = -1;
};
TableTally tally;

bool table_call_fails(std::size_t bytes)
{
    const bool fail = tally.fail_from >= 0 && static_cast<int>(tally.sizes.size()) >= tally.fail_from;
    tally.sizes.push_back(bytes);
    return fail;
}

void *counting_allocate(std::size_t bytes) { return table_call_fails(bytes) ? nullptr : std::malloc(bytes); }
void *counting_reallocate(void *block, std::size_t bytes)
{
    return table_call_fails(bytes) ? nullptr : std::realloc(block, bytes);
}

// Starts from empty caches and counts table allocations for its lifetime.
class CountedTables {
public:
    CountedTables()
    {
        EXPECT_EQ(dsp_free_internal(), 0);
        tally = TableTally{};
        saved_ = dsp_spectral::set_table_allocator(TableAllocator{counting_allocate, counting_reallocate});
    }
    ~CountedTables() { dsp_spectral::set_table_allocator(saved_); }
    std::size_t calls() const { return tally.sizes.size(); }
    bool saw(std::size_t bytes) const { return std::count(tally.sizes.begin(), tally.sizes.end(), bytes) > 0; }

private:
    TableAllocator saved_{};
};

}  // namespace

TEST(FftTables, BitReversalListsCoverEveryIndexOnceAndDriveBothPermutations)
{
    for (int bits = 0; bits <= 13; ++bits) {
        SCOPED_TRACE(bits);
        CountedTables counted;
        dsp_spectral::BitrevTables t;
        ASSERT_TRUE(dsp_spectral::bitrev_tables(bits, t));
        const int n = 1 << bits;
        // Allocated sizes: 2^m words of pairs, 2^floor(m/2) + 1 pairs of words of fixed points.
        EXPECT_TRUE(counted.saw(sizeof(int32_t) * n));
        EXPECT_TRUE(counted.saw(sizeof(int32_t) * 2 * ((1 << (bits / 2)) + 1)));
        std::vector<int> seen(n, 0);
        int words = 0;
        for (const int32_t *p = t.swaps; *p != 0; p += 2, words += 2) {
            ASSERT_LT(p[0], n);
            ASSERT_LT(p[1], n);
            EXPECT_NE(p[0], p[1]);
            EXPECT_EQ(p[1], dsp_test::bit_reversed(p[0], bits));
            ++seen[p[0]];
            ++seen[p[1]];
        }
        EXPECT_LT(words, n);  // the terminating word fits too
        for (const int32_t *f = t.fixed; *f != dsp_spectral::kFixedEnd; ++f) {
            ASSERT_LT(*f, n);
            EXPECT_EQ(*f, dsp_test::bit_reversed(*f, bits));
            ++seen[*f];
        }
        for (int i = 0; i < n; ++i) EXPECT_EQ(seen[i], 1) << "index " << i;
        // The permutation of every path agrees with the portable twin (the
        // AVX2 one moves whole tiles of rows: one tile from 2^4, twins from
        // 2^5, rows 4 KiB apart from 2^12).
        const V x = dsp_test::uniform_values(2 * static_cast<std::size_t>(n), 11, 1.0);
        V b = x, d = x;
        dsp_spectral::bit_reverse_portable(b.data(), 2, t);
        dsp_spectral::bit_reverse_scaled_portable(d.data(), 2, t, 0.1);
        if (bits >= 2) {
            EXPECT_NE(b, x);
        }
        const KernelPath saved = dsp_spectral::active_kernel_path();
        for (KernelPath path : {KernelPath::portable, KernelPath::sse2, KernelPath::avx2}) {
            if (!dsp_spectral::select_kernel_path(path)) continue;
            SCOPED_TRACE(testing::Message() << "path " << static_cast<int>(path));
            V a = x, c = x;
            dsp_spectral::bit_reverse(a.data(), 2, t);
            dsp_spectral::bit_reverse_scaled(c.data(), 2, t, 0.1);
            EXPECT_EQ(a, b);
            EXPECT_EQ(c, d);
        }
        dsp_spectral::select_kernel_path(saved);
    }
}

TEST(FftTables, TwiddleTripletsHoldTheThreeMultiplicationForm)
{
    for (int bits = 2; bits <= 14; ++bits) {
        SCOPED_TRACE(bits);
        CountedTables counted;
        const int32_t n = 1 << bits;
        const double *table = dsp_spectral::twiddle_table(n);
        ASSERT_NE(table, nullptr);
        EXPECT_TRUE(counted.saw(sizeof(double) * 3 * n / 2));
        const dsp_spectral::Twiddles tw = dsp_spectral::twiddle_view(table, n);
        for (int32_t k = 0; k < n / 4; ++k) {
            for (int power : {1, 3}) {
                const long double angle = 6.283185307179586476925286766559L * power * k / n;
                const double c = static_cast<double>(std::cos(angle));
                const double s = static_cast<double>(std::sin(angle));
                const double *cos_part = power == 1 ? tw.cos1 : tw.cos3;
                const double *pair = power == 1 ? tw.pairs1 : tw.pairs3;
                EXPECT_NEAR(cos_part[k], c, 8 * DBL_EPSILON) << "k=" << k << " power " << power;
                EXPECT_NEAR(pair[2 * k], s - c, 16 * DBL_EPSILON);
                EXPECT_NEAR(pair[2 * k + 1], -(c + s), 16 * DBL_EPSILON);
            }
        }
        EXPECT_EQ(tw.cos1[0], 1.0);
        EXPECT_EQ(tw.pairs1[0], -1.0);
        EXPECT_EQ(tw.pairs3[1], -1.0);
        if (n > 4) {
            EXPECT_EQ(tw.cos1[n / 8], 0.7071067811865476);
            EXPECT_EQ(tw.pairs1[n / 4], 0.0);
            EXPECT_EQ(tw.pairs1[n / 4 + 1], -1.4142135623730951);
        }
    }
}

TEST(FftTables, RepeatedTransformsAllocateNothing)
{
    CountedTables counted;
    dsp_test::ScopedAllocHooks hooks;
    const V x = dsp_test::uniform_values(2 * 256, 2, 1.0), real(x.begin(), x.begin() + 256);
    Record s(x, true), r(real);
    ASSERT_EQ(dspi_fft(s.get(), 0), 0);
    ASSERT_EQ(dspi_rfft(r.get()), 0);
    const std::size_t tables_after_first = counted.calls();
    EXPECT_GT(tables_after_first, 0u);
    hooks.reset_counts();
    ASSERT_EQ(dspi_fft(s.get(), 0), 0);
    ASSERT_EQ(dspi_fft(s.get(), 1), 0);
    ASSERT_EQ(dspi_bitrev(s.get()), 0);
    EXPECT_EQ(hooks.counts().total(), 0);
    // A real signal grows once, by the Nyquist point, and no more.
    Record again(real);
    hooks.reset_counts();
    ASSERT_EQ(dspi_rfft(again.get()), 0);
    EXPECT_EQ(hooks.counts().total(), 1);
    EXPECT_EQ(counted.calls(), tables_after_first);
}

TEST(FftTables, ReleaseEmptiesAllThreeCachesAndTheNextTransformRebuildsThem)
{
    CountedTables counted;
    const V x = dsp_test::uniform_values(2 * 64, 4, 1.0);
    Record first(x, true);
    ASSERT_EQ(dspi_fft(first.get(), 0), 0);
    const std::size_t built = counted.calls();
    ASSERT_EQ(dsp_free_internal(), 0);
    ASSERT_EQ(dsp_free_internal(), 0);  // a second release finds nothing to do
    Record second(x, true);
    ASSERT_EQ(dspi_fft(second.get(), 0), 0);
    EXPECT_EQ(second.values(), first.values());
    EXPECT_EQ(counted.calls(), 2 * built);  // swap pairs, fixed points and twiddles again
}

TEST(FftTables, CacheOrSignalThatCannotGrowFailsCleanlyAndIsBuiltLater)
{
    const V x = dsp_test::uniform_values(2 * 128, 6, 1.0), real(x.begin(), x.begin() + 128);
    Record reference(x, true);
    ASSERT_EQ(dspi_fft(reference.get(), 0), 0);
    std::size_t needed = 0;
    {
        CountedTables counted;
        Record s(x, true);
        ASSERT_EQ(dspi_fft(s.get(), 0), 0);
        needed = counted.calls();
    }
    // Tables are built before the signal changes: a real signal stays real.
    for (std::size_t k = 0; k < needed; ++k) {
        SCOPED_TRACE(k);
        CountedTables counted;
        tally.fail_from = static_cast<int>(k);
        Record s(x, true, 0.5), r(real, false, 0.5), rc(real, false, 0.5);
        EXPECT_EQ(dspi_fft(s.get(), 0), -1);
        EXPECT_EQ(s.values(), x);
        EXPECT_EQ(s->delta, 0.5);
        EXPECT_EQ(dspi_rfft(r.get()), -1);
        EXPECT_EQ(dspi_fft(rc.get(), 0), -1);
        for (Record *same : {&r, &rc}) {
            EXPECT_EQ((*same)->complex, 0);
            EXPECT_EQ(same->values(), real);
        }
        tally.fail_from = -1;
        ASSERT_EQ(dspi_fft(s.get(), 0), 0);
        EXPECT_EQ(s.values(), reference.values());
        ASSERT_EQ(dspi_rfft(r.get()), 0);
    }
    // The signal's own growth failing: the tables were complete, so a signal
    // with room transforms as usual afterwards.
    dsp_test::ScopedAllocHooks hooks;
    Record s(real), r(real), again(real);
    hooks.fail_from(0);
    EXPECT_EQ(dspi_fft(s.get(), 0), -1);
    EXPECT_EQ(dspi_rfft(r.get()), -1);
    hooks.never_fail();
    EXPECT_EQ(dspi_fft(again.get(), 0), 0);
}
