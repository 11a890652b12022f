#include "terminal.h"

#include "visible_text.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <new>
#include <string>
#include <string_view>

#if defined(__unix__) || defined(__APPLE__)
#  include <langinfo.h>
#  include <locale.h>
#  include <unistd.h>
#endif

namespace wqstat {

namespace {

/** Passes text on to another buffer. What may still become a character, or a carriage return that ends a line, waits for the next bytes. */
class VisibleBuffer final : public std::streambuf {
public:
    explicit VisibleBuffer(std::streambuf* shown) : target(shown) {}

    /** Passes on what waits, as it is. @return false when a write failed. */
    bool finish() { return pass(true); }

private:
    int_type overflow(int_type character) override
    {
        if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
        const char byte = traits_type::to_char_type(character);
        return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
    }

    std::streamsize xsputn(const char* text, std::streamsize length) override
    {
        waiting.append(text, static_cast<std::size_t>(length));
        return pass(false) ? length : 0;
    }

    int sync() override { return target->pubsync(); }

    static bool stays(std::string_view text) { return text[0] == '\n' || text[0] == '\t' || text.substr(0, 2) == "\r\n"; }

    /** Whether more bytes could make a character of the text's begin. */
    static bool isUnfinished(std::string_view text)
    {
        if (text == "\r") return true;
        const auto first = static_cast<unsigned char>(text[0]);
        const std::size_t length = first < 0xc2 ? 1 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : first < 0xf5 ? 4 : 1;
        if (text.size() >= length) return false;
        return std::all_of(text.begin() + 1, text.end(), [](char byte) { return (byte & 0xc0) == 0x80; });
    }

    bool pass(bool all)
    {
        std::string shown;
        std::string_view rest = waiting;
        while (!rest.empty() && (all || !isUnfinished(rest))) {
            const std::size_t length = stays(rest) ? 1 : printableLength(rest);
            if (length == 0)
                shown += escaped(rest[0]);
            else
                shown += rest.substr(0, length);
            rest.remove_prefix(length == 0 ? 1 : length);
        }
        waiting.erase(0, waiting.size() - rest.size());
        return target->sputn(shown.data(), static_cast<std::streamsize>(shown.size())) == static_cast<std::streamsize>(shown.size());
    }

    std::streambuf* target;
    std::string waiting;
};

}  // namespace

#if defined(__unix__) || defined(__APPLE__)
bool inputIsTerminal() { return isatty(STDIN_FILENO) == 1; }
bool outputIsTerminal() { return isatty(STDOUT_FILENO) == 1; }
bool errorIsTerminal() { return isatty(STDERR_FILENO) == 1; }

bool showsUtf8()
{
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr) return false;
    const bool isUtf8 = std::string_view(nl_langinfo_l(CODESET, locale)) == "UTF-8";
    freelocale(locale);
    return isUtf8;
}
#else
bool inputIsTerminal() { return false; }
bool outputIsTerminal() { return false; }
bool errorIsTerminal() { return false; }
bool showsUtf8() { return false; }
#endif

ShownOnTerminal::ShownOnTerminal(std::ostream& shown)
    : stream(shown),
      terminal(shown.rdbuf()),
      filter(std::make_unique<VisibleBuffer>(terminal))
{
    stream.rdbuf(filter.get());
}

ShownOnTerminal::~ShownOnTerminal()
{
    try {
        static_cast<VisibleBuffer&>(*filter).finish();
    } catch (const std::bad_alloc&) {  // what waits is at most a part of a character
    }
    stream.rdbuf(terminal);
}

TerminalStreams::TerminalStreams()
{
    if (outputIsTerminal()) output = std::make_unique<ShownOnTerminal>(std::cout);
    if (errorIsTerminal()) errors = std::make_unique<ShownOnTerminal>(std::cerr);
}

}  // namespace wqstat
