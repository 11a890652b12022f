// What holds for the objects of every analysis class: empty and tiny samples, settings of all kinds, what persists, copies.
#include <wq_stat/wq_stat.h>
#include <wq_udf/console.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iomanip>
#include <ios>
#include <iostream>
#include <limits>
#include <locale>
#include <map>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"
#include "support/object_lives.h"

using namespace wq_lib;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using wq_test::AnyClass;
using wq_test::AnyObject;
using wq_test::columns;
using wq_test::contentOf;
using wq_test::everyClass;
using wq_test::fill;
using wq_test::forEveryClass;
using wq_test::isPaired;
using wq_test::prepare;
using wq_test::printed;
using wq_test::printedToError;
using wq_test::TempFolder;
using wq_test::told;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = 1.7976931348623157e308;
constexpr double smallest = 2.2250738585072014e-308;
constexpr std::size_t last = static_cast<std::size_t>(-1);

// ---------------------------------------------------------------- records in their state before an analysis

// All but the significance level and reserved1, which a reset leaves.
void expectReset(const basic_stat& r)
{
    EXPECT_EQ(r.n, 0u);
    EXPECT_SAME_BITS(r.min, largest);
    EXPECT_SAME_BITS(r.max, smallest);
    for (const double value :
         {r.mean, r.geoMean, r.harmMean, r.median, r.quartile1, r.quartile3, r.reserved2, r.sum, r.variance, r.sampleVariance, r.stdev,
          r.sampleStdev, r.stdError, r.cv, r.sumOfSquares, r.confidenceLimits.getLower(), r.confidenceLimits.getUpper()})
        EXPECT_SAME_BITS(value, 0.0);
}

void expectColumns(const BasicStatistics& object, const std::vector<std::string>& names)
{
    for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(object.getColumnName(static_cast<int>(i)), names[i]);
}

}  // namespace

// ---------------------------------------------------------------- before any analysis

namespace {

/** What objects tell that are built on memory full of one byte: of three sizes, not analysed and analysed. */
template <typename T>
void tellBuiltOn(int byte, const TempFolder& folder, std::vector<std::string>& texts)
{
    for (const std::size_t n : {0u, 1u, 5u}) {
        for (const bool analysed : {false, true}) {
            alignas(T) std::array<unsigned char, sizeof(T)> memory;
            std::memset(memory.data(), byte, sizeof(T));
            T* const object = new (memory.data()) T;
            fill(*object, n);
            if (analysed) object->analyse();
            texts.push_back(told(*object, folder));
            object->~T();
        }
    }
}

void expectThreeTimesTheSame(const std::vector<std::string>& texts)
{
    ASSERT_EQ(texts.size(), 18u);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(texts[i], texts[i + 6]);
        EXPECT_EQ(texts[i], texts[i + 12]);
    }
}

}  // namespace

TEST(LifeCycle, newObjectsHaveNoIndeterminateValue)  // built on memory that was full of other things
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        SCOPED_TRACE(c.name);
        std::vector<std::string> texts;
        for (const int byte : {0x00, 0xA5, 0xFF}) tellBuiltOn<typename decltype(c)::type>(byte, folder, texts);
        expectThreeTimesTheSame(texts);
    });
}

TEST(LifeCycle, settingsOfANewObject)
{
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> held = c.make();
        const BasicStatistics& object = held->root();
        for (const double value : {object.getHead(), object.getTail(), object.getNullHypothesis()}) EXPECT_SAME_BITS(value, 0.0);
        for (const std::size_t value : {object.getSampleSize(), object.getDataStart(), object.getDataEnd()}) EXPECT_EQ(value, 0u);
        EXPECT_SAME_BITS(object.getSignificance(), 0.05);
        EXPECT_SAME_BITS(object.getConfidence(), 0.95);
        EXPECT_FALSE(object.isNegative());
        EXPECT_FALSE(object.isSorted());
        EXPECT_EQ(object.getDataFile(), "");
        EXPECT_EQ(object.getComment(), "");
        expectColumns(object, c.columns);
        expectReset(object.getResult());
        if (c.paired) {
            const xy_stat& r = *held->xyResult();
            expectReset(r.x);
            expectReset(r.y);
            EXPECT_SAME_BITS(r.sumProducts, 0.0);
            EXPECT_SAME_BITS(r.covariance, 0.0);
        }
    }
}

