#include "table_view.h"

#include "iso_date.h"
#include "results/figures.h"

namespace wqstat {

const NumberSummary* measured(const ColumnProfile& column)
{
    const NumberSummary& numbers = column.numberSummary();
    const NumberSummary& dates = column.dateSummary();
    const NumberSummary& most = dates.count() > numbers.count() ? dates : numbers;
    return most.count() > 0 ? &most : nullptr;
}

std::string figureOf(const ColumnProfile& column, double value, double spread)
{
    return measured(column) == &column.numberSummary() ? readable(value, spread) : isoText(value, column.hasTimes());
}

double spreadOf(const NumberSummary& numbers, const Quartiles& quartiles)
{
    return quartiles.lower < quartiles.upper ? quartiles.upper - quartiles.lower : numbers.greatest() - numbers.least();
}

std::string distinctText(const ColumnProfile& column)
{
    const std::optional<std::size_t> distinct = column.distinct();
    return distinct ? digits(*distinct) : "more than " + digits(mostDistinct);
}

std::string errorText(const NumberSummary& numbers)
{
    if (numbers.rankError() == 0) return "";
    const double share = static_cast<double>(numbers.rankError()) / static_cast<double>(numbers.count());
    return "each within " + figures(100.0 * share, 2) + " % of the ranks";
}

std::vector<std::string> notesOf(const ColumnProfile& column)
{
    std::vector<std::string> notes;
    if (column.titleMayBeData()) notes.push_back("the title is a number: --no-header takes the first line for data, --header for titles");
    if (!column.doubt().empty()) notes.push_back(column.doubt());
    if (const std::uint64_t infinite = column.numberSummary().infinite(); infinite > 0)
        notes.push_back(counted(infinite, "infinite value is", "infinite values are") + " left out of the histogram");
    if (column.labelCounts().isCut()) notes.push_back("labels are counted of the first " + digits(mostDistinct) + " different ones alone");
    return notes;
}

}  // namespace wqstat
