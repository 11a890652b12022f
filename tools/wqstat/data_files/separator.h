// Which character separates the columns of a table.
#pragma once

#include <string>
#include <string_view>

namespace wqstat {

struct TableFormat;

/**
 * The separator with which the first hundred records of a text have most evenly the number of fields that the first one has, at least two.
 * Where several do, it is one with which all cells below the first record are numbers or missing, and of those left the first of tab,
 * semicolon, bar, comma and blanks. With none of them the table has one column, and it is a comma. Where decimal commas are expected, a
 * comma separates only if fields in quotes hold commas; otherwise a semicolon stands for one column.
 * @param begin of the text; its last line does not count unless it has an end, or the text has no other.
 */
char separatorOf(std::string_view begin, const TableFormat& format);

/** In words: "comma", "blanks". */
std::string nameOf(char separator);

/** The separator that a word of the command line means: its name, or the character itself. @throws WrongUsage */
char separatorArgument(const std::string& text);

}  // namespace wqstat
