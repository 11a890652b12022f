#define BOOST_DISABLE_ASSERTS  // one of its F fails for a level near the smallest double, where without it the answer is NaN

#include "exact.h"

#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <boost/math/policies/policy.hpp>

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <vector>

namespace wqstat::exact {

namespace {

namespace policies = boost::math::policies;

// Plain doubles: the quantiles of F fail in long double at some everyday points. What is not defined is NaN, not an exception.
using Policy = policies::policy<policies::promote_double<false>, policies::domain_error<policies::ignore_error>,
                                policies::pole_error<policies::ignore_error>, policies::overflow_error<policies::ignore_error>,
                                policies::evaluation_error<policies::ignore_error>>;
using Student = boost::math::students_t_distribution<double, Policy>;
using ChiSquare = boost::math::chi_squared_distribution<double, Policy>;
using Fisher = boost::math::fisher_f_distribution<double, Policy>;
using Normal = boost::math::normal_distribution<double, Policy>;

using boost::math::cdf;
using boost::math::complement;
using boost::math::quantile;

constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

bool isDegrees(double df) { return df > 0.0 && std::isfinite(df); }

/** A quantile; NaN where the search for it fails, as it does for some levels below 1e-300. */
template <typename Search>
double found(Search search)
{
    try {
        return search();
    } catch (const std::exception&) {
        return undefined;
    }
}

/** A tail of a distribution on 0 ... infinity, with its limits. */
template <typename Tail>
double onPositive(double x, double atZero, double atInfinity, Tail tail)
{
    if (std::isnan(x)) return undefined;
    if (x <= 0.0) return atZero;
    return std::isinf(x) ? atInfinity : tail();
}

}  // namespace

// ---------------------------------------------------------------- t, chi-square, F

double tTwoSided(double t, double df)
{
    if (!isDegrees(df) || std::isnan(t)) return undefined;
    return std::isinf(t) ? 0.0 : 2.0 * cdf(complement(Student(df), std::fabs(t)));
}

double tTwoSidedPoint(double alpha, double df)
{
    return isDegrees(df) ? found([&] { return quantile(complement(Student(df), alpha / 2.0)); }) : undefined;
}

double normalTwoSidedPoint(double alpha) { return quantile(complement(Normal(), alpha / 2.0)); }

double chiSquareLower(double x, double df)
{
    return isDegrees(df) ? onPositive(x, 0.0, 1.0, [&] { return cdf(ChiSquare(df), x); }) : undefined;
}

double chiSquareUpper(double x, double df)
{
    return isDegrees(df) ? onPositive(x, 1.0, 0.0, [&] { return cdf(complement(ChiSquare(df), x)); }) : undefined;
}

double chiSquareUpperPoint(double alpha, double df)
{
    return isDegrees(df) ? found([&] { return quantile(complement(ChiSquare(df), alpha)); }) : undefined;
}

double fLower(double f, double df1, double df2)
{
    return isDegrees(df1) && isDegrees(df2) ? onPositive(f, 0.0, 1.0, [&] { return cdf(Fisher(df1, df2), f); }) : undefined;
}

double fUpper(double f, double df1, double df2)
{
    return isDegrees(df1) && isDegrees(df2) ? onPositive(f, 1.0, 0.0, [&] { return cdf(complement(Fisher(df1, df2), f)); }) : undefined;
}

double fUpperPoint(double alpha, double df1, double df2)
{
    return isDegrees(df1) && isDegrees(df2) ? found([&] { return quantile(complement(Fisher(df1, df2), alpha)); }) : undefined;
}

// ---------------------------------------------------------------- Kolmogorov and Smirnov

double kolmogorovUpper(double lambda)
{
    constexpr double pi = 3.141592653589793;
    constexpr int terms = 20;  // either series has its digits long before
    if (std::isnan(lambda)) return undefined;
    if (lambda <= 0.0) return 1.0;
    double sum = 0.0;
    if (lambda < 1.0) {
        for (int k = 1; k <= terms; ++k) sum += std::exp(-std::pow((2.0 * k - 1.0) * pi / lambda, 2.0) / 8.0);
        return sum > 0.0 ? 1.0 - std::sqrt(2.0 * pi) / lambda * sum : 1.0;
    }
    for (int k = terms; k >= 1; --k) sum += (k % 2 == 1 ? 2.0 : -2.0) * std::exp(-2.0 * std::pow(k * lambda, 2.0));
    return sum;
}

double kolmogorovUpperPoint(double alpha)
{
    double low = 0.0;
    double high = std::sqrt((std::log(2.0) - std::log(alpha)) / 2.0);  // where the first term alone, which is too large, is alpha
    for (double middle = high / 2.0; low < middle && middle < high; middle = low + (high - low) / 2.0)
        (kolmogorovUpper(middle) > alpha ? low : high) = middle;
    return high;
}

bool canCountArrangements(std::size_t n1, std::size_t n2)
{
    constexpr std::size_t most = 10'000;
    return n1 > 0 && n2 > 0 && n1 <= most && n2 <= most / n1;
}

namespace {

/** How far the two cumulative frequencies lie apart after i and j observations, as a multiple of 1 / (n1 n2). */
double distanceAt(std::size_t i, std::size_t j, std::size_t n1, std::size_t n2)
{
    return std::fabs(static_cast<double>(i * n2) - static_cast<double>(j * n1));
}

/** P(distance >= least somewhere on a path from (0, 0) to (n1, n2)); the counts of paths stay below 1e59. */
double reachingPaths(double least, std::size_t n1, std::size_t n2)
{
    std::vector<double> all(n2 + 1, 0.0);       // paths to (i, j) for the current i
    std::vector<double> reaching(n2 + 1, 0.0);  // those of them that have reached the distance
    for (std::size_t i = 0; i <= n1; ++i) {
        for (std::size_t j = 0; j <= n2; ++j) {
            all[j] = i == 0 && j == 0 ? 1.0 : all[j] + (j > 0 ? all[j - 1] : 0.0);
            reaching[j] = distanceAt(i, j, n1, n2) >= least ? all[j] : reaching[j] + (j > 0 ? reaching[j - 1] : 0.0);
        }
    }
    return reaching[n2] / all[n2];
}

/** The distances that reachingPaths() may look for, in ascending order. */
std::vector<double> distances(std::size_t n1, std::size_t n2)
{
    std::vector<double> all;
    for (std::size_t i = 0; i <= n1; ++i)
        for (std::size_t j = 0; j <= n2; ++j) all.push_back(distanceAt(i, j, n1, n2));
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

}  // namespace

double smirnovUpper(double d, std::size_t n1, std::size_t n2)
{
    if (std::isnan(d) || !canCountArrangements(n1, n2)) return undefined;
    constexpr double rounding = 1e-7;  // a quotient of frequencies may lie a last bit above the D it stands for
    return reachingPaths(std::ceil(d * static_cast<double>(n1) * static_cast<double>(n2) - rounding), n1, n2);
}

double smirnovUpperPoint(double alpha, std::size_t n1, std::size_t n2)
{
    if (!canCountArrangements(n1, n2)) return undefined;
    const std::vector<double> candidates = distances(n1, n2);
    const auto rejected =
        std::partition_point(candidates.begin(), candidates.end(), [&](double least) { return reachingPaths(least, n1, n2) > alpha; });
    return rejected == candidates.end() ? undefined : *rejected / (static_cast<double>(n1) * static_cast<double>(n2));
}

// ---------------------------------------------------------------- directions

double rayleighUpper(double R, double n)
{
    if (!(n > 0.0) || std::isnan(R)) return undefined;
    const double length = std::min(std::fabs(R), n);
    const double root = std::sqrt(1.0 + 4.0 * n + 4.0 * (n * n - length * length));
    return std::exp(-4.0 * length * length / (root + (1.0 + 2.0 * n)));  // root - (1 + 2n), without cancellation
}

double rayleighUpperPoint(double alpha, double n)
{
    if (!(n > 0.0)) return undefined;
    const double logarithm = std::log(alpha);
    const double R2 = -logarithm * (1.0 + 2.0 * n) / 2.0 - logarithm * logarithm / 4.0;
    return R2 > 0.0 && R2 <= n * n ? R2 / n : undefined;
}

}  // namespace wqstat::exact
