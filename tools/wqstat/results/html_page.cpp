#include "html_page.h"

#include "html_parts.h"

#include <algorithm>
#include <cstddef>

namespace wqstat {

std::string htmlPage(const PageContent& content)
{
    HtmlWriter html;
    pageHead(html, content.title);
    html.open("body").open("main");
    html.open("header").sentence("h1", content.heading);
    html.sentence("p", content.statement.question, {{"class", "question"}});
    summaryLine(html, content.statement.summary);
    html.close();
    heading(html, "picture", "Picture", "h2");
    html.open("figure").picture(content.picture).close().close();
    resultTable(html, content, "h2", "", PageRows::mostShown);
    HtmlWriter origin;
    dataNotes(origin, content, "h2");
    howItWasMade(origin, content.version, content.commandLine, content.files);
    constexpr std::size_t end = 200;
    const std::size_t used = html.size() + origin.size() + end;
    html.append(reportSection(content.report, "h2", mostBytesOfPage - std::min(used, mostBytesOfPage)));
    html.append(origin).close().close().close();
    return html.page();
}

}  // namespace wqstat
