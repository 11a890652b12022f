// What passes over a sample tell before it is sorted.
#ifndef WQ_STAT_DETAIL_SAMPLE_SCAN_H
#define WQ_STAT_DETAIL_SAMPLE_SCAN_H

#include "prefetch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace wq_lib::detail {

struct Extremes {
    double smallest;
    double largest;
};

/** @param values numbers, at least one. */
inline Extremes extremesOf(const double* values, std::size_t n)
{
    // Four chains of comparisons side by side, since each waits for the latency of the one before it.
    constexpr std::size_t chains = 4;
    double low[chains];
    double high[chains];
    std::fill_n(low, chains, values[0]);
    std::fill_n(high, chains, values[0]);
    const auto take = [&](std::size_t chain, double value) {
        low[chain] = value < low[chain] ? value : low[chain];
        high[chain] = value > high[chain] ? value : high[chain];
    };
    std::size_t i = 0;
    for (; i + chains <= n; i += chains) {
        prefetch(values + i, values + n);
        for (std::size_t chain = 0; chain < chains; ++chain) take(chain, values[i + chain]);
    }
    for (; i < n; ++i) take(0, values[i]);
    return {*std::min_element(low, low + chains), *std::max_element(high, high + chains)};
}

/**
 * Whether there are values whose order a comparison does not tell: NaN, and zeros with a sign. The borrow of a subtraction, which reaches
 * the sign bit, compares the magnitudes (Warren 2013, Hacker's Delight, 2-12), so that baseline vectors can do it too.
 */
inline bool hasNanOrNegativeZero(const double* values, std::size_t n)
{
    constexpr std::uint64_t sign = std::uint64_t{1} << 63;
    constexpr std::uint64_t infinity = std::uint64_t{0x7FF} << 52;
    std::uint64_t found = 0;
    for (std::size_t i = 0; i < n; ++i) {
        std::uint64_t bits;
        std::memcpy(&bits, &values[i], sizeof bits);
        const std::uint64_t magnitude = bits & ~sign;
        found |= bits & (magnitude - 1);
        found |= infinity - magnitude;
    }
    return (found & sign) != 0;
}

/** @return how many of the first values ascend. */
inline std::size_t ascendingCount(const double* values, std::size_t n)
{
    std::size_t i = 1;
    while (i < n && values[i - 1] <= values[i]) ++i;
    return std::min(i, n);
}

/** Whether each value is less than the one before it. */
inline bool isStrictlyDescending(const double* values, std::size_t n)
{
    for (std::size_t i = 1; i < n; ++i)
        if (!(values[i - 1] > values[i])) return false;
    return true;
}

}  // namespace wq_lib::detail

#endif
