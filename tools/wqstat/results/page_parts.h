// What all pages have in common.
#pragma once

#include "html_writer.h"
#include "results/html_page.h"

#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** Opens a page as far as its main part. @param command the name behind the title. */
void openPage(HtmlWriter& html, const std::string& title, const std::string& command);

/** All of the page, closed. */
std::string closedPage(HtmlWriter& html);

/** Opens a section with its heading. */
void heading(HtmlWriter& html, MarkupWord section, std::string_view text);

/** The head of a table of figures. */
void tableHead(HtmlWriter& html);

/** A row of such a table: a figure for people, with all its digits for programs. @param path of the member of the JSON document */
void row(HtmlWriter& html, const std::string& label, double value, const std::string& path);

void howItWasMade(HtmlWriter& html, const std::string& version, const std::string& commandLine, const std::vector<PageFile>& files);

}  // namespace wqstat
