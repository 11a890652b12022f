// The numbers in the cells of a table, with a decimal point or a decimal comma.
#pragma once

#include "numbers/plain_decimal.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>

namespace wqstat {

/** Whether a number is a whole one of 0 or more. */
inline bool isCount(double value)
{
    constexpr double mostCounted = 9007199254740992.0;  // 2^53: up to here every whole number is a double
    return value >= 0.0 && value <= mostCounted && std::floor(value) == value;
}

/** One to three digits, not beginning with a zero, the mark, three digits: 1,234 may be 1.234 or 1234. */
bool maySeparateThousands(std::string_view cell, char mark);

/**
 * Converts cells to numbers. The first number with a decimal point or a decimal comma decides which of them the table has; a later one with
 * the other is none. Numbers are read as std::from_chars reads them, with a plus sign allowed; "nan" is no number.
 */
class CellNumbers {
public:
    /** Expects decimal commas from the start. */
    void expectComma() { comma = {0, "", true}; }

    /**
     * Another column has a decimal comma: a point that may separate thousands is doubtful then, and a comma that may is none.
     * @param cell of that column, and its line. @param isOnly no other column shows a decimal point.
     */
    void seeCommaElsewhere(std::size_t line, const std::string& cell, bool isOnly) { elsewhere = {line, cell, isOnly}; }

    /**
     * @param cell without blanks around it; plainDecimalSlack characters behind it can be read.
     * @param line on which it stands, for messages.
     * @return false, with the value unchanged, when the cell is not a number from its begin to its end; whyNot() says why.
     */
    bool convert(std::string_view cell, std::size_t line, double& value)
    {
        using namespace wq_lib::detail;
        if (cell.empty()) return refuse("a number is expected");
        const bool minus = cell[0] == '-';
        const char* const begin = cell.data() + (minus ? 1 : 0);
        const PlainDecimal number = scanPlainDecimal(begin);
        const bool isPlain = number.end == cell.data() + cell.size() && number.isConvertible();
        const bool isWhole = isPlain && number.count == number.end - begin;
        double result = 0.0;
        if (!isPlain || !(isWhole || point.isCertain) || !nearestDouble(number, result)) return convertOther(cell, line, value);
        value = minus ? -result : result;
        return true;
    }

    /** Why the cell that convert() refused last is no number. */
    const std::string& whyNot() const { return reason; }

    bool hasPoint() const { return point.line > 0; }
    bool hasComma() const { return comma.line > 0 || comma.isCertain; }

    /** When all is read: where a comma or a point may have separated thousands as well, as in 1,234, in words; otherwise empty. */
    std::string doubt() const;

    /** The line of that number. */
    std::size_t doubtLine() const { return std::max(comma.line, point.line); }  // one of them is 0

private:
    struct Mark {
        std::size_t line = 0;  // of the first number with it; 0 without one
        std::string cell;
        bool isCertain = false;
    };

    bool convertOther(std::string_view cell, std::size_t line, double& value);
    bool hasPoint(std::string_view cell, std::size_t line);
    bool hasCommaInstead(std::string_view cell, std::size_t line);
    bool refuse(const std::string& why);

    Mark point;
    Mark comma;
    Mark elsewhere;  // a decimal comma
    std::string reason;
    std::string withPoint;
};

}  // namespace wqstat
