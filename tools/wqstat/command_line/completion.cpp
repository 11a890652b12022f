#include "completion.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace wqstat {

namespace {

// ---------------------------------------------------------------- bash

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
}

/** The names of options or of commands. */
template <typename Description>
std::string namesOf(const std::vector<Description>& descriptions)
{
    std::vector<std::string> names(descriptions.size());
    std::transform(descriptions.begin(), descriptions.end(), names.begin(), [](const Description& one) { return one.name; });
    return joined(names);
}

constexpr const char* bashHead = R"(# Completion of wqstat for bash, made by: wqstat --generate bash

_wqstat_offer()
{
    local line
    while IFS= read -r line; do COMPREPLY+=("$line"); done < <(compgen "$@" -- "$word")
}

_wqstat_words() { _wqstat_offer -W "$1"; }

_wqstat_files()
{
    compopt -o filenames 2>/dev/null
    _wqstat_offer -f
}

_wqstat()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} earlier= command= options= operands= i
    COMPREPLY=()
    [ "$COMP_CWORD" -lt 2 ] || earlier=${COMP_WORDS[COMP_CWORD - 2]}
    if [ "$word" = = ]; then  # --option=
        word=
    elif [ "$before" = = ]; then  # --option=value
        before=$earlier
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        [a-z]*)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done

    case $command in
)";

constexpr const char* bashTail = R"(    esac
    case $word in
    -*) _wqstat_words "$options" ;;
    *) if [ "$operands" = FILE ]; then _wqstat_files; else _wqstat_words "$operands"; fi ;;
    esac
}

complete -F _wqstat wqstat
)";

/** What is offered behind an option that takes a value; nothing for a number or a text. */
std::string bashValue(const OptionDescription& option)
{
    if (option.takesFile()) return "_wqstat_files; return";
    if (!option.choices.empty()) return "_wqstat_words '" + joined(option.choices) + "'; return";
    return "return";
}

std::string bashBranch(const std::string& pattern, const std::vector<OptionDescription>& options, const std::string& operands)
{
    std::string branch = "    " + pattern + ")\n";
    branch += "        options='" + namesOf(options) + "'\n" + operands;
    std::map<std::string, std::string> namesByValue;
    std::string ofTwo;
    for (const OptionDescription& option : options) {
        if (option.values.empty()) continue;
        std::string& names = namesByValue[bashValue(option)];
        names += (names.empty() ? "" : " | ") + option.name;
        if (option.values.size() > 1) ofTwo += (ofTwo.empty() ? "" : " | ") + option.name;
    }
    branch += "        case $before in\n";
    for (const auto& [value, names] : namesByValue) branch.append("        ").append(names).append(") ").append(value).append(" ;;\n");
    branch += "        esac\n";
    if (!ofTwo.empty()) branch += "        case $earlier in " + ofTwo + ") return ;; esac\n";
    return branch + "        ;;\n";
}

// ---------------------------------------------------------------- zsh

constexpr const char* zshHead = R"(#compdef wqstat
# Completion of wqstat for zsh, made by: wqstat --generate zsh

_wqstat()
{
    local context state state_descr line
    local -A opt_args
    local -a commands=(
)";

constexpr const char* zshTail = R"(        esac
        ;;
    esac
}

if [ "$funcstack[1]" = _wqstat ]; then _wqstat "$@"; else compdef _wqstat wqstat; fi
)";

std::string inZshQuotes(const std::string& text)
{
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

/** The text with backslashes before what would end it in what zsh is told of an option. */
std::string zshEscaped(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        if (std::string_view("[]:\\").find(c) != std::string_view::npos) escaped += '\\';
        escaped += c;
    }
    return escaped;
}

/** A value with what is offered for it; nothing for a number or a text. */
std::string zshValue(const OptionDescription& option, const std::string& value)
{
    std::string entry = ":" + zshEscaped(value) + ":";
    if (option.takesFile()) entry += "_files";
    if (!option.choices.empty()) entry += "(" + joined(option.choices) + ")";
    return entry + (entry.back() == ':' ? " " : "");
}

