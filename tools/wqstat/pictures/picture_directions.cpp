// Rose diagrams.
#include "picture.h"

#include "picture_parts.h"

#include "numbers/pi.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace wqstat {

namespace {

using wq_lib::detail::pi;

/** On the circle 0 is at the top, and angles grow clockwise. */
Point onCircle(double angle, double radius) { return {radius * std::sin(angle), radius * std::cos(angle)}; }

/** How many sectors tell most: the bins of the data, or neighbours together where they are too many. */
std::size_t sectorsFor(const wq_lib::Circular& directions)
{
    constexpr std::size_t most = 72;
    constexpr std::size_t usual = 36;
    constexpr std::size_t least = 12;
    const std::size_t bins = directions.getBins();
    if (bins > 0 && (directions.isGrouped() || directions.getDataType() == wq_lib::BIN_NUMBERS)) {
        if (bins <= most) return bins;
        for (std::size_t together = 2; together <= bins / least && together <= 1000; ++together)
            if (bins % together == 0 && bins / together <= most) return bins / together;
        return usual;
    }
    const std::size_t n = directions.getCircularResult().n;
    return n <= 30 ? 12 : n <= 200 ? 24 : usual;
}

struct Direction {
    double angle;
    double weight;
};

/** The observations with an angle and a number, in radians, the middle of the bin where the data are grouped. */
std::vector<Direction> directionsOf(wq_lib::Circular& sample, std::size_t& leftOut)
{
    std::vector<Direction> all;
    for (const Point& pair : pointsOf(sample)) {
        const double angle = sample.isGrouped() ? pair.x - 0.5 * sample.getBinSize() : pair.x;
        const double weight = sample.isGrouped() ? pair.y : 1.0;
        if (!std::isfinite(angle) || !std::isfinite(weight))
            ++leftOut;
        else if (weight > 0.0)
            all.push_back({angle, weight});
    }
    return all;
}

/** Turned into 0 ... 2 pi and counted in sectors; what lies on a limit but for rounding lies on it. */
double inSectors(double angle, double width)
{
    const double turned = std::fmod(angle, 2.0 * pi);
    const double steps = (turned < 0.0 ? turned + 2.0 * pi : turned) / width;
    return std::fabs(steps - std::round(steps)) < 1e-9 ? std::round(steps) : steps;
}

/** What each sector holds. A bin that reaches over several gives to each its share. */
std::vector<double> sectorWeights(const std::vector<Direction>& directions, double binSize, std::size_t sectors)
{
    std::vector<double> weights(sectors);
    const double width = 2.0 * pi / static_cast<double>(sectors);
    const double binWidth = binSize / width;
    for (const Direction& direction : directions) {
        const double begin = inSectors(direction.angle - 0.5 * binSize, width);
        const auto first = static_cast<std::size_t>(begin);
        weights[first % sectors] += direction.weight;
        for (std::size_t limit = first + 1; binWidth > 0.0 && static_cast<double>(limit) < begin + binWidth - 1e-9; ++limit) {
            const double beyond = direction.weight * (begin + binWidth - static_cast<double>(limit)) / binWidth;
            weights[(limit - 1) % sectors] -= beyond;
            weights[limit % sectors] += beyond;
        }
    }
    return weights;
}

Rows circle(double radius)
{
    Rows rows;
    constexpr int steps = 180;
    for (int i = 0; i <= steps; ++i) {
        const Point point = onCircle(2.0 * pi * i / steps, radius);
        rows.add({point.x, point.y});
    }
    return rows;
}

void addSector(Rows& rows, double begin, double width, double radius)
{
    rows.add({0.0, 0.0});
    const int steps = std::max(1, static_cast<int>(std::ceil(width / (2.0 * pi) * 180.0)));
    for (int i = 0; i <= steps; ++i) {
        const Point point = onCircle(begin + width * i / steps, radius);
        rows.add({point.x, point.y});
    }
    rows.add({0.0, 0.0});
    rows.gap();
}

/** Around the circle: the unit of the data at the quarters, or the number of each bin. */
void addDirectionTexts(Chart& chart, const wq_lib::Circular& directions)
{
    std::vector<std::pair<double, std::string>> texts;
    const std::size_t bins = directions.getBins();
    if (directions.getDataType() == wq_lib::BIN_NUMBERS && bins > 0) {
        constexpr std::size_t most = 24;
        const std::size_t step = (bins - 1) / most + 1;
        for (std::size_t bin = 0; bin == 0 || bin <= bins - step; bin += step)  // the last not too close to the first
            texts.emplace_back((static_cast<double>(bin) + 0.5) * directions.getBinSize(), std::to_string(directions.getBin0() + bin));
    } else if (directions.getDataType() == wq_lib::DEGREES) {
        for (const int degrees : {0, 45, 90, 135, 180, 225, 270, 315})
            texts.emplace_back(wq_lib::degreeToRadian(degrees), std::to_string(degrees) + "\u00b0");
    } else {
        int eighths = 0;
        for (const char* const text : {"0", "\u03c0/4", "\u03c0/2", "3\u03c0/4", "\u03c0", "5\u03c0/4", "3\u03c0/2", "7\u03c0/4"})
            texts.emplace_back(eighths++ * pi / 4.0, text);
    }
    for (const auto& [angle, text] : texts) {
        const Point point = onCircle(angle, 1.12 + 0.07 * std::fabs(std::sin(angle)));  // texts are wider than high
        chart.addText(point.x, point.y, text, "center");
    }
}

}  // namespace

