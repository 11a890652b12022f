// One sample: settings, statistics, analysis, report, listing, R export.
#include <wq_stat/basic_stat.h>
#include <wq_stat/distributions.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
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
using wq_test::printedToError;
using wq_test::shipped;
using wq_test::TempFolder;

namespace {

using Values = std::vector<double>;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::size_t largestCount = std::numeric_limits<std::size_t>::max();
constexpr bool wideCounts = sizeof(std::size_t) == 8;  // what lies beyond 2^32 is another matter where a count has 32 bits
constexpr double resetMinimum = 1.7976931348623157e308;
constexpr double resetMaximum = 2.2250738585072014e-308;

const Values ordinary = {4.5, 2.25, 8, 3.125, 6, 5.5, 7.75, 1.5, 9, 3};

Values twentyFive()
{
    Values values;
    for (int i = 0; i < 25; ++i) values.push_back(7 * i % 25 + 0.5);
    return values;
}

Values zeroTo(int last)
{
    Values values;
    for (int i = 0; i <= last; ++i) values.push_back(i);
    return values;
}

BasicStatistics loaded(const Values& values)
{
    BasicStatistics sample;
    sample.copyFrom(values);
    return sample;
}

BasicStatistics analysed(const Values& values)
{
    BasicStatistics sample = loaded(values);
    EXPECT_TRUE(sample.analyse());
    return sample;
}

Values stored(const BasicStatistics& sample, std::size_t n)
{
    Values values;
    for (std::size_t i = 0; i < n; ++i) values.push_back(sample.getDataPoint(i));
    return values;
}

std::string report(BasicStatistics& sample)
{
    return printed([&] { sample.reportConsole(); });
}

std::string listing(BasicStatistics& sample, std::size_t from, std::size_t to)
{
    return printed([&] { sample.listData(from, to); });
}

std::string exported(BasicStatistics& sample, const std::string& comment)
{
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    EXPECT_TRUE(sample.exportToR(path, comment));
    return wq_test::contentOf(path);
}

void expectSameRecord(const basic_stat& a, const basic_stat& b)
{
    EXPECT_EQ(a.n, b.n);
    EXPECT_SAME_BITS(a.min, b.min);
    EXPECT_SAME_BITS(a.max, b.max);
    EXPECT_SAME_BITS(a.mean, b.mean);
    EXPECT_SAME_BITS(a.geoMean, b.geoMean);
    EXPECT_SAME_BITS(a.harmMean, b.harmMean);
    EXPECT_SAME_BITS(a.median, b.median);
    EXPECT_SAME_BITS(a.quartile1, b.quartile1);
    EXPECT_SAME_BITS(a.quartile3, b.quartile3);
    EXPECT_SAME_BITS(a.sum, b.sum);
    EXPECT_SAME_BITS(a.variance, b.variance);
    EXPECT_SAME_BITS(a.sampleVariance, b.sampleVariance);
    EXPECT_SAME_BITS(a.stdev, b.stdev);
    EXPECT_SAME_BITS(a.sampleStdev, b.sampleStdev);
    EXPECT_SAME_BITS(a.stdError, b.stdError);
    EXPECT_SAME_BITS(a.cv, b.cv);
    EXPECT_SAME_BITS(a.sumOfSquares, b.sumOfSquares);
    EXPECT_SAME_BITS(a.confidenceLimits.getLower(), b.confidenceLimits.getLower());
    EXPECT_SAME_BITS(a.confidenceLimits.getUpper(), b.confidenceLimits.getUpper());
}

basic_stat resetRecord()
{
    basic_stat record;
    record.min = resetMinimum;
    record.max = resetMaximum;
    return record;
}

// The analysis once more, straight from the definitions in a fixed order of sums; only for finite samples without trimming.
basic_stat naive(Values values, double significance)
{
    std::stable_sort(values.begin(), values.end());
    basic_stat r = resetRecord();
    for (const double x : values) {
        r.min = std::min(r.min, x);
        r.max = std::max(r.max, x);
        r.sum += x;
    }
    r.n = values.size();
    const double n = static_cast<double>(r.n);
    r.mean = r.sum / n;
    double logs = 0.0, positive = 0.0, reciprocals = 0.0, finite = 0.0;
    for (const double x : values) {
        const double d = x - r.mean;
        r.sumOfSquares += d * d;
        if (x > 0.0) logs += std::log(x), positive += 1.0;
        if (std::isfinite(1.0 / x)) reciprocals += 1.0 / x, finite += 1.0;
    }
    r.variance = r.sumOfSquares / n;
    r.sampleVariance = r.sumOfSquares / (n - 1.0);
    r.stdev = r.variance > 0.0 ? std::sqrt(r.variance) : NaN;
    r.sampleStdev = r.sampleVariance > 0.0 ? std::sqrt(r.sampleVariance) : NaN;
    r.stdError = r.sampleVariance > 0.0 ? std::sqrt(r.sampleVariance / n) : NaN;
    r.cv = r.sampleStdev > 0.0 ? r.sampleStdev / r.mean : 0.0;
    r.confidenceLimits.setRange(r.mean - t_PercentPoint(significance, r.n - 1) * r.stdError,
                                r.mean + t_PercentPoint(significance, r.n - 1) * r.stdError);
    r.geoMean = std::exp(logs * (1.0 / positive));
    r.harmMean = finite / reciprocals;
    const std::size_t half = r.n / 2;
    r.quartile1 = values[r.n / 4];
    r.quartile3 = values[3 * r.n / 4];
    r.median = r.n % 2 == 0 ? (values[half] + values[half - 1]) / 2.0 : values[half];
    return r;
}

}  // namespace

// ---------------------------------------------------------------- settings

TEST(BasicStatistics, newObject)
{
    BasicStatistics sample;
    expectSameRecord(sample.getResult(), resetRecord());
    EXPECT_EQ(sample.getResult().significance, 0.0);
    EXPECT_EQ(sample.getHypothesisInfo(), "");
}

TEST(BasicStatistics, settersCheckNothing)
{
    BasicStatistics sample;
    for (const double x : {0.25, -3.0, 7.5, infinity, NaN}) {
        sample.setHead(x);
        EXPECT_SAME_BITS(sample.getHead(), x);
        sample.setTail(x);
        EXPECT_SAME_BITS(sample.getTail(), x);
        sample.setSignificance(x);
        EXPECT_SAME_BITS(sample.getSignificance(), x);
        EXPECT_SAME_BITS(sample.getConfidence(), 1.0 - x);
        sample.setNullHypothesis(x);
        EXPECT_SAME_BITS(sample.getNullHypothesis(), x);
    }
    for (const std::size_t n : {std::size_t{0}, std::size_t{7}, largestCount}) {
        sample.setSampleSize(n);
        EXPECT_EQ(sample.getSampleSize(), n);
        sample.setDataStart(n);
        EXPECT_EQ(sample.getDataStart(), n);
        sample.setDataEnd(n);
        EXPECT_EQ(sample.getDataEnd(), n);
    }
    for (const bool on : {true, false}) {
        sample.setNegative(on);
        EXPECT_EQ(sample.isNegative(), on);
        sample.setSorted(on);
        EXPECT_EQ(sample.isSorted(), on);
    }
}

