// Whatever locale the host sets, the library writes and reads numbers with a point and without grouping.
#include <wq_report/csv_report.h>
#include <wq_stat/wq_stat.h>

#include <gtest/gtest.h>

#include <locale.h>

#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <locale>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "support/analyses.h"
#include "support/console.h"
#include "support/files.h"

using namespace wq_lib;
using wq_test::contentOf;
using wq_test::isPaired;
using wq_test::printed;
using wq_test::TempFolder;

// With LOCPATH set, the C library's setlocale keeps a copy of it at each call.
extern "C" const char* __lsan_default_suppressions() { return "leak:argz_add_sep\n"; }

namespace {

// Digits grouped as in 1.234.567,5.
class CommaPunctuation : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
    std::string do_truename() const override { return "wahr"; }
    std::string do_falsename() const override { return "falsch"; }
};

// Sets a locale for the C++ streams, std::cout among them, as long as it lives; named ones hold for the C library too.
class GlobalLocale {
public:
    explicit GlobalLocale(const std::locale& locale)
        : languageBefore(std::setlocale(LC_ALL, nullptr)),
          before(std::locale::global(locale)),
          coutBefore(std::cout.imbue(locale))
    {
    }
    ~GlobalLocale()
    {
        std::cout.imbue(coutBefore);
        std::locale::global(before);
        std::setlocale(LC_ALL, languageBefore.c_str());
    }
    GlobalLocale(const GlobalLocale&) = delete;
    GlobalLocale& operator=(const GlobalLocale&) = delete;

private:
    std::string languageBefore;
    std::locale before;
    std::locale coutBefore;
};

