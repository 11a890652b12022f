// Mean direction, angular deviation and Rayleigh's test.
#include <wq_stat/circular.h>
#include <wq_stat/distributions.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
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

using Angles = std::vector<data_pair>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t largestCount = std::numeric_limits<std::size_t>::max();
constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;

const Angles fan = {{40, 0}, {55, 0}, {60, 0}, {72, 0}, {88, 0}, {101, 0}, {140, 0}, {325, 0}};
const Angles months = {{1, 5}, {2, 4}, {3, 6}, {4, 9}, {5, 14}, {6, 18}, {7, 22}, {8, 17}, {9, 11}, {10, 8}, {11, 6}, {12, 5}};

Circular loaded(const Angles& angles, CIRCULAR_DATA unit = RADIANS, std::size_t bins = 0, double bin0 = 0.0)
{
    Circular directions;
    directions.copyFrom(angles);
    directions.setDataType(unit);
    directions.setBins(bins);
    directions.setBin0(bin0);
    return directions;
}

Circular analysed(const Angles& angles, CIRCULAR_DATA unit = RADIANS, std::size_t bins = 0, double bin0 = 0.0)
{
    Circular directions = loaded(angles, unit, bins, bin0);
    EXPECT_TRUE(directions.analyse());
    return directions;
}

std::string report(Circular& directions)
{
    return printed([&] { directions.reportConsole(); });
}

}  // namespace

TEST(Circular, newObject)
{
    Circular directions;
    EXPECT_EQ(directions.getHypothesisInfo(), "Data are uniformely distributed around the circle");
    EXPECT_EQ(directions.getDataType(), RADIANS);
    EXPECT_EQ(directions.getBinName(), "");
    EXPECT_FALSE(directions.isGrouped());
    EXPECT_EQ(directions.getBins(), 0u);
    EXPECT_EQ(directions.getBin0(), 0u);
    EXPECT_EQ(directions.getBinSize(), 0.0);
    EXPECT_EQ(directions.getMeanBin(), 0u);
    const circular_stat& r = directions.getCircularResult();
    EXPECT_EQ(r.n, 0u);
    EXPECT_EQ(r.meanBin, 0u);
    for (const double value : {r.bin0, r.a, r.r, r.s, r.sPrime, r.binSize, r.R, r.z, r.significance, r.p}) EXPECT_SAME_BITS(value, 0.0);
    EXPECT_FALSE(r.accepted);
}

TEST(Circular, unitsAreNumbered)
{
    EXPECT_EQ(static_cast<int>(RADIANS), 0);
    EXPECT_EQ(static_cast<int>(DEGREES), 1);
    EXPECT_EQ(static_cast<int>(BIN_NUMBERS), 2);
}

