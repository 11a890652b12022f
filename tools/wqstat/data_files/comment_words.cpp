#include "comment_words.h"

#include "numbers/white_space.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace wqstat {

namespace {

/** Where semicolons separate as in data: without the blank that follows one in a sentence. */
std::vector<std::size_t> separatorsIn(std::string_view line)
{
    std::vector<std::size_t> places;
    for (std::size_t i = line.find(';'); i != std::string_view::npos; i = line.find(';', i + 1))
        if (i > 0 && i + 1 < line.size() && line[i + 1] != ' ' && line[i + 1] != '\t' && line[i + 1] != ';') places.push_back(i);
    return places;
}

}  // namespace

std::string firstLine(const std::string& comment)
{
    const std::string_view text = wq_lib::detail::trimmed(comment);
    return std::string(wq_lib::detail::trimmed(text.substr(0, text.find('\n'))));
}

std::string readableComment(const std::string& comment)
{
    const std::string line = firstLine(comment);
    const std::vector<std::size_t> separators = separatorsIn(line);
    const std::string_view between = separators.size() == 1 ? " and " : "; ";
    std::string text;
    std::size_t begin = 0;
    for (const std::size_t end : separators) {
        text.append(wq_lib::detail::trimmed(std::string_view(line).substr(begin, end - begin))).append(between);
        begin = end + 1;
    }
    return text + line.substr(begin);
}

PairNames pairNames(const std::string& comment)
{
    constexpr std::size_t longest = 80;  // beyond that it is a sentence
    const std::string line = firstLine(comment);
    const std::vector<std::size_t> separators = separatorsIn(line);
    if (separators.size() != 1 || line.find("; ") != std::string::npos) return {};
    const std::string_view before = std::string_view(line).substr(0, separators[0]);
    const std::string_view behind = std::string_view(line).substr(separators[0] + 1);
    const std::size_t sentence = before.rfind(". ");
    const std::string_view x = wq_lib::detail::trimmed(sentence == std::string_view::npos ? before : before.substr(sentence + 2));
    std::string_view y = wq_lib::detail::trimmed(behind.substr(0, behind.find(". ")));
    if (!y.empty() && y.back() == '.') y.remove_suffix(1);
    if (x.empty() || y.empty() || x.size() > longest || y.size() > longest) return {};
    return {std::string(x), std::string(y)};
}

}  // namespace wqstat
