// Companion libraries: console, text, file names, file writer, CSV writer.
#include <wq_report/csv_report.h>
#include <wq_udf/console.h>
#include <wq_udf/file_name.h>
#include <wq_udf/text.h>
#include <wq_udf/write_file.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <iostream>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/console.h"
#include "support/files.h"

using wq_test::contentOf;
using wq_test::printed;
using wq_test::printedToError;
using wq_test::TempFolder;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// ---------------------------------------------------------------- console

TEST(Console, displayWritesTheTextAsItIs)
{
    for (const std::string text : {"", "a", "a\n", "a\n\n", "\n", "two\nlines", "tab\tand \"quotes\" 100%s"})
        EXPECT_EQ(printed([&] { wq_lib::display(text); }), text);
    const std::string zero("a\0b", 3);
    EXPECT_EQ(printed([&] { wq_lib::display(zero); }), zero);
}

TEST(Console, messagesEndTheirLine)
{
    const std::pair<std::string, std::string> rows[] = {
        {"", "\n"}, {"\n", "\n"}, {"a", "a\n"}, {"a\n", "a\n"}, {"a\n\n", "a\n\n"}, {"two\nlines", "two\nlines\n"}, {"a\r", "a\r\n"},
    };
    for (const auto& [text, shown] : rows) {
        EXPECT_EQ(printed([&, &text = text] { wq_lib::message(text); }), shown);
        EXPECT_EQ(printedToError([&, &text = text] { wq_lib::errorMessage(text); }), shown);
    }
}

TEST(Console, onlyErrorsGoToStandardError)
{
    EXPECT_EQ(printedToError([] { printed([] { wq_lib::display("a"), wq_lib::message("b"); }); }), "");
    EXPECT_EQ(printed([] { printedToError([] { wq_lib::errorMessage("c"); }); }), "");
}

TEST(Console, textsAreFlushed)
{
    // A buffer that counts how often it is asked to pass its text on.
    class Counting : public std::stringbuf {
    public:
        int flushes = 0;

    protected:
        int sync() override
        {
            ++flushes;
            return std::stringbuf::sync();
        }
    };
    const std::pair<std::ostream*, std::function<void()>> rows[] = {
        {&std::cout, [] { wq_lib::display("a"); }},
        {&std::cout, [] { wq_lib::message("a"); }},
        {&std::cerr, [] { wq_lib::errorMessage("a"); }},
    };
    for (const auto& [stream, call] : rows) {
        Counting buffer;
        std::streambuf* const before = stream->rdbuf(&buffer);
        call();
        stream->rdbuf(before);
        EXPECT_GE(buffer.flushes, 1);
    }
}

TEST(Console, theStateOfTheStreamHasNoInfluenceAndStays)
{
    const std::ios_base::fmtflags flags = std::cout.flags();
    std::cout << std::hex << std::showpos << std::scientific << std::left << std::setfill('*') << std::setprecision(2) << std::setw(20);
    const std::string shown = printed([] {
        wq_lib::display("12\n");
        wq_lib::message("13");
    });
    EXPECT_EQ(shown, "12\n13\n");
    EXPECT_EQ(std::cout.precision(), 2);
    EXPECT_EQ(std::cout.fill(), '*');
    EXPECT_TRUE(std::cout.flags() & std::ios_base::hex);
    std::cout << std::setfill(' ') << std::setprecision(6) << std::setw(0);
    std::cout.flags(flags);
}

// ---------------------------------------------------------------- text

TEST(Console, displayToAnotherStream)
{
    std::ostringstream outer, inner;
    const auto write = [] {
        wq_lib::display("a");
        wq_lib::message("b");
        wq_lib::errorMessage("c");
    };
    const auto here = [&](const char* expected) {
        EXPECT_EQ(printedToError([&] { EXPECT_EQ(printed(write), expected); }), "c\n") << "errors stay where they are";
    };
    here("ab\n");
    {
        const wq_lib::DisplayTo first(outer);
        here("");
        {
            const wq_lib::DisplayTo second(inner);
            here("");
            std::thread([&] { here("ab\n"); }).join();
        }
        here("");
    }
    here("ab\n");
    EXPECT_EQ(outer.str(), "ab\nab\n");
    EXPECT_EQ(inner.str(), "ab\n");
}

