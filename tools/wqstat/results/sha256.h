// Fingerprints of data files.
#pragma once

#include <string>

namespace wqstat {

/** SHA-256 of what the path holds, in 64 hexadecimal digits. @throws CannotAnalyse when it cannot be read. */
std::string sha256Of(const std::string& path, const std::string& shownName);

}  // namespace wqstat
