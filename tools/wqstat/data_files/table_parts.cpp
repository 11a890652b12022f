#include "table_parts.h"

#include "command_line/arguments.h"

#include <cmath>
#include <utility>

namespace wqstat {

TablePart::TablePart(std::shared_ptr<const Table> whole, std::size_t byIndex, const std::string& value)
    : table(std::move(whole)),
      by(byIndex),
      givenValue(value),
      shownName(table->name() + ", " + shown(table->title(by)) + " = " + shown(value))
{
}

void TablePart::add(const double* row, const std::vector<Column>& columns)
{
    ++counts.rows;
    counts.missing.resize(columns.size());
    bool isWhole = true;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].mayMiss || !std::isnan(row[i])) continue;
        ++counts.missing[i];
        isWhole = false;
    }
    if (isWhole)
        rows.insert(rows.end(), row, row + columns.size());
    else
        ++counts.leftOut;
}

void TablePart::hand(const std::vector<Column>& columns, const RowHandler& handle)
{
    ownLabels.resize(columns.size());
    const std::vector<double> taken = std::exchange(rows, {});
    std::vector<double> row(columns.size());
    for (std::size_t begin = 0; begin < taken.size(); begin += row.size()) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const double value = taken[begin + i];
            const bool isLabel = columns[i].kind == ColumnKind::label && !std::isnan(value);
            row[i] = isLabel ? static_cast<double>(ownLabels[i].number(table->labels(i).text(static_cast<std::size_t>(value)))) : value;
        }
        handle(row.data());
    }
}

std::vector<std::unique_ptr<TablePart>> partsOf(const std::shared_ptr<Table>& table, std::vector<Column> columns, const std::string& by)
{
    const std::vector<Column> wanted = columns;
    for (Column& column : columns) column.mayMiss = true;  // each part counts for itself
    columns.push_back({by, ColumnKind::label});
    const std::size_t byIndex = wanted.size();
    std::vector<std::unique_ptr<TablePart>> parts;
    table->read(columns, [&](const double* row) {
        const auto number = static_cast<std::size_t>(row[byIndex]);
        if (number > parts.size()) parts.push_back(std::make_unique<TablePart>(table, byIndex, table->labels(byIndex).text(number)));
        parts[number - 1]->add(row, wanted);
    });
    return parts;
}

}  // namespace wqstat
