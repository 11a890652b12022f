// Paired samples: filling, range, statistics, what an analysis calls, reader, listing, report, R export.
#include <wq_stat/basic_xy_stat.h>
#include <wq_stat/correlation.h>
#include <wq_stat/regression.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"
#include "support/paired.h"

using namespace wq_lib;
using ::testing::ElementsAre;
using wq_test::Calls;
using wq_test::callsOfPasses;
using wq_test::expectSameStatistics;
using wq_test::exported;
using wq_test::golden;
using wq_test::holding;
using wq_test::naiveStatistics;
using wq_test::Pairs;
using wq_test::printed;
using wq_test::printedToError;
using wq_test::Recorded;
using wq_test::TempFolder;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double resetMaximum = 2.2250738585072014e-308;
constexpr std::size_t wrapped = static_cast<std::size_t>(-1);  // what 0 - 1 is

const Pairs five = {{1, 10}, {2, 20}, {3, 30}, {4, 40}, {5, 50}};

// What naiveStatistics gives for no pairs at all is not what a reset gives: its means are NaN.
void expectReset(const xy_stat& statistics)
{
    xy_stat reset;
    reset.x = reset.y = wq_test::resetRecord();
    expectSameStatistics(statistics, reset);
}

std::string report(BasicStatistics& sample)
{
    return printed([&] { sample.reportConsole(); });
}

std::string listing(BasicXyStatistics& sample, std::size_t start, std::size_t end)
{
    return printed([&] { sample.listData(start, end); });
}

Pairs pairsOf(BasicXyStatistics& sample)
{
    Pairs pairs;
    for (std::size_t i = 0; i < sample.getSampleSize(); ++i) pairs.push_back(sample.getDataPair(i));
    return pairs;
}

void expectPairs(BasicXyStatistics& sample, const Pairs& expected)
{
    const Pairs actual = pairsOf(sample);
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        EXPECT_SAME_BITS(actual[i].x, expected[i].x) << "pair " << i;
        EXPECT_SAME_BITS(actual[i].y, expected[i].y) << "pair " << i;
    }
}

// Calls f with a new object of each class that takes the reader, the listing and the export from here.
template <typename F>
void forEveryPairedClass(F&& f)
{
    const auto call = [&](auto object, const char* name) {
        SCOPED_TRACE(name);
        f(object);
    };
    call(Recorded<BasicXyStatistics>(), "BasicXyStatistics");
    call(Recorded<Regression>(), "Regression");
    call(Recorded<LinearRegression>(), "LinearRegression");
    call(Recorded<LogarithmicRegression>(), "LogarithmicRegression");
    call(Recorded<ExponentialRegression>(), "ExponentialRegression");
    call(Recorded<PowerRegression>(), "PowerRegression");
    call(Recorded<Correlation>(), "Correlation");
}

// Shows how much the list of pairs has room for.
class Roomy : public BasicXyStatistics {
public:
    std::size_t capacity() const { return pairs.capacity(); }
};

}  // namespace

// ---------------------------------------------------------------- new objects, filling

TEST(BasicXyStatistics, newObject)
{
    const BasicXyStatistics sample;
    EXPECT_EQ(sample.getSampleSize(), 0u);
    EXPECT_EQ(sample.getDataStart(), 0u);
    EXPECT_EQ(sample.getDataEnd(), 0u);
    EXPECT_EQ(sample.getHead(), 0.0);
    EXPECT_EQ(sample.getTail(), 0.0);
    EXPECT_EQ(sample.getSignificance(), 0.05);
    EXPECT_FALSE(sample.isSorted());
    EXPECT_FALSE(sample.isNegative());
    EXPECT_EQ(sample.getColumnName(0), "X");
    EXPECT_EQ(sample.getColumnName(1), "Y");
    EXPECT_EQ(sample.getHypothesisInfo(), "");
    EXPECT_EQ(sample.getComment(), "");
    EXPECT_EQ(sample.getDataFile(), "");
    expectReset(sample.getXyResult());
    EXPECT_SAME_BITS(sample.getXyResult().covariance, 0.0);
}

TEST(BasicXyStatistics, keysAreStrictlyLess)
{
    const struct {
        data_pair a, b;
        bool byX, byY;
    } rows[] = {
        {{1, 5}, {2, 4}, true, false},
        {{2, 4}, {1, 5}, false, true},
        {{1, 1}, {1, 1}, false, false},
        {{-0.0, 0.0}, {0.0, -0.0}, false, false},
        {{-infinity, 0}, {infinity, 1e-300}, true, true},
        {{NaN, NaN}, {1, 1}, false, false},
        {{1, 1}, {NaN, NaN}, false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(keyX(row.a, row.b), row.byX) << row.a.x << " " << row.b.x;
        EXPECT_EQ(keyY(row.a, row.b), row.byY) << row.a.y << " " << row.b.y;
    }
    Pairs pairs = {{2, 1}, {3, 0}, {1, 2}};
    std::sort(pairs.begin(), pairs.end(), keyX);
    EXPECT_EQ(pairs[0].y, 2.0);
    EXPECT_EQ(pairs[2].y, 0.0);
    std::sort(pairs.begin(), pairs.end(), keyY);
    EXPECT_EQ(pairs[0].x, 3.0);
    EXPECT_EQ(pairs[2].x, 1.0);
}

TEST(BasicXyStatistics, addSetsTheEndToTheLastIndex)  // the univariate add sets it one past
{
    BasicXyStatistics sample;
    sample.setSorted(true);
    sample.setDataStart(7);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_TRUE(sample.add(1.0, 2.0));
        EXPECT_EQ(sample.getSampleSize(), i + 1);
        EXPECT_EQ(sample.getDataEnd(), i);
    }
    EXPECT_TRUE(sample.isSorted()) << "left alone";
    EXPECT_EQ(sample.getDataStart(), 7u) << "left alone";

    sample.setSampleSize(100);
    sample.setDataEnd(100);
    EXPECT_TRUE(sample.add(1.0, 2.0));
    EXPECT_EQ(sample.getSampleSize(), 5u) << "the size of the list, not one more than before";
    EXPECT_EQ(sample.getDataEnd(), 4u);
}