// The German locale, where it is installed.
std::optional<std::locale> german()
{
    if (const char* const path = std::getenv("WQ_TEST_LOCPATH")) setenv("LOCPATH", path, 1);
    try {
        return std::locale("de_DE.UTF-8");
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

#define WQ_SKIP_WITHOUT(locale)                                                                                                            \
  if (!(locale)) GTEST_SKIP() << "the locale de_DE.UTF-8 is not installed and WQ_TEST_LOCPATH names no folder that holds it"

std::string bits(double x)
{
    std::uint64_t word;
    std::memcpy(&word, &x, sizeof word);
    char text[20];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(word));
    return text;
}

// ---- everything that an analysis prints, writes and holds

const std::string valuesFile = "# Werte 1.234,5\n1234.5\n1,5\n1.234,5\n0x1.8p1\n  +2.5e3 kg\n1e-3\n12345678.25\n<<\n";
const std::string pairsFile = "# Paare\n1.5;1234.5\n2,5|2,5\n3:0x1.8p1\n2.5:1.234,5\n3.5;1e4\n4.25;5000\n1.25:7\n";
const std::string seriesFile = "1.5:1234.5:2\n1.5:2,5\n2.5;3.5;3\n2.5;1.000.000\n3.5|0x1.8p1|1.000\n4.5:7.5:2\n";

template <typename Analysis>
void fill(Analysis& analysis)
{
    for (int i = 0; i < 1500; ++i) {
        const double x = 1000.0 + 0.25 * (i * 37 % 1500);
        if constexpr (std::is_same_v<Analysis, Circular>)
            analysis.add(i % 36 + 1, 1500.5 + i % 7);
        else if constexpr (std::is_base_of_v<SingleAnova, Analysis>)
            analysis.add(1000.5 + i % 4, 2.5 * (i % 4) * 1000 + i % 11);
        else if constexpr (std::is_base_of_v<GoodnessOfFit, Analysis>)
            analysis.add(1000 + i % 13, 1005.5 + i % 5);
        else if constexpr (isPaired<Analysis>)
            analysis.add(x, 2.5 * x + i % 17);
        else
            analysis.add(x);
    }
}

template <typename Analysis>
std::string everything()
{
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    std::string text;

    Analysis read;
    read.readDataFile(folder.write("data.txt", isPaired<Analysis> ? pairsFile : valuesFile));
    text += read.getComment() + "\n";
    for (std::size_t i = 0; i < read.getSampleSize(); ++i) {
        if constexpr (isPaired<Analysis>)
            text += bits(read.getDataPair(i).x) + " " + bits(read.getDataPair(i).y) + "\n";
        else
            text += bits(read.getDataPoint(i)) + "\n";
    }
    text += printed([&] { read.listData(0, 100); });

    Analysis analysis;
    fill(analysis);
    analysis.setComment("Kommentar");
    analysis.setNullHypothesis(1234.5);
    analysis.setSignificance(0.025);
    if constexpr (std::is_base_of_v<SingleAnova, Analysis>) analysis.createSeries();
    if constexpr (std::is_base_of_v<KolmogorovSmirnov2, Analysis>) analysis.cumulative();
    if constexpr (std::is_base_of_v<Circular, Analysis>) {
        analysis.setDataType(BIN_NUMBERS);
        analysis.setBins(36);
        analysis.setBin0(1234);
    }
    if constexpr (std::is_base_of_v<Frequency, Analysis>) {
        analysis.autoClassWidth(3);
        analysis.initFrequency(3);
        analysis.buildTable();
    }
    analysis.analyse();
    if constexpr (std::is_base_of_v<TwoSamples, Analysis>) {
        analysis.BasicStatistics::analyse();
        BasicStatistics second;
        fill(second);
        second.setHead(0.2);
        second.analyse();
        analysis.setSecondSample(second.getResult());
        analysis.analyse();
    }
    text += printed([&] { analysis.reportConsole(); });
    text += printed([&] { analysis.listData(0, 5); });
    if constexpr (std::is_base_of_v<SingleAnova, Analysis>) text += printed([&] { analysis.testResults(); });
    if constexpr (std::is_base_of_v<KolmogorovSmirnov2, Analysis>) text += printed([&] { analysis.listFrequencies(); });
    if constexpr (std::is_base_of_v<Regression, Analysis>) text += analysis.writeRegressionResult();
    analysis.exportToR(path, "Kommentar");
    text += contentOf(path);
    if constexpr (std::is_base_of_v<Frequency, Analysis>) {
        analysis.exportTable(path, "Kommentar");
        text += contentOf(path);
    }
    if constexpr (std::is_base_of_v<LinearRegressionMultiY, Analysis>) {
        LinearRegressionMultiY series;
        series.readSeriesFile(folder.write("series.txt", seriesFile));
        for (std::size_t i = 0; i < series.getSampleSize(); ++i)
            text += bits(series.getDataPair(i).x) + " " + bits(series.getDataPair(i).y) + "\n";
    }
    return text;
}

// The texts are compared line by line, so that a difference is seen at once.
void expectSameText(const std::string& text, const std::string& expected)
{
    std::istringstream lines(text), expectedLines(expected);
    std::string line, expectedLine;
    for (int number = 1; std::getline(expectedLines, expectedLine); ++number) {
        ASSERT_TRUE(std::getline(lines, line)) << "the text ends before line " << number << ", " << expectedLine;
        ASSERT_EQ(line, expectedLine) << "line " << number;
    }
    EXPECT_EQ(text, expected);
}

}  // namespace

template <typename Analysis>
class UnderAnyLocale : public ::testing::Test {
};

TYPED_TEST_SUITE(UnderAnyLocale, wq_test::Analyses, wq_test::NameOfAnalysis);

TYPED_TEST(UnderAnyLocale, commaFacetChangesNothing)
{
    const std::string expected = everything<TypeParam>();
    ASSERT_GT(expected.size(), 10000u);
    const GlobalLocale comma(std::locale(std::locale::classic(), new CommaPunctuation));
    std::ostringstream proof;
    proof << 1234567.5 << ' ' << 1000;
    ASSERT_EQ(proof.str(), "1,23457e+06 1.000") << "the facet has no effect on streams";
    expectSameText(everything<TypeParam>(), expected);
}

TYPED_TEST(UnderAnyLocale, germanChangesNothing)
{
    const std::string expected = everything<TypeParam>();
    const std::optional<std::locale> locale = german();
    WQ_SKIP_WITHOUT(locale);
    const GlobalLocale global(*locale);
    char proof[20];
    std::snprintf(proof, sizeof proof, "%.1f", 2.5);
    ASSERT_STREQ(proof, "2,5") << "the locale has no effect on the C library";
    ASSERT_EQ(std::strtod("1,5", nullptr), 1.5);
    expectSameText(everything<TypeParam>(), expected);
}

