// The command-line host: what each command prints, what it says about bad input, and how it ends.
#include "commands.h"
#include "data_files.h"

#include "support/bits.h"
#include "support/console.h"
#include "support/table.h"

#include <wq_stat/wq_stat.h>

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using namespace wq_test;
using namespace wq_test::data_files;

Outcome printedOnly(const std::string& output) { return {done, output, ""}; }

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t i = text.find(from); i != std::string::npos; i = text.find(from, i + to.size())) text.replace(i, from.size(), to);
    return text;
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// ---------------------------------------------------------------- reports

// An analysis as a host of the library runs it, with the report at the end.
template <typename Analysis, typename Prepare>
auto reportOf(const std::string& file, Prepare prepare)
{
    return [file, prepare] {
        Analysis analysis;
        analysis.readDataFile(file);
        prepare(analysis);
        analysis.reportConsole();
    };
}

template <typename Analysis>
auto reportOf(const std::string& file, double alpha = 0.05)
{
    return reportOf<Analysis>(file, [alpha](Analysis& analysis) {
        analysis.setSignificance(alpha);
        analysis.analyse();
    });
}

template <typename Anova, typename After>
void anovaReport(const std::string& file, After after)
{
    Anova anova;
    anova.readDataFile(file);
    anova.createSeries();
    anova.analyse();
    anova.reportConsole();
    after(anova);
}

TEST(Reports, areThoseOfTheLibraryWithTheOptionsSet)
{
    using namespace wq_lib;
    const struct {
        int line;
        Words arguments;
        std::function<void()> host;
    } rows[] = {
        {__LINE__, {"describe", cavendish}, reportOf<BasicStatistics>(cavendish)},
        {__LINE__, {"describe", "--alpha", "0.01", cavendish}, reportOf<BasicStatistics>(cavendish, 0.01)},
        {__LINE__, {"describe", cavendish, "--alpha=1e-3"}, reportOf<BasicStatistics>(cavendish, 1e-3)},
        {__LINE__,
         {"describe", "--mu", "-5.5", "--head", "0.1", "--tail", ".2", "--list", "1", "5", cavendish},
         [] {
             BasicStatistics sample;
             sample.readDataFile(cavendish);
             sample.setNullHypothesis(-5.5);
             sample.setHead(0.1);
             sample.setTail(0.2);
             sample.analyse();
             sample.reportConsole();
             sample.listData(1, 5);
         }},
        {__LINE__, {"pairs", norris}, reportOf<BasicXyStatistics>(norris)},
        {__LINE__,
         {"pairs", "--list", "0", "18446744073709551615", norris},
         [] {
             BasicXyStatistics pairs;
             pairs.readDataFile(norris);
             pairs.analyse();
             pairs.reportConsole();
             pairs.listData(0, 1000);
         }},
        {__LINE__, {"regress", "--model", "linear", norris}, reportOf<LinearRegression>(norris)},
        {__LINE__, {"regress", "--model", "linear", "--alpha", "0.1", norris}, reportOf<LinearRegression>(norris, 0.1)},
        {__LINE__, {"regress", "--model", "logarithmic", norris}, reportOf<LogarithmicRegression>(norris)},
        {__LINE__, {"regress", "--model", "exponential", norris}, reportOf<ExponentialRegression>(norris)},
        {__LINE__, {"regress", "--model", "power", norris}, reportOf<PowerRegression>(norris)},
        {__LINE__,
         {"regress", "--model", "power", "--list", "34", "35", norris},
         [] {
             PowerRegression regression;
             regression.readDataFile(norris);
             regression.analyse();
             regression.reportConsole();
             regression.listData(34, 35);
         }},
        {__LINE__, {"correlate", norris}, reportOf<Correlation>(norris)},
        {__LINE__, {"correlate", "--alpha", "0.2", norris}, reportOf<Correlation>(norris, 0.2)},
        {__LINE__, {"anova", resistivity}, [] { anovaReport<SingleAnova>(resistivity, [](SingleAnova&) {}); }},
        {__LINE__,
         {"anova", "--details", resistivity},
         [] { anovaReport<SingleAnova>(resistivity, [](SingleAnova& anova) { anova.testResults(); }); }},
        {__LINE__,
         {"anova", "--list", "1", "2", resistivity},
         [] {  // the library leaves the end out
             anovaReport<SingleAnova>(resistivity, [](SingleAnova& anova) { anova.listData(1, 3); });
         }},
        {__LINE__,
         {"anova", "--list", "0", "18446744073709551615", resistivity},
         [] { anovaReport<SingleAnova>(resistivity, [](SingleAnova& anova) { anova.listData(0, 5); }); }},
        {__LINE__,
         {"multiy", "--alpha", "0.01", "--list", "0", "1", seedlings},
         [] {
             LinearRegressionMultiY regression;
             regression.setSignificance(0.01);
             regression.readSeriesFile(seedlings);
             regression.createSeries();
             regression.analyse();
             regression.reportConsole();
             regression.listData(0, 2);
         }},
        {__LINE__, {"fit", peas}, reportOf<GoodnessOfFit>(peas)},
        {__LINE__,
         {"fit", "--yates", "--no-williams", "--alpha", "0.01", peas},
         [] {
             GoodnessOfFit test;
             test.setYatesCorrection(true);
             test.setWilliamsCorrection(false);
             test.setSignificance(0.01);
             test.readDataFile(peas);
             test.analyse();
             test.reportConsole();
         }},
        // clang-format off
        {__LINE__, {"ks", digits}, reportOf<KolmogorovSmirnov2>(digits, [](KolmogorovSmirnov2& test) {
             test.cumulative();
             test.analyse();
         })},
        {__LINE__, {"ks", "--frequencies", "--alpha", "0.01", digits}, [] {
             KolmogorovSmirnov2 test;
             test.setSignificance(0.01);
             test.readDataFile(digits);
             test.cumulative();
             test.analyse();
             test.reportConsole();
             test.listFrequencies();
         }},
        // clang-format on
        {__LINE__,
         {"variances", "--alpha", "0.1", instrument1, instrument2},
         [] {
             TwoSamples samples;
             BasicStatistics second;
             samples.setSignificance(0.1);
             samples.readDataFile(instrument1);
             samples.BasicStatistics::analyse();
             second.readDataFile(instrument2);
             second.analyse();
             samples.setSecondSample(second.getResult());
             samples.setComment(second.getComment());
             samples.analyse();
             samples.reportConsole();
         }},
        {__LINE__,
         {"frequency", "--classes", "4", cavendish},
         reportOf<Frequency>(cavendish,
                             [](Frequency& table) {
                                 table.autoClassWidth(4);
                                 table.initFrequency(4);
                                 table.buildTable();
                                 table.analyse();
                             })},
        {__LINE__,
         {"frequency", cavendish},
         reportOf<Frequency>(cavendish,
                             [](Frequency& table) {
                                 table.autoClassWidth(0);
                                 table.initFrequency(10);
                                 table.buildTable();
                                 table.analyse();
                             })},
        {__LINE__, {"circular", pigeons}, reportOf<Circular>(pigeons)},
        {__LINE__,
         {"circular", "--unit", "degrees", "--alpha", "0.001", pigeons},
         reportOf<Circular>(pigeons,
                            [](Circular& directions) {
                                directions.setDataType(DEGREES);
                                directions.setSignificance(0.001);
                                directions.analyse();
                            })},
        {__LINE__,
         {"circular", "--unit", "bins", "--bins", "10", "--bin0", "1", "--bin-name", "digit", digits},
         reportOf<Circular>(digits,
                            [](Circular& directions) {
                                directions.setDataType(BIN_NUMBERS);
                                directions.setBins(10);
                                directions.setBin0(1);
                                directions.setBinName("digit");
                                directions.analyse();
                            })},
    };
    for (const auto& row : rows)
        EXPECT_EQ(run(with(row.arguments, {"--no-warnings"})), printedOnly(printed(row.host)))
            << "row of line " << row.line << joined(row.arguments);
}

