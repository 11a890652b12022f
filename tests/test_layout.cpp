// What hosts built against an older version of the libraries rely on: slots of virtual operations, order of members, symbols.
#include <wq_stat/version.h>
#include <wq_stat/wq_stat.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/console.h"

#if defined(__unix__) || defined(__APPLE__)
#  include <dlfcn.h>
#  define WQ_HAS_DLSYM 1
#endif

using namespace wq_lib;

// ---------------------------------------------------------------- slots of virtual operations

#if defined(__GXX_ABI_VERSION)

namespace {

constexpr int notVirtual = -1;

// The slot of a virtual operation: on this ABI a pointer to it holds 1 + the offset in the table (on ARM the offset, and the lowest
// bit of its second word tells that it is virtual).
template <typename Operation>
int slotOf(Operation operation)
{
    struct {
        std::ptrdiff_t pointer;
        std::ptrdiff_t adjustment;
    } words;
    static_assert(sizeof words == sizeof operation);
    std::memcpy(&words, &operation, sizeof words);
#  if defined(__arm__) || defined(__aarch64__)
    if ((words.adjustment & 1) == 0) return notVirtual;
    return static_cast<int>(words.pointer / static_cast<std::ptrdiff_t>(sizeof(void*)));
#  else
    if ((words.pointer & 1) == 0) return notVirtual;
    return static_cast<int>((words.pointer - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)));
#  endif
}

template <typename Result, typename... Arguments>
using Operation = Result (BasicStatistics::*)(Arguments...);
template <typename Result, typename... Arguments>
using XyOperation = Result (BasicXyStatistics::*)(Arguments...);
template <typename Result, typename... Arguments>
using Draw = Result (RandomGenerator::*)(Arguments...);

}  // namespace

TEST(Slots, basicStatistics)  // 0 and 1 are the two destructors
{
    EXPECT_EQ(slotOf(&BasicStatistics::initDataList), 2);
    EXPECT_EQ(slotOf(&BasicStatistics::resetResult), 3);
    EXPECT_EQ(slotOf(static_cast<Operation<bool>>(&BasicStatistics::readDataFile)), 4);
    EXPECT_EQ(slotOf(static_cast<Operation<bool, const std::string&>>(&BasicStatistics::readDataFile)), 5);
    EXPECT_EQ(slotOf(&BasicStatistics::exportToR), 6);
    EXPECT_EQ(slotOf(&BasicStatistics::geometricMean), 7);
    EXPECT_EQ(slotOf(&BasicStatistics::analyse), 8);
    EXPECT_EQ(slotOf(&BasicStatistics::acceptH0), 9);
    EXPECT_EQ(slotOf(&BasicStatistics::reportConsole), 10);
}

TEST(Slots, basicXyStatisticsAppendsTwo)
{
    EXPECT_EQ(slotOf(&BasicXyStatistics::initDataList), 2);
    EXPECT_EQ(slotOf(&BasicXyStatistics::resetResult), 3);
    EXPECT_EQ(slotOf(static_cast<XyOperation<bool>>(&BasicXyStatistics::readDataFile)), 4);
    EXPECT_EQ(slotOf(&BasicXyStatistics::exportToR), 6);
    EXPECT_EQ(slotOf(&BasicXyStatistics::geometricMean), 7);
    EXPECT_EQ(slotOf(&BasicXyStatistics::analyse), 8);
    EXPECT_EQ(slotOf(&BasicXyStatistics::reportConsole), 10);
    EXPECT_EQ(slotOf(&BasicXyStatistics::getDataPair), 11);
    EXPECT_EQ(slotOf(&BasicXyStatistics::listData), 12);
}

TEST(Slots, regressionAppendsOne)
{
    EXPECT_EQ(slotOf(&Regression::analyseDataPair), 13);
    EXPECT_EQ(slotOf(&PowerRegression::analyseDataPair), 13);
    EXPECT_EQ(slotOf(&Regression::analyse), 8);
    EXPECT_EQ(slotOf(&Regression::reportConsole), 10);
}

