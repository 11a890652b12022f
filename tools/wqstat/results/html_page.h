// The page of an analysis: what was asked, what came out, the picture, and how it was made.
#pragma once

#include "command_line/sentence.h"
#include "pictures/svg_element.h"
#include "results/page_file.h"
#include "results/page_rows.h"
#include "results/statement.h"
#include "results/textbook.h"

#include <optional>
#include <string>
#include <vector>

namespace wqstat {

struct PageContent {
    std::string command;  ///< "anova"
    std::string title;    ///< of the page, as a list of pages shows it
    Sentence heading;     ///< what stands on it
    Statement statement;
    std::optional<Textbook> textbook;
    PageRows rows;
    std::vector<Sentence> key;  ///< what the numbers of samples mean
    SvgElement picture;
    std::string report;
    std::vector<PageFile> files;
    std::vector<Sentence> warnings;
    bool leavesOut = false;   ///< what was read, as it was asked to
    std::string commandLine;  ///< makes the page again
    std::string version;
};

/** One self-contained page, without scripts and without addresses outside. */
std::string htmlPage(const PageContent& content);

}  // namespace wqstat
