#include <wq_exact/classes.h>

#include <wq_exact/distributions.h>

#include "analysed_data.h"
#include "objects.h"
#include "p_values.h"

#include <wq_stat/distributions.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace wq_exact {

namespace {

bool isCount(double frequency) { return frequency >= 0.0 && std::isfinite(frequency); }

}  // namespace

// ---------------------------------------------------------------- goodness of fit

namespace {

constexpr double leastExpected = 5.0;  // Cochran (1954), Some methods for strengthening the common chi-square tests

/** Sums over the classes; the shares of observed and expected frequencies need their sums first. */
void sumClasses(const wq_lib::GoodnessOfFit& test, GoodnessOfFitResult& exact)
{
    const detail::AnalysedPairs classes(test);
    classes.each([&](const wq_lib::data_pair& pair) {
        ++exact.classes;
        if (!isCount(pair.x) || !std::isfinite(pair.y)) exact.areCounts = false;
        exact.sumObserved += pair.x;
        exact.sumExpected += pair.y;
        exact.smallestExpected = std::fmin(exact.smallestExpected, pair.y);
        if (!(pair.y > 0.0)) ++exact.classesWithoutExpected;
        if (pair.y < leastExpected) ++exact.classesBelowFive;
    });
    double squares = 0.0;
    classes.each([&](const wq_lib::data_pair& pair) {
        const double expected = pair.y / exact.sumExpected;
        const double difference = pair.x / exact.sumObserved - expected;
        squares += difference * difference / expected;
    });
    exact.cohensW = std::sqrt(squares);
}

/** G, of which the class gives NaN where nothing is observed: x ln x goes to 0 with x. */
double likelihoodRatio(const wq_lib::GoodnessOfFit& test)
{
    if (!std::isnan(test.getG())) return test.getG();
    double sum = 0.0;
    detail::AnalysedPairs(test).each([&](const wq_lib::data_pair& pair) {
        if (pair.x != 0.0) sum += pair.x * std::log(pair.x / pair.y);
    });
    return 2.0 * sum;
}

/** The divisor of Williams' correction, with the count of observations as the class takes it. */
double williamsDivisor(const GoodnessOfFitResult& exact)
{
    const double k = static_cast<double>(exact.classes);
    return exact.classes == 2 ? 1.0 + 1.0 / (2.0 * exact.sumObserved) : 1.0 + (k + 1.0) / (6.0 * exact.sumObserved);
}

}  // namespace

GoodnessOfFitResult of(const wq_lib::GoodnessOfFit& test) noexcept
{
    return detail::guarded([&] {
        const double alpha = test.getSignificance();
        const double G = likelihoodRatio(test);
        GoodnessOfFitResult exact;
        sumClasses(test, exact);
        const double df = detail::degrees(exact.classes, 1);  // of those that were summed; the report takes all
        // With nothing expected in a class, what was observed there is impossible, or was to be left out.
        const auto tested = [&](double statistic, double& lowerTail) {
            const Test one = detail::upperChiSquare(statistic, df, alpha);
            if (!exact.areCounts || exact.classesWithoutExpected > 0) return detail::undecided(one);
            lowerTail = chiSquareCdf(statistic, df);
            return one;
        };
        exact.chiSquare = tested(test.getX2(), exact.chiSquareLowerTail);
        exact.G = tested(G, exact.GLowerTail);
        if (test.isWilliamsCorrection()) {
            const double adjusted = std::isnan(test.getGAdjusted()) ? G / williamsDivisor(exact) : test.getGAdjusted();
            exact.GAdjusted = tested(adjusted, exact.GAdjustedLowerTail);
        }
        // One statistic decides: where the least p of three does, as in the report, H0 is rejected more often than the level says. X2 is
        // the one that keeps it best where little is expected.
        if (exact.chiSquare.accepted) {
            exact.decision.accepted = exact.chiSquare.accepted;
            exact.p = exact.chiSquare.p;
        }
        const bool comparesSamples = detail::isAny<wq_lib::KolmogorovSmirnov2>(test);  // by its report, not the fit
        if (!comparesSamples) exact.decision.acceptedByReport = detail::acceptedByReport(test);
        return exact;
    });
}

