// wqstat --html with several files, or the parts of a table: one page for all.
#include "commands.h"
#include "data_files.h"
#include "documents.h"
#include "page_reader.h"
#include "support/plain_gnuplot.h"
#include "variable.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace wq_test;
using namespace wq_test::data_files;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::Not;

constexpr std::size_t mostBytes = 300U * 1024U;

std::size_t countOf(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t i = text.find(part); i != std::string::npos; i = text.find(part, i + part.size())) ++count;
    return count;
}

std::string onlyCommandOf(const Page& page)
{
    EXPECT_EQ(page.commands.size(), 1U);
    return page.commands.empty() ? "" : page.commands[0];
}

// A table of so many sites with some values each.
std::string sites(int count)
{
    std::string text = "site,g,w\n";
    for (int site = 0; site < count; ++site)
        for (int i = 0; i < 6; ++i)
            text += "s" + std::to_string(site) + "," + (i % 2 == 0 ? "x" : "y") + "," +
                    std::to_string(site % 7 * (i % 2) + (i * i * 7 + i + site) % 5) + "\n";
    return text;
}

const Words ofAll[] = {
    {"describe", cavendish, instrument1, instrument2},
    {"frequency", "--classes", "4", cavendish, instrument1},
    {"pairs", norris, resistivity},
    {"correlate", norris, supplements},
    {"regress", "--model", "linear", "--residuals", norris, resistivity},
    {"anova", resistivity, supplements, "--x-label", "group", "--y-label", "observation"},
    {"multiy", seedlings, seedlings},
    {"fit", peas, peas},
    {"ks", digits, digits},
    {"circular", "--unit", "degrees", pigeons, pigeons},
};

TEST(PageOfSeveral, hasTheFiguresOfTheJsonArrayAndCostsTheReportsNothing)
{
    for (const Words& words : ofAll) {
        SCOPED_TRACE(joined(words));
        const TempFolder folder;
        const std::string file = folder.path("page.html");
        Words plain;
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (words[i] == "--x-label" || words[i] == "--y-label")
                ++i;
            else if (words[i] != "--residuals")
                plain.push_back(words[i]);
        }
        EXPECT_EQ(run(withPage(words, file)), run(plain));
        const Page page = pageIn(file);
        EXPECT_THAT(page.faults, IsEmpty());
        EXPECT_LT(std::filesystem::file_size(file), mostBytes);
        const Json documents = documentOf(plain);
        EXPECT_GT(page.figures.size(), 3U * documents.size());
        for (const auto& [path, value] : page.figures) {
            if (path.find("pHolm") != std::string::npos) continue;
            const Json::json_pointer place("/" + path);
            ASSERT_TRUE(documents.contains(place)) << path;
            const double expected = numberOf(documents.at(place));
            const double found = value == "NaN" ? std::nan("") : std::stod(value);
            EXPECT_TRUE(found == expected || (std::isnan(found) && std::isnan(expected))) << path << ": " << value << ", " << expected;
        }
        const std::string html = contentOf(file);
        EXPECT_EQ(countOf(html, "<svg"), 2U * documents.size()) << "a small and a large picture of each";
        EXPECT_EQ(countOf(html, "<section class=\"analysis\""), documents.size());
        const Outcome report = run(with(plain, {"--no-warnings"}));
        const auto isReport = [&report](const std::string& text) {
            return text.find("====") != std::string::npos && report.output.find(text) != std::string::npos;
        };
        EXPECT_EQ(static_cast<std::size_t>(std::count_if(page.texts.begin(), page.texts.end(), isReport)), documents.size()) << "verbatim";
    }
}

