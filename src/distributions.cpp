// Each function opens with what it computes, in symbols, and the source. "A&S" is M. Abramowitz and I. Stegun, Handbook of Mathematical
// Functions (1964), with the number of the formula; "AS" the algorithm of that number in the journal Applied Statistics. Papers are named
// by author and year, with the formula in full at the line. Where a function departs from its source it says so: reports and decisions rest
// on the values as they are.
#include <wq_stat/distributions.h>

#include "detail/log_gamma_table.h"
#include "detail/root_bracket.h"
#include "detail/to_integer.h"
#include "detail/wide_count.h"
#include "detail/wide_quantiles.h"
#include "numbers/pi.h"

#include <wq_udf/console.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace wq_lib {

using detail::halfPi;
using detail::pi;
using detail::twoPi;
using detail::wideCount;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double squareRootOfTwoPi = 2.506628274631000502;
constexpr double logGammaOfHalf = 0.5723649429247001;  // ln sqrt(pi), A&S 6.1.8

constexpr std::uint64_t exactCounts = std::uint64_t{1} << 53;  // beyond it x - 1 = x may hold, and a loop over counts has no end

/** ln((x - 1)(x - 2)...) by the recurrence gamma(x + 1) = x gamma(x), A&S 6.1.15; for a half-integer closed with ln sqrt(pi). */
double logGammaProduct(double x)
{
    double sum = 0.0;
    double y = x - 1.0;
    while (y > 0.0) {
        sum = sum + std::log(y);
        y = y - 1.0;
    }
    if (y < 0.0) sum = sum + logGammaOfHalf;  // x was a half-integer: y stops at -0.5
    return sum;
}

/**
 * Whether a term no longer changes a sum. Where a host rounds upwards every term changes it; there a term ends the series that is far
 * below the last digit.
 */
bool changesNothing(double term, double sum) { return sum + term == sum || std::fabs(term) < 1e-20 * std::fabs(sum); }

/** ln B(p, q), A&S 6.2.2. */
double logBeta(double p, double q) { return lnGamma(p) + lnGamma(q) - lnGamma(p + q); }

/**
 * The normal quantile of the upper-tail probability exp(-t^2/2), A&S 26.2.22 (Hastings 1955); absolute error below 3e-3. All critical
 * values of t and chi-square rest on it, so the closer 26.2.23 may not take its place.
 */
double normalQuantileOf(double t)
{
    constexpr double a0 = 2.30753, a1 = 0.27061;
    constexpr double b1 = 0.99229, b2 = 0.04481;
    return t - (a0 + a1 * t) / (1.0 + (b1 + b2 * t) * t);
}

}  // namespace

// ---------------------------------------------------------------- special functions and integration

// n! = 1 2 ... n; -1 instead of infinity.
double factorial(std::size_t n)
{
    double result = 1.0;
    for (std::size_t k = 1; k <= n; ++k) {
        const double factor = static_cast<double>(k);
        if (!(DBL_MAX / factor > result)) return -1.0;
        result = result * factor;
    }
    return result;
}

// ln gamma(x): no series of Lanczos or Stirling but the product itself, since half the degrees of freedom are integers and half-integers.
double lnGamma(double x)
{
    static const detail::LogGammaTable table(logGammaProduct);
    if (const double* const value = table.find(x)) return *value;
    return x > static_cast<double>(exactCounts) ? notANumber : logGammaProduct(x);
}

