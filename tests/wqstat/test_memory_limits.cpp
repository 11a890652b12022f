// Every command under every limit of memory between too little to begin and enough: it ends with one line and status 1.
#include "commands.h"
#include "data_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace wq_test;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool canBeLimited = false;  // a sanitizer needs more room for addresses than any limit gives
#elif defined(__has_feature)
constexpr bool canBeLimited = !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer);
#else
constexpr bool canBeLimited = true;
#endif

constexpr unsigned long step = 1024;  // KiB

Outcome runLimited(unsigned long limit, const Words& arguments)
{
    // The shell sets the limit last, so that it binds the program alone.
    return runCommand(with({"bash", "-c", "ulimit -v $0; exec \"$@\"", std::to_string(limit), wqstat()}, arguments));
}

// Whether the program was not even started: the system has no room for its libraries, which is not the program's to tell.
bool notStarted(const Outcome& outcome)
{
    const bool loaderGaveUp = outcome.status == 127 && outcome.output.empty();
    const bool noRoomForTheLoader = outcome.status == -1 && outcome.output.empty() && outcome.errors.empty();
    return loaderGaveUp || noRoomForTheLoader;
}

// Goes up from the smallest limit in steps until the command is done. @return how many limits made it fail.
int expectOneLineAtEveryLimit(const Words& arguments)
{
    int failures = 0;
    bool started = false;
    for (unsigned long limit = step; limit <= 1024 * step; limit += step) {
        const Outcome outcome = runLimited(limit, arguments);
        if (!started && notStarted(outcome)) continue;
        started = true;
        if (outcome.status == done) return failures;
        ++failures;
        EXPECT_EQ(outcome.status, couldNotAnalyse) << limit << " KiB" << joined(arguments) << "\n" << outcome.errors;
        EXPECT_EQ(outcome.errors.rfind("wqstat: ", 0), 0U) << limit << " KiB" << joined(arguments) << "\n" << outcome.errors;
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << limit << " KiB" << joined(arguments) << "\n"
                                                                                     << outcome.errors;
    }
    ADD_FAILURE() << "no limit is enough for" << joined(arguments);
    return failures;
}

// Lines of a command's own kind, enough of them to need some memory, in many groups or classes.
std::string manyLines(const AnalysisCommand& command)
{
    std::string text;
    const bool paired = command.goodLine.find_first_of(":;|") != std::string::npos;
    const bool counted = command.arguments.front() == "multiy";
    for (int i = 1; i <= 30000; ++i)
        text += std::to_string(i / 2 + 1) + (paired ? ";" + std::to_string(i % 977) : "") + (counted ? ";1" : "") + "\n";
    return text;
}

TEST(MemoryLimits, endEveryAnalysisWithOneLine)
{
    if (!canBeLimited) GTEST_SKIP();
    int failures = 0;
    for (const AnalysisCommand& command : analyses) {
        const TempFolder folder;
        Words plain = withFile(command.arguments, folder.write("data", manyLines(command)));
        if (plain.front() == "circular") plain = with(plain, {"--bins", "12"});
        failures += expectOneLineAtEveryLimit(plain);
        failures += expectOneLineAtEveryLimit(with(plain, {"--json"}));
        if (plain.front() != "pairs" && plain.front() != "frequency")
            failures += expectOneLineAtEveryLimit(with(plain, {"--json", "--textbook"}));
    }
    EXPECT_GT(failures, 50) << "the limits were not felt";
}

// The smallest limit, in KiB to the next step, under which a command is done.
unsigned long leastLimit(const Words& arguments)
{
    unsigned long tooLittle = 0;
    unsigned long enough = 1024 * step;
    while (enough - tooLittle > step) {
        const unsigned long limit = (tooLittle + enough) / 2;
        (runLimited(limit, arguments).status == done ? enough : tooLittle) = limit;
    }
    return enough;
}

TEST(MemoryLimits, ofADocumentOfManyGroupsAreNoMoreThanTwiceTheReports)
{
    if (!canBeLimited) GTEST_SKIP();
    const TempFolder folder;
    std::string pairs;
    for (int i = 0; i < 400000; ++i) pairs += std::to_string(i / 2) + ";" + std::to_string(i % 977) + "\n";
    const Words report = {"anova", folder.write("data", pairs)};
    const unsigned long limit = leastLimit(report);
    EXPECT_GT(limit, 32 * step) << "too little to compare";
    EXPECT_EQ(runLimited(2 * limit, with(report, {"--json"})).status, done);
    EXPECT_EQ(runLimited(2 * limit, with(report, {"--json", "--textbook"})).status, done);
}