TYPED_TEST(UnderAnyLocale, germanOfTheThreadChangesNothing)  // POSIX has one for each thread, which goes before setlocale's
{
    const std::string expected = everything<TypeParam>();
    WQ_SKIP_WITHOUT(german());
    const locale_t language = newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
    ASSERT_NE(language, nullptr);
    const locale_t before = uselocale(language);
    char proof[20];
    std::snprintf(proof, sizeof proof, "%.1f", 2.5);
    const std::string text = everything<TypeParam>();
    EXPECT_EQ(uselocale(before), language) << "the host's stays";
    freelocale(language);
    ASSERT_STREQ(proof, "2,5") << "the locale has no effect on the C library";
    expectSameText(text, expected);
}

// The figures themselves, so that equal texts cannot be equally wrong.
TEST(Locale, knownTexts)
{
    const auto check = [] {
        const TempFolder folder;
        BasicStatistics sample;
        ASSERT_TRUE(sample.readDataFile(folder.write("data.txt", "1234.5\n1,5\n1.234,5\n1e4\n")));
        EXPECT_EQ(printed([&] { sample.listData(0, 9); }), "DATA\n1234.500000\n1.000000\n1.234000\n10000.000000\n--------------------\n");
        ASSERT_TRUE(sample.exportToR(folder.path("export.txt"), ""));
        EXPECT_EQ(contentOf(folder.path("export.txt")), "#\nDATA\n1234.500000000000\n1.000000000000\n1.234000000000\n10000.000000000000\n");

        struct Writer : CsvReport {
            using WriteFile::stream;
        } file;
        std::string path = folder.path("table.csv");
        file.setFileName(path);
        ASSERT_TRUE(file.fileOpen());
        file.cell(1234567, true), file.cell(1234567.5, 2, false), file.writeEol();
        file.setPrecision(3);
        file.stream << 1234567.5 << ' ' << 1234567;
        ASSERT_TRUE(file.fileClose());
        EXPECT_EQ(contentOf(path), "1234567,1234567.50\n1234567.500 1234567");
    };
    check();
    {
        const GlobalLocale comma(std::locale(std::locale::classic(), new CommaPunctuation));
        check();
    }
    const std::optional<std::locale> locale = german();
    WQ_SKIP_WITHOUT(locale);
    const GlobalLocale global(*locale);
    check();
}

TEST(Locale, setWhileAFileIsOpen)
{
    const TempFolder folder;
    std::string path = folder.path("table.csv");
    CsvReport file;
    file.setFileName(path);
    ASSERT_TRUE(file.fileOpen());
    file.cell(1234.5, 1, true);
    {
        const GlobalLocale comma(std::locale(std::locale::classic(), new CommaPunctuation));
        file.cell(1234.5, 1, true);
        file.cell(123456, false);
        EXPECT_TRUE(file.fileClose());
    }
    EXPECT_EQ(contentOf(path), "1234.5,1234.5,123456");
}

TEST(Locale, tooSmallAndTooLargeNumbersThrowAsEver)
{
    const auto check = [] {
        const TempFolder folder;
        for (const char* line : {"1e400\n", "1e-310\n"}) {
            BasicStatistics sample;
            EXPECT_THROW(sample.readDataFile(folder.write("data.txt", line)), std::out_of_range) << line;
        }
        for (const char* line : {",5\n",
                                 "\xC2\xA0"
                                 "5\n",
                                 "-,5\n"}) {
            BasicStatistics sample;
            EXPECT_THROW(sample.readDataFile(folder.write("data.txt", line)), std::invalid_argument) << line;
        }
    };
    check();
    const std::optional<std::locale> locale = german();
    WQ_SKIP_WITHOUT(locale);
    const GlobalLocale global(*locale);
    check();
}

TEST(Locale, theLocaleOfTheHostStays)
{
    const std::optional<std::locale> locale = german();
    WQ_SKIP_WITHOUT(locale);
    const GlobalLocale global(*locale);
    everything<BasicStatistics>();
    everything<LinearRegressionMultiY>();
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "de_DE.UTF-8");
    EXPECT_EQ(std::cout.getloc().name(), "de_DE.UTF-8");
    EXPECT_EQ(std::locale().name(), "de_DE.UTF-8");
}
