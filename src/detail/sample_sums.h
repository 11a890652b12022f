// What one pass over a sample gathers for its means.
#ifndef WQ_STAT_DETAIL_SAMPLE_SUMS_H
#define WQ_STAT_DETAIL_SAMPLE_SUMS_H

namespace wq_lib::detail {

/** For the geometric mean the positive values count, for the harmonic mean those with a finite reciprocal. NaN is no extreme. */
struct SampleSums {
    double smallest;
    double largest;
    double sum;
    double logSum = 0.0;
    double positiveCount = 0.0;
    double reciprocalSum = 0.0;
    double reciprocalCount = 0.0;
    bool hasNegative = false;
};

/** @param sums of what came before. @return those with the values too, each sum in their order. */
SampleSums withValues(SampleSums sums, const double* begin, const double* end);

}  // namespace wq_lib::detail

#endif
