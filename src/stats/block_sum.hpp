// Block summation: long sums are formed in blocks of kSumBlock terms, each
// block summed from 0.0 on its own and then added to the running total, so
// that the rounding error grows with the number of blocks rather than with
// the number of terms.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace dsp_core {

constexpr std::size_t kSumBlock = 2048;

// K sums over the same terms in one pass: add_terms(i, acc) adds term i of
// each sum to acc[0..K-1], the current block's partial sums.
template <std::size_t K, typename AddTerms>
std::array<double, K> block_sums(std::size_t count, AddTerms add_terms)
{
    std::array<double, K> total{};
    for (std::size_t start = 0; start < count; start += kSumBlock) {
        const std::size_t end = std::min(count, start + kSumBlock);
        std::array<double, K> block{};
        for (std::size_t i = start; i < end; ++i) add_terms(i, block);
        for (std::size_t k = 0; k < K; ++k) total[k] += block[k];
    }
    return total;
}

// One block sum of term(i) for i = 0 .. count-1.
template <typename Term>
double block_sum(std::size_t count, Term term)
{
    return block_sums<1>(count, [&term](std::size_t i, std::array<double, 1> &acc) { acc[0] += term(i); })[0];
}

}  // namespace dsp_core
