// Chi-square and G tests of observed against expected frequencies.
#include <wq_stat/distributions.h>
#include <wq_stat/goodness_fit.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"

using namespace wq_lib;
using wq_test::golden;
using wq_test::printed;

namespace {

using Classes = std::vector<data_pair>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

const Classes twoClasses = {{30, 25}, {20, 25}};
const Classes threeClasses = {{10, 20}, {20, 20}, {30, 20}};
const Classes fiveClasses = {{10, 12}, {14, 12}, {9, 12}, {13, 12}, {14, 12}};
const Classes peas = {{315, 312.75}, {101, 104.25}, {108, 104.25}, {32, 34.75}};

GoodnessOfFit loaded(const Classes& classes, bool yates = false, bool williams = true)
{
    GoodnessOfFit test;
    test.copyFrom(classes);
    test.setYatesCorrection(yates);
    test.setWilliamsCorrection(williams);
    return test;
}

GoodnessOfFit analysed(const Classes& classes, bool yates = false, bool williams = true)
{
    GoodnessOfFit test = loaded(classes, yates, williams);
    EXPECT_TRUE(test.analyse());
    return test;
}

std::string report(GoodnessOfFit& test)
{
    return printed([&] { test.reportConsole(); });
}

// Statistics that a test sets itself.
class Given : public GoodnessOfFit {
public:
    Given(double x2, double g, double adjusted)
    {
        add(1, 1);
        add(1, 1);
        add(1, 1);
        X2 = x2;
        G = g;
        GAdjusted = adjusted;
    }
};

}  // namespace

TEST(GoodnessOfFit, newObject)
{
    GoodnessOfFit test;
    EXPECT_FALSE(test.isYatesCorrection());
    EXPECT_TRUE(test.isWilliamsCorrection());
    EXPECT_EQ(test.getHypothesisInfo(), "observed and expected distributions do not differ");
    EXPECT_EQ(test.getSampleSize(), 0u);
    EXPECT_EQ(test.getSignificance(), 0.05);
    EXPECT_EQ(test.getX2(), 0.0);
    EXPECT_EQ(test.getG(), 0.0);
    EXPECT_EQ(test.getGAdjusted(), 0.0);
    test.setYatesCorrection(true);
    test.setWilliamsCorrection(false);
    EXPECT_TRUE(test.isYatesCorrection());
    EXPECT_FALSE(test.isWilliamsCorrection());
}

TEST(GoodnessOfFit, statistics)  // values: the textbook formulas in 50 digits, tests/reference/classes_50_digits.py
{
    const struct {
        const char* shows;
        Classes classes;
        bool yates, williams;
        double X2, G, GAdjusted;
    } rows[] = {
        {"two classes: q = 1 + 1/(2N)", twoClasses, false, true, 2.0, 2.01355135506888734, 1.99361520303850232},
        {"Yates: |o - e| - 0.5 in X2, not in G", twoClasses, true, true, 1.62, 2.01355135506888734, 1.99361520303850232},
        // clang-format off
        {"Yates: |o - e| below a half is squared all the same", {{10.25, 10}, {9.75, 10}}, true, true,
         0.0125, 0.0125013024089632004, 0.0121807561933487594},
        {"Yates asked for three classes: no correction", threeClasses, true, true, 10.0, 10.4649628752909567, 10.3499632832547924},
        {"five classes: q = 1 + 6/(6N)", fiveClasses, false, true, 1.83333333333333333, 1.88884002982726289, 1.85787543917435694},
        {"without Williams the adjusted G is G", fiveClasses, false, false,
         1.83333333333333333, 1.88884002982726289, 1.88884002982726289},
        {"fractions are truncated class by class for N (1 + 2 + 0)", {{1.9, 2}, {2.9, 2}, {0.9, 1.7}}, false, true,
         0.786470588235293994, 0.815374328539715164, 0.667124450623403316},
        // clang-format on
        {"Mendel's peas", peas, false, true, 0.470023980815347722, 0.475445238998263146, 0.474733707661839526},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        const GoodnessOfFit test = analysed(row.classes, row.yates, row.williams);
        EXPECT_NEAR(test.getX2(), row.X2, 1e-14 * row.X2);
        // the rounding of o / e, half a unit of 2^-52, becomes o times that in o ln(o / e), and 2 o times in G
        double rounding = 1e-15;
        for (const data_pair& c : row.classes) rounding += c.x * std::numeric_limits<double>::epsilon();
        EXPECT_NEAR(test.getG(), row.G, rounding);
        EXPECT_NEAR(test.getGAdjusted(), row.GAdjusted, rounding);
    }
}

