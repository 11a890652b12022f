#ifndef WQ_STAT_EXPORT_H
#define WQ_STAT_EXPORT_H

/// @file
/// What is visible outside libwq_stat.

/// Marks what libwq_stat offers to hosts; everything else in the library is hidden. Nothing, where the library is
/// static (WQ_STATIC_LIBRARIES, which its CMake target defines): it becomes a part of the host.
#if defined(WQ_STATIC_LIBRARIES)
#  define WQ_STAT_EXPORT
#elif defined(_WIN32)
#  if defined(WQ_STAT_BUILDING)
#    define WQ_STAT_EXPORT __declspec(dllexport)
#  else
#    define WQ_STAT_EXPORT __declspec(dllimport)
#  endif
#else
#  define WQ_STAT_EXPORT __attribute__((visibility("default")))
#endif

/// Marks what an exported class keeps to the library.
#if defined(_WIN32)
#  define WQ_STAT_HIDDEN
#else
#  define WQ_STAT_HIDDEN __attribute__((visibility("hidden")))
#endif

#endif
