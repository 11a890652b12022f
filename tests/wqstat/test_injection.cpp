// Texts that are more than text to someone, in every option and every place of the data that reaches gnuplot, a picture or a terminal.
#include "commands.h"
#include "data_files.h"
#include "svg.h"
#include "support/plain_gnuplot.h"
#include "terminal.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;
using namespace wq_test;
using testing::HasSubstr;
using testing::Not;

// Each would touch the file "canary" in the current folder, spoil a picture or play with a terminal where a text could leave its place.
const std::string injections[] = {
    "\n!touch canary\n",
    "x\n!touch canary",
    "x\r!touch canary\r",
    "\";system(\"touch canary\");\"",
    "';system('touch canary');'",
    "\\\";system(\"touch canary\")#",
    "\\';system('touch canary')#",
    "`touch canary`",
    "\"`touch canary`\"",
    "'`touch canary`",
    "$(touch canary) $HOME %HOME%",
    "@x @GPVAL_VERSION {/*3 big} a_b^c",
    "{ } }{ {{",
    "%s %d %n %% 100 %",
    "\\",
    "\\\\",
    "two \\\nlines",
    "'",
    "''",
    "\"",
    "# no comment",
    "]]>",
    "<![CDATA[",
    "]]><script>touch</script><![CDATA[",
    "<script>alert(1)</script> &amp; &#27; &lt;",
    "\x1b]0;title\x07\x1b[31mred\x1b[2J",
    "\xc2\x9b"
    "31m C1 \x9b"
    "31m",
    "\x01\x02\x7f\v\f\b\b\b",
    "\xff\xfe \xc3( \xed\xa0\x80",
    "\xf4\x90\x80\x80 \xef\xbf\xbf \xc3",
    "\u202egnp.exe\u202c",
    "\u2066isolated\u2069",
    "\u2028 \u2029 \ufeff",
    "\u05d0\u200f right-to-left \u200e",
};

// By hand: what misleads is shown by its bytes, what is only foreign as it is.
const struct {
    const char* text;
    const char* shown;
} unseen[] = {
    {"a\u200eb", "a\\xe2\\x80\\x8eb"},
    {"a\u200fb", "a\\xe2\\x80\\x8fb"},
    {"a\u061cb", "a\\xd8\\x9cb"},
    {"a\u200bb", "a\\xe2\\x80\\x8bb"},
    {"a\u200cb", "a\\xe2\\x80\\x8cb"},
    {"a\u200db", "a\\xe2\\x80\\x8db"},
    {"a\u2060b", "a\\xe2\\x81\\xa0b"},
    {"a\ufeffb", "a\\xef\\xbb\\xbfb"},
    {"a\u202eb", "a\\xe2\\x80\\xaeb"},
    {"a\U000e0041b", "a\\xf3\\xa0\\x81\\x81b"},
    {"a\xef\xb7\x90z", "a\\xef\\xb7\\x90z"},
    {"a\xf0\x9f\xbf\xbez", "a\\xf0\\x9f\\xbf\\xbez"},
    {"\u05e9\u05dc\u05d5\u05dd", "\u05e9\u05dc\u05d5\u05dd"},
    {"\u0627\u064e \u00e9 \u4e2d \U0001f600", "\u0627\u064e \u00e9 \u4e2d \U0001f600"},
};

std::string allInjections()
{
    std::string all;
    for (const std::string& injection : injections) all += injection + " ";
    return all;
}

// A text on one line as a reader of a picture should find it, each run of blanks as one.
std::string onOneLine(const std::string& text)
{
    std::istringstream words(text);
    std::string line;
    for (std::string word; words >> word;) line += (line.empty() ? "" : " ") + word;
    return line;
}

std::string asShown(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return onOneLine(plainVisible(text));
}

std::string without(char c, std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), c), text.end());
    return text;
}

// What a comment of a file can hold of it.
// On one line, and with no semicolon that would separate the names of two columns.
std::string asComment(const std::string& text)
{
    std::string comment;
    for (const char c : without('#', without('\n', text))) comment += c == ';' ? "; " : std::string(1, c);
    return comment;
}

// The current folder for as long as the object lives: what an injected command would touch appears there.
class InFolder {
public:
    InFolder() : before(std::filesystem::current_path()) { std::filesystem::current_path(folder.path("")); }
    ~InFolder() { std::filesystem::current_path(before); }
    InFolder(const InFolder&) = delete;
    InFolder& operator=(const InFolder&) = delete;

    std::string write(const std::string& name, const std::string& content) const { return folder.write(name, content); }
    bool hasCanary() const { return std::filesystem::exists("canary"); }

private:
    TempFolder folder;
    std::filesystem::path before;
};

