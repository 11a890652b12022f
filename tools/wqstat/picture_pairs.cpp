// Pictures of pairs: scatters, with lines and curves.
#include "picture.h"

#include "picture_parts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace wqstat {

namespace {

std::string correlationPicture(wq_lib::BasicXyStatistics& pairs, double r, const PictureWords& words)
{
    const std::vector<Point> points = pointsOf(pairs);
    const Extents extents = extentsOf(points);
    const Axis x(extents.x);
    const Axis y(extents.y);
    const wq_lib::xy_stat& result = pairs.getXyResult();

    Chart chart(titleOf(pairs, words), "r = " + figures(r) + ", n = " + digits(result.x.n));
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
    return chart.commands();
}

using Scale = double (*)(double);

double asItIs(double value) { return value; }
double logarithm(double value) { return std::log(value); }
double exponential(double value) { return std::exp(value); }

/** What a model fits its line to, and what takes the line back to y. */
struct Model {
    Scale ofX;
    Scale backToY;
    std::string formula;
};

std::string sum(double a, double b) { return figures(a) + (b < 0.0 ? " - " : " + ") + figures(std::fabs(b)); }

/** The curve and the limits of its height at one x. */
struct Height {
    double lower;
    double middle;
    double upper;
};

class FittedCurve {
public:
    FittedCurve(const wq_lib::Regression& regression, const Model& ofModel)
        : fit(regression.getRegressionResult()),
          ssX(regression.getXyResult().x.sumOfSquares),
          model(ofModel)
    {
        if (fit.n > 2) t = wq_lib::t_PercentPoint(regression.getSignificance(), fit.n - 2);
    }

    Height at(double x) const
    {
        const double distance = model.ofX(x) - fit.meanX;
        const double line = fit.meanY + fit.b * distance;
        const double se = std::sqrt(fit.residualVariance * (1.0 / static_cast<double>(fit.n) + distance * distance / ssX));
        return {model.backToY(line - t * se), model.backToY(line), model.backToY(line + t * se)};
    }

private:
    const wq_lib::regression_stat& fit;
    double ssX;
    const Model& model;
    double t = std::numeric_limits<double>::quiet_NaN();
};

std::string curvePicture(wq_lib::Regression& regression, const Model& model, const PictureWords& words)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    const std::vector<Point> points = pointsOf(regression);
    Extents extents = extentsOf(points);

    // The curve runs over the x that were fitted; close to the smallest one a logarithm bends most.
    Extent fitted;
    for (const Point& point : points)
        if (std::isfinite(point.y) && std::isfinite(model.ofX(point.x))) fitted.include(point.x);
    constexpr int steps = 200;
    const FittedCurve curve(regression, model);
    std::vector<std::pair<double, Height>> heights;
    for (int i = 0; i <= steps && !fitted.isEmpty(); ++i) {
        double part = static_cast<double>(i) / steps;
        if (model.ofX != asItIs) part *= part;
        const double x = i == steps ? fitted.high : fitted.low * (1.0 - part) + fitted.high * part;
        heights.emplace_back(x, curve.at(x));
    }

    // A curve that leaves the data far behind must not flatten them.
    const double room = extents.y.high - extents.y.low;
    const double lowest = extents.y.low - room;
    const double highest = extents.y.high + room;
    bool drawn = false;
    bool limited = false;
    for (const auto& [x, height] : heights) {
        for (const double y : {height.lower, height.middle, height.upper})
            if (y >= lowest && y <= highest) extents.y.include(y);
        drawn = drawn || std::isfinite(height.middle);
        limited = limited || (std::isfinite(height.lower) && std::isfinite(height.upper));
    }
    const Axis x(extents.x);
    const Axis y(extents.y);
    Rows band;
    Rows line;
    Rows limits;
    for (const auto& [at, height] : heights) {
        const double position = x.at(at);
        if (std::isfinite(height.middle)) line.add({position, y.at(height.middle)});
        if (std::isfinite(height.lower) && std::isfinite(height.upper))
            band.add({position, std::clamp(y.at(height.lower), y.low(), y.high()), std::clamp(y.at(height.upper), y.low(), y.high())});
    }
    for (const bool upper : {false, true}) {
        for (const auto& [at, height] : heights)
            if (const double limit = upper ? height.upper : height.lower; std::isfinite(limit)) limits.add({x.at(at), y.at(limit)});
        limits.gap();
    }