// I_x(p, q) = 1/B(p, q) times the integral of t^(p-1) (1-t)^(q-1) from 0 to x, A&S 26.5.1, by Soper's reduction (1921) as AS 63 (Majumder
// and Bhattacharjee 1973) arranges it:
//   I_x(p, q) = x^p (1-x)^(q-1) / (p B(p, q)) (1 + (q-1)/(p+1) x/(1-x) + (q-1)(q-2)/((p+1)(p+2)) (x/(1-x))^2 + ...)
double betaRatio(double x, double p, double q, double beta)
{
    if (x == 0.0 || x == 1.0) return x;
    if (x < 0.0 || x > 1.0) return 0.0;
    if (std::isnan(beta)) return notANumber;  // whatever the series gives

    // The series converges in the tail that holds less than the mean; the other one is I_x(p, q) = 1 - I_(1-x)(q, p), A&S 26.5.2.
    const double psq = p + q;
    const bool tailsChanged = psq * x > p;
    double xx = x;
    double cx = 1.0 - x;
    double pp = p;
    double qq = q;
    if (tailsChanged) {
        std::swap(xx, cx);
        std::swap(pp, qq);
    }

    // AS 63 lets xx replace rx once the reductions are used up, and then takes psq, one more each time, for the factor; here xx
    // replaces the factor qq - i and psq stays. For an integer qq the series ends before, for a half-integer this shifts the
    // result. Reports and decisions rest on these values. The tolerance 1e-7 is coarser than the published one.
    const double rx = xx / cx;
    double term = 1.0;
    double sum = 1.0;
    double temp = 0.0;
    std::int64_t ns = detail::toInteger<std::int64_t>(std::ceil(qq + psq * cx));
    if (ns < std::numeric_limits<std::int64_t>::max()) ++ns;
    for (double i = 1.0;; i += 1.0) {
        if (ns >= 0) --ns;
        if (ns > 0)
            temp = qq - i;
        else if (ns == 0)
            temp = xx;
        term = term * temp * rx / (pp + i);
        sum = sum + term;
        if (sum >= std::fabs(term) && 1e-7 * sum >= std::fabs(term)) break;

        // Where the sum is negative that never holds. The terms shrink from here on and change nothing, or there are none.
        const bool settled = ns <= 0 && std::fabs(xx * rx) <= pp + i && changesNothing(term, sum);
        if (term == 0.0 || !(std::fabs(sum) < DBL_MAX) || settled) break;  // rounded towards zero, a sum too large stays at DBL_MAX
    }
    const double result = sum * std::exp(pp * std::log(xx) + (qq - 1.0) * std::log(cx) - beta) / pp;
    return tailsChanged ? 1.0 - result : result;
}

namespace {

/** Where the search for the x with I_x(p, q) = a begins, as in AS 109 (Cran, Martin and Thomas 1977, after AS 64). @param a 0 ... 0.5. */
double firstGuessOfInverse(double a, double p, double q, double beta)
{
    const double y = normalQuantileOf(std::sqrt(-std::log(a * a)));
    if (p > 1.0 && q > 1.0) {  // A&S 26.5.22 (Carter 1947): lambda, h and w as there
        const double lambda = (y * y - 3.0) / 6.0;
        const double s = 1.0 / (2.0 * p - 1.0);
        const double t = 1.0 / (2.0 * q - 1.0);
        const double h = 2.0 / (s + t);
        constexpr double fiveSixths = 0.8333333333333334;
        const double w = y * std::sqrt(h + lambda) / h - (t - s) * (lambda + fiveSixths - 2.0 / (3.0 * h));
        return p / (p + q * std::exp(2.0 * w));
    }
    // The chi-square quantile of 2q degrees of freedom by A&S 26.4.17, and from it (4p + 2q - 2)/chi-square = (1 + x)/(1 - x) (Scheffe and
    // Tukey 1944).
    const double df = 2.0 * q;
    const double h = 1.0 / (9.0 * q);
    const double root = 1.0 - h + y * std::sqrt(h);
    const double chiSquare = df * (root * root * root);
    if (!(chiSquare > 0.0)) return 1.0 - std::exp((std::log((1.0 - a) * q) + beta) / q);
    const double ratio = (4.0 * p + df - 2.0) / chiSquare;
    return ratio > 1.0 ? 1.0 - 2.0 / (1.0 + ratio) : std::exp((std::log(a * p) + beta) / p);
}

}  // namespace

