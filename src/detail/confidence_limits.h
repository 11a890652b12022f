// Limits around an estimate.
#ifndef WQ_STAT_DETAIL_CONFIDENCE_LIMITS_H
#define WQ_STAT_DETAIL_CONFIDENCE_LIMITS_H

#include <wq_stat/basic_stat.h>

namespace wq_lib::detail {

/** @return value -/+ t standard errors. */
inline DataRange<double> limitsAround(double value, double t, double standardError)
{
    DataRange<double> limits;
    limits.setRange(value - t * standardError, value + t * standardError);
    return limits;
}

}  // namespace wq_lib::detail

#endif
