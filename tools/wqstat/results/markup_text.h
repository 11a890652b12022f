// Texts in markup, HTML and SVG alike.
#pragma once

#include <string>
#include <string_view>

namespace wqstat {

/** The text as an element's content or in an attribute's quotes. Line ends and tabs stay; what markup cannot hold is shown as visible()
 * does. */
std::string markupText(std::string_view text);

}  // namespace wqstat
