// Linear regression with several y per x: series files, the fit, its report.
#include <wq_stat/distributions.h>
#include <wq_stat/regression.h>
#include <wq_stat/regression_multi_y.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"

using namespace wq_lib;
using ::testing::HasSubstr;
using ::testing::Not;
using wq_test::golden;
using wq_test::printed;
using wq_test::TempFolder;

namespace {

using Pairs = std::vector<data_pair>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

// Two observations around each point (x, mean).
Pairs around(const Pairs& line, double halfWidth)
{
    Pairs pairs;
    for (const data_pair& point : line)
        for (const double side : {-1.0, 1.0}) pairs.push_back({point.x, point.y + side * halfWidth});
    return pairs;
}

const Pairs falling = around({{0, 4.125}, {2, 2.875}, {4, 1.875}, {6, 1.125}}, 0.25);
const Pairs rising = around({{1, 2.2}, {2, 4.1}, {3, 5.6}, {4, 8.3}, {5, 9.6}}, 0.5);
const Pairs flat = around({{1, 3}, {2, 3.03125}, {3, 3}}, 2.0);

LinearRegressionMultiY gathered(const Pairs& pairs)
{
    LinearRegressionMultiY regression;
    regression.copyFrom(pairs);
    regression.createSeries();
    return regression;
}

LinearRegressionMultiY analysed(const Pairs& pairs, double significance = 0.05)
{
    LinearRegressionMultiY regression = gathered(pairs);
    regression.setSignificance(significance);
    EXPECT_TRUE(regression.analyse());
    return regression;
}

std::string report(LinearRegressionMultiY& regression)
{
    return printed([&] { regression.reportConsole(); });
}

// All pairs, read as createSeries() reads them: from the list, whatever the sample size says.
std::vector<std::pair<double, std::vector<double>>> groupsOf(LinearRegressionMultiY& regression)
{
    std::vector<std::pair<double, std::vector<double>>> groups;
    regression.createSeries();
    for (const anova_group& group : regression.getGroups()) groups.emplace_back(group.id, group.observations);
    return groups;
}

using Groups = std::vector<std::pair<double, std::vector<double>>>;

// What a call throws.
std::string thrownBy(const std::function<void()>& call)
{
    try {
        call();
    } catch (const std::invalid_argument&) {
        return "invalid_argument";
    } catch (const std::out_of_range&) {
        return "out_of_range";
    }
    return "";
}

void expectRecordOfZeros(const LinearRegressionMultiY& regression)
{
    const regression_multi_y_stat& r = regression.getRegressionResult();
    for (const double value :
         {r.sumX, r.sumX2, r.sumXT, r.correctionX, r.ssX, r.spXY, r.a, r.b, r.explained, r.unexplained, r.reserved1, r.seB, r.tB, r.pT,
          r.limitsB.getLower(), r.limitsB.getUpper(), r.reserved6.getLower(), r.reserved6.getUpper()})
        EXPECT_SAME_BITS(value, 0.0);
    EXPECT_EQ(r.reserved7, 0u);
    for (const anova_source* row : {&regression.getRegression(), &regression.getDeviations()}) {
        EXPECT_EQ(row->df, 0u);
        for (const double value : {row->ss, row->ms, row->fs, row->expectedMs}) EXPECT_SAME_BITS(value, 0.0);
    }
}

}  // namespace

TEST(LinearRegressionMultiY, newObject)
{
    const LinearRegressionMultiY regression;
    EXPECT_TRUE(regression.isComputeRegression());
    EXPECT_TRUE(regression.isEqual());
    EXPECT_EQ(regression.getModel(), 2);
    EXPECT_EQ(regression.getGroupsCreated(), 0u);
    expectRecordOfZeros(regression);
}

TEST(LinearRegressionMultiY, confidenceLimits)
{
    const DataRange<double> limits = LinearRegressionMultiY().getConfidenceLimits(3.0, 2.0, 0.25);
    EXPECT_SAME_BITS(limits.getLower(), 2.5);
    EXPECT_SAME_BITS(limits.getUpper(), 3.5);
}

// ---------------------------------------------------------------- series files

