#ifndef WQ_STAT_GOODNESS_FIT_H
#define WQ_STAT_GOODNESS_FIT_H

/// @file
/// Chi-square and G test of observed against expected frequencies.

#include <wq_stat/basic_xy_stat.h>

namespace wq_lib {

/**
 * Chi-square and G test of observed against expected frequencies. Each pair is a class, x its observed and y its expected
 * frequency; k classes have k - 1 degrees of freedom.
 */
class WQ_STAT_EXPORT GoodnessOfFit : public BasicXyStatistics {
public:
    GoodnessOfFit();
    GoodnessOfFit(const GoodnessOfFit&) = default;             ///< a copy
    GoodnessOfFit(GoodnessOfFit&& other) noexcept;             ///< leaves the other as a new one
    GoodnessOfFit& operator=(const GoodnessOfFit&) = default;  ///< a copy
    GoodnessOfFit& operator=(GoodnessOfFit&& other) noexcept;  ///< leaves the other as a new one
    ~GoodnessOfFit() override;

    /**
     * Computes chi-square, G and the adjusted G. A class with nothing observed makes G NaN (0 ln 0), one with nothing
     * expected makes both infinite or NaN.
     * @return true.
     */
    bool analyse() override;

    /** @return false when chi-square, G or (with Williams' correction) the adjusted G reaches the critical value. NaN never does. */
    bool acceptH0() override;

    /** Prints the results of the last analyse() to the console. The p printed are lower-tail probabilities. */
    void reportConsole() override;

    /** Yates' continuity correction of chi-square, applied to two classes only; off in a new object. */
    void setYatesCorrection(bool on) { yatesCorrection = on; }
    bool isYatesCorrection() const { return yatesCorrection; }  ///< whether it is on

    /** Williams' correction of G; on in a new object. */
    void setWilliamsCorrection(bool on) { williamsCorrection = on; }
    bool isWilliamsCorrection() const { return williamsCorrection; }  ///< whether it is on

    double getX2() const { return X2; }  ///< chi-square of the last analyse()
    double getG() const { return G; }    ///< G of the last analyse(), uncorrected

    /** @return G after Williams' correction; equal to G when that is off. */
    double getGAdjusted() const { return GAdjusted; }

protected:
    double X2 = 0.0;                 ///< chi-square
    double G = 0.0;                  ///< without correction
    double GAdjusted = 0.0;          ///< after Williams' correction
    bool yatesCorrection = false;    ///< of chi-square
    bool williamsCorrection = true;  ///< of G

private:
    WQ_STAT_HIDDEN void exchangeMembers(GoodnessOfFit& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
