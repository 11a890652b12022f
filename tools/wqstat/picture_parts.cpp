#include "picture_parts.h"

#include <algorithm>
#include <cmath>

namespace wqstat {

std::string firstLine(const std::string& comment)
{
    constexpr const char* whiteSpace = " \t\n\v\f\r";
    const std::size_t begin = comment.find_first_not_of(whiteSpace);
    if (begin == std::string::npos) return "";
    const std::string line = comment.substr(begin, comment.find('\n', begin) - begin);
    return line.substr(0, line.find_last_not_of(whiteSpace) + 1);
}

std::string titleOf(const wq_lib::BasicStatistics& analysis, const PictureWords& words)
{
    const std::string title = firstLine(analysis.getComment());
    return title.empty() ? words.source : title;
}

std::string labelOr(const std::string& label, const char* own) { return label.empty() ? own : label; }

std::string confidenceText(const wq_lib::BasicStatistics& analysis) { return figures(100.0 * analysis.getConfidence()) + " %"; }

std::string inColour(const char* name) { return "linecolor rgb '" + std::string(name) + "'"; }

bool isFinite(const wq_lib::DataRange<double>& range) { return std::isfinite(range.getLower()) && std::isfinite(range.getUpper()); }

void noteLeftOut(Chart& chart, std::size_t count, const Noun& noun)
{
    if (count > 0) chart.note(counted(count, noun.one, noun.many) + " left out: not finite");
}

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

}  // namespace wqstat