TEST(PageOfSeveral, isTitledByWhatItHolds)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string table = folder.write("sites.csv", sites(3));
    ASSERT_EQ(run({"anova", "--group", "g", "--value", "w", "--by", "site", table, "--no-warnings", "--html", file}).status, done);
    EXPECT_THAT(pageIn(file).titles, ElementsAre("3 analyses, by site \u2013 one-way Anova \u2013 sites.csv"));
    EXPECT_THAT(pageIn(file).texts, Contains("w by g")) << "of a section";
    ASSERT_EQ(run({"describe", cavendish, instrument1, "--html", file}).status, done);
    EXPECT_THAT(pageIn(file).titles, ElementsAre("2 analyses \u2013 descriptive statistics \u2013 2 files"));
}

TEST(PageOfSeveral, setsPByHolmBesideThePlainOne)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string table = folder.write("sites.csv", sites(9));
    const Words words{"anova", "--group", "g", "--value", "w", "--by", "site", table, "--no-warnings"};
    run(withPage(words, file));
    const Page page = pageIn(file);
    const std::map<std::string, std::string> figures(page.figures.begin(), page.figures.end());
    std::istringstream rows(run(with(words, {"--tsv"})).output);
    std::vector<std::vector<std::string>> cells;
    for (std::string line; std::getline(rows, line);) {
        cells.emplace_back();
        std::istringstream columns(line);
        for (std::string cell; std::getline(columns, cell, '\t');) cells.back().push_back(cell);
    }
    ASSERT_EQ(cells.size(), 10U);
    const auto column = [&](const char* name) {
        return static_cast<std::size_t>(std::find(cells[0].begin(), cells[0].end(), name) - cells[0].begin());
    };
    bool differs = false;
    for (std::size_t i = 1; i < cells.size(); ++i) {
        const std::string document = std::to_string(i - 1);
        EXPECT_EQ(figures.at(document + "/pHolm"), cells[i].at(column("pHolm")));
        EXPECT_EQ(figures.at(document + "/textbook/p"), cells[i].at(column("p")));
        differs = differs || cells[i].at(column("pHolm")) != cells[i].at(column("p"));
    }
    EXPECT_TRUE(differs);
    EXPECT_THAT(page.texts, Contains("p, Holm"));
}

// Of more analyses than have sections, each says in its row that the report rejects what the exact probability of 0.06 accepts.
TEST(PageOfSeveral, saysWhatTheAdjustedPIsForWhereThereIsOne)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const auto isAboutHolm = HasSubstr("adjusted for the number of tests");
    ASSERT_EQ(run({"describe", cavendish, instrument1, "--alpha", "0.01", "--html", file}).status, done);
    EXPECT_THAT(
        pageIn(file).texts,
        Contains("Exact p, and the same adjusted for the number of tests by Holm's method (1979): reject where the adjusted p is below "
                 "0.01; then the probability that this page rejects any true hypothesis is at most 1 %."));
    ASSERT_EQ(run({"frequency", cavendish, instrument1, "--no-warnings", "--html", file}).status, done);
    EXPECT_THAT(pageIn(file).texts, Not(Contains(isAboutHolm)));
}

TEST(PageOfSeveral, marksEachResultThatTheReportDecidesDifferently)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::size_t times = 40;
    Words words{"anova", resistivity};
    words.insert(words.end(), times, supplements);
    ASSERT_EQ(run(withPage(with(words, {"--no-warnings"}), file)).status, done);
    const std::string html = contentOf(file);
    const std::string all = html.substr(html.find("<section class=\"all\""), html.find("</table>"));
    EXPECT_EQ(countOf(all.substr(0, all.find("</table>")), "<p class=\"differs\">The decision on H0 differs: the report rejects it.</p>"),
              times);
    EXPECT_LT(countOf(html, "<section class=\"analysis\""), times) << "some have no section";
}

