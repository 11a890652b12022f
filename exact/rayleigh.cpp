#include <wq_exact/directions.h>
#include <wq_exact/distributions.h>

#include "p_values.h"

#include <algorithm>
#include <cmath>

namespace wq_exact {

namespace {

/** The logarithm of the upper tail, without the cancellation of the published form sqrt(...) - (1 + 2n); R^2 = z n. */
double logarithm(double z, double n)
{
    const double square = std::clamp(z, 0.0, n) * n;
    const double root = std::sqrt(1.0 + 4.0 * n + 4.0 * (n * n - square));
    return -4.0 * square / (root + (1.0 + 2.0 * n));
}

bool isDefined(double z, double n) { return n > 0.0 && std::isfinite(n) && !std::isnan(z); }

/** The z with this logarithm of the upper tail. */
double point(double logarithmOfP, double n)
{
    const double z = -logarithmOfP * ((1.0 + 2.0 * n) / 2.0 + logarithmOfP / 4.0) / n;
    // The parabola turns where the root is 0, beyond every z there is.
    return -logarithmOfP <= 1.0 + 2.0 * n && z <= n ? z : none;
}

}  // namespace

double rayleighUpperTail(double z, double n) noexcept { return isDefined(z, n) ? std::exp(logarithm(z, n)) : none; }

double rayleighCdf(double z, double n) noexcept { return isDefined(z, n) ? -std::expm1(logarithm(z, n)) : none; }

double rayleighUpperQuantile(double p, double n) noexcept { return isDefined(p, n) && p >= 0.0 && p <= 1.0 ? point(std::log(p), n) : none; }

double rayleighQuantile(double p, double n) noexcept { return isDefined(p, n) && p >= 0.0 && p <= 1.0 ? point(std::log1p(-p), n) : none; }

DirectionsResult of(const wq_lib::Circular& directions) noexcept
{
    const wq_lib::circular_stat& result = directions.getCircularResult();
    const double alpha = directions.getSignificance();
    const double n = static_cast<double>(result.n);
    DirectionsResult exact;
    exact.n = n;
    exact.rayleigh = detail::test(result.z, none, none, alpha, rayleighUpperTail(result.z, n), rayleighUpperQuantile(alpha, n));
    exact.rayleigh.acceptedByReport = result.p >= alpha;
    return exact;
}

}  // namespace wq_exact
