#ifndef WQ_STAT_KOLMOGOROV_H
#define WQ_STAT_KOLMOGOROV_H

/// @file
/// Kolmogorov-Smirnov test of two samples.

#include <wq_stat/goodness_fit.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace wq_lib {

/**
 * Two-sample Kolmogorov-Smirnov test of frequencies over the same ordered classes. Each pair is a class, x the frequency of
 * sample 1 and y that of sample 2. Call cumulative() after loading, before analyse().
 */
class WQ_STAT_EXPORT KolmogorovSmirnov2 : public GoodnessOfFit {
public:
    KolmogorovSmirnov2();
    KolmogorovSmirnov2(const KolmogorovSmirnov2&) = default;             ///< a copy
    KolmogorovSmirnov2(KolmogorovSmirnov2&& other) noexcept;             ///< leaves the other as a new one
    KolmogorovSmirnov2& operator=(const KolmogorovSmirnov2&) = default;  ///< a copy
    KolmogorovSmirnov2& operator=(KolmogorovSmirnov2&& other) noexcept;  ///< leaves the other as a new one
    ~KolmogorovSmirnov2() override;

    /**
     * Sets n1 and n2 to the last cumulative frequencies, truncated, and D to the largest difference of the relative cumulative
     * frequencies if that exceeds the D held: D only grows over the life of an object. Without cumulative frequencies
     * n1 and n2 become 0 and D stays.
     * @return true.
     */
    bool analyse() override;

    /** @return D_TwoSamples(significance, n1, n2) >= D. Without a critical value (0, small samples) only D = 0 is accepted. */
    bool acceptH0() override;

    /** Prints the results of the last analyse() to the console. */
    void reportConsole() override;

    /** Empties the cumulative frequencies. */
    void resetCumulativeFrequency() { cumulativeFrequencies.clear(); }

    /** Appends a pair of cumulative frequencies. */
    void addCumulativeFrequency(double c1, double c2) { cumulativeFrequencies.emplace_back(c1, c2); }

    /** Appends the cumulative frequencies of the pairs in the data range; call resetCumulativeFrequency() before a second call. */
    void cumulative();

    /** @return cumulative pair i, which must exist. */
    std::pair<double, double> getCumulativeFrequency(std::size_t i) const { return cumulativeFrequencies[i]; }

    /** Prints the table of cumulative frequencies; the relative ones divide by n1 and n2 of the last analyse(). */
    void listFrequencies();

    double getD() const { return D; }         ///< the largest difference met by any analyse() of this object
    std::size_t getN1() const { return n1; }  ///< size of sample 1, of the last analyse()
    std::size_t getN2() const { return n2; }  ///< size of sample 2, of the last analyse()

protected:
    std::vector<std::pair<double, double>> cumulativeFrequencies;  ///< of both samples, one pair per class
    double D = 0.0;                                                ///< largest difference of the relative cumulative frequencies
    std::size_t n1 = 0;                                            ///< size of sample 1
    std::size_t n2 = 0;                                            ///< size of sample 2

private:
    WQ_STAT_HIDDEN void exchangeMembers(KolmogorovSmirnov2& other) noexcept;  // those of this class alone
};

}  // namespace wq_lib

#endif