TEST(PageOfSeveral, tellsWhatFailedAndWhy)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string bad = folder.write("bad.txt", "1\nx\n4\n");
    const std::string missing = folder.path("missing");
    const Outcome outcome = run({"describe", "--no-warnings", bad, cavendish, missing, instrument1, "--html", file});
    EXPECT_EQ(outcome.status, couldNotAnalyse);
    EXPECT_EQ(outcome.errors, "wqstat: " + bad + ":2: a number is expected, not 'x'\nwqstat: " + missing + ": No such file or directory\n");
    const Page page = pageIn(file);
    EXPECT_THAT(page.texts, Contains("failed: " + bad + ":2: a number is expected, not 'x'"));
    EXPECT_THAT(page.texts, Contains("failed: " + missing + ": No such file or directory"));
    EXPECT_THAT(page.texts, Contains("2 analyses, 2 failed; exact p below 0.05: 2 of 2; adjusted by Holm's method: 2"));
    EXPECT_THAT(page.figures, Contains(Key("1/textbook/p"))) << "the second document of --json";
    EXPECT_THAT(page.figures, Not(Contains(Key("2/textbook/p"))));
    EXPECT_EQ(run({"describe", bad, missing, "--html", file}).status, couldNotAnalyse);
    EXPECT_THAT(pageIn(file).texts, Contains("failed: " + missing + ": No such file or directory"));
    EXPECT_THAT(pageIn(file).faults, IsEmpty());
}

TEST(PageOfSeveral, ofThePartsOfATableTellsWhatWasLeftOutOfAll)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string table = folder.write("t.csv", "s,w\na,1\na,2\n,3\nb,4\na,NA\na,3\nb,5\nb,9\n");
    EXPECT_EQ(run({"describe", "--column", "w", "--by", "s", table, "--html", file}).status, done);
    const Page page = pageIn(file);
    EXPECT_THAT(page.texts, Contains(table + ": warning: 1 of 8 rows left out, missing values: s 1"));
    EXPECT_THAT(page.texts, Contains(table + ", s = a: warning: 1 of 4 rows left out, missing values: w 1"));
    EXPECT_THAT(page.texts, Contains("What is the mean of w, and does it differ from 0?"));
    EXPECT_THAT(page.texts, Contains(runCommand({"sha256sum", table}).output.substr(0, 64)));
}

TEST(PageOfSeveral, isMadeAgainByItsCommandLine)
{
    const TempFolder folder;
    const std::string table = folder.write("it's a \"table\" \xff.csv", sites(5));
    const Words rows[] = {{"describe", cavendish, folder.path("missing"), instrument1},
                          {"anova", "--group", "g", "--value", "w", "--by", "site", table, "--title", "it's $HOME `ls` \\n \x1b"}};
    for (const Words& words : rows) {
        SCOPED_TRACE(joined(words));
        const std::string file = folder.path("a page.html");
        const Outcome first = run(withPage(words, file));
        const std::string html = contentOf(file);
        const std::string command = onlyCommandOf(pageIn(file));
        std::filesystem::remove(file);
        const Variable path("PATH", std::filesystem::path(wqstat()).parent_path().string() + ":" + std::getenv("PATH"));
        EXPECT_EQ(runCommand({"bash", "-c", command}), first);
        EXPECT_EQ(contentOf(file), html);
    }
}

