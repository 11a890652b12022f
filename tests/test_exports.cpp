// Exports of every class: failures told, files replaced, and R reads what was written.
#include <wq_stat/wq_stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "support/analyses.h"
#include "support/files.h"
#include "support/r.h"

using namespace wq_lib;
using wq_test::contentOf;
using wq_test::isPaired;
using wq_test::shipped;
using wq_test::TempFolder;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// An analysis with something to export, and the export.
template <typename Analysis>
Analysis prepared()
{
    Analysis analysis;
    if constexpr (isPaired<Analysis>) {
        for (int i = 1; i <= 12; ++i) analysis.add(i % 3 + 1, 0.25 * i * i);
        if constexpr (std::is_base_of_v<SingleAnova, Analysis>) analysis.createSeries();
        if constexpr (std::is_base_of_v<KolmogorovSmirnov2, Analysis>) analysis.cumulative();
    } else {
        for (int i = 1; i <= 12; ++i) analysis.add(0.25 * i * i);
        if constexpr (std::is_base_of_v<Frequency, Analysis>) {
            analysis.autoClassWidth(4);
            analysis.initFrequency(4);
            analysis.buildTable();
        }
    }
    analysis.analyse();
    return analysis;
}

}  // namespace

// ---------------------------------------------------------------- every class

template <typename Analysis>
class EachExport : public ::testing::Test {
protected:
    // Calls a test with each export of the class.
    template <typename Test>
    void each(Test&& test)
    {
        Analysis analysis = prepared<Analysis>();
        test("exportToR", [&](const std::string& path) { return analysis.exportToR(path, "a comment"); });
        BasicStatistics& base = analysis;
        test("exportToR of the base", [&](const std::string& path) { return base.exportToR(path, "a comment"); });
        if constexpr (std::is_base_of_v<Frequency, Analysis>)
            test("exportTable", [&](const std::string& path) { return analysis.exportTable(path, "a comment"); });
    }
};

TYPED_TEST_SUITE(EachExport, wq_test::Analyses, wq_test::NameOfAnalysis);

TYPED_TEST(EachExport, aFullDiskIsReported)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    this->each([](const char* name, auto&& write) { EXPECT_FALSE(write("/dev/full")) << name; });
}

TYPED_TEST(EachExport, anUnwritablePathIsReportedAndLeavesNothingBehind)
{
    const TempFolder folder;
    const std::string file = folder.write("file", "stays");
    this->each([&](const char* name, auto&& write) {
        for (const std::string& path :
             {folder.path("missing/export.txt"), folder.path(""), file + "/export.txt", std::string(), std::string("/proc/no/export.txt")})
            EXPECT_FALSE(write(path)) << name << " to " << path;
    });
    EXPECT_EQ(contentOf(file), "stays");
    std::filesystem::remove(file);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("")));
}

TYPED_TEST(EachExport, anExistingFileIsReplaced)
{
    const TempFolder folder;
    this->each([&](const char* name, auto&& write) {
        SCOPED_TRACE(name);
        const std::string path = folder.write("export.txt", std::string(5000, 'x'));
        ASSERT_TRUE(write(path));
        const std::string first = contentOf(path);
        EXPECT_THAT(first, ::testing::StartsWith("# a comment\n"));
        EXPECT_EQ(first.find("xxx"), std::string::npos);
        EXPECT_EQ(first.back(), '\n');
        ASSERT_TRUE(write(path));
        EXPECT_EQ(contentOf(path), first);
    });
}

TEST(Exports, aLargeExportOnAFullDiskIsReported)  // more than any buffer holds
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    BasicStatistics sample;
    BasicXyStatistics pairs;
    for (int i = 0; i < 100000; ++i) sample.add(i), pairs.add(i, -i);
    EXPECT_FALSE(sample.exportToR("/dev/full", ""));
    EXPECT_FALSE(pairs.exportToR("/dev/full", ""));
    EXPECT_TRUE(sample.exportToR("/dev/null", ""));
    EXPECT_TRUE(pairs.exportToR("/dev/null", ""));
}

// ---------------------------------------------------------------- read by R

namespace {

struct Frame {
    std::vector<std::string> names;
    std::vector<std::vector<std::string>> rows;

