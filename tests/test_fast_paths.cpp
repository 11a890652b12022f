// Where the library takes a faster way than the plain one, both give the same bits. The plain counterparts stand here.

#include "support/bits.h"
#include "support/files.h"
#include "../src/detail/logarithms.h"
#include "../src/detail/sample_sort.h"
#include "../src/detail/twister.h"
#include "../src/detail/vector_sort.h"
#include "../support/numbers/plain_decimal.h"
#include "../support/numbers/wide_product.h"

#include <wq_report/csv_report.h>
#include <wq_stat/basic_stat.h>
#include <wq_stat/basic_xy_stat.h>
#include <wq_stat/distributions.h>
#include <wq_stat/random.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#ifdef __x86_64__
#  include <xmmintrin.h>
#endif

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

using Generator = std::mt19937_64;

double uniform(Generator& random) { return std::ldexp(static_cast<double>(random() >> 11), -53); }

double normal(Generator& random)
{
    return std::sqrt(-2.0 * std::log(1.0 - uniform(random))) * std::cos(6.283185307179586 * uniform(random));
}

double anyBits(Generator& random)
{
    const std::uint64_t bits = random();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// ---------------------------------------------------------------- sorting

struct Shape {
    const char* name;
    std::function<double(Generator&, std::size_t)> value;  // of index i
};

// clang-format off
const Shape shapes[] = {
    {"uniform", [](Generator& r, std::size_t) { return uniform(r); }},
    {"normal", [](Generator& r, std::size_t) { return normal(r); }},
    {"heavy tails on one side", [](Generator& r, std::size_t) { return std::exp(4.0 * normal(r)); }},
    {"heavy tails on both sides", [](Generator& r, std::size_t) { return normal(r) / normal(r); }},
    {"ten different values", [](Generator& r, std::size_t) { return static_cast<double>(r() % 10); }},
    {"all equal", [](Generator&, std::size_t) { return 4.5; }},
    {"any bits, NaN and infinities among them", [](Generator& r, std::size_t) { return anyBits(r); }},
    {"powers of two", [](Generator& r, std::size_t) { return std::ldexp(1.0, static_cast<int>(r() % 2000) - 1000); }},
    {"ascending", [](Generator&, std::size_t i) { return static_cast<double>(i); }},
    {"descending", [](Generator&, std::size_t i) { return -static_cast<double>(i); }},
    {"zeros of both signs", [](Generator& r, std::size_t) { return r() % 3 == 0 ? -0.0 : r() % 2 == 0 ? 0.0 : static_cast<double>(r() % 3) - 1.0; }},
    {"zeros of both signs and more", [](Generator& r, std::size_t) { return r() % 3 == 0 ? -0.0 : static_cast<double>(r() % 3); }},
    {"one far away", [](Generator& r, std::size_t i) { return i == 17 ? 1e300 : 1.0 + 1e-15 * static_cast<double>(r() % 100); }},
    {"some infinite", [](Generator& r, std::size_t) { return r() % 50 == 0 ? infinity : r() % 50 == 0 ? -infinity : normal(r); }},
    {"NaN among numbers", [](Generator& r, std::size_t) { return r() % 9 == 0 ? std::nan("") : normal(r); }},
    {"subnormal", [](Generator& r, std::size_t) { return 5e-324 * static_cast<double>(r() % 100000); }},
    {"clusters within clusters", [](Generator& r, std::size_t i) { return std::pow(0.5, static_cast<double>(i % 900)) * (1.0 + uniform(r)); }},
    {"a single crowd", [](Generator& r, std::size_t i) { return i == 3 ? 1e9 : uniform(r); }},
    {"two crowds of equal values", [](Generator& r, std::size_t) { return r() % 2 == 0 ? 1e-3 : -7.0; }},
    {"ascending but for some", [](Generator& r, std::size_t i) { return r() % 64 == 0 ? 0.5 : static_cast<double>(i); }},
    {"NaN and zeros of both signs among numbers", [](Generator& r, std::size_t) { return r() % 5 == 0 ? std::nan("") : r() % 4 == 0 ? -0.0 : r() % 3 == 0 ? 0.0 : normal(r); }},
    {"NaN and negative zeros alone", [](Generator& r, std::size_t) { return r() % 2 == 0 ? std::nan("") : -0.0; }},
    {"a crowd and a negative zero", [](Generator& r, std::size_t i) { return i == 5 ? -0.0 : i % 7 == 0 ? uniform(r) : 1e3 * uniform(r); }},
};

constexpr std::size_t sampleSizes[] = {0, 1, 2, 3, 7, 8, 9, 24, 25, 26, 64, 65, 100, 128, 129, 200, 511, 512, 1100, 3000, 16384, 16385, 70000, 300000};
// clang-format on

/** NaN behind every number. */
bool comesBefore(double a, double b) { return std::isnan(b) ? !std::isnan(a) : a < b; }

/** Compares what a way of sorting makes of samples of every shape and many sizes with what std::stable_sort does. */
void expectSorts(const std::function<void(std::vector<double>&)>& sort, std::size_t largest = 300000)
{
    Generator random(20261121);
    for (const Shape& shape : shapes) {
        for (const std::size_t n : sampleSizes) {
            if (n > largest) break;
            std::vector<double> sorted(n);
            for (std::size_t i = 0; i < n; ++i) sorted[i] = shape.value(random, i);
            std::vector<double> expected = sorted;
            sort(sorted);
            std::stable_sort(expected.begin(), expected.end(), comesBefore);
            ASSERT_EQ(sorted.size(), n);
            std::size_t wrong = 0;
            for (std::size_t i = 0; i < n; ++i) wrong += wq_test::sameBits(sorted[i], expected[i]) ? 0u : 1u;
            EXPECT_EQ(wrong, 0u) << shape.name << ", " << n << " values";
        }
    }
}

TEST(FastPaths, sortedSampleIsThatOfAStableComparisonSort)
{
    expectSorts([](std::vector<double>& values) {
        wq_lib::BasicStatistics sample;
        sample.copyFrom(values);
        sample.sortData();
        EXPECT_TRUE(sample.isSorted());
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = sample.getDataPoint(i);
    });
}

TEST(FastPaths, sortsTheSameWithoutVectors) { expectSorts(wq_lib::detail::sortSampleAnywhere); }

TEST(FastPaths, valuesAddedToASortedSampleFindTheirPlaces)
{
    // clang-format off
    const double sorted[] = {-infinity, -2.0, -0.0, 0.0, -0.0, 1.0, 1.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0, 11.0, 12.0, 13.0, 14.0, 15.0,
                             16.0,      17.0, 18.0, 19.0, 20.0, 21.0, 22.0, 23.0, 24.0, 25.0, 26.0, 27.0, 28.0, 29.0, 30.0, infinity};
    // clang-format on
    const double added[] = {0.0, -0.0, 1.0, -3.0, -infinity, infinity, 99.0, 2.5, std::nan("1"), -std::nan("2")};
    for (const double first : added) {
        for (const double second : added) {
            for (const double third : added) {
                std::vector<double> values(std::begin(sorted), std::end(sorted));
                values.insert(values.end(), {first, second, third});
                std::vector<double> expected = values;
                std::stable_sort(expected.begin(), expected.end(), comesBefore);
                std::vector<double> anywhere = values;
                wq_lib::detail::sortSample(values);
                wq_lib::detail::sortSampleAnywhere(anywhere);
                EXPECT_TRUE(std::equal(values.begin(), values.end(), expected.begin(), wq_test::sameBits))
                    << first << " " << second << " " << third;
                EXPECT_TRUE(std::equal(anywhere.begin(), anywhere.end(), expected.begin(), wq_test::sameBits))
                    << first << " " << second << " " << third;
            }
        }
    }
}

/** A sort that only some processors can run. */
struct VectorSort {
    const char* name;
    bool (*isSupported)();
    void (*sort)(double* values, std::size_t n);
    void (*sortWithFewPartitions)(double* values, std::size_t n, int partitions);
};

std::ostream& operator<<(std::ostream& out, const VectorSort& sort) { return out << sort.name; }

class VectorSorts : public testing::TestWithParam<VectorSort> {
protected:
    void SetUp() override
    {
        if (!GetParam().isSupported()) GTEST_SKIP() << "this processor has no " << GetParam().name;
    }
};

INSTANTIATE_TEST_SUITE_P(
    FastPaths, VectorSorts,
    testing::Values(VectorSort{"AVX2", wq_lib::detail::hasAvx2, wq_lib::detail::sortByAvx2, wq_lib::detail::sortByAvx2},
                    VectorSort{"AVX512", wq_lib::detail::hasAvx512, wq_lib::detail::sortByAvx512, wq_lib::detail::sortByAvx512}),
    [](const testing::TestParamInfo<VectorSort>& tested) { return tested.param.name; });

/** Sorts by `sort` where there are numbers only, none of them -0: what vectors sort. */
template <typename Sort>
void sortNumbers(std::vector<double>& values, const Sort& sort)
{
    const auto needsMore = [](double value) { return std::isnan(value) || (value == 0.0 && std::signbit(value)); };
    if (std::any_of(values.begin(), values.end(), needsMore))
        std::stable_sort(values.begin(), values.end(), comesBefore);
    else
        sort(values.data(), values.size());
}

TEST_P(VectorSorts, sortAsAStableComparisonSortDoes)
{
    expectSorts([](std::vector<double>& values) { sortNumbers(values, GetParam().sort); });
}

TEST_P(VectorSorts, sortTheSameWithFewPartitions)
{
    for (const int partitions : {0, 1, 3}) {
        const auto sort = [partitions](double* values, std::size_t n) { GetParam().sortWithFewPartitions(values, n, partitions); };
        expectSorts([&](std::vector<double>& values) { sortNumbers(values, sort); }, 3000);
    }
}

#ifdef __x86_64__
TEST(FastPaths, sortsWithoutALossWhereTheHostTakesSubnormalValuesForZero)  // as every host does that is linked with GCC's -ffast-math
{
    std::vector<double> values = {3e-310, 1.0, 2e-310, -1e-310, 2.0, 0.0, 1e-310};
    const std::vector<double> before = values;
    const unsigned setting = _mm_getcsr();
    _mm_setcsr(setting | 0x40);
    wq_lib::BasicStatistics sample;
    sample.copyFrom(values);
    sample.sortData();
    _mm_setcsr(setting);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = sample.getDataPoint(i);
    EXPECT_TRUE(std::is_permutation(values.begin(), values.end(), before.begin(), wq_test::sameBits));
    EXPECT_EQ(values[5], 1.0);
    EXPECT_EQ(values[6], 2.0);
}
#endif

TEST_P(VectorSorts, stayWithinTheValues)
{
    Generator random(20261122);
    for (std::size_t n = 0; n < 700; ++n) {
        constexpr std::size_t around = 16;
        std::vector<double> values(n + 2 * around, -1e300);
        for (std::size_t i = 0; i < n; ++i) values[around + i] = normal(random);
        std::vector<double> expected = values;
        std::sort(expected.begin() + around, expected.end() - around);
        GetParam().sort(values.data() + around, n);
        EXPECT_EQ(values, expected) << n << " values";
    }
}

// ---------------------------------------------------------------- copying

/** @param room that is reserved before the values come. */
template <typename Sample, typename Value>
void expectCopies(Sample& sample, const std::vector<Value>& values, std::size_t room, const std::function<const Value*(std::size_t)>& held)
{
    sample.initDataList(room);
    for (std::size_t copies = 1; copies <= 3; ++copies) {
        EXPECT_EQ(sample.copyFrom(values), copies * values.size());
        ASSERT_EQ(sample.getSampleSize(), copies * values.size());
        for (std::size_t i = 0; i < copies * values.size(); ++i)
            EXPECT_EQ(std::memcmp(held(i), &values[i % values.size()], sizeof(Value)), 0);
    }
}

TEST(FastPaths, copiesHoldEveryBitWhateverRoomThereWas)
{
    struct Values : wq_lib::BasicStatistics {
        const double* held(std::size_t i) const { return &data[i]; }
    };
    struct Pairs : wq_lib::BasicXyStatistics {
        const wq_lib::data_pair* held(std::size_t i) const { return &pairs[i]; }
    };
    const std::vector<double> values = {0.0, -0.0, std::nan("1"), -std::nan("2"), infinity, -infinity, 5e-324, -5e-324, DBL_MAX, 0.1};
    std::vector<wq_lib::data_pair> pairs;
    for (const double x : values) pairs.push_back({x, -x});
    for (const std::size_t room : {0u, 5u, 10u, 11u, 100u}) {
        Values sample;
        expectCopies<Values, double>(sample, values, room, [&sample](std::size_t i) { return sample.held(i); });
        EXPECT_EQ(sample.getDataEnd(), sample.getSampleSize());
        EXPECT_FALSE(sample.isSorted());
        Pairs xy;
        expectCopies<Pairs, wq_lib::data_pair>(xy, pairs, room, [&xy](std::size_t i) { return xy.held(i); });
        EXPECT_EQ(xy.getDataEnd(), xy.getSampleSize() - 1);
    }
}

// ---------------------------------------------------------------- sums over pairs

/** What the passes over pairs give, value by value as they are defined. */
wq_lib::xy_stat plainPasses(const std::vector<wq_lib::data_pair>& pairs)
{
    wq_lib::xy_stat result;
    result.x.min = result.y.min = DBL_MAX;
    result.x.max = result.y.max = DBL_MIN;
    for (const wq_lib::data_pair& pair : pairs) {
        ++result.x.n;
        if (pair.x < result.x.min) result.x.min = pair.x;
        if (pair.x > result.x.max) result.x.max = pair.x;
        if (pair.y < result.y.min) result.y.min = pair.y;
        if (pair.y > result.y.max) result.y.max = pair.y;
        result.x.sum += pair.x;
        result.y.sum += pair.y;
    }
    result.x.mean = result.x.sum / static_cast<double>(result.x.n);
    result.y.mean = result.y.sum / static_cast<double>(result.x.n);
    for (const wq_lib::data_pair& pair : pairs) {
        result.x.sumOfSquares += (pair.x - result.x.mean) * (pair.x - result.x.mean);
        result.y.sumOfSquares += (pair.y - result.y.mean) * (pair.y - result.y.mean);
        result.sumProducts += (pair.x - result.x.mean) * (pair.y - result.y.mean);
    }
    return result;
}

TEST(FastPaths, passesOverStoredPairsGiveTheSumsAndExtremesOfPlainOnes)
{
    Generator random(20261123);
    for (const Shape& shape : shapes) {
        for (std::size_t n = 2; n < 300; n += n < 40 ? 1 : 53) {
            wq_lib::BasicXyStatistics sample;
            std::vector<wq_lib::data_pair> pairs(n);
            for (std::size_t i = 0; i < n; ++i) {
                pairs[i] = {shape.value(random, i), shape.value(random, i)};
                sample.add(pairs[i].x, pairs[i].y);
            }
            if (n % 3 == 2) {  // without the first and the last pair
                sample.setHead(0.5 / static_cast<double>(n));
                sample.setTail(1.0 / static_cast<double>(n) + 1e-9);
                pairs = {pairs.begin() + 1, pairs.end() - 1};
            }
            if (pairs.size() < 2) continue;
            ASSERT_TRUE(sample.analyse());
            const wq_lib::xy_stat found = sample.getXyResult();
            const wq_lib::xy_stat expected = plainPasses(pairs);
            SCOPED_TRACE(shape.name + (", " + std::to_string(n)) + " pairs");
            EXPECT_EQ(found.x.n, pairs.size());
            EXPECT_EQ(found.y.n, 0u);
            for (const auto variable : {&wq_lib::xy_stat::x, &wq_lib::xy_stat::y}) {
                EXPECT_SAME_BITS((found.*variable).min, (expected.*variable).min);
                EXPECT_SAME_BITS((found.*variable).max, (expected.*variable).max);
                EXPECT_SAME_BITS((found.*variable).sum, (expected.*variable).sum);
                EXPECT_SAME_BITS((found.*variable).sumOfSquares, (expected.*variable).sumOfSquares);
            }
            EXPECT_SAME_BITS(found.sumProducts, expected.sumProducts);
        }
    }
}

// ---------------------------------------------------------------- logarithms and the sums of a sample

constexpr int roundingModes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};

