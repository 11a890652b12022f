// The records of a text in CSV: lines of fields, with quotes as RFC 4180 has them.
#pragma once

#include "text_source.h"

#include <csv.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

constexpr char blanks = ' ';  ///< as a separator: any run of blanks and tabs

/**
 * Reads record by record. A field in quotes may hold separators, line ends and doubled quotes; blanks around other fields do not belong to
 * them. Lines end with a line feed, a carriage return or both; empty lines are skipped. libcsv parses what holds quotes. Other lines are
 * cut at the separators, which gives the same fields in a quarter of the time.
 */
class CsvRecords {
public:
    /** @param shownName the file's name in messages. */
    CsvRecords(std::unique_ptr<ByteSource> source, std::string shownName);
    ~CsvRecords();
    CsvRecords(const CsvRecords&) = delete;
    CsvRecords& operator=(const CsvRecords&) = delete;

    /** What the text begins with: its first 64 KiB, or all of it. To be called before next(). */
    std::string_view begin() const { return {block.data(), filled}; }

    /** To be called before next(); a comma unless set. */
    void setSeparator(char separator);

    /**
     * Moves to the next record.
     * @return false when there is none.
     * @throws CannotAnalyse, with the line, for a quote where none may stand, one that is not closed, a zero byte, and a line beyond 16 MiB.
     */
    bool next();

    /** The fields of the record, valid until the next call of next(); behind each of them plainDecimalSlack characters can be read. */
    const std::vector<std::string_view>& fields() const { return cells; }

    /** The line on which the record begins, from 1. */
    std::size_t line() const { return recordLine; }

private:
    bool refill();
    bool takeLine(std::string_view& text, std::string_view& withEnd);
    void lookFor();
    bool isEmpty(std::string_view text) const;
    void splitPlain(std::string_view text);
    void splitBlanks(std::string_view text);
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
    bool holdsQuotes = false;  // block does, and so for the next two
    bool holdsReturns = false;
    bool holdsZeros = false;

    std::size_t lineNumber = 0;
    std::size_t recordLine = 0;
    std::vector<std::string_view> cells;

    csv_parser parser{};
    bool inRecord = false;       // the parser waits for the rest of a record
    bool recordIsWhole = false;  // it has seen the end of one
    std::string parsed;          // the texts of its fields, one behind the other
    std::vector<std::size_t> fieldEnds;
    std::string untabbed;
};

/** The text without blanks and tabs at both ends. */
std::string_view withoutBlanks(std::string_view text);

}  // namespace wqstat