TEST(Text, replicateChar)
{
    EXPECT_EQ(wq_lib::replicateChar('-', 3), "---");
    EXPECT_EQ(wq_lib::replicateChar('x', 1), "x");
    EXPECT_EQ(wq_lib::replicateChar('\0', 2), std::string(2, '\0'));
    EXPECT_EQ(wq_lib::replicateChar(0xE4, 2), "\xE4\xE4");
    EXPECT_EQ(wq_lib::replicateChar('a', 100000), std::string(100000, 'a'));
    for (const int none : {0, -1, INT_MIN}) EXPECT_EQ(wq_lib::replicateChar('-', none), "");
}

TEST(Text, rules)
{
    EXPECT_EQ(wq_lib::singleLine(5), "-----");
    EXPECT_EQ(wq_lib::doubleLine(5), "=====");
    EXPECT_EQ(wq_lib::singleLine(70), std::string(70, '-'));
    EXPECT_EQ(wq_lib::doubleLine(70), std::string(70, '='));
    EXPECT_EQ(wq_lib::singleLine(-1), "");
    EXPECT_EQ(wq_lib::doubleLine(0), "");
}

TEST(Text, removeChar)
{
    const struct {
        std::string text;
        int character;
        std::string rest;
    } rows[] = {
        {"# series A", '#', " series A"},
        {"a#b##c#", '#', "abc"},
        {"###", '#', ""},
        {"none", '#', "none"},
        {"", '#', ""},
        {"line\r", '\r', "line"},
        {std::string("a\0b", 3), '\0', "ab"},
        {"\xE4r\xE4", 0xE4, "r"},
    };
    for (const auto& row : rows) EXPECT_EQ(wq_lib::removeChar(row.text, row.character), row.rest) << row.text;
}

TEST(Text, brackets)
{
    EXPECT_EQ(wq_lib::BRACKET, "()");
    EXPECT_EQ(wq_lib::CURLY_BRACKET, "{}");
    EXPECT_EQ(wq_lib::SQUARE_BRACKET, "[]");
}

TEST(Text, outputOperatorHonoursTheStream)
{
    const struct {
        const char* shows;
        std::function<void(std::ostream&)> set;
        const char* text;
        const char* output;
    } rows[] = {
        {"plain", [](std::ostream&) {}, "abc", "abc|"},
        {"empty", [](std::ostream&) {}, "", "|"},
        {"right by default", [](std::ostream& os) { os << std::setw(6); }, "abc", "   abc|"},
        {"left", [](std::ostream& os) { os << std::left << std::setw(6); }, "abc", "abc   |"},
        {"internal is right", [](std::ostream& os) { os << std::internal << std::setw(6); }, "abc", "   abc|"},
        {"fill", [](std::ostream& os) { os << std::setfill('.') << std::setw(6); }, "abc", "...abc|"},
        {"width below the length", [](std::ostream& os) { os << std::setw(2); }, "abc", "abc|"},
        {"empty with width", [](std::ostream& os) { os << std::setfill('-') << std::setw(3); }, "", "---|"},
    };
    for (const auto& row : rows) {
        std::ostringstream ours, standard;
        row.set(ours);
        row.set(standard);
        EXPECT_EQ(&wq_lib::operator<<(ours, std::string(row.text)), &ours);
        standard << std::string(row.text);
        EXPECT_EQ(ours.str(), standard.str()) << row.shows;
        EXPECT_EQ(ours.width(), 0) << row.shows;
        ours << '|';
        EXPECT_EQ(ours.str(), row.output) << row.shows;
    }
}

TEST(Text, outputOperatorIsTheOneThatHostsGet)
{
    using namespace wq_lib;
    const std::string text = "abc";
    std::ostringstream stream;
    stream << std::setw(5) << text << text + "d" << std::string("e") << BRACKET;
    EXPECT_EQ(stream.str(), "  abcabcde()");
}

// ---------------------------------------------------------------- file names

