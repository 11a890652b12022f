#include "scatter.h"

#include "results/figures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace wqstat {

namespace {

constexpr std::size_t mostMarks = 2000;
constexpr std::size_t mostSmallMarks = 100;  // of a picture that is one of several

using Place = std::pair<double, double>;  // positions on the axes

/** The marks of one picture element: where, and for how many observations. */
using Marks = std::vector<std::pair<Place, std::size_t>>;

Marks gathered(std::vector<Place> places)
{
    std::sort(places.begin(), places.end());
    Marks marks;
    for (const Place& place : places) {
        if (marks.empty() || marks.back().first != place) marks.push_back({place, 0});
        ++marks.back().second;
    }
    return marks;
}

void addMarks(Chart& chart, const Marks& marks, const Noun& noun)
{
    const double size = marks.size() <= 100 ? 1.0 : marks.size() <= 500 ? 0.7 : 0.45;
    const GnuplotCode looks = "pointtype 7 " + inColour(colour::seeThrough);
    Rows rows;
    const bool several = std::any_of(marks.begin(), marks.end(), [](const auto& mark) { return mark.second > 1; });
    if (!several) {
        for (const auto& mark : marks) rows.add({mark.first.first, mark.first.second});
        chart.add(rows, GnuplotCode("using 1:2 with points pointsize ") + size + "*mark " + looks, noun.many);
        return;
    }
    for (const auto& [place, count] : marks) {
        constexpr double largest = 3.0;
        rows.add({place.first, place.second, size * std::min(largest, std::sqrt(static_cast<double>(count)))});
    }
    chart.add(rows, "using 1:2:(mark*$3) with points pointsize variable " + looks, noun.many + " (larger: several)");
}

/** The step of positions that are a grid, such as those of whole numbers; 0 where they are none. The positions are sorted. */
double stepOf(const std::vector<double>& positions)
{
    const double first = positions.front();
    const double extent = positions.back() - first;
    const double noise = 1e-9 * extent;  // of decimal fractions
    double least = extent;
    for (std::size_t i = 1; i < positions.size(); ++i)
        if (const double difference = positions[i] - positions[i - 1]; difference > noise) least = std::min(least, difference);
    if (!(least > 0.0)) return 0.0;
    const double step = extent / std::round(extent / least);
    const auto isOnGrid = [&](double position) {
        const double quotient = (position - first) / step;
        return std::fabs(quotient - std::round(quotient)) < 1e-3;
    };
    return std::all_of(positions.begin(), positions.end(), isOnGrid) ? step : 0.0;
}

/**
 * Equal parts of an axis. Each holds as many of the values that the data can have: their edges stand half a step beside the values of a
 * grid, or at round positions.
 */
class Cells {
public:
    Cells(const Axis& axis, double most, std::vector<double> positions) : width(roundedUp((axis.high() - axis.low()) / most))
    {
        std::sort(positions.begin(), positions.end());
        const double step = stepOf(positions);
        if (!(step > 0.0)) return;
        width = step * std::max(1.0, std::ceil((axis.high() - axis.low()) / most / step - 1e-9));
        origin = positions.front() - 0.5 * step;
    }

    /** A position on a limit that is not exact in binary stays on it. */
    double cellOf(double position) const
    {
        const double quotient = (position - origin) / width;
        const double nearest = std::round(quotient);
        return std::fabs(quotient - nearest) < 1e-9 + 1e-14 * std::fabs(nearest) ? nearest : std::floor(quotient);
    }

