// wqstat columns: what it says of a table, and that the command lines it names run.
#include "commands.h"
#include "data_files.h"
#include "documents.h"
#include "page_reader.h"
#include "support/plain_gnuplot.h"
#include "terminal.h"
#include "variable.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;
using namespace wq_test;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* plantTable =
    "plant,treatment,height_cm,day\n1,ctrl,4.17,2024-05-02\n2,ctrl,5.58,2024-05-02\n3,ctrl,5.18,2024-05-03\n4,compost,4.81,2024-05-03\n"
    "5,compost,,2024-05-03\n6,compost,4.41,2024-05-06\n7,both,6.31,NA\n8,both,5.12,2024-05-07\n9,both,5.54,2024-05-08\n";

Json columnsOf(const Words& arguments)
{
    const Outcome outcome = run(with({"columns", "--json"}, arguments));
    EXPECT_EQ(outcome.status, done) << outcome;
    EXPECT_EQ(outcome.errors, "");
    return Json::parse(outcome.output);
}

Words textsOf(const Json& list) { return list.get<Words>(); }

// Runs the command lines as someone would who copies them, and returns how many there were.
std::size_t runSuggested(const Words& commands, const std::string& input = "/dev/null")
{
    const Variable path("PATH", std::filesystem::path(wqstat()).parent_path().string() + ":" + std::getenv("PATH"));
    for (const std::string& command : commands) {
        const Outcome outcome = runCommand({"bash", "-c", command}, {input, ""});
        EXPECT_EQ(outcome.status, done) << command << "\n" << outcome;
        EXPECT_THAT(outcome.output, Not(IsEmpty())) << command;
    }
    return commands.size();
}

// ---------------------------------------------------------------- what it prints

// Figures by hand; quartiles as R's quantile(type = 7) has them.
// Nine dates and a number that was meant for one: the figures are those of the dates.
TEST(Columns, sumsUpWhatMostCellsOfAMixedColumnAre)
{
    const TempFolder folder;
    std::string cells = "day\n20240510\n";
    for (int day = 1; day <= 9; ++day) cells += "2024-05-0" + std::to_string(day) + "\n";
    const std::string text = run({"columns", folder.write("days.csv", cells), "--header"}).output;
    EXPECT_THAT(text, HasSubstr("of its dates: least 2024-05-01"));
    EXPECT_THAT(text, Not(HasSubstr("of its numbers")));
}

TEST(Fit, saysWhereNumbersAreTakenForNames)
{
    const TempFolder folder;
    const Words fit{"fit", "--column", "n", "--ratio", "9:3:3"};
    EXPECT_THAT(run(with(fit, {folder.write("four.csv", "n\n9\n3\n9\n1\n")})).errors,
                HasSubstr("warning: n holds numbers, of which each different one is taken for the name of a class"));
    EXPECT_THAT(run(with(fit, {folder.write("more.csv", "n\n1\n2\n3\n1\n1\n2\n3\n2\n")})).errors, Not(HasSubstr("holds numbers")));
}

TEST(Columns, saysWhatIsInATable)
{
    const Variable locale("LC_ALL", "C.UTF-8");
    const TempFolder folder;
    const std::string file = folder.write("plants.csv", plantTable);
    const std::string bar10 = "\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588";
    EXPECT_EQ(run({"columns", file}),
              (Outcome{done,
                       file +
                           ": 9 rows, 4 columns\n"
                           "\n"
                           "1. plant: number\n"
                           "  rows 9, missing 0, distinct 9\n"
                           "  least 1, quartiles 3, 5 and 7, greatest 9, mean 5\n"
                           "  [\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588]\n"
                           "\n"
                           "2. treatment: label\n"
                           "  rows 9, missing 0, distinct 3\n"
                           "  ctrl     3  " +
                           bar10 + bar10 + bar10 + "\n  compost  3  " + bar10 + bar10 + bar10 + "\n  both     3  " + bar10 + bar10 + bar10 +
                           "\n"
                           "\n"
                           "3. height_cm: number\n"
                           "  rows 9, missing 1, distinct 8\n"
                           "  least 4.17, quartiles 4.71, 5.15 and 5.55, greatest 6.31, mean 5.14\n"
                           "  [\u2586\u2588\u2586\u2583]\n"
                           "\n"
                           "4. day: date\n"
                           "  rows 9, missing 1, distinct 5\n"
                           "  least 2024-05-02, quartiles 2024-05-02, 2024-05-03 and 2024-05-06, greatest "
                           "2024-05-08, mean 2024-05-04\n"
                           "  [\u2586\u2588  \u2583\u2583\u2583]\n"
                           "\n"
                           "Command lines that fit; nothing has been tested:\n"
                           "  wqstat describe --column height_cm " +
                           file +
                           "\n"
                           "  wqstat anova --group treatment --value height_cm " +
                           file + "\n",
                       ""}));
}

