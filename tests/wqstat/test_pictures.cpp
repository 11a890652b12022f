// wqstat --plot: which file appears, what gnuplot is told to draw, and what happens when nothing can be drawn.
#include "program.h"
#include "commands.h"
#include "data_files.h"
#include "svg.h"
#include "variable.h"

#include <wq_stat/wq_stat.h>

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <random>
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
using wq_test::refused;
using wq_test::run;
using wq_test::shipped;
using wq_test::TempFolder;
using wq_test::textsOf;
using wq_test::Variable;
using wq_test::with;
using wq_test::Words;

constexpr int done = 0;
constexpr int couldNotAnalyse = 1;
constexpr int wrongUsage = 2;

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
        const std::string title = between(style, " title \"", "\"", start);
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
    {__LINE__, {"regress", "--model", "linear", norris}, {"y = -0.26232 + 1.0021 x", "exact 95 % confidence limits of the line"}},
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
    {__LINE__, {"circular", "--unit", "degrees", pigeons}, {"0°", "mean vector (circle: 1)"}},
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
        EXPECT_EQ(contentOf(folder.path("picture.svg")).find("<title>gnuplot_"), std::string::npos)
            << "a name of gnuplot's, which browsers show";
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

TEST(Files, keepThePermissionsOfTheFileTheyReplace)
{
    const TempFolder folder;
    const mode_t before = umask(022);
    for (const char* const name : {"a.svg", "a.png", "link.svg"}) {
        for (const mode_t mode : {0600U, 0640U, 0666U, 0400U}) {
            const std::string file = folder.write(std::string("kept-") + name, "old");
            ASSERT_EQ(chmod(file.c_str(), mode), 0);
            std::string asked = file;
            if (std::string(name) == "link.svg") {
                asked = folder.path(name);
                std::filesystem::remove(asked);
                std::filesystem::create_symlink(file, asked);
            }
            EXPECT_EQ(run({"describe", cavendish, "--plot", asked}).status, done);
            struct stat status {};
            ASSERT_EQ(stat(file.c_str(), &status), 0);
            EXPECT_EQ(status.st_mode & 07777, mode) << name;
            EXPECT_NE(contentOf(file), "old");
            std::filesystem::remove(file);
        }
    }
    umask(before);
}

TEST(Files, appearWhereADanglingLinkLeads)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.path("folder"));
    std::filesystem::create_symlink("folder/target.svg", folder.path("relative.svg"));
    std::filesystem::create_symlink(folder.path("relative.svg"), folder.path("chain.svg"));
    EXPECT_EQ(run({"describe", cavendish, "--plot", folder.path("chain.svg")}).status, done);
    for (const char* const link : {"relative.svg", "chain.svg"}) EXPECT_TRUE(std::filesystem::is_symlink(folder.path(link))) << link;
    EXPECT_THAT(contentOf(folder.path("folder/target.svg")), StartsWith("<?xml"));
    EXPECT_THAT(filesIn(folder.path("folder")), ElementsAre("target.svg"));

    // A link that leads to no place, or in a circle, is told and left.
    std::filesystem::create_symlink("none/target.svg", folder.path("nowhere.svg"));
    std::filesystem::create_symlink("circle.svg", folder.path("circle.svg"));
    for (const char* const link : {"nowhere.svg", "circle.svg"}) {
        const Outcome outcome = run({"describe", cavendish, "--plot", folder.path(link)});
        EXPECT_EQ(outcome.status, couldNotAnalyse) << link;
        EXPECT_THAT(outcome.errors, StartsWith("wqstat: " + folder.path(link) + ": ")) << link;
        EXPECT_TRUE(std::filesystem::is_symlink(folder.path(link))) << link;
    }
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
    constexpr double t = 2.763262455461066;  // Student's, 28 degrees of freedom, two-sided 0.01: any table
    const double lower = result.mean - t * result.stdError;
    const double upper = result.mean + t * result.stdError;
    ASSERT_EQ(drawn.layers.size(), 3U) << drawn.text;
    const auto limits = std::find_if(drawn.layers.begin(), drawn.layers.end(),
                                     [](const auto& layer) { return layer.first.rfind("exact 99 % confidence interval 5.33", 0) == 0; });
    ASSERT_NE(limits, drawn.layers.end()) << drawn.text;
    EXPECT_THAT(column(limits->second, 0), Pointwise(DoubleNear(1e-9), {lower, lower, upper, upper}));
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
    EXPECT_THAT(drawn.text, HasSubstr(R"("a bar is 2500 classes of 1 000 000")"));
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
        EXPECT_THAT(drawn.text, HasSubstr(R"("r = 0.999997, n = 36")")) << command;  // 0.999996873
        const Rows means = drawn.layers["means 419.18 and 419.8"];
        ASSERT_EQ(means.size(), 4U) << command;
        EXPECT_EQ(means[0].at(0), correlation.getXyResult().x.mean);
        EXPECT_EQ(means[2].at(1), correlation.getXyResult().y.mean);
    }
    const TempFolder folder;  // r = 0.9819805060619657, the third column of the square root of (4/5)(27/28) being 26/28
    EXPECT_THAT(script({"pairs", folder.write("a.txt", "1;1\n2;3\n3;4\n")}).text, HasSubstr(R"("r = 0.98198, n = 3")"));
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
        const Rows& limits =
            drawn.layers[std::string("exact 95 % confidence limits of the ") + (std::string(name) == "linear" ? "line" : "curve")];
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
            constexpr double t = 2.262157162854099;  // Student's, 9 degrees of freedom, two-sided 0.05: any table
            EXPECT_NEAR(limits[half + i].at(1), back(line + t * se), 1e-9 * back(line + t * se)) << name << " at " << x;
            if (std::fabs(x - 6.0) < 1e-12) atMean = i;
        }
        if (!meanIsDrawn) return;
        ASSERT_LT(atMean, half) << name;
        constexpr double t = 2.262157162854099;
        EXPECT_NEAR(limits[atMean].at(1), back(fit.meanY - t * fit.seY), 1e-9);
        EXPECT_NEAR(limits[half + atMean].at(1), back(fit.meanY + t * fit.seY), 1e-9);
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
    // R's (tests/reference/textbook.csv); the report has 3.7272 to 3.75
    const Rows lower = drawn.layers["exact 95 % limits of the slope 2.8822 to 4.595"];
    ASSERT_EQ(lower.size(), 2U) << drawn.text;
    EXPECT_NEAR((lower[1].at(1) - lower[0].at(1)) / (lower[1].at(0) - lower[0].at(0)), 2.8821911712635, 1e-9);
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
        EXPECT_EQ(means.at(k).at(1), group.mean);
        EXPECT_NEAR(means.at(k).at(0) + 0.5 * means.at(k).at(2), static_cast<double>(k + 1), 1e-12);
        observations.insert(observations.end(), group.observations.begin(), group.observations.end());
    }
    std::sort(observed.begin(), observed.end());
    std::sort(observations.begin(), observations.end());
    EXPECT_EQ(observed, observations);
    EXPECT_THAT(drawn.text, HasSubstr(R"(set xtics out nomirror ("1" 1, "2" 2, "3" 3, "4" 4, "5" 5))"));
    EXPECT_THAT(column(drawn.layers["grand mean 196.1892"], 1),
                Pointwise(DoubleNear(1e-9), std::vector<double>(2, anova.getGrandTotal() / 25.0)));
}

