#include "separator.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "table.h"
#include "table_begin.h"

#include <algorithm>
#include <vector>

namespace wqstat {

namespace {

struct Named {
    char separator;
    const char* name;
};

constexpr Named candidates[] = {{'\t', "tab"}, {';', "semicolon"}, {'|', "bar"}, {',', "comma"}, {blanks, "blanks"}};

/** What a separator makes of the first records. */
struct Cut {
    double evenness = 0.0;     // the part of them that have as many fields as the first one; 0 where that has only one
    bool holdsCommas = false;  // all cells of all of them are numbers with decimal commas
    bool isInQuotes = false;   // the separator stands in quotes too
};

bool hold(const std::vector<std::string_view>& cells, char character)
{
    return std::any_of(cells.begin(), cells.end(), [=](std::string_view cell) { return cell.find(character) != std::string_view::npos; });
}

Cut cutBy(char separator, std::string_view text, const TableFormat& format)
{
    constexpr std::size_t mostRecords = 100;
    std::size_t records = 0;
    std::size_t even = 0;
    std::size_t fields = 0;
    Cut cut;
    CellNumbers numbers = numbersOf(format);
    readRecords(text, separator, mostRecords, [&](const std::vector<std::string_view>& cells, std::size_t) {
        if (records == 0) fields = cells.size();
        ++records;
        if (cells.size() == fields) ++even;
        cut.isInQuotes = cut.isInQuotes || hold(cells, separator);
        cut.holdsCommas = (records == 1 || cut.holdsCommas) && areNumbers(cells, format, numbers) &&
                          std::all_of(cells.begin(), cells.end(), [](std::string_view cell) { return cell.find(',') < cell.size(); });
    });
    if (fields >= 2) cut.evenness = static_cast<double>(even) / static_cast<double>(records);
    return cut;
}

}  // namespace

char separatorOf(std::string_view begin, const TableFormat& format)
{
    const std::string_view text = wholeLines(begin);
    char best = format.decimalComma ? ';' : ',';
    Cut bestCut{0.5, false, false};
    for (const Named& candidate : candidates) {
        const Cut cut = cutBy(candidate.separator, text, format);
        if (format.decimalComma && candidate.separator == ',' && !cut.isInQuotes) continue;
        const bool isInsteadOfComma = best == ',' && cut.evenness == bestCut.evenness && cut.holdsCommas;
        if (cut.evenness <= bestCut.evenness && !isInsteadOfComma) continue;
        best = candidate.separator;
        bestCut = cut;
    }
    return best;
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
