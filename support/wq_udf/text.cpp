#include <wq_udf/text.h>

#include <algorithm>
#include <cstddef>
#include <ostream>

namespace wq_lib {

std::string replicateChar(int character, int count)
{
    return std::string(static_cast<std::size_t>(std::max(count, 0)), static_cast<char>(character));
}

std::string removeChar(const std::string& text, int character)
{
    std::string rest = text;
    rest.erase(std::remove(rest.begin(), rest.end(), static_cast<char>(character)), rest.end());
    return rest;
}

std::ostream& operator<<(std::ostream& stream, std::string text) { return std::operator<<(stream, text); }

}  // namespace wq_lib
