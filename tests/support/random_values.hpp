// Reproducible pseudo-random test data.
#pragma once

#include <cstddef>
#include <random>
#include <vector>

namespace dsp_test {

// n values drawn uniformly from [-range, range) by a seeded generator.
inline std::vector<double> uniform_values(std::size_t n, unsigned seed, double range)
{
    std::mt19937 gen(seed);
    std::uniform_real_distribution<double> dist(-range, range);
    std::vector<double> v(n);
    for (double &x : v) x = dist(gen);
    return v;
}

}  // namespace dsp_test
