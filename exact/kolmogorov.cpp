#include <wq_exact/distributions.h>

#include "pi.h"
#include "quantile_search.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <vector>

namespace wq_exact {

namespace {

using detail::pi;

constexpr double undefined = std::numeric_limits<double>::quiet_NaN();
constexpr long double meeting = 1.0L;  // above it the series of the upper tail is the short one, below it that of the lower
constexpr int terms = 8;               // the series have all their digits after 5

// Each series with every term its own exponential; at the meeting point the 8th is below 1e-55.

// P(L < lambda) = sqrt(2 pi) / lambda times the sum of exp(-(2k - 1)^2 pi^2 / (8 lambda^2)) over k = 1, 2, ... (Smirnov 1948).
long double lowerSeries(long double lambda)
{
    long double sum = 0.0L;
    for (int k = terms; k >= 1; --k) {
        const long double root = (2.0L * k - 1.0L) * pi / lambda;
        sum += std::exp(-root * root / 8.0L);
    }
    return std::sqrt(2.0L * pi) / lambda * sum;
}

// P(L >= lambda) = 2 times the sum of (-1)^(k-1) exp(-2 k^2 lambda^2) over k = 1, 2, ... (Kolmogorov 1933).
long double upperSeries(long double lambda)
{
    long double sum = 0.0L;
    for (int k = terms; k >= 1; --k) sum += (k % 2 == 1 ? 2.0L : -2.0L) * std::exp(-2.0L * (k * lambda) * (k * lambda));
    return sum;
}

long double lower(long double lambda) { return lambda < meeting ? lowerSeries(lambda) : 1.0L - upperSeries(lambda); }
long double upper(long double lambda) { return lambda < meeting ? 1.0L - lowerSeries(lambda) : upperSeries(lambda); }

// The derivative of either.
long double density(long double lambda)
{
    long double sum = 0.0L;
    if (lambda < meeting) {
        for (int k = terms; k >= 1; --k) {
            const long double root = (2.0L * k - 1.0L) * pi / lambda;
            sum += (root * root / 4.0L - 1.0L) * std::exp(-root * root / 8.0L);
        }
        return std::sqrt(2.0L * pi) / (lambda * lambda) * sum;
    }
    for (int k = terms; k >= 1; --k)
        sum += (k % 2 == 1 ? 8.0L : -8.0L) * static_cast<long double>(k * k) * lambda * std::exp(-2.0L * (k * lambda) * (k * lambda));
    return sum;
}

double point(long double lowerP, long double upperP)
{
    return detail::quantile(detail::Distribution{lower, upper, density}, lowerP, upperP);
}

}  // namespace

double kolmogorovCdf(double lambda) noexcept
{
    if (std::isnan(lambda)) return undefined;
    return lambda <= 0.0 ? 0.0 : static_cast<double>(lower(lambda));
}

double kolmogorovUpperTail(double lambda) noexcept
{
    if (std::isnan(lambda)) return undefined;
    return lambda <= 0.0 ? 1.0 : static_cast<double>(upper(lambda));
}

double kolmogorovQuantile(double p) noexcept { return point(p, 1.0L - p); }

double kolmogorovUpperQuantile(double p) noexcept { return point(1.0L - p, p); }

// ---------------------------------------------------------------- all arrangements of two samples

bool canCountArrangements(std::size_t n1, std::size_t n2) noexcept
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

/** The shares of paths from (0, 0) to (n1, n2). */
struct Paths {
    double reaching;  ///< those that have the distance somewhere
    double staying;   ///< those that stay below it all the way
};

/**
 * Where two samples are compared: after so many observations of both a class ends. Equal values have no order among them.
 * Source: Schroeer and Trenkler (1995), Exact and randomization distributions of Kolmogorov-Smirnov tests.
 */
class Arrangements {
public:
    Arrangements(std::size_t size1, std::size_t size2) : n1(size1), n2(size2), ends(size1 + size2 + 1, true) {}

    Arrangements(std::size_t size1, std::size_t size2, const std::vector<std::size_t>& classes)
        : n1(size1),
          n2(size2),
          ends(size1 + size2 + 1, false)
    {
        std::size_t end = 0;
        ends[0] = true;
        for (const std::size_t size : classes) ends[end += size] = true;
    }