TEST(BasicXyStatistics, copyFromAppends)
{
    Recorded<BasicXyStatistics> sample;
    EXPECT_EQ(sample.copyFrom({}), 0u);
    EXPECT_EQ(sample.copyFrom({{3, 4}, {1, 2}}), 2u);
    EXPECT_EQ(sample.copyFrom(five), 7u);
    EXPECT_EQ(sample.getSampleSize(), 7u);
    EXPECT_EQ(sample.getDataEnd(), 6u);
    EXPECT_THAT(sample.calls, ElementsAre("reserve 0", "reserve 2", "reserve 5"));
    expectPairs(sample, {{3, 4}, {1, 2}, {1, 10}, {2, 20}, {3, 30}, {4, 40}, {5, 50}});
}

TEST(BasicXyStatistics, copyFromGrowsTheListGeometrically)  // reserving size() + n each time would move all pairs each time
{
    Roomy sample;
    std::size_t moves = 0;
    for (int i = 0; i < 100000; ++i) {
        const std::size_t before = sample.capacity();
        sample.copyFrom({{double(i), 1.0}});
        if (sample.capacity() != before) ++moves;
    }
    EXPECT_EQ(sample.getSampleSize(), 100000u);
    EXPECT_LT(moves, 64u);  // a factor of 1.2 needs 64 moves
}

TEST(BasicXyStatistics, initDataListChangesNoPair)
{
    Roomy sample;
    sample.copyFrom(five);
    sample.initDataList(1000);
    EXPECT_GE(sample.capacity(), 1000u);
    EXPECT_EQ(sample.getDataEnd(), 4u);
    expectPairs(sample, five);
    sample.initDataList(0);
    expectPairs(sample, five);
}

TEST(BasicXyStatistics, setDataPairX)
{
    BasicXyStatistics sample = holding<BasicXyStatistics>(five);
    ASSERT_TRUE(sample.analyse());
    sample.setDataPairX(4, -7.5);
    expectPairs(sample, {{1, 10}, {2, 20}, {3, 30}, {4, 40}, {-7.5, 50}});
    EXPECT_EQ(sample.getXyResult().x.sum, 15.0) << "nothing is computed again";
}

// ---------------------------------------------------------------- analyse

TEST(BasicXyStatistics, moments)  // 50 digits: tests/reference/paired_50_digits.py
{
    const struct {
        const char* name;
        double sumX, meanX, squaresX, varianceX, sampleVarianceX, sumY, meanY, squaresY, varianceY, sampleVarianceY, products, covariance;
        Pairs pairs;
    } rows[] = {
        {"ordinary", 55.0, 5.5, 82.5, 8.25, 9.16666666666666667, 135.0, 13.5, 825.875, 82.5875, 91.7638888888888889, 254.5,
         28.2777777777777778, wq_test::ordinaryPairs},
        {"falling", 31.5, 5.25, 175.875, 29.3125, 35.175, 81.5, 13.5833333333333333, 589.208333333333333, 98.2013888888888889,
         117.841666666666667, -241.875, -48.375, wq_test::fallingPairs},
        // clang-format off
        {"wide", 70010003.25001, 14002000.650002, 3919719988986726.91, 783943997797345.382, 979929997246681.727, 70010000.40001,
         14002000.080002, 3919720068798120.03, 783944013759624.006, 979930017199530.007, -980280071100680.0, -245070017775170.0,
         {{1e-5, 7e7}, {0.25, 1e4}, {3, 0.1}, {1e4, 0.3}, {7e7, 1e-5}}},
        {"large offset", 3000006.0, 1000002.0, 2.0, 0.666666666666666667, 1.0, 9000018.0, 3000006.0, 26.0, 8.66666666666666667, 13.0, 2.0,
         1.0, {{1000001, 3000003}, {1000003, 3000005}, {1000002, 3000010}}},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        BasicXyStatistics sample = holding<BasicXyStatistics>(row.pairs);
        ASSERT_TRUE(sample.analyse());
        const xy_stat& r = sample.getXyResult();
        EXPECT_EQ(r.x.n, row.pairs.size());
        EXPECT_EQ(r.y.n, 0u) << "the pairs are counted in x alone";
        // clang-format off
        const double figures[][2] = {
            {r.x.sum, row.sumX}, {r.x.mean, row.meanX}, {r.x.sumOfSquares, row.squaresX}, {r.x.variance, row.varianceX},
            {r.x.sampleVariance, row.sampleVarianceX}, {r.y.sum, row.sumY}, {r.y.mean, row.meanY}, {r.y.sumOfSquares, row.squaresY},
            {r.y.variance, row.varianceY}, {r.y.sampleVariance, row.sampleVarianceY}, {r.sumProducts, row.products},
            {r.covariance, row.covariance}};
        // clang-format on
        for (const auto& [actual, expected] : figures) EXPECT_NEAR(actual, expected, 1e-14 * std::fabs(expected));
    }
}

