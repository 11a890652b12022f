#ifndef WQ_EXACT_DIRECTIONS_H
#define WQ_EXACT_DIRECTIONS_H

/// @file
/// Exact figures of directions: Rayleigh's test.

#include <wq_exact/export.h>
#include <wq_exact/test.h>
#include <wq_stat/circular.h>

namespace wq_exact {

/**
 * Rayleigh's test of uniformity. Directions that are grouped in fewer than three classes have none: what is opposite cancels, or nothing does.
 */
struct DirectionsResult {
    Test rayleigh;       ///< statistic z, without degrees of freedom; of grouped directions without the correction that the report makes
    double n = none;     ///< number of directions
    double classes = 0;  ///< how many classes make up the circle; 0 where the directions are not grouped

    /** @return whether the object's own report decides differently. */
    bool reportDiffers() const noexcept { return rayleigh.reportDiffers(); }
};

/** @param directions after analyse(). @return the figures of rayleighUpperTail(); NaN where there are none. */
WQ_EXACT_EXPORT DirectionsResult of(const wq_lib::Circular& directions) noexcept;

}  // namespace wq_exact

#endif
