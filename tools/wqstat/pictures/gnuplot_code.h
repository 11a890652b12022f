// Commands for gnuplot, made so that a text from data or options stays a text, whatever it holds.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wqstat {

/** A text in gnuplot's double quotes. Only the functions below make one. */
class GnuplotText {
public:
    /** As it stands among the commands, with its quotes. */
    const std::string& source() const { return code; }

private:
    explicit GnuplotText(std::string quotes) : code(std::move(quotes)) {}
    friend GnuplotText quotedText(std::string_view text);

    std::string code;
};

/**
 * The text for labels, titles and keys, which have to be "noenhanced". What can be printed appears as it is, all else as visible() shows
 * it. What gnuplot replaces in its input before or while it reads a string (backticks, @macros, braces, escapes) is written as an escape.
 */
GnuplotText quotedText(std::string_view text);

/** The text for the ticks of an axis, where gnuplot takes '%' for the begin of a format. */
GnuplotText quotedTick(std::string_view text);

/** Commands. They are made of words that stand in this program's source, of numbers and of quoted texts, and of nothing else. */
class GnuplotCode {
public:
    GnuplotCode() = default;

    template <std::size_t Size>
    GnuplotCode(const char (&words)[Size]) : code(words, Size - 1)
    {
    }
    template <std::size_t Size>
    GnuplotCode(char (&words)[Size]) = delete;  // this one could be filled while the program runs

    GnuplotCode(const GnuplotText& text) : code(text.source()) {}
    GnuplotCode(double number);
    GnuplotCode(std::size_t number) : code(std::to_string(number)) {}

    GnuplotCode& operator+=(const GnuplotCode& more)
    {
        code += more.code;
        return *this;
    }

    bool isEmpty() const { return code.empty(); }
    const std::string& text() const { return code; }

private:
    std::string code;
};

inline GnuplotCode operator+(GnuplotCode begin, const GnuplotCode& end) { return begin += end; }

}  // namespace wqstat
