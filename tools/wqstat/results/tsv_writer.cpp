#include "tsv_writer.h"

#include "holm.h"

#include "command_line/arguments.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace wqstat {

namespace {

/** The objects of the document whose members come first, behind what tells the rows apart. */
constexpr std::array<std::string_view, 4> firstObjects{"result", "report", "decision", "textbook"};
constexpr std::size_t behindObjects = firstObjects.size() + 1;
constexpr std::size_t behindAll = behindObjects + 1;

constexpr std::string_view adjustedName = "pHolm";

std::string probabilityCell(double p) { return std::isnan(p) ? "NA" : shortest(p); }

/** On one line, without a tab. */
std::string inOneCell(std::string_view text)
{
    constexpr std::string_view special = "\t\n\r\\";
    std::string result;
    for (const char c : text) {
        const std::size_t which = special.find(c);
        result += which == std::string_view::npos ? std::string(1, c) : std::string("\\") + "tnr\\"[which];
    }
    return result;
}

}  // namespace

void TsvWriter::number(std::string_view name, double value)
{
    put(name, std::isfinite(value) ? shortest(value) : std::isnan(value) ? "NaN" : value > 0.0 ? "Inf" : "-Inf");
}

void TsvWriter::text(std::string_view name, std::string_view value) { put(name, inOneCell(value)); }

void TsvWriter::texts(std::string_view name, const std::vector<std::string>& values)
{
    if (name == "files") {
        for (std::size_t i = 0; i < values.size(); ++i)
            cells.push_back({0, i == 0 ? "file" : "file" + std::to_string(i + 1), inOneCell(values[i])});
        return;
    }
    std::string list;
    for (const std::string& value : values) list += (list.empty() ? "" : "; ") + inOneCell(value);
    put(name, list.empty() ? "NA" : list);
}

void TsvWriter::part(const std::string& column, const std::string& value) { cells.push_back({0, inOneCell(column), inOneCell(value)}); }

void TsvWriter::beginObject(std::string_view name)
{
    if (arrays == 0) objects.emplace_back(name);
}

void TsvWriter::endObject()
{
    if (arrays > 0) return;
    objects.pop_back();
    if (objects.empty()) endRow();
}

void TsvWriter::put(std::string_view name, std::string text)
{
    if (arrays > 0) return;
    std::string path;
    for (std::size_t i = 1; i < objects.size(); ++i) path += objects[i] + ".";  // the first is the whole
    const auto* const first = objects.size() > 1 ? std::find(firstObjects.begin(), firstObjects.end(), objects[1]) : firstObjects.end();
    const auto place = first == firstObjects.end() ? behindAll : static_cast<std::size_t>(first - firstObjects.begin()) + 1;
    cells.push_back({place, path.append(name), std::move(text)});
}

void TsvWriter::decidingP(double deciding)
{
    p = deciding;
    cells.push_back({behindObjects, "p", probabilityCell(deciding)});
    cells.push_back({behindObjects, std::string(adjustedName), ""});
}

void TsvWriter::endRow()
{
    std::stable_sort(cells.begin(), cells.end(), [](const Cell& a, const Cell& b) { return a.place < b.place; });
    const auto joined = [](auto begin, auto end, std::string Cell::*what) {
        std::string line;
        for (auto cell = begin; cell != end; ++cell) line.append(line.empty() ? "" : "\t").append((*cell).*what);
        return line;
    };
    if (header.empty()) header = joined(cells.begin(), cells.end(), &Cell::name);
    const auto adjusted =
        std::find_if(cells.begin(), cells.end(), [](const Cell& cell) { return cell.place == behindObjects && cell.name == adjustedName; });
    const auto behind = adjusted == cells.end() ? adjusted : adjusted + 1;
    rows.push_back({joined(cells.begin(), adjusted, &Cell::text), joined(behind, cells.end(), &Cell::text), p});
    cells.clear();
    p.reset();
}

void TsvWriter::finish()
{
    if (rows.empty()) return;
    std::vector<double> all;
    for (const Row& row : rows) all.push_back(row.p.value_or(std::numeric_limits<double>::quiet_NaN()));
    const std::vector<double> adjusted = holmAdjusted(all);
    output << header << '\n';
    for (std::size_t i = 0; i < rows.size() && output; ++i) {
        output << rows[i].before;
        if (rows[i].p) output << '\t' << probabilityCell(adjusted[i]) << '\t' << rows[i].behind;
        output << '\n';
    }
    rows.clear();
}

}  // namespace wqstat