TEST(Columns, drawsWithWhatTheTerminalHas)
{
    const TempFolder folder;
    const std::string file = folder.write("plants.csv", plantTable);
    for (const char* const name : {"C", "POSIX", "no_such.locale"}) {
        const Variable locale("LC_ALL", name);
        const std::string text = run({"columns", file}).output;
        EXPECT_THAT(text, HasSubstr("\n  [*@*-]\n")) << name;
        EXPECT_THAT(text, HasSubstr("\n  compost  3  ##############################\n")) << name;
        EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; })) << text;
    }
}

TEST(Columns, showsWholePartsInFull)
{
    const TempFolder folder;
    const auto figuresOf = [&folder](const std::string& cells) {
        const std::string text = run({"columns", folder.write("x.csv", "x\n" + cells)}).output;
        return text.substr(text.find("  least"), text.find("\n  [") - text.find("  least"));
    };
    EXPECT_EQ(figuresOf("1000000.25\n3000000.25\n"),
              "  least 1000000, quartiles 1500000, 2000000 and 2500000, greatest 3000000, mean 2000000");
    EXPECT_EQ(figuresOf("0.123456789\n999999.97\n"),
              "  least 0.123457, quartiles 250000, 500000 and 750000, greatest 1000000, mean 500000");
    EXPECT_EQ(figuresOf("-12345.678\n5e20\n"), "  least -12345.7, quartiles 1.25e20, 2.5e20 and 3.75e20, greatest 5e20, mean 2.5e20");
}

