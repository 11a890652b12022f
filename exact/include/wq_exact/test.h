#ifndef WQ_EXACT_TEST_H
#define WQ_EXACT_TEST_H

/// @file
/// What the results of all analyses are made of: decisions, tests and limits.

#include <limits>
#include <optional>

namespace wq_exact {

/** What a result holds where there is none. */
constexpr double none = std::numeric_limits<double>::quiet_NaN();

/** A pair of confidence limits. */
struct Limits {
    double lower = none;  ///< NaN where there are no limits
    double upper = none;  ///< NaN where there are no limits
};

/**
 * Whether H0 is accepted, exactly and as the report of the analysed object has it. Where the report prints acceptH0(), the object is asked
 * by it, so that a class of the host's own that overrides it has the decision that its report prints; such a function has to leave the
 * object as it is.
 */
struct Decision {
    std::optional<bool> accepted;          ///< by the exact figures; nothing where they allow no decision
    std::optional<bool> acceptedByReport;  ///< by the object's own report; nothing where it states none on this H0, or throws

    /** @return whether both decide, and not alike. */
    bool reportDiffers() const noexcept { return accepted && acceptedByReport && *accepted != *acceptedByReport; }

    /** @return whether the report decides although there is nothing to decide by. */
    bool reportLacksGround() const noexcept { return acceptedByReport && !accepted; }
};

/** A test of one statistic. H0 is accepted unless p lies below alpha; a p that is NaN decides nothing, nor does an alpha outside 0 ... 1,
 * ends excluded. */
struct Test : Decision {
    double statistic = none;      ///< its value
    double df1 = none;            ///< degrees of freedom; of F those of the numerator; NaN where the distribution has none
    double df2 = none;            ///< degrees of freedom of the denominator of F, else NaN
    double alpha = none;          ///< significance level
    double p = none;              ///< exact probability, under H0, of a statistic as extreme as this one
    double criticalValue = none;  ///< where the test decides, at this level
};

}  // namespace wq_exact

#endif