TEST(LifeCycle, reportsBeforeAnyAnalysisAreComplete)
{
    const std::map<std::string, std::string> firstLines = {
        {"BasicStatistics", "BASIC STATISTICS"},
        {"TwoSamples", "TEST VARIANCES OF TWO SAMPLES"},
        {"Frequency", "FREQUENCY CLASSES"},
        {"BasicXyStatistics", "BASIC XY STATISTICS"},
        {"Regression", ""},
        {"LinearRegression", "LINEAR REGRESSION ANALYSIS"},
        {"LogarithmicRegression", "LOGARITHMIC REGRESSION ANALYSIS"},
        {"ExponentialRegression", "EXPONENTIAL REGRESSION ANALYSIS"},
        {"PowerRegression", "POWER REGRESSION ANALYSIS"},
        {"Correlation", "CORRELATION ANALYSIS"},
        {"SingleAnova", "Single Classification Anova"},
        {"LinearRegressionMultiY", "\nLINEAR REGRESSION MULTI Y ANALYSIS"},
        {"GoodnessOfFit", "GOODNESS OF FIT STATISTICS"},
        {"KolmogorovSmirnov2", "KOLMOGOROV-SMIRNOV TWO SAMPLE TEST"},
        {"Circular", "RAYLEIGH'S STATISTICS"},
    };
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> held = c.make();
        BasicStatistics& object = held->root();
        const std::string text = printed([&] { object.reportConsole(); }), title = firstLines.at(c.name);
        if (title.empty()) {
            EXPECT_EQ(text, "") << "the common base of the regressions prints nothing";
            continue;
        }
        EXPECT_EQ(text.substr(0, title.size() + 72), title + "\n" + std::string(70, '=') + "\n");
        EXPECT_EQ(text.back(), '\n');
    }
}

// ---------------------------------------------------------------- empty and tiny samples

TEST(LifeCycle, analyseOfEmptyAndTinySamples)
{
    // the smallest sample that is analysed, where analyse() is not always true
    const std::map<std::string, std::size_t> needed = {
        {"BasicStatistics", 3}, {"BasicXyStatistics", 2}, {"LinearRegression", 2}, {"Correlation", 2}};
    const TempFolder folder;
    for (const AnyClass& c : everyClass()) {
        const std::size_t from = needed.count(c.name) == 0 ? 0 : needed.at(c.name);
        for (std::size_t n = 0; n <= 4; ++n) {
            for (const bool ready : {false, true}) {
                SCOPED_TRACE(std::string(c.name) + " of " + std::to_string(n) + (ready ? ", prepared" : ", not prepared"));
                const std::unique_ptr<AnyObject> held = c.make();
                BasicStatistics& object = held->root();
                held->fill(n);
                if (ready) held->prepare();
                EXPECT_EQ(object.analyse(), n >= from);
                held->told(folder);  // quantiles sort, exports correct the end of the range
                const std::string once = held->told(folder);
                EXPECT_FALSE(once.empty());
                EXPECT_EQ(held->told(folder), once);
                if (n < from) expectReset(c.paired ? held->xyResult()->x : object.getResult());
            }
        }
    }
}

TEST(LifeCycle, acceptH0OfEmptyAndTinySamples)
{
    // before any analysis, without data, with one observation; by hand from the definitions
    struct Row {
        bool before, empty, one;
        const char* why;
    };
    const std::map<std::string, Row> expected = {
        {"BasicStatistics", {false, false, false, "t is NaN"}},
        {"Frequency", {false, false, false, "t is NaN"}},
        {"TwoSamples", {false, false, false, "neither 0 > 0 nor NaN > NaN"}},
        {"GoodnessOfFit", {true, true, false, "0 below the critical value, which is huge without and 0 with one class"}},
        {"KolmogorovSmirnov2", {true, true, true, "no critical value, but D is 0"}},
        {"Circular", {false, false, true, "p is 0, 0, and 0.512 for one angle"}},
    };
    const Row inherited = {false, false, false, "t of the univariate sample, which stays empty"};
    for (const AnyClass& c : everyClass()) {
        const Row& row = expected.count(c.name) == 0 ? inherited : expected.at(c.name);
        SCOPED_TRACE(std::string(c.name) + ": " + row.why);
        const std::unique_ptr<AnyObject> held = c.make();
        BasicStatistics& object = held->root();
        EXPECT_EQ(object.acceptH0(), row.before);
        object.analyse();
        EXPECT_EQ(object.acceptH0(), row.empty);
        const std::unique_ptr<AnyObject> heldOne = c.make();
        BasicStatistics& one = heldOne->root();
        c.paired ? heldOne->add(1, 0) : heldOne->add(0, 1);
        one.analyse();
        EXPECT_EQ(one.acceptH0(), row.one);
    }
}

