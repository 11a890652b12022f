#include "table_view.h"

#include "command_line/arguments.h"
#include "results/figures.h"

#include <algorithm>
#include <utility>

namespace wqstat {

namespace {

/** Characters of a text, as far as they are as wide as others. */
std::size_t widthOf(const std::string& text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xc0) != 0x80; }));
}

void printFigures(std::ostream& output, const ColumnProfile& column, const NumberSummary& numbers, Characters characters)
{
    const Quartiles quartiles = numbers.quartiles();
    const double spread = spreadOf(numbers, quartiles);
    const auto text = [&column, spread](double value) { return figureOf(column, value, spread); };
    const std::string error = errorText(numbers);
    const char* const what = &numbers == &column.numberSummary() ? "numbers" : "dates";
    output << (column.kind() == CellKind::mixed ? "  of its " + std::string(what) + ": " : "  ");
    output << "least " << text(numbers.least()) << ", quartiles " << (error.empty() ? "" : "about ") << text(quartiles.lower) << ", "
           << text(quartiles.median) << " and " << text(quartiles.upper) << ", greatest " << text(numbers.greatest()) << ", mean "
           << text(numbers.mean()) << '\n';
    if (!error.empty()) output << "  the quartiles are " << error << '\n';
    const Histogram histogram = numbers.histogram();
    if (histogram.counts.size() > 1) output << "  [" << bars(histogram.counts, characters) << "]\n";
}

void printLabels(std::ostream& output, const LabelCounts& labels, Characters characters)
{
    constexpr std::size_t widest = 30;
    constexpr std::size_t widestBar = 30;
    const std::vector<LabelCount> shownLabels = labels.mostFrequent(mostLabelsShown);
    std::uint64_t others = labels.count();
    std::size_t width = 0;
    for (const LabelCount& label : shownLabels) {
        width = std::max(width, std::min(widest, widthOf(shown(label.text))));
        others -= label.count;
    }
    const std::size_t countWidth = shownLabels.empty() ? 0 : digits(shownLabels.front().count).size();
    for (const LabelCount& label : shownLabels) {
        const std::string text = shown(label.text);
        const std::string count = digits(label.count);
        output << "  " << text << std::string(width - std::min(width, widthOf(text)), ' ') << "  "
               << std::string(countWidth - count.size(), ' ') << count << "  "
               << bar(label.count, shownLabels.front().count, widestBar, characters) << '\n';
    }
    if (others > 0) output << "  and " << digits(others) << " of other labels\n";
}

void printOddCells(std::ostream& output, const ColumnProfile& column)
{
    const std::pair<const char*, std::uint64_t> counts[] = {
        {"number", column.numberSummary().count()}, {"date", column.dateSummary().count()}, {"other text", column.labelCounts().count()}};
    std::string list;
    for (const auto& [what, count] : counts)
        if (count > 0) list += (list.empty() ? "" : ", ") + counted(count, what, std::string(what) + "s");
    output << "  " << list << "; the first cells unlike most:\n";
    for (const OddCell& cell : column.oddCells()) output << "    line " << cell.line << ": '" << cell.text << "'\n";
}

void printColumn(std::ostream& output, const ColumnProfile& column, std::size_t number, Characters characters)
{
    output << '\n' << number << ". " << shown(column.title()) << ": " << nameOf(column.kind()) << '\n';
    output << "  rows " << digits(column.rows()) << ", missing " << digits(column.missing()) << ", distinct " << distinctText(column)
           << '\n';
    if (column.kind() == CellKind::mixed) printOddCells(output, column);
    if (const NumberSummary* const numbers = measured(column)) printFigures(output, column, *numbers, characters);
    if (column.kind() == CellKind::label) printLabels(output, column.labelCounts(), characters);
    for (const std::string& note : notesOf(column)) output << "  " << note << '\n';
}

}  // namespace

void printView(std::ostream& output, const TableView& view, Characters characters)
{
    const TableProfile& profile = view.profile;
    output << view.name << ": " << counted(profile.rows, "row", "rows") << ", " << counted(profile.columns.size(), "column", "columns")
           << '\n';
    for (std::size_t i = 0; i < profile.columns.size(); ++i) printColumn(output, profile.columns[i], i + 1, characters);
    output << (view.commands.empty() ? "\nNo analysis fits these columns as they are.\n"
                                     : "\nCommand lines that fit; nothing has been tested:\n");
    for (const std::string& command : view.commands) output << "  " << command << '\n';
}

}  // namespace wqstat
