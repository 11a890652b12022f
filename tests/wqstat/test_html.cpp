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
    {__LINE__, {"multiy", seedlings}, "How does y, observed several times, depend on x, by y = a + b x?", "among groups F(4, "},
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
        EXPECT_EQ(contentOf(file).find("<title>gnuplot_"), std::string::npos) << "a name of gnuplot's, which browsers show";
        EXPECT_LT(std::filesystem::file_size(file), 300U * 1024U);
    }
}

// The markup without the elements that set names apart.
std::string withoutIsolation(std::string markup)
{
    for (const std::string tag : {"<bdi>", "</bdi>"})
        for (std::size_t i = markup.find(tag); i != std::string::npos; i = markup.find(tag, i)) markup.erase(i, tag.size());
    return markup;
}

// A browser drops a newline behind the tag, which is not to be the report's own.
TEST(Page, beginsReportsOnALineOfTheirOwn)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const Outcome report = run(withPage({"multiy", seedlings}, file));
    ASSERT_EQ(report.output.front(), '\n');
    EXPECT_NE(contentOf(file).find("<h2>Report</h2>\n<pre>\n\n" + report.output.substr(1, 40)), std::string::npos);
}

// Figures of the report beside exact ones of the same name are called so.
TEST(Page, tellsTheReportsFiguresApart)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    ASSERT_EQ(run({"variances", instrument1, instrument2, "--html", file}).status, done);
    const Page page = pageIn(file);
    EXPECT_EQ(std::count(page.texts.begin(), page.texts.end(), "F"), 1);
    EXPECT_EQ(std::count(page.texts.begin(), page.texts.end(), "F (report)"), 1);
}

// Whoever runs all tests has to know that the pages were not looked at.
TEST(BrowserTest, isSkippedWithoutABrowserUnlessItIsNeeded)
{
    const TempFolder folder;
    std::filesystem::create_symlink("/usr/bin/dirname", folder.path("dirname"));
    const Words words{"/usr/bin/env", "PATH=" + folder.path(""), "/bin/bash", std::string(WQ_TEST_DIR) + "/pages/run.sh", "wqstat",
                      "data",         folder.path("pages")};
    {
        const Variable notNeeded("WQ_NEEDS_PROGRAMS", "");
        EXPECT_EQ(runCommand(words).status, 77);
    }
    const Variable needed("WQ_NEEDS_PROGRAMS", "yes");
    EXPECT_EQ(runCommand(words).status, 1);
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
        EXPECT_THAT(withoutIsolation(contentOf(file)), HasSubstr("<h1>" + row.heading + "</h1>"));
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
    EXPECT_THAT(pageIn(folder.path("page.html")).texts, Contains(testing::EndsWith(", no test: nothing is expected in 1 class")));
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
        {__LINE__, "5;0\n3;5\n", ", no test: nothing is expected in 1 class"},
        {__LINE__, "0;0\n3;5\n9;7\n", ", no test: nothing is expected in 1 class"},
        {__LINE__, "5;5\n", ", no test: there are no degrees of freedom"},
        {__LINE__, "5;7\nnan;3\n", ", no test: a frequency is negative, not finite or too large"},
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

TEST(Page, showsNoProbabilityAsNought)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    ASSERT_EQ(run({"describe", std::string(WQ_SOURCE_DIR) + "/examples/data/nist_numacc3.txt", "--html", file}).status, done);
    EXPECT_THAT(pageIn(file).figures, Contains(testing::Pair("textbook/p", "0")));
    EXPECT_THAT(contentOf(file), testing::HasSubstr(">&lt; 1e-300</data>"));
}

// Two groups of three, of variance 1 and so far apart that F(1, 4), 3/2 of the squared distance, has an upper tail of about 6 / F^2.
TEST(Page, showsNoLowerTailAsOne)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const auto shownTail = [&](const std::string& distant) {
        const std::string data = folder.write("groups.txt", "1;-1\n1;0\n1;1\n2;" + distant + "\n");
        EXPECT_EQ(run({"anova", data, "--html", file, "--no-warnings"}).status, done);
        const std::string html = contentOf(file);
        const std::size_t path = html.find("class=\"textbook/lowerTail\"");
        const std::size_t begin = html.find('>', path) + 1;
        return html.substr(begin, html.find('<', begin) - begin);
    };
    EXPECT_THAT(shownTail("4095\n2;4096\n2;4097"), testing::StartsWith("0.9999999999999"));
    EXPECT_EQ(shownTail("1073741823\n2;1073741824\n2;1073741825"), "&gt; 0.999999999999999");
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

