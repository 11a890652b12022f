// The commands and their options as plain data: what the man page and the shells' completions are made of.
#pragma once

#include "option_parser.h"

#include <string>
#include <vector>

namespace wqstat {

struct OptionDescription {
    std::string name;                  ///< "--alpha"; of an operand "FILE"
    std::vector<std::string> values;   ///< what follows the name, such as FROM and TO; nothing behind a flag
    std::vector<std::string> choices;  ///< the values there are, where they are words
    std::string text;

    bool takesFile() const { return values.size() == 1 && values.front() == "FILE"; }
};

struct CommandDescription {
    std::string name;
    std::string summary;
    std::string operands;  ///< as in a synopsis: "[FILE...]"
    std::vector<OptionDescription> operandTexts;
    std::vector<OptionDescription> options;
    std::string notes;
    std::string example;
    std::vector<std::string> words;  ///< what may stand first behind the command, where that is not a file
};

/** Operands and options of a subcommand; the other members are empty. */
CommandDescription describedOptions(const CLI::App& app);

}  // namespace wqstat
