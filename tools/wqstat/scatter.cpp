#include "scatter.h"

#include "figures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace wqstat {

namespace {

constexpr std::size_t mostMarks = 2000;

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
    const std::string looks = "pointtype 7 linecolor rgb '" + std::string(colour::seeThrough) + "'";
    Rows rows;
    const bool several = std::any_of(marks.begin(), marks.end(), [](const auto& mark) { return mark.second > 1; });
    if (!several) {
        for (const auto& mark : marks) rows.add({mark.first.first, mark.first.second});
        chart.add(rows, "using 1:2 with points pointsize " + figures(size) + "*mark " + looks, noun.many);
        return;
    }
    for (const auto& [place, count] : marks) {
        constexpr double largest = 3.0;
        rows.add({place.first, place.second, size * std::min(largest, std::sqrt(static_cast<double>(count)))});
    }
    chart.add(rows, "using 1:2:(mark*$3) with points pointsize variable " + looks, noun.many + " (larger: several)");
}

/** The middle of the cell that a position lies in, so many cells to an axis. */
double cellMiddle(double position, const Axis& axis, double cells)
{
    const double width = (axis.high() - axis.low()) / cells;
    return axis.low() + (std::floor((position - axis.low()) / width) + 0.5) * width;
}

/** A square per cell, the darker the more it holds. */
void addCells(Chart& chart, const std::vector<Place>& places, const Axis& x, const Axis& y, const Noun& noun)
{
    constexpr double columns = 140.0;
    constexpr double rows = 90.0;
    std::vector<Place> middles;
    middles.reserve(places.size());
    for (const Place& place : places) middles.emplace_back(cellMiddle(place.first, x, columns), cellMiddle(place.second, y, rows));
    const Marks cells = gathered(std::move(middles));

    std::size_t most = 1;
    for (const auto& cell : cells) most = std::max(most, cell.second);
    const double third = std::cbrt(static_cast<double>(most));
    const auto from = [third](std::size_t level) {
        return static_cast<std::size_t>(std::ceil(std::pow(third, static_cast<double>(level)) - 1e-9));
    };
    constexpr std::array<const char*, 3> colours{"#8cc4e8", "#2f86bd", "#003a5d"};
    for (std::size_t level = 0; level < colours.size(); ++level) {
        const std::size_t least = from(level);
        const std::size_t below = level + 1 == colours.size() ? most + 1 : from(level + 1);
        if (below <= least) continue;
        Rows data;
        for (const auto& [place, count] : cells)
            if (count >= least && count < below) data.add({place.first, place.second});
        const std::string range = digits(least) + (below - 1 > least ? " to " + digits(below - 1) : "");
        chart.add(data, "using 1:2 with points pointtype 5 pointsize 0.35*mark linecolor rgb '" + std::string(colours[level]) + "'",
                  range + " " + (below == 2 ? noun.one : noun.many));
    }
    chart.note(counted(places.size(), noun.one, noun.many) + ", gathered in small squares: the darker, the more");
}

}  // namespace

void addScatter(Chart& chart, const std::vector<Point>& points, const Axis& x, const Axis& y, const Noun& noun)
{
    std::vector<Place> places;
    places.reserve(points.size());
    for (const Point& point : points)
        if (std::isfinite(point.x) && std::isfinite(point.y)) places.emplace_back(x.at(point.x), y.at(point.y));
    const std::size_t leftOut = points.size() - places.size();

    const Marks marks = gathered(places);
    if (marks.size() <= mostMarks)
        addMarks(chart, marks, noun);
    else
        addCells(chart, places, x, y, noun);
    if (leftOut > 0) chart.note(counted(leftOut, noun.one, noun.many) + " left out: not finite");
}

}  // namespace wqstat