// The x with I_x(p, q) = alpha, by Newton's iteration x - (I_x - alpha)/I_x', I_x' = x^(p-1) (1-x)^(q-1) / B(p, q).
double inverseBetaRatio(double alpha, double p, double q, double beta)
{
    if (alpha == 0.0 || alpha == 1.0) return alpha;

    // The other tail belongs to the exchanged parameters, as AS 109 exchanges them; here q alone is overwritten, and p keeps its value.
    const bool tailChanged = alpha > 0.5;
    const double a = tailChanged ? 1.0 - alpha : alpha;
    if (tailChanged) q = p;
    const auto result = [tailChanged](double x) { return tailChanged ? 1.0 - x : x; };

    // betaRatio jumps where a parameter is a half-integer, and the steps may circle around a jump for ever.
    // A circle is found by comparing with the x of the last step that was a power of two (Brent 1980); it visits nothing new.
    constexpr int mostSteps = 5000;
    detail::RootBracket bracket;
    double x = firstGuessOfInverse(a, p, q, beta);
    double milestone = x;
    int nextMilestone = 1;
    for (int step = 1; step <= mostSteps; ++step) {
        const double ratio = betaRatio(x, p, q, beta);
        bracket.visit(x, ratio < a);
        const double d = (ratio - a) * std::exp((1.0 - p) * std::log(x) + (1.0 - q) * std::log(1.0 - x) + beta);
        if (std::isinf(d)) break;
        double correction = d;
        double candidate = x - correction;
        while ((candidate <= 0.0 || candidate >= 1.0) && candidate != x) {
            const double whole = correction;
            correction = correction / 2.0;
            if (correction == whole) break;  // the smallest number, rounded upwards
            candidate = x - correction;
        }
        if (candidate <= 0.0 || candidate >= 1.0) break;
        x = candidate;
        if (!(std::fabs(d) >= 1e-6)) return result(x);
        if (x == milestone) break;
        if (step == nextMilestone) {
            milestone = x;
            nextMilestone *= 2;
        }
    }
    if (!(a > 0.0 && a < 1.0) || std::isnan(beta)) return notANumber;
    return result(bracket.bisect([&](double middle) { return betaRatio(middle, p, q, beta) < a; }));
}

namespace {

/** A function with what it remembers between its calls. */
struct Remembering {
    double (*function)(double x, void* state);
    void* state;
    double operator()(double x) const { return function(x, state); }
};

// The integral of f from a to b: extended Simpson's rule, A&S 25.4.6, the step halved until the sum settles.
template <typename Function>
double simpsonSum(Function f, double a, double b)
{
    constexpr std::uint64_t mostSteps = std::uint64_t{1} << 30;
    const double h0 = (b - a) / 2.0;
    const double ends = h0 * (f(a) + f(b));  // h0 stands where the rule has 1, also after every halving: settled behaviour
    double h = h0;
    double evenSum = 0.0;
    double oddSum = f((a + b) / 2.0);
    double s = h * (ends + 4.0 * oddSum);
    double previous;
    std::uint64_t n = 2;
    do {
        previous = s;
        n = 2 * n;
        h = h / 2.0;
        evenSum = evenSum + oddSum;
        oddSum = 0.0;
        for (std::uint64_t k = 1; k <= n; k += 2) oddSum = oddSum + f(a + static_cast<double>(k) * h);
        s = h * (ends + 2.0 * evenSum + 4.0 * oddSum);
    } while (!(std::fabs(s - previous) < 1e-9) && n < mostSteps && std::isfinite(s));
    return s / 3.0;
}

// One interval of the integral below, halved until it agrees with its halves.
template <typename Function>
double halved(Function f, double a, double b, double m, double fa, double fb, double fm, double whole, double tolerance, std::size_t depth)
{
    constexpr std::size_t deepest = 64;
    if (depth > deepest) {
        message("recursion limit reached: singularity likely");
        return notANumber;
    }
    const double q = (b - a) / 4.0;
    const double flm = f(a + q);
    const double frm = f(b - q);
    const double left = q * (fa + 4.0 * flm + fm) / 3.0;
    const double right = q * (fm + 4.0 * frm + fb) / 3.0;
    const double sum = left + right;
    if (!(std::fabs(sum - whole) > tolerance)) return sum;  // Lyness (1969) allows 15 times as much, and adds (sum - whole)/15: not here

    const double leftHalf = halved(f, a, m, a + q, fa, fm, flm, left, tolerance / 2.0, depth + 1);
    if (std::isnan(leftHalf)) return leftHalf;  // so will be the whole; the other half may take 2^64 steps to find out
    return leftHalf + halved(f, m, b, b - q, fm, fb, frm, right, tolerance / 2.0, depth + 1);
}

// The integral of f from a to b: Simpson's rule, A&S 25.4.5, on intervals halved until they agree with their halves (Kuncir 1962, McKeeman
// 1962).
template <typename Function>
double quadrature(Function f, double a, double b)
{
    const double m = (a + b) / 2.0;
    const double fa = f(a);
    const double fb = f(b);
    const double fm = f(m);
    const double whole = ((b - a) / 2.0) * (fa + 4.0 * fm + fb) / 3.0;
    return halved(f, a, b, m, fa, fb, fm, whole, 1e-9, 1);
}

}  // namespace

double simpsonIntegral(double (*f)(double), double a, double b) { return simpsonSum(f, a, b); }

