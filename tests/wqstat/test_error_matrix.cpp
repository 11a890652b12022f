// Every command on everything that cannot be analysed: one line says why, the status is right, nothing is printed and nothing written.
#include "commands.h"
#include "feed.h"
#include "terminal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace wq_test;

// The outputs a command can be asked for besides its report, with the files they go to.
struct OutputFiles {
    explicit OutputFiles(const TempFolder& folder) : exported(folder.path("export.tsv")), picture(folder.path("picture.svg")) {}

    Words asked(const Words& arguments) const
    {
        Words words{"--json", "--textbook", "--export", exported, "--plot", picture};
        const std::string& command = arguments.front();
        if (command == "variances") words.erase(words.begin() + 2, words.begin() + 4);     // has no export
        if (command == "pairs" || command == "frequency") words.erase(words.begin() + 1);  // no test, so no textbook
        words.insert(words.begin(), arguments.begin(), arguments.end());
        return words;
    }

    std::string exported;
    std::string picture;
};

// Runs a command plainly and with every output asked for: both times it ends as expected. No file appears, and one that stands there stays.
void expectFailure(const Words& arguments, const Outcome& expected, const std::function<Outcome(const Words&)>& runs)
{
    const TempFolder folder;
    const OutputFiles outputs(folder);
    EXPECT_EQ(runs(arguments), expected) << joined(arguments);
    const Words asked = outputs.asked(arguments);
    folder.write("picture.svg", "old");
    EXPECT_EQ(runs(asked), expected) << joined(asked);
    EXPECT_FALSE(std::filesystem::exists(outputs.exported)) << joined(asked);
    EXPECT_EQ(contentOf(outputs.picture), "old") << joined(asked);
}

// Every command on the file fails with the text.
void expectFailures(const std::string& file, const std::string& text)
{
    for (const AnalysisCommand& command : analyses)
        expectFailure(withFile(command.arguments, file), cannotAnalyse(text), [](const Words& words) { return run(words); });
}

// ---------------------------------------------------------------- no file

TEST(ErrorMatrix, noFileNamed)
{
    Terminal terminal;
    Streams streams;
    streams.input = terminal.path();
    for (const AnalysisCommand& command : analyses) {
        Words arguments = withFile(command.arguments, shipped("cavendish.txt"));
        arguments.pop_back();
        const std::string& name = command.arguments.front();
        const Outcome lacksOne = refused("two FILEs are needed, one for each sample, not 1", name);
        const bool isOfTwo = name == "variances";
        expectFailure(arguments, isOfTwo ? lacksOne : cannotAnalyse("standard input: no data"),
                      [](const Words& words) { return run(words); });
        const auto runsAtTerminal = [&streams](const Words& words) { return run(words, streams); };
        expectFailure(arguments, isOfTwo ? lacksOne : refused("FILE is required where standard input is a terminal", name), runsAtTerminal);
        expectFailure(withFile(command.arguments, "-"), refused("FILE '-': standard input is a terminal", name), runsAtTerminal);
    }
}

TEST(ErrorMatrix, missingFile)
{
    const TempFolder folder;
    const std::string missing = folder.path("missing");
    const std::string empty = folder.write("empty", "");
    expectFailures(missing, missing + ": No such file or directory");
    expectFailures("", "'': No such file or directory");
    expectFailures(empty + "/file", empty + "/file: Not a directory");
}

TEST(ErrorMatrix, folder)
{
    const TempFolder folder;
    expectFailures(folder.path(""), folder.path("") + ": Is a directory");
}

// The administrator reads every file, so the program is run without that right.
TEST(ErrorMatrix, unreadableFile)
{
    const TempFolder folder;
    const std::string file = folder.write("locked", "1;2\n2;3\n4;5\n");
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    Words before;
    if (geteuid() == 0)
        before = {"setpriv", "--bounding-set", "-dac_override,-dac_read_search", wqstat()};
    else
        before = {wqstat()};
    const auto runs = [&before](const Words& words) {
        Words all = before;
        all.insert(all.end(), words.begin(), words.end());
        return runCommand(all);
    };
    if (runs({"--version"}).status != done) GTEST_SKIP() << "nothing takes the administrator's right to read everything away here";
    for (const AnalysisCommand& command : analyses)
        expectFailure(withFile(command.arguments, file), cannotAnalyse(file + ": Permission denied"), runs);
}

// ---------------------------------------------------------------- no data

