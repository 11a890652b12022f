// What wqstat says unasked: each warning with data that call for it and with data that do not.
#include "data_files.h"
#include "documents.h"

#include "support/table.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace wq_test;
using namespace wq_test::data_files;

struct Row {
    int line;
    Words command;
    std::string file;                   // what stands in the data file
    std::vector<std::string> warnings;  // none where the data are as they should be
};

std::string linesOf(const std::vector<std::string>& warnings)
{
    std::string text;
    for (const std::string& warning : warnings) text += "wqstat: warning: " + warning + "\n";
    return text;
}

// Standard error is just these lines, the status 0; --no-warnings takes them away and changes nothing else.
void expectWarnings(int line, const Words& arguments, const std::vector<std::string>& warnings)
{
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, done) << outcome;
    EXPECT_EQ(outcome.errors, linesOf(warnings)) << "row of line " << line;
    EXPECT_EQ(run(with(arguments, {"--no-warnings"})), (Outcome{done, outcome.output, ""})) << "row of line " << line;
}

void expectWarnings(const std::vector<Row>& rows)
{
    const TempFolder folder;
    for (const Row& row : rows) expectWarnings(row.line, with(row.command, {folder.write("data.txt", row.file)}), row.warnings);
}

TEST(Warnings, tellOfADecisionThatDiffers)  // the p are those of tests/reference/textbook.R, or R's as named
{
    std::string falling;  // cor.test(0:19, 40 - 2 * (0:19) + (0:19) %% 2): p = 5.346e-26
    for (int i = 0; i < 20; ++i) falling += std::to_string(i) + ";" + std::to_string(40 - 2 * i + i % 2) + "\n";
    expectWarnings(__LINE__, {"describe", "--mu", "5.355", cavendish}, {"the exact p is 0.031, which rejects H0; the report accepts it"});
    expectWarnings(__LINE__, {"describe", "--mu", "5.517", cavendish}, {});
    expectWarnings(__LINE__, {"anova", supplements}, {"the exact p is 0.06, which accepts H0; the report rejects it"});
    expectWarnings(__LINE__, {"anova", resistivity}, {});
    expectWarnings(__LINE__, {"correlate", norris}, {});
    expectWarnings({
        {__LINE__, {"correlate"}, falling, {"the exact p of t is 5.3e-26, which rejects H0; the report accepts it"}},
        // of the means 1, 4, 1, 4 at 1, 2, 3, 4; summary(lm(c(1, 4, 1, 4) ~ c(1, 2, 3, 4))): p = 0.5528
        {__LINE__,
         {"multiy"},
         "1;0;1\n1;2;1\n2;3;1\n2;5;1\n3;0;1\n3;2;1\n4;3;1\n4;5;1\n",
         {"the exact p of the slope is 0.55, which accepts H0; the report rejects it"}},
    });
    expectWarnings(__LINE__, {"multiy", seedlings}, {});
    expectWarnings(__LINE__, {"fit", peas}, {});
    expectWarnings(__LINE__, {"ks", digits}, {});
    expectWarnings(__LINE__, {"variances", instrument1, instrument2}, {});
    expectWarnings(__LINE__, {"circular", "--unit", "degrees", pigeons}, {});
    expectWarnings({
        // X2 by chisq.test(c(1, 3, 8, 8)); G has a p of 0.033
        {__LINE__, {"fit"}, "1;5\n3;5\n8;5\n8;5\n", {"the exact p is 0.055, which accepts H0; the report rejects it"}},
        {__LINE__, {"fit"}, "2;5\n3;5\n7;5\n8;5\n", {}},
        // as test_exact_results.cpp has it, of z = 2.5; the report corrects it to 3.08
        {__LINE__,
         {"circular", "--unit", "bins", "--bins", "4"},
         "1;9\n2;4\n3;2\n4;5\n",
         {"the exact p is 0.11, which accepts H0; the report rejects it"}},
        {__LINE__, {"circular", "--unit", "bins", "--bins", "4"}, "1;7\n2;4\n3;4\n4;5\n", {}},
        {__LINE__, {"circular", "--unit", "bins", "--bins", "4"}, "1;19\n2;4\n3;2\n4;5\n", {}},
    });
}

