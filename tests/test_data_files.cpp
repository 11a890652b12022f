// The three readers of data files: one sample, pairs, series.
#include <wq_stat/wq_stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <ios>
#include <istream>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/analyses.h"
#include "support/bits.h"
#include "support/files.h"
#include "support/plain_readers.h"

using namespace wq_lib;
using namespace std::string_literals;
using wq_test::endOf;
using wq_test::Ends;
using wq_test::Reading;
using wq_test::same;
using wq_test::shipped;
using wq_test::shown;
using wq_test::TempFolder;

namespace {

using Pair = std::pair<double, double>;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// ---- the library's readers, always on objects that hold something already where a test says so

struct OneSample : BasicStatistics {
    Reading reading() const
    {
        Reading r;
        for (const double x : data) r.data.emplace_back(x, 0.0);
        r.comment = comment;
        return r;
    }
    std::size_t capacity() const { return data.capacity(); }
};

struct Pairs : BasicXyStatistics {
    Reading reading() const
    {
        Reading r;
        for (const data_pair& pair : pairs) r.data.emplace_back(pair.x, pair.y);
        r.comment = comment;
        return r;
    }
    std::size_t capacity() const { return pairs.capacity(); }
};

struct Series : LinearRegressionMultiY {
    Reading reading() const
    {
        Reading r;
        for (const data_pair& pair : pairs) r.data.emplace_back(pair.x, pair.y);
        r.comment = comment;
        return r;
    }
    std::size_t capacity() const { return pairs.capacity(); }
};

// Whether a stream reads a folder as an empty file, as libc++'s streams do; others say that they cannot.
bool isReadAsEmpty(const std::string& path)
{
    std::error_code unknown;
    if (!std::filesystem::is_directory(path, unknown)) return false;
    std::ifstream stream(path, std::ios::binary);
    stream.peek();
    return stream.eof() && !stream.bad();
}

// What a new object makes of a file that is named; the same from a stream.
template <typename Sample, typename Named, typename Streamed>
Reading readBothWays(const std::string& path, Named&& byName, Streamed&& fromStream)
{
    const auto readingOf = [](Sample& sample, const Ends ends) {
        Reading r = sample.reading();
        r.ends = ends;
        EXPECT_EQ(sample.getSampleSize(), r.data.size());
        return r;
    };
    Sample named, streamed;
    const Reading reading = readingOf(named, endOf([&] { return byName(named, path); }));
    std::ifstream stream(path, std::ios::binary);
    const Reading again = readingOf(streamed, endOf([&] { return fromStream(streamed, stream); }));
    EXPECT_TRUE(same(reading, again) || isReadAsEmpty(path)) << reading << "\nfrom a stream: " << again;
    EXPECT_EQ(named.getDataEnd(), streamed.getDataEnd());
    const bool countsOn = !wq_test::isPaired<Sample> || named.getSampleSize() == 0;  // the univariate add leaves the end one past the last
    EXPECT_EQ(named.getDataEnd(), countsOn ? named.getSampleSize() : named.getSampleSize() - 1);
    return reading;
}

Reading readOneSample(const std::string& path)
{
    return readBothWays<OneSample>(
        path, [](OneSample& sample, const std::string& name) { return sample.readDataFile(name); },
        [](OneSample& sample, std::istream& stream) { return sample.readData(stream); });
}

Reading readPairs(const std::string& path)
{
    return readBothWays<Pairs>(
        path, [](Pairs& sample, const std::string& name) { return sample.readDataFile(name); },
        [](Pairs& sample, std::istream& stream) { return sample.readData(stream); });
}

Reading readSeries(const std::string& path)
{
    return readBothWays<Series>(
        path, [](Series& sample, const std::string& name) { return sample.readSeriesFile(name); },
        [](Series& sample, std::istream& stream) { return sample.readSeries(stream); });
}

struct Reader {
    const char* name;
    Reading (*library)(const std::string& path);
    Reading (*plain)(const std::string& path);
};

// The plain readers of new objects.
Reading plainOneSample(const std::string& path) { return wq_test::plainOneSample(path); }
Reading plainPairs(const std::string& path) { return wq_test::plainPairs(path); }
Reading plainSeries(const std::string& path) { return wq_test::plainSeries(path); }

const Reader readers[] = {
    {"one sample", readOneSample, plainOneSample},
    {"pairs", readPairs, plainPairs},
    {"series", readSeries, plainSeries},
};

std::string digits(std::size_t n) { return "1" + std::string(n - 1, '0'); }

}  // namespace

// ---------------------------------------------------------------- one sample

