// A dsp record owned by a test: initialised on construction, destroyed on
// scope exit, filled from and read back into std::vector.
#pragma once

#include "libdsp.h"

#include <cmath>
#include <cstddef>
#include <new>
#include <vector>

namespace dsp_test {

class Record {
public:
    Record() { dsp_init(&r_); }
    // Real record from values, or complex from interleaved (re, im) pairs.
    explicit Record(const std::vector<double> &values, bool complex_flag = false, double delta = 1.0)
    {
        dsp_init(&r_);
        assign(values, complex_flag, delta);
    }
    ~Record() { dsp_destroy(&r_); }
    Record(const Record &) = delete;
    Record &operator=(const Record &) = delete;

    void assign(const std::vector<double> &values, bool complex_flag = false, double delta = 1.0)
    {
        r_.complex = complex_flag ? 1 : 0;
        r_.points = static_cast<int32_t>(complex_flag ? values.size() / 2 : values.size());
        r_.delta = delta;
        // A test building its inputs while failures are armed is itself wrong.
        if (dsp_alloc(&r_) != 0) throw std::bad_alloc();
        for (std::size_t i = 0; i < values.size(); ++i) r_.data[i] = values[i];
    }

    // All doubles the record's shape covers, in storage order.
    std::vector<double> values() const
    {
        std::size_t n = static_cast<std::size_t>(r_.points > 0 ? r_.points : 0) * (r_.complex ? 2 : 1);
        return r_.data ? std::vector<double>(r_.data, r_.data + n) : std::vector<double>();
    }

    dsp *get() { return &r_; }
    const dsp *get() const { return &r_; }
    dsp *operator->() { return &r_; }
    const dsp *operator->() const { return &r_; }

private:
    dsp r_;
};

// A record on caller-attached storage (allocated 0): the library may read it
// but must never write, grow in place or free it.
inline dsp attached_record(double *data, int32_t points, int32_t complex_flag = 0)
{
    dsp s;
    dsp_init(&s);
    s.data = data;
    s.points = points;
    s.complex = complex_flag;
    return s;
}

// Exact equality of two value lists, a NaN matching only a NaN; use with
// EXPECT_PRED2 so that both lists are printed on failure.
inline bool same_values(const std::vector<double> &got, const std::vector<double> &want)
{
    if (got.size() != want.size()) return false;
    for (std::size_t i = 0; i < got.size(); ++i)
        if (!(got[i] == want[i] || (std::isnan(got[i]) && std::isnan(want[i])))) return false;
    return true;
}

}  // namespace dsp_test
