#ifndef WQ_UDF_CONSOLE_H
#define WQ_UDF_CONSOLE_H

/// @file
/// Texts and messages on standard output and standard error.

#include <wq_udf/export.h>

#include <iosfwd>
#include <string>

namespace wq_lib {

/**
 * Writes a finished text (a report, a listing) to standard output as it is, in one piece, and flushes.
 * Flags, width and locale of std::cout have no influence on it.
 */
WQ_UDF_EXPORT void display(const std::string& text);

/** Writes an informational message to standard output and flushes; adds a line end when the text has none at its end. */
WQ_UDF_EXPORT void message(const std::string& text);

/**
 * For as long as an object of this class lives, display() and message() of its thread write to a stream instead of standard output, and so
 * do all reports, listings and tables of the analyses. The stream must live as long. Of several objects the youngest holds.
 */
class WQ_UDF_EXPORT DisplayTo {
public:
    /** @param stream keeps its flags, width and locale, which have no influence; its state tells what went wrong. */
    explicit DisplayTo(std::ostream& stream);
    ~DisplayTo();
    DisplayTo(const DisplayTo&) = delete;
    DisplayTo& operator=(const DisplayTo&) = delete;

private:
    std::ostream* before;
};

/** Writes an error message to standard error; adds a line end when the text has none at its end. */
WQ_UDF_EXPORT void errorMessage(const std::string& text);

}  // namespace wq_lib

#endif