TEST(DataFileOfOneSample, lines)
{
    const struct {
        const char* shows;
        std::string content;
        std::vector<double> values;
        std::string comment;
        Ends ends;
    } rows[] = {
        {"comment, values, empty line, end", "# series A\n1.5\n\n2.5\n<<\n9\n", {1.5, 2.5}, " series A", Ends::normally},
        {"only comments", "# a\n#b#\n", {}, " ab", Ends::normally},
        {"empty file", "", {}, "", Ends::normally},
        {"only line ends", "\n\n\n", {}, "", Ends::normally},
        {"a comment begins with a number", "12 # note\n3\n", {3}, "12  note", Ends::normally},
        {"comments run together", "#one\n1\n# two #\n2\n", {1, 2}, "one two ", Ends::normally},
        {"the end marker in a comment is none", "1\n<< # end\n2\n", {1, 2}, "<<  end", Ends::normally},
        {"end marker with text", "1\n<<end\n2\n", {1}, "", Ends::normally},
        {"the end marker stands at the start", "1\n <<\n2\n", {1}, "", Ends::invalidArgument},
        {"a single < is no marker", "1\n<\n", {1}, "", Ends::invalidArgument},
        {"after the end nothing matters", "1\n<<\nx\n# late\n", {1}, "", Ends::normally},
        {"text after the number", "3.5 kg\n7;8\n1,5\n2:3\n", {3.5, 7, 1, 2}, "", Ends::normally},
        {"leading blanks", "  \t 4.25\n", {4.25}, "", Ends::normally},
        {"signs", "+4\n-4\n+.5\n-0\n", {4, -4, 0.5, -0.0}, "", Ends::normally},
        {"exponents", "1e3\n1E-2\n2e\n3e+\n4ex\n", {1000, 0.01, 2, 3, 4}, "", Ends::normally},
        {"points", ".5\n5.\n1.2.3\n", {0.5, 5, 1.2}, "", Ends::normally},
        {"hexadecimal", "0x10\n0x1.8p1\n0XA\n0x\n0xg\n0xinf\n0xnan\n0x-5\n", {16, 3, 10, 0, 0, 0, 0, 0}, "", Ends::normally},
        {"infinite", "inf\n-INFINITY\ninfinite\n+Inf\n", {infinity, -infinity, infinity, infinity}, "", Ends::normally},
        {"NaN", "nan\n-NaN\nnan(x)\nnano\n", {NaN, NaN, NaN, NaN}, "", Ends::normally},
        {"last line without a line end", "1\n2", {1, 2}, "", Ends::normally},
        {"carriage returns belong to the line", "1\r\n2\r\n# c\r\n3\r\n", {1, 2, 3}, " c\r", Ends::normally},
        {"a carriage return alone", "1\r\n\r\n2\r\n", {1}, "", Ends::invalidArgument},
        {"blanks", "1\n   \n2\n", {1}, "", Ends::invalidArgument},
        {"a tabulator", "1\n\t\n2\n", {1}, "", Ends::invalidArgument},
        {"text", "1\nlength\n2\n", {1}, "", Ends::invalidArgument},
        {"a sign alone", "1\n-\n", {1}, "", Ends::invalidArgument},
        {"two signs", "1\n--2\n", {1}, "", Ends::invalidArgument},
        {"a point alone", "1\n.\n", {1}, "", Ends::invalidArgument},
        {"a delimiter first", "1\n;2\n", {1}, "", Ends::invalidArgument},
        {"too large", "1\n1e400\n2\n", {1}, "", Ends::outOfRange},
        {"too large and negative", "-1e309\n", {}, "", Ends::outOfRange},
        {"the largest", "1.7976931348623157e308\n", {1.7976931348623157e308}, "", Ends::normally},
        {"rounded up beyond the largest", "1.7976931348623159e308\n", {}, "", Ends::outOfRange},
        {"subnormal", "1\n1e-310\n", {1}, "", Ends::outOfRange},
        {"rounded to zero", "1\n1e-400\n", {1}, "", Ends::outOfRange},
        {"the smallest normal", "2.2250738585072014e-308\n", {2.2250738585072014e-308}, "", Ends::normally},
        {"zero, however written", "0e-999\n0.000e999\n", {0, 0}, "", Ends::normally},
        {"a zero byte ends a line's text", "1.5\0junk\n2\n"s, {1.5, 2}, "", Ends::normally},
        {"a mark behind a zero byte is not seen", "1\0#\n2\n"s, {1, 2}, "", Ends::normally},
        {"a zero byte first makes the line empty", "\0x\n2\n"s, {2}, "", Ends::normally},
        {"a comment up to a zero byte", "#ab\0cd\n2\n"s, {2}, "ab", Ends::normally},
        {"many digits", "0.1000000000000000055511151231257827021181583404541015625\n", {0.1}, "", Ends::normally},
        {"halfway cases go to even", "9007199254740993\n9007199254740995\n", {9007199254740992, 9007199254740996}, "", Ends::normally},
        {"254 characters are a whole line", digits(254) + "\n2\n", {1e253, 2}, "", Ends::normally},
        {"254 characters at the end of the file", digits(254), {1e253}, "", Ends::normally},
        {"255 characters are cut, then reading ends", digits(255) + "\n2\n", {1e253}, "", Ends::normally},
        {"255 characters at the end of the file", digits(255), {1e253}, "", Ends::normally},
        {"300 characters, 254 of them used", "1." + std::string(252, '0') + std::string(46, '9') + "\n2\n", {1}, "", Ends::normally},
        {"a long comment is cut too", "#" + std::string(299, 'c') + "\n2\n", {}, std::string(253, 'c'), Ends::normally},
        {"a mark behind the cut is not seen", "1 " + std::string(260, ' ') + "#\n2\n", {1}, "", Ends::normally},
        {"a long line without a number", std::string(300, ' ') + "\n", {}, "", Ends::invalidArgument},
        {"a long line after the end marker", "1\n<<" + std::string(300, 'x') + "\n2\n", {1}, "", Ends::normally},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        const std::string path = folder.write("data.txt", row.content);
        Reading expected;
        expected.ends = row.ends;
        expected.comment = row.comment;
        for (const double x : row.values) expected.data.emplace_back(x, 0.0);
        const Reading reading = readOneSample(path);
        EXPECT_TRUE(same(reading, expected)) << reading;
        EXPECT_TRUE(same(plainOneSample(path), expected)) << "plainly: " << plainOneSample(path);
    }
}

TEST(DataFileOfOneSample, readingAppends)
{
    const TempFolder folder;
    OneSample sample;
    sample.setComment("by hand;");
    sample.add(9);
    sample.setSorted(true);
    ASSERT_TRUE(sample.readDataFile(folder.write("a.txt", "#a\n1\n2\n")));
    ASSERT_TRUE(sample.readDataFile(folder.write("b.txt", "#b\n1\n")));
    EXPECT_EQ(sample.reading().data, (std::vector<Pair>{{9, 0}, {1, 0}, {2, 0}, {1, 0}}));
    EXPECT_EQ(sample.getComment(), "by hand;ab");
    EXPECT_EQ(sample.getSampleSize(), 4u);
    EXPECT_EQ(sample.getDataEnd(), 4u);
    EXPECT_FALSE(sample.isSorted());
    EXPECT_EQ(sample.getColumnName(0), "DATA");
    EXPECT_EQ(sample.getDataFile(), folder.path("b.txt"));
}

TEST(DataFileOfOneSample, anExceptionKeepsWhatWasRead)
{
    const TempFolder folder;
    OneSample sample;
    sample.add(9);
    EXPECT_THROW(sample.readDataFile(folder.write("a.txt", "#a\n1\n2\nx\n3\n#b\n")), std::invalid_argument);
    EXPECT_EQ(sample.reading().data, (std::vector<Pair>{{9, 0}, {1, 0}, {2, 0}}));
    EXPECT_EQ(sample.getComment(), "a");
    ASSERT_TRUE(sample.readDataFile(folder.write("b.txt", "4\n"))) << "the object can be used on";
    EXPECT_EQ(sample.getSampleSize(), 4u);
}