TEST(Slots, randomGenerator)
{
    EXPECT_EQ(slotOf(&RandomGenerator::initialize), 2);
    EXPECT_EQ(slotOf(static_cast<Draw<unsigned>>(&RandomGenerator::getInteger)), 3);
    EXPECT_EQ(slotOf(static_cast<Draw<unsigned, unsigned>>(&RandomGenerator::getInteger)), 4);
    EXPECT_EQ(slotOf(static_cast<Draw<unsigned, unsigned, unsigned>>(&RandomGenerator::getInteger)), 5);
    EXPECT_EQ(slotOf(static_cast<Draw<unsigned, std::vector<double>>>(&RandomGenerator::getInteger)), 6);
    EXPECT_EQ(slotOf(&RandomGenerator::getReal), 7);
}

TEST(Slots, whatIsNotVirtual)
{
    EXPECT_EQ(slotOf(&BasicStatistics::listData), notVirtual);
    EXPECT_EQ(slotOf(&BasicStatistics::add), notVirtual);
    EXPECT_EQ(slotOf(&BasicStatistics::copyFrom), notVirtual);
    EXPECT_EQ(slotOf(&BasicStatistics::sortData), notVirtual);
    EXPECT_EQ(slotOf(&BasicStatistics::setDataRange), notVirtual);
    EXPECT_EQ(slotOf(&BasicStatistics::setSignificance), notVirtual);
    EXPECT_EQ(slotOf(&BasicStatistics::getDataPoint), notVirtual);
    EXPECT_EQ(slotOf(&BasicStatistics::getResult), notVirtual);
    EXPECT_EQ(slotOf(&BasicStatistics::quantile), notVirtual);
    EXPECT_EQ(slotOf(&BasicXyStatistics::add), notVirtual);
    EXPECT_EQ(slotOf(&BasicXyStatistics::setDataPairX), notVirtual);
    EXPECT_EQ(slotOf(&BasicXyStatistics::getXyResult), notVirtual);
    EXPECT_EQ(slotOf(&SingleAnova::testResults), notVirtual);
    EXPECT_EQ(slotOf(&SingleAnova::createSeries), notVirtual);
    EXPECT_EQ(slotOf(&LinearRegressionMultiY::readSeriesFile), notVirtual);
    EXPECT_EQ(slotOf(&Regression::writeRegressionResult), notVirtual);
    EXPECT_EQ(slotOf(&KolmogorovSmirnov2::listFrequencies), notVirtual);
    EXPECT_EQ(slotOf(&Frequency::exportTable), notVirtual);
    EXPECT_EQ(slotOf(&RandomGenerator::warmUp), notVirtual);
    EXPECT_EQ(slotOf(static_cast<Draw<unsigned, std::initializer_list<double>>>(&RandomGenerator::getInteger)), notVirtual);
}

#  if defined(WQ_HAS_DLSYM) && defined(__GLIBCXX__)

namespace {

// The table of an object's virtual operations.
template <typename Object>
void* const* tableOf(const Object& object)
{
    void* const* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    return table;
}

void* symbol(const std::string& name) { return dlsym(RTLD_DEFAULT, name.c_str()); }

std::string mangled(const std::string& className, const std::string& operation)
{
    return "_ZN6wq_lib" + std::to_string(className.size()) + className + operation;
}

const std::string text = "RKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE";
// clang-format off
const std::string operations[] = {"D1Ev",        "D0Ev",      "12initDataListEm",    "11resetResultEv",
                                  "12readDataFileEv", "12readDataFileE" + text, "9exportToRE" + text + "S8_", "13geometricMeanEmm",
                                  "7analyseEv",  "8acceptH0Ev", "13reportConsoleEv", "11getDataPairEm",
                                  "8listDataEmm", "15analyseDataPairEv"};
// clang-format on

// Compares each slot of an object's table with the operation of the class that is to stand there.
template <typename Analysis>
void expectTable(const std::string& name, const std::vector<const char*>& owners)
{
    SCOPED_TRACE(name);
    const Analysis analysis;
    void* const* const table = tableOf(analysis);
    for (std::size_t slot = 0; slot < owners.size() + 2; ++slot) {
        const std::string owner = slot < 2 ? name : owners[slot - 2];
        void* const expected = symbol(mangled(owner, operations[slot]));
        ASSERT_NE(expected, nullptr) << mangled(owner, operations[slot]) << " is not exported";
        EXPECT_EQ(table[slot], expected) << "slot " << slot << " is not " << mangled(owner, operations[slot]);
    }
}

}  // namespace

