// Kolmogorov-Smirnov test of two samples over the same classes.
#include <wq_stat/distributions.h>
#include <wq_stat/kolmogorov.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"

using namespace wq_lib;
using wq_test::golden;
using wq_test::printed;

namespace {

using Classes = std::vector<data_pair>;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t largestCount = std::numeric_limits<std::size_t>::max();

const Classes thirty = {{2, 9}, {5, 8}, {8, 6}, {9, 4}, {6, 3}};
const Classes twenty = {{10, 2}, {5, 4}, {5, 6}, {0, 8}};
const Classes equalTwenty = {{5, 5}, {7, 7}, {8, 8}};

KolmogorovSmirnov2 loaded(const Classes& classes)
{
    KolmogorovSmirnov2 test;
    test.copyFrom(classes);
    return test;
}

KolmogorovSmirnov2 analysed(const Classes& classes)
{
    KolmogorovSmirnov2 test = loaded(classes);
    test.cumulative();
    EXPECT_TRUE(test.analyse());
    return test;
}

std::string report(KolmogorovSmirnov2& test)
{
    return printed([&] { test.reportConsole(); });
}

std::string table(KolmogorovSmirnov2& test)
{
    return printed([&] { test.listFrequencies(); });
}

}  // namespace

TEST(Kolmogorov, newObject)
{
    const KolmogorovSmirnov2 test;
    EXPECT_EQ(test.getHypothesisInfo(), "both data samples drawn from same continuous distribution");
    for (const double value : {test.getD(), test.getX2(), test.getG(), test.getGAdjusted()}) EXPECT_SAME_BITS(value, 0.0);
    EXPECT_EQ(test.getN1(), 0u);
    EXPECT_EQ(test.getN2(), 0u);
    const char* names[] = {"F1", "F2", "relF1", "relF2", "diff"};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(test.getColumnName(i), names[i]);
}