/** Compares the logarithms of many values, and some behind them, with those of the C library. */
void expectLogarithms(const std::vector<double>& values, const char* name)
{
    constexpr std::size_t behind = 4;
    constexpr double untouched = -7.5;
    std::vector<double> logs(values.size() + behind, untouched);
    const bool allNormal = wq_lib::detail::logarithms(values.data(), values.size(), logs.data());
    std::size_t wrong = 0;
    bool expectedNormal = true;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double expected = values[i] > 0.0 ? std::log(values[i]) : 0.0;
        if (!wq_test::sameBits(logs[i], expected) && ++wrong == 1) ADD_FAILURE() << name << ", first: " << std::hexfloat << values[i];
        expectedNormal = expectedNormal && values[i] >= DBL_MIN && values[i] <= DBL_MAX;
    }
    EXPECT_EQ(wrong, 0u) << name << ", " << values.size() << " values";
    EXPECT_EQ(allNormal, expectedNormal) << name << ", " << values.size() << " values";
    for (std::size_t i = 0; i < behind; ++i) EXPECT_EQ(logs[values.size() + i], untouched);
}

/** Where the way to a logarithm changes: around 1, around every border of a share of an octave, at the ends of the exponents. */
std::vector<double> edgesOfLogarithms(Generator& random)
{
    std::vector<double> values = {0x1.8ff4fe9d2e769p-1, 0x1.8ff6e98a4218bp-1};  // std::log is not the nearest double here
    for (int bit = 1; bit <= 60; ++bit)
        for (const double side : {-1.0, 1.0})
            for (int k = 0; k < 50; ++k) values.push_back(1.0 + side * std::ldexp(1.0 + (k == 0 ? 0.0 : uniform(random)), -bit));
    for (int share = 0; share <= 1024; ++share)
        for (const int exponent : {-1023, -3, -2, -1, 0, 1, 2, 1022})
            for (int ulps = -20; ulps <= 20; ++ulps) values.push_back(std::ldexp(1.0 + share * 0x1p-10 + ulps * 0x1p-52, exponent));
    for (int exponent = -1074; exponent < 1024; ++exponent)
        for (int k = 0; k < 20; ++k) values.push_back(std::ldexp(1.0 + uniform(random), exponent));
    for (const double value : {0.0, -0.0, infinity, -infinity, std::nan(""), -std::nan("1"), DBL_MIN, DBL_MAX, 5e-324, -5e-324, -1.0})
        values.push_back(value);
    return values;
}

