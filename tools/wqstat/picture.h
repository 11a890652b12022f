// What the picture of each analysis shows, as gnuplot commands.
#pragma once

#include "two_data_files.h"

#include <wq_stat/wq_stat.h>

#include <string>

namespace wqstat {

/** The words on a picture that do not come from the analysis. */
struct PictureWords {
    std::string source;  ///< analysis and file: the title where the data have no comment
    std::string xLabel;  ///< in place of the picture's own; empty to keep that
    std::string yLabel;
};

// Each after the analysis has been made. What is not finite is left out, and the picture says so.

/** Histogram with mean and confidence interval. */
std::string picture(const wq_lib::BasicStatistics& sample, const PictureWords& words);

/** The table as a histogram, with mean and confidence interval. */
std::string picture(const wq_lib::Frequency& table, const PictureWords& words);

/** Scatter with the correlation coefficient. */
std::string picture(wq_lib::BasicXyStatistics& pairs, const PictureWords& words);
std::string picture(wq_lib::Correlation& pairs, const PictureWords& words);

/** Scatter with the fitted curve and the confidence limits of its height. */
std::string picture(wq_lib::LinearRegression& regression, const PictureWords& words);
std::string picture(wq_lib::LogarithmicRegression& regression, const PictureWords& words);
std::string picture(wq_lib::ExponentialRegression& regression, const PictureWords& words);
std::string picture(wq_lib::PowerRegression& regression, const PictureWords& words);

/** Scatter with the fitted line and the lines of the slope's confidence limits. */
std::string picture(wq_lib::LinearRegressionMultiY& regression, const PictureWords& words);

/** The observations by group, with the means. */
std::string picture(const wq_lib::SingleAnova& anova, const PictureWords& words);

/** Observed beside expected frequencies, class by class; with many classes one against the other. */
std::string picture(wq_lib::GoodnessOfFit& test, const PictureWords& words);

/** The two relative cumulative frequencies, with D where it is. */
std::string picture(wq_lib::KolmogorovSmirnov2& test, const PictureWords& words);

/** Both samples of a test of variances side by side, with mean and standard deviation. */
std::string picture(const TwoDataFiles& test, const PictureWords& words);

/** Rose diagram with the mean vector. */
std::string picture(wq_lib::Circular& directions, const PictureWords& words);

}  // namespace wqstat
