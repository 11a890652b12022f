// What the library prints, as text: tests compare whole reports.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
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

// Sends standard output into a file for as long as it lives, whoever writes there.
class StandardOutputTo {
public:
    explicit StandardOutputTo(const std::string& path) : before(dup(STDOUT_FILENO))
    {
        std::fflush(stdout);
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(file, STDOUT_FILENO);
        close(file);
    }
    ~StandardOutputTo()
    {
        std::fflush(stdout);
        dup2(before, STDOUT_FILENO);
        close(before);
    }
    StandardOutputTo(const StandardOutputTo&) = delete;
    StandardOutputTo& operator=(const StandardOutputTo&) = delete;

private:
    int before;
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
