#include "data_lines.h"

#include "plain_decimal.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <ios>
#include <locale>

namespace wq_lib::detail {

namespace {

constexpr std::size_t longestLine = 254;
constexpr std::size_t blockSize = std::size_t{1} << 16;
constexpr std::uintmax_t mostExpectedLines = std::uintmax_t{1} << 24;  // the size of a file may promise more than it holds

bool isDelimiter(char c) { return c == fieldSeparators[0] || c == fieldSeparators[1] || c == fieldSeparators[2]; }

// A call per number would cost a twentieth of the time that reading takes.
#ifdef __GNUC__
#  define WQ_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#  define WQ_ALWAYS_INLINE inline
#endif

using Scan = PlainDecimal (*)(const char*);

/** Takes a plain decimal off the text. @return its end; nullptr for what is none, and for what is left to other ways. */
template <Scan scan>
WQ_ALWAYS_INLINE const char* takeDecimal(const char* text, double& value)
{
    const PlainDecimal number = scan(text);
    if (!number.isConvertible() || !nearestDouble(number, value)) return nullptr;
    if (number.minus) value = -value;
    return number.end;
}

/** Takes a line of plain decimals with a delimiter between two of them. @return the begin of the next one; nullptr for any other line. */
template <std::size_t width, Scan scan>
WQ_ALWAYS_INLINE const char* takePlainLine(const char* text, double* values)
{
    for (std::size_t i = 0; i < width; ++i) {
        if (i > 0 && !isDelimiter(*text++)) return nullptr;
        text = takeDecimal<scan>(text, values[i]);
        if (text == nullptr) return nullptr;
    }
    if (*text == '\r') ++text;
    return *text == '\n' ? text + 1 : nullptr;
}

/** Takes such lines as long as there are any. @param values moves on with them, up to end. @return the begin of the line behind. */
template <std::size_t width, Scan scan>
const char* takePlainLines(const char* text, double*& values, const double* end)
{
    double* next = values;
    for (; next < end; next += width) {
        const char* const line = takePlainLine<width, scan>(text, next);
        if (line == nullptr) break;
        text = line;
    }
    values = next;
    return text;
}

}  // namespace

DataLines::DataLines(const std::string& fileName, EndMarker endMarker) : marker(endMarker)
{
    std::error_code unknown;
    if (std::filesystem::is_directory(fileName, unknown)) return;
    file.imbue(std::locale::classic());
    file.open(fileName, std::ios_base::in | std::ios_base::binary);
    if (!file.is_open()) return;
    source = &file;
    begin();
    const std::uintmax_t size = filled == blockSize ? std::filesystem::file_size(fileName, unknown) : 0;
    if (unknown || size <= blockSize) return;
    const auto lines = static_cast<std::uintmax_t>(std::count(block.begin(), block.end(), '\n'));
    const std::uintmax_t inBlock =
        lines + lines / 64;  // the first block may have a few less than others, and a list that is a line short moves
    expected = static_cast<std::size_t>(std::min((size / blockSize + 1) * inBlock, mostExpectedLines));
}

DataLines::DataLines(std::istream& stream, EndMarker endMarker) : source(stream.fail() ? nullptr : &stream), marker(endMarker)
{
    if (isOpen()) begin();
}

void DataLines::begin()
{
    finished = false;
    block.resize(blockSize + plainDecimalSlack);
    refill();
}

bool DataLines::next()
{
    while (takeLine()) {
        const std::size_t length = line.find('\0');
        if (length != std::string_view::npos && firstZero == 0) firstZero = count;
        line = line.substr(0, length);
        if (line.empty()) continue;
        comment = line.find('#') != std::string_view::npos;
        return comment || marker == EndMarker::isData || !isEndMarker(line);
    }
    return false;
}

std::size_t DataLines::takeNumbers(double* values, std::size_t most) { return takeLines<1>(values, most); }

std::size_t DataLines::takePairs(double* values, std::size_t most) { return takeLines<2>(values, most); }

/** @param values room for `most` lines of `width` plain decimals. @return how many lines were taken. */
template <std::size_t width>
std::size_t DataLines::takeLines(double* values, std::size_t most)
{
    if (finished) return 0;
    const char* const begin = block.data() + position;
    double* next = values;
    const double* const end = values + width * most;
    const char* text = takePlainLines<width, scanShortDecimal>(begin, next, end);
    text = takePlainLines<width, scanSignedDecimal>(text, next, end);
    const std::size_t taken = static_cast<std::size_t>(next - values) / width;
    position += static_cast<std::size_t>(text - begin);
    count += taken;
    return taken;
}

/** Makes the next line of the file the current one. @return false when there is none. */
bool DataLines::takeLine()
{
    if (finished) return false;
    if (filled - position <= longestLine) refill();
    const std::size_t available = filled - position;
    const std::size_t window = std::min(available, longestLine + 1);
    const char* const begin = block.data() + position;
    const void* const lineEnd = window == 0 ? nullptr : std::memchr(begin, '\n', window);
    ++count;
    if (lineEnd != nullptr) {
        line = std::string_view(begin, static_cast<std::size_t>(static_cast<const char*>(lineEnd) - begin));
        position += line.size() + 1;
        return true;
    }
    finished = true;  // the last line, without a line end or cut; what stands before a read error is no whole line
    cut = available > longestLine;
    line = std::string_view(begin, std::min(available, longestLine));
    position += line.size();
    return !failed && available > 0;
}

/** Moves what is left to the front of the block and fills the block up from the file. */
void DataLines::refill()
{
    std::copy(block.begin() + static_cast<std::ptrdiff_t>(position), block.begin() + static_cast<std::ptrdiff_t>(filled), block.begin());
    filled -= position;
    position = 0;
    if (*source) {
        source->read(block.data() + filled, static_cast<std::streamsize>(blockSize - filled));
        filled += static_cast<std::size_t>(source->gcount());
        characters += static_cast<std::uint64_t>(source->gcount());
        failed = source->bad();
    }
    std::fill_n(block.begin() + static_cast<std::ptrdiff_t>(filled), plainDecimalSlack, '\0');  // no number goes on behind the end
}

bool takeField(std::string_view& rest, std::string_view& field)
{
    const char* const end = rest.data() + rest.size();
    const char* const begin = std::find_if_not(rest.data(), end, isDelimiter);
    const char* const fieldEnd = std::find_if(begin, end, isDelimiter);
    field = std::string_view(begin, static_cast<std::size_t>(fieldEnd - begin));
    rest = std::string_view(fieldEnd, static_cast<std::size_t>(end - fieldEnd));
    return !field.empty();
}

}  // namespace wq_lib::detail
