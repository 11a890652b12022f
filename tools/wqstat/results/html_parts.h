// What all pages have in common.
#pragma once

#include "html_page.h"
#include "html_writer.h"

#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** Opens the page, and writes its head. */
void pageHead(HtmlWriter& html, const std::string& title);

/** Opens a section with a heading. @param level "h2" */
void heading(HtmlWriter& html, MarkupWord section, std::string_view text, MarkupWord level);

/** A figure for people, with all its digits for programs, in a cell of a table. @param path where it stands in the JSON document */
void figureCell(HtmlWriter& html, double value, const std::string& path, int shownDigits = 6);

/** The section of all figures and decisions. @param document what the paths of its figures begin with: "2/" of the third of an array */
void resultTable(HtmlWriter& html, const PageContent& content, MarkupWord level, const std::string& document);

/** The section of what was read. */
void dataNotes(HtmlWriter& html, const PageContent& content, MarkupWord level);

void howItWasMade(HtmlWriter& html, const std::string& version, const std::string& commandLine, const std::vector<PageFile>& files);

}  // namespace wqstat
