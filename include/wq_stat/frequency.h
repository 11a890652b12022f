#ifndef WQ_STAT_FREQUENCY_H
#define WQ_STAT_FREQUENCY_H

/// @file
/// Tables of frequency classes.

#include <wq_stat/basic_stat.h>

#include <cstddef>
#include <string>
#include <vector>

namespace wq_lib {

/** One class of a frequency table. */
struct frequency_class {
    unsigned long long count = 0;  ///< observations in the class
    double rate = 0.0;             ///< count / observations in the analysed range
};

/**
 * Classes of equal width over a sample. Calling order: fill; autoClassWidth(k); initFrequency(getClasses()); buildTable();
 * analyse(); then reportConsole() or exportTable().
 */
class WQ_STAT_EXPORT Frequency : public BasicStatistics {
public:
    Frequency();
    Frequency(const Frequency&) = default;             ///< a copy
    Frequency(Frequency&& other) noexcept;             ///< leaves the other as a new one
    Frequency& operator=(const Frequency&) = default;  ///< a copy
    Frequency& operator=(Frequency&& other) noexcept;  ///< leaves the other as a new one
    ~Frequency() override;

    /** Computes the rates of the table. @return true. */
    bool analyse() override;

    /** Prints the table to the console. */
    void reportConsole() override;

    /** The number of classes; the table itself is made by initFrequency(). */
    void setClasses(std::size_t k) { numberOfClasses = k; }
    std::size_t getClasses() const { return numberOfClasses; }  ///< the number, as set or as autoClassWidth() and initFrequency() made it

    /** Lower limit of the first class. */
    void setStartClass(double lower) { startClass = lower; }
    double getStartClass() const { return startClass; }  ///< lower limit of the first class
    double getClassWidth() const { return classWidth; }  ///< upper minus lower limit of each class; 0 in a new object

    /**
     * Divides the range of the sample into classes.
     * @param k number of classes; 0 means 10.
     * @return false, and changes no class setting, for an empty sample and for fewer than three observations in the range.
     */
    bool autoClassWidth(std::size_t k);

    /** Appends k empty classes to the table and makes k the number of classes; meant to be called once. @return true. */
    bool initFrequency(std::size_t k);

    /**
     * Counts the observations of the range, the last index excluded: after autoClassWidth the largest value is not counted.
     * A value on or above the upper edge, or below the first class, counts in the last class; what falls past the table is not counted.
     */
    void buildTable();

    /**
     * Writes the table as a tab-separated file: class, start, end, mid, observed, rate.
     * @return false when the file cannot be opened, or when not everything reached it.
     */
    bool exportTable(const std::string& fileName, const std::string& comment);

    const std::vector<frequency_class>& getTable() const { return classes; }  ///< the classes, the lowest first

protected:
    std::vector<frequency_class> classes;  ///< the table, the lowest class first
    std::size_t numberOfClasses = 0;       ///< as set; the table may have more after a second initFrequency()
    double startClass = 0.0;               ///< lower limit of the first class
    double classWidth = 0.0;               ///< of every class

private:
    WQ_STAT_HIDDEN void exchangeMembers(Frequency& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
