#ifndef WQ_STAT_DISTRIBUTIONS_H
#define WQ_STAT_DISTRIBUTIONS_H

/// @file
/// Special functions, integrators, probability distributions, angles.

#include <wq_stat/export.h>

#include <cstddef>
#include <type_traits>

// A host with an sqr or odd of its own defines WQ_STAT_NO_GLOBAL_NAMES, and has nothing of this library outside wq_lib. They are always
// inlined, so that the linker does not take the one for the other in a static library.
#ifndef WQ_STAT_NO_GLOBAL_NAMES

/** @return x squared, as the product x * x. */
[[gnu::always_inline]] inline double sqr(double x) { return x * x; }

/** @return true when the lowest bit of n is set, so for negative odd numbers too. */
[[gnu::always_inline]] inline bool odd(long n) { return (n & 1) != 0; }

#endif

/**
 * Special functions, integrators, probability distributions, angles.
 *
 * Every function is a short textbook approximation with a fixed tolerance. The approximations, and the
 * places where they leave the textbook, are part of the library's interface: reports and decisions rest on
 * the exact values. "Accuracy" below is the departure from the exact value; where it is poor the comment says
 * so, and the value stays. The figures were measured with the formulas against 30 digits (tests/reference), and a test holds
 * the library to them; docs/accuracy.md measures each function over a grid and names the analyses in which its departure shows.
 *
 * Tails: normalProb, normalProbApprox, chiSquareProb and F_Prob are lower-tail probabilities, and their
 * percent points take one. t_Prob, D_Prob and rayleighsProb are upper-tail probabilities. t_PercentPoint,
 * D_GoodnessOfFit and D_TwoSamples take a significance level.
 *
 * No function keeps state, allocates or throws, but for the message of quadratureRecursion, which takes memory. Every call
 * returns; where a series or an iteration would not end by itself the comment says what comes back.
 */
