#include "holm.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace wqstat {

std::vector<double> holmAdjusted(const std::vector<double>& p)
{
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < p.size(); ++i)
        if (!std::isnan(p[i])) order.push_back(i);
    std::stable_sort(order.begin(), order.end(), [&p](std::size_t a, std::size_t b) { return p[a] < p[b]; });
    std::vector<double> adjusted = p;
    double least = 0.0;
    for (std::size_t rank = 0; rank < order.size(); ++rank) {
        least = std::max(least, std::min(1.0, static_cast<double>(order.size() - rank) * p[order[rank]]));
        adjusted[order[rank]] = least;
    }
    return adjusted;
}

}  // namespace wqstat
