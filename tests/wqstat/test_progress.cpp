// What wqstat shows on a terminal while it works. The input is a pipe that the test feeds, so that the work lasts as long as it wants.
#include "feed.h"
#include "program.h"

#include <gtest/gtest.h>

#include <poll.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace wq_test;
using namespace std::chrono_literals;

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
    int master;
    std::string written;
};

// Runs a command on a feed that stops in the middle until the terminal shows the text, and then gives the rest.
Outcome runUntilShown(const Words& arguments, Terminal& terminal, const std::string& text, const std::string& rest)
{
    const TempFolder folder;
    Feed feed(folder);
    Streams streams;
    streams.input = feed.path();
    streams.errors = terminal.path();
    auto outcome = std::async(std::launch::async, [&] { return run(arguments, streams); });
    feed.give("1\n2\n");
    for (int tries = 0; tries < 600 && terminal.stream().find(text) == std::string::npos; ++tries) terminal.take(100ms);
    EXPECT_NE(terminal.stream().find(text), std::string::npos) << "a minute passed; the terminal shows: " << terminal.stream();
    feed.give(rest);
    feed.end();
    while (outcome.wait_for(0s) != std::future_status::ready) terminal.take(50ms);
    while (terminal.take(0ms)) {
    }
    return outcome.get();
}

const std::string waiting = "wqstat: reading standard input, ";

TEST(Progress, isShownOnATerminalAndGoesWhenTheWorkIsDone)
{
    Terminal terminal;
    const Outcome outcome = runUntilShown({"describe", "-"}, terminal, waiting, "6\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("sample size     : 3\n"), std::string::npos);
    EXPECT_EQ(outcome.output.find("reading"), std::string::npos);
    EXPECT_EQ(terminal.screen(), std::vector<std::string>{""});
}

TEST(Progress, countsTheSeconds)
{
    Terminal terminal;
    EXPECT_EQ(runUntilShown({"describe", "-"}, terminal, waiting + "2 s", "6\n").status, 0);
}

TEST(Progress, givesWayToTheLineThatSaysWhyTheWorkFailed)
{
    Terminal terminal;
    const Outcome outcome = runUntilShown({"describe", "-"}, terminal, waiting, "six\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    const std::vector<std::string> expected{"wqstat: standard input:3: a number is expected, not 'six'", ""};
    EXPECT_EQ(terminal.screen(), expected);
}

TEST(Progress, givesWayToWarnings)
{
    Terminal terminal;
    const Outcome outcome = runUntilShown({"describe", "-"}, terminal, waiting, "6,5\n");
    EXPECT_EQ(outcome.status, 0);
    const std::vector<std::string> expected{"wqstat: standard input:3: warning: of '6,5' only '6' is read", ""};
    EXPECT_EQ(terminal.screen(), expected);
}

TEST(Progress, isShownWhileNumbersGoElsewhere)
{
    Terminal terminal;
    // A reader that waits lets the pipe between fill up, and the drawing with it.
    const std::string command = std::string("'" WQSTAT "' random --integers 100000 2>'") + terminal.path() + "' | (sleep 2; cat >/dev/null)";
    ASSERT_EQ(std::system(command.c_str()), 0);
    while (terminal.take(0ms)) {
    }
    EXPECT_NE(terminal.stream().find("drawing"), std::string::npos) << terminal.stream();
    EXPECT_EQ(terminal.screen(), std::vector<std::string>{""});
}

TEST(Progress, isNotShownWhereThereIsNoTerminal)
{
    const TempFolder folder;
    Feed feed(folder);
    Streams streams;
    streams.input = feed.path();
    auto outcome = std::async(std::launch::async, [&] { return run({"describe", "-"}, streams); });
    feed.give("1\n2\n");
    std::this_thread::sleep_for(1500ms);  // longer than progress takes to appear
    feed.give("6\n");
    feed.end();
    EXPECT_EQ(outcome.get().errors, "");
}

}  // namespace
