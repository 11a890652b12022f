#include "label_counts.h"

#include <algorithm>
#include <numeric>

namespace wqstat {

bool LabelCounts::addKnown(std::string_view text)
{
    const std::size_t number = labels.known(text);
    if (number == 0) return false;
    ++n;
    ++counts[number - 1];
    return true;
}

void LabelCounts::add(std::string_view text)
{
    if (!addKnown(text)) addNew(text);
}

void LabelCounts::addNew(std::string_view text)
{
    ++n;
    if (counts.size() == mostKept) {
        ++others;
        return;
    }
    labels.number(text);
    counts.push_back(1);
}

std::vector<LabelCount> LabelCounts::mostFrequent(std::size_t most) const
{
    std::vector<std::size_t> order(counts.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto end = order.begin() + static_cast<std::ptrdiff_t>(std::min(most, order.size()));
    std::partial_sort(order.begin(), end, order.end(),
                      [this](std::size_t a, std::size_t b) { return counts[a] != counts[b] ? counts[a] > counts[b] : a < b; });
    std::vector<LabelCount> found;
    std::for_each(order.begin(), end, [&](std::size_t i) { found.push_back({labels.text(i + 1), counts[i]}); });
    return found;
}

std::uint64_t LabelCounts::leastCount() const { return counts.empty() ? 0 : *std::min_element(counts.begin(), counts.end()); }

}  // namespace wqstat
