// Completion of command lines in the shells, made of the option tables.
#pragma once

#include "command_description.h"

#include <string>
#include <vector>

namespace wqstat {

/** A script for bash. @param options of the program itself. */
std::string bashCompletion(const std::vector<OptionDescription>& options, const std::vector<CommandDescription>& commands);

/** A script for zsh. */
std::string zshCompletion(const std::vector<OptionDescription>& options, const std::vector<CommandDescription>& commands);

/** A script for fish. */
std::string fishCompletion(const std::vector<OptionDescription>& options, const std::vector<CommandDescription>& commands);

}  // namespace wqstat
