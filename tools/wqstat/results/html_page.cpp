#include "html_page.h"

#include "html_parts.h"

namespace wqstat {

std::string htmlPage(const PageContent& content)
{
    HtmlWriter html;
    pageHead(html, content.title + " \u2013 wqstat " + content.command);
    html.open("body").open("main");
    html.open("header").element("h1", content.title);
    html.element("p", content.statement.question, {{"class", "question"}});
    html.element("p", content.statement.summary, {{"class", "summary"}}).close();
    heading(html, "picture", "Picture", "h2");
    html.open("figure").picture(content.picture).close().close();
    resultTable(html, content, "h2", "");
    heading(html, "report", "Report", "h2");
    html.element("pre", content.report).close();
    dataNotes(html, content, "h2");
    howItWasMade(html, content.version, content.commandLine, content.files);
    html.close().close().close();
    return html.page();
}

}  // namespace wqstat
