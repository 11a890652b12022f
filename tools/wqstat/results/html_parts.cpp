#include "html_parts.h"

#include "command_line/arguments.h"
#include "results/figures.h"
#include "results/markup_text.h"

#include <algorithm>
#include <cmath>
#include <variant>

namespace wqstat {

namespace {

constexpr char styleSheet[] = R"(
:root { color-scheme: light dark; --ink: #1b1b1b; --paper: #ffffff; --soft: #f2f2ef; --rule: #c8c8c2; --mark: #8a3400; --link: #004a75; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #ececec; --paper: #17181a; --soft: #25272a; --rule: #50545a; --mark: #ffb38a; --link: #9cd0f5; }
}
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 1rem; max-width: 52rem; font: 1rem/1.5 system-ui, sans-serif; color: var(--ink); background: var(--paper);
  overflow-wrap: anywhere; }
h1 { font-size: 1.5rem; line-height: 1.25; margin: 0 0 .25rem; }
h2 { font-size: 1.15rem; margin: 2rem 0 .5rem; border-bottom: 1px solid var(--rule); }
.question { font-size: 1.1rem; margin: .5rem 0; }
.summary { font-size: 1.1rem; font-weight: 600; margin: .5rem 0; }
.differs, .warns { color: var(--mark); font-weight: 600; border-left: .25rem solid; padding-left: .75rem; }
figure { margin: 0; background: #ffffff; border: 1px solid var(--rule); }
figure svg { display: block; width: 100%; height: auto; }
h3 { font-size: 1rem; margin: 1.25rem 0 .5rem; }
a { color: var(--link); }
ul.contents { padding-left: 1.25rem; }
.multiples { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(15rem, 100%), 1fr)); gap: 1rem; list-style: none; margin: 0; padding: 0; }
.multiples p { margin: 0 0 .25rem; }
.failed { color: var(--mark); }
table { border-collapse: collapse; width: 100%; }
caption { text-align: left; padding: 1.25rem 0 .25rem; font-weight: 600; }
.rows thead th { overflow-wrap: normal; }
@media (max-width: 40rem) { .rows { font-size: .75rem; } .rows th, .rows td { padding-right: .4rem; } }
@media (max-width: 36rem) { .wide tr { display: grid; grid-template-columns: 1fr 1fr; } }
th, td { text-align: left; vertical-align: top; padding: .25rem .75rem .25rem 0; border-bottom: 1px solid var(--rule); font-weight: 400; }
thead th { font-weight: 600; }
.all thead th { overflow-wrap: normal; }
.all td { overflow-wrap: break-word; }
.all td p { margin: .25rem 0 0; }
.all td.failed { overflow-wrap: anywhere; }
@media (max-width: 40rem) { .all table { font-size: .75rem; } .all th, .all td { padding-right: .4rem; } }
data, .all td span, .summary span { white-space: nowrap; }
td { font-variant-numeric: tabular-nums; }
pre { background: var(--soft); padding: .75rem; font: .8rem/1.4 ui-monospace, monospace; white-space: pre-wrap; overflow-wrap: anywhere; margin: 0; }
dl { margin: 0; }
dt { font-weight: 600; }
dd { margin: 0 0 .5rem; }
@page { size: A4; margin: 18mm; }
@media print {
  :root { --ink: #000000; --paper: #ffffff; --soft: #ffffff; --rule: #999999; --mark: #000000; }
  body { max-width: none; padding: 0; font-size: 10pt; }
  header, section, .multiples li { break-inside: avoid; }
  section.all, section.multiple, section.analysis { break-inside: auto; }
  section.report { break-before: page; break-inside: auto; }
  h1, h2, h3 { break-after: avoid; }
  tr { break-inside: avoid; }
}
)";

}  // namespace

void pageHead(HtmlWriter& html, const std::string& title)
{
    html.open("html", {{"lang", "en"}}).open("head").style(styleSheet).element("title", title).close();
}

namespace {

std::string figureText(double value, double spread, int leastDigits)
{
    const bool isWhole = std::fabs(value) < 1e15 && value == std::round(value);
    if (isWhole) return figures(value, 15);
    const std::string text = figures(value, digitsWithin(value, spread, 3, leastDigits));
    return text == "1" || text == "-1" ? coefficient(value) : text;
}

/** What stands for a probability that is neither 0 nor 1 but too near to them for a double; empty for other figures. */
std::string_view besideTheDoubles(double value, const std::string& path)
{
    const std::string name = path.substr(path.find_last_of('/') + 1);
    const bool isP = name[0] == 'p' && (name.size() == 1 || (name[1] >= 'A' && name[1] <= 'Z'));  // or p of something, such as pB
    if (isP && value == 0.0) return belowAllProbabilities;
    return name == "lowerTail" && value == 1.0 ? nextToOne : "";
}

}  // namespace

