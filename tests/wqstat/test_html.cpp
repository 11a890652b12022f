// wqstat --html: what a page holds, and that all of it is what it seems.
#include "commands.h"
#include "data_files.h"
#include "documents.h"
#include "page_reader.h"
#include "support/plain_gnuplot.h"
#include "variable.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace wq_test;
using namespace wq_test::data_files;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const struct Analysis {
    int line;
    Words arguments;
    const char* question;
    const char* summary;  // begins so
} pages[] = {
    // The figures are worked by hand, published, or those of the textbook's tests.
    {__LINE__,
     {"describe", "--mu", "5.517", cavendish},
     "What is the mean of the values, and does it differ from 5.517?",
     "M = 5.4479 (95 % CI 5.3639 to 5.532), SD = 0.22095, n = 29; t(28) = -1.6834, p = 0.103, d = -0.313"},
    {__LINE__,
     {"frequency", cavendish},
     "How are the values distributed over 10 classes?",
     "M = 5.4479, SD = 0.22095, median 5.46, n = 29"},
    {__LINE__, {"pairs", norris}, "How do x and y vary together?", "r = 0.999997 (95 % CI 0.999994 to 0.999998), p = "},
    {__LINE__, {"correlate", norris}, "Are x and y correlated?", "r(34) = 0.999997 (95 % CI 0.9999"},
    {__LINE__, {"regress", "--model", "linear", norris}, "How does y depend on x, by y = a + b x?", "a = -0.26232, b = 1.0021 (95 % CI "},
    {__LINE__,
     {"regress", "--model", "power", norris, "--residuals", "--size", "120x120mm"},
     "How does y depend on x, by y = a x^b?",
     "a = "},
    {__LINE__,
     {"anova", resistivity, "--x-label", "instrument", "--y-label", "resistivity"},
     "Does resistivity differ among the groups of instrument?",
     "F(4, 20) = 1.1805, p = 0.349, \u03b7\u00b2 = 0.191, \u03c9\u00b2 = 0.0281"},
    {__LINE__, {"multiy", seedlings}, "How does y, observed several times, depend on x?", "among groups F(4, "},
    {__LINE__,
     {"fit", peas},
     "Do the observed frequencies fit the expected ones?",
     "\u03c7\u00b2(3) = 0.47002, p = 0.925, which decides; G(3) = 0.47545, p = 0.924, w = 0.0291"},
    {__LINE__, {"ks", digits}, "Do the two samples come from the same distribution?", "D = 0.019, p = "},
    {__LINE__, {"variances", instrument1, instrument2}, "Do the variances of the two samples differ?", "F(4, 4) = 2.488, p = "},
    {__LINE__,
     {"circular", "--unit", "degrees", pigeons},
     "Is there a mean direction of the observations, or do they point anywhere?",
     "mean direction 18.052\u00b0, r = 0.79632, z = "},
};

Words withoutLooks(const Words& arguments)
{
    Words plain;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--residuals") continue;
        if (arguments[i] == "--x-label" || arguments[i] == "--y-label" || arguments[i] == "--size")
            ++i;
        else
            plain.push_back(arguments[i]);
    }
    return plain;
}

TEST(Page, saysWhatWasAskedWhatCameOutAndHowItWasMade)
{
    for (const Analysis& analysis : pages) {
        SCOPED_TRACE("row of line " + std::to_string(analysis.line));
        const TempFolder folder;
        const std::string file = folder.path("page.html");
        const Outcome report = run(withoutLooks(analysis.arguments));
        EXPECT_EQ(run(withPage(analysis.arguments, file)), report) << "the page costs the report nothing";
        const Page page = pageIn(file);
        EXPECT_THAT(page.faults, IsEmpty());
        EXPECT_THAT(page.languages, ElementsAre("en"));
        ASSERT_EQ(page.titles.size(), 1U);
        EXPECT_THAT(page.texts, Contains(analysis.question));
        EXPECT_THAT(page.texts, Contains(StartsWith(analysis.summary)));
        EXPECT_THAT(page.texts, Contains(report.output)) << "the report, verbatim";
        EXPECT_LT(std::filesystem::file_size(file), 300U * 1024U);
    }
}

