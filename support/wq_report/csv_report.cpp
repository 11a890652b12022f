#include <wq_report/csv_report.h>

#include "number_text.h"

#include <cmath>
#include <string_view>

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

}  // namespace

Report::~Report() = default;
Table::~Table() = default;
CsvReport::CsvReport() = default;
CsvReport::~CsvReport() = default;

void CsvReport::writeComment(const std::string& text)
{
    std::string_view lines = text;
    if (!lines.empty() && lines.back() == '\n') lines.remove_suffix(1);
    forEachPiece(lines, '\n', [this](std::string_view line, bool) {
        stream.write(line.empty() ? "#" : "# ", line.empty() ? 1 : 2);
        stream.write(line.data(), static_cast<std::streamsize>(line.size()));
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
        writeCell(text.data(), text.size(), more);
        return;
    }
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    quoted += '"';
    writeCell(quoted.data(), quoted.size(), more);
}

void CsvReport::cell(double value, int precision, bool more)
{
    std::string text;
    if (std::isnan(value))
        text = "NaN";
    else if (std::isinf(value))
        text = value > 0.0 ? "Inf" : "-Inf";
    else
        detail::appendFixed(text, value, precision);
    writeCell(text.data(), text.size(), more);
}

void CsvReport::cell(int value, bool more)
{
    std::string text;
    detail::appendInteger(text, value);
    writeCell(text.data(), text.size(), more);
}

void CsvReport::writeEol()
{
    WriteFile::writeEol();
    separatorDue = false;
}

void CsvReport::writeCell(const char* text, std::size_t length, bool more)
{
    if (separatorDue) stream.put(separator);
    stream.write(text, static_cast<std::streamsize>(length));
    if (more) stream.put(separator);
    separatorDue = !more;
}

}  // namespace wq_lib