// ---------------------------------------------------------------- Kolmogorov and Smirnov

namespace {

/** The cumulative frequencies of both samples. */
struct StoredFrequencies : wq_lib::KolmogorovSmirnov2 {
    static const std::vector<std::pair<double, double>>& of(const wq_lib::KolmogorovSmirnov2& test)
    {
        return test.*(&StoredFrequencies::cumulativeFrequencies);
    }
};

/** How many observations of both samples each class has; nothing where a count is negative or not whole. Empty classes are left out. */
std::optional<std::vector<std::size_t>> classSizes(const wq_lib::KolmogorovSmirnov2& test)
{
    const auto all = static_cast<double>(test.getN1() + test.getN2());
    const auto isWhole = [all](double count) { return count >= 0.0 && count <= all && count == std::floor(count); };
    std::vector<std::size_t> sizes;
    std::pair<double, double> last = {0.0, 0.0};
    for (const auto& [c1, c2] : StoredFrequencies::of(test)) {
        const double first = c1 - last.first;
        const double second = c2 - last.second;
        if (!isWhole(first) || !isWhole(second)) return {};
        if (first + second > 0.0) sizes.push_back(static_cast<std::size_t>(first + second));
        last = {c1, c2};
    }
    return sizes;
}

/** Whether there is nothing but counts, in the classes and in the sums of an object that may hold those of other classes. */
bool hasCounts(const wq_lib::KolmogorovSmirnov2& test)
{
    constexpr double mostCounted = 9007199254740992.0;  // 2^53: the sizes of the samples are whole numbers
    bool found = true;
    double sum1 = 0.0;
    double sum2 = 0.0;
    const auto look = [&](double first, double second) {
        found = found && isCount(first) && isCount(second);
        sum1 += first;
        sum2 += second;
    };
    detail::AnalysedPairs(test).each([&](const wq_lib::data_pair& pair) { look(pair.x, pair.y); });
    for (const auto& [c1, c2] : StoredFrequencies::of(test)) look(c1, c2);
    return found && sum1 <= mostCounted && sum2 <= mostCounted;
}

/** By all arrangements given the ties. */
std::optional<Test> countedTest(const wq_lib::KolmogorovSmirnov2& test)
{
    const std::size_t n1 = test.getN1();
    const std::size_t n2 = test.getN2();
    if (!canCountArrangements(n1, n2)) return {};
    const std::optional<std::vector<std::size_t>> sizes = classSizes(test);
    if (!sizes) return {};
    const double alpha = test.getSignificance();
    return detail::test(test.getD(), none, none, alpha, smirnovUpperTail(test.getD(), n1, n2, *sizes),
                        smirnovUpperQuantile(alpha, n1, n2, *sizes));
}

}  // namespace

KolmogorovSmirnovResult of(const wq_lib::KolmogorovSmirnov2& test) noexcept
{
    return detail::guarded([&] {
        const double alpha = test.getSignificance();
        const double D = test.getD();
        const double n1 = static_cast<double>(test.getN1());
        const double n2 = static_cast<double>(test.getN2());
        const double root = n1 > 0.0 && n2 > 0.0 ? std::sqrt(n1 / (n1 + n2) * n2) : none;

        KolmogorovSmirnovResult exact;
        exact.largeSamples = detail::test(D, none, none, alpha, kolmogorovUpperTail(D * root), kolmogorovUpperQuantile(alpha) / root);
        exact.areCounts = hasCounts(test);
        if (exact.areCounts && D <= 1.0)  // above it where the sizes, whole numbers, are less than the sums of fractions
            exact.allArrangements = countedTest(test);
        else
            exact.largeSamples = detail::undecided(exact.largeSamples);
        const Test& best = exact.allArrangements ? *exact.allArrangements : exact.largeSamples;
        exact.p = best.p;
        exact.decision = {best.accepted, detail::acceptedByReport(test)};
        exact.reportHasCriticalValue = wq_lib::D_TwoSamples(alpha, test.getN1(), test.getN2()) > 0.0;
        return exact;
    });
}

}  // namespace wq_exact
