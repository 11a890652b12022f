// The words of a table that its results are shown with.
#pragma once

#include <string>
#include <vector>

namespace wqstat {

/** All empty where the data come from a file without titles and labels. */
struct DataWords {
    std::string xTitle;  ///< title of the column that the x axis of a picture shows
    std::string yTitle;
    std::string item;                   ///< what the labels name: "group", "class" or "sample"
    std::vector<std::string> labels;    ///< of item 1, 2, ... in the order of the analysis
    bool classesAreValues = false;      ///< of a column, each different one a class: labels name the samples then
    std::vector<std::string> compared;  ///< titles of two columns of frequencies
    std::string ratio;                  ///< in which frequencies are expected
    std::string doubt;                  ///< what the data may have been meant to be; empty without
};

}  // namespace wqstat