TEST(PageOfSeveral, staysSmallAndHasARowForEach)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string table = folder.write("sites.csv", sites(120));
    ASSERT_EQ(run({"anova", "--group", "g", "--value", "w", "--by", "site", table, "--no-warnings", "--html", file}).status, done);
    EXPECT_LT(std::filesystem::file_size(file), mostBytes);
    const Page page = pageIn(file);
    for (int i = 0; i < 120; ++i) EXPECT_THAT(page.figures, Contains(Key(std::to_string(i) + "/pHolm")));
    EXPECT_THAT(page.texts, Contains("These are the first 12 of 120."));
    EXPECT_THAT(page.texts,
                Contains(testing::ContainsRegex(
                    "^The first [0-9]+ of 120 have sections of their own here; more would make the page larger than 300 KiB.$")));
    EXPECT_THAT(page.faults, IsEmpty());

    const std::string more = folder.write("more.csv", sites(700));
    ASSERT_EQ(run({"frequency", "--column", "w", "--by", "site", more, "--no-warnings", "--html", file}).status, done);
    EXPECT_LT(std::filesystem::file_size(file), mostBytes);
    EXPECT_THAT(pageIn(file).texts, Contains("700 analyses"));
    const std::string most = folder.write("most.csv", sites(4000));
    ASSERT_EQ(run({"frequency", "--column", "w", "--by", "site", most, "--no-warnings", "--html", file}).status, done);
    EXPECT_LT(std::filesystem::file_size(file), mostBytes);
    EXPECT_THAT(pageIn(file).texts,
                Contains(testing::ContainsRegex("^These are the first [0-9 ]+ of 4000 analyses; more would make the page "
                                                "larger than 300 KiB. wqstat frequency --tsv prints a row for each.$")));

    std::string pairs;
    for (int i = 0; i < 30'000; ++i)
        pairs +=
            std::to_string(std::fmod(i * 0.6180339887498949, 1.0)) + ";" + std::to_string(std::fmod(i * 0.7548776662466927, 1.0)) + "\n";
    const std::string many = folder.write("many.txt", pairs);
    ASSERT_EQ(run({"regress", "--model", "linear", "--residuals", many, many, many, many, "--html", file}).status, done);
    EXPECT_LT(std::filesystem::file_size(file), mostBytes);
    EXPECT_THAT(pageIn(file).texts, Contains("It has no room on this page."));
}

// What is said of each file takes no more room than it has: a note, a fingerprint, its place in the command line.
TEST(PageOfSeveral, staysSmallForManyFiles)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string gap = folder.write("gap.csv", "s,v\na,1\na,2\na,4\n,3\n");
    Words words{"describe", "--column", "v", "--by", "s"};
    words.insert(words.end(), 1500, gap);
    ASSERT_EQ(run(withPage(with(words, {"--no-warnings"}), file)).status, done);
    EXPECT_LT(std::filesystem::file_size(file), mostBytes);
    Page page = pageIn(file);
    EXPECT_EQ(std::count(page.texts.begin(), page.texts.end(), gap + ": warning: 1 of 4 rows left out, missing values: s 1"), 50);
    EXPECT_THAT(page.texts, Contains("1450 more, which standard error has"));
    ASSERT_EQ(page.commands.size(), 1U) << "there was room for it";

    words = {"describe"};
    for (int i = 0; i < 260; ++i) words.push_back(folder.write(std::string(221, '&') + std::to_string(100 + i), "1\n2\n4\n"));
    ASSERT_EQ(run(withPage(words, file)).status, done);
    EXPECT_LT(std::filesystem::file_size(file), mostBytes);
    page = pageIn(file);
    EXPECT_THAT(page.faults, IsEmpty());
    const auto hasFingerprint = [](const std::string& text) { return text.compare(0, 11, "SHA-256 of ") == 0; };
    const auto fingerprints = static_cast<std::size_t>(std::count_if(page.texts.begin(), page.texts.end(), hasFingerprint));
    EXPECT_GT(fingerprints, 20U);
    EXPECT_THAT(page.texts, Contains("of " + std::to_string(260 - fingerprints) + " more files it is left out here"));
    EXPECT_THAT(page.commands, IsEmpty());
    EXPECT_THAT(page.texts,
                Contains(testing::ContainsRegex("^It is left out here: its [0-9 ]+ bytes would make the page larger than 300 KiB.$")));
    EXPECT_THAT(page.texts,
                Contains(testing::ContainsRegex("^These are the first [0-9]+ of 260 analyses; more would make the page larger")));
}

TEST(PageOfSeveral, hasTheSmallPicturesAheadOfTheTable)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    ASSERT_EQ(run({"describe", cavendish, instrument1, "--html", file}).status, done);
    const std::string html = contentOf(file);
    const std::size_t pictures = html.find("id=\"multiples\"");
    const std::size_t table = html.find("id=\"all\"");
    ASSERT_NE(table, std::string::npos);
    EXPECT_LT(pictures, table);
    EXPECT_LT(html.find("href=\"#multiples\""), html.find("href=\"#all\""));
    EXPECT_LT(table, html.find("id=\"analysis-1\""));
}

