// The two passes over (x, y) that every paired analysis makes, the transformation as a parameter.
#ifndef WQ_STAT_SRC_PAIRED_PASSES_H
#define WQ_STAT_SRC_PAIRED_PASSES_H

#include "sample_extremes.h"
#include "stored_range.h"

#include <wq_stat/basic_xy_stat.h>
#include <wq_stat/distributions.h>

#include <cmath>
#include <cstddef>

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

/**
 * Fills count, extremes (of the values as they are), sums, means, sums of squares and products, and variances of a freshly reset
 * record; not the covariance. Every pair is read through the sample's getDataPair. The first pass leaves out the pairs that the
 * transformation does not keep; the second takes all of them in, so that a value without a logarithm shows in the sums of squares.
 */
template <typename Transformation>
void pairedPasses(BasicXyStatistics& sample, StoredRange range, xy_stat& result)
{
    for (std::size_t i = range.begin; i < range.end; ++i) {
        const data_pair pair = sample.getDataPair(i);
        if (!Transformation::keeps(pair)) continue;
        ++result.x.n;
        extendExtremes(result.x, pair.x);
        extendExtremes(result.y, pair.y);
        result.x.sum += Transformation::x(pair);
        result.y.sum += Transformation::y(pair);
    }
    const double n = static_cast<double>(result.x.n);
    result.x.mean = result.x.sum / n;
    result.y.mean = result.y.sum / n;

    for (std::size_t i = range.begin; i < range.end; ++i) {
        const data_pair pair = sample.getDataPair(i);
        const double dx = Transformation::x(pair) - result.x.mean;
        const double dy = Transformation::y(pair) - result.y.mean;
        result.x.sumOfSquares += sqr(dx);
        result.y.sumOfSquares += sqr(dy);
        result.sumProducts += dx * dy;
    }
    result.x.variance = result.x.sumOfSquares / n;
    result.x.sampleVariance = result.x.sumOfSquares / (n - 1.0);
    result.y.variance = result.y.sumOfSquares / n;
    result.y.sampleVariance = result.y.sumOfSquares / (n - 1.0);
}

}  // namespace wq_lib::detail

#endif
