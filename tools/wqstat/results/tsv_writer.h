// Results as the rows of a tab-separated table.
#pragma once

#include "result_writer.h"

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/**
 * Writes one row for each analysis, and the names of the columns before the first; all when it is finished, as the p that is adjusted for
 * the number of tests stands in each. A name is the path of a member, with dots. The data file stands first, then the value whose rows they
 * are, then results and exact figures, and what describes the analysis last; lists of anything but texts have no place in a row. All rows
 * of one command have the same columns. What there is not is NA.
 */
class TsvWriter final : public ResultWriter {
public:
    explicit TsvWriter(std::ostream& stream) : output(stream) {}

    void number(std::string_view name, double value) override;
    void whole(std::string_view name, unsigned long long value) override { put(name, std::to_string(value)); }
    void whole(std::string_view name, long long value) override { put(name, std::to_string(value)); }
    void truth(std::string_view name, bool value) override { put(name, value ? "true" : "false"); }
    void text(std::string_view name, std::string_view value) override;
    void nothing(std::string_view name) override { put(name, "NA"); }
    void texts(std::string_view name, const std::vector<std::string>& values) override;
    void part(const std::string& column, const std::string& value) override;
    void decidingP(double p) override;
    void finish() override;
    bool hasFixedMembers() const override { return true; }
    void beginObject(std::string_view name) override;
    void endObject() override;
    void beginArray(std::string_view) override { ++arrays; }
    void endArray() override { --arrays; }

private:
    struct Cell {
        std::size_t place;  // of what it belongs to in a row
        std::string name;
        std::string text;
    };

    /** A line around the place of the adjusted p, where it has one. */
    struct Row {
        std::string before;
        std::string behind;
        std::optional<double> p;
    };

    void put(std::string_view name, std::string text);
    void endRow();

    std::ostream& output;
    std::vector<Cell> cells;
    std::vector<std::string> objects;  // the names of those that are open
    std::size_t arrays = 0;            // that are open
    std::optional<double> p;
    std::string header;
    std::vector<Row> rows;
};

}  // namespace wqstat
