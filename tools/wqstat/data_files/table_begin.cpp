#include "table_begin.h"

#include "separator.h"

#include <algorithm>

namespace wqstat {

namespace {

/** What the cells of a column say about the decimal mark of the table. */
class MarkOfColumn {
public:
    void see(std::string_view cell, std::size_t line, const TableFormat& format)
    {
        holdsNumbers = holdsNumbers && areNumbers({cell}, format, numbers);
        if (!holdsNumbers) return;
        if (withComma.line == 0 && shows(cell, ',')) withComma = {line, std::string(cell), true};
        hasPoint = hasPoint || shows(cell, '.');
    }

    bool showsPoint() const { return holdsNumbers && hasPoint; }
    const DecimalComma* comma() const { return holdsNumbers && withComma.line > 0 ? &withComma : nullptr; }

private:
    static bool shows(std::string_view cell, char mark)
    {
        return cell.find(mark) != std::string_view::npos && !maySeparateThousands(cell, mark);
    }

    CellNumbers numbers;
    bool holdsNumbers = true;
    bool hasPoint = false;
    DecimalComma withComma{0, "", true};
};

std::size_t fieldsOf(std::string_view line, const TableFormat& format)
{
    std::size_t fields = 0;
    readRecords(line, *format.separator, 1, [&](const std::vector<std::string_view>& cells, std::size_t) { fields = cells.size(); });
    return fields;
}

/** Whether the first record is one of titles beyond doubt: words alone, and there is a number in each of the next two. */
bool beginsWithTitles(std::string_view text, const TableFormat& format)
{
    const auto isWord = [&](std::string_view cell) {
        return lookAt(cell, format) == CellLook::text && cell.find_first_of("0123456789") == std::string_view::npos;
    };
    const auto isNumber = [&](std::string_view cell) { return lookAt(cell, format) == CellLook::number; };
    std::size_t fitting = 0;
    readRecords(text, *format.separator, 3, [&](const std::vector<std::string_view>& cells, std::size_t) {
        const bool fits =
            fitting == 0 ? std::all_of(cells.begin(), cells.end(), isWord) : std::any_of(cells.begin(), cells.end(), isNumber);
        if (fits) ++fitting;
    });
    return format.header != TableFormat::Header::absent && fitting == 3;
}

/** Where the next line begins. */
std::size_t behindLine(std::string_view text, std::size_t at)
{
    const std::size_t end = text.find_first_of("\r\n", at);
    if (end == std::string_view::npos) return text.size();
    return end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
}

bool isComment(std::string_view line) { return !line.empty() && line[0] == '#'; }

/** The lines that begin with '#', and empty ones between them. */
std::vector<std::string_view> leadingLines(std::string_view begin)
{
    std::vector<std::string_view> lines;
    for (std::size_t at = 0; at < begin.size();) {
        const std::size_t next = behindLine(begin, at);
        const std::string_view line = begin.substr(at, next - at);
        if (!isComment(line) && line.find_first_not_of("\r\n") != std::string_view::npos) break;
        lines.push_back(line);
        at = next;
    }
    return lines;
}

}  // namespace

std::optional<DecimalComma> decimalCommaIn(std::string_view begin, const TableFormat& format)
{
    std::vector<MarkOfColumn> columns;
    bool isTitle = format.header != TableFormat::Header::absent;
    readRecords(wholeLines(begin), *format.separator, begin.size(), [&](const std::vector<std::string_view>& cells, std::size_t line) {
        if (columns.size() < cells.size()) columns.resize(cells.size());
        for (std::size_t i = 0; i < cells.size() && !isTitle; ++i) columns[i].see(cells[i], line, format);
        isTitle = false;
    });
    std::optional<DecimalComma> found;
    for (const MarkOfColumn& column : columns)
        if (!found && column.comma() != nullptr) found = *column.comma();
    if (found) found->isOnly = std::none_of(columns.begin(), columns.end(), [](const MarkOfColumn& column) { return column.showsPoint(); });
    return found;
}

std::optional<SeparatorLine> separatorLine(std::string_view begin)
{
    constexpr std::string_view word = "sep=";
    const std::size_t end = word.size() + 1;
    if (begin.substr(0, word.size()) != word || begin.find_first_of("\r\n\"") != end) return std::nullopt;
    return SeparatorLine{begin[word.size()], behindLine(begin, end)};
}

LeadingComments leadingComments(std::string_view begin, const TableFormat& wanted)
{
    const std::vector<std::string_view> lines = leadingLines(begin);
    std::size_t length = 0;
    for (const std::string_view line : lines) length += line.size();
    const std::string_view rest = begin.substr(length);
    if (lines.empty() || rest.empty()) return {};
    TableFormat format = wanted;
    if (!format.separator) format.separator = separatorOf(rest, format);
    const std::size_t fields = fieldsOf(rest, format);
    const bool titlesFollow = beginsWithTitles(rest, format);
    LeadingComments found;
    LeadingComments upTo;
    for (const std::string_view line : lines) {
        ++upTo.lines;
        upTo.bytes += line.size();
        if (!isComment(line)) continue;
        const bool beginsLikeOne = titlesFollow && line.size() > 1 && isBlank(line[1]);
        if (!beginsLikeOne && fieldsOf(line, format) == fields) break;
        ++upTo.count;
        found = upTo;
    }
    return found;
}

bool isYear(std::string_view title)
{
    return title.size() == 4 && (title[0] == '1' || title[0] == '2') && title.find_first_not_of("0123456789") == std::string_view::npos;
}

CellLook lookAt(std::string_view cell, const TableFormat& format)
{
    double ignored = 0.0;
    if (cell.empty() || std::find(format.missing.begin(), format.missing.end(), cell) != format.missing.end()) return CellLook::missing;
    return numbersOf(format).convert(cell, 1, ignored) ? CellLook::number : CellLook::text;
}

CellNumbers numbersOf(const TableFormat& format)
{
    CellNumbers numbers;
    if (format.decimalComma) numbers.expectComma();
    return numbers;
}

bool areNumbers(const std::vector<std::string_view>& cells, const TableFormat& format, CellNumbers& numbers)
{
    return std::all_of(cells.begin(), cells.end(), [&](std::string_view cell) {
        double ignored = 0.0;
        return lookAt(cell, format) == CellLook::missing || numbers.convert(cell, 1, ignored);
    });
}

std::string_view wholeLines(std::string_view begin)
{
    const std::size_t lastEnd = begin.find_last_of("\r\n");
    return lastEnd == std::string_view::npos ? begin : begin.substr(0, lastEnd + 1);
}

}  // namespace wqstat