TEST(GoodnessOfFit, totalOfTheObserved)  // seen through q = 1 + 1/(2N) = G / GAdjusted of two classes
{
    const struct {
        const char* shows;
        Classes classes;
        double N;
    } rows[] = {
        {"whole numbers", {{4, 2}, {6, 8}}, 10},
        {"truncated before they are added", {{4.9, 2}, {6.9, 8}}, 10},
        {"below one: nothing", {{0.9, 2}, {6, 8}}, 6},
        {"between 0 and -1: nothing", {{-0.9, -2}, {6, 8}}, 6},
        {"-1 is the largest count, and the sum wraps", {{-1, -2}, {9, 8}}, 8},
        {"-5 is the largest count too", {{-5, -4}, {9, 8}}, 8},
        {"beyond the counts: the largest count", {{1e300, 1e300}, {9, 8}}, 8},
        {"sum below zero wraps to a huge total", {{-1, -2}, {0.5, 0.25}}, 18446744073709551615.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        const GoodnessOfFit test = analysed(row.classes);
        ASSERT_TRUE(std::isfinite(test.getG()) && test.getG() != 0.0);
        EXPECT_SAME_BITS(test.getGAdjusted(), test.getG() / (1.0 + 1.0 / (2.0 * row.N)));
    }
}

TEST(GoodnessOfFit, valuesWithoutAFiniteStatistic)
{
    const struct {
        const char* shows;
        Classes classes;
        double X2, G, GAdjusted;
        bool accepted;
    } rows[] = {
        {"nothing observed in a class: G is NaN, and NaN never rejects", {{0, 1}, {12, 11}}, 1.0 + 1.0 / 11.0, NaN, NaN, true},
        {"a NaN G does not hide a large X2", {{0, 10}, {20, 10}}, 20.0, NaN, NaN, false},
        {"nothing expected in a class: both infinite", {{3, 0}, {12, 11}}, infinity, infinity, infinity, false},
        {"neither observed nor expected: both NaN", {{0, 0}, {12, 11}}, NaN, NaN, NaN, true},
        {"observed NaN", {{NaN, 1}, {12, 11}}, NaN, NaN, NaN, true},
        {"expected negative", {{1, -1}, {12, 11}}, -4.0 + 1.0 / 11.0, NaN, NaN, true},
        {"infinite expectation", {{1, infinity}, {12, 11}}, NaN, -infinity, -infinity, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        GoodnessOfFit test = analysed(row.classes);
        EXPECT_SAME_BITS(test.getX2(), row.X2);
        EXPECT_SAME_BITS(test.getG(), row.G);
        EXPECT_SAME_BITS(test.getGAdjusted(), row.GAdjusted);
        EXPECT_EQ(test.acceptH0(), row.accepted);
    }
}

TEST(GoodnessOfFit, withATotalOfNothingTheAdjustedGIsZero)  // q = 1 + 1/0
{
    const GoodnessOfFit test = analysed({{0.5, 0.25}, {0.5, 0.75}});
    EXPECT_NEAR(test.getG(), 0.287682072451780927, 1e-15);  // ln(4/3)
    EXPECT_SAME_BITS(test.getGAdjusted(), 0.0);
}

TEST(GoodnessOfFit, decision)  // three classes: the critical value is chiSquarePoint(0.95, 2)
{
    const double c = chiSquarePoint(0.95, 2);
    const double below = std::nextafter(c, 0.0);
    const struct {
        const char* shows;
        double X2, G, GAdjusted;
        bool williams, accepted;
    } rows[] = {
        {"all just below", below, below, below, true, true},
        {"X2 at the critical value", c, below, below, true, false},
        {"the uncorrected G rejects although Williams' correction is on", below, c, below, true, false},
        {"adjusted G at the critical value", below, below, c, true, false},
        {"adjusted G without Williams' correction is not looked at", below, below, c, false, true},
        {"X2 without Williams' correction", c, below, below, false, false},
        {"NaN never rejects", NaN, NaN, NaN, true, true},
        {"infinite G", 0.0, infinity, 0.0, true, false},
        {"negative infinite G", 0.0, -infinity, -infinity, true, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        Given test(row.X2, row.G, row.GAdjusted);
        test.setWilliamsCorrection(row.williams);
        EXPECT_EQ(test.acceptH0(), row.accepted);
    }
}

TEST(GoodnessOfFit, decisionFollowsTheSignificanceLevel)
{
    GoodnessOfFit test = analysed(threeClasses);  // X2 = 10, G = 10.46; upper 5 % and 0.1 % points of 2 df near 6 and 14
    EXPECT_FALSE(test.acceptH0());
    test.setSignificance(0.001);
    EXPECT_TRUE(test.acceptH0());
}

TEST(GoodnessOfFit, trimmedRange)  // X2 of the classes in the range; k is the number of stored classes all the same
{
    const struct {
        const char* shows;
        Classes classes;
        double head, tail;
        bool yates;
        double X2;
        double q;
    } rows[] = {
        {"first of four left out, N = 90, k = 4", {{10, 20}, {20, 10}, {30, 20}, {40, 50}}, 0.25, 0.0, false, 17.0, 1.0 + 5.0 / 540.0},
        {"head is rounded up: 0.2 of 4 is one class", {{10, 20}, {20, 10}, {30, 20}, {40, 50}}, 0.2, 0.0, false, 17.0, 1.0 + 5.0 / 540.0},
        {"tail is rounded down: 0.2 of 4 is none", {{10, 20}, {20, 10}, {30, 20}, {40, 50}}, 0.0, 0.2, false, 22.0, 1.0 + 5.0 / 600.0},
        {"last of four left out, N = 60", {{10, 20}, {20, 10}, {30, 20}, {40, 50}}, 0.0, 0.25, false, 20.0, 1.0 + 5.0 / 360.0},
        {"Yates goes by the stored classes: applied to one of two", {{30, 25}, {20, 10}}, 0.5, 0.0, true, 9.025, 1.0 + 1.0 / 40.0},
        // clang-format off
        {"Yates goes by the stored classes: not applied to two of three", {{1, 1}, {20, 10}, {10, 20}}, 0.3, 0.0, true, 15.0,
         1.0 + 4.0 / 180.0},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        GoodnessOfFit test = loaded(row.classes, row.yates);
        test.setHead(row.head);
        test.setTail(row.tail);
        EXPECT_TRUE(test.analyse());
        EXPECT_DOUBLE_EQ(test.getX2(), row.X2);
        EXPECT_SAME_BITS(test.getGAdjusted(), test.getG() / row.q);
    }
}

TEST(GoodnessOfFit, rangesOutsideTheStoredClassesAreNotRead)
{
    const struct {
        const char* shows;
        double head, tail;
        double X2;
    } rows[] = {
        {"head beyond the sample", 5.0, 0.0, 0.0},
        {"head negative: beyond every count", -1.0, 0.0, 0.0},
        {"tail beyond the sample: the end wraps, all is read", 0.0, 5.0, 2.0},
        {"tail negative: the end lies past the sample", 0.0, -1.0, 2.0},
        {"everything trimmed: the end wraps below 0", 0.0, 1.0, 2.0},
        {"head and tail NaN: nothing is trimmed", NaN, NaN, 2.0},
        {"head infinite", infinity, 0.0, 0.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        GoodnessOfFit test = loaded(twoClasses);
        test.setHead(row.head);
        test.setTail(row.tail);
        EXPECT_TRUE(test.analyse());
        EXPECT_SAME_BITS(test.getX2(), row.X2);
    }

    GoodnessOfFit claimed = loaded(twoClasses);  // a sample size that is not that of the list
    claimed.setSampleSize(1000);
    EXPECT_TRUE(claimed.analyse());
    EXPECT_SAME_BITS(claimed.getX2(), 2.0);
    EXPECT_SAME_BITS(claimed.getGAdjusted(), claimed.getG() / (1.0 + 1001.0 / 300.0));
}

TEST(GoodnessOfFit, secondAnalysisAddsNothing)
{
    GoodnessOfFit test = analysed(peas);
    const double X2 = test.getX2();
    const double G = test.getG();
    const double adjusted = test.getGAdjusted();
    EXPECT_TRUE(test.analyse());
    EXPECT_SAME_BITS(test.getX2(), X2);
    EXPECT_SAME_BITS(test.getG(), G);
    EXPECT_SAME_BITS(test.getGAdjusted(), adjusted);

    test.setWilliamsCorrection(false);  // takes effect with the next analysis
    EXPECT_SAME_BITS(test.getGAdjusted(), adjusted);
    EXPECT_TRUE(test.analyse());
    EXPECT_SAME_BITS(test.getGAdjusted(), G);
}

TEST(GoodnessOfFit, analysisLeavesThePairedRecordReset)
{
    GoodnessOfFit test = loaded(peas);
    EXPECT_TRUE(test.BasicXyStatistics::analyse());
    EXPECT_EQ(test.getXyResult().x.n, 4u);
    EXPECT_TRUE(test.analyse());
    EXPECT_EQ(test.getXyResult().x.n, 0u);
    EXPECT_EQ(test.getXyResult().x.sum, 0.0);
}

TEST(GoodnessOfFit, resetKeepsTheTests)
{
    GoodnessOfFit test = loaded(peas);
    EXPECT_TRUE(test.analyse());
    const double X2 = test.getX2(), G = test.getG(), adjusted = test.getGAdjusted();
    EXPECT_GT(X2, 0.0);
    test.resetResult();
    EXPECT_SAME_BITS(test.getX2(), X2);
    EXPECT_SAME_BITS(test.getG(), G);
    EXPECT_SAME_BITS(test.getGAdjusted(), adjusted);
}

TEST(GoodnessOfFit, worksThroughVirtualOperations)
{
    class Watched : public GoodnessOfFit {
    public:
        void resetResult() override { ++resets; }
        data_pair getDataPair(std::size_t i) override
        {
            ++reads;
            return {getX(i), 25};
        }
        bool acceptH0() override { return false; }
        int resets = 0;
        std::size_t reads = 0;

    private:
        double getX(std::size_t i) { return GoodnessOfFit::getDataPair(i).x; }
    };
    Watched test;
    test.copyFrom({{30, 1}, {20, 1}});
    BasicStatistics& base = test;
    EXPECT_TRUE(base.analyse());
    EXPECT_EQ(test.resets, 1);
    EXPECT_EQ(test.reads, 2u);
    EXPECT_SAME_BITS(test.getX2(), 2.0);
    EXPECT_THAT(printed([&] { base.reportConsole(); }), ::testing::EndsWith("Ho    : rejected\n"));
}

TEST(GoodnessOfFit, sameBitsAsThePlainLoop)
{
    std::mt19937_64 random(20240501);
    std::uniform_real_distribution<double> frequency(0.0, 60.0);
    std::uniform_int_distribution<std::size_t> size(1, 40);
    for (int round = 0; round < 300; ++round) {
        Classes classes(round % 5 == 0 ? 2 : size(random));
        for (data_pair& c : classes) c = {frequency(random), frequency(random)};
        const bool yates = round % 2 == 0;
        const bool williams = round % 3 != 0;
        SCOPED_TRACE("round " + std::to_string(round));

        const std::size_t k = classes.size();
        double X2 = 0.0;
        double G = 0.0;
        unsigned long long N = 0;
        for (const data_pair& c : classes) {
            N += static_cast<unsigned long long>(c.x);
            double d = c.x - c.y;
            if (yates && k == 2) d = std::fabs(d) - 0.5;
            X2 = X2 + d * d / c.y;
            G = G + c.x * std::log(c.x / c.y);
        }
        G = 2.0 * G;
        const double n = static_cast<double>(N);
        const double q = k == 2 ? 1.0 + 1.0 / (2.0 * n) : 1.0 + (static_cast<double>(k) + 1.0) / (6.0 * n);
        const double adjusted = williams ? G / q : G;
        const double c = chiSquarePoint(0.95, k - 1);

        GoodnessOfFit test = analysed(classes, yates, williams);
        EXPECT_SAME_BITS(test.getX2(), X2);
        EXPECT_SAME_BITS(test.getG(), G);
        EXPECT_SAME_BITS(test.getGAdjusted(), adjusted);
        EXPECT_EQ(test.acceptH0(), !(X2 >= c) && !(G >= c) && !(williams && adjusted >= c));
    }
}

TEST(GoodnessOfFit, reports)  // tests/reference/make_golden_classes.py
{
    const struct {
        const char* file;
        Classes classes;
        const char* comment;
        bool yates, williams;
        double significance, head;
    } rows[] = {
        {"fit_peas.txt", peas, "Seeds of a dihybrid cross, 9:3:3:1", false, true, 0.05, 0.0},
        {"fit_peas_no_williams.txt", peas, "Seeds of a dihybrid cross, 9:3:3:1", false, false, 0.05, 0.0},
        {"fit_yates.txt", twoClasses, "Two classes", true, true, 0.05, 0.0},
        {"fit_two_classes.txt", twoClasses, "Two classes", false, true, 0.05, 0.0},
        {"fit_rejected.txt", threeClasses, "", true, true, 0.01, 0.0},
        {"fit_nothing_observed.txt", {{0, 1}, {12, 11}}, "", false, true, 0.05, 0.0},
        {"fit_nothing_expected.txt", {{3, 0}, {12, 11}}, "", false, true, 0.05, 0.0},
        {"fit_empty.txt", {}, "", false, true, 0.05, 0.0},
        {"fit_one_class.txt", {{5, 4}}, "", false, true, 0.05, 0.0},
        {"fit_head.txt", peas, "", false, true, 0.05, 0.25},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        GoodnessOfFit test = loaded(row.classes, row.yates, row.williams);
        test.setComment(row.comment);
        test.setSignificance(row.significance);
        test.setHead(row.head);
        EXPECT_TRUE(test.analyse());
        EXPECT_EQ(report(test), golden(row.file));
    }
    GoodnessOfFit before = loaded(peas);
    EXPECT_EQ(report(before), golden("fit_before_analysis.txt"));
}

TEST(GoodnessOfFit, reportPrintsTheHypothesisTextAndReadsEverythingAnew)
{
    GoodnessOfFit test = analysed(peas);
    test.setHypothesisInfo("9:3:3:1");
    test.setSignificance(0.01);
    const std::string text = report(test);
    EXPECT_THAT(text, ::testing::HasSubstr("\nHo: 9:3:3:1\n"));
    EXPECT_THAT(text, ::testing::HasSubstr("\nX2 0.010,3: "));
    EXPECT_EQ(report(test), text);
}
