// Numbers to text, with a point and without grouping, whatever the locale. Used by all three libraries.
#ifndef WQ_NUMBERS_NUMBER_TEXT_H
#define WQ_NUMBERS_NUMBER_TEXT_H

#include "fixed_notation.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <string>
#include <system_error>
#include <type_traits>

namespace wq_lib::detail {

/** Appends a double in the given notation with the given precision; every NaN as "nan". */
inline void appendNumber(std::string& text, double value, std::chars_format notation, int precision)
{
    if (std::isnan(value)) {
        text += "nan";
        return;
    }
    char buffer[384];  // the longest double in fixed notation has 309 digits before the point
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value, notation, precision);
    if (error == std::errc()) {
        text.append(buffer, end);
        return;
    }
    const std::size_t start = text.size();  // only a huge precision gets here
    text.resize(start + sizeof buffer + static_cast<std::size_t>(precision));
    char* const first = text.data() + start;
    text.resize(static_cast<std::size_t>(std::to_chars(first, text.data() + text.size(), value, notation, precision).ptr - text.data()));
}

/** Appends a double as a stream with default settings prints it: general notation, 6 significant digits. */
inline void appendGeneral(std::string& text, double value) { appendNumber(text, value, std::chars_format::general, 6); }

/** Appends a double in fixed notation with the given number of digits after the point; 6 when that is negative. */
inline void appendFixed(std::string& text, double value, int precision)
{
    if (precision >= 0 && precision <= mostFixedDecimals) {
        char buffer[longestFixedText];
        if (const char* const end = writeFixed(buffer, value, precision)) {
            text.append(buffer, static_cast<std::size_t>(end - buffer));
            return;
        }
    }
    appendNumber(text, value, std::chars_format::fixed, precision);
}

/** Appends a count or an index. */
template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
void appendInteger(std::string& text, Integer value)
{
    char buffer[24];
    text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

}  // namespace wq_lib::detail

#endif