double simpsonIntegral(double (*f)(double, void*), void* state, double a, double b) { return simpsonSum(Remembering{f, state}, a, b); }

double quadratureIntegral(double (*f)(double), double a, double b) { return quadrature(f, a, b); }

double quadratureIntegral(double (*f)(double, void*), void* state, double a, double b) { return quadrature(Remembering{f, state}, a, b); }

double quadratureRecursion(double (*f)(double), double a, double b, double m, double fa, double fb, double fm, double whole,
                           double tolerance, std::size_t depth)
{
    return halved(f, a, b, m, fa, fb, fm, whole, tolerance, depth);
}

double quadratureRecursion(double (*f)(double, void*), void* state, double a, double b, double m, double fa, double fb, double fm,
                           double whole, double tolerance, std::size_t depth)
{
    return halved(Remembering{f, state}, a, b, m, fa, fb, fm, whole, tolerance, depth);
}

// P(X = k) = n!/(k! (n-k)!) p^k q^(n-k), q = 1 - p (NIST/SEMATECH e-Handbook of Statistical Methods, 1.3.6.6.18): from P(X = 0) = q^n by
// P(X = i + 1) = P(X = i) (n - i) p / ((i + 1) q).
double binomial(std::size_t k, std::size_t n, double p)
{
    // Where the size of the product has settled, only its sign may go on changing.
    const auto signAfter = [](double value, bool changes, std::size_t steps) { return changes && steps % 2 != 0 ? -value : value; };
    const double q = 1.0 - p;
    double r = 1.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double before = r;
        r = r * q;
        if (std::isnan(r)) return r;
        if (std::fabs(r) == std::fabs(before)) {
            r = signAfter(r, q < 0.0, n - 1 - i);
            break;
        }
    }
    for (std::size_t i = 0; i < k; ++i) {
        r = r * static_cast<double>(n - i) * p / ((static_cast<double>(i) + 1.0) * q);
        if (std::isnan(r)) return r;
        if (r == 0.0 && std::isfinite(p)) return signAfter(r, std::signbit(p) != std::signbit(q), k - 1 - i);
    }
    return r;
}

// ---------------------------------------------------------------- distributions

// Z(x) = exp(-x^2/2)/sqrt(2 pi), A&S 26.2.1.
double normalDensity(double x) { return std::exp(-0.5 * sqr(x)) / squareRootOfTwoPi; }

// P(x), the integral of Z from minus infinity to x, A&S 26.2.2: 1/2 and the integral from 0.
double normalProb(double x) { return 0.5 + quadratureIntegral(normalDensity, 0.0, x); }

// P(x) = 1 - (1 + c1 x + c2 x^2 + c3 x^3 + c4 x^4)^-4 / 2 for x >= 0, A&S 26.2.18 (Hastings 1955); absolute error below 2.5e-4.
double normalProbApprox(double x)
{
    constexpr double c1 = 0.196854, c2 = 0.115194, c3 = 0.000344, c4 = 0.019527;
    const double a = std::fabs(x);
    const double d = 1.0 + a * (c1 + a * (c2 + a * (c3 + a * c4)));
    const double P = 1.0 - 0.5 / sqr(sqr(d));
    return x > 0.0 ? P : 1.0 - P;
}

// The x with P(x) = p, A&S 26.2.22, without a special case for p = 0.5, where the formula gives -3.4e-6.
double normalPercentPoint(double p)
{
    const double y = normalQuantileOf(std::sqrt(-2.0 * std::log(1.0 - (0.5 + std::fabs(p - 0.5)))));
    return p > 0.5 ? y : -y;
}

// P(T > t) = (1 - A(t|df))/2 with theta = arctan(t/sqrt(df)) and
//   A = sin theta (1 + 1/2 cos^2 theta + (1 3)/(2 4) cos^4 theta + ...) for even df, A&S 26.7.4,
//   A = 2/pi (theta + sin theta (cos theta + 2/3 cos^3 theta + (2 4)/(3 5) cos^5 theta + ...)) for odd df, A&S 26.7.3,
// each term made of the one before, as in AS 3 (Cooper 1968).
double t_Prob(double t, std::size_t df, bool oneSided)
{
    if (df == 0) return 0.0;
    if (wideCount(df) > exactCounts) return notANumber;

    const double degrees = static_cast<double>(df);
    const bool oddDegrees = odd(static_cast<long>(df));
    const double theta = std::atan(t / std::sqrt(degrees));
    const double s = std::sin(theta);
    const double c = std::cos(theta);
    double A = 0.0;
    if (df > 1) {
        double term = oddDegrees ? c : 1.0;
        double sum = term;
        for (std::size_t k = oddDegrees ? 3 : 2; k < df; k += 2) {
            const double factor = static_cast<double>(k);
            term = term * sqr(c) * (factor - 1.0) / factor;
            if (changesNothing(term, sum)) break;  // the terms only shrink
            sum = sum + term;
            if (std::isnan(sum)) break;
        }
        A = s * sum;
    }
    if (oddDegrees) A = halfPi * (A + theta);  // 2/pi in the book: reports and decisions rest on pi/2
    const double lower = 0.5 * (1.0 + A);
    return oneSided ? 1.0 - lower : 2.0 * (1.0 - lower);
}

