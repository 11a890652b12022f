// What the textbook says beside the library's approximations: exact probabilities, critical values, limits and decisions.
#pragma once

#include <wq_stat/wq_stat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
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
    };

    /** A figure; NaN where there is none. */
    void figure(const std::string& label, const std::string& path, double value) { content.push_back({label, path, value}); }

    /** The figures value -/+ halfWidth. */
    void limits(const std::string& of, const std::string& path, double value, double halfWidth);

    /** A decision, and the report's, when it states one. */
    void decision(const std::string& label, const std::string& path, Decision exact, Decision reported);

    /** Accepted unless the probability is below the level. */
    static Decision byProbability(double p, double alpha);

    const std::vector<Line>& lines() const { return content; }

    /** The paths of the decisions that the report makes otherwise. */
    const std::vector<std::string>& differing() const { return differences; }

    /** The block that follows a report. */
    std::string block() const;

private:
    std::vector<Line> content;
    std::vector<std::string> differences;
    std::string comparison;  // with the report, in words, a line each
    std::size_t compared = 0;
};

// One for each analysis that tests something. The analysis must have been made; its report's decision is asked for.
Textbook textbook(wq_lib::BasicStatistics& sample);
Textbook textbook(wq_lib::Regression& regression);
Textbook textbook(wq_lib::Correlation& correlation);
Textbook textbook(wq_lib::SingleAnova& anova);
Textbook textbook(wq_lib::LinearRegressionMultiY& regression);
Textbook textbook(wq_lib::GoodnessOfFit& test);
Textbook textbook(wq_lib::KolmogorovSmirnov2& test);
Textbook textbook(wq_lib::TwoSamples& samples);
Textbook textbook(wq_lib::Circular& directions);

// These test nothing, and what they inherit is not their result.
Textbook textbook(wq_lib::BasicXyStatistics&) = delete;
Textbook textbook(wq_lib::Frequency&) = delete;

template <typename Analysis, typename = void>
constexpr bool hasTextbook = false;
template <typename Analysis>
constexpr bool hasTextbook<Analysis, std::void_t<decltype(textbook(std::declval<Analysis&>()))>> = true;

}  // namespace wqstat