TEST(Reports, agreeWithTheSecondComputation)  // the golden texts are made by tests/reference
{
    EXPECT_EQ(run({"describe", cavendish}), printedOnly(golden("basic_cavendish_report.txt")));
    EXPECT_EQ(run({"pairs", norris}), printedOnly(golden("pairs_norris_report.txt")));
    EXPECT_EQ(run({"regress", "--model", "linear", norris}), printedOnly(golden("regression_norris_linear.txt")));
    EXPECT_EQ(run({"correlate", norris}), printedOnly(golden("correlation_norris.txt")));
    EXPECT_EQ(run({"frequency", "--classes", "8", "--no-warnings", cavendish}), printedOnly(golden("example_frequency_table.txt")));

    const Outcome table = run({"ks", digits, "--frequencies"});
    EXPECT_THAT(table.output, HasSubstr("n1      : 1000\nn2      : 1000\nD       : 0.019\n"));
    EXPECT_THAT(table.output, HasSubstr("      93.000      100.000    0.093    0.100    0.007\n"));
}

TEST(Reports, compareTheVariancesOfBothFiles)
{
    const TempFolder folder;
    const std::string first = folder.write("first", "# length\n1\n2\n3\n");             // variance 1
    const std::string second = folder.write("second", "# of leaves\n0\n2\n4\n6\n8\n");  // variance 10
    const std::string report = run({"variances", first, second}).output;
    EXPECT_THAT(report, HasSubstr("\n length of leaves\n"));
    EXPECT_THAT(report, HasSubstr("sample size 1  : 3\nsample var 1   : 1\nsample size 2  : 5\nsample var 2   : 10\n"
                                  "F              : 10 (p = "));
    EXPECT_THAT(report, HasSubstr("Critical value : F 0.05[4,2] = "));
}

// ---------------------------------------------------------------- what a data file may come from

TEST(Input, isStandardInputForADash)
{
    const Outcome expected = run({"describe", cavendish});
    EXPECT_EQ(run({"describe", "-"}, {cavendish, ""}), expected);
    EXPECT_EQ(run({"pairs", "-"}, {norris, ""}), run({"pairs", norris}));
    EXPECT_EQ(run({"multiy", "-"}, {seedlings, ""}), run({"multiy", seedlings}));
    EXPECT_EQ(run({"variances", "-", instrument2}, {instrument1, ""}), run({"variances", instrument1, instrument2}));
    EXPECT_EQ(run({"variances", instrument1, "-"}, {instrument2, ""}), run({"variances", instrument1, instrument2}));
    EXPECT_EQ(run({"variances", "-", "-"}, {instrument1, ""}), refused("standard input can be read only once", "variances"));
    EXPECT_EQ(run({"describe", "-"}), cannotAnalyse("standard input: no data"));
}

TEST(Input, isStandardInputWithoutAFile)
{
    EXPECT_EQ(run({"describe"}, {cavendish, ""}), run({"describe", "-"}, {cavendish, ""}));
    EXPECT_EQ(run({"regress", "--model", "linear"}, {norris, ""}), run({"regress", "--model", "linear", norris}));
    const TempFolder folder;
    const std::string table = folder.write("data.csv", "g,v\na,1\na,2\na,4\nb,3\nb,5\nb,9\n");
    EXPECT_EQ(run({"variances", "--value", "v", "--group", "g"}, {table, ""}), run({"variances", "--value", "v", "--group", "g", table}));
    EXPECT_EQ(run({"describe", "--", "pairs"}), cannotAnalyse("pairs: No such file or directory"));
    EXPECT_EQ(run({"describe", "pairs"}), cannotAnalyse("pairs: No such file or directory")) << "a name of a command may be that of a file";
}

TEST(Input, isReadOnceFromAPipe)
{
    const TempFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(pipe) << contentOf(cavendish); });
    EXPECT_EQ(run({"describe", pipe}), run({"describe", cavendish}));
    writer.join();
}

TEST(Input, fromAPipeHasTheWarningsOfAFile)
{
    const TempFolder folder;
    const std::string content = "1;2\n \n2;3\n3;" + std::string(252, '0') + "7\n4;5\n";  // the fourth line has 255 characters
    const std::string file = folder.write("data", content);
    const Outcome fromFile = run({"pairs", "--lenient", file});
    const Outcome piped = run({"pairs", "--lenient", "-"}, {file, ""});
    EXPECT_EQ(piped.output, fromFile.output);
    EXPECT_EQ(linesOf(fromFile.errors).size(), 2U);
    EXPECT_EQ(piped.errors, replaced(fromFile.errors, file, "standard input"));
}

TEST(Input, withoutAnEndIsLeftAtTheFirstLineThatStopsTheReader)
{
    EXPECT_EQ(run({"describe", "/dev/zero"}), cannotAnalyse("/dev/zero:1: there is a zero byte: this is no text file"));
    EXPECT_EQ(run({"describe", "-"}, {"/dev/zero", ""}), cannotAnalyse("standard input:1: there is a zero byte: this is no text file"));
}

// ---------------------------------------------------------------- data that cannot be analysed
// What holds for every command is in test_error_matrix.cpp.

TEST(BadData, isFoundInEveryFieldOfASeries)
{
    const TempFolder folder;
    const struct {
        int line;
        const char* content;
        const char* expected;
    } rows[] = {
        {__LINE__, "x:1:1\n", "1: a number is expected, not 'x'"},
        {__LINE__, "1:y:1\n", "1: a number is expected, not 'y'"},
        {__LINE__, "1:2:z\n", "1: a number is expected, not 'z'"},
        {__LINE__, "1:2:9999999999\n", "1: the number is out of range: '9999999999'"},
        {__LINE__, "1:2:.5\n", "1: a number is expected, not '.5'"},
        {__LINE__, "1:2:1\n<<\n", "2: a number is expected, not '<<'"},
        {__LINE__, "1:2:1\n\r\n", "2: a number is expected, not '\\r'"},
        {__LINE__, "1:1e-310:1\n", "1: the number is out of range: '1e-310'"},
    };
    for (const auto& row : rows) {
        const std::string file = folder.write("series", row.content);
        EXPECT_EQ(run({"multiy", file}), cannotAnalyse(file + ":" + row.expected)) << "row of line " << row.line;
    }
}

TEST(BadData, behindTheEndMarkerOrALineCutShortIsNotLookedAt)
{
    const TempFolder folder;
    const std::string marked = folder.write("marked", "1\n2\n3\n<< the rest\nnot a number\n" + std::string(1, '\0'));
    EXPECT_EQ(run({"describe", marked}).status, done);
    EXPECT_EQ(run({"describe", marked}).errors, "");
    const std::string noText = folder.write("binary", std::string(300, 'x') + "\n" + std::string(1, '\0'));
    EXPECT_EQ(run({"ks", noText}).status, couldNotAnalyse);
    EXPECT_EQ(run({"ks", noText}).errors, "wqstat: " + noText + ":1: there is a zero byte: this is no text file\n");
    const std::string pairs = folder.write("pairs", "1;2\n2;3\n");
    EXPECT_EQ(run({"multiy", "--lenient", "--no-warnings", pairs}).errors,
              "wqstat: " + pairs + ": no line names a repeat count (x; y; count), so there are no data\n");
    EXPECT_EQ(run({"pairs", "--export", "", pairs}).status, wrongUsage);
    const std::string cut = folder.write("cut", "1\n2\n3\n4" + std::string(300, ' ') + "\nnot a number\n");
    EXPECT_EQ(run({"describe", "--lenient", cut}).status, done);
}

TEST(BadData, isShownOnOneLineOfPrintableCharacters)
{
    const TempFolder folder;
    const struct {
        int line;
        std::string field, shown;
    } rows[] = {
        {__LINE__, "\x1b[31mred", "\\x1b[31mred"},
        // clang-format off
        {__LINE__, "gr\xc3\xb6\xc3\x9f" "e", "gr\xc3\xb6\xc3\x9f" "e"},  // UTF-8 stays
        {__LINE__, "\xe2\x82\xac", "\xe2\x82\xac"},
        {__LINE__, "\xc3(", "\\xc3("},                    // what is not UTF-8 does not
        {__LINE__, "\xc2\x9b", "\\xc2\\x9b"},             // nor do its control characters
        {__LINE__, "\xef\xbb\xbf" "1.5", "\\xef\\xbb\\xbf" "1.5"},  // nor a byte order mark
        {__LINE__, "one\r", "one\\r"},
        // clang-format on
        {__LINE__, std::string(200, 'a') + "b", std::string(200, 'a') + "..."},
    };
    for (const auto& row : rows) {
        const std::string file = folder.write("data", "1\n" + row.field + "\n");
        EXPECT_EQ(run({"describe", file}), cannotAnalyse(file + ":2: a number is expected, not '" + row.shown + "'"))
            << "row of line " << row.line;
    }
    EXPECT_EQ(run({"describe", folder.path("two\nlines")}), cannotAnalyse(folder.path("two\\x0alines") + ": No such file or directory"));
}

