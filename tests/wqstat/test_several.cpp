// Several analyses in one run: of several files, or of the parts of a table; and a row of a table for each.
#include "commands.h"
#include "data_files.h"
#include "documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace wq_test;
using namespace wq_test::data_files;
using testing::ElementsAre;
using testing::HasSubstr;

std::string reportOf(const Words& words)
{
    const Outcome outcome = run(with(words, {"--no-warnings"}));
    EXPECT_EQ(outcome.status, done) << outcome;
    return outcome.output;
}

std::vector<std::string> parted(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
    return parts;
}

using Row = std::map<std::string, std::string>;

// The columns of what --tsv prints, in order, and its rows by them.
struct Tsv {
    std::vector<std::string> columns;
    std::vector<Row> rows;
};

Tsv tsvOf(const Words& words)
{
    const Outcome outcome = run(with(words, {"--tsv", "--no-warnings"}));
    EXPECT_EQ(outcome.status, done) << outcome;
    Tsv tsv;
    for (const std::string& line : parted(outcome.output, '\n')) {
        const std::vector<std::string> cells = parted(line + "\t", '\t');
        if (tsv.columns.empty()) {
            tsv.columns = cells;
            continue;
        }
        EXPECT_EQ(cells.size(), tsv.columns.size()) << line;
        Row row;
        for (std::size_t i = 0; i < std::min(cells.size(), tsv.columns.size()); ++i) row[tsv.columns[i]] = cells[i];
        tsv.rows.push_back(row);
    }
    return tsv;
}

const std::string plots = "site,w,g\nA,1,x\nA,2,y\nB,10,y\nA,4,x\nB,30,x\nB,20,y\nA,9,y\nB,40,x\n";

// ---------------------------------------------------------------- several files

TEST(Several, filesComeOneAfterTheOtherEachUnderItsName)
{
    const TempFolder folder;
    const std::string a = folder.write("a.txt", "1\n2\n4\n");
    const std::string b = folder.write("b.txt", "5\n6\n8\n");
    EXPECT_EQ(reportOf({"describe", a, b}),
              "==> " + a + " <==\n" + reportOf({"describe", a}) + "\n==> " + b + " <==\n" + reportOf({"describe", b}));
    Streams streams;
    streams.input = b;
    EXPECT_EQ(run({"describe", a, "-", "--list", "0", "1"}, streams).output,
              "==> " + a + " <==\n" + run({"describe", a, "--list", "0", "1"}).output + "\n==> standard input <==\n" +
                  run({"describe", b, "--list", "0", "1"}).output);
    for (const AnalysisCommand& command : analyses) {
        if (command.arguments.front() == "variances") continue;  // its two files are one analysis
        std::string lines;
        for (int i = 0; i < 3; ++i) lines += command.goodLine + "\n";
        const std::string file = folder.write("data", lines);
        Words words = withFile(command.arguments, file);
        if (words.front() == "circular") words = with(words, {"--bins", "12"});
        const std::string report = "==> " + file + " <==\n" + reportOf(words);
        EXPECT_EQ(reportOf(with(words, {file})), report + "\n" + report) << joined(words);
    }
}

TEST(Several, oneBadFileDoesNotStopTheOthers)
{
    const TempFolder folder;
    const std::string a = folder.write("a.txt", "1\n2\n4\n");
    const std::string bad = folder.write("bad.txt", "1\nx\n4\n");
    const std::string missing = folder.path("missing");
    const Outcome outcome = run({"describe", "--no-warnings", bad, a, missing, a});
    EXPECT_EQ(outcome.status, couldNotAnalyse);
    EXPECT_EQ(outcome.output, reportOf({"describe", a, a}));
    EXPECT_EQ(outcome.errors, "wqstat: " + bad + ":2: a number is expected, not 'x'\nwqstat: " + missing + ": No such file or directory\n");
    for (const char* const format : {"--textbook", "--json", "--tsv"}) {
        const Outcome none = run({"describe", format, bad, missing});
        EXPECT_EQ(none.status, couldNotAnalyse);
        EXPECT_EQ(none.output, "");
        EXPECT_EQ(none.errors, outcome.errors);
    }
    const Outcome json = run({"describe", "--json", "--no-warnings", a, bad, a});
    EXPECT_EQ(json.status, couldNotAnalyse);
    EXPECT_EQ(Json::parse(json.output).size(), 2U);
}

TEST(Several, endWhereNothingCanBePrinted)
{
    Streams streams;
    streams.output = "/dev/full";
    const Outcome outcome = run({"describe", "--list", "0", "28", cavendish, cavendish, cavendish}, streams);
    EXPECT_EQ(outcome, cannotAnalyse("standard output: cannot be written: No space left on device"));
}

