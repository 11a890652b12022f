// Ranks of more numbers than are kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace wqstat {

/** A value, and how many observations it stands for. */
struct Weighted {
    double value;
    std::uint64_t count;
};

/**
 * Keeps some of the numbers it is given, each standing for a power of two of them, so that every rank can be told within a known error
 * (Manku, Rajagopalan and Lindsay 1998). The numbers of a level stand for twice as many as those of the level below: a full level is
 * sorted, and every second number of it goes up, the odd and the even ones in turn. Nothing is left to chance: the same numbers in the same
 * order give the same answers.
 */
class RankSketch {
public:
    static constexpr std::size_t levelSize = std::size_t{1} << 15;

    void add(double value) { put(0, value); }

    /** As often as that. */
    void add(double value, std::uint64_t count);

    /** All that is kept, sorted; the counts add up to how many were added. */
    std::vector<Weighted> values() const;

    /** By how many places a rank may be off at most. */
    std::uint64_t rankError() const;

private:
    struct Level {
        std::vector<double> kept;
        std::uint64_t halvings = 0;
    };

    void put(std::size_t level, double value);
    void halve(std::size_t level);

    std::vector<Level> levels;
};

}  // namespace wqstat
