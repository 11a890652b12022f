#include "sample_sums.h"

#include "logarithms.h"
#include "prefetch.h"
#include "sample_scan.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace wq_lib::detail {

namespace {

// Sums are handed on by value: one in memory makes every addition wait for the one before it to be stored.

/** Positive normal numbers: all of them have a logarithm and a finite reciprocal, so that nothing waits for a decision. */
SampleSums withPositive(SampleSums sums, const double* values, const double* logs, std::size_t n, Extremes extremes)
{
    sums.smallest = std::min(sums.smallest, extremes.smallest);
    sums.largest = std::max(sums.largest, extremes.largest);
    for (std::size_t i = 0; i < n; ++i) {
        sums.sum += values[i];
        sums.logSum += logs[i];
        sums.reciprocalSum += 1.0 / values[i];
    }
    sums.positiveCount += static_cast<double>(n);
    sums.reciprocalCount += static_cast<double>(n);
    return sums;
}

SampleSums withAny(SampleSums sums, const double* values, const double* logs, std::size_t n)
{
    for (std::size_t i = 0; i < n; ++i) {
        const double x = values[i];
        if (x < sums.smallest) sums.smallest = x;
        if (sums.largest < x) sums.largest = x;
        sums.sum += x;
        if (x > 0.0) {
            sums.logSum += logs[i];
            sums.positiveCount += 1.0;
        }
        if (x < 0.0) sums.hasNegative = true;
        const double reciprocal = 1.0 / x;
        if (std::isfinite(reciprocal)) {
            sums.reciprocalSum += reciprocal;
            sums.reciprocalCount += 1.0;
        }
    }
    return sums;
}

}  // namespace

SampleSums withValues(SampleSums sums, const double* begin, const double* end)
{
    constexpr std::size_t most = 512;  // so that what one step leaves for the next stays in the nearest cache
    double logs[most];
    for (const double* values = begin; values != end;) {
        const std::size_t n = std::min(most, static_cast<std::size_t>(end - values));
        for (std::size_t i = 0; i < n; i += 8) prefetch(values + i, end);
        const Extremes extremes = extremesOf(values, n);  // of no use where there is a NaN
        const bool noneIsPositive = extremes.largest <= 0.0;
        if (!noneIsPositive && logarithms(values, n, logs))
            sums = withPositive(sums, values, logs, n, extremes);
        else
            sums = withAny(sums, values, logs, n);
        values += n;
    }
    return sums;
}

}  // namespace wq_lib::detail
