#include "table_hint.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "csv_records.h"
#include "separator.h"
#include "text_source.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace wqstat {

namespace {

/** Title and first cell of a column. */
struct Shown {
    std::string title;
    bool isNumber;
};

bool isNumber(std::string_view cell)
{
    double ignored = 0.0;
    return CellNumbers().convert(cell, 1, ignored);
}

/** The columns of a table; none where the text is no table with a header. */
std::vector<Shown> columnsOf(std::string_view begin)
{
    std::vector<Shown> columns;
    try {
        CsvRecords records(std::make_unique<TextInMemory>(begin), "");
        records.setSeparator(separatorOf(begin, {}));
        if (!records.next()) return {};
        for (const std::string_view title : records.fields()) {
            if (isNumber(title)) return {};
            columns.push_back({std::string(title), false});
        }
        if (columns.size() < 2 || !records.next() || records.count() != columns.size()) return {};
        for (std::size_t i = 0; i < columns.size(); ++i) columns[i].isNumber = isNumber(records.field(i));
    } catch (const CannotAnalyse&) {
        return {};
    }
    const bool holdsNumber = std::any_of(columns.begin(), columns.end(), [](const Shown& column) { return column.isNumber; });
    return holdsNumber ? columns : std::vector<Shown>();
}

/** A title as it is typed in a shell; its number where that is hard to type. */
std::string typed(const std::string& title, std::size_t index)
{
    const auto isPlain = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.';
    };
    if (!title.empty() && std::all_of(title.begin(), title.end(), isPlain)) return title;
    const bool canBeQuoted = !title.empty() && shown(title) == title && title.find_first_of("'\\") == std::string::npos && title[0] != '-';
    return canBeQuoted ? "'" + title + "'" : std::to_string(index + 1);
}

/** Columns that would do: the last ones with numbers, the last one with texts. */
std::string example(const std::vector<Shown>& columns, const std::vector<const ColumnOption*>& wanted)
{
    std::vector<std::size_t> numbers;
    std::size_t label = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].isNumber)
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
        text += std::string(text.empty() ? "" : " ") + column->option + " " + (isThere ? typed(columns[index].title, index) : "NAME");
    }
    return text;
}

}  // namespace

std::string tableHint(std::string_view begin, const TableOptions& options)
{
    constexpr std::string_view mark = "\xef\xbb\xbf";
    if (begin.substr(0, mark.size()) == mark) begin.remove_prefix(mark.size());
    const std::vector<Shown> columns = columnsOf(begin);
    if (columns.empty()) return "";
    std::vector<std::string> titles;
    for (const Shown& column : columns) titles.push_back(column.title);
    return "is a table with the columns " + listed(titles) + ": name what to use, such as " + example(columns, options.typical());
}

}  // namespace wqstat
