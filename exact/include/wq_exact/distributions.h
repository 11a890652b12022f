#ifndef WQ_EXACT_DISTRIBUTIONS_H
#define WQ_EXACT_DISTRIBUTIONS_H

/// @file
/// Probabilities and quantiles to the last digits, for comparison with the approximations of <wq_stat/distributions.h>.

#include <wq_exact/export.h>

#include <cstddef>
#include <vector>

/**
 * The exact figures beside those of wq_lib: distributions, and what the textbook says of each analysis.
 *
 * Of each distribution there are the lower tail (...Cdf), the upper tail, and the quantiles of both; of the D of two samples given the ties
 * only the upper tail and its quantile. Of a D that is counted, smirnovCdf() is P(D < d), so that the tails have the sum 1, while
 * smirnovQuantile() goes by P(D <= d). Each tail is computed for itself, none as one minus the other, so that small probabilities keep
 * their relative accuracy down to the smallest double: the relative error is below 1e-13, or what a change of the argument in its last bit
 * makes where that is more. Degrees of freedom are real numbers above 0.
 *
 * A probability is NaN for arguments it is not defined for, such as no degrees of freedom (0, negative, infinite) or a statistic that is
 * NaN; an infinite statistic has the probability of its limit. A quantile is NaN for a p outside 0 ... 1. No function throws, no one keeps
 * a state; all may be called from several threads at once.
 */
