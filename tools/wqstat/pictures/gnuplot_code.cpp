#include "gnuplot_code.h"

#include "command_line/arguments.h"
#include "command_line/visible_text.h"

#include <algorithm>
#include <iterator>

namespace wqstat {

namespace {

/** Three digits at most are read of an escape that does not begin with 0, so it may stand before a digit. */
constexpr struct {
    char character;
    const char* escape;
} escapes[] = {{'"', "\\\""}, {'\\', "\\\\"}, {'@', "\\100"}, {'`', "\\140"}, {'{', "\\173"}, {'}', "\\175"}};

std::string inGnuplotQuotes(std::string_view text)
{
    std::string quotes = "\"";
    for (const char c : visible(text)) {
        const auto escape = std::find_if(std::begin(escapes), std::end(escapes), [c](const auto& row) { return row.character == c; });
        if (escape == std::end(escapes))
            quotes += c;
        else
            quotes += escape->escape;
    }
    return quotes + "\"";
}

}  // namespace

GnuplotText quotedText(std::string_view text) { return GnuplotText(inGnuplotQuotes(text)); }

GnuplotText quotedTick(std::string_view text)
{
    std::string format;
    for (const char c : text) format += c == '%' ? "%%" : std::string(1, c);
    return quotedText(format);
}

GnuplotCode::GnuplotCode(double number) : code(shortest(number)) {}

}  // namespace wqstat
