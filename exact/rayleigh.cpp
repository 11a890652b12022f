#include <wq_exact/directions.h>
#include <wq_exact/distributions.h>

#include "p_values.h"
#include "random_walk.h"

#include <algorithm>
#include <cmath>

namespace wq_exact {

namespace {

bool isDefined(double z, double n) { return n >= 1.0 && std::isfinite(n) && n == std::floor(n) && !std::isnan(z); }

detail::WalkPoint pointAt(double z, double n)
{
    const long double inside = std::clamp(z, 0.0, n);
    return {inside, static_cast<long double>(n) - inside};
}

}  // namespace

double rayleighUpperTail(double z, double n) noexcept
{
    return isDefined(z, n) ? static_cast<double>(detail::walkUpperTail(pointAt(z, n), n)) : none;
}

double rayleighCdf(double z, double n) noexcept
{
    return isDefined(z, n) ? static_cast<double>(detail::walkLowerTail(pointAt(z, n), n)) : none;
}

double rayleighUpperQuantile(double p, double n) noexcept { return isDefined(p, n) ? detail::walkQuantile(1.0L - p, p, n) : none; }

double rayleighQuantile(double p, double n) noexcept { return isDefined(p, n) ? detail::walkQuantile(p, 1.0L - p, n) : none; }

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