TEST(Slots, eachClassOverridesItsOwn)
{
    const char* const Basic = "BasicStatistics";
    const char* const Xy = "BasicXyStatistics";
    const char* const Reg = "Regression";
    const char* const Lin = "LinearRegression";
    const char* const Log = "LogarithmicRegression";
    const char* const Exp = "ExponentialRegression";
    const char* const Pow = "PowerRegression";
    const char* const Anova = "SingleAnova";
    const char* const Multi = "LinearRegressionMultiY";
    const char* const Corr = "Correlation";
    const char* const Fit = "GoodnessOfFit";
    const char* const Ks = "KolmogorovSmirnov2";
    const char* const Two = "TwoSamples";
    const char* const Freq = "Frequency";
    const char* const Circ = "Circular";
    // initDataList, resetResult, readDataFile twice, exportToR, geometricMean, analyse, acceptH0, reportConsole; then getDataPair,
    // listData; then analyseDataPair
    expectTable<BasicStatistics>(Basic, {Basic, Basic, Basic, Basic, Basic, Basic, Basic, Basic, Basic});
    expectTable<TwoSamples>(Two, {Basic, Two, Basic, Basic, Basic, Basic, Two, Two, Two});
    expectTable<Frequency>(Freq, {Basic, Basic, Basic, Basic, Basic, Basic, Freq, Basic, Freq});
    expectTable<BasicXyStatistics>(Xy, {Xy, Xy, Xy, Basic, Xy, Xy, Xy, Basic, Xy, Xy, Xy});
    expectTable<Regression>(Reg, {Xy, Reg, Xy, Basic, Xy, Xy, Reg, Basic, Reg, Xy, Xy, Reg});
    expectTable<LinearRegression>(Lin, {Xy, Lin, Xy, Basic, Xy, Xy, Reg, Basic, Lin, Xy, Xy, Lin});
    expectTable<LogarithmicRegression>(Log, {Xy, Reg, Xy, Basic, Xy, Xy, Reg, Basic, Log, Xy, Xy, Log});
    expectTable<ExponentialRegression>(Exp, {Xy, Reg, Xy, Basic, Xy, Xy, Exp, Basic, Exp, Xy, Xy, Exp});
    expectTable<PowerRegression>(Pow, {Xy, Reg, Xy, Basic, Xy, Xy, Pow, Basic, Pow, Xy, Xy, Pow});
    expectTable<SingleAnova>(Anova, {Xy, Anova, Xy, Basic, Anova, Xy, Anova, Basic, Anova, Xy, Anova});
    expectTable<LinearRegressionMultiY>(Multi, {Xy, Multi, Xy, Basic, Anova, Xy, Multi, Basic, Multi, Xy, Anova});
    expectTable<Correlation>(Corr, {Xy, Corr, Xy, Basic, Xy, Xy, Corr, Basic, Corr, Xy, Xy});
    expectTable<GoodnessOfFit>(Fit, {Xy, Xy, Xy, Basic, Xy, Xy, Fit, Fit, Fit, Xy, Xy});
    expectTable<KolmogorovSmirnov2>(Ks, {Xy, Xy, Xy, Basic, Xy, Xy, Ks, Ks, Ks, Xy, Xy});
    expectTable<Circular>(Circ, {Xy, Circ, Xy, Basic, Xy, Xy, Circ, Circ, Circ, Xy, Xy});
}