TEST(Circular, statistics)  // values: the textbook formulas in 50 digits, tests/reference/classes_50_digits.py
{
    const struct {
        const char* shows;
        Angles angles;
        CIRCULAR_DATA unit;
        std::size_t bins;
        double bin0;
        std::size_t n;
        double a, r, s, sPrime, R, z, p;
        std::size_t meanBin;
    } rows[] = {
        // clang-format off
        {"three directions in degrees", {{10, 0}, {95, 0}, {200, 0}}, DEGREES, 0, 0.0, 3,
         1.62153729196905086, 0.276296517303393277, 1.20308227706720601, 1.60392060395603226,
         0.82888955191017983, 0.229019296421952901, 0.822359336996099802, 0},
        {"a fan of directions in degrees", fan, DEGREES, 0, 0.0, 8,
         1.20425620502745323, 0.713555780079314213, 0.756893942267588488, 0.821577345128305417,
         5.7084462406345137, 4.07329481027678904, 0.0120060962926355383, 0},
        {"radians, mean in the third quadrant", {{3.5, 0}, {4.0, 0}, {3.75, 0}, {4.25, 0}}, RADIANS, 0, 0.0, 4,
         3.875, 0.961352644570821672, 0.278019263466322879, 0.280763179476033416,
         3.84541057828328669, 3.69679562889325034, 0.0126918991307195706, 0},
        {"months with frequencies, first bin 1; p = exp(-z) from 50 on", months, BIN_NUMBERS, 12, 1.0, 125,
         3.32536007804904729, 0.373508966415501952, 1.11936681528844516, 1.40343383757853602,
         46.688620801937744, 17.4386184990970707, 2.6699566727747233e-8, 7},
        {"radians with frequencies, three bins", {{2.0, 7}, {4.0, 3}, {6.0, 2}}, RADIANS, 3, 0.0, 12,
         1.21951791899542504, 0.464249373123624887, 1.0351334473162145, 1.2388167169112404,
         5.57099247748349864, 2.58632976534814418, 0.0727514615310882822, 0},
        {"fractions weigh in full and count truncated: r above 1, s and s' NaN", {{1, 2.75}, {2, 3.5}, {3, 1.25}}, BIN_NUMBERS, 8, 0.0, 6,
         1.01203817099250929, 1.09743915576226073, NaN, NaN,
         6.58463493457356439, 7.22623620360110144, -0.000236010080363766473, 1},
        // clang-format on
    };
    const auto expectNear = [](double actual, double expected, double relative) {
        if (std::isnan(expected))
            EXPECT_TRUE(std::isnan(actual)) << actual;
        else
            EXPECT_NEAR(actual, expected, relative * std::fabs(expected));
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        const Circular directions = analysed(row.angles, row.unit, row.bins, row.bin0);
        const circular_stat& result = directions.getCircularResult();
        EXPECT_EQ(result.n, row.n);
        expectNear(result.a, row.a, 1e-14);
        expectNear(result.r, row.r, 1e-14);
        expectNear(result.s, row.s, 1e-14);
        expectNear(result.sPrime, row.sPrime, 1e-14);
        expectNear(result.R, row.R, 1e-14);
        expectNear(result.z, row.z, 1e-14);
        expectNear(result.p, row.p, 1e-12);  // exp(-z) magnifies the rounding of z, 17 in the largest case
        EXPECT_EQ(result.meanBin, row.meanBin);
        EXPECT_EQ(directions.getMeanBin(), row.meanBin);
        EXPECT_EQ(result.significance, 0.05);
        EXPECT_EQ(result.accepted, row.p >= 0.05);
        EXPECT_EQ(result.bins, row.bins);
        EXPECT_EQ(result.bin0, row.bin0);
        EXPECT_SAME_BITS(result.binSize, twoPi / static_cast<double>(row.bins));
        EXPECT_SAME_BITS(directions.getBinSize(), result.binSize);
    }
}

TEST(Circular, fourQuarterTurnsAreUniform)
{
    Circular directions = analysed({{0, 0}, {90, 0}, {180, 0}, {270, 0}}, DEGREES);
    EXPECT_NEAR(directions.getCircularResult().r, 0.0, 1e-15);
    EXPECT_NEAR(directions.getCircularResult().z, 0.0, 1e-30);
    EXPECT_NEAR(directions.getCircularResult().p, 1.0, 1e-15);
    EXPECT_TRUE(directions.getCircularResult().accepted);
    EXPECT_TRUE(directions.acceptH0());
}

TEST(Circular, threeEqualAnglesAreOneDirection)
{
    const Circular directions = analysed({{10, 0}, {10, 0}, {10, 0}}, DEGREES);
    const circular_stat& result = directions.getCircularResult();
    EXPECT_NEAR(result.r, 1.0, 3e-16);
    EXPECT_FALSE(result.s > 4e-8) << "sqrt of a rounding error, NaN where that is negative";
    EXPECT_NEAR(result.a, 0.174532925199432958, 1.3e-15);  // pi/18; an acos: a unit in its argument makes 1/sin(pi/18) units here
}

