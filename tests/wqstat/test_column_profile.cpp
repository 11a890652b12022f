// What wqstat columns makes of cells and numbers: kinds, quartiles, histograms, dates.
#include <columns/character_bars.h>
#include <columns/column_profile.h>
#include <columns/iso_date.h>
#include <data_files/labels.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace wqstat;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double largest = std::numeric_limits<double>::max();

NumberSummary summaryOf(const std::vector<double>& values)
{
    NumberSummary summary;
    for (const double value : values) summary.add(value);
    return summary;
}

// Each of 0 ... n - 1 once, out of order; n is a power of two and the step odd.
double shuffled(std::size_t i, std::size_t n) { return static_cast<double>(i * 2654435761U % n); }

// ---------------------------------------------------------------- kinds

ColumnProfile profileOf(const std::vector<std::string>& cells)
{
    ColumnProfile column("title", CellNumbers());
    std::size_t line = 1;
    for (const std::string& cell : cells) {
        ++line;
        const std::string readable = cell + std::string(16, '\0');  // as a table's cells are
        if (cell.empty())
            column.addMissing();
        else
            column.add(std::string_view(readable).substr(0, cell.size()), line);
    }
    return column;
}

const struct {
    int line;
    std::vector<std::string> cells;  // from line 2 on; empty ones are missing
    const char* kind;
    std::size_t distinct;
    std::vector<std::string> odd;  // with their lines
} kinds[] = {
    {__LINE__, {}, "empty", 0, {}},
    {__LINE__, {"", ""}, "empty", 0, {}},
    {__LINE__, {"1", "2", "1"}, "number", 2, {}},
    {__LINE__, {"1", "1.0", "+1", "1e0", "0", "-0"}, "number", 2, {}},
    {__LINE__, {"inf", "-1", "-inf"}, "number", 3, {}},
    {__LINE__, {"1,5", "", "2,25"}, "number", 2, {}},
    {__LINE__, {"ctrl", "compost", "ctrl", ""}, "label", 2, {}},
    {__LINE__, {"nan", "NaN"}, "label", 2, {}},
    {__LINE__, {"1 kg", "2 kg", "5%"}, "label", 3, {}},
    {__LINE__, {"2024-01-05", "2024-02-29", "2024-01-05"}, "date", 2, {}},
    {__LINE__, {"2024-01-05", "2024-01-05T00:00Z"}, "date", 1, {}},
    {__LINE__, {"5.1.2024", "6.1.2024", "01/05/2024", "2024-1-5", "Jan 5 2024"}, "label", 5, {}},
    {__LINE__, {"20240105", "20240106"}, "number", 2, {}},
    {__LINE__, {"1", "<2", "3", "4"}, "mixed", 4, {"3 <2"}},
    {__LINE__, {"1.5", "2,5", "3"}, "mixed", 3, {"3 2,5"}},
    {__LINE__, {"2,5", "1.5", "3"}, "mixed", 3, {"3 1.5"}},
    {__LINE__, {"a", "b", "7", "c"}, "mixed", 4, {"4 7"}},
    {__LINE__, {"2024-01-05", "2024-01-06", "2023-02-29"}, "mixed", 3, {"4 2023-02-29"}},
    {__LINE__, {"1", "x", "2024-01-05", "2", "3", "x"}, "mixed", 5, {"3 x", "4 2024-01-05", "7 x"}},
    {__LINE__,
     {"x", "x", "1", "x", "x", "x", "x", "1", "1", "1", "1", "1", "1", "1", "1"},
     "mixed",
     2,
     {"2 x", "3 x", "5 x", "6 x", "7 x"}},  // five at most
    {__LINE__, {"1", "2", "a\x1b[2J\n"}, "mixed", 3, {"4 a\\x1b[2J\\x0a"}},
    {__LINE__, {"1", "1e999"}, "mixed", 2, {"3 1e999"}},
};

