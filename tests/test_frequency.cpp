// Frequency classes of equal width.
#include <wq_stat/frequency.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"

using namespace wq_lib;
using wq_test::golden;
using wq_test::printed;

namespace {

using Values = std::vector<double>;
using Counts = std::vector<unsigned long long>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t largestCount = std::numeric_limits<std::size_t>::max();

const Values zeroToTen = {7, 3, 10, 0, 5, 8, 1, 9, 2, 6, 4};

Frequency loaded(const Values& values)
{
    Frequency table;
    table.copyFrom(values);
    return table;
}

// The calls in the order a host makes them.
Frequency tabulated(const Values& values, std::size_t k)
{
    Frequency table = loaded(values);
    table.autoClassWidth(k);
    table.initFrequency(table.getClasses());
    table.buildTable();
    EXPECT_TRUE(table.analyse());
    return table;
}

Counts counts(const Frequency& table)
{
    Counts result;
    for (const frequency_class& c : table.getTable()) result.push_back(c.count);
    return result;
}

std::string report(Frequency& table)
{
    return printed([&] { table.reportConsole(); });
}

// A width that a test sets itself; the library has no setter.
class OfWidth : public Frequency {
public:
    OfWidth(double start, double width, const Values& values)
    {
        copyFrom(values);
        startClass = start;
        classWidth = width;
    }
};

}  // namespace

TEST(Frequency, aNumberOfClassesBeyondAllMemoryLeavesTheTable)
{
    wq_lib::Frequency sample;
    sample.initFrequency(1);
    EXPECT_THROW(sample.initFrequency(static_cast<std::size_t>(-1)), std::length_error);
    EXPECT_EQ(sample.getTable().size(), 1u);
    EXPECT_EQ(sample.getClasses(), 1u);
}

TEST(Frequency, newObject)
{
    const Frequency table;
    EXPECT_EQ(table.getClasses(), 0u);
    EXPECT_EQ(table.getStartClass(), 0.0);
    EXPECT_EQ(table.getClassWidth(), 0.0);
    EXPECT_TRUE(table.getTable().empty());
    EXPECT_EQ(table.getColumnName(0), "DATA");
}

