// Tables with named columns: every analysis prints the report that the same data give in the library's own format, and what cannot be
// read is said with file, line, column and text.
#include "commands.h"
#include "documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using namespace wq_test;

// ---------------------------------------------------------------- the same report

struct SameReport {
    int line;
    Words asFile;      // command and options; the file comes last
    std::string file;  // in the library's own format
    Words asTable;
    std::string table;
    std::string key;  // behind the report
};

const std::string plants = "plant,treatment,height_cm\n1,ctrl,4.17\n2,ctrl,5.58\n3,trt1,4.81\n4,trt1,4.41\n5,trt2,6.31\n6,trt2,5.12\n";
const std::string angles = "hour;births\n1;3\n2;0\n8;5\n";

const SameReport sameReports[] = {
    {__LINE__, {"describe"}, "4.17\n5.58\n4.81\n4.41\n6.31\n5.12\n", {"describe", "--column", "height_cm"}, plants, ""},
    {__LINE__, {"describe"}, "1\n2\n3\n4\n5\n6\n", {"describe", "--column", "1"}, plants, ""},
    {__LINE__,
     {"describe", "--mu", "2"},
     "1.5\n2.5\n4\n",
     {"describe", "--mu", "2", "--column", "2", "--no-header"},
     "a\t1,5\nb\t2,5\nc\t4\n",
     ""},
    // decimal commas and separators
    {__LINE__, {"describe"}, "1.5\n2.5\n4\n", {"describe", "--decimal-comma", "--no-header", "--column", "1"}, "1,5\n2,5\n4\n", ""},
    {__LINE__, {"describe"}, "1.5\n2.5\n4.5\n", {"describe", "--decimal-comma", "--no-header", "--column", "1"}, "1,5\n2,5\n4,5\n", ""},
    {__LINE__, {"describe"}, "1.5\n2.5\n4.5\n", {"describe", "--decimal-comma", "--column", "w"}, "w\n1,5\n2,5\n4,5\n", ""},
    {__LINE__, {"describe"}, "1\n2\n3\n", {"describe", "--no-header", "--column", "1"}, "1,5\n2,5\n3,5\n", ""},  // whole numbers
    {__LINE__,
     {"pairs"},
     "1.5;2.5\n3.5;4.5\n",
     {"pairs", "--decimal-comma", "--no-header", "--x", "1", "--y", "2"},
     "1,5 2,5\n3,5 4,5\n",
     ""},
    {__LINE__, {"pairs"}, "1.5;2.5\n3.5;4.5\n", {"pairs", "--no-header", "--x", "1", "--y", "2"}, "1,5 2,5\n3,5 4,5\n", ""},
    {__LINE__, {"circular"}, "1.5;0\n", {"circular", "--no-header", "--column", "1"}, "1,5 2,5\n", ""},
    {__LINE__, {"pairs"}, "1.5;2.5\n3.5;4.5\n", {"pairs", "--no-header", "--x", "1", "--y", "2"}, "1,5\t2,5\n3,5\t4,5\n", ""},
    {__LINE__, {"pairs"}, "1;2\n3;4\n", {"pairs", "--no-header", "--x", "1", "--y", "2"}, "1 , 2\n3 , 4\n", ""},
    {__LINE__, {"describe"}, "7\n8\n9\n", {"describe", "--column", "2"}, "pop total,n\n12 345,7\n12 346,8\n12 350,9\n", ""},
    {__LINE__, {"describe"}, "7\n8\n9\n", {"describe", "--column", "leaves"}, "plot no,leaves\n1 1,7\n1 2,8\n1 3,9\n", ""},
    {__LINE__,
     {"describe"},
     "3.125\n4.250\n5.125\n",
     {"describe", "--column", "value", "--decimal-point"},
     "id;groups;value\n1;1,2;3.125\n2;2,3;4.250\n3;1,3;5.125\n",
     ""},
    {__LINE__,
     {"describe"},
     "3.125\n4.25\n5.125\n",
     {"describe", "--column", "value"},
     "groups;value\n1,2;3.125\n2,3;4.25\n1,3;5.125\n",
     ""},
    {__LINE__, {"pairs"}, "1.5;2\n3.5;4\n", {"pairs", "--decimal-comma", "--x", "x", "--y", "y"}, "x,y\n\"1,5\",2\n\"3,5\",4\n", ""},
    // titles that are numbers, by name or declared; a number in place of a title that no used column has
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "2020"}, "site,2019,2020\na,5,1\nb,5,2\nc,5,4\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--header", "--column", "3"}, "site,2019,2020\na,5,1\nb,5,2\nc,5,4\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "2"}, "2019,w\n5,1\n5,2\n5,4\n", ""},
    {__LINE__, {"describe"}, "4\n1\n2\n", {"describe", "--no-header", "--column", "2"}, "a,4\nb,1\nc,2\n", ""},
    // a line that names the separator
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "b,c"}, "sep=;\r\na;b,c\r\n1;1\r\n2;2\r\n3;4\r\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "2"}, "sep=!\n# made up\na!b\n1!1\n2!2\n3!4\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "sep=b"}, "a,sep=b\n1,1\n2,2\n3,4\n", ""},
    // comments before the header
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "x"}, "# made up\nx y\n1 2\n2 3\n4 4\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "x"}, "# made up\nx y z\n1 2 3\n2 3 3\n4 4 3\n", ""},  // three words
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "w"}, "# made up\nw\n1\n2\n4\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "x"}, "# \"a\", b\r\n\r\n#\r\nx,y\r\n1,2\r\n2,3\r\n4,4\r\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "2", "--no-header"}, "# made up\na,1\nb,2\nc,4\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "#x"}, "#x,y\n1,2\n2,3\n4,4\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "2"}, "# of plants\n#x,y\n1,1\n2,2\n4,4\n", ""},
    {__LINE__, {"describe"}, "1\n2\n4\n", {"describe", "--column", "2", "--no-header"}, "#1,1\n#2,2\n#3,4\n", ""},
    // a decimal comma in another column
    {__LINE__, {"describe"}, "1.234\n2.345\n3.146\n", {"describe", "--column", "x"}, "x;y\n1,234;2,5\n2,345;3,5\n3,146;4\n", ""},
    // numbers with points beside texts, and beside numbers with the other mark
    {__LINE__, {"describe"}, "1.234\n2.345\n3.5\n", {"describe", "--column", "x"}, "x;y\n1.234;2,5\n2.345;ca. 3,5\n3.5;4\n", ""},
    {__LINE__, {"describe"}, "1.234\n2.345\n3.5\n", {"describe", "--column", "x"}, "x;y\n1.234;2,5\n2.345;3,5\n3.5;4\n", ""},
    {__LINE__, {"frequency"}, "1\n2\n2\n5\n", {"frequency", "--column", "v"}, "v\n1\n2\n2\n5\n", ""},
    {__LINE__, {"frequency"}, "1\n2\n2\n5\n", {"frequency", "--column", "v", "--count", "n"}, "v,n\n1,1\n2,2\n3,0\n5,1\n", ""},
    {__LINE__, {"pairs"}, "1;2\n2;4.5\n3;5\n", {"pairs", "--x", "a", "--y", "b"}, "b|a\n2|1\n4.5|2\n5|3\n", ""},
    {__LINE__,
     {"regress", "--model", "power"},
     "1;2\n2;4.5\n3;5\n",
     {"regress", "--model", "power", "--x", "2", "--y", "1"},
     "b a\n2 1\n4.5 2\n5 3\n",
     ""},
    {__LINE__, {"correlate"}, "1;2\n2;4.5\n3;5\n", {"correlate", "--x", "a", "--y", "b"}, "a,b\n1,2\n2,4.5\n3,5\n", ""},
    {__LINE__,
     {"anova", "--details"},
     "1;4.17\n1;5.58\n2;4.81\n2;4.41\n3;6.31\n3;5.12\n",
     {"anova", "--details", "--group", "treatment", "--value", "height_cm"},
     plants,
     "group 1: ctrl\ngroup 2: trt1\ngroup 3: trt2\n"},
    {__LINE__,
     {"anova"},
     "1;2\n2;3\n1;2.5\n2;5\n",
     {"anova", "--group", "g", "--value", "v"},
     "g,v\n0.5,2\n0.1,3\n0.5,2.5\n0.1,5\n",
     "group 1: 0.5\ngroup 2: 0.1\n"},
    {__LINE__, {"multiy"}, "1;5;1\n1;6;1\n2;7;1\n2;9;1\n", {"multiy", "--x", "a", "--y", "b"}, "a,b\n1,5\n1,6\n2,7\n2,9\n", ""},
    {__LINE__, {"multiy"}, "1;5;2\n1;6;1\n2;7;3\n", {"multiy", "--x", "a", "--y", "b", "--count", "n"}, "a,b,n\n1,5,2\n1,6,1\n2,7,3\n", ""},
    {__LINE__, {"fit"}, "12;10\n8;10\n", {"fit", "--observed", "o", "--expected", "e"}, "o,e\n12,10\n8,10\n", ""},
    {__LINE__,
     {"fit", "--yates"},
     "3;3.75\n2;1.25\n",
     {"fit", "--yates", "--column", "seed", "--ratio", "3:1"},
     "seed\nround\nround\nwrinkled\nround\nwrinkled\n",
     "class 1: round\nclass 2: wrinkled\n"},
    {__LINE__, {"fit"}, "31;28.5\n7;9.5\n", {"fit", "--column", "n", "--ratio", "3:1"}, "seed,n\nround,31\nwrinkled,7\n", ""},
    {__LINE__, {"fit"}, "3;2\n1;2\n", {"fit", "--column", "coin", "--ratio", "1:1"}, "coin\n1\n0\n1\n1\n", "class 1: 1\nclass 2: 0\n"},
    {__LINE__,
     {"ks", "--frequencies"},
     "3;1\n2;4\n1;2\n",
     {"ks", "--frequencies", "--count1", "a", "--count2", "b"},
     "a,b\n3,1\n2,4\n1,2\n",
     ""},
    {__LINE__,
     {"ks"},
     "3;1\n2;4\n",
     {"ks", "--class", "size", "--count1", "a", "--count2", "b"},
     "size,a,b\nsmall,3,1\nlarge,2,4\n",
     "class 1: small\nclass 2: large\n"},
    // The values 1, 2, 2.5, 3 and 4 are a class each.
    {__LINE__,
     {"ks", "--frequencies"},
     "1;0\n2;1\n0;1\n0;2\n1;0\n",
     {"ks", "--frequencies", "--column", "p", "--column2", "q"},
     "p,q\n4,3\n2,2.5\n1,2\n2,3\n",
     "sample 1: p\nsample 2: q\n"},
    {__LINE__, {"ks"}, "1;0\n1;2\n", {"ks", "--value", "v", "--group", "g"}, "g,v\nx,2\ny,2\nx,1\ny,2\n", "sample 1: x\nsample 2: y\n"},
    {__LINE__, {"ks"}, "1;0\n0;1\n0;1\n", {"ks", "--column", "p", "--column2", "q"}, "p,q\n1,2\n,3\n", "sample 1: p\nsample 2: q\n"},
    {__LINE__,
     {"circular", "--unit", "degrees"},
     "10;0\n20;0\n350;0\n",
     {"circular", "--unit", "degrees", "--column", "a"},
     "a\n10\n20\n350\n",
     ""},
    {__LINE__,
     {"circular", "--unit", "bins", "--bins", "24"},
     "1;3\n2;0\n8;5\n",
     {"circular", "--unit", "bins", "--bins", "24", "--column", "hour", "--count", "births"},
     angles,
     ""},
};

