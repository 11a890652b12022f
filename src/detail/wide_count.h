// Counts and differences of counts that wrap at 2^64 on every machine.
#ifndef WQ_STAT_DETAIL_WIDE_COUNT_H
#define WQ_STAT_DETAIL_WIDE_COUNT_H

#include <cstdint>
#include <type_traits>

namespace wq_lib::detail {

/**
 * A count, or a difference of counts such as degrees of freedom, with 64 bits. Where a count has 32, one in the upper half of its range is
 * a difference that wrapped, for no sample in memory is so large: it wraps at 2^64 here, and leads to the same figures and texts as there.
 */
template <typename Count>
constexpr std::uint64_t wideCount(Count count)
{
    static_assert(std::is_unsigned_v<Count>);
    const auto signedCount = static_cast<std::make_signed_t<Count>>(count);
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(signedCount));
}

}  // namespace wq_lib::detail

#endif
