#include <wq_udf/console.h>

#include <iostream>

namespace wq_lib {

namespace {

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
    write(std::cout, text);
    std::cout.flush();
}

void message(const std::string& text) { writeLine(std::cout, text); }

void errorMessage(const std::string& text) { writeLine(std::cerr, text); }

}  // namespace wq_lib