TEST(ColumnProfile, tellsTheKindOfAColumn)
{
    for (const auto& row : kinds) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const ColumnProfile column = profileOf(row.cells);
        EXPECT_STREQ(nameOf(column.kind()), row.kind);
        EXPECT_EQ(column.distinct(), row.distinct);
        EXPECT_EQ(column.rows(), row.cells.size());
        EXPECT_EQ(column.missing(), std::count(row.cells.begin(), row.cells.end(), ""));
        std::vector<std::string> odd;
        if (column.kind() == CellKind::mixed)
            for (const OddCell& cell : column.oddCells()) odd.push_back(std::to_string(cell.line) + " " + cell.text);
        EXPECT_EQ(odd, row.odd);
    }
}

TEST(ColumnProfile, countsLabelsUpToABoundAndSaysSo)
{
    ColumnProfile column("title", CellNumbers());
    for (std::size_t i = 0; i < mostDistinct; ++i) column.add("label " + std::to_string(i), i + 2);
    EXPECT_EQ(column.distinct(), mostDistinct);
    column.add("one more", mostDistinct + 2);
    column.add("label 7", mostDistinct + 3);
    EXPECT_EQ(column.distinct(), std::nullopt);
    EXPECT_EQ(column.values(), mostDistinct + 2);
    const std::vector<LabelCount> frequent = column.labelCounts().mostFrequent(2);
    ASSERT_EQ(frequent.size(), 2U);
    EXPECT_EQ(frequent[0].text, "label 7");
    EXPECT_EQ(frequent[0].count, 2U);
    EXPECT_EQ(frequent[1].text, "label 0");
}

// Texts of any length, many of which have the same ends and so meet at one place.
TEST(Labels, areNumberedByFirstAppearance)
{
    Labels labels;
    std::map<std::string, std::size_t> expected;
    std::mt19937_64 random(20261122);
    for (int i = 0; i < 60000; ++i) {
        std::string text = i % 3 == 0 ? "site" : "";
        for (std::uint64_t length = random() % 8; length > 0; --length) text += static_cast<char>('a' + random() % 4);
        text += i % 2 == 0 ? "(kg)" : "";
        const auto known = expected.find(text);
        ASSERT_EQ(labels.known(text), known == expected.end() ? 0 : known->second) << text;
        const std::size_t number = expected.emplace(text, expected.size() + 1).first->second;
        ASSERT_EQ(labels.number(text), number) << text;
        ASSERT_EQ(labels.known(text), number) << text;
    }
    for (const auto& [text, number] : expected) EXPECT_EQ(labels.text(number), text);
    EXPECT_GT(expected.size(), 5000u);
}

TEST(ColumnProfile, doubtsACommaThatMaySeparateThousands)
{
    EXPECT_THAT(profileOf({"1,234", "2,345"}).doubt(), testing::StartsWith("'1,234' may have a decimal comma"));
    EXPECT_EQ(profileOf({"1,234", "2,34"}).doubt(), "");
    EXPECT_EQ(profileOf({"1234"}).doubt(), "");
}

// ---------------------------------------------------------------- quartiles

// From R: quantile(x, c(0.25, 0.5, 0.75), type = 7).
const struct {
    int line;
    std::vector<double> values;
    Quartiles expected;
} quartiles[] = {
    {__LINE__, {4.17, 5.58, 5.18, 4.81, 4.41, 6.31, 5.12, 5.54}, {4.71, 5.15, 5.55}},
    {__LINE__, {1, 2, 3, 4, 5, 6, 7, 8, 9}, {3, 5, 7}},
    {__LINE__, {1, 2}, {1.25, 1.5, 1.75}},
    {__LINE__, {3}, {3, 3, 3}},
    {__LINE__, {1, 1, 1, 5}, {1, 1, 2}},
    {__LINE__, {-2.5, 0, 1e10, 7, 7, 7, 8.25}, {3.5, 7, 7.625}},
    {__LINE__, {-1.7e308, 1.7e308}, {-8.4999999999999987e307, 0, 8.4999999999999987e307}},
    {__LINE__, {1, 2, inf}, {1.5, 2, inf}},
    {__LINE__, {10, 2, 2, 2, 30, 41, 5}, {2, 5, 20}},
};