TEST(FileName, parts)
{
    const struct {
        std::string path, folder, name, extension;
    } rows[] = {
        {"/home/me/data.txt", "/home/me/", "data", ".txt"},
        {"data.txt", "", "data", ".txt"},
        {"data", "", "data", ""},
        {"a/b", "a/", "b", ""},
        {"a.b/c", "a.b/", "c", ""},  // the folder's dot is not the file's
        {"a.b/c.d", "a.b/", "c", ".d"},
        {"archive.tar.gz", "", "archive.tar", ".gz"},
        {".hidden", "", ".hidden", ""},  // a leading dot starts no extension
        {"/x/.hidden", "/x/", ".hidden", ""},
        {".hidden.txt", "", ".hidden", ".txt"},
        {"x.", "", "x", "."},
        {".", "", ".", ""},
        {"..", "", ".", "."},
        {"/x/..", "/x/", ".", "."},
        {"/", "/", "", ""},
        {"//", "//", "", ""},
        {"a/", "a/", "", ""},
        {"", "", "", ""},
        {"a b/c d.e f", "a b/", "c d", ".e f"},
        {"C:\\x\\y.txt", "", "C:\\x\\y", ".txt"},  // only '/' ends a folder
        {"\xC3\xA4/\xC3\xB6.\xC3\xBC", "\xC3\xA4/", "\xC3\xB6", ".\xC3\xBC"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        std::string path = row.path;
        const wq_lib::name_of_file parts = wq_lib::splitFileName(path);
        EXPECT_EQ(path, row.path);
        EXPECT_EQ(parts.folder, row.folder);
        EXPECT_EQ(parts.name, row.name);
        EXPECT_EQ(parts.extension, row.extension);
        EXPECT_EQ(parts.folder + parts.name + parts.extension, row.path);

        wq_lib::FileName file;
        file.setFileName(path);
        EXPECT_EQ(file.getFileName(), row.path);
    }
}

TEST(FileName, partsAreThePathAgain)
{
    std::mt19937 engine(81);
    const std::string alphabet = "ab./.";
    for (int round = 0; round < 5000; ++round) {
        std::string path;
        for (std::size_t n = engine() % 12; n > 0; --n) path += alphabet[engine() % alphabet.size()];
        const wq_lib::name_of_file parts = wq_lib::splitFileName(path);
        EXPECT_EQ(parts.folder + parts.name + parts.extension, path);
        EXPECT_EQ(parts.name.find('/'), std::string::npos) << path;
        EXPECT_EQ(parts.extension.find('/'), std::string::npos) << path;
        EXPECT_TRUE(parts.folder.empty() || parts.folder.back() == '/') << path;
        EXPECT_EQ(parts.extension.rfind('.'), parts.extension.empty() ? std::string::npos : 0) << path;
        EXPECT_TRUE(parts.extension.empty() || !parts.name.empty()) << path;
        EXPECT_TRUE(!parts.extension.empty() || parts.name.rfind('.') == std::string::npos || parts.name.rfind('.') == 0) << path;
    }
}

TEST(FileName, partsAreMovable)
{
    std::string path = "/home/me/data.txt";
    wq_lib::name_of_file parts;
    parts = wq_lib::splitFileName(path);
    const wq_lib::name_of_file moved = std::move(parts);
    EXPECT_EQ(moved.folder + moved.name + moved.extension, path);
}

// ---------------------------------------------------------------- file writer

// A writer whose stream tests may use.
class Writer : public wq_lib::WriteFile {
public:
    using WriteFile::stream;
    using WriteFile::write;
    explicit Writer(std::string path) { setFileName(path); }
};

TEST(WriteFile, startsANewFileUnlessAskedToAppend)
{
    const TempFolder folder;
    const std::string path = folder.write("a.txt", "before\n");
    const auto writeLine = [&](const char* text, std::function<void(Writer&)> set) {
        Writer file(path);
        set(file);
        ASSERT_TRUE(file.fileOpen());
        file.write(text);
        file.writeEol();
        EXPECT_TRUE(file.fileClose());
    };
    EXPECT_FALSE(Writer(path).isAppend());
    writeLine("one", [](Writer&) {});
    EXPECT_EQ(contentOf(path), "one\n");
    writeLine("two", [](Writer& file) { file.setAppend(true); });
    EXPECT_EQ(contentOf(path), "one\ntwo\n");
    writeLine("three", [](Writer& file) { file.setAppend(true), file.setAppend(false); });
    EXPECT_EQ(contentOf(path), "three\n");
}

TEST(WriteFile, appendingMakesAMissingFile)
{
    const TempFolder folder;
    Writer file(folder.path("new.txt"));
    file.setAppend(true);
    ASSERT_TRUE(file.fileOpen());
    EXPECT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(folder.path("new.txt")), "");
}

TEST(WriteFile, linesEndWithOneLineFeed)
{
    const TempFolder folder;
    Writer file(folder.path("a.txt"));
    ASSERT_TRUE(file.fileOpen());
    file.writeEol();
    file.writeEol();
    EXPECT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(folder.path("a.txt")), "\n\n");
}