TEST(BasicStatistics, onlyTheCommentAppends)
{
    BasicStatistics sample;
    for (const char* text : {"one", "", " two\n"}) {
        sample.setComment(text);
        sample.setDataFile(text);
        sample.setHypothesisInfo(text);
    }
    EXPECT_EQ(sample.getComment(), "one two\n");
    EXPECT_EQ(sample.getDataFile(), " two\n");
    EXPECT_EQ(sample.getHypothesisInfo(), " two\n");
}

TEST(BasicStatistics, columnNames)
{
    BasicStatistics sample;
    sample.addColumnName("length");
    EXPECT_EQ(sample.getColumnName(0), "DATA");
    EXPECT_EQ(sample.getColumnName(1), "length");
    sample.clearColumnNames();
    sample.addColumnName("width");
    EXPECT_EQ(sample.getColumnName(0), "width");
}

TEST(BasicStatistics, dataRangeHoldsTwoLimits)
{
    DataRange<double> range;
    range.setLower(-1.5);
    range.setUpper(2.5);
    EXPECT_EQ(range.getLower(), -1.5);
    EXPECT_EQ(range.getUpper(), 2.5);
    range.setRange(7, 3);  // in any order
    EXPECT_EQ(range.getLower(), 7.0);
    EXPECT_EQ(range.getUpper(), 3.0);
}

// ---------------------------------------------------------------- filling the sample

TEST(BasicStatistics, addSetsTheEndOnePastTheLastIndex)
{
    BasicStatistics sample;
    for (std::size_t n = 1; n <= 4; ++n) {
        sample.setSorted(true);
        EXPECT_TRUE(sample.add(10.0 - static_cast<double>(n)));
        EXPECT_EQ(sample.getSampleSize(), n);
        EXPECT_EQ(sample.getDataEnd(), n);
        EXPECT_EQ(sample.getDataStart(), 0u);
        EXPECT_FALSE(sample.isSorted());
    }
    EXPECT_EQ(stored(sample, 4), (Values{9, 8, 7, 6}));
}

TEST(BasicStatistics, copyFromAppends)
{
    BasicStatistics sample;
    EXPECT_EQ(sample.copyFrom({5, 4, 3, 2, 1}), 5u);
    EXPECT_EQ(sample.copyFrom({6, 7, 8, 9, 10}), 10u);
    EXPECT_EQ(sample.getSampleSize(), 10u);
    EXPECT_EQ(sample.getDataEnd(), 10u);
    EXPECT_EQ(stored(sample, 10), (Values{5, 4, 3, 2, 1, 6, 7, 8, 9, 10}));
    EXPECT_EQ(sample.copyFrom({}), 10u);
}

TEST(BasicStatistics, copyFromReservesThroughTheVirtualOperation)
{
    class Counting : public BasicStatistics {
    public:
        void initDataList(std::size_t n) override
        {
            asked.push_back(n);
            BasicStatistics::initDataList(n);
        }
        std::vector<std::size_t> asked;
    };
    Counting sample;
    sample.copyFrom({1, 2, 3});
    sample.copyFrom({});
    EXPECT_EQ(sample.asked, (std::vector<std::size_t>{3, 0}));
}

TEST(BasicStatistics, initDataListChangesNoObservation)
{
    BasicStatistics sample = loaded({3, 1, 2});
    sample.initDataList(1000);
    EXPECT_EQ(sample.getSampleSize(), 3u);
    EXPECT_EQ(sample.getDataEnd(), 3u);
    EXPECT_EQ(stored(sample, 3), (Values{3, 1, 2}));
}

// ---------------------------------------------------------------- single statistics

TEST(BasicStatistics, standardErrorAndDeviation)
{
    const BasicStatistics sample;
    const struct {
        int line;
        double variance;
        std::size_t n;
        double error, deviation;
    } rows[] = {
        // clang-format off
        {__LINE__, 36, 9, 2, 6},
        {__LINE__, 2.25, 1, 1.5, 1.5},
        {__LINE__, 4, 0, infinity, 2},
        {__LINE__, 0, 5, NaN, NaN},
        {__LINE__, -0.0, 5, NaN, NaN},
        {__LINE__, -1, 5, NaN, NaN},
        {__LINE__, NaN, 5, NaN, NaN},
        {__LINE__, infinity, 5, infinity, infinity},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        EXPECT_SAME_BITS(sample.standardError(row.variance, row.n), row.error);
        EXPECT_SAME_BITS(sample.standardDeviation(row.variance), row.deviation);
    }
}

TEST(BasicStatistics, coefficientOfVariationIsARatio)
{
    const BasicStatistics sample;
    const struct {
        int line;
        double stdev, mean, cv;
    } rows[] = {
        // clang-format off
        {__LINE__, 1, 4, 0.25},
        {__LINE__, 1, -4, -0.25},
        {__LINE__, 1, 0, infinity},
        {__LINE__, 0, 4, 0},
        {__LINE__, 0, 0, 0},
        {__LINE__, -1, 4, 0},
        {__LINE__, NaN, 4, 0},
        {__LINE__, 1, NaN, NaN},
        // clang-format on
    };
    for (const auto& row : rows)
        for (const std::size_t n : {std::size_t{0}, std::size_t{5}, largestCount})  // n is not used
            EXPECT_SAME_BITS(sample.coefficientOfVariation(row.stdev, row.mean, n), row.cv) << "row of line " << row.line;
}

TEST(BasicStatistics, confidenceIntervalTakesTheUndividedLevel)
{
    BasicStatistics sample;
    for (const double level : {0.05, 0.01, 0.5}) {
        sample.setSignificance(level);
        const double half = t_PercentPoint(level, 8) * 2;  // standard error 2
        EXPECT_SAME_BITS(sample.confidenceInterval(10, 36, 9).getLower(), 10 - half);
        EXPECT_SAME_BITS(sample.confidenceInterval(10, 36, 9).getUpper(), 10 + half);
    }
    EXPECT_TRUE(std::isnan(sample.confidenceInterval(10, 0, 9).getLower()));
    EXPECT_TRUE(std::isnan(sample.confidenceInterval(10, 0, 9).getUpper()));
}

