#include "table_view.h"

#include "command_line/arguments.h"
#include "pictures/colours.h"
#include "results/figures.h"
#include "results/html_parts.h"

#include <algorithm>
#include <cmath>

namespace wqstat {

namespace {

constexpr double canvasWidth = 480.0;
constexpr double canvasHeight = 100.0;

/** A bar for each count. @param description for those who do not see it */
void drawBars(HtmlWriter& html, const std::vector<std::uint64_t>& counts, const std::string& description)
{
    const std::uint64_t largest = counts.empty() ? 0 : *std::max_element(counts.begin(), counts.end());
    if (largest == 0) return;
    const double width = canvasWidth / static_cast<double>(counts.size());
    html.open("figure").open("svg", {{"role", "img"}, {"viewBox", "0 0 " + figures(canvasWidth) + " " + figures(canvasHeight)}});
    html.element("title", description);
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const double height = canvasHeight * static_cast<double>(counts[i]) / static_cast<double>(largest);
        html.open("rect", {{"x", figures(static_cast<double>(i) * width)},
                           {"y", figures(canvasHeight - height)},
                           {"width", figures(0.95 * width)},
                           {"height", figures(height)},
                           {"fill", colour::blue}});
        html.close();
    }
    html.close().close();
}

void figureRow(HtmlWriter& html, const std::string& label, double value, const std::string& path, double spread)
{
    html.open("tr").element("th", label, {{"scope", "row"}});
    figureCell(html, value, path, spread);
    html.close();
}

void textRow(HtmlWriter& html, const std::string& label, const std::string& text)
{
    html.open("tr").element("th", label, {{"scope", "row"}}).element("td", text).close();
}

/** The figures of one column in a table. */
class ColumnTable {
public:
    ColumnTable(HtmlWriter& writer, const ColumnProfile& profile, std::size_t index)
        : html(writer),
          column(profile),
          path("columns/" + std::to_string(index) + "/")
    {
        html.open("table");
        html.open("thead").open("tr");
        for (const char* const title : {"figure", "value"}) html.element("th", title, {{"scope", "col"}});
        html.close().close();
        html.open("tbody");
    }

    void count(const std::string& label, const std::string& member, std::uint64_t value)
    {
        figureRow(html, label, static_cast<double>(value), path + member, 0.0);
    }

    void figure(const std::string& label, const std::string& member, double value)
    {
        if (measured(column) == &column.numberSummary())
            figureRow(html, label, value, path + member, spread);
        else
            textRow(html, label, figureOf(column, value));
    }

    void setSpread(double ofFigures) { spread = ofFigures; }

    void text(const std::string& label, const std::string& value) { textRow(html, label, value); }

