#include "arguments.h"

#include "failure.h"

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

bool isPrintable(char c) { return c >= ' ' && c <= '~'; }

/** How many bytes the character of more than one byte that the text begins with has; 0 without one. */
std::size_t utf8Length(std::string_view text)
{
    const auto byte = [text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned first = byte(0);
    if (first < 0xc2 || first > 0xf4) return 0;
    const std::size_t length = first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    for (std::size_t i = 1; i < length; ++i)
        if (byte(i) < 0x80 || byte(i) > 0xbf) return 0;
    const bool control = first == 0xc2 && byte(1) < 0xa0;
    const bool tooLong = (first == 0xe0 && byte(1) < 0xa0) || (first == 0xf0 && byte(1) < 0x90);  // a shorter form exists
    const bool surrogate = first == 0xed && byte(1) > 0x9f;
    const bool beyondUnicode = first == 0xf4 && byte(1) > 0x8f;
    const bool unseen = first == 0xef && ((byte(1) == 0xbb && byte(2) == 0xbf) || (byte(1) == 0xbf && byte(2) > 0xbd));  // U+FEFF; none
    return control || tooLong || surrogate || beyondUnicode || unseen ? 0 : length;
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

std::string shown(std::string_view text)
{
    constexpr std::size_t longest = 200;
    std::size_t end = std::min(text.size(), longest);
    while (end < text.size() && end > longest - 3 && (text[end] & 0xc0) == 0x80) --end;  // not in the middle of a character
    const std::string_view begin = text.substr(0, end);
    std::string line;
    for (std::size_t i = 0; i < begin.size(); ++i) {
        const char c = begin[i];
        if (isPrintable(c)) {
            line += c;
        } else if (const std::size_t length = utf8Length(begin.substr(i)); length > 0) {
            line += begin.substr(i, length);
            i += length - 1;
        } else if (c == '\r') {
            line += "\\r";
        } else if (c == '\t') {
            line += "\\t";
        } else {
            const char* const digits = "0123456789abcdef";
            const auto byte = static_cast<unsigned char>(c);
            line += {'\\', 'x', digits[byte / 16], digits[byte % 16]};
        }
    }
    if (text.size() > longest) line += "...";
    return line;
}

std::string inQuotes(std::string_view text) { return "'" + shown(text) + "'"; }

}  // namespace wqstat
