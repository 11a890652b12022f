// The results of an analysis by name: every field of the result records, and what the report prints besides.
#pragma once

#include "result_writer.h"
#include "textbook.h"

#include "data_files/data_words.h"

#include <wq_stat/wq_stat.h>

#include <string>
#include <vector>

namespace wqstat {

/** What is said before the results. */
struct ResultHead {
    std::string command;
    std::vector<std::string> files;  ///< as on the command line
    std::string byColumn;            ///< whose value these rows of a table have; empty where it is all of them
    std::string byValue;
    Textbook textbook;
    DataWords words;
    bool observations = false;  ///< whether groups show theirs
};

// docs/json.md describes the members. One function for each analysis; the analysis must have been made.
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::BasicStatistics& sample);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::BasicXyStatistics& pairs);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::Regression& regression);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::Correlation& correlation);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::SingleAnova& anova);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::LinearRegressionMultiY& regression);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::GoodnessOfFit& test);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::KolmogorovSmirnov2& test);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::TwoSamples& samples);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::Frequency& sample);
void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::Circular& directions);

}  // namespace wqstat
