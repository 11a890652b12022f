#ifndef WQ_EXACT_WQ_EXACT_H
#define WQ_EXACT_WQ_EXACT_H

/// @file
/// All public headers of libwq_exact.

#include <wq_exact/classes.h>
#include <wq_exact/directions.h>
#include <wq_exact/distributions.h>
#include <wq_exact/groups.h>
#include <wq_exact/pairs.h>
#include <wq_exact/samples.h>
#include <wq_exact/test.h>

#endif
