#include "own_format.h"

#include "cell_numbers.h"
#include "numbers/white_space.h"

#include <algorithm>
#include <cstddef>

namespace wqstat {

namespace {

using wq_lib::detail::trimmed;

/** What the lines with data hold, as far as they were looked at. */
struct OwnLines {
    bool beginsWithComment = false;
    std::size_t lines = 0;
    std::size_t fields = 0;  // of each line; 0 where they differ or hold no numbers
};

std::size_t numbersIn(std::string_view line)
{
    std::size_t count = 0;
    for (std::size_t begin = 0; begin <= line.size(); ++count) {
        const std::size_t end = std::min(line.find_first_of(":;|", begin), line.size());
        double ignored = 0.0;
        if (!CellNumbers().convert(trimmed(line.substr(begin, end - begin)), 1, ignored)) return 0;
        begin = end + 1;
    }
    return count;
}

OwnLines look(std::string_view text)
{
    constexpr std::size_t most = 200;
    OwnLines found;
    for (std::size_t begin = 0; begin < text.size() && found.lines < most;) {
        const std::size_t end = text.find('\n', begin);
        if (end == std::string_view::npos && text.size() >= 60'000) break;  // cut in its middle
        const std::string_view line = trimmed(text.substr(begin, std::min(end, text.size()) - begin));
        begin = std::min(end, text.size() - 1) + 1;
        if (line.empty()) continue;
        if (line.front() == '#') {
            found.beginsWithComment = found.beginsWithComment || found.lines == 0;
            continue;
        }
        const std::size_t fields = numbersIn(line);
        if (found.lines == 0) found.fields = fields;
        const bool lacksCount = found.fields == 3 && fields == 2;  // then it is that of the line before
        if ((fields != found.fields && !lacksCount) || !found.beginsWithComment) return {};
        ++found.lines;
    }
    return found;
}

}  // namespace

std::vector<CommandWithoutColumns> commandsForOwnFormat(std::string_view begin)
{
    constexpr std::size_t least = 3;  // observations, which some analyses need
    const OwnLines found = look(begin);
    if (!found.beginsWithComment || found.lines < least) return {};
    if (found.fields == 1) return {{"describe"}, {"frequency"}};
    if (found.fields == 3) return {{"multiy"}};
    if (found.fields != 2) return {};
    return {{"anova"}, {"correlate"}, {"regress"}, {"fit"}, {"circular"}};
}

}  // namespace wqstat
