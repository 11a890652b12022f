#ifndef WQ_EXACT_GROUPS_H
#define WQ_EXACT_GROUPS_H

/// @file
/// Exact figures of groups: analysis of variance, and regression with several y for each x.

#include <wq_exact/export.h>
#include <wq_exact/test.h>
#include <wq_stat/regression_multi_y.h>
#include <wq_stat/single_anova.h>

#include <cstddef>

namespace wq_exact {

/** A row of an Anova table, from deviations: differences of sums of squares may have no digit left. */
struct SourceOfVariation {
    double df = none;            ///< degrees of freedom
    double sumOfSquares = none;  ///< of deviations
    double meanSquare = none;    ///< sumOfSquares / df; NaN without degrees of freedom
};

/** A single classification analysis of variance. */
struct AnovaResult {
    SourceOfVariation among;     ///< among groups
    SourceOfVariation within;    ///< within groups, the error
    SourceOfVariation total;     ///< of all observations
    Test F;                      ///< of the mean squares among and within groups, upper tail
    double lowerTail = none;     ///< P(F <= statistic)
    double etaSquared = none;    ///< share of the total sum of squares that lies among groups
    double omegaSquared = none;  ///< the same, estimated for the population; negative where F is below 1
    double criticalT = none;     ///< two-sided, degrees of freedom within groups

    /** @return whether the object's own report decides differently. */
    bool reportDiffers() const noexcept { return F.reportDiffers(); }

    /** @return the confidence limits of the mean of a group, by the mean square within all groups. */
    WQ_EXACT_EXPORT Limits meanLimits(const wq_lib::anova_group& group) const noexcept;
};

/** @param anova after analyse(). @return the exact figures; NaN where there are none, as for one group. */
WQ_EXACT_EXPORT AnovaResult of(const wq_lib::SingleAnova& anova) noexcept;

/**
 * A line through groups. The sum of squares among them is split into what the line explains and the deviations from it, which have
 * groups - 2 degrees of freedom; the line is always fitted.
 */
struct MultiYResult {
    AnovaResult groups;                 ///< their differences; the report states no decision on them
    SourceOfVariation regression;       ///< what the line explains
    SourceOfVariation deviations;       ///< of the groups from the line
    Test deviationsF;                   ///< deviations against the variation within groups; the report states no decision
    double deviationsLowerTail = none;  ///< P(F <= statistic) of the deviations
    double regressionF = none;          ///< regression against the deviations, the square of the slope's t
    double a = none;                    ///< height of the line at x = 0
    double b = none;                    ///< slope
    double seB = none;                  ///< standard error of the slope, from the deviations
    double sumOfSquaresX = none;        ///< of the deviations of the observations' x from their mean
    double meanX = none;                ///< of the observations
    double meanY = none;                ///< of the observations
    Test slope;                      ///< Student's t of slope = 0, two-sided, by the deviations; the report rejects it where it fits a line
    Limits slopeLimits;              ///< of the slope
    double rSquared = none;          ///< share of the total sum of squares that the line explains
    double adjustedRSquared = none;  ///< the same, corrected for its one parameter

    /** @return whether the object's own report decides differently on the slope. */
    bool reportDiffers() const noexcept { return slope.reportDiffers(); }

    /** @return y of the line at x. */
    WQ_EXACT_EXPORT double height(double x) const noexcept;

    /** @return confidence limits of the line at x, by the deviations of the groups from it. */
    WQ_EXACT_EXPORT Limits lineLimits(double x) const noexcept;

    /**
     * Of the mean of a further group: the deviations tell how far means lie from the line, and nothing of single observations.
     * @param x of the group.
     * @param observations in it. With groups of different sizes each has the weight of its observations.
     * @return the limits between which its mean is expected.
     */
    WQ_EXACT_EXPORT Limits predictionLimits(double x, std::size_t observations) const noexcept;
};

/** @param regression after analyse(). @return the exact figures; NaN where there are none, as for two groups. */
WQ_EXACT_EXPORT MultiYResult of(const wq_lib::LinearRegressionMultiY& regression) noexcept;

}  // namespace wq_exact

#endif
