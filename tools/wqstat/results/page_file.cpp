#include "page_file.h"

#include <filesystem>
#include <system_error>

namespace wqstat {

namespace {

PageFile::Place placeOf(const std::string& fileName)
{
    if (fileName == "-") return PageFile::Place::standardInput;
    std::error_code ignored;
    return std::filesystem::is_regular_file(fileName, ignored) ? PageFile::Place::disk : PageFile::Place::stream;
}

}  // namespace

StreamFingerprint::StreamFingerprint(const std::string& fileName, bool isWanted)
{
    if (isWanted && placeOf(fileName) != PageFile::Place::disk) sum.emplace();
}

BytesHandler StreamFingerprint::handler()
{
    if (!sum) return {};
    return [this](std::string_view bytes) { sum->add(bytes); };
}

void setFingerprint(PageFile& file, const std::string& fileName, const std::string& taken)
{
    file.place = placeOf(fileName);
    file.sha256 = file.place == PageFile::Place::disk ? sha256Of(fileName, file.name) : taken;
}

}  // namespace wqstat
