#include <wq_stat/distributions.h>

#include "log_gamma_table.h"
#include "root_bracket.h"
#include "to_integer.h"

#include <wq_udf/console.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace wq_lib {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;
constexpr double halfPi = 1.5707963267948966;
constexpr double squareRootOfTwoPi = 2.506628274631000502;
constexpr double logGammaOfHalf = 0.5723649429247001;  // ln sqrt(pi)

constexpr std::uint64_t exactCounts = std::uint64_t{1} << 53;  // beyond it x - 1 = x may hold, and a loop over counts has no end

/** ln((x - 1)(x - 2)...), for a half-integer closed with ln sqrt(pi). */
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

double logBeta(double p, double q) { return lnGamma(p) + lnGamma(q) - lnGamma(p + q); }

}  // namespace

// ---------------------------------------------------------------- special functions and integration

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

double lnGamma(double x)
{
    static const detail::LogGammaTable table(logGammaProduct);
    if (const double* const value = table.find(x)) return *value;
    return x > static_cast<double>(exactCounts) ? notANumber : logGammaProduct(x);
}

double betaRatio(double x, double p, double q, double beta)
{
    if (x == 0.0 || x == 1.0) return x;
    if (x < 0.0 || x > 1.0) return 0.0;
    if (std::isnan(beta)) return notANumber;  // whatever the series gives

    // The series converges in the tail that holds less than the mean.
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

    // Soper's reduction. AS 63 lets xx replace rx once the reductions are used up, and steps psq from there on; here xx
    // replaces the factor qq - i and psq stays. For an integer qq the series ends before, for a half-integer this shifts the
    // result. Reports and decisions rest on these values.
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

double inverseBetaRatio(double alpha, double p, double q, double beta)
{
    if (alpha == 0.0 || alpha == 1.0) return alpha;

    // The other tail belongs to the exchanged parameters; here q alone is overwritten, and p keeps its value.
    const bool tailChanged = alpha > 0.5;
    const double a = tailChanged ? 1.0 - alpha : alpha;
    if (tailChanged) q = p;
    const auto result = [tailChanged](double x) { return tailChanged ? 1.0 - x : x; };

    // Starting value of AS 109.
    double r = std::sqrt(-std::log(a * a));
    const double y = r - (2.30753 + 0.27061 * r) / (1.0 + (0.99229 + 0.04481 * r) * r);
    double x;
    if (p > 1.0 && q > 1.0) {
        r = (y * y - 3.0) / 6.0;
        const double s = 1.0 / (2.0 * p - 1.0);
        const double t = 1.0 / (2.0 * q - 1.0);
        const double h = 2.0 / (s + t);
        const double w = y * std::sqrt(h + r) / h - (t - s) * (r + 0.8333333333333334 - 2.0 / (3.0 * h));
        x = p / (p + q * std::exp(2.0 * w));
    } else {
        r = 2.0 * q;
        double t = 1.0 / (9.0 * q);
        const double root = 1.0 - t + y * std::sqrt(t);
        t = r * (root * root * root);
        if (t > 0.0) {
            t = (4.0 * p + r - 2.0) / t;
            x = t > 1.0 ? 1.0 - 2.0 / (1.0 + t) : std::exp((std::log(a * p) + beta) / p);
        } else {
            x = 1.0 - std::exp((std::log((1.0 - a) * q) + beta) / q);
        }
    }

    // Newton's iteration. betaRatio jumps where a parameter is a half-integer, and the steps may circle around a jump for ever.
    // A circle is found by comparing with the x of the last step that was a power of two (Brent 1980); it visits nothing new.
    constexpr int mostSteps = 5000;
    detail::RootBracket bracket;
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

double simpsonIntegral(double (*f)(double), double a, double b)
{
    constexpr std::uint64_t mostSteps = std::uint64_t{1} << 30;
    const double h0 = (b - a) / 2.0;
    const double ends = h0 * (f(a) + f(b));  // weighted by h0 instead of 1, also after every halving
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

double quadratureIntegral(double (*f)(double), double a, double b)
{
    const double m = (a + b) / 2.0;
    const double fa = f(a);
    const double fb = f(b);
    const double fm = f(m);
    const double whole = ((b - a) / 2.0) * (fa + 4.0 * fm + fb) / 3.0;
    return quadratureRecursion(f, a, b, m, fa, fb, fm, whole, 1e-9, 1);
}

double quadratureRecursion(double (*f)(double), double a, double b, double m, double fa, double fb, double fm,
                           double whole, double tolerance, std::size_t depth)
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
    if (!(std::fabs(sum - whole) > tolerance)) return sum;

    const double leftHalf = quadratureRecursion(f, a, m, a + q, fa, fm, flm, left, tolerance / 2.0, depth + 1);
    if (std::isnan(leftHalf)) return leftHalf;  // so will be the whole; the other half may take 2^64 steps to find out
    return leftHalf + quadratureRecursion(f, m, b, b - q, fm, fb, frm, right, tolerance / 2.0, depth + 1);
}

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

double normalDensity(double x) { return std::exp(-0.5 * sqr(x)) / squareRootOfTwoPi; }

double normalProb(double x) { return 0.5 + quadratureIntegral(normalDensity, 0.0, x); }

double normalProbApprox(double x)
{
    const double a = std::fabs(x);
    const double d = 1.0 + a * (0.196854 + a * (0.115194 + a * (0.000344 + a * 0.019527)));
    const double P = 1.0 - 0.5 / sqr(sqr(d));
    return x > 0.0 ? P : 1.0 - P;
}

double normalPercentPoint(double p)
{
    const double t = std::sqrt(-2.0 * std::log(1.0 - (0.5 + std::fabs(p - 0.5))));
    const double y = t - (2.30753 + 0.27061 * t) / (1.0 + t * (0.99229 + 0.04481 * t));
    return p > 0.5 ? y : -y;
}

double t_Prob(double t, std::size_t df, bool oneSided)
{
    if (df == 0) return 0.0;
    if (df > exactCounts) return notANumber;

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
    if (oddDegrees) A = halfPi * (A + theta);  // 2/pi in the book; the library's results rest on pi/2
    const double lower = 0.5 * (1.0 + A);
    return oneSided ? 1.0 - lower : 2.0 * (1.0 - lower);
}

double t_PercentPoint(double alpha, std::size_t df)
{
    if (df == 0) return 0.0;
    const double degrees = static_cast<double>(df);
    const double z = normalPercentPoint(alpha / 2.0);
    const double w = z * (2.0 / (8.0 * degrees + 1.0) + 1.0);
    return std::sqrt(degrees * (std::exp(sqr(w) / degrees) - 1.0));
}

double chiSquareProb(double x, std::size_t df)
{
    if (x == 0.0 || df == 0) return 0.0;
    const double h = x / 2.0;
    double a = static_cast<double>(df) / 2.0;
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

double chiSquarePoint(double p, std::size_t df)
{
    if (df == 0) return 0.0;
    const double degrees = static_cast<double>(df);
    const double z = normalPercentPoint(p);
    const double h = 2.0 / (9.0 * degrees);
    const double root = 1.0 - h + z * std::sqrt(h);
    return degrees * (root * root * root);
}

double F_Prob(double f, std::size_t df1, std::size_t df2)
{
    if (df1 == 0 || df2 == 0) return 0.0;
    const double a = static_cast<double>(df1) / 2.0;
    const double b = static_cast<double>(df2) / 2.0;
    const double x = b / (b + a * f);
    return 1.0 - betaRatio(x, b, a, logBeta(a, b));
}

double F_PercentPoint(double p, std::size_t df1, std::size_t df2)
{
    if (p == 0.0) return 0.0;
    if (df1 == 0 || df2 == 0) return 0.0;
    const double a = static_cast<double>(df2) / 2.0;
    const double b = static_cast<double>(df1) / 2.0;
    const double x = inverseBetaRatio(1.0 - p, a, b, logBeta(a, b));
    return static_cast<double>(df2) * (1.0 - x) / (static_cast<double>(df1) * x);
}

double z_TransformBig(double r)
{
    if (r == 1.0) return 10000.0;
    return 0.5 * std::log((1.0 + r) / (1.0 - r));
}

double z_TransformSmall(double r, std::size_t n)
{
    const double z = z_TransformBig(r);
    return z - (3.0 * z + r) / static_cast<double>(4 * (n - 1));
}

double z_to_r(double z)
{
    const double up = std::exp(z);
    const double down = std::exp(-z);
    return (up - down) / (up + down);
}

double D_GoodnessOfFit(double alpha, std::size_t n)
{
    if (n < 101) return 0.0;
    return std::sqrt(-std::log(alpha / 2.0) / (2.0 * static_cast<double>(n)));
}

double D_TwoSamples(double alpha, std::size_t n1, std::size_t n2)
{
    if (alpha == 0.0 || n1 == 0 || n2 == 0) return 0.0;
    if (n1 < 41 && n2 < 41 && !(n1 >= 27 && n2 >= 27)) return 0.0;
    const double c = std::sqrt(-0.5 * std::log(alpha / 2.0));
    const double size1 = static_cast<double>(n1);
    const double size2 = static_cast<double>(n2);
    return n1 == n2 ? c * std::sqrt(2.0 / size1) : c * std::sqrt((size1 + size2) / static_cast<double>(n1 * n2));
}

double D_Prob(double lambda)
{
    const double exponent = -2.0 * sqr(lambda);
    double factor = 2.0;
    double sum = 0.0;
    double previous = 0.0;
    for (int j = 1; j <= 100; ++j) {
        const float index = static_cast<float>(j);
        const double term = factor * std::exp(exponent * static_cast<double>(index * index));
        sum = sum + term;
        if (0.001 * previous > std::fabs(term) || 1e-8 * sum > std::fabs(term)) return sum;
        previous = std::fabs(term);
        factor = -factor;
    }
    return 1.0;
}

double rayleighsProb(double z, std::size_t n)
{
    if (n == 0) return 0.0;
    if (n >= 50) return std::exp(-z);
    const double size = static_cast<double>(n);
    const double z2 = z * z;
    const double z3 = z2 * z;
    const double z4 = z3 * z;
    return std::exp(-z) * (1.0 + (2.0 * z - z2) / (4.0 * size)
                           - (24.0 * z - 132.0 * z2 + 76.0 * z3 - 9.0 * z4) / (288.0 * sqr(size)));
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
