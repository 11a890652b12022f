#include "line_check.h"

#include "arguments.h"
#include "progress.h"

#include <stdexcept>

namespace wqstat {

namespace {

constexpr std::string_view whiteSpace = " \t\n\v\f\r";
constexpr std::string_view digits = "0123456789";
constexpr const char* noText = "there is a zero byte: this is no text file";
constexpr std::size_t shownPerKind = 3;
constexpr std::size_t progressStep = 1 << 16;

/** The ways in which a line may be read that its author hardly meant. */
enum Kind : std::size_t { blankPair, noNumber, blankSeparator, noSecond, restIgnored, noCount, kinds };

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

class Checker {
public:
    Checker(const std::string& fileName, Layout fileLayout) : name(fileName), layout(fileLayout) {}

    /** Looks at one line. @return false when reading ends here. */
    bool see(const DataLines& lines)
    {
        number = lines.number();
        const std::string_view line = lines.text();
        if (line.find('\0') != std::string_view::npos) return stop(noText);
        if (lines.isCut()) result.cutLine = number;
        if (line.empty() || line.find('#') != std::string_view::npos) return true;
        if (layout != Layout::series && line.substr(0, 2) == "<<") {
            result.cutLine = 0;
            return false;
        }
        switch (layout) {
        case Layout::values: return value(line);
        case Layout::pairs:
        case Layout::angles: return pair(line);
        case Layout::series: return seriesLine(line);
        }
        return true;
    }

    /** Behind a line that is cut nothing is read; but a file that is no text may have had no other line. */
    void seeBehindCut(std::istream& source)
    {
        if (result.cutLine == 0) return;
        source.clear();
        std::array<char, 1 << 16> rest;
        source.read(rest.data(), rest.size());
        if (std::string_view(rest.data(), static_cast<std::size_t>(source.gcount())).find('\0') != std::string_view::npos) stop(noText);
    }

    LineCheck findings()
    {
        result.lacksCounts = seen[noCount].count > 0 && !countSeen;
        if (result.cutLine != 0) warn(result.cutLine, "the line is longer than 254 characters: it is cut there, and reading ends with it");
        for (const Seen& kind : seen)
            if (kind.count > shownPerKind)
                result.warnings.push_back(name + ": warning: " + std::to_string(kind.count - shownPerKind) + " more lines like line " +
                                          std::to_string(kind.first));
        return result;
    }

private:
    struct Seen {
        std::size_t count = 0;
        std::size_t first = 0;
    };

    bool value(std::string_view line)
    {
        const Conversion x = asReal(line);
        remarkIgnored(x, line);
        return accept(x, line);
    }

    /** x is read as by atof, which refuses nothing. */
    bool pair(std::string_view line)
    {
        std::string_view rest = line;
        std::string_view field;
        if (!takeField(rest, field)) return true;
        const std::string_view xField = field;
        const Conversion x = asReal(xField);
        const bool hasY = takeField(rest, field);
        if (!hasY && isBlank(xField)) {
            remark(blankPair, "the line holds only white space and is read as the pair (0, 0)");
        } else if (x.used.empty()) {
            remark(noNumber, "x is no number and read as 0: " + inQuotes(xField));
        } else if (!hasY && holdsDigit(x.ignored)) {
            remark(blankSeparator, "x and y are separated by ':', ';' or '|' only: " + inQuotes(line) + " is read as the pair (" +
                                       shown(trimmed(x.used)) + ", 0)");
        } else if (!hasY && layout != Layout::angles) {
            remark(noSecond, "there is no y: " + inQuotes(line) + " is read as the pair (" + shown(trimmed(x.used)) + ", 0)");
        } else {
            remarkIgnored(x, xField);
        }
        if (!hasY) return true;
        const Conversion y = asReal(field);
        remarkIgnored(y, field);
        remarkFurtherFields(line, rest);
        return accept(y, field);
    }

