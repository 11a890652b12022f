// Pictures of groups and samples side by side.
#include "picture.h"

#include "data_files/comment_words.h"
#include "picture_parts.h"

#include <wq_exact/wq_exact.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace wqstat {

namespace {

/** A line for each sample; the comment of the test is that of the first with that of the second behind it. */
std::string titleOf(const TwoDataFiles& test, const PictureWords& words)
{
    if (words.title) return *words.title;
    const std::string both = test.getComment();
    const std::string second = test.second.getComment();
    const std::string first = readableComment(both.substr(0, both.size() - std::min(both.size(), second.size())));
    if (first.empty() || readableComment(second).empty()) return words.source;
    return "1: " + first + "\n2: " + readableComment(second);
}

/** Position k of the i-th observation of a group, beside its neighbours so that equal ones are seen. */
double besides(double place, std::size_t i)
{
    constexpr double goldenRatio = 0.618033988749895;
    constexpr double halfWidth = 0.2;
    const double turn = static_cast<double>(i) * goldenRatio + 0.5;
    return place + halfWidth * (2.0 * (turn - std::floor(turn)) - 1.0);
}

/** Bars across the places of groups, from rows of their left end, level and width. Vectors end straight, where lines have slanted ends. */
GnuplotCode levels(const GnuplotCode& looks) { return "using 1:2:3:(0) with vectors nohead " + looks; }

void addLevel(Rows& rows, double place, double halfWidth, double level) { rows.add({place - halfWidth, level, 2.0 * halfWidth}); }

/** Whiskers from rows of place, middle, lower and upper end: without a mark that would hide them where they are short. */
GnuplotCode whiskers(const GnuplotCode& looks)
{
    return "using 1:3:(0):($4-$3) with vectors heads size screen 0.007,90 fixed nofilled " + looks;
}

/** Of the observations, and what is drawn with them. */
Axis valueAxis(const std::vector<Point>& points, const Extent& all, const PictureWords& words)
{
    const Axis::Scale scale = scaleOf('y', words, all);
    return Axis(scale == Axis::Scale::logarithmic ? aboveZero(points, &Point::y) : all, Axis::Ends::padded, scale);
}

/** Between which the upper end of mean and standard deviation lies, by the limits of the variance. */
wq_exact::Limits endLimits(const wq_lib::basic_stat& sample, const wq_exact::Limits& variance)
{
    return {sample.mean + std::sqrt(variance.lower), sample.mean + std::sqrt(variance.upper)};
}

/** Beside the observations: mean and standard deviation of both samples, and the limits of the latter. */
void addSpreads(Chart& chart, const TwoDataFiles& test, const wq_exact::TwoVariancesResult& exact, const Axis& y)
{
    const wq_lib::basic_stat* const results[] = {&test.getResult(), &test.getSecondSample()};
    Rows means;
    Rows spreads;
    Rows limits;
    for (const int sample : {0, 1}) {
        const std::string name = "sample " + std::to_string(sample + 1);
        const double mean = results[sample]->mean;
        const double deviation = std::sqrt(exact.variances[sample]);
        if (std::isfinite(mean)) addLevel(means, sample + 1.32, 0.06, y.at(mean));
        if (!std::isfinite(mean) || !std::isfinite(deviation)) {
            chart.note(name + ": mean or standard deviation is not finite");
            continue;
        }
        spreads.add({sample + 1.32, y.at(mean), y.at(mean - deviation), y.at(mean + deviation)});
        const wq_exact::Limits end = endLimits(*results[sample], exact.varianceLimits[sample]);
        if (std::isfinite(end.lower) && std::isfinite(end.upper))
            limits.add({sample + 1.42, y.at(mean + deviation), y.at(end.lower), y.at(end.upper)});
        else
            chart.note(name + ": no limits of the standard deviation, which is " + figures(deviation));
    }
    chart.add(spreads, whiskers("linewidth 2.5 " + inColour(colour::vermilion)), "mean and standard deviation");
    chart.add(means, levels("linewidth 3.5 " + inColour(colour::vermilion)), "");
    chart.add(limits, whiskers("linewidth 2 " + inColour(colour::black)), confidenceText(test) + " limits of the deviation");
}

}  // namespace

Picture picture(const TwoDataFiles& test, const PictureWords& words)
{
    const std::vector<double> values[] = {analysedValues(test), analysedValues(test.second)};
    const wq_lib::basic_stat* const results[] = {&test.getResult(), &test.getSecondSample()};
    const wq_exact::TwoVariancesResult exact = exactOf(test);
    std::vector<Point> points;
    Extent extent;
    for (const int sample : {0, 1}) {
        for (std::size_t i = 0; i < values[sample].size(); ++i) {
            points.push_back({besides(sample + 1.0, i), values[sample][i]});
            extent.include(values[sample][i]);
        }
        const double deviation = std::sqrt(exact.variances[sample]);
        extent.include(results[sample]->mean - deviation);
        extent.include(results[sample]->mean + deviation);
        extent.include(endLimits(*results[sample], exact.varianceLimits[sample]).upper);
    }
    const Axis x = placeAxis(2);
    const Axis y = valueAxis(points, extent, words);

    Chart chart(words.canvas, titleOf(test, words),
                statisticText("F", exact.ratio.statistic) + ", variances " + figures(exact.variances[0]) + " and " +
                    figures(exact.variances[1]));
    chart.setX(x, labelOr(words.xLabel, "sample"));
    chart.setXTicks({{1.0, labelOf(words, 1, "1") + " (n = " + digits(results[0]->n) + ")"},
                     {2.0, labelOf(words, 2, "2") + " (n = " + digits(results[1]->n) + ")"}});
    chart.setY(y, labelOr(words.yLabel, "value"));
    addScatter(chart, points, x, y, observationNoun);
    addSpreads(chart, test, exact, y);
    noteLeftOut(chart, results[0]->n + results[1]->n - values[0].size() - values[1].size(), observationNoun);
    return pictureOf(chart, words);
}