TEST(BasicXyStatistics, tooFewPairs)
{
    BasicXyStatistics sample;
    EXPECT_FALSE(sample.analyse()) << "no pair";
    expectReset(sample.getXyResult());
    sample.add(3, 4);
    EXPECT_FALSE(sample.analyse()) << "one pair";
    expectReset(sample.getXyResult());
    sample.add(3, 4);
    EXPECT_TRUE(sample.analyse()) << "two pairs";
    sample.setHead(0.5);
    EXPECT_FALSE(sample.analyse()) << "one pair in the range";
    expectReset(sample.getXyResult());
}

TEST(BasicXyStatistics, twoIdenticalPairs)
{
    BasicXyStatistics sample = holding<BasicXyStatistics>({{1.5, 2}, {1.5, 2}});
    ASSERT_TRUE(sample.analyse());
    const xy_stat& r = sample.getXyResult();
    for (const double zero : {r.x.variance, r.x.sampleVariance, r.y.variance, r.y.sampleVariance, r.sumProducts, r.covariance})
        EXPECT_SAME_BITS(zero, 0.0);
    EXPECT_EQ(r.x.mean, 1.5);
    EXPECT_EQ(r.y.mean, 2.0);
}

TEST(BasicXyStatistics, extremes)
{
    const struct {
        const char* shows;
        Pairs pairs;
        double minX, maxX, minY, maxY;
    } rows[] = {
        {"signs of all kinds", {{-1, 4}, {2, -3}, {0, 9}}, -1, 2, -3, 9},
        {"all x negative: the maximum stays as reset", {{-1, 4}, {-2, 5}, {-8, 9}}, -8, resetMaximum, 4, 9},
        {"all y negative: the maximum stays as reset", {{1, -4}, {2, -5}}, 1, 2, -5, resetMaximum},
        {"zeros are not above it either", {{0, 0}, {-1, 0}}, -1, resetMaximum, 0, resetMaximum},
        {"a NaN is neither", {{NaN, 3}, {2, NaN}, {5, 1}}, 2, 5, 1, 3},
        {"infinities", {{-infinity, infinity}, {0, 1}}, -infinity, resetMaximum, 1, infinity},
    };
    for (const auto& row : rows) {
        BasicXyStatistics sample = holding<BasicXyStatistics>(row.pairs);
        ASSERT_TRUE(sample.analyse()) << row.shows;
        EXPECT_SAME_BITS(sample.getXyResult().x.min, row.minX) << row.shows;
        EXPECT_SAME_BITS(sample.getXyResult().x.max, row.maxX) << row.shows;
        EXPECT_SAME_BITS(sample.getXyResult().y.min, row.minY) << row.shows;
        EXPECT_SAME_BITS(sample.getXyResult().y.max, row.maxY) << row.shows;
        EXPECT_FALSE(sample.isNegative()) << row.shows << ": only geometricMean() tells that";
    }
}

TEST(BasicXyStatistics, range)
{
    const struct {
        const char* shows;
        double head, tail;
        std::size_t start, end;
        bool analysed;
        std::size_t first, n;  // what is read
    } rows[] = {
        {"everything", 0.0, 0.0, 0, 9, true, 0, 10},
        {"one at each end", 0.1, 0.1, 1, 8, true, 1, 8},
        {"rounded up at the start, down at the end", 0.15, 0.29, 2, 7, true, 2, 6},
        {"a little of one value", 0.01, 0.01, 1, 9, true, 1, 9},
        {"two pairs", 0.4, 0.4, 4, 5, true, 4, 2},
        {"one pair", 0.4, 0.5, 4, 4, false, 0, 0},
        {"the end before the start: the difference wraps", 0.5, 0.6, 5, 3, true, 0, 0},
        {"the end directly before the start", 0.5, 0.5, 5, 4, true, 0, 0},
        {"all cut away at the start", 1.0, 0.0, 10, 9, true, 0, 0},
        {"more than all cut away at the start", 1.5, 0.0, 15, 9, true, 0, 0},
        {"all cut away at the end: it wraps, and nothing is cut", 0.0, 1.0, 0, wrapped, true, 0, 10},
        {"a negative head below one value", -0.05, 0.0, 0, 9, true, 0, 10},
        {"a negative head beyond one value wraps", -0.25, 0.0, wrapped, 9, true, 0, 0},
        {"a negative tail below one value", 0.0, -0.05, 0, 9, true, 0, 10},
        {"a negative tail beyond one value: past the last pair", 0.0, -0.25, 0, 10, true, 0, 10},
        {"no number", NaN, NaN, 0, 9, true, 0, 10},
    };
    Pairs pairs;
    for (int i = 0; i < 10; ++i) pairs.push_back({double(1 << i), double(i * i)});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        BasicXyStatistics sample = holding<BasicXyStatistics>(pairs);
        sample.setHead(row.head);
        sample.setTail(row.tail);
        EXPECT_EQ(sample.analyse(), row.analysed);
        EXPECT_EQ(sample.getDataStart(), row.start);
        EXPECT_EQ(sample.getDataEnd(), row.end);
        if (!row.analysed) {
            expectReset(sample.getXyResult());
            continue;
        }
        const auto begin = pairs.begin() + static_cast<std::ptrdiff_t>(row.first);
        const xy_stat expected = naiveStatistics(Pairs(begin, begin + static_cast<std::ptrdiff_t>(row.n)));
        expectSameStatistics(sample.getXyResult(), expected);
        EXPECT_SAME_BITS(sample.getXyResult().covariance, expected.sumProducts / (double(row.n) - 1.0));
    }
}

