#include "iso_date.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <system_error>

namespace wqstat {

namespace {

constexpr std::int64_t secondsOfDay = 86400;

/** A text that is read from its begin. */
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest(text) {}

    bool isAtEnd() const { return rest.empty(); }

    bool skip(char expected)
    {
        if (rest.empty() || rest[0] != expected) return false;
        rest.remove_prefix(1);
        return true;
    }

    /** So many digits, as a number between the two. */
    bool number(std::size_t length, int least, int most, int& value)
    {
        if (rest.size() < length || rest[0] == '-') return false;
        const char* const end = rest.data() + length;
        const auto [used, error] = std::from_chars(rest.data(), end, value);
        rest.remove_prefix(length);
        return used == end && error == std::errc() && least <= value && value <= most;
    }

    /** Digits behind a decimal mark, at least one. */
    bool fraction(double& value)
    {
        double digit = 0.1;
        const std::size_t before = rest.size();
        for (; !rest.empty() && rest[0] >= '0' && rest[0] <= '9'; rest.remove_prefix(1), digit /= 10.0) value += digit * (rest[0] - '0');
        return rest.size() < before;
    }

private:
    std::string_view rest;
};

bool isLeap(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int daysOf(int month, int year)
{
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : days[month - 1];
}

/** Years from March on, so that the day that only some years have is their last. */
constexpr std::int64_t daysOfEra = 146097;  // of 400 years
constexpr std::int64_t daysBefore1970 = 719468;

std::int64_t dayNumber(int year, int month, int day)
{
    const std::int64_t marchYear = year - (month <= 2 ? 1 : 0);
    const std::int64_t era = marchYear / 400;
    const std::int64_t yearOfEra = marchYear % 400;
    const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * daysOfEra + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - daysBefore1970;
}

std::string dateText(std::int64_t number)
{
    const std::int64_t sinceMarch0 = number + daysBefore1970;
    const std::int64_t era = sinceMarch0 / daysOfEra;
    const std::int64_t day = sinceMarch0 % daysOfEra;
    const std::int64_t year = (day - day / 1460 + day / 36524 - day / 146096) / 365;
    const std::int64_t dayOfYear = day - (365 * year + year / 4 - year / 100);
    const std::int64_t month = (5 * dayOfYear + 2) / 153;
    const auto calendarMonth = static_cast<int>(month < 10 ? month + 3 : month - 9);
    const auto calendarYear = static_cast<int>(era * 400 + year + (calendarMonth <= 2 ? 1 : 0));
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", calendarYear, calendarMonth,
                  static_cast<int>(dayOfYear - (153 * month + 2) / 5 + 1));
    return text;
}

/** Behind the T: 12:30, 12:30:05, 12:30:05.25, and a zone. */
bool takeTime(Scanner& text, double& seconds)
{
    int hour = 0;
    int minute = 0;
    int second = 0;
    double part = 0.0;
    if (!text.number(2, 0, 23, hour) || !text.skip(':') || !text.number(2, 0, 59, minute)) return false;
    if (text.skip(':')) {
        if (!text.number(2, 0, 59, second)) return false;
        if ((text.skip('.') || text.skip(',')) && !text.fraction(part)) return false;
    }
    seconds = hour * 3600.0 + minute * 60.0 + second + part;
    if (text.skip('Z')) return true;
    const bool isEast = text.skip('+');
    if (!isEast && !text.skip('-')) return true;
    if (!text.number(2, 0, 23, hour)) return false;
    minute = 0;
    if (!text.isAtEnd() && (!text.skip(':') || !text.number(2, 0, 59, minute))) return false;
    seconds -= (isEast ? 1.0 : -1.0) * (hour * 3600.0 + minute * 60.0);
    return true;
}

}  // namespace

std::optional<IsoDate> isoDate(std::string_view text)
{
    if (text.size() < 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
    Scanner scanner(text);
    int year = 0;
    int month = 0;
    int day = 0;
    const bool isDate = scanner.number(4, 1, 9999, year) && scanner.skip('-') && scanner.number(2, 1, 12, month) && scanner.skip('-') &&
                        scanner.number(2, 1, daysOf(month, year), day);
    if (!isDate) return std::nullopt;
    double seconds = 0.0;
    const bool hasTime = scanner.skip('T') || scanner.skip(' ');
    if ((hasTime && !takeTime(scanner, seconds)) || !scanner.isAtEnd()) return std::nullopt;
    return IsoDate{static_cast<double>(dayNumber(year, month, day)) + seconds / static_cast<double>(secondsOfDay), hasTime};
}

std::string isoText(double days, bool withTime)
{
    if (!withTime) return dateText(static_cast<std::int64_t>(std::floor(days)));
    const std::int64_t seconds = std::llround(days * static_cast<double>(secondsOfDay));
    const std::int64_t ofDay = (seconds % secondsOfDay + secondsOfDay) % secondsOfDay;
    char text[40];
    std::snprintf(text, sizeof text, "T%02d:%02d:%02d", static_cast<int>(ofDay / 3600), static_cast<int>(ofDay / 60 % 60),
                  static_cast<int>(ofDay % 60));
    return dateText((seconds - ofDay) / secondsOfDay) + text;
}

}  // namespace wqstat
