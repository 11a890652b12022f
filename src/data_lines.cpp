#include "data_lines.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <ios>
#include <locale>

namespace wq_lib::detail {

namespace {

constexpr std::size_t longestLine = 254;
constexpr std::size_t blockSize = std::size_t{1} << 16;

bool isDelimiter(char c) { return c == ':' || c == ';' || c == '|'; }

}  // namespace

DataLines::DataLines(const std::string& fileName, EndMarker endMarker) : marker(endMarker)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(fileName, ignored)) return;
    file.imbue(std::locale::classic());
    file.open(fileName, std::ios_base::in | std::ios_base::binary);
    if (isOpen()) block.resize(blockSize);
}

bool DataLines::next()
{
    while (takeLine()) {
        line = line.substr(0, line.find('\0'));
        if (line.empty()) continue;
        comment = line.find('#') != std::string_view::npos;
        return comment || marker == EndMarker::isData || line.substr(0, 2) != "<<";
    }
    return false;
}

/** Makes the next line of the file the current one. @return false when there is none. */
bool DataLines::takeLine()
{
    if (finished) return false;
    if (filled - position <= longestLine) readOn();
    const std::size_t available = filled - position;
    const std::size_t window = std::min(available, longestLine + 1);
    const char* const begin = block.data() + position;
    const void* const lineEnd = window == 0 ? nullptr : std::memchr(begin, '\n', window);
    if (lineEnd != nullptr) {
        line = std::string_view(begin, static_cast<std::size_t>(static_cast<const char*>(lineEnd) - begin));
        position += line.size() + 1;
        return true;
    }
    finished = true;  // the last line, without a line end or cut; what stands before a read error is no whole line
    line = std::string_view(begin, std::min(available, longestLine));
    return !failed && available > 0;
}

/** Moves what is left to the front of the block and fills the block up from the file. */
void DataLines::readOn()
{
    std::copy(block.begin() + static_cast<std::ptrdiff_t>(position), block.begin() + static_cast<std::ptrdiff_t>(filled), block.begin());
    filled -= position;
    position = 0;
    if (!file) return;
    file.read(block.data() + filled, static_cast<std::streamsize>(block.size() - filled));
    filled += static_cast<std::size_t>(file.gcount());
    failed = file.bad();
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
