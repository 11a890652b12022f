// The command line that this program was called with.
#pragma once

#include <string>
#include <vector>

namespace wqstat {

/** To be called first of all. */
void keepCommandLine(int argc, const char* const* argv);

/** As a shell takes it, to make the same results again. */
std::string commandLine();

/** These words as a shell takes them. */
std::string commandLine(const std::vector<std::string>& words);

/** An option with its value, in one word where the value would be taken for an option. */
std::vector<std::string> optionWords(const std::string& option, const std::string& value);

/** The name of a file, which is not taken for an option. */
std::string fileWord(const std::string& name);

}  // namespace wqstat