TEST(LinearRegressionMultiY, readSeriesFile)
{
    const struct {
        const char* shows;
        std::string content;
        Groups groups;
    } rows[] = {
        {"the count is carried over", "1:10:2\n2;20\n# note\n3|30|1\n", {{1, {10, 10}}, {2, {20, 20}}, {3, {30}}}},
        {"an empty field vanishes", "1::5:3\n", {{1, {5, 5, 5}}}},
        {"runs of delimiters, at both ends too", ":;1||;5:|3;;\n", {{1, {5, 5, 5}}}},
        {"no count yet", "1:10\n2;20;1\n", {{2, {20}}}},
        {"no y", "7\n8:::\n1;2;1\n9\n", {{1, {2}}, {9, {0}}}},
        {"a count of 0 stays in force", "1;2;1\n1;3;0\n1;4\n1;5;1\n", {{1, {2, 5}}}},
        {"a negative count adds nothing", "1;2;-3\n1;3\n1;4;1\n", {{1, {4}}}},
        {"a comment line is skipped whole, its numbers too", "1;2;1\n5;6;7 # no\n#5;6;7\n2;3\n", {{1, {2}}, {2, {3}}}},
        {"empty lines", "\n1;2;1\n\n\n2;3\n\n", {{1, {2}}, {2, {3}}}},
        {"lines of delimiters only", ";\n1;2;1\n:;|\n2;3\n", {{1, {2}}, {2, {3}}}},
        {"no line end at the end", "1;2;1\n2;3;2", {{1, {2}}, {2, {3, 3}}}},
        {"blanks separate nothing and are left to the conversion", " 1 ; 2 ; 2 \n", {{1, {2, 2}}}},
        {"what follows a number is ignored", "1.5kg;2e1m;2nd\n", {{1.5, {20, 20}}}},
        {"a count with a fraction", "1;2;2.9\n", {{1, {2, 2}}}},
        {"carriage returns", "1;2;1\r\n2;3\r\n", {{1, {2}}, {2, {3}}}},
        {"further fields", "1;2;1;9;9\n", {{1, {2}}}},
        {"exponents, signs, hexadecimal numbers, infinity", "-1e2;+.5;+1\n0x10;-inf\n", {{-100, {0.5}}, {16, {-infinity}}}},
        {"a zero byte ends the text of a line", std::string("1;2\0;5\n3;4;1\n5;6\n", 17), {{3, {4}}, {5, {6}}}},
        {"nothing", "", {}},
        {"254 characters are a whole line", "1;2;1" + std::string(249, ' ') + "\n2;3\n", {{1, {2}}, {2, {3}}}},
        {"a longer line is cut there and is the last", "1;2;1" + std::string(249, ' ') + "9\n2;3\n", {{1, {2}}}},
        {"a number is cut with its line", "1;2" + std::string(250, '0') + ";;;5\n", {}},
        {"a longer comment line ends reading too", "1;2;1\n#" + std::string(300, ' ') + "\n2;3\n", {{1, {2}}}},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        LinearRegressionMultiY regression;
        EXPECT_TRUE(regression.readSeriesFile(folder.write("series.txt", row.content))) << row.shows;
        EXPECT_EQ(groupsOf(regression), row.groups) << row.shows;
        EXPECT_EQ(regression.getComment(), "") << row.shows << ": comment lines are dropped";
        EXPECT_THAT(regression.getGroups(), ::testing::SizeIs(row.groups.size())) << row.shows;
    }
}

TEST(LinearRegressionMultiY, readSeriesFileThrows)
{
    const struct {
        const char* shows;
        std::string content;
        const char* thrown;
        Groups groups;
    } rows[] = {
        {"<< ends nothing, it is no number", "1;2;1\n<<\n2;3\n", "invalid_argument", {{1, {2}}}},
        {"an x that is no number", "1;2;1\nx;3;1\n", "invalid_argument", {{1, {2}}}},
        {"a y that is no number", "1;2;1\n2;y;1\n", "invalid_argument", {{1, {2}}}},
        {"a count that is no number", "1;2;1\n2;3;z\n", "invalid_argument", {{1, {2}}}},
        {"a line of blanks", "1;2;1\n   \n", "invalid_argument", {{1, {2}}}},
        {"a carriage return alone", "1;2;1\n\r\n", "invalid_argument", {{1, {2}}}},
        {"blanks between delimiters are a field", "1;2;1\n2; ;1\n", "invalid_argument", {{1, {2}}}},
        {"an x too large", "1;2;1\n1e999;3;1\n", "out_of_range", {{1, {2}}}},
        {"a y too large", "1;2;1\n2;-1e999;1\n", "out_of_range", {{1, {2}}}},
        {"a count too large", "1;2;1\n2;3;2147483648\n", "out_of_range", {{1, {2}}}},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        LinearRegressionMultiY regression;
        const std::string path = folder.write("series.txt", row.content);
        EXPECT_EQ(thrownBy([&] { regression.readSeriesFile(path); }), row.thrown) << row.shows;
        EXPECT_EQ(groupsOf(regression), row.groups) << row.shows << ": pairs read before stay";
    }
}