TEST(Tables, everyAnalysisPrintsTheReportOfTheSameData)
{
    const TempFolder folder;
    for (const SameReport& row : sameReports) {
        const Outcome expected = run(with(row.asFile, {folder.write("data.txt", row.file)}));
        ASSERT_EQ(expected.status, done) << "row of line " << row.line << "\n" << expected;
        Outcome table = run(with(row.asTable, {folder.write("data.csv", row.table)}));
        const std::size_t key = row.key.empty() ? std::string::npos : table.output.find(row.key);
        if (!row.key.empty()) {
            ASSERT_NE(key, std::string::npos) << "row of line " << row.line << "\n" << table;
            table.output.erase(key, row.key.size());
        }
        EXPECT_EQ(table, expected) << "row of line " << row.line;
    }
}

TEST(Tables, variancesOfTwoColumnsTwoGroupsAndTwoTables)
{
    const TempFolder folder;
    const std::string first = folder.write("first.txt", "1\n2\n4\n");
    const std::string second = folder.write("second.txt", "3\n7\n8\n");
    const std::string columns = folder.write("columns.csv", "a,b\n1,3\n2,7\n4,8\n");
    const std::string groups = folder.write("groups.csv", "g,v\nx,1\nx,2\ny,3\nx,4\ny,7\ny,8\n");
    const std::string other = folder.write("other.csv", "n,a\n1,3\n2,7\n3,8\n");
    const Outcome expected = run({"variances", first, second});
    ASSERT_EQ(expected.status, done);
    EXPECT_EQ(run({"variances", "--column", "a", columns, other}).output, expected.output);
    EXPECT_EQ(run({"variances", "--column", "a", "--column2", "b", columns}).output, expected.output + "sample 1: a\nsample 2: b\n");
    EXPECT_EQ(run({"variances", "--value", "v", "--group", "g", groups}).output, expected.output + "sample 1: x\nsample 2: y\n");
}