TEST(BasicXyStatistics, anEmptyRangeGivesNaN)
{
    BasicXyStatistics sample = holding<BasicXyStatistics>(wq_test::ordinaryPairs);
    sample.setHead(0.9);
    sample.setTail(0.9);
    EXPECT_TRUE(sample.analyse());
    const xy_stat& r = sample.getXyResult();
    EXPECT_EQ(r.x.n, 0u);
    for (const double none : {r.x.mean, r.y.mean, r.x.variance, r.y.variance}) EXPECT_TRUE(std::isnan(none));
    for (const double zero : {r.x.sum, r.y.sum, r.x.sumOfSquares, r.y.sumOfSquares, r.sumProducts}) EXPECT_SAME_BITS(zero, 0.0);
}

TEST(BasicXyStatistics, theSizeThatTheHostSetsNeverLeadsOutside)
{
    const struct {
        const char* shows;
        std::size_t size;
        double head;
        bool analysed;
        std::size_t n;
    } rows[] = {
        {"smaller than the list", 3, 0.0, true, 3},
        {"one", 1, 0.0, false, 0},
        {"larger than the list", 100, 0.0, true, 5},
        {"the start past the list", 100, 0.1, true, 0},
        {"the start at the last pair: one is enough then", 100, 0.04, true, 1},
        {"the largest one", wrapped, 0.0, true, 5},
    };
    for (const auto& row : rows) {
        BasicXyStatistics sample = holding<BasicXyStatistics>(five);
        sample.setSampleSize(row.size);
        sample.setHead(row.head);
        EXPECT_EQ(sample.analyse(), row.analysed) << row.shows;
        EXPECT_EQ(sample.getXyResult().x.n, row.n) << row.shows;
    }
}

TEST(BasicXyStatistics, theRangeThatTheHostSetsIsReplaced)
{
    BasicXyStatistics sample = holding<BasicXyStatistics>(five);
    sample.setDataStart(3);
    sample.setDataEnd(1);
    ASSERT_TRUE(sample.analyse());
    EXPECT_EQ(sample.getXyResult().x.n, 5u);
    EXPECT_EQ(sample.getDataStart(), 0u);
    EXPECT_EQ(sample.getDataEnd(), 4u);
}

TEST(BasicXyStatistics, analyseKeepsTheOrderOfThePairs)
{
    const Pairs unsorted = {{3, 1}, {1, 2}, {2, 0}};
    BasicXyStatistics sample = holding<BasicXyStatistics>(unsorted);
    ASSERT_TRUE(sample.analyse());
    expectPairs(sample, unsorted);
    EXPECT_FALSE(sample.isSorted());
    EXPECT_EQ(sample.getResult().n, 0u) << "the univariate record is not used";
}

TEST(BasicXyStatistics, sameFiguresAsANaiveComputation)
{
    std::mt19937_64 random(20211);
    const double special[] = {NaN, infinity, -infinity, 0.0, -0.0, 1e308, -1e-308, 5e-324};
    for (int repeat = 0; repeat < 500; ++repeat) {
        SCOPED_TRACE(repeat);
        const double scale = std::pow(10.0, double(random() % 13) - 6.0);
        std::normal_distribution<double> x(double(random() % 7) * scale, scale), y(-1.0, 1.0 / scale);
        Pairs pairs;
        for (auto n = 2 + random() % 60; n > 0; --n) pairs.push_back({x(random), y(random)});
        if (repeat % 10 == 9) pairs[random() % pairs.size()].x = special[random() % 8];
        if (repeat % 10 == 8) pairs[random() % pairs.size()].y = special[random() % 8];
        BasicXyStatistics sample = holding<BasicXyStatistics>(pairs);
        ASSERT_TRUE(sample.analyse());
        const xy_stat expected = naiveStatistics(pairs);
        expectSameStatistics(sample.getXyResult(), expected);
        EXPECT_SAME_BITS(sample.getXyResult().covariance, expected.sumProducts / (double(pairs.size()) - 1.0));
    }
}

TEST(BasicXyStatistics, resetResultLeavesTheCovariance)
{
    BasicXyStatistics sample = holding<BasicXyStatistics>(wq_test::ordinaryPairs);
    ASSERT_TRUE(sample.analyse());
    const double covariance = 254.5 / 9.0;
    EXPECT_SAME_BITS(sample.getXyResult().covariance, covariance);
    sample.resetResult();
    expectReset(sample.getXyResult());
    EXPECT_SAME_BITS(sample.getXyResult().covariance, covariance);

    sample.setHead(0.9);
    EXPECT_FALSE(sample.analyse()) << "one pair";
    expectReset(sample.getXyResult());
    EXPECT_SAME_BITS(sample.getXyResult().covariance, covariance) << "of the analysis before";

    sample.setHead(0.8);
    EXPECT_TRUE(sample.analyse()) << "two pairs";
    EXPECT_SAME_BITS(sample.getXyResult().covariance, 2.75) << "1/2 * 11/4 * 2 / (2 - 1)";
}

