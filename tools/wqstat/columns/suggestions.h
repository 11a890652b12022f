// The analyses that fit the columns of a table.
#pragma once

#include "column_profile.h"

#include <string>
#include <vector>

namespace wqstat {

/** How the table was named, which every command that reads it has to repeat. */
struct TableWords {
    std::string fileName;
    bool hasTitles;
    std::vector<std::string> reading;  ///< options that say how it is written
};

/**
 * Command lines for a shell, at most ten. Each of them runs: what it needs, the columns have for certain. A column that numbers the rows is
 * taken where there is no other one with numbers.
 */
std::vector<std::string> fittingCommands(const TableProfile& table, const TableWords& words);

}  // namespace wqstat
