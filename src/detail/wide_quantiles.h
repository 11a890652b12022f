// Quantiles whose degrees of freedom may have wrapped at 2^64, whatever a count of the machine is.
#ifndef WQ_STAT_DETAIL_WIDE_QUANTILES_H
#define WQ_STAT_DETAIL_WIDE_QUANTILES_H

#include <cstdint>

namespace wq_lib::detail {

/** t_PercentPoint, which a host may ask for any 32-bit count of degrees of freedom, the largest one included. */
double studentPoint(double alpha, std::uint64_t df);

/** chiSquarePoint, likewise. */
double chiSquarePoint(double p, std::uint64_t df);

}  // namespace wq_lib::detail

#endif
