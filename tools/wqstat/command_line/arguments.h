// Arguments to numbers, exactly and in whole; numbers and foreign texts to output.
#pragma once

#include "visible_text.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** A real number: "2", "-1.5", "+1e-3", "inf", "nan". @throws WrongUsage for anything else, and where a double cannot hold it. */
double realArgument(const std::string& text);

/** A whole number, 0 ... 2^64 - 1, in decimal digits only. @throws WrongUsage */
std::size_t countArgument(const std::string& text);

/** A whole number of either sign. @throws WrongUsage */
long integerArgument(const std::string& text);

/** "1", "true" or "one", and "0", "false" or "two": the tails of a test. @throws WrongUsage */
bool flagArgument(const std::string& text);

/** The parts between commas. */
std::vector<std::string> commaSeparated(const std::string& text);

/** The shortest text that reads back as the same double; every NaN is "nan". */
std::string shortest(double value);

/** Six significant digits, as most reports print a number. */
std::string sixDigits(double value);

/** A foreign text for a message: on one line, without control characters, shortened when it is long. */
std::string shown(std::string_view text, OtherBytes otherBytes = OtherBytes::escaped);

/** "1 row", "2 rows". */
std::string counted(std::size_t n, const std::string& one);

/** shown() in quotes. */
std::string inQuotes(std::string_view text);

}  // namespace wqstat
