// gnuplot writes five lines for each box of an SVG file; a picture of many of them is made small here.
#pragma once

#include <string>

namespace wqstat {

/** Boxes of one colour that follow each other, border and inside alike, become one path. All else stays. */
std::string withBoxesJoined(const std::string& svg);

}  // namespace wqstat
