#include "rank_sketch.h"

#include <algorithm>

namespace wqstat {

void RankSketch::add(double value, std::uint64_t count)
{
    for (std::size_t level = 0; count > 0; ++level, count /= 2)
        if (count % 2 == 1) put(level, value);
}

void RankSketch::put(std::size_t level, double value)
{
    if (levels.size() <= level) levels.resize(level + 1);
    levels[level].kept.push_back(value);
    for (std::size_t full = level; full < levels.size() && levels[full].kept.size() >= levelSize; ++full) halve(full);
}

/** The last of an odd number of values stays: what goes up stands for exactly what it leaves behind. */
void RankSketch::halve(std::size_t level)
{
    if (levels.size() == level + 1) levels.emplace_back();
    std::vector<double>& kept = levels[level].kept;
    std::sort(kept.begin(), kept.end());
    std::vector<double>& above = levels[level + 1].kept;
    const std::size_t even = kept.size() / 2 * 2;
    for (std::size_t i = levels[level].halvings++ % 2; i < even; i += 2) above.push_back(kept[i]);
    kept.erase(kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(even));
}

std::vector<Weighted> RankSketch::values() const
{
    std::vector<Weighted> all;
    for (std::size_t level = 0; level < levels.size(); ++level)
        for (const double value : levels[level].kept) all.push_back({value, std::uint64_t{1} << level});
    std::sort(all.begin(), all.end(), [](const Weighted& a, const Weighted& b) { return a.value < b.value; });
    return all;
}

/** A halving moves a rank by at most what one of its values stands for, and the next of the same level the other way. */
std::uint64_t RankSketch::rankError() const
{
    std::uint64_t error = 0;
    for (std::size_t level = 0; level < levels.size(); ++level) error += ((levels[level].halvings + 1) / 2) << level;
    return error;
}

}  // namespace wqstat
