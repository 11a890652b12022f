#include "nearest_name.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace wqstat {

namespace {

/** How many letters have to be added, taken away, changed, or exchanged with their neighbours. */
std::size_t distance(const std::string& a, const std::string& b)
{
    std::vector<std::size_t> beforeLast(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (exchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        beforeLast = last;
        last = row;
    }
    return last[b.size()];
}

}  // namespace

std::string didYouMean(const std::string& word, const std::vector<std::string>& names)
{
    constexpr std::size_t longest = 40;  // no name is as long
    if (word.size() > longest) return "";
    const std::size_t most = std::max<std::size_t>(1, word.size() / 4);
    std::string nearest;
    std::size_t least = most + 1;
    for (const std::string& name : names) {
        const bool isBegin = word.size() > 3 && name.compare(0, word.size(), word) == 0;
        const std::size_t found = isBegin ? 1 : distance(word, name);
        if (found >= least) continue;
        least = found;
        nearest = name;
    }
    return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

}  // namespace wqstat
