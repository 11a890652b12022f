#include "bucket_sort.h"

#include "prefetch.h"
#include "to_integer.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace wq_lib::detail {

namespace {

static_assert(FLT_EVAL_METHOD == 0,
              "a value must go to the bucket it was counted for: compile for arithmetic in double (x86: -mfpmath=sse)");

constexpr std::size_t cachedValues = 16384;  // with their copy and counts they stay in the second-level cache
constexpr std::size_t radixPays = 512;       // fewer values than this are not worth its counts
constexpr std::size_t mostParts = 2048;

/**
 * A linear map of values to buckets 0 ... count - 1. A larger value never goes to a lower bucket, since a difference and a
 * product with a positive number stay in order when rounded.
 */
class LinearMap {
public:
    LinearMap(Extremes extremes, std::size_t count)
        : smallest(extremes.smallest),
          scale(static_cast<double>(count - 1) / (extremes.largest - extremes.smallest))
    {
    }

    /** False for infinite values, for those too far apart or too close together to scale, and for values that are all equal. */
    bool isUsable() const { return std::isfinite(scale) && scale > 0.0; }

    std::size_t operator()(double value) const { return toSmallIndex((value - smallest) * scale); }

private:
    double smallest;
    double scale;
};

}  // namespace

BucketSort::BucketSort(std::size_t mostValues)
    : copy(new double[mostValues]),
      bucketCounts(new std::uint32_t[std::min(mostValues, cachedValues)]),
      partCounts(mostValues > cachedValues ? new std::uint32_t[mostParts] : nullptr),
      radixCounts(mostValues >= radixPays ? new RadixCounts : nullptr)
{
}

void BucketSort::sort(double* values, std::size_t n)
{
    if (n < bucketsPay) return std::sort(values, values + n);
    if (n > cachedValues) return sortLarge(values, n);
    std::copy(values, values + n, copy.get());
    sortFromTo(copy.get(), values, n, extremesOf(values, n));
}

/** One pass scatters the values into parts that fit the cache, each of which is sorted back to its place. */
void BucketSort::sortLarge(double* values, std::size_t n)
{
    double* const scratch = copy.get();
    std::uint32_t* const counts = partCounts.get();
    const std::size_t parts = std::min(mostParts, n / (cachedValues / 4));
    const LinearMap part(extremesOf(values, n), parts);
    if (!part.isUsable()) return radixSort(values, scratch, n, *radixCounts);
    std::fill(counts, counts + parts, 0);
    for (std::size_t i = 0; i < n; ++i) {
        prefetch(values + i, values + n);
        ++counts[part(values[i])];
    }
    if (countsToStarts(counts, parts) > n / 4)  // heavy tails
        return radixSort(values, scratch, n, *radixCounts);
    for (std::size_t i = 0; i < n; ++i) {
        prefetch(values + i, values + n);
        scratch[counts[part(values[i])]++] = values[i];
    }
    std::size_t begin = 0;
    for (std::size_t i = 0; i < parts; ++i) {  // counts holds the end of each part now
        const std::size_t size = counts[i] - begin;
        if (size <= cachedValues) {
            if (size > 0) sortFromTo(scratch + begin, values + begin, size, extremesOf(scratch + begin, size));
        } else {
            std::copy(scratch + begin, scratch + begin + size, values + begin);
            radixSort(values + begin, scratch + begin, size, *radixCounts);
        }
        begin += size;
    }
}

/** Sorts up to cachedValues values from one place to another: about one value per bucket, then a short insertion pass. */
void BucketSort::sortFromTo(double* from, double* to, std::size_t n, Extremes extremes)
{
    if (n <= fewValues) {
        std::copy(from, from + n, to);
        insertionSort(to, n);
        return;
    }
    const LinearMap bucket(extremes, n);
    std::uint32_t* const counts = bucketCounts.get();
    std::size_t largest = n;
    if (bucket.isUsable()) {
        std::fill(counts, counts + n, 0);
        for (std::size_t i = 0; i < n; ++i) ++counts[bucket(from[i])];
        largest = countsToStarts(counts, n);
    }
    if (largest > n - n / 4) {  // the buckets would help little
        std::copy(from, from + n, to);
        sortCrowded(to, from, n, extremes);
        return;
    }
    for (std::size_t i = 0; i < n; ++i) to[counts[bucket(from[i])]++] = from[i];
    if (largest > fewValues) {
        std::size_t begin = 0;
        for (std::size_t i = 0; i < n; ++i) {  // counts holds the end of each bucket now
            const std::size_t size = counts[i] - begin;
            if (size > fewValues) sortCrowded(to + begin, from + begin, size, extremesOf(to + begin, size));
            begin += size;
        }
    }
    insertionSort(to, n);
}

/** Sorts values that crowd together, in place. */
void BucketSort::sortCrowded(double* values, double* scratch, std::size_t n, Extremes extremes)
{
    if (extremes.smallest == extremes.largest) return;
    if (n < radixPays)
        std::sort(values, values + n);
    else
        radixSort(values, scratch, n, *radixCounts);
}

}  // namespace wq_lib::detail
