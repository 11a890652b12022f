// Has the processor fetch what a long pass will need before it needs it.
#ifndef WQ_STAT_DETAIL_PREFETCH_H
#define WQ_STAT_DETAIL_PREFETCH_H

#include <cstddef>

namespace wq_lib::detail {

constexpr std::size_t prefetchDistance = 4096;  // bytes; beyond the border of a page, where the processor's own prefetching stops

/** A hint for a pass that stands at a value and goes on to an end; nothing where the compiler offers no such hint. */
template <typename Value>
inline void prefetch(const Value* value, const Value* end)
{
#ifdef __GNUC__
    constexpr std::ptrdiff_t distance = prefetchDistance / sizeof(Value);
    if (end - value > distance) __builtin_prefetch(value + distance);
#else
    static_cast<void>(value);
    static_cast<void>(end);
#endif
}

/** A hint for one place that the order of accesses does not foretell. */
inline void prefetchPlace(const void* place)
{
#ifdef __GNUC__
    __builtin_prefetch(place);
#else
    static_cast<void>(place);
#endif
}

}  // namespace wq_lib::detail

#endif
