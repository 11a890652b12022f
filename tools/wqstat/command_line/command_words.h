// The command line that this program was called with.
#pragma once

#include <string>

namespace wqstat {

/** To be called first of all. */
void keepCommandLine(int argc, const char* const* argv);

/** As a shell takes it, to make the same results again. */
std::string commandLine();

}  // namespace wqstat