TEST(Slots, theGeneratorOverridesAll)
{
    const RandomCpp11 generator;
    void* const* const table = tableOf(generator);
    const char* const names[] = {
        "D1Ev",      "D0Ev", "10initializeEv", "10getIntegerEv", "10getIntegerEj", "10getIntegerEjj", "10getIntegerESt6vectorIdSaIdEE",
        "7getRealEv"};
    for (std::size_t slot = 0; slot < 8; ++slot) {
        ASSERT_NE(symbol(mangled("RandomCpp11", names[slot])), nullptr) << names[slot];
        EXPECT_EQ(table[slot], symbol(mangled("RandomCpp11", names[slot]))) << names[slot];
    }
    EXPECT_EQ(symbol("_ZN6wq_lib6RandomE"), &Random);
}

#  else
TEST(Slots, eachClassOverridesItsOwn) { GTEST_SKIP() << "symbols cannot be looked up by name here"; }
#  endif

#else
TEST(Slots, inOrder) { GTEST_SKIP() << "slots are known on the Itanium C++ ABI only"; }
#endif

TEST(Slots, theListingOfOneSampleIsNotVirtual)
{
    BasicXyStatistics pairs;
    pairs.add(1, 2);
    BasicStatistics& base = pairs;
    const std::string shown = wq_test::printedToError([&] { base.listData(0, 1); });
    EXPECT_EQ(shown, "No data\n");  // the univariate sample of a paired one is empty
}

// ---------------------------------------------------------------- order of a record's members

namespace {

constexpr bool is64Bit = sizeof(std::size_t) == 8 && alignof(double) == 8;

struct Field {
    const char* name;
    std::size_t offset, size;
};

template <typename Expected, typename Type>
Field field(const char* name, std::size_t offset)
{
    static_assert(std::is_same_v<Expected, Type>);
    return {name, offset, sizeof(Type)};
}

// The fields follow each other in this order and nothing stands between, before or behind them.
void expectConsecutive(const std::vector<Field>& fields, std::size_t start, std::size_t end)
{
    std::size_t next = start;
    for (const Field& field : fields) {
        const std::size_t alignment = field.size % 8 == 0 ? 8 : field.size;  // bool and int are the only smaller ones
        next = (next + alignment - 1) / alignment * alignment;
        EXPECT_EQ(field.offset, next) << field.name;
        next = field.offset + field.size;
    }
    EXPECT_EQ((next + 7) / 8 * 8, end);
}

}  // namespace

// The place of a record's field, its type checked.
#define WQ_FIELD(Record, Type, name) (field<Type, decltype(Record::name)>(#name, offsetof(Record, name)))

TEST(Records, rangeOfData)
{
    DataRange<double> range;
    range.setLower(1.5);
    range.setUpper(2.5);
    ASSERT_EQ(sizeof range, 2 * sizeof(double));
    double values[2];
    std::memcpy(values, &range, sizeof values);
    EXPECT_EQ(values[0], 1.5);
    EXPECT_EQ(values[1], 2.5);
}

