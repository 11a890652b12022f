// What wqstat shows on a terminal while it works. The input is a pipe that the test feeds, so that the work lasts as long as it wants.
#include "feed.h"
#include "program.h"
#include "terminal.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace wq_test;
using namespace std::chrono_literals;

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
    const Outcome outcome = runUntilShown({"describe", "--lenient", "-"}, terminal, waiting, "6,5\n");
    EXPECT_EQ(outcome.status, 0);
    const std::vector<std::string> expected{"wqstat: standard input:3: warning: a decimal comma: '6,5': only '6' is read", ""};
    EXPECT_EQ(terminal.screen(), expected);
}

TEST(Progress, isShownWhileNumbersGoElsewhere)
{
    Terminal terminal;
    // A reader that waits lets the pipe between fill up, and the drawing with it.
    const std::string command =
        std::string("'" WQSTAT "' random --integers 100000 2>'") + terminal.path() + "' | (sleep 2; cat >/dev/null)";
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
