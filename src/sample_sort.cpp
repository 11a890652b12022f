#include "sample_sort.h"

#include "avx512_sort.h"
#include "read_ahead.h"
#include "to_integer.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

namespace wq_lib::detail {

namespace {

static_assert(FLT_EVAL_METHOD == 0, "a value must go to the bucket it was counted for: compile for arithmetic in double (x86: -mfpmath=sse)");

constexpr std::size_t fewValues = 24;         // sorted by insertion
constexpr std::size_t cachedValues = 16384;   // with their copy and counts they stay in the second-level cache
constexpr std::size_t radixPays = 512;        // fewer values than this are not worth its counts
constexpr std::size_t mostPieces = 2048;
constexpr int deepest = 4;                    // values that still crowd together after so many divisions are sorted otherwise

constexpr std::size_t digitBits = 11;
constexpr std::size_t digitCount = 6;
constexpr std::size_t digitValues = std::size_t{1} << digitBits;
using DigitCounts = std::array<std::uint32_t, digitValues>;

void insertionSort(double* values, std::size_t n)
{
    for (std::size_t i = 1; i < n; ++i) {
        const double value = values[i];
        std::size_t k = i;
        for (; k > 0 && value < values[k - 1]; --k) values[k] = values[k - 1];
        values[k] = value;
    }
}

/** What one look at values tells. */
struct Look {
    double smallest;
    double largest;
    bool numbers;  // no NaN among the values; else the extremes mean nothing
};

/** @param n at least 1. */
Look lookAt(const double* values, std::size_t n)
{
    // Four of everything side by side hide each other's waiting time.
    constexpr std::size_t chains = 4;
    double low[chains];
    double high[chains];
    std::uint64_t notNumbers[chains] = {};
    std::fill_n(low, chains, values[0]);
    std::fill_n(high, chains, values[0]);
    const auto take = [&](std::size_t chain, double value) {
        low[chain] = value < low[chain] ? value : low[chain];
        high[chain] = value > high[chain] ? value : high[chain];
        notNumbers[chain] += value != value ? 1 : 0;
    };
    std::size_t i = 0;
    for (; i + chains <= n; i += chains) {
        readAhead(values + i, values + n);
        for (std::size_t chain = 0; chain < chains; ++chain) take(chain, values[i + chain]);
    }
    for (; i < n; ++i) take(0, values[i]);
    return {*std::min_element(low, low + chains), *std::max_element(high, high + chains),
            std::all_of(notNumbers, notNumbers + chains, [](std::uint64_t count) { return count == 0; })};
}

/** Whether the values ascend; false where a NaN is among them. */
bool isAscending(const double* values, std::size_t n)
{
    for (std::size_t i = 1; i < n; ++i)
        if (!(values[i - 1] <= values[i])) return false;
    return n != 1 || !std::isnan(values[0]);
}

/**
 * A linear map of values to buckets 0 ... count - 1. A larger value never goes to a lower bucket, since a difference and a
 * product with a positive number stay in order when rounded.
 */
class LinearMap {
public:
    LinearMap(const Look& look, std::size_t count)
        : smallest(look.smallest), scale(static_cast<double>(count - 1) / (look.largest - look.smallest))
    {
    }

    /** False for infinite values, for those too far apart or too close together to divide, and for values that are all equal. */
    bool isUsable() const { return std::isfinite(scale) && scale > 0.0; }

    std::size_t operator()(double value) const { return toSmallIndex((value - smallest) * scale); }

private:
    double smallest;
    double scale;
};

/** All memory that sorting n values takes, so that nothing can fail halfway through. */
class Workspace {
public:
    explicit Workspace(std::size_t n)
        : fewest(std::min(n, cachedValues)),
          copy(new double[n]),
          buckets(new std::uint32_t[deepest * fewest]),
          pieces(new std::uint32_t[n > cachedValues ? deepest * mostPieces : 0]),
          digits(new DigitCounts[n >= radixPays ? digitCount : 0])
    {
    }

