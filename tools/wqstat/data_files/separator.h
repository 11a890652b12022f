// Which character separates the columns of a table.
#pragma once

#include <string>
#include <string_view>

namespace wqstat {

/**
 * The separator with which the first hundred records of a text have most evenly the number of fields that the first one has, at least two;
 * tab, semicolon, bar, comma and blanks in this order where several do. With none of them the table has one column, and it is a comma.
 * @param begin of the text; its last line does not count unless it has an end, or the text has no other.
 */
char separatorOf(std::string_view begin);

/** In words: "comma", "blanks". */
std::string nameOf(char separator);

/** The separator that a word of the command line means: its name, or the character itself. @throws WrongUsage */
char separatorArgument(const std::string& text);

}  // namespace wqstat
