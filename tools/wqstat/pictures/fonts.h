// Which characters the fonts of this system can draw.
#pragma once

#include <string>

namespace wqstat {

/** The text with '?' for each character that no font of this system has, and that would be drawn as a box. */
std::string drawable(const std::string& text);

}  // namespace wqstat