// ---------------------------------------------------------------- pairs

TEST(DataFileOfPairs, lines)
{
    const struct {
        const char* shows;
        std::string content;
        std::vector<Pair> pairs;
        std::string comment;
        Ends ends;
    } rows[] = {
        {"three delimiters", "1.5;2\n1.5|2\n1.5:2\n", {{1.5, 2}, {1.5, 2}, {1.5, 2}}, "", Ends::normally},
        {"a blank is none", "1.5 2\n", {{1.5, 0}}, "", Ends::normally},
        {"nor is a comma or a tabulator", "1,5\n1\t5\n", {{1, 0}, {1, 0}}, "", Ends::normally},
        {"empty file", "", {}, "", Ends::normally},
        {"comment anywhere", "# run 3\n1;2#\n3;4\n", {{3, 4}}, "1;2", Ends::normally},
        {"a later comment replaces an earlier one", "#a\n#b\n1;2\n", {{1, 2}}, "b", Ends::normally},
        {"end marker", "1;2\n<<\n3;4\n", {{1, 2}}, "", Ends::normally},
        {"the end marker in a comment is none", "1;2\n<< # end\n3;4\n", {{1, 2}, {3, 4}}, "<<  end", Ends::normally},
        {"a marker not at the start", " <<\n", {{0, 0}}, "", Ends::normally},
        {"no second field", "1.5\n", {{1.5, 0}}, "", Ends::normally},
        {"an empty second field", "1.5;\n", {{1.5, 0}}, "", Ends::normally},
        {"runs of delimiters", ";;1:;|2||3\n", {{1, 2}}, "", Ends::normally},
        {"further fields", "1;2;x;4\n", {{1, 2}}, "", Ends::normally},
        {"delimiters only", ";\n:|;\n1;2\n", {{1, 2}}, "", Ends::normally},
        {"blanks around", " 1 ; 2 \n", {{1, 2}}, "", Ends::normally},
        {"x without a number is 0", "x;2\n-;3\n;;y;4\n", {{0, 2}, {0, 3}, {0, 4}}, "", Ends::normally},
        {"y without a number", "1;2\n1;y\n3;4\n", {{1, 2}}, "", Ends::invalidArgument},
        {"y of blanks", "1; \n", {}, "", Ends::invalidArgument},
        {"y of a carriage return", "1;2\r\n3;\r\n", {{1, 2}}, "", Ends::invalidArgument},
        {"carriage returns", "1;2\r\n3\r\n", {{1, 2}, {3, 0}}, "", Ends::normally},
        {"a carriage return alone is a field", "\r\n1;2\r\n", {{0, 0}, {1, 2}}, "", Ends::normally},
        {"blanks are a field", "   \n", {{0, 0}}, "", Ends::normally},
        {"x too large", "1e400;1\n-1e400;1\n", {{infinity, 1}, {-infinity, 1}}, "", Ends::normally},
        {"x too small", "1e-310;1\n1e-400;1\n", {{1e-310, 1}, {0, 1}}, "", Ends::normally},
        {"y too large", "1;2\n1;1e400\n", {{1, 2}}, "", Ends::outOfRange},
        {"y subnormal", "1;1e-310\n", {}, "", Ends::outOfRange},
        {"what is no decimal", "0x10;inf\nnan;0x.8\n", {{16, infinity}, {NaN, 0.5}}, "", Ends::normally},
        {"signs and text behind", "+1.5kg;-2.5kg\n", {{1.5, -2.5}}, "", Ends::normally},
        {"last line without a line end", "1;2\n3;4", {{1, 2}, {3, 4}}, "", Ends::normally},
        {"a zero byte ends the text", "1\0;2\n3;4\0x\n"s, {{1, 0}, {3, 4}}, "", Ends::normally},
        {"a zero byte first", "\0;2\n3;4\n"s, {{3, 4}}, "", Ends::normally},
        {"254 characters", "1;" + digits(252) + "\n3;4\n", {{1, 1e251}, {3, 4}}, "", Ends::normally},
        {"255 characters", "1;" + digits(253) + "\n3;4\n", {{1, 1e251}}, "", Ends::normally},
        {"a second field behind the cut", digits(260) + ";5\n3;4\n", {{1e253, 0}}, "", Ends::normally},
        {"a long comment", "1;2\n#" + std::string(299, 'c') + "\n3;4\n", {{1, 2}}, std::string(253, 'c'), Ends::normally},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        const std::string path = folder.write("data.txt", row.content);
        const Reading expected{row.ends, row.pairs, row.comment};
        const Reading reading = readPairs(path);
        EXPECT_TRUE(same(reading, expected)) << reading;
        EXPECT_TRUE(same(plainPairs(path), expected)) << "plainly: " << plainPairs(path);
    }
}

TEST(DataFileOfPairs, readingAppendsPairsAndReplacesTheComment)
{
    const TempFolder folder;
    Pairs sample;
    sample.setComment("by hand");
    sample.add(9, 9);
    ASSERT_TRUE(sample.readDataFile(folder.write("a.txt", "1;2\n")));
    EXPECT_EQ(sample.getComment(), "by hand") << "a file without comments leaves it";
    ASSERT_TRUE(sample.readDataFile(folder.write("b.txt", "#b\n3;4\n")));
    EXPECT_EQ(sample.getComment(), "b");
    EXPECT_EQ(sample.reading().data, (std::vector<Pair>{{9, 9}, {1, 2}, {3, 4}}));
    EXPECT_EQ(sample.getSampleSize(), 3u);
    EXPECT_EQ(sample.getDataEnd(), 2u);
    EXPECT_EQ(sample.getColumnName(0), "X");
    EXPECT_EQ(sample.getColumnName(1), "Y");
}

TEST(DataFileOfPairs, anExceptionKeepsWhatWasRead)
{
    const TempFolder folder;
    Pairs sample;
    EXPECT_THROW(sample.readDataFile(folder.write("a.txt", "#a\n1;2\n1;1e999\n3;4\n")), std::out_of_range);
    EXPECT_EQ(sample.reading().data, (std::vector<Pair>{{1, 2}}));
    EXPECT_EQ(sample.getComment(), "a");
}

