// Natural logarithms of many values.
#ifndef WQ_STAT_DETAIL_LOGARITHMS_H
#define WQ_STAT_DETAIL_LOGARITHMS_H

#include <cstddef>

namespace wq_lib::detail {

/**
 * std::log of each value that is positive, to the last bit, and 0 for the others.
 * @return whether all are positive and normal: neither subnormal nor infinite.
 */
bool logarithms(const double* values, std::size_t n, double* results);

/** The same, one value after the other: how other ways are judged. */
bool logarithmsOneByOne(const double* values, std::size_t n, double* results);

}  // namespace wq_lib::detail

#endif
