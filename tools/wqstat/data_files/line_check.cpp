#include "line_check.h"

#include "cell_numbers.h"
#include "command_line/arguments.h"
#include "command_line/progress.h"
#include "text_source.h"
#include "numbers/data_lines.h"
#include "numbers/white_space.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace wqstat {

namespace {

using wq_lib::detail::DataLines;
using wq_lib::detail::EndMarker;
using wq_lib::detail::fieldSeparators;
using wq_lib::detail::isEndMarker;
using wq_lib::detail::takeField;
using wq_lib::detail::trimmed;
using wq_lib::detail::whiteSpace;

constexpr std::string_view digits = "0123456789";
constexpr const char* noText = "there is a zero byte: this is no text file";
constexpr std::size_t shownPerKind = 3;

/** The ways in which a line may be read that its author hardly meant. */
enum Kind : std::size_t {
    byteOrderMark,
    blankPair,
    noNumber,
    outOfRange,
    noSeparator,
    noSecond,
    emptyField,
    decimalComma,
    textBehind,
    furtherField,
    noCount,
    countThatIsNone,
    countOfSome,
    numberInComment,
    endsEarly,
    tooLong,
    kinds
};

bool isBlank(std::string_view text) { return text.find_first_not_of(whiteSpace) == std::string_view::npos; }

bool holdsDigit(std::string_view text) { return text.find_first_of(digits) != std::string_view::npos; }

/** What a conversion made of a field. */
struct Conversion {
    std::string_view used;     // the number; empty where there is none
    std::string_view ignored;  // what follows it
    bool outOfRange = false;
};

/** The library converts as std::stod and std::stoi do in the "C" locale; this program never leaves that locale. */
template <typename Convert>
Conversion converted(std::string_view field, Convert convert)
{
    Conversion result;
    try {
        std::size_t used = 0;
        convert(std::string(field), &used);
        result.used = field.substr(0, used);
        result.ignored = field.substr(used);
    } catch (const std::invalid_argument&) {
        result.ignored = field;
    } catch (const std::out_of_range&) {
        result.used = field;
        result.outOfRange = true;
    }
    return result;
}

Conversion asReal(std::string_view field)
{
    return converted(field, [](const std::string& text, std::size_t* used) { std::stod(text, used); });
}

Conversion asInt(std::string_view field)
{
    return converted(field, [](const std::string& text, std::size_t* used) { std::stoi(text, used); });
}

/** Whether a line begins with digits, not with a word such as "information", which begins with a number too. */
bool beginsWithNumber(std::string_view line)
{
    const std::string_view text = trimmed(line);
    return text.find_first_of("0123456789+-.") == 0 && !asReal(text).used.empty();
}

/** How many separators hold the fields of a line apart, and whether a field is missing before one of them. */
struct Separation {
    std::size_t separators = 0;
    bool lacksField = false;
    bool endsLine = false;  // nothing follows the last one
};

Separation separationOf(std::string_view line)
{
    Separation found;
    std::size_t behindLast = 0;
    for (std::size_t i = line.find_first_of(fieldSeparators); i != std::string_view::npos; i = line.find_first_of(fieldSeparators, i + 1)) {
        if (i == behindLast) found.lacksField = true;
        behindLast = i + 1;
        ++found.separators;
    }
    found.endsLine = found.separators > 0 && isBlank(line.substr(behindLast));
    return found;
}

/** A line that the library takes as numbers and nothing else. */
struct PlainLine {
    std::string_view text;  // which begins with it
    double y = 0.0;
};

class Checker {
public:
    Checker(const std::string& fileName, Layout fileLayout, Surprise what, std::string_view fileBegin)
        : name(fileName),
          layout(fileLayout),
          surprise(what),
          begin(fileBegin)
    {
    }

    /** Looks at one line that is not empty. @return false when reading ends here. */
    bool see(const DataLines& lines)
    {
        number = lines.number();
        const std::string_view line = lines.text();
        if (lines.isCut() && !cutLine(lines.unread())) return stopAtFirst();
        if (markerLine != 0) return lines.isComment() || !beginsWithNumber(line) || behindMarker();
        const bool goesOn = !marked(line) ? false : lines.isComment() ? comment(line) : data(line);
        if (!goesOn) return stopAtFirst();
        dataSeen = dataSeen || !lines.isComment();
        return true;
    }

