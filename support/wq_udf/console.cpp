#include <wq_udf/console.h>

#include <iostream>

namespace wq_lib {

namespace {

/** Where this thread displays; nullptr for standard output. */
thread_local std::ostream* chosen = nullptr;

std::ostream& output() { return chosen != nullptr ? *chosen : std::cout; }

/** Unformatted, so that the stream's width, flags and locale do not matter. */
void write(std::ostream& stream, const std::string& text) { stream.write(text.data(), static_cast<std::streamsize>(text.size())); }

void writeLine(std::ostream& stream, const std::string& text)
{
    write(stream, text);
    if (text.empty() || text.back() != '\n') stream.put('\n');
    stream.flush();
}

}  // namespace

void display(const std::string& text)
{
    std::ostream& stream = output();
    write(stream, text);
    stream.flush();
}

void message(const std::string& text) { writeLine(output(), text); }

DisplayTo::DisplayTo(std::ostream& stream) : before(chosen) { chosen = &stream; }

DisplayTo::~DisplayTo() { chosen = before; }

void errorMessage(const std::string& text) { writeLine(std::cerr, text); }

}  // namespace wq_lib
