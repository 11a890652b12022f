// Sorts doubles by their bits.
#ifndef WQ_STAT_DETAIL_RADIX_SORT_H
#define WQ_STAT_DETAIL_RADIX_SORT_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace wq_lib::detail {

constexpr std::size_t radixDigitBits = 11;
constexpr std::size_t radixDigitCount = (64 + radixDigitBits - 1) / radixDigitBits;
constexpr std::size_t radixDigitValues = std::size_t{1} << radixDigitBits;

/** How often each value of each digit occurs. */
using RadixCounts = std::array<std::array<std::uint32_t, radixDigitValues>, radixDigitCount>;

/**
 * Least significant digit radix sort: the same time for every distribution.
 * @param values numbers, sorted in place.
 * @param scratch room for n more.
 * @param n at most 2^32 - 1.
 */
void radixSort(double* values, double* scratch, std::size_t n, RadixCounts& counts);

/** Counts to starting places. @return the largest count. */
std::uint32_t countsToStarts(std::uint32_t* counts, std::size_t n);

}  // namespace wq_lib::detail

#endif