TEST(WriteFile, precisionIsInFixedNotation)
{
    const TempFolder folder;
    Writer file(folder.path("a.txt"));
    ASSERT_TRUE(file.fileOpen());
    file.stream << std::scientific;
    file.setPrecision(3);
    EXPECT_EQ(file.stream.flags() & std::ios_base::floatfield, std::ios_base::fixed);
    file.stream << 2.5 << ' ' << 1e6;
    file.setPrecision(0);
    file.stream << ' ' << 1234.25;
    EXPECT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(folder.path("a.txt")), "2.500 1000000.000 1234");
}

TEST(WriteFile, closingTellsWhetherEverythingArrived)
{
    const TempFolder folder;
    Writer file(folder.path("a.txt"));
    EXPECT_FALSE(file.fileClose()) << "nothing is open";
    ASSERT_TRUE(file.fileOpen());
    EXPECT_TRUE(file.fileClose());
    EXPECT_FALSE(file.fileClose()) << "closed before";
    ASSERT_TRUE(file.fileOpen()) << "a file may be opened again";
    file.stream.setstate(std::ios_base::badbit);
    EXPECT_FALSE(file.fileClose());
    ASSERT_TRUE(file.fileOpen()) << "the failure is forgotten";
    file.write("again");
    EXPECT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(folder.path("a.txt")), "again");
}

TEST(WriteFile, aFullDiskIsReported)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    for (const std::size_t size : {std::size_t{1}, std::size_t{100}, std::size_t{1} << 20}) {
        SCOPED_TRACE(size);
        Writer file("/dev/full");
        ASSERT_TRUE(file.fileOpen());
        file.write(std::string(size, 'x'));
        EXPECT_FALSE(file.fileClose());
    }
    Writer nothing("/dev/full");
    ASSERT_TRUE(nothing.fileOpen());
    EXPECT_TRUE(nothing.fileClose()) << "nothing was written";
}

TEST(WriteFile, anOpenFileIsNotOpenedAgain)
{
    const TempFolder folder;
    Writer file(folder.path("a.txt"));
    ASSERT_TRUE(file.fileOpen());
    file.write("before ");
    EXPECT_FALSE(file.fileOpen());
    file.write("after");
    EXPECT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(folder.path("a.txt")), "before after");
}

TEST(WriteFile, whatGoesThroughTheStreamKeepsItsPlace)
{
    const TempFolder folder;
    const std::string path = folder.path("a.txt");
    Writer file(path);
    ASSERT_TRUE(file.fileOpen());
    std::string expected;
    for (int i = 0; i < 100000; ++i) {  // characters, texts and lines in turn, many times what any buffer holds
        file.stream.put('c');
        expected += 'c';
        if (i % 7 == 0) {
            file.write("text");
            file.stream << i;
            expected += "text" + std::to_string(i);
        }
        if (i % 100 == 0) {
            file.writeEol();
            expected += '\n';
        }
    }
    EXPECT_EQ(file.stream.tellp(), static_cast<std::streamoff>(expected.size()));
    file.stream.flush();
    EXPECT_TRUE(file.stream.good());
    EXPECT_EQ(contentOf(path), expected) << "a flush carries everything into the file";
    const std::string block(100000, 'b');
    file.stream << block << 'e';
    EXPECT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(path), expected + block + 'e');
}

TEST(WriteFile, itsPlaceCanBeSet)
{
    const TempFolder folder;
    Writer file(folder.path("a.txt"));
    ASSERT_TRUE(file.fileOpen());
    file.write("abcdef");
    file.stream.seekp(2);
    file.write("CD");
    EXPECT_EQ(file.stream.tellp(), std::streamoff(4));
    EXPECT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(folder.path("a.txt")), "abCDef");
}

TEST(WriteFile, goesQuietlyWhereItsStreamThrows)
{
    Writer file("/dev/full");
    if (!file.fileOpen()) GTEST_SKIP() << "no /dev/full";
    file.write("text");
    file.stream.exceptions(std::ios_base::badbit | std::ios_base::failbit);
}

TEST(WriteFile, aFullDiskIsToldToWhoUsesTheStream)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    const struct {
        const char* name;
        std::function<void(Writer&)> write;
    } rows[] = {
        {"a flush", [](Writer& file) { file.stream << "x" << std::flush; }},
        {"a line with a flush", [](Writer& file) { file.stream << std::endl; }},
        {"a long text", [](Writer& file) { file.stream << std::string(1 << 20, 'x') << std::flush; }},
        // clang-format off
        {"many characters", [](Writer& file) { for (int i = 0; i < 1 << 20; ++i) file.stream.put('x'); }},
        {"many texts", [](Writer& file) { for (int i = 0; i < 1 << 18; ++i) file.stream << "text"; }},
        // clang-format on
    };
    for (const auto& row : rows) {
        Writer file("/dev/full");
        ASSERT_TRUE(file.fileOpen());
        row.write(file);
        EXPECT_FALSE(file.stream.good()) << row.name;
        EXPECT_FALSE(file.fileClose()) << row.name;
    }
}

