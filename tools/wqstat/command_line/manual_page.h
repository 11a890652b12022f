// The man page wqstat(1), made of the option tables so that it names what there is.
#pragma once

#include "command_description.h"

#include <string>
#include <vector>

namespace wqstat {

/** The page in the language of mandoc and groff (mdoc macros). @param options of the program itself. */
std::string manualPage(const std::vector<OptionDescription>& options, const std::vector<CommandDescription>& commands);

}  // namespace wqstat
