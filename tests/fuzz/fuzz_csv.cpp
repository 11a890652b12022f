// A table, written by CsvReport and read back by a parser of its own, which follows what R's documentation says of
// read.table(sep = ..., quote = "\"", comment.char = "#", header = FALSE, fill = TRUE, colClasses = "character").

#include "memory_file.h"
#include "printed_number.h"
#include "script.h"
#include "target.h"

#include <wq_report/csv_report.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Row = std::vector<std::string>;
using wq_fuzz::Line;

struct Content {
    std::vector<Row> rows;              // without rows that are one empty cell: R skips these as blank lines
    std::vector<std::string> comments;  // what stands behind each '#' outside of quotes and its blank, to the end of the line
};

void endRow(Content& content, Row& row)
{
    if (row.size() != 1 || !row.front().empty()) content.rows.push_back(row);
    row.clear();
}

// CR, LF and CR LF end a line to R, also within quotes, where it keeps LF.
std::string asRead(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\r')
            result += text[i];
        else if (i + 1 == text.size() || text[i + 1] != '\n')
            result += '\n';
    return result;
}

// A cell that begins with a quote: up to the quote that is not doubled. Moves i behind it.
std::string quotedCell(const std::string& text, std::size_t& i)
{
    std::string cell;
    for (++i; i < text.size(); ++i) {
        if (text[i] == '"') {
            ++i;
            if (i == text.size() || text[i] != '"') return cell;
        }
        cell += text[i];
    }
    wq_fuzz::require(false, "a quote without an end");
    return cell;
}

Content parsed(const std::string& written, char separator)
{
    const std::string text = asRead(written);
    Content content;
    Row row;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string cell;
        if (text[i] == '"') {
            cell = quotedCell(text, i);
        } else {
            const std::size_t end = std::min(text.find_first_of(std::string{separator, '\n', '#'}, i), text.size());
            cell = text.substr(i, end - i);
            i = end;
        }
        row.push_back(cell);
        if (i < text.size() && text[i] == '#') {
            const std::size_t end = std::min(text.find('\n', i), text.size());
            const std::size_t start = i + (text[i + 1] == ' ' ? 2 : 1);
            content.comments.push_back(text.substr(start, end - start));
            i = end;
        }
        if (i < text.size() && text[i] == separator) {
            if (i + 1 == text.size()) row.emplace_back();
            continue;
        }
        wq_fuzz::require(i >= text.size() || text[i] == '\n', "text behind a closing quote");
        endRow(content, row);
    }
    if (!row.empty()) endRow(content, row);
    return content;
}

std::vector<std::string> split(const std::string& text, char at)
{
    std::vector<std::string> pieces(1);
    for (const char c : text)
        if (c == at)
            pieces.emplace_back();
        else
            pieces.back() += c;
    return pieces;
}

// A separator that a cell of a number may hold, or that means something else, makes a file that nobody can read.
bool isUsable(char separator)
{
    return std::strchr("\"#\n\r.+-", separator) == nullptr && std::isalnum(static_cast<unsigned char>(separator)) == 0;
}

std::string numberAsR(double value, int precision)
{
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value > 0 ? "Inf" : "-Inf";
    return wq_fuzz::fixedText(value, precision);
}

// The writer, and beside it what a reader has to find.
class Writing {
public:
    Writing(std::string path, char separator)
    {
        file.setFileName(path);
        file.setSeparator(separator);
        wq_fuzz::require(file.fileOpen(), "the file cannot be opened");
    }

    void text(Line& line) { textCell(line, true); }
    void lastText(Line& line) { textCell(line, false); }
    void number(Line& line) { numberCell(line, true); }
    void lastNumber(Line& line) { numberCell(line, false); }
    void integer(Line& line) { integerCell(line, true); }
    void lastInteger(Line& line) { integerCell(line, false); }
    void endOfRow(Line&)
    {
        file.writeEol();
        if (row.empty() || asked) row.emplace_back();  // a separator that a cell asked for, and nothing behind it
        asked = false;
        endRow(expected, row);
    }
    void comment(Line& line)
    {
        atLineStart(line);
        const std::string text = line.text();
        file.writeComment(text);
        std::string lines = asRead(text);
        if (!lines.empty() && lines.back() == '\n') lines.pop_back();
        for (const std::string& each : split(lines, '\n')) expected.comments.push_back(each);
    }
    void header(Line& line)
    {
        atLineStart(line);
        const std::string titles = line.text();
        file.writeHeader(titles);
        for (const std::string& title : split(titles, '|')) row.push_back(asRead(title));
        endRow(expected, row);
    }
    void precision(Line& line) { file.setPrecision(static_cast<int>(line.count() % 40)); }  // of the stream; cells have their own

    Content finished(Line line)
    {
        atLineStart(line);
        wq_fuzz::require(file.fileClose(), "the file was not written");
        return expected;
    }

private:
    void atLineStart(Line& line)
    {
        if (!row.empty()) endOfRow(line);
    }
    void cell(const std::string& text, bool more)
    {
        row.push_back(text);
        asked = more;
    }
    void textCell(Line& line, bool more)
    {
        const std::string text = line.text();
        file.cell(text, more);
        cell(asRead(text), more);
    }
    void numberCell(Line& line, bool more)
    {
        const double value = line.number();
        const int precision = static_cast<int>(line.count() % 1100);
        file.cell(value, precision, more);
        cell(numberAsR(value, precision), more);
    }
    void integerCell(Line& line, bool more)
    {
        const int value = static_cast<int>(line.count());
        file.cell(value, more);
        cell(std::to_string(value), more);
    }

    wq_lib::CsvReport file;
    Content expected;
    Row row;
    bool asked = false;
};

const struct {
    const char* name;
    void (Writing::*call)(Line&);
} calls[] = {
    {"text", &Writing::text},     {"text.", &Writing::lastText},  // a point: the last cell of its row
    {"number", &Writing::number}, {"number.", &Writing::lastNumber}, {"integer", &Writing::integer}, {"integer.", &Writing::lastInteger},
    {"end", &Writing::endOfRow},  {"comment", &Writing::comment},    {"header", &Writing::header},   {"precision", &Writing::precision},
};

void requireSame(const char* what, const std::vector<std::string>& found, const std::vector<std::string>& expected)
{
    wq_fuzz::require(found.size() == expected.size(), what, ": ", found.size(), " instead of ", expected.size());
    for (std::size_t i = 0; i < found.size(); ++i)
        wq_fuzz::require(found[i] == expected[i], what, " ", i, ": \"", found[i], "\" instead of \"", expected[i], '"');
}

}  // namespace

// The first line: the separator. Then a call per line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const wq_fuzz::MemoryFile memory;
    std::vector<Line> lines = wq_fuzz::linesOf({reinterpret_cast<const char*>(bytes), size});
    if (lines.empty()) return 0;

    const std::string head = lines.front().text();
    const char separator = head.empty() ? ' ' : head.front();
    Writing writing(memory.path(), separator);
    for (std::size_t i = 1; i < lines.size(); ++i) (writing.*wq_fuzz::named(calls, lines[i].word()).call)(lines[i]);
    const Content expected = writing.finished(Line(""));
    if (!isUsable(separator)) return 0;

    const Content found = parsed(memory.content(), separator);
    requireSame("comment", found.comments, expected.comments);
    wq_fuzz::require(found.rows.size() == expected.rows.size(), found.rows.size(), " rows instead of ", expected.rows.size());
    for (std::size_t i = 0; i < found.rows.size(); ++i) requireSame("cell", found.rows[i], expected.rows[i]);
    return 0;
}
