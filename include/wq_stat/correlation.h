#ifndef WQ_STAT_CORRELATION_H
#define WQ_STAT_CORRELATION_H

/// @file
/// Correlation coefficient with its t test and F test.

#include <wq_stat/basic_xy_stat.h>

#include <cstddef>

namespace wq_lib {

/** Result of Correlation. */
struct correlation_stat {
    double r = 0.0;                      ///< correlation coefficient, -1 ... 1
    double t = 0.0;                      ///< Student's t of the last t test, n - 2 degrees of freedom
    double tSignificance = 0.0;          ///< one minus the two-sided t_Prob; negative for r < 0, and above 1 for some odd n
    double F = 0.0;                      ///< (1 + |r|) / (1 - |r|)
    double FSignificance = 0.0;          ///< upper-tail probability of F, half the two-sided one of r
    DataRange<double> confidenceLimits;  ///< in Fisher's z scale, not in r; (0, 0) when n <= 50
};

/** Product-moment correlation coefficient with a t test and an F test of "no correlation (rho=0)". */
class WQ_STAT_EXPORT Correlation : public BasicXyStatistics {
public:
    Correlation();
    Correlation(const Correlation&) = default;             ///< a copy
    Correlation(Correlation&& other) noexcept;             ///< leaves the other as a new one
    Correlation& operator=(const Correlation&) = default;  ///< a copy
    Correlation& operator=(Correlation&& other) noexcept;  ///< leaves the other as a new one
    ~Correlation() override;

    /** Resets the paired record and r; the other results keep their values until the next analyse(). */
    void resetResult() override;

    /** @return false, and computes nothing, for fewer than two pairs. */
    bool analyse() override;

    /** Prints the results of the last analyse() to the console. */
    void reportConsole() override;

    /** t test of rho = 0; stores t. @return 1 - t_Prob(t, n - 2, false). */
    double significance_t0(double r, std::size_t n);

    /**
     * t test of a given rho; stores t.
     * @return t_Prob(t, n - 2, false), not subtracted from 1; for n < 10 it is 0, and t keeps its value.
     */
    double significance_t1(double r, double rho, std::size_t n);

    /** F test of rho = 0; stores F. @return the upper-tail probability of F with n - 2 and n - 2 degrees of freedom. */
    double significance_F(double r, std::size_t n);

    using BasicStatistics::confidenceInterval;

    /** @return the confidence limits of r in Fisher's z scale; z_to_r takes them back. (0, 0) for n <= 50. */
    DataRange<double> confidenceInterval(double r, std::size_t n) const;

    /** @return t for a given rho, with the corrections for small samples. */
    double t_small_n(double r, double rho, std::size_t n) const;

    /** @return t for a given rho, large samples. */
    double t_big_n(double r, double rho, std::size_t n) const;

    /**
     * Decision of the t test, significance level > tSignificance. That stored value is one minus a probability, so H0 is accepted
     * only where t is close to 0, and for every negative correlation, however strong.
     */
    bool acceptH0_t() const;

    /** Decision of the F test, FSignificance >= significance level. */
    bool acceptH0_F() const;

    /** @return the result of the last analyse(). */
    const correlation_stat& getCorrelationResult() const { return correlationResult; }

protected:
    correlation_stat correlationResult;  ///< of the last analyse() and of the tests called after it

private:
    WQ_STAT_HIDDEN void exchangeMembers(Correlation& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
