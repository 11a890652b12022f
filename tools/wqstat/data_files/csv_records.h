// The records of a text in CSV: lines of fields, with quotes as RFC 4180 has them.
#pragma once

#include "text_source.h"

#include <csv.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

constexpr char blanks = ' ';  ///< as a separator: any run of blanks and tabs

inline bool isBlank(char c) { return c == ' ' || c == '\t'; }

/** The text without blanks and tabs at both ends. */
inline std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

/**
 * Reads record by record. A field in quotes may hold separators, line ends and doubled quotes; blanks around other fields do not belong to
 * them. Lines end with a line feed, a carriage return or both; empty lines are skipped. libcsv parses what holds quotes. Other lines are
 * cut at the separators, which gives the same fields in a fraction of the time.
 */
class CsvRecords {
public:
    /** @param shownName the file's name in messages. */
    CsvRecords(std::unique_ptr<ByteSource> source, std::string shownName);
    ~CsvRecords();
    CsvRecords(const CsvRecords&) = delete;
    CsvRecords& operator=(const CsvRecords&) = delete;

    /** What the text begins with: its first 64 KiB, or all of it. To be called before next(). */
    std::string_view begin() const { return {block.data() + position, filled - position}; }

    /** Leaves out what the text begins with, which has so many bytes and lines. To be called before setSeparator(). */
    void leaveOut(std::size_t length, std::size_t lines)
    {
        position += length;
        lineNumber += lines;
    }

    /** To be called before next(); a comma unless set. */
    void setSeparator(char separator);

    /**
     * Moves to the next record.
     * @return false when there is none.
     * @throws CannotAnalyse, with the line, for a quote where none may stand, one that is not closed, a zero byte, and a line beyond 16
     * MiB.
     */
    bool next();

    /** How many fields the record has. */
    std::size_t count() const { return record.count; }

    /** One of them, from 0, valid until the next call of next(); behind it plainDecimalSlack characters can be read. */
    std::string_view field(std::size_t i) const
    {
        const std::size_t begin = i == 0 ? record.begin : record.ends[i - 1].place() + 1;
        const std::string_view text(record.text + begin, record.ends[i].place() - begin);
        return record.isPlain ? withoutBlanks(text) : text;
    }

    /** All of them, valid as long as each. */
    const std::vector<std::string_view>& fields();

    /** The line on which the record begins, from 1. */
    std::size_t line() const { return recordLine; }

private:
    /** The place behind a field in its text, and whether the field is the last of its line. */
    class FieldEnd {
    public:
        FieldEnd() = default;
        FieldEnd(std::size_t place, bool isLast) : bits(2 * place + (isLast ? 1 : 0)) {}
        std::size_t place() const { return bits / 2; }
        bool isLast() const { return bits % 2 != 0; }

    private:
        std::size_t bits = 0;
    };

    /** Fields with one character between; blanks around them belong to none of them where it is plain. */
    struct Record {
        const char* text = nullptr;
        std::size_t begin = 0;
        const FieldEnd* ends = nullptr;
        std::size_t count = 0;
        bool isPlain = false;
    };

    bool cutLine();
    bool nextWithCare();
    bool refill();
    bool takeLine(std::string_view& text, std::string_view& withEnd);
    void markLines();
    bool endLines(std::uint64_t returns, std::size_t at) const;
    void lookFor();
    bool isEmptyLine() const { return record.count == 0 || (record.count == 1 && field(0).empty()); }
    void split(std::string_view text);
    void splitAtBlanks(std::string_view text);
    void parse(std::string_view withEnd);
    bool finish();
    void gather();
    [[noreturn]] void fail(std::size_t number, const std::string& reason) const;

    static void takeField(void* text, std::size_t length, void* self);
    static void takeRecord(int end, void* self);

    std::unique_ptr<ByteSource> bytes;
    std::string name;
    char separator = ',';

    std::vector<char> block;
    std::size_t position = 0;  // of the next line in block
    std::size_t filled = 0;
    bool ended = false;
    bool cutsAtMarks = false;     // the block's lines are plain: fields between separators
    std::vector<FieldEnd> marks;  // the separators and line ends of its whole lines
    std::size_t markCount = 0;
    std::size_t nextMark = 0;
    bool holdsQuotes = false;  // block does, and so for the next two
    bool holdsReturns = false;
    bool holdsZeros = false;

    std::size_t lineNumber = 0;
    std::size_t recordLine = 0;
    Record record;
    std::vector<FieldEnd> ends;  // of a record that was not cut at the marks
    std::vector<std::string_view> cells;

    csv_parser parser{};
    bool inRecord = false;       // the parser waits for the rest of a record
    bool recordIsWhole = false;  // it has seen the end of one
    std::string parsed;          // the texts of its fields, one behind the other
    std::string untabbed;
};

}  // namespace wqstat
