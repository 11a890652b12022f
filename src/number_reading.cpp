#include "number_reading.h"

#include "plain_decimal.h"

#include <charconv>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <system_error>

namespace wq_lib::detail {

namespace {

/** What a text begins with. */
struct LeadingNumber {
    bool found = false;
    bool outOfRange = false;  // the value was rounded to infinity, or to a number that is not normal
    double value = 0.0;
};

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

int hexDigit(char c)
{
    if (isDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

char at(std::string_view text, std::size_t i) { return i < text.size() ? text[i] : '\0'; }

/** The value of an exponent field such as "-12" at text[i], 0 without digits; kept small enough to calculate with. */
std::int64_t exponentAt(std::string_view text, std::size_t i)
{
    const bool minus = at(text, i) == '-';
    if (minus || at(text, i) == '+') ++i;
    std::int64_t exponent = 0;
    for (; isDigit(at(text, i)); ++i)
        if (exponent < 1'000'000'000) exponent = 10 * exponent + (text[i] - '0');
    return minus ? -exponent : exponent;
}

/** A decimal number as 0.ddd... times a power of ten. */
struct Decimal {
    std::string digits;        // without leading zeros
    std::int64_t exponent = 0;
};

Decimal decimalOf(std::string_view text)
{
    Decimal number;
    std::size_t i = 0;
    bool fraction = false;
    for (; isDigit(at(text, i)) || (at(text, i) == '.' && !fraction); ++i) {
        if (text[i] == '.') {
            fraction = true;
            continue;
        }
        if (!number.digits.empty() || text[i] != '0') number.digits += text[i];
        if (fraction && number.digits.empty()) --number.exponent;
        if (!fraction && !number.digits.empty()) ++number.exponent;
    }
    if (at(text, i) == 'e' || at(text, i) == 'E') number.exponent += exponentAt(text, i + 1);
    return number;
}

// 2^-1022 - 2^-1076, the smallest number that rounds to a normal double at full precision: the first of its 768 digits.
const char smallestNormalDigits[] =
    "2225073858507201259573821257020768020077017763406988739288376763"
    "3060133284174975706854063414603230542391082493220377160560112603"
    "0012402737719183479639276972143707899083653279890443184986473250"
    "4110467273084696977812028716236556967935895657351868202788722494";

/** Whether a decimal number that was converted to DBL_MIN is below what rounds to it at full precision. */
bool underflowsToSmallestNormal(std::string_view text) { return decimalOf(text).digits < smallestNormalDigits; }

LeadingNumber decimalNumber(std::string_view text)
{
    LeadingNumber number;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number.value);
    if (error == std::errc::invalid_argument) return number;
    number.found = true;
    const std::string_view used = text.substr(0, static_cast<std::size_t>(end - text.data()));
    if (error == std::errc::result_out_of_range) {
        number.outOfRange = true;
        number.value = decimalOf(used).exponent > 0 ? HUGE_VAL : 0.0;
    } else if (number.value < DBL_MIN) {  // a decimal number that is exactly subnormal has more digits than a line holds
        number.outOfRange = number.value != 0.0 || !decimalOf(used).digits.empty();
    } else if (number.value == DBL_MIN) {
        number.outOfRange = underflowsToSmallestNormal(used);
    }
    return number;
}

/** The value of bits times 2^exponent, rounded to even; more tells that digits not 0 were left out behind bits. */
LeadingNumber roundedBinary(std::uint64_t bits, std::int64_t exponent, bool more)
{
    LeadingNumber number;
    number.found = true;
    if (bits == 0) return number;
    while ((bits >> 62) == 0) {
        bits <<= 1;
        --exponent;
    }
    const std::int64_t leading = exponent + 62;  // the number lies between 2^leading and 2^(leading + 1)
    if (leading > DBL_MAX_EXP || leading < DBL_MIN_EXP - DBL_MANT_DIG - 1) {
        number.outOfRange = true;
        number.value = leading > 0 ? HUGE_VAL : 0.0;
        return number;
    }
    const auto rounded = [bits, more](int precision) {
        const int shift = 63 - precision;
        const std::uint64_t rest = bits & ((std::uint64_t{1} << shift) - 1);
        const std::uint64_t half = std::uint64_t{1} << (shift - 1);
        const std::uint64_t quotient = bits >> shift;
        const bool up = rest > half || (rest == half && (more || (quotient & 1) != 0));
        return quotient + (up ? 1 : 0);
    };
    const std::int64_t missing = DBL_MIN_EXP - 1 - leading;  // digits that a subnormal number lacks
    const int precision = missing > 0 ? static_cast<int>(DBL_MANT_DIG - missing) : DBL_MANT_DIG;
    const std::uint64_t significand = rounded(precision);
    const int scale = static_cast<int>(leading) - precision + 1;
    number.value = std::ldexp(static_cast<double>(significand), scale);
    const bool exact = !more && (significand << (63 - precision)) == bits;
    const bool tiny = missing > 0 && !(missing == 1 && rounded(DBL_MANT_DIG) >> DBL_MANT_DIG != 0);
    number.outOfRange = std::isinf(number.value) || (tiny && !exact);
    return number;
}

/** A hexadecimal number behind its prefix; not found without a digit. */
LeadingNumber hexadecimalNumber(std::string_view text)
{
    std::uint64_t bits = 0;
    std::int64_t exponent = 0;
    bool more = false;
    bool digits = false;
    bool fraction = false;
    std::size_t i = 0;
    for (; hexDigit(at(text, i)) >= 0 || (at(text, i) == '.' && !fraction); ++i) {
        if (text[i] == '.') {
            fraction = true;
            continue;
        }
        digits = true;
        if (fraction) exponent -= 4;
        if ((bits >> 58) == 0) {
            bits = (bits << 4) | static_cast<std::uint64_t>(hexDigit(text[i]));
        } else {
            exponent += 4;
            more = more || text[i] != '0';
        }
    }
    if (!digits) return {};
    if (at(text, i) == 'p' || at(text, i) == 'P') exponent += exponentAt(text, i + 1);
    return roundedBinary(bits, exponent, more);
}

/** A plain decimal of up to 19 digits; not found for any other number, and for the few that need a general conversion. */
LeadingNumber plainDecimal(std::string_view text)
{
    constexpr std::size_t longest = mostPlainDigits + 2;  // with its point and the character behind it
    char characters[longest + plainDecimalSlack] = {};
    text.copy(characters, longest);
    const PlainDecimal plain = scanPlainDecimal(characters);
    LeadingNumber number;
    const char next = *plain.end;
    if (!plain.isConvertible() || next == 'e' || next == 'E' || next == 'x' || next == 'X') return number;
    number.found = nearestDouble(plain, number.value);
    return number;
}

std::size_t spaces(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size() && isSpace(text[i])) ++i;
    return i;
}

LeadingNumber leadingNumber(std::string_view text)
{
    text.remove_prefix(spaces(text));
    const bool minus = at(text, 0) == '-';
    if (minus || at(text, 0) == '+') text.remove_prefix(1);
    if (at(text, 0) == '-') return {};  // from_chars would take a second sign

    LeadingNumber number = plainDecimal(text);
    if (!number.found && at(text, 0) == '0' && (at(text, 1) == 'x' || at(text, 1) == 'X')) number = hexadecimalNumber(text.substr(2));
    if (!number.found) number = decimalNumber(text);
    if (minus && number.found) number.value = -number.value;
    return number;
}

}  // namespace

double readDouble(std::string_view text)
{
    const LeadingNumber number = leadingNumber(text);
    if (!number.found) throw std::invalid_argument("stod");
    if (number.outOfRange) throw std::out_of_range("stod");
    return number.value;
}

double readDoubleOrZero(std::string_view text) { return leadingNumber(text).value; }

int readInt(std::string_view text)
{
    text.remove_prefix(spaces(text));
    if (at(text, 0) == '+' && at(text, 1) != '-') text.remove_prefix(1);
    int value = 0;
    const std::errc error = std::from_chars(text.data(), text.data() + text.size(), value).ec;
    if (error == std::errc::invalid_argument) throw std::invalid_argument("stoi");
    if (error == std::errc::result_out_of_range) throw std::out_of_range("stoi");
    return value;
}

}  // namespace wq_lib::detail
