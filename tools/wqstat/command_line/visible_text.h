// Foreign text made fit to be shown: on a terminal, in a message, in a picture.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wqstat {

/**
 * How many bytes the first character of the text has, in UTF-8; 0 where it begins with none that can be shown: a control character, the end
 * of a line, a mark that turns the direction of all that follows, or bytes that are no character.
 */
std::size_t printableLength(std::string_view text);

/** A byte for people to read: \r, \t or \x1b. */
std::string escaped(char byte);

/** Bytes that are no UTF-8, as texts in other encodings have them. */
enum class OtherBytes { escaped, kept };

/** The text with the bytes that cannot be shown escaped; all others stay. It may be shown a second time without a change. */
std::string visible(std::string_view text, OtherBytes otherBytes = OtherBytes::escaped);

/** The text as UTF-8: bytes that are none are escaped. All else stays, line ends and control characters too. */
std::string asUtf8(std::string_view text);

}  // namespace wqstat