TEST(FastPaths, logarithmsAreThoseOfTheCLibrary)
{
    Generator random(20261124);
    for (const int mode : roundingModes) {
        SCOPED_TRACE("rounding mode " + std::to_string(mode));
        std::fesetround(mode);
        expectLogarithms(edgesOfLogarithms(random), "edges");
        for (const Shape& shape : shapes)
            for (const std::size_t n : {0u, 1u, 2u, 3u, 4u, 5u, 7u, 8u, 63u, 64u, 65u, 66u, 67u, 68u, 131u, 3000u}) {
                std::vector<double> values(n);
                for (std::size_t i = 0; i < n; ++i) values[i] = shape.value(random, i);
                expectLogarithms(values, shape.name);
                for (double& value : values) value = std::fabs(value);
                expectLogarithms(values, shape.name);
            }
        std::fesetround(FE_TONEAREST);
    }
    std::vector<double> many(2000000);
    for (double& value : many) value = 100.0 + 15.0 * normal(random);
    expectLogarithms(many, "normal around 100");
    for (double& value : many) value = uniform(random);
    expectLogarithms(many, "uniform");
}

#ifdef __x86_64__
TEST(FastPaths, logarithmsFollowTheProcessorsOwnSettings)  // which a host may set without the C library's knowledge
{
    Generator random(20261125);
    const unsigned setting = _mm_getcsr();
    for (const unsigned change : {0x2000u, 0x4000u, 0x6000u, 0x8040u}) {  // down, up, towards zero; subnormal values taken for 0
        _mm_setcsr(setting | change);
        expectLogarithms(edgesOfLogarithms(random), "edges");
        _mm_setcsr(setting);
    }
}
#endif