TEST(Records, membersInOrder)
{
    if (!is64Bit) GTEST_SKIP() << "the offsets are those of 64-bit systems";
    using Range = DataRange<double>;
    expectConsecutive({WQ_FIELD(basic_stat, std::size_t, n),
                       WQ_FIELD(basic_stat, double, reserved1),
                       WQ_FIELD(basic_stat, double, min),
                       WQ_FIELD(basic_stat, double, max),
                       WQ_FIELD(basic_stat, double, mean),
                       WQ_FIELD(basic_stat, double, geoMean),
                       WQ_FIELD(basic_stat, double, harmMean),
                       WQ_FIELD(basic_stat, double, median),
                       WQ_FIELD(basic_stat, double, quartile1),
                       WQ_FIELD(basic_stat, double, quartile3),
                       WQ_FIELD(basic_stat, double, reserved2),
                       WQ_FIELD(basic_stat, double, sum),
                       WQ_FIELD(basic_stat, double, variance),
                       WQ_FIELD(basic_stat, double, sampleVariance),
                       WQ_FIELD(basic_stat, double, stdev),
                       WQ_FIELD(basic_stat, double, sampleStdev),
                       WQ_FIELD(basic_stat, double, stdError),
                       WQ_FIELD(basic_stat, double, cv),
                       WQ_FIELD(basic_stat, double, sumOfSquares),
                       WQ_FIELD(basic_stat, double, significance),
                       WQ_FIELD(basic_stat, Range, confidenceLimits)},
                      0, sizeof(basic_stat));
    EXPECT_EQ(sizeof(basic_stat), 22 * 8u);

    expectConsecutive({WQ_FIELD(data_pair, double, x), WQ_FIELD(data_pair, double, y)}, 0, sizeof(data_pair));

    expectConsecutive({WQ_FIELD(xy_stat, basic_stat, x), WQ_FIELD(xy_stat, basic_stat, y), WQ_FIELD(xy_stat, double, sumProducts),
                       WQ_FIELD(xy_stat, double, covariance)},
                      0, sizeof(xy_stat));

    expectConsecutive(
        {WQ_FIELD(regression_stat, double, a), WQ_FIELD(regression_stat, double, b), WQ_FIELD(regression_stat, double, explained),
         WQ_FIELD(regression_stat, double, unexplained), WQ_FIELD(regression_stat, double, residualVariance),
         WQ_FIELD(regression_stat, double, seB), WQ_FIELD(regression_stat, double, tB), WQ_FIELD(regression_stat, double, pB),
         WQ_FIELD(regression_stat, Range, limitsB), WQ_FIELD(regression_stat, double, meanX), WQ_FIELD(regression_stat, double, meanY),
         WQ_FIELD(regression_stat, double, seY), WQ_FIELD(regression_stat, Range, limitsY), WQ_FIELD(regression_stat, std::size_t, n)},
        0, sizeof(regression_stat));

    expectConsecutive({WQ_FIELD(anova_group, double, id), WQ_FIELD(anova_group, std::int64_t, n), WQ_FIELD(anova_group, double, mean),
                       WQ_FIELD(anova_group, double, sum), WQ_FIELD(anova_group, double, sumSquaredObservations),
                       WQ_FIELD(anova_group, double, sumOfSquares), WQ_FIELD(anova_group, double, variance),
                       WQ_FIELD(anova_group, std::vector<double>, observations)},
                      0, sizeof(anova_group));

    expectConsecutive({WQ_FIELD(anova_source, std::size_t, df), WQ_FIELD(anova_source, double, ss), WQ_FIELD(anova_source, double, ms),
                       WQ_FIELD(anova_source, double, fs), WQ_FIELD(anova_source, double, reserved1),
                       WQ_FIELD(anova_source, double, reserved2), WQ_FIELD(anova_source, double, expectedMs)},
                      0, sizeof(anova_source));

    using multi = regression_multi_y_stat;
    expectConsecutive({WQ_FIELD(multi, double, sumX),        WQ_FIELD(multi, double, sumX2),     WQ_FIELD(multi, double, sumXT),
                       WQ_FIELD(multi, double, correctionX), WQ_FIELD(multi, double, ssX),       WQ_FIELD(multi, double, spXY),
                       WQ_FIELD(multi, double, a),           WQ_FIELD(multi, double, b),         WQ_FIELD(multi, double, explained),
                       WQ_FIELD(multi, double, unexplained), WQ_FIELD(multi, double, reserved1), WQ_FIELD(multi, double, seB),
                       WQ_FIELD(multi, double, tB),          WQ_FIELD(multi, double, pT),        WQ_FIELD(multi, Range, limitsB),
                       WQ_FIELD(multi, double, reserved2),   WQ_FIELD(multi, double, reserved3), WQ_FIELD(multi, double, reserved4),
                       WQ_FIELD(multi, double, reserved5),   WQ_FIELD(multi, Range, reserved6),  WQ_FIELD(multi, std::size_t, reserved7)},
                      0, sizeof(multi));

    expectConsecutive({WQ_FIELD(correlation_stat, double, r), WQ_FIELD(correlation_stat, double, t),
                       WQ_FIELD(correlation_stat, double, tSignificance), WQ_FIELD(correlation_stat, double, F),
                       WQ_FIELD(correlation_stat, double, FSignificance), WQ_FIELD(correlation_stat, Range, confidenceLimits)},
                      0, sizeof(correlation_stat));

    expectConsecutive({WQ_FIELD(frequency_class, unsigned long long, count), WQ_FIELD(frequency_class, double, rate)}, 0,
                      sizeof(frequency_class));

    expectConsecutive(
        {WQ_FIELD(circular_stat, std::size_t, n), WQ_FIELD(circular_stat, std::size_t, bins), WQ_FIELD(circular_stat, double, bin0),
         WQ_FIELD(circular_stat, double, a), WQ_FIELD(circular_stat, double, r), WQ_FIELD(circular_stat, double, s),
         WQ_FIELD(circular_stat, double, sPrime), WQ_FIELD(circular_stat, std::size_t, meanBin), WQ_FIELD(circular_stat, double, binSize),
         WQ_FIELD(circular_stat, double, R), WQ_FIELD(circular_stat, double, z), WQ_FIELD(circular_stat, double, significance),
         WQ_FIELD(circular_stat, double, p), WQ_FIELD(circular_stat, bool, accepted)},
        0, sizeof(circular_stat));

    EXPECT_EQ(RADIANS, 0);
    EXPECT_EQ(DEGREES, 1);
    EXPECT_EQ(BIN_NUMBERS, 2);
    static_assert(std::is_same_v<std::underlying_type_t<CIRCULAR_DATA>, int>);
}

