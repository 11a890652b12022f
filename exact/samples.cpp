#include <wq_exact/samples.h>

#include <wq_exact/distributions.h>

#include "objects.h"
#include "p_values.h"

#include <wq_stat/basic_xy_stat.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace wq_exact {

namespace {

/** The values of a sample. */
struct StoredValues : wq_lib::BasicStatistics {
    static const std::vector<double>& of(const wq_lib::BasicStatistics& sample) { return sample.*(&StoredValues::data); }
};

/** Calls work with each value in the data range. */
template <typename Work>
void eachValue(const wq_lib::BasicStatistics& sample, Work work)
{
    const std::vector<double>& values = StoredValues::of(sample);
    for (std::size_t i = sample.getDataStart(); i < values.size() && i <= sample.getDataEnd(); ++i) work(values[i]);
}

}  // namespace

namespace {

/** Of a sample, from deviations. A mean of large values that lie close together has lost digits that its difference to mu would need. */
struct Moments {
    long double origin = 0.0L;
    long double mean = 0.0L;  ///< relative to the origin
    double variance = none;   ///< 0 of a constant sample
};

/** What a sum of so many numbers, and their mean, may be off by, relative to their size. */
double roundingOf(std::size_t n) { return static_cast<double>(n) * std::numeric_limits<double>::epsilon(); }

/** Of a record alone. A mean that is rounded leaves equal values a variance, and one that is no larger tells nothing from that. */
Moments momentsOf(const wq_lib::basic_stat& record)
{
    const double error = roundingOf(record.n) * record.mean;
    const bool isConstant = std::fabs(record.sampleVariance) <= 0.5 * error * error;
    return {record.mean, 0.0L, isConstant ? 0.0 : record.sampleVariance};
}

Moments momentsOf(const wq_lib::BasicStatistics& sample, const wq_lib::basic_stat& record)
{
    std::size_t n = 0;
    long double origin = 0.0L;
    long double sum = 0.0L;
    eachValue(sample, [&](double value) {
        if (n++ == 0) origin = value;
        sum += value - origin;
    });
    if (n != record.n) return momentsOf(record);  // which is not that of the values held
    const long double mean = sum / static_cast<long double>(n);
    long double squares = 0.0L;
    eachValue(sample, [&](double value) {
        const long double rest = value - origin - mean;
        squares += rest * rest;
    });
    return {origin, mean, static_cast<double>(squares / (static_cast<long double>(n) - 1.0L))};
}

}  // namespace

OneSampleResult of(const wq_lib::BasicStatistics& sample) noexcept
{
    const wq_lib::basic_stat& result = sample.getResult();
    const double alpha = sample.getSignificance();
    const double df = detail::degrees(result.n, 1);
    const double mu = sample.getNullHypothesis();
    const Moments moments = momentsOf(sample, result);
    const double variance = moments.variance > 0.0 ? moments.variance : none;
    const auto distance = static_cast<double>(moments.origin - mu + moments.mean);
    const double error = std::sqrt(variance / static_cast<double>(result.n));

    OneSampleResult exact;
    exact.mean = detail::twoSidedT(distance / error, df, alpha);
    const bool reportsOther = detail::isAny<wq_lib::TwoSamples, wq_lib::Frequency, wq_lib::BasicXyStatistics>(sample);
    if (!reportsOther) exact.mean.acceptedByReport = detail::acceptedByReport(sample);
    exact.criticalHalfAlpha = tTwoSidedQuantile(alpha / 2.0, df);
    exact.meanLimits = detail::around(static_cast<double>(moments.origin + moments.mean), exact.mean.criticalValue * error);
    if (variance > 0.0) exact.varianceLimits = detail::varianceLimits(variance, df, alpha);
    exact.cohensD = distance / std::sqrt(variance);
    eachValue(sample, [&exact](double value) { exact.maximum = std::fmax(exact.maximum, value); });
    return exact;
}

namespace {

/** Of the values held, unless the record is another's: the first sample's may have been set. */
double varianceOf(const wq_lib::BasicStatistics& sample, const wq_lib::basic_stat& record)
{
    constexpr double ofSums = 1e-9;
    const Moments moments = momentsOf(sample, record);
    const auto mean = static_cast<double>(moments.origin + moments.mean);
    const double error = roundingOf(record.n) * std::hypot(mean, std::sqrt(moments.variance));
    const bool isAnothers = std::fabs(record.sampleVariance - moments.variance) > ofSums * moments.variance + error * error;
    return isAnothers ? momentsOf(record).variance : moments.variance;
}

TwoVariancesResult compared(const wq_lib::TwoSamples& samples, double first, double second) noexcept
{
    const double alpha = samples.getSignificance();
    const double df[] = {detail::degrees(samples.getResult().n, 1), detail::degrees(samples.getSecondSample().n, 1)};
    const bool firstIsLarger = first > second;
    const double df1 = df[firstIsLarger ? 0 : 1];
    const double df2 = df[firstIsLarger ? 1 : 0];
    const double F = firstIsLarger ? first / second : second / first;

    TwoVariancesResult exact;
    exact.ratio = detail::twoSidedF(F, df1, df2, alpha);
    exact.ratio.acceptedByReport = detail::acceptedByReport(samples);
    exact.lowerTail = fCdf(F, df1, df2);
    if (F > 0.0) exact.ratioLimits = {F / exact.ratio.criticalValue, F * fUpperQuantile(detail::eachSide(alpha), df2, df1)};
    const double variances[] = {first, second};
    for (int i = 0; i < 2; ++i) {
        exact.variances[i] = variances[i];
        if (variances[i] > 0.0) exact.varianceLimits[i] = detail::varianceLimits(variances[i], df[i], alpha);
    }
    return exact;
}

}  // namespace

TwoVariancesResult of(const wq_lib::TwoSamples& samples) noexcept
{
    return compared(samples, varianceOf(samples, samples.getResult()), momentsOf(samples.getSecondSample()).variance);
}

TwoVariancesResult of(const wq_lib::TwoSamples& samples, const wq_lib::BasicStatistics& second) noexcept
{
    return compared(samples, varianceOf(samples, samples.getResult()), varianceOf(second, samples.getSecondSample()));
}

namespace {

/** Whether a value lies in the last class, by the class that the table finds for it; its upper end, which may have been rounded, belongs to
 * it. */
bool isInLastClass(const wq_lib::Frequency& sample, double value)
{
    constexpr double rounding = 1e-9;
    const double distance = value - sample.getStartClass();
    const double width = sample.getClassWidth();
    const auto classes = static_cast<double>(sample.getTable().size());
    if (width == 0.0) return distance == 0.0;
    return distance / width >= classes - 1.0 && distance / width <= classes * (1.0 + rounding);
}

}  // namespace

FrequencyResult of(const wq_lib::Frequency& sample) noexcept
{
    FrequencyResult exact;
    eachValue(sample, [&](double value) {
        ++exact.n;
        exact.minimum = std::fmin(exact.minimum, value);
        exact.maximum = std::fmax(exact.maximum, value);
        if (!sample.getTable().empty() && isInLastClass(sample, value)) ++exact.lastClass;
    });
    for (const wq_lib::frequency_class& row : sample.getTable()) exact.counted += row.count;
    exact.meanLimits = of(static_cast<const wq_lib::BasicStatistics&>(sample)).meanLimits;
    return exact;
}

}  // namespace wq_exact
