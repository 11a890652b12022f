#include "command_description.h"

#include "help_formatter.h"

#include <CLI/CLI.hpp>

#include <sstream>

namespace wqstat {

namespace {

std::vector<std::string> wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

/** The parts of "{a,b,c}", the parser's note of what may be given; none without such a note. */
std::vector<std::string> choicesIn(const std::string& note)
{
    const std::size_t begin = note.find('{');
    const std::size_t end = note.find('}');
    if (begin == std::string::npos || end == std::string::npos) return {};
    std::vector<std::string> choices;
    std::istringstream stream(note.substr(begin + 1, end - begin - 1));
    for (std::string choice; std::getline(stream, choice, ',');) choices.push_back(choice);
    return choices;
}

OptionDescription described(const CLI::Option& option)
{
    const std::string type = option.get_type_name();  // "MODEL:{linear,power}"
    const std::size_t colon = type.find(':');
    OptionDescription description;
    description.name = option.get_positional() ? option.get_name() : "--" + option.get_lnames().front();
    if (!option.get_positional()) description.values = wordsOf(type.substr(0, colon));
    if (colon != std::string::npos) description.choices = choicesIn(type.substr(colon));
    description.text = option.get_description();
    return description;
}

}  // namespace

CommandDescription describedOptions(const CLI::App& app)
{
    CommandDescription command;
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional()) {
            command.operandTexts.push_back(described(*option));
            const bool isList = option->get_expected_max() > 1;
            command.operands += (command.operands.empty() ? "" : " ") + (isList ? "[" + option->get_name() + "...]" : option->get_name());
        } else {
            command.options.push_back(described(*option));
        }
    }
    if (const auto* help = dynamic_cast<const HelpFormatter*>(app.get_formatter().get())) command.operands += help->operandsText();
    return command;
}

}  // namespace wqstat
