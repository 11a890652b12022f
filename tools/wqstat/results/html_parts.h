// What all pages have in common.
#pragma once

#include "html_page.h"
#include "html_writer.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** No page is larger. */
constexpr std::size_t mostBytesOfPage = 300 * 1024;

/** Opens the page, and writes its head. */
void pageHead(HtmlWriter& html, const std::string& title);

/** Opens a section with a heading. @param level "h2" */
void heading(HtmlWriter& html, MarkupWord section, std::string_view text, MarkupWord level);

constexpr int digitsShown = 6;

/**
 * A figure for people, with all its digits for programs, in a cell of a table.
 * @param path where it stands in the JSON document
 * @param leastDigits that are shown, and of its spread three
 */
void figureCell(HtmlWriter& html, double value, const std::string& path, double spread = 0.0, int leastDigits = digitsShown);

/** A text whose numbers stay on one line each, "p = 2.58e-22" too. */
void textWithFigures(HtmlWriter& html, std::string_view text);

/** What came out, in words. */
void summaryLine(HtmlWriter& html, std::string_view summary);

/**
 * The section of all figures and decisions.
 * @param document what the paths of its figures begin with: "2/" of the third of an array
 * @param mostRows of groups or classes; a sentence says how many there are besides
 */
void resultTable(HtmlWriter& html, const PageContent& content, MarkupWord level, const std::string& document, std::size_t mostRows);

/** The section of the report: of so many bytes at most, with a sentence where that is not all of it. */
HtmlWriter reportSection(const std::string& report, MarkupWord level, std::size_t room);

/** The items of a list of notes: the first of them, and how many there are besides. */
void noteItems(HtmlWriter& html, const std::vector<Sentence>& notes);

/** The section of what was read. */
void dataNotes(HtmlWriter& html, const PageContent& content, MarkupWord level);

void howItWasMade(HtmlWriter& html, const std::string& version, const std::string& commandLine, const std::vector<PageFile>& files);

}  // namespace wqstat
