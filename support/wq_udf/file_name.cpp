#include <wq_udf/file_name.h>

#include <cstddef>

namespace wq_lib {

name_of_file splitFileName(std::string& path)
{
    const std::size_t slash = path.rfind('/');
    const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    const std::size_t dot = path.rfind('.');
    const bool hasExtension = dot != std::string::npos && dot > nameStart;
    const std::size_t nameEnd = hasExtension ? dot : path.size();
    return {path.substr(0, nameStart), path.substr(nameStart, nameEnd - nameStart), path.substr(nameEnd)};
}

}  // namespace wq_lib
