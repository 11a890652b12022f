#include <wq_exact/distributions.h>

#include "incomplete_functions.h"
#include "quantile_search.h"

#include <cmath>
#include <limits>

namespace wq_exact {

namespace {

constexpr double undefined = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

bool isDegrees(double df) { return df > 0.0 && std::isfinite(df); }
bool isProbability(double p) { return p >= 0.0 && p <= 1.0; }

/** A tail of a distribution on 0 ... infinity, with its limits. */
template <typename Tail>
double onPositive(double x, double atZero, double atInfinity, Tail tail)
{
    if (std::isnan(x)) return undefined;
    if (x <= 0.0) return atZero;
    return std::isinf(x) ? atInfinity : static_cast<double>(tail());
}

}  // namespace

// ---------------------------------------------------------------- normal distribution

// P(Z > z) = erfc(z / sqrt 2) / 2, A&S 26.2.29 with 7.1.2; the density is 26.2.1.
double normalCdf(double z) noexcept { return normalUpperTail(-z); }

double normalUpperTail(double z) noexcept
{
    return static_cast<double>(0.5L * std::erfc(static_cast<long double>(z) * 0.707106781186547524400844362104849039L));
}

double normalDensity(double z) noexcept
{
    const long double exact = z;
    return static_cast<double>(0.398942280401432677939946059934381868L * std::exp(-0.5L * exact * exact));
}

double normalQuantile(double p) noexcept { return 0.0 - normalUpperQuantile(p); }  // no -0 at the median

double normalUpperQuantile(double p) noexcept { return isProbability(p) ? detail::normalUpperQuantile(p) : undefined; }

// ---------------------------------------------------------------- Student's t

namespace {

/** P(|T| >= t) = I_x(df/2, 1/2), x = df / (df + t^2), A&S 26.5.27, and its complement, t > 0. */
struct AbsoluteT {
    long double df;

    long double inside(long double t) const { return detail::incompleteBeta(0.5L, 0.5L * df, t * t, df); }
    long double outside(long double t) const { return detail::incompleteBeta(0.5L * df, 0.5L, df, t * t); }
    long double density(long double t) const
    {
        return 2.0L * t / df * detail::incompleteBetaDerivative(0.5L, 0.5L * df, t * t, df) / ((1.0L + t * t / df) * (1.0L + t * t / df));
    }
    double quantile(long double insideP, long double outsideP) const
    {
        return detail::quantile(detail::Distribution{[this](long double t) { return inside(t); },
                                                     [this](long double t) { return outside(t); },
                                                     [this](long double t) { return density(t); }},
                                insideP, outsideP);
    }
};

}  // namespace

double tTwoSided(double t, double df) noexcept
{
    if (!isDegrees(df)) return undefined;
    return onPositive(std::fabs(t), 1.0, 0.0, [&] { return AbsoluteT{df}.outside(std::fabs(t)); });
}

double tUpperTail(double t, double df) noexcept
{
    if (!isDegrees(df) || std::isnan(t)) return undefined;
    if (t >= 0.0) return 0.5 * tTwoSided(t, df);
    return std::isinf(t) ? 1.0 : static_cast<double>(0.5L + 0.5L * AbsoluteT{df}.inside(-t));
}

double tCdf(double t, double df) noexcept { return tUpperTail(-t, df); }

double tDensity(double t, double df) noexcept
{
    if (!isDegrees(df) || std::isnan(t)) return undefined;
    if (std::isinf(t)) return 0.0;
    if (t == 0.0) return static_cast<double>(detail::tDensityAtZero(df));
    return static_cast<double>(0.5L * AbsoluteT{df}.density(std::fabs(t)));
}

double tTwoSidedQuantile(double p, double df) noexcept
{
    return isDegrees(df) && isProbability(p) ? AbsoluteT{df}.quantile(1.0L - p, p) : undefined;
}

double tUpperQuantile(double p, double df) noexcept
{
    if (!isDegrees(df) || !isProbability(p)) return undefined;
    const long double tail = p < 0.5 ? static_cast<long double>(p) : 1.0L - p;
    const double t = AbsoluteT{df}.quantile(1.0L - 2.0L * tail, 2.0L * tail);
    return p <= 0.5 ? t : -t;
}

double tQuantile(double p, double df) noexcept { return 0.0 - tUpperQuantile(p, df); }  // no -0 at the median

// ---------------------------------------------------------------- chi-square

// P(X <= x) = P(df/2, x/2), the incomplete gamma function: A&S 26.4.19.
double chiSquareCdf(double x, double df) noexcept
{
    if (!isDegrees(df)) return undefined;
    return onPositive(x, 0.0, 1.0, [&] { return detail::incompleteGammaLower(0.5L * df, 0.5L * x); });
}

double chiSquareUpperTail(double x, double df) noexcept
{
    if (!isDegrees(df)) return undefined;
    return onPositive(x, 1.0, 0.0, [&] { return detail::incompleteGammaUpper(0.5L * df, 0.5L * x); });
}

double chiSquareDensity(double x, double df) noexcept
{
    if (!isDegrees(df) || std::isnan(x)) return undefined;
    if (x == 0.0) return df < 2.0 ? infinity : df > 2.0 ? 0.0 : 0.5;
    return onPositive(x, 0.0, 0.0, [&] { return 0.5L * detail::incompleteGammaDerivative(0.5L * df, 0.5L * x); });
}

namespace {

double chiSquarePoint(long double lower, long double upper, long double df)
{
    return detail::quantile(
        detail::Distribution{[df](long double x) { return detail::incompleteGammaLower(0.5L * df, 0.5L * x); },
                             [df](long double x) { return detail::incompleteGammaUpper(0.5L * df, 0.5L * x); },
                             [df](long double x) { return 0.5L * detail::incompleteGammaDerivative(0.5L * df, 0.5L * x); }},
        lower, upper);
}

}  // namespace

double chiSquareQuantile(double p, double df) noexcept
{
    return isDegrees(df) && isProbability(p) ? chiSquarePoint(p, 1.0L - p, df) : undefined;
}

double chiSquareUpperQuantile(double p, double df) noexcept
{
    return isDegrees(df) && isProbability(p) ? chiSquarePoint(1.0L - p, p, df) : undefined;
}

// ---------------------------------------------------------------- F

namespace {

/** P(F > f) = I_x(df2/2, df1/2), x = df2 / (df2 + df1 f), A&S 26.6.2, and its complement, f > 0. */
struct FisherF {
    long double df1;
    long double df2;