TEST(Warnings, tellOfADecisionThatRestsOnNothing)
{
    expectWarnings({
        {__LINE__, {"describe"}, "2\n2\n2\n", {"the report rejects H0 without ground: the values are all equal"}},
        {__LINE__, {"describe"}, "0.1\n0.1\n0.1\n", {"the report rejects H0 without ground: the values are all equal"}},
        {__LINE__, {"describe", "--mu", "2"}, "1\n2\n4\n", {}},
        {__LINE__, {"anova"}, "1;2\n1;3\n", {"the report accepts H0 without ground: there is one group"}},
        {__LINE__, {"anova"}, "1;2\n2;3\n", {"the report accepts H0 without ground: no group has more than one observation"}},
        {__LINE__, {"anova"}, "1;2\n1;2\n2;2\n2;2\n", {"the report accepts H0 without ground: the observations are all equal"}},
        {__LINE__, {"anova"}, "1;2\n1;3\n2;2\n2;4\n", {}},
        {__LINE__,
         {"multiy"},
         "1;2;2\n1;3;2\n2;4;2\n2;5;1\n",
         {"the report rejects H0 by the test of the slope without ground: fewer than 3 groups leave no deviations from a line"}},
        {__LINE__,
         {"multiy"},
         "1;1;1\n1;3;1\n2;0;1\n2;4;1\n3;2;2\n",
         {"the report accepts H0 by the test of the slope without ground: the means of the groups are all equal"}},
        {__LINE__, {"fit"}, "7;7\n", {"the report rejects H0 without ground: there are no degrees of freedom"}},
        {__LINE__, {"fit"}, "7;0\n8;15\n", {"the report rejects H0 without ground: nothing is expected in 1 class"}},
        {__LINE__, {"ks"}, "3;0\n4;0\n", {"the report accepts H0 without ground: a sample is empty"}},
        {__LINE__,
         {"circular", "--unit", "bins", "--bins", "2"},
         "1;9\n2;2\n",
         {"the report rejects H0 without ground: directions in fewer than 3 classes have no test of R"}},
        {__LINE__,  // numbers of bins are in classes without frequencies, too
         {"circular", "--unit", "bins", "--bins", "2"},
         "1;0\n1;0\n2;0\n1;0\n",
         {"the report accepts H0 without ground: directions in fewer than 3 classes have no test of R"}},
        {__LINE__, {"circular", "--unit", "bins", "--bins", "2"}, "1;0\n1;0\n2.5;0\n1;0\n", {}},
        {__LINE__, {"circular", "--unit", "bins", "--bins", "3"}, "1;9\n2;1\n3;1\n", {}},
        {__LINE__,
         {"correlate"},
         "1;2\n2;5\n",
         {"the report rejects H0 by the test of t without ground: there are no degrees of freedom",
          "the report accepts H0 by the test of F without ground: there are no degrees of freedom"}},
        {__LINE__,
         {"correlate"},
         "3;0\n3;1\n3;2\n3;0\n",
         {"the report rejects H0 by the test of t without ground: x or y is constant",
          "the report rejects H0 by the test of F without ground: x or y is constant"}},
        {__LINE__,
         {"regress", "--model", "linear"},
         "1;2\n2;5\n",
         {"the report's t and limits of b, and the pB it stores, rest on nothing: there are no degrees of freedom"}},
        {__LINE__,
         {"regress", "--model", "linear"},
         "1;2\n1;5\n1;3\n",
         {"the report's t and limits of b, and the pB it stores, rest on nothing: x is constant"}},
        {__LINE__, {"regress", "--model", "linear"}, "1;2\n2;5\n3;3\n", {}},
        // what is no number, where the same data without it have a test
        {__LINE__, {"describe"}, "nan\n1\n2\n", {"the report rejects H0 without ground: the statistic is no number"}},
        {__LINE__, {"anova"}, "1;nan\n1;3\n2;2\n2;4\n", {"the report accepts H0 without ground: F is no number"}},
        {__LINE__, {"circular"}, "nan;0\n1;0\n", {"the report rejects H0 without ground: z is no number"}},
        {__LINE__, {"circular", "--unit", "bins", "--bins", "4"}, "1;5\n2;5\n3;4\n4;5\n", {}},
        {__LINE__,
         {"regress", "--model", "linear"},
         "1;nan\n2;3\n4;4\n",
         {"the report's t and limits of b, and the pB it stores, rest on nothing: the statistic is no number"}},
        {__LINE__,
         {"correlate"},
         "1;nan\n2;3\n4;4\n5;6\n",
         {"the report rejects H0 by the test of t without ground: the statistic is no number",
          "the report rejects H0 by the test of F without ground: the statistic is no number"}},
        {__LINE__,
         {"multiy"},
         "1;nan;1\n1;2;1\n2;3;1\n2;5;1\n3;0;1\n3;2;1\n4;3;1\n4;5;1\n",
         {"the report rejects H0 by the test of the slope without ground: F is no number"}},
    });
    const TempFolder folder;
    const std::string equal = folder.write("equal.txt", "2\n2\n2\n");
    const std::string other = folder.write("other.txt", "2\n3\n2\n");
    expectWarnings(__LINE__, {"variances", equal, equal},
                   {"the report rejects H0 without ground: the values of both samples are all equal"});
    expectWarnings(__LINE__, {"variances", equal, other}, {"the values of the first sample are all equal, so that F is no finite number"});
    expectWarnings(__LINE__, {"variances", other, equal}, {"the values of the second sample are all equal, so that F is no finite number"});
    expectWarnings(__LINE__, {"variances", other, other}, {});
    std::string tenths;  // whose rounded mean leaves them a variance
    std::string sevenTenths = "0.7\n";
    for (int i = 0; i < 10; ++i) tenths += "0.1\n", sevenTenths += "0.7\n";
    expectWarnings(__LINE__, {"variances", folder.write("infinite.txt", "1\ninf\n2\n"), other},
                   {"the report rejects H0 without ground: the statistic is no number"});
    const std::string first = folder.write("tenths.txt", tenths);
    const std::string second = folder.write("sevenTenths.txt", sevenTenths);
    expectWarnings(__LINE__, {"variances", first, second},
                   {"the report rejects H0 without ground: the values of both samples are all equal"});
    expectWarnings(__LINE__, {"variances", first, other}, {"the values of the first sample are all equal, so that F is no finite number"});
    expectWarnings(__LINE__, {"variances", other, second},
                   {"the values of the second sample are all equal, so that F is no finite number"});
}

