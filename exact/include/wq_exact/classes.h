#ifndef WQ_EXACT_CLASSES_H
#define WQ_EXACT_CLASSES_H

/// @file
/// Exact figures of frequencies in classes: goodness of fit, and two samples by Kolmogorov and Smirnov.

#include <wq_exact/export.h>
#include <wq_exact/test.h>
#include <wq_stat/goodness_fit.h>
#include <wq_stat/kolmogorov.h>

#include <cstddef>
#include <optional>

namespace wq_exact {

/**
 * Observed against expected frequencies. With a class in which nothing is expected, or with frequencies that are no counts, no statistic
 * has a p, a tail or a decision.
 */
struct GoodnessOfFitResult {
    Test chiSquare;                    ///< with Yates' correction where that is on; it decides
    Test G;                            ///< a class with nothing observed adds nothing
    std::optional<Test> GAdjusted;     ///< with Williams' correction; nothing where that is off
    double chiSquareLowerTail = none;  ///< P(chi-square <= statistic)
    double GLowerTail = none;          ///< P(chi-square <= G)
    double GAdjustedLowerTail = none;  ///< P(chi-square <= adjusted G)
    Decision decision;                 ///< that of chiSquare, and none where that has none. The report rejects when any statistic does
    double p = none;                   ///< that of chiSquare, where there is a decision
    double cohensW = none;             ///< sqrt(sum (o - e)^2 / e) of the shares o and e
    double sumObserved = 0.0;          ///< observed in all classes
    double sumExpected = 0.0;          ///< expected in all classes
    double smallestExpected = none;    ///< the smallest expected frequency
    std::size_t classes = 0;           ///< number of classes
    std::size_t classesBelowFive = 0;  ///< classes in which less than 5 are expected: too few for a chi-square distribution
    std::size_t classesWithoutExpected = 0;  ///< classes in which nothing is expected, or less: there is no test
    bool areCounts = true;                   ///< whether all frequencies are finite, and those observed not negative; else there is no test

    /** @return whether the object's own report decides differently. */
    bool reportDiffers() const noexcept { return decision.reportDiffers(); }
};

/** @param test after analyse(), with the classes it has analysed. @return the exact figures; NaN where there are none, as for one class. */
WQ_EXACT_EXPORT GoodnessOfFitResult of(const wq_lib::GoodnessOfFit& test) noexcept;

/** The distributions of two samples. Frequencies that are no counts, or a D outside 0 ... 1, have no p and no decision. */
struct KolmogorovSmirnovResult {
    Test largeSamples;  ///< by Kolmogorov's limit; statistic D
    std::optional<Test>
        allArrangements;  ///< by counting, given the ties; nothing for samples too large for it, or counts that are not whole
    Decision decision;    ///< by the count where there is one
    double p = none;      ///< of the decision
    bool reportHasCriticalValue = false;  ///< whether D_TwoSamples() offers one for these sizes; without it the report accepts D = 0 alone
    bool areCounts = true;                ///< none is negative, not finite or too large, as sums above 2^53 are; else no test

    /** @return whether the object's own report decides differently. */
    bool reportDiffers() const noexcept { return decision.reportDiffers(); }
};

/** @param test after analyse(). @return the exact figures; NaN where there are none, as without a second sample. */
WQ_EXACT_EXPORT KolmogorovSmirnovResult of(const wq_lib::KolmogorovSmirnov2& test) noexcept;

}  // namespace wq_exact

#endif