TEST(ErrorMatrix, emptyFile)
{
    const TempFolder folder;
    const std::string file = folder.write("empty", "");
    expectFailures(file, file + ": no data");
    expectFailures("/dev/null", "/dev/null: no data");
    expectFailures("-", "standard input: no data");
}

TEST(ErrorMatrix, commentsOnly)
{
    const TempFolder folder;
    const std::string file = folder.write("comments", "# nothing\n\n# but # this\n");
    expectFailures(file, file + ": no data");
}

TEST(ErrorMatrix, tooFewObservations)
{
    const TempFolder folder;
    for (const AnalysisCommand& command : analyses) {
        std::string content;
        for (std::size_t n = 1; n < command.least; ++n) {
            content += command.goodLine + "\n";
            const std::string file = folder.write("data", content);
            expectFailure(withFile(command.arguments, file),
                          cannotAnalyse(file + ": " + (n == 1 ? "1 observation" : "2 observations") + ", at least " +
                                        std::to_string(command.least) + " are needed"),
                          [](const Words& words) { return run(words); });
        }
    }
}

// ---------------------------------------------------------------- bad data

// A file with a bad line in the middle, and what is wrong with it.
std::pair<std::string, std::string> withBadLine(const AnalysisCommand& command)
{
    const std::string good = command.goodLine + "\n";
    const std::string reason = command.badField == "1e999" ? "the number is out of range: '" : "a number is expected, not '";
    return {"# title\n\n" + good + good + good + command.badLine + "\n" + good + "worse;worse\n", ":6: " + reason + command.badField + "'"};
}

TEST(ErrorMatrix, badLineInTheMiddle)
{
    const TempFolder folder;
    for (const AnalysisCommand& command : analyses) {
        if (command.badField.empty()) continue;
        const auto [content, reason] = withBadLine(command);
        const std::string file = folder.write("data", content);
        expectFailure(withFile(command.arguments, file), cannotAnalyse(file + reason), [](const Words& words) { return run(words); });
    }
}

TEST(ErrorMatrix, badLineFromAPipe)
{
    for (const AnalysisCommand& command : analyses) {
        if (command.badField.empty()) continue;
        const TempFolder folder;
        const Feed pipe(folder);
        const auto [content, reason] = withBadLine(command);
        const std::string text = content;
        expectFailure(withFile(command.arguments, pipe.path()), cannotAnalyse(pipe.path() + reason), [&](const Words& words) {
            std::thread writer([&] { std::ofstream(pipe.path()) << text; });
            Outcome outcome = run(words);
            writer.join();
            return outcome;
        });
    }
}

TEST(ErrorMatrix, binaryFile)
{
    const TempFolder folder;
    const std::string program = folder.write("program", std::string("\x7f"
                                                                    "ELF\x02\x01\x01\0\0\0\n",
                                                                    11));
    expectFailures(program, program + ":1: there is a zero byte: this is no text file");
    const std::string archive =
        folder.write("archive", std::string("# a text\n# it seems\n4;\0\x08\n", 25));  // proves to be one only later
    expectFailures(archive, archive + ":3: there is a zero byte: this is no text file");
}

// ---------------------------------------------------------------- what the library would read otherwise than meant

struct Misread {
    int line;
    Words command;
    std::string content;
    std::string reason;  // behind the file's name
};

const std::string longLine = "2" + std::string(254, ' ') + "\n";