TEST(Warnings, tellOfNoDirections)  // where fractions of one are read as the library reads them, which counts none
{
    const TempFolder folder;
    const std::string warning = "wqstat: warning: the report rejects H0 without ground: there are no directions\n";
    const auto errors = [&](const std::string& text) {
        return run({"circular", "--lenient", "--unit", "bins", "--bins", "4", folder.write("angles.txt", text)}).errors;
    };
    EXPECT_THAT(errors("1;0.5\n2;0.5\n"), testing::HasSubstr(warning));
    EXPECT_THAT(errors("1;2\n2;1\n"), testing::Not(testing::HasSubstr("without ground")));
}

TEST(Warnings, tellOfFrequenciesThatAreNoCounts)
{
    const auto groundless = [](const std::string& verdict) {
        return "the report " + verdict + " H0 without ground: a frequency is negative, not finite or too large";
    };
    const auto sums = [](const std::string& both) { return "the sums of the observed and the expected frequencies differ: " + both; };
    expectWarnings({
        {__LINE__, {"ks"}, "1e20;1\n3;4\n", {groundless("rejects")}},
        {__LINE__, {"fit"}, "nan;15\n14;14\n", {groundless("accepts"), sums("n/a and 29")}},
        {__LINE__, {"fit"}, "inf;5\n12;20\n", {groundless("rejects"), sums("inf and 25")}},
        {__LINE__, {"fit"}, "20;inf\n12;20\n", {groundless("accepts"), sums("32 and inf")}},
        {__LINE__, {"fit"}, "inf;5\n12;inf\n", {groundless("accepts")}},
        {__LINE__, {"fit"}, "-5;7\n21;9\n", {groundless("rejects")}},
        {__LINE__, {"fit"}, "15;15\n14;14\n", {}},
        {__LINE__, {"ks"}, "inf;1\n1;3\n20;1\n", {groundless("rejects")}},
        {__LINE__, {"ks"}, "3;4\n-5;4\n", {groundless("accepts")}},
        {__LINE__, {"ks"}, "3;1\nnan;2\n", {groundless("rejects")}},
        {__LINE__, {"ks"}, "3;4\n38;37\n", {}},
        {__LINE__,
         {"ks"},
         "1.9;0\n0;40\n",
         {"the report rejects H0 without ground: D is above 1, for the frequencies are not whole numbers",
          "samples of 1 and 40 are too small for the report's critical value: without one it rejects every D above 0"}},
    });
}