// Each injection in a comment of its own, as a line holds no more than 254 characters, and three observations.
std::string dataFor(const AnalysisCommand& command)
{
    std::string data;
    for (const std::string& injection : injections) data += "# " + asComment(injection) + "\n";
    for (int i = 0; i < 3; ++i) data += command.goodLine + "\n";
    return data;
}

TEST(Injection, whatIsNotSeenIsShownByItsBytes)
{
    for (const auto& row : unseen) {
        SCOPED_TRACE(row.shown);
        const InFolder folder;
        const std::string data = folder.write("t.csv", std::string("g,w\n") + row.text + ",1\n" + row.text + ",3\nother,4\nother,5\n");
        const Outcome outcome = run(
            {"anova", "--group", "g", "--value", "w", data, "--x-label", row.text, "--html", "a.html", "--plot", "a.svg", "--no-warnings"});
        ASSERT_EQ(outcome.status, done) << outcome;
        const std::string line = std::string("group 1: ") + row.shown;
        EXPECT_THAT(outcome.output, HasSubstr(line + "\n"));
        EXPECT_THAT(contentOf("a.html"), HasSubstr(std::string("group 1: <bdi>") + row.shown + "</bdi><"));
        EXPECT_THAT(textsOf("a.svg"), HasSubstr(std::string(row.shown) + "\n"));
        const std::string written = outcome.output + contentOf("a.html") + contentOf("a.svg");
        EXPECT_EQ(written.find(row.text) == std::string::npos, std::string(row.text) != row.shown);
    }
}

// ---------------------------------------------------------------- gnuplot and SVG

TEST(Injection, textsOfOptionsAndDataAreTextsInAPicture)
{
    for (const std::string& injection : injections) {
        SCOPED_TRACE("injection: " + plainVisible(injection));
        const InFolder folder;
        const std::string comment = asComment(injection);
        const std::string data = folder.write("data.txt", "# c " + comment + "\n1;0\n2;0\n3;0\n");
        const Words places{"circular",  "--unit",         "bins",      "--bins",         "4",  "--bin-name", "n " + injection,
                           "--x-label", "x " + injection, "--y-label", "y " + injection, data, "--plot",     "a.svg"};
        const Outcome outcome = run(places);
        ASSERT_EQ(outcome.status, done) << outcome;
        const std::string texts = onOneLine(textsOf("a.svg"));
        for (const std::string& text : {"c " + comment, "x " + injection, "y " + injection, "n " + injection})
            EXPECT_THAT(texts, HasSubstr(asShown(text)));

        // Where there is no comment the file's name is the title; the y axis has a label of its own, turned.
        std::string name = "f " + injection;
        std::replace(name.begin(), name.end(), '/', '|');
        ASSERT_EQ(run({"describe", folder.write(name, "1\n2\n4\n"), "--y-label", "y " + injection, "--plot", name + ".svg"}).status, done);
        const std::string others = onOneLine(textsOf(name + ".svg"));
        EXPECT_THAT(others, HasSubstr(asShown(onOneLine(plainVisible(name)))));
        EXPECT_THAT(others, HasSubstr(asShown("y " + injection)));

        // A title given by hand stands in the comment's place.
        ASSERT_EQ(run({"describe", data, "--lenient", "--title", "t " + injection, "--plot", "b.svg"}).status, done);
        EXPECT_THAT(onOneLine(textsOf("b.svg")), HasSubstr(asShown("t " + injection)));

        EXPECT_FALSE(folder.hasCanary());
    }
}

// A field of a CSV file, in quotes.
std::string field(const std::string& text)
{
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + '"';
}

TEST(Injection, titlesAndLabelsOfATableAreTextsInAPicture)
{
    for (const std::string& injection : injections) {
        SCOPED_TRACE("injection: " + plainVisible(injection));
        const InFolder folder;
        const std::string group = "g" + injection;
        const std::string value = "v" + injection;
        const std::string label = "l" + injection;
        const std::string table = folder.write("data.csv", field(group) + "," + field(value) + "\n" + field(label) + ",1\n" + field(label) +
                                                               ",2\nother,3\nother,5\nthird,4\nthird,7\n");
        const Outcome outcome = run({"anova", table, "--separator", ",", "--group", group, "--value", value, "--plot", "a.svg"});
        ASSERT_EQ(outcome.status, done) << outcome;
        const std::string texts = onOneLine(textsOf("a.svg"));
        for (const std::string& text : {group, value}) EXPECT_THAT(texts, HasSubstr(asShown(text)));
        EXPECT_THAT(texts, HasSubstr(asShown(label).substr(0, 18))) << "long labels are cut";
        EXPECT_FALSE(folder.hasCanary());
    }
}