// However small a picture is, its text alternative has its figures whole, as the large one's has.
TEST(PageOfSeveral, describesSmallPicturesWithoutCuts)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    ASSERT_EQ(run({"describe", cavendish, instrument1, "--html", file}).status, done);
    EXPECT_EQ(countOf(contentOf(file), "Shown: observations; exact 95 % confidence interval 5.3639 to 5.532; mean 5.4479.</desc>"), 2U);
}

// The ends of the axes of each small picture, which stand on it as texts.
TEST(PageOfSeveral, drawsAllOnTheSameAxes)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string low = folder.write("low.txt", "1;1\n2;3\n3;2\n");
    const std::string high = folder.write("high.txt", "71;801\n72;803\n73;802\n");
    ASSERT_EQ(run({"correlate", low, high, "--html", file}).status, done);
    const std::string html = contentOf(file);
    std::vector<std::vector<std::string>> numbers;
    for (std::size_t begin = html.find("<ul class=\"multiples\">"); numbers.size() < 2;) {
        begin = html.find("<svg", begin);
        const std::size_t end = html.find("</svg>", begin);
        numbers.emplace_back();
        for (std::size_t i = html.find("<text>", begin); i < end; i = html.find("<text>", i + 1)) {
            const std::size_t open = i + std::string("<text>").size();
            const std::string text = html.substr(open, html.find('<', open) - open);
            if (!text.empty() && text.find_first_not_of("0123456789. ") == std::string::npos) numbers.back().push_back(text);
        }
        begin = end;
    }
    EXPECT_EQ(numbers[0], numbers[1]);
    EXPECT_GT(numbers[0].size(), 5U);
    EXPECT_THAT(html, Not(HasSubstr("Axes differ from picture to picture")));
    ASSERT_EQ(run({"correlate", "--log", "none", low, folder.write("far.txt", "1e300;1\n2e300;2\n3e300;1\n"), "--html", file}).status,
              done);
    EXPECT_THAT(contentOf(file), HasSubstr("Axes differ from picture to picture"));
}

// Where the upright lines of each small picture begin and end: of few observations and of many spread ones they reach equally far.
TEST(PageOfSeveral, drawsMeansOverTheWholeHeight)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string narrow = folder.write("narrow.txt", "1\n1.1\n1.2\n1.15\n1.05\n");
    const std::string wide = folder.write("wide.txt", "1\n3\n9\n5\n12\n");
    ASSERT_EQ(run({"describe", narrow, wide, "--html", file}).status, done);
    const std::string html = contentOf(file);
    std::vector<double> heights;
    for (std::size_t place = html.find("<ul class=\"multiples\">"); heights.size() < 2;) {
        const std::size_t end = html.find("</svg>", place);
        double tallest = 0.0;
        for (std::size_t i = html.find(" d='M", place); i < end; i = html.find(" d='M", i + 1)) {
            double x1 = 0.0;
            double y1 = 0.0;
            double x2 = 1.0;
            double y2 = 0.0;
            int length = 0;  // of a path that is nothing but a line; the axes are more
            std::sscanf(html.c_str() + i, " d='M%lf,%lf L%lf,%lf '%n", &x1, &y1, &x2, &y2, &length);
            if (length > 0 && x1 == x2) tallest = std::max(tallest, std::fabs(y2 - y1));
        }
        heights.push_back(tallest);
        place = end + 1;
    }
    EXPECT_GT(heights[0], 100.0);
    EXPECT_NEAR(heights[0], heights[1], 0.11);
}

