// Sorts doubles by scattering them into buckets, on every processor.
#ifndef WQ_STAT_DETAIL_BUCKET_SORT_H
#define WQ_STAT_DETAIL_BUCKET_SORT_H

#include "radix_sort.h"
#include "sample_scan.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace wq_lib::detail {

constexpr std::size_t fewValues = 16;    // sorted by insertion
constexpr std::size_t bucketsPay = 128;  // fewer values than this are sorted by comparisons

/** Moves each value before those that are larger: the fastest way for few values. Equal ones keep their order, NaN goes behind every
 * number. */
inline void insertionSort(double* values, std::size_t n)
{
    for (std::size_t i = 1; i < n; ++i) {
        const double value = values[i];
        if (value != value) continue;
        std::size_t k = i;
        for (; k > 0 && !(values[k - 1] <= value); --k) values[k] = values[k - 1];
        values[k] = value;
    }
}

/** Sorts up to as many numbers as it was made for. It holds all memory that this takes, so that nothing can fail halfway through. */
class BucketSort {
public:
    /** @param mostValues at most 2^32 - 1. */
    explicit BucketSort(std::size_t mostValues);

    /** Sorts numbers in ascending order; 0 and -0, which are equal, in any. */
    void sort(double* values, std::size_t n);

private:
    void sortLarge(double* values, std::size_t n);
    void sortFromTo(double* from, double* to, std::size_t n, Extremes extremes);
    void sortCrowded(double* values, double* scratch, std::size_t n, Extremes extremes);

    std::unique_ptr<double[]> copy;
    std::unique_ptr<std::uint32_t[]> bucketCounts;
    std::unique_ptr<std::uint32_t[]> partCounts;
    std::unique_ptr<RadixCounts> radixCounts;
};

}  // namespace wq_lib::detail

#endif
