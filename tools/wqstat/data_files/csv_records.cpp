#include "csv_records.h"

#include "character_marks.h"
#include "command_line/failure.h"
#include "numbers/plain_decimal.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace wqstat {

namespace {

constexpr std::string_view blankCharacters = " \t";
constexpr std::size_t longestLine = std::size_t{1} << 24;
constexpr std::size_t slack = std::max(wq_lib::detail::plainDecimalSlack, charactersMarked);  // readable characters behind the text

/** Where the character stands in the text; nullptr where it does not. */
const char* found(std::string_view text, char wanted)
{
    return text.empty() ? nullptr : static_cast<const char*>(std::memchr(text.data(), wanted, text.size()));
}

}  // namespace

CsvRecords::CsvRecords(std::unique_ptr<ByteSource> source, std::string shownName)
    : bytes(std::move(source)),
      name(std::move(shownName)),
      block(blockSize + slack)
{
    if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI | CSV_EMPTY_IS_NULL) != 0) throw std::bad_alloc();
    while (filled < blockSize && refill()) {
    }
}

CsvRecords::~CsvRecords() { csv_free(&parser); }

void CsvRecords::setSeparator(char newSeparator)
{
    separator = newSeparator;
    csv_set_delim(&parser, static_cast<unsigned char>(separator));
    markLines();
}

const std::vector<std::string_view>& CsvRecords::fields()
{
    cells.clear();
    for (std::size_t i = 0; i < record.count; ++i) cells.push_back(field(i));
    return cells;
}

bool CsvRecords::next()
{
    while (cutsAtMarks) {
        if (cutLine()) return true;
        if (!refill()) break;
    }
    return nextWithCare();
}

/** Cuts the next line that is not empty, where the block holds one as a whole. */
bool CsvRecords::cutLine()
{
    while (nextMark < markCount) {
        const std::size_t first = nextMark;
        while (!marks[nextMark].isLast()) ++nextMark;
        FieldEnd& lineEnd = marks[nextMark++];
        const std::size_t lineBegin = position;
        position = lineEnd.place() + 1;
        if (lineEnd.place() > lineBegin && block[lineEnd.place() - 1] == '\r') lineEnd = {lineEnd.place() - 1, true};
        record = {block.data(), lineBegin, &marks[first], nextMark - first, true};
        recordLine = ++lineNumber;
        if (!isEmptyLine()) return true;
    }
    return false;
}

/** Takes the next record line by line, with a look at each for what is no plain line. */
bool CsvRecords::nextWithCare()
{
    std::string_view text;
    std::string_view withEnd;
    while (takeLine(text, withEnd)) {
        ++lineNumber;
        if (holdsZeros && found(text, '\0') != nullptr) fail(lineNumber, "there is a zero byte: this is no text file");
        if (!inRecord) recordLine = lineNumber;
        if (inRecord || (holdsQuotes && found(text, '"') != nullptr)) {
            parse(withEnd);
            if (!recordIsWhole) continue;
            gather();
            return true;
        }
        if (separator == blanks)
            splitAtBlanks(text);
        else
            split(text);
        if (!isEmptyLine()) return true;
    }
    return finish();
}

/** Moves what is left of the block to its front and reads on behind it. @return false when nothing more came. */
bool CsvRecords::refill()
{
    if (ended) return false;
    std::memmove(block.data(), block.data() + position, filled - position);
    filled -= position;
    position = 0;
    if (filled + slack == block.size()) {
        if (filled >= longestLine) fail(lineNumber + 1, "the line is longer than 16 MiB");
        block.resize(2 * filled + slack);
    }
    const std::size_t taken = bytes->read(block.data() + filled, block.size() - slack - filled);
    filled += taken;
    ended = taken == 0;
    markLines();
    return !ended;
}

/** Notes where the separators and line ends of the block's whole lines stand, or that its lines need a closer look. */
void CsvRecords::markLines()
{
    nextMark = 0;
    markCount = 0;
    cutsAtMarks = separator != blanks && !inRecord;
    for (std::size_t at = position; at < filled && cutsAtMarks; at += charactersMarked) {
        const CharacterMarks characters(block.data() + at);
        const std::uint64_t within = filled - at < charactersMarked ? (std::uint64_t{1} << (filled - at)) - 1 : ~std::uint64_t{0};
        if ((characters.ofAny('"', '\0', '\r') & within) != 0)
            cutsAtMarks = (characters.ofAny('"', '\0') & within) == 0 && endLines(characters.ofAny('\r') & within, at);
        if (marks.size() < markCount + charactersMarked) marks.resize(2 * markCount + charactersMarked);
        const std::uint64_t lineEnds = characters.ofAny('\n');
        for (std::uint64_t found = (lineEnds | characters.ofAny(separator)) & within; found != 0; found &= found - 1) {
            const int place = __builtin_ctzll(found);
            marks[markCount++] = {at + static_cast<std::size_t>(place), (lineEnds >> place & 1) != 0};
        }
    }
    while (markCount > 0 && !marks[markCount - 1].isLast()) --markCount;
    lookFor();
}