// The file is read in blocks of 64 KiB: here the last one holds a line and one more that has no end.
TEST(Tables, aLastLineWithoutAnEndIsReadBehindABlock)
{
    std::string text = "w\n";
    while (text.size() < 65536) text += "1\n";
    const TempFolder folder;
    const Outcome outcome = run({"describe", "--column", "w", folder.write("data.csv", text + "7\n12345678")});
    EXPECT_THAT(outcome.output, testing::HasSubstr("sample size     : 32769\n"));
    EXPECT_THAT(outcome.output, testing::HasSubstr("maximum value   : 1.23457e+07\n"));
}

// ---------------------------------------------------------------- what cannot be read

struct BadTable {
    int line;
    Words arguments;
    std::string table;
    std::string reason;  // behind the file's name
};

const BadTable badTables[] = {
    // columns
    {__LINE__, {"describe", "--column", "height"}, plants, ": there is no column 'height': the columns are plant, treatment, height_cm"},
    {__LINE__, {"describe", "--column", "4"}, plants, ": there is no column '4': the columns are plant, treatment, height_cm"},
    {__LINE__, {"describe", "--column", "0"}, plants, ": there is no column '0': the columns are plant, treatment, height_cm"},
    {__LINE__, {"describe", "--column", "3", "--no-header"}, "1,2\n", ": there is no column '3': there are 2 columns"},
    {__LINE__, {"describe", "--column", "a"}, "a,a\n1,2\n", ": there are several columns 'a': name the one that is meant by its number"},
    // cells
    {__LINE__, {"describe", "--column", "2"}, plants, ":2: treatment: a number is expected, not 'ctrl'"},
    {__LINE__, {"describe", "--column", "w"}, "w\n1\n2 kg\n", ":3: w: a number is expected, not '2 kg'"},
    {__LINE__, {"describe", "--column", "w"}, "w\n1\n<1\n", ":3: w: a number is expected, not '<1'"},
    {__LINE__, {"describe", "--column", "w"}, "w\n1\n0x10\n", ":3: w: a number is expected, not '0x10'"},
    {__LINE__, {"describe", "--column", "w"}, "w\n1\n1e999\n", ":3: w: the number is out of range: '1e999'"},
    {__LINE__, {"describe", "--column", "w"}, "w;x\n1;a\n1.2.3;b\n", ":3: w: a number is expected, not '1.2.3'"},
    {__LINE__, {"describe", "--column", "w"}, "w\n\"1\n\"\n", ":2: w: a number is expected, not '1\\x0a'"},
    {__LINE__, {"describe", "--column", "w", "--na", "x"}, "w\n1\nNA\n", ":3: w: a number is expected, not 'NA'"},
    {__LINE__, {"describe", "--column", "w", "--na-error"}, "w\n1\n\"\"\n", ":3: w: the value is missing: ''"},
    {__LINE__, {"describe", "--column", "w", "--na-error"}, "w\n1\nN/A\n", ":3: w: the value is missing: 'N/A'"},
    {__LINE__, {"frequency", "--column", "w", "--count", "n"}, "w,n\n1,2\n2,-1\n", ":3: n: a count is expected, not '-1'"},
    {__LINE__, {"frequency", "--column", "w", "--count", "n"}, "w,n\n1,2\n2,1.5\n", ":3: n: a count is expected, not '1.5'"},
    // decimal points and commas
    {__LINE__, {"describe", "--column", "w"}, "w;x\n1,5;1\n2.5;1\n", ":3: w: '2.5' has a decimal point, but '1,5' on line 2 a comma"},
    {__LINE__, {"describe", "--column", "w"}, "w;x\n1.5;1\n2,5;1\n", ":3: w: '2,5' has a comma, but '1.5' on line 2 a decimal point"},
    {__LINE__,
     {"describe", "--column", "w", "--decimal-comma"},
     "w;x\n1;1\n2.5;1\n",
     ":3: w: a number with a decimal comma is expected, not '2.5'"},
    {__LINE__,
     {"describe", "--column", "w"},
     "w\tx\n1\t1\n1,234\t1\n",
     ":3: '1,234' may have a decimal comma or a comma between thousands: --decimal-comma takes it for the former"},
    {__LINE__,
     {"describe", "--column", "einwohner"},
     "stadt;einwohner;quote\nA;1.234;4,5\nB;12.345;3,5\nC;2.500;2,5\n",
     ":2: '1.234' may have a decimal point or one between thousands, as '4,5' on line 2 has a decimal comma: --decimal-point takes it for "
     "the former"},
    {__LINE__,
     {"describe", "--column", "einwohner"},
     "zeit;einwohner;quote\n9.45;1.234;4,5\n10.15;12.345;3,5\n11.30;2.500;2,5\n",
     ":2: '1.234' may have a decimal point or one between thousands, as '4,5' on line 2 has a decimal comma: --decimal-point takes it for "
     "the former"},
    {__LINE__,
     {"describe", "--column", "1", "--no-header"},
     "1;NA\n12.345;1,234\n2.500;3,25\n",
     ":2: '12.345' may have a decimal point or one between thousands, as '3,25' on line 3 has a decimal comma: --decimal-point takes it "
     "for the former"},
    {__LINE__,
     {"describe", "--column", "x"},
     "x;y\n1,234;2.5\n2,345;2\n3,146;4\n",
     ":2: '1,234' may have a decimal comma or a comma between thousands: --decimal-comma takes it for the former"},
    // rows
    {__LINE__, {"describe", "--column", "w"}, "w\n1,5\n2,5\n", ":2: 2 fields, where the header has 1: with --decimal-comma '1,5' is one"},
    {__LINE__, {"describe", "--column", "w"}, "sep=;\nw;x\n1;2\nNo;3\n", ":4: w: a number is expected, not 'No'"},
    {__LINE__,
     {"describe", "--column", "w"},
     "sep=;\nw;x\n1;2,5\n1.250;3\n",
     ":4: '1.250' may have a decimal point or one between thousands, as '2,5' on line 3 has a decimal comma: --decimal-point takes it for "
     "the former"},
    {__LINE__, {"describe", "--column", "w"}, "w\n1,a\n", ":2: 2 fields, where the header has 1"},
    {__LINE__,
     {"describe", "--column", "w"},
     "# made up\n\nw;x\n1,5;2.5\n2.5;3\n",
     ":5: w: '2.5' has a decimal point, but '1,5' on line 4 a comma"},
    {__LINE__,
     {"describe", "--column", "w"},
     "# made up\n\nw;x\n2.500;1\n2;3,5\n",
     ":4: '2.500' may have a decimal point or one between thousands, as '3,5' on line 5 has a decimal comma: --decimal-point takes it for "
     "the former"},
    {__LINE__, {"describe", "--column", "2"}, "#plant,h\nA,<0.1\nB,2\nB,3\n", ":2: h: a number is expected, not '<0.1'"},
    {__LINE__, {"describe", "--column", "1"}, "#n\n<5\n6\n7\n", ":2: #n: a number is expected, not '<5'"},
    {__LINE__,
     {"describe", "--column", "2"},
     "year\tpop total\n2019\t12 345\n2020\t12 346\n",
     ":2: pop total: a number is expected, not '12 345'"},
    {__LINE__,
     {"describe", "--column", "2"},
     "# made up\n1;2\n2;3\n3;4\n",
     ":2: the first line holds numbers only: --no-header takes the line for data, --header for the names of the columns"},
    {__LINE__, {"describe", "--column", "w"}, "# made up\n", ": there is no column 'w': the columns are #, made, up"},
    {__LINE__, {"describe", "--column", "w", "--separator", "tab"}, "w\n1\t5\n", ":2: 2 fields, where the header has 1"},
    {__LINE__, {"describe", "--column", "a", "--decimal-comma"}, "a,b\n1,5\n2,5\n", ": there is no column 'a': the columns are a,b"},
    {__LINE__, {"describe", "--column", "w"}, "w,x\n1,2\n3\n", ":3: 1 field, where the header has 2"},
    {__LINE__, {"describe", "--column", "w"}, "w,x\n1,2\n\n3,4,5\n", ":4: 3 fields, where the header has 2"},
    {__LINE__, {"describe", "--column", "1", "--no-header"}, "1,2\n3\n", ":2: 1 field, where the first line has 2"},
    {__LINE__,
     {"describe", "--column", "1"},
     "1,2\n3,4\n",
     ":1: the first line holds numbers only: --no-header takes the line for data, --header for the names of the columns"},
    {__LINE__,
     {"describe", "--column", "2"},
     "ctrl,4.17\nctrl,5.58\ntrt,5\ntrt,6\n",
     ":1: the title of column 2 is the number '4.17': --no-header takes the line for data, --header for the names of the columns"},
    {__LINE__,
     {"anova", "--group", "1", "--value", "2"},
     "\nctrl;4,17\nctrl;5,58\ntrt;5\ntrt;6\n",
     ":2: the title of column 2 is the number '4,17': --no-header takes the line for data, --header for the names of the columns"},
    {__LINE__,
     {"frequency", "--column", "w", "--count", "3"},
     "a,w,3.5\nb,1,2\nb,2,2\n",
     ":1: the title of column 3 is the number '3.5': --no-header takes the line for data, --header for the names of the columns"},
    // quotes
    {__LINE__,
     {"describe", "--column", "1"},
     "w\n1\n2\"\n",
     ":3: a quote inside a field: a field with quotes stands in quotes as a whole, and they are doubled in it"},
    {__LINE__, {"describe", "--column", "1"}, "w\n1\n\"2\n3\n", ":3: the quotes that open a field here are not closed"},
    // files
    {__LINE__, {"describe", "--column", "w"}, "", ": no data"},
    {__LINE__, {"describe", "--column", "w"}, "w\n", ": no data"},
    {__LINE__, {"describe", "--column", "w"}, "w\n1\n2\n", ": 2 observations, at least 3 are needed"},
    {__LINE__,
     {"describe", "--column", "w"},
     "w\n1\nNA\n2\n",
     ": 2 observations, at least 3 are needed (1 of 3 rows left out: a value is missing)"},
    {__LINE__, {"describe", "--column", "w"}, std::string("w\n1\n\0", 5), ":3: there is a zero byte: this is no text file"},
    {__LINE__, {"describe", "--column", "w"}, "\x1f\x8b\x08nonsense and more of it", ": the gzip file is damaged"},
    {__LINE__, {"describe", "--column", "w"}, std::string("\xff\xfew\0\n", 5), ": the text is no valid UTF-16"},
    // classes and samples
    {__LINE__,
     {"fit", "--column", "n", "--ratio", "9:3:3:1"},
     "c,n\nA,9\nB,3\nC,3\n",
     ": n has 3 numbers, 2 of them different, but --ratio has 4 parts"},
    {__LINE__,
     {"fit", "--column", "n", "--ratio", "9:3:3:1"},
     "c,n\nA,90\nB,30\nC,30\nD,-3\n",
     ": n, row 4: a count is expected, not '-3'"},
    {__LINE__,
     {"fit", "--column", "n", "--ratio", "9:3:3:1"},
     "c,n\nA,90\nB,30\nC,NA\nD,10\nE,5\n",
     ": n lacks 1 count, and each part of --ratio is met by the row at its place"},
    {__LINE__,
     {"fit", "--column", "n", "--ratio", "9:3:3:1"},
     "c,n\nA,90\nB,30\nC,30\nD,\n",
     ": n lacks 1 count, and each part of --ratio is met by the row at its place"},
    {__LINE__, {"fit", "--column", "c", "--ratio", "1:1"}, "c\na\nb\nc\n", ": c has 3 classes, but --ratio has 2 parts"},
    {__LINE__,
     {"fit", "--column", "1", "--ratio", "1:1"},
     "\"c\x1b[31m\"\na\nb\nc\n",
     ": c\\x1b[31m has 3 classes, but --ratio has 2 parts"},
    {__LINE__,
     {"ks", "--class", "c", "--count1", "a", "--count2", "b"},
     "c,a,b\nx,1,2\ny,1,1\nx,1,3\n",
     ": 'x' stands in c more than once"},
    {__LINE__, {"variances", "--value", "v", "--group", "g"}, "g,v\na,1\nb,2\nc,3\n", ": g has 3 groups, exactly two are needed"},
    {__LINE__, {"ks", "--value", "v", "--group", "g"}, "g,v\na,1\na,2\n", ": g has 1 group, exactly two are needed"},
    {__LINE__,
     {"variances", "--value", "v", "--group", "g"},
     "g,v\na,1\nb,2\na,3\nb,3\na,1\n",
     ": b: 2 observations, at least 3 are needed"},
    {__LINE__,
     {"variances", "--column", "a\x1b[1m", "--column2", "b"},
     "a\x1b[1m,b\n1,2\nNA,3\n2,3\n",
     ": a\\x1b[1m: 2 observations, at least 3 are needed"},
    {__LINE__, {"ks", "--column", "a", "--column2", "b"}, "a,b\n1,NA\n2,NA\n", ": b: no data"},
};

