// A table with named columns: a CSV file or one like it.
#pragma once

#include "cell_numbers.h"
#include "csv_records.h"
#include "own_format.h"
#include "table_rows.h"
#include "text_source.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** What the cells of a column are taken for. */
enum class ColumnKind {
    number,
    count,  ///< a whole number of 0 or more
    label   ///< any text; it becomes a number, from 1 by first appearance
};

/** A column that an analysis uses. */
struct Column {
    std::string name;  ///< a title of the header, or a number, from 1
    ColumnKind kind;
    bool mayMiss = false;  ///< a missing value is NaN, and the row is kept
};

/** How a table is to be read, where that is not found out from the file. */
struct TableFormat {
    enum class Header { found, present, absent };  ///< found: there is one unless the first line holds numbers only, which is refused

    std::optional<char> separator;
    bool decimalComma = false;
    bool decimalPoint = false;  ///< whatever other columns show
    Header header = Header::found;
    std::vector<std::string> missing{"NA", "N/A", "NaN", "nan", "-", "."};  ///< besides the empty cell
    bool refuseMissing = false;
};

/** Takes the cells of one row. */
using CellHandler = std::function<void(const std::vector<std::string_view>& cells)>;

/** The titles with commas between, for a message. */
std::string listed(const std::vector<std::string>& titles);

class Table final : public TableRows {
public:
    /**
     * Opens the file, finds its format, and reads the header.
     * @param fileName a path; "-" means standard input.
     * @param handle may be empty; it is given the bytes of the file as they stand there.
     * @throws CannotAnalyse
     */
    Table(const std::string& fileName, const TableFormat& format, const BytesHandler& handle = {});

    const std::string& name() const override { return shownName; }
    const std::optional<FileIdentity>& identity() const override { return file; }

    /** The titles of all columns; "column 1" and so on without a header. */
    const std::vector<std::string>& titles() const { return columnTitles; }

    /**
     * Reads all rows, once. One that lacks the value of a used column is left out and counted.
     * @throws CannotAnalyse for a column that is not there, and with line and column for a cell that is not what its column has to hold.
     */
    void read(const std::vector<Column>& columns, const RowHandler& handle);

    /**
     * Hands on the cells of all rows as they stand, once. @throws CannotAnalyse for a row that has not as many as there are titles.
     */
    void readCells(const CellHandler& handle);

    /** Whether a cell stands for a missing value. */
    bool isMissing(std::string_view cell) const
    {
        if (cell.empty()) return true;
        if (!beginsMissing[static_cast<unsigned char>(cell[0])]) return false;
        return std::find(format.missing.begin(), format.missing.end(), cell) != format.missing.end();
    }

    /** How its numbers are written, as far as that has been said. */
    const CellNumbers& givenNumbers() const { return numbers; }

    bool hasTitles() const { return hasHeader; }

    /** Whether the title of a column, by its index, is a number and nobody said that the first line holds titles: it may be the first
     * value. */
    bool titleMayBeData(std::size_t column) const { return numericTitles[column]; }

    /** What reads the file without columns, where it is one in the library's own format; empty where that is a table, or was said to be. */
    const std::vector<CommandWithoutColumns>& commandsWithoutColumns() const { return ownCommands; }

    /** The line on which the row that a handler takes begins, from 1. */
    std::size_t line() const { return records->line(); }

    /** Of a column by its index in what read() was given. */
    const std::string& title(std::size_t use) const override { return columnTitles[uses[use].index]; }
    const Labels& labels(std::size_t use) const override { return uses[use].labels; }

    /** What was found out about the file, in words; empty where nothing was. */
    std::string description() const { return description(numbers.hasComma()); }
    std::string description(bool withDecimalComma) const;

private:
    struct Use {
        std::size_t index;  // of the column
        ColumnKind kind;
        bool mayMiss;
        Labels labels;
        std::string_view label;  // of this row; it has a number only where the row is whole
    };

    void readHeader();
    bool holdsNumbersOnly(const std::vector<std::string_view>& cells) const;
    void requireHeader() const;
    void requireTitle(const Column& column, std::size_t index) const;
    std::size_t indexOf(const std::string& column) const;
    bool take(std::vector<double>& row);
    double numberIn(const Use& use, std::string_view cell);
    void numberLabels(std::vector<double>& row);
    void requireAllFields() const
    {
        if (records->count() != columnTitles.size()) failForFields();
    }
    [[noreturn]] void failForFields() const;
    [[noreturn]] void failForCell(const Use& use, const std::string& why) const;
    [[noreturn]] void fail(std::size_t line, const std::string& reason) const;

    std::string shownName;
    std::optional<FileIdentity> file;
    TableFormat format;
    std::vector<std::string> wrappings;
    std::size_t commentLines = 0;  // before the header
    std::unique_ptr<CsvRecords> records;
    std::array<bool, 256> beginsMissing{};  // by the first character of a cell: whether it may be missing
    std::vector<std::string> columnTitles;
    std::vector<bool> numericTitles;  // where the header was found
    bool firstIsData = false;         // without a header, the record that was read first
    bool hasHeader = false;
    bool lacksHeader = false;  // there are numbers in its place, which is right in the library's own format
    std::vector<CommandWithoutColumns> ownCommands;
    std::vector<Use> uses;
    CellNumbers numbers;
};

}  // namespace wqstat