const Misread misreads[] = {
    // x is no number
    {__LINE__, {"pairs"}, "1;2\nNA;3\n", ":2: x is no number: 'NA'"},
    {__LINE__, {"anova"}, "1;2\nctrl;4.17\ntrt;4.81\n", ":2: x is no number: 'ctrl'"},
    {__LINE__, {"pairs"}, "1;2\n ;3\n", ":2: x is no number: ' '"},
    {__LINE__, {"pairs"}, "1;2\n1e999;3\n", ":2: x is too large a number: '1e999'"},
    {__LINE__, {"pairs"}, "1;2\n\r\n", ":2: the line holds only white space"},
    {__LINE__, {"regress", "--model", "linear"}, "1;2\n  \n", ":2: the line holds only white space"},
    // no y
    {__LINE__, {"pairs"}, "1;2\n3\n", ":2: there is no y: '3'"},
    {__LINE__, {"ks"}, "1;2\n3;\n", ":2: there is no y: '3;'"},
    {__LINE__, {"multiy"}, "1;2;3\n4\n", ":2: there is no y: '4'"},
    {__LINE__, {"multiy"}, "1;2\n3;4;1\n", ":1: no line has named a repeat count yet: '1;2'"},
    // blanks or commas as separators
    {__LINE__, {"pairs"}, "1;2\n3 4\n", ":2: x and y are separated by ':', ';' or '|' only: '3 4'"},
    {__LINE__, {"pairs"}, "1;2\n3\t4\n", ":2: x and y are separated by ':', ';' or '|' only: '3\\t4'"},
    {__LINE__, {"fit"}, "1,2\n3,4\n", ":1: x and y are separated by ':', ';' or '|' only: '1,2'"},
    {__LINE__, {"circular"}, "1 2\n", ":1: x and y are separated by ':', ';' or '|' only: '1 2'"},
    // an empty field
    {__LINE__, {"pairs"}, "1;2\n1;;3\n", ":2: an empty field: '1;;3'"},
    {__LINE__, {"pairs"}, "1;2\n;3\n", ":2: an empty field: ';3'"},
    {__LINE__, {"pairs"}, "1;2\n1;2;;\n", ":2: an empty field: '1;2;;'"},
    {__LINE__, {"pairs"}, "1;2\n;|:\n", ":2: an empty field: ';|:'"},
    {__LINE__, {"circular"}, "1;\n", ":1: an empty field: '1;'"},
    {__LINE__, {"multiy"}, "1;2;3\n1;2;\n", ":2: an empty field: '1;2;'"},
    // a decimal comma
    {__LINE__, {"describe"}, "1,5\n2,5\n", ":1: a decimal comma: '1,5'"},
    {__LINE__, {"circular"}, "1,5\n2,5\n", ":1: a decimal comma: '1,5'"},
    {__LINE__, {"circular"}, "1.5,2\n", ":1: x and y are separated by ':', ';' or '|' only: '1.5,2'"},
    {__LINE__, {"pairs"}, "1;2\n1,5;2\n", ":2: a decimal comma: '1,5'"},
    {__LINE__, {"pairs"}, "1;2\n1;2,5\n", ":2: a decimal comma: '2,5'"},
    {__LINE__, {"multiy"}, "1;2,5;1\n", ":1: a decimal comma: '2,5'"},
    // more behind a number
    {__LINE__, {"describe"}, "3.5 kg\n", ":1: text behind a number: '3.5 kg'"},
    {__LINE__, {"describe"}, "7;8\n", ":1: text behind a number: '7;8'"},
    {__LINE__, {"describe"}, "1.234,5\n", ":1: text behind a number: '1.234,5'"},
    {__LINE__, {"describe"}, "information\n", ":1: text behind a number: 'information'"},  // inf is a number
    {__LINE__, {"pairs"}, "1;2\n3 kg;4\n", ":2: text behind a number: '3 kg'"},
    {__LINE__, {"pairs"}, "1;2\n3;4 kg\n", ":2: text behind a number: '4 kg'"},
    {__LINE__, {"pairs"}, "1;2\n3;4;5\n", ":2: more than x and y: '3;4;5'"},
    {__LINE__, {"multiy"}, "1;2;1\n3;4;2;5\n", ":2: more than x, y and count: '3;4;2;5'"},
    {__LINE__, {"multiy"}, "1;2;1.5\n", ":1: text behind a number: '1.5'"},
    // a count that is none
    {__LINE__, {"multiy"}, "1;5;2\n2;9;-3\n", ":2: a count is expected, not '-3'"},
    {__LINE__, {"multiy"}, "1;5;2\n2;9; -3 \n", ":2: a count is expected, not '-3'"},
    {__LINE__, {"circular"}, "10;2.7\n30;1\n", ":1: a count is expected, not '2.7'"},
    {__LINE__, {"circular"}, "10;2\n30;-1\n", ":2: a count is expected, not '-1'"},
    {__LINE__, {"circular"}, "10;2\n 30 ; -1 \r\n", ":2: a count is expected, not '-1'"},
    {__LINE__, {"circular"}, "10;2\n30:1e-3\n", ":2: a count is expected, not '1e-3'"},
    {__LINE__, {"circular"}, "10;2\n30;nan\n", ":2: a count is expected, not 'nan'"},
    {__LINE__, {"circular"}, "10;0\n20;2\n30\n", ":3: there is no frequency, and one in line 2: '30'"},
    {__LINE__, {"circular"}, "10\n20;0\n# 3;4\n30;1\n", ":4: there is a frequency, and none in line 1: '30;1'"},
    // a number in a comment
    {__LINE__, {"describe"}, "4\n4.9 # outlier?\n", ":2: a number in a comment: '4.9 # outlier?'"},
    {__LINE__, {"pairs"}, "1;2\n-3;4 # why?\n", ":2: a number in a comment: '-3;4 # why?'"},
    // an end marker before the last data line
    {__LINE__, {"describe"}, "4\n<<1\n5\n6\n7\n", ":2: an end marker with a number: '<<1'"},
    {__LINE__, {"describe"}, "4\n5\n6\n<<\n\n# more\n7\n", ":4: '<<' ends the data, but there are more on line 7"},
    {__LINE__, {"pairs"}, "4;5\n<< end\n5;6\n", ":2: '<< end' ends the data, but there are more on line 3"},
    // long lines
    {__LINE__, {"describe"}, "1\n" + longLine + "3\n4\n", ":2: the line is longer than 254 characters"},
    {__LINE__, {"pairs"}, "1;2\n#" + longLine + "3;4\n", ":2: the line is longer than 254 characters"},
    // a byte order mark, UTF-16, gzip
    {__LINE__,
     {"describe"},
     "\xef\xbb\xbf"
     "1\n2\n3\n",
     ":1: the file begins with a byte order mark"},
    {__LINE__,
     {"correlate"},
     "\xef\xbb\xbf"
     "# pairs\n1;2\n2;4\n",
     ":1: the file begins with a byte order mark"},
    {__LINE__,
     {"describe"},
     std::string("\xff\xfe"
                 "1\0\n\0",
                 6),
     ":1: this is UTF-16: convert it, or name a column if it holds a table"},
    {__LINE__,
     {"pairs"},
     std::string("1\0;\0"
                 "2\0\n\0",
                 8),
     ":1: this is UTF-16: convert it, or name a column if it holds a table"},
    {__LINE__, {"describe"}, "\x1f\x8b\x08 and so on\n", ":1: this is gzip: unpack it, or name a column if it holds a table"},
    // tables
    {__LINE__,
     {"describe"},
     "plant,treatment,height_cm\n1,ctrl,4.17\n2,trt,5.1\n3,trt,5.2\n",
     " is a table with the columns plant, treatment, height_cm: name what to use, such as --column height_cm"},
    {__LINE__,
     {"anova"},
     "\xef\xbb\xbf"
     "plant;treatment;height cm\n1;ctrl;4,17\n2;trt;5,1\n3;trt;5,2\n",
     " is a table with the columns plant, treatment, height cm: name what to use, such as --group treatment --value 'height cm'"},
    {__LINE__,
     {"regress", "--model", "power"},
     "# made up\nx y\n1 2\n2 3\n3 5\n",
     " is a table with the columns x, y: name what to use, such as --x x --y y"},
    {__LINE__,
     {"pairs"},
     "# made up\nx y z\n1 2 3\n2 3 4\n",
     " is a table with the columns x, y, z: name what to use, such as --x y --y z"},
    {__LINE__,
     {"describe"},
     "plant,height in centimetres" + std::string(250, ' ') + ",leaves\n1,2.5,3\n2,2.75,4\n3,3,4\n",
     " is a table with the columns plant, height in centimetres, leaves: name what to use, such as --column leaves"},
    {__LINE__,
     {"pairs"},
     "# made up\nx y " + std::string(300, 'z') + "\n1 2 3\n2 3 4\n",
     " is a table with the columns x, y, " + std::string(200, 'z') + "...: name what to use, such as --x y --y 3"},
    {__LINE__,
     {"anova"},
     "treatment,height\nctrl,NA\nctrl,4.17\nctrl,5.18\ntrt,5.2\ntrt,5.58\n",
     " is a table with the columns treatment, height: name what to use, such as --group treatment --value height"},
    {__LINE__,
     {"correlate"},
     "site,2019,2020\na,5,1\nb,6,2\nc,5,4\n",
     " is a table with the columns site, 2019, 2020: name what to use, such as --x 2019 --y 2020"},
    {__LINE__,
     {"describe"},
     "plant,#leaves,height\na,3,4.17\nb,5,5.58\nc,4,5.2\n",
     " is a table with the columns plant, #leaves, height: name what to use, such as --column height"},
    {__LINE__,
     {"correlate"},
     "# made up\n#leaves;height\n3;4,17\n5;5,58\n4;5,2\n",
     " is a table with the columns #leaves, height: name what to use, such as --x '#leaves' --y height"},
    {__LINE__,
     {"anova"},
     "seed;colour\nround;yellow\nround;green\nwrinkled;yellow\n",
     " is a table with the columns seed, colour: name what to use, such as --group colour --value NAME"},
    {__LINE__, {"correlate"}, "a,a\n1,2\n3,5\n4,4\n", " is a table with the columns a, a: name what to use, such as --x 1 --y 2"},
    {__LINE__, {"fit"}, "o,e\n12,10\n8,10\n", " is a table with the columns o, e: name what to use, such as --observed o --expected e"},
    {__LINE__,
     {"describe"},
     "sep=;\nplant;height\na;4,17\nb;5,58\nc;5,2\n",
     " is a table with the columns plant, height: name what to use, such as --column height"},
    {__LINE__, {"describe"}, "height\n1\n2\n4\n", " is a table with the column height: name it with --column height"},
    {__LINE__, {"circular"}, "wind (deg)\r\n1\r\n2\r\n4\r\n", " is a table with the column wind (deg): name it with --column 'wind (deg)'"},
    {__LINE__, {"describe"}, "height\ntall\nsmall\n", ":1: a number is expected, not 'height'"},
    {__LINE__, {"pairs"}, "height\n1\n2\n4\n", ":1: x is no number: 'height'"},
    {__LINE__, {"describe"}, "no number\nand none\n", ":1: a number is expected, not 'no number'"},  // sentences
    {__LINE__, {"pairs"}, "ctrl;4.17\ntrt;4.81\n", ":1: x is no number: 'ctrl'"},                    // pairs without titles
    {__LINE__, {"ks"}, "class\ta\nx\t1\n", " is a table with the columns class, a: name what to use, such as --count1 a --count2 NAME"},
};