TEST(LifeCycle, listingsOfNothing)
{
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> object = c.make();
        std::string text;
        const std::string error = printedToError([&] { text = printed([&] { object->listData(0, last); }); });
        if (!c.paired) {
            EXPECT_EQ(error, "No data\n");
            EXPECT_EQ(text, "");
        } else {
            EXPECT_EQ(error, "");
            EXPECT_EQ(text, c.series ? "-\n" : c.columns[0] + " " + c.columns[1] + "\n\n");
        }
    }
}

TEST(LifeCycle, exportsOfNothingAndOfOne)
{
    const TempFolder folder;
    const std::string path = folder.path("export");
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> empty = c.make(), one = c.make();
        one->fill(1);
        EXPECT_TRUE(empty->root().exportToR(path, "c"));
        std::string header = "# c\nDATA\n", row = "2.000000000000\n";
        if (c.paired) header = "# c\n" + c.columns[0] + "\t" + c.columns[1] + "\n", row = "1.000000\t2.000000\n";
        if (c.series) header = "# c\n", row = "0\t2.0000\n";
        EXPECT_EQ(contentOf(path), header);
        one->prepare();
        EXPECT_TRUE(one->root().exportToR(path, "c"));
        EXPECT_EQ(contentOf(path), header + row);
        EXPECT_FALSE(one->root().exportToR(folder.path("no/such/folder"), "c"));
    }
}

TEST(LifeCycle, dataFilesThatAreMissing)
{
    const TempFolder folder;
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> held = c.make();
        BasicStatistics& object = held->root();
        held->fill(2);
        EXPECT_FALSE(object.readDataFile(folder.path("missing")));
        EXPECT_EQ(object.getDataFile(), folder.path("missing")) << "the name is stored all the same";
        EXPECT_FALSE(object.readDataFile()) << "the name stored before";
        EXPECT_EQ(object.getSampleSize(), 2u);
    }
}

// ---------------------------------------------------------------- settings of all kinds: nothing outside the sample is read

namespace {

/** All observations are 7 (x 3, y 7), so anything else was read from elsewhere. */
void expectOnlyTheSample(const AnyClass& c, AnyObject& held, std::size_t n, const std::string& path, bool ranged)
{
    BasicStatistics& object = held.root();
    const std::string row = c.series ? "" : c.paired ? "3.000000\t7.000000\n" : "7.000000000000\n";
    std::remove(path.c_str());  // some file systems are slow to write a file anew
    EXPECT_TRUE(object.exportToR(path, "c"));
    std::string rows = contentOf(path);
    if (!row.empty()) {
        rows.erase(0, rows.find('\n', 4) + 1);
        ASSERT_LE(rows.size(), n * row.size());
        for (std::size_t i = 0; i < rows.size(); i += row.size()) ASSERT_EQ(rows.substr(i, row.size()), row);
    }
    std::string listing;
    printedToError([&] { listing = printed([&] { held.listData(0, last); }); });
    if (!c.series) {
        EXPECT_EQ(listing.find_first_of("124568", listing.find('\n')), std::string::npos) << listing;
    }
    for (const double mean : {object.geometricMean(0, last), object.geometricMean(2, 1000), object.geometricMean(last, last)})
        EXPECT_TRUE(std::isnan(mean) || std::fabs(mean - 7.0) < 1e-14) << mean;
    if (!c.paired) {
        for (const double value : {object.median(), object.quartile(1), object.quartile(3), object.quantile(5, 4), object.quantile(-1, 4),
                                   object.quantile(NaN, 4), object.quantile(1e300, 4), object.quantile(1, 0), object.quantile(1, last)})
            EXPECT_TRUE(std::isnan(value) || value == 7.0) << value;
    }
    if (ranged) {
        object.analyse();
        const basic_stat* results[] = {&object.getResult(), nullptr, nullptr};
        if (c.paired) {
            results[1] = &held.xyResult()->x;
            results[2] = &held.xyResult()->y;
        }
        for (const basic_stat* r : results) {
            if (r == nullptr || r->n == 0) continue;
            EXPECT_LE(r->n, n);
            EXPECT_EQ(r->min, r == results[1] ? 3.0 : 7.0);
            EXPECT_EQ(r->max, r == results[1] ? 3.0 : 7.0);
        }
    }
    object.acceptH0();
    EXPECT_EQ(printed([&] { object.reportConsole(); }).empty(), std::string(c.name) == "Regression");
    printed([&] { held.printMore(); });
}

void expectOnlyTheSampleWhateverIsSet(const AnyClass& c, const std::string& path)
{
    const double fractions[] = {0.0, 0.3, 1.0, 1.5, -1.0, 1e300, NaN, infinity, -infinity};
    const std::size_t indices[] = {0, 1, 4, 5, 1000, last - 1, last};
    for (const std::size_t n : {0u, 1u, 2u, 5u}) {
        const auto sample = [&] {
            std::unique_ptr<AnyObject> held = c.make();
            for (std::size_t i = 0; i < n; ++i) held->add(3, 7);
            return held;
        };
        for (const double head : fractions) {
            for (const double tail : fractions) {
                SCOPED_TRACE(std::string(c.name) + " of " + std::to_string(n) + ", head " + std::to_string(head) + ", tail " +
                             std::to_string(tail));
                const std::unique_ptr<AnyObject> held = sample();
                BasicStatistics& object = held->root();
                object.setHead(head);
                object.setTail(tail);
                held->prepare();
                object.analyse();
                held->prepare();
                expectOnlyTheSample(c, *held, n, path, true);
                if (::testing::Test::HasFailure()) return;
            }
        }
        for (const std::size_t start : indices) {
            for (const std::size_t end : indices) {
                SCOPED_TRACE(std::string(c.name) + " of " + std::to_string(n) + ", range " + std::to_string(start) + " to " +
                             std::to_string(end));
                const std::unique_ptr<AnyObject> held = sample();
                BasicStatistics& object = held->root();
                object.setDataStart(start);
                object.setDataEnd(end);
                held->prepare();
                expectOnlyTheSample(c, *held, n, path, false);
                if (::testing::Test::HasFailure()) return;
            }
        }
        for (const std::size_t size : indices) {
            SCOPED_TRACE(std::string(c.name) + " of " + std::to_string(n) + ", size set to " + std::to_string(size));
            const std::unique_ptr<AnyObject> held = sample();
            BasicStatistics& object = held->root();
            object.setSampleSize(size);
            held->prepare();
            object.setSampleSize(size);
            expectOnlyTheSample(c, *held, n, path, true);
            if (::testing::Test::HasFailure()) return;
        }
    }
}

}  // namespace