// Where figures are undefined or infinite the line says why, in words that a paper could take.
TEST(Page, saysInWordsWhatHasNoFigure)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string constant = folder.write("constant.txt", "4.1\n4.1\n4.1\n4.1\n4.1\n4.1\n");
    const std::string zeros = folder.write("zeros.txt", "0\n0\n0\n");
    const std::string spread = folder.write("spread.txt", "1\n2\n4\n");
    const Words linear{"regress", "--model", "linear"};
    const struct {
        int line;
        Words arguments;
        std::string data;  // none where the arguments name files
        std::string summary;
    } rows[] = {
        {__LINE__, {"describe", constant}, "", "M = 4.1, SD = 0, n = 6; no test: the values are all equal"},
        {__LINE__, {"describe", zeros, "--mu", "2"}, "", "M = 0, SD = 0, n = 3; no test: the values are all equal"},
        {__LINE__, {"frequency", constant}, "", "M = 4.1, SD = 0, median 4.1, n = 6"},
        {__LINE__, {"pairs"}, "4;1\n4;2\n4;3\n", "r is undefined: x or y is constant, means 4 and 2, n = 3"},
        {__LINE__, {"pairs"}, "0;0\n0;0\n", "r is undefined: x or y is constant, means 0 and 0, n = 2"},
        {__LINE__, {"pairs"}, "1;4\n2;5\n", "r = 1, no test: there are no degrees of freedom, r\u00b2 = 1, means 1.5 and 4.5, n = 2"},
        {__LINE__, {"correlate"}, "1;4\n2;4\n3;4\n", "r is undefined: x or y is constant, n = 3"},
        {__LINE__, {"correlate"}, "1;4\n2;3\n", "r = -1, no test: there are no degrees of freedom, r\u00b2 = 1, n = 2"},
        {__LINE__, linear, "4;1\n4;2\n4;3\n", "no line: x is constant, n = 3"},
        {__LINE__, linear, "1;4\n2;4\n3;4\n", "a = 4, b = 0 (95 % CI 0 to 0), no test: y is constant, n = 3"},
        {__LINE__, linear, "1;1\n2;3\n", "a = -1, b = 2, no test: there are no degrees of freedom, R\u00b2 = 1, n = 2"},
        {__LINE__, linear, "1;2\n2;4\n3;6\n",
         "a = 0, b = 2 (95 % CI 2 to 2), t(1) is infinite: the pairs lie on the line, p < 1e-300, R\u00b2 = 1, n = 3"},
        {__LINE__, {"regress", "--model", "power"}, "1;1\n", "no line: there is one pair, n = 1"},
        {__LINE__,
         {"regress", "--model", "logarithmic"},
         "1;2\n2;3\n-1;4\n5;4.7\n",
         // Worked outside by the textbook's sums for ln 1, ln 2 and ln 5; t(1) of 0.05 is 12.7062, and p = 1 - 2 atan(t) / pi.
         "a = 1.9386, b = 1.6869 (95 % CI 0.212 to 3.1618), t(1) = 14.533, p = 0.0437, R\u00b2 = 0.99529, n = 3"},
        {__LINE__, {"anova"}, "1;4\n1;4\n2;4\n2;4\n", "no test: the observations are all equal"},
        {__LINE__, {"anova"}, "1;4\n1;5\n", "no test: there is one group"},
        {__LINE__, {"anova"}, "1;4\n2;5\n3;7\n", "no test: no group has more than one observation"},
        {__LINE__,
         {"anova"},
         "1;4\n1;4\n2;5\n2;5\n",
         "F(1, 2) is infinite: within each group the observations are all equal, p < 1e-300, \u03b7\u00b2 = 1, \u03c9\u00b2 = 1"},
        {__LINE__, {"multiy"}, "1;4;1\n1;5;1\n", "among groups no test: there is one group; no line: there is one group"},
        {__LINE__,
         {"multiy"},
         "1;1;2\n2;2;2\n3;3;2\n",
         "among groups F(2, 3) is infinite: within each group the observations are all equal, p < 1e-300; a = 0, b = 1 (95 % CI 1 to 1), "
         "t(1) is infinite: the means of the groups lie on the line, p < 1e-300, R\u00b2 = 1"},
        {__LINE__,
         {"multiy"},
         "1;4;2\n2;4;2\n",
         "among groups no test: the observations are all equal; a = 4, b = 0, no test: fewer than 3 groups leave no deviations from a "
         "line"},
        {__LINE__, {"fit"}, "0;0\n0;0\n", "\u03c7\u00b2(1) is undefined; G(1) = 0, no test: nothing is expected in 2 classes"},
        {__LINE__, {"fit"}, "5;0\n3;5\n", "\u03c7\u00b2(1) is infinite; G(1) is infinite, no test: nothing is expected in 1 class"},
        {__LINE__, {"fit"}, "5;5\n", "\u03c7\u00b2(0) = 0; G(0) = 0, no test: there are no degrees of freedom"},
        {__LINE__, {"ks"}, "0;3\n0;4\n", "no test: a sample is empty, n = 0 and 7"},
        {__LINE__,
         {"variances", zeros, spread},
         "",
         "F(2, 2) is infinite: the values of the first sample are all equal, p < 1e-300, variances 0 and 2.3333"},
        {__LINE__,
         {"variances", spread, zeros},
         "",
         "F(2, 2) is infinite: the values of the second sample are all equal, p < 1e-300, variances 2.3333 and 0"},
        {__LINE__, {"variances", zeros, zeros}, "", "no test: the values of both samples are all equal, variances 0 and 0"},
        {__LINE__,
         {"circular", "--unit", "degrees"},
         "0;0\n90;0\n180;0\n270;0\n",
         "no mean direction: the observations cancel each other out, r = 0, z = 0, p = 1, n = 4"},
        {__LINE__,
         {"circular", "--unit", "bins", "--bins", "1"},
         "1;5\n",
         "no mean direction: there is one class, no test: directions in fewer than 3 classes have no test of R, n = 5"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const Words words = row.data.empty() ? row.arguments : with(row.arguments, {folder.write("data.txt", row.data)});
        ASSERT_EQ(run(withPage(with(words, {"--no-warnings"}), file)).status, done);
        const Page page = pageIn(file);
        EXPECT_THAT(page.texts, Contains(row.summary));
        for (const std::string& text : page.texts) {
            const bool isReport = text.find("====") != std::string::npos;
            EXPECT_TRUE(isReport || !testing::Value(text, testing::ContainsRegex("(^|[ =(])-?nan([ ,;)]|$)"))) << text;
        }
    }
}

