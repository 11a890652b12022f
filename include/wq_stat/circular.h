#ifndef WQ_STAT_CIRCULAR_H
#define WQ_STAT_CIRCULAR_H

/// @file
/// Mean direction and Rayleigh's test.

#include <wq_stat/basic_xy_stat.h>

#include <cstddef>
#include <string>

namespace wq_lib {

/** Unit of the angles given to Circular. */
enum CIRCULAR_DATA : int {
    RADIANS = 0,     ///< as the analysis computes
    DEGREES = 1,     ///< a full circle is 360
    BIN_NUMBERS = 2  ///< multiplied by the bin size
};

/** Result of Circular. */
struct circular_stat {
    std::size_t n = 0;          ///< observations; with grouped data the sum of the truncated frequencies
    std::size_t bins = 0;       ///< bins around the circle, as set
    double bin0 = 0.0;          ///< number of the first bin, as set
    double a = 0.0;             ///< mean angle, radians
    double r = 0.0;             ///< mean resultant length, corrected for grouping when the data are grouped
    double s = 0.0;             ///< angular deviation, sqrt(2(1 - r))
    double sPrime = 0.0;        ///< circular standard deviation, sqrt(-2 ln r)
    std::size_t meanBin = 0;    ///< bin of the mean angle
    double binSize = 0.0;       ///< radians per bin
    double R = 0.0;             ///< Rayleigh's R, n r
    double z = 0.0;             ///< Rayleigh's z, R^2 / n
    double significance = 0.0;  ///< significance level of the analysis
    double p = 0.0;             ///< significance of z, rayleighsProb(z, n)
    bool accepted = false;      ///< acceptH0() of the analysis
};

/**
 * Directions on a circle: mean angle, mean resultant length, and Rayleigh's test of uniformity. Each pair is an angle (or bin
 * number) x and its frequency y; y is 0 when the data are not grouped.
 */
class WQ_STAT_EXPORT Circular : public BasicXyStatistics {
public:
    Circular();
    Circular(const Circular&) = default;             ///< a copy
    Circular(Circular&& other) noexcept;             ///< leaves the other as a new one
    Circular& operator=(const Circular&) = default;  ///< a copy
    Circular& operator=(Circular&& other) noexcept;  ///< leaves the other as a new one
    ~Circular() override;

    /** Resets the paired record and a, r and n. */
    void resetResult() override;

    /**
     * Converts the stored angles to radians in place (a second analysis converts them again), then computes the record.
     * Any frequency above 0 makes the data grouped. An empty sample gives NaN results.
     * @return true.
     */
    bool analyse() override;

    /** @return true when H0, uniformity, is accepted: p >= significance level. */
    bool acceptH0() override;

    /** Prints the results of the last analyse() to the console. */
    void reportConsole() override;

    /** Unit of the stored x; nothing is converted before analyse(). RADIANS in a new object. */
    void setDataType(CIRCULAR_DATA type) { dataType = type; }
    CIRCULAR_DATA getDataType() const { return dataType; }  ///< the unit, as set

    /** Name printed before the number of the mean bin, such as "month". */
    void setBinName(const std::string& name) { binName = name; }
    std::string getBinName() const { return binName; }  ///< the name, as set

    /** Overwritten by analyse(), which lets the data decide. */
    void setGrouped(bool on) { grouped = on; }
    bool isGrouped() const { return grouped; }  ///< whether any frequency was above 0

    /** Number of bins around the circle. */
    void setBins(std::size_t count) { circularResult.bins = count; }
    std::size_t getBins() const { return circularResult.bins; }  ///< the number, as set; 0 in a new object

    /** Number of the first bin. */
    void setBin0(double number) { circularResult.bin0 = number; }
    /** @return the number of the first bin, as set, without its fraction; 0 in a new object. */
    std::size_t getBin0() const;

    double getBinSize() const { return binSize; }                      ///< radians per bin, from computeBinSize()
    std::size_t getMeanBin() const { return circularResult.meanBin; }  ///< bin of the mean angle, of the last analyse()

    /** Sets grouped to whether any frequency in the data range is above 0. */
    void checkGrouped();

    /** Sets the bin size to 2 pi / bins; infinite for 0 bins. */
    void computeBinSize();

    /** Converts the stored degrees or bin numbers to radians in place. */
    void convertToRadians();

    /** Sets Rayleigh's R and z from the number of observations and the mean resultant length. */
    void rayleighsTest(std::size_t n, double r);

    /** @return the result of the last analyse(). */
    const circular_stat& getCircularResult() const { return circularResult; }

protected:
    circular_stat circularResult;      ///< of the last analyse(), with the bins that were set
    bool grouped = false;              ///< whether y holds frequencies
    std::string binName;               ///< what a bin is, such as "month"
    double binSize = 0.0;              ///< radians per bin
    CIRCULAR_DATA dataType = RADIANS;  ///< unit of the stored x

private:
    WQ_STAT_HIDDEN void exchangeMembers(Circular& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
