#include "visible_text.h"

#include <algorithm>

namespace wqstat {

namespace {

/** What ends a line, reorders the text around it, or is not seen at all, so that different texts look alike. */
bool misleads(unsigned code)
{
    constexpr struct {
        unsigned first;
        unsigned last;
    } ranges[] = {
        {0x061c, 0x061c},    // a mark of direction
        {0x200b, 0x200f},    // without width, joiners, marks of direction
        {0x2028, 0x202e},    // ends of lines and paragraphs, embedding of directions
        {0x2060, 0x206f},    // a joiner, unseen operators, isolation of directions
        {0xfdd0, 0xfdef},    // no characters
        {0xfeff, 0xfeff},    // a byte order mark
        {0xe0000, 0xe007f},  // tags
    };
    for (const auto& range : ranges)
        if (code >= range.first && code <= range.last) return true;
    return (code & 0xfffeU) == 0xfffeU;  // the last two of each plane are no characters
}

struct Character {
    std::size_t length = 0;
    unsigned code = 0;
};

/** The character of more than one byte that the text begins with; of length 0 without one. */
Character longCharacter(std::string_view text)
{
    const auto byte = [text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned first = byte(0);
    if (first < 0xc2 || first > 0xf4) return {};
    const std::size_t length = first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    unsigned code = first & (0x7fU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xbf) return {};
        code = code << 6 | (byte(i) & 0x3fU);
    }
    const bool tooLong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);  // a shorter form exists
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    return tooLong || surrogate || code > 0x10ffff ? Character{} : Character{length, code};
}

/** No character of UTF-8, not even of one byte. */
bool isOtherByte(std::string_view text) { return static_cast<unsigned char>(text[0]) >= 0x80 && longCharacter(text).length == 0; }

}  // namespace

std::size_t printableLength(std::string_view text)
{
    if (text.empty()) return 0;
    if (text[0] >= ' ' && text[0] <= '~') return 1;
    const Character character = longCharacter(text);
    const bool control = character.code < 0xa0;
    return control || misleads(character.code) ? 0 : character.length;
}

std::string escaped(char byte)
{
    switch (byte) {
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    constexpr const char* digits = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(byte);
    return {'\\', 'x', digits[value / 16], digits[value % 16]};
}

std::string visible(std::string_view text, OtherBytes otherBytes)
{
    std::string line;
    while (!text.empty()) {
        const bool stays = otherBytes == OtherBytes::kept && isOtherByte(text);
        const std::size_t length = stays ? 1 : printableLength(text);
        const std::size_t taken = length != 0 ? length : std::max<std::size_t>(1, longCharacter(text).length);
        for (const char byte : text.substr(0, taken)) line += length == 0 ? escaped(byte) : std::string(1, byte);
        text.remove_prefix(taken);
    }
    return line;
}

std::string asUtf8(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        const std::size_t length = std::max<std::size_t>(1, longCharacter(text).length);
        if (isOtherByte(text))
            result += escaped(text[0]);
        else
            result += text.substr(0, length);
        text.remove_prefix(length);
    }
    return result;
}

}  // namespace wqstat