TEST(LinearRegressionMultiY, seriesFieldsConvertAsTheStandardLibraryDoes)
{
    const TempFolder folder;
    std::mt19937 random(99);
    const std::string alphabet = "0123456789.+-eExXinfaNp \t";
    std::string content = "0;0;1\n";
    std::vector<std::string> fields;
    std::vector<double> expected;
    int refused = 0;
    while (fields.size() < 5000) {
        std::string field(1, "0123456789+-. "[random() % 14]);
        for (auto length = random() % 8; length > 0; --length) field += alphabet[random() % alphabet.size()];
        double value = 0.0;
        const std::string thrown = thrownBy([&] { value = std::stod(field); });
        if (thrown.empty()) {
            fields.push_back(field);
            expected.push_back(value);
            content += field + ";" + field + "\n";
        } else if (refused < 200) {
            ++refused;
            LinearRegressionMultiY x, y;
            const std::string first = folder.write("x", field + ";1;1\n"), second = folder.write("y", "1;" + field + ";1\n");
            EXPECT_EQ(thrownBy([&] { x.readSeriesFile(first); }), thrown) << field;
            EXPECT_EQ(thrownBy([&] { y.readSeriesFile(second); }), thrown) << field;
        }
    }
    EXPECT_EQ(refused, 200);
    LinearRegressionMultiY all;
    ASSERT_TRUE(all.readSeriesFile(folder.write("all", content)));
    ASSERT_EQ(all.getSampleSize(), fields.size() + 1);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        EXPECT_SAME_BITS(all.getDataPair(i + 1).x, expected[i]) << fields[i];
        EXPECT_SAME_BITS(all.getDataPair(i + 1).y, expected[i]) << fields[i];
    }
}

TEST(LinearRegressionMultiY, readSeriesFileReplacesThePairs)
{
    const TempFolder folder;
    const std::string path = folder.write("series.txt", "5;6;2\n");
    LinearRegressionMultiY regression;
    regression.copyFrom(falling);
    EXPECT_EQ(regression.getSampleSize(), 8u);

    EXPECT_FALSE(regression.readSeriesFile(folder.path("missing.txt")));
    EXPECT_EQ(regression.getSampleSize(), 8u) << "a missing file leaves the pairs";
    EXPECT_FALSE(regression.readSeriesFile(folder.path(""))) << "a folder cannot be opened";
    EXPECT_EQ(regression.getDataPair(7).y, falling[7].y);

    EXPECT_TRUE(regression.readSeriesFile(path));
    EXPECT_EQ(regression.getSampleSize(), 2u);
    EXPECT_EQ(regression.getDataEnd(), 1u);
    EXPECT_EQ(groupsOf(regression), (Groups{{5, {6, 6}}}));
    EXPECT_THAT(regression.getGroups(), ::testing::SizeIs(1)) << "createSeries() was not called before";

    EXPECT_TRUE(regression.readSeriesFile(path));
    EXPECT_EQ(regression.getSampleSize(), 2u) << "not added to what was read before";
    EXPECT_EQ(groupsOf(regression), (Groups{{5, {6, 6, 6, 6}}})) << "but the groups stay";
}

TEST(LinearRegressionMultiY, readSeriesFileDoesNotGather)
{
    const TempFolder folder;
    LinearRegressionMultiY regression;
    EXPECT_TRUE(regression.readSeriesFile(folder.write("series.txt", "5;6;2\n")));
    EXPECT_TRUE(regression.getGroups().empty());
    EXPECT_EQ(regression.getDataFile(), "") << "the name is not stored";
}

