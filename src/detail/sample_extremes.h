// Smallest and largest value of a sample, value by value.
#ifndef WQ_STAT_DETAIL_SAMPLE_EXTREMES_H
#define WQ_STAT_DETAIL_SAMPLE_EXTREMES_H

#include <wq_stat/basic_stat.h>

namespace wq_lib::detail {

/** Takes a value into the extremes of a record; NaN changes neither. */
inline void extendExtremes(basic_stat& record, double value)
{
    if (value < record.min) record.min = value;
    if (record.max < value) record.max = value;
}

}  // namespace wq_lib::detail

#endif
