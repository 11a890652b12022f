// The statistics of one sample and of pairs once more, straight from their definitions, over what an object holds after its analyse().
#pragma once

#include "target.h"

#include "support/same_bits.h"

#include <wq_stat/basic_stat.h>
#include <wq_stat/basic_xy_stat.h>
#include <wq_stat/distributions.h>

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <limits>

namespace wq_fuzz {

// Of a fraction of the sample: toward zero, NaN as 0, and what no count can be as the largest one.
inline std::size_t countOf(double value)
{
    if (std::isnan(value)) return 0;
    const double whole = std::trunc(value);
    if (whole < 0.0 || whole >= 18446744073709551616.0) return std::numeric_limits<std::size_t>::max();
    return static_cast<std::size_t>(whole);
}

inline wq_lib::basic_stat resetRecord()
{
    wq_lib::basic_stat s;
    s.min = DBL_MAX;
    s.max = DBL_MIN;
    return s;
}

inline double rootUnlessNothing(double square) { return square <= 0.0 ? std::numeric_limits<double>::quiet_NaN() : std::sqrt(square); }

inline void requireSame(const char* field, double found, double expected)
{
    require(wq_test::sameBits(found, expected), field, " ", found, " instead of ", expected);
}

inline void requireSameRange(const wq_lib::BasicStatistics& a, std::size_t start, std::size_t end)
{
    require(a.getDataStart() == start && a.getDataEnd() == end, "range ", a.getDataStart(), " ... ", a.getDataEnd(), " instead of ", start,
            " ... ", end);
}

struct Range {
    std::size_t start, end;
};

inline Range trimmed(const wq_lib::BasicStatistics& a)
{
    const std::size_t n = a.getSampleSize();
    const double size = static_cast<double>(n);
    return {countOf(std::ceil(a.getHead() * size)), n - countOf(a.getTail() * size) - 1};
}

// The p-th of q quantiles of n values from index start on; p and q are small whole numbers.
template <typename Analysis>
double quantileOf(const Analysis& a, std::size_t p, std::size_t q, std::size_t start, std::size_t n)
{
    const auto at = [&](std::size_t i) { return i < a.stored() ? a.getDataPoint(i) : std::numeric_limits<double>::quiet_NaN(); };
    const double low = at(start + p * n / q);
    if (2 * p != q || n % 2 != 0) return low;
    return (low + at(start + n - (q - p) * n / q - 1)) / 2.0;
}

// After analyse() of one sample that was not to be taken as sorted, or was not changed by that.
template <typename Analysis>
void requireAnalysed(const Analysis& a, bool returned)
{
    const std::size_t start = trimmed(a).start;
    std::size_t end = trimmed(a).end;
    if (end >= a.getSampleSize() && end > 1) end = a.getSampleSize() - 1;
    requireSameRange(a, start, end);
    const bool enough = a.stored() != 0 && end - start >= 2;
    require(returned == enough, "analyse() is ", returned);

    wq_lib::basic_stat s = resetRecord();
    double logarithms = 0.0, reciprocals = 0.0;
    std::size_t positive = 0, invertible = 0;
    const auto eachValue = [&](auto&& call) {
        for (std::size_t i = start; enough && i < a.stored() && i <= end; ++i) call(a.getDataPoint(i));
    };
    eachValue([&](double x) {
        ++s.n;
        if (x < s.min) s.min = x;
        if (s.max < x) s.max = x;
        s.sum += x;
    });
    const double n = static_cast<double>(s.n);
    if (enough) s.mean = s.sum / n;
    eachValue([&](double x) {
        s.sumOfSquares += (x - s.mean) * (x - s.mean);
        if (x > 0.0) {
            logarithms += std::log(x);
            ++positive;
        }
        require(!(x < 0.0) || a.isNegative(), "a negative value was not noticed");
        if (std::isfinite(1.0 / x)) {
            reciprocals += 1.0 / x;
            ++invertible;
        }
    });
    if (enough) {
        s.variance = s.sumOfSquares / n;
        s.sampleVariance = s.sumOfSquares / static_cast<double>(s.n - 1);  // of nothing 0: the count wraps
        s.stdev = rootUnlessNothing(s.variance);
        s.sampleStdev = rootUnlessNothing(s.sampleVariance);
        s.cv = s.sampleStdev > 0.0 ? s.sampleStdev / s.mean : 0.0;
        s.stdError = s.sampleVariance <= 0.0 ? std::numeric_limits<double>::quiet_NaN() : std::sqrt(s.sampleVariance / n);
        const double t = wq_lib::t_PercentPoint(a.getSignificance(), s.n - 1);
        s.confidenceLimits.setRange(s.mean - t * s.stdError, s.mean + t * s.stdError);
        s.geoMean = std::exp(logarithms * (1.0 / static_cast<double>(positive)));
        s.harmMean = static_cast<double>(invertible) / reciprocals;
        s.quartile1 = quantileOf(a, 1, 4, start, s.n);
        s.median = quantileOf(a, 1, 2, start, s.n);
        s.quartile3 = quantileOf(a, 3, 4, start, s.n);
        s.significance = a.getSignificance();
    }

    const wq_lib::basic_stat& r = a.getResult();
    require(r.n == s.n, "n ", r.n, " instead of ", s.n);
    requireSame("min", r.min, s.min);
    requireSame("max", r.max, s.max);
    requireSame("mean", r.mean, s.mean);
    requireSame("geoMean", r.geoMean, s.geoMean);
    requireSame("harmMean", r.harmMean, s.harmMean);
    requireSame("median", r.median, s.median);
    requireSame("quartile1", r.quartile1, s.quartile1);
    requireSame("quartile3", r.quartile3, s.quartile3);
    requireSame("sum", r.sum, s.sum);
    requireSame("variance", r.variance, s.variance);
    requireSame("sampleVariance", r.sampleVariance, s.sampleVariance);
    requireSame("stdev", r.stdev, s.stdev);
    requireSame("sampleStdev", r.sampleStdev, s.sampleStdev);
    requireSame("stdError", r.stdError, s.stdError);
    requireSame("cv", r.cv, s.cv);
    requireSame("sumOfSquares", r.sumOfSquares, s.sumOfSquares);
    if (enough) requireSame("significance", r.significance, s.significance);
    requireSame("lower limit", r.confidenceLimits.getLower(), s.confidenceLimits.getLower());
    requireSame("upper limit", r.confidenceLimits.getUpper(), s.confidenceLimits.getUpper());
}

// What a sort leaves: no value before a smaller one, and NaN behind all numbers.
template <typename Analysis>
void requireSorted(const Analysis& a)
{
    for (std::size_t i = 1; i < a.stored(); ++i) {
        const double x = a.getDataPoint(i - 1), y = a.getDataPoint(i);
        require(x <= y || std::isnan(y), x, " stands before ", y);
    }
}

// After analyse() of pairs.
template <typename Analysis>
void requirePairsAnalysed(Analysis& a, bool returned)
{
    const auto [start, end] = trimmed(a);
    requireSameRange(a, start, end);
    const bool enough = a.stored() != 0 && end - start >= 1;
    require(returned == enough, "analyse() is ", returned);

    wq_lib::xy_stat s;
    s.x = s.y = resetRecord();
    const auto eachPair = [&, first = start, last = end](auto&& call) {
        for (std::size_t i = first; enough && i < a.stored() && i <= last; ++i) call(a.getDataPair(i));
    };
    eachPair([&](wq_lib::data_pair pair) {
        ++s.x.n;
        if (pair.x < s.x.min) s.x.min = pair.x;
        if (s.x.max < pair.x) s.x.max = pair.x;
        if (pair.y < s.y.min) s.y.min = pair.y;
        if (s.y.max < pair.y) s.y.max = pair.y;
        s.x.sum += pair.x;
        s.y.sum += pair.y;
    });
    const double n = static_cast<double>(s.x.n);
    if (enough) {
        s.x.mean = s.x.sum / n;
        s.y.mean = s.y.sum / n;
    }
    eachPair([&](wq_lib::data_pair pair) {
        const double dx = pair.x - s.x.mean, dy = pair.y - s.y.mean;
        s.x.sumOfSquares += dx * dx;
        s.y.sumOfSquares += dy * dy;
        s.sumProducts += dx * dy;
    });

    const wq_lib::xy_stat& r = a.getXyResult();
    require(r.x.n == s.x.n && r.y.n == 0, "n ", r.x.n, " instead of ", s.x.n);
    const struct {
        const wq_lib::basic_stat& found;
        const wq_lib::basic_stat& expected;
    } both[] = {{r.x, s.x}, {r.y, s.y}};
    for (const auto& [found, expected] : both) {
        requireSame("min", found.min, expected.min);
        requireSame("max", found.max, expected.max);
        requireSame("sum", found.sum, expected.sum);
        requireSame("mean", found.mean, expected.mean);
        requireSame("sumOfSquares", found.sumOfSquares, expected.sumOfSquares);
        if (!enough) continue;
        requireSame("variance", found.variance, expected.sumOfSquares / n);
        requireSame("sampleVariance", found.sampleVariance, expected.sumOfSquares / (n - 1.0));
    }
    requireSame("sumProducts", r.sumProducts, s.sumProducts);
    if (enough) requireSame("covariance", r.covariance, s.sumProducts / (n - 1.0));
}

}  // namespace wq_fuzz
