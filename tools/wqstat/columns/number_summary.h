// What the numbers of a column are like, in one pass and in bounded memory.
#pragma once

#include "exact_mean.h"
#include "rank_sketch.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <unordered_map>
#include <vector>

namespace wqstat {

constexpr std::size_t mostDistinct = 100'000;  ///< of a column: so many different values are kept

struct Quartiles {
    double lower;
    double median;
    double upper;
};

/** Equal widths; the value that ends the last class belongs to it. Of one value there is one class, without a width. */
struct Histogram {
    double from;
    double width;
    std::vector<std::uint64_t> counts;

    double to() const { return from + width * static_cast<double>(counts.size()); }
};

/** As R's type 7 and most programs have them: interpolated between the values with the ranks around 1 + (n - 1) p. NaN without values. */
Quartiles quartilesOf(const std::vector<Weighted>& values);

/** Numbers with their counts as long as they are at most mostDistinct different ones; from then on a sketch of them. */
class NumberSummary {
public:
    void add(double value);

    std::uint64_t count() const { return n; }

    // These are exact.
    double least() const { return smallest; }
    double greatest() const { return largest; }
    double mean() const { return average.mean(); }

    /** Whether every number is whole, and small enough that the next one is, too. */
    bool isWhole() const { return whole; }

    /** How many numbers are not finite. */
    std::uint64_t infinite() const { return infinities; }

    bool isFinite() const { return smallest >= -std::numeric_limits<double>::max() && largest <= std::numeric_limits<double>::max(); }

    /** How many different ones; nothing where there are more than mostDistinct. */
    std::optional<std::size_t> distinct() const;

    /** By how many places the rank of a quartile may be off; 0 where it is exact. */
    std::uint64_t rankError() const { return isSketched ? sketch.rankError() : 0; }

    /** The numbers in their order, those that are finite and the others; of a sketch those that it keeps. */
    std::vector<Weighted> values() const;

    Quartiles quartiles() const { return quartilesOf(values()); }

    /**
     * Of the finite numbers: 2 n^(1/3) classes (Rice's rule), 24 at most. Those of whole numbers hold equally many of them each.
     * No classes without numbers.
     */
    Histogram histogram() const;

private:
    void beginSketch();

    std::uint64_t n = 0;
    std::uint64_t infinities = 0;
    double smallest = std::numeric_limits<double>::infinity();
    double largest = -std::numeric_limits<double>::infinity();
    bool whole = true;
    ExactMean average;
    std::unordered_map<double, std::uint64_t> counts;
    bool isSketched = false;
    RankSketch sketch;
};

}  // namespace wqstat
