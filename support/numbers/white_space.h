// What counts as white space, as for isspace in the "C" locale.
#ifndef WQ_NUMBERS_WHITE_SPACE_H
#define WQ_NUMBERS_WHITE_SPACE_H

#include <cstddef>
#include <string_view>

namespace wq_lib::detail {

inline constexpr std::string_view whiteSpace = " \t\n\v\f\r";

/** A text without the white space before it. */
inline std::string_view trimmedInFront(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(whiteSpace);
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

/** A text without the white space before and behind it. */
inline std::string_view trimmed(std::string_view text)
{
    text = trimmedInFront(text);
    return text.substr(0, text.find_last_not_of(whiteSpace) + 1);
}

}  // namespace wq_lib::detail

#endif
