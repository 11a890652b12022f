#include "exact_mean.h"

#include <cmath>
#include <limits>

namespace wqstat {

namespace {

constexpr double largeFrom = 0x1p960;
constexpr double scale = 0x1p-60;  // of a number below 2^1024: 2^53 of them do not overflow

}  // namespace

void ExactMean::Sum::add(double value)
{
    const double next = sum + value;
    lost += std::fabs(sum) >= std::fabs(value) ? (sum - next) + value : (value - next) + sum;
    sum = next;
}

void ExactMean::add(double value)
{
    ++count;
    if (!std::isfinite(value))
        infinities += value;
    else if (std::fabs(value) < largeFrom)
        ordinary.add(value);
    else
        large.add(value * scale);
}

double ExactMean::mean() const
{
    if (count == 0) return std::numeric_limits<double>::quiet_NaN();
    if (infinities != 0.0) return infinities;
    const auto n = static_cast<double>(count);
    const double ofOrdinary = (ordinary.sum + ordinary.lost) / n;
    return large.sum == 0.0 ? ofOrdinary : ofOrdinary + (large.sum + large.lost) / n / scale;
}

}  // namespace wqstat