// What the hint for a table proposes can be typed as it stands.
void expectToRun(const Misread& row, const std::string& file)
{
    const std::string such = row.reason.find("name it with ") == std::string::npos ? "such as " : "name it with ";
    const std::size_t begin = row.reason.find(such);
    if (begin == std::string::npos || row.reason.find("NAME") != std::string::npos) return;
    const std::string line = wqstat() + " " + joined(row.command) + " " + row.reason.substr(begin + such.size()) + " " + file;
    const Outcome outcome = runCommand({"bash", "-c", line});
    EXPECT_EQ(outcome.status, done) << line << "\n" << outcome;
}

TEST(ErrorMatrix, whatTheLibraryWouldMisread)
{
    for (const Misread& row : misreads) {
        const TempFolder folder;
        const std::string file = folder.write("data", row.content);
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        expectFailure(with(row.command, {file}), cannotAnalyse(file + row.reason), [](const Words& words) { return run(words); });
        expectToRun(row, file);
    }
}

// ---------------------------------------------------------------- tables

// What a command has to be told of a table: of plant, treatment and height_cm, and of the columns a, b and g, of which g holds texts.
struct TableCommand {
    Words arguments;
    std::string ofPlants;
    Words columns;
};

const TableCommand tableCommands[] = {
    {{"describe"}, "--column height_cm", {"--column", "b"}},
    {{"frequency"}, "--column height_cm", {"--column", "b"}},
    {{"circular"}, "--column height_cm", {"--column", "b"}},
    {{"pairs"}, "--x plant --y height_cm", {"--x", "a", "--y", "b"}},
    {{"regress", "--model", "linear"}, "--x plant --y height_cm", {"--x", "a", "--y", "b"}},
    {{"regress", "--model", "logarithmic"}, "--x plant --y height_cm", {"--x", "b", "--y", "a"}},
    {{"regress", "--model", "exponential"}, "--x plant --y height_cm", {"--x", "a", "--y", "b"}},
    {{"regress", "--model", "power"}, "--x plant --y height_cm", {"--x", "a", "--y", "b"}},
    {{"correlate"}, "--x plant --y height_cm", {"--x", "a", "--y", "b"}},
    {{"anova"}, "--group treatment --value height_cm", {"--group", "g", "--value", "b"}},
    {{"multiy"}, "--x plant --y height_cm", {"--x", "a", "--y", "b"}},
    {{"fit"}, "--observed plant --expected height_cm", {"--observed", "a", "--expected", "b"}},
    {{"ks"}, "--count1 plant --count2 height_cm", {"--count1", "a", "--count2", "b"}},
};

