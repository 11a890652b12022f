// What the Anova's report decides, for outputs beside it: the class has no operation for it.
#pragma once

#include <wq_stat/distributions.h>
#include <wq_stat/single_anova.h>

namespace wqstat {

inline double criticalF(const wq_lib::SingleAnova& anova)
{
    return wq_lib::F_PercentPoint(1.0 - anova.getSignificance(), anova.getAmong().df, anova.getWithin().df);
}

/** Also where F or its critical value is NaN. */
inline bool reportAcceptsH0(const wq_lib::SingleAnova& anova) { return !(anova.getAmong().fs > criticalF(anova)); }

}  // namespace wqstat