TEST(LifeCycle, nothingOutsideTheSampleIsRead)
{
    const TempFolder folder;
    for (const AnyClass& c : everyClass()) expectOnlyTheSampleWhateverIsSet(c, folder.path("export"));
}

TEST(LifeCycle, nothingOutsideTheTableOfClassesIsTouched)
{
    const TempFolder folder;
    for (const std::size_t entries : {0u, 1u, 3u}) {
        for (const std::size_t classes : std::initializer_list<std::size_t>{0, 1, 2, 3, 4, 1000, last}) {
            SCOPED_TRACE(std::to_string(entries) + " entries, classes set to " + std::to_string(classes));
            Frequency frequency;
            fill(frequency, 10);
            frequency.autoClassWidth(3);
            frequency.initFrequency(entries);
            frequency.setClasses(classes);
            frequency.buildTable();
            EXPECT_TRUE(frequency.analyse());
            ASSERT_EQ(frequency.getTable().size(), entries);
            unsigned long long counted = 0;
            for (const frequency_class& c : frequency.getTable()) counted += c.count;
            EXPECT_LE(counted, 9u);
            const std::string text = printed([&] { frequency.reportConsole(); });
            EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4 + std::ptrdiff_t(std::min(entries, classes)));
            EXPECT_TRUE(frequency.exportTable(folder.path("table"), "c"));
            const std::string file = contentOf(folder.path("table"));
            EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 2 + std::ptrdiff_t(std::min(entries, classes)));
        }
    }
}

TEST(LifeCycle, numbersOfAllKindsAreAnalysed)
{
    const TempFolder folder;
    const std::string path = folder.path("export");
    const double kinds[] = {0.0,     -0.0,     1.0,      -1.0,      5e-324, smallest, 1e-160, 1e160,
                            largest, -largest, infinity, -infinity, NaN,    -NaN,     1e18,   9.3e18};
    for (const AnyClass& c : everyClass()) {
        for (const double first : kinds) {
            for (const double second : kinds) {
                SCOPED_TRACE(std::string(c.name) + ": " + std::to_string(first) + ", " + std::to_string(second));
                const std::unique_ptr<AnyObject> held = c.make();
                BasicStatistics& object = held->root();
                for (int i = 0; i < 3; ++i) {
                    if (c.paired)
                        held->add(first, second);
                    else
                        held->add(NaN, i == 1 ? second : first);
                }
                held->prepare();
                object.analyse();
                const std::string text = printed([&] { held->printAll(); });
                EXPECT_FALSE(text.empty());
                for (std::size_t at = text.find("-nan"); at != std::string::npos; at = text.find("-nan", at + 1)) {
                    EXPECT_TRUE(std::isalnum(static_cast<unsigned char>(text[at - 1]))) << text;  // limits of a class: nan-nan
                }
                std::remove(path.c_str());
                EXPECT_TRUE(object.exportToR(path, "c"));
                const std::string file = contentOf(path);
                EXPECT_EQ(file.find("nan"), std::string::npos) << file;
                EXPECT_EQ(file.find("inf"), std::string::npos) << file;
            }
        }
    }
}

