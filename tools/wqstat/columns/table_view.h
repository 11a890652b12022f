// A look at a table, and the ways to show it.
#pragma once

#include "character_bars.h"
#include "column_profile.h"
#include "results/html_page.h"
#include "results/result_writer.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace wqstat {

struct TableView {
    std::string name;  ///< for people
    TableProfile profile;
    std::vector<std::string> commands;  ///< that fit
};

/** How a page was made. */
struct PageOrigin {
    PageFile file;
    std::string commandLine;
    std::string version;
};

constexpr std::size_t mostLabelsShown = 5;

/** The numbers or dates of a column, which its figures are about: of a mixed one its numbers. Null without any. */
const NumberSummary* measured(const ColumnProfile& column);

/** A number, or a date, as it is shown. @param spread what a number is read against */
std::string figureOf(const ColumnProfile& column, double value, double spread = 0.0);

/** What the figures of a column are read against: the distance of its quartiles, or where these are equal of its ends. */
double spreadOf(const NumberSummary& numbers, const Quartiles& quartiles);

/** "3", "more than 100 000". */
std::string distinctText(const ColumnProfile& column);

/** By how much of all ranks a quartile may be off, in words: "each within 0.0061 % of the ranks". Empty where they are exact. */
std::string errorText(const NumberSummary& numbers);

/** What else there is to say about the column, a sentence each. */
std::vector<std::string> notesOf(const ColumnProfile& column);

void printView(std::ostream& output, const TableView& view, Characters characters);

/** The members of a column: the same for all of them. */
void writeColumn(ResultWriter& writer, const ColumnProfile& column, std::size_t number);

std::string viewPage(const TableView& view, const PageOrigin& origin);

}  // namespace wqstat