// ---------------------------------------------------------------- what an analysis calls

TEST(BasicXyStatistics, analyseReadsEveryPairTwiceThroughTheVirtualOperation)
{
    Recorded<BasicXyStatistics> sample = holding<Recorded<BasicXyStatistics>>(five);
    sample.calls.clear();
    EXPECT_TRUE(sample.analyse());
    EXPECT_EQ(sample.calls, callsOfPasses({"reset"}, 0, 4));

    sample.setHead(0.2);
    sample.setTail(0.2);
    sample.calls.clear();
    EXPECT_TRUE(sample.analyse());
    EXPECT_EQ(sample.calls, callsOfPasses({"reset"}, 1, 3));

    sample.setHead(0.8);
    sample.setTail(0.0);
    sample.calls.clear();
    EXPECT_FALSE(sample.analyse());
    EXPECT_EQ(sample.calls, Calls{"reset"}) << "one pair: nothing is read";

    BasicStatistics& root = sample;
    sample.setHead(0.0);
    sample.calls.clear();
    EXPECT_TRUE(root.analyse());
    EXPECT_EQ(sample.calls, callsOfPasses({"reset"}, 0, 4));
}

TEST(BasicXyStatistics, whatGetDataPairGivesIsWhatIsAnalysedListedAndExported)
{
    Recorded<BasicXyStatistics> sample = holding<Recorded<BasicXyStatistics>>(five);
    sample.change = [](data_pair pair) { return data_pair{-pair.x, pair.y / 8}; };
    EXPECT_TRUE(sample.analyse());
    expectSameStatistics(sample.getXyResult(), naiveStatistics({{-1, 1.25}, {-2, 2.5}, {-3, 3.75}, {-4, 5}, {-5, 6.25}}));
    EXPECT_EQ(listing(sample, 1, 2), "X Y\n-2 2.5\n-3 3.75\n\n");
    EXPECT_EQ(exported(sample, "c"), "# c\nX\tY\n-1.000000\t1.250000\n-2.000000\t2.500000\n-3.000000\t3.750000\n-4.000000\t5.000000\n"
                                     "-5.000000\t6.250000\n");
    sample.calls.clear();
    EXPECT_NEAR(sample.geometricMean(1, 2), std::sqrt(2.5 * 3.75), 1e-15);
    EXPECT_EQ(sample.calls, callsOfPasses({}, 1, 2, 1));
}

TEST(BasicXyStatistics, drivenThroughTheRoot)
{
    const TempFolder folder;
    BasicXyStatistics sample;
    BasicStatistics& root = sample;
    root.initDataList(10);
    ASSERT_TRUE(root.readDataFile(folder.write("pairs.txt", "1;10\n2;20\n3;30\n4;40\n5;50\n")));
    EXPECT_EQ(sample.getDataFile(), folder.path("pairs.txt"));
    EXPECT_EQ(sample.getSampleSize(), 5u);
    EXPECT_TRUE(root.analyse());
    EXPECT_EQ(sample.getXyResult().x.sum, 15.0);
    EXPECT_EQ(report(root).substr(0, 19), "BASIC XY STATISTICS");
    EXPECT_EQ(exported(root, "c").substr(0, 8), "# c\nX\tY\n");
    EXPECT_NEAR(root.geometricMean(0, 1), std::sqrt(200.0), 1e-14);
    root.resetResult();
    expectReset(sample.getXyResult());

    // the listing is not virtual in the root: there it is the univariate one, of a sample that is empty
    EXPECT_EQ(printed([&] { EXPECT_EQ(printedToError([&] { root.listData(0, 4); }), "No data\n"); }), "");
    EXPECT_EQ(listing(sample, 0, 0), "X Y\n1 10\n\n");
    EXPECT_FALSE(root.acceptH0()) << "that of the univariate sample too";
}

TEST(BasicXyStatistics, listDataIsVirtualFromHereOn)
{
    class Silent : public BasicXyStatistics {
    public:
        void listData(std::size_t start, std::size_t end) override { asked = {start, end}; }
        std::vector<std::size_t> asked;
    };
    Silent sample;
    BasicXyStatistics& base = sample;
    base.listData(3, 5);
    EXPECT_THAT(sample.asked, ElementsAre(3, 5));
}

// ---------------------------------------------------------------- geometric mean of y