namespace wq_lib {

// ---------------------------------------------------------------- special functions and integration

/**
 * Factorial.
 * @param n any count.
 * @return n!, rounded once per factor (relative error below 1e-15); 1 for n = 0; -1 for n > 170, where n! is too large for a
 *         double.
 */
WQ_STAT_EXPORT double factorial(std::size_t n);

/**
 * Natural logarithm of the gamma function at the arguments the distributions need, integers and half-integers:
 * the product ln((x-1)(x-2)...), closed with ln sqrt(pi) for a half-integer.
 * @param x an integer or half-integer, x > 0. For any other x the same steps run and the result is not ln gamma(x).
 * @return ln gamma(x), relative error below 1e-14 up to x = 1e4 and 1e-13 up to 1e5; 0 for x = 1 and for NaN; ln sqrt(pi) for all
 *         x < 1, also for 0 and negative x; NaN for x > 2^53, where x - 1 = x and the product has no end. Costs x logarithms,
 *         none for integers and half-integers up to 128.
 */
WQ_STAT_EXPORT double lnGamma(double x);

/**
 * Regularised incomplete beta function I_x(p, q), the lower tail of the beta distribution.
 * Source: algorithm AS 63 (Majumder and Bhattacharjee 1973, Soper's reduction), with tolerance 1e-7. The last
 * reduction step is not the published one: from there on xx replaces the factor qq - i, not rx, and psq is never stepped.
 * @param x 0 ... 1; the result is 0 for other x.
 * @param p, q shape parameters, > 0, not checked.
 * @param beta ln B(p, q) = lnGamma(p) + lnGamma(q) - lnGamma(p + q), supplied by the caller.
 * @return I_x(p, q); NaN where beta is NaN. For x above the mean p/(p + q) the other tail is summed, with p and q exchanged.
 * @par Accuracy
 * It hangs on the second parameter of the tail summed: q for x below the mean, p above it.
 *
 * | second parameter | absolute error |
 * |------------------|----------------|
 * | an integer       | below 2e-7 up to p, q = 1000 |
 * | 1/2              | the result may lie far outside 0 ... 1: F_Prob(1, 1, 3) is 1.163, F_Prob(1, 1, 100) is -1.9e7 |
 * | 3/2              | up to 0.1      |
 * | 5/2              | up to 0.005    |
 * | 15/2, 17/2, ...  | below 2e-7     |
 *
 * Where it is a half-integer the last steps shift the result, and the function jumps in x. The shift is largest at the mean and dies away
 * from it.
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
 *         jumps at half-integers), it is the x at which betaRatio crosses alpha, to the last bit. For alpha outside 0 ... 1 it is
 *         NaN, unless the iteration ends by itself (possible for p < 1), with a meaningless x close to 0 or 1. NaN where beta is
 *         NaN. With a shape from 2^43 on a call may take a second or two, from 2^52 on, where p + i stays p, a minute.
 * @par Accuracy
 * That of betaRatio, and some 1e-8 of alpha from the iteration; see F_PercentPoint.
 */
WQ_STAT_EXPORT double inverseBetaRatio(double alpha, double p, double q, double beta);

/**
 * Integral of f from a to b by Simpson's rule, the step halved until two successive sums differ by less than 1e-9.
 * The end points are weighted with (b - a)/2 instead of 1, so only for b - a = 2 is the sum Simpson's, and exact for a cubic. For
 * other widths the error, h ((b - a)/2 - 1)(f(a) + f(b))/3 with the last step h, halves with each pass, and so the passes go on
 * until h is about 1e-9. Settled behaviour.
 * @return the sum reached; after 2^30 steps, or when it is not finite, the sum of that pass. A call may cost 2^30
 *         evaluations of f (x^2 over [0, 1]: some seconds, and 3.1e-10 too small).
 */
WQ_STAT_EXPORT double simpsonIntegral(double (*f)(double), double a, double b);

/**
 * Integral of f from a to b by adaptive Simpson quadrature; tolerance 1e-9 for the whole, halved with each halving.
 * @return the integral; NaN after the message of quadratureRecursion where an interval had to be halved more than 64 times
 *         (a pole, or values so large that rounding alone exceeds the tolerance: exp over [0, 15]). A pole that is the middle of
 *         the interval gives infinity, without a message. No Richardson term is added: the error of a smooth f is up to 1e-9.
 */
WQ_STAT_EXPORT double quadratureIntegral(double (*f)(double), double a, double b);

/**
 * One interval of quadratureIntegral.
 * @param f the integrand.
 * @param a, b, m the interval and its middle.
 * @param fa, fb, fm the values of f there.
 * @param whole Simpson's estimate for the interval.
 * @param tolerance how far the estimates of the halves may differ from it.
 * @param depth 1 for the whole integral.
 * @return the integral over [a, b]; NaN for depth > 64, with the line "recursion limit reached: singularity likely" on
 *         standard output. A NaN left half ends the work, so the line appears once.
 */
WQ_STAT_EXPORT double quadratureRecursion(double (*f)(double), double a, double b, double m, double fa, double fb, double fm, double whole,
                                          double tolerance, std::size_t depth);

/** The integral of a function that is handed its state with each call. The same steps, and so the same bits. What f throws leaves the call.
 */
WQ_STAT_EXPORT double simpsonIntegral(double (*f)(double x, void* state), void* state, double a, double b);

/** The integral of a function that is handed its state with each call, as above. */
WQ_STAT_EXPORT double quadratureIntegral(double (*f)(double x, void* state), void* state, double a, double b);

/** One interval of it, with the parameters of the other one. */
WQ_STAT_EXPORT double quadratureRecursion(double (*f)(double x, void* state), void* state, double a, double b, double m, double fa,
                                          double fb, double fm, double whole, double tolerance, std::size_t depth);

namespace detail {

/** What may be called with a double and gives what a double can be made of. */
template <typename Callable>
using IfIntegrand = std::enable_if_t<std::is_invocable_r_v<double, Callable&, double>>;

/** Calls f with a function and a state that stand for the callable. */
template <typename Callable, typename Call>
double withState(Callable& callable, Call&& call)
{
    auto evaluate = [&callable](double x) -> double { return callable(x); };
    double (*const function)(double, void*) = [](double x, void* state) { return (*static_cast<decltype(evaluate)*>(state))(x); };
    return call(function, &evaluate);
}

}  // namespace detail

/**
 * The integral of anything that can be called with a double: a lambda with captures, an object, a std::function. The library computes,
 * whatever the options of the host; the bits are those of a function that returns the same values.
 */
template <typename Callable, typename = detail::IfIntegrand<Callable>>
double simpsonIntegral(Callable&& f, double a, double b)
{
    return detail::withState(f, [=](auto* function, void* state) { return simpsonIntegral(function, state, a, b); });
}

/** The integral of anything that can be called with a double, as above. */
template <typename Callable, typename = detail::IfIntegrand<Callable>>
double quadratureIntegral(Callable&& f, double a, double b)
{
    return detail::withState(f, [=](auto* function, void* state) { return quadratureIntegral(function, state, a, b); });
}

/** One interval of it, with the parameters of the other one. */
template <typename Callable, typename = detail::IfIntegrand<Callable>>
double quadratureRecursion(Callable&& f, double a, double b, double m, double fa, double fb, double fm, double whole, double tolerance,
                           std::size_t depth)
{
    return detail::withState(
        f, [=](auto* function, void* state) { return quadratureRecursion(function, state, a, b, m, fa, fb, fm, whole, tolerance, depth); });
}

/**
 * Binomial probability P(X = k).
 * @param k number of successes.
 * @param n number of trials.
 * @param p probability of success, 0 <= p < 1; for p = 1 the result is NaN unless k = 0.
 * @return P(X = k), relative error below 3e-16 (n + 2k) while (1 - p)^n is above 1e-308; below that it loses its digits, and the
 *         result with them, down to 0. 0 for k > n, where n - i reaches 0. By n and k multiplications, so a tiny p with a huge n takes
 *         long.
 */
WQ_STAT_EXPORT double binomial(std::size_t k, std::size_t n, double p);

// ---------------------------------------------------------------- distributions

/** @return density of the standard normal distribution at x, relative error below 1e-15 + 2e-16 x^2. */
WQ_STAT_EXPORT double normalDensity(double x);

/**
 * Standard normal distribution, lower tail, by quadratureIntegral of the density from 0 to x.
 * @return P(Z <= x), absolute error below 1e-9 up to |x| = 5e4; so it has no correct digit below x = -6 and may be negative
 *         (-1e-11 at x = -17.8). NaN, with a line on standard output, for some |x| from 54017 on and most from 1e5 on.
 */
WQ_STAT_EXPORT double normalProb(double x);

/**
 * Standard normal distribution, lower tail.
 * Source: Abramowitz and Stegun (1964), 26.2.18; absolute error below 2.5e-4.
 * @return P(Z <= x); exactly 0.5 for x = 0. No correct digit below x = -3.5.
 */
WQ_STAT_EXPORT double normalProbApprox(double x);

/**
 * Quantile of the standard normal distribution.
 * Source: Abramowitz and Stegun (1964), 26.2.22; absolute error below 3e-3 for p in 1e-15 ... 1 - 1e-15.
 * @param p lower-tail probability, 0 < p < 1; elsewhere the result is NaN, and for p < 8.3e-17, which
 *        the formula cannot tell from 0.
 * @return z with P(Z <= z) = p. For p = 0.5 it is -3.4e-6, not 0: the formula has no special case.
 */
WQ_STAT_EXPORT double normalPercentPoint(double p);

/**
 * Student's t distribution, upper tail.
 * Source: Abramowitz and Stegun (1964), 26.7.3 and 26.7.4, with the factor pi/2 for odd df where the book has 2/pi.
 * @param t any value; for negative t the result is the same formula, up to 2 two-sided.
 * @param df degrees of freedom; 0 gives 0, more than 2^53 NaN.
 * @param oneSided true for P(T > t), false for twice that.
 * @return the probability. Costs df/2 steps.
 * @par Accuracy
 * | df             | t         | one-sided probability, absolute error |
 * |----------------|-----------|---------------------------------------|
 * | even, to 1e4   | any       | below 2e-13, so no correct digit in the far tail |
 * | even, 1e6      | any       | below 7e-12 |
 * | odd            | 0         | none: 0.5, two-sided 1 |
 * | odd            | any other | wrong by up to 0.74 (df 1, t 1: -0.117 instead of 0.25) |
 *
 * For odd df the one-sided value falls through 0 at t = 0.74 (df 1) to 0.53 (large df) and on to -0.734, for negative t it rises to 1.734.
 * The two-sided value is off by twice as much. Reports depend on these values.
 */
WQ_STAT_EXPORT double t_Prob(double t, std::size_t df, bool oneSided);

/**
 * Critical value of Student's t.
 * Source: the normal quantile w corrected as sqrt(df (exp(w^2/df) - 1)), w = z (8 df + 3)/(8 df + 1) (Wallace 1959).
 * @param alpha two-sided significance level, 0 < alpha < 1; between 1 and 2 the result is that of 2 - alpha, elsewhere NaN.
 * @param df degrees of freedom; 0 gives 0.
 * @return the positive critical value.
 * @par Accuracy
 * | df        | alpha         | relative error |
 * |-----------|---------------|----------------|
 * | 1         | 0.05          | 39 % (17.7 instead of 12.7) |
 * | 1         | 0.01          | 120 %, and more and more in the tail |
 * | 2         | 0.05          | 4.1 % |
 * | 3         | 0.05          | 1.2 % |
 * | 5         | 0.05          | 0.3 % |
 * | from 8 on | 0.05          | below 0.1 % |
 * | from 10 on | 0.001 ... 0.5 | below 0.5 % |
 *
 * For df above 1e13 the difference exp - 1 loses its digits; around df = 4e16 the result becomes 0.
 */
WQ_STAT_EXPORT double t_PercentPoint(double alpha, std::size_t df);

/**
 * Chi-square distribution, lower tail, by the series of the incomplete gamma function.
 * Source: Abramowitz and Stegun (1964), 26.4.6, summed until a term is below 1e-6 of the sum.
 * @param x chi-square, x >= 0; NaN for x < 0.
 * @param df degrees of freedom; 0 gives 0.
 * @return P(X <= x). NaN for infinite x and for df above 2^54. Costs df/2 logarithms where these are many.
 * @par Accuracy
 * | x                                     | relative error |
 * |---------------------------------------|----------------|
 * | up to 200                             | below 2e-6 |
 * | up to 1400                            | below 6e-6 |
 * | 1422 ... 1497 (df 1), 1472 ... 1547 (df 10) | the factor exp(...) is subnormal and the sum overflows: infinity instead of 1 |
 * | beyond                                | 0 instead of 1 |
 */
WQ_STAT_EXPORT double chiSquareProb(double x, std::size_t df);

/**
 * Quantile of the chi-square distribution.
 * Source: Wilson and Hilferty (1931), with normalPercentPoint.
 * @param p lower-tail probability, 0 < p < 1; elsewhere the result is NaN.
 * @param df degrees of freedom; 0 gives 0.
 * @return x with P(X <= x) = p; chiSquarePoint(0.95, df) is the upper 5 % point.
 * @par Accuracy
 * | p             | df         | relative error |
 * |---------------|------------|----------------|
 * | 0.95          | 1          | 2.5 % (3.7455 instead of 3.8415) |
 * | 0.95          | 2          | 0.9 % |
 * | 0.95          | from 3 on  | below 0.6 % |
 * | 0.95          | from 10 on | below 0.1 % |
 * | 0.5 ... 0.999 | any        | below 3.5 % |
 * | 0.5 ... 0.999 | from 10 on | below 0.7 % |
 * | 0.05          | 1          | no correct digit (1.7e-8 instead of 0.0039); negative for p up to 0.025 |
 * | 0.05          | 2          | 23 % |
 * | 0.05          | from 10 on | below 0.3 % |
 */
WQ_STAT_EXPORT double chiSquarePoint(double p, std::size_t df);

/**
 * F distribution, lower tail, by betaRatio.
 * @param f F value, f >= 0; a negative one gives 1, or 0 when it is tiny.
 * @param df1, df2 degrees of freedom of numerator and denominator; 0 gives 0. More than 2^54, as wrapped ones are, give NaN unless
 *        df2/(df2 + df1 f) rounds to 0 or 1.
 * @return P(F <= f). Costs (df1 + df2)/2 logarithms where these are many.
 * @par Accuracy
 * For f > 1. The same holds for f < 1 with df2 in the place of df1 and 1/f in that of f.
 *
 * | df1              | f            | absolute error |
 * |------------------|--------------|----------------|
 * | even             | any          | below 2e-7 up to 2000 degrees of freedom |
 * | 1                | from 10 on   | below 6e-5 |
 * | 1                | from 5 on    | below 0.005 |
 * | 1                | from 4 on    | below 0.021 (F_Prob(4.965, 1, 10) is 0.95155 instead of 0.95) |
 * | 1                | below 4      | of no use, and may lie far outside 0 ... 1: 1.0055 at f = 3.1, -31 at 1.5 (df2 100), 3.5e67 at 1 (df2
 * 1000) | | 3                | from 2 on    | below 0.0015 | | 3                | below 2      | below 0.1 | | odd, from 5 on   | any |
 * below 0.005 | | odd, from 15 on  | any          | below 2e-7 |
 *
 * With an odd df1 betaRatio's last steps shift the result, most near f = 1. Decisions rest on these values.
 */
WQ_STAT_EXPORT double F_Prob(double f, std::size_t df1, std::size_t df2);

/**
 * Quantile of the F distribution, by inverseBetaRatio.
 * @param p lower-tail probability, 0 ... 1; 0 gives 0, 1 infinity. For p < 0.5 inverseBetaRatio takes its path with a replaced
 *        parameter, and the result is not the quantile unless df1 = df2.
 * @param df1, df2 degrees of freedom of numerator and denominator; 0 gives 0, more than 2^54, as wrapped ones are, NaN.
 * @return f with F_Prob(f, df1, df2) = p.
 * @par Accuracy
 * | df1            | df2        | p            | relative error |
 * |----------------|------------|--------------|----------------|
 * | even           | any        | 0.8 ... 0.99 | below 2e-7, for df2 = 1 below 1e-5 |
 * | 1              | to 10      | 0.95         | up to 2 % (F_PercentPoint(0.95, 1, 10) is 4.876 instead of 4.965) |
 * | 1              | 25         | 0.95         | 14 % |
 * | 1              | from 26 on | 0.95         | 22 to 23 %: F_Prob jumps over p, and the result is 3 df2/(df2 - 2) instead of 4.2 ... 3.84
 * | | 1              | any        | 0.8          | up to 76 % | | 1              | any        | 0.9          | up to 13 % | | 1 | any |
 * 0.975        | up to 10 % | | 1              | any        | 0.99         | up to 1.5 % | | 3              | any        | from 0.95 on |
 * below 0.1 % | | odd, from 5 on | any        | from 0.95 on | below 3e-5 |
 */
WQ_STAT_EXPORT double F_PercentPoint(double p, std::size_t df1, std::size_t df2);

/**
 * Fisher's z of a correlation coefficient.
 * @return ln((1 + r)/(1 - r))/2, absolute error below 1e-15 for |r| <= 0.99; 10000 for r = 1; minus infinity for r = -1; NaN beyond.
 */
WQ_STAT_EXPORT double z_TransformBig(double r);

/**
 * Fisher's z with Hotelling's correction for small samples.
 * @return z - (3z + r)/(4(n - 1)); not finite for n = 1. 4(n - 1) is formed with the counts' 64 bits and wraps for n = 0 and for
 *         n > 2^62.
 */
WQ_STAT_EXPORT double z_TransformSmall(double r, std::size_t n);

/**
 * Inverse of Fisher's z.
 * @return the correlation coefficient of which z is Fisher's z, tanh z from two exponentials, absolute error below 1e-15; NaN for
 *         |z| > 709.78, where an exponential overflows.
 */
WQ_STAT_EXPORT double z_to_r(double z);

/**
 * Critical value of the one-sample Kolmogorov-Smirnov D, large samples.
 * Source: the first term of the limiting distribution that D_Prob sums (Smirnov 1948), solved for D.
 * @param alpha significance level, 0 < alpha <= 2.
 * @param n sample size.
 * @return sqrt(-ln(alpha/2)/(2n)); 0, meaning none available, for n < 101. NaN for alpha outside 0 ... 2.
 * @par Accuracy
 * | alpha        | n   | above the exact value by |
 * |--------------|-----|--------------------------|
 * | 0.01 ... 0.2 | 101 | 1.2 to 1.6 % |
 * | 0.01 ... 0.2 | 300 | 0.7 to 0.9 % |
 */
WQ_STAT_EXPORT double D_GoodnessOfFit(double alpha, std::size_t n);

/**
 * Critical value of the two-sample Kolmogorov-Smirnov D, large samples.
 * Source: the first term of the limiting distribution that D_Prob sums (Smirnov 1948), solved for D.
 * @param alpha significance level, 0 < alpha <= 2; 0 gives 0.
 * @param n1, n2 sample sizes.
 * @return sqrt(-ln(alpha/2)/2) sqrt((n1 + n2)/(n1 n2)); 0, meaning none available, when a size is 0 and when both are
 *         below 41 unless both lie in 27 ... 40.
 * @par Accuracy
 * A test that rejects a D above it keeps the level for continuous data, and stays below it.
 *
 * | n1, n2   | level of the test at alpha = 0.05 |
 * |----------|-----------------------------------|
 * | 40, 40   | 0.029 |
 * | 100, 100 | 0.036 |
 * | 400, 100 | 0.045 |
 */
WQ_STAT_EXPORT double D_TwoSamples(double alpha, std::size_t n1, std::size_t n2);

/**
 * Significance of Kolmogorov's statistic, 2 sum (-1)^(j-1) exp(-2 j^2 lambda^2).
 * Source: Kolmogorov (1933), Smirnov (1948).
 * @param lambda D times the square root of the effective sample size.
 * @return the upper-tail probability; 1.0 when 100 terms do not suffice, and for NaN.
 * @par Accuracy
 * | lambda          | error |
 * |-----------------|-------|
 * | below 0.031     | 1.0, which is right |
 * | 0.031 ... 19.22 | absolute below 5e-9, by which the result may exceed 1 below 0.2 |
 * | 0.3 ... 18      | relative below 1e-8 |
 * | above 19.22     | 1.0 instead of 0: the terms are too small for a double |
 */
WQ_STAT_EXPORT double D_Prob(double lambda);

/**
 * Significance of Rayleigh's z.
 * Source: the series of Greenwood and Durand (1955), as given by Zar (Biostatistical Analysis), below 50 observations, exp(-z) from
 * there on.
 * @param z n times the squared mean resultant length, 0 ... n; not checked.
 * @param n number of observations.
 * @return the upper-tail probability; 0 for n = 0.
 * @par Accuracy
 * | n          | z          | absolute error |
 * |------------|------------|----------------|
 * | 6 ... 12   | near n     | slightly negative, down to -1.1e-4 |
 * | 7 ... 49   | any        | below 1e-3 |
 * | 10 ... 49  | to 4.6     | 1 % of the value |
 * | from 50 on | any        | below 2.5e-3 (at n = 50 and z = 4.6 0.0101 instead of 0.0094) |
 */
WQ_STAT_EXPORT double rayleighsProb(double z, std::size_t n);

// ---------------------------------------------------------------- angles and plane vectors

/** @return the angle in radians. */
WQ_STAT_EXPORT double degreeToRadian(double deg);

/** @return the angle in degrees. */
WQ_STAT_EXPORT double radianToDegree(double rad);

/** @return the length of the vector (x, y); infinity above 1.3e154 and 0 below 1.5e-162, where the squares leave the range. */
WQ_STAT_EXPORT double computeResultant(double x, double y);

/**
 * Direction of the vector (x, y), from arc cosine and arc sine by quadrant.
 * @return the angle counter-clockwise from the x axis, 0 ... 2 pi (the double 2 pi itself for a tiny negative y); 0 for (0, 0) and
 *         for NaN. Absolute error below 3e-8: next to the x axis (next to the y axis in the fourth quadrant) half of the digits are
 *         lost, computeAngle(1, 1e-9) is 0. Where the length is not finite or 0 the angle is meaningless or NaN.
 */
WQ_STAT_EXPORT double computeAngle(double x, double y);

/** @return the area of a circle of radius r. */
WQ_STAT_EXPORT double computeCircleArea(double r);

}  // namespace wq_lib

#endif