TEST(BadData, hiddenBehindALineThatIsTooLongIsExplained)
{
    const TempFolder folder;
    const std::string file = folder.write("data", "#" + std::string(300, '-') + "\n1\n2\n3\n");
    EXPECT_EQ(run({"describe", "--lenient", "--no-warnings", file}),
              cannotAnalyse(file + ": no data (line 1 is longer than 254 characters, and reading ends with it)"));
}

TEST(BadData, pairsWithoutLogarithmsAreExplained)
{
    const TempFolder folder;
    const std::string negativeX = folder.write("x", "-1;2\n-2;3\n0;5\n");
    const std::string negativeY = folder.write("y", "1;-2\n2;-3\n4;0\n");
    const auto none = [](const std::string& file, const std::string& model) {
        return cannotAnalyse(file + ": no pair has the logarithms of the " + model + " model");
    };
    EXPECT_EQ(run({"regress", "--model", "logarithmic", negativeX}), none(negativeX, "logarithmic"));
    EXPECT_EQ(run({"regress", "--model", "exponential", negativeX}).status, done);
    EXPECT_EQ(run({"regress", "--model", "power", negativeX}), none(negativeX, "power"));
    EXPECT_EQ(run({"regress", "--model", "logarithmic", negativeY}).status, done);
    EXPECT_EQ(run({"regress", "--model", "exponential", negativeY}), none(negativeY, "exponential"));
    EXPECT_EQ(run({"regress", "--model", "power", negativeY}), none(negativeY, "power"));
    EXPECT_EQ(run({"regress", "--model", "linear", negativeY}).status, done);
}

TEST(BadData, trimmedAwayIsExplained)
{
    const TempFolder folder;
    const std::string file = folder.write("data", "1\n2\n3\n4\n");
    const Outcome expected = cannotAnalyse(file + ": --head and --tail leave too few of the 4 observations, at least 3 are needed");
    EXPECT_EQ(run({"describe", "--head", "0.5", file}), expected);                   // 2 are left
    EXPECT_EQ(run({"describe", "--head", "0.9", file}), expected);                   // the range is empty
    EXPECT_EQ(run({"describe", "--head", "0.6", "--tail", "0.3", file}), expected);  // starts behind its end
    EXPECT_EQ(run({"describe", "--tail", "0.25", file}).status, done);
}

TEST(BadData, groupedDirectionsNeedBins)
{
    const TempFolder folder;
    const std::string file = folder.write("data", "1;3\n2;4\n");
    EXPECT_EQ(run({"circular", file}),
              cannotAnalyse(file + ": the data are grouped: --bins is needed, the number of bins around the circle"));
    EXPECT_EQ(run({"circular", "--bins", "2", file}).status, done);
}

// ---------------------------------------------------------------- warnings

TEST(Warnings, nameTheLinesThatReadSurprisingly)
{
    const std::string spaces(254, ' ');
    const struct {
        int line;
        Words command;
        std::string content;
        std::vector<std::string> warnings;  // behind the name of the file
    } rows[] = {
        {__LINE__, {"pairs"}, "1;2\n2;3\n3;5\n", {}},
        {__LINE__, {"pairs"}, "1;2\n\n# no number\n3;5 \n", {}},
        {__LINE__, {"pairs"}, "1;2\r\n2;3\r\n", {}},
        {__LINE__, {"circular"}, "1\n2\n", {}},
        // clang-format off
        {__LINE__, {"pairs"}, "1;2\n2;3\n\r\n  \n",
         {":3: warning: the line holds only white space: it is read as the pair (0, 0)",
          ":4: warning: the line holds only white space: it is read as the pair (0, 0)"}},
        {__LINE__, {"pairs"}, "1.5 2\n1;2\n",
         {":1: warning: x and y are separated by ':', ';' or '|' only: '1.5 2': it is read as the pair (1.5, 0)"}},
        {__LINE__, {"pairs"}, "1,5\n1;2\n",
         {":1: warning: x and y are separated by ':', ';' or '|' only: '1,5': it is read as the pair (1, 0)"}},
        // clang-format on
        {__LINE__, {"pairs"}, "1;2\n3\n", {":2: warning: there is no y: '3': it is read as the pair (3, 0)"}},
        {__LINE__, {"pairs"}, "1;2\none;2\n", {":2: warning: x is no number: 'one': it is read as 0"}},
        {__LINE__, {"pairs"}, "1;2\n1e999;2\n", {":2: warning: x is too large a number: '1e999': it is read as infinite"}},
        {__LINE__, {"pairs"}, "1;2\n1e-320;2\n", {}},  // too small for a normal number, but read as what it is
        // clang-format off
        {__LINE__, {"pairs"}, "1;2\n1,5;2,5\n",
         {":2: warning: a decimal comma: '1,5': only '1' is read", ":2: warning: a decimal comma: '2,5': only '2' is read"}},
        {__LINE__, {"pairs"}, "1;2\n2;3;4\n", {":2: warning: more than x and y: '2;3;4': only '2;3' is read"}},
        {__LINE__, {"pairs"}, "1;2\n2;3;x\n", {":2: warning: more than x and y: '2;3;x': only '2;3' is read"}},
        {__LINE__, {"pairs"}, "1;;2\n;2;3\n|;:\n3;4;\n",
         {":1: warning: an empty field: '1;;2': it counts as none", ":2: warning: an empty field: ';2;3': it counts as none",
          ":3: warning: an empty field: '|;:': it counts as none"}},
        {__LINE__, {"describe"}, "1,5\n2\n3\n", {":1: warning: a decimal comma: '1,5': only '1' is read"}},
        {__LINE__, {"describe"}, "7;8\n2 kg\n3\n",
         {":1: warning: text behind a number: '7;8': only '7' is read", ":2: warning: text behind a number: '2 kg': only '2' is read"}},
        {__LINE__, {"describe"}, "4\n4.9 # outlier?\n5\n6\n",
         {":2: warning: a number in a comment: '4.9 # outlier?': the whole line is left out"}},
        {__LINE__, {"describe"}, "1\n2\n3\n<<\n# done\nthe end\n", {}},
        {__LINE__, {"describe"}, "1\n2\n3\n<<1\n4\n",
         {":4: warning: an end marker with a number: '<<1': the data end here",
          ":4: warning: '<<1' ends the data, but there are more on line 5: they are left out"}},
        {__LINE__, {"describe"}, "1\n2\n3" + spaces.substr(1) + "\n4\n", {}},  // 254 characters
        {__LINE__, {"describe"}, "1\n2\n3" + spaces + "\n4\n",
         {":3: warning: the line is longer than 254 characters: it is cut there, and reading ends with it"}},
        {__LINE__, {"describe"}, "1\n2\n3\n#" + spaces + "\n4\n",
         {":4: warning: the line is longer than 254 characters: it is cut there, and reading ends with it"}},
        {__LINE__, {"pairs"}, "\xef\xbb\xbf" "1;2\n2;3\n",
         {":1: warning: the file begins with a byte order mark", ":1: warning: x is no number: '\\xef\\xbb\\xbf" "1': it is read as 0"}},
        {__LINE__, {"multiy"}, "1:2\n2:3:2\n3:4\n", {":1: warning: no line has named a repeat count yet: '1:2': this one adds nothing"}},
        {__LINE__, {"multiy"}, "1:2:1\n2\n", {":2: warning: there is no y: '2': it is read as 0"}},
        {__LINE__, {"multiy"}, "1:2:1.5\n2:3:1:4\n",
         {":1: warning: text behind a number: '1.5': only '1' is read", ":2: warning: more than x, y and count: '2:3:1:4': only '2:3:1' is read"}},
        {__LINE__, {"pairs"}, "1,5;2,0\n2;3,1\n3,5;1\n4,5;6,5\n7,5;8,5\n",
         {":1: warning: a decimal comma: '1,5': only '1' is read", ":1: warning: a decimal comma: '2,0': only '2' is read",
          ":2: warning: a decimal comma: '3,1': only '3' is read", ":3: warning: a decimal comma: '3,5': only '3' is read",
          ": warning: 2 more lines like line 1"}},
        {__LINE__, {"pairs"}, "1;1\n \n \n \n \n",
         {":2: warning: the line holds only white space: it is read as the pair (0, 0)",
          ":3: warning: the line holds only white space: it is read as the pair (0, 0)",
          ":4: warning: the line holds only white space: it is read as the pair (0, 0)",
          ": warning: 1 more line like line 2"}},
        {__LINE__, {"multiy"}, "1:2:1\n2:3:-3\n", {":2: warning: a count is expected, not '-3': nothing is added"}},
        {__LINE__, {"circular", "--bins", "8"}, "1;2\n2\n3\n4;0\n5;1\n",
         {":2: warning: there is no frequency, and one in line 1: '2': this direction does not count",
          ":3: warning: there is no frequency, and one in line 1: '3': this direction does not count"}},
        {__LINE__, {"circular", "--bins", "8"}, "1\n2\n3;1\n4;1\n",
         {":3: warning: there is a frequency, and none in line 1: '3;1': that direction does not count"}},
        {__LINE__, {"circular"}, "1\n2;0\n3\n", {}},
        {__LINE__, {"circular", "--bins", "8"}, "1;2.7\n2;3\n3;-1\n",
         {":1: warning: a count is expected, not '2.7': the sample size leaves its fraction out, the mean does not",
          ":3: warning: a count is expected, not '-1': where the data are grouped it takes as many observations away"}},
        {__LINE__, {"regress", "--model", "linear"}, "1;1\n \n \n2;2\n \n \n \n",
         {":2: warning: the line holds only white space: it is read as the pair (0, 0)",
          ":3: warning: the line holds only white space: it is read as the pair (0, 0)",
          ":5: warning: the line holds only white space: it is read as the pair (0, 0)",
          ": warning: 2 more lines like line 2"}},
        // clang-format on
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        const std::string file = folder.write("data", row.content);
        const Words arguments = with(row.command, {"--lenient", file});
        std::string expected;
        for (const std::string& warning : row.warnings) expected += "wqstat: " + file + warning + "\n";
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, done) << "row of line " << row.line;
        std::string named;  // the analysis may have its own warnings
        for (const std::string& line : linesOf(outcome.errors))
            if (line.find(file) != std::string::npos) named += line + "\n";
        EXPECT_EQ(named, expected) << "row of line " << row.line;
        EXPECT_NE(outcome.output, "") << "row of line " << row.line;
    }
}

