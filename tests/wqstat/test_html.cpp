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
    {__LINE__, {"multiy", seedlings}, "How does y, observed several times, depend on x?", "among groups F = "},
    {__LINE__,
     {"fit", peas},
     "Do the observed frequencies fit the expected ones?",
     "\u03c7\u00b2(3) = 0.47002, p = 0.925; G(3) = 0.47545, p = 0.924, w = 0.0291"},
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
        EXPECT_THAT(page.titles[0], testing::EndsWith(" \u2013 wqstat " + analysis.arguments[0]));
        EXPECT_THAT(page.texts, Contains(analysis.question));
        EXPECT_THAT(page.texts, Contains(StartsWith(analysis.summary)));
        EXPECT_THAT(page.texts, Contains(report.output)) << "the report, verbatim";
        EXPECT_LT(std::filesystem::file_size(file), 300U * 1024U);
    }
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
        const std::string path = std::filesystem::path(WQSTAT).parent_path().string();
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
