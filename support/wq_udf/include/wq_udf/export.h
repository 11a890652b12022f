#ifndef WQ_UDF_EXPORT_H
#define WQ_UDF_EXPORT_H

/// @file
/// What is visible outside libwq_udf.

/// Marks what libwq_udf offers to hosts; everything else in the library is hidden. Nothing, where the library is
/// static (WQ_STATIC_LIBRARIES, which its CMake target defines): it becomes a part of the host.
#if defined(WQ_STATIC_LIBRARIES)
#  define WQ_UDF_EXPORT
#elif defined(_WIN32)
#  if defined(WQ_UDF_BUILDING)
#    define WQ_UDF_EXPORT __declspec(dllexport)
#  else
#    define WQ_UDF_EXPORT __declspec(dllimport)
#  endif
#else
#  define WQ_UDF_EXPORT __attribute__((visibility("default")))
#endif

#endif
