// A look at the lines of a data file: where the library stops, and what it reads in a way that may surprise.
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** What a line of a data file holds, and so which reader of the library reads it. */
enum class Layout {
    values,  ///< a number
    pairs,   ///< x and y
    angles,  ///< an angle, and its frequency where the data are grouped
    series   ///< x, y and a repeat count
};

/** The lines of a data file as all readers of the library take them: 254 characters at most; a longer one is cut, and is the last. */
class DataLines {
public:
    explicit DataLines(std::istream& stream) : source(stream) {}

    /** Moves to the next line. @return false when there is none. */
    bool next();

    /** The line without its end. */
    std::string_view text() const { return {buffer.data(), length}; }
    std::size_t number() const { return count; }
    bool isCut() const { return cut; }

    /** Writes the line so that it reads the same. @return false when a write failed. */
    bool writeTo(std::FILE* file) const;

private:
    std::istream& source;
    std::array<char, 255> buffer{};  // with the zero byte behind the text
    std::size_t length = 0;
    std::size_t count = 0;
    bool cut = false;
    bool ended = false;
};

/** What was found in a file. Lines count from 1; 0 means that there is no such line. */
struct LineCheck {
    std::size_t stopLine = 0;  ///< here the library would refuse a number, or the file proves to be no text
    std::string stopReason;
    std::size_t cutLine = 0;            ///< too long, so that reading ends with it
    bool lacksCounts = false;           ///< a series whose lines name no repeat count
    std::vector<std::string> warnings;  ///< "FILE:LINE: warning: what"
};

/**
 * Goes through a file as the library's reader will: to its end, an end marker, a line that is too long, or the first line that is refused.
 * @param name of the file, for the warnings.
 * @param copy where the lines gone through are written to; none when null.
 */
LineCheck checkLines(std::istream& source, const std::string& name, Layout layout, std::FILE* copy);

}  // namespace wqstat