TEST(Frequency, classesDividedOverTheRange)
{
    const struct {
        const char* shows;
        Values values;
        std::size_t k;
        std::size_t classes;
        double start, width;
    } rows[] = {
        {"0 asks for ten classes", zeroToTen, 0, 10, 0.0, 1.0},
        {"as many as asked for", zeroToTen, 4, 4, 0.0, 2.5},
        {"one class", zeroToTen, 1, 1, 0.0, 10.0},
        {"all values equal: width 0", {2.5, 2.5, 2.5}, 3, 3, 2.5, 0.0},
        {"negative values only: the upper end is the smallest positive number", {-10, -5, -2}, 10, 10, -10.0, 1.0},
        {"an infinite value: infinite width", {1, infinity, 2}, 2, 2, 1.0, infinity},
        {"NaN is neither smallest nor largest", {NaN, 3, 1, 2, NaN}, 2, 2, 1.0, 1.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        Frequency table = loaded(row.values);
        EXPECT_TRUE(table.autoClassWidth(row.k));
        EXPECT_EQ(table.getClasses(), row.classes);
        EXPECT_SAME_BITS(table.getStartClass(), row.start);
        EXPECT_SAME_BITS(table.getClassWidth(), row.width);
    }
}

TEST(Frequency, tooFewObservationsChangeNoSetting)
{
    for (const Values& values : {Values{}, Values{1}, Values{1, 2}}) {
        SCOPED_TRACE(values.size());
        Frequency table = loaded(values);
        table.setClasses(7);
        table.setStartClass(-3.5);
        EXPECT_FALSE(table.autoClassWidth(4));
        EXPECT_EQ(table.getClasses(), 7u);
        EXPECT_EQ(table.getStartClass(), -3.5);
        EXPECT_EQ(table.getClassWidth(), 0.0);
    }
    Frequency trimmed = loaded(zeroToTen);
    trimmed.setHead(0.5);
    trimmed.setTail(0.4);
    EXPECT_FALSE(trimmed.autoClassWidth(4)) << "one observation is left in the range";
    EXPECT_EQ(trimmed.getClasses(), 0u);
}

TEST(Frequency, tables)
{
    const struct {
        const char* shows;
        Values values;
        std::size_t k;
        Counts counts;
    } rows[] = {
        {"0 to 10: the largest value is not counted", zeroToTen, 0, {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}},
        {"a value on an inner edge belongs to the class above it", {0, 2, 2, 4, 4, 6, 8}, 4, {1, 2, 2, 1}},
        {"a second largest value falls on the upper edge and goes to the last class", {0, 1, 4, 8, 8, 8}, 4, {2, 0, 1, 2}},
        {"all values equal: the quotients are 0/0, and the counted ones go to class 0", {2.5, 2.5, 2.5, 2.5}, 3, {3, 0, 0}},
        {"infinite width: the finite values and the quotient inf/inf go to class 0", {1, infinity, 2, infinity}, 2, {3, 0}},
        {"NaN values are sorted last: the last is not counted, the others go to class 0", {NaN, 4, 1, 2, 3, NaN}, 3, {2, 1, 2}},
        {"minus infinity: every quotient is NaN", {-infinity, 4, 1, 2}, 2, {3, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        EXPECT_EQ(counts(tabulated(row.values, row.k)), row.counts);
    }
}

TEST(Frequency, classOfAValue)  // start 10, width 2, four classes; a value of 0 stands last, where it is not counted
{
    const struct {
        const char* shows;
        double value;
        std::size_t index;
    } rows[] = {
        {"lower edge of the first class", 10.0, 0},
        {"inside", 12.5, 1},
        {"just below an edge", std::nextafter(12.0, 0.0), 0},
        {"on the upper edge", 18.0, 3},
        {"far above", 1e300, 3},
        {"infinite", infinity, 3},
        {"just below the first class: the last", std::nextafter(10.0, 0.0), 3},
        {"one width below", 8.0, 3},
        {"far below", -1e300, 3},
        {"minus infinity", -infinity, 3},
        {"NaN: the first", NaN, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        OfWidth table(10.0, 2.0, {row.value, 0.0});
        table.initFrequency(4);
        table.setDataEnd(1);
        table.buildTable();
        Counts expected(4, 0);
        expected[row.index] = 1;
        EXPECT_EQ(counts(table), expected);
    }
}

TEST(Frequency, widthZeroOrNaN)
{
    OfWidth zero(2.0, 0.0, {1, 2, 3, 4, 0});  // the quotients are -inf, NaN, inf, inf
    zero.initFrequency(3);
    zero.setDataEnd(4);
    zero.buildTable();
    EXPECT_EQ(counts(zero), (Counts{1, 0, 3}));

    OfWidth unknown(2.0, NaN, {1, 2, 3, 4, 0});
    unknown.initFrequency(3);
    unknown.setDataEnd(4);
    unknown.buildTable();
    EXPECT_EQ(counts(unknown), (Counts{4, 0, 0}));

    OfWidth negative(4.0, -1.0, {1, 2, 3, 4, 5, 0});  // 3, 2, 1, 0, -1
    negative.initFrequency(4);
    negative.setDataEnd(5);
    negative.buildTable();
    EXPECT_EQ(counts(negative), (Counts{1, 1, 1, 2}));
}

TEST(Frequency, startClassSetByHandCountsLowerValuesInTheLastClass)
{
    Frequency table = loaded({3, 1, 4, 1, 5, 9, 2, 6});
    EXPECT_TRUE(table.autoClassWidth(4));  // width 2
    table.setStartClass(2.0);
    table.initFrequency(4);
    table.buildTable();
    EXPECT_EQ(counts(table), (Counts{2, 2, 1, 2}));  // 2 3 | 4 5 | 6 | 1 1, and 9 is not counted
}

TEST(Frequency, withoutAutoClassWidthTheLastValueIsCounted)  // dataEnd is still one past the last index
{
    OfWidth table(0.0, 2.5, zeroToTen);
    table.initFrequency(4);
    table.buildTable();
    EXPECT_EQ(counts(table), (Counts{3, 2, 3, 3}));
}

TEST(Frequency, neverGoesPastTheTable)
{
    const struct {
        const char* shows;
        std::size_t made, classes;
        Counts counts;
    } rows[] = {
        {"as many classes as the table", 4, 4, {3, 2, 3, 3}},
        {"more: what falls past the table is not counted", 2, 4, {3, 2}},
        {"more: the last class lies past the table", 4, 5, {3, 2, 3, 2}},
        {"the largest count of classes", 4, largestCount, {3, 2, 3, 2}},
        {"fewer: the rest of the table stays empty", 4, 2, {3, 8, 0, 0}},
        {"one", 4, 1, {11, 0, 0, 0}},
        {"none: there is no last class, nothing is counted", 4, 0, {0, 0, 0, 0}},
        {"no table", 0, 4, {}},
        {"no table, no classes", 0, 0, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        OfWidth table(0.0, 2.5, zeroToTen);
        table.initFrequency(row.made);
        table.setClasses(row.classes);
        table.buildTable();
        EXPECT_EQ(counts(table), row.counts);
        EXPECT_TRUE(table.analyse());
        EXPECT_EQ(table.getTable().size(), row.made);

        const std::size_t shown = std::min(row.made, row.classes);
        const std::string text = report(table);
        EXPECT_EQ(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')), 4 + shown);
        const wq_test::TempFolder folder;
        EXPECT_TRUE(table.exportTable(folder.path("table.txt"), "table"));
        const std::string file = wq_test::contentOf(folder.path("table.txt"));
        EXPECT_EQ(static_cast<std::size_t>(std::count(file.begin(), file.end(), '\n')), 2 + shown);
    }
}

TEST(Frequency, classesNotInUseGetNoRate)
{
    OfWidth table(0.0, 2.5, zeroToTen);
    table.initFrequency(4);
    table.buildTable();
    table.setClasses(2);
    EXPECT_TRUE(table.analyse());
    const double rates[] = {3.0 / 11.0, 2.0 / 11.0, 0.0, 0.0};
    for (std::size_t j = 0; j < 4; ++j) EXPECT_SAME_BITS(table.getTable()[j].rate, rates[j]);
    EXPECT_EQ(counts(table), (Counts{3, 2, 3, 3}));
}

TEST(Frequency, tableNeverMade)
{
    Frequency table = loaded(zeroToTen);
    EXPECT_TRUE(table.autoClassWidth(4));
    table.buildTable();
    EXPECT_TRUE(table.analyse());
    EXPECT_TRUE(table.getTable().empty());
    EXPECT_THAT(report(table), ::testing::EndsWith("\nClass [low  - high] Frequency rate\n"));
}

TEST(Frequency, neverReadsPastTheSample)
{
    const struct {
        const char* shows;
        std::size_t start, end;
        unsigned long long counted;
    } rows[] = {
        {"all of it", 0, 11, 11},
        {"the end index is excluded", 0, 10, 10},
        {"an end past the sample", 0, 1000, 11},
        {"the largest index", 3, largestCount, 8},
        {"a start past the sample", 11, 1000, 0},
        {"an end before the start", 5, 4, 0},
        {"an empty range", 5, 5, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        OfWidth table(0.0, 100.0, zeroToTen);
        table.initFrequency(1);
        table.setDataStart(row.start);
        table.setDataEnd(row.end);
        table.buildTable();
        EXPECT_EQ(counts(table), Counts{row.counted});
    }
}

TEST(Frequency, ratesDivideByAllObservationsOfTheRange)
{
    const Frequency table = tabulated(zeroToTen, 0);
    double sum = 0.0;
    for (const frequency_class& c : table.getTable()) {
        EXPECT_SAME_BITS(c.rate, 1.0 / 11.0);
        sum += c.rate;
    }
    EXPECT_DOUBLE_EQ(sum, 10.0 / 11.0);  // (m - 1)/m: the largest value is left out of the counts, not of m

    Frequency trimmed = loaded(zeroToTen);
    trimmed.setHead(0.1);  // 1.1, rounded up to 2
    trimmed.setTail(0.1);  // 1.1, truncated to 1
    EXPECT_TRUE(trimmed.autoClassWidth(2));
    trimmed.initFrequency(2);
    trimmed.buildTable();  // 2 ... 9 in two classes of 3.5
    EXPECT_TRUE(trimmed.analyse());
    EXPECT_EQ(counts(trimmed), (Counts{4, 3}));
    EXPECT_SAME_BITS(trimmed.getTable()[0].rate, 4.0 / 8.0);
    EXPECT_SAME_BITS(trimmed.getTable()[1].rate, 3.0 / 8.0);
}

TEST(Frequency, analysisIsTrueWhateverTheSample)
{
    for (const Values& values : {Values{}, Values{1}, Values{1, 2}}) {
        SCOPED_TRACE(values.size());
        Frequency table = loaded(values);
        table.setStartClass(-1.0);
        table.initFrequency(2);
        table.buildTable();  // the width is 0, so every quotient is infinite
        EXPECT_TRUE(table.analyse());
        EXPECT_EQ(counts(table), (Counts{0, values.size()}));
        EXPECT_SAME_BITS(table.getTable()[1].rate, values.empty() ? NaN : 1.0);
    }
}

TEST(Frequency, rangeBeforeItsStartGivesAWrappedDivisor)  // m = dataEnd - dataStart + 1 in unsigned arithmetic
{
    Frequency table = tabulated(zeroToTen, 2);
    table.setHead(1.0);
    table.setTail(0.5);  // 11 ... 5: m = 2^64 - 5
    EXPECT_TRUE(table.analyse());
    EXPECT_SAME_BITS(table.getTable()[0].rate, 5.0 / 18446744073709551616.0);
}

TEST(Frequency, initFrequencyAppends)
{
    Frequency table = tabulated(zeroToTen, 2);
    const Counts once = {5, 5};
    EXPECT_EQ(counts(table), once);
    EXPECT_TRUE(table.initFrequency(3));
    EXPECT_EQ(table.getClasses(), 3u);
    EXPECT_EQ(counts(table), (Counts{5, 5, 0, 0, 0}));
    EXPECT_SAME_BITS(table.getTable()[0].rate, 5.0 / 11.0);
    EXPECT_SAME_BITS(table.getTable()[4].rate, 0.0);

    EXPECT_TRUE(table.initFrequency(0));
    EXPECT_EQ(table.getClasses(), 0u);
    EXPECT_EQ(table.getTable().size(), 5u);
}

TEST(Frequency, buildTableTwiceCountsTwice)
{
    Frequency table = tabulated(zeroToTen, 2);
    table.buildTable();
    EXPECT_EQ(counts(table), (Counts{10, 10}));
    EXPECT_SAME_BITS(table.getTable()[0].rate, 5.0 / 11.0);
    EXPECT_TRUE(table.analyse());
    EXPECT_SAME_BITS(table.getTable()[0].rate, 10.0 / 11.0);
    EXPECT_TRUE(table.analyse());
    EXPECT_EQ(counts(table), (Counts{10, 10})) << "an analysis counts nothing";
    EXPECT_SAME_BITS(table.getTable()[0].rate, 10.0 / 11.0);
}

TEST(Frequency, analysisIncludesTheOneSampleAnalysis)
{
    Frequency table = loaded(zeroToTen);
    EXPECT_TRUE(table.analyse());
    EXPECT_EQ(table.getResult().n, 11u);
    EXPECT_EQ(table.getResult().mean, 5.0);
    EXPECT_EQ(table.getDataPoint(0), 0.0);
    EXPECT_EQ(table.getDataEnd(), 10u);
}

TEST(Frequency, sameBitsAsThePlainLoop)
{
    std::mt19937_64 random(6);
    std::normal_distribution<double> value(50.0, 12.0);
    std::uniform_int_distribution<std::size_t> size(3, 200);
    std::uniform_int_distribution<std::size_t> classes(1, 25);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        Values values(size(random));
        for (double& x : values) x = round % 2 == 0 ? value(random) : std::floor(value(random));
        const std::size_t k = classes(random);

        Values ordered = values;
        std::sort(ordered.begin(), ordered.end());
        const double start = ordered.front();
        const double width = (ordered.back() - ordered.front()) / static_cast<double>(k);
        Counts expected(k, 0);
        for (std::size_t i = 0; i + 1 < ordered.size(); ++i) {
            const double quotient = std::floor((ordered[i] - start) / width);
            ++expected[quotient >= static_cast<double>(k) ? k - 1 : static_cast<std::size_t>(quotient)];
        }

        const Frequency table = tabulated(values, k);
        EXPECT_SAME_BITS(table.getStartClass(), start);
        EXPECT_SAME_BITS(table.getClassWidth(), width);
        EXPECT_EQ(counts(table), expected);
        for (std::size_t j = 0; j < k; ++j)
            EXPECT_SAME_BITS(table.getTable()[j].rate, static_cast<double>(expected[j]) / static_cast<double>(values.size()));
    }
}

TEST(Frequency, workedRow)  // three of eight observations in a class from 1 to 1.5
{
    Frequency table = tabulated({2.6, 1.0, 3.0, 1.2, 2.1, 1.4, 1.6, 2.2}, 4);
    EXPECT_THAT(report(table), ::testing::HasSubstr("\n    0 [1.000-1.500] 3 0.3750\n"));
}

TEST(Frequency, numbersOfMoreThanFiveDigitsWidenTheirColumn)
{
    OfWidth table(0.0, 0.5, {});
    table.initFrequency(100001);
    EXPECT_THAT(report(table), ::testing::EndsWith("\n99999 [49999.500-50000.000] 0 0.0000\n100000 [50000.000-50000.500] 0 0.0000\n"));
}

TEST(Frequency, reportsAndExports)  // tests/reference/make_golden_classes.py
{
    const struct {
        const char* name;
        Values values;
        std::size_t k;
        const char* comment;
        const char* exportComment;
    } rows[] = {
        {"frequency_zero_to_ten", zeroToTen, 0, "The values 0 to 10", "The values 0 to 10"},
        {"frequency_worked_row", {2.6, 1.0, 3.0, 1.2, 2.1, 1.4, 1.6, 2.2}, 4, "", "two lines\nof comment"},
        {"frequency_equal_values", {2.5, 2.5, 2.5}, 3, "", ""},
        {"frequency_not_finite", {1, infinity, 2, NaN, 3}, 2, "", ""},
        {"frequency_empty", {}, 4, "", ""},
    };
    const wq_test::TempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Frequency table = tabulated(row.values, row.k);
        table.setComment(row.comment);
        EXPECT_EQ(report(table), golden(row.name + std::string(".txt")));
        EXPECT_TRUE(table.exportTable(folder.path(row.name), row.exportComment));
        EXPECT_EQ(wq_test::contentOf(folder.path(row.name)), golden(row.name + std::string("_export.txt")));
    }

    Frequency table = loaded({3, 1, 4, 1, 5, 9, 2, 6});
    EXPECT_TRUE(table.autoClassWidth(4));
    table.setStartClass(2.0);
    table.initFrequency(4);
    table.buildTable();
    EXPECT_TRUE(table.analyse());
    EXPECT_EQ(report(table), golden("frequency_start_by_hand.txt"));
    EXPECT_TRUE(table.exportTable(folder.path("start_by_hand"), ""));
    EXPECT_EQ(wq_test::contentOf(folder.path("start_by_hand")), golden("frequency_start_by_hand_export.txt"));
}

TEST(Frequency, exportReplacesAFileAndReportsFailure)
{
    Frequency table = tabulated(zeroToTen, 2);
    const wq_test::TempFolder folder;
    const std::string path = folder.write("table.txt", "an older, longer file\n" + std::string(1000, 'x'));
    EXPECT_TRUE(table.exportTable(path, "twice"));
    const std::string once = wq_test::contentOf(path);
    EXPECT_THAT(once, ::testing::StartsWith("# twice\nclass\tstart\tend\tmid\tobserved\trate\n0\t"));
    EXPECT_TRUE(table.exportTable(path, "twice"));
    EXPECT_EQ(wq_test::contentOf(path), once);
    EXPECT_FALSE(table.exportTable(folder.path("no/such/folder/table.txt"), "none"));
    EXPECT_FALSE(table.exportTable("/dev/full", "full"));
}