TEST(WriteFile, whatCannotBeOpenedLeavesNothingBehind)
{
    const TempFolder folder;
    for (const std::string& path :
         {folder.path("missing/a.txt"), folder.path(""), std::string(), folder.path("x/"), std::string("/dev/null/a")}) {
        SCOPED_TRACE(path);
        Writer file(path);
        EXPECT_FALSE(file.fileOpen());
        EXPECT_FALSE(file.fileClose());
        file.setAppend(true);
        EXPECT_FALSE(file.fileOpen());
        EXPECT_FALSE(file.fileClose());
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("")));
}

TEST(WriteFile, anotherNameTakesEffectWithTheNextFile)
{
    const TempFolder folder;
    Writer file(folder.path("a.txt"));
    std::string second = folder.path("b.txt");
    ASSERT_TRUE(file.fileOpen());
    file.write("a");
    ASSERT_TRUE(file.fileClose());
    file.setFileName(second);
    ASSERT_TRUE(file.fileOpen());
    file.write("b");
    ASSERT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(folder.path("a.txt")), "a");
    EXPECT_EQ(contentOf(second), "b");
}

TEST(WriteFile, theEndOfAWriterClosesItsFile)
{
    const TempFolder folder;
    {
        Writer file(folder.path("a.txt"));
        ASSERT_TRUE(file.fileOpen());
        file.write("left open");
    }
    EXPECT_EQ(contentOf(folder.path("a.txt")), "left open");
}

// ---------------------------------------------------------------- CSV writer

// What a CsvReport writes.
template <typename Call>
std::string written(Call&& call, char separator = ',')
{
    const TempFolder folder;
    std::string path = folder.path("table.csv");
    wq_lib::CsvReport file;
    file.setFileName(path);
    EXPECT_TRUE(file.fileOpen());
    if (separator != ',') file.setSeparator(separator);
    call(file);
    EXPECT_TRUE(file.fileClose());
    return contentOf(path);
}

TEST(CsvReport, isFileReportAndTable)
{
    static_assert(std::is_base_of_v<wq_lib::WriteFile, wq_lib::CsvReport>);
    static_assert(std::is_base_of_v<wq_lib::Report, wq_lib::CsvReport>);
    static_assert(std::is_base_of_v<wq_lib::Table, wq_lib::CsvReport>);
    static_assert(std::is_base_of_v<wq_lib::FileName, wq_lib::WriteFile>);
    wq_lib::CsvReport file;
    EXPECT_EQ(file.getSeparator(), ',');
    EXPECT_FALSE(file.isAppend());
    file.setSeparator(';');
    EXPECT_EQ(file.getSeparator(), ';');
}

TEST(CsvReport, aRowGoesOnWhereTheFileIsAppendedTo)
{
    const struct {
        int line;
        const char* before;  // cells that the first opening writes: 7 with more to come, or not; e: an empty one; n: a line end
        const char* after;   // those of the second one
        const char* content;
    } rows[] = {
        // clang-format off
        {__LINE__, "7", "8", "7,8"},
        {__LINE__, "7", "8n8", "7,8\n8"},
        {__LINE__, "7n", "8", "7\n8"},
        {__LINE__, "", "8", "8"},
        {__LINE__, "7+", "8", "7,8"},
        {__LINE__, "7+7", "8", "7,7,8"},
        {__LINE__, "7+e", "8", "7,,8"},
        {__LINE__, "7", "n8", "7\n8"},
        {__LINE__, "7", "", "7"},
        // clang-format on
    };
    const auto write = [](wq_lib::CsvReport& file, const std::string& cells) {
        ASSERT_TRUE(file.fileOpen());
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const bool more = i + 1 < cells.size() && cells[i + 1] == '+';
            if (cells[i] == 'n') file.writeEol();
            if (cells[i] == 'e') file.cell(std::string(), more);
            if (cells[i] == '7' || cells[i] == '8') file.cell(cells[i] - '0', more);
        }
        EXPECT_TRUE(file.fileClose());
    };
    for (const auto& row : rows) {
        for (const bool sameObject : {true, false}) {
            if (!sameObject && std::string(row.before) == "7+e") continue;  // the file does not tell that its last cell is an empty one
            const TempFolder folder;
            std::string path = folder.path("table.csv");
            wq_lib::CsvReport first;
            wq_lib::CsvReport second;
            wq_lib::CsvReport& later = sameObject ? first : second;
            first.setFileName(path);
            later.setFileName(path);
            write(first, row.before);
            later.setAppend(true);
            write(later, row.after);
            EXPECT_EQ(contentOf(path), row.content) << "row of line " << row.line << (sameObject ? "" : ", another object");
        }
    }
}

