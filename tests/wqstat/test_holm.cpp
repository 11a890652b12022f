// Probabilities adjusted for the number of tests: by hand, by R, and in the rows of --tsv.
#include "commands.h"
#include "results/holm.h"
#include "support/r.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace wq_test;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Multiplied by hand, by the number of hypotheses that are left.
const struct {
    int line;
    std::vector<double> p;
    std::vector<double> adjusted;
} rows[] = {
    {__LINE__, {}, {}},
    {__LINE__, {0.25}, {0.25}},
    {__LINE__, {0.01, 0.04, 0.03, 0.005}, {0.03, 0.06, 0.06, 0.02}},
    {__LINE__, {0.5, 0.75, 0.375}, {1.0, 1.0, 1.0}},
    {__LINE__, {0.125, nan, 0.0625, nan}, {0.125, nan, 0.125, nan}},
    {__LINE__, {nan}, {nan}},
    {__LINE__, {0.0, 1e-300, 1.0}, {0.0, 2e-300, 1.0}},
    {__LINE__, {0.125, 0.125, 0.125}, {0.375, 0.375, 0.375}},
};

void expectSame(const std::vector<double>& found, const std::vector<double>& expected)
{
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (std::isnan(expected[i]))
            EXPECT_TRUE(std::isnan(found[i])) << i;
        else
            EXPECT_DOUBLE_EQ(found[i], expected[i]) << i;
    }
}

TEST(Holm, multipliesByTheHypothesesThatAreLeft)
{
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        expectSame(wqstat::holmAdjusted(row.p), row.adjusted);
    }
}

std::vector<double> adjustedByR(const std::vector<double>& p)
{
    std::ostringstream text;
    text.precision(17);
    text << "cat(format(p.adjust(c(";
    for (std::size_t i = 0; i < p.size(); ++i) {
        if (i > 0) text << ", ";
        if (std::isnan(p[i]))
            text << "NA";
        else
            text << p[i];
    }
    text << "), method = 'holm'), digits = 17))";
    const Outcome outcome = runCommand({"Rscript", "-e", text.str()});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    std::vector<double> adjusted;
    std::istringstream words(outcome.output);
    for (std::string word; words >> word;) adjusted.push_back(word == "NA" ? nan : std::stod(word));
    return adjusted;
}

TEST(Holm, agreesWithR)
{
    WQ_SKIP_WITHOUT_R();
    std::vector<double> many;
    for (int i = 1; i <= 200; ++i) many.push_back(i % 17 == 0 ? nan : std::pow(std::fmod(i * 0.6180339887498949, 1.0), 4.0));
    for (const std::vector<double>& p : {std::vector<double>{0.01, 0.04, 0.03, 0.005}, {0.05, nan, 0.0001, 0.05, 0.9}, many})
        expectSame(wqstat::holmAdjusted(p), adjustedByR(p));
}

// ---------------------------------------------------------------- rows

std::vector<std::map<std::string, std::string>> rowsOf(const std::string& output)
{
    std::istringstream lines(output);
    std::vector<std::vector<std::string>> cells;
    for (std::string line; std::getline(lines, line);) {
        cells.emplace_back();
        std::istringstream words(line);
        for (std::string cell; std::getline(words, cell, '\t');) cells.back().push_back(cell);
    }
    std::vector<std::map<std::string, std::string>> all;
    for (std::size_t row = 1; row < cells.size(); ++row) {
        all.emplace_back();
        for (std::size_t i = 0; i < cells[row].size(); ++i) all.back()[cells[0].at(i)] = cells[row][i];
    }
    return all;
}

TEST(Holm, standsBesideThePOfEachRow)
{
    const TempFolder folder;
    const std::string a = folder.write("a.txt", "1\n2\n4\n");
    const std::string b = folder.write("b.txt", "5\n6\n8\n");
    const std::string equal = folder.write("equal.txt", "2\n2\n2\n");
    const auto found = rowsOf(run({"describe", "--tsv", "--no-warnings", a, folder.path("missing"), equal, b}).output);
    ASSERT_EQ(found.size(), 3U);
    for (const auto& row : found) EXPECT_EQ(row.at("p"), row.at("textbook.p"));
    // Student's t with 2 degrees of freedom has p = 1 - t / sqrt(2 + t^2); means 7/3 and 19/3, both with the standard error sqrt(7)/3.
    const auto p = [](double t) { return 1.0 - t / std::sqrt(2.0 + t * t); };
    const double pA = p(7.0 / std::sqrt(7.0));
    const double pB = p(19.0 / std::sqrt(7.0));
    EXPECT_NEAR(std::stod(found[0].at("p")), pA, 1e-14);
    EXPECT_NEAR(std::stod(found[0].at("pHolm")), pA, 1e-14) << "the larger of two";
    EXPECT_EQ(found[1].at("pHolm"), "NA") << "no test, which does not count";
    EXPECT_NEAR(std::stod(found[2].at("pHolm")), 2.0 * pB, 1e-14) << "the smaller of two";
}

// The p that decides is that of the statistic that the decision rests on.
TEST(Holm, adjustsThePThatDecides)
{
    const struct {
        Words words;
        const char* column;
    } commands[] = {{{"pairs", shipped("nist_norris.txt")}, "textbook.p"},
                    {{"regress", "--model", "linear", shipped("nist_norris.txt")}, "textbook.pB"},
                    {{"correlate", shipped("nist_norris.txt")}, "textbook.pT"},
                    {{"anova", shipped("nist_sirstv.txt")}, "textbook.p"},
                    {{"multiy", shipped("seedlings.txt")}, "textbook.pT"},
                    {{"fit", shipped("mendel_peas.txt")}, "textbook.X2.p"},
                    {{"ks", shipped("pi_e_digits.txt")}, "textbook.pLargeSamples"},
                    {{"variances", shipped("nist_sirstv_instrument1.txt"), shipped("nist_sirstv_instrument2.txt")}, "textbook.p"},
                    {{"circular", "--unit", "degrees", shipped("directions.txt")}, "textbook.p"}};
    for (const auto& [words, column] : commands) {
        const auto found = rowsOf(run(with(words, {"--tsv", "--no-warnings"})).output);
        ASSERT_EQ(found.size(), 1U) << joined(words);
        EXPECT_EQ(found[0].at("p"), found[0].at(column)) << joined(words);
        EXPECT_EQ(found[0].at("pHolm"), found[0].at("p")) << joined(words);
    }
    const auto frequency = rowsOf(run({"frequency", "--tsv", shipped("cavendish.txt")}).output);
    EXPECT_EQ(frequency.at(0).at("p"), "NA");
    EXPECT_EQ(frequency.at(0).at("pHolm"), "NA");
}

}  // namespace