// ---------------------------------------------------------------- what persists

TEST(LifeCycle, commentsAreAppended)
{
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> held = c.make();
        BasicStatistics& object = held->root();
        object.setComment("one");
        object.setComment(", two");
        object.resetResult();
        object.analyse();
        EXPECT_EQ(object.getComment(), "one, two");
    }
}

TEST(LifeCycle, settingsSurviveAnAnalysis)
{
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> held = c.make();
        BasicStatistics& object = held->root();
        held->fill(10);
        object.setSignificance(0.01);
        object.setHead(0.1);
        object.setTail(0.2);
        object.setNullHypothesis(3);
        object.setHypothesisInfo("H");
        object.setNegative(true);
        held->prepare();
        object.analyse();
        object.resetResult();
        EXPECT_EQ(object.getSignificance(), 0.01);
        EXPECT_EQ(object.getHead(), 0.1);
        EXPECT_EQ(object.getTail(), 0.2);
        EXPECT_EQ(object.getNullHypothesis(), 3.0);
        EXPECT_EQ(object.getHypothesisInfo(), "H");
        EXPECT_TRUE(object.isNegative()) << "cleared only by setNegative(false)";
        EXPECT_EQ(object.getSampleSize(), 10u);
    }
}

TEST(LifeCycle, secondAnalysis)  // gives the same results, but for the classes that change or gather data
{
    const TempFolder folder;
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> held = c.make();
        BasicStatistics& object = held->root();
        held->fill(12);
        held->prepare();
        object.analyse();
        const SingleAnova* const anova = dynamic_cast<SingleAnova*>(&object);
        const SingleAnova copy = anova != nullptr ? *anova : SingleAnova();
        const std::string once = held->told(folder);
        object.analyse();
        EXPECT_EQ(anova != nullptr, c.series);
        if (anova != nullptr) {
            ASSERT_EQ(anova->getGroups().size(), copy.getGroups().size());
            for (std::size_t i = 0; i < copy.getGroups().size(); ++i) {
                const anova_group &now = anova->getGroups()[i], &then = copy.getGroups()[i];
                EXPECT_NEAR(now.sumOfSquares, 2.0 * then.sumOfSquares, 1e-14 * (1.0 + then.sumOfSquares));
                EXPECT_NEAR(now.variance, 2.0 * then.variance, 1e-14 * (1.0 + then.variance));
            }
            EXPECT_SAME_BITS(anova->getAmong().fs, copy.getAmong().fs);
        } else {
            EXPECT_EQ(held->told(folder), once);
        }
    }
}

TEST(LifeCycle, observationsAccumulate)
{
    const TempFolder folder;
    const std::string path = folder.write("data", "1;5\n2;6\n");
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> held = c.make();
        BasicStatistics& object = held->root();
        held->fill(3);
        EXPECT_TRUE(object.readDataFile(path));
        EXPECT_TRUE(object.readDataFile(path));
        EXPECT_EQ(object.getSampleSize(), 7u);
        if (c.paired) {
            auto& pairs = dynamic_cast<BasicXyStatistics&>(object);
            EXPECT_EQ(pairs.copyFrom({{1, 1}, {2, 2}}), 9u);
            EXPECT_EQ(pairs.getDataPair(4).y, 6.0);
            EXPECT_EQ(object.getDataEnd(), 8u) << "the last index";
        } else {
            EXPECT_EQ(object.copyFrom({1, 2}), 9u);
            EXPECT_EQ(object.getDataPoint(4), 2.0);
            EXPECT_EQ(object.getDataEnd(), 9u) << "one past the last index";
        }
    }
}

