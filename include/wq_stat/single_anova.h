#ifndef WQ_STAT_SINGLE_ANOVA_H
#define WQ_STAT_SINGLE_ANOVA_H

/// @file
/// Single classification analysis of variance.

#include <wq_stat/basic_xy_stat.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace wq_lib {

/** One group of observations. */
struct anova_group {
    double id = 0.0;                      ///< the x that the group's pairs share
    std::int64_t n = 0;                   ///< number of observations
    double mean = 0.0;                    ///< sum / n
    double sum = 0.0;                     ///< of the observations
    double sumSquaredObservations = 0.0;  ///< sum of the squared observations
    double sumOfSquares = 0.0;            ///< of deviations from the mean; every further analyse() adds it once more
    double variance = 0.0;                ///< sumOfSquares / (n - 1); 0 for n < 2
    std::vector<double> observations;     ///< in order of arrival
};

/** Predicate: has a group the same id as the key? Exact equality; a NaN id never matches. */
class find_group_id {
public:
    /** @param group the key; only its id counts. */
    explicit find_group_id(anova_group group) : key(std::move(group)) {}
    /** @return whether g has the id of the key. */
    bool operator()(const anova_group& g) const { return g.id == key.id; }

private:
    anova_group key;
};

/** One row of the Anova table. */
struct anova_source {
    std::size_t df = 0;       ///< degrees of freedom
    double ss = 0.0;          ///< sum of squares
    double ms = 0.0;          ///< mean square
    double fs = 0.0;          ///< F of the row
    double reserved1 = 0.0;   ///< not used
    double reserved2 = 0.0;   ///< not used
    double expectedMs = 0.0;  ///< the column "exp MS"
};

/**
 * Single classification (one-way) analysis of variance. Each pair is an observation, x its group, y its value.
 * Calling order: load; createSeries() once; analyse(); then reportConsole(), testResults(), listData, exportToR.
 */
class WQ_STAT_EXPORT SingleAnova : public BasicXyStatistics {
public:
    /** A place in the list of groups; creating a group makes it invalid. */
    using group_iterator = std::vector<anova_group>::iterator;

    SingleAnova();
    SingleAnova(const SingleAnova&) = default;             ///< a copy
    SingleAnova(SingleAnova&& other) noexcept;             ///< leaves the other as a new one
    SingleAnova& operator=(const SingleAnova&) = default;  ///< a copy
    SingleAnova& operator=(SingleAnova&& other) noexcept;  ///< leaves the other as a new one
    ~SingleAnova() override;

    /** resetAnova(). */
    void resetResult() override;

    /**
     * Writes the groups as a tab-separated file for R: a comment line, then one row per group, its position in the list and its
     * observations with 4 decimals.
     * @return false when the file cannot be opened, or when not everything reached it.
     */
    bool exportToR(const std::string& fileName, const std::string& comment) override;

    /**
     * Fills the Anova table. Without groups, or with one, the quotients are NaN or infinite. A group's sumOfSquares is not
     * reset: a second analysis doubles it, and the variance, but changes nothing in the table.
     * @return true.
     */
    bool analyse() override;

    /** Prints the Anova table to the console. */
    void reportConsole() override;

    /** Prints the groups with indices first <= i < last. */
    void listData(std::size_t first, std::size_t last) override;

    /** Prints the details of each group and the sums behind the table. */
    void testResults();

    /** Sets the sums and the table to 0; groups, settings, mean sample sizes and the variance component keep their values. */
    void resetAnova();

    /** @return the first group with the id, by linear search; the end of the list when there is none, as for NaN. */
    group_iterator getGroup(double id);

    /** Appends an empty group, whether or not the id exists already. */
    group_iterator createGroup(double id);

    /**
     * Gathers all pairs (whatever the data range) into groups, in order of the first occurrence of their x, in time proportional to
     * the number of pairs. Ids are the same when they compare equal, so 0 and -0 are, and every NaN makes a group of its own.
     * A second call appends every observation once more.
     * @return false when there are no pairs.
     */
    bool createSeries();

    /** Number of the Anova model, kept for the host; 2 in a new object. */
    void setModel(int number) { model = number; }
    int getModel() const { return model; }  ///< the number, as set

    /** The counter of created groups. */
    void setGroups(std::size_t n) { groupsCreated = n; }
    void increaseGroups() { ++groupsCreated; }                      ///< counts one more
    std::size_t getGroupsCreated() const { return groupsCreated; }  ///< the counter

    /** Whether all groups have the same size; set by analyse(). */
    void setEqual(bool on) { equal = on; }
    bool isEqual() const { return equal; }  ///< as the last analyse() found, or as set

    std::size_t getGroupCount() const { return groupCount; }                     ///< number of groups
    std::int64_t getTotalObservations() const { return totalObservations; }      ///< observations in all groups
    double getGrandTotal() const { return grandTotal; }                          ///< sum of all observations
    double getCorrectionTerm() const { return correctionTerm; }                  ///< squared grand total / number of observations
    double getSumSquaredObservations() const { return sumSquaredObservations; }  ///< sum of all squared observations

    /** @return the sum over groups of squared total / group size. */
    double getSumSquaredGroupTotals() const { return sumSquaredGroupTotals; }
    double getSumSquaredSampleSizes() const { return sumSquaredSampleSizes; }  ///< sum of the squared group sizes
    const anova_source& getTotal() const { return total; }                     ///< table row of the total
    const anova_source& getAmong() const { return among; }                     ///< table row among groups; its fs is the F of the test
    const anova_source& getWithin() const { return within; }                   ///< table row within groups, the error
    double getMeanSampleSize() const { return meanSampleSize; }                ///< observations / groups

    /** @return the weighted mean sample size. */
    double getN0() const { return n0; }

    /** @return the added variance component among groups. */
    double getVarianceComponent() const { return varianceComponent; }

    /** @return the component's share of the total variance, printed as r_i. */
    double getVarianceComponentRatio() const { return varianceComponentRatio; }
    const std::vector<anova_group>& getGroups() const { return groups; }  ///< in order of creation

protected:
    std::size_t groupCount = 0;           ///< groups, as counted by analyse()
    std::int64_t totalObservations = 0;   ///< observations in all groups
    double grandTotal = 0.0;              ///< sum of all observations
    double correctionTerm = 0.0;          ///< squared grand total / number of observations
    double sumSquaredObservations = 0.0;  ///< sum of all squared observations
    double sumSquaredGroupTotals = 0.0;   ///< sum over groups of squared total / group size
    double sumSquaredSampleSizes = 0.0;   ///< sum of the squared group sizes
    anova_source total;                   ///< table row of the total
    anova_source among;                   ///< table row among groups
    anova_source within;                  ///< table row within groups
    double meanSampleSize = 0.0;          ///< observations / groups
    double n0 = 0.0;                      ///< weighted mean sample size
    double varianceComponent = 0.0;       ///< added variance component among groups
    double varianceComponentRatio = 0.0;  ///< its share of the total variance
    std::vector<anova_group> groups;      ///< in order of creation
    std::size_t groupsCreated = 0;        ///< counter of created groups
    bool equal = true;                    ///< whether all groups have the same size
    int model = 2;                        ///< number of the Anova model, for the host

private:
    WQ_STAT_HIDDEN void exchangeMembers(SingleAnova& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