TEST(BasicStatistics, StudentOfMeans)
{
    const BasicStatistics sample;
    EXPECT_SAME_BITS(sample.StudentOfMeans(10, 36, 7, 9), 1.5);
    EXPECT_SAME_BITS(sample.StudentOfMeans(7, 36, 10, 9), -1.5);
    EXPECT_TRUE(std::isnan(sample.StudentOfMeans(10, 0, 7, 9)));
    EXPECT_TRUE(std::isnan(sample.StudentOfMeans(0, 0, 0, 0)));
}

TEST(BasicStatistics, geometricMeanCountsZeros)
{
    const struct {
        const char* shows;
        Values values;
        std::size_t from, to;
        double mean;
        bool negative;
    } rows[] = {
        {"a zero counts and adds nothing", {0, 4, 4}, 0, 2, 2.5198420997897463, false},  // 16^(1/3)
        {"no zero in the range", {0, 4, 4}, 1, 2, 4, false},
        {"only zeros: exp(0)", {0, 0}, 0, 1, 1, false},
        {"a negative value gives 0 at once", {4, -1, 4}, 0, 2, 0, true},
        {"a negative value outside the range", {4, -1}, 0, 0, 4, false},
        {"negative zero is a zero", {-0.0, 9}, 0, 1, 3, false},
        {"NaN is skipped", {2, NaN, 8}, 0, 2, 4, false},
        {"only NaN", {NaN, NaN}, 0, 1, NaN, false},
        {"empty sample", {}, 0, 0, NaN, false},
        {"end beyond the sample", {2, 8}, 0, 1000, 4, false},
        {"largest end", {2, 8}, 0, largestCount, 4, false},
        {"range upside down", {2, 8}, 1, 0, NaN, false},
        {"start beyond the sample", {2, 8}, 5, 9, NaN, false},
        {"one value", {7}, 0, 0, 7, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        BasicStatistics sample = loaded(row.values);
        const double mean = sample.geometricMean(row.from, row.to);
        if (std::isnan(row.mean)) {
            EXPECT_TRUE(std::isnan(mean));
        } else {
            EXPECT_NEAR(mean, row.mean, 1e-14 * row.mean);
        }
        EXPECT_EQ(sample.isNegative(), row.negative);
    }
}

TEST(BasicStatistics, quantilesOfZeroToNine)
{
    const struct {
        int line;
        double p;
        std::size_t q;
        double value;
    } rows[] = {
        {__LINE__, 0, 4, 0},
        {__LINE__, 1, 4, 2},
        {__LINE__, 2, 4, 4.5},  // the mean of two for p/q = 1/2 and an even count only
        {__LINE__, 3, 4, 7},
        {__LINE__, 1, 2, 4.5},
        {__LINE__, 0.5, 1, 4.5},
        {__LINE__, 5, 10, 4.5},
        {__LINE__, 50, 100, 4.5},
        {__LINE__, 1, 3, 3},
        {__LINE__, 2, 3, 6},
        {__LINE__, 2.5, 7, 3},  // 25 / 7
        {__LINE__, 99, 100, 9},
        {__LINE__, 1, 1000000, 0},
        {__LINE__, -0.05, 4, 0},  // truncated toward zero
        {__LINE__, 4, 4, NaN},    // index 10
        {__LINE__, 1, 1, NaN},
        {__LINE__, 5, 4, NaN},
        {__LINE__, -1, 4, NaN},
        {__LINE__, 1, 0, NaN},
        {__LINE__, 0, 0, NaN},
        {__LINE__, NaN, 4, NaN},
        {__LINE__, infinity, 4, NaN},
        {__LINE__, -infinity, 4, NaN},
        {__LINE__, 1e300, 4, NaN},
        {__LINE__, -1e300, 4, NaN},
        {__LINE__, 9e18, 4, NaN},
        {__LINE__, 1, largestCount, NaN},
        {__LINE__, 1, largestCount / 2 + 1, NaN},
        {__LINE__, 4.6e18, largestCount / 2, NaN},
    };
    BasicStatistics sample = analysed({9, 8, 7, 6, 5, 4, 3, 2, 1, 0});
    for (const auto& row : rows) {
        if (row.q > 2147483647 && !wideCounts) continue;
        EXPECT_SAME_BITS(sample.quantile(row.p, row.q), row.value) << "row of line " << row.line;
    }
    EXPECT_SAME_BITS(sample.median(), 4.5);
    EXPECT_SAME_BITS(sample.quartile(1), 2.0);
    EXPECT_SAME_BITS(sample.quartile(3), 7.0);
    EXPECT_TRUE(std::isnan(sample.quartile(4)));
}

TEST(BasicStatistics, medianAndQuartilesByCount)
{
    const struct {
        int last;
        double quartile1, median, quartile3;
    } rows[] = {
        {2, 0, 1, 2}, {3, 1, 1.5, 3}, {4, 1, 2, 3}, {5, 1, 2.5, 4}, {9, 2, 4.5, 7}, {10, 2, 5, 8}, {99, 25, 49.5, 75},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.last);
        const BasicStatistics sample = analysed(zeroTo(row.last));
        EXPECT_SAME_BITS(sample.getResult().quartile1, row.quartile1);
        EXPECT_SAME_BITS(sample.getResult().median, row.median);
        EXPECT_SAME_BITS(sample.getResult().quartile3, row.quartile3);
    }
}

TEST(BasicStatistics, quantilesCountFromTheStartOfTheRange)
{
    BasicStatistics sample = loaded(zeroTo(9));
    sample.setHead(0.2);
    sample.setTail(0.1);  // 2 ... 8
    ASSERT_TRUE(sample.analyse());
    EXPECT_SAME_BITS(sample.quartile(1), 3.0);
    EXPECT_SAME_BITS(sample.median(), 5.0);
    EXPECT_SAME_BITS(sample.quartile(3), 7.0);
    EXPECT_TRUE(std::isnan(sample.quantile(10, 7)));  // index 2 + 10
}

TEST(BasicStatistics, quantilesNeverLeaveTheSample)
{
    BasicStatistics sample = analysed(zeroTo(9));
    for (const std::size_t start : {std::size_t{8}, std::size_t{10}, largestCount / 2}) {
        sample.setDataStart(start);
        EXPECT_TRUE(std::isnan(sample.median())) << start;
    }
    BasicStatistics empty;
    EXPECT_TRUE(std::isnan(empty.median()));
    EXPECT_TRUE(std::isnan(empty.quartile(1)));
}

TEST(BasicStatistics, quantileSortsWhenNecessary)
{
    BasicStatistics sample = analysed({1, 2, 3});
    sample.add(0);
    EXPECT_SAME_BITS(sample.quantile(1, 4), 0.0);  // the count is still 3
    EXPECT_TRUE(sample.isSorted());
    EXPECT_EQ(stored(sample, 4), (Values{0, 1, 2, 3}));
}