namespace {

/** "F(4, 20) = 1.1805, p = 0.35", as the textbook has them. */
std::string testText(const wq_lib::SingleAnova& anova, const wq_exact::AnovaResult& exact)
{
    if (!std::isfinite(exact.F.p)) return statisticText("F", anova.getAmong().fs);
    const std::string name = "F(" + std::to_string(anova.getAmong().df) + ", " + std::to_string(anova.getWithin().df) + ")";
    return statisticText(name, exact.F.statistic) + ", " + probability(exact.F.p);
}

}  // namespace

Picture picture(wq_lib::SingleAnova& anova, const PictureWords& words)
{
    const std::vector<wq_lib::anova_group>& groups = anova.getGroups();
    const bool beside = groups.size() <= mostShownSingly;
    std::vector<Point> points;
    Extent extent;
    for (std::size_t k = 0; k < groups.size(); ++k) {
        const double place = static_cast<double>(k + 1);
        for (std::size_t i = 0; i < groups[k].observations.size(); ++i) {
            points.push_back({beside ? besides(place, i) : place, groups[k].observations[i]});
            extent.include(groups[k].observations[i]);
        }
    }
    const wq_exact::AnovaResult exact = wq_exact::of(anova);
    for (const wq_lib::anova_group& group : groups)
        if (const wq_exact::Limits limits = exact.meanLimits(group); beside)
            for (const double limit : {limits.lower, limits.upper}) extent.include(limit);
    const Axis x = placeAxis(groups.size());
    const Axis y = valueAxis(points, extent, words);

    Chart chart(words.canvas, titleOf(anova, words),
                testText(anova, exact) + ", " + counted(groups.size(), "group", "groups") + ", " +
                    counted(static_cast<std::size_t>(anova.getTotalObservations()), "observation", "observations"));
    chart.setX(x, labelOr(words.xLabel, "group") + (beside || words.xIsAsked ? "" : ", by its place in the data"), true);
    if (beside) {
        const std::vector<std::string> labels = tickLabels(words);
        std::vector<Tick> ticks;
        for (std::size_t k = 0; k < groups.size(); ++k) {
            const double id = groups[k].id;  // the number of its label, where there are labels
            ticks.push_back({static_cast<double>(k + 1), labels.empty() ? figures(id, 10) : labels.at(static_cast<std::size_t>(id) - 1)});
        }
        chart.setXTicks(ticks);
    }
    chart.setY(y, labelOr(words.yLabel, "observation"));
    addScatter(chart, points, x, y, observationNoun);

    const double grandMean = anova.getGrandTotal() / static_cast<double>(anova.getTotalObservations());
    if (std::isfinite(grandMean)) {
        Rows line;
        line.add({x.low(), y.at(grandMean)});
        line.add({x.high(), y.at(grandMean)});
        chart.add(line, "using 1:2 with lines linewidth 1.5 dashtype 3 " + inColour(colour::black), "grand mean " + y.text(grandMean),
                  "mean " + y.text(grandMean));
    }

    constexpr std::size_t mostMeans = 2000;
    Rows means;
    Rows bars;
    std::size_t notFinite = 0;
    for (std::size_t k = 0; k < groups.size() && groups.size() <= mostMeans; ++k) {
        const double mean = groups[k].mean;
        const wq_exact::Limits limits = exact.meanLimits(groups[k]);
        const double place = static_cast<double>(k + 1);
        if (std::isfinite(mean))
            addLevel(means, place, 0.36, y.at(mean));
        else
            ++notFinite;
        if (beside && std::isfinite(mean) && std::isfinite(limits.lower) && std::isfinite(limits.upper))
            bars.add({place + 0.29, y.at(mean), y.at(limits.lower), y.at(limits.upper)});
    }
    chart.add(means, levels("linewidth 3.5 " + inColour(colour::vermilion)), "mean of the group");
    chart.add(bars, whiskers("linewidth 2 " + inColour(colour::black)), confidenceText(anova) + " confidence limits of the mean",
              confidenceText(anova) + " limits of the mean");
    if (!beside) chart.note("no limits and no names of groups: there are more than " + std::to_string(mostShownSingly) + " of them");
    if (groups.size() > mostMeans) chart.note("no means: there are too many groups to show them");
    noteLeftOut(chart, notFinite, {"mean", "means"});
    return pictureOf(chart, words);
}

}  // namespace wqstat