TEST(LifeCycle, univariateAnalysesSortTheSample)
{
    for (const auto& make : std::vector<std::function<std::unique_ptr<BasicStatistics>()>>{
             [] { return std::make_unique<BasicStatistics>(); }, [] { return std::make_unique<Frequency>(); }}) {
        const auto object = make();
        for (const double x : {3.0, NaN, 1.0, -2.0, 2.0}) object->add(x);
        object->analyse();
        EXPECT_TRUE(object->isSorted());
        const double expected[] = {-2.0, 1.0, 2.0, 3.0, NaN};
        for (std::size_t i = 0; i < 5; ++i) EXPECT_SAME_BITS(object->getDataPoint(i), expected[i]);
        object->add(0.5);
        EXPECT_FALSE(object->isSorted());
        object->analyse();
        EXPECT_SAME_BITS(object->getDataPoint(1), 0.5);
        EXPECT_TRUE(object->isNegative());
    }
}

// ---------------------------------------------------------------- copies and bases

namespace {

/** What an object and its copy tell in turn. */
struct Copies {
    std::string before, copied, afterTheCopyChanged, changed, assigned, moved;
};

template <typename T>
Copies copiesOf(const TempFolder& folder)
{
    Copies texts;
    T object;
    fill(object, 8);
    prepare(object);
    object.analyse();
    T copy = object;
    texts.before = told(object, folder);
    texts.copied = told(copy, folder);
    fill(copy, 5);
    copy.setComment("changed");
    prepare(copy);
    copy.analyse();
    texts.afterTheCopyChanged = told(object, folder);
    texts.changed = told(copy, folder);
    copy = object;
    texts.assigned = told(copy, folder);
    const T moved = std::move(copy);
    T again = moved;
    texts.moved = told(again, folder);
    return texts;
}

void expectIndependence(const Copies& texts)
{
    EXPECT_EQ(texts.copied, texts.before);
    EXPECT_EQ(texts.afterTheCopyChanged, texts.before);
    EXPECT_NE(texts.changed, texts.before);
    EXPECT_EQ(texts.assigned, texts.before);
    EXPECT_EQ(texts.moved, texts.before);
}

}  // namespace

TEST(LifeCycle, copiesAreIndependent)
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        SCOPED_TRACE(c.name);
        expectIndependence(copiesOf<typename decltype(c)::type>(folder));
    });
}

// ---------------------------------------------------------------- reports elsewhere

TEST(LifeCycle, reportsGoToAnyStream)
{
    class Commas : public std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\1"; }
    };
    for (const AnyClass& c : everyClass()) {
        SCOPED_TRACE(c.name);
        const std::unique_ptr<AnyObject> held = c.make();
        BasicStatistics& object = held->root();
        held->fill(12);
        object.setComment("comment");
        held->prepare();
        object.analyse();
        const std::string expected = printed([&] { object.reportConsole(); });
        std::ostringstream stream;
        stream.imbue(std::locale(std::locale::classic(), new Commas));
        stream << std::hex << std::showpos << std::setfill('*') << std::setw(100);
        EXPECT_EQ(printed([&] { EXPECT_EQ(&object.report(stream), &stream); }), "");
        EXPECT_EQ(stream.str(), expected);
        EXPECT_EQ(printed([&] { object.reportConsole(); }), expected) << "standard output again";

        const auto tables = [&] {
            held->listData(0, 5);
            if (auto* const anova = dynamic_cast<SingleAnova*>(&object)) anova->testResults();
            if (auto* const test = dynamic_cast<KolmogorovSmirnov2*>(&object)) test->listFrequencies();
        };
        std::ostringstream more;
        {
            const DisplayTo there(more);
            EXPECT_EQ(printed(tables), "");
        }
        EXPECT_EQ(more.str(), printed(tables));
        EXPECT_NE(more.str(), "");
    }
}

TEST(LifeCycle, aStreamTellsThatAReportDidNotReachIt)
{
    std::ofstream nowhere;
    BasicStatistics sample = wq_test::analysed<BasicStatistics>(9);
    EXPECT_FALSE(sample.report(nowhere).good());
    std::ofstream throwing;
    throwing.exceptions(std::ios::badbit);
    EXPECT_THROW(sample.report(throwing), std::ios::failure);
    EXPECT_NE(printed([&] { sample.reportConsole(); }), "") << "standard output again";
}

// ---------------------------------------------------------------- moves

namespace {

/** A host's own class, which sees where the observations lie. */
template <typename T>
struct Own : T {
    const void* address() const
    {
        if constexpr (isPaired<T>)
            return this->pairs.data();
        else
            return this->data.data();
    }