TEST(Warnings, tellOfDataThatLookUnlikeWhatIsMeant)
{
    const std::string oneOut = "1 value is in no class: the table counts 4 of 5 and leaves the largest out";
    expectWarnings({
        {__LINE__,
         {"describe", "--mu", "-2"},
         "-3\n-2\n-1\n",
         {"no value is above 0: the largest is -1, where the report says 2.22507e-308"}},
        {__LINE__, {"describe", "--mu", "2"}, "-3\n2\n7\n", {}},
        {__LINE__, {"pairs"}, "1;-3\n2;-4\n3;-5\n", {"no value of y is above 0: the largest is -3, where the report says 2.22507e-308"}},
        {__LINE__, {"pairs"}, "-1;2\n-2;3\n-3;4\n", {"no value of x is above 0: the largest is -1, where the report says 2.22507e-308"}},
        {__LINE__, {"pairs"}, "1;-3\n2;4\n3;-5\n", {}},
        {__LINE__, {"frequency", "--classes", "2"}, "1\n2\n3\n4\n5\n", {oneOut}},
        {__LINE__,
         {"frequency", "--classes", "2"},
         "-5\n-4\n-3\n-2\n-1\n",
         {oneOut, "no value is above 0: the largest is -1, where the report says 2.22507e-308"}},
        {__LINE__, {"fit"}, "10;10\n12;11\n", {"the sums of the observed and the expected frequencies differ: 22 and 21"}},
        {__LINE__, {"fit"}, "10;10.5\n12;11.5\n", {}},
        {__LINE__, {"fit"}, "3;4\n12;11\n", {"fewer than 5 are expected in 1 class: X2 and G are hardly distributed as chi-square"}},
        {__LINE__, {"fit"}, "4;5\n12;11\n", {}},
        {__LINE__,
         {"circular"},
         "90;0\n180;0\n7;0\n1;0\n",
         {"3 angles lie beyond 2 pi and can hardly be radians: --unit says what the angles are"}},
        {__LINE__, {"circular"}, "-6.28318530717958623;0\n3;0\n", {}},
        {__LINE__, {"circular", "--unit", "degrees"}, "90;0\n200;0\n", {}},
        {__LINE__,
         {"ks"},
         "2;1\n1;2\n1;1\n",
         {"the exact p given the ties is 1, which accepts H0; the report rejects it",
          "samples of 4 and 4 are too small for the report's critical value: without one it rejects every D above 0"}},
        {__LINE__,  // ks.test() with exact = TRUE rejects as well
         {"ks"},
         "2;0\n3;1\n1;2\n0;4\n",
         {"samples of 6 and 7 are too small for the report's critical value: without one it rejects every D above 0"}},
        {__LINE__, {"ks"}, "20;21\n21;20\n", {}},
        {__LINE__,
         {"regress", "--model", "logarithmic"},
         "1;2\n2;3\n3;3.5\n-1;4\n5;4.7\n",
         {"1 pair has no logarithm (0 or less) and is left out; the report's b is no number for it"}},
        {__LINE__, {"regress", "--model", "linear"}, "1;2\n2;3\n3;3.5\n-1;4\n5;4.7\n", {}},
        {__LINE__,  // without two different x there is no b at all
         {"regress", "--model", "logarithmic"},
         "1;2\n-1;4\n",
         {"1 pair has no logarithm (0 or less) and is left out",
          "the report's t and limits of b, and the pB it stores, rest on nothing: there are no degrees of freedom"}},
        {__LINE__, {"regress", "--model", "logarithmic"}, "1;2\n2;3\n3;3.5\n5;4.7\n", {}},
    });
}

