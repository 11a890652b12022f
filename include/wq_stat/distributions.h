#ifndef WQ_STAT_DISTRIBUTIONS_H
#define WQ_STAT_DISTRIBUTIONS_H

#include <wq_stat/export.h>

#include <cstddef>

/** @return x squared, as the product x * x. */
inline double sqr(double x) { return x * x; }

/** @return true when the lowest bit of n is set, so for negative odd numbers too. */
inline bool odd(long n) { return (n & 1) != 0; }

/**
 * Special functions, integrators, probability distributions, angles.
 *
 * Every function is a short textbook approximation with a fixed tolerance. The approximations, and the
 * places where they leave the textbook, are part of the library's interface: reports and decisions rest on
 * the exact values. "Accuracy" below is the departure from the exact value; where it is poor the comment says
 * so, and the value stays.
 *
 * Tails: normalProb, normalProbApprox, chiSquareProb and F_Prob are lower-tail probabilities, and their
 * percent points take one. t_Prob, D_Prob and rayleighsProb are upper-tail probabilities. t_PercentPoint,
 * D_GoodnessOfFit and D_TwoSamples take a significance level.
 *
 * No function keeps state, allocates or throws. Every call returns; where a series or an iteration would
 * not end by itself the comment says what comes back.
 */
namespace wq_lib {

// ---------------------------------------------------------------- special functions and integration

/**
 * Factorial.
 * @param n any count.
 * @return n!, rounded once per factor; 1 for n = 0; -1 for n > 170, where n! is too large for a double.
 */
WQ_STAT_EXPORT double factorial(std::size_t n);

/**
 * Natural logarithm of the gamma function at the arguments the distributions need, integers and half-integers:
 * the product ln((x-1)(x-2)...), closed with ln sqrt(pi) for a half-integer.
 * @param x an integer or half-integer, x > 0. For any other x the same steps run and the result is not ln gamma(x).
 * @return ln gamma(x), relative error below 1e-12 up to x = 1e4; 0 for x <= 1 that is an integer and for NaN; ln sqrt(pi) for
 *         other x < 1; NaN for x > 2^53, where x - 1 = x and the product has no end. Costs x logarithms.
 */
WQ_STAT_EXPORT double lnGamma(double x);

/**
 * Regularised incomplete beta function I_x(p, q), the lower tail of the beta distribution.
 * Source: algorithm AS 63 (Majumder and Bhattacharjee 1973, Soper's reduction), with tolerance 1e-7. The last
 * reduction step is not the published one: from there on xx replaces the factor qq - i, not rx, and psq is never stepped.
 * @param x 0 ... 1; the result is 0 for other x.
 * @param p, q shape parameters, > 0, not checked.
 * @param beta ln B(p, q) = lnGamma(p) + lnGamma(q) - lnGamma(p + q), supplied by the caller.
 * @return I_x(p, q). Accuracy: about 1e-7 relative in the tail summed where its second parameter (p when the tails are changed,
 *         q otherwise) is an integer. Where it is a half-integer the last steps shift the result by up to a few units in the second
 *         digit, the function jumps in x, and it may leave 0 ... 1: F_Prob(1, 1, 3) is 1.163. NaN where beta is NaN.
 */
WQ_STAT_EXPORT double betaRatio(double x, double p, double q, double beta);

/**
 * Inverse of betaRatio in x.
 * Source: starting value of algorithm AS 109 (Cran, Martin and Thomas 1977), then Newton's iteration until a
 * correction is below 1e-6.
 * @param alpha lower-tail probability, 0 ... 1.
 * @param p, q, beta as in betaRatio.
 * @return x with betaRatio(x, p, q, beta) = alpha. For alpha > 0.5 the other tail is solved with q replaced by p
 *         (the two are not exchanged), so for p != q the result is not the inverse. Where the iteration circles (betaRatio
 *         jumps at half-integers), it is the x at which betaRatio crosses alpha, to the last bit. NaN for alpha outside
 *         0 ... 1 or NaN beta.
 */
WQ_STAT_EXPORT double inverseBetaRatio(double alpha, double p, double q, double beta);

/**
 * Integral of f from a to b by Simpson's rule, the step halved until two successive sums differ by less than 1e-9.
 * The end points are weighted with (b - a)/2 instead of 1, so the result is the integral only for b - a = 2.
 * @return the sum reached; after 2^30 steps, or when it is not finite, the sum of that pass. A call may cost 2^30
 *         evaluations of f (x^2 over [0, 1]: some seconds).
 */
WQ_STAT_EXPORT double simpsonIntegral(double (*f)(double), double a, double b);

/**
 * Integral of f from a to b by adaptive Simpson quadrature; tolerance 1e-9 for the whole, halved with each halving.
 * @return the integral; NaN after the message of quadratureRecursion where an interval had to be halved more than 64 times
 *         (a pole, or values so large that rounding alone exceeds the tolerance: exp over [0, 15]).
 */
WQ_STAT_EXPORT double quadratureIntegral(double (*f)(double), double a, double b);

/**
 * One interval of quadratureIntegral.
 * @param a, b, m the interval and its middle; fa, fb, fm the values there.
 * @param whole Simpson's estimate for the interval.
 * @param tolerance how far the estimates of the halves may differ from it.
 * @param depth 1 for the whole integral.
 * @return the integral over [a, b]; NaN for depth > 64, with the line "recursion limit reached: singularity likely" on
 *         standard output. A NaN left half ends the work, so the line appears once.
 */
WQ_STAT_EXPORT double quadratureRecursion(double (*f)(double), double a, double b, double m, double fa, double fb,
                                          double fm, double whole, double tolerance, std::size_t depth);

/**
 * Binomial probability P(X = k) of k successes in n trials.
 * @param p probability of success, 0 <= p < 1; for p = 1 the result is NaN unless k = 0.
 * @return P(X = k), by n and k multiplications, so a tiny p with a huge n takes long; 0 for k > n, where n - i reaches 0.
 *         0 where (1 - p)^n is too small for a double.
 */
WQ_STAT_EXPORT double binomial(std::size_t k, std::size_t n, double p);

// ---------------------------------------------------------------- distributions

/** @return density of the standard normal distribution at x. */
WQ_STAT_EXPORT double normalDensity(double x);

/**
 * Standard normal distribution, lower tail, by quadratureIntegral of the density from 0 to x.
 * @return P(Z <= x), absolute error below 1e-9; NaN, with a line on standard output, for very large |x|.
 */
WQ_STAT_EXPORT double normalProb(double x);

/**
 * Standard normal distribution, lower tail.
 * Source: Abramowitz and Stegun (1964), 26.2.18; absolute error below 2.5e-4.
 * @return P(Z <= x); exactly 0.5 for x = 0.
 */
WQ_STAT_EXPORT double normalProbApprox(double x);

/**
 * Quantile of the standard normal distribution.
 * Source: Abramowitz and Stegun (1964), 26.2.22; absolute error below 3e-3.
 * @param p lower-tail probability, 0 < p < 1; elsewhere the result is NaN.
 * @return z with P(Z <= z) = p. For p = 0.5 it is -3.4e-6, not 0: the formula has no special case.
 */
WQ_STAT_EXPORT double normalPercentPoint(double p);

/**
 * Student's t distribution, upper tail.
 * Source: Abramowitz and Stegun (1964), 26.7.3 and 26.7.4, with the factor pi/2 for odd df where the book has 2/pi.
 * @param t any value; for negative t the result is the same formula, up to 2 two-sided.
 * @param df degrees of freedom; 0 gives 0, more than 2^53 NaN.
 * @param oneSided true for P(T > t), false for twice that.
 * @return the probability. Even df: exact to 1e-13. Odd df: wrong by up to half the range, and negative or above 1 for
 *         most t (df 1, t 1: -0.117 one-sided instead of 0.25). Reports depend on these values. Costs df/2 steps.
 */
WQ_STAT_EXPORT double t_Prob(double t, std::size_t df, bool oneSided);

/**
 * Critical value of Student's t.
 * Source: the normal quantile w corrected as sqrt(df (exp(w^2/df) - 1)), w = z (8 df + 3)/(8 df + 1) (Wallace 1959).
 * @param alpha two-sided significance level, 0 < alpha < 2; elsewhere the result is NaN.
 * @param df degrees of freedom; 0 gives 0.
 * @return the positive critical value. Accuracy at alpha 0.05: 2 % off for df 1, 2e-3 from df 5 on. For df above 1e13 the
 *         difference exp - 1 loses its digits, and the result becomes 0.
 */
WQ_STAT_EXPORT double t_PercentPoint(double alpha, std::size_t df);

/**
 * Chi-square distribution, lower tail, by the series of the incomplete gamma function.
 * @param x chi-square, x >= 0; NaN for x < 0.
 * @param df degrees of freedom; 0 gives 0.
 * @return P(X <= x); relative error below 2e-6 where the series is summed, 0 where exp(...) is too small for a double,
 *         so also for very large x. Costs df/2 logarithms.
 */
WQ_STAT_EXPORT double chiSquareProb(double x, std::size_t df);

/**
 * Quantile of the chi-square distribution.
 * Source: Wilson and Hilferty (1931), with normalPercentPoint.
 * @param p lower-tail probability, 0 < p < 1; elsewhere the result is NaN.
 * @param df degrees of freedom; 0 gives 0.
 * @return x with P(X <= x) = p; chiSquarePoint(0.95, df) is the upper 5 % point. Accuracy there: 2.5 % for df 1 (3.7455
 *         instead of 3.8415), 0.2 % from df 3 on. Negative or far off in the lower tail of df 1.
 */
WQ_STAT_EXPORT double chiSquarePoint(double p, std::size_t df);

/**
 * F distribution, lower tail, by betaRatio.
 * @param f F value, f >= 0; a negative one gives 1.
 * @param df1, df2 degrees of freedom of numerator and denominator; 0 gives 0, more than 2^54 NaN.
 * @return P(F <= f). Even df1: relative error about 1e-7. Odd df1: see betaRatio; F_Prob(4.965, 1, 10) is 0.95155 instead of
 *         0.95, and with df1 = 1 and f near 1 the result may exceed 1. Costs (df1 + df2)/2 logarithms.
 */
WQ_STAT_EXPORT double F_Prob(double f, std::size_t df1, std::size_t df2);

/**
 * Quantile of the F distribution, by inverseBetaRatio.
 * @param p lower-tail probability, 0 ... 1; 0 gives 0. For p < 0.5 inverseBetaRatio takes its path with a replaced parameter,
 *          and the result is not the quantile unless df1 = df2.
 * @param df1, df2 degrees of freedom of numerator and denominator; 0 gives 0, more than 2^54 NaN.
 * @return f with F_Prob(f, df1, df2) = p. Even df1: relative error about 1e-6 for p = 0.95. Odd df1: F_PercentPoint(0.95, 1, 10) is
 *         4.876 instead of 4.965, and for df1 = 1, df2 >= 26 it is 3 df2/(df2 - 2) instead of 4.2 ... 3.84.
 */
WQ_STAT_EXPORT double F_PercentPoint(double p, std::size_t df1, std::size_t df2);

/** Fisher's z of a correlation coefficient. @return ln((1 + r)/(1 - r))/2; 10000 for r = 1; minus infinity for r = -1; NaN beyond. */
WQ_STAT_EXPORT double z_TransformBig(double r);

/** Fisher's z with Hotelling's correction for small samples. @return z - (3z + r)/(4(n - 1)); not finite for n = 1, and n - 1 wraps for n = 0. */
WQ_STAT_EXPORT double z_TransformSmall(double r, std::size_t n);

/** @return the correlation coefficient of which z is Fisher's z, tanh z from two exponentials; NaN for |z| > 709. */
WQ_STAT_EXPORT double z_to_r(double z);

/**
 * Critical value of the one-sample Kolmogorov-Smirnov D, large samples.
 * @param alpha significance level, 0 < alpha <= 2.
 * @return sqrt(-ln(alpha/2)/(2n)); 0, meaning none available, for n < 101.
 */
WQ_STAT_EXPORT double D_GoodnessOfFit(double alpha, std::size_t n);

/**
 * Critical value of the two-sample Kolmogorov-Smirnov D, large samples.
 * @param alpha significance level, 0 < alpha <= 2; 0 gives 0.
 * @return sqrt(-ln(alpha/2)/2) sqrt((n1 + n2)/(n1 n2)); 0, meaning none available, when a size is 0 and when both are
 *         below 41 unless both lie in 27 ... 40.
 */
WQ_STAT_EXPORT double D_TwoSamples(double alpha, std::size_t n1, std::size_t n2);

/**
 * Significance of Kolmogorov's statistic, 2 sum (-1)^(j-1) exp(-2 j^2 lambda^2).
 * @param lambda D times the square root of the effective sample size.
 * @return the upper-tail probability, relative error below 1e-8 for 0.3 < lambda < 19; 1.0 when 100 terms do not suffice: for
 *         lambda below about 0.04, and for lambda above 19, where the terms are 0.
 */
WQ_STAT_EXPORT double D_Prob(double lambda);

/**
 * Significance of Rayleigh's z.
 * Source: the series of Zar (Biostatistical Analysis) below 50 observations, exp(-z) from there on.
 * @param z n times the squared mean resultant length.
 * @return the upper-tail probability; 0 for n = 0. For small n and large z the series may be negative.
 */
WQ_STAT_EXPORT double rayleighsProb(double z, std::size_t n);

// ---------------------------------------------------------------- angles and plane vectors

/** @return the angle in radians. */
WQ_STAT_EXPORT double degreeToRadian(double deg);

/** @return the angle in degrees. */
WQ_STAT_EXPORT double radianToDegree(double rad);

/** @return the length of the vector (x, y). */
WQ_STAT_EXPORT double computeResultant(double x, double y);

/** @return the direction of the vector (x, y), counter-clockwise from the x axis, 0 <= angle < 2 pi; 0 for (0, 0) and for NaN. */
WQ_STAT_EXPORT double computeAngle(double x, double y);

/** @return the area of a circle of radius r. */
WQ_STAT_EXPORT double computeCircleArea(double r);

}  // namespace wq_lib

#endif