/** One value after the other, as a textbook has it. @param sorted the observations in their order. */
wq_lib::basic_stat plainSums(const std::vector<double>& sorted)
{
    wq_lib::basic_stat sums;
    sums.min = DBL_MAX;
    sums.max = DBL_MIN;
    double logSum = 0.0;
    double positive = 0.0;
    double reciprocalSum = 0.0;
    double reciprocals = 0.0;
    for (const double x : sorted) {
        if (x < sums.min) sums.min = x;
        if (x > sums.max) sums.max = x;
        sums.sum += x;
        if (x > 0.0) {
            logSum += std::log(x);
            positive += 1.0;
        }
        if (std::isfinite(1.0 / x)) {
            reciprocalSum += 1.0 / x;
            reciprocals += 1.0;
        }
    }
    sums.mean = sums.sum / static_cast<double>(sorted.size());
    for (const double x : sorted) sums.sumOfSquares += (x - sums.mean) * (x - sums.mean);
    sums.geoMean = std::exp(logSum * (1.0 / positive));
    sums.harmMean = reciprocals / reciprocalSum;
    return sums;
}

TEST(FastPaths, passesOverASampleGiveTheSumsAndExtremesOfPlainOnes)
{
    Generator random(20261126);
    for (const int mode : roundingModes)
        for (const Shape& shape : shapes)
            for (const std::size_t n : {3u, 4u, 5u, 100u, 511u, 512u, 513u, 515u, 1024u, 1030u, 3000u}) {
                SCOPED_TRACE(shape.name + (", " + std::to_string(n)) + " values, rounding mode " + std::to_string(mode));
                std::vector<double> values(n);
                for (std::size_t i = 0; i < n; ++i) values[i] = shape.value(random, i);
                wq_lib::BasicStatistics sample;
                sample.copyFrom(values);
                std::stable_sort(values.begin(), values.end(), comesBefore);
                std::fesetround(mode);
                const bool hasResult = sample.analyse();
                const wq_lib::basic_stat expected = plainSums(values);
                std::fesetround(FE_TONEAREST);
                ASSERT_TRUE(hasResult);
                const wq_lib::basic_stat found = sample.getResult();
                EXPECT_EQ(found.n, n);
                EXPECT_SAME_BITS(found.min, expected.min);
                EXPECT_SAME_BITS(found.max, expected.max);
                EXPECT_SAME_BITS(found.sum, expected.sum);
                EXPECT_SAME_BITS(found.mean, expected.mean);
                EXPECT_SAME_BITS(found.sumOfSquares, expected.sumOfSquares);
                EXPECT_SAME_BITS(found.geoMean, expected.geoMean);
                EXPECT_SAME_BITS(found.harmMean, expected.harmMean);
                EXPECT_EQ(sample.isNegative(), std::any_of(values.begin(), values.end(), [](double x) { return x < 0.0; }));
            }
}

