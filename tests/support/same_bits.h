// Doubles compared bit for bit, every NaN equal to every other.
#pragma once

#include <cmath>
#include <cstring>

namespace wq_test {

inline bool sameBits(double a, double b)
{
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace wq_test
