// The distribution functions that loop once more, as straight loops with nothing to end them but a budget of steps.
#pragma once

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

namespace wq_test::plain {

// Nothing is returned when the budget runs out.
using Result = std::optional<double>;

struct Budget {
    long steps;
    bool spend() { return --steps >= 0; }
};

inline Result lnGamma(double x, Budget& budget)
{
    double s = 0.0;
    double y = x - 1.0;
    while (y > 0.0) {
        if (!budget.spend()) return {};
        s += std::log(y);
        y -= 1.0;
    }
    return y < 0.0 ? s + 0.57236494292470008707 : s;
}

inline Result betaRatio(double x, double p, double q, double beta, Budget& budget)
{
    if (x == 0.0 || x == 1.0) return x;
    const double psq = p + q;
    const bool changed = psq * x > p;
    const double xx = changed ? 1.0 - x : x;
    const double cx = changed ? x : 1.0 - x;
    const double pp = changed ? q : p;
    const double qq = changed ? p : q;
    const double top = std::ceil(qq + psq * cx);
    if (!(std::fabs(top) < 1e9)) return {};
    int ns = static_cast<int>(top) + 1;
    const double rx = xx / cx;
    double term = 1.0, sum = 1.0, temp = 0.0;
    int i = 0;
    do {
        if (!budget.spend()) return {};
        ++i;
        --ns;
        if (ns >= 0) temp = ns == 0 ? xx : qq - i;
        term = term * temp * rx / (pp + i);
        sum += term;
    } while (!(sum >= std::fabs(term) && 1e-7 * sum >= std::fabs(term)));
    if (xx <= 0.0 || cx <= 0.0) return 0.0;
    const double result = sum * std::exp(pp * std::log(xx) + (qq - 1.0) * std::log(cx) - beta) / pp;
    return changed ? 1.0 - result : result;
}

inline Result inverseBetaRatio(double alpha, double p, double q, double beta, Budget& budget)
{
    if (alpha == 0.0 || alpha == 1.0) return alpha;
    const bool changed = alpha > 0.5;
    const double a = changed ? 1.0 - alpha : alpha;
    if (changed) q = p;
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
        const double base = 1.0 - t + y * std::sqrt(t);
        t = r * (base * base * base);
        if (t > 0.0) {
            t = (4.0 * p + r - 2.0) / t;
            x = t > 1.0 ? 1.0 - 2.0 / (1.0 + t) : std::exp((std::log(a * p) + beta) / p);
        } else {
            x = 1.0 - std::exp((std::log((1.0 - a) * q) + beta) / q);
        }
    }
    double d;
    do {
        const Result ratio = plain::betaRatio(x, p, q, beta, budget);
        if (!ratio || !budget.spend()) return {};
        d = (*ratio - a) * std::exp((1.0 - p) * std::log(x) + (1.0 - q) * std::log(1.0 - x) + beta);
        double step = d;
        double candidate = x - step;
        while (candidate <= 0.0 || candidate >= 1.0) {
            if (!budget.spend()) return {};
            step /= 2.0;
            candidate = x - step;
        }
        x = candidate;
    } while (std::fabs(d) >= 1e-6);
    return changed ? 1.0 - x : x;
}

inline Result t_Prob(double t, std::size_t df, bool oneSided, Budget& budget)
{
    if (df == 0) return 0.0;
    const double theta = std::atan(t / std::sqrt(static_cast<double>(df)));
    const double s = std::sin(theta);
    const double c = std::cos(theta);
    const bool oddDf = df % 2 == 1;
    double A = 0.0;
    if (df > 1) {
        double term = oddDf ? c : 1.0;
        double sum = term;
        for (std::size_t k = oddDf ? 3 : 2; k < df; k += 2) {
            if (!budget.spend()) return {};
            term = term * (c * c) * static_cast<double>(k - 1) / static_cast<double>(k);
            sum += term;
        }
        A = s * sum;
    }
    if (oddDf) A = 1.5707963267948966 * (A + theta);
    const double lower = 0.5 * (1.0 + A);
    return oneSided ? 1.0 - lower : 2.0 * (1.0 - lower);
}

inline Result chiSquareProb(double x, std::size_t df, Budget& budget)
{
    if (x == 0.0 || df == 0) return 0.0;
    const double h = x / 2.0;
    double a = static_cast<double>(df) / 2.0;
    const Result gamma = plain::lnGamma(1.0 + a, budget);
    if (!gamma) return {};
    const double f = std::exp(a * std::log(h) - *gamma - h);
    if (!(f > 0.0)) return 0.0 * f;
    double term = 1.0, sum = 1.0;
    while (term / sum > 1e-6) {
        if (!budget.spend()) return {};
        a += 1.0;
        term = term * h / a;
        sum += term;
    }
    return sum * f;
}