TEST(CsvReport, aRowGoesOnBehindTheSeparatorThatAHostSetsLater)
{
    const TempFolder folder;
    std::string path = folder.write("table.csv", "7;");
    wq_lib::CsvReport file;
    file.setFileName(path);
    file.setAppend(true);
    ASSERT_TRUE(file.fileOpen());
    file.setSeparator(';');
    file.cell(8, false);
    ASSERT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(path), "7;8");
}

TEST(CsvReport, anotherFileStartsWithANewRow)
{
    const TempFolder folder;
    std::string first = folder.path("first.csv");
    wq_lib::CsvReport file;
    file.setFileName(first);
    ASSERT_TRUE(file.fileOpen());
    file.cell(7, false);
    ASSERT_TRUE(file.fileClose());
    for (const char* const before : {"", "1,2\n"}) {
        std::string path = folder.write("next.csv", before);
        file.setFileName(path);
        file.setAppend(true);
        ASSERT_TRUE(file.fileOpen());
        file.cell(8, false);
        ASSERT_TRUE(file.fileClose());
        EXPECT_EQ(contentOf(path), before + std::string("8"));
    }
    file.setFileName(first);
    file.setAppend(false);
    ASSERT_TRUE(file.fileOpen());
    file.cell(9, false);
    ASSERT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(first), "9");
}

TEST(CsvReport, aSecondFileOfTheSameObjectStartsWithoutASeparator)
{
    const wq_test::TempFolder folder;
    std::string path = folder.path("cells.txt");
    wq_lib::CsvReport file;
    file.setFileName(path);
    ASSERT_TRUE(file.fileOpen());
    file.cell(1, false);  // the row is left without its end
    ASSERT_TRUE(file.fileClose());
    ASSERT_TRUE(file.fileOpen());
    file.cell(2, false);
    ASSERT_TRUE(file.fileClose());
    EXPECT_EQ(wq_test::contentOf(path), "2");
}

TEST(CsvReport, separatorsStandBetweenCells)
{
    // The flags of the cells of one row: 1 when more follow.
    const struct {
        const char* flags;
        const char* row;
    } rows[] = {
        // clang-format off
        {"", ""},
        {"0", "a"},
        {"1", "a,"},  // a cell asked for it
        {"10", "a,b"},
        {"110", "a,b,c"},
        {"11", "a,b,"},
        {"00", "a,b"},  // after a cell that said it was the last
        {"000", "a,b,c"},
        {"100", "a,b,c"},
        {"1000", "a,b,c,d"},
        {"01", "a,b,"},
        {"010", "a,b,c"},
        {"0110", "a,b,c,d"},
        {"0100", "a,b,c,d"},
        // clang-format on
    };
    for (const auto& row : rows) {
        const std::string expected = std::string(row.row) + "\n";
        const auto eachFlag = [&](auto&& cell) {
            char name = 'a';
            for (const char* flag = row.flags; *flag != '\0'; ++flag) cell(name++, *flag == '1');
        };
        EXPECT_EQ(written([&](wq_lib::CsvReport& file) {
                      eachFlag([&](char name, bool more) { file.cell(std::string(1, name), more); });
                      file.writeEol();
                  }),
                  expected)
            << row.flags;
        std::string numbers = expected;
        for (char& c : numbers)
            if (c >= 'a' && c <= 'd') c = static_cast<char>(c - 'a' + '0');
        // clang-format off
        EXPECT_EQ(written([&](wq_lib::CsvReport& file) {
            eachFlag([&](char name, bool more) { file.cell(name - 'a', more); });
            file.writeEol();
        }), numbers) << row.flags;
        EXPECT_EQ(written([&](wq_lib::CsvReport& file) {
            eachFlag([&](char name, bool more) { file.cell(static_cast<double>(name - 'a'), 0, more); });
            file.writeEol();
        }), numbers) << row.flags;
        // clang-format on
    }
}

