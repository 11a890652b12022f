// Pictures of pairs: scatters, with lines and curves.
#include "picture.h"

#include "picture_parts.h"

#include "results/textbook.h"

#include <wq_exact/wq_exact.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace wqstat {

namespace {

/** What the axes of a scatter have to hold: the pairs that have a place on both, which on a logarithmic one are those above 0. */
struct Ground {
    Axis::Scale x;
    Axis::Scale y;
    Extents extents;

    /** The models say which axes are logarithmic where nothing else is asked for. */
    Ground(const std::vector<Point>& points, const PictureWords& words, bool xByModel, bool yByModel)
        : x(scaleOf('x', words, aboveZero(points, &Point::x), xByModel)),
          y(scaleOf('y', words, aboveZero(points, &Point::y), yByModel))
    {
        std::vector<Point> placed;
        placed.reserve(points.size());
        for (const Point& point : points)
            if (hasPlace(point.x, x) && hasPlace(point.y, y)) placed.push_back(point);
        extents = extentsOf(placed);
    }

    static bool hasPlace(double value, Axis::Scale scale) { return scale == Axis::Scale::linear || value > 0.0; }
    Axis xAxis() const { return Axis(extents.x, Axis::Ends::padded, x); }
    Axis yAxis() const { return Axis(extents.y, Axis::Ends::padded, y); }
};

Picture correlationPicture(wq_lib::BasicXyStatistics& pairs, double r, const PictureWords& words)
{
    const std::vector<Point> points = pointsOf(pairs);
    const Ground ground(points, words, false, false);
    const Axis x = ground.xAxis();
    const Axis y = ground.yAxis();
    const wq_lib::xy_stat& result = pairs.getXyResult();

    Chart chart(words.canvas, titleOf(pairs, words), statisticText("r", r, coefficient(r)) + ", n = " + digits(result.x.n));
    chart.setX(x, labelOr(words.xLabel, "x"));
    chart.setY(y, labelOr(words.yLabel, "y"));
    Rows means;
    if (std::isfinite(result.x.mean) && std::isfinite(result.y.mean)) {
        means.add({x.at(result.x.mean), y.low()});
        means.add({x.at(result.x.mean), y.high()});
        means.gap();
        means.add({x.low(), y.at(result.y.mean)});
        means.add({x.high(), y.at(result.y.mean)});
    }
    addScatter(chart, points, x, y, pairNoun);
    chart.add(means, "using 1:2 with lines linewidth 1.5 dashtype 3 " + inColour(colour::black),
              "means " + x.text(result.x.mean) + " and " + y.text(result.y.mean));
    return pictureOf(chart, words);
}

using Scale = double (*)(double);

double asItIs(double value) { return value; }
double logarithm(double value) { return std::log(value); }

/** What a model fits its line to. */
struct Model {
    Scale ofX;
    Scale ofY;
    std::string formula;
};

std::string sum(double a, double b) { return figures(a) + (b < 0.0 ? " - " : " + ") + figures(std::fabs(b)); }

/** The curve and the limits of its height at one x. */
struct Height {
    double lower;
    double middle;
    double upper;
};

Height heightAt(const wq_exact::RegressionResult& exact, double x)
{
    const double middle = exact.height(x);
    const wq_exact::Limits limits = std::isfinite(middle) ? exact.lineLimits(x) : wq_exact::Limits();
    return {limits.lower, middle, limits.upper};
}

/** "R² = 0.98", of the line that was fitted, and the probability that its slope is 0. */
std::string fitText(const wq_exact::RegressionResult& exact, const Model& model)
{
    std::string text;
    if (std::isfinite(exact.rSquared)) text += "R\u00b2 = " + coefficient(exact.rSquared) + (model.ofY == asItIs ? ", " : " of ln y, ");
    if (std::isfinite(exact.slope.p)) text += probability(exact.slope.p) + ", ";
    return text + "n = " + digits(exact.n);
}

/** Places along the x that were fitted and have a place: even, but on a logarithmic axis in even ratios, and close where a logarithm bends
 * most. */
std::vector<double> placesAlong(const Extent& fitted, const Model& model, const Axis& axis)
{
    constexpr int steps = 200;
    std::vector<double> places;
    for (int i = 0; i <= steps && !fitted.isEmpty(); ++i) {
        double part = static_cast<double>(i) / steps;
        if (axis.isLogarithmic()) {
            places.push_back(i == steps ? fitted.high : fitted.low * std::pow(fitted.high / fitted.low, part));
            continue;
        }
        if (model.ofX != asItIs) part *= part;
        places.push_back(i == steps ? fitted.high : fitted.low * (1.0 - part) + fitted.high * part);
    }
    return places;
}

/** A curve that leaves the data far behind must not flatten them. */
Extent withRoom(const Extent& data, Axis::Scale scale)
{
    Extent extent;
    if (scale == Axis::Scale::logarithmic) {
        extent.include(data.low / (data.high / data.low));
        extent.include(data.high * (data.high / data.low));
    } else {
        extent.include(data.low - (data.high - data.low));
        extent.include(data.high + (data.high - data.low));
    }
    return extent;
}

const char* residualName(const Model& model) { return model.ofY == asItIs ? "residual" : "residual of ln y"; }

/** What the line leaves of each y, on the scale on which it was fitted. */
Chart residualsOf(const wq_exact::RegressionResult& exact, const Model& model, const std::vector<Point>& points, const Axis& x,
                  const PictureWords& words)
{
    std::vector<Point> residuals;
    for (const Point& point : points)
        if (std::isfinite(x.at(point.x)))
            residuals.push_back({point.x, model.ofY(point.y) - (exact.meanY + exact.b * (model.ofX(point.x) - exact.meanX))});
    Extent extent = extentsOf(residuals).y;
    extent.include(0.0);
    const Axis y(extent);
    Chart chart(words.canvas, "", "");
    chart.setX(x, labelOr(words.xLabel, "x"));
    chart.setY(y, residualName(model));
    addScatter(chart, residuals, x, y, {"", ""});
    Rows zero;
    zero.add({x.low(), y.at(0.0)});
    zero.add({x.high(), y.at(0.0)});
    chart.add(zero, "using 1:2 with lines linewidth 1.5 " + inColour(colour::vermilion));
    return chart;
}

/** The curve and its limits as places on the axes. */
struct CurveRows {
    Rows line;
    Rows band;
    Rows limits;