TEST(Kolmogorov, statistics)  // D: tests/reference/classes_50_digits.py
{
    const struct {
        const char* shows;
        Classes classes;
        std::size_t n1, n2;
        double D;
        bool accepted;
    } rows[] = {
        {"equal columns: D = 0, accepted without a critical value", equalTwenty, 20, 20, 0.0, true},
        {"mirrored", {{3, 1}, {2, 2}, {1, 3}}, 6, 6, 1.0 / 3.0, false},
        {"n1 = n2 = 20: the critical value is 0, any D rejects", twenty, 20, 20, 0.45, false},
        {"n1 = n2 = 20: so does the smallest", {{10, 9}, {10, 11}}, 20, 20, 0.05, false},
        {"n1 = n2 = 30: a critical value, D below it", {{10, 7}, {20, 23}}, 30, 30, 0.1, true},
        {"n1 = n2 = 30: D above it (23/30 - 12/30 > 0.351)", {{12, 23}, {18, 7}}, 30, 30, 11.0 / 30.0, false},
        {"one sample of 41 suffices", {{20, 2}, {21, 3}}, 41, 5, 20.0 / 41.0 - 0.4, true},
        {"fractions: the sizes are truncated and divide all the same", {{1.5, 0.5}, {1.25, 1.0}, {0.2, 2.0}}, 2, 3, 0.875, false},
        {"no class but the first", {{40, 50}}, 40, 50, 0.0, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        KolmogorovSmirnov2 test = analysed(row.classes);
        EXPECT_EQ(test.getN1(), row.n1);
        EXPECT_EQ(test.getN2(), row.n2);
        EXPECT_NEAR(test.getD(), row.D, 2e-16);
        EXPECT_EQ(test.acceptH0(), row.accepted);
    }
}

TEST(Kolmogorov, sizesAreTheLastCumulativeFrequenciesTruncated)
{
    const struct {
        const char* shows;
        double c1, c2;
        std::size_t n1, n2;
    } rows[] = {
        {"truncated", 29.999, 30.001, 29, 30},
        {"below one", 0.5, -0.5, 0, 0},
        {"negative: the largest count", -1.0, -7.5, largestCount, largestCount},
        {"beyond the counts", 1e300, std::numeric_limits<double>::infinity(), largestCount, largestCount},
        {"NaN", NaN, 3.0, 0, 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        KolmogorovSmirnov2 test;
        test.addCumulativeFrequency(1.0, 1.0);
        test.addCumulativeFrequency(row.c1, row.c2);
        EXPECT_TRUE(test.analyse());
        EXPECT_EQ(test.getN1(), row.n1);
        EXPECT_EQ(test.getN2(), row.n2);
    }
}

TEST(Kolmogorov, aDifferenceThatIsNaNNeverCounts)
{
    KolmogorovSmirnov2 zero = analysed({{0, 0}, {0, 0}});  // 0/0 - 0/0
    EXPECT_SAME_BITS(zero.getD(), 0.0);
    EXPECT_TRUE(zero.acceptH0());

    KolmogorovSmirnov2 hole = analysed({{10, 10}, {NaN, 5}, {10, 5}});  // from the NaN on every cumulative frequency is NaN, and n1 is 0
    EXPECT_EQ(hole.getN1(), 0u);
    EXPECT_EQ(hole.getN2(), 20u);
    EXPECT_SAME_BITS(hole.getD(), std::numeric_limits<double>::infinity());  // |10/0 - 10/20|
    EXPECT_FALSE(hole.acceptH0());
}

TEST(Kolmogorov, DIsTheLargestEverSeen)
{
    KolmogorovSmirnov2 test = loaded(twenty);
    test.cumulative();
    EXPECT_TRUE(test.analyse());
    const double D = test.getD();
    EXPECT_NEAR(D, 0.45, 1e-16);

    test.resetCumulativeFrequency();
    test.addCumulativeFrequency(20, 20);
    EXPECT_TRUE(test.analyse());
    EXPECT_SAME_BITS(test.getD(), D) << "equal samples do not lower it";

    test.resetResult();
    EXPECT_SAME_BITS(test.getD(), D) << "neither does a reset of the result";
    EXPECT_EQ(test.getN1(), 20u);

    test.resetCumulativeFrequency();
    test.addCumulativeFrequency(30, 3);
    test.addCumulativeFrequency(30, 30);
    EXPECT_TRUE(test.analyse());
    EXPECT_NEAR(test.getD(), 0.9, 1e-15) << "a larger one raises it";
}

TEST(Kolmogorov, cumulativeFrequenciesOfTheClasses)
{
    KolmogorovSmirnov2 test = loaded(twenty);
    test.cumulative();
    const std::pair<double, double> expected[] = {{10, 2}, {15, 6}, {20, 12}, {20, 20}};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(test.getCumulativeFrequency(i), expected[i]);
}

TEST(Kolmogorov, cumulativeTwiceAppendsASecondSeries)
{
    KolmogorovSmirnov2 test = loaded(twenty);
    test.cumulative();
    test.add(30, 10);  // so that the second series ends elsewhere
    test.cumulative();
    const std::pair<double, double> expected[] = {{10, 2}, {15, 6}, {20, 12}, {20, 20}, {10, 2}, {15, 6}, {20, 12}, {20, 20}, {50, 30}};
    for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(test.getCumulativeFrequency(i), expected[i]);
    EXPECT_TRUE(test.analyse());
    EXPECT_EQ(test.getN1(), 50u);
    EXPECT_EQ(test.getN2(), 30u);

    test.resetCumulativeFrequency();
    test.cumulative();
    EXPECT_EQ(test.getCumulativeFrequency(0), expected[4]);
    EXPECT_EQ(test.getCumulativeFrequency(4), expected[8]);
}

TEST(Kolmogorov, cumulativeSetsTheSizesToZero)
{
    KolmogorovSmirnov2 test = analysed(twenty);
    EXPECT_EQ(test.getN1(), 20u);
    test.cumulative();
    EXPECT_EQ(test.getN1(), 0u);
    EXPECT_EQ(test.getN2(), 0u);
}

TEST(Kolmogorov, cumulativeTakesTheDataRangeAsItIs)  // without head and tail
{
    const struct {
        const char* shows;
        std::size_t start, end;
        double head;
        std::vector<std::pair<double, double>> expected;
    } rows[] = {
        {"the inner classes", 1, 2, 0.0, {{5, 4}, {10, 10}}},
        {"an end past the sample stops at the last class", 2, 100, 0.0, {{5, 6}, {5, 14}}},
        {"the last index of all does not wrap", 3, largestCount, 0.0, {{0, 8}}},
        {"a start past the sample reads nothing", 4, 10, 0.0, {}},
        {"an end before the start reads nothing", 2, 1, 0.0, {}},
        {"head is not applied here", 0, 3, 0.5, {{10, 2}, {15, 6}, {20, 12}, {20, 20}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        KolmogorovSmirnov2 test = loaded(twenty);
        test.setDataStart(row.start);
        test.setDataEnd(row.end);
        test.setHead(row.head);
        test.cumulative();
        test.addCumulativeFrequency(-1, -1);  // marks the end of the series
        for (std::size_t i = 0; i < row.expected.size(); ++i) EXPECT_EQ(test.getCumulativeFrequency(i), row.expected[i]);
        EXPECT_EQ(test.getCumulativeFrequency(row.expected.size()), std::make_pair(-1.0, -1.0));
    }
}

TEST(Kolmogorov, analysisWithoutCumulativeFrequencies)
{
    KolmogorovSmirnov2 test = loaded(twenty);
    EXPECT_TRUE(test.analyse()) << "the analysis does not build them itself";
    EXPECT_EQ(test.getN1(), 0u);
    EXPECT_EQ(test.getN2(), 0u);
    EXPECT_SAME_BITS(test.getD(), 0.0);
    EXPECT_TRUE(test.acceptH0());

    test.cumulative();
    EXPECT_TRUE(test.analyse());
    test.resetCumulativeFrequency();
    EXPECT_TRUE(test.analyse());
    EXPECT_EQ(test.getN1(), 0u);
    EXPECT_EQ(test.getN2(), 0u);
    EXPECT_NEAR(test.getD(), 0.45, 1e-16) << "D stays";

    KolmogorovSmirnov2 empty;
    empty.cumulative();
    EXPECT_TRUE(empty.analyse());
    EXPECT_TRUE(empty.acceptH0());
}

TEST(Kolmogorov, decisionAtTheCriticalValueItself)
{
    class Given : public KolmogorovSmirnov2 {
    public:
        Given(double d, std::size_t size1, std::size_t size2)
        {
            D = d;
            n1 = size1;
            n2 = size2;
        }
    };
    const double c = D_TwoSamples(0.05, 30, 35);
    ASSERT_GT(c, 0.0);
    EXPECT_TRUE(Given(c, 30, 35).acceptH0());
    EXPECT_FALSE(Given(std::nextafter(c, 1.0), 30, 35).acceptH0());
    EXPECT_FALSE(Given(NaN, 30, 35).acceptH0());
    EXPECT_TRUE(Given(0.0, 20, 35).acceptH0());
    EXPECT_FALSE(Given(1e-300, 20, 35).acceptH0());
}

TEST(Kolmogorov, worksThroughVirtualOperations)
{
    class Watched : public KolmogorovSmirnov2 {
    public:
        void resetResult() override { ++resets; }
        data_pair getDataPair(std::size_t) override { return {1, 1}; }
        bool acceptH0() override { return false; }
        int resets = 0;
    };
    Watched test;
    test.copyFrom(twenty);
    test.cumulative();
    EXPECT_EQ(test.getCumulativeFrequency(3), std::make_pair(4.0, 4.0));
    BasicStatistics& base = test;
    EXPECT_TRUE(base.analyse());
    EXPECT_EQ(test.resets, 1);
    EXPECT_THAT(printed([&] { base.reportConsole(); }), ::testing::EndsWith("H0      : rejected\n"));
}

TEST(Kolmogorov, sameBitsAsThePlainLoop)
{
    std::mt19937_64 random(77);
    std::uniform_real_distribution<double> frequency(0.0, 9.0);
    std::uniform_int_distribution<std::size_t> size(1, 40);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        Classes classes(size(random));
        for (data_pair& c : classes) c = {frequency(random), frequency(random)};

        double total1 = 0.0;
        double total2 = 0.0;
        for (const data_pair& c : classes) {
            total1 += c.x;
            total2 += c.y;
        }
        const auto n1 = static_cast<std::size_t>(total1);
        const auto n2 = static_cast<std::size_t>(total2);
        double c1 = 0.0;
        double c2 = 0.0;
        double D = 0.0;
        for (const data_pair& c : classes) {
            c1 += c.x;
            c2 += c.y;
            const double d = std::fabs(c1 / static_cast<double>(n1) - c2 / static_cast<double>(n2));
            if (d > D) D = d;
        }

        KolmogorovSmirnov2 test = analysed(classes);
        EXPECT_EQ(test.getN1(), n1);
        EXPECT_EQ(test.getN2(), n2);
        EXPECT_SAME_BITS(test.getD(), D);
        EXPECT_EQ(test.acceptH0(), D_TwoSamples(0.05, n1, n2) >= D);
    }
}

TEST(Kolmogorov, reportsAndTables)  // tests/reference/make_golden_classes.py
{
    const struct {
        const char* name;
        Classes classes;
        const char* comment;
        double significance;
        int cumulated;
        bool analysed;
    } rows[] = {
        {"ks_thirty", thirty, "Two samples of 30", 0.05, 1, true},
        {"ks_thirty_at_one_percent", thirty, "", 0.01, 1, true},
        {"ks_twenty", twenty, "Two samples of 20, too small for a critical value", 0.01, 1, true},
        {"ks_equal", equalTwenty, "", 0.05, 1, true},
        {"ks_twice", thirty, "", 0.05, 2, true},
        {"ks_not_analysed", twenty, "", 0.05, 1, false},
        {"ks_not_cumulated", twenty, "", 0.05, 0, true},
        {"ks_empty", {}, "", 0.05, 1, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        KolmogorovSmirnov2 test = loaded(row.classes);
        test.setComment(row.comment);
        test.setSignificance(row.significance);
        for (int i = 0; i < row.cumulated; ++i) test.cumulative();
        if (row.analysed) test.analyse();
        EXPECT_EQ(report(test), golden(row.name + std::string(".txt")));
        EXPECT_EQ(table(test), golden(row.name + std::string("_table.txt")));
    }
}

TEST(Kolmogorov, tableWithTheHostsColumnNames)
{
    const struct {
        const char* name;
        Classes classes;
        std::vector<std::string> columns;  // a missing one prints as blanks, a long one pushes the others
    } rows[] = {
        {"ks_fractions", {{1.5, 0.5}, {1.25, 1.0}, {0.2, 2.0}}, {"before", "after"}},
        {"ks_long_names",
         {{123456789, 1}, {0.0005, 99999999999.5}},
         {"frequency before", "frequency after", "relative 1", "relative 2", "difference"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        KolmogorovSmirnov2 test = analysed(row.classes);
        test.clearColumnNames();
        for (const std::string& name : row.columns) test.addColumnName(name);
        EXPECT_EQ(report(test), golden(row.name + std::string(".txt")));
        EXPECT_EQ(table(test), golden(row.name + std::string("_table.txt")));
    }
}

TEST(Kolmogorov, listingAndExportNameTheFrequencyColumns)
{
    KolmogorovSmirnov2 test = loaded({{3, 1}, {2, 2}});
    EXPECT_EQ(printed([&] { test.listData(0, 1); }), "F1 F2\n3 1\n2 2\n\n");
    const wq_test::TempFolder folder;
    EXPECT_TRUE(test.exportToR(folder.path("classes.txt"), "two samples"));
    EXPECT_EQ(wq_test::contentOf(folder.path("classes.txt")), "# two samples\nF1\tF2\n3.000000\t1.000000\n2.000000\t2.000000\n");
}