// ---------------------------------------------------------------- numbers to text

/** As the C library prints, which rounds exactly. */
std::string printedFixed(double value, int decimals)
{
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value > 0.0 ? "Inf" : "-Inf";
    std::vector<char> buffer(400 + static_cast<std::size_t>(decimals));
    std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
    return buffer.data();
}

/** Some of everything that rounding can meet. */
double numberToPrint(Generator& random, int kind)
{
    switch (kind % 7) {
    // clang-format off
    case 0: return anyBits(random);
    case 1: return static_cast<double>(random() % 2000001) / 1024.0 - 900.0;                                    // exact ties
    case 2: return (uniform(random) - 0.5) * std::pow(10.0, static_cast<int>(random() % 24) - 8);
    case 3: return static_cast<double>(random() % 1000000) / 1000.0;                                             // as people write them
    case 4: return std::ldexp(static_cast<double>(random() % 64) + 0.5, -static_cast<int>(random() % 60));       // ties far behind the point
    case 5: return static_cast<double>(random() % 10) + 1.0 - std::ldexp(1.0, -static_cast<int>(random() % 54));  // 9.999... carries
    default: return std::ldexp(static_cast<double>(random() >> (random() % 64)), -static_cast<int>(random() % 140));
        // clang-format on
    }
}

TEST(FastPaths, fixedNotationIsThatOfTheCLibrary)
{
    const wq_test::TempFolder folder;
    std::string path = folder.path("cells.txt");
    Generator random(7);
    std::string expected;
    wq_lib::CsvReport file;
    file.setFileName(path);
    ASSERT_TRUE(file.fileOpen());
    for (int i = 0; i < 300000; ++i) {
        const double value = numberToPrint(random, i);
        const int decimals = i % 1000 == 0 ? static_cast<int>(random() % 1100) : static_cast<int>(random() % 22);
        file.cell(value, decimals, false);
        file.writeEol();
        expected += printedFixed(value, decimals) + "\n";
    }
    ASSERT_TRUE(file.fileClose());
    EXPECT_TRUE(wq_test::contentOf(path) == expected);
}