TEST(LinearRegressionMultiY, onlyThePairListIsCleared)
{
    const TempFolder folder;
    LinearRegressionMultiY regression;
    regression.copyFrom(falling);
    EXPECT_TRUE(regression.readSeriesFile(folder.write("empty.txt", "# nothing\n")));
    EXPECT_EQ(regression.getSampleSize(), 8u) << "set by add() only";
    EXPECT_EQ(regression.getDataEnd(), 7u);
    EXPECT_FALSE(regression.createSeries()) << "there are no pairs";

    // no operation reads the pairs that are gone
    regression.BasicXyStatistics::analyse();
    EXPECT_EQ(regression.getXyResult().x.n, 0u);
    EXPECT_TRUE(std::isnan(regression.geometricMean(0, 7)));
    EXPECT_EQ(printed([&] { regression.BasicXyStatistics::listData(0, 8); }), "X Y\n\n");
    EXPECT_TRUE(regression.BasicXyStatistics::exportToR(folder.path("export.txt"), "c"));
    EXPECT_EQ(wq_test::contentOf(folder.path("export.txt")), "# c\nX\tY\n");
    EXPECT_TRUE(regression.analyse());
    EXPECT_EQ(regression.getTotalObservations(), 0);
}

TEST(LinearRegressionMultiY, pairedFilesAreReadToo)
{
    const TempFolder folder;
    LinearRegressionMultiY regression;
    EXPECT_TRUE(regression.readDataFile(folder.write("pairs.txt", "1;2;5\n1|4\n2:7\n")));
    EXPECT_EQ(groupsOf(regression), (Groups{{1, {2, 4}}, {2, {7}}})) << "a third field is no count there";
}

// ---------------------------------------------------------------- analyse

TEST(LinearRegressionMultiY, fallingLine)  // y = 4 - x / 2 with deviations 1/8, -1/8, -1/8, 1/8; by hand
{
    const LinearRegressionMultiY regression = analysed(falling);
    EXPECT_TRUE(regression.isComputeRegression());
    const regression_multi_y_stat& r = regression.getRegressionResult();
    EXPECT_SAME_BITS(r.sumX, 24.0);
    EXPECT_SAME_BITS(r.sumX2, 112.0);       // 2 (0 + 4 + 16 + 36)
    EXPECT_SAME_BITS(r.sumXT, 40.0);        // 2 * 5.75 + 4 * 3.75 + 6 * 2.25
    EXPECT_SAME_BITS(r.correctionX, 72.0);  // 24^2 / 8
    EXPECT_SAME_BITS(r.ssX, 40.0);
    EXPECT_SAME_BITS(r.spXY, -20.0);  // 40 - 24 * 20 / 8
    EXPECT_SAME_BITS(r.a, 4.0);
    EXPECT_SAME_BITS(r.b, -0.5);
    EXPECT_SAME_BITS(r.explained, 10.0);
    EXPECT_SAME_BITS(r.unexplained, 0.125);  // 8 * (1/8)^2
    EXPECT_SAME_BITS(r.seB, std::sqrt(0.0625 / 40.0));
    EXPECT_NEAR(r.tB, -std::sqrt(160.0), 1e-13);

    EXPECT_EQ(regression.getRegression().df, 1u);
    EXPECT_SAME_BITS(regression.getRegression().ss, 10.0);
    EXPECT_SAME_BITS(regression.getRegression().ms, 10.0);
    EXPECT_SAME_BITS(regression.getRegression().fs, 160.0);
    EXPECT_SAME_BITS(regression.getRegression().expectedMs, 0.0);
    EXPECT_EQ(regression.getDeviations().df, 2u);
    EXPECT_SAME_BITS(regression.getDeviations().ss, 0.125);
    EXPECT_SAME_BITS(regression.getDeviations().ms, 0.0625);
    EXPECT_SAME_BITS(regression.getDeviations().fs, 0.5);  // within.ms is 4 * 2 / 16 / 4
    EXPECT_SAME_BITS(regression.getDeviations().expectedMs, 0.0);

    // two-sided t with 2 degrees of freedom, in closed form: 1 - t / sqrt(t^2 + 2); beyond 1 for the negative t
    EXPECT_NEAR(r.pT, 1.0 + std::sqrt(160.0 / 162.0), 1e-12);
}

