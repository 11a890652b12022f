// What an analysis asks and what it finds, in words.
#pragma once

#include "command_line/sentence.h"
#include "data_files/two_data_files.h"

#include <wq_stat/wq_stat.h>

#include <string>
#include <vector>

namespace wqstat {

/** What the variables are called. */
struct VariableNames {
    std::string x;  ///< of a sample, pairs or groups; empty where nobody has said
    std::string y;
    std::vector<std::string> compared;  ///< two columns of frequencies; or none
    std::vector<std::string> samples;   ///< two samples; or none
    std::string ratio;                  ///< in which frequencies are expected
};

/** A figure for a table; where it stands in the JSON document, by the path of its member. */
struct Estimate {
    std::string label;
    std::string path;
    double value;
    double spread = 0.0;  ///< what it is read against; 0 where there is nothing
};

struct Statement {
    Sentence question;
    std::string summary;  ///< as a paper would have it
    std::vector<Estimate> estimates;
};

// One for each analysis, which must have been made. Probabilities and limits are the exact ones.
Statement statementOf(wq_lib::BasicStatistics& sample, const VariableNames& names);
Statement statementOf(wq_lib::Frequency& table, const VariableNames& names);
Statement statementOf(wq_lib::BasicXyStatistics& pairs, const VariableNames& names);
Statement statementOf(wq_lib::Correlation& correlation, const VariableNames& names);
Statement statementOf(wq_lib::Regression& regression, const VariableNames& names);
Statement statementOf(wq_lib::SingleAnova& anova, const VariableNames& names);
Statement statementOf(wq_lib::LinearRegressionMultiY& regression, const VariableNames& names);
Statement statementOf(wq_lib::GoodnessOfFit& test, const VariableNames& names);
Statement statementOf(wq_lib::KolmogorovSmirnov2& test, const VariableNames& names);
Statement statementOf(TwoDataFiles& samples, const VariableNames& names);
Statement statementOf(wq_lib::Circular& directions, const VariableNames& names);

}  // namespace wqstat