TEST(BasicXyStatistics, geometricMean)
{
    const struct {
        const char* shows;
        std::vector<double> ys;
        std::size_t start, end;
        double mean;
        bool negative;
    } rows[] = {
        {"zeros count, but add nothing", {0, 4}, 0, 1, 2.0, false},
        {"all", {1, 2, 4}, 0, 2, 2.0, false},
        {"a part", {1, 2, 4}, 1, 2, 2.8284271247461903, false},
        {"the end past the sample", {1, 2, 4}, 0, 1000, 2.0, false},
        {"the end at the count", {1, 2, 4}, 0, 3, 2.0, false},
        {"a NaN is skipped", {1, NaN, 2, 4}, 0, 3, 2.0, false},
        {"a negative value", {1, -2, 4}, 0, 2, 0.0, true},
        {"a negative value out of the range", {1, -2, 4, 4}, 2, 3, 4.0, false},
        {"minus infinity", {1, -infinity}, 0, 1, 0.0, true},
        {"minus zero is not negative", {-0.0, 9}, 0, 1, 3.0, false},
        {"only zeros", {0, 0}, 0, 1, 1.0, false},
        {"infinity", {1, infinity}, 0, 1, infinity, false},
        {"only NaN", {NaN, NaN}, 0, 1, NaN, false},
        {"no value", {1, 2}, 1, 0, NaN, false},
        {"no pair", {}, 0, 0, NaN, false},
    };
    for (const auto& row : rows) {
        BasicXyStatistics sample;
        for (const double y : row.ys) sample.add(-5.0, y);
        const double mean = sample.geometricMean(row.start, row.end);
        if (std::isfinite(row.mean)) {
            EXPECT_NEAR(mean, row.mean, 4e-16 * row.mean) << row.shows;
        } else {
            EXPECT_SAME_BITS(mean, row.mean) << row.shows;
        }
        EXPECT_EQ(sample.isNegative(), row.negative) << row.shows;
    }
}

TEST(BasicXyStatistics, geometricMeanStopsAtANegativeValue)
{
    Recorded<BasicXyStatistics> sample = holding<Recorded<BasicXyStatistics>>({{1, 2}, {1, -2}, {1, 2}});
    sample.calls.clear();
    EXPECT_SAME_BITS(sample.geometricMean(0, 2), 0.0);
    EXPECT_THAT(sample.calls, ElementsAre("pair 0", "pair 1"));
    EXPECT_NEAR(sample.geometricMean(2, 2), 2.0, 1e-15);
    EXPECT_TRUE(sample.isNegative()) << "only the host clears it";
}

// ---------------------------------------------------------------- data files

TEST(BasicXyStatistics, readDataFile)
{
    const struct {
        const char* shows;
        std::string content;
        Pairs pairs;
        const char* comment = "";
    } rows[] = {
        {"a semicolon", "1.5;2\n", {{1.5, 2}}},
        {"a bar", "1.5|2\n", {{1.5, 2}}},
        {"a colon", "1.5:2\n", {{1.5, 2}}},
        {"a blank separates nothing", "1.5 2\n", {{1.5, 0}}},
        {"a tab neither", "1.5\t2\n", {{1.5, 0}}},
        {"without y", "7\n8;\n", {{7, 0}, {8, 0}}},
        {"an x that is no number", "abc;2\n", {{0, 2}}},
        {"an x too large", "1e999;2\n", {{infinity, 2}}},
        {"what follows a number", "1kg;2e1m\n", {{1, 20}}},
        {"further fields", "1;2;3|x\n", {{1, 2}}},
        {"runs of delimiters, at both ends too", ":;1||2;;\n", {{1, 2}}},
        {"lines of delimiters only", "1;2\n;:|\n3;4\n", {{1, 2}, {3, 4}}},
        {"empty lines", "\n1;2\n\n\n3;4\n\n", {{1, 2}, {3, 4}}},
        {"a line of blanks is a pair", "   \n", {{0, 0}}},
        {"a carriage return alone too", "1;2\r\n\r\n", {{1, 2}, {0, 0}}},
        {"no line end at the end", "1;2\n3;4", {{1, 2}, {3, 4}}},
        {"nothing", "", {}},
        {"a comment", "# run 3\n1;2\n", {{1, 2}}, " run 3"},
        {"a comment replaces the one before", "# a\n1;2\n# b\n", {{1, 2}}, " b"},
        {"anywhere in a line", "1;2 # so #3\n3;4\n", {{3, 4}}, "1;2  so 3"},
        {"an empty comment", "# a\n#\n", {}, ""},
        {"the end of the data", "1;2\n<<\n3;4\n# never\n", {{1, 2}}},
        {"and what follows on that line", "1;2\n<<;5\n3;4\n", {{1, 2}}},
        {"only at the start of a line", "1;2\n <<;5\n3;4\n", {{1, 2}, {0, 5}, {3, 4}}},
        {"a comment goes before it", "<< # a\n3;4\n", {{3, 4}}, "<<  a"},
        {"254 characters are a whole line", std::string(251, '0') + "1;2\n3;4\n", {{1, 2}, {3, 4}}},
        {"a longer line is cut there and is the last", std::string(251, '0') + "1;23\n3;4\n", {{1, 2}}},
        // clang-format off
        {"a zero byte ends the text of a line", std::string("1;2\0" "3\n4;5\n", 10), {{1, 2}, {4, 5}}},
        // clang-format on
        {"infinity and NaN", "-inf;nan\n", {{-infinity, NaN}}},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        BasicXyStatistics sample;
        EXPECT_TRUE(sample.readDataFile(folder.write("pairs.txt", row.content)));
        expectPairs(sample, row.pairs);
        EXPECT_EQ(sample.getComment(), row.comment);
    }
}

TEST(BasicXyStatistics, aFieldYThatIsNoNumberThrows)
{
    const struct {
        const char* line;
        bool tooLarge;
    } rows[] = {{"3;y", false}, {"3;-", false}, {"3; ", false}, {"3;\r", false}, {"3;1e999", true}, {"3;-1e999", true}};
    const TempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        BasicXyStatistics sample;
        const std::string path = folder.write("pairs.txt", std::string("1;2\n") + row.line + "\n5;6\n");
        if (row.tooLarge) {
            EXPECT_THROW(sample.readDataFile(path), std::out_of_range);
        } else {
            EXPECT_THROW(sample.readDataFile(path), std::invalid_argument);
        }
        expectPairs(sample, {{1, 2}});
    }
}