TEST(CsvReport, aRowOwesTheNextOneNothing)
{
    EXPECT_EQ(written([](wq_lib::CsvReport& file) {
                  file.cell(1, true), file.cell(2, false), file.writeEol();
                  file.cell(3, false), file.writeEol();
                  file.writeEol();
                  file.cell(4, false), file.cell(5, false), file.writeEol();
                  file.cell(6, false);
              }),
              "1,2\n3\n\n4,5\n6");
}

TEST(CsvReport, openingAnOpenFileChangesNothing)
{
    EXPECT_EQ(written([](wq_lib::CsvReport& file) {
                  file.cell("a", false);
                  EXPECT_FALSE(file.fileOpen());
                  file.cell("b", false);
              }),
              "a,b");
}

TEST(CsvReport, kindsOfCellsMix)
{
    EXPECT_EQ(written(
                  [](wq_lib::CsvReport& file) {
                      file.cell("x", true), file.cell(-7, true), file.cell(2.5, 2, true), file.cell(std::string("y z"), false);
                      file.writeEol();
                  },
                  '\t'),
              "x\t-7\t2.50\ty z\n");
}

TEST(CsvReport, textCells)
{
    const struct {
        const char* text;
        const char* comma;
        const char* tab;
    } rows[] = {
        {"plain", "plain", "plain"},
        {"", "", ""},
        {"two words", "two words", "two words"},
        {"a,b", "\"a,b\"", "a,b"},
        {"a\tb", "a\tb", "\"a\tb\""},
        {"a;b|c", "a;b|c", "a;b|c"},
        {"say \"x\"", "\"say \"\"x\"\"\"", "\"say \"\"x\"\"\""},
        {"\"", "\"\"\"\"", "\"\"\"\""},
        {"a#b", "\"a#b\"", "\"a#b\""},
        {"#", "\"#\"", "\"#\""},
        {"a\nb", "\"a\nb\"", "\"a\nb\""},
        {"a\rb", "\"a\rb\"", "\"a\rb\""},
        {"it's", "it's", "it's"},
        {" blank around ", " blank around ", " blank around "},
    };
    for (const auto& row : rows) {
        const auto cell = [&](wq_lib::CsvReport& file) { file.cell(std::string(row.text), false); };
        EXPECT_EQ(written(cell), row.comma) << row.text;
        EXPECT_EQ(written(cell, '\t'), row.tab) << row.text;
    }
}

TEST(CsvReport, numberCells)
{
    const struct {
        double value;
        int precision;
        const char* text;
    } rows[] = {
        {2.5, 12, "2.500000000000"},
        {2.5, 0, "2"},  // to even
        {3.5, 0, "4"},
        {0.1, 20, "0.10000000000000000555"},
        {2.5, -1, "2.500000"},  // a negative precision is none to the C library too, which then takes 6
        {-0.0, 3, "-0.000"},
        {-1e-9, 3, "-0.000"},
        {0.0, 0, "0"},
        {1e6, 6, "1000000.000000"},
        {-1234567.875, 2, "-1234567.88"},
        {1e22, 1, "10000000000000000000000.0"},
        {123456789012345680.0, 1, "123456789012345680.0"},
        {infinity, 6, "Inf"},
        {-infinity, 6, "-Inf"},
        {notANumber, 6, "NaN"},
        {-notANumber, 0, "NaN"},
    };
    for (const auto& row : rows) EXPECT_EQ(written([&](wq_lib::CsvReport& file) { file.cell(row.value, row.precision, false); }), row.text);
}

TEST(CsvReport, integerCells)
{
    EXPECT_EQ(written([](wq_lib::CsvReport& file) {
                  for (const int x : {0, 7, -7, 1000000, INT_MAX, INT_MIN}) file.cell(x, true);
              }),
              "0,7,-7,1000000,2147483647,-2147483648,");
}

TEST(CsvReport, comments)
{
    const std::pair<std::string, std::string> rows[] = {
        {"", "#\n"},
        {"one line", "# one line\n"},
        {"one line\n", "# one line\n"},
        {"two\nlines", "# two\n# lines\n"},
        {"a\n\nb", "# a\n#\n# b\n"},
        {"\na", "#\n# a\n"},
        {"a\n\n", "# a\n#\n"},
        {"\n", "#\n"},
        {"\n\n", "#\n#\n"},
        {"# marked", "# # marked\n"},
        {" blank", "#  blank\n"},
        {"1,2\t\"3\"", "# 1,2\t\"3\"\n"},
        {" run 1\r run 2\r", "#  run 1\n#  run 2\r\n"},  // comments of a file with carriage returns: R ends a line at each
        {"a\r\nb\r\n", "# a\r\n# b\r\n"},
        {"a\r\r\n\rb", "# a\n# \r\n#\n# b\n"},
    };
    for (const auto& [text, lines] : rows)
        EXPECT_EQ(written([&, &text = text](wq_lib::CsvReport& file) { file.writeComment(text); }), lines);
}

