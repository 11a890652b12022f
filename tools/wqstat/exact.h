// Exact distributions, for comparison with the library's approximations; by Boost.Math where it has them.
#pragma once

#include <cstddef>

/**
 * Each probability is NaN for arguments it is not defined for, such as no degrees of freedom or a statistic that is NaN; an infinite
 * statistic has the probability of its limit. Small probabilities keep their relative accuracy: no tail is one minus the other.
 */
namespace wqstat::exact {

/** Student's t: P(|T| >= |t|). */
double tTwoSided(double t, double df);

/** The t that tTwoSided() gives alpha for. */
double tTwoSidedPoint(double alpha, double df);

/** The z with P(|Z| >= z) = alpha, standard normal. */
double normalTwoSidedPoint(double alpha);

double chiSquareLower(double x, double df);
double chiSquareUpper(double x, double df);
double chiSquareUpperPoint(double alpha, double df);

double fLower(double f, double df1, double df2);
double fUpper(double f, double df1, double df2);
double fUpperPoint(double alpha, double df1, double df2);

/**
 * Kolmogorov's distribution, upper tail: the limit of P(D sqrt(n1 n2 / (n1 + n2)) >= lambda) for large samples.
 * Source: Smirnov (1948), Table for estimating the goodness of fit of empirical distributions; both series, each where it is short.
 */
double kolmogorovUpper(double lambda);
double kolmogorovUpperPoint(double alpha);

/** Whether the sample sizes are small enough for the two functions below to count all arrangements: n1 n2 <= 10 000. */
bool canCountArrangements(std::size_t n1, std::size_t n2);

/**
 * P(D >= d) over all arrangements of two samples without ties, each as likely as the other.
 * Source: Hodges (1958), The significance probability of the Smirnov two-sample test.
 */
double smirnovUpper(double d, std::size_t n1, std::size_t n2);

/** The smallest D that two samples can have with smirnovUpper() <= alpha; NaN when there is none. */
double smirnovUpperPoint(double alpha, std::size_t n1, std::size_t n2);

/**
 * Rayleigh's test, P(resultant length >= R) of n directions, 0 <= R <= n; a greater R counts as n.
 * Source: Wilkie (1983), Rayleigh test for randomness of circular data, Applied Statistics 32; also Zar, Biostatistical Analysis, 27.4.
 * An approximation: measured against Kluyver's integral, its absolute error is below 0.006 for 5 directions, below 0.0005 for 10 or more.
 */
double rayleighUpper(double R, double n);

/** The z = R^2 / n that rayleighUpper() gives alpha for. */
double rayleighUpperPoint(double alpha, double n);

}  // namespace wqstat::exact