    CurveRows(const std::vector<std::pair<double, Height>>& heights, const Axis& x, const Axis& y)
    {
        const auto onAxis = [&y](double height) {  // what has no place on a logarithmic axis lies below it
            const double position = y.at(height);
            return std::isnan(position) ? y.low() : std::clamp(position, y.low(), y.high());
        };
        for (const auto& [at, height] : heights) {
            const double position = x.at(at);
            if (std::isfinite(height.middle)) line.add({position, y.at(height.middle)});
            if (std::isfinite(height.lower) && std::isfinite(height.upper))
                band.add({position, onAxis(height.lower), onAxis(height.upper)});
        }
        for (const bool upper : {false, true}) {
            for (const auto& [at, height] : heights)
                if (const double limit = upper ? height.upper : height.lower; std::isfinite(limit)) limits.add({x.at(at), y.at(limit)});
            limits.gap();
        }
    }
};

/** @param name of what stands below. */
Picture withPanelBelow(Chart& chart, Chart below, const std::string& name, const PictureWords& words)
{
    chart.hideXNumbers();
    Chart::alignLeft(chart, below);
    if (words.canvas.layoutHeight() < 600.0) {
        Chart::sharePanels(chart, below);
    } else {
        constexpr double share = 0.64;
        chart.setPanel(0.0, share);
        below.setPanel(share, 1.0 - share);
    }
    Picture picture = pictureOf(chart, words);
    picture.commands = "set multiplot\n" + picture.commands + below.commands() + "unset multiplot\n";
    picture.description += " Below, upwards: " + name + ".";
    return picture;
}

Picture curvePicture(wq_lib::Regression& regression, const wq_exact::RegressionResult& exact, const Model& model, const PictureWords& words)
{
    const std::vector<Point> points = pointsOf(regression);
    Ground ground(points, words, model.ofX != asItIs, model.ofY != asItIs);
    const Axis x = ground.xAxis();

    // The curve runs over the x that were fitted and have a place.
    Extent fitted;
    for (const Point& point : points)
        if (std::isfinite(point.y) && std::isfinite(model.ofX(point.x)) && Ground::hasPlace(point.x, ground.x)) fitted.include(point.x);
    std::vector<std::pair<double, Height>> heights;
    for (const double place : placesAlong(fitted, model, x)) heights.emplace_back(place, heightAt(exact, place));

    const Extent widest = withRoom(ground.extents.y, ground.y);
    bool drawn = false;
    bool limited = false;
    for (const auto& [place, height] : heights) {
        for (const double y : {height.lower, height.middle, height.upper})
            if (y >= widest.low && y <= widest.high) ground.extents.y.include(y);
        drawn = drawn || std::isfinite(height.middle);
        limited = limited || (std::isfinite(height.lower) && std::isfinite(height.upper));
    }
    const Axis y = ground.yAxis();
    const CurveRows rows(heights, x, y);

    Chart chart(words.canvas, titleOf(regression, words), fitText(exact, model));
    chart.setX(x, labelOr(words.xLabel, "x"));
    chart.setY(y, labelOr(words.yLabel, "y"));
    if (limited) chart.add(rows.band, "using 1:2:3 with filledcurves " + inColour(colour::band));
    addScatter(chart, points, x, y, pairNoun);
    const auto addLimits = [&](const std::string& what) {
        if (limited)
            chart.add(rows.limits, "using 1:2 with lines linewidth 1.5 dashtype (9,5) " + inColour(colour::vermilion),
                      confidenceText(regression) + what, confidenceText(regression) + " limits");
        else
            chart.note("no confidence limits: they are not finite");
    };
    const std::string whole = std::string(" confidence limits of the ") + (model.ofX == asItIs && model.ofY == asItIs ? "line" : "curve");
    const bool curveIsLast = isNarrow(words.canvas);  // the last entry of the key has the most room
    if (curveIsLast) addLimits(" limits");
    if (drawn)
        chart.add(rows.line, "using 1:2 with lines linewidth 2.5 " + inColour(colour::vermilion), model.formula);
    else
        chart.note("no curve: it is not finite");
    const auto isInside = [&y](const auto& at) { return y.at(at.second.middle) >= y.low() && y.at(at.second.middle) <= y.high(); };
    if (drawn && std::none_of(heights.begin(), heights.end(), isInside)) chart.note("the curve lies outside of the picture");
    if (!curveIsLast) addLimits(whole);
    if (!words.residuals) return pictureOf(chart, words);

    return withPanelBelow(chart, residualsOf(exact, model, points, x, words), residualName(model), words);
}

}  // namespace

