// Room for what a data file seems to hold.
#ifndef WQ_STAT_DETAIL_EXPECTED_LINES_H
#define WQ_STAT_DETAIL_EXPECTED_LINES_H

#include "numbers/data_lines.h"
#include "reserve_more.h"
#include "where_memory_allows.h"

#include <vector>

namespace wq_lib::detail {

/** Makes room for the lines that a file seems to hold. A hint only: where there is no memory for so many, the list grows as it must. */
template <typename Value>
void reserveExpected(std::vector<Value>& list, const DataLines& lines)
{
    whereMemoryAllows([&] { reserveMore(list, lines.expectedLines()); });
}

}  // namespace wq_lib::detail

#endif
