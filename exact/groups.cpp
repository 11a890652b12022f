#include <wq_exact/groups.h>

#include <wq_exact/distributions.h>

#include "objects.h"
#include "p_values.h"

#include <wq_stat/distributions.h>

#include <cmath>
#include <cstddef>
#include <vector>

namespace wq_exact {

namespace {

/**
 * The mean relative to an origin near the values. Differences of doubles that lie close together have all their digits; those of the values
 * and their mean have not, where the values are large.
 */
long double meanOf(const std::vector<double>& values, double origin)
{
    if (values.empty()) return 0.0L;
    long double sum = 0.0L;
    for (const double y : values) sum += static_cast<long double>(y) - origin;
    return sum / static_cast<long double>(values.size());
}

/** The first observation of all. */
double originOf(const std::vector<wq_lib::anova_group>& groups)
{
    for (const wq_lib::anova_group& group : groups)
        if (!group.observations.empty()) return group.observations.front();
    return 0.0;
}

long double sizeOf(const wq_lib::anova_group& group) { return static_cast<long double>(group.observations.size()); }

/** Sums of squares from deviations. The classes take differences of sums, of which no digit may be left. */
struct Variation {
    explicit Variation(const wq_lib::SingleAnova& anova) : origin(originOf(anova.getGroups()))
    {
        const std::vector<wq_lib::anova_group>& groups = anova.getGroups();
        for (const wq_lib::anova_group& group : groups) n += sizeOf(group);
        for (const wq_lib::anova_group& group : groups) {
            if (group.observations.empty()) continue;
            ++count;
            meanX += sizeOf(group) / n * group.id;
            meanY += sizeOf(group) / n * meanOf(group.observations, origin);
        }
        for (const wq_lib::anova_group& group : groups) {
            const long double mean = meanOf(group.observations, origin);
            const long double deviation = mean - meanY;
            const long double distance = group.id - meanX;
            ssAmong += sizeOf(group) * deviation * deviation;
            ssX += sizeOf(group) * distance * distance;
            spXY += sizeOf(group) * distance * deviation;
            for (const double y : group.observations) {
                const long double rest = static_cast<long double>(y) - origin - mean;
                ssWithin += rest * rest;
            }
        }
    }

