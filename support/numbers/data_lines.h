// A data file line by line: the rules that all readers share.
#ifndef WQ_NUMBERS_DATA_LINES_H
#define WQ_NUMBERS_DATA_LINES_H

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <istream>
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
    /** Opens a file; a directory cannot be opened. */
    DataLines(const std::string& fileName, EndMarker marker);

    /** Reads a stream, which stays with the caller, from where it stands; in blocks, so that it is read beyond the end of the data. */
    DataLines(std::istream& stream, EndMarker marker);

    DataLines(const DataLines&) = delete;
    DataLines& operator=(const DataLines&) = delete;

    /** False when the file could not be opened, and when the stream had failed before. */
    bool isOpen() const { return source != nullptr; }

    /** Moves to the next line. @return false at the end of the data. */
    bool next();

    /** How many lines the file seems to hold, by its size and its first block; 0 when that is not known, or few. */
    std::size_t expectedLines() const { return expected; }

    /**
     * Takes the next lines as long as each is nothing but a plain decimal, maybe with a minus before it and a carriage return behind it;
     * next() takes all others.
     * @param values room for `most` numbers. @return how many were taken.
     */
    std::size_t takeNumbers(double* values, std::size_t most);

    /**
     * The same for lines of two of them with a ':', ';' or '|' between.
     * @param values room for 2 `most` numbers, the two of a line side by side. @return how many lines were taken.
     */
    std::size_t takePairs(double* values, std::size_t most);

    /** The current line, valid until the next call of next(). */
    std::string_view text() const { return line; }

    /** The number of the first line met so far with a zero byte in it; 0 without one. */
    std::size_t zeroLine() const { return firstZero; }

    /** The number of the current line, from 1; of the last one taken by takeNumbers() and takePairs(). */
    std::size_t number() const { return count; }

    /** Whether the current line is longer than 254 characters, so that it was cut and is the last one. */
    bool isCut() const { return cut; }

    /** Whether the current line holds a '#', wherever. */
    bool isComment() const { return comment; }

    /** How much has been read of the file, that behind the current line included. */
    std::uint64_t charactersRead() const { return characters; }

    /** What has been read of the file behind the current line; less than the rest of it where that is long. */
    std::string_view unread() const { return {block.data() + position, filled - position}; }

    /** True when reading ended because the file could not be read on. */
    bool hasFailed() const { return failed; }

private:
    void begin();
    bool takeLine();
    template <std::size_t width>
    std::size_t takeLines(double* values, std::size_t most);
    void refill();

    std::ifstream file;
    std::istream* source = nullptr;  // the file or a stream of the caller's
    EndMarker marker;
    std::vector<char> block;
    std::size_t position = 0;  // of the next line in block
    std::size_t filled = 0;    // characters in block
    std::size_t expected = 0;
    std::uint64_t characters = 0;
    std::size_t count = 0;  // of lines, the empty ones too
    std::string_view line;
    std::size_t firstZero = 0;
    bool comment = false;
    bool cut = false;
    bool finished = true;  // until there is something to read
    bool failed = false;
};

/** What separates the fields of a line. */
inline constexpr std::string_view fieldSeparators = ":;|";

/** Whether a line ends the data of a reader that has end markers. */
inline bool isEndMarker(std::string_view line) { return line.substr(0, 2) == "<<"; }

/**
 * Takes the next field off a line of fields with any run of separators between.
 * @return false when the rest holds no field.
 */
bool takeField(std::string_view& rest, std::string_view& field);

}  // namespace wq_lib::detail

#endif
