#include <wq_report/csv_report.h>

#include "numbers/number_text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace wq_lib {

namespace {

/** Calls write for each piece of the text between separators; for an empty text once. */
template <typename Write>
void forEachPiece(std::string_view text, char separator, Write&& write)
{
    for (;;) {
        const std::size_t end = text.find(separator);
        const bool last = end == std::string_view::npos;
        write(text.substr(0, end), last);
        if (last) return;
        text.remove_prefix(end + 1);
    }
}

/**
 * Whether a file to be appended to ends in a cell, which a further one would run into.
 * @param due what the writer knows of it: the answer where the file does not tell.
 */
bool endsInCell(const std::string& fileName, char separator, bool due)
{
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(fileName, unknown)) return due;  // a pipe would wait for a writer
    std::ifstream file(fileName, std::ios_base::in | std::ios_base::binary);
    if (!file.is_open()) return due;
    if (!file.seekg(-1, std::ios_base::end)) return false;  // a new file
    const int last = file.get();
    if (last == '\n' || last == '\r') return false;
    const char separators[] = {separator, ',', ';', '\t', '|'};  // the host may set its own behind fileOpen
    const bool separated = std::find(std::begin(separators), std::end(separators), last) != std::end(separators);
    return due || !separated;
}

}  // namespace

Report::~Report() = default;
Table::~Table() = default;
CsvReport::CsvReport() = default;
CsvReport::~CsvReport() = default;

bool CsvReport::fileOpen()
{
    if (!WriteFile::fileOpen()) return false;
    separatorDue = isAppend() && endsInCell(getFileName(), separator, separatorDue);
    return true;
}

void CsvReport::writeComment(const std::string& text)
{
    // To R a carriage return ends a line by itself too: behind one inside of a line a new comment line starts.
    std::string marked = text;
    for (std::size_t i = 0; i + 1 < marked.size(); ++i)
        if (marked[i] == '\r' && marked[i + 1] != '\n') marked[i] = '\n';
    std::string_view lines = marked;
    if (!lines.empty() && lines.back() == '\n') lines.remove_suffix(1);
    forEachPiece(lines, '\n', [this](std::string_view line, bool) {
        write(line.empty() ? "#" : "# ");
        write(line);
        writeEol();
    });
}

void CsvReport::writeHeader(const std::string& titles)
{
    forEachPiece(titles, '|', [this](std::string_view title, bool last) { cell(std::string(title), !last); });
    writeEol();
}

void CsvReport::cell(const std::string& text, bool more)
{
    const char special[] = {separator, '"', '#', '\n', '\r'};
    if (text.find_first_of(special, 0, sizeof special) == std::string::npos) {
        writeCell(text, more);
        return;
    }
    std::string quoted(1, '"');
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    quoted += '"';
    writeCell(quoted, more);
}

void CsvReport::cell(double value, int precision, bool more)
{
    if (std::isnan(value)) return writeCell("NaN", more);
    if (std::isinf(value)) return writeCell(value > 0.0 ? "Inf" : "-Inf", more);
    char digits[detail::longestFixedText];
    if (precision >= 0 && precision <= detail::mostFixedDecimals) {
        if (const char* const end = detail::writeFixed(digits, value, precision))
            return writeCell({digits, static_cast<std::size_t>(end - digits)}, more);
    }
    std::string text;
    detail::appendFixed(text, value, precision);
    writeCell(text, more);
}

void CsvReport::cell(int value, bool more)
{
    std::string text;
    detail::appendInteger(text, value);
    writeCell(text, more);
}

void CsvReport::writeEol()
{
    WriteFile::writeEol();
    separatorDue = false;
}

/** Writes a cell with the separators that belong to it. */
void CsvReport::writeCell(std::string_view text, bool more)
{
    if (separatorDue) write({&separator, 1});
    write(text);
    if (more) write({&separator, 1});
    separatorDue = !more;
}

}  // namespace wq_lib
