// Shows a file on the user's desktop.
#pragma once

#include <string>

namespace wqstat {

/** @throws CannotAnalyse when there is no program to show files with. */
void requireViewer();

/** Shows the file with the program that the desktop has for its kind. @throws CannotAnalyse when that fails. */
void show(const std::string& fileName);

}  // namespace wqstat