TEST(Tables, whatCannotBeReadIsNamed)
{
    const TempFolder folder;
    for (const BadTable& row : badTables) {
        const std::string file = folder.write("data.csv", row.table);
        EXPECT_EQ(run(with(row.arguments, {file})), cannotAnalyse(file + row.reason)) << "row of line " << row.line;
    }
}

TEST(Tables, aSampleThatIsTooSmallIsNamedByItsFile)
{
    const TempFolder folder;
    const std::string few = folder.write("few.csv", "v\n1\n2\n");
    const std::string enough = folder.write("enough.csv", "v\n1\n2\n4\n");
    const Outcome expected = cannotAnalyse(few + ": 2 observations, at least 3 are needed");
    EXPECT_EQ(run({"variances", "--column", "v", few, enough}), expected);
    EXPECT_EQ(run({"variances", "--column", "v", enough, few}), expected);
}

TEST(Tables, filesThatCannotBeOpened)
{
    const TempFolder folder;
    const std::string missing = folder.path("missing");
    EXPECT_EQ(run({"describe", "--column", "1", missing}), cannotAnalyse(missing + ": No such file or directory"));
    EXPECT_EQ(run({"describe", "--column", "1", folder.path("")}), cannotAnalyse(folder.path("") + ": Is a directory"));
    EXPECT_EQ(run({"describe", "--column", "1", ""}), cannotAnalyse("'': No such file or directory"));
}