TEST(FastPaths, fixedNotationAtTheEdges)
{
    // clang-format off
    const double values[] = {0.0,  -0.0, 0.5,     1.5,     2.5,    -0.5,   0.125, 0.375, 0.4999999999999999, 9.5,  99.5,
                             1e22, 1e23, DBL_MAX, DBL_MIN, 5e-324, 0x1p52, 0x1p53, 0x1p62, 0x1p63,             0x1p64, 9007199254740993.0};
    // clang-format on
    const wq_test::TempFolder folder;
    std::string path = folder.path("cells.txt");
    std::string expected;
    wq_lib::CsvReport file;
    file.setFileName(path);
    ASSERT_TRUE(file.fileOpen());
    for (const double value : values) {
        for (const double sign : {1.0, -1.0}) {
            for (int decimals = 0; decimals <= 25; ++decimals) {
                file.cell(sign * value, decimals, false);
                file.writeEol();
                expected += printedFixed(sign * value, decimals) + "\n";
            }
        }
    }
    ASSERT_TRUE(file.fileClose());
    EXPECT_EQ(wq_test::contentOf(path), expected);
}

// ---------------------------------------------------------------- text to numbers

std::string digits(Generator& random, std::uint64_t count)
{
    std::string text;
    for (; count > 0; --count) text += static_cast<char>('0' + random() % 10);
    return text;
}

/** Numbers as people and programs write them, and others that are close to the plain ones. */
std::string numberToRead(Generator& random)
{
    std::string number;
    if (random() % 4 == 0) number += random() % 2 == 0 ? "-" : "+";
    number += digits(random, random() % 12);
    if (random() % 3 != 0) number += "." + digits(random, random() % 14);
    if (number.find_first_of("0123456789") == std::string::npos) number += '7';
    if (random() % 8 == 0) number += "e" + std::to_string(static_cast<int>(random() % 40) - 20);
    if (random() % 8 == 0) number += random() % 2 == 0 ? " kg" : "\t/";
    return number;
}

/** Up to 21 digits; often next to the middle between two doubles, where rounding is hardest. */
std::string longDecimal(Generator& random)
{
    if (random() % 2 == 0) {
        const std::uint64_t whole = random() % 19 + 1;
        return digits(random, whole) + "." + digits(random, random() % (21 - whole));
    }
    const double value = std::ldexp(static_cast<double>((random() >> 11) | (std::uint64_t{1} << 52)), -static_cast<int>(random() % 60));
    const double half = std::ldexp(1.0, std::ilogb(value) - 53);
    const long double middle = static_cast<long double>(value) + static_cast<long double>(half);
    char text[64];
    std::snprintf(text, sizeof text, "%.*Lf", static_cast<int>(random() % 18), middle);
    return text;
}

/** Character by character. */
wq_lib::detail::PlainDecimal scanned(const char* text)
{
    wq_lib::detail::PlainDecimal decimal;
    const auto take = [&] {
        const char* const begin = text;
        for (; *text >= '0' && *text <= '9'; ++text) decimal.digits = decimal.digits * 10 + static_cast<std::uint64_t>(*text - '0');
        decimal.count += text - begin;
        return text - begin;
    };
    take();
    if (*text == '.') {
        ++text;
        decimal.decimals = take();
    }
    decimal.end = text;
    return decimal;
}

bool sameDecimals(const wq_lib::detail::PlainDecimal& a, const wq_lib::detail::PlainDecimal& b)
{
    return a.digits == b.digits && a.count == b.count && a.decimals == b.decimals && a.minus == b.minus && a.end == b.end;
}

TEST(FastPaths, decimalsEndAtAnyCharacter)
{
    Generator random(15);
    for (std::uint64_t whole = 0; whole <= 12; ++whole)
        for (std::uint64_t fraction = 0; fraction <= 12; ++fraction)
            for (int end = 0; end < 256; ++end) {
                std::string text = digits(random, whole) + (fraction > 0 ? "." + digits(random, fraction - 1) : "");
                if (end < '0' || end > '9') text += static_cast<char>(end);
                for (int i = 0; i < 8; ++i) text += static_cast<char>(random() % 4 != 0 ? random() % 256 : '0' + random() % 10);
                text.append(wq_lib::detail::plainDecimalSlack + 1, '\0');
                const wq_lib::detail::PlainDecimal found = wq_lib::detail::scanPlainDecimal(text.data());
                const wq_lib::detail::PlainDecimal expected = scanned(text.data());
                ASSERT_TRUE(sameDecimals(found, expected)) << "of '" << text << "'";

                const bool isShort = expected.end - text.data() <= 7 && expected.count < expected.end - text.data();
                const wq_lib::detail::PlainDecimal shortOne = wq_lib::detail::scanShortDecimal(text.data());
                if (isShort && expected.count > 0)
                    ASSERT_TRUE(sameDecimals(shortOne, expected)) << "of '" << text << "'";
                else
                    ASSERT_EQ(shortOne.count, 0) << "of '" << text << "'";

                text.insert(text.begin(), '-');
                const wq_lib::detail::PlainDecimal negative = wq_lib::detail::scanSignedDecimal(text.data());
                const wq_lib::detail::PlainDecimal shortNegative = wq_lib::detail::scanShortDecimal(text.data());
                wq_lib::detail::PlainDecimal expectedNegative = scanned(text.data() + 1);
                expectedNegative.minus = true;
                ASSERT_TRUE(sameDecimals(negative, expectedNegative)) << "of '" << text << "'";
                if (shortOne.count > 0)
                    ASSERT_TRUE(sameDecimals(shortNegative, expectedNegative)) << "of '" << text << "'";
                else
                    ASSERT_EQ(shortNegative.count, 0) << "of '" << text << "'";
            }
}

