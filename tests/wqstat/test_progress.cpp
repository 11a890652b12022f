// What wqstat shows on a terminal while it works. The input is a pipe that the test feeds, so that the work lasts as long as it wants.
#include "feed.h"
#include "program.h"
#include "terminal.h"
#include "variable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace wq_test;
using namespace std::chrono_literals;

// Runs a command on a feed that stops in the middle until the terminal shows the text, and then gives the rest.
Outcome runUntilShown(const Words& arguments, Terminal& terminal, const std::string& text, const std::string& rest,
                      const std::string& begin = "1\n2\n")
{
    const TempFolder folder;
    Feed feed(folder);
    Streams streams;
    streams.input = feed.path();
    streams.errors = terminal.path();
    auto outcome = std::async(std::launch::async, [&] { return run(arguments, streams); });
    feed.give(begin);
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
        std::string("'" + wqstat() + "' random --integers 100000 2>'") + terminal.path() + "' | (sleep 2; cat >/dev/null)";
    ASSERT_EQ(std::system(command.c_str()), 0);
    while (terminal.take(0ms)) {
    }
    EXPECT_NE(terminal.stream().find("drawing"), std::string::npos) << terminal.stream();
    EXPECT_EQ(terminal.screen(), std::vector<std::string>{""});
}

// The first half of a packed table waits in the pipe, and is half a number.
TEST(Progress, isShownForPackedTablesFromAPipe)
{
    const TempFolder folder;
    const std::string table = folder.write("table.csv", "w\n1\n2\n6\n");
    ASSERT_EQ(runCommand({"gzip", "--keep", table}).status, 0);
    const std::string packed = contentOf(table + ".gz");
    Terminal terminal;
    const Outcome outcome =
        runUntilShown({"describe", "--column", "w", "-"}, terminal, waiting + "1 s", packed.substr(15), packed.substr(0, 15));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("sample size     : 3\n"), std::string::npos);
    EXPECT_EQ(terminal.screen(), std::vector<std::string>{""});
}

// ---------------------------------------------------------------- signals

// How a program ends that gets a signal after so many seconds, as the shell tells it: 128 and the signal's number. A test may have been
// started with signals ignored.
Outcome runInterrupted(const std::string& signal, const std::string& seconds, const Words& arguments, const Streams& streams)
{
    Words words{"env", "--default-signal", "timeout", "--preserve-status", "--signal", signal, seconds, wqstat()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runCommand(words, streams);
}

TEST(Interruption, leavesTheTerminalClean)
{
    const struct {
        const char* signal;
        int number;
    } rows[] = {{"INT", SIGINT}, {"TERM", SIGTERM}, {"HUP", SIGHUP}};
    for (const auto& row : rows) {
        const TempFolder folder;
        Feed feed(folder);
        Terminal terminal;
        Streams streams;
        streams.input = feed.path();
        streams.errors = terminal.path();
        auto outcome = std::async(std::launch::async, [&] { return runInterrupted(row.signal, "3", {"describe", "-"}, streams); });
        feed.give("1\n2\n");
        while (outcome.wait_for(0s) != std::future_status::ready) terminal.take(50ms);
        while (terminal.take(0ms)) {
        }
        EXPECT_EQ(outcome.get().status, 128 + row.number) << row.signal;
        EXPECT_NE(terminal.stream().find(waiting), std::string::npos) << row.signal << ": there was no line to take away";
        EXPECT_EQ(terminal.screen(), std::vector<std::string>{""}) << row.signal;
    }
}

TEST(Interruption, leavesNoUnfinishedFile)
{
    const TempFolder folder;
    const TempFolder programs;
    const std::string gnuplot =
        programs.write("gnuplot", "#!/bin/sh\nls -A '" + folder.path("") + "' >'" + programs.path("seen") + "'\nexec sleep 60\n");
    std::filesystem::permissions(gnuplot, std::filesystem::perms::owner_all);
    const std::string picture = folder.write("picture.svg", "old");
    const Variable path("PATH", programs.path("") + ":" + std::getenv("PATH"));
    const Outcome outcome = runInterrupted("INT", "2", {"describe", shipped("cavendish.txt"), "--plot", picture}, {});
    EXPECT_EQ(outcome.status, 128 + SIGINT);
    EXPECT_NE(contentOf(programs.path("seen")).find(".part\n"), std::string::npos) << "there was no file to remove";
    EXPECT_EQ(contentOf(picture), "old");
    const std::filesystem::directory_iterator files(folder.path(""));
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

// The terminal is held, so that the first signal is still at its work when the second comes.
TEST(Interruption, ofTwoSignalsLeavesNoUnfinishedFile)
{
    const TempFolder folder;
    const TempFolder programs;
    const std::string gnuplot = programs.write("gnuplot", "#!/bin/sh\nexec sleep 60\n");
    std::filesystem::permissions(gnuplot, std::filesystem::perms::owner_all);
    const Variable path("PATH", programs.path("") + ":" + std::getenv("PATH"));
    Terminal terminal;
    Streams streams;
    streams.errors = terminal.path();
    const std::string held = programs.path("held");
    const std::string twice = "env --default-signal \"$@\" & until [ -e \"$0\" ]; do sleep 0.05; done; "
                              "kill -INT $!; sleep 0.05; kill -INT $!; wait $!";
    auto outcome = std::async(std::launch::async, [&] {
        return runCommand({"bash", "-c", twice, held, WQSTAT, "describe", shipped("cavendish.txt"), "--plot", folder.path("picture.svg")},
                          streams);
    });
    for (int tries = 0; tries < 600 && terminal.stream().find("writing") == std::string::npos; ++tries) terminal.take(100ms);
    EXPECT_FALSE(std::filesystem::is_empty(folder.path(""))) << "there was no file to remove";
    terminal.hold();
    std::this_thread::sleep_for(500ms);  // the line is drawn anew in this time, and waits
    programs.write("held", "");
    std::this_thread::sleep_for(500ms);
    terminal.release();
    while (outcome.wait_for(0s) != std::future_status::ready) terminal.take(50ms);
    while (terminal.take(0ms)) {
    }
    EXPECT_EQ(outcome.get().status, 128 + SIGINT);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("")));
    EXPECT_EQ(terminal.screen(), std::vector<std::string>{""});
}

TEST(Interruption, staysIgnoredWhereItWas)
{
    const TempFolder folder;
    Feed feed(folder);
    Streams streams;
    streams.input = feed.path();
    const std::string ignoring = "trap '' HUP; (sleep 1; kill -HUP $$) & exec \"$0\" \"$@\"";
    auto outcome = std::async(std::launch::async, [&] { return runCommand({"bash", "-c", ignoring, wqstat(), "describe", "-"}, streams); });
    feed.give("1\n2\n");
    std::this_thread::sleep_for(2s);
    feed.give("6\n");
    feed.end();
    EXPECT_EQ(outcome.get().status, 0);
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