    std::string label = "a text of the host's that takes memory";
};

/** An analysed object of which no setting and no text is that of a new one. */
template <typename T>
T changedThroughout()
{
    T object = wq_test::analysed<T>(12, "comment");
    object.setHead(0.125);
    object.setTail(0.25);
    object.setSignificance(0.01);
    object.setNullHypothesis(3);
    object.setNegative(true);
    object.setDataFile("a name of a file that takes memory");
    object.setHypothesisInfo("H0");
    object.clearColumnNames();
    for (const char* const name : {"one", "two", "three", "four", "five"}) object.addColumnName(name);
    if constexpr (std::is_base_of_v<SingleAnova, T>) object.setModel(1), object.setGroups(99), object.setEqual(false);
    if constexpr (std::is_base_of_v<LinearRegressionMultiY, T>) object.setComputeRegression(!T().isComputeRegression());
    if constexpr (std::is_base_of_v<GoodnessOfFit, T>) object.setYatesCorrection(true), object.setWilliamsCorrection(false);
    if constexpr (std::is_base_of_v<Circular, T>)
        object.setDataType(DEGREES), object.setBins(8), object.setBin0(1), object.setBinName("bin"), object.computeBinSize();
    return object;
}

}  // namespace

TEST(LifeCycle, movesThrowNothing)
{
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        static_assert(std::is_nothrow_move_constructible_v<T> && std::is_nothrow_move_assignable_v<T> && std::is_nothrow_swappable_v<T>);
        static_assert(std::is_copy_constructible_v<T> && std::is_copy_assignable_v<T>);
        static_assert(!std::is_nothrow_copy_constructible_v<T> && !std::is_nothrow_copy_assignable_v<T>);
        static_assert(std::is_nothrow_move_constructible_v<Own<T>> && std::is_nothrow_move_assignable_v<Own<T>>);
    });
}

namespace {

/** States of an object that is moved, and of those that it was moved to and from. */
struct Moves {
    std::string expected, fresh, moved, source, assigned, assignedFrom, toItself;
};

template <typename T>
Moves movesOf(const TempFolder& folder)
{
    Moves states;
    const T object = changedThroughout<T>();
    states.expected = stateOf(object, folder);
    states.fresh = stateOf(T(), folder);

    T source = object;
    T moved(std::move(source));
    states.moved = stateOf(moved, folder);
    states.source = stateOf(source, folder);

    T assigned = wq_test::analysed<T>(5, "other");
    assigned = std::move(moved);
    states.assigned = stateOf(assigned, folder);
    states.assignedFrom = stateOf(moved, folder);

    T& itself = assigned;
    assigned = std::move(itself);
    states.toItself = stateOf(assigned, folder);
    return states;
}

void expectAllTaken(const Moves& states)
{
    ASSERT_NE(states.expected, states.fresh);
    EXPECT_EQ(states.moved, states.expected);
    EXPECT_EQ(states.source, states.fresh);
    EXPECT_EQ(states.assigned, states.expected);
    EXPECT_EQ(states.assignedFrom, states.fresh);
    EXPECT_EQ(states.toItself, states.expected);
}

}  // namespace

TEST(LifeCycle, aMoveTakesEverything)  // and leaves an object that is as a new one
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        SCOPED_TRACE(c.name);
        expectAllTaken(movesOf<typename decltype(c)::type>(folder));
    });
}

TEST(LifeCycle, aMovedFromObjectIsUsable)
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        SCOPED_TRACE(c.name);
        T object = changedThroughout<T>();
        const T moved(std::move(object));
        fill(object, 9);
        object.setComment("again");
        prepare(object);
        object.analyse();
        EXPECT_EQ(stateOf(object, folder), stateOf(wq_test::analysed<T>(9, "again"), folder));
        expectColumns(object, columns<T>());
    });
}

namespace {

/** Two objects, before and after they are swapped. */
struct Swap {
    struct Side {
        std::string state;
        const void* address;
        std::string label;
    };
    Side one, other, oneAfter, otherAfter;
};

template <typename T>
Swap::Side sideOf(const Own<T>& object, const TempFolder& folder)
{
    return {stateOf(static_cast<const T&>(object), folder), object.address(), object.label};
}

template <typename T>
Swap swapped(const TempFolder& folder)
{
    Own<T> one, other;
    static_cast<T&>(one) = changedThroughout<T>();
    static_cast<T&>(other) = wq_test::analysed<T>(9, "other");
    one.label = "one";
    Swap result;
    result.one = sideOf(one, folder);
    result.other = sideOf(other, folder);
    using std::swap;
    swap(one, other);
    result.oneAfter = sideOf(one, folder);
    result.otherAfter = sideOf(other, folder);
    return result;
}

void expectExchange(const Swap& swap)
{
    EXPECT_EQ(swap.oneAfter.state, swap.other.state);
    EXPECT_EQ(swap.otherAfter.state, swap.one.state);
    EXPECT_EQ(swap.oneAfter.address, swap.other.address);
    EXPECT_EQ(swap.otherAfter.address, swap.one.address);
    EXPECT_EQ(swap.otherAfter.label, "one");
}

}  // namespace

