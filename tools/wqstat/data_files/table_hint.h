// What to say to someone who gives a table to a command without naming a column.
#pragma once

#include "table_options.h"

#include <string>
#include <string_view>

namespace wqstat {

/**
 * "is a table with the columns a, b: name what to use, such as --column b"; empty where the text is none.
 * @param begin of the text. It is a table when its first line that is no comment has two or more titles, which are no numbers but for
 * years, and the line behind it as many fields; and when one of the columns holds numbers, or no blanks separate them. One word above
 * numbers is a table for a command that needs one column.
 */
std::string tableHint(std::string_view begin, const TableOptions& options);

}  // namespace wqstat
