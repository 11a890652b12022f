// Builds a report: frame, labelled lines, rules, verdict, with one number format for the whole text.
#ifndef WQ_STAT_DETAIL_REPORT_TEXT_H
#define WQ_STAT_DETAIL_REPORT_TEXT_H

#include "numbers/number_text.h"

#include <wq_udf/text.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace wq_lib::detail {

/** How a report prints its doubles; counts are always plain integers. */
class NumberFormat {
public:
    /** As std::cout prints by default: general notation, 6 significant digits. */
    static NumberFormat plain() { return NumberFormat(-1); }

    /** Fixed notation with the given number of decimals. */
    static NumberFormat fixed(int decimals) { return NumberFormat(decimals); }

    void append(std::string& text, double value) const
    {
        if (decimals < 0)
            appendGeneral(text, value);
        else
            appendFixed(text, value, decimals);
    }

private:
    explicit NumberFormat(int count) : decimals(count) {}
    int decimals;
};

/** A part of a line, a text or a number, set flush right in a field; a longer one is not cut. */
template <typename Part>
struct Field {
    const Part& part;
    std::size_t width;
};

/** @return a field that is valid to the end of the statement. */
template <typename Part>
Field<Part> flushRight(const Part& part, std::size_t width)
{
    return {part, width};
}

class ReportText {
public:
    explicit ReportText(NumberFormat numbers) : format(numbers) {}

    /** Title, double rule, comment: how every report opens. */
    ReportText& frame(std::string_view title, std::string_view comment) { return line(title).line(doubleLine(ruleWidth)).line(comment); }

    /** One line: its parts one after the other, and a line end. */
    template <typename... Parts>
    ReportText& line(const Parts&... parts)
    {
        return write(parts..., '\n');
    }

    /** Parts without a line end. */
    template <typename... Parts>
    ReportText& write(const Parts&... parts)
    {
        (append(parts), ...);
        return *this;
    }

    ReportText& emptyLine() { return write('\n'); }
    ReportText& rule() { return line(singleLine(ruleWidth)); }

    const std::string& text() const { return content; }

private:
    static constexpr int ruleWidth = 70;

    void append(char c) { content += c; }
    void append(std::string_view part) { content += part; }
    template <typename Part>
    void append(const Field<Part>& field)
    {
        const std::size_t start = content.size();
        append(field.part);
        const std::size_t length = content.size() - start;
        if (length < field.width) content.insert(start, field.width - length, ' ');
    }
    template <typename Number, typename = std::enable_if_t<std::is_arithmetic_v<Number>>>
    void append(Number value)
    {
        if constexpr (std::is_floating_point_v<Number>)
            format.append(content, value);
        else
            appendInteger(content, value);
    }

    NumberFormat format;
    std::string content;
};

inline std::string_view verdict(bool acceptedH0) { return acceptedH0 ? "accepted" : "rejected"; }

}  // namespace wq_lib::detail

#endif