TEST(CsvReport, headers)
{
    const struct {
        const char* titles;
        const char* comma;
        const char* tab;
    } rows[] = {
        {"X|Y", "X,Y\n", "X\tY\n"},
        {"class|start|end|mid|observed|rate", "class,start,end,mid,observed,rate\n", "class\tstart\tend\tmid\tobserved\trate\n"},
        {"one", "one\n", "one\n"},
        {"", "\n", "\n"},
        {"|", ",\n", "\t\n"},
        {"a||b", "a,,b\n", "a\t\tb\n"},
        {"a|", "a,\n", "a\t\n"},
        {"a,b|c#|d\te", "\"a,b\",\"c#\",d\te\n", "a,b\t\"c#\"\t\"d\te\"\n"},
    };
    for (const auto& row : rows) {
        const auto header = [&](wq_lib::CsvReport& file) { file.writeHeader(row.titles); };
        EXPECT_EQ(written(header), row.comma) << row.titles;
        EXPECT_EQ(written(header, '\t'), row.tab) << row.titles;
    }
}

TEST(CsvReport, aWholeTable)
{
    EXPECT_EQ(written(
                  [](wq_lib::CsvReport& file) {
                      file.writeComment("made up");
                      file.writeHeader("x|y");
                      file.cell(1.5, 6, true), file.cell(-2.25, 6, false), file.writeEol();
                      file.cell(3.0, 6, true), file.cell(notANumber, 6, false), file.writeEol();
                  },
                  '\t'),
              "# made up\nx\ty\n1.500000\t-2.250000\n3.000000\tNaN\n");
}

TEST(CsvReport, theStreamsPrecisionIsNotTheCells)
{
    EXPECT_EQ(written([](wq_lib::CsvReport& file) {
                  file.setPrecision(2);
                  file.cell(0.125, 6, true), file.cell(1234567, false);
              }),
              "0.125000,1234567");
}

TEST(CsvReport, usedThroughItsBases)
{
    EXPECT_EQ(written([](wq_lib::CsvReport& file) {
                  wq_lib::Report& report = file;
                  wq_lib::Table& table = file;
                  wq_lib::WriteFile& writer = file;
                  report.writeComment("c");
                  report.writeHeader("a|b");
                  table.cell("x", false), table.cell(1, false), table.cell(2.0, 1, false);
                  writer.writeEol();  // ends the row of the table too
                  table.cell("y", false);
                  writer.writeEol();
              }),
              "# c\na,b\nx,1,2.0\ny\n");
}

TEST(CsvReport, aFullDiskIsReported)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    std::string path = "/dev/full";
    wq_lib::CsvReport file;
    file.setFileName(path);
    ASSERT_TRUE(file.fileOpen());
    file.cell("x", false);
    EXPECT_FALSE(file.fileClose());
}

// A cell of a double must name its precision: without one it would turn into an integer.
template <typename Cells, typename... Arguments>
using CellCall = decltype(std::declval<Cells&>().cell(std::declval<Arguments>()...));

template <typename Void, typename Cells, typename... Arguments>
struct Accepts : std::false_type {
};
template <typename Cells, typename... Arguments>
struct Accepts<std::void_t<CellCall<Cells, Arguments...>>, Cells, Arguments...> : std::true_type {
};

template <typename Cells, typename... Arguments>
constexpr bool accepts = Accepts<void, Cells, Arguments...>::value;

TEST(CsvReport, aDoubleNeedsItsPrecision)
{
    EXPECT_FALSE((accepts<wq_lib::CsvReport, double, bool>));
    EXPECT_FALSE((accepts<wq_lib::Table, double, bool>));
    EXPECT_TRUE((accepts<wq_lib::CsvReport, double, int, bool>));
    EXPECT_TRUE((accepts<wq_lib::CsvReport, int, bool>));
    EXPECT_TRUE((accepts<wq_lib::CsvReport, std::string, bool>));
    EXPECT_TRUE((accepts<wq_lib::Table, const char*, bool>));
}

}  // namespace
