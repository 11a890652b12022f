#ifndef WQ_STAT_REGRESSION_MULTI_Y_H
#define WQ_STAT_REGRESSION_MULTI_Y_H

/// @file
/// Linear regression with several y for each x.

#include <wq_stat/single_anova.h>

#include <cstddef>
#include <iosfwd>
#include <string>

namespace wq_lib {

/** Results of LinearRegressionMultiY; all 0 when no line was fitted. */
struct regression_multi_y_stat {
    double sumX = 0.0;            ///< sum of n x over the groups
    double sumX2 = 0.0;           ///< sum of n x^2
    double sumXT = 0.0;           ///< sum of x times the group's sum of y
    double correctionX = 0.0;     ///< sumX^2 / N
    double ssX = 0.0;             ///< sum of squares of x
    double spXY = 0.0;            ///< sum of products
    double a = 0.0;               ///< intercept
    double b = 0.0;               ///< regression coefficient
    double explained = 0.0;       ///< sum of squares explained by the line
    double unexplained = 0.0;     ///< sum of squares of the deviations from the line
    double reserved1 = 0.0;       ///< not used
    double seB = 0.0;             ///< standard error of b
    double tB = 0.0;              ///< t of b
    double pT = 0.0;              ///< t_Prob(tB, 2, false)
    DataRange<double> limitsB;    ///< confidence limits of b, from t_PercentPoint((confidence + 1) / 2, 2): far too narrow
    double reserved2 = 0.0;       ///< not used
    double reserved3 = 0.0;       ///< not used
    double reserved4 = 0.0;       ///< not used
    double reserved5 = 0.0;       ///< not used
    DataRange<double> reserved6;  ///< not used
    std::size_t reserved7 = 0;    ///< not used
};

/**
 * Linear regression with several y per x. The groups of the Anova are the distinct x; their sum of squares is split into
 * what the line explains and the deviations from it, which always have 2 degrees of freedom here.
 * Calling order: readSeriesFile (or add, copyFrom); createSeries(); analyse(); reportConsole().
 */
class WQ_STAT_EXPORT LinearRegressionMultiY : public SingleAnova {
public:
    LinearRegressionMultiY();
    LinearRegressionMultiY(const LinearRegressionMultiY&) = default;             ///< a copy
    LinearRegressionMultiY(LinearRegressionMultiY&& other) noexcept;             ///< leaves the other as a new one
    LinearRegressionMultiY& operator=(const LinearRegressionMultiY&) = default;  ///< a copy
    LinearRegressionMultiY& operator=(LinearRegressionMultiY&& other) noexcept;  ///< leaves the other as a new one
    ~LinearRegressionMultiY() override;

    void resetResult() override;

    /**
     * The Anova, then the regression when F of the groups reaches F_Prob(1 - significance, 1, within.df) / among.df;
     * isComputeRegression() tells the decision.
     * @return true.
     */
    bool analyse() override;

    /** Prints the Anova table and the regression to the console. */
    void reportConsole() override;

    /**
     * Replaces the pairs by those of a series file: x, y and a repeat count per line, separated by any run of ':', ';' and '|'.
     * A line without a count repeats the previous line's, which is 0 at first; without a y it is 0. Empty lines, lines of delimiters
     * only and lines with '#' anywhere are skipped. A line longer than 254 characters is cut there, and is the last one read.
     * Sample size and data range follow from the pairs added.
     * @return false when the file cannot be opened (a directory cannot), with the pairs untouched, or when reading it fails.
     * @throws std::invalid_argument or std::out_of_range for a field that is no number or too large; earlier lines stay.
     */
    bool readSeriesFile(const std::string& fileName);

    /**
     * The same from a stream, from where it stands to its end.
     * @return false when the stream had failed before, with the pairs untouched, or when reading it fails.
     * @throws what readSeriesFile() throws, and what the stream is set to throw at its end or when reading fails.
     */
    bool readSeries(std::istream& stream);

    /** Overwritten by analyse() with its own decision. */
    void setComputeRegression(bool on) { computeRegression = on; }
    bool isComputeRegression() const { return computeRegression; }  ///< whether a line was fitted

    /** Sets the record to 0, but for three members that are not used. */
    void resetRegression();

    /** @return value -/+ t se. */
    DataRange<double> getConfidenceLimits(double value, double t, double se) const;

    /** @return the record of the last analyse(). */
    const regression_multi_y_stat& getRegressionResult() const { return regressionResult; }

    /** @return the table row of the regression. */
    const anova_source& getRegression() const { return regression; }

    /** @return the table row of the deviations from the line. */
    const anova_source& getDeviations() const { return deviations; }

protected:
    regression_multi_y_stat regressionResult;  ///< of the last analyse()
    anova_source regression;                   ///< table row of the regression
    anova_source deviations;                   ///< table row of the deviations from the line
    bool computeRegression = true;             ///< whether a line is fitted

private:
    WQ_STAT_HIDDEN bool readLines(detail::DataLines& lines);
    WQ_STAT_HIDDEN void exchangeMembers(LinearRegressionMultiY& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