// Certified by NIST for SiRstv: F = 1.18046237440255 and a variance within of 0.010831828. t0.05(2) with 20 degrees of freedom: any table.
TEST(Pictures, ofGroupsHaveTheTestAndTheLimitsOfTheirMeans)
{
    Script drawn = script({"anova", resistivity});
    EXPECT_THAT(drawn.text, HasSubstr(R"("F(4, 20) = 1.1805, p = 0.349, 5 groups, 25 observations")"));
    const double half = 2.085963447265837 * std::sqrt(0.010831828 / 5.0);
    const Rows bars = drawn.layers["exact 95 % confidence limits of the mean"];
    ASSERT_EQ(bars.size(), 5U) << drawn.text;
    for (const auto& bar : bars) {
        EXPECT_NEAR(bar.at(2), bar.at(1) - half, 1e-9);
        EXPECT_NEAR(bar.at(3), bar.at(1) + half, 1e-9);
    }
    EXPECT_THAT(drawn.text, Not(HasSubstr("pointtype 5"))) << "a square that hides narrow limits";
}

TEST(Pictures, ofFrequenciesHaveObservedBesideExpected)
{
    Script drawn = script({"fit", peas});
    EXPECT_THAT(column(drawn.layers["observed"], 1), ElementsAre(315, 101, 108, 32));
    EXPECT_THAT(column(drawn.layers["expected"], 1), ElementsAre(312.75, 104.25, 104.25, 34.75));
    EXPECT_THAT(drawn.text, HasSubstr(R"("chi-square = 0.47002, G = 0.47545, 4 classes")"));

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

// The limits of a variance of 1 with 4 degrees of freedom are 4 / qchisq(c(0.975, 0.025), 4), in R; with a level of 0.5 4 / qchisq(0.25,
// 4).
TEST(Pictures, ofTwoSamplesHaveTheLimitsOfTheirStandardDeviations)
{
    Script drawn = script({"variances", instrument1, instrument2});
    const Rows spreads = drawn.layers["mean and standard deviation"];
    const Rows limits = drawn.layers["exact 95 % limits of the deviation"];
    ASSERT_EQ(limits.size(), 2U) << drawn.text;
    for (std::size_t i = 0; i < 2; ++i) {
        const double mean = spreads.at(i).at(1);
        const double deviation = spreads.at(i).at(3) - mean;
        EXPECT_NEAR(limits[i].at(2), mean + deviation * std::sqrt(0.35896051840873), 1e-9);
        EXPECT_NEAR(limits[i].at(3), mean + deviation * std::sqrt(8.25732198214268), 1e-9);
        EXPECT_GT(limits[i].at(0), spreads[i].at(0)) << "beside the spread";
    }
    Script narrower = script({"variances", "--alpha", "0.5", instrument1, instrument2});
    const Rows half = narrower.layers["exact 50 % limits of the deviation"];
    ASSERT_EQ(half.size(), 2U) << narrower.text;
    EXPECT_NEAR(half[0].at(3), spreads.at(0).at(1) + (spreads.at(0).at(3) - spreads.at(0).at(1)) * std::sqrt(2.08056193140012), 1e-9);

    const TempFolder folder;
    Script constant = script({"variances", folder.write("a.txt", "2\n2\n2\n"), instrument2});
    EXPECT_EQ(constant.layers["exact 95 % limits of the deviation"].size(), 1U) << constant.text;
    EXPECT_THAT(constant.text, HasSubstr("sample 1: no limits of the standard deviation, which is 0"));
}

TEST(Pictures, ofTablesHaveTheLabelsOfGroupsAndClasses)
{
    const TempFolder folder;
    const std::string plants =
        folder.write("plants.csv", "plant,treatment,height\n1,ctrl,4.2\n2,low,5.5\n3,ctrl,4.8\n4,,5.1\n5,low,6.0\n6,gone,NA\n"
                                   "7,a label of more than two dozen letters,5.0\n8,a label of more than two dozen letters,5.2\n");
    const std::string peas = folder.write("peas.csv", "class,seen,elsewhere\nround,315,300\nwrinkled,101,120\nboth,32,30\n");
    const struct {
        int line;
        Words arguments;
        std::string ticks;  // the number of a label is that of its first appearance, with a value or without
    } rows[] = {
        {__LINE__, {"anova", "--group", "treatment", "--value", "height", plants}, R"x("ctrl" 1, "low" 2, "a label of more than ..." 3)x"},
        {__LINE__,
         {"variances", "--group", "class", "--value", "seen",
          folder.write("two.csv", "class,seen\nold,1\nnew,2\nold,4\nnew,3\nnew,7\nold,6\nnew,5\n")},
         R"x("old (n = 3)" 1, "new (n = 4)" 2)x"},
        {__LINE__, {"ks", "--class", "class", "--count1", "seen", "--count2", "elsewhere", peas}, R"x("round" 1, "wrinkled" 2, "both" 3)x"},
        {__LINE__,
         {"fit", "--column", "kind", "--ratio", "1:1", folder.write("kinds.csv", "kind\ntall\nshort\ntall\ntall\n")},
         R"x("tall" 1, "short" 2)x"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        EXPECT_THAT(script(row.arguments).text, HasSubstr("set xtics out nomirror (" + row.ticks + ")"));
    }
    EXPECT_THAT(script(rows[2].arguments).text, HasSubstr("at class round"));  // 315/448 - 300/450 = 0.036; next -0.005
}

TEST(Pictures, ofDirectionsHaveSectorsAndTheMeanVector)
{
    wq_lib::Circular directions;
    directions.setDataType(wq_lib::DEGREES);
    directions.readDataFile(pigeons);
    directions.analyse();
    const auto& result = directions.getCircularResult();
    Script drawn = script({"circular", "--unit", "degrees", pigeons});
    const Rows vector = drawn.layers["mean vector (circle: 1)"];
    ASSERT_EQ(vector.size(), 1U);
    EXPECT_NEAR(vector[0].at(2), result.r * std::sin(result.a), 1e-12) << "clockwise";
    EXPECT_NEAR(vector[0].at(3), result.r * std::cos(result.a), 1e-12) << "from the top";
    EXPECT_THAT(drawn.text, HasSubstr(R"("n = 10, mean direction 18.052°, r = 0.79632")"));
    EXPECT_EQ(drawn.layers["each observation"].size(), 10U);

    // 12, 28, 18 and 5 degrees or so lie in the first sector of 30 degrees: areas are as the counts.
    std::map<int, int> counts;
    for (std::size_t i = 0; i < 10; ++i) ++counts[static_cast<int>(directions.getDataPair(i).x / (2.0 * std::acos(-1.0)) * 12.0)];
    int most = 0;
    for (const auto& [sector, count] : counts) most = std::max(most, count);
    std::map<int, double> radii;
    for (const auto& point : drawn.layers["observations (by area)"]) {
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
    for (const auto& point : drawn.layers["observations (by area)"]) {
        const double x = point.at(0);
        const double y = point.at(1);
        if (std::fabs(x) < 1e-9 || std::fabs(y) < 1e-9) continue;
        quadrants[x > 0.0 ? (y > 0.0 ? 0 : 1) : (y > 0.0 ? 3 : 2)] = std::hypot(x, y);
    }
    EXPECT_THAT(quadrants, ElementsAre(DoubleNear(1.0, 1e-12), DoubleNear(1.0 / 3.0, 1e-12), 0.0, DoubleNear(2.0 / 3.0, 1e-12)));
}

// ---------------------------------------------------------------- for print

TEST(Print, regressionsSayHowWellTheyFit)
{
    // Certified by NIST for Norris: R-squared 0.999993745883712.
    EXPECT_THAT(script({"regress", "--model", "linear", norris}).text, HasSubstr("\"R\u00b2 = 0.999994, p = 4.65e-90, n = 36\""));
    EXPECT_THAT(script({"regress", "--model", "power", norris}).text, HasSubstr("of ln y, p = "));
}

TEST(Print, residualsAreASecondPanel)
{
    wq_lib::LinearRegression regression;
    regression.readDataFile(norris);
    regression.analyse();
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    const Script whole = script({"regress", "--model", "linear", "--residuals", norris});
    const std::size_t second = whole.text.find("unset label\n");
    ASSERT_NE(second, std::string::npos);
    EXPECT_THAT(whole.text, HasSubstr("set multiplot\n"));
    EXPECT_THAT(whole.text, HasSubstr("unset multiplot\n"));
    const Rows residuals = scriptOf(whole.text.substr(second)).layers["1"];
    ASSERT_EQ(residuals.size(), 36U);
    std::vector<double> expected;
    for (std::size_t i = 0; i < regression.getSampleSize(); ++i)
        expected.push_back(regression.getDataPair(i).y - fit.a - fit.b * regression.getDataPair(i).x);
    std::vector<double> found = column(residuals, 1);
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    EXPECT_THAT(found, Pointwise(DoubleNear(1e-9), expected));
}

// Norris has x from 0.2 to 999 and y from 0.1 to 998: more than two decades of each.
TEST(Print, axesAreLogarithmicWhereTheModelIs)
{
    const struct {
        int line;
        Words arguments;
        bool x;
        bool y;
    } rows[] = {
        {__LINE__, {"regress", "--model", "linear"}, false, false},
        {__LINE__, {"regress", "--model", "logarithmic"}, true, false},
        {__LINE__, {"regress", "--model", "exponential"}, false, true},
        {__LINE__, {"regress", "--model", "power"}, true, true},
        {__LINE__, {"regress", "--model", "power", "--log", "none"}, false, false},
        {__LINE__, {"regress", "--model", "power", "--log", "y"}, false, true},
        {__LINE__, {"regress", "--model", "linear", "--log", "xy"}, true, true},
        {__LINE__, {"correlate"}, false, false},
        {__LINE__, {"correlate", "--log", "x"}, true, false},
        {__LINE__, {"pairs", "--log", "xy"}, true, true},
    };
    wq_lib::BasicXyStatistics pairs;
    pairs.readDataFile(norris);
    std::vector<double> x;
    std::vector<double> y;
    for (std::size_t i = 0; i < pairs.getSampleSize(); ++i) {
        x.push_back(pairs.getDataPair(i).x);
        y.push_back(pairs.getDataPair(i).y);
    }
    const auto placed = [](std::vector<double> values, bool logarithmic) {
        for (double& value : values) value = logarithmic ? std::log10(value) : value;
        std::sort(values.begin(), values.end());
        return values;
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        Words arguments = row.arguments;
        arguments.push_back(norris);
        const Rows points = script(arguments).layers["pairs"];
        EXPECT_THAT(placed(column(points, 0), false), Pointwise(DoubleNear(1e-12), placed(x, row.x)));
        EXPECT_THAT(placed(column(points, 1), false), Pointwise(DoubleNear(1e-12), placed(y, row.y)));
    }
}

// A single value of 0 or less, which the model leaves out, does not take the axis from the others.
TEST(Print, axesAreLogarithmicByTheValuesAboveZero)
{
    const TempFolder folder;
    const std::string file = folder.write("a.txt", "0;7\n1;2\n10;5\n30;0\n100;60\n300;200\n-4;1000\n");
    const Rows both = script({"regress", "--model", "power", file}).layers["pairs"];
    EXPECT_THAT(column(both, 0), Pointwise(DoubleNear(1e-12), std::vector<double>{0, 1, 2, std::log10(300.0)}));
    EXPECT_THAT(column(both, 1),
                Pointwise(DoubleNear(1e-12), std::vector<double>{std::log10(2.0), std::log10(5.0), std::log10(60.0), std::log10(200.0)}));
    EXPECT_EQ(column(script({"regress", "--model", "logarithmic", file}).layers["pairs"], 0).size(), 5U);
    EXPECT_EQ(column(script({"regress", "--model", "exponential", file}).layers["pairs"], 1).size(), 6U);
    const std::string narrow = folder.write("b.txt", "-1000;2\n1;2\n10;5\n50;7\n");
    EXPECT_THAT(column(script({"regress", "--model", "power", narrow}).layers["pairs"], 0), testing::Contains(50.0))
        << "less than two decades";
}

TEST(Print, whatHasNoPlaceOnALogarithmicAxisIsCounted)
{
    const TempFolder folder;
    const std::string file = folder.write("a.txt", "1;10\n-2;20\n3;0\n4;1000\n100;5\n");
    const Script drawn = script({"correlate", "--log", "xy", file});
    EXPECT_THAT(drawn.text, HasSubstr("\"2 pairs left out: not above 0, on a logarithmic axis\""));
    const std::string values = folder.write("b.txt", "1\n-2\n3\n1000\n");
    EXPECT_THAT(script({"describe", "--log", "x", values}).text,
                HasSubstr("\"1 observation left out: not above 0, on a logarithmic axis\""));
    const std::string none = folder.write("c.txt", "-1;-2\n-3;-4\n-5;0\n");
    EXPECT_THAT(script({"pairs", "--log", "xy", none}).text, HasSubstr("\"r = "));
}

// Of the pairs without a place x would begin the line far to the left, and y stretch the axis to -1000.
TEST(Print, whatHasNoPlaceOnALogarithmicAxisIsNotDrawnOver)
{
    const TempFolder folder;
    const std::string file = folder.write("a.txt", "-1;-900\n0;-1000\n0.001;12\n0.1;9\n10;8\n100;30\n50;20\n");
    const Script drawn = script({"regress", "--model", "linear", "--log", "x", "--residuals", file});
    std::vector<double> line;
    for (const auto& [name, rows] : drawn.layers)
        if (name.rfind("y = ", 0) == 0) line = column(rows, 0);
    ASSERT_FALSE(line.empty());
    EXPECT_NEAR(line.front(), -3.0, 1e-12);
    EXPECT_NEAR(line.back(), 2.0, 1e-12);
    std::size_t place = 0;
    const std::string y = between(drawn.text, "set yrange [", "]", place);
    EXPECT_GT(std::stod(y), -500.0) << y;
    const std::string below = folder.write("b.txt", "1;1\n2;3\n3;2\n1;-4000\n2;-4100\n3;-4000\n");
    EXPECT_THAT(script({"regress", "--model", "linear", "--log", "y", below}).text, HasSubstr("\"the curve lies outside of the picture\""));
}

TEST(Print, theTitleIsTheOneAskedFor)
{
    const TempFolder folder;
    run({"describe", cavendish, "--plot", folder.path("a.svg"), "--title", "Density of the Earth"});
    EXPECT_THAT("\n" + textsOf(folder.path("a.svg")), HasSubstr("\nDensity of the Earth\n"));
    EXPECT_THAT(contentOf(folder.path("a.svg")), HasSubstr("<title>Density of the Earth</title>"));
    run({"describe", cavendish, "--plot", folder.path("b.svg"), "--title", ""});
    EXPECT_THAT(textsOf(folder.path("b.svg")), Not(HasSubstr("Cavendish")));
}

TEST(Print, svgFilesHaveTheirOwnTitleAndDescription)
{
    const TempFolder folder;
    const std::string file = folder.write("a.txt", "# <b> & \"so\" ]]> \x1b\n1;1\n2;3\n3;4\n");
    run({"correlate", file, "--plot", folder.path("a.svg"), "--x-label", "<x>"});
    textsOf(folder.path("a.svg"));  // is read by a parser
    const std::string svg = contentOf(folder.path("a.svg"));
    EXPECT_THAT(svg, HasSubstr("<title>&lt;b&gt; &amp; &quot;so&quot; ]]&gt; \\x1b</title>"));
    EXPECT_THAT(svg, HasSubstr("<desc>r = 0.98198, n = 3. Across: &lt;x&gt;; upwards: y. Shown: pairs; means 2 and 2.6667.</desc>"));
    EXPECT_THAT(svg, Not(HasSubstr("GNUPLOT")));
}

// The whole number that begins at the byte, the highest byte first.
unsigned long bigEndian(const std::string& bytes, std::size_t start)
{
    unsigned long number = 0;
    for (std::size_t i = start; i < start + 4; ++i) number = number << 8 | static_cast<unsigned char>(bytes.at(i));
    return number;
}

TEST(Print, filesHaveTheSizeAskedFor)
{
    const struct {
        int line;
        Words options;
        unsigned long width;  // dots of the .png
        unsigned long height;
        unsigned long perMetre;
        const char* svg;
    } rows[] = {
        {__LINE__, {}, 800, 600, 3780, "<svg \n viewBox=\"0 0 800 600\""},
        {__LINE__, {"--size", "400x500px"}, 400, 500, 3780, "<svg width=\"400\" height=\"500\"\n viewBox=\"0 0 400 500\""},
        {__LINE__, {"--size", "1000x500"}, 1000, 500, 3780, "<svg width=\"1000\" height=\"500\"\n viewBox"},
        {__LINE__, {"--size", "85x60mm"}, 1004, 709, 11811, "<svg width=\"85mm\" height=\"60mm\"\n viewBox=\"0 0 321 227\""},
        {__LINE__, {"--size", "85x60mm", "--dpi", "600"}, 2008, 1417, 23622, "<svg width=\"85mm\""},
        {__LINE__, {"--dpi", "192"}, 1600, 1200, 7559, "<svg \n viewBox"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const TempFolder folder;
        for (const char* const name : {"a.png", "a.svg", "a.pdf"}) {
            Words arguments = plotted({"describe", cavendish}, folder.path(name));
            for (std::size_t i = 0; i < row.options.size(); i += 2)
                if (row.options[i] != "--dpi" || name == std::string("a.png"))
                    arguments = with(arguments, {row.options[i], row.options[i + 1]});
            ASSERT_EQ(run(arguments).status, done) << name;
        }
        const std::string png = contentOf(folder.path("a.png"));
        EXPECT_EQ(bigEndian(png, 16), row.width);
        EXPECT_EQ(bigEndian(png, 20), row.height);
        ASSERT_EQ(png.substr(37, 4), "pHYs");
        EXPECT_EQ(bigEndian(png, 41), row.perMetre);
        EXPECT_EQ(std::system(("python3 -c \"import sys, zlib; b = open(sys.argv[1], 'rb').read(); "
                               "sys.exit(zlib.crc32(b[37:50]) != int.from_bytes(b[50:54], 'big'))\" '" +
                               folder.path("a.png") + "'")
                                  .c_str()),
                  0)
            << "the checksum of the chunk";
        EXPECT_THAT(contentOf(folder.path("a.svg")), HasSubstr(row.svg));
    }
}

// A page of 85 by 60 mm has 240.945 by 170.079 points of 25.4 / 72 mm. Each object lies where the table at the end says.
TEST(Print, pagesHaveTheSizeAskedFor)
{
    const struct {
        const char* size;
        double width;
        double height;
    } rows[] = {{"85x60mm", 240.945, 170.079}, {"120x80mm", 340.157, 226.772}, {"128x192px", 96, 144}, {"800x600px", 600, 450}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.size);
        const TempFolder folder;
        const std::string file = folder.path("a.pdf");
        ASSERT_EQ(run({"describe", cavendish, "--size", row.size, "--plot", file}).status, done);
        const std::string pdf = contentOf(file);
        std::size_t place = 0;
        std::istringstream box(between(pdf, "/MediaBox [", "]", place));
        double sides[4] = {};
        for (double& side : sides) box >> side;
        EXPECT_NEAR(sides[2] - sides[0], row.width, 0.001);
        EXPECT_NEAR(sides[3] - sides[1], row.height, 0.001);
        place = 0;
        const std::size_t table = std::stoul(between(pdf, "\nstartxref\n", "\n", place));
        ASSERT_EQ(pdf.substr(table, 7), "xref\n0 ");
        const int objects = std::stoi(pdf.substr(table + 7));
        ASSERT_GT(objects, 5);
        const std::size_t entries = pdf.find('\n', table + 7) + 1;
        for (int i = 1; i < objects; ++i) {
            const std::size_t at = std::stoul(pdf.substr(entries + 20 * static_cast<std::size_t>(i), 10));
            EXPECT_EQ(pdf.compare(at, std::to_string(i).size() + 6, std::to_string(i) + " 0 obj"), 0) << "object " << i;
        }
    }
}

TEST(Print, dotsAreForPicturesThatAreMadeOfThem)
{
    const TempFolder folder;
    for (const char* const name : {"a.svg", "a.pdf"})
        EXPECT_EQ(run({"describe", cavendish, "--dpi", "300", "--plot", folder.path(name)}),
                  refused("--dpi requires --plot FILE.png: other pictures have no dots", "describe"));
    EXPECT_EQ(run({"describe", cavendish, "--dpi", "300", "--html", folder.path("a.html")}),
              refused("--dpi requires --plot FILE.png: other pictures have no dots", "describe"));
    EXPECT_EQ(run({"describe", cavendish, "--dpi", "50", "--plot", folder.path("a.PNG"), "--html", folder.path("a.html")}).status, done);
}

TEST(Print, lettersHaveTheSizeAskedFor)
{
    const TempFolder folder;
    const auto font = [&](Words options) {
        Words arguments = plotted({"describe", cavendish}, folder.path("a.svg"));
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(run(arguments).status, done);
        const std::string svg = contentOf(folder.path("a.svg"));
        std::vector<double> sizes;  // of title, captions and ticks
        for (std::size_t i = svg.find("font-size=\""); i != std::string::npos; i = svg.find("font-size=\"", i + 1))
            sizes.push_back(std::strtod(svg.c_str() + i + 11, nullptr));
        std::sort(sizes.begin(), sizes.end());
        return sizes.empty() ? 0.0 : sizes[sizes.size() / 2];
    };
    constexpr double pixels = 96.0 / 72.0;  // to a point
    EXPECT_NEAR(font({}), 11.25 * pixels, 0.01);
    EXPECT_NEAR(font({"--font-size", "9"}), 9.0 * pixels, 0.01);
    EXPECT_NEAR(font({"--size", "85x60mm"}), 7.0 * pixels, 0.01) << "no smaller than journals print";
    EXPECT_NEAR(font({"--size", "85x60mm", "--font-size", "8"}), 8.0 * pixels, 0.01);
}

TEST(Print, sizesThatMakeNoSenseAreRefused)
{
    const struct {
        int line;
        Words options;
        const char* reason;
    } rows[] = {
        {__LINE__, {"--size", "85"}, "--size: '85' is no size such as 85x60mm or 800x600px"},
        {__LINE__, {"--size", "850x600cm"}, "--size: '850x600cm' is no size such as 85x60mm or 800x600px"},
        {__LINE__, {"--size", "85x60cm"}, "--size: '85x60cm' is no size such as 85x60mm or 800x600px"},
        {__LINE__, {"--size", "85mmx60mm"}, "--size: '85mmx60mm' is no size such as 85x60mm or 800x600px"},
        {__LINE__, {"--size", "x60mm"}, "--size: 'x60mm' is no size such as 85x60mm or 800x600px"},
        {__LINE__, {"--size", "85x-60mm"}, "--size: '85x-60mm': a side is 30 to 1000 mm"},
        {__LINE__, {"--size", "nanx60mm"}, "--size: 'nanx60mm': a side is 30 to 1000 mm"},
        {__LINE__, {"--size", "99x100"}, "--size: '99x100': a side is 100 to 8000 px"},
        {__LINE__, {"--font-size", "0"}, "--font-size: '0' is not between 2 and 100"},
        {__LINE__, {"--dpi", "1e9"}, "--dpi: '1e9' is not between 20 and 2400"},
        {__LINE__, {"--size", "1000x1000mm", "--dpi", "600"}, "--size and --dpi: a side is 20000 dots at most"},
        {__LINE__, {"--log", "y"}, "--log: y not in {x,none}"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const TempFolder folder;
        Words arguments = plotted({"describe", cavendish}, folder.path("a.png"));
        arguments.insert(arguments.end(), row.options.begin(), row.options.end());
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, wrongUsage);
        EXPECT_THAT(outcome.errors, StartsWith(std::string("wqstat: ") + row.reason));
    }
}

// Values of two decimals, each as often as any other: a picture that shows stripes has made them.
TEST(Print, evenDensitiesLookEven)
{
    const TempFolder folder;
    std::string text;
    for (int x = 0; x < 1000; x += 2)
        for (int y = 0; y < 900; y += 2) text += std::to_string(x * 0.01) + ";" + std::to_string(y * 0.01) + "\n";
    Script drawn = script({"correlate", folder.write("a.txt", text)});
    std::map<std::string, double> areas;
    double area = 0.0;
    for (const auto& [title, rows] : drawn.layers) {
        if (rows.empty() || rows.front().size() != 6) continue;
        for (const auto& row : rows) areas[title] += (row.at(3) - row.at(2)) * (row.at(5) - row.at(4));
        area += areas[title];
    }
    double largest = 0.0;
    for (const auto& [title, part] : areas) largest = std::max(largest, part);
    EXPECT_GT(largest, 0.98 * area) << "but for the cells at the edges all look the same";
}

// A character of a private plane, which no font has; a picture that is made of letters by its viewer has it all the same.
TEST(Print, charactersWithoutAGlyphAreQuestionMarks)
{
    const TempFolder folder;
    const std::string text = "a\U0010fffdb \u00e9";
    for (const auto& [name, shown] :
         {std::pair("a.png", "\"a?b \u00e9\""), std::pair("a.pdf", "\"a?b \u00e9\""), std::pair("a.svg", "\"a\U0010fffdb \u00e9\"")}) {
        const FakeGnuplot gnuplot("cat > '" + folder.path("script") + "'\necho '<?xml version=\"1.0\"?><svg></svg>'");
        run({"describe", cavendish, "--x-label", text, "--plot", folder.path(name)});
        EXPECT_THAT(contentOf(folder.path("script")), HasSubstr(shown)) << name;
    }
}

std::string pairLines(std::size_t n, double (*x)(std::size_t), double (*y)(std::size_t));
double scattered(std::size_t i);
double otherwise(std::size_t i);

// The parts of the height that the plots have, from the first to the last of their own panels.
std::vector<double> plotHeights(const std::string& text)
{
    std::vector<double> heights;
    for (std::size_t i = text.find("set bmargin at screen "); i != std::string::npos; i = text.find("set bmargin at screen ", i + 1)) {
        const double bottom = std::stod(text.substr(i + 22));
        heights.push_back(std::stod(text.substr(text.find("set tmargin at screen ", i) + 22)) - bottom);
    }
    return heights;
}

TEST(Print, leavesThePlotItsRoomAtTheSizeOfAColumn)
{
    const TempFolder folder;
    std::string groups = "group,value\n";
    for (int i = 0; i < 60; ++i) groups += std::string(9, static_cast<char>('a' + i % 6)) + "x," + std::to_string(i * 37 % 11) + "\n";
    const std::string many = folder.write("many.txt", pairLines(100'000, scattered, otherwise));
    const Words size{"--size", "85x60mm"};
    for (const Words& words : {Words{"anova", "--group", "group", "--value", "value", folder.write("g.csv", groups)},
                               Words{"regress", "--model", "linear", many}, Words{"regress", "--model", "linear", norris}}) {
        const std::vector<double> heights = plotHeights(script(with(words, size)).text);
        ASSERT_EQ(heights.size(), 1U);
        EXPECT_GE(heights[0], 0.45) << wq_test::joined(words);
    }
    for (const std::string model : {"linear", "logarithmic", "exponential", "power"}) {
        const std::vector<double> panels = plotHeights(script(with({"regress", "--model", model, "--residuals", norris}, size)).text);
        ASSERT_EQ(panels.size(), 2U);
        for (const double panel : panels) EXPECT_GE(panel, 0.33) << model;
    }
}

// Fifteen labels that begin alike: what tells them apart stays, and so does what came out.
TEST(Print, labelsAreCutWhereTheyAreAlike)
{
    const TempFolder folder;
    std::string table = "group,value\n";
    for (int i = 0; i < 60; ++i)
        table += "very long name of group number " + std::to_string(i % 15) + "," + std::to_string(i * 37 % 11) + "\n";
    const std::string file = folder.write("groups.csv", table);
    for (const Words& size : {Words{}, Words{"--size", "85x60mm"}}) {
        const std::string text = script(with({"anova", "--group", "group", "--value", "value", file}, size)).text;
        std::size_t place = 0;
        const std::string ticks = between(text, "set xtics", "\n", place);
        for (int i = 0; i < 15; ++i) EXPECT_THAT(ticks, HasSubstr(std::to_string(i) + "\" ")) << wq_test::joined(size);
        EXPECT_THAT(text, HasSubstr("\"F(14, 45) = ")) << wq_test::joined(size);
    }
    EXPECT_THAT(script({"anova", resistivity, "--size", "85x40mm"}).text, HasSubstr("\"F(4, 20) = ")) << "without title and key";
}

// The colours of a density mean nothing one without the other.
TEST(Print, levelsAreInTheKeyTogetherOrNotAtAll)
{
    const TempFolder folder;
    std::mt19937 random;
    std::string lines;
    const auto even = [&random] { return static_cast<double>(random() % 1'000'003) / 1'000'003.0; };
    for (int i = 0; i < 50'000; ++i)
        lines += std::to_string(even() * even() * even()) + ";" + std::to_string(even() * even() * even()) + "\n";
    const std::string many = folder.write("many.txt", lines);  // more of them where both are small
    for (const std::string size : {"85x60mm", "120x80mm", "800x600px", "85x40mm"}) {
        const std::string text = script({"regress", "--model", "linear", many, "--size", size}).text;
        std::size_t levels = 0;
        for (std::size_t i = text.find(" pairs\" noenhanced"); i != std::string::npos; i = text.find(" pairs\" noenhanced", i + 1))
            ++levels;
        EXPECT_TRUE(levels == 0 || levels == 5) << size << ": " << levels;
        if (size == "800x600px") {
            EXPECT_EQ(levels, 5U);
        }
    }
}

// Titles of columns of frequencies or values name no axis of classes; each row: what stands on the picture, and what does not.
TEST(Pictures, ofFrequenciesNameTheirAxesByWhatTheyShow)
{
    const TempFolder folder;
    const std::string weights =
        folder.write("weights.csv", "sex,weight\nm,1\nm,1\nm,2\nf,2\nf,1\nf,2\n");  // as many different values as samples
    const std::string before = folder.write("before.csv", "before\n1\n2\n3\n");
    const std::string after = folder.write("after.csv", "before\n2\n4\n5\n");
    const std::string counts = folder.write("counts.csv", "kind,seen,hoped\nround,5,6\nflat,7,6\n");
    const struct {
        int line;
        Words arguments;
        Words shown;
        Words missing;
    } rows[] = {
        {__LINE__,
         {"ks", "--value", "weight", "--group", "sex", weights},
         {"\"weight by sex\"", "\"weight: its different values in their order\"", "\"relative cumulative frequency\"", "title \"m\"",
          "title \"f\"", " at value 1\""},
         {"\"sex\"", "\"weight\"", "\"m\" 1"}},
        {__LINE__,
         {"ks", "--column", "before", before, after},
         {"\"before: its different values in their order\"", "\"relative cumulative frequency\"", "title \"sample 1\""},
         {}},
        {__LINE__,
         {"ks", "--class", "kind", "--count1", "seen", "--count2", "hoped", counts},
         {"\"kind\"", "\"relative cumulative frequency\"", "title \"seen\"", "title \"hoped\"", " at class round\"", "\"flat\" 2"},
         {}},
        {__LINE__,
         {"fit", "--observed", "seen", "--expected", "hoped", counts},
         {"\"seen and hoped\"", "\"class, in the order of the data\"", "\"frequency\""},
         {"\"seen\""}},
        {__LINE__,
         {"ks", "--value", "weight", "--group", "sex", weights, "--x-label", "kg", "--y-label", "share"},
         {"\"kg\"", "\"share\""},
         {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::string text = script(row.arguments).text;
        for (const std::string& part : row.shown) EXPECT_THAT(text, HasSubstr(part));
        for (const std::string& part : row.missing) EXPECT_THAT(text, Not(HasSubstr(part)));
    }
}

TEST(Pictures, ofManyGroupsSayThatPlacesStandForTheirNames)
{
    const TempFolder folder;
    std::string lines = "# instrument;reading\n";
    for (int i = 0; i < 120; ++i) lines += std::to_string(1000 + i / 2) + ";" + std::to_string(i * 37 % 11) + "\n";
    const std::string text = script({"anova", folder.write("groups.txt", lines)}).text;
    EXPECT_THAT(text, HasSubstr("\"instrument, by its place in the data\""));
    EXPECT_THAT(text, HasSubstr("\"no limits and no names of groups: there are more than 45 of them\""));
}

TEST(Pictures, haveTwoNumbersOrMoreOnEachAxis)
{
    const TempFolder folder;
    for (int low = -20; low <= 0; ++low) {
        std::string lines;
        for (int i = 0; i < 10; ++i) lines += std::to_string(i) + ";" + std::to_string(low + 2 * i) + "\n";
        const std::string text = script({"correlate", folder.write("a.txt", lines), "--size", "85x45mm"}).text;
        std::size_t place = 0;
        const std::string ticks = between(text, "set ytics", "\n", place);
        EXPECT_GE(std::count(ticks.begin(), ticks.end(), '"'), 4) << ticks;
    }
}

// What came out stands on the picture, or at least in its description, at any size; so do the names of the axes.
TEST(Print, saysWhatCameOutAtEverySize)
{
    const struct {
        int line;
        Words arguments;
        const char* caption;
        const char* axes;
        bool isDrawn;
    } rows[] = {
        {__LINE__,
         {"regress", "--model", "power", "--residuals", norris},
         " of ln y, p = ",
         ", n = 36. Across: x; upwards: y. Shown: pairs; ",
         true},
        {__LINE__,
         {"regress", "--model", "linear", "--residuals", norris, "--x-label", "true"},
         "R\u00b2 = 0.999994, p = 4.65e-90, n = 36",
         ". Across: true; upwards: y. Shown: pairs; ",
         true},
        {__LINE__, {"regress", "--model", "linear", norris}, "R\u00b2 = 0.999994, p = 4.65e-90, n = 36", ". Across: x; upwards: y.", false},
        {__LINE__,
         {"circular", "--unit", "degrees", pigeons},
         "n = 10, mean direction 18.052\u00b0, r = 0.79632",
         ". direction, clockwise from the top. ",
         false},
        {__LINE__, {"variances", instrument1, instrument2}, "F = 2.488", ". Across: sample; upwards: value. ", false},
    };
    for (const auto& row : rows) {
        for (const std::string size : {"85x60mm", "85x85mm", "120x80mm", "300x100px", "800x800px"}) {
            SCOPED_TRACE("row of line " + std::to_string(row.line) + ", " + size);
            const TempFolder folder;
            const std::string file = folder.path("picture.svg");
            ASSERT_EQ(run(with(plotted(row.arguments, file), {"--size", size})).status, done);
            const std::string svg = contentOf(file);
            std::size_t place = 0;
            const std::string description = between(svg, "<desc>", "</desc>", place);
            EXPECT_THAT(description, HasSubstr(row.caption));
            EXPECT_THAT(description, HasSubstr(row.axes));
            if (row.isDrawn) {
                EXPECT_THAT(textsOf(file), HasSubstr(row.caption));
                EXPECT_THAT(description, testing::EndsWith(row.arguments[2] == "power" ? " Below, upwards: residual of ln y."
                                                                                       : " Below, upwards: residual."));
            }
        }
    }
}

// The numbers of the x axis stand once, below both panels.
TEST(Print, panelsShareTheXAxis)
{
    for (const Words& size : {Words{}, Words{"--size", "85x60mm"}}) {
        const std::string text = script(with({"regress", "--model", "linear", "--residuals", norris}, size)).text;
        const auto ticks = [&text](std::size_t from) {
            const std::size_t begin = text.find("set xtics", from);
            return text.substr(begin, text.find('\n', begin) - begin);
        };
        EXPECT_THAT(ticks(0), Not(HasSubstr("\"200\"")));
        EXPECT_THAT(ticks(text.find("unset label\n")), HasSubstr("\"200\""));
    }
}

// What the key of a picture names.
Words keyOf(const std::string& text)
{
    Words names;
    for (std::size_t i = text.find(" title \""); i != std::string::npos; i = text.find(" title \"", i + 1))
        names.push_back(text.substr(i + 8, text.find('"', i + 8) - i - 8));
    return names;
}

TEST(Print, keysOfSmallPicturesHaveAllEntriesOrSayHowManyAreMissing)
{
    const TempFolder folder;
    const Words small{"--size", "85x60mm"};
    const struct {
        int line;
        Words arguments;
        Words key;
    } rows[] = {
        {__LINE__, {"regress", "--model", "linear", "--residuals", norris}, {"pairs", "exact 95 % limits", "y = -0.26232 + 1.0021 x"}},
        {__LINE__, {"regress", "--model", "linear", norris}, {"pairs", "exact 95 % limits", "y = -0.26232 + 1.0021 x"}},
        {__LINE__, {"multiy", seedlings}, {"pairs (larger: several)", "y = 18.033 + 3.7386 x", "exact 95 % limits of b"}},
        {__LINE__, {"anova", resistivity}, {"observations", "mean 196.1892", "mean of the group", "exact 95 % limits of the mean"}},
        {__LINE__, {"describe", cavendish}, {"observations", "exact 95 % confidence interval 5.3639 to 5.532", "mean 5.4479"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::string text = script(with(row.arguments, small)).text;
        EXPECT_EQ(keyOf(text), row.key);
        EXPECT_THAT(text, Not(HasSubstr("for want of room")));
    }
    std::mt19937 random;
    std::string lines;
    for (int i = 0; i < 100'000; ++i) {
        lines += std::to_string(random()) + ";";
        lines += std::to_string(random()) + "\n";
    }
    const std::string many = folder.write("many.txt", lines);
    const std::size_t all = keyOf(script({"regress", "--model", "linear", many}).text).size();
    const std::string text = script(with({"regress", "--model", "linear", many}, small)).text;
    const std::size_t missing = all - keyOf(text).size();
    ASSERT_GT(missing, 0U);
    EXPECT_THAT(keyOf(text), testing::Contains("exact 95 % limits"));
    EXPECT_THAT(keyOf(text), testing::Contains(StartsWith("y = "))) << "the lines stay";
    EXPECT_THAT(text, HasSubstr("\"" + std::to_string(missing) + (missing == 1 ? " entry" : " entries") +
                                " of the key left out for want of room\""));
}

// The cosine of 0.00063246 is 0.9999998.
TEST(Print, directionsAndSeriesHaveTheirFigures)
{
    const TempFolder folder;
    EXPECT_THAT(script({"circular", folder.write("a.txt", "1.00063246;0\n0.99936754;0\n")}).text, HasSubstr("r = 0.9999998\""));
    // By hand: b = 12 / 4, explained 36 of 257 / 6, deviations 16 / 3 with 1 degree of freedom; F = 6.75, p = 1 - 2 atan(sqrt(F)) / pi.
    EXPECT_THAT(script({"multiy", folder.write("m.txt", "1;1;1\n1;2;1\n2;2;1\n2;3;1\n3;7;1\n3;8;1\n")}).text,
                HasSubstr("F(1, 1) = 6.75, p = 0.234, R\u00b2 = 0.84047, 3 different x, 6 pairs"));
}

// Between the cells of a grid that is full nothing stays empty.
TEST(Print, densitiesOfGridsHaveNoStripes)
{
    const struct {
        double step;
        int columns;
        int rows;
    } grids[] = {{1.0, 500, 450}, {1.0, 60, 50}, {1.0, 211, 97}, {0.25, 301, 133}, {0.02, 500, 450}, {0.02, 143, 91}};
    for (const auto& grid : grids) {
        SCOPED_TRACE(std::to_string(grid.columns) + " steps of " + std::to_string(grid.step));
        const TempFolder folder;
        std::string text;
        for (int x = 0; x < grid.columns; ++x)
            for (int y = 0; y < grid.rows; ++y) text += std::to_string(x * grid.step) + ";" + std::to_string(y * grid.step) + "\n";
        double area = 0.0;
        double left = HUGE_VAL;
        double right = -HUGE_VAL;
        double bottom = HUGE_VAL;
        double top = -HUGE_VAL;
        for (const auto& [title, rows] : script({"correlate", folder.write("a.txt", text)}).layers) {
            for (const auto& row : rows) {
                if (row.size() != 6) continue;
                area += (row[3] - row[2]) * (row[5] - row[4]);
                left = std::min(left, row[2]);
                right = std::max(right, row[3]);
                bottom = std::min(bottom, row[4]);
                top = std::max(top, row[5]);
            }
        }
        EXPECT_LE(left, 0.0);
        EXPECT_LE(bottom, 0.0);
        EXPECT_GE(right, (grid.columns - 1) * grid.step);
        EXPECT_GE(top, (grid.rows - 1) * grid.step);
        EXPECT_NEAR(area, (right - left) * (top - bottom), 1e-6 * area) << "every cell is drawn, once";
    }
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
        {__LINE__, {"anova"}, "7;1\n7;2\n", {"no F, 1 group, 2 observations"}},
        {__LINE__, {"anova"}, "1;2\n1;2\n2;3\n2;3\n", {"F(1, 2) is infinite, p < 1e-300, 2 groups, 4 observations"}},
        {__LINE__, {"multiy"}, "1;1;2\n1;1;2\n2;2;2\n2;2;2\n3;3;2\n3;3;2\n", {"F(1, 1) is infinite, p < 1e-300, "}},
        {__LINE__, {"pairs"}, "1;2\n2;2\n3;2\n", {"no r, n = 3"}},
        {__LINE__, {"anova"}, "7;1\n7;nan\n8;3\nnan;4\n", {"n/a", "1 observation left out: not finite", "1 mean left out: not finite"}},
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
    EXPECT_THAT(textsOf(folder.path("a.svg")), HasSubstr("no comment.txt \u2013 descriptive statistics\n"));
}

// A comment that names both columns as the data have them, with a semicolon between.
TEST(Pictures, nameTheirAxesByTheComment)
{
    const struct {
        int line;
        const char* comment;
        const char* title;
        const char* x;  // in place of "x" and "y"
        const char* y;
    } rows[] = {
        {__LINE__, "weight (kg);height (m)", "weight (kg) and height (m)", "weight (kg)", "height (m)"},
        {__LINE__, "cars. Speed (mph);distance (ft). 1930.", "cars. Speed (mph) and distance (ft). 1930.", "Speed (mph)", "distance (ft)"},
        {__LINE__, "Group;observation.", "Group and observation.", "Group", "observation"},
        {__LINE__, "a;b;c", "a; b; c", "x", "y"},
        {__LINE__, "a;b; treated", "a and b; treated", "x", "y"},
        {__LINE__, "two lots; one late", "two lots; one late", "x", "y"},
        {__LINE__, "ends;", "ends;", "x", "y"},
        {__LINE__, ";begins", ";begins", "x", "y"},
        {__LINE__, "plain words", "plain words", "x", "y"},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::string data = folder.write("data.txt", std::string("# ") + row.comment + "\n1;2\n2;3\n3;5\n");
        const std::string file = folder.path("a.svg");
        ASSERT_EQ(run({"correlate", data, "--plot", file}).status, done);
        const std::string texts = "\n" + textsOf(file);
        for (const char* const text : {row.title, row.x, row.y}) EXPECT_THAT(texts, HasSubstr("\n" + std::string(text) + "\n"));
        ASSERT_EQ(run({"correlate", data, "--plot", file, "--title", "T", "--x-label", "X", "--y-label", "Y"}).status, done);
        for (const char* const text : {"\nT\n", "\nX\n", "\nY\n"}) EXPECT_THAT("\n" + textsOf(file), HasSubstr(text));
    }
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
        {__LINE__, "true", "the picture cannot be written: gnuplot has drawn a part of it"},
        {__LINE__, "echo '<?xml version=\"1.0\"?><svg>'", "the picture cannot be written: gnuplot has drawn a part of it"},
        {__LINE__, "echo '</svg>'", "the picture cannot be written: gnuplot has drawn a part of it"},
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
    const std::string report = run({"describe", cavendish}).output;
    const std::pair<const char*, const char*> rows[] = {{"none/a.svg", "the picture cannot be written: No such file or directory"},
                                                        {"folder.svg", "is no file"}};
    for (const auto& [name, reason] : rows)
        EXPECT_EQ(run({"describe", cavendish, "--plot", folder.path(name)}),
                  (Outcome{couldNotAnalyse, report, "wqstat: " + folder.path(name) + ": " + reason + "\n"}));
    const Outcome full = wq_test::runCommand({"bash", "-c", "ulimit -f 4; exec \"$@\" > /dev/null", "bash", WQSTAT, "regress", "--model",
                                              "linear", norris, "--plot", folder.path("a.svg")});
    EXPECT_EQ(full, (Outcome{couldNotAnalyse, "",
                             "wqstat: " + folder.path("a.svg") +
                                 ": the picture cannot be written: the temporary file for gnuplot: File too large\n"}));
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
