// wqstat: the analyses of the library on the command line.
#include "arguments.h"
#include "command.h"
#include "command_description.h"
#include "completion.h"
#include "failure.h"
#include "help_formatter.h"
#include "manual_page.h"
#include "progress.h"

#include <wq_stat/version.h>

#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace wqstat;

std::vector<CommandEntry> allCommands()
{
    std::vector<CommandEntry> all = analysisCommands();
    all.push_back(probCommand());
    all.push_back(randomCommand());
    return all;
}

std::string versionText()
{
    std::string identification = wq_stat_1VersionString;
    identification.erase(0, identification.find(')') + 1);  // "@(#)" is for the program what
    identification.erase(identification.find_last_not_of('\n') + 1);
    return "wqstat " + shortest(wq_stat_1VersionNumber) + "\n" + identification;
}

/** The program: its options and, by subcommand, what there is to run. */
class Program {
public:
    Program() : app("Classical statistics of data files.", "wqstat")
    {
        app.formatter(std::make_shared<HelpFormatter>());  // the subcommands made from here on have it too
        std::string examples = "Examples:\n";
        for (const CommandEntry& entry : allCommands()) {
            CLI::App* const subcommand = app.add_subcommand(entry.name, entry.summary);
            commands.emplace_back(subcommand, entry.make());
            commands.back().second->declare(*subcommand);
            const std::string notes = subcommand->get_footer();
            descriptions.push_back(described(entry, *commands.back().second, *subcommand));
            subcommand->footer((notes.empty() ? "" : notes + "\n\n") + "Example:\n  " + entry.example);
            examples += std::string("  ") + entry.example + "\n";
        }
        app.footer(examples + "\nExit status: 0 done; 1 the data could not be analysed, or the results not written; 2 wrong usage.");
        app.set_version_flag("--version", versionText(), "Print the version and exit");
        app.add_option("--generate", generated, "Print the man page, or completion for a shell: man, bash or fish")
            ->check(CLI::IsMember({"man", "bash", "fish"}))
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
            for (const auto& [subcommand, command] : commands)
                if (subcommand->parsed()) command->run();
            progress().hide();
            return finished();
        } catch (const CLI::Success& wantsText) {  // --help, --version
            app.exit(wantsText);
            return finished();
        } catch (const CLI::ParseError& problem) {
            const bool unknownCommand = app.get_subcommands().empty() && argc > 1 && argv[1][0] != '-';
            return usageFailure(unknownCommand ? "there is no command " + inQuotes(argv[1]) : problem.what());
        } catch (const WrongUsage& problem) {
            return usageFailure(problem.what());
        } catch (const CannotAnalyse& problem) {
            return failure(problem.what(), couldNotAnalyse);
        } catch (const std::bad_alloc&) {
            return failure("there is not enough memory", couldNotAnalyse);
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
        return manualPage(options, descriptions);
    }

    static int finished()
    {
        if (std::cout.flush()) return done;
        return failure("standard output: cannot be written", couldNotAnalyse);
    }

    static int failure(const std::string& text, ExitStatus status)
    {
        progress().hide();
        std::cerr << "wqstat: " << text << '\n';
        return status;
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
    std::ios_base::sync_with_stdio(false);
    return Program().run(argc, argv);
}
