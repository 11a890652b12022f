#include "from_chars.h"

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace wq_lib::detail {

namespace {

bool isDigit(char c, bool hexadecimal)
{
    return (c >= '0' && c <= '9') || (hexadecimal && ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F')));
}

/** Where digits with at most one point among them end; first when there is no digit. */
const char* endOfDigits(const char* first, const char* last, bool hexadecimal)
{
    bool digits = false;
    bool point = false;
    const char* c = first;
    for (; c != last && (isDigit(*c, hexadecimal) || (*c == '.' && !point)); ++c) {
        digits = digits || *c != '.';
        point = point || *c == '.';
    }
    return digits ? c : first;
}

/** Where an exponent ends; first when there is none, with a digit. */
const char* endOfExponent(const char* first, const char* last, bool hexadecimal)
{
    const char lower = hexadecimal ? 'p' : 'e';
    const char upper = hexadecimal ? 'P' : 'E';
    const char* c = first;
    if (c == last || (*c != lower && *c != upper)) return first;
    ++c;
    if (c != last && (*c == '-' || *c == '+')) ++c;
    const char* const digits = c;
    while (c != last && isDigit(*c, false)) ++c;
    return c == digits ? first : c;
}

/** Whether a text begins with a word of small letters, written in letters of any size. */
bool beginsWith(std::string_view text, std::string_view word)
{
    if (text.size() < word.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i)
        if (text[i] != word[i] && text[i] != static_cast<char>(word[i] - 'a' + 'A')) return false;
    return true;
}

/** Where "inf", "infinity", "nan" or "nan(...)" ends, with its value; first when there is none. */
const char* endOfWord(const char* first, const char* last, double& value)
{
    const std::string_view text(first, static_cast<std::size_t>(last - first));
    for (const std::string_view word : {"infinity", "inf"}) {
        if (!beginsWith(text, word)) continue;
        value = std::numeric_limits<double>::infinity();
        return first + word.size();
    }
    if (!beginsWith(text, "nan")) return first;
    value = std::numeric_limits<double>::quiet_NaN();
    const char* const behind = first + 3;
    if (behind == last || *behind != '(') return behind;
    const char* c = behind + 1;
    while (c != last && (isDigit(*c, false) || (*c >= 'a' && *c <= 'z') || (*c >= 'A' && *c <= 'Z') || *c == '_')) ++c;
    return c != last && *c == ')' ? c + 1 : behind;
}

}  // namespace

std::from_chars_result fromCharsByStrtod(const char* first, const char* last, double& value, std::chars_format format)
{
    const bool hexadecimal = format == std::chars_format::hex;
    const bool minus = first != last && *first == '-';
    const char* const number = minus ? first + 1 : first;

    double converted = 0.0;
    const char* end = endOfDigits(number, last, hexadecimal);
    if (end == number) {
        end = endOfWord(number, last, converted);
        if (end == number) return {first, std::errc::invalid_argument};
    } else {
        end = endOfExponent(end, last, hexadecimal);
        std::string text = (hexadecimal ? "0x" : "") + std::string(number, end);
        const std::size_t point = text.find('.');
        if (point != std::string::npos) text.replace(point, 1, std::localeconv()->decimal_point);  // strtod reads that of the host's locale
        const int before = errno;
        errno = 0;
        converted = std::strtod(text.c_str(), nullptr);
        const bool outOfRange = errno == ERANGE && (converted == 0.0 || std::isinf(converted));
        errno = before;
        if (outOfRange) return {end, std::errc::result_out_of_range};
    }
    value = minus ? -converted : converted;
    return {end, std::errc()};
}

}  // namespace wq_lib::detail