// What was left out is the likeliest reason for too few observations.
TEST(Lenient, saysWhatWasLeftOutAlsoWhereTooLittleIsLeft)
{
    const TempFolder folder;
    const std::string file = folder.write("data", "4.9 # outlier?\n5\n6\n");
    const std::string warning = "wqstat: " + file + ":1: warning: a number in a comment: '4.9 # outlier?': the whole line is left out\n";
    const Outcome tooFew = cannotAnalyse(file + ": 2 observations, at least 3 are needed");
    EXPECT_EQ(run({"describe", "--lenient", file}), (Outcome{tooFew.status, tooFew.output, warning + tooFew.errors}));
    EXPECT_EQ(run({"describe", "--lenient", "--no-warnings", file}), tooFew);
    const Outcome both = run({"describe", "--lenient", file, cavendish});
    EXPECT_EQ(both.status, tooFew.status);
    EXPECT_EQ(both.errors.substr(0, warning.size() + tooFew.errors.size()), warning + tooFew.errors);
}

TEST(Warnings, leaveTheAnalysisAsItIs)
{
    const TempFolder folder;
    const std::string file = folder.write("data", "1;2\n\r\n1.5 2\nfoo;3\n2;3;9\n1,5;2\n");
    EXPECT_EQ(run({"pairs", "--lenient", file}).output, printed(reportOf<wq_lib::BasicXyStatistics>(file)));
}

// ---------------------------------------------------------------- the check and the library's readers

// The library's reader on a text: how many lines it takes before it throws; all when it does not.
template <typename Read>
std::size_t linesRead(const TempFolder& folder, const std::vector<std::string>& lines, Read read)
{
    std::string content;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        content += lines[i] + "\n";
        try {
            read(folder.write("start", content));
        } catch (const std::exception&) {
            return i;
        }
    }
    return lines.size();
}

TEST(LineCheck, stopsAtTheLineAtWhichTheLibraryThrows)
{
    const char* const numbers[] = {"1", "2.5", "-3", "+4", " .5", "5.", "1e3", "7 kg", "0x1f", "12"};
    const char* const odd[] = {"x",           "-",      "+-1", "--1",   "",       " ",      "\t", "\r",      "\v",           ".",
                               "e5",          "1e",     "1e+", "1e999", "-1e999", "1e-320", "0x", "0x1p",    "0x.p1",        "inf",
                               "-nan",        "nan(1)", "1_0", "1,5",   "0.1e+2", "<<",     "#",  "infinit", "\xef\xbb\xbf", "99999999999",
                               "-99999999999"};
    const char* const delimiters[] = {";", ":", "|", ";;", ":|"};
    std::mt19937 engine(20241);
    const auto pick = [&](std::size_t n) { return static_cast<std::size_t>(engine() % n); };
    const auto field = [&] { return std::string(pick(4) != 0 ? numbers[pick(std::size(numbers))] : odd[pick(std::size(odd))]); };
    const TempFolder folder;
    const struct {
        const char* command;
        std::function<void(const std::string&)> read;
    } readers[] = {
        {"describe", [](const std::string& file) { wq_lib::BasicStatistics().readDataFile(file); }},
        {"pairs", [](const std::string& file) { wq_lib::BasicXyStatistics().readDataFile(file); }},
        {"multiy", [](const std::string& file) { wq_lib::LinearRegressionMultiY().readSeriesFile(file); }},
    };
    int stopped = 0;
    for (int round = 0; round < 60; ++round) {
        for (const auto& reader : readers) {
            std::vector<std::string> lines;
            for (std::size_t n = 1 + pick(6); n > 0; --n) {
                std::string line = field();
                for (std::size_t m = pick(4); m > 0; --m) line += delimiters[pick(std::size(delimiters))] + field();
                lines.push_back(line);
            }
            const std::size_t taken = linesRead(folder, lines, reader.read);
            std::string content;
            for (const std::string& line : lines) content += line + "\n";
            const std::string file = folder.write("data", content);
            const Outcome outcome = run({reader.command, "--lenient", file});
            if (taken < lines.size()) {
                ++stopped;
                EXPECT_EQ(outcome.status, couldNotAnalyse) << reader.command << "\n" << content;
                EXPECT_THAT(outcome.errors, StartsWith("wqstat: " + file + ":" + std::to_string(taken + 1) + ": "))
                    << reader.command << "\n"
                    << content;
            } else {
                EXPECT_THAT(outcome.errors, testing::Not(HasSubstr("a number is expected"))) << reader.command << "\n" << content;
                EXPECT_THAT(outcome.errors, testing::Not(HasSubstr("out of range"))) << reader.command << "\n" << content;
            }
        }
    }
    EXPECT_GT(stopped, 40);  // of 180: files of both kinds were met
    EXPECT_LT(stopped, 140);
}

// ---------------------------------------------------------------- exports

// The library's own export of an analysis, for comparison.
template <typename Analysis, typename Prepare>
std::string exported(const std::string& file, const std::string& comment, Prepare prepare)
{
    const TempFolder folder;
    Analysis analysis;
    analysis.readDataFile(file);
    prepare(analysis);
    analysis.exportToR(folder.path("export"), comment);
    return contentOf(folder.path("export"));
}