    Chart chart(titleOf(regression, words), "n = " + digits(fit.n));
    chart.setX(x, labelOr(words.xLabel, "x"));
    chart.setY(y, labelOr(words.yLabel, "y"));
    if (limited) chart.add(band, "using 1:2:3 with filledcurves " + inColour(colour::band));
    addScatter(chart, points, x, y, pairNoun);
    if (drawn)
        chart.add(line, "using 1:2 with lines linewidth 2.5 " + inColour(colour::vermilion), model.formula);
    else
        chart.note("no curve: it is not finite");
    if (limited)
        chart.add(limits, "using 1:2 with lines linewidth 1.5 dashtype (9,5) " + inColour(colour::vermilion),
                  confidenceText(regression) + " confidence limits of the curve");
    else
        chart.note("no confidence limits: they are not finite");
    return chart.commands();
}

}  // namespace

std::string picture(wq_lib::BasicXyStatistics& pairs, const PictureWords& words)
{
    const wq_lib::xy_stat& result = pairs.getXyResult();
    return correlationPicture(pairs, result.sumProducts / std::sqrt(result.x.sumOfSquares * result.y.sumOfSquares), words);
}

std::string picture(wq_lib::Correlation& pairs, const PictureWords& words)
{
    return correlationPicture(pairs, pairs.getCorrelationResult().r, words);
}

std::string picture(wq_lib::LinearRegression& regression, const PictureWords& words)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    return curvePicture(regression, {asItIs, asItIs, "y = " + sum(fit.a, fit.b) + " x"}, words);
}

std::string picture(wq_lib::LogarithmicRegression& regression, const PictureWords& words)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    return curvePicture(regression, {logarithm, asItIs, "y = " + sum(fit.a, fit.b) + " ln x"}, words);
}

std::string picture(wq_lib::ExponentialRegression& regression, const PictureWords& words)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    return curvePicture(regression, {asItIs, exponential, "y = " + figures(fit.a) + " e^(" + figures(fit.b) + " x)"}, words);
}

std::string picture(wq_lib::PowerRegression& regression, const PictureWords& words)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    return curvePicture(regression, {logarithm, exponential, "y = " + figures(fit.a) + " x^(" + figures(fit.b) + ")"}, words);
}

std::string picture(wq_lib::LinearRegressionMultiY& regression, const PictureWords& words)
{
    const std::vector<Point> points = pointsOf(regression);
    Extents extents = extentsOf(points);
    const wq_lib::regression_multi_y_stat& fit = regression.getRegressionResult();
    const double n = static_cast<double>(regression.getTotalObservations());
    const double meanX = fit.sumX / n;
    const double meanY = regression.getGrandTotal() / n;
    const auto lineAt = [&](double slope, double x) { return meanY + slope * (x - meanX); };
    const bool fitted = regression.isComputeRegression() && std::isfinite(fit.b) && std::isfinite(meanX) && std::isfinite(meanY);
    const bool limited = fitted && isFinite(fit.limitsB);
    const double ends[] = {extents.x.low, extents.x.high};
    std::vector<double> slopes;
    if (fitted) slopes.push_back(fit.b);
    if (limited) slopes.insert(slopes.end(), {fit.limitsB.getLower(), fit.limitsB.getUpper()});
    const double room = extents.y.high - extents.y.low;
    const Extent data = extents.y;
    for (const double slope : slopes)
        for (const double end : ends)
            if (const double height = lineAt(slope, end); height >= data.low - room && height <= data.high + room)
                extents.y.include(height);
    const Axis x(extents.x);
    const Axis y(extents.y);

    Chart chart(titleOf(regression, words),
                counted(regression.getGroups().size(), "x", "different x") + ", " + counted(points.size(), "pair", "pairs"));
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
        const std::string style = "using 1:2 with lines linewidth 1.5 dashtype (9,5) " + inColour(colour::black);
        chart.add(lines[1], style,
                  confidenceText(regression) + " limits of the slope " + figures(fit.limitsB.getLower()) + " to " +
                      figures(fit.limitsB.getUpper()));
        chart.add(lines[2], style);
    }
    return chart.commands();
}

}  // namespace wqstat
