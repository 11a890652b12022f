#ifndef WQ_EXACT_DIRECTIONS_H
#define WQ_EXACT_DIRECTIONS_H

/// @file
/// Exact figures of directions: Rayleigh's test.

#include <wq_exact/export.h>
#include <wq_exact/test.h>
#include <wq_stat/circular.h>

namespace wq_exact {

/**
 * Rayleigh's test of uniformity. In classes are directions that are grouped, and bin numbers without frequencies that lie whole bins apart,
 * of which p is the same as of their counts. Directions in fewer than three classes have no test: what is opposite cancels, or nothing
 * does. Of directions in classes that can be distributed over the classes in at most 1 000 000 ways p is the sum of the multinomial
 * probabilities of all that are as long, and there is no critical value: the length has few values. Of more p is that of ungrouped
 * directions, which is the limit.
 */
struct DirectionsResult {
    Test rayleigh;       ///< statistic z, without degrees of freedom; of grouped directions without the correction that the report makes
    double n = none;     ///< number of directions
    double classes = 0;  ///< how many classes make up the circle; 0 where each direction stands for itself

    /** @return whether the object's own report decides differently. */
    bool reportDiffers() const noexcept { return rayleigh.reportDiffers(); }
};

/** @param directions after analyse(). @return the figures, of directions in no classes those of rayleighUpperTail(); NaN where there are
 * none. */
WQ_EXACT_EXPORT DirectionsResult of(const wq_lib::Circular& directions) noexcept;

}  // namespace wq_exact

#endif
