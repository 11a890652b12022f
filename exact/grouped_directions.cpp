#include "grouped_directions.h"

#include "pi.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace wq_exact::detail {

namespace {

/**
 * Goes through all distributions of n directions over k classes, a step for each class that has any. A multinomial distribution is that of
 * independent Poisson variables with the mean n / k whose sum is n: their product needs no factorials, and does not overflow.
 */
class Distributions {
public:
    Distributions(double z, std::size_t n, std::size_t k) : one(k), empty(k + 1), probability(n + 1)
    {
        constexpr long double circle = 2.0L * pi;
        for (std::size_t i = 0; i < k; ++i) {
            const long double angle = circle * static_cast<long double>(i) / static_cast<long double>(k);
            one[i] = {static_cast<double>(std::cos(angle)), static_cast<double>(std::sin(angle))};
        }
        const long double mean = static_cast<long double>(n) / static_cast<long double>(k);
        probability[0] = std::exp(-mean);
        for (std::size_t j = 1; j <= n; ++j) probability[j] = probability[j - 1] * mean / static_cast<long double>(j);
        empty[0] = 1.0L;
        for (std::size_t i = 0; i < k; ++i) empty[i + 1] = empty[i] * probability[0];

        constexpr double rounding = 1e-9;  // of the squared length that n directions can have
        const auto size = static_cast<double>(n);
        least = std::min(z, size) * size - rounding * size * size;
        distribute(0, n, {0.0, 0.0}, 1.0L);
    }

    double upperTail() const { return static_cast<double>(reaching / all); }

private:
    struct Vector {
        double x;
        double y;
    };

    void distribute(std::size_t first, std::size_t rest, Vector sum, long double weight)
    {
        const std::size_t last = one.size() - 1;
        for (std::size_t i = first; i < last; ++i, weight *= probability[0]) {
            Vector reached = sum;
            for (std::size_t j = 1; j < rest; ++j) {
                reached = {reached.x + one[i].x, reached.y + one[i].y};
                distribute(i + 1, rest - j, reached, weight * probability[j]);
            }
            add({reached.x + one[i].x, reached.y + one[i].y}, weight * probability[rest] * empty[last - i]);
        }
        const auto count = static_cast<double>(rest);
        add({sum.x + count * one[last].x, sum.y + count * one[last].y}, weight * probability[rest]);
    }

    void add(Vector sum, long double weight)
    {
        all += weight;
        if (sum.x * sum.x + sum.y * sum.y >= least) reaching += weight;
    }

    std::vector<Vector> one;               ///< the direction of each class
    std::vector<long double> empty;        ///< the probability that so many classes are
    std::vector<long double> probability;  ///< of so many directions in a class
    double least;                          ///< the squared length that counts
    long double all = 0.0L;
    long double reaching = 0.0L;
};

}  // namespace

bool canEnumerateDirections(double n, double classes) noexcept
{
    constexpr double most = 1e6;
    const double fewer = std::min(n, classes - 1.0);
    const double more = std::max(n, classes - 1.0);
    double count = 1.0;  // "fewer out of fewer + more", which grows factor by factor
    for (double i = 1.0; i <= fewer && count <= most; ++i) count *= (more + i) / i;
    return more <= most && count <= most;
}

double groupedUpperTail(double z, double n, double classes)
{
    return Distributions(z, static_cast<std::size_t>(n), static_cast<std::size_t>(classes)).upperTail();
}

}  // namespace wq_exact::detail