    double begin(double cell) const { return origin + cell * width; }

private:
    double origin = 0.0;
    double width;
};

/** Rectangles of neighbours in a row that look the same. */
Rows rectangles(const Marks& cells, const Cells& columns, const Cells& rows, std::size_t least, std::size_t below)
{
    Rows data;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i].second < least || cells[i].second >= below) continue;
        const auto [row, first] = cells[i].first;
        std::size_t last = i;
        while (last + 1 < cells.size() && cells[last + 1].first == Place{row, cells[last].first.second + 1.0} &&
               cells[last + 1].second >= least && cells[last + 1].second < below)
            ++last;
        const double left = columns.begin(first);
        const double right = columns.begin(cells[last].first.second + 1.0);
        data.add({left, rows.begin(row), left, right, rows.begin(row), rows.begin(row + 1.0)});
        i = last;
    }
    return data;
}

/** A square per cell, the darker the more it holds. */
void addCells(Chart& chart, const std::vector<Place>& places, const Axis& x, const Axis& y, const Noun& noun)
{
    const double detail = chart.isSmallMultiple() ? 0.3 : 1.0;
    const auto all = [&places](double Place::*position) {
        std::vector<double> positions;
        positions.reserve(places.size());
        for (const Place& place : places) positions.push_back(place.*position);
        return positions;
    };
    const Cells columns(x, 140.0 * detail, all(&Place::first));
    const Cells rows(y, 90.0 * detail, all(&Place::second));
    std::vector<Place> inCells;  // row by row
    inCells.reserve(places.size());
    for (const Place& place : places) inCells.emplace_back(rows.cellOf(place.second), columns.cellOf(place.first));
    const Marks cells = gathered(std::move(inCells));

    std::size_t most = 1;
    for (const auto& cell : cells) most = std::max(most, cell.second);
    constexpr std::size_t levels = 5;
    const std::array<GnuplotCode, levels> colours{"#c9e3f5", "#8cc4e8", "#4a9fd0", "#1f6ea3", "#003a5d"};
    const double ratio = std::pow(static_cast<double>(most), 1.0 / static_cast<double>(levels));
    const auto from = [ratio](std::size_t level) {
        return static_cast<std::size_t>(std::ceil(std::pow(ratio, static_cast<double>(level)) - 1e-9));
    };
    for (std::size_t level = 0; level < levels; ++level) {
        const std::size_t least = from(level);
        const std::size_t below = level + 1 == levels ? most + 1 : from(level + 1);
        if (below <= least) continue;
        const std::string range = digits(least) + (below - 1 > least ? " to " + digits(below - 1) : "");
        chart.addLevel(rectangles(cells, columns, rows, least, below),
                       "using 1:2:3:4:5:6 with boxxyerror fillstyle solid 1.0 border rgb '" + colours[level] + "' " +
                           inColour(colours[level]) + " linewidth 1",  // the border covers the seams
                       range + " " + (below == 2 ? noun.one : noun.many));
    }
    chart.note(counted(places.size(), noun.one, noun.many) + ", gathered in small squares: the darker, the more");
}

}  // namespace

void noteLeftOut(Chart& chart, std::size_t count, const Noun& noun)
{
    if (count > 0) chart.note(counted(count, noun.one, noun.many) + " left out: not finite");
}

void addScatter(Chart& chart, const std::vector<Point>& points, const Axis& x, const Axis& y, const Noun& noun)
{
    std::vector<Place> places;
    places.reserve(points.size());
    std::size_t notFinite = 0;
    for (const Point& point : points) {
        const Place place{x.at(point.x), y.at(point.y)};
        if (std::isfinite(place.first) && std::isfinite(place.second)) places.push_back(place);
        notFinite += std::isfinite(point.x) && std::isfinite(point.y) ? 0U : 1U;
    }
    const std::size_t notPositive = points.size() - places.size() - notFinite;

    const Marks marks = gathered(places);
    if (marks.size() <= (chart.isSmallMultiple() ? mostSmallMarks : mostMarks))
        addMarks(chart, marks, noun);
    else
        addCells(chart, places, x, y, noun);
    noteLeftOut(chart, notFinite, noun);
    if (notPositive > 0) chart.note(counted(notPositive, noun.one, noun.many) + " left out: not above 0, on a logarithmic axis");
}

}  // namespace wqstat
