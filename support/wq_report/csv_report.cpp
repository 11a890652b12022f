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

bool CsvReport::fileOpen()
{
    separatorDue = false;
    return WriteFile::fileOpen();
}

void CsvReport::writeComment(const std::string& text)
{
    std::string_view lines = text;
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
        cellText = text;
    } else {
        cellText = '"';
        for (const char c : text) {
            if (c == '"') cellText += '"';
            cellText += c;
        }
        cellText += '"';
    }
    writeCell(more);
}

void CsvReport::cell(double value, int precision, bool more)
{
    cellText.clear();
    if (std::isnan(value))
        cellText = "NaN";
    else if (std::isinf(value))
        cellText = value > 0.0 ? "Inf" : "-Inf";
    else
        detail::appendFixed(cellText, value, precision);
    writeCell(more);
}

void CsvReport::cell(int value, bool more)
{
    cellText.clear();
    detail::appendInteger(cellText, value);
    writeCell(more);
}

void CsvReport::writeEol()
{
    WriteFile::writeEol();
    separatorDue = false;
}

/** Writes cellText with the separators that belong to it. */
void CsvReport::writeCell(bool more)
{
    if (separatorDue) write({&separator, 1});
    if (more) cellText += separator;
    write(cellText);
    separatorDue = !more;
}

}  // namespace wq_lib
