// The different texts of a column, numbered.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
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
        const std::size_t number = known(text);
        return number != 0 ? number : added(text);
    }

    /** The number that the text has; 0 where it has none. */
    std::size_t known(std::string_view text)
    {
        Label& label = recent[placeOf(text)];
        if (label.number == 0 || label.text != text) {
            const auto found = numbers.find(text);
            if (found == numbers.end()) return 0;
            label = {found->first, found->second};
        }
        return label.number;
    }

    /** The text of a number. */
    const std::string& text(std::size_t number) const { return texts[number - 1]; }

    /** The texts by number, the first one that of 1. */
    std::vector<std::string> all() const { return {texts.begin(), texts.end()}; }

private:
    struct Label {
        std::string_view text;
        std::size_t number = 0;
    };

    static constexpr std::size_t recentBits = 11;
    static constexpr std::size_t recentCount = std::size_t{1} << recentBits;

    /** Of a text in `recent`, by its length and the four characters at either end: texts that lie near each other differ there as a rule.
     */
    static std::size_t placeOf(std::string_view text)
    {
        std::uint32_t front = 0;
        std::uint32_t back = 0;
        if (text.size() >= sizeof front) {
            std::memcpy(&front, text.data(), sizeof front);
            std::memcpy(&back, text.data() + text.size() - sizeof back, sizeof back);
        } else {
            std::memcpy(&front, text.data(), text.size());
        }
        constexpr std::uint64_t golden =
            0x9E3779B97F4A7C15;  // 2^64 by the golden ratio (Knuth 1973, The Art of Computer Programming 3, 6.4)
        const std::uint64_t key = (std::uint64_t{front} << 32 | back) + text.size();
        return static_cast<std::size_t>(key * golden >> (64 - recentBits));
    }

    std::size_t added(std::string_view text)
    {
        texts.emplace_back(text);
        numbers.emplace(texts.back(), texts.size());
        return texts.size();
    }

    std::deque<std::string> texts;  // of which the others hold views: none of them moves
    std::unordered_map<std::string_view, std::size_t> numbers;
    std::vector<Label> recent = std::vector<Label>(recentCount);  // at each place the last that was asked for
};

}  // namespace wqstat
