#ifndef WQ_UDF_EXPORT_H
#define WQ_UDF_EXPORT_H

/// @file
/// What is visible outside libwq_udf.

/// Marks what libwq_udf offers to hosts; everything else in the library is hidden.
#if defined(_WIN32)
#  if defined(WQ_UDF_BUILDING)
#    define WQ_UDF_EXPORT __declspec(dllexport)
#  else
#    define WQ_UDF_EXPORT __declspec(dllimport)
#  endif
#else
#  define WQ_UDF_EXPORT __attribute__((visibility("default")))
#endif

#endif
