#include "table_hint.h"

#include "command_line/arguments.h"
#include "separator.h"
#include "table_begin.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace wqstat {

namespace {

/** What is known of a column. */
struct Shown {
    std::string title;
    bool holdsNumber;
    bool holdsText;

    bool isNumber() const { return holdsNumber && !holdsText; }
};

/** Of titles numbers are years alone. */
bool isTitle(std::string_view title, const TableFormat& format)
{
    const bool looksLikeOne =
        title.find_first_of("0123456789+-.") == 0 && title.find_first_not_of("0123456789+-.,eE") == std::string_view::npos;
    if (lookAt(title, format) != CellLook::number && !looksLikeOne) return true;
    return isYear(title);
}

bool isWord(std::string_view title)
{
    const unsigned char first = title.empty() ? '\0' : static_cast<unsigned char>(title[0]);
    return (first >= 'A' && first <= 'Z') || (first >= 'a' && first <= 'z') || first >= 0x80 || first == '#';
}

/** One title alone has to be a word. */
bool areTitles(const std::vector<std::string_view>& cells, const TableFormat& format)
{
    const auto isText = [&](std::string_view cell) { return lookAt(cell, format) != CellLook::number; };
    return (cells.size() >= 2 || isWord(cells[0])) && std::any_of(cells.begin(), cells.end(), isText) &&
           std::all_of(cells.begin(), cells.end(), [&](std::string_view cell) { return isTitle(cell, format); });
}

/** Texts alone are a table too, below words, unless it is the blanks of a sentence that separate them. */
bool isTable(const std::vector<Shown>& columns, std::size_t rows, char separator)
{
    if (rows == 0) return false;
    const bool holdsNumber = std::any_of(columns.begin(), columns.end(), [](const Shown& column) { return column.isNumber(); });
    return holdsNumber || (columns.size() >= 2 && separator != blanks &&
                           std::all_of(columns.begin(), columns.end(), [](const Shown& column) { return isWord(column.title); }));
}

/** The columns of a table; none where the text is no table with a header. */
std::vector<Shown> columnsOf(std::string_view begin)
{
    constexpr std::size_t mostRecords = 100;
    TableFormat format;
    if (const std::optional<SeparatorLine> line = separatorLine(begin)) {
        format.separator = line->separator;
        begin.remove_prefix(line->bytes);
    }
    begin.remove_prefix(leadingComments(begin, format).bytes);
    if (!format.separator) format.separator = separatorOf(begin, format);
    std::vector<Shown> columns;
    std::size_t rows = 0;
    bool isEven = true;  // as far as the rows go
    readRecords(wholeLines(begin), *format.separator, mostRecords, [&](const std::vector<std::string_view>& cells, std::size_t) {
        if (rows == 0 && columns.empty()) {
            for (const std::string_view title : cells)
                if (areTitles(cells, format)) columns.push_back({std::string(title), false, false});
            isEven = !columns.empty();
            return;
        }
        isEven = isEven && cells.size() == columns.size();
        for (std::size_t i = 0; i < cells.size() && isEven; ++i) {
            columns[i].holdsNumber = columns[i].holdsNumber || lookAt(cells[i], format) == CellLook::number;
            columns[i].holdsText = columns[i].holdsText || lookAt(cells[i], format) == CellLook::text;
        }
        if (isEven) ++rows;
    });
    return isTable(columns, rows, *format.separator) ? columns : std::vector<Shown>();
}

/** The title of a column as it is typed in a shell; its number where that is hard to type or to read, or another has the same title. */
std::string typed(const std::vector<Shown>& columns, std::size_t index)
{
    const std::string& title = columns[index].title;
    const auto isTheSame = [&](const Shown& column) { return column.title == title; };
    if (std::count_if(columns.begin(), columns.end(), isTheSame) > 1) return std::to_string(index + 1);
    const auto isPlain = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.';
    };
    if (title.empty() || shown(title) != title) return std::to_string(index + 1);
    if (std::all_of(title.begin(), title.end(), isPlain)) return title;
    const bool canBeQuoted = title.find_first_of("'\\") == std::string::npos && title[0] != '-';
    return canBeQuoted ? "'" + title + "'" : std::to_string(index + 1);
}

/** Columns that would do: the last ones with numbers, the last one with texts. */
std::string example(const std::vector<Shown>& columns, const std::vector<const ColumnOption*>& wanted)
{
    std::vector<std::size_t> numbers;
    std::size_t label = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].isNumber())
            numbers.push_back(i);
        else
            label = i;
    }
    const auto needed = static_cast<std::size_t>(
        std::count_if(wanted.begin(), wanted.end(), [](const ColumnOption* column) { return column->kind != ColumnKind::label; }));
    std::size_t next = numbers.size() - std::min(needed, numbers.size());
    std::string text;
    for (const ColumnOption* const column : wanted) {
        const bool isLabel = column->kind == ColumnKind::label;
        const bool isThere = isLabel || next < numbers.size();
        const std::size_t index = isLabel ? label : isThere ? numbers[next++] : 0;
        text += std::string(text.empty() ? "" : " ") + column->option + " " + (isThere ? typed(columns, index) : "NAME");
    }
    return text;
}

}  // namespace

std::string tableHint(std::string_view begin, const TableOptions& options)
{
    constexpr std::string_view mark = "\xef\xbb\xbf";
    if (begin.substr(0, mark.size()) == mark) begin.remove_prefix(mark.size());
    const std::vector<Shown> columns = columnsOf(begin);
    const std::vector<const ColumnOption*> wanted = options.typical();
    if (columns.empty() || (columns.size() == 1 && wanted.size() > 1)) return "";
    const std::string such = example(columns, wanted);
    if (columns.size() == 1) return "is a table with the column " + listed({columns[0].title}) + ": name it with " + such;
    std::vector<std::string> titles;
    for (const Shown& column : columns) titles.push_back(column.title);
    return "is a table with the columns " + listed(titles) + ": name what to use, such as " + such;
}

}  // namespace wqstat