    /** Looks at what was taken off the front of the text, as far as something can be wrong with it. @return false when reading ends here.
     */
    bool seePlain(const PlainLine& plain, const DataLines& lines)
    {
        dataSeen = true;
        if (layout != Layout::angles || (isCount(plain.y) && (plain.y == 0.0 || countedLine != 0))) return true;
        number = lines.number();
        const std::string_view line = trimmed(plain.text.substr(0, plain.text.size() - lines.unread().size()));
        return frequency(plain.y, line, line.substr(line.find_first_of(fieldSeparators) + 1));
    }

    /** Whether the library comes to the lines that are seen. */
    bool isBeforeMarker() const { return markerLine == 0; }

    /** Tells of a zero byte, which makes nothing behind it worth a look. */
    void seeZero(std::size_t line)
    {
        number = line;
        stop(noText);
    }

    LineCheck findings()
    {
        result.lacksCounts = seen[noCount].count > 0 && !countSeen;
        for (const Seen& kind : seen)
            if (kind.count > shownPerKind)
                result.warnings.push_back(Sentence::name(name) + ": warning: " + counted(kind.count - shownPerKind, "more line") +
                                          " like line " + std::to_string(kind.first));
        return result;
    }

private:
    struct Seen {
        std::size_t count = 0;  // of lines, each of which may be remarked on twice
        std::size_t first = 0;
        std::size_t last = 0;
    };

    bool stopAtFirst()
    {
        if (!dataSeen) result.tableStart = begin;
        return false;
    }

    // ---- one line each; false when reading ends with it

    /** Behind a line that is cut nothing is read; but a file that is no text may have had no other line. */
    bool cutLine(std::string_view behind)
    {
        if (behind.find('\0') != std::string_view::npos) return stop(noText);
        if (markerLine == 0) result.cutLine = number;
        return remark(tooLong, "the line is longer than 254 characters", "it is cut there, and reading ends with it");
    }

    bool marked(std::string_view line)
    {
        return number != 1 || !beginsWith(line, "\xef\xbb\xbf") || remark(byteOrderMark, "the file begins with a byte order mark", "");
    }

    bool data(std::string_view line)
    {
        switch (layout) {
        case Layout::values:
            return isEndMarker(line) ? endMarker(line) : value(line);
        case Layout::pairs:
        case Layout::angles:
            return isEndMarker(line) ? endMarker(line) : pair(line);
        case Layout::series:
            return seriesLine(line);
        }
        return true;
    }

    bool comment(std::string_view line)
    {
        if (!beginsWithNumber(line)) return true;
        return remark(numberInComment, "a number in a comment: " + inQuotes(line), "the whole line is left out");
    }

    bool endMarker(std::string_view line)
    {
        markerLine = number;
        marker = line;
        return !holdsDigit(line) || remark(endsEarly, "an end marker with a number: " + inQuotes(line), "the data end here");
    }

    bool behindMarker()
    {
        const std::string more = inQuotes(marker) + " ends the data, but there are more on line " + std::to_string(number);
        number = markerLine;
        remark(endsEarly, more, "they are left out");
        return false;
    }

    bool value(std::string_view line)
    {
        const Conversion x = asReal(line);
        return accept(x, line) && restOf(x, line);
    }

    /** x is read as by atof, which refuses nothing. */
    bool pair(std::string_view line)
    {
        const Separation separation = separationOf(line);
        const bool lacksFrequency = layout == Layout::angles && separation.separators == 1 && separation.endsLine;
        if ((separation.lacksField || lacksFrequency) && !lackingField(line)) return false;
        std::string_view rest = line;
        std::string_view field;
        if (!takeField(rest, field)) return true;
        const std::string_view xField = field;
        const bool hasY = takeField(rest, field);
        if (!firstOfPair(line, xField, hasY)) return false;
        if (!hasY) return layout != Layout::angles || noFrequency(line);
        const Conversion y = asReal(field);
        if (!accept(y, field) || !restOf(y, field)) return false;
        if (layout == Layout::angles && !frequency(std::strtod(std::string(y.used).c_str(), nullptr), line, field)) return false;
        return furtherFields(line, rest, "x and y");
    }

