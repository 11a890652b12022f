#include "number_reading.h"

#include "from_chars.h"
#include "plain_decimal.h"
#include "white_space.h"

#include <algorithm>
#include <charconv>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
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

bool isDigit(char c) { return c >= '0' && c <= '9'; }

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
    std::string digits;  // without leading zeros
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
const char smallestNormalDigits[] = "2225073858507201259573821257020768020077017763406988739288376763"
                                    "3060133284174975706854063414603230542391082493220377160560112603"
                                    "0012402737719183479639276972143707899083653279890443184986473250"
                                    "4110467273084696977812028716236556967935895657351868202788722494";

/** Whether a decimal number that was converted to DBL_MIN is below what rounds to it at full precision. */
bool underflowsToSmallestNormal(std::string_view text) { return decimalOf(text).digits < smallestNormalDigits; }

LeadingNumber decimalNumber(std::string_view text)
{
    LeadingNumber number;
    const auto [end, error] = fromChars(text.data(), text.data() + text.size(), number.value);
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

/** The exponent of the last bit of a digit of a hexadecimal number. */
std::int64_t placeOf(std::size_t digit, std::string_view digits)
{
    const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
    const std::int64_t behind = static_cast<std::int64_t>(digit) - point;
    return -4 * (behind < 0 ? behind + 1 : behind);
}

/** Whether a hexadecimal number has bits that no subnormal double holds. */
bool exceedsSubnormals(std::string_view digits, std::int64_t exponent)
{
    const std::size_t last = digits.find_last_not_of("0.");
    int digit = 0;
    std::from_chars(&digits[last], &digits[last] + 1, digit, 16);
    int bit = 0;
    while ((digit >> bit) % 2 == 0) ++bit;
    return placeOf(last, digits) + bit + exponent < DBL_MIN_EXP - DBL_MANT_DIG;
}

/** Whether a hexadecimal number that was converted to a number up to DBL_MIN is below what rounds to DBL_MIN at full precision. */
bool isBelowNormals(std::string_view digits, std::int64_t exponent)
{
    constexpr int away = 200;  // of all subnormal numbers
    const std::string text = std::string(digits) + "p" + std::to_string(exponent + away);
    double value = 0.0;
    fromChars(text.data(), text.data() + text.size(), value, std::chars_format::hex);
    return value < std::ldexp(DBL_MIN, away);
}

/** Without the exponent of a hexadecimal number if it has no digit; GCC 12's std::from_chars takes one with two signs, such as p+-3. */
std::string_view withoutEmptyExponent(std::string_view text)
{
    const std::size_t mark = std::min(text.find_first_not_of("0123456789abcdefABCDEF."), text.size());
    if (at(text, mark) != 'p' && at(text, mark) != 'P') return text;
    const bool hasSign = at(text, mark + 1) == '+' || at(text, mark + 1) == '-';
    return isDigit(at(text, mark + (hasSign ? 2 : 1))) ? text : text.substr(0, mark);
}

/**
 * A hexadecimal number behind its prefix; not found without a digit. std::from_chars converts it; but it takes a subnormal result that was
 * rounded for a good one, where std::stod throws. That check is made here.
 */
LeadingNumber hexadecimalNumber(std::string_view text)
{
    LeadingNumber number;
    if (std::string_view("0123456789abcdefABCDEF.").find(at(text, 0)) == std::string_view::npos) return number;  // "inf", "nan", a sign
    text = withoutEmptyExponent(text);
    const auto [end, error] = fromChars(text.data(), text.data() + text.size(), number.value, std::chars_format::hex);
    if (error == std::errc::invalid_argument) return number;
    number.found = true;
    const std::string_view used = text.substr(0, static_cast<std::size_t>(end - text.data()));
    const std::string_view digits = used.substr(0, used.find_first_of("pP"));
    const std::int64_t exponent = digits.size() < used.size() ? exponentAt(used, digits.size() + 1) : 0;
    if (error == std::errc::result_out_of_range) {
        number.outOfRange = true;
        number.value = placeOf(digits.find_first_not_of("0."), digits) + exponent > 0 ? HUGE_VAL : 0.0;
    } else if (number.value != 0.0 && number.value <= DBL_MIN) {
        number.outOfRange = exceedsSubnormals(digits, exponent) && isBelowNormals(digits, exponent);
    }
    return number;
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

LeadingNumber leadingNumber(std::string_view text)
{
    text = trimmedInFront(text);
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
    text = trimmedInFront(text);
    if (at(text, 0) == '+' && at(text, 1) != '-') text.remove_prefix(1);
    int value = 0;
    const std::errc error = std::from_chars(text.data(), text.data() + text.size(), value).ec;
    if (error == std::errc::invalid_argument) throw std::invalid_argument("stoi");
    if (error == std::errc::result_out_of_range) throw std::out_of_range("stoi");
    return value;
}

}  // namespace wq_lib::detail
