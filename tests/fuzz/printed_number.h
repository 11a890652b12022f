// A number as std::printf writes it, however long.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace wq_fuzz {

inline std::string fixedText(double value, int decimals)
{
    std::string text(static_cast<std::size_t>(std::snprintf(nullptr, 0, "%.*f", decimals, value)), '\0');
    std::snprintf(text.data(), text.size() + 1, "%.*f", decimals, value);
    return text;
}

inline std::string generalText(double value, int digits)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    return text;
}

}  // namespace wq_fuzz
