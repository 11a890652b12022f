// BasicStatistics::analyse and what does the same: sorted sample, moments, three means, quartiles, extremes, interval of the mean.
#include "boost_in_double.h"
#include "contenders.h"
#include "inputs.h"

#include <wq_stat/basic_stat.h>
#include <wq_stat/distributions.h>

#include <boost/math/statistics/univariate_statistics.hpp>
#include <boost/sort/spreadsort/float_sort.hpp>
#include <gsl/gsl_cdf.h>
#include <gsl/gsl_sort.h>
#include <gsl/gsl_statistics.h>
#include <hwy/contrib/sort/vqsort.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace wq_bench {

namespace {

/** n, sum, mean, sample variance, geometric and harmonic mean, minimum, quartile 1, median, quartile 3, maximum, half the interval. */
using Summary = std::array<double, 12>;
using Sample = std::vector<double>;

Summary library(wq_lib::BasicStatistics& sample)
{
    sample.analyse();
    const wq_lib::basic_stat& r = sample.getResult();
    return {static_cast<double>(r.n),
            r.sum,
            r.mean,
            r.sampleVariance,
            r.geoMean,
            r.harmMean,
            r.min,
            r.quartile1,
            r.median,
            r.quartile3,
            r.max,
            r.confidenceLimits.getUpper() - r.mean};
}

double medianOfSorted(const Sample& sorted)
{
    const std::size_t middle = sorted.size() / 2;
    return sorted.size() % 2 != 0 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2.0;
}

/** What no library of C++ has, the geometric and the harmonic mean, and what a sorted sample shows at once. */
Summary completed(const Sample& sorted, double mean, double variance, double median, double t)
{
    double logSum = 0.0;
    double reciprocalSum = 0.0;
    for (const double x : sorted) {
        logSum += std::log(x);
        reciprocalSum += 1.0 / x;
    }
    const std::size_t size = sorted.size();
    const double n = static_cast<double>(size);
    return {n,
            n * mean,
            mean,
            variance,
            std::exp(logSum / n),
            n / reciprocalSum,
            sorted.front(),
            sorted[size / 4],
            median,
            sorted[3 * size / 4],
            sorted.back(),
            t * std::sqrt(variance / n)};
}

/** Straightforward C++. */
Summary plain(Sample& sample)
{
    std::sort(sample.begin(), sample.end());
    const double n = static_cast<double>(sample.size());
    double sum = 0.0;
    for (const double x : sample) sum += x;
    const double mean = sum / n;
    double squares = 0.0;
    for (const double x : sample) squares += (x - mean) * (x - mean);
    return completed(sample, mean, squares / (n - 1.0), medianOfSorted(sample), wq_lib::t_PercentPoint(0.05, sample.size() - 1));
}

/** Boost.Math after another's sort. */
template <typename Sort>
Summary boostAfter(Sample& sample, Sort sort)
{
    sort(sample);
    const auto [mean, variance] = boost::math::statistics::mean_and_sample_variance(sample);
    const double df = static_cast<double>(sample.size()) - 1.0;
    return completed(sample, mean, variance, medianOfSorted(sample), boost::math::quantile(StudentsT(df), 0.975));
}

Summary boostWithVqsort(Sample& sample)
{
    static const hwy::Sorter sorter;
    return boostAfter(sample, [](Sample& s) { sorter(s.data(), s.size(), hwy::SortAscending()); });
}

Summary boostWithSpreadsort(Sample& sample)
{
    return boostAfter(sample, [](Sample& s) { boost::sort::spreadsort::float_sort(s.begin(), s.end()); });
}

Summary gsl(Sample& sample)
{
    const std::size_t n = sample.size();
    gsl_sort(sample.data(), 1, n);
    const double mean = gsl_stats_mean(sample.data(), 1, n);
    return completed(sample, mean, gsl_stats_variance_m(sample.data(), 1, n, mean), gsl_stats_median_from_sorted_data(sample.data(), 1, n),
                     gsl_cdf_tdist_Pinv(0.975, static_cast<double>(n) - 1.0));
}

void enterRow(const std::string& kind, std::size_t n)
{
    const std::string row = "one-sample-" + kind + "/" + std::to_string(n);
    // Other values for every call: the order of a small sample that comes again and again is learnt by the processor.
    const auto values = [kind, n](std::size_t call) {
        const double* const first = input(kind, mostValues) + call % (mostValues / n) * n;
        return std::make_unique<Sample>(first, first + n);
    };
    const auto analysis = [values](std::size_t call) {
        auto sample = std::make_unique<wq_lib::BasicStatistics>();
        sample->copyFrom(*values(call));
        return sample;
    };
    contenderWithFreshInput(row, "wq_stat", callsFor(n), analysis, library);
    contenderWithFreshInput(row, "plain", callsFor(n), values, plain);
    contenderWithFreshInput(row, "boost-vqsort", callsFor(n), values, boostWithVqsort);
    contenderWithFreshInput(row, "boost-spreadsort", callsFor(n), values, boostWithSpreadsort);
    if (kind == "normal") contenderWithFreshInput(row, "gsl", callsFor(n), values, gsl);  // many times slower than all others
}

/** n, the first and the last value. */
using Copied = std::array<double, 3>;

/** A part of the input that is to be copied into what is empty yet. */
template <typename Target>
struct Copying {
    const Sample& values;
    Target target;
};

void enterCopyRow(std::size_t n)
{
    const std::string row = "copying/" + std::to_string(n);
    static std::map<std::size_t, Sample> samples;
    const Sample& values = samples[n];
    const auto prepare = [n, &values] {
        if (values.empty()) samples[n].assign(input("normal", mostValues), input("normal", mostValues) + n);
    };
    contenderWithFreshInput(
        row, "wq_stat", 1,
        [prepare, &values](std::size_t) {
            prepare();
            return std::make_unique<Copying<wq_lib::BasicStatistics>>(Copying<wq_lib::BasicStatistics>{values, {}});
        },
        [](Copying<wq_lib::BasicStatistics>& copying) -> Copied {
            wq_lib::BasicStatistics& sample = copying.target;
            sample.copyFrom(copying.values);
            return {static_cast<double>(sample.getSampleSize()), sample.getDataPoint(0), sample.getDataPoint(copying.values.size() - 1)};
        });
    contenderWithFreshInput(
        row, "std", 1,
        [prepare, &values](std::size_t) {
            prepare();
            return std::make_unique<Copying<Sample>>(Copying<Sample>{values, {}});
        },
        [](Copying<Sample>& copying) -> Copied {
            copying.target.insert(copying.target.end(), copying.values.begin(), copying.values.end());
            return {static_cast<double>(copying.target.size()), copying.target.front(), copying.target.back()};
        });
}

}  // namespace

void enterOneSample()
{
    for (const std::size_t n : {1000u, 10000u, 100000u, 1000000u, 10000000u}) enterRow("normal", n);
    for (const char* const kind : {"uniform", "lognormal", "rounded", "ascending"})
        for (const std::size_t n : {1000u, 100000u, 10000000u}) enterRow(kind, n);
    for (const std::size_t n : {100000u, 10000000u}) enterCopyRow(n);
}

}  // namespace wq_bench
