// Numbers for people to read, in whatever locale; shortest() in arguments.h is for those who compute on.
#pragma once

#include <cstddef>
#include <string>

namespace wqstat {

/** So many significant digits at most: 5.4479, 2.5e-7, n/a. */
std::string figures(double value, int digits = 5);

/**
 * How many digits tell a figure from its neighbours within a span: so many of the span's own, at least so many in all. Without a span,
 * which is NaN or 0, the least.
 */
int digitsWithin(double value, double span, int ofSpan, int least);

/** A figure with as many digits as show two of its spread, the width of its limits or what else it is read against; five at least. */
std::string figuresWithin(double value, double spread);

/** A figure as people read it: a whole number, and the whole part of any other, in full; at least six digits, and three of its spread. */
std::string readable(double value, double spread = 0.0);

/** A coefficient from -1 to 1, with as many digits as tell it from -1 and 1: 0.98198, 0.999997. */
std::string coefficient(double value);

/** "F = 2.5"; "F is infinite"; "no F" where there is none. @param text of the value, where that is finite */
std::string statisticText(const std::string& name, double value, const std::string& text);

/** The same with the value in five digits. */
std::string statisticText(const std::string& name, double value);

/** What a probability is that no double holds, and which is 0 therefore. */
constexpr char belowAllProbabilities[] = "< 1e-300";

/** What a lower tail is that no double tells from 1. */
constexpr char nextToOne[] = "> 0.999999999999999";

/** "p = 0.0312", "p < 1e-300"; "p = n/a" where there is none. */
std::string probability(double p);

/** A count: 1000, 10 000. */
std::string digits(std::size_t n);

/** "1 pair", "3 pairs". */
std::string counted(std::size_t n, const std::string& one, const std::string& many);

}  // namespace wqstat