TEST(PageOfSeveral, takesEveryTextForAText)
{
    const std::string evil[] = {"<script>alert(1)</script>",
                                "</pre></main><img src=x onerror=alert(1)>",
                                "\"' onload='x",
                                "&lt;b&gt; &amp;",
                                "\x1b[31m \x07 \xff \xed\xa0\x80",
                                "\u202egnp.exe \u2066 \u05d0\u200f",
                                "{/*3 big} @x `touch canary` \\n %s"};
    for (const std::string& text : evil) {
        SCOPED_TRACE(plainVisible(text));
        const TempFolder folder;
        std::string quoted;
        for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
        std::string name = "f" + text;
        std::replace(name.begin(), name.end(), '/', '|');
        std::string rows = "\"s" + quoted + "\",\"w" + quoted + "\"\n";
        for (const char* const value : {"1", "2", "4"}) rows += "\"v" + quoted + "\"," + value + "\n";
        const std::string data = folder.write(name, rows + "other,5\n");
        const std::string file = folder.path("page.html");
        const Outcome outcome =
            run({"describe", "--column", "2", "--by", "1", data, folder.path("no" + name), "--html", file, "--title", "t" + text});
        ASSERT_EQ(outcome.status, couldNotAnalyse) << outcome;
        const Page page = pageIn(file);
        EXPECT_THAT(page.faults, IsEmpty());
        EXPECT_THAT(page.titles, ElementsAre(plainVisible("t" + text) + " \u2013 descriptive statistics \u2013 2 files"));
        const auto times = [&page](const std::string& end) {
            return std::count_if(page.texts.begin(), page.texts.end(), [&end](const std::string& found) {
                return found.size() >= end.size() && found.compare(found.size() - end.size(), end.size(), end) == 0;
            });
        };
        EXPECT_GE(times(", " + plainVisible("s" + text) + " = " + plainVisible("v" + text)), 3) << "in contents, table and section";
        EXPECT_EQ(std::filesystem::exists("canary"), false);
    }
}

// ---------------------------------------------------------------- where it cannot be written

TEST(PageOfSeveral, isThereInWholeOrNotAtAll)
{
    const TempFolder folder;
    const std::string old = folder.write("old.html", "old");
    {
        const Variable path("PATH", folder.path("none"));
        EXPECT_EQ(run({"describe", cavendish, cavendish, "--html", old}),
                  cannotAnalyse("--html: there is no program gnuplot (Debian package: gnuplot-nox)"));
    }
    EXPECT_EQ(run({"describe", cavendish, old, "--html", old}), refused("--html: " + old + " is the data file", "describe"));
    const Outcome report = run({"describe", cavendish, cavendish});
    const Outcome full = run({"describe", cavendish, cavendish, "--html", "/dev/full"});
    EXPECT_EQ(full, (Outcome{couldNotAnalyse, report.output, "wqstat: /dev/full: is no file\n"}));
    // Room for the pictures, but not for the page.
    const Outcome fullDisk = runCommand({"bash", "-c", "trap '' XFSZ; ulimit -f 40; exec \"$@\" > /dev/null", "bash", wqstat(), "describe",
                                         cavendish, cavendish, "--html", old});
    EXPECT_EQ(fullDisk, (Outcome{couldNotAnalyse, "", "wqstat: " + old + ": the page cannot be written: File too large\n"}));
    EXPECT_EQ(contentOf(old), "old");
    const Outcome noRoom = runCommand(
        {"bash", "-c", "trap '' XFSZ; ulimit -f 1; exec \"$@\" > /dev/null", "bash", wqstat(), "describe", cavendish, "--html", old});
    EXPECT_THAT(noRoom.errors, Not(HasSubstr("the picture")));
    for (const Words& files : {Words{cavendish}, Words{cavendish, cavendish}}) {
        const Words limited =
            with({"bash", "-c", "trap '' XFSZ; ulimit -f 8; exec \"$@\" > /dev/null", "bash", wqstat(), "describe"}, files);
        const Outcome outcome = runCommand(with(limited, {"--html", old}));
        EXPECT_EQ(outcome.status, couldNotAnalyse) << outcome;
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome;
        EXPECT_EQ(contentOf(old), "old");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("")), {}), 1) << "nothing half-made stays";
    }
}

}  // namespace
