// Work that may be left off where memory is short.
#ifndef WQ_STAT_DETAIL_WHERE_MEMORY_ALLOWS_H
#define WQ_STAT_DETAIL_WHERE_MEMORY_ALLOWS_H

#include <new>

namespace wq_lib::detail {

/** Does what takes memory, or leaves off where there is none. */
template <typename Work>
void whereMemoryAllows(Work&& work)
{
    try {
        work();
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace wq_lib::detail

#endif
