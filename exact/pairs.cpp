#include <wq_exact/pairs.h>

#include <wq_exact/distributions.h>

#include "analysed_data.h"
#include "objects.h"
#include "p_values.h"

#include <algorithm>
#include <cmath>

namespace wq_exact {

namespace {

double asDouble(long double value) { return static_cast<double>(value); }

double scaled(Scale scale, double value) { return scale == Scale::linear ? value : std::log(value); }
double unscaled(Scale scale, double value) { return scale == Scale::linear ? value : std::exp(value); }

/** Whether a pair has its place on a scale; the analyses keep a NaN x and leave out a NaN y, and so does this. */
bool keeps(Scale scaleX, Scale scaleY, const wq_lib::data_pair& pair)
{
    return !(scaleX == Scale::logarithm && 0.0 >= pair.x) && (scaleY == Scale::linear || pair.y > 0.0);
}

/**
 * Means, and sums of deviations from them, so that a good fit keeps its digits: no sum of squares is a difference of others. The means are
 * relative to the first pair, so that large values that lie close together keep theirs.
 */
struct Moments {
    std::size_t n = 0;
    std::size_t skipped = 0;
    long double originX = 0.0L;
    long double originY = 0.0L;
    long double distanceX = 0.0L;  ///< of the mean from the origin
    long double distanceY = 0.0L;
    long double ssX = 0.0L;
    long double ssY = 0.0L;
    long double spXY = 0.0L;
    long double residual = 0.0L;  ///< sum of squares of y around the line
    double maximumX = none;
    double maximumY = none;

    long double slope() const { return spXY / ssX; }
    long double meanX() const { return originX + distanceX; }
    long double meanY() const { return originY + distanceY; }
};

Moments momentsOf(const wq_lib::BasicXyStatistics& sample, Scale scaleX, Scale scaleY)
{
    const detail::AnalysedPairs pairs(sample);
    const auto eachKept = [&](auto work) {
        pairs.each([&](const wq_lib::data_pair& pair) {
            if (keeps(scaleX, scaleY, pair)) work(scaled(scaleX, pair.x), scaled(scaleY, pair.y));
        });
    };
    Moments m;
    pairs.each([&](const wq_lib::data_pair& pair) {
        if (keeps(scaleX, scaleY, pair) && m.n == 0) m.originX = scaled(scaleX, pair.x), m.originY = scaled(scaleY, pair.y);
        ++(keeps(scaleX, scaleY, pair) ? m.n : m.skipped);
    });
    const long double n = static_cast<long double>(m.n);
    eachKept([&](long double x, long double y) {
        m.distanceX += (x - m.originX) / n;
        m.distanceY += (y - m.originY) / n;
        m.maximumX = std::fmax(m.maximumX, asDouble(x));
        m.maximumY = std::fmax(m.maximumY, asDouble(y));
    });
    eachKept([&](long double x, long double y) {
        const long double dx = x - m.originX - m.distanceX;
        const long double dy = y - m.originY - m.distanceY;
        m.ssX += dx * dx;
        m.ssY += dy * dy;
        m.spXY += dx * dy;
    });
    eachKept([&](long double x, long double y) {
        const long double distance = y - m.originY - m.distanceY - m.slope() * (x - m.originX - m.distanceX);
        m.residual += distance * distance;
    });
    return m;
}

/** 1 - r^2, and 1 - |r|, which a strong correlation leaves without digits when it is taken from r; NaN where x or y is constant. */
struct Unexplained {
    explicit Unexplained(const Moments& m)
        : square(m.residual / m.ssY),
          r(std::copysign(std::sqrt(std::max(1.0L - square, 0.0L)), m.spXY)),
          line(square / (1.0L + std::fabs(r)))
    {
    }

