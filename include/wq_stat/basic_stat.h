#ifndef WQ_STAT_BASIC_STAT_H
#define WQ_STAT_BASIC_STAT_H

/// @file
/// Descriptive statistics of one sample, the confidence interval and the t test of its mean.

#include <wq_stat/export.h>

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace wq_lib {

namespace detail {
class DataLines;
}

/** A pair of limits. */
template <typename T>
class DataRange {
public:
    void setLower(T value) { lower = value; }  ///< the lower limit alone
    void setUpper(T value) { upper = value; }  ///< the upper limit alone
    /** Both limits; nothing is checked. */
    void setRange(T lowerValue, T upperValue)
    {
        lower = lowerValue;
        upper = upperValue;
    }
    T getLower() const { return lower; }  ///< the lower limit
    T getUpper() const { return upper; }  ///< the upper limit

protected:
    T lower = T();  ///< 0 in a new object
    T upper = T();  ///< 0 in a new object
};

/** Results of one univariate sample. BasicStatistics::resetSet gives the state before an analysis. */
struct basic_stat {
    std::size_t n = 0;                   ///< observations in the analysed range
    double reserved1 = 0.0;              ///< not used
    double min = 0.0;                    ///< smallest value; the largest finite double after a reset
    double max = 0.0;                    ///< largest value; the smallest positive normal double (2.2e-308) after a reset, and so for a
                                         ///< sample without a value above it, all negative ones included
    double mean = 0.0;                   ///< arithmetic mean
    double geoMean = 0.0;                ///< geometric mean of the positive values; NaN when there is none
    double harmMean = 0.0;               ///< harmonic mean of the values other than 0
    double median = 0.0;                 ///< middle value, or the mean of the two middle values
    double quartile1 = 0.0;              ///< sorted value at index floor(n/4) of the range, never interpolated
    double quartile3 = 0.0;              ///< sorted value at index floor(3n/4) of the range, never interpolated
    double reserved2 = 0.0;              ///< not used
    double sum = 0.0;                    ///< sum of the values
    double variance = 0.0;               ///< sumOfSquares / n
    double sampleVariance = 0.0;         ///< sumOfSquares / (n - 1)
    double stdev = 0.0;                  ///< square root of variance; NaN when that is 0
    double sampleStdev = 0.0;            ///< square root of sampleVariance; NaN when that is 0
    double stdError = 0.0;               ///< standard error of the mean; NaN when the variance is 0
    double cv = 0.0;                     ///< coefficient of variation, a ratio; 0 when the variance is 0
    double sumOfSquares = 0.0;           ///< sum of squared deviations from the mean
    double significance = 0.0;           ///< significance level of the analysis
    DataRange<double> confidenceLimits;  ///< of the mean
};

/**
 * One sample of numbers: descriptive statistics, a confidence interval of the mean, Student's t test of the mean.
 * The root of all analysis classes; a host drives each of them through the virtual operations declared here:
 * fill (add, copyFrom, readDataFile), set options, analyse(), then acceptH0(), reportConsole(), listData, exportToR.
 *
 * Setters and index accessors check nothing. analyse() sorts the sample in place. setComment appends.
 * Different objects may be used in different threads at the same time, one object by one thread at a time.
 *
 * Objects of every analysis class can be copied, moved and swapped (std::swap). A move hands the observations over, without a copy and
 * without an exception, and leaves the other object as a new one of its class: empty, with the settings of a new object. Where memory is
 * short just then, that one lacks the names of its columns or its text of H0. Of an object of a host's own class this goes for what it
 * inherits.
 */
class WQ_STAT_EXPORT BasicStatistics {
public:
    BasicStatistics();
    BasicStatistics(const BasicStatistics&) = default;             ///< a copy
    BasicStatistics(BasicStatistics&& other) noexcept;             ///< leaves the other as a new one
    BasicStatistics& operator=(const BasicStatistics&) = default;  ///< a copy
    BasicStatistics& operator=(BasicStatistics&& other) noexcept;  ///< leaves the other as a new one
    virtual ~BasicStatistics();

    /** Reserves room for n observations. */
    virtual void initDataList(std::size_t n);

    /** Puts the result record into its state before an analysis. */
    virtual void resetResult();

    /**
     * Reads the file named by setDataFile and adds its observations to those already held.
     * One number per line; empty lines are skipped; a line with '#' anywhere is a comment, appended to the object's comment
     * without its '#' characters; a line that begins with "<<" ends the data. A line longer than 254 characters is cut there, and
     * is the last one read. Numbers are read as std::stod reads them in the "C" locale; the rest of a line is ignored.
     * @return false when the file cannot be opened (a directory cannot), or when reading it fails.
     * @throws std::invalid_argument for a line without a number, std::out_of_range for a number that a double cannot hold;
     *         observations of earlier lines stay.
     */
    virtual bool readDataFile();

    /** setDataFile(name), then readDataFile() of the object's own class. */
    virtual bool readDataFile(const std::string& name);

    /**
     * Writes the analysed range as a tab-separated file for R: a comment line, a header line, one value per line with 12
     * decimals. Stops at the last stored observation.
     * @return false when the file cannot be opened, or when not everything reached it.
     */
    virtual bool exportToR(const std::string& fileName, const std::string& comment);

    /**
     * Geometric mean of the observations with indices from ... to (inclusive), in stored order. NaN values are skipped; zeros
     * count, but add nothing to the sum of logarithms, unlike in analyse(), which leaves them out.
     * @return the mean; 0 after setNegative(true) when a value is negative; NaN when there is no value.
     */
    virtual double geometricMean(std::size_t from, std::size_t to);

    /**
     * Sorts the sample, trims it by head and tail, and fills the result record.
     * @return false, with the record reset, when fewer than three observations lie in the range. A head and a tail that cross
     *         over leave an empty range, whose length wraps: then it is true, with n = 0 and results that are NaN.
     */
    virtual bool analyse();

    /**
     * t test of the mean with the critical value t_PercentPoint(significance / 2, n - 1): two-sided at half the significance level,
     * while confidenceInterval and the report use the undivided level, so that they may disagree near the limit.
     * @return true when H0, mean = nullHypothesis, is accepted; false also when t is NaN.
     */
    virtual bool acceptH0();

    /** Prints the results of the last analyse() to the console. */
    virtual void reportConsole();

    /**
     * Writes what reportConsole() of the object's own class prints to a stream instead. Flags, width and locale of the stream have no
     * influence. Listings and tables go to a stream by DisplayTo (wq_udf/console.h), as this does.
     * @return the stream, whose state tells whether everything was written.
     */
    std::ostream& report(std::ostream& stream);

    /** Prints the observations with indices from ... to (inclusive), in stored order; the message "No data" for an empty sample. */
    void listData(std::size_t from, std::size_t to);

    // ---- settings; nothing is checked

    /** Fraction of the sorted sample to leave out at the low end; the number of values is rounded up. */
    void setHead(double fraction) { head = fraction; }
    double getHead() const { return head; }  ///< what setHead set; 0 in a new object

    /** Fraction of the sorted sample to leave out at the high end; the number of values is rounded down. */
    void setTail(double fraction) { tail = fraction; }
    double getTail() const { return tail; }  ///< what setTail set; 0 in a new object

    /** The number of observations held; filling the sample counts it. */
    void setSampleSize(std::size_t n) { sampleSize = n; }
    std::size_t getSampleSize() const { return sampleSize; }  ///< observations held, trimmed ones included
    /** Index of the first observation of the analysed range; analyse() sets it anew. */
    void setDataStart(std::size_t index) { dataStart = index; }
    std::size_t getDataStart() const { return dataStart; }  ///< the first index
    /** Index of the last observation of the analysed range, included; analyse() sets it anew. */
    void setDataEnd(std::size_t index) { dataEnd = index; }
    std::size_t getDataEnd() const { return dataEnd; }  ///< the last index

    /** Significance level of intervals and tests, a fraction; 0.05 in a new object. */
    void setSignificance(double level) { significance = level; }
    double getSignificance() const { return significance; }      ///< the level, as set
    double getConfidence() const { return 1.0 - significance; }  ///< one minus the level

    /** The mean under H0. */
    void setNullHypothesis(double mean) { nullHypothesis = mean; }
    double getNullHypothesis() const { return nullHypothesis; }  ///< the mean under H0; 0 in a new object

    /** Tells that a negative value was met; set by analyse() and geometricMean(), cleared only here. */
    void setNegative(bool on) { negative = on; }
    bool isNegative() const { return negative; }  ///< whether one was met
    /** Whether the sample counts as sorted, so that quantile() need not sort it. */
    void setSorted(bool on) { sorted = on; }
    bool isSorted() const { return sorted; }  ///< as set by sortData() and cleared by add()

    /** Name of the file that readDataFile() reads. */
    void setDataFile(const std::string& name) { dataFile = name; }
    std::string getDataFile() const { return dataFile; }  ///< the name, as set
    /** H0 in words, as the reports of the tests print it; each class sets its own. */
    void setHypothesisInfo(const std::string& text) { hypothesisInfo = text; }
    std::string getHypothesisInfo() const { return hypothesisInfo; }  ///< the text, as set

    /** Appends the text to the comment that reports print. */
    void setComment(const std::string& text) { comment += text; }
    std::string getComment() const { return comment; }  ///< all texts appended so far

    /** Appends a column name; a new object has those its listing and export use. */
    void addColumnName(const std::string& name) { columnNames.push_back(name); }
    void clearColumnNames() { columnNames.clear(); }  ///< removes all of them

    /** @return column name i, which must exist. */
    std::string getColumnName(int i) const { return columnNames[static_cast<std::size_t>(i)]; }

    /** @return observation i, which must exist. */
    double getDataPoint(std::size_t i) const { return data[i]; }

    // ---- filling the sample

    /** Appends an observation and sets dataEnd one past the last index, which analyse() and exportToR correct. @return true. */
    bool add(double x);

    /**
     * Adds the observations that a stream holds from where it stands, by the rules of readDataFile(). It is read in blocks, and so beyond
     * a line that ends the data. One sample: the paired analyses have their own, which is not virtual either.
     * @return false when the stream had failed before, or when reading it fails.
     * @throws what readDataFile() throws, and what the stream is set to throw at its end or when reading fails.
     */
    bool readData(std::istream& stream);

    /** Appends the values. @return the number of observations now held. */
    std::size_t copyFrom(std::vector<double> values);

    // ---- statistics, each usable on its own

    /** @return sqrt(variance / n); NaN for variance <= 0. */
    double standardError(double variance, std::size_t n) const;

    /** @return sqrt(variance); NaN for variance <= 0. */
    double standardDeviation(double variance) const;

    /** @return stdev / mean, a ratio, not a percentage; 0 unless stdev > 0. n is not used. */
    double coefficientOfVariation(double stdev, double mean, std::size_t n) const;

    /** @return mean -/+ t_PercentPoint(significance, n - 1) standard errors. */
    DataRange<double> confidenceInterval(double mean, double variance, std::size_t n) const;

    /** @return Student's t of a mean, (mean - mu0) / standardError(variance, n). */
    double StudentOfMeans(double mean, double variance, double mu0, std::size_t n) const;

    /**
     * The p-th of q quantiles of the analysed range; sorts when necessary. Not interpolated, but for the median of an even
     * number of values. Uses the count of the last analysis.
     * @return the value at index floor(p n / q) of the range; NaN when that lies outside the sample, and for q = 0.
     */
    double quantile(double p, std::size_t q);

    /** @return quantile(1, 2). */
    double median();

    /** @return quantile(p, 4). */
    double quartile(double p);

    /** Sorts the sample in ascending order, NaN values last. */
    void sortData();

    /** Sets dataStart and dataEnd (inclusive) from the sample size, head and tail. */
    void setDataRange();

    /** Puts a record into its state before an analysis; significance and reserved1 keep their values. */
    void resetSet(basic_stat& record) const;

    /** @return the result of the last analyse(). */
    const basic_stat& getResult() const { return result; }

protected:
    basic_stat result;                     ///< of the last analyse()
    std::vector<double> data;              ///< the observations; sorted in place by analyse()
    std::string dataFile;                  ///< name of the file that readDataFile() reads
    double head = 0.0;                     ///< fraction left out at the low end
    double tail = 0.0;                     ///< fraction left out at the high end
    std::size_t dataStart = 0;             ///< index of the first observation of the analysed range
    std::size_t dataEnd = 0;               ///< index of the last one, included
    std::size_t sampleSize = 0;            ///< observations held, trimmed ones included
    double significance = 0.05;            ///< significance level, a fraction
    double nullHypothesis = 0.0;           ///< the mean under H0
    bool sorted = false;                   ///< whether the observations are in ascending order
    std::vector<std::string> columnNames;  ///< of listings and exports, from left to right
    std::string hypothesisInfo;            ///< H0 in words
    std::string comment;                   ///< printed below the title of a report
    bool negative = false;                 ///< whether a negative value was met

private:
    WQ_STAT_HIDDEN bool readLines(detail::DataLines& lines);
    WQ_STAT_HIDDEN void exchangeMembers(BasicStatistics& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
