#ifndef WQ_STAT_TWO_SAMPLES_H
#define WQ_STAT_TWO_SAMPLES_H

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

    void setFirstSample(const basic_stat& sample) { result = sample; }
    void setSecondSample(const basic_stat& sample) { secondSample = sample; }
    const basic_stat& getSecondSample() const { return secondSample; }

    double getF() const { return F; }
    double getFProbability() const { return FProbability; }
    double getCriticalF() const { return criticalF; }

    /** @return the degrees of freedom of the sample with the larger variance; of the second when they are equal. */
    std::size_t getDf1() const { return df1; }
    std::size_t getDf2() const { return df2; }

protected:
    basic_stat secondSample;
    double F = 0.0;
    double FProbability = 0.0;
    double criticalF = 0.0;
    std::size_t df1 = 0;
    std::size_t df2 = 0;
};

}  // namespace wq_lib

#endif
