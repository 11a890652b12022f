// Pictures of frequencies by class.
#include "picture.h"

#include "picture_parts.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace wqstat {

namespace {

/** The title of a column of frequencies is none of an axis of classes. */
std::string classLabel(const PictureWords& words)
{
    const bool isTitleOfClasses = !words.labels.empty() && !words.classesAreValues;
    if (words.xIsAsked || isTitleOfClasses) return labelOr(words.xLabel, "class");
    if (!words.classesAreValues) return "class, in the order of the data";
    return labelOr(words.yLabel, "value") + ": its different values in their order";
}

std::string frequencyLabel(const PictureWords& words, const char* own) { return words.yIsAsked ? words.yLabel : own; }

/** What a sample, 0 or 1, is called in the key. */
std::string sampleName(const PictureWords& words, std::size_t sample)
{
    const std::vector<std::string>& names = words.classesAreValues ? words.labels : words.compared;
    return names.size() == 2 ? fitted(names[sample], mostOfLabel) : "sample " + std::to_string(sample + 1);
}

}  // namespace

Picture picture(wq_lib::GoodnessOfFit& test, const PictureWords& words)
{
    std::vector<Point> classes;  // expected, observed
    for (const Point& pair : pointsOf(test)) classes.push_back({pair.y, pair.x});
    const Extents extents = extentsOf(classes);
    Extent both;
    for (const Extent& extent : {extents.x, extents.y}) {
        both.include(extent.low);
        both.include(extent.high);
    }
    Chart chart(words.canvas, titleOf(test, words),
                statisticText("chi-square", test.getX2()) + ", " + statisticText("G", test.getG()) + ", " +
                    counted(classes.size(), "class", "classes"));
    if (classes.size() > mostShownSingly) {
        const Axis scale(both, Axis::Ends::fromZero);  // the same on both axes
        chart.setX(scale, words.xIsAsked ? words.xLabel : "expected frequency");
        chart.setY(scale, frequencyLabel(words, "observed frequency"));
        addScatter(chart, classes, scale, scale, {"class", "classes"});
        Rows diagonal;
        for (const double end : {scale.low(), scale.high()}) diagonal.add({end, end});
        chart.add(diagonal, "using 1:2 with lines linewidth 2 dashtype (9,5) " + inColour(colour::vermilion), "observed as expected");
        return pictureOf(chart, words);
    }
    const Axis y(both, Axis::Ends::fromZero);
    chart.setX(placeAxis(classes.size()), classLabel(words), true);
    if (words.labels.size() == classes.size()) chart.setXTicks(placeTicks(words));
    chart.setY(y, frequencyLabel(words, "frequency"));
    Rows observed;
    Rows expected;
    std::size_t leftOut = 0;
    constexpr double bar = 0.38;
    for (std::size_t k = 0; k < classes.size(); ++k) {
        const double place = static_cast<double>(k + 1);
        if (std::isfinite(classes[k].y)) observed.add({place - 0.5 * bar, y.at(classes[k].y), bar});
        if (std::isfinite(classes[k].x)) expected.add({place + 0.5 * bar, y.at(classes[k].x), bar});
        for (const double frequency : {classes[k].x, classes[k].y}) leftOut += std::isfinite(frequency) ? 0U : 1U;
    }
    chart.add(observed, "using 1:2:3 with boxes fillstyle solid 1.0 border rgb '#000000' " + inColour(colour::blue), "observed");
    chart.add(expected, "using 1:2:3 with boxes fillstyle solid 1.0 border rgb '#000000' " + inColour(colour::band), "expected");
    noteLeftOut(chart, leftOut, {"frequency", "frequencies"});
    return pictureOf(chart, words);
}

Picture picture(wq_lib::KolmogorovSmirnov2& test, const PictureWords& words)
{
    const std::vector<Point> classes = pointsOf(test);
    const double n1 = static_cast<double>(test.getN1());
    const double n2 = static_cast<double>(test.getN2());
    std::vector<Point> relative;
    Point sum{0.0, 0.0};
    for (const Point& frequencies : classes) {
        sum = {sum.x + frequencies.x, sum.y + frequencies.y};
        relative.push_back({sum.x / n1, sum.y / n2});
    }
    const auto difference = [&](std::size_t k) { return std::fabs(relative[k].x - relative[k].y); };
    std::size_t largest = 0;
    Extent heights;
    heights.include(1.0);
    for (std::size_t k = 0; k < relative.size(); ++k) {
        heights.include(relative[k].x);
        heights.include(relative[k].y);
        if (difference(k) > difference(largest)) largest = k;
    }
    const Axis x = placeAxis(classes.size());
    const Axis y(heights, Axis::Ends::fromZero);

    Chart chart(words.canvas, titleOf(test, words),
                "n = " + digits(test.getN1()) + " and " + digits(test.getN2()) + ", " + counted(classes.size(), "class", "classes"));
    const bool areClassesNamed = words.labels.size() == classes.size() && !words.classesAreValues;
    chart.setX(x, classLabel(words), true);
    if (areClassesNamed && classes.size() <= mostShownSingly) chart.setXTicks(placeTicks(words));
    chart.setY(y, frequencyLabel(words, "relative cumulative frequency"));
    constexpr std::size_t mostSteps = 1000;
    const std::size_t step = (classes.size() + mostSteps - 1) / mostSteps;
    const auto curve = [&](double Point::*sample) {
        Rows rows;
        double height = 0.0;
        for (std::size_t k = 0; k < relative.size(); ++k) {
            if (!std::isfinite(relative[k].*sample) || (k % step != 0 && k != largest && k + 1 != relative.size())) continue;
            const double begin = static_cast<double>(k) + 0.5;
            rows.add({begin, y.at(height)});
            height = relative[k].*sample;
            rows.add({begin, y.at(height)});
            rows.add({begin + 1.0, y.at(height)});
        }
        return rows;
    };
    chart.add(curve(&Point::x), "using 1:2 with lines linewidth 2.5 " + inColour(colour::blue), sampleName(words, 0));
    chart.add(curve(&Point::y), "using 1:2 with lines linewidth 2.5 dashtype (9,5) " + inColour(colour::vermilion), sampleName(words, 1));
    if (!relative.empty() && std::isfinite(difference(largest))) {
        Rows d;
        const double place = static_cast<double>(largest + 1);
        d.add({place, y.at(relative[largest].x)});
        d.add({place, y.at(relative[largest].y)});
        chart.add(d, "using 1:2 with linespoints linewidth 3 pointtype 7 pointsize 0.7*mark " + inColour(colour::black),
                  "D = " + figures(test.getD()) + (words.classesAreValues ? " at value " : " at class ") +
                      (areClassesNamed ? labelOf(words, largest + 1, "") : std::to_string(largest + 1)));
    }
    if (!std::isfinite(relative.empty() ? 0.0 : relative.back().x) || !std::isfinite(relative.empty() ? 0.0 : relative.back().y))
        chart.note("a relative frequency is not finite, and left out");
    return pictureOf(chart, words);
}

}  // namespace wqstat