    bool seriesLine(std::string_view line)
    {
        std::string_view rest = line;
        std::string_view field;
        std::size_t fields = 0;
        for (; fields < 3 && takeField(rest, field); ++fields) {
            const Conversion taken = fields < 2 ? asReal(field) : asInt(field);
            remarkIgnored(taken, field);
            if (!accept(taken, field)) return false;
        }
        countSeen = countSeen || fields == 3;
        if (fields > 0 && !countSeen) remark(noCount, "no line has named a repeat count yet: this one adds nothing");
        remarkFurtherFields(line, rest);
        return true;
    }

    /** @return whether the library takes the field; if not, reading stops. */
    bool accept(const Conversion& conversion, std::string_view field)
    {
        if (conversion.outOfRange) return stop("the number is out of range: " + inQuotes(field));
        if (conversion.used.empty()) return stop("a number is expected, not " + inQuotes(field));
        return true;
    }

    bool stop(const std::string& reason)
    {
        result.stopLine = number;
        result.stopReason = reason;
        return false;
    }

    /** Text behind a number is left out; where it holds digits, that is hardly meant. */
    void remarkIgnored(const Conversion& conversion, std::string_view field)
    {
        if (!conversion.used.empty() && holdsDigit(conversion.ignored))
            remark(restIgnored, "of " + inQuotes(field) + " only " + inQuotes(trimmed(conversion.used)) + " is read");
    }

    void remarkFurtherFields(std::string_view line, std::string_view rest)
    {
        if (holdsDigit(rest))
            remark(restIgnored, "of " + inQuotes(line) + " only " + inQuotes(line.substr(0, line.size() - rest.size())) + " is read");
    }

    void remark(Kind kind, const std::string& text)
    {
        if (seen[kind].count == 0) seen[kind].first = number;
        if (seen[kind].count++ < shownPerKind) warn(number, text);
    }

    void warn(std::size_t line, const std::string& text)
    {
        result.warnings.push_back(name + ":" + std::to_string(line) + ": warning: " + text);
    }

    static std::string_view trimmed(std::string_view text)
    {
        const std::size_t begin = text.find_first_not_of(whiteSpace);
        return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
    }

    /** Takes the next field off a line; any run of the three delimiters stands between fields. */
    static bool takeField(std::string_view& rest, std::string_view& field)
    {
        constexpr std::string_view delimiters = ":;|";
        const std::size_t begin = rest.find_first_not_of(delimiters);
        if (begin == std::string_view::npos) return false;
        rest.remove_prefix(begin);
        field = rest.substr(0, rest.find_first_of(delimiters));
        rest.remove_prefix(field.size());
        return true;
    }

    std::string name;
    Layout layout;
    LineCheck result;
    std::array<Seen, kinds> seen{};
    std::size_t number = 0;
    bool countSeen = false;
};

}  // namespace

bool DataLines::next()
{
    if (!source || cut) return false;
    source.getline(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    const auto taken = static_cast<std::size_t>(source.gcount());
    ended = !source.fail() && !source.eof();
    cut = source.rdstate() == std::ios_base::failbit && taken == buffer.size() - 1;
    length = ended ? taken - 1 : taken;
    ++count;
    return length > 0 || ended;
}

bool DataLines::writeTo(std::FILE* file) const
{
    std::fwrite(buffer.data(), 1, length, file);
    if (ended) std::fputc('\n', file);
    if (cut) std::fputc(' ', file);  // too long there, too
    return std::ferror(file) == 0;
}

LineCheck checkLines(std::istream& source, const std::string& name, Layout layout, std::FILE* copy)
{
    DataLines lines(source);
    Checker checker(name, layout);
    bool goOn = true;
    std::size_t seen = 0;
    while (goOn && lines.next()) {
        goOn = checker.see(lines);
        seen += lines.text().size() + 1;
        if (seen >= progressStep) {
            progress().advance(seen);
            seen = 0;
        }
        if (copy != nullptr) goOn = lines.writeTo(copy) && goOn;
    }
    if (copy == nullptr) checker.seeBehindCut(source);  // a pipe might have nothing more for a long time
    return checker.findings();
}

}  // namespace wqstat
