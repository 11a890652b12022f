// The point at which a distribution on 0 ... infinity has a given probability, by Newton's method between two bounds.
#pragma once

#include <cmath>
#include <limits>

namespace wq_exact::detail {

/** A distribution function, its complement and its density, for x > 0. */
template <typename Lower, typename Upper, typename Density>
struct Distribution {
    Lower lower;
    Upper upper;
    Density density;
};

template <typename Lower, typename Upper, typename Density>
Distribution(Lower, Upper, Density) -> Distribution<Lower, Upper, Density>;

/**
 * The x at which the smaller of two complementary probabilities is reached; both are given, so that neither is one minus the other.
 * The search goes by the logarithms of x and of the probability, between which most tails are nearly straight. It ends after 200 steps at
 * the latest.
 * @return 0 or infinity where x lies outside the range of double, NaN unless 0 <= lower, upper <= 1.
 */
template <typename Tails>
double quantile(const Tails& distribution, long double lower, long double upper)
{
    if (!(lower >= 0.0L && upper >= 0.0L)) return std::numeric_limits<double>::quiet_NaN();
    if (lower == 0.0L) return 0.0;
    if (upper == 0.0L) return std::numeric_limits<double>::infinity();
    const bool rising = lower <= upper;
    const long double target = std::log(rising ? lower : upper);
    const auto tailAt = [&](long double x) { return rising ? distribution.lower(x) : distribution.upper(x); };
    // Positive where the point wanted lies to the right of the one that has this tail.
    const auto missing = [&](long double tail) { return rising ? target - std::log(tail) : std::log(tail) - target; };
    long double low = std::log(static_cast<long double>(std::numeric_limits<double>::denorm_min())) - 1.0L;
    long double high = std::log(static_cast<long double>(std::numeric_limits<double>::max()));
    if (missing(tailAt(std::exp(low))) <= 0.0L) return 0.0;
    if (missing(tailAt(std::exp(high))) >= 0.0L) return std::numeric_limits<double>::infinity();
    constexpr int mostSteps = 200;
    const long double close = 8.0L * std::numeric_limits<long double>::epsilon();
    long double at = 0.0L;
    for (int i = 0; i < mostSteps && high - low > close; ++i) {
        const long double x = std::exp(at);
        const long double tail = tailAt(x);
        const long double distance = missing(tail);
        if (std::isnan(distance)) return std::numeric_limits<double>::quiet_NaN();
        (distance > 0.0L ? low : high) = at;
        const long double next = at + distance * tail / (x * distribution.density(x));
        const bool usable = next > low && next < high;
        if (usable && std::fabs(next - at) <= close) return static_cast<double>(std::exp(next));
        at = usable ? next : low + (high - low) / 2.0L;
    }
    return static_cast<double>(std::exp(at));
}

}  // namespace wq_exact::detail
