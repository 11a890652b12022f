// wqstat --textbook: exact figures under the unchanged report, and what is said where the decision differs.
//
// Expected values are R's (tests/reference/textbook.R), counted here, or, with WQ_REFERENCE_DATA set to a folder of reference data, those
// of its expected.csv whose fields begin with "exact.".
#include "data_files.h"
#include "documents.h"

#include "support/arrangements.h"
#include "support/table.h"

#include <wq_exact/distributions.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using namespace wq_test;
using namespace wq_test::data_files;

std::string outputOf(const Words& arguments)
{
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, done) << outcome;
    return outcome.output;
}

Json figuresOf(const Words& arguments) { return documentOf(with(arguments, {"--textbook"})).at("textbook"); }

// The block alone.
std::string blockOf(const Words& arguments)
{
    const std::string output = outputOf(with(arguments, {"--textbook"}));
    const std::size_t begin = output.find("\nTEXTBOOK\n");
    if (begin == std::string::npos) throw std::runtime_error("no block in " + output);
    return output.substr(begin);
}

void expectSixDigits(double value, double expected, const std::string& what)
{
    EXPECT_LE(std::fabs(value - expected), 0.5e-6 * std::fabs(expected)) << what << " is " << value << ", not " << expected;
}

Words wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    Words words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

// The arguments of a line of the manual or a table, with the data files where they are.
Words shippedWords(const std::string& text)
{
    Words words = wordsOf(text);
    for (std::string& word : words)
        if (word.size() > 4 && word.compare(word.size() - 4, 4, ".txt") == 0) word = shipped(word);
    return words;
}

const std::vector<std::string> everyAnalysis = {"describe --mu 5.5 cavendish.txt",
                                                "regress --model linear nist_norris.txt",
                                                "regress --model logarithmic nist_norris.txt",
                                                "regress --model exponential nist_norris.txt",
                                                "regress --model power nist_norris.txt",
                                                "correlate toothgrowth_supp.txt",
                                                "anova nist_sirstv.txt",
                                                "multiy seedlings.txt",
                                                "fit mendel_peas.txt",
                                                "ks pi_e_digits.txt",
                                                "variances nist_sirstv_instrument1.txt nist_sirstv_instrument2.txt",
                                                "circular --unit degrees directions.txt"};

// ---------------------------------------------------------------- the block

TEST(Textbook, saysThatTwoSupplementsDoNotDifferWhereTheReportSaysTheyDo)
{
    const std::string output = outputOf({"anova", "--textbook", supplements});
    EXPECT_THAT(output, HasSubstr("H0 [no added variance component among groups] is rejected.\n"));
    EXPECT_THAT(output, EndsWith("\nTEXTBOOK\n"
                                 "======================================================================\n"
                                 "MS among groups  : 205.35\n"
                                 "MS within groups : 55.9803\n"
                                 "Fs               : 3.66825\n"
                                 "F0.05[1, 58]     : 4.00687\n"
                                 "P[F], lower tail : 0.939607\n"
                                 "p                : 0.0603934\n"
                                 "eta squared      : 0.0594836\n"
                                 "omega squared    : 0.0425774\n"
                                 "H0               : accepted\n"
                                 "The decision on H0 differs: the report rejects it.\n\n"));
    const Json figures = figuresOf({"anova", supplements});
    EXPECT_EQ(figures.at("acceptH0"), true);
    EXPECT_EQ(figures.at("differs"), Json({"acceptH0"}));
}

TEST(Textbook, followsTheUnchangedReport)
{
    for (const std::string& analysis : everyAnalysis) {
        const Words arguments = shippedWords(analysis);
        EXPECT_EQ(outputOf(with(arguments, {"--textbook"})), outputOf(arguments) + blockOf(arguments)) << analysis;
        EXPECT_THAT(blockOf(arguments), StartsWith("\nTEXTBOOK\n" + std::string(70, '=') + "\n")) << analysis;
    }
    const std::string file = resistivity;  // details and listings come behind the block
    EXPECT_THAT(outputOf({"anova", "--textbook", "--details", file}),
                StartsWith(outputOf({"anova", "--textbook", file}) + "Anova samples\n"));
    EXPECT_THAT(outputOf({"correlate", "--textbook", "--list", "0", "1", file}), StartsWith(outputOf({"correlate", "--textbook", file})));
}