TEST(Circular, anyPositiveFrequencyMakesTheDataGrouped)
{
    const struct {
        const char* shows;
        Angles angles;
        bool setting;
        bool grouped;
        std::size_t n;
    } rows[] = {
        {"no frequencies", {{1, 0}, {2, 0}, {3, 0}}, false, false, 3},
        {"the setting does not count", {{1, 0}, {2, 0}, {3, 0}}, true, false, 3},
        {"one frequency", {{1, 0}, {2, 0}, {3, 4}}, false, true, 4},
        {"a frequency below 1", {{1, 0}, {2, 0.5}, {3, 0}}, false, true, 0},
        {"negative frequencies only", {{1, -1}, {2, -2}, {3, 0}}, true, false, 3},
        {"NaN is not above 0", {{1, NaN}, {2, 0}}, true, false, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        Circular directions = loaded(row.angles, RADIANS, 12);
        directions.setGrouped(row.setting);
        EXPECT_TRUE(directions.analyse());
        EXPECT_EQ(directions.isGrouped(), row.grouped);
        EXPECT_EQ(directions.getCircularResult().n, row.n);
    }
}

TEST(Circular, numberOfGroupedObservations)  // each frequency truncated to a signed integer, the sum unsigned
{
    const struct {
        const char* shows;
        std::vector<double> frequencies;
        std::size_t n;
    } rows[] = {
        {"whole", {5, 3}, 8},
        {"truncated one by one", {5.9, 3.9}, 8},
        {"below 1 nothing", {5, 0.99}, 5},
        {"negative ones are taken off", {5, -3}, 2},
        {"negative ones are truncated toward zero", {5, -3.9, -0.9}, 2},
        {"below zero the sum wraps", {2, -3}, largestCount},
        {"NaN counts nothing", {5, NaN}, 5},
        {"too large: the largest signed integer", {5, 1e300}, 9223372036854775812u},
        {"infinite", {infinity}, 9223372036854775807u},
        {"2^63 does not fit", {9223372036854775808.0}, 9223372036854775807u},
        {"the largest double below 2^63 does", {9223372036854774784.0}, 9223372036854774784u},
        {"too small: the smallest signed integer", {5, -1e300}, 9223372036854775813u},
        {"minus infinity", {5, -infinity}, 9223372036854775813u},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        Circular directions = loaded({}, RADIANS, 12);
        for (const double frequency : row.frequencies) directions.add(1.0, frequency);
        EXPECT_TRUE(directions.analyse());
        EXPECT_TRUE(directions.isGrouped());
        EXPECT_EQ(directions.getCircularResult().n, row.n);
    }
}

TEST(Circular, negativeFrequenciesWeighNegatively)
{
    const Circular directions = analysed({{1.0, 5}, {1.0, -3}}, RADIANS, 4);  // the same as two observations at 1 - pi/4
    EXPECT_NEAR(directions.getCircularResult().a, 1.0 - pi / 4, 1e-15);
    EXPECT_NEAR(directions.getCircularResult().r, 1.11072073453959156, 1e-15);  // (pi/4)/sin(pi/4), classes_50_digits.py
}

TEST(Circular, binNumbersAreAnglesOfTheirUpperEdges)  // bin 3 of 12: 3 pi/6, grouped at 3 pi/6 - pi/12
{
    Circular directions = analysed({{3, 10}}, BIN_NUMBERS, 12);
    EXPECT_SAME_BITS(directions.getDataPair(0).x, 3.0 * (twoPi / 12.0));
    EXPECT_NEAR(directions.getCircularResult().a, 5.0 * pi / 12.0, 1e-15);
    EXPECT_NEAR(directions.getCircularResult().r, 1.01151515992746257, 1e-15);  // (pi/12)/sin(pi/12), classes_50_digits.py
}

TEST(Circular, meanBin)  // of a mean angle of 1 radian, with 12 bins of 0.52
{
    const struct {
        const char* shows;
        std::size_t bins;
        double bin0;
        std::size_t first, meanBin;
    } rows[] = {
        {"counted from 0", 12, 0.0, 0, 1},
        {"counted from 1", 12, 1.0, 1, 2},
        {"the first bin is truncated", 12, 1.99, 1, 2},
        {"between 0 and -1: 0", 12, -0.5, 0, 1},
        {"negative: the largest count, and the sum wraps", 12, -1.0, largestCount, 0},
        {"-7: the same", 12, -7.0, largestCount, 0},
        {"huge: the same", 12, 1e300, largestCount, 0},
        {"NaN: 0", 12, NaN, 0, 1},
        {"infinite", 12, infinity, largestCount, 0},
        {"no bins: bins of infinite size", 0, 5.0, 5, 5},
        {"one bin", 1, 5.0, 5, 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        const Circular directions = analysed({{1.0, 0}}, RADIANS, row.bins, row.bin0);
        EXPECT_EQ(directions.getBin0(), row.first);
        EXPECT_EQ(directions.getMeanBin(), row.meanBin);
    }
}

TEST(Circular, withoutBinsGroupedDataHaveNoDirection)
{
    for (const CIRCULAR_DATA unit : {RADIANS, DEGREES, BIN_NUMBERS}) {
        SCOPED_TRACE(static_cast<int>(unit));
        Circular directions = analysed({{1, 2}, {2, 3}}, unit);
        const circular_stat& result = directions.getCircularResult();
        EXPECT_EQ(result.binSize, infinity);
        EXPECT_EQ(result.n, 5u);
        EXPECT_TRUE(std::isnan(result.r));
        EXPECT_SAME_BITS(result.a, 0.0);
        EXPECT_TRUE(std::isnan(result.p));
        EXPECT_FALSE(result.accepted) << "NaN is not accepted";
    }
    Circular numbers = analysed({{0, 0}, {2, 0}}, BIN_NUMBERS);
    EXPECT_TRUE(std::isnan(numbers.getDataPair(0).x)) << "0 times infinity";
    EXPECT_EQ(numbers.getDataPair(1).x, infinity);
    EXPECT_TRUE(std::isnan(numbers.getCircularResult().r));
}

TEST(Circular, emptySample)
{
    Circular directions = analysed({});
    const circular_stat& result = directions.getCircularResult();
    EXPECT_EQ(result.n, 0u);
    EXPECT_TRUE(std::isnan(result.r));
    EXPECT_TRUE(std::isnan(result.s));
    EXPECT_TRUE(std::isnan(result.sPrime));
    EXPECT_TRUE(std::isnan(result.R));
    EXPECT_TRUE(std::isnan(result.z));
    EXPECT_SAME_BITS(result.a, 0.0);
    EXPECT_SAME_BITS(result.p, 0.0);
    EXPECT_FALSE(result.accepted);
}

TEST(Circular, resultantOfExactlyOneOrZero)
{
    const Circular one = analysed({{0, 0}});
    EXPECT_SAME_BITS(one.getCircularResult().r, 1.0);
    EXPECT_SAME_BITS(one.getCircularResult().s, 0.0);
    EXPECT_SAME_BITS(one.getCircularResult().sPrime, -0.0);  // sqrt(-2 ln 1)

    const Circular zero = analysed({{0, 1.5}, {0, -0.75}, {0, -0.75}}, RADIANS, 6);  // the weights cancel, one observation is counted
    EXPECT_EQ(zero.getCircularResult().n, 1u);
    EXPECT_SAME_BITS(zero.getCircularResult().r, 0.0);
    EXPECT_SAME_BITS(zero.getCircularResult().a, 0.0);
    EXPECT_SAME_BITS(zero.getCircularResult().s, std::sqrt(2.0));
    EXPECT_SAME_BITS(zero.getCircularResult().sPrime, infinity);  // sqrt(-2 ln 0)
    EXPECT_SAME_BITS(zero.getCircularResult().p, 1.0);
    EXPECT_TRUE(zero.getCircularResult().accepted);
}

TEST(Circular, frequenciesThatCountNothing)
{
    const Circular cancelled = analysed({{0, 2}, {0, -2}}, RADIANS, 6);
    EXPECT_EQ(cancelled.getCircularResult().n, 0u);
    EXPECT_TRUE(std::isnan(cancelled.getCircularResult().r)) << "0/0";
    EXPECT_SAME_BITS(cancelled.getCircularResult().p, 0.0);

    const Circular fraction = analysed({{2, 0.5}}, RADIANS, 6);
    EXPECT_EQ(fraction.getCircularResult().n, 0u);
    EXPECT_SAME_BITS(fraction.getCircularResult().r, infinity) << "a weight divided by 0 observations";
    EXPECT_TRUE(std::isnan(fraction.getCircularResult().R));
    EXPECT_SAME_BITS(fraction.getCircularResult().p, 0.0);
    EXPECT_FALSE(fraction.getCircularResult().accepted);
}

TEST(Circular, valuesThatAreNoAngles)
{
    for (const double x : {NaN, infinity, -infinity}) {
        SCOPED_TRACE(x);
        const Circular directions = analysed({{1, 0}, {x, 0}, {2, 0}});
        EXPECT_EQ(directions.getCircularResult().n, 3u);
        EXPECT_TRUE(std::isnan(directions.getCircularResult().r));
        EXPECT_SAME_BITS(directions.getCircularResult().a, 0.0);
        EXPECT_FALSE(directions.getCircularResult().accepted);
    }
}

TEST(Circular, degreesAnalysedTwiceAreConvertedTwice)
{
    Circular directions = loaded({{90, 0}, {180, 0}}, DEGREES);
    double x[] = {90, 180};
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(directions.analyse());
        for (std::size_t k = 0; k < 2; ++k) {
            x[k] = degreeToRadian(x[k]);
            EXPECT_SAME_BITS(directions.getDataPair(k).x, x[k]);
        }
        EXPECT_NEAR(directions.getCircularResult().a, (x[0] + x[1]) / 2, 1e-15);
    }

    Circular bins = loaded({{3, 1}}, BIN_NUMBERS, 12);
    EXPECT_TRUE(bins.analyse());
    EXPECT_TRUE(bins.analyse());
    EXPECT_SAME_BITS(bins.getDataPair(0).x, 3.0 * (twoPi / 12.0) * (twoPi / 12.0));
}

TEST(Circular, radiansStayAsTheyAre)
{
    Circular directions = loaded({{90, 0}, {180, 0}});
    EXPECT_TRUE(directions.analyse());
    directions.convertToRadians();
    EXPECT_EQ(directions.getDataPair(0).x, 90.0);

    Circular unknown = loaded({{90, 0}, {180, 0}}, static_cast<CIRCULAR_DATA>(3));
    EXPECT_TRUE(unknown.analyse());
    EXPECT_EQ(unknown.getDataPair(0).x, 90.0);
}

TEST(Circular, trimmedRange)  // in the order of the pairs; what is left out is not converted
{
    Circular directions = loaded({{10, 9}, {90, 0}, {180, 0}, {350, 9}}, DEGREES);
    directions.setHead(0.25);
    directions.setTail(0.25);
    EXPECT_TRUE(directions.analyse());
    EXPECT_FALSE(directions.isGrouped()) << "the frequencies lie outside";
    EXPECT_EQ(directions.getCircularResult().n, 2u);
    EXPECT_NEAR(directions.getCircularResult().a, 0.75 * pi, 1e-15);
    EXPECT_EQ(directions.getDataPair(0).x, 10.0);
    EXPECT_SAME_BITS(directions.getDataPair(1).x, degreeToRadian(90));
    EXPECT_EQ(directions.getDataPair(3).x, 350.0);
}

TEST(Circular, rangesOutsideTheSampleAreNotRead)
{
    const struct {
        const char* shows;
        double head, tail;
        std::size_t n;
    } rows[] = {
        {"head beyond the sample", 3.0, 0.0, 0},
        {"head negative", -1.0, 0.0, 0},
        {"tail negative: the end lies past the sample", 0.0, -1.0, 2},
        {"everything trimmed: the end wraps below 0", 0.0, 1.0, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        Circular directions = loaded({{1, 0}, {2, 0}});
        directions.setHead(row.head);
        directions.setTail(row.tail);
        EXPECT_TRUE(directions.analyse());
        EXPECT_EQ(directions.getCircularResult().n, row.n);
    }

    Circular open = loaded({{1, 0}, {2, 5}});
    open.setDataEnd(largestCount);
    open.checkGrouped();
    EXPECT_TRUE(open.isGrouped());
    open.setDataStart(2);
    open.checkGrouped();
    EXPECT_FALSE(open.isGrouped());
}

TEST(Circular, partsOfTheAnalysis)
{
    Circular directions = loaded({{1, 0}, {2, 3}});
    directions.checkGrouped();
    EXPECT_TRUE(directions.isGrouped());
    directions.setDataEnd(0);
    directions.checkGrouped();
    EXPECT_FALSE(directions.isGrouped());

    directions.setBins(24);
    EXPECT_EQ(directions.getBinSize(), 0.0) << "only computed on demand";
    directions.computeBinSize();
    EXPECT_SAME_BITS(directions.getBinSize(), twoPi / 24.0);
    directions.setBins(0);
    directions.computeBinSize();
    EXPECT_EQ(directions.getBinSize(), infinity);

    Circular degrees = loaded({{90, 0}, {180, 0}}, DEGREES);
    degrees.setDataStart(1);
    degrees.convertToRadians();
    EXPECT_SAME_BITS(degrees.getDataPair(0).x, degreeToRadian(90)) << "the range is that of head and tail";
    EXPECT_SAME_BITS(degrees.getDataPair(1).x, degreeToRadian(180));

    directions.rayleighsTest(10, 0.5);
    EXPECT_SAME_BITS(directions.getCircularResult().R, 5.0);
    EXPECT_SAME_BITS(directions.getCircularResult().z, 2.5);
    directions.rayleighsTest(0, 0.5);
    EXPECT_SAME_BITS(directions.getCircularResult().R, 0.0);
    EXPECT_TRUE(std::isnan(directions.getCircularResult().z));
}

TEST(Circular, resetTouchesOnlyMeanAngleResultantAndCount)
{
    Circular directions = analysed(fan, DEGREES, 12, 3.0);
    const circular_stat before = directions.getCircularResult();
    EXPECT_TRUE(directions.BasicXyStatistics::analyse());  // fills the paired record, and starts with the reset as well
    EXPECT_EQ(directions.getXyResult().x.n, 8u);
    BasicStatistics& base = directions;
    base.resetResult();
    const circular_stat& after = directions.getCircularResult();
    EXPECT_EQ(after.n, 0u);
    EXPECT_SAME_BITS(after.a, 0.0);
    EXPECT_SAME_BITS(after.r, 0.0);
    EXPECT_SAME_BITS(after.s, before.s);
    EXPECT_SAME_BITS(after.sPrime, before.sPrime);
    EXPECT_SAME_BITS(after.R, before.R);
    EXPECT_SAME_BITS(after.z, before.z);
    EXPECT_SAME_BITS(after.p, before.p);
    EXPECT_EQ(after.meanBin, before.meanBin);
    EXPECT_EQ(after.bins, 12u);
    EXPECT_EQ(after.bin0, 3.0);
    EXPECT_EQ(directions.getXyResult().x.n, 0u);
    EXPECT_EQ(directions.getXyResult().x.min, std::numeric_limits<double>::max());
}

TEST(Circular, decisionUsesTheCurrentLevelTheRecordKeepsItsOwn)
{
    Circular directions = analysed({{10, 0}, {95, 0}, {200, 0}}, DEGREES);  // p = 0.82
    EXPECT_TRUE(directions.acceptH0());
    directions.setSignificance(0.9);
    EXPECT_FALSE(directions.acceptH0());
    EXPECT_TRUE(directions.getCircularResult().accepted);
    EXPECT_EQ(directions.getCircularResult().significance, 0.05);
    const std::string text = report(directions);
    EXPECT_THAT(text, ::testing::HasSubstr("\nsignifance level: 0.05\nH0              : accepted\n"));

    directions.setSignificance(directions.getCircularResult().p);
    EXPECT_TRUE(directions.acceptH0()) << "p equal to the level";
}

TEST(Circular, reportPrintsTheCurrentBins)
{
    Circular directions = analysed(months, BIN_NUMBERS, 12, 1.0);
    directions.setBins(24);
    directions.computeBinSize();
    const std::string text = report(directions);
    EXPECT_THAT(text, ::testing::HasSubstr("\nNumber of bins  : 24\nSize of bin     : 0.261799 radians\nMean bin#       :  #7\n"));
}

TEST(Circular, worksThroughVirtualOperations)
{
    class Watched : public Circular {
    public:
        void resetResult() override { ++resets; }
        data_pair getDataPair(std::size_t) override { return {0.5, 0}; }
        bool acceptH0() override
        {
            ++decisions;
            return true;
        }
        int resets = 0;
        int decisions = 0;
    };
    Watched test;
    test.copyFrom({{1, 1}, {2, 1}});
    BasicStatistics& base = test;
    EXPECT_TRUE(base.analyse());
    EXPECT_EQ(test.resets, 1);
    EXPECT_EQ(test.decisions, 1);
    EXPECT_FALSE(test.isGrouped());
    EXPECT_NEAR(test.getCircularResult().a, 0.5, 1e-15);
    EXPECT_TRUE(test.getCircularResult().accepted);
    EXPECT_THAT(printed([&] { base.reportConsole(); }), ::testing::EndsWith("H0              : accepted\n\n"));
    EXPECT_EQ(test.decisions, 1) << "the report prints the recorded decision";
}

TEST(Circular, sameBitsAsThePlainLoop)
{
    std::mt19937_64 random(360);
    std::uniform_real_distribution<double> angle(0.0, 360.0);
    std::uniform_real_distribution<double> weight(0.0, 12.0);
    std::uniform_int_distribution<std::size_t> size(1, 80);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const auto unit = static_cast<CIRCULAR_DATA>(round % 3);
        const bool grouped = round % 2 == 0;
        const std::size_t bins = 1 + static_cast<std::size_t>(round) % 90;
        Angles angles(size(random));
        for (data_pair& pair : angles) pair = {unit == RADIANS ? angle(random) / 60.0 : angle(random), grouped ? weight(random) : 0.0};

        const double binSize = twoPi / static_cast<double>(bins);
        double sines = 0.0;
        double cosines = 0.0;
        std::uint64_t n = 0;
        for (const data_pair& pair : angles) {
            double x = pair.x;
            if (unit == DEGREES) x = 0.017453292519943295 * x;
            if (unit == BIN_NUMBERS) x = x * binSize;
            if (grouped) {
                const double theta = x - 0.5 * binSize;
                sines += std::sin(theta) * pair.y;
                cosines += std::cos(theta) * pair.y;
                n += static_cast<std::uint64_t>(static_cast<std::int64_t>(pair.y));
            } else {
                sines += std::sin(x);
                cosines += std::cos(x);
                n += 1;
            }
        }
        const double m = static_cast<double>(n);
        const double cosine = cosines / m;
        const double sine = sines / m;
        double r = std::sqrt(cosine * cosine + sine * sine);
        const double a = computeAngle(cosine, sine);
        if (grouped) r = r * ((binSize * pi / twoPi) / std::sin(binSize / 2.0));
        const double R = m * r;
        const double z = R * R / m;

        const Circular directions = analysed(angles, unit, bins, 1.0);
        const circular_stat& result = directions.getCircularResult();
        EXPECT_EQ(result.n, n);
        EXPECT_SAME_BITS(result.a, a);
        EXPECT_SAME_BITS(result.r, r);
        EXPECT_SAME_BITS(result.s, std::sqrt(2.0 * (1.0 - r)));
        EXPECT_SAME_BITS(result.sPrime, std::sqrt(-2.0 * std::log(r)));
        EXPECT_SAME_BITS(result.R, R);
        EXPECT_SAME_BITS(result.z, z);
        EXPECT_SAME_BITS(result.p, rayleighsProb(z, n));
        EXPECT_EQ(result.accepted, rayleighsProb(z, n) >= 0.05);
        EXPECT_EQ(result.meanBin, static_cast<std::size_t>(a / binSize) + 1);
    }
}

TEST(Circular, reports)  // tests/reference/make_golden_classes.py
{
    const struct {
        const char* file;
        Angles angles;
        CIRCULAR_DATA unit;
        std::size_t bins;
        double bin0;
        const char* binName;
        const char* comment;
        double significance;
        int analysed;
    } rows[] = {
        {"circular_degrees.txt", fan, DEGREES, 0, 0.0, "", "A fan of directions", 0.05, 1},
        {"circular_degrees_analysed_twice.txt", fan, DEGREES, 0, 0.0, "", "", 0.05, 2},
        {"circular_quarter_turns.txt", {{1, 0}, {90, 0}, {200, 0}, {271, 0}}, DEGREES, 0, 0.0, "", "Spread around the circle", 0.01, 1},
        {"circular_radians.txt", {{3.5, 0}, {4.0, 0}, {3.75, 0}, {4.25, 0}}, RADIANS, 0, 0.0, "", "", 0.05, 1},
        {"circular_months.txt", months, BIN_NUMBERS, 12, 1.0, "month", "Cases by month", 0.05, 1},
        {"circular_radians_with_frequencies.txt", {{2.0, 7}, {4.0, 3}, {6.0, 2}}, RADIANS, 3, 0.0, "", "", 0.05, 1},
        {"circular_weights_with_fractions.txt", {{1, 2.75}, {2, 3.5}, {3, 1.25}}, BIN_NUMBERS, 8, 0.0, "", "", 0.05, 1},
        {"circular_no_bins.txt", {{1, 2}, {2, 3}}, BIN_NUMBERS, 0, 0.0, "hour", "", 0.05, 1},
        {"circular_one_angle.txt", {{0, 0}}, RADIANS, 0, 0.0, "", "", 0.05, 1},
        {"circular_empty.txt", {}, RADIANS, 0, 0.0, "", "", 0.05, 1},
        {"circular_before_analysis.txt", fan, RADIANS, 0, 0.0, "", "", 0.05, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        Circular directions = loaded(row.angles, row.unit, row.bins, row.bin0);
        directions.setBinName(row.binName);
        directions.setComment(row.comment);
        directions.setSignificance(row.significance);
        for (int i = 0; i < row.analysed; ++i) EXPECT_TRUE(directions.analyse());
        EXPECT_EQ(report(directions), golden(row.file));
    }
}
