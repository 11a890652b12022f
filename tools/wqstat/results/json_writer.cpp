#include "json_writer.h"

#include "command_line/visible_text.h"
#include "numbers/fixed_notation.h"

#include <dragonbox/dragonbox.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>

namespace wqstat {

namespace {

/** In quotes. */
std::string jsonText(std::string_view text) { return nlohmann::json(asUtf8(text)).dump(); }

constexpr double leastPlain = 1e-4;
constexpr double firstNotPlain = 1e15;
constexpr std::size_t mostOfNumber = 40;

char* plainText(bool isNegative, std::uint64_t whole, std::uint64_t fraction, int decimals, char* to)
{
    if (isNegative) *to++ = '-';
    to = std::to_chars(to, to + mostOfNumber, whole).ptr;
    *to++ = '.';
    return wq_lib::detail::writeDigits(to, fraction, decimals);
}

/**
 * Writes a number of at most six decimals and fifteen digits, which are the shortest that tell it from every other: most data, and sums of
 * them, in a third of the time.
 * @param value 0, or from 0.0001 on.
 * @return the end; null for any other number.
 */
char* fewDecimals(double value, char* to)
{
    constexpr int decimals = 6;
    constexpr std::uint64_t scale = 1000000;
    constexpr double largest = 1e9;
    const double size = std::fabs(value);
    if (!(size < largest)) return nullptr;
    const auto scaled = static_cast<std::uint64_t>(size * scale + 0.5);
    if (static_cast<double>(scaled) / scale != size) return nullptr;
    char* end = plainText(std::signbit(value), scaled / scale, scaled % scale, decimals, to);
    while (end[-1] == '0' && end[-2] != '.') --end;
    return end;
}

/** Writes the fewest digits that tell a number from every other, and of those the nearest. @param value from 0.0001 on. @return the end */
char* fewestDigits(double value, char* to)
{
    using wq_lib::detail::powersOfTen;
    const auto shortest = jkj::dragonbox::to_decimal(value);  // in half the time of std::to_chars
    const bool isNegative = shortest.is_negative;
    const std::uint64_t digits = shortest.significand;
    if (shortest.exponent >= 0) return plainText(isNegative, digits * powersOfTen[static_cast<std::size_t>(shortest.exponent)], 0, 1, to);
    const int decimals = -shortest.exponent;
    const std::uint64_t one = decimals <= wq_lib::detail::mostZeros ? powersOfTen[static_cast<std::size_t>(decimals)] : UINT64_MAX;
    return plainText(isNegative, digits / one, digits % one, decimals, to);
}

/**
 * Writes the digits that tell the number from every other; with a point or an exponent, which many readers take for the mark of a real.
 * @return the end
 */
char* realText(double value, char* to)
{
    const double size = std::fabs(value);
    if (size != 0.0 && !(leastPlain <= size && size < firstNotPlain))
        return std::to_chars(to, to + mostOfNumber, value, std::chars_format::scientific).ptr;
    char* const end = fewDecimals(value, to);
    return end != nullptr ? end : fewestDigits(value, to);
}

}  // namespace

void JsonWriter::number(std::string_view name, double value)
{
    startMember(name);
    if (std::isfinite(value))
        advanceTo(realText(value, room(mostOfNumber)));
    else
        put(std::isnan(value) ? "\"NaN\"" : value > 0.0 ? "\"Inf\"" : "\"-Inf\"");
}

template <typename Integer>
void JsonWriter::integer(std::string_view name, Integer value)
{
    startMember(name);
    char* const to = room(mostOfNumber);
    advanceTo(std::to_chars(to, to + mostOfNumber, value).ptr);
}

void JsonWriter::whole(std::string_view name, unsigned long long value) { integer(name, value); }

void JsonWriter::whole(std::string_view name, long long value) { integer(name, value); }

void JsonWriter::truth(std::string_view name, bool value)
{
    startMember(name);
    put(value ? "true" : "false");
}

void JsonWriter::text(std::string_view name, std::string_view value)
{
    startMember(name);
    put(jsonText(value));
}

void JsonWriter::nothing(std::string_view name)
{
    startMember(name);
    put("null");
}

void JsonWriter::begin(std::string_view name, std::string_view bracket)
{
    startMember(name);
    put(bracket);
    ++depth;
    first = true;
}

void JsonWriter::end(std::string_view bracket)
{
    --depth;
    if (!first) advanceTo(startLine(room(mostOfLineStart)));
    put(bracket);
    first = false;
    if (depth > 0) return;
    put("\n");
    passOn();
}

void JsonWriter::startMember(std::string_view name)
{
    if (depth == 0) return;
    constexpr std::size_t marks = 5;  // , " " : and a blank
    char* to = room(marks + mostOfLineStart + name.size());
    if (!first) *to++ = ',';
    first = false;
    to = startLine(to);
    if (!name.empty()) {
        *to++ = '"';
        to = std::copy(name.begin(), name.end(), to);  // names are the program's own, without a character to escape
        *to++ = '"';
        *to++ = ':';
        *to++ = ' ';
    }
    advanceTo(to);
}

/** Copies all blanks that may be needed, of which those of the depth count: a copy of a fixed size is a few moves. */
char* JsonWriter::startLine(char* to) const
{
    static constexpr char deepLine[mostOfLineStart + 1] = "\n                    ";
    std::copy_n(deepLine, mostOfLineStart, to);
    return to + 1 + 2 * depth;
}

char* JsonWriter::room(std::size_t most)
{
    if (most > waiting.size() - used) passOn();
    return waiting.data() + used;
}

void JsonWriter::advanceTo(const char* end) { used = static_cast<std::size_t>(end - waiting.data()); }

void JsonWriter::put(std::string_view text)
{
    if (text.size() > waiting.size() - used) passOn();
    if (text.size() > waiting.size()) {
        output.write(text.data(), static_cast<std::streamsize>(text.size()));
        return;
    }
    text.copy(waiting.data() + used, text.size());
    used += text.size();
}

void JsonWriter::passOn()
{
    output.write(waiting.data(), static_cast<std::streamsize>(used));
    used = 0;
}

}  // namespace wqstat
