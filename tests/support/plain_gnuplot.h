// gnuplot's double-quoted strings, read in the plainest way; and a text as it should appear, by the table of the Unicode standard.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace wq_test {

// What gnuplot makes of a quoted text, or why it would not take it for one text and nothing else.
struct GnuplotString {
    std::string text;
    std::string problem;
};

// The whole source is one string: from its first quote to the first that no backslash precedes. Before gnuplot reads it, it replaces
// `commands` and @macros in the line and looks for { and }, none of which may stand there. \\ \" and \ooo stand for one byte; an escape
// that begins with 0 takes four digits.
inline GnuplotString readAsGnuplot(const std::string& source)
{
    GnuplotString result;
    if (source.size() < 2 || source.front() != '"') return {"", "no opening quote"};
    for (std::size_t i = 1; i < source.size(); ++i) {
        const char c = source[i];
        if (c == '"') return {result.text, i + 1 == source.size() ? "" : "the string ends too early"};
        if (c == '`' || c == '@' || c == '{' || c == '}') return {"", std::string("gnuplot acts on ") + c};
        if ((c >= 0 && c < ' ') || c == '\x7f') return {"", "a control character"};
        if (c != '\\') {
            result.text += c;
            continue;
        }
        const char next = ++i < source.size() ? source[i] : '\0';
        if (next == '\\' || next == '"') {
            result.text += next;
            continue;
        }
        if (next < '1' || next > '3') return {"", "another escape"};
        const std::string octal = source.substr(i, 3);
        if (octal.size() != 3 || octal.find_first_not_of("01234567") != std::string::npos) return {"", "another escape"};
        result.text += static_cast<char>(std::stoi(octal, nullptr, 8));
        i += 2;
    }
    return {"", "no closing quote"};
}

// A tick's text is a format: %% stands for %, and any other % would begin a number.
inline std::string printedAsFormat(const std::string& format)
{
    std::string text;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] == '%' && (++i == format.size() || format[i] != '%')) return "a number is printed by " + format;
        text += format[i];
    }
    return text;
}

// Well-formed characters: The Unicode Standard, table 3-7. Of them are left out what controls, ends lines, turns directions or is none.
inline std::size_t plainPrintable(const std::string& text, std::size_t start)
{
    static const struct {
        unsigned first[2];
        unsigned rest[3][2];
        std::size_t length;
    } table[] = {
        {{0x20, 0x7e}, {}, 1},
        {{0xc2, 0xc2}, {{0xa0, 0xbf}}, 2},  // without U+0080 ... U+009F
        {{0xc3, 0xdf}, {{0x80, 0xbf}}, 2},
        {{0xe0, 0xe0}, {{0xa0, 0xbf}, {0x80, 0xbf}}, 3},
        {{0xe1, 0xec}, {{0x80, 0xbf}, {0x80, 0xbf}}, 3},
        {{0xed, 0xed}, {{0x80, 0x9f}, {0x80, 0xbf}}, 3},
        {{0xee, 0xef}, {{0x80, 0xbf}, {0x80, 0xbf}}, 3},
        {{0xf0, 0xf0}, {{0x90, 0xbf}, {0x80, 0xbf}, {0x80, 0xbf}}, 4},
        {{0xf1, 0xf3}, {{0x80, 0xbf}, {0x80, 0xbf}, {0x80, 0xbf}}, 4},
        {{0xf4, 0xf4}, {{0x80, 0x8f}, {0x80, 0xbf}, {0x80, 0xbf}}, 4},
    };
    static const unsigned none[][4][2] = {
        // clang-format off
        {{0xd8, 0xd8}, {0x9c, 0x9c}, {0x00, 0xff}, {0x00, 0xff}},  // U+061C
        {{0xe2, 0xe2}, {0x80, 0x80}, {0x8b, 0x8f}, {0x00, 0xff}},  // U+200B ... 200F
        {{0xe2, 0xe2}, {0x80, 0x80}, {0xa8, 0xae}, {0x00, 0xff}},  // U+2028 ... 202E
        {{0xe2, 0xe2}, {0x81, 0x81}, {0xa0, 0xaf}, {0x00, 0xff}},  // U+2060 ... 206F
        {{0xef, 0xef}, {0xb7, 0xb7}, {0x90, 0xaf}, {0x00, 0xff}},  // U+FDD0 ... FDEF
        {{0xef, 0xef}, {0xbb, 0xbb}, {0xbf, 0xbf}, {0x00, 0xff}},  // U+FEFF
        {{0xef, 0xef}, {0xbf, 0xbf}, {0xbe, 0xbf}, {0x00, 0xff}},  // U+FFFE, FFFF
        {{0xf3, 0xf3}, {0xa0, 0xa0}, {0x80, 0x81}, {0x80, 0xbf}},  // U+E0000 ... E007F
        {{0xf0, 0xf4}, {0x8f, 0x8f}, {0xbf, 0xbf}, {0xbe, 0xbf}},  // the last two of each plane
        {{0xf0, 0xf4}, {0x9f, 0x9f}, {0xbf, 0xbf}, {0xbe, 0xbf}},
        {{0xf0, 0xf4}, {0xaf, 0xaf}, {0xbf, 0xbf}, {0xbe, 0xbf}},
        {{0xf0, 0xf4}, {0xbf, 0xbf}, {0xbf, 0xbf}, {0xbe, 0xbf}},
        // clang-format on
    };
    const auto within = [&](std::size_t i, const unsigned(&range)[2]) {
        const unsigned byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
        return range[0] <= byte && byte <= range[1];
    };
    for (const auto& row : none)
        if (within(start, row[0]) && within(start + 1, row[1]) && within(start + 2, row[2]) && within(start + 3, row[3])) return 0;
    for (const auto& row : table) {
        bool matches = within(start, row.first);
        for (std::size_t i = 1; i < row.length; ++i) matches = matches && within(start + i, row.rest[i - 1]);
        if (matches) return row.length;
    }
    return 0;
}

inline std::string plainVisible(const std::string& text)
{
    std::string shown;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = plainPrintable(text, i);
        if (length > 0) {
            shown += text.substr(i, length);
            i += length;
            continue;
        }
        const unsigned char byte = static_cast<unsigned char>(text[i++]);
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02x", byte);
        shown += byte == '\r' ? "\\r" : byte == '\t' ? "\\t" : escape;
    }
    return shown;
}

}  // namespace wq_test
