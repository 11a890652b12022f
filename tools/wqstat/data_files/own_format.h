// Whether a file that is looked at as a table is one in the library's own format.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** A command, and its options, for a file that is read without naming a column. */
using CommandWithoutColumns = std::vector<std::string>;

/**
 * What can read the text as it is, of pairs of numbers all that take such, whatever they mean by them; empty where it is not in the
 * library's own format. It is where a comment comes first, and behind it lines with one to three numbers each, between ':', ';' or '|', as
 * many in all that were looked at, but for repeat counts that are left out.
 * @param begin of the text.
 */
std::vector<CommandWithoutColumns> commandsForOwnFormat(std::string_view begin);

}  // namespace wqstat