TEST(LifeCycle, swapExchangesEverything)
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        SCOPED_TRACE(c.name);
        expectExchange(swapped<typename decltype(c)::type>(folder));
    });
}

namespace {

/** Where the observations of an object lie as it is moved to another, back, and into a list that is then moved itself. */
struct Places {
    const void *first, *moved, *movedFrom, *back, *backFrom, *inAList;
    std::size_t sizeInTheList, sizeLeft;
};

template <typename T>
Places placesOf(std::size_t n)
{
    Places places;
    Own<T> object;
    if constexpr (isPaired<T>)
        object.copyFrom(std::vector<data_pair>(n));
    else
        object.copyFrom(std::vector<double>(n));
    places.first = object.address();

    Own<T> moved(std::move(object));
    places.moved = moved.address();
    places.movedFrom = object.address();
    object = std::move(moved);
    places.back = object.address();
    places.backFrom = moved.address();

    std::vector<Own<T>> list;
    list.push_back(std::move(object));
    list.reserve(list.capacity() + 1);  // elsewhere now
    places.inAList = list[0].address();
    places.sizeInTheList = list[0].getSampleSize();
    places.sizeLeft = object.getSampleSize();
    return places;
}

void expectOnePlace(const Places& places, std::size_t n)
{
    ASSERT_NE(places.first, nullptr);
    EXPECT_EQ(places.moved, places.first);
    EXPECT_EQ(places.movedFrom, nullptr);
    EXPECT_EQ(places.back, places.first);
    EXPECT_EQ(places.backFrom, nullptr);
    EXPECT_EQ(places.inAList, places.first);
    EXPECT_EQ(places.sizeInTheList, n);
    EXPECT_EQ(places.sizeLeft, 0u);
}

}  // namespace

TEST(LifeCycle, movesHandTheMemoryOver)
{
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        SCOPED_TRACE(c.name);
        const bool large = std::is_same_v<T, BasicStatistics> || std::is_same_v<T, BasicXyStatistics>;
        const std::size_t n = large ? 10'000'000 : 1000;
        expectOnePlace(placesOf<T>(n), n);
    });
}

namespace {

/** What an object gives to a host. */
struct Driven {
    bool read, analysed, accepted;
    double mean;
    bool exported;
    std::string report, file, reportAfterReset;
};

template <typename Object>
std::string reportOf(Object& object)
{
    const wq_test::Capture output(std::cout);
    object.reportConsole();
    return output.text();
}

/** Drives an object of class T, known as such or by its root. */
template <typename T, typename Object>
Driven drive(Object& object, const std::string& file, const std::string& path)
{
    Driven result;
    object.setComment("c");
    result.read = object.readDataFile(file);
    prepare(dynamic_cast<T&>(object));
    result.analysed = object.analyse();
    result.accepted = object.acceptH0();
    result.report = reportOf(object);
    result.mean = object.geometricMean(0, 3);
    result.exported = object.exportToR(path, "c");
    result.file = contentOf(path);
    object.resetResult();
    result.reportAfterReset = reportOf(object);
    return result;
}

void expectTheSame(const Driven& byRoot, const Driven& known)
{
    EXPECT_TRUE(known.read);
    EXPECT_TRUE(byRoot.read);
    EXPECT_EQ(byRoot.analysed, known.analysed);
    EXPECT_EQ(byRoot.accepted, known.accepted);
    EXPECT_EQ(byRoot.report, known.report);
    EXPECT_SAME_BITS(byRoot.mean, known.mean);
    EXPECT_TRUE(known.exported);
    EXPECT_TRUE(byRoot.exported);
    EXPECT_EQ(byRoot.file, known.file);
    EXPECT_EQ(byRoot.reportAfterReset, known.reportAfterReset);
}

}  // namespace

TEST(LifeCycle, drivenThroughTheRoot)
{
    const TempFolder folder;
    const std::string file = folder.write("data", "1;5\n2;6\n1;9\n2;7\n3;5\n"), path = folder.path("export");
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        SCOPED_TRACE(c.name);
        T object;
        const std::unique_ptr<BasicStatistics> root = std::make_unique<T>();
        root->initDataList(10);
        const Driven known = drive<T>(object, file, path);
        std::remove(path.c_str());
        expectTheSame(drive<T>(*root, file, path), known);
    });
}