// Pairs without a logarithm leave the report no line, and all that is exact on the page is about the others.
TEST(Page, hasTheLineThatTheReportLacks)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    ASSERT_EQ(run({"regress", "--model", "logarithmic", folder.write("data.txt", "1;2\n2;3\n-1;4\n5;4.7\n"), "--html", file}).status, done);
    const Page page = pageIn(file);
    EXPECT_THAT(page.texts, testing::IsSupersetOf({"constant a (report)", "coefficient b (report)", "t of b (report)"}));
    // R: summary(lm(y ~ log(x))) of the pairs with x above 0
    expectFigures(
        page,
        {{"textbook/a", 1.93859276878}, {"textbook/b", 1.68689604804}, {"textbook/seB", 0.116077180223}, {"textbook/tB", 14.5325381336}});
    EXPECT_THAT(page.texts, Contains("y = 1.9386 + 1.6869 ln x")) << "on the picture";
    EXPECT_THAT(page.texts, Contains("exact 95 % confidence limits of the curve"));
    EXPECT_THAT(page.texts, Contains("Warning: 1 pair has no logarithm (0 or less) and is left out; the report's b is no number for it"));
    ASSERT_EQ(run({"regress", "--model", "power", norris, "--html", file}).status, done);
    EXPECT_THAT(pageIn(file).texts, testing::IsSupersetOf({"coefficient b", "explained sum of squares of ln y",
                                                           "lower limit ln Y at mean ln X", "R squared of ln Y"}));
    EXPECT_EQ(figuresOf(pageIn(file)).count("textbook/b"), 0U) << "which the report has";
    ASSERT_EQ(run({"regress", "--model", "linear", norris, "--html", file}).status, done);
    EXPECT_THAT(pageIn(file).texts, testing::IsSupersetOf({"coefficient b", "explained sum of squares", "lower limit Y at mean X"}));
}