// ---------------------------------------------------------------- series

TEST(DataFileOfSeries, lines)
{
    const struct {
        const char* shows;
        std::string content;
        std::vector<Pair> pairs;
        Ends ends;
    } rows[] = {
        {"a count is carried over", "1:10:2\n2;20\n# note\n3|30|1\n", {{1, 10}, {1, 10}, {2, 20}, {2, 20}, {3, 30}}, Ends::normally},
        {"an empty field vanishes", "1::5:3\n", {{1, 5}, {1, 5}, {1, 5}}, Ends::normally},
        {"no count yet", "1:10\n2:20:1\n", {{2, 20}}, Ends::normally},
        {"x alone", "1:10:1\n7\n", {{1, 10}, {7, 0}}, Ends::normally},
        {"zero and negative counts", "1:10:0\n2:20\n3:30:-4\n4:40\n5:50:1\n", {{5, 50}}, Ends::normally},
        {"mixed delimiters, leading and trailing", ";1|10:2;\n", {{1, 10}, {1, 10}}, Ends::normally},
        {"fields behind the count", "1:10:1:x\n", {{1, 10}}, Ends::normally},
        {"delimiters only", ":;|\n1:10:1\n;;\n", {{1, 10}}, Ends::normally},
        {"the count is an integer",
         "1:10:1.9\n2:20:0x2\n3:30: +2\n4:40:1e3\n",
         {{1, 10}, {3, 30}, {3, 30}, {4, 40}},
         Ends::normally},  // 0x2 is 0: base 10
        {"a leading zero is decimal", "1:10:010\n", std::vector<Pair>(10, {1, 10}), Ends::normally},
        {"blanks around", " 1 : 10 : 2 \n", {{1, 10}, {1, 10}}, Ends::normally},
        {"comments anywhere", "1:10:1 # one\n2:20:1\n", {{2, 20}}, Ends::normally},
        {"<< is a field", "1:10:1\n<<\n2:20\n", {{1, 10}}, Ends::invalidArgument},
        {"<< in a comment", "1:10:1\n<< # end\n2:20\n", {{1, 10}, {2, 20}}, Ends::normally},
        {"x without a number", "1:10:1\nx:20\n", {{1, 10}}, Ends::invalidArgument},
        {"y without a number", "1:10:1\n2:y\n", {{1, 10}}, Ends::invalidArgument},
        {"a count without a number", "1:10:1\n2:20:x\n", {{1, 10}}, Ends::invalidArgument},
        {"a count of blanks", "1:10:1\n2:20: \n", {{1, 10}}, Ends::invalidArgument},
        {"a count too large", "1:10:1\n2:20:2147483648\n", {{1, 10}}, Ends::outOfRange},
        {"a count too small", "1:10:1\n2:20:-2147483649\n", {{1, 10}}, Ends::outOfRange},
        {"the smallest count", "1:10:-2147483648\n2:20:1\n", {{2, 20}}, Ends::normally},
        {"a count beyond every integer", "2:20:99999999999999999999\n", {}, Ends::outOfRange},
        {"x too large", "1:10:1\n1e400:1\n", {{1, 10}}, Ends::outOfRange},
        {"y subnormal", "1:10:1\n1:1e-310\n", {{1, 10}}, Ends::outOfRange},
        {"blanks", "1:10:1\n  \n", {{1, 10}}, Ends::invalidArgument},
        {"a carriage return alone", "1:10:1\r\n\r\n", {{1, 10}}, Ends::invalidArgument},
        {"carriage returns behind fields", "1:10:2\r\n2:20\r\n3\r\n", {{1, 10}, {1, 10}, {2, 20}, {2, 20}, {3, 0}, {3, 0}}, Ends::normally},
        {"a carriage return as a field", "1:10:1\n2:\r\n", {{1, 10}}, Ends::invalidArgument},
        {"what is no decimal", "0x10:inf:1\nnan:-inf\n", {{16, infinity}, {NaN, -infinity}}, Ends::normally},
        {"last line without a line end", "1:10:1\n2:20", {{1, 10}, {2, 20}}, Ends::normally},
        {"a zero byte ends the text", "1:10:1\0:5\n2\0:20\n"s, {{1, 10}, {2, 0}}, Ends::normally},
        {"254 characters", "1:1:" + std::string(249, '0') + "2\n3:4\n", {{1, 1}, {1, 1}, {3, 4}, {3, 4}}, Ends::normally},
        {"255 characters: the last digit is cut", "1:1:" + std::string(249, '0') + "21\n3:4\n", {{1, 1}, {1, 1}}, Ends::normally},
        {"empty file", "", {}, Ends::normally},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        const std::string path = folder.write("series.txt", row.content);
        const Reading expected{row.ends, row.pairs, ""};
        const Reading reading = readSeries(path);
        EXPECT_TRUE(same(reading, expected)) << reading;
        EXPECT_TRUE(same(plainSeries(path), expected)) << "plainly: " << plainSeries(path);
    }
}

TEST(DataFileOfSeries, readingReplacesThePairs)
{
    const TempFolder folder;
    Series sample;
    sample.setComment("by hand");
    sample.add(8, 8);
    sample.add(9, 9);
    EXPECT_FALSE(sample.readSeriesFile(folder.path("missing.txt")));
    EXPECT_EQ(sample.reading().data, (std::vector<Pair>{{8, 8}, {9, 9}}));
    EXPECT_FALSE(sample.readSeriesFile(folder.path("")));
    EXPECT_EQ(sample.getSampleSize(), 2u);

    ASSERT_TRUE(sample.readSeriesFile(folder.write("a.txt", "# dropped\n1:10:3\n")));
    EXPECT_EQ(sample.reading().data, (std::vector<Pair>{{1, 10}, {1, 10}, {1, 10}}));
    EXPECT_EQ(sample.getSampleSize(), 3u);
    EXPECT_EQ(sample.getDataEnd(), 2u);
    EXPECT_EQ(sample.getComment(), "by hand");
    EXPECT_EQ(sample.getDataFile(), "");

    ASSERT_TRUE(sample.readSeriesFile(folder.write("b.txt", "5:50\n"))) << "the count starts anew with each file";
    EXPECT_TRUE(sample.reading().data.empty());

    sample.add(7, 7);
    EXPECT_THROW(sample.readSeriesFile(folder.write("c.txt", "1:10:2\nx\n")), std::invalid_argument);
    EXPECT_EQ(sample.reading().data, (std::vector<Pair>{{1, 10}, {1, 10}}));
}