// In the analyses whose report prints no maximum too: the document has it.
TEST(Warnings, tellOfAMaximumThatIsNone)
{
    const auto line = [](const std::string& of, const std::string& largest) {
        return "no value of " + of + " is above 0: the largest is " + largest + ", where the report says 2.22507e-308";
    };
    expectWarnings({
        {__LINE__, {"correlate"}, "1;-3\n2;-4\n3;-4\n4;-3\n", {line("y", "-3")}},
        {__LINE__, {"correlate"}, "-1;3\n-2;4\n-3;4\n-4;3\n", {line("x", "-1")}},
        {__LINE__, {"correlate"}, "1;3\n2;-4\n3;-4\n4;3\n", {}},
        {__LINE__, {"regress", "--model", "linear"}, "-1;-3\n-2;-4\n-3;-4\n", {line("x", "-1"), line("y", "-3")}},
        {__LINE__, {"regress", "--model", "linear"}, "-1;-3\n2;4\n-3;-4\n", {}},
        {__LINE__, {"regress", "--model", "logarithmic"}, "1;-3\n2;-4\n3;-4\n", {line("y", "-3")}},
        {__LINE__, {"regress", "--model", "exponential"}, "-1;3\n-2;4\n-3;4\n", {line("x", "-1")}},
        {__LINE__, {"regress", "--model", "power"}, "0.5;0.5\n0.25;0.3\n0.125;0.2\n", {}},
    });
    const TempFolder folder;
    const std::string below = folder.write("below.txt", "-1\n-2\n-4\n");
    const std::string above = folder.write("above.txt", "1\n2\n4\n");
    expectWarnings(__LINE__, {"variances", below, above}, {line("the first sample", "-1")});
    expectWarnings(__LINE__, {"variances", above, below}, {line("the second sample", "-1")});
    expectWarnings(__LINE__, {"variances", above, above}, {});
}

TEST(Warnings, tellOfDigitsThatAnExportLoses)
{
    const TempFolder folder;
    const std::string out = folder.path("export.txt");
    expectWarnings({
        {__LINE__,
         {"pairs", "--export", out},
         "1;0.00123456\n2;3e-9\n",
         {"the export writes 6 decimals, too few for 2 numbers, such as 0.00123456, written as 0.001235"}},
        {__LINE__, {"pairs", "--export", out}, "1;0.001234\n2;1234567.1234567\n", {}},
        {__LINE__, {"pairs"}, "1;0.00123456\n2;3e-9\n", {}},
        {__LINE__,  // near the upper end of a decade, where half a unit of the sixth digit is least of the number
         {"pairs", "--export", out},
         "1;0.0912344\n2;5\n",
         {"the export writes 6 decimals, too few for 1 number, such as 0.0912344, written as 0.091234"}},
        {__LINE__, {"pairs", "--export", out}, "1;0.0912340004\n2;0.09999998\n", {}},
        {__LINE__,
         {"describe", "--mu", "2", "--export", out},
         "1e-13\n2\n3\n",
         {"the export writes 12 decimals, too few for 1 number, such as 1e-13, written as 0"}},
        {__LINE__, {"describe", "--mu", "2", "--export", out}, "1e-6\n2\n3\n", {}},
        {__LINE__,
         {"anova", "--export", out},
         "1;0.123456\n1;0.5\n2;0.25\n2;0.75\n",
         {"the export writes 4 decimals, too few for 1 number, such as 0.123456, written as 0.1235"}},
        {__LINE__, {"anova", "--export", out}, "1;0.1234\n1;0.5\n2;0.25\n2;0.75\n", {}},
        {__LINE__,
         {"anova", "--export", out},
         "1;9.12344\n1;3\n2;4\n2;5\n",
         {"the export writes 4 decimals, too few for 1 number, such as 9.12344, written as 9.1234"}},
        {__LINE__,
         {"anova", "--export", out},
         "1;-9.99996\n1;3\n2;4\n2;5\n",
         {"the export writes 4 decimals, too few for 1 number, such as -9.99996, written as -10"}},
        {__LINE__, {"anova", "--export", out}, "1;9.999996\n1;3\n2;4\n2;5\n", {}},
        {__LINE__,
         {"circular", "--export", out},
         "0.0123456;0\n2;0\n",
         {"the export writes 6 decimals, too few for 1 number, such as 0.0123456, written as 0.012346"}},
        {__LINE__, {"circular", "--export", out}, "0.012345;0\n2;0\n", {}},
    });
}

