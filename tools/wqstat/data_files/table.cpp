#include "table.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "separator.h"
#include "table_begin.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

namespace wqstat {

namespace {

std::string nameFor(const std::string& fileName)
{
    if (fileName == "-") return "standard input";
    return fileName.empty() ? "''" : shown(fileName);
}

constexpr const char* headerOptions = ": --no-header takes the line for data, --header for the names of the columns";

bool isWhole(std::string_view cell)
{
    if (!cell.empty() && cell[0] == '-') cell.remove_prefix(1);
    return !cell.empty() && cell.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

std::string listed(const std::vector<std::string>& titles)
{
    constexpr std::size_t mostNamed = 20;
    std::string text;
    for (std::size_t i = 0; i < std::min(titles.size(), mostNamed); ++i) text += (i == 0 ? "" : ", ") + shown(titles[i]);
    return text + (titles.size() > mostNamed ? ", ..." : "");
}

Table::Table(const std::string& fileName, const TableFormat& wanted, const BytesHandler& handle)
    : shownName(nameFor(fileName)),
      file(fileName == "-" ? identityOf(STDIN_FILENO) : identityOf(fileName)),
      format(wanted)
{
    TextSource text = openText(fileName, shownName, handle);
    wrappings = std::move(text.wrappings);
    records = std::make_unique<CsvRecords>(std::move(text.bytes), shownName);
    if (format.header == TableFormat::Header::found) ownCommands = commandsForOwnFormat(records->begin());
    std::size_t linesBefore = 0;
    if (const std::optional<SeparatorLine> line = separatorLine(records->begin())) {
        if (!format.separator) format.separator = line->separator;
        records->leaveOut(line->bytes, ++linesBefore);
    }
    const LeadingComments comments = leadingComments(records->begin(), format);
    records->leaveOut(comments.bytes, comments.lines);
    commentLines = comments.count;
    if (!format.separator) format.separator = separatorOf(records->begin(), format);
    records->setSeparator(*format.separator);
    if (format.decimalComma)
        numbers.expectComma();
    else if (const std::optional<DecimalComma> found = format.decimalPoint ? std::nullopt : decimalCommaIn(records->begin(), format))
        numbers.seeCommaElsewhere(linesBefore + comments.lines + found->line, found->cell, found->isOnly);
    for (const std::string& missing : format.missing)
        if (!missing.empty()) beginsMissing[static_cast<unsigned char>(missing[0])] = true;
    readHeader();
}

void Table::readHeader()
{
    if (!records->next()) fail(0, "no data");
    const std::vector<std::string_view>& cells = records->fields();
    if (format.header == TableFormat::Header::found && holdsNumbersOnly(cells)) {
        lacksHeader = true;
        if (ownCommands.empty()) requireHeader();
    }
    hasHeader = format.header != TableFormat::Header::absent;
    firstIsData = !hasHeader;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        numericTitles.push_back(format.header == TableFormat::Header::found && holdsNumbersOnly({cells[i]}));
        columnTitles.push_back(hasHeader && !cells[i].empty() ? std::string(cells[i]) : "column " + std::to_string(i + 1));
    }
}

void Table::requireHeader() const
{
    if (lacksHeader) fail(records->line(), std::string("the first line holds numbers only") + headerOptions);
}

/** A column of numbers that was named by its number may have lost its first one to the titles. */
void Table::requireTitle(const Column& column, std::size_t index) const
{
    const std::string& title = columnTitles[index];
    if (column.kind == ColumnKind::label || !titleMayBeData(index) || column.name == title) return;
    fail(records->line(), "the title of column " + std::to_string(index + 1) + " is the number " + inQuotes(title) + headerOptions);
}

bool Table::holdsNumbersOnly(const std::vector<std::string_view>& cells) const
{
    CellNumbers reading = numbers;
    double ignored = 0.0;
    std::size_t found = 0;
    for (const std::string_view cell : cells) {
        if (isMissing(cell)) continue;
        if (!reading.convert(cell, 1, ignored)) return false;
        ++found;
    }
    return found > 0;
}

std::size_t Table::indexOf(const std::string& column) const
{
    const auto title = std::find(columnTitles.begin(), columnTitles.end(), column);
    if (hasHeader && title != columnTitles.end()) {
        if (std::find(title + 1, columnTitles.end(), column) != columnTitles.end())
            fail(0, "there are several columns " + inQuotes(column) + ": name the one that is meant by its number");
        return static_cast<std::size_t>(title - columnTitles.begin());
    }
    std::size_t number = 0;
    const auto [used, error] = std::from_chars(column.data(), column.data() + column.size(), number);
    const bool isNumber = used == column.data() + column.size() && error == std::errc();
    if (isNumber && number >= 1 && number <= columnTitles.size()) return number - 1;
    const std::string held = hasHeader ? "the columns are " + listed(columnTitles) : "there are " + counted(columnTitles.size(), "column");
    fail(0, "there is no column " + inQuotes(column) + ": " + held);
}

void Table::read(const std::vector<Column>& columns, const RowHandler& handle)
{
    requireHeader();
    for (const Column& column : columns) {
        uses.push_back({indexOf(column.name), column.kind, column.mayMiss, {}, {}});
        requireTitle(column, uses.back().index);
    }
    counts.missing.resize(uses.size());
    std::vector<double> row(uses.size());
    while (firstIsData || records->next()) {
        firstIsData = false;
        ++counts.rows;
        if (take(row))
            handle(row.data());
        else
            ++counts.leftOut;
    }
    if (const std::string doubt = numbers.doubt(); !doubt.empty()) fail(numbers.doubtLine(), doubt);
}

void Table::readCells(const CellHandler& handle)
{
    while (firstIsData || records->next()) {
        firstIsData = false;
        ++counts.rows;
        requireAllFields();
        handle(records->fields());
    }
}

void Table::failForFields() const
{
    const std::size_t held = records->count();
    const bool isDecimal =
        columnTitles.size() == 1 && held == 2 && *format.separator == ',' && isWhole(records->field(0)) && isWhole(records->field(1));
    const std::string hint =
        isDecimal ? ": with --decimal-comma '" + std::string(records->field(0)) + ',' + std::string(records->field(1)) + "' is one" : "";
    fail(records->line(), counted(held, "field") + ", where " + (hasHeader ? "the header" : "the first line") + " has " +
                              std::to_string(columnTitles.size()) + hint);
}

/** @return false when a value is missing. */
bool Table::take(std::vector<double>& row)
{
    requireAllFields();
    bool isWhole = true;
    for (std::size_t i = 0; i < uses.size(); ++i) {
        Use& use = uses[i];
        const std::string_view cell = records->field(use.index);
        use.label = {};
        if (!isMissing(cell)) {
            if (use.kind == ColumnKind::label)
                use.label = cell;
            else
                row[i] = numberIn(use, cell);
            continue;
        }
        if (format.refuseMissing) fail(records->line(), shown(title(i)) + ": the value is missing: " + inQuotes(cell));
        row[i] = std::numeric_limits<double>::quiet_NaN();
        if (use.mayMiss) continue;
        ++counts.missing[i];
        isWhole = false;
    }
    if (isWhole) numberLabels(row);
    return isWhole;
}

/** A text that only rows left out have is no label of the analysis, and takes no number from those that are. */
void Table::numberLabels(std::vector<double>& row)
{
    for (std::size_t i = 0; i < uses.size(); ++i)
        if (!uses[i].label.empty()) row[i] = static_cast<double>(uses[i].labels.number(uses[i].label));
}

double Table::numberIn(const Use& use, std::string_view cell)
{
    double value = 0.0;
    if (!numbers.convert(cell, records->line(), value)) failForCell(use, numbers.whyNot());
    if (use.kind == ColumnKind::count && !isCount(value)) failForCell(use, "a count is expected, not " + inQuotes(cell));
    return value;
}

std::string Table::description(bool withDecimalComma) const
{
    if (!format.separator) return "";
    std::string text = shownName + ": ";
    for (const std::string& wrapping : wrappings) text += wrapping + ", ";
    if (commentLines > 0) text += counted(commentLines, "line") + " of comments left out, ";
    text += "separator " + nameOf(*format.separator) + ", decimal " + (withDecimalComma ? "comma" : "point") + ", ";
    return text + (hasHeader ? "columns " + listed(columnTitles) : counted(columnTitles.size(), "column") + " without a header");
}

void Table::failForCell(const Use& use, const std::string& why) const
{
    fail(records->line(), shown(columnTitles[use.index]) + ": " + why);
}

void Table::fail(std::size_t line, const std::string& reason) const
{
    throw CannotAnalyse(shownName + (line == 0 ? "" : ":" + std::to_string(line)) + ": " + reason);
}

}  // namespace wqstat
