// Keeps control sequences in the data from the terminal.
#pragma once

#include <memory>
#include <ostream>
#include <streambuf>

namespace wqstat {

/**
 * While it lives, what the stream writes is shown with its control characters and its bytes that are no text as \x1b and the like. Line
 * ends and tabs stay, as does a carriage return before a line end.
 */
class ShownOnTerminal {
public:
    explicit ShownOnTerminal(std::ostream& shown);
    ~ShownOnTerminal();
    ShownOnTerminal(const ShownOnTerminal&) = delete;
    ShownOnTerminal& operator=(const ShownOnTerminal&) = delete;

private:
    std::ostream& stream;
    std::streambuf* terminal;
    std::unique_ptr<std::streambuf> filter;
};

bool inputIsTerminal();
bool outputIsTerminal();
bool errorIsTerminal();

/** Whether the locale of the environment has UTF-8. */
bool showsUtf8();

/** Standard output and standard error, each filtered where it is a terminal; elsewhere every byte stays as it is. */
class TerminalStreams {
public:
    TerminalStreams();

private:
    std::unique_ptr<ShownOnTerminal> output;
    std::unique_ptr<ShownOnTerminal> errors;
};

}  // namespace wqstat