TEST(Injection, aFileWithZeroBytesDrawsNothing)
{
    using namespace std::string_literals;
    const InFolder folder;
    const std::string data = folder.write("data.txt", "# a\0\"\n!touch canary\n# b\0\0;system(\"touch canary\")\n1\n2\n4\n"s);
    for (const char* const strictness : {"--lenient", "--no-warnings"}) {
        const Outcome outcome = run({"describe", strictness, data, "--plot", "a.svg"});
        EXPECT_EQ(outcome.status, couldNotAnalyse) << outcome;
        EXPECT_EQ(outcome.output, "");
    }
    EXPECT_FALSE(std::filesystem::exists("a.svg"));
    EXPECT_FALSE(folder.hasCanary());
}

TEST(Injection, whatIsNoTextIsRefusedWithoutReachingGnuplot)
{
    const InFolder folder;
    const std::string data = folder.write("data.txt", "1;1\n2;3\n3;2\n");
    const struct {
        const char* option;
        const char* good;  // an injection behind it makes it bad
    } rows[] = {{"--size", "85x60mm"}, {"--dpi", "300"}, {"--font-size", "12"}, {"--log", "x"}};
    for (const auto& row : rows)
        for (const std::string& injection : injections)
            EXPECT_EQ(run({"pairs", data, row.option, row.good + injection, "--plot", "a.png"}).status, wrongUsage)
                << row.option << " " << plainVisible(injection);
    EXPECT_FALSE(std::filesystem::exists("a.png"));
    EXPECT_FALSE(folder.hasCanary());
}

TEST(Injection, picturesOfEveryFormatTakeThemAll)
{
    const InFolder folder;
    const std::string data = folder.write("data.txt", "# " + asComment(injections[4]) + "\n1;0\n2;0\n3;0\n");
    for (const std::string& injection : injections)
        EXPECT_EQ(run({"pairs", data, "--x-label", injection, "--plot", "a.png"}).status, done) << plainVisible(injection);
    EXPECT_EQ(run({"pairs", data, "--x-label", allInjections(), "--plot", "a.pdf"}).status, done);
    EXPECT_FALSE(folder.hasCanary());
}

TEST(Injection, everyCommandsPictureTakesThemAll)
{
    const std::string all = allInjections();
    for (const AnalysisCommand& command : analyses) {
        SCOPED_TRACE(joined(command.arguments));
        const InFolder folder;
        const std::string data = folder.write("data.txt", dataFor(command));
        const Outcome outcome = run(with(withFile(command.arguments, data), {"--x-label", all, "--y-label", "y" + all, "--plot", "a.svg"}));
        ASSERT_EQ(outcome.status, done) << outcome;
        const std::string texts = textsOf("a.svg");
        EXPECT_THAT(texts, HasSubstr("\n!touch canary"));
        EXPECT_THAT(texts, HasSubstr("y !touch canary"));
        ASSERT_EQ(run(with(withFile(command.arguments, data), {"--title", "t" + all, "--plot", "b.svg"})).status, done);
        EXPECT_THAT(onOneLine(textsOf("b.svg")), HasSubstr("t !touch canary"));
        EXPECT_FALSE(folder.hasCanary());
    }
}

// What gnuplot, its enhanced texts, a shell or markup would read otherwise, as a reader of the file has it.
TEST(Injection, pdfFilesHaveTheTextsAsTheyAre)
{
    const std::string text = R"(a_{b} ^c @d {/Symbol x} &amp; <b> \n %s `ls` "$HOME")";
    for (const AnalysisCommand& command : analyses) {
        SCOPED_TRACE(joined(command.arguments));
        const InFolder folder;
        const std::string data = folder.write("data.txt", dataFor(command));
        const Words words = with(withFile(command.arguments, data), {"--x-label", "x " + text, "--title", "t " + text, "--plot", "a.pdf"});
        ASSERT_EQ(run(words).status, done);
        const Outcome read = runCommand({"/usr/bin/pdftotext", "-raw", "a.pdf", "-"});
        ASSERT_EQ(read.status, 0) << read.errors;
        EXPECT_THAT(read.output, HasSubstr("x " + text));
        EXPECT_THAT(read.output, HasSubstr("t " + text));
    }
}

