// What the user of a report is told unasked: a decision that the exact figures do not bear out, and data that the analysis is not made for.
#pragma once

#include "data_files/two_data_files.h"

#include <wq_exact/wq_exact.h>
#include <wq_stat/wq_stat.h>

#include <string>
#include <vector>

namespace wqstat {

/** A line of text each. */
struct Warnings {
    std::vector<std::string> differing;  ///< decisions that the report makes otherwise
    std::vector<std::string> others;
    std::vector<std::string> leavingOut;  ///< those of the others that tell of data that the analysis passes over

    void add(const std::string& text) { others.push_back(text); }
    void addLeavingOut(const std::string& text)
    {
        add(text);
        leavingOut.push_back(text);
    }
    void add(const Warnings& further) { others.insert(others.end(), further.others.begin(), further.others.end()); }

    /** The differing decisions first. */
    std::vector<std::string> all() const
    {
        std::vector<std::string> texts = differing;
        texts.insert(texts.end(), others.begin(), others.end());
        return texts;
    }
};

// One for each analysis, after it has been made.
Warnings warningsOf(const wq_exact::OneSampleResult& exact, const wq_lib::BasicStatistics& sample);
Warnings warningsOf(const wq_exact::PairsResult& exact, const wq_lib::BasicXyStatistics& pairs);
Warnings warningsOf(const wq_exact::RegressionResult& exact, const wq_lib::Regression& regression);
Warnings warningsOf(const wq_exact::CorrelationResult& exact, const wq_lib::Correlation& correlation);
Warnings warningsOf(const wq_exact::AnovaResult& exact, const wq_lib::SingleAnova& anova);
Warnings warningsOf(const wq_exact::MultiYResult& exact, const wq_lib::LinearRegressionMultiY& regression);
Warnings warningsOf(const wq_exact::GoodnessOfFitResult& exact, const wq_lib::GoodnessOfFit& test);
Warnings warningsOf(const wq_exact::KolmogorovSmirnovResult& exact, const wq_lib::KolmogorovSmirnov2& test);
Warnings warningsOf(const wq_exact::TwoVariancesResult& exact, const TwoDataFiles& samples);
Warnings warningsOf(const wq_exact::FrequencyResult& exact, const wq_lib::Frequency& sample);
Warnings warningsOf(const wq_exact::DirectionsResult& exact, wq_lib::Circular& directions);

// Why an analysis tests nothing, where its p is NaN: "there is one group".
std::string reasonForNoTest(const wq_exact::OneSampleResult& exact, const wq_lib::BasicStatistics& sample);
std::string reasonForNoTest(const wq_exact::PairsResult& exact, const wq_lib::BasicXyStatistics& pairs);
std::string reasonForNoTest(const wq_exact::RegressionResult& exact);
std::string reasonForNoTest(const wq_exact::AnovaResult& exact);
std::string reasonForNoTest(const wq_exact::MultiYResult& exact);
std::string reasonForNoTest(const wq_exact::GoodnessOfFitResult& exact);
std::string reasonForNoTest(const wq_exact::KolmogorovSmirnovResult& exact, const wq_lib::KolmogorovSmirnov2& test);
std::string reasonForNoTest(const wq_exact::TwoVariancesResult& exact);
std::string reasonForNoTest(const wq_exact::DirectionsResult& exact);

// What the digits of an export lose of its numbers; nothing where each keeps 6 of them.
Warnings exportWarnings(const wq_lib::BasicStatistics& sample);
Warnings exportWarnings(wq_lib::BasicXyStatistics& pairs);
Warnings exportWarnings(const wq_lib::SingleAnova& anova);
Warnings exportWarnings(const wq_lib::Frequency& sample);

}  // namespace wqstat