constexpr char leavesOneOut[] = "1 value is in no class: the table counts ";

// The limits and middles of the classes are those numbers of the table that have too few digits; where they do not, the classes are wider.
TEST(Warnings, tellOfDigitsThatATableLoses)
{
    const TempFolder folder;
    const std::string out = folder.path("export.txt");
    const std::string oneOut = std::string(leavesOneOut) + "2 of 3 and leaves the largest out";
    expectWarnings({
        {__LINE__,  // 1e-7 alone: the others are 0 and 2e-7 wide apart
         {"frequency", "--classes", "1", "--export", out},
         "0\n1e-7\n2e-7\n",
         {oneOut, "the export writes 6 decimals, too few for 2 numbers, such as 2e-7, written as 0"}},
        {__LINE__, {"frequency", "--classes", "1", "--export", out}, "0\n1\n2\n", {oneOut}},
        {__LINE__,  // the middle alone, 0.0000005
         {"frequency", "--classes", "1", "--export", out},
         "0\n0\n0.000001\n",
         {oneOut, "the export writes 6 decimals, too few for 1 number, such as 5e-7, written as 0"}},
        {__LINE__, {"frequency", "--classes", "1", "--export", out}, "0\n0\n0.000002\n", {oneOut}},
        {__LINE__, {"frequency", "--classes", "1"}, "0\n1e-7\n2e-7\n", {oneOut}},
        // a limit that is 0 but for the rounding of -0.3 + 3 * 0.1
        {__LINE__, {"frequency", "--classes", "6", "--export", out}, "-0.3\n0\n0.3\n", {oneOut}},
    });
}

// n values that are 0, one that is 1, and a last one, 2, which the table leaves out.
std::string tableOf(const std::string& zeros) { return "v,n\n0," + zeros + "\n1,1\n2,1\n"; }

// Rates of seven observations have no 6 digits below 0.1, and need none: they are told from those of other counts. Of so many that 1 is not
// seen in 6 decimals they are not.
TEST(Warnings, tellOfRatesThatAreLost)
{
    const TempFolder folder;
    const Words command = {"frequency", "--classes", "2", "--column", "v", "--count", "n", "--export", folder.path("export.txt")};
    const auto oneOut = [](const std::string& counted, const std::string& all) {
        return leavesOneOut + counted + " of " + all + " and leaves the largest out";
    };
    const auto lost = [](const std::string& numbers) { return "the export writes 6 decimals, too few for " + numbers + ", written as 0"; };
    expectWarnings({
        {__LINE__, command, tableOf("2999998"), {oneOut("2 999 999", "3 000 000"), lost("1 number, such as 3.33333e-7")}},
        {__LINE__, command, tableOf("299998"), {oneOut("299 999", "300 000")}},
        {__LINE__, command, tableOf("29"), {oneOut("30", "31")}},
    });
}

// The table counts up to the last value in order, so that it always leaves one out: there is no run of frequency without this line, unless
// the table is made by a host that counts all, as test_exact_results.cpp does.
TEST(Warnings, tellOfTheLargestValueInEveryTable)
{
    const std::pair<const char*, const char*> samples[] = {
        {"1\n2\n3\n4\n5\n", "4 of 5"}, {"2\n2\n2\n", "2 of 3"},   {"-3\n0\n9\n9\n", "3 of 4"},
        {"1\nnan\n2\n3\n", "3 of 4"},  {"1\n2\ninf\n", "2 of 3"}, {"0.5\n0.25\n0.125\n1e9\n", "3 of 4"},
    };
    const TempFolder folder;
    for (const auto& [values, counted] : samples)
        for (const char* const classes : {"1", "2", "10", "1000"})
            EXPECT_THAT(run({"frequency", "--classes", classes, folder.write("data.txt", values)}).errors,
                        testing::StartsWith(linesOf({std::string(leavesOneOut) + counted + " and leaves the largest out"})))
                << values << classes;
}