    double* scratch() { return copy.get(); }
    std::uint32_t* bucketCounts(int depth) { return buckets.get() + static_cast<std::size_t>(depth) * fewest; }
    std::uint32_t* pieceCounts(int depth) { return pieces.get() + static_cast<std::size_t>(depth) * mostPieces; }
    DigitCounts* digitCounts() { return digits.get(); }

private:
    std::size_t fewest;
    std::unique_ptr<double[]> copy;
    std::unique_ptr<std::uint32_t[]> buckets;
    std::unique_ptr<std::uint32_t[]> pieces;
    std::unique_ptr<DigitCounts[]> digits;
};

/** Bucket sizes to bucket starts. @return the largest size. */
std::uint32_t sizesToStarts(std::uint32_t* counts, std::size_t n)
{
    std::uint32_t start = 0;
    std::uint32_t largest = 0;
    for (std::size_t i = 0; i < n; ++i) {
        largest = std::max(largest, counts[i]);
        start += std::exchange(counts[i], start);
    }
    return largest;
}

/** Least significant digit radix sort: the same time for every distribution. The result is in values. */
void radixSort(double* values, double* scratch, std::size_t n, DigitCounts* counts)
{
    constexpr std::uint64_t mask = digitValues - 1;
    const auto key = [](double value) {  // orders as the values do, 0 and -0 alike
        std::uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        constexpr std::uint64_t sign = std::uint64_t{1} << 63;
        if (bits == sign) bits = 0;
        return (bits & sign) != 0 ? ~bits : bits | sign;
    };
    std::for_each(counts, counts + digitCount, [](DigitCounts& count) { count.fill(0); });
    for (std::size_t i = 0; i < n; ++i) {
        readAhead(values + i, values + n);
        std::uint64_t rest = key(values[i]);
        for (std::size_t digit = 0; digit < digitCount; ++digit, rest >>= digitBits) ++counts[digit][rest & mask];
    }
    double* from = values;
    double* to = scratch;
    for (std::size_t digit = 0; digit < digitCount; ++digit) {
        const auto digitOf = [&](double value) { return (key(value) >> (digit * digitBits)) & mask; };
        std::uint32_t* const starts = counts[digit].data();
        if (starts[digitOf(from[0])] == n) continue;  // the same digit in every value
        sizesToStarts(starts, digitValues);
        for (std::size_t i = 0; i < n; ++i) {
            readAhead(from + i, from + n);
            to[starts[digitOf(from[i])]++] = from[i];
        }
        std::swap(from, to);
    }
    if (from != values) std::copy(from, from + n, values);
}

/** Sorts up to cachedValues values from one place to another: about one value per bucket, then a short insertion pass. */
void sortFew(double* from, double* to, std::size_t n, Workspace& space, int depth, const Look& look)
{
    if (n > fewValues && depth < deepest) {
        const LinearMap bucket(look, n);
        std::uint32_t* const counts = space.bucketCounts(depth);
        std::uint32_t largest = 0;
        if (bucket.isUsable()) {
            std::fill(counts, counts + n, 0);
            for (std::size_t i = 0; i < n; ++i) ++counts[bucket(from[i])];
            largest = sizesToStarts(counts, n);
        }
        if (bucket.isUsable() && (largest <= n / 4 || n < radixPays)) {
            for (std::size_t i = 0; i < n; ++i) to[counts[bucket(from[i])]++] = from[i];
            if (largest <= fewValues) {
                insertionSort(to, n);
                return;
            }
            // counts holds the end of each bucket now; crowded ones are divided once more.
            std::size_t begin = 0;
            for (std::size_t i = 0; i < n; ++i) {
                const std::size_t size = counts[i] - begin;
                if (size > fewValues) {
                    std::copy(to + begin, to + begin + size, from + begin);
                    sortFew(from + begin, to + begin, size, space, depth + 1, lookAt(from + begin, size));
                } else {
                    insertionSort(to + begin, size);
                }
                begin += size;
            }
            return;
        }
    }
    std::copy(from, from + n, to);
    if (n <= fewValues)
        insertionSort(to, n);
    else if (n < radixPays)
        std::stable_sort(to, to + n);
    else
        radixSort(to, from, n, space.digitCounts());
}

/** Sorts any number of values in place: scattered into pieces that fit the cache, each sorted back. */
void sortMany(double* values, double* scratch, std::size_t n, Workspace& space, int depth, const Look& look)
{
    if (n <= cachedValues) {
        std::copy(values, values + n, scratch);
        sortFew(scratch, values, n, space, 0, look);
        return;
    }
    const std::size_t pieces = std::min(mostPieces, n / (cachedValues / 4));
    const LinearMap piece(look, pieces);
    if (!piece.isUsable() || depth == deepest) {
        radixSort(values, scratch, n, space.digitCounts());
        return;
    }
    std::uint32_t* const counts = space.pieceCounts(depth);
    std::fill(counts, counts + pieces, 0);
    for (std::size_t i = 0; i < n; ++i) {
        readAhead(values + i, values + n);
        ++counts[piece(values[i])];
    }
    if (sizesToStarts(counts, pieces) > n / 4) {  // heavy tails
        radixSort(values, scratch, n, space.digitCounts());
        return;
    }
    for (std::size_t i = 0; i < n; ++i) {
        readAhead(values + i, values + n);
        scratch[counts[piece(values[i])]++] = values[i];
    }
    std::size_t begin = 0;
    for (std::size_t i = 0; i < pieces; ++i) {
        const std::size_t size = counts[i] - begin;
        if (size <= cachedValues) {
            if (size > 0) sortFew(scratch + begin, values + begin, size, space, 0, lookAt(scratch + begin, size));
        } else {
            std::copy(scratch + begin, scratch + begin + size, values + begin);
            sortMany(values + begin, scratch + begin, size, space, depth + 1, lookAt(values + begin, size));
        }
        begin += size;
    }
}

}  // namespace

void sortSample(std::vector<double>& data)
{
    if (!isAscending(data.data(), data.size()) && !sortByAvx512(data.data(), data.size())) sortSampleAnywhere(data);
}

void sortSampleAnywhere(std::vector<double>& data)
{
    std::size_t n = data.size();
    double* const values = data.data();
    if (isAscending(values, n)) return;
    Look look = lookAt(values, n);
    if (!look.numbers) {
        n = static_cast<std::size_t>(std::stable_partition(values, values + n, [](double x) { return !std::isnan(x); }) - values);
        if (isAscending(values, n)) return;
        look = lookAt(values, n);
    }
    if (n > UINT32_MAX) {
        std::stable_sort(values, values + n);
        return;
    }
    Workspace space(n);
    sortMany(values, space.scratch(), n, space, 0, look);
}

}  // namespace wq_lib::detail
