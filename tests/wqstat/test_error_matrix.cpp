// Every command on everything that cannot be analysed: one line says why, the status is right, nothing is printed and nothing written.
#include "commands.h"
#include "feed.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace wq_test;

// The outputs a command can be asked for besides its report, with the files they go to.
struct OutputFiles {
    explicit OutputFiles(const TempFolder& folder) : exported(folder.path("export.tsv")), picture(folder.path("picture.svg")) {}

    Words asked(const Words& arguments) const
    {
        Words words{"--json", "--textbook", "--export", exported, "--plot", picture};
        const std::string& command = arguments.front();
        if (command == "variances") words.erase(words.begin() + 2, words.begin() + 4);     // has no export
        if (command == "pairs" || command == "frequency") words.erase(words.begin() + 1);  // no test, so no textbook
        words.insert(words.begin(), arguments.begin(), arguments.end());
        return words;
    }

    std::string exported;
    std::string picture;
};

// Runs a command plainly and with every output asked for: both times it ends as expected. No file appears, and one that stands there stays.
void expectFailure(const Words& arguments, const Outcome& expected, const std::function<Outcome(const Words&)>& runs)
{
    const TempFolder folder;
    const OutputFiles outputs(folder);
    EXPECT_EQ(runs(arguments), expected) << joined(arguments);
    const Words asked = outputs.asked(arguments);
    folder.write("picture.svg", "old");
    EXPECT_EQ(runs(asked), expected) << joined(asked);
    EXPECT_FALSE(std::filesystem::exists(outputs.exported)) << joined(asked);
    EXPECT_EQ(contentOf(outputs.picture), "old") << joined(asked);
}

// Every command on the file fails with the text.
void expectFailures(const std::string& file, const std::string& text)
{
    for (const AnalysisCommand& command : analyses)
        expectFailure(withFile(command.arguments, file), cannotAnalyse(text), [](const Words& words) { return run(words); });
}

// ---------------------------------------------------------------- no file

TEST(ErrorMatrix, noFileNamed)
{
    for (const AnalysisCommand& command : analyses) {
        Words arguments = withFile(command.arguments, shipped("cavendish.txt"));
        arguments.pop_back();
        const std::string missing = command.arguments.front() == "variances" ? "FILE2" : "FILE";
        expectFailure(arguments, refused(missing + " is required", arguments.front()), [](const Words& words) { return run(words); });
    }
}

TEST(ErrorMatrix, missingFile)
{
    const TempFolder folder;
    const std::string missing = folder.path("missing");
    const std::string empty = folder.write("empty", "");
    expectFailures(missing, missing + ": No such file or directory");
    expectFailures("", "'': No such file or directory");
    expectFailures(empty + "/file", empty + "/file: Not a directory");
}

TEST(ErrorMatrix, folder)
{
    const TempFolder folder;
    expectFailures(folder.path(""), folder.path("") + ": Is a directory");
}

// The administrator reads every file, so the program is run without that right.
TEST(ErrorMatrix, unreadableFile)
{
    const TempFolder folder;
    const std::string file = folder.write("locked", "1;2\n2;3\n4;5\n");
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    Words before;
    if (geteuid() == 0)
        before = {"setpriv", "--bounding-set", "-dac_override,-dac_read_search", WQSTAT};
    else
        before = {WQSTAT};
    const auto runs = [&before](const Words& words) {
        Words all = before;
        all.insert(all.end(), words.begin(), words.end());
        return runCommand(all);
    };
    if (runs({"--version"}).status != done) GTEST_SKIP() << "nothing takes the administrator's right to read everything away here";
    for (const AnalysisCommand& command : analyses)
        expectFailure(withFile(command.arguments, file), cannotAnalyse(file + ": Permission denied"), runs);
}

// ---------------------------------------------------------------- no data

TEST(ErrorMatrix, emptyFile)
{
    const TempFolder folder;
    const std::string file = folder.write("empty", "");
    expectFailures(file, file + ": no data");
    expectFailures("/dev/null", "/dev/null: no data");
    expectFailures("-", "standard input: no data");
}

TEST(ErrorMatrix, commentsOnly)
{
    const TempFolder folder;
    const std::string file = folder.write("comments", "# nothing\n\n# but # this\n");
    expectFailures(file, file + ": no data");
}

TEST(ErrorMatrix, tooFewObservations)
{
    const TempFolder folder;
    for (const AnalysisCommand& command : analyses) {
        std::string content;
        for (std::size_t n = 1; n < command.least; ++n) {
            content += command.goodLine + "\n";
            const std::string file = folder.write("data", content);
            expectFailure(withFile(command.arguments, file),
                          cannotAnalyse(file + ": " + (n == 1 ? "1 observation" : "2 observations") + ", at least " +
                                        std::to_string(command.least) + " are needed"),
                          [](const Words& words) { return run(words); });
        }
    }
}

// ---------------------------------------------------------------- bad data

// A file with a bad line in the middle, and what is wrong with it.
std::pair<std::string, std::string> withBadLine(const AnalysisCommand& command)
{
    const std::string good = command.goodLine + "\n";
    const std::string reason = command.badField == "1e999" ? "the number is out of range: '" : "a number is expected, not '";
    return {"# title\n\n" + good + good + good + command.badLine + "\n" + good + "worse;worse\n", ":6: " + reason + command.badField + "'"};
}

TEST(ErrorMatrix, badLineInTheMiddle)
{
    const TempFolder folder;
    for (const AnalysisCommand& command : analyses) {
        if (command.badField.empty()) continue;
        const auto [content, reason] = withBadLine(command);
        const std::string file = folder.write("data", content);
        expectFailure(withFile(command.arguments, file), cannotAnalyse(file + reason), [](const Words& words) { return run(words); });
    }
}

TEST(ErrorMatrix, badLineFromAPipe)
{
    for (const AnalysisCommand& command : analyses) {
        if (command.badField.empty()) continue;
        const TempFolder folder;
        const Feed pipe(folder);
        const auto [content, reason] = withBadLine(command);
        const std::string text = content;
        expectFailure(withFile(command.arguments, pipe.path()), cannotAnalyse(pipe.path() + reason), [&](const Words& words) {
            std::thread writer([&] { std::ofstream(pipe.path()) << text; });
            Outcome outcome = run(words);
            writer.join();
            return outcome;
        });
    }
}

TEST(ErrorMatrix, binaryFile)
{
    const TempFolder folder;
    const std::string program = folder.write("program", std::string("\x7f"
                                                                    "ELF\x02\x01\x01\0\0\0\n",
                                                                    11));
    expectFailures(program, program + ":1: there is a zero byte: this is no text file");
    const std::string archive = folder.write("archive", std::string("1;2;1\n2;3;1\n4;\0\x08\n", 17));  // proves to be one only later
    expectFailures(archive, archive + ":3: there is a zero byte: this is no text file");
}

}  // namespace
