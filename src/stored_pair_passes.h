// The two passes over stored pairs as they are: x and y of a pair side by side in one vector.
#ifndef WQ_STAT_SRC_STORED_PAIR_PASSES_H
#define WQ_STAT_SRC_STORED_PAIR_PASSES_H

#include "read_ahead.h"
#include "stored_range.h"

#include <wq_stat/basic_xy_stat.h>

#include <cstddef>
#include <cstring>

#ifdef __GNUC__  // Clang too: vectors of a fixed size, as an extension of the language, for every processor
#  define WQ_STORED_PAIR_PASSES

namespace wq_lib::detail {

using XandY = double __attribute__((vector_size(2 * sizeof(double))));
static_assert(sizeof(XandY) == sizeof(data_pair));
constexpr std::size_t pairsOfALine = 64 / sizeof(data_pair);  // of the cache

inline XandY bothOf(const data_pair& pair)
{
    XandY both;
    std::memcpy(&both, &pair, sizeof both);
    return both;
}

/** Of two equal values the one that comes first in the data: 0 and -0 are equal. */
inline double firstOfEqual(const data_pair* pairs, StoredRange range, double data_pair::*member, double value)
{
    for (std::size_t i = range.begin; i < range.end; ++i)
        if (pairs[i].*member == value) return pairs[i].*member;
    return value;
}

/** Adds count, extremes and sums to those of a freshly reset record, in the order of the pairs. */
inline void sumStoredPairs(const data_pair* pairs, StoredRange range, xy_stat& result)
{
    // The extremes of every other pair, since a comparison takes longer than an addition.
    XandY low[2] = {{result.x.min, result.y.min}, {result.x.min, result.y.min}};
    XandY high[2] = {{result.x.max, result.y.max}, {result.x.max, result.y.max}};
    XandY sum = {result.x.sum, result.y.sum};
    const auto take = [&](XandY value, std::size_t chain) {
        low[chain] = value < low[chain] ? value : low[chain];
        high[chain] = high[chain] < value ? value : high[chain];
        sum += value;
    };
    std::size_t i = range.begin;
    for (; range.end - i >= pairsOfALine; i += pairsOfALine) {
        readAhead(pairs + i, pairs + range.end);
        for (std::size_t k = 0; k < pairsOfALine; ++k) take(bothOf(pairs[i + k]), k % 2);
    }
    for (; i < range.end; ++i) take(bothOf(pairs[i]), 0);

    low[0] = low[1] < low[0] ? low[1] : low[0];
    high[0] = high[0] < high[1] ? high[1] : high[0];
    result.x.n += range.end - range.begin;
    result.x.sum = sum[0];
    result.y.sum = sum[1];
    result.x.min = low[0][0] == 0.0 ? firstOfEqual(pairs, range, &data_pair::x, 0.0) : low[0][0];
    result.y.min = low[0][1] == 0.0 ? firstOfEqual(pairs, range, &data_pair::y, 0.0) : low[0][1];
    result.x.max = high[0][0];  // never a zero: it starts above
    result.y.max = high[0][1];
}

/** Adds the sums of squares and products of the deviations from the means of the record. */
inline void sumStoredSquares(const data_pair* pairs, StoredRange range, xy_stat& result)
{
    const XandY mean = {result.x.mean, result.y.mean};
    XandY squares = {result.x.sumOfSquares, result.y.sumOfSquares};
    double products = result.sumProducts;
    const auto take = [&](XandY value) {
        const XandY deviation = value - mean;
        squares += deviation * deviation;
        products += deviation[0] * deviation[1];
    };
    std::size_t i = range.begin;
    for (; range.end - i >= pairsOfALine; i += pairsOfALine) {
        readAhead(pairs + i, pairs + range.end);
        for (std::size_t k = 0; k < pairsOfALine; ++k) take(bothOf(pairs[i + k]));
    }
    for (; i < range.end; ++i) take(bothOf(pairs[i]));
    result.x.sumOfSquares = squares[0];
    result.y.sumOfSquares = squares[1];
    result.sumProducts = products;
}

}  // namespace wq_lib::detail

#endif

#endif
