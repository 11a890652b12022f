// A data file line by line: the rules that all readers share.
#ifndef WQ_STAT_SRC_DATA_LINES_H
#define WQ_STAT_SRC_DATA_LINES_H

#include <cstddef>
#include <fstream>
#include <new>
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

    /** How many lines the file seems to hold, by its size and its first block; 0 when that is not known, or few. */
    std::size_t expectedLines() const { return expected; }

    /**
     * Takes the next line when it is nothing but a plain decimal, maybe with a minus before it and a carriage return behind it; next()
     * takes all others.
     * @return false, with the value unchanged, when it is not taken.
     */
    bool takeNumber(double& value);

    /** Takes the next line when it is nothing but two of them with a ':', ';' or '|' between. */
    bool takePair(double& first, double& second);

    /** The current line, valid until the next call of next(). */
    std::string_view text() const { return line; }

    /** Whether the current line holds a '#', wherever. */
    bool isComment() const { return comment; }

    /** True when reading ended because the file could not be read on. */
    bool hasFailed() const { return failed; }

private:
    bool takeLine();
    bool endLine(const char* end);
    void readOn();

    std::ifstream file;
    EndMarker marker;
    std::vector<char> block;
    std::size_t position = 0;  // of the next line in block
    std::size_t filled = 0;    // characters in block
    std::size_t expected = 0;
    std::string_view line;
    bool comment = false;
    bool finished = false;
    bool failed = false;
};

/** Makes room for the lines that a file seems to hold. A hint only: where there is no memory for so many, the list grows as it must. */
template <typename Value>
void reserveExpected(std::vector<Value>& list, const DataLines& lines)
{
    try {
        list.reserve(list.size() + lines.expectedLines());
    } catch (const std::bad_alloc&) {
    }
}

/**
 * Takes the next field off a line of fields that are separated by any run of ':', ';' and '|'.
 * @return false when the rest holds no field.
 */
bool takeField(std::string_view& rest, std::string_view& field);

}  // namespace wq_lib::detail

#endif