TEST(DataFileOfSeries, readDataFileReadsPairs)
{
    const TempFolder folder;
    Series sample;
    ASSERT_TRUE(sample.readDataFile(folder.write("a.txt", "1:10:3\n<<\n")));
    EXPECT_EQ(sample.reading().data, (std::vector<Pair>{{1, 10}}));
}

// ---------------------------------------------------------------- all three

TEST(DataFiles, whatCannotBeOpened)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.path("folder"));
    const std::string file = folder.write("file", "1\n");
    for (const Reader& reader : readers)
        for (const std::string& path :
             {folder.path("missing.txt"), folder.path("folder"), folder.path("folder/"), file + "/x", ""s, "/"s}) {
            SCOPED_TRACE(std::string(reader.name) + ": " + path);
            const Reading reading = reader.library(path);
            EXPECT_TRUE(same(reading, {Ends::cannotOpen, {}, ""})) << reading;
        }
}

TEST(DataFiles, aFailedReadingChangesOnlyTheName)
{
    const TempFolder folder;
    BasicStatistics sample;
    sample.add(3);
    sample.setSorted(true);
    sample.setComment("c");
    EXPECT_FALSE(sample.readDataFile(folder.path("missing.txt")));
    EXPECT_EQ(sample.getDataFile(), folder.path("missing.txt"));
    EXPECT_EQ(sample.getSampleSize(), 1u);
    EXPECT_TRUE(sample.isSorted());
    EXPECT_EQ(sample.getComment(), "c");
    sample.setDataFile("");
    EXPECT_FALSE(sample.readDataFile());
}

TEST(DataFiles, theNameCanBeSetBefore)
{
    const TempFolder folder;
    OneSample one;
    one.setDataFile(folder.write("one.txt", "1\n2\n"));
    EXPECT_TRUE(one.readDataFile());
    EXPECT_TRUE(one.readDataFile());
    EXPECT_EQ(one.getSampleSize(), 4u);
    Pairs pairs;
    pairs.setDataFile(folder.write("pairs.txt", "1;2\n"));
    EXPECT_TRUE(pairs.readDataFile());
    EXPECT_EQ(pairs.getSampleSize(), 1u);
}

// A file that each reader understands differently: one sample holds 1.5 and 3, a paired sample (1.5, 2) and (3, 4).
template <typename Analysis>
class EachAnalysis : public ::testing::Test {
};

TYPED_TEST_SUITE(EachAnalysis, wq_test::Analyses, wq_test::NameOfAnalysis);

TYPED_TEST(EachAnalysis, readsItsOwnFormat)
{
    const TempFolder folder;
    const std::string path = folder.write("data.txt", "#a\n1.5;2\n#b\n3;4\n<<\n5;6\n");
    const auto check = [](TypeParam& analysis) {
        ASSERT_EQ(analysis.getSampleSize(), 2u);
        if constexpr (wq_test::isPaired<TypeParam>) {
            EXPECT_EQ(analysis.getDataPair(0).x, 1.5);
            EXPECT_EQ(analysis.getDataPair(0).y, 2.0);
            EXPECT_EQ(analysis.getDataPair(1).x, 3.0);
            EXPECT_EQ(analysis.getDataPair(1).y, 4.0);
            EXPECT_EQ(analysis.getComment(), "b");
        } else {
            EXPECT_EQ(analysis.getDataPoint(0), 1.5);
            EXPECT_EQ(analysis.getDataPoint(1), 3.0);
            EXPECT_EQ(analysis.getComment(), "ab");
        }
    };
    TypeParam direct;
    EXPECT_TRUE(direct.readDataFile(path));
    check(direct);

    TypeParam named;
    named.setDataFile(path);
    EXPECT_TRUE(named.readDataFile());
    check(named);

    TypeParam throughTheBase;
    BasicStatistics& base = throughTheBase;
    EXPECT_TRUE(base.readDataFile(path));
    check(throughTheBase);
    EXPECT_EQ(base.getDataFile(), path);
    EXPECT_FALSE(base.readDataFile(folder.path("missing.txt")));
}

// ---------------------------------------------------------------- streams

TEST(DataStreams, areReadFromWhereTheyStand)
{
    std::istringstream stream("title\n1;2\n#a\n<<\n3;4\n");
    std::string title;
    std::getline(stream, title);
    Pairs pairs;
    pairs.add(9, 9);
    pairs.setDataFile("name");
    EXPECT_TRUE(pairs.readData(stream));
    EXPECT_EQ(pairs.reading().data, (std::vector<Pair>{{9, 9}, {1, 2}}));
    EXPECT_EQ(pairs.getComment(), "a");
    EXPECT_EQ(pairs.getDataFile(), "name") << "of a file only";
}

TEST(DataStreams, withoutAnythingInThem)
{
    std::istringstream empty, ended("x");
    ended.get();
    ASSERT_EQ(ended.peek(), std::istringstream::traits_type::eof());
    for (std::istream* const stream : {static_cast<std::istream*>(&empty), static_cast<std::istream*>(&ended)}) {
        OneSample sample;
        EXPECT_TRUE(sample.readData(*stream));
        EXPECT_EQ(sample.getSampleSize(), 0u);
    }
}

TEST(DataStreams, thatHaveFailedAreNotRead)
{
    std::istringstream stream("1;2\n");
    stream.setstate(std::ios::failbit);
    OneSample sample;
    Series series;
    series.add(1, 1);
    EXPECT_FALSE(sample.readData(stream));
    EXPECT_FALSE(Pairs().readData(stream));
    EXPECT_FALSE(series.readSeries(stream));
    EXPECT_EQ(sample.getSampleSize(), 0u);
    EXPECT_EQ(series.reading().data, (std::vector<Pair>{{1, 1}})) << "kept";
    stream.clear();
    EXPECT_TRUE(series.readSeries(stream));
    EXPECT_EQ(series.reading().data, (std::vector<Pair>{})) << "replaced by a line without a count";
}

