#ifndef WQ_UDF_TEXT_H
#define WQ_UDF_TEXT_H

/// @file
/// Rules and other text that reports are made of.

#include <wq_udf/export.h>

#include <iosfwd>
#include <string>

namespace wq_lib {

const std::string BRACKET = "()";         ///< an opening and a closing one
const std::string CURLY_BRACKET = "{}";   ///< likewise
const std::string SQUARE_BRACKET = "[]";  ///< likewise

/** @return count copies of the character; the empty text when count is 0 or negative. */
WQ_UDF_EXPORT std::string replicateChar(int character, int count);

/** @return the text without any occurrence of the character. */
WQ_UDF_EXPORT std::string removeChar(const std::string& text, int character);

/** @return a rule of n '-' characters; reports use n = 70. */
inline std::string singleLine(int n) { return replicateChar('-', n); }

/** @return a rule of n '=' characters; reports use n = 70. */
inline std::string doubleLine(int n) { return replicateChar('=', n); }

/** Writes a text as the standard operator does, with the stream's width, fill and adjustment. */
WQ_UDF_EXPORT std::ostream& operator<<(std::ostream& stream, std::string text);

}  // namespace wq_lib

#endif
