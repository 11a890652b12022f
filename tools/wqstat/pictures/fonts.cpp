#include "fonts.h"

#include "command_line/visible_text.h"

#include <fontconfig/fontconfig.h>

#include <cstddef>
#include <map>
#include <memory>

namespace wqstat {

namespace {

/** The code of a character of the given length in UTF-8, which is well-formed. */
FcChar32 codeOf(const std::string& text, std::size_t start, std::size_t length)
{
    FcChar32 code = static_cast<unsigned char>(text[start]) & (0x7fU >> length);
    for (std::size_t i = 1; i < length; ++i) code = code << 6 | (static_cast<unsigned char>(text[start + i]) & 0x3fU);
    return code;
}

bool someFontHas(FcChar32 code)
{
    const std::unique_ptr<FcCharSet, void (*)(FcCharSet*)> characters(FcCharSetCreate(), FcCharSetDestroy);
    const std::unique_ptr<FcPattern, void (*)(FcPattern*)> pattern(FcPatternCreate(), FcPatternDestroy);
    const std::unique_ptr<FcObjectSet, void (*)(FcObjectSet*)> wanted(FcObjectSetCreate(), FcObjectSetDestroy);
    FcCharSetAddChar(characters.get(), code);
    FcPatternAddCharSet(pattern.get(), FC_CHARSET, characters.get());
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    FcObjectSetAdd(wanted.get(), FC_FAMILY);
    const std::unique_ptr<FcFontSet, void (*)(FcFontSet*)> fonts(FcFontList(nullptr, pattern.get(), wanted.get()), FcFontSetDestroy);
    return fonts && fonts->nfont > 0;
}

}  // namespace

std::string drawable(const std::string& text)
{
    std::map<FcChar32, bool> known;
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = printableLength(std::string_view(text).substr(i));
        if (length <= 1) {  // ASCII, and the line ends between commands
            result += text[i++];
            continue;
        }
        const FcChar32 code = codeOf(text, i, length);
        if (known.find(code) == known.end()) known[code] = someFontHas(code);
        result += known[code] ? text.substr(i, length) : "?";
        i += length;
    }
    return result;
}

}  // namespace wqstat
