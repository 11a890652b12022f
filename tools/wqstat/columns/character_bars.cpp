#include "character_bars.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace wqstat {

namespace {

/** Of so many steps, those that a count reaches; at least one where it is not 0. */
std::size_t stepsOf(std::uint64_t count, std::uint64_t largest, std::size_t steps)
{
    return static_cast<std::size_t>(std::ceil(static_cast<double>(steps) * static_cast<double>(count) / static_cast<double>(largest)));
}

}  // namespace

std::string bars(const std::vector<std::uint64_t>& counts, Characters characters)
{
    constexpr const char* blocks[] = {"\u2581", "\u2582", "\u2583", "\u2584", "\u2585", "\u2586", "\u2587", "\u2588"};
    constexpr const char* ascii[] = {".", ":", "-", "=", "+", "*", "#", "@"};
    const std::uint64_t largest = counts.empty() ? 0 : *std::max_element(counts.begin(), counts.end());
    std::string text;
    for (const std::uint64_t count : counts)
        text += count == 0 ? " " : (characters == Characters::blocks ? blocks : ascii)[stepsOf(count, largest, std::size(blocks)) - 1];
    return text;
}

std::string bar(std::uint64_t count, std::uint64_t largest, std::size_t width, Characters characters)
{
    std::string text;
    if (largest == 0) return text;
    for (std::size_t i = stepsOf(count, largest, width); i > 0; --i) text += characters == Characters::blocks ? "\u2588" : "#";
    return text;
}

}  // namespace wqstat
