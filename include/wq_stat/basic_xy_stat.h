#ifndef WQ_STAT_BASIC_XY_STAT_H
#define WQ_STAT_BASIC_XY_STAT_H

/// @file
/// Descriptive statistics of paired samples.

#include <wq_stat/basic_stat.h>

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace wq_lib {

/** One paired observation. */
struct data_pair {
    double x = 0.0;  ///< the independent or first variable
    double y = 0.0;  ///< the dependent or second variable
};

/** Orders pairs by x. */
WQ_STAT_EXPORT bool keyX(data_pair a, data_pair b);

/** Orders pairs by y. */
WQ_STAT_EXPORT bool keyY(data_pair a, data_pair b);

/**
 * Results of a paired sample. Of x and y only n (of x alone), min, max, sum, mean, sumOfSquares, variance and
 * sampleVariance are filled.
 */
struct xy_stat {
    basic_stat x;              ///< x.n is the number of pairs
    basic_stat y;              ///< y.n stays 0: the pairs are counted in x.n
    double sumProducts = 0.0;  ///< sum of products of the deviations from the means
    double covariance = 0.0;   ///< sumProducts / (n - 1); survives resetResult()
};

/**
 * A sample of pairs (x, y): descriptive statistics of both variables and their covariation. The base of all paired analyses.
 * The univariate sample of BasicStatistics stays empty; through a BasicStatistics reference listData is the univariate
 * one, which is not virtual.
 */
class WQ_STAT_EXPORT BasicXyStatistics : public BasicStatistics {
public:
    BasicXyStatistics();
    BasicXyStatistics(const BasicXyStatistics&) = default;             ///< a copy
    BasicXyStatistics(BasicXyStatistics&& other) noexcept;             ///< leaves the other as a new one
    BasicXyStatistics& operator=(const BasicXyStatistics&) = default;  ///< a copy
    BasicXyStatistics& operator=(BasicXyStatistics&& other) noexcept;  ///< leaves the other as a new one
    ~BasicXyStatistics() override;

    /** Reserves room for n pairs. */
    void initDataList(std::size_t n) override;

    /** Resets the records of x and y and the sum of products. The covariance stays until the next analyse() rewrites it. */
    void resetResult() override;

    using BasicStatistics::readDataFile;

    /**
     * Reads the file named by setDataFile and adds its pairs to those already held.
     * One pair per line, x and y separated by ':', ';' or '|'; blanks separate nothing. Without a second field y is 0; further
     * fields are ignored; a line of delimiters only is skipped. x is read as by atof (0 when it is no number), y as by std::stod, both in
     * the "C" locale. Empty lines are skipped; a line with '#' anywhere replaces the comment, without its '#'
     * characters; "<<" at the start of a line ends the data. A line longer than 254 characters is cut there, and is the last one read.
     * @return false when the file cannot be opened (a directory cannot), or when reading it fails.
     * @throws std::invalid_argument or std::out_of_range for a y that is no number or too large; earlier pairs stay.
     */
    bool readDataFile() override;

    /**
     * Writes the analysed range as a tab-separated file for R: a comment line, a header line, x and y with 6 decimals.
     * @return false when the file cannot be opened, or when not everything reached it.
     */
    bool exportToR(const std::string& fileName, const std::string& comment) override;

    /**
     * Geometric mean of y of the pairs with indices start ... end (inclusive). NaN values are skipped; zeros count, but add
     * nothing to the sum of logarithms.
     * @return the mean; 0 after setNegative(true) when a y is negative; NaN when there is no value.
     */
    double geometricMean(std::size_t start, std::size_t end) override;

    /**
     * Fills the record from the pairs of the range, each read through getDataPair.
     * @return false, with the record reset, for fewer than two pairs in the range.
     */
    bool analyse() override;

    /** Prints the results of the last analyse() to the console. */
    void reportConsole() override;

    /** @return pair i, which must exist. Analyses read every pair through it. */
    virtual data_pair getDataPair(std::size_t i);

    /** Prints the pairs with indices start ... end (inclusive). */
    virtual void listData(std::size_t start, std::size_t end);

    /** Appends a pair and sets dataEnd to its index. @return true. */
    bool add(double x, double y);

    /**
     * Adds the pairs that a stream holds from where it stands, by the rules of readDataFile(). It is read in blocks, and so beyond a line
     * that ends the data.
     * @return false when the stream had failed before, or when reading it fails.
     * @throws what readDataFile() throws, and what the stream is set to throw at its end or when reading fails.
     */
    bool readData(std::istream& stream);

    /** Appends the pairs. @return the number of pairs now held. */
    std::size_t copyFrom(std::vector<data_pair> values);

    /** Overwrites the x of pair i, which must exist. */
    void setDataPairX(std::size_t i, double x) { pairs[i].x = x; }

    /** @return the result of the last analyse(). */
    const xy_stat& getXyResult() const { return xyResult; }

protected:
    std::vector<data_pair> pairs;  ///< in order of arrival
    xy_stat xyResult;              ///< of the last analyse()

private:
    WQ_STAT_HIDDEN bool readLines(detail::DataLines& lines);
    WQ_STAT_HIDDEN void exchangeMembers(BasicXyStatistics& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
