#include "html_page_of_several.h"

#include "figures.h"
#include "holm.h"
#include "html_parts.h"

#include "pictures/gnuplot.h"

#include <algorithm>

namespace wqstat {

namespace {

constexpr std::size_t mostBytes = mostBytesOfPage;
constexpr std::size_t mostBytesOfTable = 200 * 1024;
constexpr std::size_t bytesOfHead = 16 * 1024;  // and of the sentences around the table
constexpr std::size_t mostBytesOfReport = 24 * 1024;
constexpr std::size_t mostRowsOfSection = 20;
constexpr std::size_t mostBytesOfMultiples = 150 * 1024;
constexpr std::size_t leastBytesOfPicture = 8 * 1024;
constexpr int digitsOfP = 3;

/** Lays out one page: how much of what there is has room on it. */
class SeveralLayout {
public:
    explicit SeveralLayout(const SeveralContent& given) : content(given)
    {
        for (const OneOfSeveral& one : content.analyses) {
            documents.push_back(std::to_string(made));
            made += one.failure.empty() ? 1U : 0U;
            p.push_back(one.p);
        }
        adjusted = holmAdjusted(p);
        sections.resize(content.analyses.size());
    }

    std::string page()
    {
        HtmlWriter origin;
        if (!content.notes.empty()) notes(origin);
        howItWasMade(origin, content.version, content.commandLine, content.files);
        bytesOfTable = std::min(mostBytesOfTable, mostBytes - std::min(mostBytes, origin.size() + bytesOfHead));
        HtmlWriter results;
        begin(results);
        table(results);
        const std::size_t used = results.size() + origin.size();
        drawMultiples(used);
        fillSections(used + multiples.size());
        HtmlWriter html;
        begin(html);
        html.append(multiples);
        table(html);
        for (const HtmlWriter& section : sections) html.append(section);
        html.append(origin).close().close().close();
        return html.page();
    }

private:
    bool hasSection(std::size_t i) const { return sections[i].size() > 0; }
    static std::string anchor(std::size_t i) { return "analysis-" + std::to_string(i + 1); }
    std::string documentOf(std::size_t i) const { return documents[i] + "/"; }

    /** All that stands before the pictures. */
    void begin(HtmlWriter& html) const
    {
        pageHead(html, content.title);
        html.open("body").open("main").open("header").sentence("h1", content.heading);
        if (const Sentence question = commonQuestion(); !question.empty()) html.sentence("p", question, {{"class", "question"}});
        html.element("p", summary(), {{"class", "summary"}}).close();
        contents(html);
    }

    /** The question, where it is the same for all. */
    Sentence commonQuestion() const
    {
        Sentence question;
        for (const OneOfSeveral& one : content.analyses) {
            if (!one.failure.empty()) continue;
            if (!question.empty() && one.question != question) return {};
            question = one.question;
        }
        return question;
    }

    /** "3 analyses, 1 failed; exact p below 0.05: 2 of 3; adjusted by Holm's method: 1" */
    std::string summary() const
    {
        const auto count = [](const std::vector<double>& all, auto holds) {
            return digits(static_cast<std::size_t>(std::count_if(all.begin(), all.end(), holds)));
        };
        const auto isBelow = [this](double value) { return value < content.alpha; };
        const std::string tests = count(p, [](double value) { return !std::isnan(value); });
        std::string text = counted(made, "analysis", "analyses");
        if (const std::size_t failed = content.analyses.size() - made; failed > 0) text += ", " + digits(failed) + " failed";
        if (tests != "0")
            text += "; exact p below " + figures(content.alpha) + ": " + count(p, isBelow) + " of " + tests +
                    "; adjusted by Holm's method: " + count(adjusted, isBelow);
        return text;
    }

    void contents(HtmlWriter& html) const
    {
        html.open("nav", {{"aria-label", "contents"}}).open("ul", {{"class", "contents"}});
        const auto line = [&html](const std::string& to, const Sentence& text) {
            html.open("li").sentence("a", text, {{"href", "#" + to}}).close();
        };
        if (multiples.size() > 0) line("multiples", "Side by side");
        line("all", "All results");
        for (std::size_t i = 0; i < sections.size(); ++i)
            if (hasSection(i)) line(anchor(i), Sentence::name(content.analyses[i].name));
        html.close().close();
        const auto shown = static_cast<std::size_t>(
            std::count_if(sections.begin(), sections.end(), [](const HtmlWriter& section) { return section.size() > 0; }));
        if (shown == 0 && made > 0)
            html.element("p", "The analyses have no sections of their own here, which would make the page larger than 300 KiB.");
        else if (shown < made)
            html.element("p", "The first " + digits(shown) + " of " + digits(made) +
                                  " have sections of their own here; more would make the page larger than 300 KiB.");
    }

    void table(HtmlWriter& html) const
    {
        html.open("section", {{"class", "all"}, {"id", "all"}}).element("h2", "All results").open("table").open("thead").open("tr");
        for (const char* const column : {"analysis", "result", "p", "p, Holm"}) html.element("th", column, {{"scope", "col"}});
        html.close().close().open("tbody");
        std::size_t shown = 0;
        for (const std::size_t least = html.size(); shown < content.analyses.size(); ++shown) {
            HtmlWriter next;
            row(next, shown);
            if (html.size() - least + next.size() > bytesOfTable) break;
            html.append(next);
        }
        html.close().close();
        if (shown < content.analyses.size())
            html.element("p", "These are the first " + digits(shown) + " of " + digits(content.analyses.size()) +
                                  " analyses; more would make the page larger than 300 KiB. wqstat " + content.command +
                                  " --tsv prints a row for each.");
        if (std::any_of(p.begin(), p.end(), [](double value) { return !std::isnan(value); }))
            html.element(
                "p",
                "Exact p, and the same adjusted for the number of tests by Holm's method (1979): reject where the adjusted p is below " +
                    figures(content.alpha) + "; then the probability that this page rejects any true hypothesis is at most " +
                    figures(100.0 * content.alpha) + " %.");
        html.close();
    }