TEST(DataStreams, thatFailLoseTheLastLine)
{
    class FailingBuffer : public std::streambuf {
        std::string text = "1\n2\n3";
        int blocks = 0;
        int_type underflow() override
        {
            if (++blocks > 1) throw std::runtime_error("the disk is gone");
            setg(text.data(), text.data(), text.data() + text.size());
            return traits_type::to_int_type(text.front());
        }
    };
    FailingBuffer quietly, loudly;
    std::istream stream(&quietly);
    OneSample sample;
    EXPECT_FALSE(sample.readData(stream));
    EXPECT_TRUE(stream.bad());

    std::istream throwing(&loudly);
    throwing.exceptions(std::ios::badbit);
    EXPECT_THROW(sample.readData(throwing), std::runtime_error);
}

TYPED_TEST(EachAnalysis, readsItsOwnFormatFromAStream)
{
    TypeParam fromFile, fromStream;
    const TempFolder folder;
    const std::string text = "#a\n1.5;2\n#b\n3;4\n<<\n5;6\n";
    ASSERT_TRUE(fromFile.readDataFile(folder.write("data.txt", text)));
    std::istringstream stream(text);
    ASSERT_TRUE(fromStream.readData(stream));
    ASSERT_EQ(fromStream.getSampleSize(), 2u);
    EXPECT_EQ(fromStream.getComment(), fromFile.getComment());
    if constexpr (wq_test::isPaired<TypeParam>)
        EXPECT_EQ(fromStream.getDataPair(1).y, 4.0);
    else
        EXPECT_EQ(fromStream.getDataPoint(1), 3.0);
}

// ---------------------------------------------------------------- files in quantity

namespace {

// Fields of which none is a count that would make millions of pairs.
// clang-format off
const std::vector<std::string> fields = {
    "1", "2", "-3", "0", "-0", "17", "2.5", "-0.125", ".5", "7.", "1e2", "1.5E-3", "-1e-5", "+4", " 6", "\t8", "9 ", "3 kg", "3,5",
    "1e308", "123.456789012345678901234567890", "0.1", "0.30000000000000004", "9007199254740993e-13", "1.7976931348623157e308",
    "2.2250738585072014e-308", "2e", "2e+", "5e-", "0x1F", "0x.8p3", "-0x1p-3", "0x", "inf", "-INF", "Infinity", "nan", "-nan",
    "NAN(12)", "007", "0.000", "1.0000000000000002", "4.35", "1e-307"};
const std::vector<std::string> badFields = {
    "x", "-", ".", "", " ", "e5", "1e400", "-1e999", "1e-310", "5e-324", "5e-324x", "0x1p-1074", "0x1p-1030", "0x1p2000", "99999999999",
    "--1", "+-2", "<<", "nul", "in", "i", "\r", "\f1", "\v2", "2.2250738585072011e-308", "1.7976931348623159e308", "2147483648",
    "-2147483649", "18446744073709551616"};
// clang-format on

class FileMaker {
public:
    explicit FileMaker(unsigned seed) : engine(seed) {}

    std::string file(int badPerMille)
    {
        std::string content;
        for (std::size_t lines = below(14); lines > 0; --lines) content += line(badPerMille) + "\n";
        if (below(3) == 0) content += line(badPerMille);
        return content;
    }

    std::string field(int badPerMille)
    {
        return below(1000) < static_cast<std::size_t>(badPerMille) ? badFields[below(badFields.size())] : fields[below(fields.size())];
    }

    std::string line(int badPerMille)
    {
        std::string text;
        switch (below(40)) {
        // clang-format off
        case 0: return "";
        case 1: text = "# " + field(badPerMille); break;
        case 2: text = field(badPerMille) + "#" + field(badPerMille) + "#"; break;
        case 3: return ":;|"s.substr(0, below(4));
        case 4: return below(4) == 0 ? "<<" + field(badPerMille) : below(2) == 0 ? "<< #" : "#<<";
        case 5: return field(badPerMille) + std::string(250 + below(8) - 4, ' ') + field(badPerMille);
        case 6: return std::string(250 + below(8), "0 1#:"[below(5)]);
        case 7: return field(badPerMille) + '\0' + field(badPerMille);
        case 8: return badPerMille > 0 ? std::string(below(3), ' ') : "";
        // clang-format on
        default:
            text = field(badPerMille);
            for (std::size_t more = below(4); more > 0; --more) {
                for (std::size_t delimiters = 1 + below(8) / 6; delimiters > 0; --delimiters) text += ":;|"[below(3)];
                text += field(badPerMille);
            }
        }
        if (below(10) == 0) text += ";:|"[below(3)];
        if (below(10) == 0) text += '\r';
        return text;
    }

    std::size_t below(std::size_t n) { return engine() % n; }

private:
    std::mt19937 engine;
};

}  // namespace

TEST(DataFiles, randomFilesAreReadAsPlainly)
{
    const TempFolder folder;
    FileMaker maker(52);
    std::size_t ended[4] = {};
    for (int round = 0; round < 6000; ++round) {
        const std::string content = maker.file(round % 3 * 40);
        const std::string path = folder.write(std::to_string(round), content);  // a new file each: some disks are slow to replace one
        for (const Reader& reader : readers) {
            const Reading expected = reader.plain(path);
            const Reading reading = reader.library(path);
            ASSERT_TRUE(same(reading, expected))
                << reader.name << ", file " << shown(content) << "\nlibrary: " << reading << "\nplainly: " << expected;
            ++ended[static_cast<int>(expected.ends)];
        }
        std::filesystem::remove(path);
    }
    for (const Ends ends : {Ends::normally, Ends::invalidArgument, Ends::outOfRange})
        EXPECT_GT(ended[static_cast<int>(ends)], 300u) << ends << ": the files show too little";
}