TEST(LinearRegressionMultiY, limitsOfBAreNarrow)
{
    // the percent point takes a significance level and gets (1 + confidence) / 2
    const double t = t_PercentPoint(0.975, 2);
    EXPECT_NEAR(t, 0.0346, 0.00005);
    for (const Pairs& pairs : {falling, rising}) {
        const LinearRegressionMultiY regression = analysed(pairs);
        const regression_multi_y_stat& r = regression.getRegressionResult();
        EXPECT_NEAR(r.limitsB.getLower(), r.b - t * r.seB, 1e-15);
        EXPECT_NEAR(r.limitsB.getUpper(), r.b + t * r.seB, 1e-15);
        EXPECT_GT(r.limitsB.getUpper(), r.limitsB.getLower());
    }
    const LinearRegressionMultiY atTenPercent = analysed(falling, 0.1);
    const regression_multi_y_stat& r = atTenPercent.getRegressionResult();
    EXPECT_NEAR(r.limitsB.getUpper(), r.b + t_PercentPoint(0.95, 2) * r.seB, 1e-15);
}

TEST(LinearRegressionMultiY, deviationsHaveTwoDegreesOfFreedomWhateverTheGroups)
{
    for (int groups = 2; groups <= 12; ++groups) {
        Pairs line;
        for (int x = 1; x <= groups; ++x) line.push_back({double(x), 3.0 * x + x % 2});
        const LinearRegressionMultiY regression = analysed(around(line, 0.5));
        ASSERT_TRUE(regression.isComputeRegression());
        EXPECT_EQ(regression.getDeviations().df, 2u) << groups;
        EXPECT_SAME_BITS(regression.getDeviations().ms, regression.getRegressionResult().unexplained / 2.0);
        EXPECT_SAME_BITS(regression.getDeviations().fs, regression.getDeviations().ms / regression.getWithin().ms);
        EXPECT_SAME_BITS(regression.getRegression().fs, regression.getRegression().ms / regression.getDeviations().ms);
    }
}

TEST(LinearRegressionMultiY, theLineIsThatOfAllPairs)
{
    std::mt19937 random(5);
    for (int repeat = 0; repeat < 200; ++repeat) {
        Pairs pairs;
        LinearRegression plain;
        const double slope = double(int(random() % 21) - 10);
        const auto groups = 3 + random() % 8;
        for (unsigned g = 0; g < groups; ++g)
            for (auto n = 1 + random() % 6; n > 0; --n) {
                const double x = double(g) * 1.5 - 4.0;
                pairs.push_back({x, slope * x + double(random() % 100) / 8.0});
                plain.add(x, pairs.back().y);
            }
        const LinearRegressionMultiY regression = analysed(pairs);
        ASSERT_TRUE(plain.analyse());
        if (!regression.isComputeRegression()) continue;
        const regression_multi_y_stat& r = regression.getRegressionResult();
        const regression_stat& expected = plain.getRegressionResult();
        const double scale = plain.getXyResult().y.sumOfSquares;
        EXPECT_NEAR(r.a, expected.a, 1e-9 * (1.0 + std::fabs(expected.a)));
        EXPECT_NEAR(r.b, expected.b, 1e-9 * (1.0 + std::fabs(expected.b)));
        EXPECT_NEAR(r.explained, expected.explained, 1e-9 * scale);
        EXPECT_NEAR(r.unexplained + regression.getWithin().ss, expected.unexplained, 1e-9 * scale);
        EXPECT_NEAR(r.ssX, plain.getXyResult().x.sumOfSquares, 1e-9 * r.sumX2);
    }
}

TEST(LinearRegressionMultiY, tableOfGroupsIsThatOfTheAnova)
{
    for (const Pairs& pairs : {falling, rising, flat}) {
        const LinearRegressionMultiY regression = analysed(pairs);
        SingleAnova anova;
        anova.copyFrom(pairs);
        anova.createSeries();
        anova.analyse();
        EXPECT_SAME_BITS(regression.getAmong().fs, anova.getAmong().fs);
        EXPECT_SAME_BITS(regression.getWithin().ms, anova.getWithin().ms);
        EXPECT_SAME_BITS(regression.getTotal().ss, anova.getTotal().ss);
        EXPECT_SAME_BITS(regression.getVarianceComponent(), anova.getVarianceComponent());
    }
}