TEST(Tables, columnsThatDoNotFitTogether)
{
    const struct {
        int line;
        Words arguments;
        std::string reason;
    } rows[] = {
        {__LINE__, {"pairs", "--x", "a", "data.csv"}, "--y is needed, the column of y"},
        {__LINE__, {"anova", "--value", "a", "data.csv"}, "--group is needed, the column of the groups, which may be texts"},
        {__LINE__, {"frequency", "--count", "a", "data.csv"}, "--column is needed, the column of the values"},
        {__LINE__, {"describe", "--na-error", "data.csv"}, "--na-error is for tables: name a column, such as --column NAME"},
        {__LINE__, {"pairs", "--separator", "comma", "data.csv"}, "--separator is for tables: name a column, such as --x NAME"},
        {__LINE__,
         {"describe", "--column", "a", "--separator", "ab", "data.csv"},
         "--separator: 'ab' is none of comma, semicolon, tab, bar and blanks, nor one character"},
        {__LINE__, {"describe", "--column", "", "data.csv"}, "--column: the name of a column is needed"},
        {__LINE__, {"fit", "--column", "a", "data.csv"}, "--column and --ratio go together"},
        {__LINE__, {"fit", "--column", "a", "--ratio", "3:0", "data.csv"}, "--ratio: '3:0' is not a ratio of positive numbers"},
        {__LINE__, {"fit", "--column", "a", "--ratio", "3:x", "data.csv"}, "--ratio: 'x' is not a number"},
        {__LINE__,
         {"fit", "--column", "a", "--ratio", "3:1", "--observed", "b", "data.csv"},
         "--column and --ratio stand in place of --observed and --expected"},
        {__LINE__, {"variances", "--column", "a", "data.csv"}, "--column: a second file is needed, or --column2"},
        {__LINE__, {"variances", "--column", "a", "data.csv", "b.csv", "c.csv"}, "two FILEs are needed, one for each sample, not 3"},
        {__LINE__, {"ks", "--column", "a", "data.csv", "b.csv", "--by", "c"}, "--by: both samples have to be in one table"},
        {__LINE__, {"describe", "--by", "site", "data.csv"}, "--by is for tables: name a column, such as --column NAME"},
        {__LINE__,
         {"variances", "--value", "a", "--group", "b", "--column", "c", "data.csv"},
         "--value and --group stand in place of --column"},
        {__LINE__,
         {"ks", "--count1", "a", "--column", "b", "--column2", "c", "data.csv"},
         "--class, --count1 and --count2 are for counts, not for the values of two samples"},
    };
    for (const auto& row : rows) EXPECT_EQ(run(row.arguments), refused(row.reason, row.arguments.front())) << "row of line " << row.line;
}