// By hand: t of 0.05 with 1000 degrees of freedom is 1.96234, and 0.1 * 1.96234 / sqrt(1001) is 0.006202.
TEST(Page, showsTheDigitsInWhichFiguresDiffer)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    ASSERT_EQ(run({"describe", std::string(WQ_SOURCE_DIR) + "/examples/data/nist_numacc3.txt", "--html", file}).status, done);
    EXPECT_THAT(pageIn(file).texts, Contains(StartsWith("M = 1000000.2 (95 % CI 1000000.194 to 1000000.206), SD = 0.1, n = 1001; ")));
    std::string values;
    for (int i = 0; i < 9; ++i) values += std::to_string(10'000'000'000LL + i) + ".25\n";
    ASSERT_EQ(run({"frequency", "--classes", "4", "--no-warnings", folder.write("v.txt", values), "--html", file}).status, done);
    EXPECT_THAT(pageIn(file).texts, Contains("M = 10000000004.2, SD = 2.7386, median 10000000004.2, n = 9"));
    ASSERT_EQ(run({"anova", "--no-warnings", folder.write("a.txt", "1;10000000000.5\n1;10000000001\n2;10000000001\n2;10000000002\n"),
                   "--html", file})
                  .status,
              done);
    pageIn(file);  // which compares the limits of the means
    EXPECT_NE(contentOf(file).find("<table class=\"rows wide\">"), std::string::npos) << "for narrow screens";
    ASSERT_EQ(run({"anova", resistivity, "--html", file}).status, done);
    EXPECT_NE(contentOf(file).find("<table class=\"rows\">"), std::string::npos);
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
}