void figureCell(HtmlWriter& html, double value, const std::string& path, double spread, int leastDigits)
{
    const std::string_view words = besideTheDoubles(value, path);
    html.open("td").element("data", words.empty() ? figureText(value, spread, leastDigits) : std::string(words),
                            {{"value", std::isnan(value) ? "NaN" : shortest(value)}, {"class", path}});
    html.close();
}

void textWithFigures(HtmlWriter& html, std::string_view text)
{
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        const bool mayBreak = word.find('-') != std::string_view::npos && word.find_first_of("0123456789") != std::string_view::npos;
        if (mayBreak)
            html.inlined("span", word);
        else
            html.text(word);
        text.remove_prefix(word.size());
        const std::size_t gap = std::min(text.find_first_not_of(' '), text.size());
        html.text(text.substr(0, gap));
        text.remove_prefix(gap);
    }
}

void summaryLine(HtmlWriter& html, std::string_view summary)
{
    html.open("p", {{"class", "summary"}});
    textWithFigures(html, summary);
    html.close();
}

namespace {

void row(HtmlWriter& html, const std::string& label, double value, const std::string& path, double spread)
{
    html.open("tr").element("th", label, {{"scope", "row"}});
    figureCell(html, value, path, spread);
    html.close();
}

void decisionRow(HtmlWriter& html, const std::string& label, Textbook::Decision accepted, const std::string& path)
{
    html.open("tr").element("th", label, {{"scope", "row"}}).open("td");
    html.element("span", !accepted ? "none" : *accepted ? "accepted" : "rejected", {{"class", path}});
    html.close().close();
}

}  // namespace

void heading(HtmlWriter& html, MarkupWord section, std::string_view text, MarkupWord level)
{
    html.open("section", {{"class", std::string(section.text())}}).element(level, text);
}

namespace {

void tableHead(HtmlWriter& html, const std::vector<std::string>& heads)
{
    html.open("thead").open("tr");
    for (const std::string& head : heads) html.element("th", head, {{"scope", "col"}});
    html.close().close();
}

/** Whether its figures are so long that the columns have no room beside each other on a telephone. */
bool isWide(const PageRows& table)
{
    constexpr std::size_t most = 12;
    for (const PageRows::Row& row : table.rows)
        for (const PageRows::Cell& cell : row.cells)
            if (figureText(cell.value, cell.spread, digitsShown).size() > most) return true;
    return false;
}

/** A table with a row for each group or class, of which so many are shown. */
void rowTable(HtmlWriter& html, const PageContent& content, const std::string& document, std::size_t mostRows)
{
    const PageRows& table = content.rows;
    html.open("table", {{"class", isWide(table) ? "rows wide" : "rows"}}).element("caption", table.caption);
    tableHead(html, table.heads);
    html.open("tbody");
    const std::size_t shown = std::min(table.rows.size(), mostRows);
    for (std::size_t i = 0; i < shown; ++i) {
        html.open("tr").sentence("th", table.rows[i].name, {{"scope", "row"}});
        for (const PageRows::Cell& cell : table.rows[i].cells) figureCell(html, cell.value, document + cell.path, cell.spread);
        html.close();
    }
    html.close().close();
    if (shown < table.total)
        html.element("p", "These are the first " + counted(shown, table.item, table.items) + "; " + digits(table.total - shown) +
                              " more are left out here. wqstat " + content.command + " --json prints all of them.");
}

}  // namespace

void resultTable(HtmlWriter& html, const PageContent& content, MarkupWord level, const std::string& document, std::size_t mostRows)
{
    heading(html, "results", "Results", level);
    html.open("table");
    tableHead(html, {"figure", "value"});
    html.open("tbody");
    for (const Estimate& estimate : content.statement.estimates)
        row(html, estimate.label, estimate.value, document + estimate.path, estimate.spread);
    if (content.textbook) {
        for (const Textbook::Line& line : content.textbook->lines()) {
            const std::string path = document + "textbook/" + line.path;
            if (const double* const value = std::get_if<double>(&line.content))
                row(html, line.label, *value, path, line.spread);
            else
                decisionRow(html, line.label, std::get<Textbook::Decision>(line.content), path);
        }
    }
    html.close().close();
    for (const Sentence& line : content.key) html.sentence("p", line);
    if (content.rows.total > 0) rowTable(html, content, document, mostRows);
    if (content.textbook) {
        for (const std::string& sentence : content.textbook->differenceSentences()) html.element("p", sentence, {{"class", "differs"}});
        for (const std::string& warning : content.textbook->warnings()) html.element("p", "Warning: " + warning, {{"class", "warns"}});
    }
    html.close();
}