/** Every line read as a sample is what std::stod gives. */
void expectReadAsByStod(const std::vector<std::string>& lines)
{
    std::string text;
    std::vector<double> expected;
    for (const std::string& line : lines) {
        text += line + "\n";
        expected.push_back(std::stod(line));
    }
    const wq_test::TempFolder folder;
    wq_lib::BasicStatistics sample;
    ASSERT_TRUE(sample.readDataFile(folder.write("numbers.txt", text)));
    ASSERT_EQ(sample.getSampleSize(), expected.size());
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (wq_test::sameBits(sample.getDataPoint(i), expected[i])) continue;
        if (++wrong < 10) ADD_FAILURE() << lines[i] << " is read as " << sample.getDataPoint(i);
    }
    EXPECT_EQ(wrong, 0u);
}

TEST(FastPaths, decimalsAreThoseOfTheStandardConversion)
{
    Generator random(11);
    std::vector<std::string> lines(200000);
    for (std::string& line : lines) line = numberToRead(random);
    expectReadAsByStod(lines);
}

TEST(FastPaths, longDecimalsAreThoseOfTheStandardConversion)
{
    Generator random(12);
    std::vector<std::string> lines(400000);
    for (std::string& line : lines) line = longDecimal(random);
    expectReadAsByStod(lines);
}

TEST(FastPaths, shortAndLongDecimalsAreReadInTheirOrder)  // each has a way of its own, and a call takes no more than some hundred of them
{
    Generator random(16);
    const std::vector<std::string> shortOnes = {"12.5", "-12.5", ".5", "-.5", "543.922", "-543.922", "99999.9", "-0.0", "7.", "0.00001"};
    const std::vector<std::string> others = {"5", "-7", "543.9225", "-1234567.5", "51.083835041856176", "1e3", " 2.5", "2.5 ", "+2.5"};
    for (const std::size_t n : {1u, 2u, 255u, 256u, 257u, 511u, 512u, 513u, 5000u})
        for (const unsigned shortOfTen : {0u, 1u, 5u, 9u, 10u}) {
            std::vector<std::string> lines(n);
            for (std::string& line : lines) {
                const std::vector<std::string>& texts = random() % 10 < shortOfTen ? shortOnes : others;
                line = texts[random() % texts.size()];
            }
            expectReadAsByStod(lines);
        }
}

TEST(FastPaths, decimalsAtTheEdges)
{
    // clang-format off
    expectReadAsByStod({"9007199254740991", "9007199254740992", "9007199254740993", "9007199254740994", "9007199254740995",
                        "4503599627370496.5", "4503599627370497.5", "4503599627370496.500000000000001", "0.5000000000000000000",
                        "0.1250000000000000000", "1.000000000000000000", "9999999999999999999", "9.999999999999999999",
                        "0.9999999999999999999", "18446744073709551615", "18446744073709551616", "10000000000000000000",
                        "0.0000000000000000001", "0.0000000000000000000", "-0.0", "-0", "00000000000000000001", "0000000000000000000.5",
                        "12345678", "123456789", "1234567.", ".12345678", "1.", ".5", "-.5", "1.5\r", "1.5 ", " 1.5", "1..5", "1.5.5", "1e5",
                        "1.5E-3", "0x10", "0x1p3", "17976931348623157000", "5e-1",
                        "24871460570943e12", "2810210151591e18", "21918534106e17"});  // rounded twice with more digits between
    // clang-format on
}

TEST(FastPaths, pairsAreReadAsByStodAcrossBlocks)
{
    Generator random(13);
    std::string text;
    std::vector<wq_lib::data_pair> expected;
    constexpr const char* delimiters[] = {";", ":", "|", ";;", "|:", " ; "};
    for (int i = 0; i < 100000; ++i) {
        const std::string x = random() % 3 == 0 ? longDecimal(random) : numberToRead(random);
        const std::string y = random() % 3 == 0 ? longDecimal(random) : numberToRead(random);
        text += x + delimiters[random() % 6] + y + (random() % 9 == 0 ? "\r\n" : "\n");
        if (random() % 50 == 0) text += "\n";
        expected.push_back({std::stod(x), std::stod(y)});
    }
    const wq_test::TempFolder folder;
    wq_lib::BasicXyStatistics sample;
    ASSERT_TRUE(sample.readDataFile(folder.write("pairs.txt", text)));
    ASSERT_EQ(sample.getSampleSize(), expected.size());
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const wq_lib::data_pair pair = sample.getDataPair(i);
        wrong += wq_test::sameBits(pair.x, expected[i].x) && wq_test::sameBits(pair.y, expected[i].y) ? 0u : 1u;
    }
    EXPECT_EQ(wrong, 0u);
}

