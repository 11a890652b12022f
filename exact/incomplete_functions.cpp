#include "incomplete_functions.h"

#include "boost_calls.h"

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace wq_exact::detail {

namespace {

constexpr long double rootOfTwoPi = 2.50662827463100050241576528481104525L;

/** log(1 + x) - x without cancellation; -infinity at -1, below which rounding may take x. Source: the series of the inverse hyperbolic
 * tangent. */
long double logMinusLine(long double x)
{
    constexpr long double near = 0.5L;
    if (std::fabs(x) > near) return std::log1p(std::max(x, -1.0L)) - x;
    const long double s = x / (2.0L + x);
    const long double square = s * s;
    long double sum = 0.0L;
    constexpr int terms = 24;  // for x = -0.5, s^2 = 1/9
    for (int k = terms; k >= 1; --k) sum = sum * square + 1.0L / (2.0L * k + 1.0L);
    return 2.0L * s * square * sum - s * x;
}

/** A lower and an upper tail. */
struct Tails {
    long double lower;
    long double upper;
};

/**
 * 1 / one - 1 / other, which are close to each other: a distance from the centre, and what a normal distribution would have for it.
 * Below the given distance their difference has no digits, and the limit is taken.
 */
long double difference(long double one, long double other, long double limit, long double deviation)
{
    constexpr long double small = 1e-3L;
    return std::fabs(deviation) < small ? limit : 1.0L / one - 1.0L / other;
}

/**
 * The normal distribution with its first corrections, for shapes so large that the further ones do not show.
 * @param exponent of the density, half the square of the deviation; positive.
 * @param above whether the point lies above the centre.
 * @param correction the sum of the corrections, which the density at the point is to be multiplied with, for the upper tail.
 */
Tails nearlyNormal(long double exponent, bool above, long double correction)
{
    constexpr long double beyondDouble = 1000.0L;
    if (!(exponent < beyondDouble)) return above ? Tails{1.0L, 0.0L} : Tails{0.0L, 1.0L};
    const long double rest = std::exp(-exponent) / rootOfTwoPi * correction;
    const long double outer = 0.5L * std::erfc(std::sqrt(exponent));
    const long double inner = 0.5L + 0.5L * std::erf(std::sqrt(exponent));
    return above ? Tails{inner - rest, outer + rest} : Tails{outer - rest, inner + rest};
}

/**
 * Source: Temme (1979), The asymptotic expansion of the incomplete gamma functions; the first two corrections, c0 and c1 of DLMF 8.12(i),
 * for a of 1e7 and more. The fractions are the begins of their Taylor series in eta.
 */
Tails largeGamma(long double a, long double x)
{
    const long double mu = (x - a) / a;
    const long double half = -logMinusLine(mu);  // half the square of eta
    const long double eta = mu < 0.0L ? -std::sqrt(2.0L * half) : std::sqrt(2.0L * half);
    const long double first = difference(mu, eta, -1.0L / 3.0L + eta / 12.0L, eta * std::sqrt(a));
    const long double second = -1.0L / 540.0L - eta / 288.0L + eta * eta / 378.0L;
    return nearlyNormal(a * half, mu >= 0.0L, (first + second / a) / std::sqrt(a));
}

/** x / x0 - 1 for x = part / (part + rest), x0 = a / (a + b); -b / a times it is (1 - x) / (1 - x0) - 1. */
long double distanceFromCentre(long double a, long double b, long double part, long double rest)
{
    return (part / a - rest / b) * (b / (part + rest));
}

/**
 * x^a (1 - x)^b / B(a, b), for shapes of 1e5 and more. The powers are taken relative to their largest value, at the centre: by themselves
 * they would lose as many digits as the shapes have. Source of B: Stirling's series.
 */
long double betaPower(long double a, long double b, long double part, long double rest)
{
    const long double u = distanceFromCentre(a, b, part, rest);
    const long double series = 1.0L / (12.0L * (a + b)) - 1.0L / (12.0L * a) - 1.0L / (12.0L * b);
    return std::exp(a * logMinusLine(u) + b * logMinusLine(-u * (a / b)) + series) * std::sqrt(a / (1.0L + a / b)) / rootOfTwoPi;
}

/** I_x(a, b) / betaPower() * a by Lentz's method; x is to lie below the centre. Source: Abramowitz and Stegun (1964), 26.5.8. */
long double betaFraction(long double a, long double b, long double x)
{
    constexpr int mostSteps = 1'000'000;  // the shapes have some 100 000 at most
    long double c = 1.0L;
    long double d = 1.0L / (1.0L - (a + b) * x / (a + 1.0L));
    long double fraction = d;
    for (int m = 1; m < mostSteps; ++m) {
        const long double i = m;
        const long double even = i * (b - i) * x / ((a + 2.0L * i - 1.0L) * (a + 2.0L * i));
        d = 1.0L / (1.0L + even * d);
        c = 1.0L + even / c;
        fraction *= c * d;
        const long double odd = -(a + i) * (a + b + i) * x / ((a + 2.0L * i) * (a + 2.0L * i + 1.0L));
        d = 1.0L / (1.0L + odd * d);
        c = 1.0L + odd / c;
        fraction *= c * d;
        if (std::fabs(c * d - 1.0L) <= std::numeric_limits<long double>::epsilon()) break;
    }
    return fraction;
}

/** For shapes of 1e5 and more. */
Tails bigBeta(long double a, long double b, long double part, long double rest)
{
    const long double power = betaPower(a, b, part, rest);
    const long double x = part / (part + rest);
    if (distanceFromCentre(a, b, part, rest) <= 0.0L) {
        const long double lower = power * betaFraction(a, b, x) / a;
        return {lower, 1.0L - lower};
    }
    const long double upper = power * betaFraction(b, a, rest / (part + rest)) / b;
    return {1.0L - upper, upper};
}

/** Source: Temme (1982), The uniform asymptotic expansion of a class of integrals; the first correction, for shapes of 1e9 and more. */
Tails hugeBeta(long double a, long double b, long double part, long double rest)
{
    const long double u = distanceFromCentre(a, b, part, rest);
    const long double exponent = -a * logMinusLine(u) - b * logMinusLine(-u * (a / b));
    const long double s = u * std::sqrt(a) * std::sqrt(1.0L + a / b);  // (x - x0) sqrt(a + b) / sqrt(x0 (1 - x0))
    const long double eta = u < 0.0L ? -std::sqrt(2.0L * exponent) : std::sqrt(2.0L * exponent);
    const long double skewness = (1.0L - a / b) / std::sqrt(1.0L + a / b) / std::sqrt(a);
    return nearlyNormal(exponent, u >= 0.0L, difference(s, eta, -skewness / 3.0L, s));
}

constexpr long double largeShape = 1e7L;  // of a gamma function
constexpr long double bigShapes = 1e5L;   // both of a beta function
constexpr long double hugeShapes = 1e9L;

/**
 * Whether b is so much larger than a that I_x(a, b) follows from the incomplete gamma function at z = -(b + (a - 1) / 2) log(1 - x).
 * What gammaLimit() leaves out is a^2 (z / b)^4 / 1152.
 */
bool isGammaLimit(long double a, long double b)
{
    const long double reach = a + 100.0L;
    return b > 3e3L * reach * std::sqrt(reach);
}

/** Source: the substitution 1 - t = e^-u in the integral of the beta function, (sinh(u/2) / (u/2))^(a-1) = 1 + (a - 1) u^2 / 24 + ... */
Tails gammaLimit(long double a, long double b, long double part, long double rest)
{
    const long double scale = b + 0.5L * (a - 1.0L);
    const long double z = scale * std::log1p(part / rest);
    const long double share = (a - 1.0L) * (a / scale) * ((a + 1.0L) / scale) / 24.0L;
    const auto mixed = [share](long double first, long double second) { return (first + share * second) / (1.0L + share); };
    return {mixed(incompleteGammaLower(a, z), incompleteGammaLower(a + 2.0L, z)),
            mixed(incompleteGammaUpper(a, z), incompleteGammaUpper(a + 2.0L, z))};
}

/** The derivative of the lower tail by x. */
long double gammaLimitDerivative(long double a, long double b, long double part, long double rest)
{
    const long double scale = b + 0.5L * (a - 1.0L);
    const long double z = scale * std::log1p(part / rest);
    const long double share = (a - 1.0L) * (a / scale) * ((a + 1.0L) / scale) / 24.0L;
    const long double slope = (incompleteGammaDerivative(a, z) + share * incompleteGammaDerivative(a + 2.0L, z)) / (1.0L + share);
    return slope * scale * (1.0L + part / rest);
}

}  // namespace

long double incompleteGammaLower(long double a, long double x) noexcept
{
    if (a >= largeShape) return largeGamma(a, x).lower;
    return callBoost([&] { return boost::math::gamma_p(a, x, Policy()); });
}

long double incompleteGammaUpper(long double a, long double x) noexcept
{
    if (a >= largeShape) return largeGamma(a, x).upper;
    return callBoost([&] { return boost::math::gamma_q(a, x, Policy()); });
}

long double incompleteGammaDerivative(long double a, long double x) noexcept
{
    if (a >= largeShape) return std::exp(a * logMinusLine((x - a) / a)) / rootOfTwoPi * std::sqrt(a) / x / (1.0L + 1.0L / (12.0L * a));
    return callBoost([&] { return boost::math::gamma_p_derivative(a, x, Policy()); });
}

long double incompleteBeta(long double a, long double b, long double part, long double rest) noexcept
{
    constexpr long double twoOverPi = 0.636619772367581343075535053490057448L;
    if (a == 0.5L && b == 0.5L) return twoOverPi * std::atan(std::sqrt(part / rest));
    if (isGammaLimit(a, b)) return gammaLimit(a, b, part, rest).lower;
    if (isGammaLimit(b, a)) return gammaLimit(b, a, rest, part).upper;
    if (a >= hugeShapes && b >= hugeShapes) return hugeBeta(a, b, part, rest).lower;
    if (a >= bigShapes && b >= bigShapes) return bigBeta(a, b, part, rest).lower;
    return callBoost([&] {
        return part <= rest ? boost::math::ibeta(a, b, part / (part + rest), Policy())
                            : boost::math::ibetac(b, a, rest / (part + rest), Policy());
    });
}

long double incompleteBetaDerivative(long double a, long double b, long double part, long double rest) noexcept
{
    if (isGammaLimit(a, b)) return gammaLimitDerivative(a, b, part, rest);
    if (isGammaLimit(b, a)) return gammaLimitDerivative(b, a, rest, part);
    if (a >= bigShapes && b >= bigShapes) return betaPower(a, b, part, rest) * (1.0L + rest / part) * (1.0L + part / rest);
    return callBoost([&] {
        return part <= rest ? boost::math::ibeta_derivative(a, b, part / (part + rest), Policy())
                            : boost::math::ibeta_derivative(b, a, rest / (part + rest), Policy());
    });
}

long double tDensityAtZero(long double df) noexcept
{
    constexpr long double rootOfPi = 1.77245385090551602729816748334114518L;
    return callBoost([&] { return 1.0L / (std::sqrt(df) * rootOfPi * boost::math::tgamma_delta_ratio(0.5L * df, 0.5L, Policy())); });
}

double normalUpperQuantile(double p) noexcept
{
    if (p == 0.0 || p == 1.0) return p == 0.0 ? std::numeric_limits<double>::infinity() : -std::numeric_limits<double>::infinity();
    return static_cast<double>(callBoost([&] { return std::sqrt(2.0L) * boost::math::erfc_inv(2.0L * p, Policy()); }));
}

}  // namespace wq_exact::detail
