// wqstat --plot: which file appears, what gnuplot is told to draw, and what happens when nothing can be drawn.
#include "program.h"
#include "data_files.h"

#include <wq_stat/wq_stat.h>

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pointwise;
using testing::StartsWith;
using namespace wq_test::data_files;
using wq_test::contentOf;
using wq_test::Outcome;
using wq_test::run;
using wq_test::shipped;
using wq_test::TempFolder;
using wq_test::Words;

constexpr int done = 0;
constexpr int couldNotAnalyse = 1;
constexpr int wrongUsage = 2;

// An environment variable for as long as the object lives.
class Variable {
public:
    Variable(std::string variable, const std::string& value) : name(std::move(variable))
    {
        if (const char* const old = std::getenv(name.c_str())) before = old;
        setenv(name.c_str(), value.c_str(), 1);
    }
    ~Variable() { setenv(name.c_str(), before.c_str(), 1); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    std::string name;
    std::string before;
};

Words plotted(Words arguments, const std::string& file)
{
    arguments.insert(arguments.end(), {"--plot", file});
    return arguments;
}

Words filesIn(const std::string& folder)
{
    Words names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// A program named gnuplot, first on PATH, that does what the shell commands say.
class FakeGnuplot {
public:
    explicit FakeGnuplot(const std::string& commands)
        : program(folder.write("gnuplot", "#!/bin/sh\n" + commands + "\n")),
          path("PATH", folder.path("") + ":" + std::getenv("PATH"))
    {
        chmod(program.c_str(), 0700);
    }

private:
    TempFolder folder;
    std::string program;
    Variable path;
};

// The texts of an SVG file, one to a line; a parser that refuses the file is a failure.
std::string textsOf(const std::string& svg)
{
    const TempFolder folder;
    const std::string script = folder.write("texts.py", "import sys, xml.etree.ElementTree as xml\n"
                                                        "for node in xml.parse(sys.argv[1]).iter('{http://www.w3.org/2000/svg}text'):\n"
                                                        "    print(''.join(node.itertext()).strip())\n");
    const std::string texts = folder.path("texts");
    const std::string command = "PYTHONIOENCODING=utf-8 python3 '" + script + "' '" + svg + "' > '" + texts + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << svg << " is no XML";
    return contentOf(texts);
}

// ---------------------------------------------------------------- what gnuplot is told

using Rows = std::vector<std::vector<double>>;

struct Script {
    std::string text;
    std::map<std::string, Rows> layers;  // by the title in the key; those without are "1", "2" ... by their order
};

// What stands between the two texts, from a place on, which moves behind it; empty when there is no such thing.
std::string between(const std::string& text, const std::string& begin, const std::string& end, std::size_t& place)
{
    const std::size_t first = text.find(begin, place);
    if (first == std::string::npos) return "";
    const std::size_t last = text.find(end, first + begin.size());
    place = last + end.size();
    return text.substr(first + begin.size(), last - first - begin.size());
}

Script scriptOf(const std::string& text)
{
    Script script{text, {}};
    std::size_t place = 0;
    std::size_t plot = text.find("\nplot ");
    for (int layer = 1;; ++layer) {
        const std::string name = "$layer" + std::to_string(layer);
        std::istringstream lines(between(text, name + " << EOD\n", "EOD\n", place));
        if (lines.str().empty()) return script;
        Rows rows;
        for (std::string line; std::getline(lines, line);) {
            std::istringstream fields(line);
            std::vector<double> row;
            for (double number; fields >> number;) row.push_back(number);
            if (!row.empty()) rows.push_back(row);
        }
        const std::string style = between(text + ", $layer", name + " ", ", $layer", plot);
        plot -= std::string(", $layer").size();
        std::size_t start = 0;
        const std::string title = between(style, " title '", "'", start);
        script.layers[title.empty() ? std::to_string(layer) : title] = rows;
    }
}

// The commands that a run hands to gnuplot.
Script script(const Words& arguments)
{
    const TempFolder folder;
    const FakeGnuplot gnuplot("cat > '" + folder.path("script") + "'\necho '<?xml version=\"1.0\"?><svg></svg>'");
    const Outcome outcome = run(plotted(arguments, folder.path("picture.svg")));
    EXPECT_EQ(outcome.status, done) << outcome;
    return scriptOf(contentOf(folder.path("script")));
}

std::vector<double> column(const Rows& rows, std::size_t i)
{
    std::vector<double> values;
    for (const auto& row : rows) values.push_back(row.at(i));
    return values;
}

// ---------------------------------------------------------------- the files

const struct Analysis {
    int line;
    Words arguments;
    Words texts;  // among those on the picture
} analyses[] = {
    {__LINE__, {"describe", cavendish}, {"Cavendish 1798: density of the Earth (water = 1), 29 measurements.", "number of observations"}},
    {__LINE__,
     {"describe", "--head", ".1", cavendish, "--x-label", "density (g/cm³)", "--y-label", "a & b < c"},
     {"n = 26 of 29", "density (g/cm³)", "a & b < c"}},
    {__LINE__, {"frequency", cavendish}, {"10 classes, n = 29", "value"}},
    {__LINE__, {"pairs", norris}, {"pairs", "x", "y"}},
    {__LINE__, {"correlate", norris, "--x-label", "true"}, {"true", "y"}},
    {__LINE__, {"regress", "--model", "linear", norris}, {"y = -0.26232 + 1.0021 x", "95 % confidence limits of the curve"}},
    {__LINE__, {"regress", "--model", "logarithmic", norris}, {"y"}},
    {__LINE__, {"regress", "--model", "exponential", norris}, {"y"}},
    {__LINE__, {"regress", "--model", "power", norris}, {"y"}},
    {__LINE__, {"anova", "--details", resistivity}, {"group", "observation", "mean of the group"}},
    {__LINE__, {"multiy", "--list", "0", "1", seedlings}, {"x", "y"}},
    {__LINE__, {"fit", peas}, {"observed", "expected", "frequency"}},
    {__LINE__, {"ks", digits}, {"sample 1", "sample 2", "relative cumulative frequency"}},
    {__LINE__,
     {"variances", instrument1, instrument2, "--y-label", "resistivity (ohm cm)"},
     {"1 (n = 5)", "2 (n = 5)", "resistivity (ohm cm)"}},
    {__LINE__, {"circular", "--unit", "degrees", pigeons}, {"0°", "mean vector (radius of the circle: 1)"}},
    {__LINE__,
     {"circular", "--unit", "bins", "--bins", "10", "--bin0", "1", "--bin-name", "digit", digits},
     {"10", "digit, clockwise from the top"}},
};

Words withoutPlot(const Words& arguments)
{
    Words plain;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--x-label" || arguments[i] == "--y-label")
            ++i;
        else
            plain.push_back(arguments[i]);
    }
    return plain;
}

TEST(Files, haveTheFormatTheyAreNamedAfterAndTheReportStaysAsItIs)
{
    for (const Analysis& analysis : analyses) {
        SCOPED_TRACE("row of line " + std::to_string(analysis.line));
        const TempFolder folder;
        const Outcome report = run(withoutPlot(analysis.arguments));
        EXPECT_EQ(report.status, done);
        for (const char* const name : {"picture.svg", "picture.png", "picture.PDF"})
            EXPECT_EQ(run(plotted(analysis.arguments, folder.path(name))), report);
        EXPECT_THAT(filesIn(folder.path("")), ElementsAre("picture.PDF", "picture.png", "picture.svg"));
        EXPECT_THAT(contentOf(folder.path("picture.PDF")), StartsWith("%PDF-"));
        const std::string png = contentOf(folder.path("picture.png"));
        EXPECT_THAT(png, StartsWith(std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x03\x20\0\0\x02\x58", 24))) << "800 by 600";
        const std::string texts = "\n" + textsOf(folder.path("picture.svg"));
        for (const std::string& text : analysis.texts) EXPECT_THAT(texts, HasSubstr("\n" + text + "\n"));
    }
}

TEST(Files, haveAnyName)
{
    const TempFolder folder;
    for (const char* const name : {"with a blank.svg", "it's.svg", "a\"b$c`d\\e.svg", "größe.svg", "-.svg", "two\nlines.svg"}) {
        EXPECT_EQ(run({"describe", cavendish, "--plot", folder.path(name)}).status, done) << name;
        EXPECT_THAT(contentOf(folder.path(name)), EndsWith("</svg>\n\n")) << name;
    }
    EXPECT_EQ(filesIn(folder.path("")).size(), 6U);
}

TEST(Files, areReadableByThoseWhomTheMaskAllows)
{
    const TempFolder folder;
    const mode_t before = umask(027);
    run({"describe", cavendish, "--plot", folder.path("a.png")});
    umask(before);
    struct stat status {};
    ASSERT_EQ(stat(folder.path("a.png").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST(Files, replaceTheFileBehindALink)
{
    const TempFolder folder;
    const std::string target = folder.write("target.svg", "old");
    std::filesystem::create_symlink(target, folder.path("link.svg"));
    EXPECT_EQ(run({"describe", cavendish, "--plot", folder.path("link.svg")}).status, done);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.svg")));
    EXPECT_THAT(contentOf(target), StartsWith("<?xml"));
}

TEST(Files, areDrawnFromStandardInputToo)
{
    const TempFolder folder;
    EXPECT_EQ(run({"describe", "-", "--plot", folder.path("a.svg")}, {cavendish, ""}).output, run({"describe", cavendish}).output);
    EXPECT_THAT(textsOf(folder.path("a.svg")), HasSubstr("n = 29\n"));
}

TEST(Files, doNotDependOnTheUsersSettingsOrLanguage)
{
    const TempFolder folder;
    run({"describe", cavendish, "--plot", folder.path("a.svg")});
    folder.write(".gnuplot", "this is an error\n");
    const Variable home("HOME", folder.path(""));
    const Variable locales("LOCPATH", WQ_LOCALES);
    const Variable language("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(run({"describe", cavendish, "--plot", folder.path("b.svg")}).status, done);
    EXPECT_EQ(contentOf(folder.path("a.svg")), contentOf(folder.path("b.svg")));
}

// ---------------------------------------------------------------- what is drawn

TEST(Pictures, ofASampleHaveItsHistogramMeanAndLimits)
{
    wq_lib::BasicStatistics sample;
    sample.readDataFile(cavendish);
    sample.setSignificance(0.01);
    ASSERT_TRUE(sample.analyse());
    Script drawn = script({"describe", "--alpha", "0.01", cavendish});

    double inBars = 0.0;
    for (const auto& bar : drawn.layers["observations"]) {
        double inside = 0.0;  // the data have two decimals, as have the limits of the bars
        for (std::size_t i = 0; i < sample.getSampleSize(); ++i) {
            const double hundredths = std::round(100.0 * sample.getDataPoint(i));
            inside += hundredths >= std::round(100.0 * (bar.at(0) - 0.5 * bar.at(2))) &&
                      hundredths < std::round(100.0 * (bar.at(0) + 0.5 * bar.at(2)));
        }
        EXPECT_EQ(bar.at(1), inside) << "at " << bar.at(0);
        inBars += bar.at(1);
    }
    EXPECT_EQ(inBars, 29.0);
    const wq_lib::basic_stat& result = sample.getResult();
    EXPECT_THAT(column(drawn.layers["mean 5.4479"], 0), ElementsAre(result.mean, result.mean));
    const double lower = result.confidenceLimits.getLower();
    const double upper = result.confidenceLimits.getUpper();
    ASSERT_EQ(drawn.layers.size(), 3U) << drawn.text;
    const auto limits = std::find_if(drawn.layers.begin(), drawn.layers.end(),
                                     [](const auto& layer) { return layer.first.rfind("99 % confidence interval 5.33", 0) == 0; });
    ASSERT_NE(limits, drawn.layers.end()) << drawn.text;
    EXPECT_THAT(column(limits->second, 0), ElementsAre(lower, lower, upper, upper));
}

TEST(Pictures, ofAFrequencyTableHaveItsCounts)
{
    wq_lib::Frequency table;
    table.readDataFile(cavendish);
    table.autoClassWidth(5);
    table.initFrequency(5);
    table.buildTable();
    table.analyse();
    const Rows bars = script({"frequency", "--classes", "5", cavendish}).layers["observations"];
    ASSERT_EQ(bars.size(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(bars[i].at(1), static_cast<double>(table.getTable()[i].count));
        EXPECT_NEAR(bars[i].at(0) - 0.5 * bars[i].at(2), table.getStartClass() + static_cast<double>(i) * table.getClassWidth(), 1e-12);
    }
}

TEST(Pictures, ofATableOfManyClassesDrawNeighboursTogether)
{
    Script drawn = script({"frequency", "--classes", "1000000", cavendish});
    double all = 0.0;
    for (const auto& bar : drawn.layers["observations"]) all += bar.at(1);
    EXPECT_EQ(drawn.layers["observations"].size(), 400U);
    EXPECT_EQ(all, 28.0) << "the library leaves the largest value out";
    EXPECT_THAT(drawn.text, HasSubstr("'a bar is 2500 classes of 1 000 000'"));
}

TEST(Pictures, ofPairsShowEachPairWithR)
{
    wq_lib::Correlation correlation;
    correlation.readDataFile(norris);
    correlation.analyse();
    std::vector<std::pair<double, double>> pairs;
    for (std::size_t i = 0; i < correlation.getSampleSize(); ++i)
        pairs.emplace_back(correlation.getDataPair(i).x, correlation.getDataPair(i).y);
    std::sort(pairs.begin(), pairs.end());
    for (const char* const command : {"correlate", "pairs"}) {
        Script drawn = script({command, norris});
        std::vector<std::pair<double, double>> points;
        for (const auto& row : drawn.layers["pairs"]) points.emplace_back(row.at(0), row.at(1));
        EXPECT_EQ(points, pairs) << command;
        EXPECT_THAT(drawn.text, HasSubstr("'r = 1, n = 36'")) << command;  // 0.999996873
        const Rows means = drawn.layers["means 419.18 and 419.8"];
        ASSERT_EQ(means.size(), 4U) << command;
        EXPECT_EQ(means[0].at(0), correlation.getXyResult().x.mean);
        EXPECT_EQ(means[2].at(1), correlation.getXyResult().y.mean);
    }
    const TempFolder folder;  // r = 0.9819805060619657, the third column of the square root of (4/5)(27/28) being 26/28
    EXPECT_THAT(script({"pairs", folder.write("a.txt", "1;1\n2;3\n3;4\n")}).text, HasSubstr("'r = 0.98198, n = 3'"));
}

// y = f(a + b g(x)), with x around its mean so that one of the drawn ones is the mean itself where g is the identity.
TEST(Pictures, ofARegressionHaveCurveAndLimits)
{
    const TempFolder folder;
    const std::string file = folder.write("a.txt", "1;2.3\n2;2.9\n3;4.1\n4;4.4\n5;6.2\n6;6.3\n7;7.9\n8;9.1\n9;9.4\n10;12.0\n11;12.2\n");
    const auto check = [&](const char* name, auto&& regression, double (*ofX)(double), double (*back)(double), bool taken,
                           bool meanIsDrawn) {
        regression.readDataFile(file);
        ASSERT_TRUE(regression.analyse());
        const wq_lib::regression_stat& fit = regression.getRegressionResult();
        Script drawn = script({"regress", "--model", name, file});
        const auto curve =
            std::find_if(drawn.layers.begin(), drawn.layers.end(), [](const auto& layer) { return layer.first.rfind("y = ", 0) == 0; });
        ASSERT_NE(curve, drawn.layers.end()) << name;
        const Rows& limits = drawn.layers["95 % confidence limits of the curve"];
        ASSERT_EQ(limits.size(), 2 * curve->second.size()) << name;
        EXPECT_EQ(curve->second.front().at(0), 1.0) << name;
        EXPECT_EQ(curve->second.back().at(0), 11.0) << name;
        const std::size_t half = curve->second.size();
        std::size_t atMean = half;
        for (std::size_t i = 0; i < half; ++i) {
            const double x = curve->second[i].at(0);
            const double line = (taken ? std::log(fit.a) : fit.a) + fit.b * ofX(x);
            EXPECT_NEAR(curve->second[i].at(1), back(line), 1e-9 * std::fabs(back(line))) << name << " at " << x;
            EXPECT_LT(limits[i].at(1), curve->second[i].at(1)) << name << " at " << x;
            EXPECT_GT(limits[half + i].at(1), curve->second[i].at(1)) << name << " at " << x;
            // Sokal and Rohlf's standard error of an estimated Y, from the figures of the report alone.
            const double ssX = fit.residualVariance / (fit.seB * fit.seB);
            const double se = std::sqrt(fit.residualVariance * (1.0 / 11.0 + std::pow(ofX(x) - fit.meanX, 2) / ssX));
            const double t = (fit.limitsY.getUpper() - fit.meanY) / fit.seY;
            EXPECT_NEAR(limits[half + i].at(1), back(line + t * se), 1e-9 * back(line + t * se)) << name << " at " << x;
            if (std::fabs(x - 6.0) < 1e-12) atMean = i;
        }
        if (!meanIsDrawn) return;
        ASSERT_LT(atMean, half) << name;
        EXPECT_NEAR(limits[atMean].at(1), back(fit.limitsY.getLower()), 1e-9);
        EXPECT_NEAR(limits[half + atMean].at(1), back(fit.limitsY.getUpper()), 1e-9);
    };
    const auto same = [](double v) { return v; };
    const auto log = [](double v) { return std::log(v); };
    const auto exp = [](double v) { return std::exp(v); };
    check("linear", wq_lib::LinearRegression(), same, same, false, true);
    check("logarithmic", wq_lib::LogarithmicRegression(), log, same, false, false);
    check("exponential", wq_lib::ExponentialRegression(), same, exp, true, true);
    check("power", wq_lib::PowerRegression(), log, exp, true, false);
}

TEST(Pictures, ofSeveralYPerXHaveTheLineAndTheLimitsOfTheSlope)
{
    wq_lib::LinearRegressionMultiY regression;
    regression.readSeriesFile(seedlings);
    regression.createSeries();
    regression.analyse();
    const auto& fit = regression.getRegressionResult();
    Script drawn = script({"multiy", seedlings});
    const Rows line = drawn.layers["y = 18.033 + 3.7386 x"];
    ASSERT_EQ(line.size(), 2U) << drawn.text;
    for (const auto& row : line) EXPECT_NEAR(row.at(1), fit.a + fit.b * row.at(0), 1e-9);
    const Rows lower = drawn.layers["95 % limits of the slope 3.7272 to 3.75"];
    ASSERT_EQ(lower.size(), 2U) << drawn.text;
    EXPECT_NEAR((lower[1].at(1) - lower[0].at(1)) / (lower[1].at(0) - lower[0].at(0)), fit.limitsB.getLower(), 1e-9);
    double pairs = 0.0;
    for (const auto& row : drawn.layers["pairs (larger: several)"]) pairs += std::round(row.at(2) * row.at(2));
    EXPECT_EQ(pairs, 22.0) << "the area of a mark is the number of pairs there";
}

TEST(Pictures, ofGroupsHaveTheirObservationsAndMeans)
{
    wq_lib::SingleAnova anova;
    anova.readDataFile(resistivity);
    anova.createSeries();
    anova.analyse();
    Script drawn = script({"anova", resistivity});
    const Rows means = drawn.layers["mean of the group"];
    std::vector<double> observed = column(drawn.layers["observations"], 1);
    std::vector<double> observations;
    for (std::size_t k = 0; k < anova.getGroups().size(); ++k) {
        const auto& group = anova.getGroups()[k];
        for (const std::size_t end : {2 * k, 2 * k + 1}) EXPECT_EQ(means.at(end).at(1), group.mean);
        EXPECT_NEAR(0.5 * (means.at(2 * k).at(0) + means.at(2 * k + 1).at(0)), static_cast<double>(k + 1), 1e-12);
        observations.insert(observations.end(), group.observations.begin(), group.observations.end());
    }
    std::sort(observed.begin(), observed.end());
    std::sort(observations.begin(), observations.end());
    EXPECT_EQ(observed, observations);
    EXPECT_THAT(drawn.text, HasSubstr("set xtics out nomirror ('1' 1, '2' 2, '3' 3, '4' 4, '5' 5)"));
    EXPECT_THAT(column(drawn.layers["grand mean 196.1892"], 1),
                Pointwise(DoubleNear(1e-9), std::vector<double>(2, anova.getGrandTotal() / 25.0)));
}

TEST(Pictures, ofFrequenciesHaveObservedBesideExpected)
{
    Script drawn = script({"fit", peas});
    EXPECT_THAT(column(drawn.layers["observed"], 1), ElementsAre(315, 101, 108, 32));
    EXPECT_THAT(column(drawn.layers["expected"], 1), ElementsAre(312.75, 104.25, 104.25, 34.75));
    EXPECT_THAT(drawn.text, HasSubstr("'chi-square = 0.47002, G = 0.47545, 4 classes'"));

    const TempFolder folder;  // too many classes for bars: one against the other
    std::string classes;
    for (int i = 1; i <= 100; ++i) classes += std::to_string(2 * i) + ";" + std::to_string(2 * i + 1) + "\n";
    Script many = script({"fit", folder.write("a.txt", classes)});
    const Rows points = many.layers["classes"];
    ASSERT_EQ(points.size(), 100U);
    for (const auto& point : points) EXPECT_EQ(point.at(0), point.at(1) + 1.0);
}

TEST(Pictures, ofCumulativeFrequenciesMarkD)
{
    wq_lib::KolmogorovSmirnov2 test;
    test.readDataFile(digits);
    test.cumulative();
    test.analyse();
    Script drawn = script({"ks", digits});
    // 93 + 116 + 103 of 1000 decimals of pi against 100 + 96 + 97 of e
    const Rows d = drawn.layers["D = 0.019 at class 3"];
    ASSERT_EQ(d.size(), 2U) << drawn.text;
    EXPECT_NEAR(std::fabs(d[0].at(1) - d[1].at(1)), test.getD(), 1e-12);
    std::vector<double> heights;
    double sum = 0.0;
    for (const double count : {93, 116, 103, 102, 93, 97, 94}) heights.push_back((sum += count) / 1000.0);
    const Rows& first = drawn.layers["sample 1"];
    for (std::size_t k = 0; k < heights.size(); ++k) {
        EXPECT_NEAR(first.at(3 * k + 1).at(1), heights[k], 1e-12) << "class " << k + 1;
        EXPECT_EQ(first.at(3 * k + 1).at(0), static_cast<double>(k) + 0.5);
        EXPECT_EQ(first.at(3 * k + 2).at(0), static_cast<double>(k) + 1.5);
    }
    EXPECT_EQ(drawn.layers["sample 2"].back().at(1), 1.0);
}

TEST(Pictures, ofTwoSamplesHaveBothSideBySide)
{
    wq_lib::BasicStatistics samples[2];
    samples[0].readDataFile(instrument1);
    samples[1].readDataFile(instrument2);
    Script drawn = script({"variances", instrument1, instrument2});
    const Rows spreads = drawn.layers["mean and standard deviation"];
    ASSERT_EQ(spreads.size(), 2U);
    EXPECT_EQ(drawn.layers["observations"].size(), 10U);
    for (std::size_t i = 0; i < 2; ++i) {
        ASSERT_TRUE(samples[i].analyse());
        const auto& result = samples[i].getResult();
        EXPECT_EQ(spreads[i].at(1), result.mean);
        EXPECT_EQ(spreads[i].at(2), result.mean - result.sampleStdev);
        EXPECT_EQ(spreads[i].at(3), result.mean + result.sampleStdev);
        for (std::size_t k = 0; k < 5; ++k) {
            const double value = samples[i].getDataPoint(k);
            const double place = static_cast<double>(i + 1);
            const Rows& points = drawn.layers["observations"];
            EXPECT_TRUE(std::any_of(points.begin(), points.end(), [&](const auto& point) {
                return point.at(1) == value && std::fabs(point.at(0) - place) <= 0.2;
            })) << value;
        }
    }
    EXPECT_THAT(drawn.text, HasSubstr("instrument 1 of 5."));
    EXPECT_THAT(drawn.text, HasSubstr("instrument 2 of 5."));
}

TEST(Pictures, ofDirectionsHaveSectorsAndTheMeanVector)
{
    wq_lib::Circular directions;
    directions.setDataType(wq_lib::DEGREES);
    directions.readDataFile(pigeons);
    directions.analyse();
    const auto& result = directions.getCircularResult();
    Script drawn = script({"circular", "--unit", "degrees", pigeons});
    const Rows vector = drawn.layers["mean vector (radius of the circle: 1)"];
    ASSERT_EQ(vector.size(), 1U);
    EXPECT_NEAR(vector[0].at(2), result.r * std::sin(result.a), 1e-12) << "clockwise";
    EXPECT_NEAR(vector[0].at(3), result.r * std::cos(result.a), 1e-12) << "from the top";
    EXPECT_THAT(drawn.text, HasSubstr("'n = 10, mean direction 18.052°, r = 0.79632'"));
    EXPECT_EQ(drawn.layers["each observation"].size(), 10U);

    // 12, 28, 18 and 5 degrees or so lie in the first sector of 30 degrees: areas are as the counts.
    std::map<int, int> counts;
    for (std::size_t i = 0; i < 10; ++i) ++counts[static_cast<int>(directions.getDataPair(i).x / (2.0 * std::acos(-1.0)) * 12.0)];
    int most = 0;
    for (const auto& [sector, count] : counts) most = std::max(most, count);
    std::map<int, double> radii;
    for (const auto& point : drawn.layers["observations (area of the sector)"]) {
        const double radius = std::hypot(point.at(0), point.at(1));
        if (radius == 0.0) continue;
        const double angle = std::atan2(point.at(0), point.at(1)) / (2.0 * std::acos(-1.0)) * 12.0 + (point.at(0) < 0.0 ? 12.0 : 0.0);
        if (std::fabs(angle - std::round(angle)) > 0.1) radii[static_cast<int>(angle)] = radius;
    }
    ASSERT_EQ(radii.size(), counts.size());
    for (const auto& [sector, count] : counts)
        EXPECT_NEAR(radii[sector], std::sqrt(static_cast<double>(count) / most), 1e-12) << "sector " << sector;
}

TEST(Pictures, ofBinsGiveEachItsOwnSector)
{
    const TempFolder folder;  // bins are numbered by their upper edge: the first reaches from 0 to a quarter
    Script drawn = script({"circular", "--unit", "bins", "--bins", "4", "--bin0", "1", folder.write("a.txt", "1;9\n2;1\n4;4\n")});
    double quadrants[4] = {};
    for (const auto& point : drawn.layers["observations (area of the sector)"]) {
        const double x = point.at(0);
        const double y = point.at(1);
        if (std::fabs(x) < 1e-9 || std::fabs(y) < 1e-9) continue;
        quadrants[x > 0.0 ? (y > 0.0 ? 0 : 1) : (y > 0.0 ? 3 : 2)] = std::hypot(x, y);
    }
    EXPECT_THAT(quadrants, ElementsAre(DoubleNear(1.0, 1e-12), DoubleNear(1.0 / 3.0, 1e-12), 0.0, DoubleNear(2.0 / 3.0, 1e-12)));
}

// ---------------------------------------------------------------- odd data

std::string lines(std::size_t n, double (*value)(std::size_t))
{
    std::ostringstream text;
    text.precision(17);
    for (std::size_t i = 0; i < n; ++i) text << value(i) << '\n';
    return text.str();
}

std::string pairLines(std::size_t n, double (*x)(std::size_t), double (*y)(std::size_t))
{
    std::ostringstream text;
    text.precision(17);
    for (std::size_t i = 0; i < n; ++i) text << x(i) << ';' << y(i) << '\n';
    return text.str();
}

double index(std::size_t i) { return static_cast<double>(i); }
double scattered(std::size_t i) { return std::fmod(static_cast<double>(i) * 0.6180339887498949, 1.0); }
double otherwise(std::size_t i) { return std::fmod(static_cast<double>(i) * 0.7548776662466927, 1.0); }
double byThree(std::size_t i) { return static_cast<double>(i % 3); }
double inForties(std::size_t i) { return 1234567.891 * static_cast<double>(i % 40); }

TEST(Pictures, areDrawnOfAnyData)
{
    const struct {
        int line;
        Words arguments;
        std::string data;
        Words texts;
    } rows[] = {
        {__LINE__, {"describe"}, "5\n5\n5\n", {"mean 5", "no confidence interval of the mean: it is not finite"}},
        {__LINE__, {"describe"}, "0\n0\n0\n", {"mean 0"}},
        {__LINE__, {"describe"}, "1\n2\n4\n", {"mean 2.3333"}},
        {__LINE__, {"describe"}, "1\nnan\n2\ninf\n-inf\n3\n", {"no mean: it is not finite", "3 observations left out: not finite"}},
        {__LINE__, {"describe"}, "nan\nnan\nnan\n", {"3 observations left out: not finite"}},
        {__LINE__, {"describe"}, "1.7e308\n-1.7e308\n1e308\n", {"-1e308"}},
        {__LINE__, {"describe"}, "3e-300\n4e-300\n7e-300\n", {"4e-300"}},
        {__LINE__,
         {"describe"},
         "1000000000000.1\n1000000000000.2\n1000000000000.4\n",
         {"value - 1000000000000\n", "mean 1000000000000.233"}},
        {__LINE__, {"describe"}, "-5\n-6\n-7.5\n-1e6\n", {"n = 4"}},
        {__LINE__, {"describe"}, lines(100'000, scattered), {"n = 100 000"}},
        {__LINE__, {"frequency"}, "5\n5\n5\n", {"the classes have no finite width"}},
        {__LINE__, {"frequency"}, "1\nnan\n2\n3\n", {"no mean: it is not finite"}},
        {__LINE__, {"regress", "--model", "linear"}, "1;2\n3;4\n", {"no confidence limits: they are not finite"}},
        {__LINE__, {"regress", "--model", "linear"}, "1;2\n1;4\n1;5\n", {"no curve: it is not finite"}},
        {__LINE__, {"regress", "--model", "power"}, "-1;2\n3;4\n4;-5\nnan;3\n", {"1 pair left out: not finite"}},
        {__LINE__, {"regress", "--model", "logarithmic"}, "7;2\n", {"n = 1"}},
        {__LINE__, {"regress", "--model", "exponential"}, "1;1e-300\n2;3e300\n3;1e10\n4;7\n", {"n = 4"}},
        {__LINE__,
         {"regress", "--model", "linear"},
         pairLines(100'000, scattered, otherwise),
         {"100 000 pairs, gathered in small squares: the darker, the more"}},
        {__LINE__, {"correlate"}, "1;2\n1;2\n1;2\n4;4\n", {"pairs (larger: several)"}},
        {__LINE__, {"pairs"}, "nan;2\n1;inf\n", {"2 pairs left out: not finite"}},
        {__LINE__, {"anova"}, "7;1\n7;2\n", {"F = nan, 1 group, 2 observations"}},
        {__LINE__, {"anova"}, "7;1\n7;nan\n8;3\nnan;4\n", {"nan", "1 observation left out: not finite", "1 mean left out: not finite"}},
        {__LINE__, {"anova"}, pairLines(400, inForties, scattered), {"48148147.75"}},
        {__LINE__, {"anova"}, pairLines(9000, index, scattered), {"group, by its place in the data"}},
        {__LINE__, {"anova"}, pairLines(100'000, byThree, scattered), {"mean of the group"}},
        {__LINE__, {"multiy"}, "1;2;2\n1;2;1\n", {"x", "y"}},
        {__LINE__, {"fit"}, "1;2\nnan;3\n4;inf\n0;0\n", {"2 frequencies left out: not finite"}},
        {__LINE__, {"fit"}, "1;-2\n", {"expected"}},
        {__LINE__, {"ks"}, "0;1\n0;2\n", {"a relative frequency is not finite, and left out"}},
        {__LINE__, {"ks"}, pairLines(100'000, byThree, byThree), {"100 000 classes"}},
        {__LINE__, {"circular"}, "1;0\n", {"3π/2"}},
        {__LINE__, {"circular", "--unit", "degrees"}, "10;0\n190;0\n", {"each observation"}},
        {__LINE__, {"circular"}, "nan;0\n", {"1 observation left out: not finite"}},
        {__LINE__, {"circular", "--unit", "bins", "--bins", "365"}, pairLines(366, index, byThree), {"bin, clockwise from the top"}},
        {__LINE__,
         {"circular", "--unit", "bins", "--bins", "18446744073709551615"},
         "1;0\n5;0\n",
         {"n = 2, mean direction 0° (bin 0), r = 1"}},
        {__LINE__, {"circular", "--unit", "bins", "--bins", "1"}, "1;3\n", {"n = 3"}},
    };
    constexpr std::uintmax_t large = 3'000'000;
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const TempFolder folder;
        Words arguments = plotted(row.arguments, folder.path("a.svg"));
        arguments.push_back(folder.write("data.txt", row.data));
        const Outcome outcome = run(arguments);
        ASSERT_EQ(outcome.status, done) << outcome.errors;
        EXPECT_LT(std::filesystem::file_size(folder.path("a.svg")), large);
        const std::string texts = textsOf(folder.path("a.svg"));
        for (const std::string& text : row.texts) EXPECT_THAT(texts, HasSubstr(text));
    }
}

int occurrences(const std::string& part, const std::string& text)
{
    int count = 0;
    for (std::size_t i = text.find(part); i != std::string::npos; i = text.find(part, i + part.size())) ++count;
    return count;
}

TEST(Pictures, haveTheTextsAsTheyAre)
{
    const TempFolder folder;
    const std::string text = R"(It's "so" @x {a}_b^2 \n `ls` $HOME %d %% <i>&amp; µ 数 end\)";
    const std::string file = folder.write("a.txt", "# " + text + "\n1\n2\n3\n");
    run({"describe", file, "--plot", folder.path("a.svg"), "--x-label", text, "--y-label", text});
    const std::string texts = textsOf(folder.path("a.svg"));
    EXPECT_EQ(occurrences(text, texts), 3) << texts;

    run({"describe", file, "--plot", folder.path("a.svg"), "--x-label", "two\nlines\tand \xff\x01"});
    EXPECT_THAT(textsOf(folder.path("a.svg")), HasSubstr("two lines and \\xff\\x01\n"));

    // bytes that look like a character, but are none that XML knows: too long, half a pair, beyond the last, no character
    run({"describe", file, "--plot", folder.path("a.svg"), "--x-label", "\xe0\x80\x80|\xed\xa0\x80|\xf4\x90\x80\x80|\xef\xbf\xbf"});
    EXPECT_THAT(textsOf(folder.path("a.svg")), HasSubstr("\\xe0\\x80\\x80|\\xed\\xa0\\x80|\\xf4\\x90\\x80\\x80|\\xef\\xbf\\xbf\n"));

    const std::string name = folder.write("no comment.txt", "1\n2\n3\n");
    run({"describe", name, "--plot", folder.path("a.svg")});
    EXPECT_THAT(textsOf(folder.path("a.svg")), HasSubstr("no comment.txt\n"));
}

// ---------------------------------------------------------------- what goes wrong

// One line on standard error, and nothing else.
void expectRefusal(const Outcome& outcome, int status, const std::string& text)
{
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, StartsWith("wqstat: " + text));
    EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
}

TEST(Failures, withoutGnuplotNothingIsPrintedOrWritten)
{
    const TempFolder folder;
    const std::string old = folder.write("old.svg", "old");
    std::filesystem::create_directory(folder.path("gnuplot"));  // a folder of the name is no program
    for (const std::string& path : {std::string(), folder.path("none"), ":" + folder.path("")}) {
        const Variable variable("PATH", path);
        for (const char* const name : {"old.svg", "new.png"})
            expectRefusal(run({"describe", cavendish, "--plot", folder.path(name), "--export", folder.path("export")}), couldNotAnalyse,
                          "--plot: there is no program gnuplot (Debian package: gnuplot-nox)\n");
    }
    EXPECT_EQ(contentOf(old), "old");
    EXPECT_THAT(filesIn(folder.path("")), ElementsAre("gnuplot", "old.svg"));
}

TEST(Failures, ofGnuplotLeaveTheReportAndTheOldPicture)
{
    const struct {
        int line;
        const char* commands;
        const char* reason;
    } rows[] = {
        {__LINE__, "echo half; echo >&2; echo '  line 3: bad thing ' >&2; exit 3", "gnuplot failed (exit status 3): line 3: bad thing"},
        {__LINE__, "exit 1", "gnuplot failed (exit status 1)"},
        {__LINE__, "kill -9 $$", "gnuplot failed (signal 9)"},
        {__LINE__, "true", "the picture cannot be written"},
        {__LINE__, "echo '<?xml version=\"1.0\"?><svg>'", "the picture cannot be written"},
        {__LINE__, "echo '</svg>'", "the picture cannot be written"},
    };
    const std::string report = run({"describe", cavendish}).output;
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const TempFolder folder;
        const std::string old = folder.write("old.svg", "old");
        const FakeGnuplot gnuplot(row.commands);
        for (const char* const name : {"old.svg", "new.svg"})
            EXPECT_EQ(run({"describe", cavendish, "--plot", folder.path(name)}),
                      (Outcome{couldNotAnalyse, report, "wqstat: " + folder.path(name) + ": " + row.reason + "\n"}));
        EXPECT_EQ(contentOf(old), "old");
        EXPECT_THAT(filesIn(folder.path("")), ElementsAre("old.svg"));
    }
}

TEST(Failures, ofTheFolderOrTheFileAreTold)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.path("folder.svg"));
    for (const char* const name : {"none/a.svg", "folder.svg"}) {
        const Outcome outcome = run({"describe", cavendish, "--plot", folder.path(name)});
        EXPECT_EQ(outcome.status, couldNotAnalyse) << name;
        EXPECT_THAT(outcome.errors, StartsWith("wqstat: " + folder.path(name) + ": ")) << name;
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
    }
    EXPECT_THAT(filesIn(folder.path("")), ElementsAre("folder.svg"));
    EXPECT_THAT(filesIn(folder.path("folder.svg")), IsEmpty());
}

TEST(Failures, ofTheNameAreToldBeforeAnythingIsRead)
{
    for (const char* const name : {"a.jpg", "a", "svg", ".svg", "", "a.svg/b", "a.svg "})
        expectRefusal(run({"describe", "/nowhere/at/all", "--plot", name}), wrongUsage,
                      "--plot: '" + std::string(name) + "' does not end in .svg, .png or .pdf (see wqstat describe --help)\n");
    for (const char* const option : {"--x-label", "--y-label"})
        expectRefusal(run({"describe", "/nowhere/at/all", option, "x"}), wrongUsage, std::string(option) + " requires --plot");
}

TEST(Failures, doNotCostTheDataOrTheExport)
{
    const TempFolder folder;
    const std::string data = folder.write("data.svg", "1\n2\n3\n");
    const std::string other = folder.write("other.png", "1\n2\n4\n");
    std::filesystem::create_hard_link(data, folder.path("link.svg"));
    for (const std::string& name : {data, folder.path("./data.svg"), folder.path("link.svg")})
        expectRefusal(run({"describe", data, "--plot", name}), wrongUsage, "--plot: " + name + " is the data file");
    expectRefusal(run({"variances", data, other, "--plot", other}), wrongUsage, "--plot: " + other + " is the data file");
    for (const char* const name : {"a.svg", "./a.svg", "../"}) {
        const std::string plot = std::string(name) == "../" ? folder.path("x/../a.svg") : folder.path(name);
        expectRefusal(run({"describe", data, "--export", folder.path("a.svg"), "--plot", plot}), wrongUsage,
                      "--plot: " + plot + " is the export file");
    }
    EXPECT_EQ(contentOf(data), "1\n2\n3\n");
    EXPECT_EQ(contentOf(other), "1\n2\n4\n");
    EXPECT_THAT(filesIn(folder.path("")), ElementsAre("data.svg", "link.svg", "other.png"));
}

}  // namespace
