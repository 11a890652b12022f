// Room in a list that is filled in several steps.
#ifndef WQ_STAT_DETAIL_RESERVE_MORE_H
#define WQ_STAT_DETAIL_RESERVE_MORE_H

#include <algorithm>
#include <cstddef>
#include <vector>

namespace wq_lib::detail {

/**
 * Makes room for so many more values: for exactly these in an empty list, else for at least twice as many as there was room for, so that
 * filling a list in many steps takes time in proportion to its length.
 */
template <typename Value>
void reserveMore(std::vector<Value>& list, std::size_t more)
{
    const std::size_t needed = list.size() + more;
    if (needed <= list.capacity()) return;
    list.reserve(std::max(needed, std::min(2 * list.capacity(), list.max_size())));
}

}  // namespace wq_lib::detail

#endif
