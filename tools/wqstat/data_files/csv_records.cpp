#include "csv_records.h"

#include "command_line/failure.h"
#include "numbers/plain_decimal.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace wqstat {

namespace {

constexpr std::size_t longestLine = std::size_t{1} << 24;
constexpr std::size_t slack = wq_lib::detail::plainDecimalSlack;

bool isBlank(char c) { return c == ' ' || c == '\t'; }

/** Where the character stands in the text; nullptr where it does not. */
const char* found(std::string_view text, char wanted)
{
    return text.empty() ? nullptr : static_cast<const char*>(std::memchr(text.data(), wanted, text.size()));
}

/** The highest bit of every byte that is 0, and no other. */
std::uint64_t zeroBytes(std::uint64_t bytes)
{
    constexpr std::uint64_t lowBits = 0x7f7f7f7f7f7f7f7fu;
    return ~(((bytes & lowBits) + lowBits) | bytes | lowBits);
}

}  // namespace

std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

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
}

bool CsvRecords::next()
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
        if (isEmpty(text)) continue;
        if (separator == blanks)
            splitBlanks(text);
        else
            splitPlain(text);
        return true;
    }
    return finish();
}

/** Whether a line holds blanks alone, none of them a separator between empty fields. */
bool CsvRecords::isEmpty(std::string_view text) const
{
    return std::all_of(text.begin(), text.end(), [this](char c) { return isBlank(c) && (c == ' ' || separator != '\t'); });
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
    lookFor();
    return !ended;
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
        if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
        return true;
    }
}

void CsvRecords::splitPlain(std::string_view text)
{
    cells.clear();
    const char* begin = text.data();
    const char* const end = begin + text.size();
    const auto take = [&](const char* cellEnd) {
        cells.push_back(withoutBlanks({begin, static_cast<std::size_t>(cellEnd - begin)}));
        begin = cellEnd + 1;
    };
    const std::uint64_t separators = 0x0101010101010101u * static_cast<unsigned char>(separator);
    for (const char* next = begin; next < end; next += 8)  // behind the text there are as many characters to read
        for (std::uint64_t marks = zeroBytes(wq_lib::detail::eightCharacters(next) ^ separators); marks != 0; marks &= marks - 1) {
            const char* const mark = next + __builtin_ctzll(marks) / 8;
            if (mark < end) take(mark);
        }
    take(end);
}

void CsvRecords::splitBlanks(std::string_view text)
{
    cells.clear();
    const char* const end = text.data() + text.size();
    const char* begin = std::find_if_not(text.data(), end, isBlank);
    while (begin != end) {
        const char* const cellEnd = std::find_if(begin, end, isBlank);
        cells.emplace_back(begin, static_cast<std::size_t>(cellEnd - begin));
        begin = std::find_if_not(cellEnd, end, isBlank);
    }
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
        fieldEnds.clear();
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
    cells.clear();
    std::size_t begin = 0;
    for (const std::size_t end : fieldEnds) {
        cells.push_back(std::string_view(parsed).substr(begin, end - begin));
        begin = end + 1;
    }
}

void CsvRecords::takeField(void* text, std::size_t length, void* self)
{
    auto& records = *static_cast<CsvRecords*>(self);
    if (text == nullptr && records.separator == blanks) return;  // between two blanks of a run
    if (length > 0) records.parsed.append(static_cast<const char*>(text), length);
    records.fieldEnds.push_back(records.parsed.size());
    records.parsed += '\0';  // no number goes on behind its field
}

void CsvRecords::takeRecord(int, void* self) { static_cast<CsvRecords*>(self)->recordIsWhole = true; }

void CsvRecords::fail(std::size_t number, const std::string& reason) const
{
    throw CannotAnalyse(name + ":" + std::to_string(number) + ": " + reason);
}

}  // namespace wqstat