TEST(Textbook, printsTheFiguresOfTheDocumentToSixDigits)
{
    for (const std::string& analysis : everyAnalysis) {
        const Words arguments = shippedWords(analysis);
        const Json flat = figuresOf(arguments).flatten();
        std::vector<std::string> expected;
        for (const auto& [pointer, member] : flat.items()) {
            const auto begins = [&name = pointer](const char* words) { return name.rfind(words, 0) == 0; };
            if (begins("/differs") || begins("/warnings") || begins("/groupLimits")) continue;  // these are no lines of the block
            char text[40];
            std::snprintf(text, sizeof text, "%g", member.is_boolean() ? 0.0 : numberOf(member));
            expected.push_back(member.is_null() ? "n/a" : member.is_boolean() ? (member.get<bool>() ? "accepted" : "rejected") : text);
        }
        std::vector<std::string> printed;
        std::istringstream lines(blockOf(arguments));
        for (std::string line; std::getline(lines, line);)
            if (const std::size_t colon = line.find(" : "); colon != std::string::npos) printed.push_back(line.substr(colon + 3));
        // A member of an object that comes in parts stands where its first part does.
        std::sort(expected.begin(), expected.end());
        std::sort(printed.begin(), printed.end());
        EXPECT_EQ(printed, expected) << analysis;
    }
}

