#ifndef WQ_STAT_VERSION_H
#define WQ_STAT_VERSION_H

/// @file
/// The version of the library that is loaded.

#include <wq_stat/export.h>

extern "C" {

/** The version as `what` and `strings` find it in the library: "@(#)PROGRAM:wq_stat.1  PROJECT:wq_lib-1.1" and a line feed. */
extern WQ_STAT_EXPORT const char wq_stat_1VersionString[];

/** The version number, 1.1. */
extern WQ_STAT_EXPORT const double wq_stat_1VersionNumber;
}

#endif
