#include "own_format.h"

#include "cell_numbers.h"
#include "numbers/data_lines.h"
#include "numbers/white_space.h"

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>

namespace wqstat {

namespace {

using wq_lib::detail::DataLines;
using wq_lib::detail::EndMarker;
using wq_lib::detail::fieldSeparators;
using wq_lib::detail::trimmed;
using wq_lib::detail::trimmedInFront;

/** What the lines with data hold, as far as they were looked at. */
struct OwnLines {
    std::size_t lines = 0;
    std::size_t fields = 0;  // of each line; 0 where they differ or hold no numbers
};

std::size_t numbersIn(std::string_view line)
{
    std::size_t count = 0;
    for (std::size_t begin = 0; begin <= line.size(); ++count) {
        const std::size_t end = std::min(line.find_first_of(fieldSeparators, begin), line.size());
        double ignored = 0.0;
        if (!CellNumbers().convert(trimmed(line.substr(begin, end - begin)), 1, ignored)) return 0;
        begin = end + 1;
    }
    return count;
}

OwnLines look(std::string_view text)
{
    constexpr std::size_t most = 200;
    constexpr std::size_t whole = 60'000;  // a longer text is cut in its last line
    if (text.size() >= whole) text = text.substr(0, text.rfind('\n') + 1);
    if (trimmedInFront(text).substr(0, 1) != "#") return {};
    std::istringstream stream{std::string(text)};
    DataLines lines(stream, EndMarker::endsData);
    OwnLines found;
    while (found.lines < most && lines.next()) {
        if (lines.isComment() || trimmed(lines.text()).empty()) continue;
        const std::size_t fields = lines.isCut() ? 0 : numbersIn(lines.text());
        if (found.lines == 0) found.fields = fields;
        const bool lacksCount = found.fields == 3 && fields == 2;  // then it is that of the line before
        if (fields != found.fields && !lacksCount) return {};
        ++found.lines;
    }
    return found;
}

}  // namespace

std::vector<CommandWithoutColumns> commandsForOwnFormat(std::string_view begin)
{
    constexpr std::size_t least = 3;  // observations, which some analyses need
    const OwnLines found = look(begin);
    if (found.lines < least) return {};
    if (found.fields == 1) return {{"describe"}, {"frequency"}};
    if (found.fields == 3) return {{"multiy"}};
    if (found.fields != 2) return {};
    return {{"anova"}, {"correlate"}, {"regress"}, {"fit"}, {"circular"}};
}

}  // namespace wqstat