Picture picture(wq_lib::BasicXyStatistics& pairs, const PictureWords& words)
{
    const wq_lib::xy_stat& result = pairs.getXyResult();
    return correlationPicture(pairs, result.sumProducts / std::sqrt(result.x.sumOfSquares * result.y.sumOfSquares), words);
}

Picture picture(wq_lib::Correlation& pairs, const PictureWords& words)
{
    return correlationPicture(pairs, pairs.getCorrelationResult().r, words);
}

Picture picture(wq_lib::LinearRegression& regression, const PictureWords& words)
{
    const wq_exact::RegressionResult exact = wq_exact::of(regression);
    return curvePicture(regression, exact, {asItIs, asItIs, "y = " + sum(exact.a, exact.b) + " x"}, words);
}

Picture picture(wq_lib::LogarithmicRegression& regression, const PictureWords& words)
{
    const wq_exact::RegressionResult exact = wq_exact::of(regression);
    return curvePicture(regression, exact, {logarithm, asItIs, "y = " + sum(exact.a, exact.b) + " ln x"}, words);
}

Picture picture(wq_lib::ExponentialRegression& regression, const PictureWords& words)
{
    const wq_exact::RegressionResult exact = wq_exact::of(regression);
    const std::string formula = "y = " + figures(constantOf(exact)) + " e^(" + figures(exact.b) + " x)";
    return curvePicture(regression, exact, {asItIs, logarithm, formula}, words);
}