TEST(Several, warningsNameTheFile)
{
    const TempFolder folder;
    const std::string a = folder.write("a.txt", "-1\n-2\n-4\n");
    const std::string errors = run({"describe", a}).errors;
    ASSERT_THAT(errors, testing::StartsWith("wqstat: warning: "));
    const std::string named = "wqstat: " + a + ": " + errors.substr(8);
    EXPECT_EQ(run({"describe", a, a}).errors, named + named);
}

TEST(Several, cannotBeWrittenToOneFile)
{
    const TempFolder folder;
    const std::string a = folder.write("a.txt", "1\n2\n4\n");
    const std::string table = folder.write("plots.csv", plots);
    for (const char* const option : {"--export", "--plot"}) {
        const std::string target = folder.path("target.svg");
        const Outcome expected = refused(option + std::string(" is for one analysis, not for several files or --by"), "describe");
        EXPECT_EQ(run({"describe", option, target, a, a}), expected);
        EXPECT_EQ(run({"describe", option, target, "--column", "w", "--by", "site", table}), expected);
        EXPECT_FALSE(std::filesystem::exists(target));
    }
}

// ---------------------------------------------------------------- parts of a table

TEST(Parts, areAnalysedAsTablesOfTheirOwn)
{
    const TempFolder folder;
    const std::string whole = folder.write("plots.csv", plots);
    const std::string a = folder.write("a.csv", "w,g\n1,x\n2,y\n4,x\n9,y\n");
    const std::string b = folder.write("b.csv", "w,g\n10,y\n30,x\n20,y\n40,x\n");
    const Words commands[] = {{"describe", "--column", "w"},
                              {"frequency", "--classes", "3", "--column", "1"},
                              {"anova", "--value", "w", "--group", "g", "--details"},
                              {"variances", "--value", "w", "--group", "g"},
                              {"ks", "--value", "w", "--group", "g"},
                              {"fit", "--column", "g", "--ratio", "1:1"}};
    for (Words words : commands) {
        if (words.front() == "variances") {  // which needs three of each
            folder.write("plots.csv", plots + "A,5,x\nA,6,y\nB,5,x\nB,6,y\n");
            folder.write("a.csv", "w,g\n1,x\n2,y\n4,x\n9,y\n5,x\n6,y\n");
            folder.write("b.csv", "w,g\n10,y\n30,x\n20,y\n40,x\n5,x\n6,y\n");
        }
        std::replace(words.begin(), words.end(), std::string("1"), std::string("w"));
        const std::string name = "==> " + whole + ", site = ";
        EXPECT_EQ(reportOf(with(words, {"--by", "site", whole})),
                  name + "A <==\n" + reportOf(with(words, {a})) + "\n" + name + "B <==\n" + reportOf(with(words, {b})))
            << joined(words);
    }
    EXPECT_EQ(reportOf({"describe", "--column", "2", "--by", "1", whole}), reportOf({"describe", "--column", "w", "--by", "site", whole}));
}

TEST(Parts, comeInTheOrderOfFirstAppearanceAlsoWithOneValue)
{
    const TempFolder folder;
    const std::string table = folder.write("t.csv", "s,w\nz,1\na,2\nz,2\na,3\nz,4\na,7\n");
    const Tsv tsv = tsvOf({"describe", "--column", "w", "--by", "s", table});
    ASSERT_EQ(tsv.rows.size(), 2U);
    EXPECT_EQ(tsv.rows[0].at("s"), "z");
    EXPECT_EQ(tsv.rows[1].at("s"), "a");
    const std::string one = folder.write("one.csv", "s,w\nz,1\nz,2\nz,4\n");
    EXPECT_THAT(reportOf({"describe", "--column", "w", "--by", "s", one}), testing::StartsWith("==> " + one + ", s = z <==\n"));
}