TEST(Warnings, standInTheDocumentAndInTheBlock)
{
    const TempFolder folder;
    const std::string file = folder.write("data.txt", "3;4\n12;10\n");
    const std::vector<std::string> expected = {"the sums of the observed and the expected frequencies differ: 15 and 14",
                                               "fewer than 5 are expected in 1 class: X2 and G are hardly distributed as chi-square"};
    EXPECT_EQ(documentOf({"fit", file}).at("textbook").at("warnings"), Json(expected));
    EXPECT_EQ(documentOf({"anova", supplements}).at("textbook").at("warnings"),
              Json({"the exact p is 0.06, which accepts H0; the report rejects it"}));
    EXPECT_THAT(run({"fit", "--textbook", "--no-warnings", file}).output,
                testing::EndsWith("Warning: " + expected[0] + "\nWarning: " + expected[1] + "\n\n"));
    EXPECT_THAT(run({"fit", file}).output, testing::Not(testing::HasSubstr("Warning")));
}

// The runs of every command that decides, on every data set at hand.
std::vector<Words> runsOnAllData()
{
    std::vector<Words> runs;
    const auto add = [&runs](const std::string& kind, const Words& command) {
        for (const std::string& file : allOf(kind)) runs.push_back(with(command, {file}));
    };
    for (const char* const alpha : {"0.05", "0.01"}) {
        for (const char* const mu : {"0", "5.4", "80"}) add("values", {"describe", "--alpha", alpha, "--mu", mu});
        const std::vector<std::string> values = allOf("values");
        for (std::size_t i = 1; i < values.size(); ++i) runs.push_back({"variances", "--alpha", alpha, values[i - 1], values[i]});
        add("pairs", {"correlate", "--alpha", alpha});
        add("groups", {"anova", "--alpha", alpha});
        add("series", {"multiy", "--alpha", alpha});
        for (const char* const command : {"fit", "ks"}) add("classes", {command, "--alpha", alpha});
        for (const char* const unit : {"degrees", "radians"}) add("angles", {"circular", "--alpha", alpha, "--unit", unit});
        for (const char* const bins : {"12", "24"}) add("angles", {"circular", "--alpha", alpha, "--unit", "bins", "--bins", bins});
    }
    return runs;
}

std::size_t occurrences(const std::string& text, const std::string& of)
{
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(of, at)) != std::string::npos; ++at) ++count;
    return count;
}

// The decisions that the document has of the report, beside those of the textbook: each that differs has its line on standard error, and
// so has each without one beside it.
TEST(Warnings, missNoDecisionThatDiffersOnAllData)
{
    std::size_t compared = 0;
    std::size_t grouped = 0;
    std::size_t allDiffering = 0;
    for (const Words& arguments : runsOnAllData()) {
        const Outcome outcome = run(with(arguments, {"--json"}));
        if (outcome.status != done) continue;  // counts that are none
        const Json document = Json::parse(outcome.output);
        if (std::find(arguments.begin(), arguments.end(), "bins") != arguments.end()) ++grouped;
        std::size_t differing = 0;
        std::size_t groundless = 0;
        for (const auto& [name, member] : document.at("decision").items()) {
            const bool isLine = name == "computeRegression";  // fitted where the slope is taken to differ from 0
            const bool accepted = member.get<bool>() != isLine;
            const Json& exact = document.at("textbook").at(isLine ? "acceptH0" : name);
            ++compared;
            if (exact.is_null()) ++groundless;
            if (exact.is_boolean() && exact.get<bool>() != accepted) ++differing;
        }
        EXPECT_EQ(occurrences(outcome.errors, " H0; the report "), differing) << joined(arguments) << "\n" << outcome.errors;
        EXPECT_EQ(occurrences(outcome.errors, "without ground: "), groundless) << joined(arguments) << "\n" << outcome.errors;
        EXPECT_EQ(document.at("textbook").at("differs").size(), differing) << joined(arguments);
        allDiffering += differing;
    }
    EXPECT_GT(compared, 40U);
    EXPECT_GT(grouped, 0U);
    EXPECT_GT(allDiffering, 0U);
    RecordProperty("decisions", static_cast<int>(compared));
    RecordProperty("differing", static_cast<int>(allDiffering));
}

}  // namespace
