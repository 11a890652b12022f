#include "column_profile.h"

#include "command_line/arguments.h"
#include "iso_date.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace wqstat {

namespace {

/** Whether a text that begins so may be a number; spares most labels the attempt. */
bool mayBeNumber(std::string_view cell)
{
    constexpr std::string_view begins = "0123456789+-.,iI";
    return begins.find(cell[0]) != std::string_view::npos;
}

}  // namespace

const char* nameOf(CellKind kind)
{
    constexpr const char* names[] = {"number", "date", "label", "mixed", "empty"};
    return names[static_cast<std::size_t>(kind)];
}

ColumnProfile::ColumnProfile(std::string title, CellNumbers asRead, bool titleMayBeData)
    : columnTitle(std::move(title)),
      reading(std::move(asRead)),
      isTitleDoubtful(titleMayBeData)
{
}

void ColumnProfile::add(std::string_view cell, std::size_t line)
{
    if (canSkipReading && texts.addKnown(cell)) return;  // what was no number once will not become one
    const CellKind kind = take(cell, line);
    FirstCells& first = firstCells[static_cast<std::size_t>(kind)];
    if (first.size() < mostOdd) first.push_back({line, shown(cell)});
    canSkipReading = kind == CellKind::label && first.size() == mostOdd;
}

CellKind ColumnProfile::take(std::string_view cell, std::size_t line)
{
    if (const std::optional<IsoDate> date = isoDate(cell)) {
        dates.add(date->days);
        withTimes = withTimes || date->hasTime;
        return CellKind::date;
    }
    double value = 0.0;
    if (mayBeNumber(cell) && reading.convert(cell, line, value)) {
        numbers.add(value);
        return CellKind::number;
    }
    if (canSkipReading)
        texts.addNew(cell);  // it has been looked for
    else
        texts.add(cell);
    return CellKind::label;
}

CellKind ColumnProfile::kind() const
{
    const std::pair<CellKind, std::uint64_t> counts[] = {
        {CellKind::number, numbers.count()}, {CellKind::date, dates.count()}, {CellKind::label, texts.count()}};
    for (const auto& [kind, count] : counts)
        if (count > 0) return count == values() ? kind : CellKind::mixed;
    return CellKind::empty;
}

std::optional<std::size_t> ColumnProfile::distinct() const
{
    const std::optional<std::size_t> ofNumbers = numbers.distinct();
    const std::optional<std::size_t> ofDates = dates.distinct();
    if (!ofNumbers || !ofDates || texts.isCut()) return std::nullopt;
    return *ofNumbers + *ofDates + texts.distinct();
}

std::vector<OddCell> ColumnProfile::oddCells() const
{
    const std::uint64_t counts[] = {numbers.count(), dates.count(), texts.count()};
    const auto usual = static_cast<std::size_t>(std::max_element(std::begin(counts), std::end(counts)) - std::begin(counts));
    std::vector<OddCell> odd;
    for (std::size_t kind = 0; kind < firstCells.size(); ++kind)
        if (kind != usual) odd.insert(odd.end(), firstCells[kind].begin(), firstCells[kind].end());
    std::stable_sort(odd.begin(), odd.end(), [](const OddCell& a, const OddCell& b) { return a.line < b.line; });
    if (odd.size() > mostOdd) odd.erase(odd.begin() + static_cast<std::ptrdiff_t>(mostOdd), odd.end());
    return odd;
}

}  // namespace wqstat
