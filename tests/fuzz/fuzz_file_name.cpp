// A path, taken apart: the parts are the path again, and the extension follows its rule.

#include "target.h"

#include <wq_udf/file_name.h>

#include <cstddef>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using wq_fuzz::require;
    const std::string path(reinterpret_cast<const char*>(bytes), size);
    std::string given = path;
    const auto [folder, name, extension] = wq_lib::splitFileName(given);

    require(given == path, "the path was changed");
    require(folder + name + extension == path, "the parts are ", folder, ", ", name, ", ", extension);
    require(folder.empty() || folder.back() == '/', "folder ", folder);
    require((name + extension).find('/') == std::string::npos, "a '/' in ", name, extension);

    // Of the file's own name: from the last point on, unless that is the first character or there is none.
    const std::string own = name + extension;
    std::size_t point = own.size();
    while (point > 0 && own[point - 1] != '.') --point;
    require(extension == (point > 1 ? own.substr(point - 1) : ""), "extension ", extension, " of ", own);

    wq_lib::FileName file;
    file.setFileName(given);
    require(file.getFileName() == path, "the file's name is ", file.getFileName());
    return 0;
}
