// One data file, read by each of the three readers: what they make of it is what the plain readers of tests/support make of it, bit for
// bit.

#include "memory_file.h"
#include "target.h"
#include "misread_numbers.h"

#include "support/plain_readers.h"

#include <wq_stat/basic_stat.h>
#include <wq_stat/basic_xy_stat.h>
#include <wq_stat/regression_multi_y.h>

#include <cstddef>
#include <string>

using namespace wq_lib;
using wq_test::Ends;
using wq_test::Reading;

namespace {

// A few lines may ask for any number of pairs; beyond this one the series reader is left alone.
constexpr std::size_t enoughPairs = 20000;

struct OneSample : BasicStatistics {
    Reading reading(Ends ends) const
    {
        Reading r{ends, {}, comment};
        for (const double x : data) r.data.emplace_back(x, 0.0);
        return r;
    }
};

template <typename Paired>
struct Pairs : Paired {
    Reading reading(Ends ends) const
    {
        Reading r{ends, {}, this->comment};
        for (const data_pair& pair : this->pairs) r.data.emplace_back(pair.x, pair.y);
        return r;
    }
};

void check(const char* reader, const Reading& reading, const Reading& expected)
{
    wq_fuzz::require(same(reading, expected), reader, "\nlibrary: ", reading, "\nplainly: ", expected);
}

// All three readers start with these two observations.
const Reading before = {Ends::normally, {{7.5, 0.0}, {-2.0, 0.0}}, "held before"};

template <typename Analysis>
void hold(Analysis& analysis)
{
    analysis.setComment(before.comment);
    for (const auto& [x, y] : before.data) {
        if constexpr (std::is_base_of_v<BasicXyStatistics, Analysis>)
            analysis.add(x, y);
        else
            analysis.add(x);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string content(reinterpret_cast<const char*>(bytes), size);
    if (wq_fuzz::holdsMisreadNumber(content)) return 0;
    static const wq_fuzz::MemoryFile file;
    file.write(content);
    const std::string path = file.path();

    OneSample sample;
    hold(sample);
    sample.setSorted(true);
    const Reading expectedSample = plainOneSample(path, before);
    check("one sample", sample.reading(wq_test::endOf([&] { return sample.readDataFile(path); })), expectedSample);
    wq_fuzz::require(sample.getSampleSize() == expectedSample.data.size(), "sample size ", sample.getSampleSize());
    wq_fuzz::require(sample.getDataEnd() == expectedSample.data.size(), "data end ", sample.getDataEnd());
    wq_fuzz::require(sample.isSorted() == (expectedSample.data.size() == before.data.size()), "sorted ", sample.isSorted());

    Pairs<BasicXyStatistics> pairs;
    hold(pairs);
    const Reading expectedPairs = plainPairs(path, before);
    check("pairs", pairs.reading(wq_test::endOf([&] { return pairs.readDataFile(path); })), expectedPairs);
    wq_fuzz::require(pairs.getSampleSize() == expectedPairs.data.size(), "pairs: sample size ", pairs.getSampleSize());
    wq_fuzz::require(pairs.getDataEnd() == expectedPairs.data.size() - 1, "pairs: data end ", pairs.getDataEnd());

    const Reading expectedSeries = plainSeries(path, before, enoughPairs);
    if (expectedSeries.ends == Ends::gaveUp) return 0;
    Pairs<LinearRegressionMultiY> series;
    hold(series);
    check("series", series.reading(wq_test::endOf([&] { return series.readSeriesFile(path); })), expectedSeries);
    // A file without a pair empties the list, and only the list.
    const std::size_t n = expectedSeries.data.empty() ? before.data.size() : expectedSeries.data.size();
    wq_fuzz::require(series.getSampleSize() == n, "series: sample size ", series.getSampleSize());
    wq_fuzz::require(series.getDataEnd() == n - 1, "series: data end ", series.getDataEnd());
    return 0;
}
