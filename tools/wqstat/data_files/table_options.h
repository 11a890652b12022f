// The options that say which columns of a table are used, and how the table is written.
#pragma once

#include "command_line/option_parser.h"
#include "table_parts.h"

#include <string>
#include <vector>

namespace wqstat {

/** An option that names a column. */
struct ColumnOption {
    const char* option;  ///< with its dashes
    ColumnKind kind;
    const char* meaning;    ///< what the column holds
    bool isTypical = true;  ///< an example of what to name has it
    std::string name{};     ///< as given on the command line

    bool given() const { return !name.empty(); }
    Column column() const { return {name, kind}; }
};

/**
 * The columns that are named.
 * @param needed have to be. @param possible may be.
 * @throws WrongUsage where one of the former is not.
 */
std::vector<Column> chosen(const std::vector<const ColumnOption*>& needed, const std::vector<const ColumnOption*>& possible = {});

/** The columns that a command can use, and the format of the table that holds them. */
class TableOptions {
public:
    /** Adds an option that names a column; it is kept by reference. */
    void addColumn(CLI::App& app, ColumnOption& column);

    /** Adds the options that say how a table is written. */
    void declareReading(CLI::App& app);

    /** Those of them that were given, as words of a command line. */
    std::vector<std::string> readingWords() const;

    /** Adds the options of the format; nothing where the command has no columns. To be called after all addColumn(). */
    void declareFormat(CLI::App& app);

    /** The columns that an example of what to name has. */
    std::vector<const ColumnOption*> typical() const;

    /** Whether a column is named, so that data files are tables. @throws WrongUsage for a format without a column. */
    bool isTable() const;

    const TableFormat& format() const { return tableFormat; }

    /** The column whose values each have an analysis of their own; empty where all rows belong together. */
    const std::string& by() const { return byColumn; }

    /** Whether to say what was found out about a table. */
    bool verbose() const { return isVerbose; }

private:
    std::vector<const ColumnOption*> columns;
    std::vector<const CLI::Option*> formatOptions;
    TableFormat tableFormat;
    std::string byColumn;
    bool isVerbose = false;
};

}  // namespace wqstat