    /** The counts of paths stay below 1e60. */
    Paths count(double least) const
    {
        std::vector<double> reaching(n2 + 1, 0.0);  // paths to (i, j) for the current i
        std::vector<double> staying(n2 + 1, 0.0);
        staying[0] = 1.0;
        for (std::size_t i = 0; i <= n1; ++i) {
            for (std::size_t j = 0; j <= n2; ++j) {
                if (j > 0) {
                    reaching[j] += reaching[j - 1];
                    staying[j] += staying[j - 1];
                }
                if (ends[i + j] && distanceAt(i, j, n1, n2) >= least) {
                    reaching[j] += staying[j];
                    staying[j] = 0.0;
                }
            }
        }
        const double all = reaching[n2] + staying[n2];
        return {reaching[n2] / all, staying[n2] / all};
    }

    /** The first distance with the property that some arrangement can have, as a D. */
    template <typename IsBelow>
    double firstDistance(IsBelow isBelow) const
    {
        const std::vector<double> candidates = distances();
        const auto first = std::partition_point(candidates.begin(), candidates.end(), isBelow);
        return first == candidates.end() ? undefined : *first / (static_cast<double>(n1) * static_cast<double>(n2));
    }

    /** The smallest D with an upper tail of p at most. */
    double upperQuantile(double p) const
    {
        return firstDistance([&](double least) { return count(least).reaching > p; });
    }

private:
    /** In ascending order. */
    std::vector<double> distances() const
    {
        std::vector<double> all;
        for (std::size_t i = 0; i <= n1; ++i)
            for (std::size_t j = 0; j <= n2; ++j)
                if (ends[i + j]) all.push_back(distanceAt(i, j, n1, n2));
        std::sort(all.begin(), all.end());
        all.erase(std::unique(all.begin(), all.end()), all.end());
        return all;
    }

    std::size_t n1;
    std::size_t n2;
    std::vector<bool> ends;
};

/** D as a multiple of 1 / (n1 n2). A quotient of frequencies may lie a last bit above the D it stands for. */
double steps(double d, std::size_t n1, std::size_t n2)
{
    constexpr double rounding = 1e-7;
    return std::ceil(d * static_cast<double>(n1) * static_cast<double>(n2) - rounding);
}

/** What is computed with the paths; NaN for samples that are too large, or when there is no memory. */
template <typename Computation>
double counted(std::size_t n1, std::size_t n2, Computation computation) noexcept
{
    if (!canCountArrangements(n1, n2)) return undefined;
    try {
        return computation();
    } catch (const std::bad_alloc&) {
        return undefined;
    }
}

/** Whether these are the classes of two such samples. A sum of sizes may wrap. */
bool makeUp(const std::vector<std::size_t>& classes, std::size_t n1, std::size_t n2)
{
    if (!canCountArrangements(n1, n2)) return false;
    std::size_t rest = n1 + n2;
    for (const std::size_t size : classes) {
        if (size > rest) return false;
        rest -= size;
    }
    return rest == 0;
}

}  // namespace

double smirnovUpperTail(double d, std::size_t n1, std::size_t n2) noexcept
{
    return std::isnan(d) ? undefined : counted(n1, n2, [&] { return Arrangements(n1, n2).count(steps(d, n1, n2)).reaching; });
}

double smirnovUpperTail(double d, std::size_t n1, std::size_t n2, const std::vector<std::size_t>& classes) noexcept
{
    if (std::isnan(d) || !makeUp(classes, n1, n2)) return undefined;
    return counted(n1, n2, [&] { return Arrangements(n1, n2, classes).count(steps(d, n1, n2)).reaching; });
}

double smirnovCdf(double d, std::size_t n1, std::size_t n2) noexcept
{
    return std::isnan(d) ? undefined : counted(n1, n2, [&] { return Arrangements(n1, n2).count(steps(d, n1, n2)).staying; });
}

double smirnovUpperQuantile(double p, std::size_t n1, std::size_t n2) noexcept
{
    if (!(p >= 0.0 && p <= 1.0)) return undefined;
    return counted(n1, n2, [&] { return Arrangements(n1, n2).upperQuantile(p); });
}

double smirnovUpperQuantile(double p, std::size_t n1, std::size_t n2, const std::vector<std::size_t>& classes) noexcept
{
    if (!(p >= 0.0 && p <= 1.0) || !makeUp(classes, n1, n2)) return undefined;
    return counted(n1, n2, [&] { return Arrangements(n1, n2, classes).upperQuantile(p); });
}

double smirnovQuantile(double p, std::size_t n1, std::size_t n2) noexcept
{
    if (!(p >= 0.0 && p <= 1.0)) return undefined;
    return counted(n1, n2, [&] {
        const Arrangements all(n1, n2);
        return all.firstDistance([&](double d) { return all.count(d + 0.5).staying < p; });
    });
}

}  // namespace wq_exact
