// The page of several analyses: all results in one table, their pictures side by side, and what each analysis' own page has.
#pragma once

#include "html_page.h"
#include "pictures/picture.h"

#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace wqstat {

struct OneOfSeveral {
    std::string name;  ///< of its file, or of its part of a table
    Sentence failure;  ///< why there is no result; empty where there is one
    Sentence question;
    std::string summary;
    std::vector<std::string> differences;  ///< where the report decides differently, a sentence each
    double p = std::nan("");               ///< by which it decides; NaN where it tests nothing
    std::string pathOfP;                   ///< in its JSON document
    std::optional<PageContent> content;    ///< of its section, without the picture
    std::optional<Picture> picture;        ///< of its section
    std::optional<Picture> multiple;       ///< small, to stand beside those of the others
};

struct SeveralContent {
    // A section takes more room than a hundredth of a page; of no use is more than what the first of them fill.
    static constexpr std::size_t mostSections = 100;
    static constexpr std::size_t mostMultiples = 12;

    std::string fileName;  ///< of the page
    std::string command;
    std::string title;  ///< as a list of pages shows it
    Sentence heading;   ///< what stands on it
    double alpha = 0.05;
    std::vector<OneOfSeveral> analyses;
    std::vector<Sentence> notes;  ///< on whole tables, whose parts were analysed
    std::vector<PageFile> files;
    std::string commandLine;
    std::string version;
};

/**
 * The table holds all analyses. Sections, and their pictures, follow as far as the page stays below 300 KiB, and the page says where they
 * end.
 * @throws CannotAnalyse when gnuplot is absent or fails.
 */
std::string htmlPageOfSeveral(const SeveralContent& content);

}  // namespace wqstat
