// What a program writes to a terminal.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace wq_test {

// A terminal without anyone before it.
class Terminal {
public:
    Terminal() : master(posix_openpt(O_RDWR | O_NOCTTY))
    {
        if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) throw std::runtime_error("no terminal");
    }
    ~Terminal() { close(master); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    std::string path() const { return ptsname(master); }

    // Takes what was written, waiting for the first of it as long as that. Returns false when there was nothing.
    bool take(std::chrono::milliseconds wait)
    {
        pollfd waited{master, POLLIN, 0};
        char buffer[4096];
        if (poll(&waited, 1, static_cast<int>(wait.count())) <= 0) return false;
        const ssize_t count = read(master, buffer, sizeof buffer);
        if (count <= 0) return false;  // nobody has the terminal open any more
        written.append(buffer, static_cast<std::size_t>(count));
        return true;
    }

    // What is written from here on waits, as after Ctrl-S.
    void hold() const { type('\x13'); }
    void release() const { type('\x11'); }

    // All that was written since the beginning.
    const std::string& stream() const { return written; }

    // The lines as they stand there, without blanks at their ends.
    std::vector<std::string> screen() const
    {
        std::vector<std::string> lines(1);
        std::size_t column = 0;
        for (const char c : written) {
            std::string& line = lines.back();
            if (c == '\r') {
                column = 0;
            } else if (c == '\n') {
                lines.emplace_back();
            } else {
                if (line.size() <= column) line.resize(column + 1, ' ');
                line[column++] = c;
            }
        }
        for (std::string& line : lines) line.erase(line.find_last_not_of(' ') + 1);
        return lines;
    }

private:
    void type(char key) const
    {
        if (write(master, &key, 1) != 1) throw std::runtime_error("the terminal takes no key");
    }

    int master;
    std::string written;
};

}  // namespace wq_test