// What can be read only once has the fingerprint of all its bytes, and the command line says where they are to be given again.
TEST(Page, ofStandardInputIsMadeAgainFromTheSameBytes)
{
    const TempFolder folder;
    const std::string path = std::filesystem::path(WQSTAT).parent_path().string();
    const Variable variable("PATH", path + ":" + std::getenv("PATH"));
    std::string behindTheEnd = "1\n2\n4\n<<\n";
    for (int i = 0; i < 50'000; ++i) behindTheEnd += std::to_string(i) + "\n";
    const std::string table = "v,g\n1,a\n2,b\n4,a\n8,b\n9,a\n3,b\n";
    const std::string packed = folder.write("packed", table);
    ASSERT_EQ(runCommand({"gzip", packed}).status, 0);
    const struct {
        int line;
        const char* words;
        std::string bytes;
    } rows[] = {
        {__LINE__, "describe - --mu 5.5", contentOf(cavendish)},
        {__LINE__, "describe", "1\n2\n4\n8"},
        {__LINE__, "describe --lenient --no-warnings", behindTheEnd},
        {__LINE__, "regress --model linear", contentOf(norris)},
        {__LINE__, "describe --column v", table},
        {__LINE__, "describe --column v -", contentOf(packed + ".gz")},
        {__LINE__, "describe --column v --by g", table},
        {__LINE__, "columns", table},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::string data = folder.write("FILE", row.bytes);
        const std::string file = folder.path("page.html");
        const auto shell = [&](const std::string& line) { return runCommand({"bash", "-c", "cd '" + folder.path("") + "'; " + line}); };
        ASSERT_EQ(shell("cat FILE | wqstat " + std::string(row.words) + " --html page.html").status, done);
        const std::string first = contentOf(file);
        const Page page = pageIn(file);
        EXPECT_THAT(page.faults, IsEmpty());
        EXPECT_THAT(page.texts, Contains(runCommand({"sha256sum", data}).output.substr(0, 64)));
        EXPECT_THAT(page.texts, Contains("SHA-256 of standard input"));
        EXPECT_THAT(page.texts, Contains("The data came from standard input: FILE is any file with the same bytes."));
        ASSERT_THAT(page.commands, ElementsAre(testing::EndsWith(" --html page.html < FILE")));
        std::filesystem::remove(file);
        EXPECT_EQ(shell(page.commands[0]).status, done) << page.commands[0];
        EXPECT_EQ(contentOf(file), first);
    }
    run({"describe", cavendish, "--html", folder.path("page.html")});
    EXPECT_THAT(pageIn(folder.path("page.html")).commands, ElementsAre(Not(HasSubstr("< FILE")))) << "of a file on a disk";
}

TEST(Page, ofAPipeSaysThatItHasToBeGivenAgain)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    ASSERT_EQ(
        runCommand({"bash", "-c", WQSTAT + std::string(" describe --html ") + file + " /dev/fd/7 7< <(cat " + cavendish + ")"}).status,
        done);
    const Page page = pageIn(file);
    EXPECT_THAT(page.texts, Contains(runCommand({"sha256sum", cavendish}).output.substr(0, 64)));
    EXPECT_THAT(page.texts,
                Contains("It was no file on a disk: the command line makes this page again where the same bytes are given there again."));
    run({"describe", cavendish, "--html", file});
    EXPECT_THAT(pageIn(file).texts, Not(Contains(HasSubstr("It was no file on a disk"))));
    run({"describe", cavendish, folder.path("missing"), "--html", file});
    EXPECT_THAT(pageIn(file).texts, Contains("none: it could not be read to its end"));
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

// Whoever asks what was left out, and why, looks where the page says what was read.
TEST(Page, tellsInItsDataWhatTheAnalysisLeftOut)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string pairs = folder.write("p.txt", "1;2\n2;3\n0;4\n5;4.7\n7;-1\n");
    const struct {
        Words arguments;
        std::string note;
    } rows[] = {
        {{"regress", "--model", "power", pairs}, pairs + ": warning: 2 pairs have no logarithm (0 or less) and are left out"},
        {{"frequency", cavendish}, cavendish + ": warning: 1 value is in no class: the table counts 28 of 29 and leaves the largest out"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(joined(row.arguments));
        ASSERT_EQ(run(withPage(row.arguments, file)).status, done);
        EXPECT_THAT(pageIn(file).texts, Contains(StartsWith(row.note)));
        const std::string html = contentOf(file);
        const std::string section = html.substr(html.find("<section class=\"data\">"));
        EXPECT_THAT(section.substr(0, section.find("</section>")), HasSubstr(row.note.substr(row.note.find(": warning"))));
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

// Two samples, or observed and expected frequencies, by the columns and labels that hold them.
TEST(Page, asksByTheNamesOfColumns)
{
    const TempFolder folder;
    const std::string table =
        folder.write("t.csv", "kind,seen,hoped,sex,size\na,9,8,f,1\nb,7,6,m,2\nc,4,6,f,4\nd,5,5,m,5\ne,4,5,f,7\nf,3,2,m,9\n");
    const std::string other = folder.write("u.csv", "size\n2\n3\n5\n9\n");
    const struct {
        int line;
        Words arguments;
        const char* question;
    } rows[] = {
        {__LINE__, {"fit", "--observed", "seen", "--expected", "hoped", table}, "Do the frequencies in seen fit those in hoped?"},
        {__LINE__, {"fit", "--column", "sex", "--ratio", "1:1.5", table}, "Do the frequencies of sex fit the ratio 1:1.5?"},
        {__LINE__, {"ks", "--count1", "seen", "--count2", "hoped", table}, "Do seen and hoped come from the same distribution?"},
        {__LINE__,
         {"ks", "--count1", "seen", "--count2", "hoped", "--class", "kind", table},
         "Do seen and hoped come from the same distribution over the classes of kind?"},
        {__LINE__, {"ks", "--column", "seen", "--column2", "size", table}, "Do seen and size come from the same distribution?"},
        {__LINE__, {"ks", "--value", "size", "--group", "sex", table}, "Does size come from the same distribution in f and m of sex?"},
        {__LINE__, {"ks", "--column", "size", table, other}, "Do the two samples of size come from the same distribution?"},
        {__LINE__, {"variances", "--column", "seen", "--column2", "size", table}, "Do the variances of seen and size differ?"},
        {__LINE__, {"variances", "--value", "size", "--group", "sex", table}, "Does the variance of size differ between f and m of sex?"},
        {__LINE__, {"variances", "--column", "size", table, other}, "Do the variances of size differ?"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::string file = folder.path("page.html");
        const Outcome outcome = run(withPage(with(row.arguments, {"--no-warnings"}), file));
        ASSERT_EQ(outcome.status, done) << outcome;
        EXPECT_THAT(pageIn(file).texts, Contains(row.question));
    }
}

// In a sentence a name from data that is written from right to left must not take the words around it along.
TEST(Page, setsNamesApartInItsSentences)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string height = "\u05d2\u05d5\u05d1\u05d4";
    const std::string group = "\u05e7\u05d1\u05d5\u05e6\u05d4 2";
    const std::string one = "\u05d0&\u05d1";
    const std::string shownOne = "\u05d0&amp;\u05d1";
    const std::string name = "\u05e0\u05ea\u05d5\u05e0\u05d9\u05dd.csv";
    const std::string table = folder.write(name, group + "," + height + "\n" + one + ",1\n" + one + ",2\nb,4\nb,7\nb,\n");
    const auto apart = [](const std::string& text) { return "<bdi>" + text + "</bdi>"; };
    ASSERT_EQ(run({"anova", "--group", group, "--value", height, table, "--html", file}).status, done);
    std::string html = contentOf(file);
    for (const std::string& sentence :
         {"<h1>" + apart(height) + " by " + apart(group) + "</h1>",
          "Does " + apart(height) + " differ among the groups of " + apart(group) + "?</p>", "<li>" + apart(table) + ": 5 rows read",
          "<li>" + apart(table) + ": warning: 1 of 5 rows left out, missing values: " + apart(height) + " 1</li>",
          "<dt>SHA-256 of " + apart(table) + "</dt>", "<th scope=\"row\">group 1: " + apart(shownOne) + "</th>"})
        EXPECT_THAT(html, HasSubstr(sentence));
    ASSERT_EQ(run({"variances", "--value", height, "--group", group, table, "--html", file}).status, couldNotAnalyse);
    const std::string samples = folder.write("samples.csv", height + "," + one + "\n1,2\n2,4\n4,7\n");
    ASSERT_EQ(run({"variances", "--column", "1", "--column2", "2", samples, "--html", file}).status, done);
    html = contentOf(file);
    EXPECT_THAT(html, HasSubstr("Do the variances of " + apart(height) + " and " + apart(shownOne) + " differ?"));
    EXPECT_THAT(html, HasSubstr("<p>sample 1: " + apart(height) + "</p>"));
    ASSERT_EQ(run({"describe", "--column", height, "--by", group, table, "--html", file}).status, couldNotAnalyse);
    html = contentOf(file);
    const std::string part = table + ", " + group + " = " + shownOne;
    EXPECT_THAT(html, HasSubstr("failed: " + apart(part) + ": 2 observations, at least 3 are needed"));
    EXPECT_THAT(html, HasSubstr("<th scope=\"row\">" + apart(part) + "</th>"));
    ASSERT_EQ(run({"columns", table, "--html", file}).status, done);
    EXPECT_THAT(contentOf(file), HasSubstr("<h2>" + apart(height) + ": number</h2>"));
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
    const std::string report = run({"describe", cavendish}).output;
    const auto behindTheReport = [&report](const std::string& text) { return Outcome{couldNotAnalyse, report, "wqstat: " + text + "\n"}; };
    const std::string nowhere = folder.path("none/page.html");
    EXPECT_EQ(run({"describe", cavendish, "--html", nowhere}),
              behindTheReport(nowhere + ": the page cannot be written: No such file or directory"));
    EXPECT_EQ(run({"describe", cavendish, "--html", "/dev/full"}), behindTheReport("/dev/full: is no file"));
    const std::string page = folder.path("page.html");
    for (const Words& files : {Words{cavendish}, Words{cavendish, cavendish}}) {
        const Words limited = with({"bash", "-c", "ulimit -f 8; exec \"$@\" > /dev/null", "bash", WQSTAT, "describe"}, files);
        EXPECT_EQ(runCommand(with(limited, {"--html", page})),
                  (Outcome{couldNotAnalyse, "",
                           "wqstat: " + page + ": the page cannot be written: the temporary file for gnuplot: File too large\n"}));
    }
    EXPECT_FALSE(std::filesystem::exists(page));
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
