#ifndef WQ_REPORT_CSV_REPORT_H
#define WQ_REPORT_CSV_REPORT_H

/// @file
/// Files of separated values.

#include <wq_report/export.h>
#include <wq_udf/write_file.h>

#include <string>
#include <string_view>

namespace wq_lib {

/** The lines above a table. */
class WQ_REPORT_EXPORT Report {
public:
    virtual ~Report();

    /** Writes the text as comment: "# " before each of its lines, "#" for an empty one. */
    virtual void writeComment(const std::string& text) = 0;

    /** Writes the column titles, which the text names separated by '|', as one line. */
    virtual void writeHeader(const std::string& titles) = 0;
};

/** Rows of cells. The flag of a cell tells whether further cells follow in its row. */
class WQ_REPORT_EXPORT Table {
public:
    virtual ~Table();

    /** A text, quoted where it must be. */
    virtual void cell(const std::string& text, bool more) = 0;

    /** In fixed notation with precision digits after the point; a value that is not finite as R spells it: NaN, Inf, -Inf. */
    virtual void cell(double value, int precision, bool more) = 0;

    /** A whole number, in decimal digits. */
    virtual void cell(int value, bool more) = 0;

    /** Not to be had: without its precision a double would silently turn into an integer. */
    void cell(double value, bool more) = delete;
};

/**
 * A file of separated values that R reads with
 * read.table(file, header = TRUE, sep = "\t", quote = "\"", comment.char = "#").
 *
 * The separator stands between cells: after a cell whose flag says that more follow, and before a cell
 * that comes although the one before it said that none would, also where the file was closed in the meantime and opened again to append.
 * No row ends in a separator that no cell asked for.
 * A text that holds the separator, a double quote, a '#' or a line break is put in double quotes, inner quotes doubled.
 * Numbers have a decimal point and no grouping, whatever the locale.
 */
class WQ_REPORT_EXPORT CsvReport : public WriteFile, public Report, public Table {
public:
    CsvReport();
    ~CsvReport() override;

    /** The character between cells; a comma in a new object. */
    void setSeparator(char character) { separator = character; }
    char getSeparator() const { return separator; }  ///< the character, as set

    /** As WriteFile; a new file begins with a new row, one that is appended to goes on with the row it ends in. */
    bool fileOpen() override;

    void writeComment(const std::string& text) override;
    void writeHeader(const std::string& titles) override;

    using Table::cell;
    void cell(const std::string& text, bool more) override;
    void cell(double value, int precision, bool more) override;
    void cell(int value, bool more) override;

    void writeEol() override;

protected:
    /** Writes a cell and the separators due. */
    void writeCell(std::string_view text, bool more);

    char separator = ',';       ///< stands between cells
    bool separatorDue = false;  ///< a cell of this row said that none would follow
};

}  // namespace wq_lib

#endif
