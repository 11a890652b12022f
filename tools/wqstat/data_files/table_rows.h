// The rows of a table that an analysis takes: all of them, or those that have one value in a column.
#pragma once

#include "input.h"
#include "labels.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace wqstat {

/** Takes one row: a number for each used column, in their order; a label is its number. */
using RowHandler = std::function<void(const double* row)>;

/** How many rows there were, and how many were left out because a used column has no value there. */
struct RowCounts {
    std::size_t rows = 0;
    std::size_t leftOut = 0;
    std::vector<std::size_t> missing;  ///< values, by used column
};

class TableRows : public Input {
public:
    /** The title of the used column with this index. */
    virtual const std::string& title(std::size_t use) const = 0;

    /** The texts of a used column of labels. */
    virtual const Labels& labels(std::size_t use) const = 0;

    /** Tells how many rows were left out. */
    std::vector<Sentence> warnings() const override;

    const std::size_t* rowsRead() const override { return &counts.rows; }
    void require(std::size_t held, std::size_t least) const override { requireIn(name(), held, least); }

    /** Of one of the samples that the table holds. */
    void requireOf(const std::string& sample, std::size_t held, std::size_t least) const;

protected:
    RowCounts counts;

private:
    void requireIn(const std::string& place, std::size_t held, std::size_t least) const;
};

}  // namespace wqstat