TEST(Textbook, comparesEveryDecisionOfTheReport)
{
    const TempFolder folder;
    const std::string same = "The decision is the report's.\n";
    std::string falling;  // r = -1 but for a little: the report accepts no correlation
    for (int i = 0; i < 20; ++i) falling += std::to_string(i) + ";" + std::to_string(40 - 2 * i + i % 2) + "\n";
    const std::string smallSamples = folder.write("small.txt", "2;1\n1;2\n1;1\n");
    const struct {
        int line;
        Words arguments;
        std::string report;  // what the report says
        std::string block;   // how the block ends
    } rows[] = {
        // t = -1.68, p = .103: accepted by both; t = 2.27, p = .031 at a mean of 5.355: the report tests at half the level
        {__LINE__, {"describe", "--mu", "5.517", cavendish}, "H0              : accepted", "H0 : accepted\n" + same},
        {__LINE__,
         {"describe", "--mu", "5.355", cavendish},
         "H0              : accepted",
         "H0 : rejected\nThe decision on H0 differs: the report accepts it.\n"},
        {__LINE__,
         {"correlate", folder.write("falling.txt", falling)},
         "H0                         : accepted",
         "The decision on H0 by t differs: the report accepts it.\n"},
        {__LINE__, {"fit", peas}, "Ho    : accepted", "Ho : accepted\n" + same},
        {__LINE__, {"ks", smallSamples}, "H0      : rejected", "H0 : accepted\nThe decision on H0 differs: the report rejects it.\n"},
        {__LINE__, {"ks", digits}, "H0      : accepted", "H0 : accepted\n" + same},
        {__LINE__, {"variances", instrument1, instrument2}, "H0             : accepted", "H0 : accepted\n" + same},
        {__LINE__, {"circular", "--unit", "degrees", pigeons}, "H0              : rejected", "H0 : rejected\n" + same},
        {__LINE__, {"multiy", seedlings}, "regression               : y = ", "H0 [b = 0] : rejected\n" + same},
        {__LINE__,
         {"multiy", folder.write("flat.txt", "1;1;1\n1;3;1\n2;3;1\n2;1.1;1\n3;1;1\n3;3.05;1\n4;3;1\n4;1;1\n")},
         "No significant regression",
         "H0 [b = 0] : accepted\n" + same},
        {__LINE__,
         {"multiy", folder.write("zigzag.txt", "1;0;1\n1;2;1\n2;3;1\n2;5;1\n3;0;1\n3;2;1\n4;3;1\n4;5;1\n")},
         "regression               : y = ",
         "H0 [b = 0] : accepted\nThe decision on H0 [b = 0] differs: the report rejects it.\n"},
        // the report of a regression states no decision
        {__LINE__, {"regress", "--model", "linear", norris}, "t value for b", "H0 [b = 0] : rejected\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        EXPECT_THAT(outputOf(row.arguments), HasSubstr(row.report));
        std::string block = blockOf(row.arguments);  // with one blank before each colon
        for (std::size_t i; (i = block.find("  ")) != std::string::npos;) block.erase(i, 1);
        if (const std::size_t warning = block.find("\nWarning: "); warning != std::string::npos)
            block.erase(warning + 1);
        else
            block.pop_back();
        EXPECT_THAT(block, EndsWith(row.block));
        EXPECT_EQ(figuresOf(row.arguments).at("differs").empty(), block.find("differs") == std::string::npos);
    }
}

TEST(Textbook, showsWhatTheTableOfFrequenciesAndThePairsLeaveOut)
{
    const TempFolder folder;
    const Json table = figuresOf({"frequency", "--classes", "2", folder.write("values.txt", "-3\n-2\n-1\n-1\n-5\n")});
    EXPECT_EQ(table.at("n"), 5.0);
    EXPECT_EQ(table.at("counted"), 4.0);
    EXPECT_EQ(table.at("minimum"), -5.0);
    EXPECT_EQ(table.at("maximum"), -1.0);
    EXPECT_EQ(table.at("lastClassCount"), 3.0);  // -2, -1 and -1: the upper class ends at the report's maximum, 0
    EXPECT_EQ(table.at("confidenceLimits"), figuresOf({"describe", folder.path("values.txt")}).at("confidenceLimits"));
    EXPECT_TRUE(table.at("confidenceLimits").at("lower").is_number());
    const Json pairs = figuresOf({"pairs", supplements});
    const Json correlation = figuresOf({"correlate", supplements});
    EXPECT_EQ(pairs.at("p"), correlation.at("pT"));
    EXPECT_EQ(pairs.at("limitsR"), correlation.at("confidenceLimitsR"));
    EXPECT_EQ(numberOf(pairs.at("maximumY")), 33.9);
}

// F is 35 / 5. The means of the distant values are rounded to 1/64, and the variances of the report with them.
TEST(Textbook, losesNoDigitsOfTwoVariancesToLargeValues)
{
    const TempFolder folder;
    const std::string first = folder.write("first.txt", "1\n2\n3\n4\n");
    const std::string second = folder.write("second.txt", "1\n3\n5\n9\n");
    const std::string farFirst =
        folder.write("farFirst.txt", "100000000000000.015625\n100000000000000.03125\n100000000000000.046875\n100000000000000.0625\n");
    const std::string farSecond =
        folder.write("farSecond.txt", "100000000000000.015625\n100000000000000.046875\n100000000000000.078125\n100000000000000.140625\n");
    const Json expected = figuresOf({"variances", first, second});
    const Json figures = figuresOf({"variances", farFirst, farSecond});
    EXPECT_NEAR(numberOf(expected.at("F")), 7.0, 1e-14);
    for (const char* const name : {"F", "p", "lowerTail", "criticalF"})
        EXPECT_NEAR(numberOf(figures.at(name)), numberOf(expected.at(name)), 1e-13) << name;
    EXPECT_NEAR(numberOf(figures.at("ratioLimits").at("upper")), numberOf(expected.at("ratioLimits").at("upper")), 1e-11);
    EXPECT_NEAR(numberOf(figures.at("varianceLimits1").at("lower")) * 4096.0, numberOf(expected.at("varianceLimits1").at("lower")), 1e-12);
}

TEST(Textbook, givesNumbersOfBinsThePOfTheirCounts)
{
    const TempFolder folder;
    std::string singly;
    for (const auto& [bin, count] : {std::pair{1, 9}, std::pair{2, 4}, std::pair{3, 2}, std::pair{4, 5}})
        for (int i = 0; i < count; ++i) singly += std::to_string(bin) + ";0\n";
    const Words command = {"circular", "--unit", "bins", "--bins", "4"};
    const Json counts = figuresOf(with(command, {folder.write("counts.txt", "1;9\n2;4\n3;2\n4;5\n")}));
    const Json figures = figuresOf(with(command, {folder.write("singly.txt", singly)}));
    EXPECT_NEAR(numberOf(figures.at("p")), numberOf(counts.at("p")), 1e-13);
    EXPECT_NEAR(numberOf(figures.at("p")), 0.108393204573076, 1e-8);  // as test_exact_results.cpp has it
    EXPECT_EQ(figures.at("criticalZ"), nullptr);
}

TEST(Textbook, saysWhereThereIsNothingToLookUp)
{
    const TempFolder folder;
    const struct {
        int line;
        Words arguments;
        std::string label;
    } rows[] = {
        {__LINE__, {"anova", folder.write("one_group.txt", "1;2\n1;3\n")}, "p "},
        {__LINE__, {"describe", folder.write("equal.txt", "2\n2\n2\n")}, "p, two-sided"},
        {__LINE__, {"regress", "--model", "linear", folder.write("two_pairs.txt", "1;2\n2;5\n")}, "p of t for b, two-sided"},
        {__LINE__, {"regress", "--model", "power", folder.write("one_logarithm.txt", "1;2\n-2;3\n")}, "p of t for b, two-sided"},
        {__LINE__, {"fit", folder.write("one_class.txt", "7;8\n")}, "p of X2"},
        {__LINE__, {"ks", folder.write("one_sample.txt", "3;0\n4;0\n")}, "p, large samples"},
        {__LINE__, {"variances", folder.path("equal.txt"), folder.path("equal.txt")}, "p, two-sided"},
        {__LINE__, {"correlate", folder.write("one_pair_often.txt", "3;0\n3;0\n3;0\n3;0\n")}, "p of F, two-sided"},
        {__LINE__, {"multiy", folder.write("two_x.txt", "1;2;2\n1;3;2\n2;4;2\n2;5;1\n")}, "p of t for b, two-sided"},
    };
    for (const auto& row : rows) {
        const std::string block = blockOf(row.arguments);
        const std::size_t label = block.find("\n" + row.label);
        ASSERT_NE(label, std::string::npos) << block;
        EXPECT_EQ(block.substr(block.find(" : ", label), 7), " : n/a\n") << "row of line " << row.line << block;
        EXPECT_THAT(block, Not(HasSubstr("nan"))) << "row of line " << row.line;
    }
    EXPECT_TRUE(figuresOf({"describe", folder.path("equal.txt")}).at("acceptH0").is_null());
}

TEST(Textbook, standsExtremes)
{
    const TempFolder folder;
    // Three pairs on a line, whose r comes out as the double above 1: then the report's t is NaN and its F negative.
    const Json beyondOne = figuresOf({"correlate", folder.write("line.txt", "1;3\n3;7\n7;15\n")});
    EXPECT_LT(numberOf(beyondOne.at("pT")), 1e-15);
    EXPECT_LT(numberOf(beyondOne.at("pF")), 1e-15);
    EXPECT_EQ(beyondOne.at("acceptH0_t"), false);
    EXPECT_EQ(beyondOne.at("acceptH0_F"), false);
    for (const char* const alpha : {"5e-324", "1e-300", "0.9999999999999999"})
        for (const std::string& analysis : everyAnalysis)
            EXPECT_TRUE(figuresOf(with(shippedWords(analysis), {"--alpha", alpha})).is_object()) << analysis << " at " << alpha;
}

// ---------------------------------------------------------------- the figures

TEST(Textbook, agreesWithRToSixDigits)
{
    std::map<std::string, Json> made;
    std::map<std::string, std::set<std::string>> checked;
    for (const TableRow& row : referenceTable("textbook.csv")) {
        const std::string& arguments = row.cells.at(0);
        if (made.count(arguments) == 0) made[arguments] = figuresOf(shippedWords(arguments));
        expectSixDigits(numberOf(made[arguments].at(Json::json_pointer("/" + row.cells.at(1)))), numberIn(row.cells.at(2)),
                        arguments + ": " + row.cells.at(1));
        checked[arguments].insert("/" + row.cells.at(1));
    }
    for (const auto& [arguments, figures] : made) {  // every figure of these analyses has its row
        const Json flat = figures.flatten();
        for (const auto& [pointer, member] : flat.items())
            EXPECT_TRUE(!member.is_number() || checked[arguments].count(pointer) == 1) << arguments << ": " << pointer;
    }
}

TEST(Textbook, countsTheArrangementsOfSmallSamples)
{
    const TempFolder folder;
    const struct {
        int n1, n2;
        std::string classes;             // of so many observations, as a data file
        std::vector<std::size_t> sizes;  // of both samples together
        int steps;                       // their D
    } rows[] = {
        {3, 3, "3;0\n0;3\n", {3, 3}, 9},
        {3, 3, "1;0\n1;2\n1;1\n", {1, 3, 2}, 3},
        {5, 5, "4;0\n1;5\n", {4, 6}, 20},
        {4, 6, "3;0\n1;1\n0;5\n", {3, 2, 5}, 20},
        {7, 3, "0;2\n3;0\n1;1\n3;0\n", {2, 3, 2, 3}, 14},
        {4, 3, "1;0\n0;0\n1;0\n0;1\n1;0\n0;1\n0;1\n1;0\n", {1, 1, 1, 1, 1, 1, 1}, 6},
        {1, 8, "1;4\n0;4\n", {5, 4}, 4},
        {8, 8, "8;0\n0;8\n", {8, 8}, 64},
        {2, 2, "1;1\n1;1\n", {2, 2}, 0},
    };
    for (const auto& row : rows) {
        const std::map<int, int> counts = arrangementsByD(row.n1, row.n2, row.sizes);
        int total = 0;
        for (const auto& [d, count] : counts) total += count;
        int reaching = 0;
        double critical = std::nan("");
        double p = 1.0;
        for (auto d = counts.rbegin(); d != counts.rend(); ++d) {
            reaching += d->second;
            if (reaching <= 0.1 * total) critical = static_cast<double>(d->first) / (row.n1 * row.n2);
            if (d->first >= row.steps) p = static_cast<double>(reaching) / total;
        }
        const Json figures = figuresOf({"ks", "--alpha", "0.1", folder.write("classes.txt", row.classes)});
        expectSixDigits(numberOf(figures.at("pTheseSizes")), p, row.classes);
        if (std::isnan(critical))
            EXPECT_TRUE(figures.at("criticalDTheseSizes").is_null()) << row.classes;
        else
            expectSixDigits(numberOf(figures.at("criticalDTheseSizes")), critical, row.classes);
        EXPECT_EQ(figures.at("acceptH0"), p >= 0.1) << row.classes;
    }
    EXPECT_EQ(figuresOf({"ks", folder.write("fractions.txt", "1.5;0\n0.5;2\n")}).count("pTheseSizes"), 0U);
    EXPECT_EQ(figuresOf({"ks", folder.write("large.txt", "101;0\n0;100\n")}).count("pTheseSizes"), 0U);  // 10 100 pairs
    EXPECT_EQ(figuresOf({"ks", folder.write("largest.txt", "100;0\n0;100\n")}).count("pTheseSizes"), 1U);
}

// The probability is Kluyver's integral. In R, piece by piece because the integrand oscillates:
// f <- function(t) besselJ(R * t, 1) * besselJ(t, 0)^10
// 1 - R * sum(sapply(0:99, function(i) integrate(f, i * 0.6, (i + 1) * 0.6, rel.tol = 1e-10)$value))
TEST(Textbook, hasTheProbabilityOfRayleighsR)
{
    const TempFolder folder;
    // Ten directions, k of them opposite to the others: R = 10 - 2k
    const struct {
        int opposite;
        double p;
    } rows[] = {{3, 0.205481348}, {2, 0.0229466024}, {1, 0.000538983356}};
    for (const auto& row : rows) {
        std::string angles;
        for (int i = 0; i < 10; ++i) angles += i < row.opposite ? "180;0\n" : "0;0\n";
        const Json figures = figuresOf({"circular", "--unit", "degrees", folder.write("angles.txt", angles)});
        EXPECT_NEAR(numberOf(figures.at("p")), row.p, 1e-8) << row.opposite;
    }
    // Where the integral is 0.1, by R's uniroot.
    const Json figures = figuresOf({"circular", "--alpha", "0.1", folder.path("angles.txt")});
    EXPECT_NEAR(numberOf(figures.at("criticalZ")), 2.28564760780, 1e-9);
}

// ---------------------------------------------------------------- the reference data

// Where the document has what a field of expected.csv names; the same name unless it is here.
std::string pathOf(const std::string& analysis, const std::string& field)
{
    static const std::map<std::string, std::map<std::string, std::string>> names = {
        {"BasicStatistics", {{"t(alpha)", "criticalT"}, {"t(alpha/2)", "criticalTHalfAlpha"}, {"twoSidedP(t)", "p"}}},
        {"Correlation", {{"twoSidedP(t)", "pT"}}},
        {"GoodnessOfFit",
         {{"chiSquareProb(X2)", "X2/lowerTail"},
          {"chiSquareProb(G)", "G/lowerTail"},
          {"1-chiSquareProb(X2)", "X2/p"},
          {"1-chiSquareProb(G)", "G/p"},
          {"chiSquarePoint(1-alpha)", "criticalChiSquare"}}},
        {"KolmogorovSmirnov2", {{"asymptoticP(D)", "pLargeSamples"}}},
        {"LinearRegressionMultiY", {{"F(alpha)", "among/criticalF"}, {"P(F)", "among/lowerTail"}}},
        {"SingleAnova", {{"F(alpha)", "criticalF"}, {"P(F)", "lowerTail"}, {"1-P(F)", "p"}}},
        {"TwoSamples", {{"FProbability", "lowerTail"}, {"twoSidedP", "p"}}},
    };
    if (field == "t(alpha)") return "criticalT";
    std::string path = field;
    if (const auto analysisNames = names.find(analysis); analysisNames != names.end())
        if (const auto name = analysisNames->second.find(field); name != analysisNames->second.end()) path = name->second;
    std::replace(path.begin(), path.end(), '.', '/');
    return path;
}

// The command line of a row; an unknown analysis or option ends the test.
Words commandOf(const std::string& analysis, const std::string& options)
{
    static const std::map<std::string, std::string> commands = {{"BasicStatistics", "describe"},
                                                                {"Correlation", "correlate"},
                                                                {"LinearRegression", "regress --model linear"},
                                                                {"LogarithmicRegression", "regress --model logarithmic"},
                                                                {"ExponentialRegression", "regress --model exponential"},
                                                                {"PowerRegression", "regress --model power"},
                                                                {"SingleAnova", "anova"},
                                                                {"LinearRegressionMultiY", "multiy"},
                                                                {"GoodnessOfFit", "fit"},
                                                                {"KolmogorovSmirnov2", "ks"},
                                                                {"TwoSamples", "variances"}};
    static const std::map<std::string, std::string> flags = {
        {"yates=0", ""}, {"yates=1", "--yates"}, {"williams=0", "--no-williams"}, {"williams=1", ""}};
    static const std::map<std::string, std::string> named = {{"head", "--head"}, {"tail", "--tail"}, {"mu0", "--mu"}};
    std::string command = commands.at(analysis);
    for (const std::string& option : wordsOf(options)) {
        if (const auto flag = flags.find(option); flag != flags.end()) {
            command += " " + flag->second;
            continue;
        }
        const std::size_t equals = option.find('=');
        command += " " + named.at(option.substr(0, equals)) + " " + option.substr(equals + 1);
    }
    return wordsOf(command);
}

// The figures of these sets lie in their last binary digits: the doubles nearest to them have another F, of which R finds the same p
// (test_against_r.cpp). The p in the table is that of the certified F, and is looked up for it.
double pOfCertifiedF(const std::vector<TableRow>& table, const std::string& file)
{
    std::map<std::string, double> certified;
    for (const TableRow& row : table)
        if (row.cells[0] == file && row.cells[7] == "certified") certified[row.cells[4]] = numberIn(row.cells[5]);
    return wq_exact::fUpperTail(certified.at("among.fs"), certified.at("among.df"), certified.at("within.df"));
}

int linesWith(const std::string& file, const std::string& part)
{
    std::istringstream text(contentOf(file));
    int lines = 0;
    for (std::string line; std::getline(text, line);)
        if (line.find(part) != std::string::npos) ++lines;
    return lines;
}

TEST(Textbook, agreesWithTheReferenceDataToSixDigits)
{
    const std::string name = reference("expected.csv");
    if (name.empty()) GTEST_SKIP() << "WQ_REFERENCE_DATA names no folder with expected.csv";

    const std::set<std::string> notRepresentable = {"groups/nist_smls07.txt", "groups/nist_smls08.txt"};
    const std::vector<TableRow> table = readTable(name);
    std::map<Words, Json> made;
    int checked = 0;
    int ofCertifiedF = 0;
    for (const TableRow& row : table) {
        const std::string prefix = "exact.";
        ASSERT_EQ(row.cells.size(), 9U) << "line " << row.line;
        ASSERT_EQ(row.cells[7] == "textbook", row.cells[4].compare(0, prefix.size(), prefix) == 0) << "line " << row.line;
        if (row.cells[7] != "textbook") continue;
        const std::string& file = row.cells[0];
        const std::string field = row.cells[4].substr(prefix.size());
        Words arguments = with(commandOf(row.cells[2], row.cells[3]), {reference(file)});
        if (!row.cells[1].empty()) arguments.push_back(reference(row.cells[1]));
        if (made.count(arguments) == 0) made[arguments] = figuresOf(arguments);
        const bool isOfCertifiedF = notRepresentable.count(file) != 0 && field == "1-P(F)";
        const double value = isOfCertifiedF ? pOfCertifiedF(table, file)
                                            : numberOf(made[arguments].at(Json::json_pointer("/" + pathOf(row.cells[2], field))));
        expectSixDigits(value, numberIn(row.cells[5]), "line " + std::to_string(row.line) + ": " + file + " " + field);
        ++checked;
        if (isOfCertifiedF) ++ofCertifiedF;
    }
    EXPECT_EQ(checked, 387);
    EXPECT_EQ(checked, linesWith(name, ",textbook,"));
    EXPECT_EQ(ofCertifiedF, 2);  // the other 385 are figures that wqstat prints
}

}  // namespace
