// How p, critical values, decisions and limits are put together; the same for all analyses.
#pragma once

#include <wq_exact/distributions.h>
#include <wq_exact/test.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <optional>

namespace wq_exact::detail {

/** Degrees of freedom of a sample; a difference of counts would wrap. */
inline double degrees(std::size_t n, std::size_t lost) { return static_cast<double>(n) - static_cast<double>(lost); }

/** What a two-sided test leaves for each side; NaN for what is no level. */
inline double eachSide(double alpha) { return alpha <= 1.0 ? alpha / 2.0 : none; }

/** Accepted unless the probability is below the level; nothing without a probability, or a level between 0 and 1. */
inline std::optional<bool> decided(double p, double alpha)
{
    const bool isLevel = alpha > 0.0 && alpha < 1.0;
    return std::isnan(p) || !isLevel ? std::optional<bool>() : p >= alpha;
}

inline Limits around(double value, double halfWidth) { return {value - halfWidth, value + halfWidth}; }

inline Test test(double statistic, double df1, double df2, double alpha, double p, double criticalValue)
{
    return {{decided(p, alpha), {}}, statistic, df1, df2, alpha, p, criticalValue};
}

inline Test twoSidedT(double t, double df, double alpha)
{
    return test(t, df, none, alpha, tTwoSided(t, df), tTwoSidedQuantile(alpha, df));
}

inline Test upperF(double f, double df1, double df2, double alpha)
{
    return test(f, df1, df2, alpha, fUpperTail(f, df1, df2), fUpperQuantile(alpha, df1, df2));
}

/** Two-sided: twice the smaller tail. */
inline Test twoSidedF(double f, double df1, double df2, double alpha)
{
    const double p = 2.0 * std::min(fCdf(f, df1, df2), fUpperTail(f, df1, df2));  // both NaN or neither
    return test(f, df1, df2, alpha, std::min(p, 1.0), fUpperQuantile(eachSide(alpha), df1, df2));
}

inline Test upperChiSquare(double x, double df, double alpha)
{
    return test(x, df, none, alpha, chiSquareUpperTail(x, df), chiSquareUpperQuantile(alpha, df));
}

/** A test of a statistic whose distribution is none. */
inline Test undecided(Test test)
{
    test.p = none;
    test.accepted.reset();
    return test;
}

/** Of a variance with so many degrees of freedom. */
inline Limits varianceLimits(double variance, double df, double alpha)
{
    return {variance * df / chiSquareUpperQuantile(eachSide(alpha), df), variance * df / chiSquareQuantile(eachSide(alpha), df)};
}

/** A fitted line, in the scales of its model. */
struct Line {
    double meanX;
    double meanY;
    double b;
    double sumOfSquaresX;
    double variance;  ///< of one observation around it
    double n;         ///< observations
    double t;         ///< critical value

    double height(double x) const { return meanY + b * (x - meanX); }

    /** @param further how much of the variance of one observation comes to that of the line. @return the limits at x. */
    Limits limits(double x, double further) const
    {
        const double distance = x - meanX;
        return around(height(x), t * std::sqrt(variance * (further + 1.0 / n + distance * distance / sumOfSquaresX)));
    }
};

/** What the computation gives; an empty result where an object's own operation throws. */
template <typename Computation>
auto guarded(Computation computation) noexcept -> decltype(computation())
{
    try {
        return computation();
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace wq_exact::detail