TEST(BasicXyStatistics, everyClassReadsPairs)
{
    const TempFolder folder;
    const std::string path = folder.write("pairs.txt", "1;2\n3|4\n# c\n5:6\n");
    const std::string other = folder.write("other.txt", "7;8\n");
    forEveryPairedClass([&](auto& object) {
        EXPECT_TRUE(object.readDataFile(path));
        EXPECT_THAT(object.calls, ElementsAre("read"));
        EXPECT_EQ(object.getDataFile(), path);
        EXPECT_EQ(object.getComment(), " c");
        expectPairs(object, {{1, 2}, {3, 4}, {5, 6}});
        EXPECT_EQ(object.getDataEnd(), 2u);

        BasicStatistics& root = object;
        object.calls.clear();
        EXPECT_TRUE(root.readDataFile(other)) << "what is held stays in front";
        EXPECT_THAT(object.calls, ElementsAre("read"));
        root.setDataFile(path);
        EXPECT_TRUE(root.readDataFile());
        expectPairs(object, {{1, 2}, {3, 4}, {5, 6}, {7, 8}, {1, 2}, {3, 4}, {5, 6}});

        EXPECT_FALSE(root.readDataFile(folder.path("missing.txt")));
        EXPECT_FALSE(root.readDataFile(folder.path(""))) << "a folder cannot be opened";
        EXPECT_EQ(object.getSampleSize(), 7u);
    });
}

TEST(BasicXyStatistics, aCommentLineReplacesWhatTheHostSet)
{
    const TempFolder folder;
    BasicXyStatistics sample;
    sample.setComment("the host's");
    EXPECT_TRUE(sample.readDataFile(folder.write("plain.txt", "1;2\n")));
    EXPECT_EQ(sample.getComment(), "the host's");
    EXPECT_TRUE(sample.readDataFile(folder.write("commented.txt", "#the file's\n")));
    EXPECT_EQ(sample.getComment(), "the file's");
    sample.setComment(", and more");
    EXPECT_EQ(sample.getComment(), "the file's, and more");
}

// ---------------------------------------------------------------- golden texts, tests/reference/make_golden_paired.py

