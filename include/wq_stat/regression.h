#ifndef WQ_STAT_REGRESSION_H
#define WQ_STAT_REGRESSION_H

/// @file
/// Linear, logarithmic, exponential and power regression.

#include <wq_stat/basic_xy_stat.h>

#include <cstddef>
#include <string>

namespace wq_lib {

/** Results of a regression. In the transformed models all but a are on the scale of the logarithms. */
struct regression_stat {
    double a = 0.0;                 ///< constant
    double b = 0.0;                 ///< regression coefficient
    double explained = 0.0;         ///< explained sum of squares
    double unexplained = 0.0;       ///< unexplained sum of squares
    double residualVariance = 0.0;  ///< unexplained / (n - 2)
    double seB = 0.0;               ///< standard error of b
    double tB = 0.0;                ///< t of b, n - 2 degrees of freedom
    double pB = 0.0;                ///< t_Prob(tB, n - 2, false)
    DataRange<double> limitsB;      ///< confidence limits of b
    double meanX = 0.0;             ///< mean of the x used
    double meanY = 0.0;             ///< mean of the y used
    double seY = 0.0;               ///< standard error of Y at the mean of X
    DataRange<double> limitsY;      ///< confidence limits of Y at the mean of X
    std::size_t n = 0;              ///< pairs used
};

/**
 * Least squares fit of a straight line y = a + b x. A concrete class prepares the paired statistics in analyseDataPair()
 * and prints its own report.
 */
class WQ_STAT_EXPORT Regression : public BasicXyStatistics {
public:
    Regression();
    Regression(const Regression&) = default;             ///< a copy
    Regression(Regression&& other) noexcept;             ///< leaves the other as a new one
    Regression& operator=(const Regression&) = default;  ///< a copy
    Regression& operator=(Regression&& other) noexcept;  ///< leaves the other as a new one
    ~Regression() override;

    /** Resets the paired record and the regression record. */
    void resetResult() override;

    /**
     * Calls analyseDataPair(), then fits the line and fills the record. With two pairs the residual variance and all that
     * rests on it are NaN or infinite, as for x that are all equal.
     * @return false when analyseDataPair() does.
     */
    bool analyse() override;

    /** Prints nothing; the concrete classes print their reports. */
    void reportConsole() override;

    /** Fills the paired statistics that the line is fitted to; here it does nothing. @return true. */
    virtual bool analyseDataPair();

    /** Sets the regression record to 0, meanX and meanY excepted, which only a fit rewrites. */
    void resetRegression();

    /** @return value -/+ t se. */
    DataRange<double> getConfidenceLimits(double value, double t, double se) const;

    /** @return the result lines that the reports of all models share. The two Y labels stand against each other's value. */
    std::string writeRegressionResult();

    /** @return the result of the last analyse(). */
    const regression_stat& getRegressionResult() const { return regressionResult; }

protected:
    regression_stat regressionResult;  ///< of the last analyse()

private:
    WQ_STAT_HIDDEN void exchangeMembers(Regression& other) noexcept;  // those of this class alone
};

/** y = a + b x. */
class WQ_STAT_EXPORT LinearRegression : public Regression {
public:
    LinearRegression();
    LinearRegression(const LinearRegression&) = default;                       ///< a copy
    LinearRegression(LinearRegression&& other) noexcept = default;             ///< leaves the other as a new one
    LinearRegression& operator=(const LinearRegression&) = default;            ///< a copy
    LinearRegression& operator=(LinearRegression&& other) noexcept = default;  ///< leaves the other as a new one
    ~LinearRegression() override;

    void resetResult() override;

    /** BasicXyStatistics::analyse(). */
    bool analyseDataPair() override;

    /** Prints the results of the last analyse() to the console. */
    void reportConsole() override;
};

/**
 * y = a + b ln x. Pairs with x <= 0 are left out of the count and the means, but enter the sums of squares as the logarithm
 * they have (minus infinity or NaN), which shows in b. There is no minimum number of pairs.
 */
class WQ_STAT_EXPORT LogarithmicRegression : public Regression {
public:
    LogarithmicRegression();
    LogarithmicRegression(const LogarithmicRegression&) = default;                       ///< a copy
    LogarithmicRegression(LogarithmicRegression&& other) noexcept = default;             ///< leaves the other as a new one
    LogarithmicRegression& operator=(const LogarithmicRegression&) = default;            ///< a copy
    LogarithmicRegression& operator=(LogarithmicRegression&& other) noexcept = default;  ///< leaves the other as a new one
    ~LogarithmicRegression() override;

    bool analyseDataPair() override;

    /** Prints the results of the last analyse() to the console. */
    void reportConsole() override;
};

/** y = a e^(b x). As LogarithmicRegression, for pairs with y <= 0 or NaN. Only a is taken back from the scale of logarithms. */
class WQ_STAT_EXPORT ExponentialRegression : public Regression {
public:
    ExponentialRegression();
    ExponentialRegression(const ExponentialRegression&) = default;                       ///< a copy
    ExponentialRegression(ExponentialRegression&& other) noexcept = default;             ///< leaves the other as a new one
    ExponentialRegression& operator=(const ExponentialRegression&) = default;            ///< a copy
    ExponentialRegression& operator=(ExponentialRegression&& other) noexcept = default;  ///< leaves the other as a new one
    ~ExponentialRegression() override;

    bool analyse() override;
    bool analyseDataPair() override;

    /** Prints the results of the last analyse() to the console. */
    void reportConsole() override;
};

/** y = a x^b. As LogarithmicRegression, for pairs with x <= 0, or with y <= 0 or NaN. Only a is taken back from the scale of logarithms. */
class WQ_STAT_EXPORT PowerRegression : public Regression {
public:
    PowerRegression();
    PowerRegression(const PowerRegression&) = default;                       ///< a copy
    PowerRegression(PowerRegression&& other) noexcept = default;             ///< leaves the other as a new one
    PowerRegression& operator=(const PowerRegression&) = default;            ///< a copy
    PowerRegression& operator=(PowerRegression&& other) noexcept = default;  ///< leaves the other as a new one
    ~PowerRegression() override;

    bool analyse() override;
    bool analyseDataPair() override;

    /** Prints the results of the last analyse() to the console. */
    void reportConsole() override;
};

}  // namespace wq_lib

#endif