std::string zshOption(const OptionDescription& option)
{
    std::string entry = option.name + (option.values.size() == 1 ? "=" : "") + "[" + zshEscaped(option.text) + "]";
    for (const std::string& value : option.values) entry += zshValue(option, value);
    return inZshQuotes(entry);
}

std::string zshOptions(const std::vector<OptionDescription>& options, const std::string& indentation)
{
    std::string lines;
    for (const OptionDescription& option : options) lines += " \\\n" + indentation + zshOption(option);
    return lines;
}

// ---------------------------------------------------------------- fish

std::string inFishQuotes(const std::string& text)
{
    std::string quoted = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + "'";
}

std::string fishOption(const std::string& condition, const OptionDescription& option)
{
    std::string line = "complete -c wqstat -n " + inFishQuotes(condition) + " -l " + option.name.substr(2);
    if (option.takesFile()) line += " -r -F";
    if (!option.values.empty() && !option.takesFile()) line += " -x";
    if (!option.choices.empty()) line += " -a " + inFishQuotes(joined(option.choices));
    return line + " -d " + inFishQuotes(option.text) + "\n";
}

}  // namespace

std::string bashCompletion(const std::vector<OptionDescription>& options, const std::vector<CommandDescription>& commands)
{
    std::string script = bashHead;
    script += bashBranch("''", options, "        operands='" + namesOf(commands) + "'\n");
    for (const CommandDescription& command : commands) {
        std::string operands;
        if (!command.words.empty())
            operands = "        [ \"$i\" -lt $((COMP_CWORD - 1)) ] || operands='" + joined(command.words) + "'\n";
        else if (!command.operandTexts.empty())
            operands = "        operands=FILE\n";
        script += bashBranch(command.name, command.options, operands);
    }
    return script + bashTail;
}

std::string zshCompletion(const std::vector<OptionDescription>& options, const std::vector<CommandDescription>& commands)
{
    std::string script = zshHead;
    for (const CommandDescription& command : commands)
        script += "        " + inZshQuotes(zshEscaped(command.name) + ":" + command.summary) + "\n";
    script +=
        "    )\n    _arguments -C" + zshOptions(options, "        ") + " \\\n        '1:command:->command' '*::argument:->argument'\n";
    script += "    case $state in\n    command) _describe command commands ;;\n    argument)\n        case $words[1] in\n";
    for (const CommandDescription& command : commands) {
        script += "        " + command.name + ")\n            _arguments" + zshOptions(command.options, "                ");
        if (!command.words.empty())
            script += " \\\n                '1:word:(" + joined(command.words) + ")'";
        else if (!command.operandTexts.empty())
            script += " \\\n                '*:file:_files'";
        script += "\n            ;;\n";
    }
    return script + zshTail;
}

std::string fishCompletion(const std::vector<OptionDescription>& options, const std::vector<CommandDescription>& commands)
{
    std::string script = "# Completion of wqstat for fish, made by: wqstat --generate fish\n\ncomplete -c wqstat -f\n";
    for (const OptionDescription& option : options) script += fishOption("__fish_use_subcommand", option);
    for (const CommandDescription& command : commands) {
        const std::string condition = "__fish_seen_subcommand_from " + command.name;
        script += "\ncomplete -c wqstat -n __fish_use_subcommand -a " + command.name + " -d " + inFishQuotes(command.summary) + "\n";
        for (const OptionDescription& option : command.options) script += fishOption(condition, option);
        if (!command.words.empty())
            script += "complete -c wqstat -n " + inFishQuotes(condition) + " -a " + inFishQuotes(joined(command.words)) + "\n";
        else if (!command.operandTexts.empty())
            script += "complete -c wqstat -n " + inFishQuotes(condition) + " -F\n";
    }
    return script;
}

}  // namespace wqstat
