// Test data for the trace routines: awkward values and bit-exact comparison.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace trace_test {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

template <typename T>
uint64_t bits_of(T v)
{
    uint64_t b = 0;
    std::memcpy(&b, &v, sizeof v);
    return b;
}

// n values, mostly moderate, salted with NaN, infinities, huge values,
// subnormals and signed zeros at pseudo-random places.
template <typename T>
std::vector<T> awkward_values(std::size_t n, unsigned seed, T moderate_range)
{
    std::mt19937 rng(seed);
    std::uniform_real_distribution<T> moderate(-moderate_range, moderate_range);
    const T specials[] = {std::numeric_limits<T>::quiet_NaN(), std::numeric_limits<T>::infinity(),
                          -std::numeric_limits<T>::infinity(), std::numeric_limits<T>::max(),
                          -std::numeric_limits<T>::max(), std::numeric_limits<T>::denorm_min(),
                          T(0), -T(0)};
    std::vector<T> v(n);
    for (T &x : v) {
        unsigned pick = rng() % 16;
        x = pick < 8 ? specials[pick] : moderate(rng);
    }
    return v;
}

}  // namespace trace_test
