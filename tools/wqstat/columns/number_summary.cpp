#include "number_summary.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace wqstat {

namespace {

constexpr std::size_t mostClasses = 24;

std::uint64_t countOf(const std::vector<Weighted>& values)
{
    std::uint64_t n = 0;
    for (const Weighted& each : values) n += each.count;
    return n;
}

double valueAt(const std::vector<Weighted>& values, std::uint64_t rank)
{
    std::uint64_t before = 0;
    for (const Weighted& each : values) {
        before += each.count;
        if (rank < before) return each.value;
    }
    return values.back().value;
}

/** @param quarters 1, 2 or 3. */
double quartile(const std::vector<Weighted>& values, std::uint64_t n, std::uint64_t quarters)
{
    const std::uint64_t place = (n - 1) * quarters;  // in quarters of a rank
    const double low = valueAt(values, place / 4);
    const double part = static_cast<double>(place % 4) / 4.0;
    if (part == 0.0) return low;
    const double high = valueAt(values, place / 4 + 1);
    const double difference = high - low;
    return std::isfinite(difference) ? low + part * difference : low * (1.0 - part) + high * part;
}

/** The least k whose cube is 8 n or more. */
std::size_t riceClasses(std::uint64_t n)
{
    std::size_t k = 1;
    while (k < mostClasses && k * k * k < 8 * n) ++k;
    return k;
}

/** How many widths a value lies above the begin, also where their difference is no double. */
double classesAbove(double from, double value, double width)
{
    const double difference = value - from;
    return std::isfinite(difference) ? difference / width : (value / 2.0 - from / 2.0) / (width / 2.0);
}

}  // namespace

void NumberSummary::add(double value)
{
    constexpr double mostExact = 9007199254740992.0;  // 2^53
    value += 0.0;                                     // no -0
    ++n;
    if (!std::isfinite(value)) ++infinities;
    smallest = std::min(smallest, value);
    largest = std::max(largest, value);
    whole = whole && std::fabs(value) < mostExact && std::floor(value) == value;
    average.add(value);
    if (isSketched) {
        sketch.add(value);
        return;
    }
    ++counts[value];
    if (counts.size() > mostDistinct) beginSketch();
}

void NumberSummary::beginSketch()
{
    for (const Weighted& each : values()) sketch.add(each.value, each.count);
    isSketched = true;
    counts = {};
}

std::optional<std::size_t> NumberSummary::distinct() const
{
    if (isSketched) return std::nullopt;
    return counts.size();
}

std::vector<Weighted> NumberSummary::values() const
{
    if (isSketched) return sketch.values();
    std::vector<Weighted> all;
    all.reserve(counts.size());
    for (const auto& [value, count] : counts) all.push_back({value, count});
    std::sort(all.begin(), all.end(), [](const Weighted& a, const Weighted& b) { return a.value < b.value; });
    return all;
}

Quartiles quartilesOf(const std::vector<Weighted>& values)
{
    const std::uint64_t n = countOf(values);
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (n == 0) return {none, none, none};
    return {quartile(values, n, 1), quartile(values, n, 2), quartile(values, n, 3)};
}

Histogram NumberSummary::histogram() const
{
    std::vector<Weighted> finite;
    for (const Weighted& each : values())
        if (std::isfinite(each.value)) finite.push_back(each);
    if (finite.empty()) return {0.0, 0.0, {}};
    const double low = std::isfinite(smallest) ? smallest : finite.front().value;
    const double high = std::isfinite(largest) ? largest : finite.back().value;
    const std::size_t wanted = riceClasses(countOf(finite));
    const auto parts = static_cast<double>(wanted);
    double width = high / parts - low / parts;
    std::size_t classes = wanted;
    if (whole && high > low) {
        const double span = high - low + 1.0;
        width = span <= static_cast<double>(mostClasses) ? 1.0 : std::ceil(span / parts);
        classes = static_cast<std::size_t>(std::ceil(span / width));
    }
    if (!(width > 0.0)) return {low, 0.0, {countOf(finite)}};
    Histogram histogram{low, width, std::vector<std::uint64_t>(classes)};
    for (const Weighted& each : finite) {
        const auto place = static_cast<std::size_t>(classesAbove(low, each.value, width));
        histogram.counts[std::min(place, classes - 1)] += each.count;
    }
    return histogram;
}

}  // namespace wqstat
