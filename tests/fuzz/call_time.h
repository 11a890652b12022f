// How long a call may take: no operation is to take over a second on what a fuzz target hands it.
#pragma once

#include "target.h"

#include <ctime>

namespace wq_fuzz {

#if defined(__SANITIZE_ADDRESS__) || defined(__clang__)
constexpr double longestCall = 10.0;  // seconds of processor time; the sanitizers slow everything down
#else
constexpr double longestCall = 1.0;
#endif

template <typename Call>
void timed(const char* name, Call&& call)
{
    const std::clock_t start = std::clock();
    call();
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    require(seconds < longestCall, name, " took ", seconds, " seconds");
}

}  // namespace wq_fuzz