TEST(NumberSummary, hasQuartilesOfTypeSeven)
{
    for (const auto& row : quartiles) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const NumberSummary summary = summaryOf(row.values);
        const Quartiles found = summary.quartiles();
        EXPECT_DOUBLE_EQ(found.lower, row.expected.lower);
        EXPECT_DOUBLE_EQ(found.median, row.expected.median);
        EXPECT_DOUBLE_EQ(found.upper, row.expected.upper);
        EXPECT_EQ(summary.rankError(), 0U);
    }
    EXPECT_TRUE(std::isnan(NumberSummary().quartiles().median));
}

TEST(NumberSummary, isExactUpToTheBoundOfDifferentValues)
{
    NumberSummary summary;
    for (int repeat = 0; repeat < 3; ++repeat)
        for (std::size_t i = 0; i < mostDistinct; ++i) summary.add(static_cast<double>(i));
    EXPECT_EQ(summary.distinct(), mostDistinct);
    EXPECT_EQ(summary.rankError(), 0U);
    // 300 000 values, three of each: (n - 1) p = 74 999.75, 149 999.5, 224 999.25.
    EXPECT_EQ(summary.quartiles().lower, 24999.75);
    EXPECT_EQ(summary.quartiles().median, 49999.5);
    EXPECT_EQ(summary.quartiles().upper, 74999.25);
    summary.add(-1.0);
    EXPECT_EQ(summary.distinct(), std::nullopt);
    EXPECT_EQ(summary.count(), 3 * mostDistinct + 1);
    EXPECT_EQ(summary.least(), -1.0);
    EXPECT_EQ(summary.greatest(), 99999.0);
    EXPECT_DOUBLE_EQ(summary.mean(), (3.0 * 99999.0 * 50000.0 - 1.0) / 300001.0);
}