// A number is kept of each row for a used column, which of a label is its number.
TEST(MemoryLimits, ofTablesAreTwiceTheNumbersKept)
{
    if (!canBeLimited) GTEST_SKIP();
    constexpr unsigned long rows = 1'000'000;
    const auto table = [](unsigned long n) {
        std::string text = "x,label,value\n";
        for (unsigned long i = 0; i < n; ++i)
            text += std::to_string(i) + ",s" + std::to_string(i % 1000) + "," + std::to_string(i * 7919 % 1'000'003) + "\n";
        return text;
    };
    const TempFolder folder;
    const std::string few = folder.write("few.csv", table(2000));
    const std::string many = folder.write("many.csv", table(rows));
    const struct {
        Words command;
        unsigned long used;  // columns
    } all[] = {{{"describe", "--column", "value"}, 1}, {{"anova", "--group", "label", "--value", "value"}, 2}};
    for (const auto& row : all) {
        const unsigned long kept = rows * row.used * sizeof(double) / 1024;
        const unsigned long limit = leastLimit(with(row.command, {few})) + 2 * kept;
        EXPECT_EQ(runLimited(limit, with(row.command, {many})).status, done) << joined(row.command);
    }
}

// As the manual says: 10^7 rows, none of which the program keeps, of which one column has as many different numbers and one as many labels.
TEST(MemoryLimits, ofColumnsHoldOnTenMillionRows)
{
    if (!canBeLimited) GTEST_SKIP();
    constexpr unsigned long limit = 256 * step;
    const std::string rows =
        "BEGIN { print \"x,label,group\"; for (i = 0; i < 10000000; ++i) print i * 7919 % 10000019 \",name \" i \",\" i % 7 }";
    const Outcome outcome = runCommand({"bash", "-c", "set -o pipefail; awk \"$0\" | { ulimit -v $1; exec \"$2\" columns --json; }", rows,
                                        std::to_string(limit), wqstat()});
    ASSERT_EQ(outcome.status, done) << outcome.errors;
    EXPECT_NE(outcome.output.find("\"rows\": 10000000"), std::string::npos);
}

TEST(MemoryLimits, endEverythingElseWithOneLine)
{
    if (!canBeLimited) GTEST_SKIP();
    const TempFolder folder;
    std::string rows = "part,value\n";
    for (int i = 0; i < 3000; ++i) rows += std::to_string(i % 100) + "," + std::to_string(i) + "\n";
    const std::string table = folder.write("table.csv", rows);
    for (const Words& arguments : std::vector<Words>{{"describe", "--column", "value", "--by", "part", table},
                                                     {"describe", "--column", "value", "--by", "part", "--tsv", table},
                                                     {"columns", table},
                                                     {"columns", "--html", folder.path("page.html"), table},
                                                     {"describe", "--json", data_files::cavendish, data_files::cavendish},
                                                     {"prob", "t_Prob", "2.5", "10", "two"},
                                                     {"prob", "quadratureIntegral", "exp", "0", "15"},
                                                     {"prob", "--list"},
                                                     {"random", "--reals", "100"},
                                                     {"--help"},
                                                     {"describe", "--help"},
                                                     {"--version"},
                                                     {"--generate", "man"},
                                                     {"--generate", "bash"},
                                                     {"--generate", "fish"},
                                                     {"--generate", "zsh"},
                                                     {"describe", data_files::cavendish, "--export", folder.path("export")},
                                                     {"describe", data_files::cavendish, "--plot", folder.path("plot.svg")}})
        expectOneLineAtEveryLimit(arguments);
}

// The limits between the last at which the libraries do not fit and the first at which the program begins, page by page.
TEST(MemoryLimits, thatHardlyLetTheProgramBeginEndItWithOneLine)
{
    if (!canBeLimited) GTEST_SKIP();
    unsigned long enough = step;
    while (enough < 1024 * step && notStarted(runLimited(enough, {"--version"}))) enough += step;
    int failures = 0;
    for (unsigned long limit = enough - step; limit <= enough + step; limit += 8) {
        const Outcome outcome = runLimited(limit, {"--version"});
        if (notStarted(outcome) || outcome.status == done) continue;
        ++failures;
        EXPECT_EQ(outcome, cannotAnalyse("there is not enough memory")) << limit << " KiB";
    }
    EXPECT_GT(failures, 0);
}

}  // namespace
