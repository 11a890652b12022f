// How often each text of a column occurs.
#pragma once

#include "data_files/labels.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

struct LabelCount {
    std::string text;
    std::uint64_t count;
};

/** Counts the first so many different texts; all others together. */
class LabelCounts {
public:
    explicit LabelCounts(std::size_t most) : mostKept(most) {}

    void add(std::string_view text);

    /** A text that is not kept already. */
    void addNew(std::string_view text);

    std::uint64_t count() const { return n; }

    /** How many different texts are kept. */
    std::size_t distinct() const { return counts.size(); }

    /** Whether there are different ones that are not. */
    bool isCut() const { return others > 0; }

    /** Counts a text that is kept already. @return false for any other. */
    bool addKnown(std::string_view text);

    /** The most frequent ones of those that are kept, the first to appear first where they are equal. */
    std::vector<LabelCount> mostFrequent(std::size_t most) const;

    /** How often the rarest of those that are kept occurs; 0 without any. */
    std::uint64_t leastCount() const;

private:
    std::size_t mostKept;
    Labels labels;
    std::vector<std::uint64_t> counts;
    std::uint64_t n = 0;
    std::uint64_t others = 0;
};

}  // namespace wqstat
