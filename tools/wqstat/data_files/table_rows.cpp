#include "table_rows.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"

namespace wqstat {

std::vector<Sentence> TableRows::warnings() const
{
    if (counts.leftOut == 0) return {};
    Sentence text = Sentence::name(name()) + ": warning: " + std::to_string(counts.leftOut) + " of " + counted(counts.rows, "row") +
                    " left out, missing values: ";
    const char* between = "";
    for (std::size_t i = 0; i < counts.missing.size(); ++i) {
        if (counts.missing[i] == 0) continue;
        text += between + Sentence::name(shown(title(i))) + " " + std::to_string(counts.missing[i]);
        between = ", ";
    }
    return {text};
}

void TableRows::requireOf(const std::string& sample, std::size_t held, std::size_t least) const
{
    requireIn(name() + ": " + shown(sample), held, least);
}

void TableRows::requireIn(const std::string& place, std::size_t held, std::size_t least) const
{
    if (held >= least) return;
    const std::string found = held == 0 ? "no data" : counted(held, "observation") + ", at least " + std::to_string(least) + " are needed";
    const std::string leftOut = counts.leftOut == 0 ? ""
                                                    : " (" + std::to_string(counts.leftOut) + " of " + counted(counts.rows, "row") +
                                                          " left out: a value is missing)";
    throw CannotAnalyse(place + ": " + found + leftOut);
}

}  // namespace wqstat
