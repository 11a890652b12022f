#include "json_writer.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>
#include <string>

namespace wqstat {

namespace {

void put(std::ostream& output, std::string_view text) { output.write(text.data(), static_cast<std::streamsize>(text.size())); }

/** In quotes. What is no UTF-8 becomes the replacement character. */
std::string escaped(std::string_view text) { return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace); }

/** The digits that tell the number from every other; with a point or an exponent, which many readers take for the mark of a real. */
std::string_view realText(double value, char (&buffer)[40])
{
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
        put(output, realText(value, buffer));
    else
        put(output, std::isnan(value) ? "\"NaN\"" : value > 0.0 ? "\"Inf\"" : "\"-Inf\"");
}

template <typename Integer>
void JsonWriter::integer(std::string_view name, Integer value)
{
    startMember(name);
    char buffer[24];
    put(output, {buffer, static_cast<std::size_t>(std::to_chars(buffer, buffer + sizeof buffer, value).ptr - buffer)});
}

void JsonWriter::whole(std::string_view name, unsigned long long value) { integer(name, value); }

void JsonWriter::whole(std::string_view name, long long value) { integer(name, value); }

void JsonWriter::truth(std::string_view name, bool value)
{
    startMember(name);
    put(output, value ? "true" : "false");
}

void JsonWriter::text(std::string_view name, std::string_view value)
{
    startMember(name);
    put(output, escaped(value));
}

void JsonWriter::nothing(std::string_view name)
{
    startMember(name);
    put(output, "null");
}

void JsonWriter::begin(std::string_view name, std::string_view bracket)
{
    startMember(name);
    put(output, bracket);
    ++depth;
    first = true;
}

void JsonWriter::end(std::string_view bracket)
{
    --depth;
    if (!first) startLine();
    put(output, bracket);
    first = false;
    if (depth == 0) output.put('\n');
}

void JsonWriter::startMember(std::string_view name)
{
    if (depth == 0) return;
    if (!first) output.put(',');
    first = false;
    startLine();
    if (name.empty()) return;
    output.put('"');
    put(output, name);  // names are the program's own, without a character to escape
    put(output, "\": ");
}

void JsonWriter::startLine()
{
    output.put('\n');
    for (std::size_t i = 0; i < depth; ++i) put(output, "  ");
}

}  // namespace wqstat