    long double square;
    long double r;
    long double line;
};

/** The correlation with its limits. Half the width of those in z is NaN below 4 pairs. */
PairsResult correlated(const Moments& m, double alpha, Limits& zLimits)
{
    const Unexplained rest(m);
    const double df = detail::degrees(m.n, 2);
    PairsResult exact;
    exact.n = m.n;
    exact.r = asDouble(rest.r);
    exact.rSquared = asDouble(rest.r * rest.r);
    exact.maximumX = m.maximumX;
    exact.maximumY = m.maximumY;
    exact.p = tTwoSided(asDouble(rest.r * std::sqrt(df / rest.square)), df);
    if (m.n > 3) {
        const double z = std::copysign(0.5 * asDouble(std::log((1.0L + std::fabs(rest.r)) / rest.line)), exact.r);
        zLimits = detail::around(z, normalUpperQuantile(detail::eachSide(alpha)) / std::sqrt(detail::degrees(m.n, 3)));
        exact.limits = {std::tanh(zLimits.lower), std::tanh(zLimits.upper)};
    }
    return exact;
}

}  // namespace

// ---------------------------------------------------------------- correlation

PairsResult of(const wq_lib::BasicXyStatistics& pairs) noexcept
{
    return detail::guarded([&] {
        Limits zLimits;
        return correlated(momentsOf(pairs, Scale::linear, Scale::linear), pairs.getSignificance(), zLimits);
    });
}

CorrelationResult of(const wq_lib::Correlation& correlation) noexcept
{
    return detail::guarded([&] {
        const Moments m = momentsOf(correlation, Scale::linear, Scale::linear);
        const Unexplained rest(m);
        const double alpha = correlation.getSignificance();
        const double df = detail::degrees(m.n, 2);
        CorrelationResult exact;
        static_cast<PairsResult&>(exact) = correlated(m, alpha, exact.zLimits);
        exact.t = detail::twoSidedT(asDouble(rest.r * std::sqrt(df / rest.square)), df, alpha);
        exact.t.acceptedByReport = correlation.acceptH0_t();
        exact.F = detail::twoSidedF(asDouble((1.0L + std::fabs(rest.r)) / rest.line), df, df, alpha);
        exact.F.acceptedByReport = correlation.acceptH0_F();
        exact.upperTailF = fUpperTail(exact.F.statistic, df, df);
        return exact;
    });
}

// ---------------------------------------------------------------- regressions

namespace {

RegressionResult fitted(const wq_lib::Regression& regression, Scale scaleX, Scale scaleY) noexcept
{
    return detail::guarded([&] {
        const Moments m = momentsOf(regression, scaleX, scaleY);
        const double alpha = regression.getSignificance();
        const double df = detail::degrees(m.n, 2);
        RegressionResult exact;
        exact.scaleX = scaleX;
        exact.scaleY = scaleY;
        exact.n = m.n;
        exact.skipped = m.skipped;
        exact.a = asDouble(m.meanY() - m.slope() * m.meanX());
        exact.b = asDouble(m.slope());
        exact.meanX = asDouble(m.meanX());
        exact.meanY = asDouble(m.meanY());
        exact.sumOfSquaresX = asDouble(m.ssX);
        exact.residualVariance = df > 0.0 ? asDouble(m.residual / df) : none;
        exact.seB = std::sqrt(exact.residualVariance / exact.sumOfSquaresX);
        exact.slope = detail::twoSidedT(exact.b / exact.seB, df, alpha);
        exact.slopeLimits = detail::around(exact.b, exact.slope.criticalValue * exact.seB);
        exact.heightLimits =
            detail::around(exact.meanY, exact.slope.criticalValue * std::sqrt(exact.residualVariance / static_cast<double>(m.n)));
        const long double rest = m.residual / m.ssY;
        exact.rSquared = asDouble(1.0L - rest);
        exact.adjustedRSquared = df > 0.0 ? asDouble(1.0L - rest * (df + 1.0) / df) : none;
        return exact;
    });
}

detail::Line lineOf(const RegressionResult& fit)
{
    return {fit.meanX, fit.meanY, fit.b, fit.sumOfSquaresX, fit.residualVariance, static_cast<double>(fit.n), fit.slope.criticalValue};
}

/** As in the data, with a further variance of one observation or none. */
Limits limitsAt(const RegressionResult& fit, double x, double observations)
{
    const Limits limits = lineOf(fit).limits(scaled(fit.scaleX, x), observations);
    return {unscaled(fit.scaleY, limits.lower), unscaled(fit.scaleY, limits.upper)};
}

}  // namespace

double RegressionResult::height(double x) const noexcept { return unscaled(scaleY, lineOf(*this).height(scaled(scaleX, x))); }
Limits RegressionResult::lineLimits(double x) const noexcept { return limitsAt(*this, x, 0.0); }
Limits RegressionResult::predictionLimits(double x) const noexcept { return limitsAt(*this, x, 1.0); }

RegressionResult of(const wq_lib::Regression& regression) noexcept
{
    using namespace wq_lib;
    if (!detail::hasTypeInformation(regression)) return fitted(regression, Scale::linear, Scale::linear);
    if (const auto* const model = dynamic_cast<const LogarithmicRegression*>(&regression)) return of(*model);
    if (const auto* const model = dynamic_cast<const ExponentialRegression*>(&regression)) return of(*model);
    if (const auto* const model = dynamic_cast<const PowerRegression*>(&regression)) return of(*model);
    return fitted(regression, Scale::linear, Scale::linear);
}
// clang-format off
RegressionResult of(const wq_lib::LogarithmicRegression& regression) noexcept { return fitted(regression, Scale::logarithm, Scale::linear); }
RegressionResult of(const wq_lib::ExponentialRegression& regression) noexcept { return fitted(regression, Scale::linear, Scale::logarithm); }
// clang-format on
RegressionResult of(const wq_lib::PowerRegression& regression) noexcept { return fitted(regression, Scale::logarithm, Scale::logarithm); }

}  // namespace wq_exact
