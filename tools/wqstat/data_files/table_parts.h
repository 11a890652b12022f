// A table in parts, one for each value of a column.
#pragma once

#include "table.h"

#include <memory>
#include <string>
#include <vector>

namespace wqstat {

/** The rows of a table that have one value in a column. */
class TablePart final : public TableRows {
public:
    /** @param whole is read already. @param value of the column whose index among the used ones is by. */
    TablePart(std::shared_ptr<const Table> whole, std::size_t by, const std::string& value);

    const std::string& name() const override { return shownName; }
    const std::optional<FileIdentity>& identity() const override { return table->identity(); }
    const std::string& title(std::size_t use) const override { return table->title(use); }
    const Labels& labels(std::size_t use) const override { return ownLabels[use]; }

    const std::string& columnTitle() const { return table->title(by); }
    const std::string& value() const { return givenValue; }

    /** Takes a row as the table gives it; one that lacks a value of a column where none may miss is counted, and left out. */
    void add(const double* row, const std::vector<Column>& columns);

    /** Hands its rows on, labels numbered by first appearance among them, and forgets them. */
    void hand(const std::vector<Column>& columns, const RowHandler& handle);

private:
    std::shared_ptr<const Table> table;
    std::size_t by;
    std::string givenValue;
    std::string shownName;
    std::vector<double> rows;  // one behind the other
    std::vector<Labels> ownLabels;
};

/**
 * Reads all rows of a table and sorts them into parts, in the order in which the values of the column appear. Rows without such a value
 * are left out, and counted by the table.
 * @throws CannotAnalyse
 */
std::vector<std::unique_ptr<TablePart>> partsOf(const std::shared_ptr<Table>& table, std::vector<Column> columns, const std::string& by);

}  // namespace wqstat