    void close() { html.close().close(); }

private:
    HtmlWriter& html;
    const ColumnProfile& column;
    std::string path;
    double spread = 0.0;
};

void fillFigures(ColumnTable& table, const NumberSummary& numbers)
{
    const Quartiles quartiles = numbers.quartiles();
    table.setSpread(spreadOf(numbers, quartiles));
    const char* const about = numbers.rankError() > 0 ? ", about" : "";
    table.figure("least", "least", numbers.least());
    table.figure(std::string("lower quartile") + about, "quartiles/lower", quartiles.lower);
    table.figure(std::string("median") + about, "quartiles/median", quartiles.median);
    table.figure(std::string("upper quartile") + about, "quartiles/upper", quartiles.upper);
    table.figure("greatest", "greatest", numbers.greatest());
    table.figure("mean", "mean", numbers.mean());
    if (numbers.rankError() > 0) table.text("quartiles", errorText(numbers));
}

void drawColumn(HtmlWriter& html, const ColumnProfile& column)
{
    if (const NumberSummary* const numbers = measured(column)) {
        const Histogram histogram = numbers->histogram();
        const double end = std::isfinite(numbers->greatest()) ? numbers->greatest() : histogram.to();
        const double spread = end - histogram.from;
        if (histogram.counts.size() > 1)
            drawBars(html, histogram.counts,
                     "How often which values of " + shown(column.title()) + " occur, in " + std::to_string(histogram.counts.size()) +
                         " classes of equal width from " + figureOf(column, histogram.from, spread) + " to " +
                         figureOf(column, end, spread));
    }
    if (column.kind() != CellKind::label) return;
    std::vector<std::uint64_t> counts;
    std::string list;
    for (const LabelCount& label : column.labelCounts().mostFrequent(mostLabelsShown)) {
        counts.push_back(label.count);
        list += (list.empty() ? "" : ", ") + shown(label.text) + " " + digits(label.count);
    }
    drawBars(html, counts, "How often the most frequent labels of " + shown(column.title()) + " occur: " + list);
}

void columnSection(HtmlWriter& html, const ColumnProfile& column, std::size_t index)
{
    html.open("section", {{"class", "column"}});
    html.sentence("h2", Sentence::name(shown(column.title())) + ": " + nameOf(column.kind()));
    drawColumn(html, column);
    ColumnTable table(html, column, index);
    table.count("rows", "rows", column.rows());
    table.count("missing", "missing", column.missing());
    if (const std::optional<std::size_t> distinct = column.distinct())
        table.count("distinct", "distinct", *distinct);
    else
        table.text("distinct", distinctText(column));
    if (const NumberSummary* const numbers = measured(column)) fillFigures(table, *numbers);
    if (column.kind() == CellKind::label)
        for (const LabelCount& label : column.labelCounts().mostFrequent(mostLabelsShown))
            table.text(shown(label.text), digits(label.count));
    table.close();
    if (column.kind() == CellKind::mixed) {
        if (const NumberSummary* const numbers = measured(column))
            html.element("p",
                         std::string("Least, quartiles, greatest and mean are those of its ") +
                             (numbers == &column.numberSummary() ? "numbers" : "dates") + " alone.",
                         {{"class", "warns"}});
        html.element("p", "The first cells unlike most:", {{"class", "warns"}}).open("ul");
        for (const OddCell& cell : column.oddCells())
            html.sentence("li", "line " + std::to_string(cell.line) + ": " + Sentence::name(inQuotes(cell.text)));
        html.close();
    }
    for (const std::string& note : notesOf(column)) html.element("p", note, {{"class", "warns"}});
    html.close();
}

/** Sections of the first columns, of so many bytes at most, and how many there are besides. */
void writeColumns(HtmlWriter& html, const std::vector<ColumnProfile>& columns, std::size_t room)
{
    constexpr std::size_t sentence = 400;
    std::size_t shown = 0;
    for (std::size_t used = sentence; shown < columns.size(); ++shown) {
        HtmlWriter section;
        columnSection(section, columns[shown], shown);
        used += section.size();
        if (used > room) break;
        html.append(section);
    }
    if (shown < columns.size())
        html.element("p", "These are the first " + counted(shown, "column", "columns") + "; " + digits(columns.size() - shown) +
                              " more would make the page larger than 300 KiB. wqstat columns --json or --tsv prints all of them.");
}

void writeCommands(HtmlWriter& html, const TableView& view)
{
    heading(html, "commands", "Command lines that fit", "h2");
    if (view.commands.empty()) html.element("p", "No analysis fits these columns as they are.");
    for (const std::string& command : view.commands) html.element("pre", command);
    html.close();
}

}  // namespace

std::string viewPage(const TableView& view, const PageOrigin& origin)
{
    const TableProfile& profile = view.profile;
    HtmlWriter html;
    pageHead(html, "Columns of " + view.name);
    html.open("body").open("main");
    html.open("header").name("h1", view.name);
    html.element("p", "What do the columns of the table hold?", {{"class", "question"}});
    html.element("p",
                 counted(profile.rows, "row", "rows") + ", " + counted(profile.columns.size(), "column", "columns") +
                     "; nothing has been tested",
                 {{"class", "summary"}});
    html.close();
    HtmlWriter end;
    writeCommands(end, view);
    howItWasMade(end, origin.version, origin.commandLine, {origin.file});
    writeColumns(html, profile.columns, mostBytesOfPage - std::min(mostBytesOfPage, html.size() + end.size()));
    html.append(end);
    html.close().close().close();
    return html.page();
}

}  // namespace wqstat