TEST(ErrorMatrix, aTableWithoutAColumnNamed)
{
    const TempFolder folder;
    const std::string file = folder.write("plants.csv", "plant,treatment,height_cm\n1,ctrl,4.17\n2,ctrl,5.58\n3,compost,4.81\n");
    const std::string text = file + " is a table with the columns plant, treatment, height_cm: name what to use, such as ";
    const auto runs = [](const Words& words) { return run(words); };
    for (const TableCommand& command : tableCommands)
        expectFailure(with(command.arguments, {file}), cannotAnalyse(text + command.ofPlants), runs);
    const Outcome ofTwo = cannotAnalyse(text + "--value height_cm --group treatment");
    expectFailure({"variances", file, shipped("cavendish.txt")}, ofTwo, runs);
    expectFailure({"variances", shipped("cavendish.txt"), file}, ofTwo, runs);
}

TEST(ErrorMatrix, aCellThatIsNoValue)
{
    const struct {
        const char* cell;
        Words options;
        const char* reason;
    } rows[] = {
        {"<5", {}, "a number is expected, not '<5'"},         {"5 kg", {}, "a number is expected, not '5 kg'"},
        {"1e999", {}, "the number is out of range: '1e999'"}, {"NA", {"--na-error"}, "the value is missing: 'NA'"},
        {"", {"--na-error"}, "the value is missing: ''"},     {"NA", {"--na", "none"}, "a number is expected, not 'NA'"},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        const std::string file = folder.write("data.csv", std::string("a,b,g\n1,2,x\n2,") + row.cell + ",y\n3,4,x\n4,7,y\n");
        const Outcome expected = cannotAnalyse(file + ":3: b: " + row.reason);
        const auto runs = [](const Words& words) { return run(words); };
        for (const TableCommand& command : tableCommands)
            expectFailure(with(with(command.arguments, command.columns), with(row.options, {file})), expected, runs);
        expectFailure(with({"variances", "--value", "b", "--group", "g", file}, row.options), expected, runs);
        expectFailure(with({"variances", "--column", "b", file, file}, row.options), expected, runs);
    }
}