// t = sqrt(df (exp(w^2/df) - 1)), w = z (8 df + 3)/(8 df + 1), z the normal quantile: Wallace (1959), solved for t.
double detail::studentPoint(double alpha, std::uint64_t df)
{
    if (df == 0) return 0.0;
    const double degrees = static_cast<double>(df);
    const double z = normalPercentPoint(alpha / 2.0);
    const double w = z * (2.0 / (8.0 * degrees + 1.0) + 1.0);
    return std::sqrt(degrees * (std::exp(sqr(w) / degrees) - 1.0));
}

double t_PercentPoint(double alpha, std::size_t df) { return detail::studentPoint(alpha, df); }

// P(X <= x) = (x/2)^(df/2) exp(-x/2)/gamma(df/2 + 1) (1 + x/(df + 2) + x^2/((df + 2)(df + 4)) + ...), A&S 26.4.6, with h = x/2 and a = df/2
// summed as in AS 147 (Lau 1980).
double chiSquareProb(double x, std::size_t df)
{
    if (x == 0.0 || df == 0) return 0.0;
    const double h = x / 2.0;
    double a = static_cast<double>(wideCount(df)) / 2.0;
    const double f = std::exp(a * std::log(h) - lnGamma(1.0 + a) - h);
    if (!(f > 0.0)) return 0.0 * f;
    double term = 1.0;
    double sum = 1.0;
    while (term / sum > 1e-6) {
        a = a + 1.0;
        term = term * h / a;
        sum = sum + term;
    }
    return sum * f;
}

// x = df (1 - h + z sqrt(h))^3, h = 2/(9 df), z the normal quantile: A&S 26.4.17 (Wilson and Hilferty 1931).
double detail::chiSquarePoint(double p, std::uint64_t df)
{
    if (df == 0) return 0.0;
    const double degrees = static_cast<double>(df);
    const double z = normalPercentPoint(p);
    const double h = 2.0 / (9.0 * degrees);
    const double root = 1.0 - h + z * std::sqrt(h);
    return degrees * (root * root * root);
}

double chiSquarePoint(double p, std::size_t df) { return detail::chiSquarePoint(p, df); }

// P(F <= f) = 1 - I_x(df2/2, df1/2), x = df2/(df2 + df1 f), A&S 26.6.2.
double F_Prob(double f, std::size_t df1, std::size_t df2)
{
    if (df1 == 0 || df2 == 0) return 0.0;
    const double a = static_cast<double>(wideCount(df1)) / 2.0;
    const double b = static_cast<double>(wideCount(df2)) / 2.0;
    const double x = b / (b + a * f);
    return 1.0 - betaRatio(x, b, a, logBeta(a, b));
}

// The f with P(F <= f) = p: x of 26.6.2 by inverseBetaRatio, and f = df2 (1 - x)/(df1 x).
double F_PercentPoint(double p, std::size_t df1, std::size_t df2)
{
    if (p == 0.0) return 0.0;
    if (df1 == 0 || df2 == 0) return 0.0;
    const double degrees1 = static_cast<double>(wideCount(df1));
    const double degrees2 = static_cast<double>(wideCount(df2));
    const double a = degrees2 / 2.0;
    const double b = degrees1 / 2.0;
    const double x = inverseBetaRatio(1.0 - p, a, b, logBeta(a, b));
    return degrees2 * (1.0 - x) / (degrees1 * x);
}

// z = ln((1 + r)/(1 - r))/2 (Fisher 1921).
double z_TransformBig(double r)
{
    if (r == 1.0) return 10000.0;  // instead of infinity; -1 does give minus infinity
    return 0.5 * std::log((1.0 + r) / (1.0 - r));
}