TEST(Exports, areThoseOfTheLibraryUnderTheCommandAndTheComment)
{
    using namespace wq_lib;
    const auto analyse = [](auto& analysis) { analysis.analyse(); };
    const auto group = [](auto& anova) {
        anova.createSeries();
        anova.analyse();
    };
    const std::string cavendishNote = "\nCavendish 1798: density of the Earth (water = 1), 29 measurements.";
    const std::string norrisNote = "\ncalibration of ozone monitors (J. Norris); 36 observations; lower difficulty.";
    const std::string resistivityNote = "\nresistivity of silicon (Ehrstein and Croarkin); 5 instruments x 5; lower difficulty.";
    const std::string peasNote = "\nMendel 1866: seeds of a dihybrid cross of peas. Observed;expected 9:3:3:1 of 556.";
    const struct {
        int line;
        Words arguments;
        std::string expected;
    } rows[] = {
        {__LINE__,
         {"describe", "--head", "0.1", cavendish},
         exported<BasicStatistics>(cavendish, "wqstat describe " + cavendish + cavendishNote,
                                   [](auto& sample) {
                                       sample.setHead(0.1);
                                       sample.analyse();
                                   })},
        {__LINE__, {"pairs", norris}, exported<BasicXyStatistics>(norris, "wqstat pairs " + norris + norrisNote, analyse)},
        {__LINE__,
         {"regress", "--model", "power", norris},
         exported<PowerRegression>(norris, "wqstat regress " + norris + norrisNote, analyse)},
        {__LINE__, {"correlate", norris}, exported<Correlation>(norris, "wqstat correlate " + norris + norrisNote, analyse)},
        {__LINE__, {"anova", resistivity}, exported<SingleAnova>(resistivity, "wqstat anova " + resistivity + resistivityNote, group)},
        {__LINE__, {"fit", peas}, exported<GoodnessOfFit>(peas, "wqstat fit " + peas + peasNote, analyse)},
        {__LINE__, {"ks", peas}, exported<KolmogorovSmirnov2>(peas, "wqstat ks " + peas + peasNote, analyse)},
        {__LINE__, {"circular", "--lenient", "--bins", "7", peas}, exported<Circular>(peas, "wqstat circular " + peas + peasNote, analyse)},
    };
    const TempFolder folder;
    const std::string target = folder.path("export.tsv");
    for (const auto& row : rows) {
        const Outcome report = run(row.arguments);
        Words arguments = row.arguments;
        arguments.insert(arguments.end(), {"--export", target});
        EXPECT_EQ(run(arguments), report) << "row of line " << row.line;
        EXPECT_EQ(contentOf(target), row.expected) << "row of line " << row.line;
    }
}

TEST(Exports, ofAFrequencyTableAreItsTable)
{
    const TempFolder folder;
    const std::string file = folder.write("data", "0\n1\n2\n3\n4\n");  // no comment
    EXPECT_EQ(run({"frequency", "--classes", "2", "--export", folder.path("table"), file}).status, done);
    EXPECT_EQ(contentOf(folder.path("table")), "# wqstat frequency " + file +
                                                   "\nclass\tstart\tend\tmid\tobserved\trate\n"
                                                   "0\t0.000000\t2.000000\t1.000000\t2\t0.400000\n"
                                                   "1\t2.000000\t4.000000\t3.000000\t2\t0.400000\n");
}

TEST(Exports, ofASeriesAreItsGroups)
{
    const TempFolder folder;
    const std::string file = folder.write("data", "1:10:2\n2;20\n# note\n3|30|1\n");
    EXPECT_EQ(run({"multiy", "--export", folder.path("groups"), file}).status, done);
    EXPECT_EQ(contentOf(folder.path("groups")), "# wqstat multiy " + file + "\n0\t10.0000\t10.0000\n1\t20.0000\t20.0000\n2\t30.0000\n");
}

TEST(Exports, thatFailAreToldBehindTheReport)
{
    const TempFolder folder;
    const std::string report = run({"describe", cavendish}).output;
    const struct {
        std::string target;
        const char* reason;
    } rows[] = {{folder.path("missing/export"), ": No such file or directory"},
                {folder.path(""), ": Is a directory"},
                {"/dev/full", ": No space left on device"}};
    for (const auto& row : rows) {
        const Outcome expected{couldNotAnalyse, report, "wqstat: " + row.target + ": the export cannot be written" + row.reason + "\n"};
        EXPECT_EQ(run({"describe", "--export", row.target, cavendish}), expected);
    }
}

TEST(Exports, neverReplaceTheDataFile)
{
    const TempFolder folder;
    const std::string file = folder.write("data", "1\n2\n3\n");
    std::filesystem::create_symlink(file, folder.path("link"));
    for (const std::string& target : {file, folder.path("link"), folder.path("./data")}) {
        EXPECT_EQ(run({"describe", "--export", target, file}), refused("--export: " + target + " is the data file", "describe"));
        EXPECT_EQ(contentOf(file), "1\n2\n3\n");
    }
}

TEST(StandardOutput, thatCannotBeWrittenFails)
{
    const struct {
        int line;
        Words arguments;
    } rows[] = {
        {__LINE__, {"describe", cavendish}},
        {__LINE__, {"describe", "--json", cavendish}},
        {__LINE__, {"describe", "--tsv", cavendish}},
        {__LINE__, {"prob", "factorial", "5"}},
        {__LINE__, {"prob", "--list"}},
        {__LINE__, {"random", "--reals", "1000000000000"}},  // it does not go on drawing
        {__LINE__, {"--help"}},
        {__LINE__, {"--version"}},
    };
    for (const auto& row : rows) {
        const Outcome outcome = run(row.arguments, {"/dev/null", "/dev/full"});
        EXPECT_EQ(outcome.status, couldNotAnalyse) << "row of line " << row.line;
        EXPECT_EQ(outcome.errors, "wqstat: standard output: cannot be written: No space left on device\n") << "row of line " << row.line;
    }
}

// ---------------------------------------------------------------- wrong usage