namespace {

// Three groups of two with F = f: (1, 0), (2, h), (3, 0), each -/+ 1, so that F = h^2 / 3.
Pairs withF(double f) { return around({{1, 0}, {2, std::sqrt(3.0 * f)}, {3, 0}}, 1.0); }

}  // namespace

TEST(LinearRegressionMultiY, decision)  // F against F_Prob(1 - significance, 1, within.df) / among.df: a probability, no percent point
{
    for (const double significance : {0.5, 0.1, 0.05, 0.01}) {
        const double c = F_Prob(1.0 - significance, 1, 3) / 2.0;
        ASSERT_GT(c, 0.1);
        ASSERT_LT(c, 0.5);
        EXPECT_FALSE(analysed(withF(0.99 * c), significance).isComputeRegression()) << significance;
        EXPECT_TRUE(analysed(withF(1.01 * c), significance).isComputeRegression()) << significance;
        EXPECT_LT(1.01 * c, F_PercentPoint(1.0 - significance, 2, 3)) << "far from significant";
    }
    const LinearRegressionMultiY even = analysed(withF(0.0), 1.0);
    EXPECT_EQ(F_Prob(0.0, 1, 3), 0.0);
    EXPECT_EQ(even.getAmong().fs, 0.0);
    EXPECT_TRUE(even.isComputeRegression()) << "0 is not above 0";
}

TEST(LinearRegressionMultiY, decisionWithNaN)
{
    const struct {
        const char* shows;
        Pairs pairs;
    } rows[] = {
        {"no group", {}},
        {"one x", {{2, 3}, {2, 4}, {2, 6}}},
        {"one observation", {{2, 3}}},
        {"equal observations", around({{1, 3}, {2, 3}, {3, 3}}, 0.0)},
        {"groups of one", {{1, 2}, {2, 3}}},
        {"a NaN among the observations", {{1, 2}, {1, NaN}, {2, 3}, {2, 4}}},
    };
    for (const auto& row : rows) {
        LinearRegressionMultiY regression = gathered(row.pairs);
        regression.setComputeRegression(false);
        EXPECT_TRUE(regression.analyse());
        EXPECT_TRUE(std::isnan(regression.getAmong().fs)) << row.shows;
        EXPECT_TRUE(regression.isComputeRegression()) << row.shows;
        EXPECT_EQ(regression.getDeviations().df, 2u) << row.shows;
    }
}

TEST(LinearRegressionMultiY, oneX)
{
    const LinearRegressionMultiY regression = analysed({{2, 3}, {2, 4}, {2, 6}});
    const regression_multi_y_stat& r = regression.getRegressionResult();
    EXPECT_SAME_BITS(r.ssX, 0.0);
    for (const double value : {r.a, r.b, r.seB, r.tB}) EXPECT_FALSE(std::isfinite(value));
}

TEST(LinearRegressionMultiY, withoutDecisionTheRegressionIsReset)
{
    LinearRegressionMultiY regression = analysed(falling);
    EXPECT_TRUE(regression.isComputeRegression());
    for (const double x : {0.0, 2.0, 4.0, 6.0}) regression.getGroup(x)->observations = {1, 5};
    EXPECT_TRUE(regression.analyse());
    EXPECT_FALSE(regression.isComputeRegression());
    expectRecordOfZeros(regression);
    EXPECT_THAT(report(regression), HasSubstr("\n\nNo significant regression\n"));

    regression.getGroup(6)->observations = {51, 55};
    EXPECT_TRUE(regression.analyse());
    EXPECT_TRUE(regression.isComputeRegression()) << "decided anew by every analysis";
}

TEST(LinearRegressionMultiY, resetResult)
{
    LinearRegressionMultiY regression = analysed(rising);
    regression.resetResult();
    expectRecordOfZeros(regression);
    EXPECT_EQ(regression.getGroupCount(), 0u);
    EXPECT_SAME_BITS(regression.getAmong().fs, 0.0);
    EXPECT_EQ(regression.getGroups().size(), 5u);
    EXPECT_TRUE(regression.isComputeRegression());

    regression.analyse();
    regression.resetRegression();
    EXPECT_SAME_BITS(regression.getRegressionResult().b, 0.0);
    EXPECT_SAME_BITS(regression.getRegressionResult().limitsB.getUpper(), 0.0);
    EXPECT_EQ(regression.getRegression().df, 1u) << "the rows of the table are not part of the record";
}

