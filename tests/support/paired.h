// Paired samples: a naive computation to compare with, and objects that tell which of their virtual operations an analysis calls.
#pragma once

#include <wq_stat/basic_xy_stat.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "bits.h"
#include "files.h"

namespace wq_test {

using Pairs = std::vector<wq_lib::data_pair>;
using Transformation = double (*)(double);
using Choice = bool (*)(const wq_lib::data_pair&);
using Calls = std::vector<std::string>;

inline double asItIs(double value) { return value; }
inline double logarithm(double value) { return std::log(value); }
inline bool every(const wq_lib::data_pair&) { return true; }

// The samples that several tests share; tests/reference has them under the same names.
inline const Pairs ordinaryPairs = {{1, 2.5}, {2, 4}, {3, 5.25}, {4, 8}, {5, 9.5}, {6, 13}, {7, 16.25}, {8, 20}, {9, 25.5}, {10, 31}};
inline const Pairs fallingPairs = {{0.5, 32}, {1, 20}, {2, 13}, {4, 8}, {8, 5.5}, {16, 3}};

template <typename T>
T holding(const Pairs& pairs)
{
    T object;
    object.copyFrom(pairs);
    return object;
}

template <typename T>
T readFrom(const std::string& path)
{
    T object;
    EXPECT_TRUE(object.readDataFile(path)) << path;
    return object;
}

inline wq_lib::basic_stat resetRecord()
{
    wq_lib::basic_stat record;
    record.min = 1.7976931348623157e308;
    record.max = 2.2250738585072014e-308;
    return record;
}

// The paired statistics once more, straight from the definitions: count, extremes and sums of what is kept, then squares of all.
// The covariance is left out.
inline wq_lib::xy_stat naiveStatistics(const Pairs& pairs, Choice kept = every, Transformation ofX = asItIs, Transformation ofY = asItIs)
{
    wq_lib::xy_stat s;
    s.x = s.y = resetRecord();
    for (const wq_lib::data_pair& pair : pairs) {
        if (!kept(pair)) continue;
        s.x.n += 1;
        s.x.min = pair.x < s.x.min ? pair.x : s.x.min;
        s.x.max = pair.x > s.x.max ? pair.x : s.x.max;
        s.y.min = pair.y < s.y.min ? pair.y : s.y.min;
        s.y.max = pair.y > s.y.max ? pair.y : s.y.max;
        s.x.sum += ofX(pair.x);
        s.y.sum += ofY(pair.y);
    }
    const double n = static_cast<double>(s.x.n);
    s.x.mean = s.x.sum / n;
    s.y.mean = s.y.sum / n;
    for (const wq_lib::data_pair& pair : pairs) {
        const double dx = ofX(pair.x) - s.x.mean, dy = ofY(pair.y) - s.y.mean;
        s.x.sumOfSquares += dx * dx;
        s.y.sumOfSquares += dy * dy;
        s.sumProducts += dx * dy;
    }
    for (wq_lib::basic_stat* record : {&s.x, &s.y}) {
        record->variance = record->sumOfSquares / n;
        record->sampleVariance = record->sumOfSquares / (n - 1.0);
    }
    return s;
}

// Every field but the covariance, which no analysis of logarithms computes.
inline void expectSameStatistics(const wq_lib::xy_stat& actual, const wq_lib::xy_stat& expected)
{
    const wq_lib::basic_stat* const records[][2] = {{&actual.x, &expected.x}, {&actual.y, &expected.y}};
    for (const auto& [a, b] : records) {
        SCOPED_TRACE(a == &actual.x ? "x" : "y");
        EXPECT_EQ(a->n, b->n);
        EXPECT_SAME_BITS(a->min, b->min);
        EXPECT_SAME_BITS(a->max, b->max);
        EXPECT_SAME_BITS(a->sum, b->sum);
        EXPECT_SAME_BITS(a->mean, b->mean);
        EXPECT_SAME_BITS(a->sumOfSquares, b->sumOfSquares);
        EXPECT_SAME_BITS(a->variance, b->variance);
        EXPECT_SAME_BITS(a->sampleVariance, b->sampleVariance);
        for (const double unused : {a->geoMean, a->harmMean, a->median, a->quartile1, a->quartile3, a->stdev, a->sampleStdev, a->stdError,
                                    a->cv, a->significance, a->confidenceLimits.getLower(), a->confidenceLimits.getUpper()})
            EXPECT_SAME_BITS(unused, 0.0);
    }
    EXPECT_SAME_BITS(actual.sumProducts, expected.sumProducts);
}

// Notes every call of a virtual operation that it overrides; `change` is what getDataPair does to a stored pair.
template <typename T>
class Recorded : public T {
public:
    using T::readDataFile;

    void initDataList(std::size_t n) override
    {
        calls.push_back("reserve " + std::to_string(n));
        T::initDataList(n);
    }
    void resetResult() override
    {
        calls.emplace_back("reset");
        T::resetResult();
    }
    bool readDataFile() override
    {
        calls.emplace_back("read");
        return T::readDataFile();
    }
    wq_lib::data_pair getDataPair(std::size_t i) override
    {
        calls.push_back("pair " + std::to_string(i));
        return change(T::getDataPair(i));
    }

    Calls calls;
    std::function<wq_lib::data_pair(wq_lib::data_pair)> change = [](wq_lib::data_pair pair) { return pair; };
};

// The calls `before`, then one of every pair first ... last, and all of these `passes` times.
inline Calls callsOfPasses(Calls before, std::size_t first, std::size_t last, int passes = 2)
{
    for (int pass = 0; pass < passes; ++pass)
        for (std::size_t i = first; i <= last; ++i) before.push_back("pair " + std::to_string(i));
    return before;
}

inline std::string exported(wq_lib::BasicStatistics& sample, const std::string& comment)
{
    const TempFolder folder;
    const std::string path = folder.path("export.txt");
    EXPECT_TRUE(sample.exportToR(path, comment));
    return contentOf(path);
}

}  // namespace wq_test
