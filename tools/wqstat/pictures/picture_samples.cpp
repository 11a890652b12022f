// Pictures of a sample of numbers: histograms.
#include "picture.h"

#include "picture_parts.h"

#include <wq_exact/wq_exact.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <vector>

namespace wqstat {

namespace {

/** Bars that touch, at positions of the axis. */
struct Histogram {
    double start = 0.0;
    double width = 1.0;
    std::vector<double> counts;

    double edge(std::size_t i) const { return start + static_cast<double>(i) * width; }
    double end() const { return edge(counts.size()); }
    double highest() const { return counts.empty() ? 0.0 : *std::max_element(counts.begin(), counts.end()); }
};

/** The classes a reader would choose: round limits, the more the larger the sample, and narrow where the values crowd. */
Histogram histogramOf(const std::vector<double>& positions)  // in ascending order, not empty
{
    const double n = static_cast<double>(positions.size());
    const double spread = positions.back() - positions.front();
    const double quartiles = positions[positions.size() * 3 / 4] - positions[positions.size() / 4];
    double classes = std::ceil(std::log2(n)) + 1.0;                                               // Sturges
    if (quartiles > 0.0) classes = std::max(classes, spread * std::cbrt(n) / (2.0 * quartiles));  // Freedman and Diaconis
    classes = std::min(classes, 60.0);

    Histogram histogram;
    const double size = std::fabs(positions.front());
    if (!(spread > 1e-12 * size)) {  // a single bar, about the value
        histogram.width = size > 0.0 ? 0.02 * size : 1.0;
        histogram.start = positions.front() - 0.5 * histogram.width;
        histogram.counts = {n};
        return histogram;
    }
    histogram.width = roundedUp(spread / classes);
    const auto steps = [&histogram](double position) {  // a value on a limit that is not exact in binary stays on it
        const double quotient = position / histogram.width;
        const double nearest = std::round(quotient);
        return std::fabs(quotient - nearest) < 1e-9 + 1e-14 * std::fabs(nearest) ? nearest : std::floor(quotient);
    };
    const double first = steps(positions.front());
    histogram.start = first * histogram.width;
    histogram.counts.resize(static_cast<std::size_t>(steps(positions.back()) - first) + 1);
    for (const double position : positions) ++histogram.counts[static_cast<std::size_t>(steps(position) - first)];
    return histogram;
}

/** Of pictures beside each other, whose samples and bars are of many sizes, the area of a bar is its share of the observations. */
void setHeights(Histogram& histogram, Chart& chart, const PictureWords& words)
{
    if (!chart.isSmallMultiple()) {
        chart.setY(countAxis(histogram.highest()), labelOr(words.yLabel, "number of observations"), true);
        return;
    }
    double area = 0.0;
    for (const double count : histogram.counts) area += count * histogram.width;
    for (double& count : histogram.counts) count /= area > 0.0 && std::isfinite(area) ? area : 1.0;
    Extent extent;
    extent.include(histogram.highest());
    chart.setY(Axis(extent, Axis::Ends::fromZero), "density");
}

void addBars(Chart& chart, const Histogram& histogram, const std::string& keyTitle)
{
    Rows rows;
    for (std::size_t i = 0; i < histogram.counts.size(); ++i)
        rows.add({histogram.edge(i) + 0.5 * histogram.width, histogram.counts[i], histogram.width});
    chart.add(rows,
              "using 1:2:3 with boxes fillstyle solid 1.0 border rgb '" + GnuplotCode(colour::blue) + "' " + inColour(colour::histogram),
              keyTitle);
}

void addMean(Chart& chart, const wq_lib::BasicStatistics& sample, const Axis& x)
{
    const wq_lib::basic_stat& result = sample.getResult();
    if (!std::isfinite(result.mean)) {
        chart.note("no mean: it is not finite");
        return;
    }
    const wq_exact::Limits limits = wq_exact::of(sample).meanLimits;
    if (std::isfinite(limits.lower) && std::isfinite(limits.upper))
        chart.addUprights({x.at(limits.lower), x.at(limits.upper)}, "linewidth 2 dashtype (9,5) " + inColour(colour::black),
                          confidenceText(sample) + " confidence interval " + x.text(limits.lower) + " to " + x.text(limits.upper));
    else
        chart.note("no confidence interval of the mean: it is not finite");
    chart.addUprights({x.at(result.mean)}, "linewidth 3 " + inColour(colour::vermilion), "mean " + x.text(result.mean));
}

void includeInterval(Extent& extent, const wq_lib::BasicStatistics& sample)
{
    const wq_exact::Limits limits = wq_exact::of(sample).meanLimits;
    for (const double value : {sample.getResult().mean, limits.lower, limits.upper}) extent.include(value);
}

/** The table with so many neighbouring classes drawn as one that the bars can be told apart. */
Histogram histogramOf(const wq_lib::Frequency& table, Chart& chart)
{
    constexpr std::size_t mostBars = 400;
    const std::size_t classes = table.getTable().size();
    const std::size_t merged = (classes + mostBars - 1) / mostBars;
    Histogram histogram;
    histogram.counts.resize((classes + merged - 1) / merged);
    for (std::size_t i = 0; i < classes; ++i) histogram.counts[i / merged] += static_cast<double>(table.getTable()[i].count);
    histogram.start = table.getStartClass();
    histogram.width = table.getClassWidth() * static_cast<double>(merged);
    if (merged > 1) chart.note("a bar is " + counted(merged, "class", "classes") + " of " + digits(classes));
    return histogram;
}

}  // namespace

Picture picture(const wq_lib::BasicStatistics& sample, const PictureWords& words)
{
    const wq_lib::basic_stat& result = sample.getResult();
    const std::vector<double> values = analysedValues(sample);
    Extent extent;
    for (const double value : values) extent.include(value);
    includeInterval(extent, sample);
    const Axis::Scale scale = scaleOf('x', words, extent);
    if (scale == Axis::Scale::logarithmic) {
        extent = Extent();
        for (const double value : values)
            if (value > 0.0) extent.include(value);
    }
    Axis x(extent, Axis::Ends::padded, scale);

    Histogram histogram;
    std::vector<double> positions;
    for (const double value : values)
        if (std::isfinite(x.at(value))) positions.push_back(x.at(value));
    if (!positions.empty()) {
        std::sort(positions.begin(), positions.end());
        histogram = histogramOf(positions);
        x.cover(histogram.start);
        x.cover(histogram.end());
    }

    std::string caption = "n = " + digits(result.n);
    if (sample.getSampleSize() > result.n) caption += " of " + digits(sample.getSampleSize());
    Chart chart(words.canvas, titleOf(sample, words), caption);
    chart.setX(x, labelOr(words.xLabel, "value"));
    setHeights(histogram, chart, words);
    addBars(chart, histogram, "observations");
    addMean(chart, sample, x);
    noteLeftOut(chart, result.n - values.size(), observationNoun);
    if (const std::size_t low = values.size() - positions.size(); low > 0)
        chart.note(counted(low, "observation", "observations") + " left out: not above 0, on a logarithmic axis");
    return pictureOf(chart, words);
}

Picture picture(const wq_lib::Frequency& table, const PictureWords& words)
{
    const wq_lib::basic_stat& result = table.getResult();
    const std::size_t classes = table.getTable().size();
    Chart chart(words.canvas, titleOf(table, words), counted(classes, "class", "classes") + ", n = " + digits(result.n));
    Histogram histogram = histogramOf(table, chart);
    setHeights(histogram, chart, words);

    const double end = table.getStartClass() + static_cast<double>(classes) * table.getClassWidth();
    if (!std::isfinite(end) || !(end > table.getStartClass())) {  // then the classes have no limits to draw
        histogram.start = -0.5;
        histogram.width = static_cast<double>(classes) / static_cast<double>(histogram.counts.size());
        Extent extent;
        extent.include(-0.5);
        extent.include(histogram.end());
        chart.setX(Axis(extent), labelOr(words.xLabel, "class"), true);
        addBars(chart, histogram, "observations");
        chart.note("the classes have no finite width");
        return pictureOf(chart, words);
    }
    Extent extent;
    extent.include(table.getStartClass());
    extent.include(end);
    includeInterval(extent, table);
    const Axis x(extent);
    histogram.start = x.at(table.getStartClass());
    histogram.width = (x.at(end) - histogram.start) / static_cast<double>(histogram.counts.size());
    chart.setX(x, labelOr(words.xLabel, "value"));
    addBars(chart, histogram, "observations");
    addMean(chart, table, x);
    return pictureOf(chart, words);
}

}  // namespace wqstat
