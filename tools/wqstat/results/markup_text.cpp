#include "markup_text.h"

#include "command_line/visible_text.h"

namespace wqstat {

std::string markupText(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        const char c = text[0];
        const bool stays = c == '\n' || c == '\t' || text.substr(0, 2) == "\r\n";
        const std::size_t length = stays ? 1 : printableLength(text);
        if (length == 0)
            result += escaped(c);
        else if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (c == '"')
            result += "&quot;";
        else if (c != '\r')
            result += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

}  // namespace wqstat