TEST(Parts, countTheirOwnMissingValues)
{
    const TempFolder folder;
    const std::string table = folder.write("t.csv", "s,w\na,1\na,2\n,3\nb,4\na,NA\na,3\nb,NA\nb,5\nNA,NA\nb,9\nc,NA\n");
    const Outcome outcome = run({"describe", "--column", "w", "--by", "s", table});
    EXPECT_EQ(outcome.status, couldNotAnalyse);
    EXPECT_EQ(outcome.errors, "wqstat: " + table + ": warning: 2 of 11 rows left out, missing values: s 2\n" +            //
                                  "wqstat: " + table + ", s = a: warning: 1 of 4 rows left out, missing values: w 1\n" +  //
                                  "wqstat: " + table + ", s = b: warning: 1 of 4 rows left out, missing values: w 1\n" +  //
                                  "wqstat: " + table + ", s = c: no data (1 of 1 row left out: a value is missing)\n");
    EXPECT_EQ(run({"describe", "--column", "w", "--by", "s", "--na-error", table}),
              cannotAnalyse(table + ":4: s: the value is missing: ''"));
    // Two samples in two columns, of which each may lack a value that the other has.
    const std::string columns = folder.write("columns.csv", "s,p,q\na,1,2\na,,3\nb,4,\nb,2,1\n");
    const std::string a = folder.write("a.csv", "p,q\n1,2\n,3\n");
    const std::string report = run({"ks", "--column", "p", "--column2", "q", "--by", "s", columns}).output;
    EXPECT_THAT(report, testing::StartsWith("==> " + columns + ", s = a <==\n" + reportOf({"ks", "--column", "p", "--column2", "q", a})));
}

TEST(Parts, ofSeveralTables)
{
    const TempFolder folder;
    const std::string first = folder.write("first.csv", plots);
    const std::string second = folder.write("second.csv", "w;site\n1,5;B\n2;B\n3;B\n");
    const std::string broken = folder.write("broken.csv", "w,site\n1,A\nx,A\n");
    const Outcome outcome = run({"describe", "--no-warnings", "--tsv", "--column", "w", "--by", "site", first, broken, second});
    EXPECT_EQ(outcome.status, couldNotAnalyse);
    EXPECT_EQ(outcome.errors, "wqstat: " + broken + ":3: w: a number is expected, not 'x'\n");
    const std::vector<std::string> lines = parted(outcome.output, '\n');
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_THAT(lines[0], testing::StartsWith("file\tsite\tresult.n\tresult.min\tresult.max\tresult.mean\t"));
    EXPECT_THAT(lines[1], testing::StartsWith(first + "\tA\t4\t1\t9\t4\t"));
    EXPECT_THAT(lines[2], testing::StartsWith(first + "\tB\t4\t10\t40\t25\t"));
    EXPECT_THAT(lines[3], testing::StartsWith(second + "\tB\t3\t1.5\t3\t"));
    EXPECT_EQ(run({"describe", "--column", "w", "--by", "plot", first}),
              Outcome({couldNotAnalyse, "", "wqstat: " + first + ": there is no column 'plot': the columns are site, w, g\n"}));
}

// ---------------------------------------------------------------- JSON

TEST(Several, documentsAreAnArray)
{
    const TempFolder folder;
    const std::string a = folder.write("a.txt", "1\n2\n4\n");
    const Json document = documentOf({"describe", a});
    EXPECT_TRUE(document.is_object());
    EXPECT_EQ(documentOf({"describe", a, a}), Json::array({document, document}));

    const std::string table = folder.write("plots.csv", plots);
    const std::string part = folder.write("a.csv", "w,g\n1,x\n2,y\n4,x\n9,y\n");
    Json parts = documentOf({"anova", "--group", "g", "--value", "w", "--by", "site", table});
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[0].at("by"), Json({{"column", "site"}, {"value", "A"}}));
    EXPECT_EQ(parts[1].at("by").at("value"), "B");
    EXPECT_EQ(parts[1].at("table").at("labels"), Json({"y", "x"}));
    Json expected = documentOf({"anova", "--group", "g", "--value", "w", part});
    parts[0].erase("by");
    expected["files"] = Json({table});
    EXPECT_EQ(parts[0], expected);
}

// ---------------------------------------------------------------- rows of a table

// The scalars of a document by their paths, as --tsv names and writes them; lists of texts are one.
void flatten(const Json& member, const std::string& path, Row& row)
{
    if (member.is_object()) {
        for (const auto& [name, inner] : member.items()) flatten(inner, path.empty() ? name : path + "." + name, row);
    } else if (member.is_array()) {
        if (member.empty() || !member[0].is_string()) return;
        std::string list;
        for (const Json& text : member) list += (list.empty() ? "" : "; ") + text.get<std::string>();
        row[path] = list;
    } else {
        row[path] = member.is_string() ? member.get<std::string>() : member.is_null() ? "NA" : member.dump();
    }
}

bool areSame(const std::string& cell, const std::string& expected)
{
    if (cell == expected) return true;
    char* end = nullptr;
    const double number = std::strtod(cell.c_str(), &end);
    return end != cell.c_str() && *end == '\0' && number == std::strtod(expected.c_str(), nullptr);
}