TEST(WrongUsage, isExplainedInOneLine)
{
    const struct {
        int line;
        Words arguments;
        std::string expected;
        std::string command;
    } rows[] = {
        {__LINE__, {}, "a command is required", ""},
        {__LINE__, {"analyse", cavendish}, "there is no command 'analyse'", ""},
        {__LINE__, {"--alpha", "0.05"}, "there is no option '--alpha'", ""},
        {__LINE__, {"--generate", "html"}, "--generate: html not in {man,bash,fish,zsh}", ""},
        {__LINE__, {"--generate", "man", "describe", cavendish}, "--generate stands alone, without a command", "describe"},
        {__LINE__, {"descrbe", cavendish}, "there is no command 'descrbe'; did you mean describe?", ""},
        {__LINE__, {"decsribe", cavendish}, "there is no command 'decsribe'; did you mean describe?", ""},
        {__LINE__, {"corr", norris}, "there is no command 'corr'; did you mean correlate?", ""},
        {__LINE__, {"variances", cavendish}, "two FILEs are needed, one for each sample, not 1", "variances"},
        {__LINE__, {"variances", cavendish, cavendish, norris}, "two FILEs are needed, one for each sample, not 3", "variances"},
        {__LINE__, {"describe", "--median", cavendish}, "there is no option '--median'", "describe"},
        {__LINE__, {"describe", "--colum", "w", cavendish}, "there is no option '--colum'; did you mean --column?", "describe"},
        {__LINE__, {"describe", "--text=1", cavendish}, "there is no option '--text'; did you mean --textbook?", "describe"},
        {__LINE__, {"describe", "-column", "w", cavendish}, "there is no option '-column'; did you mean --column?", "describe"},
        {__LINE__, {"random", "--sed", "1"}, "there is no option '--sed'; did you mean --seed?", "random"},
        {__LINE__, {"regress", "--modl", "linear", norris}, "there is no option '--modl'; did you mean --model?", "regress"},
        {__LINE__, {"--vresion"}, "there is no option '--vresion'; did you mean --version?", ""},
        {__LINE__, {"variances", "--export", "x", cavendish, cavendish}, "there is no option '--export'", "variances"},
        {__LINE__, {"describe", "-", "-"}, "standard input can be read only once", "describe"},
        {__LINE__, {"describe", cavendish, "--alpha"}, "--alpha: 1 required NUMBER missing", "describe"},
        {__LINE__, {"describe", "--alpha", "5%", cavendish}, "--alpha: '5%' is not a number", "describe"},
        {__LINE__, {"describe", "--alpha", "0", cavendish}, "--alpha: '0' is not between 0 and 1", "describe"},
        {__LINE__, {"describe", "--alpha", "1", cavendish}, "--alpha: '1' is not between 0 and 1", "describe"},
        {__LINE__, {"describe", "--alpha", "nan", cavendish}, "--alpha: 'nan' is not between 0 and 1", "describe"},
        {__LINE__, {"describe", "--alpha", "1e999", cavendish}, "--alpha: '1e999' is out of range", "describe"},
        {__LINE__, {"describe", "--mu", "inf", cavendish}, "--mu: 'inf' is not a finite number", "describe"},
        {__LINE__, {"describe", "--head", "-0.1", cavendish}, "--head: '-0.1' is not 0 or more and below 1", "describe"},
        {__LINE__, {"describe", "--tail", "1", cavendish}, "--tail: '1' is not 0 or more and below 1", "describe"},
        {__LINE__,
         {"describe", "--head", ".5", "--tail", ".5", cavendish},
         "--head and --tail: together they leave out the whole sample",
         "describe"},
        {__LINE__, {"describe", "--list", "0", "x", cavendish}, "--list: 'x' is not a whole number of 0 or more", "describe"},
        {__LINE__, {"describe", "--list", "0", "-1", cavendish}, "--list: '-1' is not a whole number of 0 or more", "describe"},
        {__LINE__, {"describe", "--list", "3", "2", cavendish}, "--list: FROM 3 lies behind TO 2", "describe"},
        {__LINE__, {"regress", norris}, "--model is required", "regress"},
        {__LINE__, {"regress", "--model", "cubic", norris}, "--model: cubic not in {linear,logarithmic,exponential,power}", "regress"},
        {__LINE__, {"frequency", "--classes", "0", cavendish}, "--classes: '0' is less than 1", "frequency"},
        {__LINE__, {"frequency", "--classes", "1000001", cavendish}, "--classes: '1000001' is more than 1000000", "frequency"},
        {__LINE__, {"frequency", "--classes", "2.5", cavendish}, "--classes: '2.5' is not a whole number of 0 or more", "frequency"},
        {__LINE__, {"circular", "--unit", "grads", pigeons}, "--unit: grads not in {radians,degrees,bins}", "circular"},
        {__LINE__,
         {"circular", "--unit", "bins", pigeons},
         "--unit bins: --bins is needed, the number of bins around the circle",
         "circular"},
        {__LINE__, {"prob"}, "FUNCTION is required; wqstat prob --list names them", "prob"},
        {__LINE__, {"prob", "gamma", "3"}, "there is no function 'gamma'; wqstat prob --list names them", "prob"},
        {__LINE__, {"prob", "T_PROB", "1", "2", "1"}, "there is no function 'T_PROB'; wqstat prob --list names them", "prob"},
        {__LINE__, {"prob", "t_Prob", "1", "2"}, "t_Prob T DF ONE_SIDED: 2 arguments given, 3 needed", "prob"},
        {__LINE__, {"prob", "factorial", "1", "2"}, "factorial N: 2 arguments given, 1 needed", "prob"},
        {__LINE__, {"prob", "factorial"}, "factorial N: 0 arguments given, 1 needed", "prob"},
        {__LINE__, {"prob", "t_Prob", "1", "2.5", "1"}, "t_Prob T DF ONE_SIDED: DF: '2.5' is not a whole number of 0 or more", "prob"},
        {__LINE__, {"prob", "t_Prob", "1", "-2", "1"}, "t_Prob T DF ONE_SIDED: DF: '-2' is not a whole number of 0 or more", "prob"},
        {__LINE__, {"prob", "t_Prob", "1", "1e2", "1"}, "t_Prob T DF ONE_SIDED: DF: '1e2' is not a whole number of 0 or more", "prob"},
        {__LINE__, {"prob", "t_Prob", "1", "", "1"}, "t_Prob T DF ONE_SIDED: DF: '' is not a whole number of 0 or more", "prob"},
        // clang-format off
        {__LINE__, {"prob", "t_Prob", "1", "18446744073709551616", "1"},
         "t_Prob T DF ONE_SIDED: DF: '18446744073709551616' is out of range", "prob"},
        {__LINE__, {"prob", "t_Prob", "1,5", "2", "1"}, "t_Prob T DF ONE_SIDED: T: '1,5' is not a number", "prob"},
        {__LINE__, {"prob", "t_Prob", "+-1", "2", "1"}, "t_Prob T DF ONE_SIDED: T: '+-1' is not a number", "prob"},
        {__LINE__, {"prob", "t_Prob", " 1", "2", "1"}, "t_Prob T DF ONE_SIDED: T: ' 1' is not a number", "prob"},
        {__LINE__, {"prob", "t_Prob", "1", "2", "both"},
         "t_Prob T DF ONE_SIDED: ONE_SIDED: 'both' is neither one-sided (1, true, one) nor two-sided (0, false, two)", "prob"},
        {__LINE__, {"prob", "quadratureIntegral", "tan", "0", "1"},
         "quadratureIntegral INTEGRAND A B: INTEGRAND: 'tan' is no integrand; "
         "there are exp, log, sqrt, sin, cos, sqr, reciprocal, normalDensity",
         "prob"},
        // clang-format on
        {__LINE__, {"prob", "sqr", "--verbose"}, "sqr X: X: '--verbose' is not a number", "prob"},
        {__LINE__, {"prob", "--list", "sqr"}, "--list stands alone, without 'sqr'", "prob"},
        {__LINE__, {"random"}, "one of --integers, --reals and --weights is required", "random"},
        {__LINE__, {"random", "--integers", "-1"}, "--integers: '-1' is not a whole number of 0 or more", "random"},
        {__LINE__, {"random", "--integers", "1", "--reals", "1"}, "--integers excludes --reals", "random"},
        {__LINE__, {"random", "--integers", "1", "--low", "2"}, "--low requires --high", "random"},
        {__LINE__, {"random", "--integers", "1", "--low", "2", "--high", "1"}, "--low: 2 is more than --high 1", "random"},
        {__LINE__, {"random", "--integers", "1", "--max", "4294967296"}, "--max: '4294967296' is more than 4294967295", "random"},
        {__LINE__, {"random", "--integers", "1", "--max", "3", "--low", "1", "--high", "2"}, "--max excludes --low", "random"},
        {__LINE__, {"random", "--reals", "1", "--max", "3"}, "--max requires --integers", "random"},
        {__LINE__, {"random", "--integers", "3", "--count", "3"}, "--count requires --weights", "random"},
        {__LINE__, {"random", "--reals", "1", "--seed", "-1"}, "--seed: '-1' is not a whole number of 0 or more", "random"},
        {__LINE__, {"random", "--reals", "1", "--seed", "4294967296"}, "--seed: '4294967296' is more than 4294967295", "random"},
        {__LINE__, {"random", "--weights", "0.2,,0.8"}, "--weights: '' is not a number", "random"},
        {__LINE__, {"random", "--weights", "0.2,-0.8"}, "--weights: '-0.8' is no probability", "random"},
        {__LINE__, {"random", "--weights", "0.5,nan"}, "--weights: 'nan' is no probability", "random"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(run(row.arguments), refused(row.expected, row.command)) << "row of line " << row.line << joined(row.arguments);
}

// ---------------------------------------------------------------- prob

double valueOf(const Words& call)
{
    Words arguments = call;
    arguments.insert(arguments.begin(), {"prob", "--no-warnings"});
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, done) << joined(call) << "\n" << outcome;
    EXPECT_EQ(outcome.errors, "") << joined(call);
    EXPECT_EQ(linesOf(outcome.output).size(), 1U) << joined(call);
    char* end = nullptr;
    const double value = std::strtod(outcome.output.c_str(), &end);
    EXPECT_STREQ(end, "\n") << joined(call);
    return value;
}

TEST(Prob, hasEveryFunctionOfTheHeader)
{
    std::set<std::string> declared;
    for (const std::string& line : linesOf(contentOf(std::string(WQ_SOURCE_DIR) + "/include/wq_stat/distributions.h")))
        for (const std::string start :
             {"WQ_STAT_EXPORT double ", "[[gnu::always_inline]] inline double ", "[[gnu::always_inline]] inline bool "})
            if (line.rfind(start, 0) == 0) declared.insert(line.substr(start.size(), line.find('(') - start.size()));
    ASSERT_EQ(declared.size(), 32U);

    std::set<std::string> listed;
    for (const std::string& line : linesOf(run({"prob", "--list"}).output))
        if (line[0] != ' ') listed.insert(line.substr(0, line.find(' ')));
    EXPECT_EQ(listed, declared);
}

TEST(Prob, givesTheValuesOfTheFiftyDigitTable)  // tests/reference/distributions_table.py
{
    std::map<std::string, int> seen;
    int compared = 0;
    for (const auto& row : wq_test::referenceTable("distributions.csv")) {
        const std::string& function = row.cells[0];
        if (function == "simpsonIntegral" || function == "quadratureIntegral" || seen[function]++ % 31 != 5) continue;
        Words call{function};
        for (std::size_t i = 1; i <= 4; ++i)
            if (!row.cells[i].empty()) call.push_back(row.cells[i]);
        const double expected = std::strtod(row.cells[5].c_str(), nullptr);
        const double rounding = std::strtod(row.cells[6].c_str(), nullptr);
        const double value = valueOf(call);
        ++compared;
        if (std::isfinite(expected))
            EXPECT_NEAR(value, expected, 4.0 * rounding + 1e-15 * std::fabs(expected)) << "row of line " << row.line;
        else
            EXPECT_SAME_BITS(value, expected) << "row of line " << row.line;
    }
    EXPECT_GT(compared, 100);
}

TEST(Prob, passesTheArgumentsOnInOrder)
{
    using namespace wq_lib;
    const double lnB = lnGamma(2) + lnGamma(5) - lnGamma(7);
    const struct {
        int line;
        Words call;
        double expected;
    } rows[] = {
        {__LINE__, {"t_PercentPoint", "0.05", "10"}, t_PercentPoint(0.05, 10)},
        {__LINE__, {"t_Prob", "2", "10", "1"}, t_Prob(2, 10, true)},
        {__LINE__, {"t_Prob", "2", "10", "true"}, t_Prob(2, 10, true)},
        {__LINE__, {"t_Prob", "2", "10", "one"}, t_Prob(2, 10, true)},
        {__LINE__, {"t_Prob", "2", "10", "0"}, t_Prob(2, 10, false)},
        {__LINE__, {"t_Prob", "2", "10", "false"}, t_Prob(2, 10, false)},
        {__LINE__, {"t_Prob", "2", "10", "two"}, t_Prob(2, 10, false)},
        {__LINE__, {"betaRatio", "0.25", "2", "5", std::to_string(lnB)}, betaRatio(0.25, 2, 5, std::stod(std::to_string(lnB)))},
        {__LINE__, {"inverseBetaRatio", "0.1", "2", "5", std::to_string(lnB)}, inverseBetaRatio(0.1, 2, 5, std::stod(std::to_string(lnB)))},
        {__LINE__, {"binomial", "3", "10", "0.25"}, binomial(3, 10, 0.25)},
        {__LINE__, {"F_PercentPoint", "0.95", "2", "26"}, F_PercentPoint(0.95, 2, 26)},
        {__LINE__, {"normalProb", "-1.96"}, normalProb(-1.96)},  // negative numbers are no options
        {__LINE__, {"normalProb", "-.5"}, normalProb(-0.5)},
        {__LINE__, {"normalProb", "+.5"}, normalProb(0.5)},
        {__LINE__, {"normalDensity", "-inf"}, 0.0},
        {__LINE__, {"normalDensity", "nan"}, std::numeric_limits<double>::quiet_NaN()},
        {__LINE__, {"sqr", "1e-320"}, 0.0},
        {__LINE__, {"sqr", "-3"}, 9.0},
        {__LINE__, {"factorial", "171"}, -1.0},
        {__LINE__, {"t_Prob", "1", "18446744073709551615", "1"}, std::numeric_limits<double>::quiet_NaN()},
        {__LINE__, {"z_TransformBig", "-1"}, -std::numeric_limits<double>::infinity()},
        {__LINE__, {"quadratureIntegral", "cos", "0", "1"}, quadratureIntegral([](double x) { return std::cos(x); }, 0, 1)},
        {__LINE__,
         {"quadratureRecursion", "sqr", "0", "1", "0.5", "0", "1", "0.25", "0.3333", "1e-3", "1"},
         quadratureRecursion([](double x) { return sqr(x); }, 0, 1, 0.5, 0, 1, 0.25, 0.3333, 1e-3, 1)},
        {__LINE__, {"simpsonIntegral", "sin", "-1", "1"}, simpsonIntegral([](double x) { return std::sin(x); }, -1, 1)},
    };
    for (const auto& row : rows) EXPECT_SAME_BITS(valueOf(row.call), row.expected) << "row of line " << row.line;
}

TEST(Prob, printsTheShortestTextThatReadsBackTheSame)
{
    const struct {
        int line;
        Words call;
        const char* expected;
    } rows[] = {
        {__LINE__, {"factorial", "5"}, "120\n"},
        {__LINE__, {"sqr", "0.1"}, "0.010000000000000002\n"},  // 0.1 * 0.1 rounds up
        {__LINE__, {"degreeToRadian", "180"}, "3.141592653589793\n"},
        {__LINE__, {"sqr", "1e100"}, "1e+200\n"},
        {__LINE__, {"sqr", "1e150"}, "9.999999999999999e+299\n"},  // 1e150 is not a double
        {__LINE__, {"normalPercentPoint", "-1"}, "nan\n"},
        {__LINE__, {"sqr", "-inf"}, "inf\n"},
        {__LINE__, {"odd", "-3"}, "true\n"},
        {__LINE__, {"odd", "0"}, "false\n"},
    };
    for (const auto& row : rows) {
        Words arguments = row.call;
        arguments.insert(arguments.begin(), "prob");
        EXPECT_EQ(run(arguments), printedOnly(row.expected)) << "row of line " << row.line;
    }
}

TEST(Prob, tellsWhereTheApproximationIsFarFromWhatItIsNamedFor)  // pf, pchisq, qt, pt, pbeta, qbeta, lgamma, dbinom of R
{
    const struct {
        int line;
        Words call;
        std::string warning;
        std::string exact;
    } rows[] = {
        // clang-format off
        {__LINE__, {"F_Prob", "1", "1", "500"}, "F_Prob is an approximation, and this is no probability: the exact value is 0.682206", "0.682205"},
        {__LINE__, {"F_Prob", "3", "2", "10"}, "", "0.904632"},
        {__LINE__, {"t_PercentPoint", "0.05", "1"}, "t_PercentPoint is an approximation: the exact value is 12.7062", "12.70620"},
        {__LINE__, {"t_PercentPoint", "0.05", "100"}, "", "1.983971"},
        {__LINE__, {"t_Prob", "2", "9", "two"}, "t_Prob is an approximation, and this is no probability: the exact value is 0.0765528", "0.076552"},
        {__LINE__, {"betaRatio", "0.00537", "0.5", "100", "-1.7314"}, "betaRatio is an approximation, and this is no probability: the exact value is 0.700003", "0.7000027"},
        {__LINE__, {"betaRatio", "1", "2", "5", "-3.4012"}, "", "1\n"},
        {__LINE__, {"inverseBetaRatio", "0.6", "1", "100", "-4.605170186"}, "inverseBetaRatio is an approximation: the exact value is 0.00912106", "0.00912105"},
        {__LINE__, {"inverseBetaRatio", "0.1", "2", "5", "-3.40119738"}, "", "0.0925952"},
        // clang-format on
        {__LINE__, {"chiSquareProb", "3", "4"}, "", "0.442174"},
        {__LINE__, {"sqr", "3"}, "", ""},
        {__LINE__, {"normalPercentPoint", "0.5"}, "normalPercentPoint is an approximation: the exact value is 0", "0\n"},  // not -0
        // clang-format off
        {__LINE__, {"lnGamma", "2.3"}, "lnGamma is an approximation: the exact value is 0.154189", "0.15418945495963"},
        {__LINE__, {"lnGamma", "-1.5"}, "lnGamma is an approximation: the exact value is 0.860047", "0.86004701537648"},
        {__LINE__, {"lnGamma", "-2"}, "lnGamma is an approximation, and these arguments have no exact value", "nan\n"},
        {__LINE__, {"lnGamma", "-0.5"}, "lnGamma is an approximation, and these arguments have no exact value", "nan\n"},  // gamma is negative
        {__LINE__, {"lnGamma", "2"}, "", "0\n"},
        {__LINE__, {"lnGamma", "0.5"}, "", "0.57236494292470"},
        {__LINE__, {"binomial", "1000", "2000", "0.5"}, "binomial is an approximation: the exact value is 0.017839", "0.017839011145854"},
        {__LINE__, {"binomial", "5", "10", "1.5"}, "binomial is an approximation, and these arguments have no exact value", "nan\n"},
        {__LINE__, {"binomial", "3", "3", "1"}, "binomial is an approximation, and this is no probability: the exact value is 1", "1\n"},
        {__LINE__, {"binomial", "2", "3", "1"}, "binomial is an approximation, and this is no probability: the exact value is 0", "0\n"},
        {__LINE__, {"binomial", "0", "0", "1"}, "", "1\n"},
        {__LINE__, {"binomial", "4", "3", "0.5"}, "", "0\n"},
        {__LINE__, {"binomial", "3", "10", "0.25"}, "", "0.250282287597656"},
        {__LINE__, {"binomial", "41", "100", "0.3"}, "", "0.00532484456706468"},
        {__LINE__, {"binomial", "12", "50", "0.001"}, "", "1.16870793085979"},
        {__LINE__, {"binomial", "0", "10", "0.5"}, "", "0.0009765625\n"},
        {__LINE__, {"binomial", "10", "10", "0.5"}, "", "0.0009765625\n"},
        {__LINE__, {"binomial", "3", "1000000000", "1e-9"}, "", "0.0613132401645837"},
        // clang-format on
        // clang-format off
        {__LINE__, {"betaRatio", "1.5", "2", "5", "-3.4012"}, "betaRatio is an approximation: the exact value is 1", "1\n"},
        {__LINE__, {"betaRatio", "-1.5", "2", "5", "-3.4012"}, "", "0\n"},
        // no distribution has 0 degrees of freedom, no sample has 0 values, and no probability lies above 1
        {__LINE__, {"F_Prob", "3", "0", "10"}, "F_Prob is an approximation, and these arguments have no exact value", "nan\n"},
        {__LINE__, {"t_Prob", "2", "0", "one"}, "t_Prob is an approximation, and these arguments have no exact value", "nan\n"},
        {__LINE__, {"chiSquareProb", "2", "0"}, "chiSquareProb is an approximation, and these arguments have no exact value", "nan\n"},
        {__LINE__, {"t_PercentPoint", "1.5", "10"}, "t_PercentPoint is an approximation, and these arguments have no exact value", "nan\n"},
        {__LINE__, {"t_PercentPoint", "2.5", "10"}, "", "nan\n"},  // nor does the library print one
        {__LINE__, {"D_TwoSamples", "0.05", "0", "30"}, "D_TwoSamples is an approximation, and these arguments have no exact value", "nan\n"},
        {__LINE__, {"D_TwoSamples", "0.05", "400", "500"}, "", "0.0911"},  // 1.358 sqrt(1/400 + 1/500)
        // clang-format on
    };
    for (const auto& row : rows) {
        Words arguments = row.call;
        arguments.insert(arguments.begin(), "prob");
        EXPECT_EQ(run(arguments).errors, row.warning.empty() ? "" : "wqstat: warning: " + row.warning + "\n") << "row of line " << row.line;
        EXPECT_EQ(run(with(arguments, {"--no-warnings"})).errors, "") << "row of line " << row.line;
        const Outcome exact = run(with(arguments, {"--exact"}));
        if (row.exact.empty())
            EXPECT_EQ(exact, refused("--exact: 'sqr' has no exact value here", "prob")) << "row of line " << row.line;
        else
            EXPECT_EQ(exact.output.substr(0, row.exact.size()), row.exact) << "row of line " << row.line;
    }
}

TEST(Prob, keepsTheLibrarysMessageOutOfStandardOutput)
{
    const Outcome expected{done, "nan\n", "recursion limit reached: singularity likely\n"};
    EXPECT_EQ(run({"prob", "quadratureIntegral", "exp", "0", "15"}), expected);
}

// ---------------------------------------------------------------- random

// MT19937, its first 999 draws gone.
std::mt19937 startedEngine(unsigned int seed = 0)
{
    std::mt19937 engine(seed);
    engine.discard(999);
    return engine;
}

// The next real of generate_canonical with 53 bits: two draws, the first the low half.
double nextReal(std::mt19937& engine)
{
    const auto low = static_cast<double>(engine());
    const auto high = static_cast<double>(engine());
    return (low + high * 4294967296.0) / 18446744073709551616.0;
}

TEST(Random, isTheTwisterInItsFixedState)
{
    std::mt19937 engine = startedEngine();
    std::string integers;
    for (int i = 0; i < 1000; ++i) integers += std::to_string(engine()) + "\n";
    EXPECT_EQ(run({"random", "--integers", "1000"}), printedOnly(integers));
    EXPECT_EQ(run({"random", "--integers", "0"}), printedOnly(""));
}

TEST(Random, startsWhereTheSeedSays)
{
    for (const unsigned int seed : {0U, 1U, 4294967295U}) {
        std::mt19937 engine = startedEngine(seed);
        std::string integers;
        for (int i = 0; i < 100; ++i) integers += std::to_string(engine()) + "\n";
        EXPECT_EQ(run({"random", "--integers", "100", "--seed", std::to_string(seed)}), printedOnly(integers));
    }
}

TEST(Random, drawsFromTheRangeWithBothEnds)
{
    std::mt19937 engine = startedEngine();
    std::uniform_int_distribution<unsigned int> toThree(0, 3);
    std::string upTo, between;
    for (int i = 0; i < 100; ++i) {
        const unsigned int drawn = toThree(engine);
        upTo += std::to_string(drawn) + "\n";
        between += std::to_string(drawn + 7) + "\n";
    }
    EXPECT_EQ(run({"random", "--integers", "100", "--max", "3"}), printedOnly(upTo));
    EXPECT_EQ(run({"random", "--integers", "100", "--low", "7", "--high", "10"}), printedOnly(between));
    for (const char end : {'0', '3'}) EXPECT_NE(upTo.find(end), std::string::npos);
    EXPECT_EQ(run({"random", "--integers", "2", "--low", "3", "--high", "3"}), printedOnly("3\n3\n"));
}

TEST(Random, realsHaveAllTheirDigits)
{
    std::mt19937 engine = startedEngine();
    const Outcome outcome = run({"random", "--reals", "200"});
    const auto lines = linesOf(outcome.output);
    ASSERT_EQ(lines.size(), 200U);
    for (const std::string& line : lines) EXPECT_SAME_BITS(std::strtod(line.c_str(), nullptr), nextReal(engine));
}

TEST(Random, weightsGiveTheirPositions)
{
    std::mt19937 engine = startedEngine();
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        const double real = nextReal(engine);
        expected += real < 0.25 ? "0\n" : real < 0.75 ? "2\n" : "3\n";  // the second has weight 0; 3 lies beyond the sum
    }
    EXPECT_EQ(run({"random", "--weights", "0.25,0,0.5", "--count", "100"}), printedOnly(expected));
    EXPECT_EQ(run({"random", "--weights", "1"}), printedOnly("0\n"));
}

