// What a command is, and the commands there are.
#pragma once

#include "command_line/option_parser.h"
#include "command_line/failure.h"

#include <memory>
#include <string>
#include <vector>

namespace wqstat {

class Command {
public:
    virtual ~Command() = default;

    /** Adds its options to its subcommand; they are stored in this object. */
    virtual void declare(CLI::App& app) = 0;

    /** What may stand first behind the command, where that is not a file. */
    virtual std::vector<std::string> words() const { return {}; }

    /** @return done, or couldNotAnalyse where that has been told already. @throws CannotAnalyse, WrongUsage */
    virtual ExitStatus run() = 0;
};

struct CommandEntry {
    const char* name;
    const char* summary;
    const char* example;  ///< one command line
    std::unique_ptr<Command> (*make)();
};

template <typename T>
std::unique_ptr<Command> make()
{
    return std::make_unique<T>();
}

CommandEntry columnsCommand();
std::vector<CommandEntry> analysisCommands();
CommandEntry probCommand();
CommandEntry randomCommand();

}  // namespace wqstat
