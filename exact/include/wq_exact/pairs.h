#ifndef WQ_EXACT_PAIRS_H
#define WQ_EXACT_PAIRS_H

/// @file
/// Exact figures of pairs: correlation and regressions.

#include <wq_exact/export.h>
#include <wq_exact/test.h>
#include <wq_stat/basic_xy_stat.h>
#include <wq_stat/correlation.h>
#include <wq_stat/regression.h>

#include <cstddef>

namespace wq_exact {

/** The correlation of two variables. */
struct PairsResult {
    std::size_t n = 0;       ///< pairs
    double r = none;         ///< product-moment correlation coefficient, -1 ... 1
    double p = none;         ///< of r = 0, two-sided, by Student's t with n - 2 degrees of freedom
    Limits limits;           ///< of r, by Fisher's z
    double rSquared = none;  ///< share of the variance of one variable that the other explains
    double maximumX = none;  ///< largest x, whatever its sign
    double maximumY = none;  ///< largest y, whatever its sign
};

/** @param pairs after analyse(), with the pairs it has analysed. @return the exact figures; NaN where there are none, as for a constant
 * variable. */
WQ_EXACT_EXPORT PairsResult of(const wq_lib::BasicXyStatistics& pairs) noexcept;

/** A correlation and its two tests of rho = 0. */
struct CorrelationResult : PairsResult {
    Limits zLimits;            ///< in the scale of Fisher's z
    Test t;                    ///< Student's t, two-sided
    Test F;                    ///< (1 + |r|) / (1 - |r|), two-sided; the critical value that of the upper tail alpha / 2
    double upperTailF = none;  ///< P(F > statistic), half of F.p

    /** @return whether the object's own report decides differently, by t or by F. */
    bool reportDiffers() const noexcept { return t.reportDiffers() || F.reportDiffers(); }
};

/** @param correlation after analyse(), with the pairs it has analysed. @return the exact figures; NaN where there are none. */
WQ_EXACT_EXPORT CorrelationResult of(const wq_lib::Correlation& correlation) noexcept;

/** How a model reads x and y for its straight line. */
enum class Scale {
    linear,    ///< as they are
    logarithm  ///< their natural logarithms
};

/**
 * A straight line fitted to pairs, or to their logarithms. Pairs that have no logarithm are left out. All but the height of the
 * line and its limits is in the scales of the model.
 */
struct RegressionResult {
    Scale scaleX = Scale::linear;    ///< of x
    Scale scaleY = Scale::linear;    ///< of y
    std::size_t n = 0;               ///< pairs that were used
    std::size_t skipped = 0;         ///< pairs that have no logarithm
    double a = none;                 ///< height at 0 in the model's scales
    double b = none;                 ///< slope
    double seB = none;               ///< standard error of the slope
    double meanX = none;             ///< mean of x in the model's scale
    double meanY = none;             ///< mean of y in the model's scale
    double sumOfSquaresX = none;     ///< of the deviations of x from its mean
    double residualVariance = none;  ///< of y around the line
    Test slope;                      ///< Student's t of slope = 0, two-sided, n - 2 degrees of freedom; the report states no decision
    Limits slopeLimits;              ///< of the slope
    Limits heightLimits;             ///< of the line at the mean of x, in the model's scale
    double rSquared = none;          ///< share of the variance of y that the line explains
    double adjustedRSquared = none;  ///< the same, corrected for its one parameter

    /** @return y of the line at x, both as in the data; NaN where x has no logarithm. */
    WQ_EXACT_EXPORT double height(double x) const noexcept;

    /** @return confidence limits of the line at x, both as in the data. */
    WQ_EXACT_EXPORT Limits lineLimits(double x) const noexcept;

    /** @return the limits between which a further observation at x is expected, both as in the data. */
    WQ_EXACT_EXPORT Limits predictionLimits(double x) const noexcept;
};

/**
 * Takes the model of the object's class, also where it is known as a Regression only.
 * @param regression after analyse(), with the pairs it has analysed. A regression of none of the four models counts as linear, and so does
 * one of a class of the host's own that is compiled without type information, unless it is named as one of the classes below.
 * @return the exact figures; NaN where there are none, as for two pairs or x that are all equal.
 */
WQ_EXACT_EXPORT RegressionResult of(const wq_lib::Regression& regression) noexcept;
WQ_EXACT_EXPORT RegressionResult of(const wq_lib::LogarithmicRegression& regression) noexcept;  ///< y against ln x
WQ_EXACT_EXPORT RegressionResult of(const wq_lib::ExponentialRegression& regression) noexcept;  ///< ln y against x
WQ_EXACT_EXPORT RegressionResult of(const wq_lib::PowerRegression& regression) noexcept;        ///< ln y against ln x

}  // namespace wq_exact

#endif
