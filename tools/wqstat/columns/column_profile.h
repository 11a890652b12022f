// What a column of a table holds.
#pragma once

#include "data_files/cell_numbers.h"
#include "label_counts.h"
#include "number_summary.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** What all cells of a column are that are not missing; mixed where they differ, empty where there are none. */
enum class CellKind { number, date, label, mixed, empty };

const char* nameOf(CellKind kind);

/** A cell that is of another kind than most of its column. */
struct OddCell {
    std::size_t line;
    std::string text;  ///< as messages show it
};

/** Takes the cells of a column, one after the other. */
class ColumnProfile {
public:
    /** @param title by which it is shown. @param reading how its numbers are written. @param titleMayBeData so that it is no good name. */
    ColumnProfile(std::string title, CellNumbers reading, bool titleMayBeData = false);

    void addMissing() { ++missingCells; }
    void add(std::string_view cell, std::size_t line);

    const std::string& title() const { return columnTitle; }
    bool titleMayBeData() const { return isTitleDoubtful; }
    CellKind kind() const;
    std::uint64_t rows() const { return missingCells + values(); }
    std::uint64_t missing() const { return missingCells; }
    std::uint64_t values() const { return numbers.count() + dates.count() + texts.count(); }

    /** How many different values: numbers and dates by what they mean, all others by their texts. Nothing where there are too many. */
    std::optional<std::size_t> distinct() const;

    const NumberSummary& numberSummary() const { return numbers; }
    const NumberSummary& dateSummary() const { return dates; }  ///< in days, as isoDate() has them
    const LabelCounts& labelCounts() const { return texts; }

    /** Whether one of the dates has a time of day. */
    bool hasTimes() const { return withTimes; }

    /** The first cells that are of another kind than most; none where it is not mixed. */
    std::vector<OddCell> oddCells() const;

    /** What hinders the column from being read as numbers, in words; empty where nothing does. */
    std::string doubt() const { return reading.doubt(); }

    /** The decimal mark of its numbers: '.', ',' or, where none has any, 0. */
    char decimalMark() const { return reading.hasComma() ? ',' : reading.hasPoint() ? '.' : '\0'; }

private:
    static constexpr std::size_t mostOdd = 5;
    using FirstCells = std::vector<OddCell>;

    CellKind take(std::string_view cell, std::size_t line);

    std::string columnTitle;
    CellNumbers reading;
    bool isTitleDoubtful;
    std::uint64_t missingCells = 0;
    NumberSummary numbers;
    NumberSummary dates;
    LabelCounts texts{mostDistinct};
    bool withTimes = false;
    bool canSkipReading = false;           // the last cell was a text, as the next may be
    std::array<FirstCells, 3> firstCells;  // by kind
};

/** A look at a table. */
struct TableProfile {
    std::uint64_t rows = 0;
    std::vector<ColumnProfile> columns;
};

}  // namespace wqstat