// What stands in the list of a browser's pages, and as the first line of the page.
TEST(Page, isTitledByWhatItIsAbout)
{
    const TempFolder folder;
    const std::string plants =
        folder.write("plants.csv", "treatment,height_cm,root\nctrl,4,2\nctrl,5,1\nctrl,7,3\nheat,5,6\nheat,8,3\nheat,9,1\n");
    const std::string plain = folder.write("plain.txt", "1;2\n2;3\n3;5\n");
    const std::string named = folder.write("named.txt", "# Weight (kg);height (m)\n1;2\n2;3\n3;5\n");
    const std::string dash = " \u2013 ";
    const struct {
        int line;
        Words arguments;
        std::string heading;
        std::string rest;  // of the title
    } rows[] = {
        {__LINE__,
         {"anova", "--group", "treatment", "--value", "height_cm", plants},
         "height_cm by treatment",
         dash + "one-way Anova" + dash + "plants.csv"},
        {__LINE__,
         {"regress", "--model", "power", "--x", "root", "--y", "height_cm", plants},
         "height_cm by root",
         dash + "power regression" + dash + "plants.csv"},
        {__LINE__,
         {"correlate", "--x", "root", "--y", "height_cm", plants},
         "root and height_cm",
         dash + "correlation" + dash + "plants.csv"},
        {__LINE__, {"describe", "--column", "root", plants}, "root", dash + "descriptive statistics" + dash + "plants.csv"},
        {__LINE__,
         {"variances", "--column", "root", "--column2", "height_cm", plants},
         "root and height_cm",
         dash + "test of two variances" + dash + "plants.csv"},
        {__LINE__,
         {"describe", "--column", "root", "--title", "Roots", plants},
         "Roots",
         dash + "descriptive statistics" + dash + "plants.csv"},
        {__LINE__, {"pairs", plain}, "plain.txt" + dash + "paired samples", ""},
        {__LINE__, {"pairs", plain, "--x-label", "dose"}, "dose", dash + "paired samples" + dash + "plain.txt"},
        {__LINE__, {"pairs", named}, "Weight (kg) and height (m)", dash + "paired samples" + dash + "named.txt"},
        {__LINE__, {"fit", "--lenient", named}, "Weight (kg) and height (m)", dash + "goodness of fit" + dash + "named.txt"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::string file = folder.path("page.html");
        ASSERT_EQ(run(withPage(with(row.arguments, {"--no-warnings"}), file)).status, done);
        EXPECT_THAT(pageIn(file).titles, ElementsAre(row.heading + row.rest));
        EXPECT_THAT(contentOf(file), HasSubstr("<h1>" + row.heading + "</h1>"));
    }
    ASSERT_EQ(run(withPage({"regress", "--model", "linear", named}, folder.path("page.html"))).status, done);
    EXPECT_THAT(pageIn(folder.path("page.html")).texts, Contains("How does height (m) depend on Weight (kg), by y = a + b x?"));
}

// What an effect size is called in the summary, and where it stands in the JSON document.
TEST(Page, saysHowLargeAnEffectIs)
{
    const struct {
        int line;
        Words arguments;
        const char* symbol;
        const char* path;
    } rows[] = {
        {__LINE__, {"describe", "--mu", "5.517", cavendish}, ", d = ", "cohensD"},
        {__LINE__, {"anova", resistivity}, ", \u03b7\u00b2 = ", "etaSquared"},
        {__LINE__, {"anova", resistivity}, ", \u03c9\u00b2 = ", "omegaSquared"},
        {__LINE__, {"anova", shipped("nist_smls01.txt")}, ", \u03c9\u00b2 = ", "omegaSquared"},
        {__LINE__, {"fit", peas}, ", w = ", "cohensW"},
        {__LINE__, {"pairs", supplements}, "r = ", "r"},
        {__LINE__, {"pairs", supplements}, "% CI ", "limitsR/lower"},
        {__LINE__, {"pairs", supplements}, ", r\u00b2 = ", "rSquared"},
        {__LINE__, {"correlate", supplements}, "% CI ", "confidenceLimitsR/lower"},
        {__LINE__, {"correlate", supplements}, ", r\u00b2 = ", "rSquared"},
        {__LINE__, {"regress", "--model", "linear", supplements}, ", R\u00b2 = ", "rSquared"},
        {__LINE__, {"regress", "--model", "logarithmic", supplements}, "% CI ", "limitsB/lower"},
        {__LINE__, {"regress", "--model", "logarithmic", supplements}, ", R\u00b2 = ", "rSquared"},
        {__LINE__, {"regress", "--model", "exponential", supplements}, "% CI ", "limitsB/lower"},
        {__LINE__, {"regress", "--model", "exponential", supplements}, ", p = ", "pB"},
        {__LINE__, {"regress", "--model", "power", supplements}, "% CI ", "limitsB/lower"},
        {__LINE__, {"regress", "--model", "power", supplements}, ", R\u00b2 = ", "rSquared"},
        {__LINE__, {"multiy", seedlings}, ", R\u00b2 = ", "rSquared"},
        {__LINE__, {"variances", instrument1, instrument2}, "% CI ", "ratioLimits/lower"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const TempFolder folder;
        ASSERT_EQ(run(withPage(row.arguments, folder.path("page.html"))).status, done);
        const Page page = pageIn(folder.path("page.html"));
        const std::string path = std::string("textbook/") + row.path;
        const double figure = numberOf(documentOf(row.arguments).at(Json::json_pointer("/" + path)));
        EXPECT_THAT(page.figures, Contains(testing::Key(path))) << "in the table";
        const auto summary = std::find_if(page.texts.begin(), page.texts.end(), [](const std::string& text) {
            return text.find(", n = ") != std::string::npos || text.find("p = ") != std::string::npos;
        });
        ASSERT_NE(summary, page.texts.end());
        const std::size_t place = summary->find(row.symbol);
        ASSERT_NE(place, std::string::npos) << *summary;
        const double shown = std::stod(summary->substr(place + std::string(row.symbol).size()));
        EXPECT_NEAR(shown, figure, 0.002 * std::fabs(figure)) << *summary;
    }
}

TEST(Page, givesNoProbabilityWhereNothingIsTested)
{
    const TempFolder folder;
    const std::string data = folder.write("classes.txt", "5;0\n3;5\n");
    ASSERT_EQ(run(withPage({"fit", data}, folder.path("page.html"))).status, done);
    EXPECT_THAT(pageIn(folder.path("page.html")).texts, Contains(testing::EndsWith(", no test: nothing is expected in a class")));
    const std::string rows = run({"fit", "--tsv", data}).output;
    std::istringstream titles(rows.substr(0, rows.find('\n')));
    std::istringstream cells(rows.substr(rows.find('\n') + 1));
    std::size_t found = 0;
    for (std::string title, cell; std::getline(titles, title, '\t') && std::getline(cells, cell, '\t');) {
        if (title != "p" && title != "pHolm") continue;
        ++found;
        EXPECT_EQ(cell, "NA") << title;
    }
    EXPECT_EQ(found, 2U) << rows;
}

// Neither does any statistic of a fit have a p or a tail where a class, or the number of classes, leaves nothing to decide.
TEST(Page, listsNoProbabilityOfAFitWithoutATest)
{
    const struct {
        int line;
        const char* classes;
        const char* reason;  // none where there is a test
    } rows[] = {
        {__LINE__, "5;0\n3;5\n", ", no test: nothing is expected in a class"},
        {__LINE__, "0;0\n3;5\n9;7\n", ", no test: nothing is expected in a class"},
        {__LINE__, "5;5\n", ", no test: there are no degrees of freedom"},
        {__LINE__, "5;7\nnan;3\n", ", no test: chi-square is no number"},
        {__LINE__, "5;3\n3;5\n", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const bool isTested = row.reason[0] == '\0';
        const TempFolder folder;
        const std::string data = folder.write("classes.txt", row.classes);
        ASSERT_EQ(run(withPage({"fit", data}, folder.path("page.html"))).status, done);
        const Page page = pageIn(folder.path("page.html"));
        EXPECT_EQ(
            std::count_if(page.texts.begin(), page.texts.end(), [](const auto& text) { return text.find("no test: ") < text.size(); }),
            isTested ? 0 : 1);
        if (!isTested) {
            EXPECT_THAT(page.texts, Contains(testing::EndsWith(row.reason)));
        }
        const Json document = documentOf({"fit", data});
        std::size_t probabilities = 0;
        for (const auto& [path, value] : page.figures) {
            const std::string name = path.substr(path.rfind('/') + 1);
            if (name != "p" && name != "lowerTail") continue;
            ++probabilities;
            EXPECT_EQ(value != "NaN", isTested) << path;
            EXPECT_EQ(document.at(Json::json_pointer("/" + path)).is_number(), isTested) << path;
        }
        EXPECT_EQ(probabilities, 6U);
    }
}

// 20 r^2 of the r that is shown is 3.084; z is 2.5, (9 - 2)^2 / 20 + (5 - 4)^2 / 20.
TEST(Page, saysWhichFiguresOfGroupedDirectionsAreCorrected)
{
    const TempFolder folder;
    const std::string data = folder.write("quarters.txt", "1;9\n2;4\n3;2\n4;5\n");
    ASSERT_EQ(run(withPage({"circular", "--unit", "bins", "--bins", "4", data}, folder.path("page.html"))).status, done);
    EXPECT_THAT(pageIn(folder.path("page.html")).texts,
                Contains(HasSubstr(", r = 0.3927 corrected for grouping, z without the correction = 2.5, p = 0.108, n = 20")));
}

TEST(Page, saysThatThePOfSmallSamplesIsGivenTheTies)
{
    const TempFolder folder;
    ASSERT_EQ(run(withPage({"ks", folder.write("few.txt", "2;0\n3;1\n1;2\n0;4\n")}, folder.path("page.html"))).status, done);
    EXPECT_THAT(pageIn(folder.path("page.html")).texts, Contains("D = 0.69048, p = 0.0291 given the ties, n = 6 and 7"));
}

TEST(Page, hasTheFiguresOfTheJsonDocument)
{
    for (const Analysis& analysis : pages) {
        SCOPED_TRACE("row of line " + std::to_string(analysis.line));
        const TempFolder folder;
        const std::string file = folder.path("page.html");
        ASSERT_EQ(run(withPage(analysis.arguments, file)).status, done);
        const Page page = pageIn(file);
        const bool tests = analysis.arguments[0] != "pairs" && analysis.arguments[0] != "frequency";
        const Json document = documentOf(tests ? with(withoutLooks(analysis.arguments), {"--textbook"}) : withoutLooks(analysis.arguments));
        EXPECT_GT(page.figures.size(), 3U);
        for (const auto& [path, value] : page.figures) {
            const Json::json_pointer place("/" + path);
            ASSERT_TRUE(document.contains(place)) << path;
            const double expected = numberOf(document.at(place));
            const double found = value == "NaN" ? std::nan("") : std::stod(value);
            EXPECT_TRUE(found == expected || (std::isnan(found) && std::isnan(expected))) << path << ": " << value << ", " << expected;
        }
        for (const auto& [path, word] : page.decisions) {
            const Json& decision = document.at(Json::json_pointer("/" + path));
            EXPECT_EQ(word, decision.is_boolean() ? (decision.get<bool>() ? "accepted" : "rejected") : "none") << path;
        }
        EXPECT_EQ(page.decisions.empty(), !tests);
    }
}

// ---------------------------------------------------------------- group by group, and class by class

using Figures = std::map<std::string, std::string>;

Figures figuresOf(const Page& page) { return {page.figures.begin(), page.figures.end()}; }

void expectFigures(const Page& page, const std::vector<std::pair<std::string, double>>& expected)
{
    const Figures figures = figuresOf(page);
    for (const auto& [path, value] : expected) {
        const auto found = figures.find(path);
        ASSERT_NE(found, figures.end()) << path;
        EXPECT_NEAR(std::stod(found->second), value, 1e-9 * std::max(1.0, std::fabs(value))) << path;
    }
}

// By hand: the variance within both groups is 4/3 with 3 degrees of freedom, and t of 0.05 (two-sided) is 3.182446305 with those.
TEST(Page, hasARowForEachGroup)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string table = folder.write("t.csv", "site,w\nnorth,1\nnorth,2\nsouth,4\nnorth,3\nsouth,6\n");
    ASSERT_EQ(run({"anova", "--group", "site", "--value", "w", table, "--html", file}).status, done);
    const Page page = pageIn(file);
    EXPECT_THAT(page.texts, testing::IsSupersetOf({"group 1: north", "group 2: south"}));
    const double half1 = 3.182446305 * std::sqrt(4.0 / 3.0 / 3.0);
    const double half2 = 3.182446305 * std::sqrt(4.0 / 3.0 / 2.0);
    expectFigures(page, {{"result/groups/0/n", 3},
                         {"result/groups/0/mean", 2},
                         {"textbook/groupLimits/0/lower", 2 - half1},
                         {"textbook/groupLimits/0/upper", 2 + half1},
                         {"result/groups/1/n", 2},
                         {"result/groups/1/mean", 5},
                         {"textbook/groupLimits/1/lower", 5 - half2},
                         {"textbook/groupLimits/1/upper", 5 + half2}});
    ASSERT_EQ(run({"anova", folder.write("numbers.txt", "7;1\n7;2\n9;4\n9;6\n"), "--html", file}).status, done);
    EXPECT_THAT(pageIn(file).texts, testing::IsSupersetOf({"group 7", "group 9"}));
    ASSERT_EQ(
        run({"variances", "--value", "w", "--group", "site", folder.write("v.csv", contentOf(table) + "south,9\n"), "--html", file}).status,
        done);
    EXPECT_THAT(pageIn(file).texts, testing::IsSupersetOf({"sample 1: north", "sample 2: south"}));
}

TEST(Page, hasARowForEachClass)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string seeds = folder.write("seeds.csv", "seed\nround\nround\nround\nwrinkled\n");
    ASSERT_EQ(run({"fit", "--column", "seed", "--ratio", "1:1", seeds, "--html", file, "--no-warnings"}).status, done);
    EXPECT_THAT(pageIn(file).texts, testing::IsSupersetOf({"class 1: round", "class 2: wrinkled"}));
    expectFigures(pageIn(file),
                  {{"result/classes/0/observed", 3}, {"result/classes/1/expected", 2}, {"result/classes/0/contribution", 0.5}});
    const std::string counts = folder.write("counts.txt", "12;10\n8;10\n");
    ASSERT_EQ(run({"fit", "--yates", counts, "--html", file}).status, done);
    expectFigures(pageIn(file), {{"result/classes/0/contribution", 0.225}, {"result/classes/1/contribution", 0.225}});

    // 2 and 1, 1 and 1, 1 and 3 of 4 and 5.
    ASSERT_EQ(run({"ks", folder.write("ks.txt", "2;1\n1;1\n1;3\n"), "--html", file, "--no-warnings"}).status, done);
    expectFigures(pageIn(file), {{"result/cumulativeFrequencies/1/count1", 1},
                                 {"result/cumulativeFrequencies/2/count2", 3},
                                 {"result/cumulativeFrequencies/1/relF1", 0.75},
                                 {"result/cumulativeFrequencies/1/relF2", 0.4},
                                 {"result/cumulativeFrequencies/1/diff", 0.35}});
}

// Thousands of groups and classes, of which the first stand on the page, and those with the figures of the JSON document.
TEST(Page, staysSmallForManyGroupsAndClasses)
{
    const TempFolder folder;
    std::string table = "group,value\n";
    std::string pairs;
    for (int i = 0; i < 12'000; ++i) {
        const std::string value = std::to_string(i * 7919LL % 10'007);
        table += "a group with a name of some length & <number> " + std::to_string(i % 6000) + "," + value + "\n";
        pairs += value + ";" + std::to_string(i % 977 + 1) + "\n";
    }
    const std::string groups = folder.write("groups.csv", table);
    const std::string classes = folder.write("classes.txt", pairs);
    const struct {
        Words arguments;
        const char* left;
    } rows[] = {
        {{"anova", "--group", "group", "--value", "value", groups},
         "These are the first 100 groups; 5900 more are left out here. wqstat anova --json prints all of them."},
        {{"anova", classes}, "These are the first 100 groups; 9907 more are left out here. wqstat anova --json prints all of them."},
        {{"fit", classes}, "These are the first 100 classes; 11 900 more are left out here. wqstat fit --json prints all of them."},
        {{"ks", classes}, "These are the first 100 classes; 11 900 more are left out here. wqstat ks --json prints all of them."},
        {{"frequency", "--classes", "12000", "--column", "value", groups},
         "These are the first 100 classes; 11 900 more are left out here. wqstat frequency --json prints all of them."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(joined(row.arguments));
        const std::string file = folder.path("page.html");
        const Words arguments = with(row.arguments, {"--no-warnings"});
        const Outcome report = run(withPage(arguments, file));
        ASSERT_EQ(report.status, done);
        EXPECT_LT(std::filesystem::file_size(file), 300U * 1024U);
        const Page page = pageIn(file);
        EXPECT_THAT(page.faults, IsEmpty());
        EXPECT_THAT(page.texts, Contains(row.left));
        const Json document = documentOf(row.arguments);
        EXPECT_GT(page.figures.size(), 300U);
        for (const auto& [path, value] : page.figures) {
            const double shown = value == "NaN" ? std::nan("") : std::stod(value);
            EXPECT_THAT(shown, testing::NanSensitiveDoubleEq(numberOf(document.at(Json::json_pointer("/" + path))))) << path;
        }
        if (report.output.size() < 100'000 || row.arguments[0] != "frequency") continue;
        const auto isCut = testing::ContainsRegex(
            "^These are the first [0-9 ]+ lines of the report; [0-9 ]+ more would make the page larger than 300 KiB. The report is printed "
            "whole beside the page.$");
        EXPECT_THAT(page.texts, Contains(isCut));
        EXPECT_GT(std::filesystem::file_size(file), 250U * 1024U) << "there was room for more";
    }
}

// The teeth of guinea pigs, where the report rejects what the exact probability of 0.06 accepts.
TEST(Page, marksWhereTheReportDecidesDifferently)
{
    const TempFolder folder;
    run(withPage({"anova", supplements}, folder.path("page.html")));
    EXPECT_THAT(pageIn(folder.path("page.html")).texts, Contains("The decision on H0 differs: the report rejects it."));
    EXPECT_THAT(contentOf(folder.path("page.html")), HasSubstr("<p class=\"differs\">"));
    run(withPage({"anova", resistivity}, folder.path("page.html")));
    EXPECT_THAT(contentOf(folder.path("page.html")), Not(HasSubstr("<p class=\"differs\">")));
}

// Of what is not there the line says what the table says.
TEST(Page, saysThatThereIsNoFigureInTheSameWords)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const Words constant[] = {{"describe", folder.write("c.txt", "4\n4\n4\n")},
                              {"correlate", folder.write("p.txt", "4;1\n4;2\n4;3\n")},
                              {"anova", folder.write("g.txt", "1;4\n2;4\n3;4\n")},
                              {"multiy", folder.write("m.txt", "1;4;1\n2;4;1\n3;4;1\n")}};
    for (const Words& words : constant) {
        SCOPED_TRACE(joined(words));
        ASSERT_EQ(run(withPage(with(words, {"--no-warnings"}), file)).status, done);
        const Page page = pageIn(file);
        EXPECT_THAT(page.texts, Contains(HasSubstr("= n/a")));
        for (const std::string& text : page.texts) {
            const bool isReport = text.find("====") != std::string::npos;
            EXPECT_TRUE(isReport || !testing::Value(text, testing::ContainsRegex("(^|[ =(])-?nan([ ,;)]|$)"))) << text;
        }
    }
}

TEST(Page, tellsWhatStandardErrorTells)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string unremarkable = "Nothing was left out, and nothing was read in a way that may surprise.";
    const std::string sums = "the sums of the observed and the expected frequencies differ: 15 and 14";
    const Outcome outcome = run(withPage({"fit", folder.write("data.txt", "3;4\n12;10\n")}, file));
    EXPECT_THAT(outcome.errors, HasSubstr("wqstat: warning: " + sums + "\n"));
    EXPECT_THAT(pageIn(file).texts, Contains("Warning: " + sums));
    EXPECT_THAT(pageIn(file).texts, Not(Contains(unremarkable)));
    run(withPage({"fit", peas}, file));
    EXPECT_THAT(contentOf(file), Not(HasSubstr("Warning: ")));
    EXPECT_THAT(pageIn(file).texts, Contains(unremarkable));
}

TEST(Page, isMadeAgainByItsCommandLine)
{
    const struct {
        int line;
        Words arguments;
    } rows[] = {
        {__LINE__, {"describe", "--mu", "5.5", cavendish}},
        {__LINE__, {"describe", cavendish, "--x-label", "it's \"$HOME\" `ls` \\n !x * ? ~ # & | ; < > ( ) { } [ ]"}},
        {__LINE__, {"describe", cavendish, "--x-label", "two\nlines \x1b[31m \xff tab\t' \\ end"}},
        {__LINE__, {"describe", cavendish, "--title", ""}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const TempFolder folder;
        const std::string file = folder.path("it's a page.html");
        ASSERT_EQ(run(withPage(row.arguments, file)).status, done);
        const std::string first = contentOf(file);
        const Page page = pageIn(file);
        ASSERT_EQ(page.commands.size(), 1U);
        std::filesystem::remove(file);
        const std::string path = std::filesystem::path(wqstat()).parent_path().string();
        const Variable variable("PATH", path + ":" + std::getenv("PATH"));
        ASSERT_EQ(runCommand({"bash", "-c", page.commands[0]}).status, 0) << page.commands[0];
        EXPECT_EQ(contentOf(file), first);
    }
}

TEST(Page, namesItsFilesTheirFingerprintsAndWarnings)
{
    const TempFolder folder;
    const std::string file = folder.write("p.txt", "1;2\n2 3\n3;5\n");
    run(withPage({"pairs", "--lenient", file}, folder.path("page.html")));
    const Page page = pageIn(folder.path("page.html"));
    EXPECT_THAT(page.texts, Contains(file + ": 3 observations read"));
    EXPECT_THAT(page.texts, Contains(HasSubstr(":2: warning: x and y are separated by")));
    const Outcome sum = runCommand({"sha256sum", file});
    EXPECT_THAT(page.texts, Contains(sum.output.substr(0, 64)));

    run({"describe", "-", "--html", folder.path("page.html")}, {cavendish, ""});
    EXPECT_THAT(pageIn(folder.path("page.html")).texts, Contains("none: it is no file on a disk"));
}

// The pea seeds are 315, 101, 108 and 32; the digits 1000 of each number.
TEST(Page, saysHowMuchWasReadOfWhat)
{
    const TempFolder folder;
    const std::string table = folder.write("t.csv", "s,v,k\na,1,2\nb,2,3\na,,1\nb,4,0\na,5,4\na,7,1\nb,9,2\n");
    const std::string first = folder.write("first.csv", "v\n1\n2\n4\n");
    const std::string second = folder.write("second.csv", "v\n2\n2\n3\n9\n");
    const std::string bins = folder.write("bins.txt", "0;3\n1;4\n2;0\n3;1\n");
    const struct {
        int line;
        Words arguments;
        Words notes;
    } rows[] = {
        {__LINE__, {"fit", peas}, {peas + ": 4 classes read, 556 observations"}},
        {__LINE__, {"ks", digits}, {digits + ": 10 classes read, 1000 and 1000 observations"}},
        {__LINE__, {"circular", "--unit", "bins", "--bins", "4", bins}, {bins + ": 4 classes read, 8 observations"}},
        {__LINE__, {"describe", cavendish}, {cavendish + ": 29 observations read"}},
        {__LINE__, {"describe", "--head", ".1", cavendish}, {cavendish + ": 29 observations read, 3 left out by --head"}},
        {__LINE__,
         {"describe", "--head", ".1", "--tail", ".1", cavendish},
         {cavendish + ": 29 observations read, 5 left out by --head and --tail"}},
        {__LINE__, {"describe", "--column", "v", table}, {table + ": 7 rows read, 6 observations"}},
        {__LINE__, {"fit", "--column", "s", "--ratio", "1:1", table}, {table + ": 7 rows read, 7 observations"}},
        {__LINE__, {"frequency", "--column", "v", "--count", "k", table}, {table + ": 7 rows read, 12 observations"}},
        {__LINE__, {"variances", "--value", "v", "--group", "s", table}, {table + ": 7 rows read, 3 and 3 observations"}},
        {__LINE__,
         {"variances", "--column", "v", first, second},
         {first + ": 3 rows read, 3 observations", second + ": 4 rows read, 4 observations"}},
        {__LINE__,
         {"ks", "--column", "v", first, second},
         {first + ": 3 rows read, 3 observations", second + ": 4 rows read, 4 observations"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::string file = folder.path("page.html");
        const Outcome outcome = run(withPage(with(row.arguments, {"--no-warnings"}), file));
        ASSERT_EQ(outcome.status, done) << outcome;
        const Page page = pageIn(file);
        for (const std::string& note : row.notes) EXPECT_THAT(page.texts, Contains(note));
        const bool isWhole = row.notes[0].find("left out") == std::string::npos && row.notes[0].find("7 rows read, 6") == std::string::npos;
        if (row.arguments[0] != "describe") continue;
        EXPECT_EQ(
            std::count(page.texts.begin(), page.texts.end(), "Nothing was left out, and nothing was read in a way that may surprise."),
            isWhole ? 1 : 0);
    }
}

TEST(Page, staysSmallForLongTitles)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string title(400'000, 't');
    const std::string table = folder.write("t.csv", title + ",g\n1,a\n2,a\n4,b\n8,b\n");
    ASSERT_EQ(run({"anova", "--group", "2", "--value", "1", table, "--html", file, "--no-warnings"}).status, done);
    EXPECT_LT(std::filesystem::file_size(file), 300U * 1024U);
    EXPECT_THAT(pageIn(file).texts, Contains("Does " + title.substr(0, 200) + "... differ among the groups of g?"));
}

TEST(Page, takesEveryTextForAText)
{
    const std::string evil[] = {
        "<script>alert(1)</script>",
        "</pre></main><script src=http://example.org/x.js></script>",
        "\"><img src=x onerror=alert(1)>",
        "&lt;b&gt; &amp; &#60;",
        "' onload='x",
        "<!-- --> ]]> <![CDATA[ <style>*{display:none}</style>",
        "\x1b[31m \x07 \xff \xed\xa0\x80 \xc2\x9b",
        "\u202egnp.exe \u2066 \u05d0\u200f",
        "{/*3 big} @x `touch canary` \\n %s",
    };
    for (const std::string& text : evil) {
        SCOPED_TRACE(plainVisible(text));
        const TempFolder folder;
        std::string comment = text;
        comment.erase(std::remove(comment.begin(), comment.end(), '#'), comment.end());
        for (std::size_t i = 0; (i = comment.find(';', i)) != std::string::npos; ++i) comment.insert(i + 1, " ");  // names no columns
        std::string name = "f" + text;
        std::replace(name.begin(), name.end(), '/', '|');
        const std::string data = folder.write(name, "# c" + comment + "\n1;0\n2;0 " + "\n3;0\n");
        const std::string file = folder.path("page.html");
        const Outcome outcome = run({"circular", "--unit", "bins", "--bins", "4", "--bin-name", text, "--x-label", "x" + text, "--y-label",
                                     "y" + text, data, "--html", file});
        ASSERT_EQ(outcome.status, done) << outcome;
        const Page page = pageIn(file);
        EXPECT_THAT(page.faults, IsEmpty());
        EXPECT_THAT(page.titles, Contains(StartsWith(plainVisible("c" + comment))));
        EXPECT_THAT(page.texts, Contains("Is there a mean direction of " + plainVisible("x" + text) + ", or do they point anywhere?"));
        EXPECT_THAT(page.texts, Contains(HasSubstr(plainVisible(name).substr(0, 60))));
    }
}

TEST(Page, staysSmallForManyObservations)
{
    const TempFolder folder;
    std::string text;
    for (int i = 0; i < 300'000; ++i) {
        const double x = std::fmod(i * 0.6180339887498949, 1.0);
        const double y = std::fmod(i * 0.7548776662466927, 1.0);
        text += std::to_string(x) + ";" + std::to_string(x + y) + "\n";
    }
    const std::string data = folder.write("many.txt", text);
    ASSERT_EQ(run(withPage({"regress", "--model", "linear", "--residuals", data}, folder.path("page.html"))).status, done);
    EXPECT_LT(std::filesystem::file_size(folder.path("page.html")), 300U * 1024U);
}

TEST(Page, isThereInWholeOrNotAtAll)
{
    const TempFolder folder;
    const std::string old = folder.write("old.html", "old");
    {
        const Variable path("PATH", folder.path("none"));
        EXPECT_EQ(run({"describe", cavendish, "--html", old}),
                  cannotAnalyse("--html: there is no program gnuplot (Debian package: gnuplot-nox)"));
        EXPECT_EQ(contentOf(old), "old");
    }
    const Outcome nowhere = run({"describe", cavendish, "--html", folder.path("none/page.html")});
    EXPECT_EQ(nowhere.status, couldNotAnalyse);
    EXPECT_EQ(std::count(nowhere.errors.begin(), nowhere.errors.end(), '\n'), 1) << nowhere.errors;
    const Outcome full = run({"describe", cavendish, "--html", "/dev/full"});
    EXPECT_EQ(full.status, couldNotAnalyse);
    EXPECT_EQ(std::count(full.errors.begin(), full.errors.end(), '\n'), 1) << full.errors;
    const std::string data = folder.write("data.html", "1\n2\n3\n");
    EXPECT_EQ(run({"describe", data, "--html", data}), refused("--html: " + data + " is the data file", "describe"));
    EXPECT_EQ(contentOf(data), "1\n2\n3\n");
    for (const char* const option : {"--export", "--plot"}) {
        const std::string both = folder.path("both.svg");
        const Outcome outcome = run({"describe", cavendish, option, both, "--html", both});
        EXPECT_EQ(outcome.status, wrongUsage) << option;
        EXPECT_FALSE(std::filesystem::exists(both)) << option;
    }
}

}  // namespace
