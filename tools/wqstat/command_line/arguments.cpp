#include "arguments.h"

#include "failure.h"
#include "visible_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace wqstat {

namespace {

/** The number that the whole text is. */
template <typename Number>
Number wholeText(const std::string& text, const char* wanted)
{
    const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';  // from_chars takes no plus sign
    const char* const end = text.data() + text.size();
    Number number{};
    const auto [used, error] = std::from_chars(text.data() + (plus ? 1 : 0), end, number);
    if (error == std::errc::result_out_of_range) throw WrongUsage(inQuotes(text) + " is out of range");
    if (error != std::errc() || used != end) throw WrongUsage(inQuotes(text) + " is not " + wanted);
    return number;
}

}  // namespace

double realArgument(const std::string& text) { return wholeText<double>(text, "a number"); }

std::size_t countArgument(const std::string& text) { return wholeText<std::size_t>(text, "a whole number of 0 or more"); }

long integerArgument(const std::string& text) { return wholeText<long>(text, "a whole number"); }

bool flagArgument(const std::string& text)
{
    if (text == "1" || text == "true" || text == "one") return true;
    if (text == "0" || text == "false" || text == "two") return false;
    throw WrongUsage(inQuotes(text) + " is neither one-sided (1, true, one) nor two-sided (0, false, two)");
}

std::vector<std::string> commaSeparated(const std::string& text)
{
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t comma = text.find(','); comma != std::string::npos; comma = text.find(',', begin)) {
        parts.push_back(text.substr(begin, comma - begin));
        begin = comma + 1;
    }
    parts.push_back(text.substr(begin));
    return parts;
}

std::string shortest(double value)
{
    if (std::isnan(value)) return "nan";
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

std::string sixDigits(double value)
{
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 6).ptr};
}

std::string shown(std::string_view text, OtherBytes otherBytes)
{
    constexpr std::size_t longest = 200;
    std::size_t end = std::min(text.size(), longest);
    while (end < text.size() && end > longest - 3 && (text[end] & 0xc0) == 0x80) --end;  // not in the middle of a character
    return visible(text.substr(0, end), otherBytes) + (text.size() > longest ? "..." : "");
}

std::string counted(std::size_t n, const std::string& one) { return std::to_string(n) + " " + one + (n == 1 ? "" : "s"); }

std::string inQuotes(std::string_view text) { return "'" + shown(text) + "'"; }

}  // namespace wqstat