// ---------------------------------------------------------------- what is said besides

// A block with quotes is read line by line, and its last line is cut by the block's end; the next block is plain.
TEST(Tables, plainBlocksBehindQuotedOnesAreReadOnce)
{
    const TempFolder folder;
    std::string text = "x,y\n\"1\",1\n";
    for (int i = 2; i <= 60000; ++i) text += std::to_string(i) + "," + std::to_string(i) + "\n";
    const Json result = documentOf({"describe", "--column", "y", folder.write("data.csv", text)}).at("result");
    EXPECT_EQ(result.at("n"), 60000);
    EXPECT_EQ(result.at("mean"), 30000.5);
    EXPECT_EQ(result.at("max"), 60000.0);
}

TEST(Tables, rowsWithMissingValuesAreCountedByColumn)
{
    const TempFolder folder;
    const std::string file = folder.write("data.csv", "g,v,w\na,1,2\n-,2,3\nb,NA,.\nb,4,\n,NaN,5\na,2,1\nb,3,3\n");
    const Outcome anova = run({"anova", "--group", "g", "--value", "v", file});
    EXPECT_EQ(anova.errors, "wqstat: " + file + ": warning: 3 of 7 rows left out, missing values: g 2, v 2\n");
    const Outcome all = run({"describe", "--column", "v", "--na", "none", folder.write("whole.csv", "v\n1\n2\n-3\n")});
    EXPECT_EQ(all.errors, "");
}