    double origin;
    long double count = 0.0L;  ///< of groups with observations
    long double n = 0.0L;
    long double meanX = 0.0L;  ///< of the groups' x, as the regression sees them
    long double meanY = 0.0L;  ///< relative to the origin
    long double ssAmong = 0.0L;
    long double ssWithin = 0.0L;
    long double ssX = 0.0L;
    long double spXY = 0.0L;
};

SourceOfVariation source(long double df, long double sumOfSquares)
{
    const auto ss = static_cast<double>(sumOfSquares);
    return {static_cast<double>(df), ss, df > 0.0L ? static_cast<double>(sumOfSquares / df) : none};
}

AnovaResult anovaOf(const Variation& v, double alpha)
{
    AnovaResult exact;
    exact.among = source(v.count - 1.0L, v.ssAmong);
    exact.within = source(v.n - v.count, v.ssWithin);
    exact.total = source(v.n - 1.0L, v.ssAmong + v.ssWithin);
    exact.F = detail::upperF(exact.among.meanSquare / exact.within.meanSquare, exact.among.df, exact.within.df, alpha);
    exact.lowerTail = fCdf(exact.F.statistic, exact.among.df, exact.within.df);
    exact.etaSquared = exact.among.sumOfSquares / exact.total.sumOfSquares;
    exact.omegaSquared =
        (exact.among.sumOfSquares - exact.among.df * exact.within.meanSquare) / (exact.total.sumOfSquares + exact.within.meanSquare);
    exact.criticalT = tTwoSidedQuantile(alpha, exact.within.df);
    return exact;
}

}  // namespace

Limits AnovaResult::meanLimits(const wq_lib::anova_group& group) const noexcept
{
    const auto n = static_cast<double>(group.observations.size());
    const double origin = group.observations.empty() ? 0.0 : group.observations.front();
    return detail::around(static_cast<double>(origin + meanOf(group.observations, origin)), criticalT * std::sqrt(within.meanSquare / n));
}

AnovaResult of(const wq_lib::SingleAnova& anova) noexcept
{
    const double alpha = anova.getSignificance();
    AnovaResult exact = anovaOf(Variation(anova), alpha);
    if (detail::isAny<wq_lib::LinearRegressionMultiY>(anova)) return exact;  // whose report has no H0 of the groups
    // As the report decides; the class has no operation for it.
    exact.F.acceptedByReport = !(anova.getAmong().fs > wq_lib::F_PercentPoint(1.0 - alpha, anova.getAmong().df, anova.getWithin().df));
    return exact;
}

namespace {

detail::Line lineOf(const MultiYResult& fit)
{
    return {fit.meanX, fit.meanY, fit.b, fit.sumOfSquaresX, fit.deviations.meanSquare, fit.groups.total.df + 1.0, fit.slope.criticalValue};
}

}  // namespace

double MultiYResult::height(double x) const noexcept { return lineOf(*this).height(x); }
Limits MultiYResult::lineLimits(double x) const noexcept { return lineOf(*this).limits(x, 0.0); }

Limits MultiYResult::predictionLimits(double x, std::size_t observations) const noexcept
{
    return lineOf(*this).limits(x, 1.0 / static_cast<double>(observations));
}

/** The class always gives the deviations 2 degrees of freedom, and fits no line where it sees none; here both are done by the book. */
MultiYResult of(const wq_lib::LinearRegressionMultiY& regression) noexcept
{
    const double alpha = regression.getSignificance();
    const Variation v(regression);
    const long double b = v.spXY / v.ssX;
    long double deviations = 0.0L;  // not a difference of sums of squares
    for (const wq_lib::anova_group& group : regression.getGroups()) {
        const long double distance = meanOf(group.observations, v.origin) - v.meanY - b * (group.id - v.meanX);
        deviations += sizeOf(group) * distance * distance;
    }

    MultiYResult exact;
    exact.groups = anovaOf(v, alpha);
    exact.regression = source(1.0L, b * v.spXY);
    exact.deviations = source(v.count - 2.0L, deviations);
    const double df = exact.deviations.df;
    const double ms = exact.deviations.meanSquare;
    exact.deviationsF = detail::upperF(ms / exact.groups.within.meanSquare, df, exact.groups.within.df, alpha);
    exact.deviationsLowerTail = fCdf(exact.deviationsF.statistic, df, exact.groups.within.df);
    exact.regressionF = exact.regression.meanSquare / ms;
    exact.a = static_cast<double>(v.origin + v.meanY - b * v.meanX);
    exact.b = static_cast<double>(b);
    exact.sumOfSquaresX = static_cast<double>(v.ssX);
    exact.seB = static_cast<double>(std::sqrt(ms / v.ssX));
    exact.meanX = static_cast<double>(v.meanX);
    exact.meanY = static_cast<double>(v.origin + v.meanY);
    exact.slope = detail::twoSidedT(exact.b / exact.seB, df, alpha);
    exact.slope.acceptedByReport = !regression.isComputeRegression();
    exact.slopeLimits = detail::around(exact.b, exact.slope.criticalValue * exact.seB);
    exact.rSquared = exact.regression.sumOfSquares / exact.groups.total.sumOfSquares;
    const long double rest = (deviations + v.ssWithin) / (v.ssAmong + v.ssWithin);  // what the line leaves unexplained
    exact.adjustedRSquared = v.n > 2.0L ? static_cast<double>(1.0L - rest * (v.n - 1.0L) / (v.n - 2.0L)) : none;
    return exact;
}

}  // namespace wq_exact
