// The F test of two data files, with the observations of the second at hand.
#pragma once

#include <wq_exact/wq_exact.h>
#include <wq_stat/basic_stat.h>
#include <wq_stat/two_samples.h>

namespace wqstat {

/** The test itself holds the observations of its first sample, but of the second only what was computed from them. */
class TwoDataFiles final : public wq_lib::TwoSamples {
public:
    wq_lib::BasicStatistics second;
};

/** The exact figures of an analysis, from all observations at hand. */
template <typename Analysis>
auto exactOf(const Analysis& analysis)
{
    return wq_exact::of(analysis);
}

inline wq_exact::TwoVariancesResult exactOf(const TwoDataFiles& test) { return wq_exact::of(test, test.second); }

}  // namespace wqstat
