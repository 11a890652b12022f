#include "separator.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "table.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace wqstat {

namespace {

struct Named {
    char separator;
    const char* name;
};

constexpr Named candidates[] = {{'\t', "tab"}, {';', "semicolon"}, {'|', "bar"}, {',', "comma"}, {blanks, "blanks"}};

std::string_view wholeLines(std::string_view begin)
{
    const std::size_t lastEnd = begin.find_last_of("\r\n");
    return lastEnd == std::string_view::npos ? begin : begin.substr(0, lastEnd + 1);
}

/** What a separator makes of the first records. */
struct Cut {
    double evenness = 0.0;      // the part of them that have as many fields as the first one; 0 where that has only one
    bool holdsNumbers = false;  // all cells below the first record are numbers or missing
    bool isInQuotes = false;    // the separator stands in quotes too
};

CellNumbers numbersOf(const TableFormat& format)
{
    CellNumbers numbers;
    if (format.decimalComma) numbers.expectComma();
    return numbers;
}

/** Whether all cells are numbers, with the decimal mark of those before, or missing. */
bool areNumbers(const std::vector<std::string_view>& cells, const TableFormat& format, CellNumbers& numbers)
{
    return std::all_of(cells.begin(), cells.end(), [&](std::string_view cell) {
        double ignored = 0.0;
        return cell.empty() || std::find(format.missing.begin(), format.missing.end(), cell) != format.missing.end() ||
               numbers.convert(cell, 1, ignored);
    });
}

bool hold(const std::vector<std::string_view>& cells, char character)
{
    return std::any_of(cells.begin(), cells.end(), [=](std::string_view cell) { return cell.find(character) != std::string_view::npos; });
}

/** Reads the records of a text, as far as it can be read: up to a quoted field that goes on behind it, or is none with this separator. */
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

Cut cutBy(char separator, std::string_view text, const TableFormat& format)
{
    constexpr std::size_t mostRecords = 100;
    std::size_t records = 0;
    std::size_t even = 0;
    std::size_t fields = 0;
    Cut cut;
    CellNumbers numbers;
    readRecords(text, separator, mostRecords, [&](const std::vector<std::string_view>& cells, std::size_t) {
        if (records == 0) fields = cells.size();
        ++records;
        if (cells.size() == fields) ++even;
        cut.isInQuotes = cut.isInQuotes || hold(cells, separator);
        if (records <= 2) {  // below the first record, unless that is the only one
            cut.holdsNumbers = true;
            numbers = numbersOf(format);
        }
        cut.holdsNumbers = cut.holdsNumbers && areNumbers(cells, format, numbers);
    });
    if (fields >= 2) cut.evenness = static_cast<double>(even) / static_cast<double>(records);
    return cut;
}

/** What the cells of a column say about the decimal mark of the table. */
class MarkOfColumn {
public:
    void see(std::string_view cell, std::size_t line, const TableFormat& format)
    {
        holdsNumbers = holdsNumbers && areNumbers({cell}, format, numbers);
        if (!holdsNumbers) return;
        if (!withComma && shows(cell, ',')) withComma = {line, std::string(cell)};
        hasPoint = hasPoint || shows(cell, '.');
    }

    bool showsPoint() const { return holdsNumbers && hasPoint; }
    const FoundCell* comma() const { return holdsNumbers && withComma ? &*withComma : nullptr; }

private:
    static bool shows(std::string_view cell, char mark)
    {
        return cell.find(mark) != std::string_view::npos && !maySeparateThousands(cell, mark);
    }

    CellNumbers numbers;
    bool holdsNumbers = true;
    bool hasPoint = false;
    std::optional<FoundCell> withComma;
};

}  // namespace

char separatorOf(std::string_view begin, const TableFormat& format)
{
    const std::string_view text = wholeLines(begin);
    char best = format.decimalComma ? ';' : ',';
    Cut bestCut{0.5, true, false};
    for (const Named& candidate : candidates) {
        const Cut cut = cutBy(candidate.separator, text, format);
        if (format.decimalComma && candidate.separator == ',' && !cut.isInQuotes) continue;
        const bool isBetter =
            cut.evenness > bestCut.evenness || (cut.evenness == bestCut.evenness && cut.holdsNumbers && !bestCut.holdsNumbers);
        if (!isBetter) continue;
        best = candidate.separator;
        bestCut = cut;
    }
    return best;
}

std::optional<FoundCell> decimalCommaIn(std::string_view begin, const TableFormat& format)
{
    std::vector<MarkOfColumn> columns;
    bool isTitle = format.header != TableFormat::Header::absent;
    readRecords(wholeLines(begin), *format.separator, begin.size(), [&](const std::vector<std::string_view>& cells, std::size_t line) {
        if (columns.size() < cells.size()) columns.resize(cells.size());
        for (std::size_t i = 0; i < cells.size() && !isTitle; ++i) columns[i].see(cells[i], line, format);
        isTitle = false;
    });
    std::optional<FoundCell> found;
    for (const MarkOfColumn& column : columns) {
        if (column.showsPoint()) return std::nullopt;
        if (!found && column.comma() != nullptr) found = *column.comma();
    }
    return found;
}

std::string nameOf(char separator)
{
    for (const Named& candidate : candidates)
        if (candidate.separator == separator) return candidate.name;
    return inQuotes(std::string(1, separator));
}

char separatorArgument(const std::string& text)
{
    for (const Named& candidate : candidates)
        if (text == candidate.name) return candidate.separator;
    if (text == "\\t") return '\t';
    const bool isCharacter = text.size() == 1 && text != "\"" && text != "\n" && text != "\r";
    if (!isCharacter) throw WrongUsage(inQuotes(text) + " is none of comma, semicolon, tab, bar and blanks, nor one character");
    return text[0];
}

}  // namespace wqstat