TEST(DataFiles, randomNumbersAreReadAsPlainly)
{
    const TempFolder folder;
    std::mt19937_64 engine(53);
    std::string content;
    char text[400];
    for (int round = 0; round < 60000; ++round) {
        const std::uint64_t bits = engine();
        double x;
        std::memcpy(&x, &bits, sizeof x);
        const int digits = static_cast<int>(engine() % 25);
        switch (round % 6) {
        // clang-format off
        case 0: std::snprintf(text, sizeof text, "%.*g", digits, x); break;
        case 1: std::snprintf(text, sizeof text, "%.17g", x); break;
        case 2: std::snprintf(text, sizeof text, "%.*f", digits / 2, std::ldexp(x > 0 ? 1.0 : -1.0, static_cast<int>(bits % 60))); break;
        case 3: std::snprintf(text, sizeof text, "%a", x); break;
        case 4: std::snprintf(text, sizeof text, "%.*f", digits / 3, static_cast<double>(static_cast<std::int32_t>(bits)) / 1000); break;
        // clang-format on
        default:
            std::snprintf(text, sizeof text, "%llu.%llue%d", static_cast<unsigned long long>(engine()),
                          static_cast<unsigned long long>(engine()), static_cast<int>(engine() % 80) - 40);
        }
        const std::string number = text;
        bool throws = false;
        try {
            std::stod(number);
        } catch (const std::out_of_range&) {
            throws = true;
        }
        if (!throws && number.size() < 255) content += number + "\n";
    }
    const std::string path = folder.write("data.txt", content);
    const Reading expected = plainOneSample(path);
    EXPECT_GT(expected.data.size(), 50000u);
    EXPECT_TRUE(same(readOneSample(path), expected));
    const Reading xs = readPairs(path);
    EXPECT_TRUE(same(xs, expected)) << "x is read by the rules of atof, the same for numbers in range";
}

// Whether the processor looks at a rounded number to tell whether it is smaller than normal ones, as x86 does. ARM looks before rounding,
// and std::stod refuses there what is rounded up to the smallest normal number; the library takes it everywhere.
bool roundsBeforeItUnderflows()
{
    const volatile double above = 0x1.0000000000001p-511;
    const volatile double below = 0x1.ffffffffffffep-512;
    std::feclearexcept(FE_UNDERFLOW);
    const volatile double product = above * below;  // 2^-1022 - 2^-1126
    return product == std::numeric_limits<double>::min() && std::fetestexcept(FE_UNDERFLOW) == 0;
}

TEST(DataFiles, longHexadecimalNumbers)
{
    // 53 binary digits are 13 hexadecimal ones behind the first 1; the values beside a number are written out by hand.
    const struct {
        int line;
        const char* text;
        double value;
    } rows[] = {
        {__LINE__, "0x1.00000000000008p0", 1.0},                            // half of the last digit: to even
        {__LINE__, "0x1.000000000000080000000001p0", 0x1.0000000000001p0},  // anything behind it: up
        {__LINE__, "0x1.00000000000018p0", 0x1.0000000000002p0},            // to even again, which is up here
        {__LINE__, "0x1.00000000000007ffffffffffp0", 1.0},
        {__LINE__, "0x100000000000008000000000", 0x1p92},  // more digits than 64 bits hold
        {__LINE__, "0x100000000000008000000001", 0x1.0000000000001p92},
        {__LINE__, "0xfffffffffffffc000000", 0x1p80},
        {__LINE__, "0xfffffffffffffbffffff", 0x1.fffffffffffffp79},
        {__LINE__, "0x0000000000000000000000000000000000001", 1.0},
        {__LINE__, "0x.00000000000000000000000000000000000018P+148", 1.5},  // 24 in the 38th place: 24 * 2^(148 - 4 * 38)
        {__LINE__, "-0X1.FFFFFFFFFFFFFp+1023", -std::numeric_limits<double>::max()},
        {__LINE__, "0x1.fffffffffffff7ffffffp1023", std::numeric_limits<double>::max()},
        {__LINE__, "0x1p-1022", std::numeric_limits<double>::min()},
        {__LINE__, "0x1p-1023", 0x1p-1023},                                          // exact, so in range though not normal
        {__LINE__, "0x1.8p-1073", 0x1.8p-1073},                                      // 3 times the smallest of all
        {__LINE__, "0x1.fffffffffffffcp-1023", std::numeric_limits<double>::min()},  // normal at full precision
        {__LINE__, "0x0p99999999999", 0.0},
    };
    const TempFolder folder;
    for (const auto& row : rows) {
        const std::string path = folder.write(std::to_string(row.line), row.text);
        const Reading reading = readOneSample(path);
        EXPECT_EQ(reading.ends, Ends::normally) << "row of line " << row.line;
        ASSERT_EQ(reading.data.size(), 1u) << "row of line " << row.line;
        EXPECT_SAME_BITS(reading.data.front().first, row.value) << "row of line " << row.line;
        if (row.value == std::numeric_limits<double>::min() && !roundsBeforeItUnderflows()) continue;
        EXPECT_TRUE(same(reading, plainOneSample(path))) << "row of line " << row.line;
    }
    for (const char* const text : {"0x1.fffffffffffff8p1023", "0x1p1024", "-0x1p99999999999", "0x1.8p-1074", "0x1p-1075",
                                   "0x1p-99999999999", "0x1.fffffffffffff7p-1023", "0x1.00000000000000000000000001p-1023"})
        EXPECT_EQ(readOneSample(folder.write(text, text)).ends, Ends::outOfRange) << text;
}

// Whether std::stod refuses a number with bits that no subnormal double holds. The C libraries of Windows and musl say nothing of it.
bool stodRefusesRoundedSubnormals()
{
    try {
        return std::stod("0x1.8p-1074") < 0.0;
    } catch (const std::out_of_range&) {
        return true;
    }
}

TEST(DataFiles, hexadecimalNumbersAreRoundedToTheNearestSubnormal)
{
    const TempFolder folder;
    const Reading xs = readPairs(folder.write("pairs.txt",
                                              "0x77c6cbcc.f7p-1074\n"
                                              "0x77c6cbcc.8p-1074\n"  // half of the last digit: to even
                                              "0x77c6cbcc.8000000001p-1074\n"
                                              "0x77c6cbcd.8p-1074\n"));
    const Reading expected{
        Ends::normally, {{0x77c6cbcdp-1074, 0.0}, {0x77c6cbccp-1074, 0.0}, {0x77c6cbcdp-1074, 0.0}, {0x77c6cbcep-1074, 0.0}}, ""};
    EXPECT_TRUE(same(xs, expected)) << xs;
}

