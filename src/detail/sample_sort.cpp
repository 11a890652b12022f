#include "sample_sort.h"

#include "bucket_sort.h"
#include "sample_scan.h"
#include "vector_sort.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace wq_lib::detail {

namespace {

constexpr std::size_t veryFewValues = 4;  // fewer than vectors are worth

/**
 * What a sort by value alone would mix up: NaN, which it cannot order, and the signs of zeros, which it takes for equal. They are taken out
 * in their order before, and put back behind.
 */
class KeptInOrder {
public:
    KeptInOrder(const double* values, std::size_t n)
        : nanCount(count(values, n, isNan)),
          zeroCount(count(values, n, isZero)),
          nans(nanCount == 0 ? nullptr : new double[nanCount + 1]),
          zeros(zeroCount == 0 ? nullptr : new double[zeroCount + 1])
    {
    }

    /** @return how many values are left, at the front. */
    std::size_t takeOut(double* values, std::size_t n)
    {
        if (nanCount > 0) n = moveOut(values, n, nans.get(), isNan);
        if (zeroCount > 0) n = moveOut(values, n, zeros.get(), isZero);
        return n;
    }

    /** @param values of which the first `left` are sorted. */
    void putBack(double* values, std::size_t left)
    {
        double* const positive = std::lower_bound(values, values + left, 0.0);
        std::move_backward(positive, values + left, values + left + zeroCount);
        std::copy(zeros.get(), zeros.get() + zeroCount, positive);
        std::copy(nans.get(), nans.get() + nanCount, values + left + zeroCount);
    }

private:
    static bool isNan(double value) { return value != value; }
    static bool isZero(double value) { return value == 0.0; }

    template <typename Which>
    static std::size_t count(const double* values, std::size_t n, Which which)
    {
        return static_cast<std::size_t>(std::count_if(values, values + n, which));
    }

    /** Without a branch, which nothing could predict; so it writes one place behind the last of those moved out too. */
    template <typename Which>
    static std::size_t moveOut(double* values, std::size_t n, double* out, Which which)
    {
        std::size_t left = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const double value = values[i];
            const bool isOut = which(value);
            values[left] = value;
            *out = value;
            left += isOut ? 0 : 1;
            out += isOut ? 1 : 0;
        }
        return left;
    }

    std::size_t nanCount;
    std::size_t zeroCount;
    std::unique_ptr<double[]> nans;
    std::unique_ptr<double[]> zeros;
};

/** Sorts by a way that takes equal values for the same. @param sort called with numbers and their count, at least 1. */
template <typename Sort>
void sortKeepingOrder(double* values, std::size_t n, Sort&& sort)
{
    if (!hasNanOrNegativeZero(values, n)) return sort(values, n);
    KeptInOrder kept(values, n);
    const std::size_t left = kept.takeOut(values, n);
    if (left > 0) sort(values, left);
    kept.putBack(values, left);
}

/** Moves a value that stands behind sorted ones to its place among them: behind those equal to it, a NaN behind every number. */
void insertBehind(double* values, std::size_t n)
{
    const double value = values[n];
    if (std::isnan(value)) return;
    double* const place = std::upper_bound(values, values + n, value, [](double inserted, double other) { return !(other <= inserted); });
    std::move_backward(place, values + n, values + n + 1);
    *place = value;
}

/** Sorts values that ascend but for the last few, as those of a sorted sample that was added to, and such as descend. @return false for
 * others. */
bool sortOrdered(double* values, std::size_t n)
{
    constexpr std::size_t mostAdded = 4;
    const std::size_t ascending = ascendingCount(values, n);
    if (n - ascending <= std::min(mostAdded, n / 8)) {
        for (std::size_t i = ascending; i < n; ++i) insertBehind(values, i);
        return true;
    }
    if (ascending > 1 || !isStrictlyDescending(values, n)) return false;
    std::reverse(values, values + n);
    return true;
}

using VectorSort = void (*)(double* values, std::size_t n);

/** @return the sort by the widest vectors that the processor has, or nullptr. */
VectorSort widestVectorSort()
{
    if (hasAvx512()) return sortByAvx512;
    if (hasAvx2()) return sortByAvx2;
    return nullptr;
}

void sortByBuckets(double* values, std::size_t n)
{
    if (n > UINT32_MAX) {
        std::stable_sort(values, values + n, [](double a, double b) { return std::isnan(b) ? !std::isnan(a) : a < b; });
        return;
    }
    std::optional<BucketSort> buckets;
    if (n >= bucketsPay) buckets.emplace(n);
    sortKeepingOrder(values, n, [&buckets](double* numbers, std::size_t count) {
        if (buckets)
            buckets->sort(numbers, count);
        else
            std::sort(numbers, numbers + count);
    });
}

}  // namespace

void sortSample(std::vector<double>& data)
{
    double* const values = data.data();
    const std::size_t n = data.size();
    if (n <= veryFewValues) return insertionSort(values, n);
    if (sortOrdered(values, n)) return;
    const VectorSort sortByVectors = widestVectorSort();
    if (sortByVectors == nullptr) return sortByBuckets(values, n);
    if (n <= fewValues && hasNanOrNegativeZero(values, n)) return insertionSort(values, n);
    sortKeepingOrder(values, n, sortByVectors);
}

void sortSampleAnywhere(std::vector<double>& data)
{
    double* const values = data.data();
    const std::size_t n = data.size();
    if (n <= fewValues) return insertionSort(values, n);
    if (!sortOrdered(values, n)) sortByBuckets(values, n);
}

}  // namespace wq_lib::detail