// Forty times an eighth of a second apart: the quartiles lie 9.75, 19.5 and 29.25 eighths behind the first.
TEST(Columns, showsTheDigitsInWhichFiguresDiffer)
{
    const TempFolder folder;
    std::string table = "t\n";
    for (int i = 0; i < 40; ++i) table += std::to_string(1'700'000'000 + i / 8) + std::to_string(0.125 * (i % 8)).substr(1) + "\n";
    const std::string file = folder.write("t.csv", table);
    EXPECT_THAT(
        run({"columns", file, "--html", folder.path("page.html")}).output,
        HasSubstr(
            "least 1700000000, quartiles 1700000001.22, 1700000002.44 and 1700000003.66, greatest 1700000004.88, mean 1700000002.44"));
    EXPECT_THAT(pageIn(folder.path("page.html")).faults, IsEmpty());  // and the quartiles differ
}

// Infinite values have no place in a histogram, whose ends are those of the others.
TEST(Columns, saysThatInfiniteValuesAreNotInTheHistogram)
{
    const TempFolder folder;
    const std::string file = folder.write("i.csv", "x\n1\n2\ninf\n3.5\n4\n-inf\n");
    EXPECT_THAT(run({"columns", file, "--html", folder.path("page.html")}).output,
                HasSubstr("  2 infinite values are left out of the histogram\n"));
    EXPECT_THAT(contentOf(folder.path("page.html")),
                HasSubstr("<title>How often which values of x occur, in 4 classes of equal width from 1 to 4</title>"));
    EXPECT_THAT(pageIn(folder.path("page.html")).texts, Contains("2 infinite values are left out of the histogram"));
    EXPECT_THAT(run({"columns", folder.write("f.csv", "x\n1\n2\n3.5\n4\n")}).output, Not(HasSubstr("infinite")));
}

TEST(Columns, namesTheFirstCellsThatAreUnlikeMost)
{
    const TempFolder folder;
    const std::string file = folder.write("ph.csv", "site,ph\nA,7.1\nB,<6\nC,7.4\nD,?\nE,6.8\nF,NA\n");
    const std::string text = run({"columns", file}).output;
    EXPECT_THAT(text, HasSubstr("2. ph: mixed\n  rows 6, missing 1, distinct 5\n  3 numbers, 2 other texts; the first cells unlike most:\n"
                                "    line 3: '<6'\n    line 5: '?'\n  of its numbers: least 6.8, quartiles 6.95, 7.1 and 7.25, "
                                "greatest 7.4, mean 7.1\n"));
    EXPECT_THAT(text, HasSubstr("\nNo analysis fits these columns as they are.\n"));
    const Json odd = columnsOf({file})["columns"][1]["odd"];
    EXPECT_EQ(odd, Json::parse(R"([{"line": 3, "text": "<6"}, {"line": 5, "text": "?"}])"));
}

TEST(Columns, readsWhateverATableMayBe)
{
    const TempFolder folder;
    const std::string german = folder.write("german.csv", "Pflanze;H\u00f6he\n1;4,17\n2;5,58\n3;5,18\n");
    EXPECT_EQ(runCommand({"gzip", german}).status, 0);
    const Outcome packed = run({"columns", "--verbose", german + ".gz"});
    EXPECT_EQ(packed.errors, "wqstat: " + german + ".gz: gzip, separator semicolon, decimal comma, columns Pflanze, H\u00f6he\n");
    EXPECT_THAT(packed.output, HasSubstr("2. H\u00f6he: number\n  rows 3, missing 0, distinct 3\n  least 4.17, "));

    const std::string bare = folder.write("bare.txt", "1 a -9\n2 b 4\n3 a 8\n4 b 9\n");
    const Json columns = columnsOf({"--no-header", "--separator", "blanks", "--na", "-9,x", bare})["columns"];
    ASSERT_EQ(columns.size(), 3U);
    EXPECT_EQ(columns[2]["title"], "column 3");
    EXPECT_EQ(columns[2]["missing"], 1);
    EXPECT_EQ(columns[1]["kind"], "label");
    EXPECT_THAT(run({"columns", folder.write("numbers.csv", "1,2\n3,4\n")}).errors, HasSubstr(":1: the first line holds numbers only: "));
    const Outcome piped = run({"columns", "--no-header"}, {bare, ""});
    EXPECT_THAT(piped.output, testing::StartsWith("standard input: 4 rows, 3 columns\n"));
}

TEST(Columns, doubtsACommaAndSuggestsNothingWithIt)
{
    const TempFolder folder;
    const std::string file = folder.write("money.csv", "shop;sum\na;1,234\na;2,345\nb;9,876\nb;5,432\n");
    const Outcome outcome = run({"columns", file});
    EXPECT_EQ(outcome.status, done);
    EXPECT_THAT(outcome.output, HasSubstr("\n  '1,234' may have a decimal comma or a comma between thousands: "));
    EXPECT_THAT(outcome.output, Not(HasSubstr("--value sum")));
    EXPECT_EQ(runSuggested(textsOf(columnsOf({file})["commands"])), 1U) << "the shops can be counted";
    const Words sure = textsOf(columnsOf({"--decimal-comma", file})["commands"]);
    EXPECT_THAT(sure, Contains("wqstat anova --decimal-comma --group shop --value sum " + file));
    EXPECT_EQ(runSuggested(sure), 2U);
}

TEST(Columns, suggestsNothingOfAColumnWhoseTitleIsANumber)
{
    const TempFolder folder;
    const std::string file = folder.write("plain.csv", "ctrl;4,17;7\nctrl;5,58;8\nctrl;5,2;9\ntrt;5;1\ntrt;6,5;3\ntrt;7;4\n");
    const Json document = columnsOf({file});
    EXPECT_THAT(textsOf(document["commands"]), testing::Each(Not(HasSubstr("--value"))));
    EXPECT_THAT(textsOf(document["columns"][1]["notes"]),
                ElementsAre("the title is a number: --no-header takes the first line for data, --header for titles"));
    EXPECT_THAT(textsOf(document["columns"][0]["notes"]), IsEmpty());
    for (const char* const option : {"--no-header", "--header"}) {
        const Json sure = columnsOf({option, file});
        EXPECT_THAT(textsOf(sure["commands"]), Contains(HasSubstr("--value"))) << option;
        EXPECT_THAT(textsOf(sure["columns"][1]["notes"]), IsEmpty()) << option;
        EXPECT_GT(runSuggested(textsOf(sure["commands"])), 2U) << option;
    }
}

// The library's own format, which begins with a comment: it has no titles, and needs none.
TEST(Columns, knowsAFileThatIsReadWithoutThem)
{
    const TempFolder folder;
    const struct {
        int line;
        std::string text;
        Words commands;
    } rows[] = {
        {__LINE__, "# masses\n1\n2.5\n4\n", {"describe", "frequency"}},
        {__LINE__, "\n  # masses\n# in kg\n\n1\n-2.5e1\n4\n", {"describe", "frequency"}},
        {__LINE__, "# masses\n1\n2.5\na note # of no weight\n4\n<<\n", {"describe", "frequency"}},
        {__LINE__, "# x|y|n\n1|2|1\n2|3|2\n3|5|1\n", {"multiy"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const std::string file = folder.write("own.txt", row.text);
        std::string expected = file + ": begins with a comment, in the library's own format: the analyses read it without a column\n\n"
                                      "Command lines that fit; nothing has been tested:\n";
        Words commands;
        for (const std::string& command : row.commands) {
            commands.push_back("wqstat " + command + " " + file);
            expected += "  " + commands.back() + "\n";
        }
        EXPECT_EQ(run({"columns", file}), (Outcome{done, expected, ""}));
        runSuggested(commands);
        EXPECT_EQ(run({"columns", "--json", file}),
                  cannotAnalyse(file + ": begins with a comment, in the library's own format: the analyses read it without a column"));
    }
    for (const std::string& pairs : {data_files::peas, data_files::pigeons, data_files::norris, data_files::resistivity})
        EXPECT_EQ(run({"columns", pairs}).output,
                  pairs + ": begins with a comment, in the library's own format: the analyses read it without a column\n\n"
                          "Which analysis fits depends on what the two numbers of a line are: anova, correlate, regress, fit, circular.\n");
    for (const std::string& shippedFile : {data_files::cavendish, data_files::norris, data_files::resistivity, data_files::seedlings})
        EXPECT_THAT(run({"columns", shippedFile}).output, HasSubstr("in the library's own format"));
    // Titles may begin with that sign, too.
    EXPECT_THAT(run({"columns", folder.write("t.csv", "#id,x\n1,2.5\n2,3\n3,4\n")}).output, HasSubstr("1. #id: number"));
    EXPECT_THAT(run({"columns", folder.write("u.csv", "# id;x\n1;a\n2;b\n3;c\n")}).output, HasSubstr("1. # id: number"));
    EXPECT_THAT(run({"columns", "--header", folder.write("v.csv", "#id;x\n1;2\n2;3\n3;5\n")}).output, HasSubstr("1. #id: number"));
}

// ---------------------------------------------------------------- the suggestions

const struct {
    int line;
    const char* table;
    Words expected;  // FILE stands for the table
} suggestions[] = {
    {__LINE__,
     "a,b\n1,2.5\n2,3.5\n4,1\n8,2\n",
     {"wqstat describe --column a FILE", "wqstat describe --column b FILE", "wqstat correlate --x a --y b FILE",
      "wqstat regress --model linear --x a --y b FILE"}},
    {__LINE__,
     "sex,mass\nf,1.5\nm,2.5\nf,3\nm,4\nf,5\nm,5\n",
     {"wqstat describe --column mass FILE", "wqstat anova --group sex --value mass FILE", "wqstat ks --value mass --group sex FILE",
      "wqstat variances --value mass --group sex FILE"}},
    {__LINE__,
     "sex,mass\nf,1.5\nm,2.5\nf,3\nm,\nf,5\nm,5\n",  // one of the three may lack its mass
     {"wqstat describe --column mass FILE", "wqstat anova --group sex --value mass FILE"}},
    {__LINE__, "seed\nround\nround\nwrinkled\nround\nwrinkled\n", {"wqstat fit --column seed --ratio 1:1 FILE"}},
    {__LINE__,
     "dose,length\n1,4.5\n2,5\n1,5.5\n2,6\n1,4\n2,7\n1,5\n2,8\n1,6\n2,9\n",  // numbers that may be groups
     {"wqstat describe --column dose FILE", "wqstat describe --column length FILE", "wqstat anova --group dose --value length FILE",
      "wqstat correlate --x dose --y length FILE", "wqstat regress --model linear --x dose --y length FILE"}},
    {__LINE__, "group,value\na,1.5\na,2.5\nb,NA\nb,NA\n", {"wqstat fit --column group --ratio 1:1 FILE"}},  // too few values
    {__LINE__, "group,value\na,\na,\nb,\nb,\n,1\n,2\n,4\n,8\n", {"wqstat describe --column value FILE"}},   // never in one row
    {__LINE__, "x,y\n1,\n2,\n4,\n,1\n,2\n,7\n", {"wqstat describe --column x FILE", "wqstat describe --column y FILE"}},
    {__LINE__, "x,y\n1,inf\n2,3\n4,2\n", {"wqstat describe --column x FILE"}},
    {__LINE__, "x,y\n1,5\n2,5\n4,5\n", {"wqstat describe --column x FILE"}},  // no spread
    {__LINE__, "n\n1\n2\n3\n", {"wqstat describe --column n FILE"}},          // nothing but a running number
    {__LINE__, "x;y\n1,5;2.5\n2,5;1.5\n4,5;7.5\n", {"wqstat describe --column x FILE", "wqstat describe --column y FILE"}},  // two marks
    {__LINE__, "name\nAda\nGrace\nMary\n", {}},
    {__LINE__, "when\n2024-01-05\n2024-01-06\n2024-01-09\n", {}},
    {__LINE__,
     "-x,--y\n1,2.5\n2,3.5\n4,1\n8,2\n",
     {"wqstat describe --column=-x FILE", "wqstat describe --column=--y FILE", "wqstat correlate --x=-x --y=--y FILE",
      "wqstat regress --model linear --x=-x --y=--y FILE"}},
    {__LINE__,
     "a,a\n1,2.5\n2,3.5\n4,1\n8,2\n",  // one title for two
     {"wqstat describe --column 1 FILE", "wqstat describe --column 2 FILE", "wqstat correlate --x 1 --y 2 FILE",
      "wqstat regress --model linear --x 1 --y 2 FILE"}},
    {__LINE__, "2,a,a\nx,2.5,1\nx,3.5,1\nx,1,2\nx,2,4\n", {"wqstat describe --column 3 FILE"}},  // 2 is the title of another
    {__LINE__,
     "it's $HOME `x`,\"a b\"\n1,2.5\n2,3.5\n4,1\n8,2\n",
     {"wqstat describe --column 'it'\\''s $HOME `x`' FILE", "wqstat describe --column 'a b' FILE",
      "wqstat correlate --x 'it'\\''s $HOME `x`' --y 'a b' FILE", "wqstat regress --model linear --x 'it'\\''s $HOME `x`' --y 'a b' FILE"}},
    {__LINE__,
     "\"\x1b[31m\",\xff\n1,2.5\n2,3.5\n4,1\n8,2\n",  // titles that nobody can type
     {"wqstat describe --column 1 FILE", "wqstat describe --column 2 FILE", "wqstat correlate --x 1 --y 2 FILE",
      "wqstat regress --model linear --x 1 --y 2 FILE"}},
};

TEST(Columns, namesCommandLinesThatRun)
{
    for (const auto& row : suggestions) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const TempFolder folder;
        const std::string file = folder.write("t.csv", row.table);
        Words expected = row.expected;
        for (std::string& command : expected) command.replace(command.find("FILE"), 4, file);
        const Words found = textsOf(columnsOf({file})["commands"]);
        EXPECT_EQ(found, expected);
        runSuggested(found);
    }
}

TEST(Columns, namesTheFileSoThatItIsFound)
{
    const TempFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path(""));
    for (const char* const name : {"-x.csv", "--json", "[a,b]", "it's a \"table\" $HOME.csv", "two\nlines\x1b[2J.csv", "describe", "a=b"}) {
        SCOPED_TRACE(plainVisible(name));
        folder.write(name, "a;b\n1;2.5\n2;3.5\n4;1\n8;2\n");
        EXPECT_EQ(runSuggested(textsOf(columnsOf({"--separator", ";", "--", name})["commands"])), 4U);
    }
    std::filesystem::current_path(before);
    const std::string file = folder.write("x", "1|-9\n2|7\n4|9\n8|-8\n");
    const Words words = {"--no-header", "--separator=bar", "--na=-9,-8"};
    EXPECT_THAT(textsOf(columnsOf(with(words, {file}))["commands"]),
                ElementsAre("wqstat describe --separator bar --no-header --na=-9,-8 --column 1 " + file));
    const Json piped = Json::parse(run(with({"columns", "--json"}, words), {file, ""}).output);
    EXPECT_EQ(runSuggested(textsOf(piped["commands"]), file), 1U);
}

TEST(Columns, suggestsForTheDataSetsToo)
{
    for (const std::string& file : {data_files::norris, data_files::resistivity, data_files::supplements}) {
        SCOPED_TRACE(file);
        const TempFolder folder;
        std::string text = "first;second\n";
        std::istringstream lines(contentOf(file));
        for (std::string line; std::getline(lines, line);)
            if (line.find('#') == std::string::npos && !line.empty()) text += line + "\n";
        EXPECT_GE(runSuggested(textsOf(columnsOf({"--separator", ";", folder.write("table.csv", text)})["commands"])), 3U);
    }
}

// ---------------------------------------------------------------- what cannot be read

TEST(Columns, saysWhatIsWrongInOneLine)
{
    const TempFolder folder;
    const std::string none = folder.path("none.csv");
    EXPECT_EQ(run({"columns", none}), cannotAnalyse(none + ": No such file or directory"));
    const std::string empty = folder.write("empty.csv", "");
    EXPECT_EQ(run({"columns", empty}), cannotAnalyse(empty + ": no data"));
    const std::string titles = folder.write("titles.csv", "a,b\n");
    EXPECT_EQ(run({"columns", titles}), cannotAnalyse(titles + ": no data"));
    const std::string ragged = folder.write("ragged.csv", "a,b\n1,2\n1,2,3\n");
    EXPECT_EQ(run({"columns", "--separator", ",", ragged}), cannotAnalyse(ragged + ":3: 3 fields, where the header has 2"));
    EXPECT_EQ(run({"columns", folder.path("")}).status, couldNotAnalyse);
    EXPECT_EQ(run({"columns", "--json", "--tsv", titles}).status, wrongUsage);
    EXPECT_EQ(run({"columns", titles, titles}).status, wrongUsage);
    EXPECT_EQ(run({"columns", "--separator", "xyz", titles}).status, wrongUsage);
    EXPECT_EQ(run({"columns", "--column", "a", titles}).status, wrongUsage) << "it looks at all of them";
}

TEST(Columns, keepsWhatIsThere)
{
    const TempFolder folder;
    const std::string data = folder.write("data.csv", plantTable);
    EXPECT_EQ(run({"columns", data, "--html", data}), refused("--html: " + data + " is the data file", "columns"));
    EXPECT_EQ(contentOf(data), plantTable);
    for (const std::string& page : {folder.path("none/page.html"), std::string("/dev/full")}) {
        const Outcome failure = run({"columns", data, "--html", page});
        EXPECT_EQ(failure.status, couldNotAnalyse);
        EXPECT_EQ(std::count(failure.errors.begin(), failure.errors.end(), '\n'), 1) << failure.errors;
    }
}

TEST(Columns, saysWhereLabelsAreTooManyToKeep)
{
    const TempFolder folder;
    std::string text = "id,word\n";
    for (int i = 0; i < 100'001; ++i) text += "n" + std::to_string(i) + ",w" + std::to_string(i % 100'000) + "\n";
    const std::string file = folder.write("many.csv", text);
    const std::string said = run({"columns", file}).output;
    EXPECT_THAT(said, HasSubstr("1. id: label\n  rows 100 001, missing 0, distinct more than 100 000\n"));
    EXPECT_THAT(said, HasSubstr("\n  labels are counted of the first 100 000 different ones alone\n"));
    EXPECT_THAT(said, HasSubstr("2. word: label\n  rows 100 001, missing 0, distinct 100 000\n  w0  2  "));
    const Json columns = columnsOf({file})["columns"];
    EXPECT_TRUE(columns[0]["distinct"].is_null());
    EXPECT_EQ(columns[1]["distinct"], 100'000);
    EXPECT_THAT(columns[0]["notes"], testing::SizeIs(1));
}

TEST(Columns, saysWhereQuartilesAreAboutRight)
{
    const TempFolder folder;
    std::string text = "x\n";
    for (int i = 0; i < 200'000; ++i) text += std::to_string(i * 7919LL % 200'003) + ".5\n";
    const std::string file = folder.write("many.csv", text);
    EXPECT_THAT(run({"columns", file}).output, HasSubstr(", quartiles about "));
    EXPECT_THAT(run({"columns", file}).output, testing::ContainsRegex("\n  the quartiles are each within 0\\.00[0-9]+ % of the ranks\n"));
    const Json column = columnsOf({file})["columns"][0];
    EXPECT_TRUE(column["distinct"].is_null());
    const double error = column["rankError"].get<double>();
    EXPECT_GT(error, 0.0);
    EXPECT_LT(error, 200.0);
    EXPECT_NEAR(column["quartiles"]["median"].get<double>(), 100'001.0, 1.1 * error + 10.0);
    EXPECT_EQ(run({"columns", file}), run({"columns", file})) << "every run gives the same";
}

// ---------------------------------------------------------------- JSON, rows

TEST(Columns, hasTheSameInJsonAndInRows)
{
    const TempFolder folder;
    const std::string file = folder.write("plants.csv", plantTable);
    const Json document = columnsOf({file});
    EXPECT_EQ(document["analysis"], "columns");
    EXPECT_EQ(document["files"], Json::parse("[\"" + file + "\"]"));
    EXPECT_EQ(document["rows"], 9);
    const Json& height = document["columns"][2];
    EXPECT_EQ(height["number"], 3);
    EXPECT_EQ(height["missing"], 1);
    EXPECT_DOUBLE_EQ(height["mean"].get<double>(), 41.12 / 8.0);
    EXPECT_EQ(height["histogram"]["counts"], Json::parse("[2, 3, 2, 1]"));
    EXPECT_EQ(document["columns"][1]["labels"][1], Json::parse(R"({"text": "compost", "count": 3})"));
    EXPECT_TRUE(document["columns"][1]["mean"].is_null());
    EXPECT_EQ(document["columns"][3]["least"], "2024-05-02");
    EXPECT_EQ(document["columns"][3]["histogram"]["from"], "2024-05-02");
    EXPECT_EQ(document["columns"][3]["histogram"]["width"], 1.0);

    std::istringstream lines(run({"columns", "--tsv", file}).output);
    std::vector<Words> rows;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream cells(line);
        rows.emplace_back();
        for (std::string cell; std::getline(cells, cell, '\t');) rows.back().push_back(cell);
    }
    ASSERT_EQ(rows.size(), 5U);
    for (const Words& row : rows) EXPECT_EQ(row.size(), rows[0].size());
    EXPECT_THAT(rows[0], Contains("quartiles.median"));
    EXPECT_THAT(rows[3], Contains("5.15"));
    EXPECT_THAT(rows[4], Contains("2024-05-03"));
    EXPECT_THAT(rows[2], Contains("NA"));
}

// ---------------------------------------------------------------- the page

const std::string mixedTable =
    "n,s,d,m\n1.5,a,2024-01-05,1\n2,b,2024-01-06,<2\n4,a,2024-02-01,3\n-7.25,b,,4\n1e7,a,2023-01-01,5\n0.1,a,2023-01-01,\n";

TEST(ColumnsPage, hasTheFiguresOfTheJsonDocument)
{
    const TempFolder folder;
    const std::string table = folder.write("table.csv", mixedTable);
    const std::string file = folder.path("page.html");
    const Outcome said = run({"columns", table});
    EXPECT_EQ(run({"columns", "--html", file, table}), said) << "the page costs what is printed nothing";
    const Page page = pageIn(file);
    EXPECT_THAT(page.faults, IsEmpty());
    EXPECT_THAT(page.languages, ElementsAre("en"));
    EXPECT_THAT(page.titles, ElementsAre("Columns of " + table));
    EXPECT_THAT(page.texts, Contains("6 rows, 4 columns; nothing has been tested"));
    EXPECT_THAT(page.texts, Contains("line 3: '<2'"));
    EXPECT_THAT(page.texts, Contains("2023-01-01")) << "a date, and what is least of them";
    const Json document = columnsOf({table});
    for (const std::string& command : textsOf(document["commands"])) EXPECT_THAT(page.texts, Contains(command));
    EXPECT_EQ(page.figures.size(), 4 * 3 + 2 * 6U) << "counts of all columns, figures of two";
    for (const auto& [path, value] : page.figures) {
        const Json::json_pointer place("/" + path);
        ASSERT_TRUE(document.contains(place)) << path;
        EXPECT_EQ(std::stod(value), document.at(place).get<double>()) << path;
    }
    EXPECT_THAT(page.texts, Contains(runCommand({"sha256sum", table}).output.substr(0, 64)));
}

TEST(ColumnsPage, saysWhatTheFiguresOfAMixedColumnAreOf)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string sentence = "Least, quartiles, greatest and mean are those of its numbers alone.";
    ASSERT_EQ(run({"columns", "--html", file, folder.write("t.csv", "a,b\n1,1\n2,<6\n4,3\n")}).status, done);
    const Page page = pageIn(file);
    EXPECT_EQ(std::count(page.texts.begin(), page.texts.end(), sentence), 1) << "of the one that is mixed";
}

TEST(ColumnsPage, isMadeAgainByItsCommandLine)
{
    const TempFolder folder;
    const std::string table = folder.write("it's a table.csv", mixedTable);
    const std::string file = folder.path("page.html");
    ASSERT_EQ(run({"columns", "--na", "x,-", "--html", file, table}).status, done);
    const std::string first = contentOf(file);
    const Page page = pageIn(file);
    ASSERT_EQ(page.commands.size(), 1U);
    std::filesystem::remove(file);
    runSuggested(page.commands);
    EXPECT_EQ(contentOf(file), first);
}

TEST(ColumnsPage, takesEveryTextForAText)
{
    for (const char* const text :
         {"<script>alert(1)</script>", "</pre></main><script src=http://example.org/x.js></script>", "'><img src=x onerror=alert(1)>",
          "&lt;b&gt; &amp; &#60;", "<!-- --> ]]> <![CDATA[ <style>*{display:none}</style>", "\x1b[31m \x07 \xff \xed\xa0\x80 \xc2\x9b",
          "\u202egnp.exe \u2066 \u05d0\u200f"}) {
        SCOPED_TRACE(plainVisible(text));
        const TempFolder folder;
        std::string name = std::string("f") + text;
        std::replace(name.begin(), name.end(), '/', '|');
        const std::string field = std::string("\"") + text + "\"";
        const std::string table = folder.write(name, field + ",s,m\n1,x,1\n2," + field + "," + field + "\n4,x,2\n");
        const std::string file = folder.path("page.html");
        ASSERT_EQ(run({"columns", "--html", file, table}).status, done);
        const Page page = pageIn(file);
        EXPECT_THAT(page.faults, IsEmpty());
        EXPECT_THAT(page.titles, Contains(HasSubstr(plainVisible(name))));
        EXPECT_THAT(page.texts, Contains(plainVisible(text) + ": number"));
        EXPECT_THAT(page.texts, Contains("line 3: '" + plainVisible(text) + "'"));
        EXPECT_THAT(page.texts, Contains(plainVisible(text))) << "the label";
    }
}

TEST(ColumnsPage, staysSmallForManyRows)
{
    const TempFolder folder;
    std::string text = "x,y\n";
    for (int i = 0; i < 200'000; ++i) text += std::to_string(i * 7919LL % 200'003) + ",label " + std::to_string(i % 1000) + "\n";
    ASSERT_EQ(run({"columns", "--html", folder.path("page.html"), folder.write("many.csv", text)}).status, done);
    EXPECT_LT(std::filesystem::file_size(folder.path("page.html")), 20U * 1024U);
}

TEST(ColumnsPage, staysSmallForManyColumns)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    std::string titles;
    std::string rows[3];
    for (int i = 0; i < 2000; ++i) {
        titles += (i == 0 ? "" : ",") + std::string("column ") + std::to_string(i);
        for (int row = 0; row < 3; ++row) rows[row] += (i == 0 ? "" : ",") + std::to_string(i * (row + 1) % 17);
    }
    const std::string table = folder.write("wide.csv", titles + "\n" + rows[0] + "\n" + rows[1] + "\n" + rows[2] + "\n");
    ASSERT_EQ(run({"columns", "--html", file, table}).status, done);
    EXPECT_LT(std::filesystem::file_size(file), 300U * 1024U);
    EXPECT_GT(std::filesystem::file_size(file), 280U * 1024U) << "there was room for more";
    const Page page = pageIn(file);
    EXPECT_THAT(page.faults, IsEmpty());
    const auto isCut = testing::ContainsRegex("^These are the first [0-9]+ columns; [0-9]+ more would make the page larger than 300 KiB. "
                                              "wqstat columns --json or --tsv prints all "
                                              "of them.$");
    EXPECT_THAT(page.texts, Contains(isCut));
    EXPECT_THAT(page.texts, Contains("column 0: number"));
}

