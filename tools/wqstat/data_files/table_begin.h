// What is found out from the begin of a table.
#pragma once

#include "table.h"

#include "command_line/failure.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** A number with a decimal comma. */
struct DecimalComma {
    std::size_t line;
    std::string cell;
    bool isOnly;  ///< no column of numbers shows a decimal point
};

/**
 * A number that shows decimal commas, whichever columns are used: one in a column of numbers alone, whose comma can separate no thousands.
 * @param begin of the text, from its header on. @param format has a separator.
 */
std::optional<DecimalComma> decimalCommaIn(std::string_view begin, const TableFormat& format);

/** A first line that names the separator, as spreadsheets have it: sep=; */
struct SeparatorLine {
    char separator;
    std::size_t bytes;
};
std::optional<SeparatorLine> separatorLine(std::string_view begin);

/** The lines with comments that a table begins with. */
struct LeadingComments {
    std::size_t count = 0;
    std::size_t lines = 0;  ///< the empty ones among them too
    std::size_t bytes = 0;
};

/**
 * Leading lines that begin with '#' are comments unless they have as many fields as the first line that does not. One that begins with '#'
 * and a blank is a comment also then where that line holds the titles: words without a digit, and below it two rows with numbers.
 */
LeadingComments leadingComments(std::string_view begin, const TableFormat& format);

/** Whether a title is a year from 1000 to 2999: of the titles that are numbers the ones that are meant. */
bool isYear(std::string_view title);

/** What a cell may be. */
enum class CellLook { number, text, missing };
CellLook lookAt(std::string_view cell, const TableFormat& format);

/** The numbers of a table before any was read. */
CellNumbers numbersOf(const TableFormat& format);

/** Whether all cells are numbers, with the decimal mark of those before, or missing. */
bool areNumbers(const std::vector<std::string_view>& cells, const TableFormat& format, CellNumbers& numbers);

/** The text without a last line that has no end, unless it has no other. */
std::string_view wholeLines(std::string_view begin);

/**
 * Hands on the records of a text and their lines, as far as it can be read: up to a quoted field that goes on behind it, or is none with
 * this separator.
 */
template <typename Handle>
void readRecords(std::string_view text, char separator, std::size_t most, Handle handle)
{
    try {
        CsvRecords records(std::make_unique<TextInMemory>(text), "");
        records.setSeparator(separator);
        for (std::size_t read = 0; read < most && records.next(); ++read) handle(records.fields(), records.line());
    } catch (const CannotAnalyse&) {
    }
}

}  // namespace wqstat
