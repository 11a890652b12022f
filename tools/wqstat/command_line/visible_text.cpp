#include "visible_text.h"

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

/** How many bytes the character of more than one byte that the text begins with has; 0 without one. */
std::size_t longCharacter(std::string_view text)
{
    const auto byte = [text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned first = byte(0);
    if (first < 0xc2 || first > 0xf4) return 0;
    const std::size_t length = first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    unsigned code = first & (0x7fU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xbf) return 0;
        code = code << 6 | (byte(i) & 0x3fU);
    }
    const bool control = code < 0xa0;
    const bool tooLong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);  // a shorter form exists
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    return control || tooLong || surrogate || code > 0x10ffff || misleads(code) ? 0 : length;
}

}  // namespace

std::size_t printableLength(std::string_view text)
{
    if (text.empty()) return 0;
    return text[0] >= ' ' && text[0] <= '~' ? 1 : longCharacter(text);
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

std::string visible(std::string_view text)
{
    std::string line;
    while (!text.empty()) {
        const std::size_t length = printableLength(text);
        if (length == 0)
            line += escaped(text[0]);
        else
            line += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return line;
}

}  // namespace wqstat
