#include <wq_exact/classes.h>

#include <wq_exact/distributions.h>

#include "analysed_data.h"
#include "p_values.h"

#include <wq_stat/distributions.h>

#include <algorithm>
#include <cmath>

namespace wq_exact {

// ---------------------------------------------------------------- goodness of fit

namespace {

constexpr double leastExpected = 5.0;  // Cochran (1954), Some methods for strengthening the common chi-square tests

/** Sums over the classes; the shares of observed and expected frequencies need their sums first. */
void sumClasses(const wq_lib::GoodnessOfFit& test, GoodnessOfFitResult& exact)
{
    const detail::AnalysedPairs classes(test);
    classes.each([&](const wq_lib::data_pair& pair) {
        ++exact.classes;
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

/** acceptH0() */
bool acceptedByReport(const wq_lib::GoodnessOfFit& test)
{
    const double critical = wq_lib::chiSquarePoint(test.getConfidence(), test.getSampleSize() - 1);
    const bool rejected = test.getX2() >= critical || test.getG() >= critical;
    return !rejected && !(test.isWilliamsCorrection() && test.getGAdjusted() >= critical);
}

}  // namespace

GoodnessOfFitResult of(const wq_lib::GoodnessOfFit& test) noexcept
{
    return detail::guarded([&] {
        const double alpha = test.getSignificance();
        const double df = detail::degrees(test.getSampleSize(), 1);
        const double G = likelihoodRatio(test);
        GoodnessOfFitResult exact;
        sumClasses(test, exact);
        exact.chiSquare = detail::upperChiSquare(test.getX2(), df, alpha);
        exact.chiSquareLowerTail = chiSquareCdf(exact.chiSquare.statistic, df);
        exact.G = detail::upperChiSquare(G, df, alpha);
        exact.GLowerTail = chiSquareCdf(G, df);
        if (test.isWilliamsCorrection()) {
            const double adjusted = std::isnan(test.getGAdjusted()) ? G / williamsDivisor(exact) : test.getGAdjusted();
            exact.GAdjusted = detail::upperChiSquare(adjusted, df, alpha);
            exact.GAdjustedLowerTail = chiSquareCdf(adjusted, df);
        }
        // One statistic decides: where the least p of three does, as in the report, H0 is rejected more often than the level says. X2 is the one
        // that keeps it best where little is expected. With nothing expected in a class, what was observed there is impossible, or was to be left out.
        if (exact.classesWithoutExpected == 0) {
            exact.decision.accepted = exact.chiSquare.accepted;
            exact.p = exact.chiSquare.p;
        }
        exact.decision.acceptedByReport = acceptedByReport(test);
        return exact;
    });
}

// ---------------------------------------------------------------- Kolmogorov and Smirnov

KolmogorovSmirnovResult of(const wq_lib::KolmogorovSmirnov2& test) noexcept
{
    const double alpha = test.getSignificance();
    const double D = test.getD();
    const double n1 = static_cast<double>(test.getN1());
    const double n2 = static_cast<double>(test.getN2());
    const double root = n1 > 0.0 && n2 > 0.0 ? std::sqrt(n1 / (n1 + n2) * n2) : none;

    KolmogorovSmirnovResult exact;
    exact.largeSamples = detail::test(D, none, none, alpha, kolmogorovUpperTail(D * root), kolmogorovUpperQuantile(alpha) / root);
    if (canCountArrangements(test.getN1(), test.getN2()))
        exact.allArrangements = detail::test(D, none, none, alpha, smirnovUpperTail(D, test.getN1(), test.getN2()),
                                             smirnovUpperQuantile(alpha, test.getN1(), test.getN2()));
    const Test& best = exact.allArrangements ? *exact.allArrangements : exact.largeSamples;
    const double critical = wq_lib::D_TwoSamples(alpha, test.getN1(), test.getN2());
    exact.p = best.p;
    exact.decision = {best.accepted, critical >= D};  // acceptH0()
    exact.reportHasCriticalValue = critical > 0.0;
    return exact;
}

}  // namespace wq_exact
