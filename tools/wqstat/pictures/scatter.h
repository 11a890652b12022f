// Points of a picture, however many: drawn one by one, or gathered in cells where a point each would be too much.
#pragma once

#include "chart.h"

#include <string>
#include <vector>

namespace wqstat {

struct Point {
    double x;
    double y;
};

/** What an observation is called. */
struct Noun {
    std::string one;
    std::string many;
};

/** Says how many were left out because they are not finite; nothing where there are none. */
void noteLeftOut(Chart& chart, std::size_t count, const Noun& noun);

/**
 * Adds the points to the chart, with a note when they are gathered and one when some are not finite, which are left out. Where
 * several coincide the mark is larger.
 */
void addScatter(Chart& chart, const std::vector<Point>& points, const Axis& x, const Axis& y, const Noun& noun);

}  // namespace wqstat