namespace wq_exact {

// ---------------------------------------------------------------- normal distribution

/** @return P(Z <= z), standard normal. */
WQ_EXACT_EXPORT double normalCdf(double z) noexcept;

/** @return P(Z > z), standard normal. */
WQ_EXACT_EXPORT double normalUpperTail(double z) noexcept;

/** @return the density of the standard normal distribution at z. */
WQ_EXACT_EXPORT double normalDensity(double z) noexcept;

/** @return the z with normalCdf(z) = p; infinite for p = 0 and 1. */
WQ_EXACT_EXPORT double normalQuantile(double p) noexcept;

/** @return the z with normalUpperTail(z) = p; infinite for p = 0 and 1. */
WQ_EXACT_EXPORT double normalUpperQuantile(double p) noexcept;

// ---------------------------------------------------------------- Student's t

/** @return P(T <= t). */
WQ_EXACT_EXPORT double tCdf(double t, double df) noexcept;

/** @return P(T > t). */
WQ_EXACT_EXPORT double tUpperTail(double t, double df) noexcept;

/** @return P(|T| >= |t|). */
WQ_EXACT_EXPORT double tTwoSided(double t, double df) noexcept;

/** @return the density at t. */
WQ_EXACT_EXPORT double tDensity(double t, double df) noexcept;

/** @return the t with tCdf(t, df) = p; infinite for p = 0 and 1, and where no double is large enough. */
WQ_EXACT_EXPORT double tQuantile(double p, double df) noexcept;

/** @return the t with tUpperTail(t, df) = p. */
WQ_EXACT_EXPORT double tUpperQuantile(double p, double df) noexcept;

/** @return the t >= 0 with tTwoSided(t, df) = p: the critical value of a two-sided test at the level p. */
WQ_EXACT_EXPORT double tTwoSidedQuantile(double p, double df) noexcept;

// ---------------------------------------------------------------- chi-square

/** @return P(X <= x); 0 for x <= 0. */
WQ_EXACT_EXPORT double chiSquareCdf(double x, double df) noexcept;

/** @return P(X > x); 1 for x <= 0. */
WQ_EXACT_EXPORT double chiSquareUpperTail(double x, double df) noexcept;

/** @return the density at x; 0 for x < 0, infinite at 0 below 2 degrees of freedom. */
WQ_EXACT_EXPORT double chiSquareDensity(double x, double df) noexcept;

/** @return the x with chiSquareCdf(x, df) = p; 0 for p = 0, infinite for p = 1. */
WQ_EXACT_EXPORT double chiSquareQuantile(double p, double df) noexcept;

/** @return the x with chiSquareUpperTail(x, df) = p. */
WQ_EXACT_EXPORT double chiSquareUpperQuantile(double p, double df) noexcept;

// ---------------------------------------------------------------- F

/** @return P(F <= f), df1 degrees of freedom in the numerator, df2 in the denominator; 0 for f <= 0. */
WQ_EXACT_EXPORT double fCdf(double f, double df1, double df2) noexcept;

/** @return P(F > f); 1 for f <= 0. */
WQ_EXACT_EXPORT double fUpperTail(double f, double df1, double df2) noexcept;

/** @return the density at f; 0 for f < 0, infinite at 0 below 2 degrees of freedom in the numerator. */
WQ_EXACT_EXPORT double fDensity(double f, double df1, double df2) noexcept;

/** @return the f with fCdf(f, df1, df2) = p; 0 for p = 0, infinite for p = 1 and where no double is large enough. */
WQ_EXACT_EXPORT double fQuantile(double p, double df1, double df2) noexcept;

/** @return the f with fUpperTail(f, df1, df2) = p. */
WQ_EXACT_EXPORT double fUpperQuantile(double p, double df1, double df2) noexcept;

// ---------------------------------------------------------------- Kolmogorov and Smirnov, two samples

/**
 * Kolmogorov's distribution: the limit of P(D sqrt(n1 n2 / (n1 + n2)) < lambda) for large samples.
 * Source: Smirnov (1948), Table for estimating the goodness of fit of empirical distributions; both series, each where it is short.
 */
WQ_EXACT_EXPORT double kolmogorovCdf(double lambda) noexcept;

/** @return its upper tail, P(... >= lambda). */
WQ_EXACT_EXPORT double kolmogorovUpperTail(double lambda) noexcept;

/** @return the lambda with kolmogorovCdf(lambda) = p; 0 for p = 0, infinite for p = 1. */
WQ_EXACT_EXPORT double kolmogorovQuantile(double p) noexcept;

/** @return the lambda with kolmogorovUpperTail(lambda) = p. */
WQ_EXACT_EXPORT double kolmogorovUpperQuantile(double p) noexcept;

/** @return whether two samples are small enough for the functions below to count all arrangements: n1 n2 <= 10 000, neither 0. */
WQ_EXACT_EXPORT bool canCountArrangements(std::size_t n1, std::size_t n2) noexcept;

/**
 * Two samples without ties: P(D >= d) over all arrangements, each as likely as the other.
 * Source: Hodges (1958), The significance probability of the Smirnov two-sample test.
 * @return NaN for samples that are too large (canCountArrangements()).
 */
WQ_EXACT_EXPORT double smirnovUpperTail(double d, std::size_t n1, std::size_t n2) noexcept;

/**
 * Two samples given the ties: P(D >= d) over all arrangements of so many observations in classes, where equal values have no order.
 * Source: Schroeer and Trenkler (1995), Exact and randomization distributions of Kolmogorov-Smirnov tests.
 * @param d the D of the two samples.
 * @param n1,n2 their sizes.
 * @param classes how many observations of both samples together are equal, in ascending order of their values.
 * @return NaN also where the sizes of the classes do not sum to n1 + n2.
 */
WQ_EXACT_EXPORT double smirnovUpperTail(double d, std::size_t n1, std::size_t n2, const std::vector<std::size_t>& classes) noexcept;

/** @return P(D < d) over all arrangements: the rest to smirnovUpperTail(), not P(D <= d). */
WQ_EXACT_EXPORT double smirnovCdf(double d, std::size_t n1, std::size_t n2) noexcept;

/** @return the smallest D that two samples can have with smirnovUpperTail() <= p; NaN where there is none. */
WQ_EXACT_EXPORT double smirnovUpperQuantile(double p, std::size_t n1, std::size_t n2) noexcept;

/** @return the smallest D with smirnovUpperTail() <= p that two samples can have given the ties; NaN where there is none. */
WQ_EXACT_EXPORT double smirnovUpperQuantile(double p, std::size_t n1, std::size_t n2, const std::vector<std::size_t>& classes) noexcept;

/** @return the smallest D that two samples can have with P(D' <= D) >= p, where smirnovCdf(D) is P(D' < D) and may be below p. */
WQ_EXACT_EXPORT double smirnovQuantile(double p, std::size_t n1, std::size_t n2) noexcept;

// ---------------------------------------------------------------- Rayleigh

/**
 * Rayleigh's test of n directions: P(z' >= z) under uniformity, z = n times the squared mean resultant length, 0 ... n; a greater z counts
 * as n. n is a whole number. From 1e20 directions on it is exp(-z), the limit. For one direction z is 1, whatever it is: the tail is 1.
 * Source: Kluyver (1906), A local probability problem, for R = sqrt(n z); its integral is taken along paths on which neither tail cancels.
 */
WQ_EXACT_EXPORT double rayleighUpperTail(double z, double n) noexcept;

/** @return P(z' < z), the rest to rayleighUpperTail(). */
WQ_EXACT_EXPORT double rayleighCdf(double z, double n) noexcept;

/** @return the z with rayleighUpperTail(z, n) = p, 0 ... n; NaN for one direction, unless p is 1. */
WQ_EXACT_EXPORT double rayleighUpperQuantile(double p, double n) noexcept;

/** @return the z with rayleighCdf(z, n) = p, 0 ... n; NaN for one direction, unless p is 0. */
WQ_EXACT_EXPORT double rayleighQuantile(double p, double n) noexcept;

}  // namespace wq_exact

#endif