TEST(BasicStatistics, resetSetKeepsTheSignificance)
{
    BasicStatistics sample;
    basic_stat record = analysed(ordinary).getResult();
    record.reserved1 = 3.5;
    record.reserved2 = 4.5;
    sample.resetSet(record);
    expectSameRecord(record, resetRecord());
    EXPECT_EQ(record.significance, 0.05);
    EXPECT_EQ(record.reserved1, 3.5);
    EXPECT_EQ(record.reserved2, 0.0);
}

// ---------------------------------------------------------------- sorting and the analysed range

TEST(BasicStatistics, sortDataPutsNaNLast)
{
    BasicStatistics sample = loaded({3, NaN, -infinity, 1, -NaN, infinity, -2, NaN, 0});
    sample.sortData();
    EXPECT_TRUE(sample.isSorted());
    EXPECT_EQ(stored(sample, 6), (Values{-infinity, -2, 0, 1, 3, infinity}));
    for (std::size_t i = 6; i < 9; ++i) EXPECT_TRUE(std::isnan(sample.getDataPoint(i))) << i;
}

TEST(BasicStatistics, sortDataOfManyNaN)  // an order that std::sort could not live with
{
    std::mt19937 engine(7);
    Values values;
    for (int i = 0; i < 5000; ++i) values.push_back(i % 3 == 0 ? NaN : static_cast<double>(engine() % 1000) - 500);
    BasicStatistics sample = loaded(values);
    sample.sortData();
    const Values sorted = stored(sample, values.size());
    const auto firstNaN = std::find_if(sorted.begin(), sorted.end(), [](double x) { return std::isnan(x); });
    EXPECT_EQ(firstNaN - sorted.begin(), 3333);
    EXPECT_TRUE(std::is_sorted(sorted.begin(), firstNaN));
    EXPECT_TRUE(std::all_of(firstNaN, sorted.end(), [](double x) { return std::isnan(x); }));
    Values numbers;
    std::copy_if(values.begin(), values.end(), std::back_inserter(numbers), [](double x) { return !std::isnan(x); });
    std::sort(numbers.begin(), numbers.end());
    EXPECT_TRUE(std::equal(numbers.begin(), numbers.end(), sorted.begin(), firstNaN));
}

TEST(BasicStatistics, analyseTrustsTheSortedFlag)
{
    BasicStatistics sample = loaded({3, 1, 2});
    sample.setSorted(true);
    EXPECT_TRUE(sample.analyse());
    EXPECT_EQ(stored(sample, 3), (Values{3, 1, 2}));
    EXPECT_EQ(sample.getResult().median, 1.0);
}

TEST(BasicStatistics, trimmedRange)
{
    const struct {
        int line;
        std::size_t size;
        double head, tail;
        std::size_t start, end;
    } rows[] = {
        {__LINE__, 10, 0, 0, 0, 9},
        {__LINE__, 10, 0.1, 0.1, 1, 8},
        {__LINE__, 25, 0.1, 0.1, 3, 22},  // the low end rounded up, the high end down
        {__LINE__, 25, 0.5, 0.5, 13, 12},
        {__LINE__, 3, 0.01, 0.01, 1, 2},
        {__LINE__, 10, 1, 1, 10, largestCount},
        {__LINE__, 10, -0.1, -0.1, largestCount, 10},  // tail: 10 - (2^64 - 1) - 1, wrapped
        {__LINE__, 10, -0.05, -0.05, 0, 9},            // -0.5 is truncated, or rounded up, to 0
        {__LINE__, 10, 1e300, 1e300, largestCount, 10},
        {__LINE__, 10, infinity, infinity, largestCount, 10},
        {__LINE__, 10, -infinity, -infinity, largestCount, 10},
        {__LINE__, 10, NaN, NaN, 0, 9},
        {__LINE__, 10, 2, 2, 20, largestCount - 10},
        {__LINE__, 2, 0x1p63, 0x1p63, largestCount, 2},  // 2^64 exactly, one more than the largest count
        {__LINE__, 2, 0x1.fffffffffffffp62, 0.0, largestCount - 2047, 1},
        {__LINE__, 0, 0, 0, 0, largestCount},
        {__LINE__, 0, 0.5, 0.5, 0, largestCount},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        if (row.head == 0x1.fffffffffffffp62 && !wideCounts) continue;
        BasicStatistics sample;
        sample.setSampleSize(row.size);
        sample.setHead(row.head);
        sample.setTail(row.tail);
        sample.setDataRange();
        EXPECT_EQ(sample.getDataStart(), row.start);
        EXPECT_EQ(sample.getDataEnd(), row.end);
    }
}

