// What the picture of each analysis shows.
#pragma once

#include "canvas.h"
#include "chart.h"
#include "gnuplot_code.h"

#include "data_files/two_data_files.h"

#include <wq_stat/wq_stat.h>

#include <optional>
#include <string>
#include <vector>

namespace wqstat {

/** What is asked for besides the data. */
struct PictureWords {
    std::string source;                ///< what the data are called: the title where they have no comment
    std::optional<std::string> title;  ///< in place of the data's own; none when empty
    std::string xLabel;                ///< in place of the picture's own; empty to keep that
    std::string yLabel;
    std::optional<std::string> logarithmic;  ///< the axes that are, of "xy"; else as the model has it
    bool residuals = false;                  ///< below a regression
    Canvas canvas;
    std::vector<std::string> labels;  ///< of the groups, classes or samples, in place of their numbers; empty to keep those
    bool xIsAsked = false;            ///< the label was given, and is not a title of the data
    bool yIsAsked = false;
    bool classesAreValues = false;      ///< of y, each different one a class: labels name the samples then
    std::vector<std::string> compared;  ///< titles of two columns of frequencies
};

/** A picture that gnuplot can draw. */
struct Picture {
    GnuplotCode commands;
    Canvas canvas;
    std::string title;
    std::string description;  ///< for those who do not see it
    Chart chart;              ///< that it shows, without the panel below
};

// Each after the analysis has been made. What is not finite is left out, and the picture says so.

/** Histogram with mean and confidence interval. */
Picture picture(const wq_lib::BasicStatistics& sample, const PictureWords& words);

/** The table as a histogram, with mean and confidence interval. */
Picture picture(const wq_lib::Frequency& table, const PictureWords& words);

/** Scatter with the correlation coefficient. */
Picture picture(wq_lib::BasicXyStatistics& pairs, const PictureWords& words);
Picture picture(wq_lib::Correlation& pairs, const PictureWords& words);

/** Scatter with the fitted curve and the confidence limits of its height. */
Picture picture(wq_lib::LinearRegression& regression, const PictureWords& words);
Picture picture(wq_lib::LogarithmicRegression& regression, const PictureWords& words);
Picture picture(wq_lib::ExponentialRegression& regression, const PictureWords& words);
Picture picture(wq_lib::PowerRegression& regression, const PictureWords& words);

/** Scatter with the fitted line and the lines of the slope's confidence limits. */
Picture picture(wq_lib::LinearRegressionMultiY& regression, const PictureWords& words);

/** The observations by group, with the means. */
Picture picture(wq_lib::SingleAnova& anova, const PictureWords& words);

/** Observed beside expected frequencies, class by class; with many classes one against the other. */
Picture picture(wq_lib::GoodnessOfFit& test, const PictureWords& words);

/** The two relative cumulative frequencies, with D where it is. */
Picture picture(wq_lib::KolmogorovSmirnov2& test, const PictureWords& words);

/** Both samples of a test of variances side by side, with mean and standard deviation. */
Picture picture(const TwoDataFiles& test, const PictureWords& words);

/** Rose diagram with the mean vector. */
Picture picture(wq_lib::Circular& directions, const PictureWords& words);

}  // namespace wqstat
