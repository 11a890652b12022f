// The geometric mean of part of a sample, for both kinds of sample.
#ifndef WQ_STAT_DETAIL_GEOMETRIC_MEAN_H
#define WQ_STAT_DETAIL_GEOMETRIC_MEAN_H

#include "detail/stored_range.h"

#include <cmath>
#include <cstddef>
#include <optional>

namespace wq_lib::detail {

/**
 * @param valueAt gives value i.
 * @return exp of the mean logarithm, nothing when a value is negative. A NaN is passed over; a zero counts without adding a logarithm, so
 * that one of them does not make the mean 0.
 */
template <typename ValueAt>
std::optional<double> geometricMean(StoredRange range, ValueAt&& valueAt)
{
    double logSum = 0.0;
    double count = 0.0;
    for (std::size_t i = range.begin; i < range.end; ++i) {
        const double value = valueAt(i);
        if (std::isnan(value)) continue;
        if (value < 0.0) return std::nullopt;
        if (value > 0.0) logSum += std::log(value);
        count += 1.0;
    }
    return std::exp(logSum * (1.0 / count));
}

}  // namespace wq_lib::detail

#endif
