// Searches for the extremes of a trace. The maximum replaces its candidate
// only on a strictly greater element, so the first of equal maxima wins and
// NaN never does. The minimum replaces its candidate on any element that is
// not >= it, so a NaN is taken, and the element after a NaN candidate takes
// its place: a NaN never sticks as the reported minimum unless it comes last.
#include "libdsp_vna.h"

#include <algorithm>
#include <cfloat>
#include <cstdint>

namespace {

struct Candidate {
    double value;
    int32_t index;
};

void scan_max(const double *buf, int32_t from, int32_t to, Candidate &best)
{
    for (int32_t i = from; i < to; ++i)
        if (buf[i] > best.value) best = {buf[i], i};
}

void scan_min(const double *buf, int32_t from, int32_t to, Candidate &best)
{
    for (int32_t i = from; i < to; ++i)
        if (!(buf[i] >= best.value)) best = {buf[i], i};
}

bool at_most_one(int32_t start, int32_t stop) { return static_cast<int64_t>(start) + 1 >= stop; }

// Search of [start, stop) without [exclStart, exclStop) using one of the
// scans above. The buffer is read only inside [start, stop).
template <typename Scan>
int32_t find_outside(const double *buf, int32_t start, int32_t stop, int32_t exclStart,
                     int32_t exclStop, Scan scan)
{
    int32_t first = start;
    if (start >= exclStart && start < exclStop) {
        if (exclStop >= stop) return -1;
        first = exclStop;
    }
    if (first >= stop) return first;
    Candidate best{buf[first], first};
    if (exclStart >= exclStop) {
        scan(buf, first + 1, stop, best);
    } else {
        scan(buf, first + 1, std::min(stop, exclStart), best);
        scan(buf, std::max(first + 1, exclStop), stop, best);
    }
    return best.index;
}

}  // namespace

int32_t vfpd_FindMax(const double *buf, int32_t start, int32_t stop)
{
    if (at_most_one(start, stop)) return start;
    Candidate best{buf[start], start};
    scan_max(buf, start + 1, stop, best);
    return best.index;
}

// buf[start] is deliberately left out: the candidate starts at the largest
// finite double instead, so start is reported only when nothing after it is
// smaller than that.
int32_t vfpd_FindMin(const double *buf, int32_t start, int32_t stop)
{
    if (at_most_one(start, stop)) return start;
    Candidate best{DBL_MAX, start};
    scan_min(buf, start + 1, stop, best);
    return best.index;
}

int32_t vfpd_FindMax2(const double *buf, int32_t start, int32_t stop, int32_t exclStart,
                      int32_t exclStop)
{
    return find_outside(buf, start, stop, exclStart, exclStop, scan_max);
}

int32_t vfpd_FindMin2(const double *buf, int32_t start, int32_t stop, int32_t exclStart,
                      int32_t exclStop)
{
    return find_outside(buf, start, stop, exclStart, exclStop, scan_min);
}

int32_t vfpd_FindMinMax(const double *buf, int32_t start, int32_t stop, int32_t *maxIndex,
                        int32_t *minIndex)
{
    if (start > stop || maxIndex == nullptr || minIndex == nullptr || buf == nullptr) return 0;
    *maxIndex = start;
    *minIndex = start;
    if (at_most_one(start, stop)) return 1;
    Candidate max{buf[start], start};
    Candidate min = max;
    for (int32_t i = start + 1; i < stop; ++i) {
        if (!(buf[i] >= min.value))
            min = {buf[i], i};
        else if (buf[i] > max.value)
            max = {buf[i], i};
    }
    *maxIndex = max.index;
    *minIndex = min.index;
    return 1;
}
