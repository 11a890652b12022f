#ifndef WQ_STAT_TWO_SAMPLES_H
#define WQ_STAT_TWO_SAMPLES_H

/// @file
/// F test of the variances of two samples.

#include <wq_stat/basic_stat.h>

#include <cstddef>

namespace wq_lib {

/**
 * F test of the variances of two samples, two-sided. Both records must hold their sample's n and sampleVariance when
 * analyse() is called: the first from BasicStatistics::analyse() on this object (which resets both records) or from
 * setFirstSample, the second, set after that, from setSecondSample.
 */
class WQ_STAT_EXPORT TwoSamples : public BasicStatistics {
public:
    TwoSamples();
    TwoSamples(const TwoSamples&) = default;             ///< a copy
    TwoSamples(TwoSamples&& other) noexcept;             ///< leaves the other as a new one
    TwoSamples& operator=(const TwoSamples&) = default;  ///< a copy
    TwoSamples& operator=(TwoSamples&& other) noexcept;  ///< leaves the other as a new one
    ~TwoSamples() override;

    /** Resets the records of both samples, but not F and what belongs to it. */
    void resetResult() override;

    /** Computes F, its probability and the critical value from the two records, and resets nothing. @return true. */
    bool analyse() override;

    /** @return true when H0, equal variances, is accepted: critical F > F. */
    bool acceptH0() override;

    /** Prints the results of the last analyse() to the console. The p printed is the lower-tail probability of F. */
    void reportConsole() override;

    /** @return the larger variance over the smaller one; v2 / v1 when neither is larger. */
    double compute_ratio(double v1, double v2) const;

    /** The record of the first sample, of which n and sampleVariance are used. */
    void setFirstSample(const basic_stat& sample) { result = sample; }
    /** The record of the second sample, likewise. */
    void setSecondSample(const basic_stat& sample) { secondSample = sample; }
    const basic_stat& getSecondSample() const { return secondSample; }  ///< the record, as set

    double getF() const { return F; }                        ///< the larger sample variance / the smaller one
    double getFProbability() const { return FProbability; }  ///< lower-tail probability of F
    double getCriticalF() const { return criticalF; }        ///< what F must stay below

    /** @return the degrees of freedom of the sample with the larger variance; of the second when they are equal. */
    std::size_t getDf1() const { return df1; }
    std::size_t getDf2() const { return df2; }  ///< those of the other sample

protected:
    basic_stat secondSample;    ///< the record of the second sample
    double F = 0.0;             ///< the larger sample variance / the smaller one
    double FProbability = 0.0;  ///< lower-tail probability of F
    double criticalF = 0.0;     ///< what F must stay below
    std::size_t df1 = 0;        ///< of the sample with the larger variance
    std::size_t df2 = 0;        ///< of the other sample

private:
    WQ_STAT_HIDDEN void exchangeMembers(TwoSamples& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