TEST(BasicStatistics, analyseClampsTheEnd)
{
    const struct {
        int line;
        Values values;
        double head, tail;
        bool result;
        std::size_t start, end, n;
    } rows[] = {
        {__LINE__, zeroTo(9), 0, 0, true, 0, 9, 10},
        {__LINE__, zeroTo(9), 0.1, 0.1, true, 1, 8, 8},
        {__LINE__, zeroTo(24), 0.1, 0.1, true, 3, 22, 20},
        {__LINE__, zeroTo(9), 0, 0.7, true, 0, 2, 3},
        {__LINE__, zeroTo(9), 0, 0.8, false, 0, 1, 0},  // two values are too few
        {__LINE__, zeroTo(9), 0.8, 0, false, 8, 9, 0},
        {__LINE__, zeroTo(9), 0.7, 0, true, 7, 9, 3},
        {__LINE__, zeroTo(9), 0, 1, true, 0, 9, 10},  // an end of 2^64 - 1 is brought back
        {__LINE__, zeroTo(9), 0, -0.1, true, 0, 9, 10},
        {__LINE__, zeroTo(9), NaN, NaN, true, 0, 9, 10},
        {__LINE__, zeroTo(9), 0.9, 0.9, true, 9, 0, 0},  // upside down: the difference wraps, no value lies in the range
        {__LINE__, zeroTo(9), infinity, 0, true, largestCount, 9, 0},
        {__LINE__, zeroTo(9), 1, 0, true, 10, 9, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        BasicStatistics sample = loaded(row.values);
        sample.setHead(row.head);
        sample.setTail(row.tail);
        EXPECT_EQ(sample.analyse(), row.result);
        EXPECT_EQ(sample.getDataStart(), row.start);
        EXPECT_EQ(sample.getDataEnd(), row.end);
        EXPECT_EQ(sample.getResult().n, row.n);
    }
}

TEST(BasicStatistics, emptyRangeGivesNaN)
{
    BasicStatistics sample = loaded(ordinary);
    sample.setHead(0.9);
    sample.setTail(0.9);
    EXPECT_TRUE(sample.analyse());
    const basic_stat& r = sample.getResult();
    for (const double x : {r.mean, r.variance, r.stdev, r.stdError, r.geoMean, r.harmMean, r.confidenceLimits.getLower()})
        EXPECT_TRUE(std::isnan(x));
    EXPECT_EQ(r.cv, 0.0);
    EXPECT_FALSE(sample.acceptH0());
}

// ---------------------------------------------------------------- analysis

TEST(BasicStatistics, tooFewValues)
{
    for (const Values& values : {Values{}, Values{7}, Values{7, -8}}) {
        SCOPED_TRACE(values.size());
        BasicStatistics sample = loaded(values);
        EXPECT_FALSE(sample.analyse());
        expectSameRecord(sample.getResult(), resetRecord());
        EXPECT_FALSE(sample.acceptH0());
    }
}

TEST(BasicStatistics, aFailedAnalysisForgetsTheOneBefore)
{
    BasicStatistics sample = analysed(ordinary);
    sample.setTail(0.8);
    EXPECT_FALSE(sample.analyse());
    expectSameRecord(sample.getResult(), resetRecord());
}

TEST(BasicStatistics, moments)  // 50 digits: tests/reference/basic_stat_50_digits.py
{
    const struct {
        const char* sample;
        Values values;
        double mean, squares, variance, sampleVariance, stdev, sampleStdev, error, cv, geometric, harmonic, lower, upper;
    } rows[] = {
        // clang-format off
        {"one to four", {1, 2, 3, 4},
         2.5, 5.0, 1.25, 1.66666666666666667, 1.11803398874989485, 1.29099444873580563, 0.645497224367902814, 0.516397779494322251,
         2.21336383940064318, 1.92, 0.421477570708116644, 4.57852242929188336},
        {"ordinary", ordinary,
         5.0625, 61.3515625, 6.13515625, 6.81684027777777778, 2.47692475662867079, 2.61090794126828183, 0.825641585542890262,
         0.515734901978919867, 4.38389930959684572, 3.70329924262764104, 3.19327650754140985, 6.93172349245859015},
        {"zeros", {0, 4, 4, 0, 2, 8},
         3.0, 46.0, 7.66666666666666667, 9.2, 2.76887462097269162, 3.03315017762062022, 1.23827837473378066, 1.01105005920687341,
         4.0, 3.55555555555555556, -0.192172106837612917, 6.19217210683761292},
        {"negative values", {-3, 1.5, 4, -0.25, 12, 7},
         3.54166666666666667, 145.052083333333333, 24.1753472222222222, 29.0104166666666667, 4.91684321716914441,
         5.38613188351962532, 2.1988791336597936, 1.5207901788761295, 4.73813722053758679, -1.88059701492537313,
         -2.12684921796639649, 9.21018255129972982},
        {"all negative", {-1, -2, -4, -8, -16},
         -6.2, 148.8, 29.76, 37.2, 5.45527267879434236, 6.09918027279076249, 2.72763633939717118, -0.983738753675929435, NaN,
         -2.58064516129032258, -13.812278203511259, 1.41227820351125903},
        {"large offset", {10000001, 10000003, 10000002},
         10000002.0, 2.0, 0.666666666666666667, 1.0, 0.816496580927726033, 1.0, 0.577350269189625765, 9.9999980000004e-8,
         10000001.9999999667, 10000001.9999999333, 9999999.41440090457, 10000004.5855990954},
        {"wide", {1e-5, 0.25, 3, 1e4, 7e7},
         14002000.650002, 3919719988986726.91, 783943997797345.382, 979929997246681.727, 27998999.9428076963, 31303833.5870653664,
         13999499.9714038482, 2.23566862832997334, 22.0816672244845628, 0.0000499978333772153488, -25067756.1768653172,
         53071757.4768693172},
        {"Cavendish", {5.50, 5.61, 4.88, 5.07, 5.26, 5.55, 5.36, 5.29, 5.58, 5.65, 5.57, 5.53, 5.62, 5.29, 5.44,
                       5.34, 5.79, 5.10, 5.27, 5.39, 5.42, 5.47, 5.63, 5.34, 5.46, 5.30, 5.75, 5.68, 5.85},
         5.4479310344827586, 1.36687586206896591, 0.0471336504161712381, 0.0488169950738916395, 0.217102856766490381,
         0.220945683537587218, 0.0410285834232721391, 0.0405558884903476761, 5.44354494667861303, 5.43909600400363766,
         5.36386296572606668, 5.53199910323945051},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.sample);
        const BasicStatistics sample = analysed(row.values);
        const basic_stat& r = sample.getResult();
        const struct {
            const char* field;
            double value, expected;
        } fields[] = {
            {"mean", r.mean, row.mean},
            {"sumOfSquares", r.sumOfSquares, row.squares},
            {"variance", r.variance, row.variance},
            {"sampleVariance", r.sampleVariance, row.sampleVariance},
            {"stdev", r.stdev, row.stdev},
            {"sampleStdev", r.sampleStdev, row.sampleStdev},
            {"stdError", r.stdError, row.error},
            {"cv", r.cv, row.cv},
            {"geoMean", r.geoMean, row.geometric},
            {"harmMean", r.harmMean, row.harmonic},
            {"lower limit", r.confidenceLimits.getLower(), row.lower},
            {"upper limit", r.confidenceLimits.getUpper(), row.upper},
        };
        for (const auto& field : fields) {
            if (std::isnan(field.expected)) {
                EXPECT_TRUE(std::isnan(field.value)) << field.field;
            } else {
                EXPECT_NEAR(field.value, field.expected, 2e-14 * std::fabs(field.expected)) << field.field;
            }
        }
    }
}

TEST(BasicStatistics, oneToFour)
{
    const BasicStatistics sample = analysed({4, 3, 2, 1});
    const basic_stat& r = sample.getResult();
    EXPECT_EQ(r.n, 4u);
    EXPECT_SAME_BITS(r.min, 1.0);
    EXPECT_SAME_BITS(r.max, 4.0);
    EXPECT_SAME_BITS(r.sum, 10.0);
    EXPECT_SAME_BITS(r.mean, 2.5);
    EXPECT_SAME_BITS(r.median, 2.5);
    EXPECT_SAME_BITS(r.quartile1, 2.0);
    EXPECT_SAME_BITS(r.quartile3, 4.0);
    EXPECT_SAME_BITS(r.sampleVariance, 5.0 / 3.0);
    EXPECT_NEAR(r.harmMean, 1.92, 1e-15);
    EXPECT_SAME_BITS(r.significance, 0.05);
    EXPECT_EQ(stored(sample, 4), (Values{1, 2, 3, 4}));  // the order of input is lost
    EXPECT_EQ(sample.getDataEnd(), 3u);
    EXPECT_FALSE(sample.isNegative());
}

