// What to say to someone who gives a table to a command without naming a column.
#pragma once

#include "table_options.h"

#include <string>
#include <string_view>

namespace wqstat {

/**
 * "is a table with the columns a, b: name what to use, such as --column b"; empty where the text is none.
 * @param begin of the text, from its first line with data. It is a table when that has two or more fields of which none is a number, and
 *        the line behind it as many, one of them a number.
 */
std::string tableHint(std::string_view begin, const TableOptions& options);

}  // namespace wqstat