    long double lower(long double f) const { return detail::incompleteBeta(0.5L * df1, 0.5L * df2, df1 * f, df2); }
    long double upper(long double f) const { return detail::incompleteBeta(0.5L * df2, 0.5L * df1, df2, df1 * f); }
    long double density(long double f) const
    {
        const long double whole = 1.0L + df1 / df2 * f;
        return df1 / df2 * detail::incompleteBetaDerivative(0.5L * df1, 0.5L * df2, df1 * f, df2) / (whole * whole);
    }
    double quantile(long double lowerP, long double upperP) const
    {
        return detail::quantile(detail::Distribution{[this](long double f) { return lower(f); }, [this](long double f) { return upper(f); },
                                                     [this](long double f) { return density(f); }},
                                lowerP, upperP);
    }
};

}  // namespace

double fCdf(double f, double df1, double df2) noexcept
{
    if (!isDegrees(df1) || !isDegrees(df2)) return undefined;
    return onPositive(f, 0.0, 1.0, [&] { return FisherF{df1, df2}.lower(f); });
}

double fUpperTail(double f, double df1, double df2) noexcept
{
    if (!isDegrees(df1) || !isDegrees(df2)) return undefined;
    return onPositive(f, 1.0, 0.0, [&] { return FisherF{df1, df2}.upper(f); });
}

double fDensity(double f, double df1, double df2) noexcept
{
    if (!isDegrees(df1) || !isDegrees(df2) || std::isnan(f)) return undefined;
    if (f == 0.0) return df1 < 2.0 ? infinity : df1 > 2.0 ? 0.0 : 1.0;
    return onPositive(f, 0.0, 0.0, [&] { return FisherF{df1, df2}.density(f); });
}

double fQuantile(double p, double df1, double df2) noexcept
{
    return isDegrees(df1) && isDegrees(df2) && isProbability(p) ? FisherF{df1, df2}.quantile(p, 1.0L - p) : undefined;
}

double fUpperQuantile(double p, double df1, double df2) noexcept
{
    return isDegrees(df1) && isDegrees(df2) && isProbability(p) ? FisherF{df1, df2}.quantile(1.0L - p, p) : undefined;
}

}  // namespace wq_exact