TEST(BasicStatistics, threeEqualValues)
{
    BasicStatistics sample = analysed({2.5, 2.5, 2.5});
    const basic_stat& r = sample.getResult();
    EXPECT_SAME_BITS(r.sumOfSquares, 0.0);
    EXPECT_SAME_BITS(r.variance, 0.0);
    EXPECT_SAME_BITS(r.sampleVariance, 0.0);
    for (const double x : {r.stdev, r.sampleStdev, r.stdError, r.confidenceLimits.getLower(), r.confidenceLimits.getUpper()})
        EXPECT_TRUE(std::isnan(x));
    EXPECT_SAME_BITS(r.cv, 0.0);
    EXPECT_SAME_BITS(r.mean, 2.5);
    EXPECT_FALSE(sample.acceptH0());
    sample.setNullHypothesis(2.5);  // t is 0/NaN: rejected even then
    EXPECT_FALSE(sample.acceptH0());
}

TEST(BasicStatistics, zerosAndNegativeValues)
{
    BasicStatistics zeros = analysed({0, 4, 4});
    EXPECT_NEAR(zeros.getResult().geoMean, 4.0, 1e-15);
    EXPECT_NEAR(zeros.geometricMean(0, 2), 2.5198420997897463, 1e-15);
    EXPECT_SAME_BITS(zeros.getResult().harmMean, 4.0);
    EXPECT_FALSE(zeros.isNegative());

    BasicStatistics minusOne = analysed({-1, 2, 4});
    EXPECT_TRUE(minusOne.isNegative());
    EXPECT_SAME_BITS(minusOne.geometricMean(0, 2), 0.0);
    EXPECT_SAME_BITS(minusOne.getResult().harmMean, 3.0 / -0.25);
    EXPECT_NEAR(minusOne.getResult().geoMean, std::sqrt(8.0), 1e-15);

    const BasicStatistics negative = analysed({-5, -3, -4});
    EXPECT_SAME_BITS(negative.getResult().max, resetMaximum);
    EXPECT_SAME_BITS(negative.getResult().min, -5.0);
    EXPECT_TRUE(std::isnan(negative.getResult().geoMean));

    const BasicStatistics onlyZeros = analysed({0, 0, 0});
    EXPECT_SAME_BITS(onlyZeros.getResult().max, resetMaximum);
    EXPECT_SAME_BITS(onlyZeros.getResult().min, 0.0);
    EXPECT_TRUE(std::isnan(onlyZeros.getResult().harmMean));
    EXPECT_TRUE(std::isnan(onlyZeros.getResult().geoMean));
}

TEST(BasicStatistics, onlyTheHostClearsNegative)
{
    BasicStatistics sample = analysed({-1, 2, 3, 4});
    sample.setHead(0.25);  // the negative value is trimmed away
    EXPECT_TRUE(sample.analyse());
    EXPECT_EQ(sample.getResult().min, 2.0);
    EXPECT_TRUE(sample.isNegative());
    sample.setNegative(false);
    EXPECT_TRUE(sample.analyse());
    EXPECT_FALSE(sample.isNegative());
}

TEST(BasicStatistics, reciprocalsThatOverflowAreLeftOut)
{
    const BasicStatistics sample = analysed({1e-310, 2, 2});
    EXPECT_SAME_BITS(sample.getResult().harmMean, 2.0);
}

TEST(BasicStatistics, sameFiguresAsANaiveComputation)
{
    std::mt19937 engine(20);
    std::uniform_real_distribution<double> real(-50, 100);
    std::uniform_int_distribution<int> thousandths(1, 200);
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(round);
        const std::size_t n = 3 + engine() % (round % 20 == 0 ? 5000 : 60);
        Values values;
        for (std::size_t i = 0; i < n; ++i) {
            switch (round % 4) {
            // clang-format off
            case 0: values.push_back(real(engine)); break;
            case 1: values.push_back(std::floor(real(engine))); break;  // many ties and zeros
            case 2: values.push_back(std::exp(real(engine))); break;
            default: values.push_back(real(engine) * std::pow(10.0, static_cast<int>(engine() % 40) - 20)); break;
                // clang-format on
            }
        }
        BasicStatistics sample = loaded(values);
        sample.setSignificance(0.001 * thousandths(engine));
        ASSERT_TRUE(sample.analyse());
        const basic_stat expected = naive(values, sample.getSignificance());
        expectSameRecord(sample.getResult(), expected);
        EXPECT_EQ(sample.getResult().significance, sample.getSignificance());
        EXPECT_EQ(sample.isNegative(), *std::min_element(values.begin(), values.end()) < 0);
        ASSERT_TRUE(sample.analyse());  // once more, on the sorted sample
        expectSameRecord(sample.getResult(), expected);
    }
}

TEST(BasicStatistics, trimmingIsTheAnalysisOfTheInnerValues)
{
    std::mt19937 engine(21);
    std::uniform_real_distribution<double> real(-50, 100);
    std::uniform_int_distribution<int> percent(0, 29);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        Values values;
        for (std::size_t n = 10 + engine() % 90; n > 0; --n) values.push_back(real(engine));
        BasicStatistics sample = loaded(values);
        sample.setHead(0.01 * percent(engine));
        sample.setTail(0.01 * percent(engine));
        ASSERT_TRUE(sample.analyse());

        std::sort(values.begin(), values.end());
        const double size = static_cast<double>(values.size());
        const auto low = static_cast<std::ptrdiff_t>(std::ceil(sample.getHead() * size));
        const auto high = static_cast<std::ptrdiff_t>(std::floor(sample.getTail() * size));
        expectSameRecord(sample.getResult(), naive({values.begin() + low, values.end() - high}, 0.05));
    }
}

