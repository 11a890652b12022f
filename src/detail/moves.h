// What the moves of the analyses share. Each takes the values of the other object in exchange for those of a new one; the texts that a new
// one has take memory, and so are given to the other object last, and only where memory allows.
#ifndef WQ_STAT_DETAIL_MOVES_H
#define WQ_STAT_DETAIL_MOVES_H

#include "where_memory_allows.h"

#include <utility>

namespace wq_lib::detail {

/** Exchanges the named members of two objects. */
template <typename Class, typename... Members>
void exchange(Class& one, Class& other, Members Class::*... members) noexcept
{
    using std::swap;
    (swap(one.*members, other.*members), ...);
}

}  // namespace wq_lib::detail

#endif