    double number(std::size_t row, std::size_t column) const
    {
        const std::string& text = rows.at(row).at(column);
        if (text == "NaN") return NaN;
        if (text == "Inf") return infinity;
        if (text == "-Inf") return -infinity;
        return std::stod(text);
    }
};

// The data frame that R reads; its cells come with a separator that no file holds.
Frame readByR(const std::string& path, bool header, bool fill)
{
    const TempFolder folder;
    const std::string script = folder.write("read.R", R"(
args <- commandArgs(TRUE)
d <- read.table(args[1], header = as.logical(args[2]), sep = "\t", quote = "\"", comment.char = "#", fill = as.logical(args[3]),
                check.names = FALSE, stringsAsFactors = FALSE)
text <- function(cell) if (is.character(cell)) cell else if (is.na(cell) && !is.nan(cell)) "NA" else sprintf("%.17g", cell)
cat(names(d), sep = "\001"); cat("\002")
for (i in seq_len(nrow(d))) { cat(vapply(d[i, , drop = FALSE], text, ""), sep = "\001"); cat("\002") }
)");
    const std::string command =
        "Rscript --vanilla '" + script + "' '" + path + "' " + (header ? "TRUE " : "FALSE ") + (fill ? "TRUE" : "FALSE");
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
    const int status = pclose(pipe);
    EXPECT_EQ(status, 0) << "R could not read " << contentOf(path);

    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> row(1);
    for (const char c : output) {
        if (c == '\1') {
            row.emplace_back();
        } else if (c == '\2') {
            rows.push_back(row);
            row.assign(1, "");
        } else {
            row.back() += c;
        }
    }
    Frame frame;
    if (!rows.empty()) frame.names = rows.front(), frame.rows.assign(rows.begin() + 1, rows.end());
    return frame;
}

// Equal to the number of decimals that the file holds.
void expectPrinted(double read, double value, int decimals)
{
    if (std::isnan(value)) {
        EXPECT_TRUE(std::isnan(read)) << read;
    } else if (std::isinf(value)) {
        EXPECT_EQ(read, value);
    } else {
        EXPECT_NEAR(read, value, 0.5000001 * std::pow(10.0, -decimals) + 2e-16 * std::fabs(value));
    }
}

const char* const troublesomeComment = "made up\n\nwith \"quotes\", it's\ttabs and # marks\n";

}  // namespace

TEST(ExportsReadByR, oneSample)
{
    WQ_SKIP_WITHOUT_R();
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    const std::vector<double> values = {2.5, -1.0 / 3.0, 1e10, 1e-9, 0.0, -0.0, 123456.789012345678, infinity, -infinity, NaN, 1e300};
    BasicStatistics sample;
    sample.copyFrom(values);
    for (const bool analysed : {false, true}) {
        SCOPED_TRACE(analysed);
        if (analysed) sample.analyse();
        ASSERT_TRUE(sample.exportToR(path, troublesomeComment));
        const Frame frame = readByR(path, true, false);
        EXPECT_EQ(frame.names, (std::vector<std::string>{"DATA"}));
        ASSERT_EQ(frame.rows.size(), values.size());
        for (std::size_t i = 0; i < values.size(); ++i) expectPrinted(frame.number(i, 0), sample.getDataPoint(i), 12);
    }
}

TEST(ExportsReadByR, oneSampleTrimmed)
{
    WQ_SKIP_WITHOUT_R();
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    BasicStatistics sample;
    ASSERT_TRUE(sample.readDataFile(shipped("cavendish.txt")));
    sample.setHead(0.1);
    sample.setTail(0.1);
    ASSERT_TRUE(sample.analyse());
    ASSERT_TRUE(sample.exportToR(path, sample.getComment()));
    const Frame frame = readByR(path, true, false);
    ASSERT_EQ(frame.rows.size(), 24u);  // 29 less 3 and 2
    double sum = 0.0;
    for (std::size_t i = 0; i < 24; ++i) sum += frame.number(i, 0);
    EXPECT_NEAR(sum / 24, sample.getResult().mean, 1e-12);
}

TEST(ExportsReadByR, columnNames)
{
    WQ_SKIP_WITHOUT_R();
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    for (const std::string name : {"length", "length [mm]", "a \"b\"", "a\tb", "n#", "it's", "1st", "\xC3\xA4"}) {
        SCOPED_TRACE(name);
        BasicStatistics sample;
        sample.copyFrom({3, 1, 2});
        sample.clearColumnNames();
        sample.addColumnName(name);
        ASSERT_TRUE(sample.exportToR(path, ""));
        const Frame frame = readByR(path, true, false);
        EXPECT_EQ(frame.names, std::vector<std::string>{name});
        ASSERT_EQ(frame.rows.size(), 3u);
        EXPECT_EQ(frame.number(0, 0), 3.0);
    }
}

TEST(ExportsReadByR, pairs)
{
    WQ_SKIP_WITHOUT_R();
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    BasicXyStatistics pairs;
    ASSERT_TRUE(pairs.readDataFile(shipped("nist_norris.txt")));
    pairs.add(NaN, -infinity);
    pairs.add(1e15 / 7, -1e-7);
    ASSERT_TRUE(pairs.exportToR(path, troublesomeComment));
    const Frame frame = readByR(path, true, false);
    EXPECT_EQ(frame.names, (std::vector<std::string>{"X", "Y"}));
    ASSERT_EQ(frame.rows.size(), 38u);
    for (std::size_t i = 0; i < 38; ++i) {
        expectPrinted(frame.number(i, 0), pairs.getDataPair(i).x, 6);
        expectPrinted(frame.number(i, 1), pairs.getDataPair(i).y, 6);
    }

    pairs.setHead(0.1);  // 38 pairs: 4 ... 34
    pairs.setTail(0.1);
    pairs.analyse();
    ASSERT_TRUE(pairs.exportToR(path, ""));
    const Frame trimmed = readByR(path, true, false);
    ASSERT_EQ(trimmed.rows.size(), 31u);
    EXPECT_EQ(trimmed.number(0, 0), pairs.getDataPair(4).x);
    EXPECT_EQ(trimmed.number(30, 1), pairs.getDataPair(34).y);
}

