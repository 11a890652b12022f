// Which character separates the columns of a table.
#pragma once

#include <string>
#include <string_view>

namespace wqstat {

struct TableFormat;

/**
 * The separator with which the first hundred records of a text have most evenly the number of fields that the first one has, at least two;
 * tab, semicolon, bar, comma and blanks in this order where several do, but blanks before a comma where all that they separate are numbers
 * with decimal commas. With none of them the table has one column, and it is a comma. Where decimal commas are expected, a comma separates
 * only if fields in quotes hold commas; otherwise a semicolon stands for one column.
 */
char separatorOf(std::string_view begin, const TableFormat& format);

/** In words: "comma", "blanks". */
std::string nameOf(char separator);

/** The separator that a word of the command line means: its name, or the character itself. @throws WrongUsage */
char separatorArgument(const std::string& text);

}  // namespace wqstat