void expectRowOfDocument(const Words& words)
{
    SCOPED_TRACE(joined(words));
    const Tsv tsv = tsvOf(words);
    ASSERT_EQ(tsv.rows.size(), 1U);
    Row expected;
    flatten(documentOf(words), "", expected);
    expected["file"] = expected.at("files");
    expected.erase("files");
    if (tsv.rows[0].count("file2") > 0) {
        const std::size_t between = expected.at("file").find("; ");
        expected["file2"] = expected.at("file").substr(between + 2);
        expected["file"].resize(between);
    }
    for (const auto& [name, value] : expected) {
        ASSERT_EQ(tsv.rows[0].count(name), 1U) << name << " is missing";
        EXPECT_TRUE(areSame(tsv.rows[0].at(name), value)) << name << " is " << tsv.rows[0].at(name) << ", not " << value;
    }
    for (const auto& [name, value] : tsv.rows[0]) {
        if (expected.count(name) > 0 || name == "p" || name == "pHolm") continue;  // test_holm has these
        EXPECT_EQ(value, "NA") << name << " is in no document";
    }
}

TEST(Rows, haveTheFieldsOfTheDocument)
{
    const TempFolder folder;
    const Words commands[] = {{"describe", cavendish},
                              {"describe", folder.write("equal.txt", "2\n2\n2\n")},
                              {"pairs", norris},
                              {"regress", "--model", "power", norris},
                              {"correlate", norris},
                              {"anova", resistivity},
                              {"multiy", seedlings},
                              {"fit", peas},
                              {"fit", "--no-williams", peas},
                              {"ks", digits},
                              {"ks", folder.write("few.txt", "3;1\n1;4\n")},
                              {"variances", instrument1, instrument2},
                              {"frequency", "--classes", "4", cavendish},
                              {"circular", "--unit", "degrees", pigeons},
                              {"anova", "--group", "g", "--value", "w", folder.write("plots.csv", plots)}};
    for (const Words& words : commands) expectRowOfDocument(words);
}

// What one file has and the other has not is a column all the same.
TEST(Rows, allHaveTheSameColumns)
{
    const TempFolder folder;
    const std::string few = folder.write("few.txt", "3;1\n1;4\n");
    const Tsv ks = tsvOf({"ks", digits, few});
    ASSERT_EQ(ks.rows.size(), 2U);
    EXPECT_EQ(ks.rows[0].at("textbook.pTheseSizes"), "NA");
    EXPECT_NE(ks.rows[1].at("textbook.pTheseSizes"), "NA");
    EXPECT_EQ(tsvOf({"ks", digits}).columns, tsvOf({"ks", few}).columns);
    EXPECT_EQ(tsvOf({"fit", peas}).columns, tsvOf({"fit", "--no-williams", peas}).columns);
    EXPECT_EQ(tsvOf({"describe", cavendish}).columns, tsvOf({"describe", "--column", "w", folder.write("plots.csv", plots)}).columns);
}

TEST(Rows, beginWithWhatTellsThemApart)
{
    EXPECT_THAT(run({"variances", "--tsv", instrument1, instrument2}).output,
                testing::StartsWith("file\tfile2\tresult.first.n\tresult.first.min\t"));
    EXPECT_THAT(run({"anova", "--tsv", "--no-warnings", resistivity}).output, testing::StartsWith("file\tresult.groupCount\t"));
}

TEST(Rows, keepForeignTextsOnTheirLine)
{
    const TempFolder folder;
    const std::string name = folder.write("tab\tand\\line\nend.csv", "\"a\tb\",w\n\"x\ny\",1\n\"x\ny\",2\n\"x\ny\",4\n");
    const Outcome outcome = run({"describe", "--tsv", "--column", "w", "--by", "1", name});
    EXPECT_EQ(outcome.status, done);
    EXPECT_THAT(outcome.output, testing::StartsWith("file\ta\\tb\tresult.n\t"));
    EXPECT_THAT(outcome.output, HasSubstr("tab\\tand\\\\line\\nend.csv\tx\\ny\t3\t1\t4\t"));
    EXPECT_EQ(parted(outcome.output, '\n').size(), 2U);
}

TEST(Rows, excludeWhatPrintsSomethingElse)
{
    EXPECT_EQ(run({"describe", "--tsv", "--json", cavendish}), refused("--json excludes --tsv", "describe"));
    EXPECT_EQ(run({"describe", "--tsv", "--list", "0", "1", cavendish}), refused("--list excludes --tsv", "describe"));
    EXPECT_EQ(run({"anova", "--tsv", "--details", resistivity}), refused("--details excludes --tsv", "anova"));
    EXPECT_EQ(run({"describe", "--tsv", "--textbook", cavendish}).output, run({"describe", "--tsv", cavendish}).output);
}

}  // namespace