// Whether the C library reads a hexadecimal number otherwise than rounded to the nearest: the one of musl cuts some where a subnormal
// double has 31 binary digits.
bool strtodMayCut(const std::string& number)
{
    static const bool cuts = std::strtod("0x77c6cbcc.f7p-1074", nullptr) != 0x77c6cbcdp-1074;
    const double read = std::strtod(number.c_str(), nullptr);
    return cuts && read >= 0x1p-1044 && read <= 0x1p-1043;
}

TEST(DataFiles, randomHexadecimalNumbersAreReadAsPlainly)
{
    const TempFolder folder;
    std::mt19937_64 engine(55);
    const auto digits = [&engine] {
        const std::uint64_t count = engine() % 20;
        std::string text(engine() % 4, '0');
        const bool plain = engine() % 3 == 0;  // many the same, so that ties are met
        for (std::uint64_t i = 0; i < count; ++i) text += plain ? "08f"[engine() % 3] : "0123456789abcdefABCDEF"[engine() % 22];
        return text;
    };
    std::string content;
    for (int round = 0; round < 40000;) {
        const long exponent = round % 2 == 0 ? static_cast<long>(engine() % 200) - 100 : static_cast<long>(engine() % 2300) - 1150;
        const std::string number = "0x" + digits() + "." + digits() + "p" + std::to_string(exponent);
        if (strtodMayCut(number)) continue;
        content += number + "\n";
        ++round;
    }
    const std::string path = folder.write("pairs.txt", content);
    const Reading expected = plainPairs(path);  // the rules of atof, so no number ends the reading
    EXPECT_EQ(expected.data.size(), 40000u);
    EXPECT_TRUE(same(readPairs(path), expected));

    if (!stodRefusesRoundedSubnormals()) GTEST_SKIP() << "std::stod takes what it has to round to a subnormal number";
    std::size_t outOfRange = 0;
    for (int round = 0; round < 600; ++round) {
        const long exponent = (round % 2 == 0 ? 1020 : -1070) + static_cast<long>(engine() % 12);
        const std::string number = "0x1." + digits() + "p" + std::to_string(exponent);
        const std::string one = folder.write(std::to_string(round), number);
        const Reading plain = plainOneSample(one);
        EXPECT_TRUE(same(readOneSample(one), plain)) << number;
        if (plain.ends == Ends::outOfRange) ++outOfRange;
    }
    EXPECT_GT(outOfRange, 200u);
    EXPECT_LT(outOfRange, 500u);
}

TEST(DataFiles, largeFilesAreReadAsPlainly)
{
    // Lines of all lengths, so that they fall on every place of whatever is read at once; then one that is too long.
    const TempFolder folder;
    FileMaker maker(54);
    std::string content;
    while (content.size() < 1500000) {
        const std::size_t length = maker.below(255);
        std::string line = maker.field(0) + ";" + maker.field(0) + ";1";
        line.resize(std::max(line.size(), length), ' ');
        content += line + "\n";
    }
    for (const std::string& end : {""s, std::string(255, '1') + "\n2\n", "3;4;1"s}) {
        const std::string path = folder.write("data.txt", content + end);
        for (const Reader& reader : readers) {
            const Reading expected = reader.plain(path);
            EXPECT_GT(expected.data.size(), 8000u) << reader.name;
            EXPECT_TRUE(same(reader.library(path), expected)) << reader.name;
        }
    }
}

/** Reads a file into an object again and again. @return how often its list moved to a larger place. */
template <typename Read, typename Capacity>
int movesWhileReading(int files, Read read, Capacity capacity)
{
    int moves = 0;
    for (int i = 0; i < files; ++i) {
        const std::size_t before = capacity();
        EXPECT_TRUE(read());
        if (capacity() != before) ++moves;
    }
    return moves;
}

TEST(DataFiles, manyFilesIntoOneObjectMoveItsDataFewTimes)  // each time to twice the room, or reading would be quadratic
{
    const TempFolder folder;
    constexpr int files = 100;
    constexpr std::size_t lines = 20000;
    std::string content;
    for (std::size_t i = 0; i < lines; ++i) content += std::to_string(i) + ".5;7;1\n";  // more than is read at once
    const std::string path = folder.write("data.txt", content);

    OneSample one;
    // clang-format off
    EXPECT_LE(movesWhileReading(files, [&] { return one.readDataFile(path); }, [&] { return one.capacity(); }), 9);
    EXPECT_EQ(one.getSampleSize(), files * lines);
    Pairs pairs;
    EXPECT_LE(movesWhileReading(files, [&] { return pairs.readDataFile(path); }, [&] { return pairs.capacity(); }), 9);
    EXPECT_EQ(pairs.getSampleSize(), files * lines);
    Series series;
    EXPECT_LE(movesWhileReading(files, [&] { return series.readSeriesFile(path); }, [&] { return series.capacity(); }), 9);
    // clang-format on
    EXPECT_EQ(series.getSampleSize(), lines) << "it begins anew with each file";
}

TEST(DataFiles, aFileWithSlightlyShorterLinesFurtherOnMovesItsDataNoMore)
{
    const TempFolder folder;
    std::string content;
    constexpr std::size_t lines = 200000;
    for (std::size_t i = 0; i < lines; ++i) content += i > 7000 && i % 10 == 0 ? "1000.0000\n" : "1000.00000\n";
    OneSample sample;
    ASSERT_TRUE(sample.readDataFile(folder.write("data.txt", content)));
    EXPECT_EQ(sample.getSampleSize(), lines);
    EXPECT_LT(sample.capacity(), lines + lines / 16);  // it would be doubled
}

TEST(DataFiles, shippedFiles)
{
    const struct {
        const char* name;
        const Reader& reader;
        std::size_t observations;
    } rows[] = {
        {"cavendish.txt", readers[0], 29},   {"nist_numacc1.txt", readers[0], 3}, {"nist_numacc3.txt", readers[0], 1001},
        {"nist_norris.txt", readers[1], 36}, {"nist_sirstv.txt", readers[1], 25}, {"nist_smls08.txt", readers[1], 1809},
        {"mendel_peas.txt", readers[1], 4},  {"directions.txt", readers[1], 10},  {"seedlings.txt", readers[2], 22},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Reading reading = row.reader.library(shipped(row.name));
        EXPECT_EQ(reading.ends, Ends::normally);
        EXPECT_EQ(reading.data.size(), row.observations);
        EXPECT_TRUE(same(reading, row.reader.plain(shipped(row.name))));
    }
}