TEST(BasicStatistics, theSizeThatTheHostSetsNeverLeadsOutside)
{
    const struct {
        int line;
        std::size_t size;
        bool result;
        std::size_t n;
    } rows[] = {
        // clang-format off
        {__LINE__, 5, true, 5},
        {__LINE__, 1000, true, 5},
        {__LINE__, largestCount, true, 5},
        {__LINE__, 3, true, 3},
        {__LINE__, 2, false, 0},
        {__LINE__, 1, false, 0},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        BasicStatistics sample = loaded({5, 4, 3, 2, 1});
        sample.setSampleSize(row.size);
        EXPECT_EQ(sample.analyse(), row.result);
        EXPECT_EQ(sample.getResult().n, row.n);
        EXPECT_LE(sample.geometricMean(0, largestCount), 5.0);
        EXPECT_THAT(listing(sample, 0, largestCount), ::testing::StartsWith("DATA\n1.000000\n"));
        EXPECT_THAT(exported(sample, "sizes"), ::testing::StartsWith("# sizes\nDATA\n1.000000000000\n"));
    }
    for (const std::size_t size : {std::size_t{1}, std::size_t{3}, largestCount}) {
        SCOPED_TRACE(size);
        BasicStatistics empty;
        empty.setSampleSize(size);
        EXPECT_FALSE(empty.analyse());
        EXPECT_TRUE(std::isnan(empty.geometricMean(0, size)));
        EXPECT_TRUE(std::isnan(empty.median()));
        EXPECT_EQ(exported(empty, ""), "#\nDATA\n");
    }
}

TEST(BasicStatistics, theRangeThatTheHostSetsIsReplaced)
{
    BasicStatistics sample = loaded(ordinary);
    sample.setDataStart(7);
    sample.setDataEnd(largestCount);
    EXPECT_TRUE(sample.analyse());
    expectSameRecord(sample.getResult(), analysed(ordinary).getResult());
}

TEST(BasicStatistics, analyseResetsThroughTheVirtualOperation)
{
    class Counting : public BasicStatistics {
    public:
        void resetResult() override { ++resets; }
        int resets = 0;
    };
    Counting sample;
    sample.copyFrom({1, 2, 3});
    EXPECT_TRUE(sample.analyse());
    EXPECT_EQ(sample.getResult().n, 3u);
    EXPECT_TRUE(sample.analyse());
    EXPECT_EQ(sample.resets, 2);
    EXPECT_EQ(sample.getResult().n, 6u);  // the record is not reset by any other way
}

// ---------------------------------------------------------------- the decision

TEST(BasicStatistics, theTestHalvesTheLevelAndTheIntervalDoesNot)
{
    // t of `ordinary` (n = 10) lies between t_PercentPoint(0.05, 9) = 2.263958 and t_PercentPoint(0.025, 9) = 2.687: accepted,
    // although mu lies outside of the interval. Expected decisions: |mean - mu| = 1.9 and 2.3 standard errors of 0.8256.
    const struct {
        int line;
        double mu;
        bool inside, accepted;
    } rows[] = {
        // clang-format off
        {__LINE__, 5.0625, true, true},
        {__LINE__, 6.9, true, true},
        {__LINE__, 7.1, false, true},
        {__LINE__, 3.0, false, true},
        {__LINE__, 7.3, false, false},
        {__LINE__, 2.8, false, false},
        {__LINE__, 0, false, false},
        {__LINE__, NaN, false, false},
        {__LINE__, infinity, false, false},
        // clang-format on
    };
    BasicStatistics sample = analysed(ordinary);
    const DataRange<double> limits = sample.getResult().confidenceLimits;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        sample.setNullHypothesis(row.mu);
        EXPECT_EQ(limits.getLower() < row.mu && row.mu < limits.getUpper(), row.inside);
        EXPECT_EQ(sample.acceptH0(), row.accepted);
    }
}

TEST(BasicStatistics, theDecisionUsesTheCurrentLevel)
{
    BasicStatistics sample = analysed(ordinary);
    sample.setNullHypothesis(7.1);  // t = -2.468
    EXPECT_TRUE(sample.acceptH0());
    sample.setSignificance(0.1);  // t_PercentPoint(0.05, 9) = 2.264
    EXPECT_FALSE(sample.acceptH0());
    EXPECT_EQ(sample.getResult().significance, 0.05);
}

TEST(BasicStatistics, anEqualCriticalValueRejects)
{
    // Mean 0 and standard error 1, both exact: t is -mu.
    BasicStatistics sample = analysed({-1, -1, -1, 3});
    ASSERT_EQ(sample.getResult().mean, 0.0);
    ASSERT_EQ(sample.getResult().stdError, 1.0);
    const double critical = t_PercentPoint(0.025, 3);
    sample.setNullHypothesis(critical);
    EXPECT_FALSE(sample.acceptH0());
    sample.setNullHypothesis(std::nextafter(critical, 0.0));
    EXPECT_TRUE(sample.acceptH0());
}

// ---------------------------------------------------------------- whole texts, made by tests/reference/make_golden_one.py