TEST(LinearRegressionMultiY, analyseTwice)
{
    LinearRegressionMultiY regression = analysed(rising);
    const std::string once = report(regression);
    const double ss = regression.getGroups()[0].sumOfSquares;
    EXPECT_TRUE(regression.analyse());
    EXPECT_EQ(report(regression), once);
    EXPECT_NEAR(regression.getGroups()[0].sumOfSquares, 2.0 * ss, 1e-14);
}

// ---------------------------------------------------------------- report, tests/reference/make_golden_groups.py

TEST(LinearRegressionMultiY, report)
{
    const struct {
        const char* name;
        Pairs pairs;
        const char* comment = "";
        double significance = 0.05;
        int analyses = 1;
    } rows[] = {
        {"falling", falling, "A line that falls"},
        {"rising_five_groups", rising, "Five groups"},
        {"rising_at_one_percent", rising, "", 0.01},
        {"not_significant", flat, "No line"},
        {"exact_line", around({{2, 3}, {4, 2}, {6, 1}}, 0.25)},
        {"no_slope", around({{1, 5}, {2, 9}, {3, 5}}, 0.25)},
        {"one_x", {{2, 3}, {2, 4}, {2, 6}}},
        {"equal_observations", around({{1, 3}, {2, 3}, {3, 3}}, 0.0)},
        {"empty", {}},
        {"not_analysed", rising, "", 0.05, 0},
        {"analysed_twice", rising, "", 0.05, 2},
    };
    for (const auto& row : rows) {
        LinearRegressionMultiY regression = gathered(row.pairs);
        regression.setComment(row.comment);
        regression.setSignificance(row.significance);
        for (int i = 0; i < row.analyses; ++i) regression.analyse();
        EXPECT_EQ(report(regression), golden("multiy_" + std::string(row.name) + ".txt")) << row.name;
    }
}

TEST(LinearRegressionMultiY, reportOfASeriesFile)
{
    const TempFolder folder;
    LinearRegressionMultiY regression;
    ASSERT_TRUE(regression.readSeriesFile(folder.write("series.txt", "1:10:2\n2;24\n# note\n3|30|1\n")));
    regression.setComment("From a series file");
    regression.createSeries();
    regression.analyse();
    EXPECT_EQ(report(regression), golden("multiy_series_file.txt"));
}

TEST(LinearRegressionMultiY, reportLines)
{
    LinearRegressionMultiY negative = analysed(falling), five = analysed(rising), none = analysed(flat);
    EXPECT_THAT(report(negative), HasSubstr("\nregression               : y = 4.000-0.500x\n\n"));
    EXPECT_THAT(report(five), HasSubstr("\nregression               : y = 0.260 + 1.900x\n\n"));
    EXPECT_THAT(report(five), HasSubstr("\nAmong groups       \t4\t"));
    EXPECT_THAT(report(five), HasSubstr("\nDeviations         \t2\t"));
    EXPECT_THAT(report(none), Not(HasSubstr("Deviations")));
    EXPECT_THAT(report(none), Not(HasSubstr("Linear regression")));
    EXPECT_THAT(report(none), HasSubstr("\tP[F] = "));
}

TEST(LinearRegressionMultiY, reportBeforeAnalysisFollowsTheFlag)
{
    LinearRegressionMultiY regression;
    EXPECT_THAT(report(regression), HasSubstr("y = 0.000 + 0.000x"));
    regression.setComputeRegression(false);
    EXPECT_FALSE(regression.isComputeRegression());
    EXPECT_THAT(report(regression), HasSubstr("\n\nNo significant regression\n"));
}

TEST(LinearRegressionMultiY, listingAndExportAreThoseOfTheAnova)
{
    const TempFolder folder;
    LinearRegressionMultiY regression = analysed({{1, 10}, {1, 12}, {2, 20}, {2, 22}});
    EXPECT_EQ(printed([&] { regression.listData(0, 10); }), golden("anova_two_groups_listing.txt"));
    EXPECT_TRUE(regression.exportToR(folder.path("export.txt"), "Two groups of two"));
    EXPECT_EQ(wq_test::contentOf(folder.path("export.txt")), golden("anova_two_groups_export.txt"));
    EXPECT_EQ(printed([&] { regression.testResults(); }), golden("anova_two_groups_results.txt"));
}
