// Dates in cells.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace wqstat {

/** A date, and the time of the day where one is given. */
struct IsoDate {
    double days;  ///< since 1970-01-01T00:00, in the proleptic Gregorian calendar without leap seconds
    bool hasTime;
};

/**
 * Reads a calendar date of ISO 8601 in its extended form, year 0001 to 9999, alone or with the time of day: 2024-02-29,
 * 2024-02-29T12:30, 2024-02-29 12:30:05.25Z, 2024-02-29T12:30+01:00. A time without a zone is taken for UTC. Nothing for any other text.
 */
std::optional<IsoDate> isoDate(std::string_view text);

/** The day, 2024-02-29, or the nearest second, 2024-02-29T12:30:05. */
std::string isoText(double days, bool withTime);

}  // namespace wqstat
