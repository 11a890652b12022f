#ifndef WQ_EXACT_EXPORT_H
#define WQ_EXACT_EXPORT_H

/// @file
/// What is visible outside libwq_exact.

/// Marks what libwq_exact offers to hosts; everything else in the library is hidden. Nothing, where the library is
/// static (WQ_STATIC_LIBRARIES, which its CMake target defines): it becomes a part of the host.
#if defined(WQ_STATIC_LIBRARIES)
#  define WQ_EXACT_EXPORT
#elif defined(_WIN32)
#  if defined(WQ_EXACT_BUILDING)
#    define WQ_EXACT_EXPORT __declspec(dllexport)
#  else
#    define WQ_EXACT_EXPORT __declspec(dllimport)
#  endif
#else
#  define WQ_EXACT_EXPORT __attribute__((visibility("default")))
#endif

#endif