HtmlWriter reportSection(const std::string& report, MarkupWord level, std::size_t room)
{
    constexpr std::size_t ownMarkup = 400;
    HtmlWriter whole;
    heading(whole, "report", "Report", level);
    whole.verbatim(report).close();
    if (whole.size() <= room) return whole;

    std::size_t end = 0;
    std::size_t lines = 0;
    for (std::size_t used = ownMarkup; end < report.size(); ++lines) {
        const std::size_t next = std::min(report.find('\n', end), report.size() - 1) + 1;
        used += markupText(std::string_view(report).substr(end, next - end)).size();
        if (used > room) break;
        end = next;
    }
    const auto all = static_cast<std::size_t>(std::count(report.begin(), report.end(), '\n'));
    HtmlWriter html;
    heading(html, "report", "Report", level);
    html.verbatim(std::string_view(report).substr(0, end));
    html.element("p", "These are the first " + counted(lines, "line", "lines") + " of the report; " + digits(all - lines) +
                          " more would make the page larger than 300 KiB. The report is printed whole beside the page.");
    html.close();
    return html;
}

void noteItems(HtmlWriter& html, const std::vector<Sentence>& notes)
{
    constexpr std::size_t mostNotes = 50;
    constexpr std::size_t mostOfNotes = 24 * 1024;
    const std::size_t begin = html.size();
    std::size_t shown = 0;
    for (; shown < std::min(notes.size(), mostNotes); ++shown) {
        HtmlWriter item;
        item.sentence("li", notes[shown]);
        if (html.size() - begin + item.size() > mostOfNotes) break;
        html.append(item);
    }
    if (shown < notes.size()) html.element("li", digits(notes.size() - shown) + " more, which standard error has");
}

void dataNotes(HtmlWriter& html, const PageContent& content, MarkupWord level)
{
    heading(html, "data", "Data", level);
    html.open("ul");
    for (const PageFile& file : content.files) html.sentence("li", Sentence::name(file.name) + ": " + file.read);
    noteItems(html, content.warnings);
    const bool warned = content.leavesOut || !content.warnings.empty() || (content.textbook && !content.textbook->warnings().empty());
    if (!warned) html.element("li", "Nothing was left out, and nothing was read in a way that may surprise.");
    html.close().close();
}

namespace {

void fingerprint(HtmlWriter& html, const PageFile& file)
{
    html.sentence("dt", "SHA-256 of " + Sentence::name(file.name));
    if (file.sha256.empty()) {
        html.element("dd", "none: it could not be read to its end");
        return;
    }
    html.element("dd", file.sha256);
    if (file.place == PageFile::Place::disk) return;
    html.element("dd", "of all bytes as they came: what was packed was not unpacked for it");
    if (file.place == PageFile::Place::stream)
        html.element("dd", "It was no file on a disk: the command line makes this page again where the same bytes are given there again.");
}

/** Names of files may be long, and there may be many of them. */
void fingerprints(HtmlWriter& html, const std::vector<PageFile>& files)
{
    constexpr std::size_t mostOfFingerprints = 48 * 1024;
    const std::size_t begin = html.size();
    std::size_t shown = 0;
    for (; shown < files.size(); ++shown) {
        HtmlWriter one;
        fingerprint(one, files[shown]);
        if (html.size() - begin + one.size() > mostOfFingerprints) break;
        html.append(one);
    }
    if (shown < files.size())
        html.element("dt", "SHA-256").element("dd", "of " + digits(files.size() - shown) + " more files it is left out here");
}

void commandThatMakesIt(HtmlWriter& html, const std::string& commandLine, const std::vector<PageFile>& files)
{
    constexpr std::size_t mostOfCommand = 100 * 1024;
    const bool isGiven =
        std::any_of(files.begin(), files.end(), [](const PageFile& file) { return file.place == PageFile::Place::standardInput; });
    html.element("dt", "Command line");
    if (markupText(commandLine).size() > mostOfCommand) {
        html.element("dd", "It is left out here: its " + digits(commandLine.size()) + " bytes would make the page larger than 300 KiB.");
        return;
    }
    html.open("dd").open("pre").element("code", commandLine + (isGiven ? " < FILE" : "")).close().close();
    if (isGiven) html.element("dd", "The data came from standard input: FILE is any file with the same bytes.");
}

}  // namespace

void howItWasMade(HtmlWriter& html, const std::string& version, const std::string& commandLine, const std::vector<PageFile>& files)
{
    heading(html, "made", "How this page was made", "h2");
    html.open("dl");
    html.element("dt", "Program").element("dd", version);
    commandThatMakesIt(html, commandLine, files);
    fingerprints(html, files);
    html.close().close();
}

}  // namespace wqstat
