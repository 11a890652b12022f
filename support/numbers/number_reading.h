// Text to numbers: what std::stod, atof and std::stoi give in the "C" locale, whatever the host's locale is.
#ifndef WQ_NUMBERS_NUMBER_READING_H
#define WQ_NUMBERS_NUMBER_READING_H

#include <string_view>

namespace wq_lib::detail {

/**
 * The number a text begins with, as std::stod reads it: leading white space and a sign are allowed, decimal and hexadecimal
 * notation, "inf" and "nan"; the rest of the text is ignored.
 * @throws std::invalid_argument when the text begins with no number, std::out_of_range when its value is too large for a
 *         double, or too small for a normal one.
 */
double readDouble(std::string_view text);

/** As readDouble, but as atof: 0 without a number, infinity when it is too large, the nearest double when it is too small. */
double readDoubleOrZero(std::string_view text);

/**
 * The decimal integer a text begins with, as std::stoi reads it.
 * @throws std::invalid_argument when the text begins with no integer, std::out_of_range when an int cannot hold it.
 */
int readInt(std::string_view text);

}  // namespace wq_lib::detail

#endif
