#include <wq_exact/directions.h>
#include <wq_exact/distributions.h>

#include "analysed_data.h"
#include "grouped_directions.h"
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

/** What the report has multiplied the mean resultant length by. */
double groupingCorrection(const wq_lib::Circular& directions)
{
    const double half = directions.getCircularResult().binSize / 2.0;
    return directions.isGrouped() ? half / std::sin(half) : 1.0;
}

/** Whether the directions, read as numbers of bins, lie whole bins apart: fractions of a bin are in no class. */
bool areWholeBins(const wq_lib::Circular& directions)
{
    constexpr double rounding = 1e-9;
    const double width = directions.getCircularResult().binSize;
    double first = none;
    bool areWhole = true;
    detail::AnalysedPairs(directions).each([&](const wq_lib::data_pair& pair) {
        if (std::isnan(first)) first = pair.x;
        const double distance = (pair.x - first) / width;
        areWhole = areWhole && std::fabs(distance - std::round(distance)) <= rounding * std::fmax(1.0, std::fabs(distance));
    });
    return areWhole;
}

/** How many classes make up the circle; 0 where each direction stands for itself. */
double classesOf(const wq_lib::Circular& directions)
{
    const bool areClassed = directions.isGrouped() || (directions.getDataType() == wq_lib::BIN_NUMBERS && areWholeBins(directions));
    return areClassed ? static_cast<double>(directions.getCircularResult().bins) : 0.0;
}

/** Of no classes where the directions are not in any; of fewer than three, cosine and sine do not vary alike. */
Test rayleighsTest(double z, double n, double classes, double alpha)
{
    if (classes > 0.0 && classes < 3.0) return detail::test(z, none, none, alpha, none, none);
    if (classes > 0.0 && isDefined(z, n) && detail::canEnumerateDirections(n, classes))
        return detail::test(z, none, none, alpha, detail::groupedUpperTail(z, n, classes), none);
    return detail::test(z, none, none, alpha, rayleighUpperTail(z, n), rayleighUpperQuantile(alpha, n));
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

/**
 * The corrected mean resultant length estimates that of directions which are not grouped. As many directions as stand for their classes are
 * a walk of unit steps; corrected it would be longer by up to 46 %, and p too small. Few of them have few lengths, of which the longest is
 * likely: all are looked at. Of many, 2 z is asymptotically chi-square with 2 degrees of freedom for three classes or more, as that of
 * ungrouped ones is.
 */
DirectionsResult of(const wq_lib::Circular& directions) noexcept
{
    return detail::guarded([&] {
        const wq_lib::circular_stat& result = directions.getCircularResult();
        const double alpha = directions.getSignificance();
        const double correction = groupingCorrection(directions);
        const double z = result.z / correction / correction;
        DirectionsResult exact;
        exact.n = static_cast<double>(result.n);
        exact.classes = classesOf(directions);
        exact.rayleigh = rayleighsTest(z, exact.n, exact.classes, alpha);
        exact.rayleigh.acceptedByReport = result.accepted;
        return exact;
    });
}

}  // namespace wq_exact
