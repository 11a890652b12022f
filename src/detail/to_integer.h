// The only conversions from double to an integer type.
#ifndef WQ_STAT_DETAIL_TO_INTEGER_H
#define WQ_STAT_DETAIL_TO_INTEGER_H

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace wq_lib::detail {

/**
 * Truncates toward zero, defined for every value. NaN gives 0; a value above the type's range gives its largest value; one
 * below gives the smallest of a signed type and the largest of an unsigned one, as an index that wraps.
 */
template <typename Integer>
Integer toInteger(double value)
{
    static_assert(std::is_integral_v<Integer>);
    using limits = std::numeric_limits<Integer>;
    const double beyond = std::ldexp(1.0, limits::digits);  // the largest value + 1, a power of two
    if (std::isnan(value)) return 0;
    const double whole = std::trunc(value);
    if (whole >= beyond) return limits::max();
    if constexpr (limits::is_signed) {
        if (whole < -beyond) return limits::min();
    } else {
        if (whole < 0.0) return limits::max();
    }
    return static_cast<Integer>(whole);
}

/** Truncates a value that is known to be at least 0 and below 2^31, without a look at it. */
inline std::size_t toSmallIndex(double value) { return static_cast<std::size_t>(static_cast<std::int32_t>(value)); }

}  // namespace wq_lib::detail

#endif
