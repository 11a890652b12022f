#include "radix_sort.h"

#include "prefetch.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace wq_lib::detail {

namespace {

/**
 * An integer that orders as the values do: the sign bit flipped for positive values, every bit for negative ones.
 * Source: Terdiman (2000), "Radix Sort Revisited"; Herf (2001), "Radix Tricks".
 */
std::uint64_t sortingKey(double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    constexpr std::uint64_t sign = std::uint64_t{1} << 63;
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

}  // namespace

std::uint32_t countsToStarts(std::uint32_t* counts, std::size_t n)
{
    std::uint32_t start = 0;
    std::uint32_t largest = 0;
    for (std::size_t i = 0; i < n; ++i) {
        largest = std::max(largest, counts[i]);
        start += std::exchange(counts[i], start);
    }
    return largest;
}

void radixSort(double* values, double* scratch, std::size_t n, RadixCounts& counts)
{
    constexpr std::uint64_t mask = radixDigitValues - 1;
    for (auto& ofDigit : counts) ofDigit.fill(0);
    for (std::size_t i = 0; i < n; ++i) {
        prefetch(values + i, values + n);
        std::uint64_t rest = sortingKey(values[i]);
        for (std::size_t digit = 0; digit < radixDigitCount; ++digit, rest >>= radixDigitBits) ++counts[digit][rest & mask];
    }
    double* from = values;
    double* to = scratch;
    for (std::size_t digit = 0; digit < radixDigitCount; ++digit) {
        const auto digitOf = [digit](double value) { return (sortingKey(value) >> (digit * radixDigitBits)) & mask; };
        std::uint32_t* const starts = counts[digit].data();
        if (starts[digitOf(from[0])] == n) continue;  // the same digit in every value
        countsToStarts(starts, radixDigitValues);
        for (std::size_t i = 0; i < n; ++i) {
            prefetch(from + i, from + n);
            to[starts[digitOf(from[i])]++] = from[i];
        }
        std::swap(from, to);
    }
    if (from != values) std::copy(from, from + n, values);
}

}  // namespace wq_lib::detail
