#ifndef WQ_STAT_WQ_STAT_H
#define WQ_STAT_WQ_STAT_H

/// @file
/// All headers of libwq_stat.

#include <wq_stat/basic_stat.h>
#include <wq_stat/basic_xy_stat.h>
#include <wq_stat/circular.h>
#include <wq_stat/correlation.h>
#include <wq_stat/distributions.h>
#include <wq_stat/frequency.h>
#include <wq_stat/goodness_fit.h>
#include <wq_stat/kolmogorov.h>
#include <wq_stat/random.h>
#include <wq_stat/regression.h>
#include <wq_stat/regression_multi_y.h>
#include <wq_stat/single_anova.h>
#include <wq_stat/two_samples.h>
#include <wq_stat/version.h>

#endif
