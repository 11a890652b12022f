// Which program this is.
#pragma once

#include "arguments.h"

#include <wq_stat/version.h>

#include <string>

namespace wqstat {

/** The version, and the library's identification. */
inline std::string versionText()
{
    std::string identification = wq_stat_1VersionString;
    identification.erase(0, identification.find(')') + 1);  // "@(#)" is for the program what
    identification.erase(identification.find_last_not_of('\n') + 1);
    return "wqstat " + shortest(wq_stat_1VersionNumber) + "\n" + identification;
}

}  // namespace wqstat