// Enhanced, both texts of a row would look the same.
TEST(Injection, pngFilesHaveTheTextsAsTheyAre)
{
    const InFolder folder;
    const std::string data = folder.write("data.txt", "1;0\n2;0\n3;0\n");
    const auto drawn = [&](const std::string& label) {
        EXPECT_EQ(run({"pairs", data, "--x-label", label, "--plot", "a.png"}).status, done);
        return contentOf("a.png");
    };
    const std::string plain = drawn("x");
    EXPECT_EQ(drawn("x"), plain);
    for (const char* const enhanced : {"x{}", "{/*1 x}", "{/:Normal x}", "{x}"}) EXPECT_NE(drawn(enhanced), plain) << enhanced;
}

// ---------------------------------------------------------------- terminals

struct Shown {
    int status;
    std::string text;
};

// Runs a command with both its streams on one terminal.
Shown runOnTerminal(const Words& arguments)
{
    Terminal terminal;
    Streams streams;
    streams.output = terminal.path();
    streams.errors = terminal.path();
    auto outcome = std::async(std::launch::async, [&] { return run(arguments, streams); });
    while (outcome.wait_for(0s) != std::future_status::ready) terminal.take(20ms);
    while (terminal.take(0ms)) {
    }
    return {outcome.get().status, terminal.stream()};
}

// Line ends, which the terminal itself turns into CR LF, tabs and printable characters are all there may be.
std::string controlsIn(const std::string& text)
{
    std::string controls;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = plainPrintable(text, i);
        const bool plain = text[i] == '\n' || text[i] == '\t' || text.compare(i, 2, "\r\n") == 0;
        if (length == 0 && !plain) controls += plainVisible(text.substr(i, 1));
        i += length == 0 ? 1 : length;
    }
    return controls;
}

TEST(Injection, labelsOnATerminalHaveNoOtherBytesThanUtf8)
{
    const TempFolder folder;
    const std::string table = "g,v\nM\xfcller,1\nM\x9bller,2\nM\xfcller,3\nM\x9bller,5\n";
    const Shown shown = runOnTerminal({"anova", "--group", "g", "--value", "v", folder.write("data.csv", table)});
    EXPECT_EQ(shown.status, done);
    EXPECT_EQ(controlsIn(shown.text), "");
    EXPECT_THAT(shown.text, HasSubstr("group 1: M\\xfcller\r\ngroup 2: M\\x9bller\r\n"));
}

TEST(Injection, reportsOnATerminalShowControlCharacters)
{
    for (const AnalysisCommand& command : analyses) {
        SCOPED_TRACE(joined(command.arguments));
        const TempFolder folder;
        const Words words = withFile(command.arguments, folder.write("data.txt", dataFor(command)));
        const Shown shown = runOnTerminal(words);
        EXPECT_EQ(shown.status, done);
        EXPECT_EQ(controlsIn(shown.text), "");

        // In files and pipes every byte is what it was.
        const Outcome plain = run(words);
        const bool showsComment = plain.output.find("\x1b[31mred") != std::string::npos;
        EXPECT_EQ(shown.text.find("\\x1b[31mred") != std::string::npos, showsComment);
        EXPECT_EQ(plain.output.find("\xff\xfe \xc3( \xed\xa0\x80") != std::string::npos, showsComment);
    }
}