Picture picture(wq_lib::PowerRegression& regression, const PictureWords& words)
{
    const wq_exact::RegressionResult exact = wq_exact::of(regression);
    const std::string formula = "y = " + figures(constantOf(exact)) + " x^(" + figures(exact.b) + ")";
    return curvePicture(regression, exact, {logarithm, logarithm, formula}, words);
}

namespace {

/** "F(1, 3) = 12.3, p = 0.0393, R2 = 0.8, 5 different x, 22 pairs": the line against the deviations of the groups from it. */
std::string testText(const wq_lib::LinearRegressionMultiY& regression, const wq_exact::MultiYResult& exact, std::size_t pairs)
{
    std::string text;
    if (!std::isnan(exact.regressionF) && std::isfinite(exact.slope.p))
        text = statisticText("F(1, " + figures(exact.deviations.df) + ")", exact.regressionF) + ", " + probability(exact.slope.p) + ", ";
    if (std::isfinite(exact.rSquared)) text += "R\u00b2 = " + coefficient(exact.rSquared) + ", ";
    return text + counted(regression.getGroups().size(), "x", "different x") + ", " + counted(pairs, "pair", "pairs");
}

}  // namespace

Picture picture(wq_lib::LinearRegressionMultiY& regression, const PictureWords& words)
{
    const std::vector<Point> points = pointsOf(regression);
    Extents extents = extentsOf(points);
    const wq_lib::regression_multi_y_stat& fit = regression.getRegressionResult();
    const wq_exact::MultiYResult exact = wq_exact::of(regression);
    const auto lineAt = [&](double slope, double x) { return exact.meanY + slope * (x - exact.meanX); };
    const bool fitted =
        regression.isComputeRegression() && std::isfinite(fit.b) && std::isfinite(exact.meanX) && std::isfinite(exact.meanY);
    const bool limited = fitted && std::isfinite(exact.slopeLimits.lower) && std::isfinite(exact.slopeLimits.upper);
    const double ends[] = {extents.x.low, extents.x.high};
    std::vector<double> slopes;
    if (fitted) slopes.push_back(fit.b);
    if (limited) slopes.insert(slopes.end(), {exact.slopeLimits.lower, exact.slopeLimits.upper});
    const double room = extents.y.high - extents.y.low;
    const Extent data = extents.y;
    for (const double slope : slopes)
        for (const double end : ends)
            if (const double height = lineAt(slope, end); height >= data.low - room && height <= data.high + room)
                extents.y.include(height);
    const Axis x(extents.x);
    const Axis y(extents.y);

    Chart chart(words.canvas, titleOf(regression, words), testText(regression, exact, points.size()));
    chart.setX(x, labelOr(words.xLabel, "x"));
    chart.setY(y, labelOr(words.yLabel, "y"));
    addScatter(chart, points, x, y, pairNoun);
    std::vector<Rows> lines(slopes.size());
    for (std::size_t i = 0; i < slopes.size(); ++i)
        for (const double end : ends) lines[i].add({x.at(end), y.at(lineAt(slopes[i], end))});
    if (fitted)
        chart.add(lines[0], "using 1:2 with lines linewidth 2.5 " + inColour(colour::vermilion), "y = " + sum(fit.a, fit.b) + " x");
    else
        chart.note(regression.isComputeRegression() ? "no line: it is not finite"
                                                    : "no line was fitted: the groups do not differ significantly");
    if (limited) {
        const GnuplotCode style = "using 1:2 with lines linewidth 1.5 dashtype (9,5) " + inColour(colour::black);
        chart.add(lines[1], style,
                  confidenceText(regression) + (isNarrow(words.canvas) ? " limits of b"
                                                                       : " limits of the slope " + figures(exact.slopeLimits.lower) +
                                                                             " to " + figures(exact.slopeLimits.upper)));
        chart.add(lines[2], style);
    }
    return pictureOf(chart, words);
}

}  // namespace wqstat
