// What the library prints, as text: tests compare whole reports.
#pragma once

#include <iostream>
#include <sstream>
#include <string>
#include <utility>

namespace wq_test {

// Sends a stream into a text for as long as it lives.
class Capture {
public:
    explicit Capture(std::ostream& captured) : stream(captured), before(captured.rdbuf(buffer.rdbuf())) {}
    ~Capture() { stream.rdbuf(before); }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    std::string text() const { return buffer.str(); }

private:
    std::ostringstream buffer;
    std::ostream& stream;
    std::streambuf* before;
};

// What a call prints to standard output.
template <typename Call>
std::string printed(Call&& call)
{
    const Capture capture(std::cout);
    std::forward<Call>(call)();
    return capture.text();
}

// What a call prints to standard error.
template <typename Call>
std::string printedToError(Call&& call)
{
    const Capture capture(std::cerr);
    std::forward<Call>(call)();
    return capture.text();
}

}  // namespace wq_test
