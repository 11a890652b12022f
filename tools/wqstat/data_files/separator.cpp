#include "separator.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "csv_records.h"
#include "text_source.h"

#include <memory>

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

/** The part of the records that have as many fields as the first one; 0 where that has only one. */
double evenness(std::string_view text, char separator)
{
    constexpr std::size_t mostRecords = 100;
    std::size_t records = 0;
    std::size_t even = 0;
    std::size_t fields = 0;
    try {
        CsvRecords reader(std::make_unique<TextInMemory>(text), "");
        reader.setSeparator(separator);
        while (records < mostRecords && reader.next()) {
            if (records == 0) fields = reader.count();
            ++records;
            if (reader.count() == fields) ++even;
        }
    } catch (const CannotAnalyse&) {  // a quoted field that goes on behind the text, or none with this separator
    }
    return fields < 2 ? 0.0 : static_cast<double>(even) / static_cast<double>(records);
}

}  // namespace

char separatorOf(std::string_view begin)
{
    const std::string_view text = wholeLines(begin);
    char best = ',';
    double bestEvenness = 0.5;
    for (const Named& candidate : candidates) {
        const double found = evenness(text, candidate.separator);
        if (found <= bestEvenness) continue;
        best = candidate.separator;
        bestEvenness = found;
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
