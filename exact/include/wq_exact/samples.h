#ifndef WQ_EXACT_SAMPLES_H
#define WQ_EXACT_SAMPLES_H

/// @file
/// Exact figures of samples of numbers: t test of a mean, two variances, frequency classes.

#include <wq_exact/export.h>
#include <wq_exact/test.h>
#include <wq_stat/basic_stat.h>
#include <wq_stat/frequency.h>
#include <wq_stat/two_samples.h>

#include <cstddef>

namespace wq_exact {

/** A sample and its mean. */
struct OneSampleResult {
    Test mean;                        ///< Student's t of mean = null hypothesis, two-sided, n - 1 degrees of freedom
    double criticalHalfAlpha = none;  ///< the critical t at half the level, where the report decides
    Limits meanLimits;                ///< of the mean
    Limits varianceLimits;            ///< of the sample variance, by chi-square
    double cohensD = none;            ///< (mean - null hypothesis) / sample standard deviation
    double maximum = none;            ///< largest value, whatever its sign

    /** @return whether the object's own report decides differently. */
    bool reportDiffers() const noexcept { return mean.reportDiffers(); }
};

/**
 * @param sample after analyse(); its values in the data range and its settings count, or its result where that has another n.
 * @return the exact figures; NaN where there are none, as of a constant sample. Of an object of another analysis that is known as a sample
 * there is no decision of the report, which is on something else.
 */
WQ_EXACT_EXPORT OneSampleResult of(const wq_lib::BasicStatistics& sample) noexcept;

/** Two variances. */
struct TwoVariancesResult {
    Test ratio;  ///< F = the larger variance / the smaller one; p two-sided, the critical value that of the upper tail alpha / 2
    double lowerTail = none;             ///< P(F <= statistic)
    Limits ratioLimits;                  ///< of the ratio of the larger variance to the smaller one
    Limits varianceLimits[2];            ///< of the variance of the first and of the second sample; none of a constant one
    double variances[2] = {none, none};  ///< of the first and of the second sample, divisor n - 1; 0 of a constant one

    /** @return whether the object's own report decides differently. */
    bool reportDiffers() const noexcept { return ratio.reportDiffers(); }
};

/**
 * Takes the first variance from the values that the object holds, where its record is theirs, and the second from its record, which has
 * only the digits that the rounding of its mean has left it: of values near 1e14 that differ by some 0.1 it has none. A record's variance
 * that rounding alone may make, up to (n eps mean)^2 / 2, counts as 0.
 * @param samples after analyse().
 * @return the exact figures; NaN where there are none, as of two constant samples. Beside one constant sample F is infinite, and p 0.
 */
WQ_EXACT_EXPORT TwoVariancesResult of(const wq_lib::TwoSamples& samples) noexcept;

/**
 * The same with the second variance from its values.
 * @param samples after analyse(). @param second the analysed sample whose record was set; where that is another's, the record counts.
 * @return the exact figures; NaN where there are none, as of two constant samples.
 */
WQ_EXACT_EXPORT TwoVariancesResult of(const wq_lib::TwoSamples& samples, const wq_lib::BasicStatistics& second) noexcept;

/** A table of frequency classes beside the values it was made of. */
struct FrequencyResult {
    std::size_t n = 0;          ///< values in the analysed range
    std::size_t counted = 0;    ///< values that the table counts
    std::size_t lastClass = 0;  ///< values that lie in the last class, its upper limit included, whether the table counts them or not
    double minimum = none;      ///< smallest value
    double maximum = none;      ///< largest value, whatever its sign
    Limits meanLimits;          ///< of the mean of the values in the analysed range, as those of a sample

    /** @return how many values the table leaves out. */
    std::size_t leftOut() const noexcept { return n > counted ? n - counted : 0; }
};

/** @param sample after buildTable() and analyse(). @return how many values there are, and how many the table counts. */
WQ_EXACT_EXPORT FrequencyResult of(const wq_lib::Frequency& sample) noexcept;

}  // namespace wq_exact

#endif