// ---------------------------------------------------------------- order of a class's members

namespace {

// The place of a member of this object, its type checked.
#define WQ_MEMBER(Type, name)                                                                                                              \
  (field<Type, decltype(this->name)>(                                                                                                      \
      #name, static_cast<std::size_t>(reinterpret_cast<const char*>(&this->name) - reinterpret_cast<const char*>(this))))

std::vector<Field> operator+(std::vector<Field> base, const std::vector<Field>& own)
{
    base.insert(base.end(), own.begin(), own.end());
    return base;
}

template <typename Base>
struct OneSampleOrder : Base {
    std::vector<Field> oneSample() const
    {
        return {WQ_MEMBER(basic_stat, result),
                WQ_MEMBER(std::vector<double>, data),
                WQ_MEMBER(std::string, dataFile),
                WQ_MEMBER(double, head),
                WQ_MEMBER(double, tail),
                WQ_MEMBER(std::size_t, dataStart),
                WQ_MEMBER(std::size_t, dataEnd),
                WQ_MEMBER(std::size_t, sampleSize),
                WQ_MEMBER(double, significance),
                WQ_MEMBER(double, nullHypothesis),
                WQ_MEMBER(bool, sorted),
                WQ_MEMBER(std::vector<std::string>, columnNames),
                WQ_MEMBER(std::string, hypothesisInfo),
                WQ_MEMBER(std::string, comment),
                WQ_MEMBER(bool, negative)};
    }
};

template <typename Base>
struct PairsOrder : OneSampleOrder<Base> {
    std::vector<Field> paired() const
    {
        return this->oneSample() + std::vector<Field>{WQ_MEMBER(std::vector<data_pair>, pairs), WQ_MEMBER(xy_stat, xyResult)};
    }
};

struct RegressionOrder : PairsOrder<Regression> {
    std::vector<Field> all() const { return paired() + std::vector<Field>{WQ_MEMBER(regression_stat, regressionResult)}; }
};

template <typename Base>
struct AnovaOrder : PairsOrder<Base> {
    std::vector<Field> anova() const
    {
        return this->paired() + std::vector<Field>{WQ_MEMBER(std::size_t, groupCount),
                                                   WQ_MEMBER(std::int64_t, totalObservations),
                                                   WQ_MEMBER(double, grandTotal),
                                                   WQ_MEMBER(double, correctionTerm),
                                                   WQ_MEMBER(double, sumSquaredObservations),
                                                   WQ_MEMBER(double, sumSquaredGroupTotals),
                                                   WQ_MEMBER(double, sumSquaredSampleSizes),
                                                   WQ_MEMBER(anova_source, total),
                                                   WQ_MEMBER(anova_source, among),
                                                   WQ_MEMBER(anova_source, within),
                                                   WQ_MEMBER(double, meanSampleSize),
                                                   WQ_MEMBER(double, n0),
                                                   WQ_MEMBER(double, varianceComponent),
                                                   WQ_MEMBER(double, varianceComponentRatio),
                                                   WQ_MEMBER(std::vector<anova_group>, groups),
                                                   WQ_MEMBER(std::size_t, groupsCreated),
                                                   WQ_MEMBER(bool, equal),
                                                   WQ_MEMBER(int, model)};
    }
};

struct MultiYOrder : AnovaOrder<LinearRegressionMultiY> {
    std::vector<Field> all() const
    {
        return anova() + std::vector<Field>{WQ_MEMBER(regression_multi_y_stat, regressionResult), WQ_MEMBER(anova_source, regression),
                                            WQ_MEMBER(anova_source, deviations), WQ_MEMBER(bool, computeRegression)};
    }
};

struct CorrelationOrder : PairsOrder<Correlation> {
    std::vector<Field> all() const { return paired() + std::vector<Field>{WQ_MEMBER(correlation_stat, correlationResult)}; }
};

template <typename Base>
struct FitOrder : PairsOrder<Base> {
    std::vector<Field> fit() const
    {
        return this->paired() + std::vector<Field>{WQ_MEMBER(double, X2), WQ_MEMBER(double, G), WQ_MEMBER(double, GAdjusted),
                                                   WQ_MEMBER(bool, yatesCorrection), WQ_MEMBER(bool, williamsCorrection)};
    }
};

struct KolmogorovOrder : FitOrder<KolmogorovSmirnov2> {
    using Cumulative = std::vector<std::pair<double, double>>;
    std::vector<Field> all() const
    {
        return fit() + std::vector<Field>{WQ_MEMBER(Cumulative, cumulativeFrequencies), WQ_MEMBER(double, D), WQ_MEMBER(std::size_t, n1),
                                          WQ_MEMBER(std::size_t, n2)};
    }
};

struct TwoSamplesOrder : OneSampleOrder<TwoSamples> {
    std::vector<Field> all() const
    {
        return oneSample() + std::vector<Field>{WQ_MEMBER(basic_stat, secondSample), WQ_MEMBER(double, F),
                                                WQ_MEMBER(double, FProbability),     WQ_MEMBER(double, criticalF),
                                                WQ_MEMBER(std::size_t, df1),         WQ_MEMBER(std::size_t, df2)};
    }
};

struct FrequencyOrder : OneSampleOrder<Frequency> {
    std::vector<Field> all() const
    {
        return oneSample() + std::vector<Field>{WQ_MEMBER(std::vector<frequency_class>, classes), WQ_MEMBER(std::size_t, numberOfClasses),
                                                WQ_MEMBER(double, startClass), WQ_MEMBER(double, classWidth)};
    }
};

struct CircularOrder : PairsOrder<Circular> {
    std::vector<Field> all() const
    {
        return paired() + std::vector<Field>{WQ_MEMBER(circular_stat, circularResult), WQ_MEMBER(bool, grouped),
                                             WQ_MEMBER(std::string, binName), WQ_MEMBER(double, binSize),
                                             WQ_MEMBER(CIRCULAR_DATA, dataType)};
    }
};

struct GeneratorOrder : RandomCpp11 {
    std::vector<Field> all() const
    {
        return {WQ_MEMBER(std::string, generatorName), WQ_MEMBER(unsigned long long, draws), WQ_MEMBER(std::mt19937, engine)};
    }
};

}  // namespace

TEST(Classes, membersInOrder)
{
    if (!is64Bit) GTEST_SKIP() << "the offsets are those of 64-bit systems";
    const std::size_t start = sizeof(void*);  // behind the pointer to the table of virtual operations
    expectConsecutive(OneSampleOrder<BasicStatistics>().oneSample(), start, sizeof(BasicStatistics));
    expectConsecutive(PairsOrder<BasicXyStatistics>().paired(), start, sizeof(BasicXyStatistics));
    expectConsecutive(RegressionOrder().all(), start, sizeof(Regression));
    expectConsecutive(AnovaOrder<SingleAnova>().anova(), start, sizeof(SingleAnova));
    expectConsecutive(MultiYOrder().all(), start, sizeof(LinearRegressionMultiY));
    expectConsecutive(CorrelationOrder().all(), start, sizeof(Correlation));
    expectConsecutive(FitOrder<GoodnessOfFit>().fit(), start, sizeof(GoodnessOfFit));
    expectConsecutive(KolmogorovOrder().all(), start, sizeof(KolmogorovSmirnov2));
    expectConsecutive(TwoSamplesOrder().all(), start, sizeof(TwoSamples));
    expectConsecutive(FrequencyOrder().all(), start, sizeof(Frequency));
    expectConsecutive(CircularOrder().all(), start, sizeof(Circular));
    expectConsecutive(GeneratorOrder().all(), start, sizeof(RandomCpp11));
    EXPECT_EQ(sizeof(LinearRegression), sizeof(Regression));
    EXPECT_EQ(sizeof(LogarithmicRegression), sizeof(Regression));
    EXPECT_EQ(sizeof(ExponentialRegression), sizeof(Regression));
    EXPECT_EQ(sizeof(PowerRegression), sizeof(Regression));
}

TEST(Classes, oneTree)
{
    const auto derives = [](auto* derived, auto* base) {
        using Derived = std::remove_pointer_t<decltype(derived)>;
        using Base = std::remove_pointer_t<decltype(base)>;
        return std::is_convertible_v<Derived*, Base*> && !std::is_same_v<Derived, Base>;
    };
#define WQ_DERIVES(Derived, Base) EXPECT_TRUE(derives(static_cast<Derived*>(nullptr), static_cast<Base*>(nullptr))) << #Derived
    WQ_DERIVES(BasicXyStatistics, BasicStatistics);
    WQ_DERIVES(TwoSamples, BasicStatistics);
    WQ_DERIVES(Frequency, BasicStatistics);
    WQ_DERIVES(Regression, BasicXyStatistics);
    WQ_DERIVES(LinearRegression, Regression);
    WQ_DERIVES(LogarithmicRegression, Regression);
    WQ_DERIVES(ExponentialRegression, Regression);
    WQ_DERIVES(PowerRegression, Regression);
    WQ_DERIVES(Correlation, BasicXyStatistics);
    WQ_DERIVES(SingleAnova, BasicXyStatistics);
    WQ_DERIVES(LinearRegressionMultiY, SingleAnova);
    WQ_DERIVES(GoodnessOfFit, BasicXyStatistics);
    WQ_DERIVES(KolmogorovSmirnov2, GoodnessOfFit);
    WQ_DERIVES(Circular, BasicXyStatistics);
    WQ_DERIVES(RandomCpp11, RandomGenerator);
#undef WQ_DERIVES
    static_assert(std::is_abstract_v<RandomGenerator>);
    static_assert(!std::is_base_of_v<BasicStatistics, RandomGenerator>);
}

// ---------------------------------------------------------------- version symbols

TEST(Version, textAndNumber)
{
    static_assert(std::is_same_v<std::remove_extent_t<decltype(wq_stat_1VersionString)>, const char>);
    static_assert(std::is_same_v<decltype(wq_stat_1VersionNumber), const double>);
    EXPECT_STREQ(wq_stat_1VersionString, "@(#)PROGRAM:wq_stat.1  PROJECT:wq_lib-1.1\n");
    EXPECT_EQ(wq_stat_1VersionNumber, 1.1);
}

TEST(Version, symbolsHavePlainNames)
{
#if defined(WQ_HAS_DLSYM)
    const void* const versionText = dlsym(RTLD_DEFAULT, "wq_stat_1VersionString");
    const void* const versionNumber = dlsym(RTLD_DEFAULT, "wq_stat_1VersionNumber");
    ASSERT_NE(versionText, nullptr);
    ASSERT_NE(versionNumber, nullptr);
    EXPECT_STREQ(static_cast<const char*>(versionText), "@(#)PROGRAM:wq_stat.1  PROJECT:wq_lib-1.1\n");
    EXPECT_EQ(*static_cast<const double*>(versionNumber), 1.1);
#else
    GTEST_SKIP() << "symbols cannot be looked up by name here";
#endif
}