TEST(FastPaths, wideProductFromHalvesIsTheProcessors)
{
    Generator random(14);
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t a = random() >> (random() % 64);
        const std::uint64_t b = i % 100 == 0 ? UINT64_MAX : random() >> (random() % 64);
        const wq_lib::detail::Wide whole = wq_lib::detail::product(a, b);
        const wq_lib::detail::Wide parts = wq_lib::detail::productOfHalves(a, b);
        ASSERT_TRUE(whole.high == parts.high && whole.low == parts.low) << a << " " << b;
    }
}

// ---------------------------------------------------------------- random numbers

TEST(FastPaths, drawsAreThoseOfTheStandardDistributions)
{
    wq_lib::RandomCpp11 random;
    std::mt19937 engine(0);
    engine.discard(999);
    std::uniform_int_distribution<unsigned int> integer(0, 0xFFFFFFFF);
    std::uniform_real_distribution<double> real(0.0, 1.0);
    std::size_t wrong = 0;
    for (int i = 0; i < 300000; ++i) {
        if (i % 3 == 0)
            wrong += random.getInteger() == integer(engine) ? 0u : 1u;
        else
            wrong += wq_test::sameBits(random.getReal(), real(engine)) ? 0u : 1u;
    }
    EXPECT_EQ(wrong, 0u);
}

TEST(FastPaths, drawsAreTheSameOnEveryProcessorAndInEveryRoundingMode)
{
    using wq_lib::detail::nextInteger;
    using wq_lib::detail::nextReal;
    const wq_lib::detail::TwisterDraws baseline = wq_lib::detail::baselineDraws();
    const wq_lib::detail::TwisterDraws best = wq_lib::detail::bestDraws();
    for (const int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::mt19937 plain(static_cast<unsigned>(mode) + 1);
        std::mt19937 vectors(static_cast<unsigned>(mode) + 1);
        std::mt19937 ready(static_cast<unsigned>(mode) + 1);
        std::mt19937 standard(static_cast<unsigned>(mode) + 1);
        std::size_t wrong = 0;
        std::fesetround(mode);
        for (int i = 0; i < 20000; ++i) {  // the engine makes 624 numbers at once: its list ends before and within a real
            const auto integer = static_cast<unsigned int>(standard());
            wrong += baseline.integer(plain) == integer && best.integer(vectors) == integer && nextInteger(ready) == integer ? 0u : 1u;
            if (i % 3 == 0) continue;
            const double low = static_cast<double>(standard());
            const double high = static_cast<double>(standard());
            const double real = std::min((low + high * 0x1p32) * 0x1p-64, 0x1.fffffffffffffp-1);
            wrong += wq_test::sameBits(baseline.real(plain), real) && wq_test::sameBits(best.real(vectors), real) ? 0u : 1u;
            wrong += wq_test::sameBits(nextReal(ready), real) ? 0u : 1u;
        }
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(wrong, 0u) << "rounding mode " << mode;
        EXPECT_TRUE(plain == standard && vectors == standard && ready == standard);
    }
}

/** An engine whose 624 numbers are the same one. @param drawn how many of them are drawn. */
std::mt19937 engineOf(unsigned int number, int drawn)
{
    std::ostringstream state;
    for (int i = 0; i < 624; ++i) state << number << ' ';
    state << drawn;
    std::istringstream in(state.str());
    std::mt19937 engine;
    in >> engine;
    EXPECT_FALSE(in.fail());
    return engine;
}

TEST(FastPaths, realsOfExtremeDrawsStayWithinTheirLimits)
{
    for (const int mode : roundingModes)
        for (const int drawn : {0, 621, 622}) {
            std::fesetround(mode);
            std::mt19937 zeros = engineOf(0, drawn);
            const double least = wq_lib::detail::nextReal(zeros);
            std::mt19937 ones = engineOf(316513203u, drawn);  // tempered, all bits are set
            const double greatest = wq_lib::detail::nextReal(ones);
            std::fesetround(FE_TONEAREST);
            EXPECT_SAME_BITS(least, 0.0);
            EXPECT_EQ(greatest, 0x1.fffffffffffffp-1);
        }
}

// ---------------------------------------------------------------- ln gamma

TEST(FastPaths, tabulatedLogGammaIsItsOwnProduct)
{
    const auto product = [](double x) {
        double sum = 0.0;
        double y = x - 1.0;
        for (; y > 0.0; y -= 1.0) sum += std::log(y);
        return y < 0.0 ? sum + 0.5723649429247001 : sum;
    };
    for (double x = 0.25; x <= 140.0; x += 0.25) EXPECT_SAME_BITS(wq_lib::lnGamma(x), product(x)) << x;
    for (const double x : {-3.0, -0.5, 0.0, 5e-324, 127.9999999999999, 128.0, 128.5, 1e3})
        EXPECT_SAME_BITS(wq_lib::lnGamma(x), product(x)) << x;
}

}  // namespace
