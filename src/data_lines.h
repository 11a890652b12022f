// A data file line by line: the rules that all readers share.
#ifndef WQ_STAT_SRC_DATA_LINES_H
#define WQ_STAT_SRC_DATA_LINES_H

#include <cstddef>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace wq_lib::detail {

/** What a line that begins with "<<" is to a reader. */
enum class EndMarker { endsData, isData };

/**
 * The comment and data lines of a file. Lines end with '\n'; a carriage return before it belongs to the line. Empty lines are
 * left out. A line longer than 254 characters is cut there and is the last one. A zero byte ends a line's text.
 */
class DataLines {
public:
    DataLines(const std::string& fileName, EndMarker marker);

    /** False when the file cannot be opened; a directory cannot. */
    bool isOpen() const { return file.is_open(); }

    /** Moves to the next line. @return false at the end of the data. */
    bool next();

    /** The current line, valid until the next call of next(). */
    std::string_view text() const { return line; }

    /** Whether the current line holds a '#', wherever. */
    bool isComment() const { return comment; }

    /** True when reading ended because the file could not be read on. */
    bool hasFailed() const { return failed; }

private:
    bool takeLine();
    void readOn();

    std::ifstream file;
    EndMarker marker;
    std::vector<char> block;
    std::size_t position = 0;  // of the next line in block
    std::size_t filled = 0;    // characters in block
    std::string_view line;
    bool comment = false;
    bool finished = false;
    bool failed = false;
};

/**
 * Takes the next field off a line of fields that are separated by any run of ':', ';' and '|'.
 * @return false when the rest holds no field.
 */
bool takeField(std::string_view& rest, std::string_view& field);

}  // namespace wq_lib::detail

#endif
