// A look at the lines of a data file: where the library stops, and what it reads in a way that may surprise.
#pragma once

#include "command_line/sentence.h"

#include <cstddef>
#include <cstdio>
#include <istream>
#include <string>
#include <vector>

namespace wqstat {

/** What a line of a data file holds, and so which reader of the library reads it. */
enum class Layout {
    values,  ///< a number
    pairs,   ///< x and y
    angles,  ///< an angle, and its frequency where the data are grouped
    series   ///< x, y and a repeat count
};

/** What becomes of a line that the library reads otherwise than its author hardly meant. */
enum class Surprise {
    stops,  ///< the check stops at it
    warns   ///< it is told, and the check goes on as the library will
};

/** What was found in a file. Lines count from 1; 0 means that there is no such line. */
struct LineCheck {
    std::size_t stopLine = 0;  ///< here something is wrong, and nothing behind it has been looked at
    std::string stopReason;
    std::string tableStart;          ///< where the first line with data stops the check: what the file begins with
    std::size_t cutLine = 0;         ///< too long, so that reading ends with it
    bool lacksCounts = false;        ///< a series whose lines name no repeat count
    std::vector<Sentence> warnings;  ///< "FILE:LINE: warning: what"
};

/**
 * Goes through a file as the library's reader will, and behind an end marker to see whether more follows.
 * @param name of the file, for the warnings.
 * @param copy where the lines that the library is to read are written to; none when null.
 */
LineCheck checkLines(std::istream& source, const std::string& name, Layout layout, Surprise surprise, std::FILE* copy);

}  // namespace wqstat
