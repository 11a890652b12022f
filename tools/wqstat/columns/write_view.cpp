#include "table_view.h"

namespace wqstat {

namespace {

/** A number, or a date as text; nothing where the column has neither. */
void writeFigure(ResultWriter& writer, std::string_view name, const ColumnProfile& column, const NumberSummary* numbers, double value)
{
    if (numbers == nullptr)
        writer.nothing(name);
    else if (numbers == &column.numberSummary())
        writer.number(name, value);
    else
        writer.text(name, figureOf(column, value));
}

void writeHistogram(ResultWriter& writer, const ColumnProfile& column, const NumberSummary* numbers)
{
    const Histogram histogram = numbers == nullptr ? Histogram{0.0, 0.0, {}} : numbers->histogram();
    if (histogram.counts.empty() && !writer.hasFixedMembers()) {
        writer.nothing("histogram");
        return;
    }
    writer.object("histogram", [&] {
        writeFigure(writer, "from", column, numbers, histogram.from);
        if (numbers == nullptr)
            writer.nothing("width");
        else
            writer.number("width", histogram.width);
        writer.array("counts", histogram.counts, [&writer](std::uint64_t count) { writer.member("", count); });
    });
}

}  // namespace

void writeColumn(ResultWriter& writer, const ColumnProfile& column, std::size_t number)
{
    const NumberSummary* const numbers = measured(column);
    const NumberSummary none;
    const NumberSummary& summary = numbers == nullptr ? none : *numbers;
    const auto figure = [&](std::string_view name, double value) { writeFigure(writer, name, column, numbers, value); };
    writer.member("number", number);
    writer.member("title", column.title());
    writer.text("kind", nameOf(column.kind()));
    writer.member("rows", column.rows());
    writer.member("missing", column.missing());
    if (const std::optional<std::size_t> distinct = column.distinct())
        writer.member("distinct", *distinct);
    else
        writer.nothing("distinct");
    const Quartiles quartiles = summary.quartiles();
    figure("least", summary.least());
    writer.object("quartiles", [&] {
        figure("lower", quartiles.lower);
        figure("median", quartiles.median);
        figure("upper", quartiles.upper);
    });
    figure("greatest", summary.greatest());
    figure("mean", summary.mean());
    if (numbers == nullptr)
        writer.nothing("rankError");
    else
        writer.member("rankError", summary.rankError());
    writeHistogram(writer, column, numbers);
    writer.array("labels", column.labelCounts().mostFrequent(mostLabelsShown), [&writer](const LabelCount& label) {
        writer.object("", [&] {
            writer.member("text", label.text);
            writer.member("count", label.count);
        });
    });
    writer.array("odd", column.kind() == CellKind::mixed ? column.oddCells() : std::vector<OddCell>(), [&writer](const OddCell& cell) {
        writer.object("", [&] {
            writer.member("line", cell.line);
            writer.member("text", cell.text);
        });
    });
    writer.texts("notes", notesOf(column));
}

}  // namespace wqstat