    void row(HtmlWriter& html, std::size_t i) const
    {
        const OneOfSeveral& one = content.analyses[i];
        html.open("tr").open("th", {{"scope", "row"}});
        if (hasSection(i))
            html.name("a", one.name, {{"href", "#" + anchor(i)}});
        else
            html.words(Sentence::name(one.name));
        html.close();
        if (!one.failure.empty()) {
            html.sentence("td", "failed: " + one.failure, {{"colspan", "3"}, {"class", "failed"}}).close();
            return;
        }
        html.open("td");
        textWithFigures(html, one.summary);
        for (const std::string& sentence : one.differences) html.element("p", sentence, {{"class", "differs"}});
        html.close();
        if (one.pathOfP.empty()) {
            html.element("td", "n/a").element("td", "n/a");
        } else {
            figureCell(html, one.p, documentOf(i) + one.pathOfP, 0.0, digitsOfP);
            figureCell(html, adjusted[i], documentOf(i) + "pHolm", 0.0, digitsOfP);
        }
        html.close();
    }

    /** Small pictures with the same axes, as many as have room. */
    void drawMultiples(std::size_t used)
    {
        constexpr std::size_t sentences = 1024;  // about these pictures, and of what else has no room
        const std::size_t most = std::min(mostBytesOfMultiples, mostBytes - std::min(mostBytes, used + sentences));
        if (most < 2 * leastBytesOfPicture) return;
        HtmlWriter& html = multiples;
        std::vector<std::size_t> which;
        std::vector<Chart> charts;
        for (std::size_t i = 0; i < content.analyses.size(); ++i) {
            if (!content.analyses[i].multiple) continue;
            which.push_back(i);
            charts.push_back(content.analyses[i].multiple->chart);
        }
        if (which.empty()) return;
        const Chart::Shared shared = Chart::shareAxes(charts);
        html.open("section", {{"class", "multiple"}, {"id", "multiples"}}).element("h2", "Side by side");
        html.open("ul", {{"class", "multiples"}});
        std::size_t drawn = 0;
        for (; drawn < which.size(); ++drawn) {
            Picture picture = *content.analyses[which[drawn]].multiple;
            picture.commands = charts[drawn].commands();
            const SvgElement svg = inlineSvg(picture, "small-" + std::to_string(which[drawn] + 1) + "-", content.fileName);
            HtmlWriter item;
            item.open("li").name("p", content.analyses[which[drawn]].name).open("figure").picture(svg).close().close();
            if (html.size() + item.size() > most && drawn > 0) break;
            html.append(item);
        }
        html.close();
        if (drawn < made) html.element("p", "These are the first " + digits(drawn) + " of " + digits(made) + ".");
        if (!shared.x || !shared.y) html.element("p", "Axes differ from picture to picture: the data are of too many kinds to share them.");
        html.close();
    }

    void notes(HtmlWriter& html) const
    {
        heading(html, "data", "Data", "h2");
        html.open("ul");
        noteItems(html, content.notes);
        html.close().close();
    }

    HtmlWriter sectionOf(std::size_t i, const SvgElement* picture) const
    {
        const OneOfSeveral& one = content.analyses[i];
        HtmlWriter html;
        html.open("section", {{"class", "analysis"}, {"id", anchor(i)}}).name("h2", one.name);
        html.sentence("p", one.content->heading).sentence("p", one.question, {{"class", "question"}});
        summaryLine(html, one.summary);
        heading(html, "picture", "Picture", "h3");
        if (picture != nullptr)
            html.open("figure").picture(*picture).close().close();
        else
            html.element("p", "It has no room on this page.").close();
        resultTable(html, *one.content, "h3", documentOf(i), mostRowsOfSection);
        html.append(reportSection(one.content->report, "h3", mostBytesOfReport));
        dataNotes(html, *one.content, "h3");
        html.close();
        return html;
    }

    /** The first sections that have room, and then those of their pictures that have. */
    void fillSections(std::size_t used)
    {
        constexpr std::size_t listing = 120;  // in the contents and as a link of the table, besides twice the name
        std::vector<std::size_t> which;
        for (std::size_t i = 0; i < content.analyses.size() && used < mostBytes; ++i) {
            if (!content.analyses[i].content) continue;
            const HtmlWriter section = sectionOf(i, nullptr);
            used += section.size() + listing + 2 * content.analyses[i].name.size();
            if (used >= mostBytes) break;
            sections[i] = section;
            which.push_back(i);
        }
        for (const std::size_t i : which) {
            if (used + leastBytesOfPicture >= mostBytes) return;
            const SvgElement svg = inlineSvg(*content.analyses[i].picture, "picture-" + std::to_string(i + 1) + "-", content.fileName);
            if (used + svg.markup().size() >= mostBytes) continue;
            used += svg.markup().size();
            sections[i] = sectionOf(i, &svg);
        }
    }

    const SeveralContent& content;
    std::size_t made = 0;
    std::vector<std::string> documents;  // the places of the analyses in the JSON array
    std::vector<double> p;
    std::vector<double> adjusted;
    std::size_t bytesOfTable = 0;      // that have room
    HtmlWriter multiples;              // empty where there are none
    std::vector<HtmlWriter> sections;  // empty where there is none
};

}  // namespace

std::string htmlPageOfSeveral(const SeveralContent& content) { return SeveralLayout(content).page(); }

}  // namespace wqstat