// z* = z - (3 z + r)/(4 (n - 1)) (Hotelling 1953).
double z_TransformSmall(double r, std::size_t n)
{
    const double z = z_TransformBig(r);
    return z - (3.0 * z + r) / static_cast<double>(4 * (wideCount(n) - 1));
}

// r = (e^z - e^-z)/(e^z + e^-z), the hyperbolic tangent, A&S 4.5.3. Not std::tanh, whose last bit is another one.
double z_to_r(double z)
{
    const double up = std::exp(z);
    const double down = std::exp(-z);
    return (up - down) / (up + down);
}

// D with 2 exp(-2 n D^2) = alpha: the first term of D_Prob's series (Smirnov 1948).
double D_GoodnessOfFit(double alpha, std::size_t n)
{
    if (n < 101) return 0.0;  // for smaller samples there are tables
    return std::sqrt(-std::log(alpha / 2.0) / (2.0 * static_cast<double>(wideCount(n))));
}

// D with 2 exp(-2 D^2 n1 n2/(n1 + n2)) = alpha: the same of two samples.
double D_TwoSamples(double alpha, std::size_t n1, std::size_t n2)
{
    if (alpha == 0.0 || n1 == 0 || n2 == 0) return 0.0;
    if (n1 < 41 && n2 < 41 && !(n1 >= 27 && n2 >= 27))
        return 0.0;  // the window 27 ... 40 belongs to it: 20 and 40 have no value, 27 and 27 have
    const double c = std::sqrt(-0.5 * std::log(alpha / 2.0));
    const double size1 = static_cast<double>(wideCount(n1));
    const double size2 = static_cast<double>(wideCount(n2));
    // The product of the counts is theirs, and wraps as they do.
    return n1 == n2 ? c * std::sqrt(2.0 / size1) : c * std::sqrt((size1 + size2) / static_cast<double>(wideCount(n1) * wideCount(n2)));
}

// Q(lambda) = 2 (exp(-2 lambda^2) - exp(-8 lambda^2) + exp(-18 lambda^2) - ...), term j with -2 j^2 lambda^2 (Kolmogorov 1933, Smirnov
// 1948).
double D_Prob(double lambda)
{
    const double exponent = -2.0 * sqr(lambda);
    double factor = 2.0;
    double sum = 0.0;
    double previous = 0.0;
    for (int j = 1; j <= 100; ++j) {
        const float index = static_cast<float>(j);  // squares up to 100^2 are exact in a float too
        const double term = factor * std::exp(exponent * static_cast<double>(index * index));
        sum = sum + term;
        if (0.001 * previous > std::fabs(term) || 1e-8 * sum > std::fabs(term)) return sum;
        previous = std::fabs(term);
        factor = -factor;
    }
    return 1.0;  // no convergence: lambda near 0, where that is right, or so large that every term is 0
}

// P = exp(-z) (1 + (2z - z^2)/(4n) - (24z - 132z^2 + 76z^3 - 9z^4)/(288n^2)) (Greenwood and Durand 1955), from 50 observations on exp(-z).
double rayleighsProb(double z, std::size_t n)
{
    if (n == 0) return 0.0;
    if (n >= 50) return std::exp(-z);
    const double size = static_cast<double>(n);
    const double z2 = z * z;
    const double z3 = z2 * z;
    const double z4 = z3 * z;
    return std::exp(-z) * (1.0 + (2.0 * z - z2) / (4.0 * size) - (24.0 * z - 132.0 * z2 + 76.0 * z3 - 9.0 * z4) / (288.0 * sqr(size)));
}

// ---------------------------------------------------------------- angles and plane vectors

double degreeToRadian(double deg) { return 0.017453292519943295 * deg; }

double radianToDegree(double rad) { return 57.29577951308232 * rad; }

double computeResultant(double x, double y) { return std::sqrt(sqr(x) + sqr(y)); }

double computeAngle(double x, double y)
{
    const double r = computeResultant(x, y);
    if (r == 0.0) return 0.0;
    if (y >= 0.0 && (x >= 0.0 || x < 0.0)) return std::acos(x / r);
    if (x < 0.0 && y < 0.0) return twoPi - std::acos(x / r);
    if (x >= 0.0 && y < 0.0) return std::asin(y / r) + twoPi;
    return 0.0;  // a coordinate is NaN
}

double computeCircleArea(double r) { return pi * sqr(r); }

}  // namespace wq_lib
