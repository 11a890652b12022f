#include "picture_parts.h"

#include "data_files/comment_words.h"

#include <algorithm>
#include <cmath>

namespace wqstat {

std::string titleOf(const wq_lib::BasicStatistics& analysis, const PictureWords& words)
{
    if (words.title) return *words.title;
    const std::string title = readableComment(analysis.getComment());
    return title.empty() ? words.source : title;
}

Picture pictureOf(const Chart& chart, const PictureWords& words)
{
    const std::string title = chart.titleText().empty() ? words.source : chart.titleText();
    return {chart.commands(), words.canvas, fitted(title, std::string::npos), chart.description(), chart};
}

Axis::Scale scaleOf(char axis, const PictureWords& words, const Extent& positive, bool byModel)
{
    constexpr double twoDecades = 100.0;
    const bool wide = positive.low > 0.0 && positive.high >= twoDecades * positive.low;
    const bool logarithmic = words.logarithmic ? words.logarithmic->find(axis) != std::string::npos : byModel && wide;
    return logarithmic ? Axis::Scale::logarithmic : Axis::Scale::linear;
}

std::string labelOr(const std::string& label, const char* own) { return label.empty() ? own : label; }

std::string confidenceText(const wq_lib::BasicStatistics& analysis) { return "exact " + figures(100.0 * analysis.getConfidence()) + " %"; }

bool isFinite(const wq_lib::DataRange<double>& range) { return std::isfinite(range.getLower()) && std::isfinite(range.getUpper()); }

Axis countAxis(double highest)
{
    Extent extent;
    extent.include(std::max(1.0, highest));
    return Axis(extent, Axis::Ends::fromZero);
}

Axis placeAxis(std::size_t things)
{
    Extent extent;
    extent.include(0.5);
    extent.include(static_cast<double>(things) + 0.5);
    return Axis(extent);
}

std::vector<std::string> tickLabels(const PictureWords& words) { return fittedApart(words.labels, mostOfLabel); }

std::vector<Tick> placeTicks(const PictureWords& words)
{
    std::vector<Tick> ticks;
    for (const std::string& label : tickLabels(words)) ticks.push_back({static_cast<double>(ticks.size() + 1), label});
    return ticks;
}

std::string labelOf(const PictureWords& words, std::size_t number, const std::string& otherwise)
{
    return number - 1 < words.labels.size() ? fitted(words.labels[number - 1], mostOfLabel) : otherwise;
}

std::vector<double> analysedValues(const wq_lib::BasicStatistics& sample)
{
    std::vector<double> values;
    for (std::size_t i = sample.getDataStart(); i < sample.getSampleSize() && i <= sample.getDataEnd(); ++i)
        if (std::isfinite(sample.getDataPoint(i))) values.push_back(sample.getDataPoint(i));
    return values;
}

std::vector<Point> pointsOf(wq_lib::BasicXyStatistics& pairs)
{
    std::vector<Point> points;
    const std::size_t n = pairs.getSampleSize();
    points.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const wq_lib::data_pair pair = pairs.getDataPair(i);
        points.push_back({pair.x, pair.y});
    }
    return points;
}

Extents extentsOf(const std::vector<Point>& points)
{
    Extents extents;
    for (const Point& point : points) {
        if (!std::isfinite(point.x) || !std::isfinite(point.y)) continue;
        extents.x.include(point.x);
        extents.y.include(point.y);
    }
    return extents;
}

Extent aboveZero(const std::vector<Point>& points, double Point::*value)
{
    Extent extent;
    for (const Point& point : points)
        if (point.*value > 0.0) extent.include(point.*value);
    return extent;
}

}  // namespace wqstat
