// The two passes over (x, y) that every paired analysis makes, the transformation as a parameter.
#ifndef WQ_STAT_DETAIL_PAIRED_PASSES_H
#define WQ_STAT_DETAIL_PAIRED_PASSES_H

#include "pair_source.h"
#include "sample_extremes.h"
#include "stored_range.h"

#include <wq_stat/basic_xy_stat.h>
#include <wq_stat/distributions.h>

#include <cmath>
#include <cstddef>
#include <vector>

namespace wq_lib::detail {

/** Pairs as they are. */
struct Untransformed {
    static bool keeps(const data_pair&) { return true; }
    static double x(const data_pair& pair) { return pair.x; }
    static double y(const data_pair& pair) { return pair.y; }
};

/** ln x; a NaN x is kept. */
struct LogarithmOfX {
    static bool keeps(const data_pair& pair) { return !(0.0 >= pair.x); }
    static double x(const data_pair& pair) { return std::log(pair.x); }
    static double y(const data_pair& pair) { return pair.y; }
};

/** ln y; a NaN y is left out. */
struct LogarithmOfY {
    static bool keeps(const data_pair& pair) { return pair.y > 0.0; }
    static double x(const data_pair& pair) { return pair.x; }
    static double y(const data_pair& pair) { return std::log(pair.y); }
};

/** ln x and ln y. */
struct LogarithmOfBoth {
    static bool keeps(const data_pair& pair) { return LogarithmOfX::keeps(pair) && LogarithmOfY::keeps(pair); }
    static double x(const data_pair& pair) { return LogarithmOfX::x(pair); }
    static double y(const data_pair& pair) { return LogarithmOfY::y(pair); }
};

/** The first pass: adds count, extremes (of the values as they are) and sums of the pairs that the transformation keeps. */
template <typename Transformation, typename Pairs>
void sumPairs(const Pairs& pairs, StoredRange range, xy_stat& result)
{
    xy_stat sums = result;  // a record in memory would make every addition wait for the one before it to be stored
    for (std::size_t i = range.begin; i < range.end; ++i) {
        const data_pair pair = pairs[i];
        if (!Transformation::keeps(pair)) continue;
        ++sums.x.n;
        extendExtremes(sums.x, pair.x);
        extendExtremes(sums.y, pair.y);
        sums.x.sum += Transformation::x(pair);
        sums.y.sum += Transformation::y(pair);
    }
    result = sums;
}

/** The second pass: adds sums of squares and products. It takes all pairs in, so that a value without a logarithm shows there. */
template <typename Transformation, typename Pairs>
void sumSquares(const Pairs& pairs, StoredRange range, xy_stat& result)
{
    xy_stat sums = result;
    for (std::size_t i = range.begin; i < range.end; ++i) {
        const data_pair pair = pairs[i];
        const double dx = Transformation::x(pair) - sums.x.mean;
        const double dy = Transformation::y(pair) - sums.y.mean;
        sums.x.sumOfSquares += sqr(dx);
        sums.y.sumOfSquares += sqr(dy);
        sums.sumProducts += dx * dy;
    }
    result = sums;
}

/** Fills count, extremes, sums, means, sums of squares and products, and variances of a freshly reset record; not the covariance. */
template <typename Transformation, typename Pairs>
void pairedPasses(const Pairs& pairs, StoredRange range, xy_stat& result)
{
    sumPairs<Transformation>(pairs, range, result);
    const double n = static_cast<double>(result.x.n);
    result.x.mean = result.x.sum / n;
    result.y.mean = result.y.sum / n;
    sumSquares<Transformation>(pairs, range, result);
    result.x.variance = result.x.sumOfSquares / n;
    result.x.sampleVariance = result.x.sumOfSquares / (n - 1.0);
    result.y.variance = result.y.sumOfSquares / n;
    result.y.sampleVariance = result.y.sumOfSquares / (n - 1.0);
}

/** The same for a sample: its stored pairs, or what an override of getDataPair makes of them. */
template <typename Transformation>
void pairedPasses(BasicXyStatistics& sample, const std::vector<data_pair>& stored, StoredRange range, xy_stat& result)
{
    withPairs(sample, stored, [&](const auto& pairs) { pairedPasses<Transformation>(pairs, range, result); });
}

}  // namespace wq_lib::detail

#endif
