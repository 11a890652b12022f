#include "command_words.h"

#include "visible_text.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace wqstat {

namespace {

std::vector<std::string>& words()
{
    static std::vector<std::string> ofTheProgram;
    return ofTheProgram;
}

bool isPlain(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || std::string_view("_-./:,+%@=").find(c) < 10;
}

/** In quotes; where it holds what cannot be shown, in those of the shell that take escapes. */
std::string quotedForShell(const std::string& word)
{
    if (!word.empty() && std::all_of(word.begin(), word.end(), isPlain)) return word;
    if (visible(word) == word) {
        std::string quoted = "'";
        for (const char c : word) quoted += c == '\'' ? "'\\''" : std::string(1, c);
        return quoted + "'";
    }
    std::string quoted = "$'";
    for (std::string_view rest = word; !rest.empty();) {
        const std::size_t length = printableLength(rest);
        if (length == 0)
            quoted += rest[0] == '\n' ? "\\n" : escaped(rest[0]);
        else if (rest[0] == '\'' || rest[0] == '\\')
            quoted += std::string("\\") + rest[0];
        else
            quoted += rest.substr(0, length);
        rest.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return quoted + "'";
}

}  // namespace

void keepCommandLine(int argc, const char* const* argv) { words().assign(argv + std::min(argc, 1), argv + argc); }

std::string commandLine() { return commandLine(words()); }

std::string commandLine(const std::vector<std::string>& given)
{
    std::string line = "wqstat";
    for (const std::string& word : given) line += " " + quotedForShell(word);
    return line;
}

std::vector<std::string> optionWords(const std::string& option, const std::string& value)
{
    if (!value.empty() && value[0] == '-') return {option + "=" + value};
    return {option, value};
}

std::string fileWord(const std::string& name)
{
    const bool isSpecial = name.size() > 1 && (name[0] == '-' || name[0] == '[');  // the parser cuts [a,b] into two
    return isSpecial ? "./" + name : name;
}

}  // namespace wqstat