// The last rows stand in the order in which the remaining labels appear, so they have the numbers that the table without the others gives.
TEST(Tables, labelsOfRowsLeftOutAreNone)
{
    const struct {
        int line;
        Words arguments;
        std::string whole;
        std::string table;  // the same with rows that lack a value
        std::string leftOut;
    } rows[] = {
        {__LINE__,
         {"ks", "--class", "c", "--count1", "a", "--count2", "b"},
         "c,a,b\nx,1,2\nz,4,5\n",
         "c,a,b\nx,1,2\ny,,3\nz,4,5\n",
         "1 of 3 rows left out, missing values: a 1"},
        {__LINE__,
         {"ks", "--class", "c", "--count1", "a", "--count2", "b"},
         "c,a,b\nx,1,2\nz,4,5\n",
         "c,a,b\nx,NA,2\nx,1,2\nz,4,5\n",
         "1 of 3 rows left out, missing values: a 1"},
        {__LINE__,
         {"anova", "--group", "g", "--value", "v"},
         "g,v\nA,2\nA,3\nB,5\nB,6\n",
         "g,v\nZ,NA\nA,2\nA,3\nB,5\nB,6\n",
         "1 of 5 rows left out, missing values: v 1"},
        {__LINE__,
         {"anova", "--group", "g", "--value", "v"},
         "g,v\nB,5\nA,2\nA,3\nB,6\n",
         "g,v\nA,.\nB,5\nA,2\nA,3\nB,6\n",
         "1 of 5 rows left out, missing values: v 1"},
        {__LINE__,
         {"variances", "--group", "g", "--value", "v"},
         "g,v\nA,2\nA,3\nA,7\nB,5\nB,6\nB,7\n",
         "g,v\nA,2\nA,3\nA,7\nZ,\nB,5\nB,6\nB,7\n",
         "1 of 7 rows left out, missing values: v 1"},
        {__LINE__,
         {"anova", "--group", "g", "--value", "v", "--by", "s"},
         "s,g,v\n1,A,2\n1,A,3\n1,B,5\n1,B,6\n",
         "s,g,v\n1,Z,NA\n1,A,2\n1,A,3\n1,B,5\n1,B,6\n",
         "1 of 5 rows left out, missing values: v 1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const TempFolder folder;
        const std::string file = folder.write("data.csv", row.whole);
        const Outcome plain = run(with(row.arguments, {file}));
        const std::string document = run(with(row.arguments, {"--json", file})).output;
        ASSERT_EQ(plain.status, done) << plain;
        folder.write("data.csv", row.table);
        const Outcome outcome = run(with(row.arguments, {file}));
        EXPECT_EQ(outcome.output, plain.output);
        EXPECT_THAT(outcome.errors, testing::HasSubstr(row.leftOut));
        const std::string text = run(with(row.arguments, {"--json", file})).output;
        const std::string warnings = "\"warnings\":";  // that rows were left out is said there
        EXPECT_EQ(text.substr(0, text.find(warnings)), document.substr(0, document.find(warnings)));
    }
}

// In Latin-1 and in UTF-8.
TEST(Tables, labelsInOtherEncodingsStayApart)
{
    const TempFolder folder;
    const std::string umlauts = "g,v\nM\xfcller,1\nM\xf6ller,2\nM\xfcller,3\nM\xf6ller,5\nM\xc3\xbcller,5\n";
    const std::string page = folder.path("page.html");
    const Words words = {"anova", "--group", "g", "--value", "v", folder.write("data.csv", umlauts)};
    EXPECT_THAT(run(words).output, testing::EndsWith("\ngroup 1: M\xfcller\ngroup 2: M\xf6ller\ngroup 3: M\xc3\xbcller\n"));
    EXPECT_EQ(documentOf(words).at("table").at("labels"), Json({"M\\xfcller", "M\\xf6ller", "M\xc3\xbcller"}));
    ASSERT_EQ(run(with(words, {"--html", page})).status, done);
    for (const char* const label : {"M\\xfcller", "M\\xf6ller", "M\xc3\xbcller"})
        EXPECT_THAT(contentOf(page), testing::HasSubstr(label)) << label;
}

// Which may be why it could not be read.
TEST(Tables, verboseTellsHowAFileWasReadThatFails)
{
    const TempFolder folder;
    const std::string file = folder.write("data.csv", "a\n1,5\n2,5\n4,5\n");
    const std::string found = "wqstat: " + file + ": separator comma, decimal point, columns a\n";
    for (const Words& words : {Words{"describe", "--column", "a", file}, Words{"describe", "--column", "b", file},
                               Words{"describe", "--column", "a", "--by", "a", file}}) {
        const Outcome silent = run(words);
        EXPECT_EQ(silent.status, couldNotAnalyse);
        EXPECT_EQ(run(with(words, {"--verbose"})), (Outcome{silent.status, "", found + silent.errors})) << wq_test::joined(words);
    }
    const std::string missing = folder.path("missing.csv");
    EXPECT_EQ(run({"describe", "--column", "a", "--verbose", missing}), run({"describe", "--column", "a", missing}));
}

TEST(Tables, verboseTellsHowTheFileWasRead)
{
    const TempFolder folder;
    const struct {
        int line;
        std::string table;
        Words options;
        std::string text;
    } rows[] = {
        {__LINE__, "a;b\n1,5;2\n2;3\n3;4\n", {}, "separator semicolon, decimal comma, columns a, b"},
        {__LINE__,
         "\xef\xbb\xbf"
         "a\tb\n1.5\t2\n2\t3\n3\t4\n",
         {},
         "byte order mark, separator tab, decimal point, columns a, b"},
        {__LINE__, "# made up\na b\n1 2\n2 3\n3 4\n", {}, "1 line of comments left out, separator blanks, decimal point, columns a, b"},
        {__LINE__,
         "# made\n\n# up\na,b\n1,2\n2,3\n3,4\n",
         {},
         "2 lines of comments left out, separator comma, decimal point, columns a, b"},
        {__LINE__, "1 2\n2 3\n3 4\n", {"--no-header"}, "separator blanks, decimal point, 2 columns without a header"},
        {__LINE__, "1!2\n2!3\n3!4\n", {"--no-header", "--separator", "!"}, "separator '!', decimal point, 2 columns without a header"},
        {__LINE__, "1990|1991\n2|3\n3|4\n4|4\n", {"--header"}, "separator bar, decimal point, columns 1990, 1991"},
    };
    for (const auto& row : rows) {
        const std::string file = folder.write("data.csv", row.table);
        const Outcome outcome = run(with(with({"describe", "--verbose", "--column", "1"}, row.options), {file}));
        EXPECT_EQ(outcome.status, done) << "row of line " << row.line;
        EXPECT_THAT(outcome.errors, testing::StartsWith("wqstat: " + file + ": " + row.text + "\n")) << "row of line " << row.line;
    }
}

}  // namespace
