// The results of an analysis as a JSON document: every field of the result records, and what the report prints besides.
#pragma once

#include "textbook.h"

#include <wq_stat/wq_stat.h>

#include <optional>
#include <string>
#include <vector>

namespace wqstat {

/** What the document says before the results. */
struct JsonHead {
    std::string command;
    std::vector<std::string> files;  ///< as on the command line
    std::optional<Textbook> textbook;
};

// docs/json.md describes the document. One function for each analysis; the analysis must have been made.
std::string jsonDocument(const JsonHead& head, wq_lib::BasicStatistics& sample);
std::string jsonDocument(const JsonHead& head, wq_lib::BasicXyStatistics& pairs);
std::string jsonDocument(const JsonHead& head, wq_lib::Regression& regression);
std::string jsonDocument(const JsonHead& head, wq_lib::Correlation& correlation);
std::string jsonDocument(const JsonHead& head, wq_lib::SingleAnova& anova);
std::string jsonDocument(const JsonHead& head, wq_lib::LinearRegressionMultiY& regression);
std::string jsonDocument(const JsonHead& head, wq_lib::GoodnessOfFit& test);
std::string jsonDocument(const JsonHead& head, wq_lib::KolmogorovSmirnov2& test);
std::string jsonDocument(const JsonHead& head, wq_lib::TwoSamples& samples);
std::string jsonDocument(const JsonHead& head, wq_lib::Frequency& sample);
std::string jsonDocument(const JsonHead& head, wq_lib::Circular& directions);

}  // namespace wqstat