inline Result binomial(std::size_t k, std::size_t n, double p, Budget& budget)
{
    double r = 1.0;
    for (std::size_t i = 0; i < n; ++i) {
        if (!budget.spend()) return {};
        r *= 1.0 - p;
    }
    for (std::size_t i = 0; i < k; ++i) {
        if (!budget.spend()) return {};
        r = r * static_cast<double>(n - i) * p / (static_cast<double>(i + 1) * (1.0 - p));
    }
    return r;
}

inline Result F_Prob(double f, std::size_t df1, std::size_t df2, Budget& budget)
{
    if (df1 == 0 || df2 == 0) return 0.0;
    const double a = static_cast<double>(df1) / 2.0;
    const double b = static_cast<double>(df2) / 2.0;
    const double x = b / (b + a * f);
    const Result A = plain::lnGamma(a, budget), B = plain::lnGamma(b, budget), C = plain::lnGamma(a + b, budget);
    if (!A || !B || !C) return {};
    const Result ratio = plain::betaRatio(x, b, a, *A + *B - *C, budget);
    if (!ratio) return {};
    return 1.0 - *ratio;
}

inline Result F_PercentPoint(double p, std::size_t df1, std::size_t df2, Budget& budget)
{
    if (p == 0.0 || df1 == 0 || df2 == 0) return 0.0;
    const double a = static_cast<double>(df2) / 2.0;
    const double b = static_cast<double>(df1) / 2.0;
    const Result A = plain::lnGamma(a, budget), B = plain::lnGamma(b, budget), C = plain::lnGamma(a + b, budget);
    if (!A || !B || !C) return {};
    const Result x = plain::inverseBetaRatio(1.0 - p, a, b, *A + *B - *C, budget);
    if (!x) return {};
    return static_cast<double>(df2) * (1.0 - *x) / (static_cast<double>(df1) * *x);
}

inline double factorial(std::size_t n)
{
    double result = 1.0;
    for (std::size_t k = 1; k <= n; ++k) {
        if (!(DBL_MAX / static_cast<double>(k) > result)) return -1.0;
        result *= static_cast<double>(k);
    }
    return result;
}

inline double D_Prob(double lambda)
{
    double factor = 2.0, sum = 0.0, previous = 0.0;
    for (int j = 1; j <= 100; ++j) {
        const double term = factor * std::exp(-2.0 * (lambda * lambda) * (static_cast<double>(j) * j));
        sum += term;
        if (0.001 * previous > std::fabs(term) || 1e-8 * sum > std::fabs(term)) return sum;
        previous = std::fabs(term);
        factor = -factor;
    }
    return 1.0;
}

using Integrand = double (*)(double);

inline Result simpsonIntegral(Integrand f, double a, double b, Budget& budget)
{
    const double h0 = (b - a) / 2.0;
    const double ends = h0 * (f(a) + f(b));
    double h = h0, even = 0.0, odd = f((a + b) / 2.0);
    double s = h * (ends + 4.0 * odd), previous;
    long n = 2;
    do {
        previous = s;
        n *= 2;
        h /= 2.0;
        even += odd;
        odd = 0.0;
        for (long k = 1; k <= n; k += 2) {
            if (!budget.spend()) return {};
            odd += f(a + static_cast<double>(k) * h);
        }
        s = h * (ends + 2.0 * even + 4.0 * odd);
    } while (!(std::fabs(s - previous) < 1e-9));
    return s / 3.0;
}

// Without the message; NaN where the depth runs out.
inline Result quadratureRecursion(Integrand f, double a, double b, double m, double fa, double fb, double fm, double whole,
                                  double tolerance, std::size_t depth, Budget& budget)
{
    if (!budget.spend()) return {};
    if (depth > 64) return std::numeric_limits<double>::quiet_NaN();
    const double q = (b - a) / 4.0;
    const double flm = f(a + q), frm = f(b - q);
    const double left = q * (fa + 4.0 * flm + fm) / 3.0;
    const double right = q * (fm + 4.0 * frm + fb) / 3.0;
    const double sum = left + right;
    if (!(std::fabs(sum - whole) > tolerance)) return sum;
    const Result below = quadratureRecursion(f, a, m, a + q, fa, fm, flm, left, tolerance / 2.0, depth + 1, budget);
    if (!below || std::isnan(*below)) return below;  // what the right half adds cannot mend a NaN
    const Result above = quadratureRecursion(f, m, b, b - q, fm, fb, frm, right, tolerance / 2.0, depth + 1, budget);
    if (!above) return {};
    return *below + *above;
}

inline Result quadratureIntegral(Integrand f, double a, double b, Budget& budget)
{
    const double m = (a + b) / 2.0, fa = f(a), fb = f(b), fm = f(m);
    const double whole = (b - a) / 2.0 * (fa + 4.0 * fm + fb) / 3.0;
    return quadratureRecursion(f, a, b, m, fa, fb, fm, whole, 1e-9, 1, budget);
}

}  // namespace wq_test::plain
