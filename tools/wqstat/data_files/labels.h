// The different texts of a column, numbered.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace wqstat {

/** Numbers texts from 1 by first appearance. */
class Labels {
public:
    Labels() = default;
    Labels(Labels&&) = default;
    Labels& operator=(Labels&&) = default;

    /** The number of the text, a new one where it has none yet. */
    std::size_t number(std::string_view text)
    {
        if (last > 0 && texts[last - 1] == text) return last;
        const auto known = numbers.find(text);
        last = known != numbers.end() ? known->second : added(text);
        return last;
    }

    /** The number that the text has; 0 where it has none. */
    std::size_t known(std::string_view text) const
    {
        if (last > 0 && texts[last - 1] == text) return last;
        const auto found = numbers.find(text);
        return found == numbers.end() ? 0 : found->second;
    }

    /** The text of a number. */
    const std::string& text(std::size_t number) const { return texts[number - 1]; }

    /** The texts by number, the first one that of 1. */
    std::vector<std::string> all() const { return {texts.begin(), texts.end()}; }

private:
    std::size_t added(std::string_view text)
    {
        texts.emplace_back(text);
        numbers.emplace(texts.back(), texts.size());
        return texts.size();
    }

    std::deque<std::string> texts;  // of which numbers holds views: none of them moves
    std::unordered_map<std::string_view, std::size_t> numbers;
    std::size_t last = 0;
};

}  // namespace wqstat