// ---------------------------------------------------------------- help

Words commandNames()
{
    Words names;
    bool commands = false;
    for (const std::string& line : linesOf(run({"--help"}).output)) {
        if (line == "Subcommands:")
            commands = true;
        else if (line.empty())
            commands = false;
        else if (commands)
            names.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
    return names;
}

TEST(Help, listsTheCommands)
{
    EXPECT_THAT(commandNames(), testing::ElementsAre("columns", "describe", "pairs", "regress", "correlate", "anova", "multiy", "fit", "ks",
                                                     "variances", "frequency", "circular", "prob", "random"));
}

TEST(Help, hasAnExampleOfEachCommandThatRunsOnTheShippedData)
{
    for (const std::string& name : commandNames()) {
        const Outcome help = run({name, "--help"});
        EXPECT_EQ(help.status, done);
        EXPECT_EQ(help.errors, "");
        const auto lines = linesOf(help.output);
        const auto title = std::find(lines.begin(), lines.end(), "Example:");
        ASSERT_EQ(lines.end() - title, 2) << name;
        std::istringstream example(*(title + 1));
        Words words;
        for (std::string word; example >> word;)
            words.push_back(word.find(".txt") == std::string::npos && word.find(".csv") == std::string::npos ? word : shipped(word));
        ASSERT_GE(words.size(), 2U);
        EXPECT_EQ(words[0] + " " + words[1], "wqstat " + name);
        words.erase(words.begin());
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, done) << name;
        EXPECT_THAT(outcome.errors, testing::AnyOf("", StartsWith("wqstat: warning: "))) << name;
        EXPECT_NE(outcome.output, "") << name;
        EXPECT_THAT(run({"--help"}).output, HasSubstr(*(title + 1) + "\n"));
    }
}

TEST(Version, isThatOfTheLibrary) { EXPECT_EQ(run({"--version"}), printedOnly("wqstat 1.1\nPROGRAM:wq_stat.1  PROJECT:wq_lib-1.1\n")); }

}  // namespace
