// What the textbook says beside the library's approximations: exact probabilities, critical values, limits and decisions.
#pragma once

#include <wq_exact/wq_exact.h>
#include <wq_stat/wq_stat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace wqstat {

/** The figures of one analysis, in the order in which they are shown. */
class Textbook {
public:
    using Decision = std::optional<bool>;  // H0 accepted; nothing where the figures allow no decision

    /** A label for the reader, and a path for the program: "limitsB/lower" is the member lower of the object limitsB. */
    struct Line {
        std::string label;
        std::string path;
        std::variant<double, Decision> content;
        double spread = 0.0;  ///< of limits their width
    };

    /** A figure; NaN where there is none. */
    void figure(const std::string& label, const std::string& path, double value, double spread = 0.0)
    {
        content.push_back({label, path, value, spread});
        allPaths.push_back(path);
    }

    /** A figure that other data would have here. */
    void noFigure(const std::string& path) { allPaths.push_back(path); }

    void limits(const std::string& of, const std::string& path, const wq_exact::Limits& limits);

    /** A decision, compared with the report's when it states one. */
    void decision(const std::string& label, const std::string& path, const wq_exact::Decision& decision);

    /** The figure is the p by which the analysis decides. */
    void decidesBy(const std::string& path) { decidingPath = path; }

    /** The path of the p by which the analysis decides; empty where it tests nothing. */
    const std::string& deciding() const { return decidingPath; }

    /** What the user is told besides, a line each. */
    void setWarnings(std::vector<std::string> texts) { warningTexts = std::move(texts); }

    /** The figure at the path; NaN where there is none. */
    double value(const std::string& path) const;

    const std::vector<Line>& lines() const { return content; }
    /** Of the lines in their order, those of noFigure() included. */
    const std::vector<std::string>& paths() const { return allPaths; }

    const std::vector<std::string>& warnings() const { return warningTexts; }

    /** A sentence for each decision that the report makes otherwise. */
    std::vector<std::string> differenceSentences() const;

    /** The paths of the decisions that the report makes otherwise. */
    const std::vector<std::string>& differing() const { return differences; }

    /** The block that follows a report. */
    std::string block() const;

private:
    std::vector<Line> content;
    std::vector<std::string> allPaths;
    std::string decidingPath;
    std::vector<std::string> warningTexts;
    std::vector<std::string> differences;
    std::string comparison;  // with the report, in words, a line each
    std::size_t compared = 0;
};

// One for each analysis.
Textbook textbook(const wq_exact::OneSampleResult& exact);
Textbook textbook(const wq_exact::PairsResult& exact);
Textbook textbook(const wq_exact::RegressionResult& exact);
Textbook textbook(const wq_exact::CorrelationResult& exact);
Textbook textbook(const wq_exact::AnovaResult& exact);
Textbook textbook(const wq_exact::MultiYResult& exact);
Textbook textbook(const wq_exact::GoodnessOfFitResult& exact);
Textbook textbook(const wq_exact::KolmogorovSmirnovResult& exact);
Textbook textbook(const wq_exact::TwoVariancesResult& exact);
Textbook textbook(const wq_exact::FrequencyResult& exact);
Textbook textbook(const wq_exact::DirectionsResult& exact);

/** The constant a of a model's formula, in the scale of y. */
double constantOf(const wq_exact::RegressionResult& exact);

}  // namespace wqstat