TEST(BasicXyStatistics, goldenTexts)
{
    const struct {
        const char* name;
        Pairs pairs;
        std::string outputs = "report listing export";
        const char* comment = "";
        const char* exportComment = "";
        double head = 0.0, tail = 0.0;
        std::vector<std::string> columns = {};
        bool analysed = true;
        std::size_t from = 0, to = 1000;
    } rows[] = {
        {"ordinary", wq_test::ordinaryPairs, "report listing export", "Ten pairs", "Ten pairs"},
        {"negative", {{-1, -5}, {-2.5, -4}, {-3, 0.5}, {-8, -16}}, "report listing export", "x below 0"},
        {"two_identical", {{1.5, 2}, {1.5, 2}}},
        {"one_pair", {{1.5, 2}}, "report listing export", "", "not analysed"},
        {"new_object", {}, "report listing export", "", "", 0.0, 0.0, {}, false},
        {"empty", {}},
        {"not_analysed", wq_test::ordinaryPairs, "report listing export", "", "two lines\nof comment\n", 0.0, 0.0, {}, false},
        {"trimmed", wq_test::ordinaryPairs, "report listing export", "Trimmed", "without both ends", 0.15, 0.29},
        {"all_trimmed_away", wq_test::ordinaryPairs, "report listing export", "", "", 0.9, 0.9},
        {"huge_and_tiny", {{1e300, 1e-300}, {-1e6, 999999.5}, {1234567, 0.0001}, {0.00001234567, -0.0}}},
        {"nan_and_infinite", {{3, NaN}, {NaN, 1}, {infinity, 2}, {2, -infinity}}},
        {"nan", {{3, 1}, {NaN, 2}, {5, 4}}, "report"},
        {"listing_part", five, "listing", "", "", 0.0, 0.0, {}, false, 1, 2},
        {"listing_up_to_the_count", five, "listing", "", "", 0.0, 0.0, {}, false, 3, 5},
        {"listing_backwards", five, "listing", "", "", 0.0, 0.0, {}, false, 3, 1},
        {"columns_named", five, "listing export", "", "", 0.0, 0.0, {"length [mm]", "mass"}},
        {"columns_unnamed", five, "listing export", "", "", 0.0, 0.0, {"", ""}},
        {"columns_quoted", five, "export", "", "", 0.0, 0.0, {"a \"b\"", "c\td#"}},
        {"columns_split", five, "listing export", "", "", 0.0, 0.0, {"a|b", "c"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string name = "pairs_" + std::string(row.name);
        const auto has = [&](const char* output) { return row.outputs.find(output) != std::string::npos; };
        BasicXyStatistics sample = holding<BasicXyStatistics>(row.pairs);
        sample.setComment(row.comment);
        sample.setHead(row.head);
        sample.setTail(row.tail);
        if (!row.columns.empty()) {
            sample.clearColumnNames();
            for (const std::string& column : row.columns) sample.addColumnName(column);
        }
        if (row.analysed) sample.analyse();
        if (has("report")) {
            EXPECT_EQ(report(sample), golden(name + "_report.txt"));
        }
        if (has("listing")) {
            EXPECT_EQ(listing(sample, row.from, row.to), golden(name + "_listing.txt"));
        }
        if (has("export")) {
            EXPECT_EQ(exported(sample, row.exportComment), golden(name + "_export.txt"));
        }
    }
}

TEST(BasicXyStatistics, goldenTextsOfAFile)
{
    BasicXyStatistics sample = wq_test::readFrom<BasicXyStatistics>(wq_test::shipped("nist_norris.txt"));
    ASSERT_TRUE(sample.analyse());
    EXPECT_EQ(report(sample), golden("pairs_norris_report.txt"));
    EXPECT_EQ(listing(sample, 0, 1000), golden("pairs_norris_listing.txt"));
    EXPECT_EQ(exported(sample, "Norris"), golden("pairs_norris_export.txt"));
}

TEST(BasicXyStatistics, missingColumnNames)
{
    BasicXyStatistics sample = holding<BasicXyStatistics>({{1, 2}});
    sample.clearColumnNames();
    EXPECT_EQ(listing(sample, 0, 0), " \n1 2\n\n");
    EXPECT_EQ(exported(sample, "c"), "# c\n\t\n1.000000\t2.000000\n");
    sample.addColumnName("only");
    EXPECT_EQ(listing(sample, 0, 0), "only \n1 2\n\n");
    EXPECT_EQ(exported(sample, "c"), "# c\nonly\t\n1.000000\t2.000000\n");
}

TEST(BasicXyStatistics, theListingEndsAtTheSmallerOfSizeAndList)
{
    const struct {
        const char* shows;
        std::size_t size, start, end;
        const char* rows;
    } rows[] = {
        {"the last pair", 5, 4, 4, "5 50\n"},
        {"past the last pair", 5, 5, 5, ""},
        {"far past the last pair", 5, 1000, wrapped, ""},
        {"up to the largest index", 5, 3, wrapped, "4 40\n5 50\n"},
        {"a size too large", 100, 3, 99, "4 40\n5 50\n"},
        {"a size too small: the count is an index that is listed", 2, 0, 99, "1 10\n2 20\n3 30\n"},
        {"a size of 0", 0, 0, 99, "1 10\n"},
    };
    for (const auto& row : rows) {
        BasicXyStatistics sample = holding<BasicXyStatistics>(five);
        sample.setSampleSize(row.size);
        EXPECT_EQ(listing(sample, row.start, row.end), "X Y\n" + std::string(row.rows) + "\n") << row.shows;
    }
}

TEST(BasicXyStatistics, theExportIsThatOfTheRange)
{
    const struct {
        const char* shows;
        std::size_t start, end;
        const char* rows;
    } rows[] = {
        {"two pairs", 1, 2, "2.000000\t20.000000\n3.000000\t30.000000\n"},
        {"one pair", 4, 4, "5.000000\t50.000000\n"},
        {"the end past the list", 4, 5, "5.000000\t50.000000\n"},
        {"the largest end", 4, wrapped, "5.000000\t50.000000\n"},
        {"the end before the start", 3, 1, ""},
        {"the start past the list", 5, 7, ""},
    };
    for (const auto& row : rows) {
        BasicXyStatistics sample = holding<BasicXyStatistics>(five);
        sample.setDataStart(row.start);
        sample.setDataEnd(row.end);
        EXPECT_EQ(exported(sample, "c"), "# c\nX\tY\n" + std::string(row.rows)) << row.shows;
        EXPECT_EQ(sample.getDataStart(), row.start) << row.shows;
        EXPECT_EQ(sample.getDataEnd(), row.end) << row.shows;
    }
}

TEST(BasicXyStatistics, everyClassListsAndExportsAlike)
{
    forEveryPairedClass([&](auto& object) {
        object.copyFrom(five);
        EXPECT_EQ(listing(object, 0, 1000), "X Y\n1 10\n2 20\n3 30\n4 40\n5 50\n\n");
        EXPECT_EQ(exported(object, "").substr(0, 30), "#\nX\tY\n1.000000\t10.000000\n2.000");
    });
}

TEST(BasicXyStatistics, anExportThatCannotBeOpened)
{
    const TempFolder folder;
    BasicXyStatistics sample = holding<BasicXyStatistics>(five);
    EXPECT_FALSE(sample.exportToR(folder.path("missing/export.txt"), "c"));
    EXPECT_FALSE(sample.exportToR(folder.path(""), "c")) << "a folder";
    EXPECT_TRUE(sample.exportToR(folder.write("export.txt", "what was there before\n"), "c"));
    EXPECT_EQ(wq_test::contentOf(folder.path("export.txt")).substr(0, 8), "# c\nX\tY\n") << "an existing file is replaced";
}

TEST(BasicXyStatistics, outputsDoNotChangeTheObject)
{
    BasicXyStatistics sample = holding<BasicXyStatistics>(wq_test::ordinaryPairs);
    ASSERT_TRUE(sample.analyse());
    const std::string once = report(sample) + listing(sample, 0, 1000) + exported(sample, "c");
    EXPECT_EQ(report(sample) + listing(sample, 0, 1000) + exported(sample, "c"), once);
}