Picture picture(wq_lib::Circular& directions, const PictureWords& words)
{
    const wq_lib::circular_stat& result = directions.getCircularResult();
    std::size_t leftOut = 0;
    const std::vector<Direction> all = directionsOf(directions, leftOut);
    const std::vector<double> weights = sectorWeights(all, directions.isGrouped() ? directions.getBinSize() : 0.0, sectorsFor(directions));
    const double most = *std::max_element(weights.begin(), weights.end());
    const double width = 2.0 * pi / static_cast<double>(weights.size());

    const bool inBins = directions.getDataType() == wq_lib::BIN_NUMBERS;
    std::string caption =
        "n = " + digits(result.n) +
        (std::isnan(result.a) ? ", no mean direction" : ", mean direction " + figures(wq_lib::radianToDegree(result.a)) + "\u00b0");
    const std::string binName = directions.getBinName().empty() ? "bin" : directions.getBinName();
    if (inBins) caption += " (" + binName + " " + std::to_string(result.meanBin) + ")";
    Chart chart(words.canvas, titleOf(directions, words), caption + ", " + statisticText("r", result.r, coefficient(result.r)));
    chart.setRound(1.21, words.xLabel.empty() ? (inBins ? binName : "direction") + ", clockwise from the top" : words.xLabel);
    addDirectionTexts(chart, directions);

    Rows sectors;
    for (std::size_t i = 0; i < weights.size(); ++i)
        if (weights[i] > 1e-9 * most) addSector(sectors, static_cast<double>(i) * width, width, std::sqrt(weights[i] / most));
    const std::string counts = labelOr(words.yLabel, "observations");
    chart.add(circle(1.0), "using 1:2 with lines linewidth 1 " + inColour(colour::grey));
    chart.add(sectors,
              "using 1:2 with filledcurves closed fillstyle solid 1.0 border linecolor rgb '" + GnuplotCode(colour::blue) +
                  "' fillcolor rgb '" + colour::histogram + "'",
              counts + " (by area)");
    chart.add(sectors, "using 1:2 with lines linewidth 1 " + inColour(colour::blue));

    if (most > 0.0) {
        Extent extent;
        extent.include(most);
        for (const Tick& tick : Axis(extent, Axis::Ends::fromZero).ticks(3, true)) {
            if (!(tick.position > 0.0) || tick.position > most) continue;
            const double radius = std::sqrt(tick.position / most);
            chart.add(circle(radius), "using 1:2 with lines linewidth 1 dashtype 3 " + inColour(colour::grey));
            // Opposite to the mean there is most likely room.
            const double angle = (std::isfinite(result.a) ? result.a : 0.0) + pi;
            const double inside = 0.05 + 0.025 * static_cast<double>(tick.text.size()) * std::fabs(std::sin(angle));
            const Point place = onCircle(angle, radius - inside);
            chart.addText(place.x, place.y, tick.text, "center font smallFont");
        }
    }
    if (!directions.isGrouped() && all.size() <= 500) {
        Rows points;
        for (const Direction& direction : all) {
            const Point point = onCircle(direction.angle, 1.04);
            points.add({point.x, point.y});
        }
        chart.add(points, "using 1:2 with points pointtype 7 pointsize mark " + inColour(colour::seeThrough), "each observation");
    }
    if (std::isfinite(result.a) && std::isfinite(result.r)) {
        Rows vector;
        const Point end = onCircle(result.a, result.r);
        vector.add({0.0, 0.0, end.x, end.y});
        chart.add(vector, "using 1:2:3:4 with vectors head filled size 0.07,20 linewidth 3.5 " + inColour(colour::vermilion),
                  "mean vector (circle: 1)");
    } else {
        chart.note("no mean vector: it is not finite");
    }
    noteLeftOut(chart, leftOut, observationNoun);
    return pictureOf(chart, words);
}

}  // namespace wqstat
