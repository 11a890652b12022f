// Sorts a sample of doubles, faster than by comparisons.
#ifndef WQ_STAT_DETAIL_SAMPLE_SORT_H
#define WQ_STAT_DETAIL_SAMPLE_SORT_H

#include <vector>

namespace wq_lib::detail {

/**
 * Sorts in ascending order, NaN values behind every number. Values that compare equal (0 and -0, and all NaN) keep their order, as
 * with std::stable_sort. Sorted data cost one pass; other data may cost a temporary copy of the sample.
 */
void sortSample(std::vector<double>& data);

/** The same on every processor: what sortSample does where vectors do not serve. */
void sortSampleAnywhere(std::vector<double>& data);

}  // namespace wq_lib::detail

#endif