/** Whether a line feed follows each of these carriage returns, as far as can be seen. @param at where the first of the characters stands.
 */
bool CsvRecords::endLines(std::uint64_t returns, std::size_t at) const
{
    for (; returns != 0; returns &= returns - 1) {
        const std::size_t behind = at + static_cast<std::size_t>(__builtin_ctzll(returns)) + 1;
        if (behind < filled && block[behind] != '\n') return false;
    }
    return true;
}

/** Sees what the block holds that needs a closer look at its lines. */
void CsvRecords::lookFor()
{
    const std::string_view text(block.data(), filled);
    holdsQuotes = found(text, '"') != nullptr;
    holdsReturns = found(text, '\r') != nullptr;
    holdsZeros = found(text, '\0') != nullptr;
}

/** @param text the next line; @param withEnd the same with its line end. @return false when there is none. */
bool CsvRecords::takeLine(std::string_view& text, std::string_view& withEnd)
{
    for (;;) {
        const std::string_view rest(block.data() + position, filled - position);
        const char* end = found(rest, '\n');
        if (holdsReturns) {
            const std::string_view before = end == nullptr ? rest : rest.substr(0, static_cast<std::size_t>(end - rest.data()));
            const char* const back = found(before, '\r');
            const bool isLastSeen = back != nullptr && back + 1 == rest.data() + rest.size() && !ended;  // a line feed may follow
            if (back != nullptr && back + 1 != end && !isLastSeen) end = back;
        }
        if (end == nullptr && !ended) {
            refill();  // which moves the rest, also where nothing more comes
            continue;
        }
        if (end == nullptr && rest.empty()) return false;
        text = end == nullptr ? rest : rest.substr(0, static_cast<std::size_t>(end - rest.data()));
        withEnd = rest.substr(0, text.size() + (end == nullptr ? 0 : 1));
        position += withEnd.size();
        while (nextMark < markCount && marks[nextMark].place() < position) ++nextMark;
        if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
        return true;
    }
}

/** Cuts a line at the separators. */
void CsvRecords::split(std::string_view text)
{
    ends.clear();
    for (std::size_t at = text.find(separator); at != std::string_view::npos; at = text.find(separator, at + 1))
        ends.emplace_back(at, false);
    ends.emplace_back(text.size(), true);
    record = {text.data(), 0, ends.data(), ends.size(), true};
}

/** Cuts a line at the first blank behind each field; what follows of a run belongs to the next field, without whose blanks it is taken. */
void CsvRecords::splitAtBlanks(std::string_view text)
{
    text = withoutBlanks(text);
    ends.clear();
    for (std::size_t at = 0; at < text.size(); at = std::min(text.find_first_not_of(blankCharacters, at), text.size())) {
        at = std::min(text.find_first_of(blankCharacters, at), text.size());
        ends.emplace_back(at, at == text.size());
    }
    record = {text.data(), 0, ends.data(), ends.size(), true};
}

/** Hands a line to libcsv. */
void CsvRecords::parse(std::string_view withEnd)
{
    if (separator == blanks) {
        untabbed = withEnd;
        std::replace(untabbed.begin(), untabbed.end(), '\t', ' ');
        withEnd = untabbed;
    }
    if (!inRecord) {
        parsed.clear();
        ends.clear();
    }
    inRecord = true;
    recordIsWhole = false;
    if (csv_parse(&parser, withEnd.data(), withEnd.size(), takeField, takeRecord, this) == withEnd.size()) return;
    if (csv_error(&parser) == CSV_ENOMEM) throw std::bad_alloc();
    fail(recordLine, "a quote inside a field: a field with quotes stands in quotes as a whole, and they are doubled in it");
}

bool CsvRecords::finish()
{
    if (!inRecord) return false;
    recordIsWhole = false;
    if (csv_fini(&parser, takeField, takeRecord, this) != 0) fail(recordLine, "the quotes that open a field here are not closed");
    if (!recordIsWhole) return false;
    gather();
    return true;
}

void CsvRecords::gather()
{
    inRecord = false;
    parsed.append(slack, '\0');
    record = {parsed.data(), 0, ends.data(), ends.size(), false};
}

void CsvRecords::takeField(void* text, std::size_t length, void* self)
{
    auto& records = *static_cast<CsvRecords*>(self);
    if (text == nullptr && records.separator == blanks) return;  // between two blanks of a run
    if (length > 0) records.parsed.append(static_cast<const char*>(text), length);
    records.ends.emplace_back(records.parsed.size(), false);
    records.parsed += '\0';  // no number goes on behind its field
}

void CsvRecords::takeRecord(int, void* self) { static_cast<CsvRecords*>(self)->recordIsWhole = true; }

void CsvRecords::fail(std::size_t number, const std::string& reason) const
{
    throw CannotAnalyse(name + ":" + std::to_string(number) + ": " + reason);
}

}  // namespace wqstat