TEST(ErrorMatrix, aColumnThatIsNotThere)
{
    const TempFolder folder;
    const std::string file = folder.write("data.csv", "a,c,g\n1,2,x\n2,5,y\n3,4,x\n4,7,y\n");
    const Outcome expected = cannotAnalyse(file + ": there is no column 'b': the columns are a, c, g");
    const auto runs = [](const Words& words) { return run(words); };
    for (const TableCommand& command : tableCommands) expectFailure(with(with(command.arguments, command.columns), {file}), expected, runs);
    expectFailure({"variances", "--value", "b", "--group", "g", file}, expected, runs);
    expectFailure({"variances", "--column", "b", file, file}, expected, runs);
}

// One separator at the end of a line takes nothing away, nor does what is no number behind the end of the data.
TEST(ErrorMatrix, whatTheLibraryReadsAsMeantIsTaken)
{
    const struct {
        int line;
        Words command;
        std::string content;
    } rows[] = {
        {__LINE__, {"pairs"}, "1;2;\n3 : 4 |\n5|6\r\n"},
        {__LINE__, {"multiy"}, "1;2;1;\n3:4\n5|6|2 \n"},
        {__LINE__, {"multiy"}, "1;2;1\n3;4;0\n5;6;+2\n7;8;-0\n"},
        {__LINE__, {"circular"}, "1\n2\n"},
        {__LINE__, {"circular", "--bins", "4"}, "1;3\n2;0\n3 ; 4.0 \n1|1e1\n"},
        {__LINE__, {"describe"}, " 1\n+2.\n.5 \n0x1p3\n-inf\n1e-3\t\n<<\nnotes\n"},
        {__LINE__, {"describe"}, "#1\n # 2\nn = 3 # three values\n1\n2\n3\n"},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        const std::string file = folder.write("data", row.content);
        const Outcome outcome = run(with(row.command, {file}));
        EXPECT_EQ(outcome.status, done) << "row of line " << row.line << "\n" << outcome;
        EXPECT_THAT(outcome.errors, testing::Not(testing::HasSubstr(file))) << "row of line " << row.line;
    }
}

}  // namespace
