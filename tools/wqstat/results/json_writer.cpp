#include "json_writer.h"

#include "command_line/visible_text.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>

namespace wqstat {

namespace {

/** In quotes. */
std::string jsonText(std::string_view text) { return nlohmann::json(asUtf8(text)).dump(); }

/**
 * Writes a number, 0 or from 0.0001 on, of at most six decimals and fifteen digits, which are the shortest that tell it from every other: most data, and sums of
 * them, in a third of the time. @return the end; null for any other number.
 */
char* fewDecimals(double value, char* to)
{
    constexpr double scale = 1e6;
    constexpr double largest = 1e9;
    constexpr std::uint64_t wholeScale = 1000000;
    const double size = std::fabs(value);
    if (!(size < largest) || (size < 1e-4 && size != 0.0)) return nullptr;
    const auto scaled = static_cast<std::uint64_t>(size * scale + 0.5);
    if (static_cast<double>(scaled) / scale != size) return nullptr;
    if (std::signbit(value)) *to++ = '-';
    to = std::to_chars(to, to + 10, scaled / wholeScale).ptr;
    *to++ = '.';
    std::uint64_t rest = scaled % wholeScale;
    do {
        const std::uint64_t digit = rest / (wholeScale / 10);
        *to++ = static_cast<char>('0' + digit);
        rest = (rest - digit * (wholeScale / 10)) * 10;
    } while (rest > 0);
    return to;
}

/** The digits that tell the number from every other; with a point or an exponent, which many readers take for the mark of a real. */
std::string_view realText(double value, char (&buffer)[40])
{
    if (const char* const end = fewDecimals(value, buffer)) return {buffer, static_cast<std::size_t>(end - buffer)};
    const double size = std::fabs(value);
    const bool plain = value == 0.0 || (1e-4 <= size && size < 1e15);
    char* end =
        std::to_chars(buffer, buffer + sizeof buffer - 2, value, plain ? std::chars_format::fixed : std::chars_format::scientific).ptr;
    const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
    if (plain && text.find('.') == std::string_view::npos) {
        *end++ = '.';
        *end++ = '0';
    }
    return {buffer, static_cast<std::size_t>(end - buffer)};
}

}  // namespace

void JsonWriter::number(std::string_view name, double value)
{
    startMember(name);
    char buffer[40];
    if (std::isfinite(value))
        put(realText(value, buffer));
    else
        put(std::isnan(value) ? "\"NaN\"" : value > 0.0 ? "\"Inf\"" : "\"-Inf\"");
}

template <typename Integer>
void JsonWriter::integer(std::string_view name, Integer value)
{
    startMember(name);
    char buffer[24];
    put({buffer, static_cast<std::size_t>(std::to_chars(buffer, buffer + sizeof buffer, value).ptr - buffer)});
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
    if (!first) startLine();
    put(bracket);
    first = false;
    if (depth > 0) return;
    put("\n");
    passOn();
}

void JsonWriter::startMember(std::string_view name)
{
    if (depth == 0) return;
    if (!first) put(",");
    first = false;
    startLine();
    if (name.empty()) return;
    put("\"");
    put(name);  // names are the program's own, without a character to escape
    put("\": ");
}

void JsonWriter::startLine()
{
    constexpr std::string_view deepLine = "\n                    ";
    put(deepLine.substr(0, 1 + 2 * depth));
}

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
