// wqstat: the analyses of the library on the command line.
#include "command_line/arguments.h"
#include "command.h"
#include "command_line/command_description.h"
#include "command_line/command_words.h"
#include "command_line/completion.h"
#include "command_line/failure.h"
#include "command_line/help_formatter.h"
#include "command_line/interruption.h"
#include "command_line/manual_page.h"
#include "command_line/nearest_name.h"
#include "command_line/progress.h"
#include "command_line/start_up.h"
#include "command_line/terminal.h"
#include "command_line/version_text.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace wqstat;

/** One line that says why. It needs no memory. */
int failure(std::string_view text, ExitStatus status)
{
    progress().hide();
    std::cerr << "wqstat: " << text << '\n';
    return status;
}

std::vector<CommandEntry> allCommands()
{
    std::vector<CommandEntry> all = analysisCommands();
    all.insert(all.begin(), columnsCommand());
    all.push_back(probCommand());
    all.push_back(randomCommand());
    return all;
}

/** The command that the first argument names, alone, or all where it names none: to make the options of each takes longer than many a file.
 */
std::vector<CommandEntry> neededCommands(std::string_view firstArgument)
{
    std::vector<CommandEntry> all = allCommands();
    for (const CommandEntry& entry : all)
        if (entry.name == firstArgument) return {entry};
    return all;
}

/** The program: its options and, by subcommand, what there is to run. */
class Program {
public:
    explicit Program(std::string_view firstArgument) : app("Classical statistics of data files.", "wqstat")
    {
        app.formatter(std::make_shared<HelpFormatter>());  // the subcommands made from here on have it too
        std::string examples = "Examples:\n";
        for (const CommandEntry& entry : neededCommands(firstArgument)) {
            CLI::App* const subcommand = app.add_subcommand(entry.name, entry.summary);
            commands.emplace_back(subcommand, entry.make());
            commands.back().second->declare(*subcommand);
            const std::string notes = subcommand->get_footer();
            descriptions.push_back(described(entry, *commands.back().second, *subcommand));
            subcommand->footer((notes.empty() ? "" : notes + "\n\n") + "Example:\n  " + entry.example);
            examples += std::string("  ") + entry.example + "\n";
        }
        app.footer(examples + "\nExit status: 0 done; 1 the data could not be analysed, or the results not written; 2 wrong usage.");
        app.require_subcommand(0, 1);  // a second name of a command is that of a file
        app.set_version_flag("--version", versionText(), "Print the version and exit");
        app.add_option("--generate", generated, "Print the man page, or completion for a shell: man, bash, fish or zsh")
            ->check(CLI::IsMember({"man", "bash", "fish", "zsh"}))
            ->type_name("KIND");
    }

    int run(int argc, const char* const* argv)
    {
        try {
            app.parse(argc, argv);
            if (!generated.empty()) {
                if (!app.get_subcommands().empty()) throw WrongUsage("--generate stands alone, without a command");
                std::cout << generatedText();
                return finished();
            }
            if (app.get_subcommands().empty()) throw WrongUsage("a command is required");
            ExitStatus status = done;
            for (const auto& [subcommand, command] : commands)
                if (subcommand->parsed()) status = command->run();
            progress().hide();
            return finished(status);
        } catch (const CLI::Success& wantsText) {  // --help, --version
            app.exit(wantsText);
            return finished();
        } catch (const CLI::ParseError& problem) {
            const bool unknownCommand = app.get_subcommands().empty() && argc > 1 && argv[1][0] != '-';
            if (unknownCommand) return usageFailure("there is no command " + inQuotes(argv[1]) + didYouMean(argv[1], commandNames()));
            const std::string unknown = unknownOption();
            return usageFailure(unknown.empty() ? problem.what() : unknown);
        } catch (const WrongUsage& problem) {
            return usageFailure(problem.what());
        } catch (const CannotAnalyse& problem) {
            return failure(problem.what(), couldNotAnalyse);
        } catch (const std::bad_alloc&) {
            return failure(noMemory, couldNotAnalyse);
        } catch (const std::exception& problem) {
            return failure(problem.what(), couldNotAnalyse);
        }
    }

private:
    static CommandDescription described(const CommandEntry& entry, const Command& command, const CLI::App& subcommand)
    {
        CommandDescription description = describedOptions(subcommand);
        description.name = entry.name;
        description.summary = entry.summary;
        description.notes = subcommand.get_footer();
        description.example = entry.example;
        description.words = command.words();
        return description;
    }

    std::string generatedText() const
    {
        const std::vector<OptionDescription> options = describedOptions(app).options;
        if (generated == "bash") return bashCompletion(options, descriptions);
        if (generated == "fish") return fishCompletion(options, descriptions);
        if (generated == "zsh") return zshCompletion(options, descriptions);
        return manualPage(options, descriptions);
    }

    std::vector<std::string> commandNames() const
    {
        std::vector<std::string> names;
        for (const CommandDescription& command : descriptions) names.push_back(command.name);
        return names;
    }

    /** Names the first option that there is not, written with two dashes or one, and what was meant where that can be told; else empty. */
    std::string unknownOption() const
    {
        const CLI::App* const subcommand = app.get_subcommands().empty() ? &app : app.get_subcommands().front();
        const std::vector<std::string> words = subcommand->remaining();
        const auto isOption = [](const std::string& word) {
            return word.size() > 2 && word[0] == '-' && (word[1] == '-' || (word[1] >= 'a' && word[1] <= 'z'));
        };
        const auto unknown = std::find_if(words.begin(), words.end(), isOption);
        if (unknown == words.end()) return "";
        const std::string given = unknown->substr(0, unknown->find('='));
        const std::string name = given[1] == '-' ? given : "-" + given;
        std::vector<std::string> names;
        for (const OptionDescription& option : describedOptions(*subcommand).options) names.push_back(option.name);
        return "there is no option " + inQuotes(given) + didYouMean(name, names);
    }

    static int finished(ExitStatus status = done)
    {
        if (std::cout.flush()) return status;
        std::cout.clear();  // one more line end, behind what was cut off, tells the reason
        errno = 0;
        const bool isUnknown = static_cast<bool>((std::cout << '\n').flush());
        return failure("standard output: cannot be written" + because(isUnknown ? 0 : errno), couldNotAnalyse);
    }

    int usageFailure(const std::string& text) const
    {
        std::string help = "wqstat ";
        for (const CLI::App* subcommand : app.get_subcommands()) help += subcommand->get_name() + " ";
        return failure(shown(text) + " (see " + help + "--help)", wrongUsage);
    }

    CLI::App app;
    std::vector<std::pair<CLI::App*, std::unique_ptr<Command>>> commands;
    std::vector<CommandDescription> descriptions;
    std::string generated;
};

}  // namespace

int main(int argc, char** argv)
{
    startUp();
    cleanUpWhenInterrupted();
    try {
        std::ios_base::sync_with_stdio(false);
        const TerminalStreams streams;
        keepCommandLine(argc, argv);
        return Program(argc > 1 ? argv[1] : "").run(argc, argv);
    } catch (const std::bad_alloc&) {  // for the options, or for the text of a message
        return failure(noMemory, couldNotAnalyse);
    }
}