TEST(BasicStatistics, goldenTexts)
{
    const Values fiveDown = {5, 4, 3, 2, 1};
    const auto setRange = [](double head, double tail) {
        return [=](BasicStatistics& sample) {
            sample.setHead(head);
            sample.setTail(tail);
        };
    };
    const auto setColumn = [](const std::string& name) {
        return [=](BasicStatistics& sample) {
            sample.clearColumnNames();
            sample.addColumnName(name);
        };
    };
    const auto set = [](double level, double mu) {
        return [=](BasicStatistics& sample) {
            sample.setSignificance(level);
            sample.setNullHypothesis(mu);
        };
    };
    const auto nothing = [](BasicStatistics&) {};
    struct Row {
        const char* name;
        Values values;
        const char* comment;
        std::function<void(BasicStatistics&)> settings;
        const char* outputs;
        const char* exportComment = "";
        bool analysed = true;
        std::size_t from = 0, to = 1000;
    };
    const Row rows[] = {
        {"ordinary", ordinary, "Ten values", nothing, "rle", "Ten values"},
        {"ordinary_at_01", ordinary, "Ten values", set(0.01, 0), "r"},
        {"ordinary_mu", ordinary, "Ten values", set(0.05, 5), "r"},
        {"between_the_levels", ordinary, "Ten values", set(0.05, 7.1), "r"},
        {"one_to_four", {1, 2, 3, 4}, "", nothing, "rle", "two lines\nof comment\n"},
        {"negative_values", {-3, 1.5, 4, -0.25, 12, 7}, "", nothing, "rle"},
        {"zeros", {0, 4, 4, 0, 2, 8}, "", nothing, "rle"},
        {"only_zeros", {0, 0, 0}, "", nothing, "r"},
        {"all_negative", {-1, -2, -4, -8, -16}, "", nothing, "rle"},
        {"three_equal", {2.5, 2.5, 2.5}, "", nothing, "rle"},
        {"trimmed_10", ordinary, "Trimmed", setRange(0.1, 0.1), "rle", "without both ends"},
        {"trimmed_25", twentyFive(), "Trimmed", setRange(0.1, 0.1), "rle"},
        {"all_trimmed_away", ordinary, "", setRange(0.9, 0.9), "rle"},
        {"huge_and_tiny", {1e300, -1e300, 1e-300, 1e6, 999999.5, 1234567, 0.0001, 0.00001234567}, "", nothing, "rl"},
        {"nan_and_infinite", {3, NaN, 1, infinity, 2, -infinity}, "", nothing, "rle"},
        {"nan", {3, -NaN, 1, 2, 7}, "", nothing, "rle"},  // every NaN prints alike
        {"not_analysed", ordinary, "", nothing, "rle", "", false},
        {"new_object", {}, "", nothing, "re", "", false},
        {"one_value_not_analysed", {2.5}, "", nothing, "rle", "one value", false},
        {"two_values", {1, 2}, "Too few", nothing, "rle"},
        {"listing_part", fiveDown, "", nothing, "l", "", false, 1, 2},
        {"listing_empty_range", fiveDown, "", nothing, "l", "", false, 3, 1},
        {"column_named", fiveDown, "", setColumn("length [mm]"), "le"},
        {"column_unnamed", fiveDown, "", [](BasicStatistics& sample) { sample.clearColumnNames(); }, "le"},
        {"column_quoted", fiveDown, "", setColumn("a \"b\"\tc#"), "e"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        BasicStatistics sample = loaded(row.values);
        sample.setComment(row.comment);
        row.settings(sample);
        if (row.analysed) sample.analyse();
        const std::string name = "basic_" + std::string(row.name);
        const auto wanted = [&](char output) { return std::string(row.outputs).find(output) != std::string::npos; };
        if (wanted('r')) {
            EXPECT_EQ(report(sample), golden(name + "_report.txt"));
        }
        if (wanted('l')) {
            EXPECT_EQ(listing(sample, row.from, row.to), golden(name + "_listing.txt"));
        }
        if (wanted('e')) {
            EXPECT_EQ(exported(sample, row.exportComment), golden(name + "_export.txt"));
        }
    }
}

TEST(BasicStatistics, goldenTextsOfFiles)
{
    for (const std::string name : {"cavendish", "nist_numacc1", "nist_numacc3"}) {
        SCOPED_TRACE(name);
        BasicStatistics sample;
        ASSERT_TRUE(sample.readDataFile(shipped(name + ".txt")));
        ASSERT_TRUE(sample.analyse());
        EXPECT_EQ(report(sample), golden("basic_" + name + "_report.txt"));
        EXPECT_EQ(listing(sample, 0, largestCount), golden("basic_" + name + "_listing.txt"));
        EXPECT_EQ(exported(sample, name), golden("basic_" + name + "_export.txt"));
    }
}

TEST(BasicStatistics, goldenReportsOfReferenceData)
{
    for (const std::string name : {"nist_lew", "nist_mavro"}) {
        SCOPED_TRACE(name);
        const std::string path = wq_test::reference("values/" + name + ".txt");
        if (path.empty()) GTEST_SKIP() << "WQ_REFERENCE_DATA names no folder that holds values/" << name << ".txt";
        BasicStatistics sample;
        ASSERT_TRUE(sample.readDataFile(path));
        ASSERT_TRUE(sample.analyse());
        EXPECT_EQ(report(sample), golden("basic_" + name + "_report.txt"));
    }
}

// ---------------------------------------------------------------- report, listing and export in single lines

TEST(BasicStatistics, theReportTakesOneLevelFromTheRecordAndTheOtherFromTheObject)
{
    BasicStatistics sample = analysed(ordinary);
    sample.setSignificance(0.01);
    const std::string text = report(sample);
    EXPECT_THAT(text, ::testing::HasSubstr("\n\n95% confidence interval\nStudent t       : 3.2585\n"));  // t_PercentPoint(0.01, 9)
    EXPECT_THAT(text, ::testing::HasSubstr("\nt0.01(2),9     : 3.2585\n"));
    ASSERT_TRUE(sample.analyse());
    EXPECT_THAT(report(sample), ::testing::HasSubstr("\n\n99% confidence interval\nStudent t       : 3.2585\n"));
}

TEST(BasicStatistics, theReportAsksTheVirtualDecision)
{
    class Agreeing : public BasicStatistics {
    public:
        bool acceptH0() override { return true; }
    };
    Agreeing sample;
    sample.copyFrom(ordinary);
    sample.analyse();
    sample.setNullHypothesis(1e6);
    EXPECT_THAT(report(sample), ::testing::HasSubstr("\nH0              : accepted\n\n\n"));
}

TEST(BasicStatistics, outputsDoNotChangeTheObject)
{
    BasicStatistics sample = analysed(ordinary);
    const std::string first = report(sample);
    listing(sample, 0, 3);
    exported(sample, "once");
    EXPECT_EQ(report(sample), first);
    expectSameRecord(sample.getResult(), analysed(ordinary).getResult());
}

TEST(BasicStatistics, listingOfAnEmptySampleIsAMessage)
{
    BasicStatistics sample;
    sample.setSampleSize(5);
    std::string output;
    EXPECT_EQ(printedToError([&] { output = listing(sample, 0, 10); }), "No data\n");
    EXPECT_EQ(output, "");
}

TEST(BasicStatistics, listingKeepsTheStoredOrder)
{
    BasicStatistics sample = loaded({2.5, -1, 1e6});
    EXPECT_EQ(listing(sample, 0, 1000), "DATA\n2.500000\n-1.000000\n1000000.000000\n--------------------\n");
    sample.analyse();
    EXPECT_EQ(listing(sample, 0, 1000), "DATA\n-1.000000\n2.500000\n1000000.000000\n--------------------\n");
    EXPECT_EQ(listing(sample, 7, 9), "DATA\n--------------------\n");
    EXPECT_EQ(listing(sample, largestCount, largestCount), "DATA\n--------------------\n");
}

TEST(BasicStatistics, exportClampsTheEndOfTheObject)
{
    BasicStatistics sample = loaded({3, 1, 2});
    EXPECT_EQ(sample.getDataEnd(), 3u);
    EXPECT_EQ(exported(sample, "x"), "# x\nDATA\n3.000000000000\n1.000000000000\n2.000000000000\n");
    EXPECT_EQ(sample.getDataEnd(), 2u);

    BasicStatistics one = loaded({3});
    EXPECT_EQ(exported(one, "x"), "# x\nDATA\n3.000000000000\n");
    EXPECT_EQ(one.getDataEnd(), 1u);  // only an end above 1 is brought back
}

TEST(BasicStatistics, anExportThatCannotBeOpenedChangesNothing)
{
    const TempFolder folder;
    BasicStatistics sample = loaded({3, 1, 2});
    EXPECT_FALSE(sample.exportToR(folder.path("missing/export.txt"), ""));
    EXPECT_FALSE(sample.exportToR(folder.path(""), ""));  // a folder
    EXPECT_FALSE(sample.exportToR("", ""));
    EXPECT_EQ(sample.getDataEnd(), 3u);
}