    /** The sample size of directions adds whole numbers, their mean does not. One above 0 makes all the data grouped. */
    bool frequency(double value, std::string_view line, std::string_view field)
    {
        if (value > 0.0 && countedLine == 0) {
            countedLine = number;
            if (uncountedLine != 0 &&
                !remark(countOfSome, "there is a frequency, and none in line " + std::to_string(uncountedLine) + ": " + inQuotes(line),
                        "that direction does not count"))
                return false;
        }
        return isCount(value) || remark(countThatIsNone, "a count is expected, not " + inQuotes(trimmed(field)),
                                        value < 0.0 ? "where the data are grouped it takes as many observations away"
                                                    : "the sample size leaves its fraction out, the mean does not");
    }

    bool noFrequency(std::string_view line)
    {
        if (uncountedLine == 0) uncountedLine = number;
        return countedLine == 0 ||
               remark(countOfSome, "there is no frequency, and one in line " + std::to_string(countedLine) + ": " + inQuotes(line),
                      "this direction does not count");
    }

    bool firstOfPair(std::string_view line, std::string_view field, bool hasY)
    {
        const Conversion x = asReal(field);
        const std::string asPair = "it is read as the pair (" + shown(trimmed(x.used)) + ", 0)";
        if (!hasY && isBlank(field)) return remark(blankPair, "the line holds only white space", "it is read as the pair (0, 0)");
        if (x.used.empty()) return remark(noNumber, "x is no number: " + inQuotes(field), "it is read as 0");
        if (x.outOfRange && std::isinf(std::strtod(std::string(field).c_str(), nullptr)))
            return remark(outOfRange, "x is too large a number: " + inQuotes(field), "it is read as infinite");
        const bool isDecimal = layout == Layout::angles && hasDecimalComma(x);  // an angle has no y
        if (!hasY && !isDecimal && holdsDigit(x.ignored))
            return remark(noSeparator, "x and y are separated by ':', ';' or '|' only: " + inQuotes(line), asPair);
        if (!hasY && layout != Layout::angles) return remark(noSecond, "there is no y: " + inQuotes(line), asPair);
        return restOf(x, field);
    }

    bool seriesLine(std::string_view line)
    {
        const Separation separation = separationOf(line);
        if ((separation.lacksField || (separation.endsLine && separation.separators < 3)) && !lackingField(line)) return false;
        std::string_view rest = line;
        std::string_view field;
        std::size_t fields = 0;
        for (; fields < 3 && takeField(rest, field); ++fields) {
            const Conversion taken = fields < 2 ? asReal(field) : asInt(field);
            if (!accept(taken, field) || !restOf(taken, field)) return false;
            if (fields == 2 && !repeatCount(taken.used)) return false;
        }
        if (fields == 1 && !remark(noSecond, "there is no y: " + inQuotes(line), "it is read as 0")) return false;
        countSeen = countSeen || fields == 3;
        if (fields > 0 && !countSeen &&
            !remark(noCount, "no line has named a repeat count yet: " + inQuotes(line), "this one adds nothing"))
            return false;
        return furtherFields(line, rest, "x, y and count");
    }

    bool repeatCount(std::string_view field)
    {
        return trimmed(field)[0] != '-' || std::atoi(std::string(field).c_str()) == 0 ||
               remark(countThatIsNone, "a count is expected, not " + inQuotes(trimmed(field)), "nothing is added");
    }

    // ---- parts of a line; false when reading ends with it

    /** @return whether the library takes the field; if not, reading stops. */
    bool accept(const Conversion& conversion, std::string_view field)
    {
        if (conversion.outOfRange) return stop("the number is out of range: " + inQuotes(field));
        if (conversion.used.empty()) return stop("a number is expected, not " + inQuotes(field));
        return true;
    }

    static bool hasDecimalComma(const Conversion& number)
    {
        return number.ignored.size() > 1 && number.ignored[0] == ',' && holdsDigit(number.ignored.substr(1, 1)) &&
               number.used.find('.') == std::string_view::npos;
    }

    /** Text behind a number is left out. */
    bool restOf(const Conversion& conversion, std::string_view field)
    {
        const std::string_view ignored = conversion.ignored;
        if (conversion.used.empty() || isBlank(ignored)) return true;
        const std::string only = "only " + inQuotes(trimmed(conversion.used)) + " is read";
        if (hasDecimalComma(conversion)) return remark(decimalComma, "a decimal comma: " + inQuotes(field), only);
        return remark(textBehind, "text behind a number: " + inQuotes(field), only);
    }