TEST(Injection, messagesAndListingsShowControlCharacters)
{
    const TempFolder folder;
    const std::string evil = "\x1b]0,title\x07 \x9b"
                             "31m \xc2\x9b"
                             "31m \r over";
    const std::string name = "f" + evil;
    const std::string values = folder.write(name, "# c\n1\n2\n4\n");
    const std::string pairs = folder.write("p" + name, "1;2" + evil + "4\n" + "3 " + evil + "5\n2;3\n");
    const std::string label = "\"" + evil + "\"";
    const std::string table = folder.write("t" + name, "\"t" + evil + "\",v\n" + label + ",1\n" + label + ",2\n" + label + ",4\n");
    const std::string missing = "\x1b]0;title\x07 \x9b"
                                "31m";  // no comma: --na takes a list
    const std::string groups =
        folder.write("g" + name, field("g" + evil) + ";v\n" + field("l" + evil) + ";1\n" + field("l" + evil) + ";2\n" + field("l" + evil) +
                                     ";2.5\nm;4\nm;5\nm;4.5\nm;" + field(missing) + "\n");
    const std::string bad = folder.write("b" + name, "1;" + evil + "\n");
    const struct {
        int line;
        Words arguments;
        int status;
    } rows[] = {
        {__LINE__, {"describe", values, "--list", "0", "2"}, done},
        {__LINE__, {"describe", values, "--json"}, done},
        {__LINE__, {"pairs", "--lenient", pairs, "--list", "0", "2"}, done},
        {__LINE__, {"anova", "--lenient", pairs, "--details"}, done},
        {__LINE__, {"anova", pairs}, couldNotAnalyse},
        {__LINE__, {"correlate", bad}, couldNotAnalyse},
        {__LINE__, {"describe", folder.path("none" + name)}, couldNotAnalyse},
        {__LINE__, {"describe", values, "--export", folder.path("none" + name + "/x")}, couldNotAnalyse},
        {__LINE__, {"describe", values, "--plot", folder.path("none" + name + "/x.svg")}, couldNotAnalyse},
        {__LINE__, {"describe", values, "--plot", name}, wrongUsage},
        {__LINE__, {"anova", groups, "--separator", ";", "--group", "g" + evil, "--value", "v"}, couldNotAnalyse},
        {__LINE__, {"anova", groups, "--separator", ";", "--group", "g" + evil, "--value", "v", "--na", missing}, done},
        {__LINE__,
         {"anova", groups, "--separator", ";", "--group", "g" + evil, "--value", "v", "--na", missing, "--na-error"},
         couldNotAnalyse},
        {__LINE__, {"anova", groups, "--separator", ";", "--group", "h" + evil, "--value", "v"}, couldNotAnalyse},
        {__LINE__, {"anova", groups}, couldNotAnalyse},
        {__LINE__, {"variances", groups, "--separator", ";", "--group", "g" + evil, "--value", "v", "--na", missing, "--verbose"}, done},
        {__LINE__, {"fit", groups, "--separator", ";", "--column", "g" + evil, "--ratio", "1:1"}, done},
        {__LINE__, {"fit", groups, "--separator", ";", "--column", "g" + evil, "--ratio", evil}, wrongUsage},
        {__LINE__, {"describe", groups, "--column", "v", "--separator", evil}, wrongUsage},
        {__LINE__, {"describe", values, "--title", evil}, wrongUsage},
        {__LINE__, {"describe", values, "--size", evil, "--plot", "a.svg"}, wrongUsage},
        {__LINE__, {"describe", values, "--dpi", evil, "--plot", "a.svg"}, wrongUsage},
        {__LINE__, {"describe", values, "--font-size", evil, "--plot", "a.svg"}, wrongUsage},
        {__LINE__, {"pairs", "--lenient", pairs, "--log", evil, "--plot", "a.svg"}, wrongUsage},
        {__LINE__, {"random", "--seed", evil}, wrongUsage},
        {__LINE__, {"describe", values, "--alpha", evil}, wrongUsage},
        {__LINE__, {"describe", values, "--list", evil, "1"}, wrongUsage},
        {__LINE__, {"regress", "--model", evil, pairs}, wrongUsage},
        {__LINE__, {"describe", values, evil}, couldNotAnalyse},
        {__LINE__, {"describe", values, values}, done},
        {__LINE__, {"describe", values, "--tsv"}, done},
        {__LINE__, {"describe", "--column", "v", "--by", "t" + evil, table}, done},
        {__LINE__, {"describe", "--column", "v", "--by", "t" + evil, table, "--tsv"}, done},
        {__LINE__, {"anova", "--value", "v", "--group", "t" + evil, "--by", "t" + evil, table, "--json"}, done},
        {__LINE__, {"describe", values, "--" + evil}, wrongUsage},
        {__LINE__, {evil}, wrongUsage},
        {__LINE__, {"prob", evil}, wrongUsage},
        {__LINE__, {"prob", "t_Prob", evil, "1", "one"}, wrongUsage},
        {__LINE__, {"random", "--weights", evil}, wrongUsage},
        {__LINE__, {"circular", "--lenient", pairs, "--unit", "bins", "--bins", "4", "--bin-name", evil}, done},
        {__LINE__, {"--generate", evil}, wrongUsage},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const Shown shown = runOnTerminal(row.arguments);
        EXPECT_EQ(shown.status, row.status) << shown.text;
        EXPECT_EQ(controlsIn(shown.text), "") << shown.text;
    }
}

TEST(Injection, textsThatATerminalCanShowAreShownAsTheyAre)
{
    const TempFolder folder;
    const std::string text = "\u00b5 = 5 \u6570 \u05d0 'quoted' \"so\" \\x1b \U0001f600\tand a tab";
    const Words words{"describe", folder.write("data.txt", "# " + text + "\r\n1\r\n2\r\n4\r\n")};
    const Shown shown = runOnTerminal(words);
    EXPECT_THAT(shown.text, HasSubstr(text));
    EXPECT_THAT(shown.text, Not(HasSubstr("\\r"))) << "a carriage return before a line end is one";
}

}  // namespace
