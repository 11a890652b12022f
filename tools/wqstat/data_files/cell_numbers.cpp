#include "cell_numbers.h"

#include "command_line/arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace wqstat {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string onLine(std::size_t line, const std::string& cell) { return inQuotes(cell) + " on line " + std::to_string(line); }

}  // namespace

bool maySeparateThousands(std::string_view cell, char mark)
{
    if (!cell.empty() && (cell[0] == '-' || cell[0] == '+')) cell.remove_prefix(1);
    const std::size_t place = cell.find(mark);
    if (place < 1 || place > 3 || cell.size() != place + 4 || cell[0] == '0') return false;
    return std::count_if(cell.begin(), cell.end(), isDigit) == static_cast<std::ptrdiff_t>(place + 3);
}

bool CellNumbers::convertOther(std::string_view cell, std::size_t line, double& value)
{
    const bool holdsComma = cell.find(',') != std::string_view::npos;
    std::string_view text = cell;
    if (holdsComma && cell.find('.') == std::string_view::npos) {
        withPoint = cell;
        withPoint[cell.find(',')] = '.';
        text = withPoint;
    }
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    const char* const end = text.data() + text.size();
    double number = 0.0;
    const auto [used, error] = std::from_chars(text.data(), end, number);
    if (used != end || (error != std::errc() && error != std::errc::result_out_of_range) || std::isnan(number))
        return refuse("a number is expected, not " + inQuotes(cell));
    if (error == std::errc::result_out_of_range) return refuse("the number is out of range: " + inQuotes(cell));
    if (holdsComma && !hasCommaInstead(cell, line)) return false;
    if (!holdsComma && cell.find('.') != std::string_view::npos && !hasPoint(cell, line)) return false;
    value = number;
    return true;
}

bool CellNumbers::hasPoint(std::string_view cell, std::size_t line)
{
    if (comma.line > 0) return refuse(inQuotes(cell) + " has a decimal point, but " + onLine(comma.line, comma.cell) + " a comma");
    if (comma.isCertain) return refuse("a number with a decimal comma is expected, not " + inQuotes(cell));
    if (point.line == 0) point = {line, std::string(cell), elsewhere.line == 0};
    point.isCertain = point.isCertain || !maySeparateThousands(cell, '.');
    return true;
}

bool CellNumbers::hasCommaInstead(std::string_view cell, std::size_t line)
{
    if (point.line > 0) return refuse(inQuotes(cell) + " has a comma, but " + onLine(point.line, point.cell) + " a decimal point");
    if (comma.line == 0) comma = {line, std::string(cell), comma.isCertain || elsewhere.isCertain};
    comma.isCertain = comma.isCertain || !maySeparateThousands(cell, ',');
    return true;
}

bool CellNumbers::refuse(const std::string& why)
{
    reason = why;
    return false;
}

std::string CellNumbers::doubt() const
{
    if (point.line > 0 && !point.isCertain)
        return inQuotes(point.cell) + " may have a decimal point or one between thousands, as " + onLine(elsewhere.line, elsewhere.cell) +
               " has a decimal comma: --decimal-point takes it for the former";
    if (comma.line == 0 || comma.isCertain) return "";
    return inQuotes(comma.cell) + " may have a decimal comma or a comma between thousands: --decimal-comma takes it for the former";
}

}  // namespace wqstat