TEST(NumberSummary, hasQuartilesWithinTheErrorItNames)
{
    constexpr std::size_t n = 1 << 18;
    const struct {
        const char* order;
        double (*value)(std::size_t);
    } rows[] = {
        {"upwards", [](std::size_t i) { return static_cast<double>(i); }},
        {"downwards", [](std::size_t i) { return static_cast<double>(n - 1 - i); }},
        {"shuffled", [](std::size_t i) { return shuffled(i, n); }},
        {"from both ends", [](std::size_t i) { return static_cast<double>(i % 2 == 0 ? i / 2 : n - 1 - i / 2); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.order);
        NumberSummary summary;
        for (std::size_t i = 0; i < n; ++i) summary.add(row.value(i));
        const auto error = static_cast<double>(summary.rankError());
        EXPECT_GT(error, 0.0);
        EXPECT_LT(error, 0.0002 * n);
        const Quartiles found = summary.quartiles();  // the value is the rank
        EXPECT_LE(std::fabs(found.lower - 0.25 * (n - 1)), error + 1.0);
        EXPECT_LE(std::fabs(found.median - 0.5 * (n - 1)), error + 1.0);
        EXPECT_LE(std::fabs(found.upper - 0.75 * (n - 1)), error + 1.0);
        std::uint64_t kept = 0;
        for (const Weighted& each : summary.values()) kept += each.count;
        EXPECT_EQ(kept, n);
        EXPECT_LT(summary.values().size(), 8 * RankSketch::levelSize);
        EXPECT_EQ(summary.least(), 0.0);
        EXPECT_EQ(summary.greatest(), n - 1);
        EXPECT_EQ(summary.mean(), 0.5 * (n - 1));
    }
}

// The rank of every value that the sketch keeps, not only that of the quartiles.
TEST(RankSketch, holdsItsErrorAtEveryRank)
{
    constexpr std::size_t n = 1 << 19;
    RankSketch sketch;
    sketch.add(-1.0, 3);
    for (std::size_t i = 0; i < n; ++i) sketch.add(shuffled(i, n));
    sketch.add(static_cast<double>(n), 100'001);
    std::uint64_t below = 0;
    std::uint64_t worst = 0;
    for (const Weighted& each : sketch.values()) {
        const std::uint64_t truly = each.value < 0.0 ? 0 : 3 + static_cast<std::uint64_t>(each.value);
        const std::uint64_t afterAll = each.value < 0.0 ? 3 : each.value < n ? truly + 1 : truly + 100'001;
        worst = std::max(worst, truly > below + each.count ? truly - below - each.count : 0);
        worst = std::max(worst, below > afterAll ? below - afterAll : 0);
        below += each.count;
    }
    EXPECT_EQ(below, n + 100'004);
    EXPECT_LE(worst, sketch.rankError());
    EXPECT_GT(sketch.rankError(), 0U);
}

// ---------------------------------------------------------------- means

const struct {
    int line;
    std::vector<double> values;
    double expected;
} means[] = {
    {__LINE__, {1, 2, 6}, 3},
    {__LINE__, {1e16, 1, -1e16}, 1.0 / 3.0},
    {__LINE__, {1, 1e100, 1, -1e100}, 0.5},
    {__LINE__, {largest, largest, largest}, largest},
    {__LINE__, {largest, -largest, 3}, 1},
    {__LINE__, {largest, 1}, largest / 2},
    {__LINE__, {5e-324, 5e-324}, 5e-324},
    {__LINE__, {1, inf}, inf},
    {__LINE__, {1, -inf, largest}, -inf},
};

TEST(ExactMean, losesNothingOfItsSum)
{
    for (const auto& row : means) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        EXPECT_EQ(summaryOf(row.values).mean(), row.expected);
    }
    EXPECT_TRUE(std::isnan(summaryOf({inf, -inf}).mean()));
    EXPECT_TRUE(std::isnan(summaryOf({}).mean()));
    // A tenth is no double: 10^6 of them add up to 100000.00000000000555, and the mean is the tenth itself.
    EXPECT_EQ(summaryOf(std::vector<double>(1'000'000, 0.1)).mean(), 0.1);
}

// ---------------------------------------------------------------- histograms

const struct {
    int line;
    std::vector<double> values;
    double from;
    double width;
    std::vector<std::uint64_t> counts;
} histograms[] = {
    {__LINE__, {}, 0, 0, {}},
    {__LINE__, {7, 7, 7}, 7, 0, {3}},
    {__LINE__, {1, 2, 2, 4}, 1, 1, {1, 2, 0, 1}},                           // whole numbers have a class each
    {__LINE__, {0, 0.5, 1, 1.5, 2, 2.5, 3, 4}, 0, 1, {2, 2, 2, 2}},         // 2 * 8^(1/3) classes; the last holds the greatest
    {__LINE__, {0, 30, 60, 61, 62, 63, 64, 99}, 0, 25, {1, 1, 5, 1}},       // as many whole numbers in each
    {__LINE__, {-inf, 0.5, 1.5, inf}, 0.5, 0.3333333333333333, {1, 0, 1}},  // 2^(1/3) * 2 = 2.5 classes of the two
    {__LINE__, {-largest, largest}, -largest, 2.0 / 3.0 * largest, {1, 0, 1}},
    {__LINE__, {1e300, 1e300, 2e300}, 1e300, 1e300 / 3.0, {2, 0, 1}},
};

TEST(NumberSummary, hasAHistogram)
{
    for (const auto& row : histograms) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const Histogram found = summaryOf(row.values).histogram();
        EXPECT_DOUBLE_EQ(found.from, row.from);
        EXPECT_NEAR(found.width, row.width, 1e-12 * row.width);
        EXPECT_EQ(found.counts, row.counts);
    }
    const Histogram many = summaryOf([] {
                               std::vector<double> values;
                               for (int i = 0; i < 24000; ++i) values.push_back(i / 24000.0);
                               return values;
                           }())
                               .histogram();
    EXPECT_EQ(many.counts.size(), 24U) << "and no more";
    for (const std::uint64_t count : many.counts) EXPECT_NEAR(static_cast<double>(count), 1000.0, 1.0);
}

TEST(CharacterBars, growWithTheCounts)
{
    EXPECT_EQ(bars({0, 1, 4, 8}, Characters::blocks), " \u2581\u2584\u2588");
    EXPECT_EQ(bars({0, 1, 2, 3, 4, 5, 6, 7, 8}, Characters::ascii), " .:-=+*#@");
    EXPECT_EQ(bars({0, 1, 1'000'000}, Characters::ascii), " .@") << "one is not none";
    EXPECT_EQ(bars({}, Characters::blocks), "");
    EXPECT_EQ(bar(1, 3, 9, Characters::ascii), "###");
    EXPECT_EQ(bar(1, 1'000'000, 9, Characters::blocks), "\u2588");
    EXPECT_EQ(bar(0, 5, 9, Characters::ascii), "");
    EXPECT_EQ(bar(0, 0, 9, Characters::ascii), "");
}

// ---------------------------------------------------------------- dates

// Days by Python: (datetime(...) - datetime(1970, 1, 1)).days
const struct {
    int line;
    const char* text;
    double days;
    const char* shown;
} dates[] = {
    {__LINE__, "1970-01-01", 0, "1970-01-01"},
    {__LINE__, "2024-02-29", 19782, "2024-02-29"},
    {__LINE__, "2000-02-29", 11016, "2000-02-29"},
    {__LINE__, "0001-01-01", -719162, "0001-01-01"},
    {__LINE__, "9999-12-31", 2932896, "9999-12-31"},
    {__LINE__, "1969-12-31", -1, "1969-12-31"},
    {__LINE__, "1900-03-01", -25508, "1900-03-01"},
    {__LINE__, "2024-02-29T12:00", 19782.5, "2024-02-29T12:00:00"},
    {__LINE__, "2024-02-29 18:00:00", 19782.75, "2024-02-29T18:00:00"},
    {__LINE__, "1969-12-31T06:00Z", -0.75, "1969-12-31T06:00:00"},
    {__LINE__, "2024-02-29T12:00:00+06:00", 19782.25, "2024-02-29T06:00:00"},
    {__LINE__, "2024-02-29T12:00-12", 19783.0, "2024-03-01T00:00:00"},
    {__LINE__, "2024-02-29T00:00:43.2", 19782.0005, "2024-02-29T00:00:43"},
    {__LINE__, "2024-02-29T23:59:59,9Z", 19782 + 86399.9 / 86400, "2024-03-01T00:00:00"},
};

TEST(IsoDate, isReadAndWritten)
{
    for (const auto& row : dates) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::optional<IsoDate> date = isoDate(row.text);
        ASSERT_TRUE(date.has_value());
        EXPECT_DOUBLE_EQ(date->days, row.days);
        EXPECT_EQ(isoText(date->days, date->hasTime), row.shown);
    }
    for (int day = -800; day < 200'000; ++day) {
        const std::string text = isoText(day, false);
        const std::optional<IsoDate> date = isoDate(text);
        ASSERT_TRUE(date.has_value()) << text;
        ASSERT_EQ(date->days, day) << text;
    }
}

TEST(IsoDate, isNothingElse)
{
    for (const char* const text : {"",
                                   "2024",
                                   "2024-02",
                                   "2024-2-29",
                                   "2023-02-29",
                                   "1900-02-29",
                                   "2024-13-01",
                                   "2024-00-10",
                                   "2024-04-31",
                                   "2024-01-00",
                                   "0000-01-01",
                                   "2024/02/29",
                                   "20240229",
                                   "2024-02-29T",
                                   "2024-02-29T24:00",
                                   "2024-02-29T12",
                                   "2024-02-29T12:60",
                                   "2024-02-29T12:30:60",
                                   "2024-02-29T12:30:",
                                   "2024-02-29T12:30:05.",
                                   "2024-02-29T12:30+",
                                   "2024-02-29T12:30+1",
                                   "2024-02-29T12:30+24:00",
                                   "2024-02-29T12:30+01:60",
                                   "2024-02-29T12:30z",
                                   "2024-02-29x",
                                   "2024-02-29 ",
                                   "+024-02-29",
                                   "2024-W09-4",
                                   "2024-060",
                                   "-024-01-01",
                                   "2024--1-01",
                                   "2024-01--1"})
        EXPECT_FALSE(isoDate(text).has_value()) << text;
}

}  // namespace