    bool furtherFields(std::string_view line, std::string_view rest, const char* wanted)
    {
        const auto isText = [](char c) {
            return whiteSpace.find(c) == std::string_view::npos && fieldSeparators.find(c) == std::string_view::npos;
        };
        if (std::none_of(rest.begin(), rest.end(), isText)) return true;
        return remark(furtherField, std::string("more than ") + wanted + ": " + inQuotes(line),
                      "only " + inQuotes(line.substr(0, line.size() - rest.size())) + " is read");
    }

    bool lackingField(std::string_view line) { return remark(emptyField, "an empty field: " + inQuotes(line), "it counts as none"); }

    // ---- what becomes of it

    bool stop(const std::string& reason)
    {
        result.stopLine = number;
        result.stopReason = reason;
        return false;
    }

    /** @param wrong with the line. @param consequence for how the library reads it. @return false when reading ends with it. */
    bool remark(Kind kind, const std::string& wrong, const std::string& consequence)
    {
        if (surprise == Surprise::stops) return stop(wrong);
        Seen& lines = seen[kind];
        if (lines.count == 0) lines.first = number;
        if (lines.last != number) ++lines.count;
        lines.last = number;
        if (lines.count <= shownPerKind)
            result.warnings.push_back(Sentence::name(name) + ":" + std::to_string(number) + ": warning: " + wrong +
                                      (consequence.empty() ? "" : ": " + consequence));
        return true;
    }

    std::string name;
    Layout layout;
    Surprise surprise;
    std::string begin;
    LineCheck result;
    std::array<Seen, kinds> seen{};
    std::size_t number = 0;
    std::size_t markerLine = 0;
    std::string marker;
    bool countSeen = false;
    std::size_t countedLine = 0;    // the first direction with a frequency above 0
    std::size_t uncountedLine = 0;  // the first one without any
    bool dataSeen = false;
};

/** Takes the next lines when nothing can be wrong with them, or the next one when nothing but its frequency can. */
bool takePlain(DataLines& lines, Layout layout, PlainLine& plain)
{
    std::array<double, 256> numbers;
    if (layout == Layout::values) return lines.takeNumbers(numbers.data(), numbers.size()) > 0;
    if (layout == Layout::series) return false;
    plain.text = lines.unread();
    const bool isTaken = lines.takePairs(numbers.data(), layout == Layout::angles ? 1 : numbers.size() / 2) > 0;
    if (isTaken) plain.y = numbers[1];
    return isTaken;
}

/** Writes the line so that it reads the same. */
bool write(const DataLines& lines, std::FILE* copy)
{
    const std::string_view line = lines.text();
    std::fwrite(line.data(), 1, line.size(), copy);
    std::fputc(lines.isCut() ? ' ' : '\n', copy);  // a blank makes it too long there, too
    return std::ferror(copy) == 0;
}

LineCheck wrapped(const std::string& wrapping)
{
    LineCheck result;
    result.stopLine = 1;
    result.stopReason =
        "this is " + wrapping + (wrapping == "gzip" ? ": unpack it" : ": convert it") + ", or name a column if it holds a table";
    return result;
}

}  // namespace

LineCheck checkLines(std::istream& source, const std::string& name, Layout layout, Surprise surprise, std::FILE* copy)
{
    DataLines lines(source, EndMarker::isData);
    Checker checker(name, layout, surprise, lines.unread());
    if (const std::string wrapping = wrappingOf(lines.unread()); !wrapping.empty()) return wrapped(wrapping);
    std::uint64_t reported = 0;
    PlainLine plain;
    for (;;) {
        if (lines.charactersRead() != reported) progress().advance(lines.charactersRead() - reported);
        reported = lines.charactersRead();
        if (copy == nullptr && checker.isBeforeMarker() && takePlain(lines, layout, plain)) {
            if (!checker.seePlain(plain, lines)) break;
            continue;
        }
        const bool isThere = lines.next();
        if (lines.zeroLine() != 0 && checker.isBeforeMarker()) {
            checker.seeZero(lines.zeroLine());
            break;
        }
        if (!isThere || !checker.see(lines)) break;
        if (copy != nullptr && checker.isBeforeMarker() && !write(lines, copy)) break;
    }
    return checker.findings();
}

}  // namespace wqstat