// A title of so many characters no command line names; the number of its column does as well.
TEST(ColumnsPage, staysSmallForLongTitles)
{
    const TempFolder folder;
    const std::string file = folder.path("page.html");
    const std::string table =
        folder.write("long.csv", std::string(300'000, 'a') + "," + std::string(300'000, 'b') + ",short\n1,4,2\n2,3,9\n8,9,1\n3,1,1\n");
    ASSERT_EQ(run({"columns", "--html", file, table}).status, done);
    EXPECT_LT(std::filesystem::file_size(file), 300U * 1024U);
    EXPECT_THAT(contentOf(file), HasSubstr("wqstat correlate --x 1 --y 2 "));
    EXPECT_THAT(contentOf(file), HasSubstr("wqstat describe --column short "));
}

// ---------------------------------------------------------------- hostile texts

TEST(Columns, letsNoTextPlayWithATerminal)
{
    const std::string evil[] = {
        "\x1b]0;title\x07\x1b[31mred\x1b[2J",
        "\xc2\x9b"
        "31m \x9b"
        "31m",
        "\x01\x02\x7f\v\f\b",
        "\xff\xfe \xc3( \xed\xa0\x80",
        "\u202egnp.exe\u202c",
        "\u2028 \u2029 \ufeff",
        "%s %n \\ <script>",
    };
    for (const std::string& text : evil) {
        SCOPED_TRACE(plainVisible(text));
        const TempFolder folder;
        const std::string field = "\"" + text + "\"";
        const std::string file = folder.write("f" + plainVisible(text).substr(0, 3) + text.substr(0, 2) + ".csv",
                                              field + ",label,mixed\n1," + field + ",1\n2," + field + "," + field + "\n4,x,2\n");
        Terminal terminal;
        ASSERT_EQ(run({"columns", file}, {"/dev/null", terminal.path()}).status, done);
        while (terminal.take(200ms)) {
        }
        const std::string piped = run({"columns", file}).output;
        for (const std::string& shownText : {terminal.stream(), piped}) {
            std::string plain;
            for (const char c : shownText)
                if (c != '\r') plain += c;
            std::istringstream lines(plain);
            for (std::string line; std::getline(lines, line);) EXPECT_EQ(line, plainVisible(line)) << "nothing left to escape";
            EXPECT_THAT(plain, HasSubstr("1. " + plainVisible(text) + ": number\n"));
            EXPECT_THAT(plain, HasSubstr("    line 3: '" + plainVisible(text) + "'\n"));
            EXPECT_THAT(plain, HasSubstr("  " + plainVisible(text) + "  "));
        }
        runSuggested(textsOf(columnsOf({file})["commands"]));
    }
}

}  // namespace