TEST(ExportsReadByR, pairsOfADerivedAnalysis)
{
    WQ_SKIP_WITHOUT_R();
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    GoodnessOfFit peas;
    ASSERT_TRUE(peas.readDataFile(shipped("mendel_peas.txt")));
    peas.clearColumnNames();
    peas.addColumnName("observed");
    peas.addColumnName("expected by 9:3:3:1");
    ASSERT_TRUE(peas.analyse());
    ASSERT_TRUE(peas.exportToR(path, peas.getComment()));
    const Frame frame = readByR(path, true, false);
    EXPECT_EQ(frame.names, (std::vector<std::string>{"observed", "expected by 9:3:3:1"}));
    ASSERT_EQ(frame.rows.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(frame.number(i, 0), peas.getDataPair(i).x);
        EXPECT_EQ(frame.number(i, 1), peas.getDataPair(i).y);
    }
}

TEST(ExportsReadByR, groupsWithEachObservationInItsOwnCell)
{
    WQ_SKIP_WITHOUT_R();
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    SingleAnova anova;
    const std::vector<std::vector<double>> groups = {{10, 12.5, -0.25}, {20}, {1.0 / 3.0, 2, 3, 4, 5.00005}, {NaN, infinity, 1e9}};
    for (std::size_t g = 0; g < groups.size(); ++g)
        for (const double y : groups[g]) anova.add(100.0 + static_cast<double>(g), y);
    anova.createSeries();
    anova.analyse();
    ASSERT_TRUE(anova.exportToR(path, troublesomeComment));
    const Frame frame = readByR(path, false, true);
    ASSERT_EQ(frame.rows.size(), groups.size());
    ASSERT_EQ(frame.names.size(), 6u);  // the number of the group and its observations, filled up with NA
    for (std::size_t g = 0; g < groups.size(); ++g) {
        SCOPED_TRACE(g);
        EXPECT_EQ(frame.number(g, 0), static_cast<double>(g));
        for (std::size_t j = 0; j < 5; ++j) {
            if (j < groups[g].size()) {
                expectPrinted(frame.number(g, j + 1), groups[g][j], 4);
            } else {
                EXPECT_EQ(frame.rows[g][j + 1], "NA");
            }
        }
    }
}

TEST(ExportsReadByR, groupsOfAFile)
{
    WQ_SKIP_WITHOUT_R();
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    SingleAnova anova;
    ASSERT_TRUE(anova.readDataFile(shipped("nist_sirstv.txt")));
    anova.createSeries();
    anova.analyse();
    ASSERT_TRUE(anova.exportToR(path, anova.getComment()));
    const Frame frame = readByR(path, false, true);
    ASSERT_EQ(frame.rows.size(), 5u);
    for (std::size_t g = 0; g < 5; ++g) {
        ASSERT_EQ(frame.rows[g].size(), 6u);
        for (std::size_t j = 0; j < 5; ++j) expectPrinted(frame.number(g, j + 1), anova.getGroups()[g].observations[j], 4);
    }
}

TEST(ExportsReadByR, frequencyTable)
{
    WQ_SKIP_WITHOUT_R();
    const TempFolder folder;
    const std::string path = folder.path("table.txt");
    Frequency frequency;
    ASSERT_TRUE(frequency.readDataFile(shipped("cavendish.txt")));
    ASSERT_TRUE(frequency.autoClassWidth(7));
    ASSERT_TRUE(frequency.initFrequency(7));
    frequency.buildTable();
    ASSERT_TRUE(frequency.analyse());
    ASSERT_TRUE(frequency.exportTable(path, troublesomeComment));
    const Frame frame = readByR(path, true, false);
    EXPECT_EQ(frame.names, (std::vector<std::string>{"class", "start", "end", "mid", "observed", "rate"}));
    ASSERT_EQ(frame.rows.size(), 7u);
    double counted = 0.0;
    for (std::size_t j = 0; j < 7; ++j) {
        SCOPED_TRACE(j);
        const double start = 4.88 + static_cast<double>(j) * (5.85 - 4.88) / 7;
        EXPECT_EQ(frame.number(j, 0), static_cast<double>(j));
        expectPrinted(frame.number(j, 1), start, 6);
        expectPrinted(frame.number(j, 2), start + (5.85 - 4.88) / 7, 6);
        expectPrinted(frame.number(j, 3), start + (5.85 - 4.88) / 14, 6);
        EXPECT_EQ(frame.number(j, 4), static_cast<double>(frequency.getTable()[j].count));
        expectPrinted(frame.number(j, 5), frequency.getTable()[j].rate, 6);
        counted += frame.number(j, 4);
    }
    EXPECT_EQ(counted, 28.0) << "the largest of 29 values is not counted";

    ASSERT_TRUE(frequency.exportToR(path, "")) << "the sample itself";
    EXPECT_EQ(readByR(path, true, false).rows.size(), 29u);
}
