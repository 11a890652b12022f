// wqstat columns: a look at a table before anything is tested.
#include "command.h"

#include "columns/suggestions.h"
#include "columns/table_view.h"
#include "command_line/arguments.h"
#include "command_line/command_words.h"
#include "command_line/failure.h"
#include "command_line/progress.h"
#include "command_line/terminal.h"
#include "command_line/version_text.h"
#include "command_line/viewer.h"
#include "data_files/table.h"
#include "data_files/table_begin.h"
#include "data_files/table_options.h"
#include "results/json_writer.h"
#include "results/output_file.h"
#include "results/page_file.h"
#include "results/tsv_writer.h"

#include <CLI/CLI.hpp>

#include <wq_stat/version.h>

#include <algorithm>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace wqstat {

namespace {

TableProfile profileOf(Table& table)
{
    TableProfile profile;
    for (std::size_t i = 0; i < table.titles().size(); ++i)
        profile.columns.emplace_back(table.titles()[i], table.givenNumbers(), table.titleMayBeData(i) && !isYear(table.titles()[i]));
    table.readCells([&](const std::vector<std::string_view>& cells) {
        ++profile.rows;
        const std::size_t line = table.line();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (table.isMissing(cells[i]))
                profile.columns[i].addMissing();
            else
                profile.columns[i].add(cells[i], line);
        }
    });
    return profile;
}

bool hasComma(const TableProfile& profile)
{
    return std::any_of(profile.columns.begin(), profile.columns.end(),
                       [](const ColumnProfile& column) { return column.decimalMark() == ','; });
}

class Columns final : public Command {
    void declare(CLI::App& app) override
    {
        app.add_option("TABLE", givenName, "a table; - is standard input, as is no TABLE")->type_name("");
        tableOptions.declareReading(app);
        CLI::Option* const json = app.add_flag("--json", asJson, "print what there is to say as JSON");
        app.add_flag("--tsv", asTsv, "print a row of a tab-separated table for each column")->excludes(json);
        app.add_option("--html", pageName, "write a page with the columns, their histograms and how it was made")
            ->type_name("FILE")
            ->check([](const std::string& name) { return name.empty() ? "the name of a file is needed" : ""; });
        app.add_flag("--open", isToBeShown, "show the page of --html with xdg-open");
        app.footer("Nothing is tested. The command lines that fit are there to be copied.\n"
                   "Quartiles are exact while a column has at most 100000 different values, and about right beyond.");
    }

    ExitStatus run() override
    {
        const std::string name = givenName.value_or("-");
        if (name == "-" && inputIsTerminal()) throw WrongUsage("TABLE is required where standard input is a terminal");
        if (isToBeShown && pageName.empty()) throw CannotAnalyse("--open: there is nothing to show without --html");
        if (isToBeShown) requireViewer();
        progress().show("reading");
        StreamFingerprint fingerprint(name, !pageName.empty());
        Table table(name, tableOptions.format(), fingerprint.handler());
        if (!pageName.empty()) guardOutput("--html", pageName, {table.identity()});
        if (!table.commandsWithoutColumns().empty()) {
            progress().hide();
            printWithoutColumns(table, name);
            return done;
        }
        TableView view{table.name(), profileOf(table), {}};
        table.require(view.profile.rows, 1);
        view.commands = fittingCommands(view.profile, {name, table.hasTitles(), tableOptions.readingWords()});
        progress().hide();
        if (tableOptions.verbose()) std::cerr << "wqstat: " << table.description(hasComma(view.profile)) << '\n';
        print(view, name);
        if (!pageName.empty()) writePage(view, name, fingerprint.text());
        if (isToBeShown && std::cout.flush()) show(pageName);
        return done;
    }

    /** A file that is no table, and what can be done with it. */
    void printWithoutColumns(const Table& table, const std::string& name) const
    {
        const std::string sentence =
            table.name() + ": begins with a comment, in the library's own format: the analyses read it without a column";
        if (asJson || asTsv || !pageName.empty()) throw CannotAnalyse(sentence);
        const std::vector<CommandWithoutColumns>& commands = table.commandsWithoutColumns();
        std::cout << sentence << "\n\n";
        if (commands.size() > 2) {  // they do not mean the same kind of numbers
            std::string list;
            for (const CommandWithoutColumns& words : commands) list += (list.empty() ? "" : ", ") + words.front();
            std::cout << "Which analysis fits depends on what the two numbers of a line are: " << list << ".\n";
            return;
        }
        std::cout << "Command lines that fit; nothing has been tested:\n";
        for (CommandWithoutColumns words : commands) {
            words.push_back(fileWord(name));
            std::cout << "  " << commandLine(words) << '\n';
        }
    }

    void print(const TableView& view, const std::string& name) const
    {
        if (asJson)
            printJson(view, name);
        else if (asTsv)
            printTsv(view, name);
        else
            printView(std::cout, view, showsUtf8() ? Characters::blocks : Characters::ascii);
    }

    static void printJson(const TableView& view, const std::string& name)
    {
        JsonWriter writer(std::cout);
        writer.object("", [&] {
            writer.text("wqstat", shortest(wq_stat_1VersionNumber));
            writer.text("analysis", "columns");
            writer.texts("files", {name});
            writer.member("rows", view.profile.rows);
            std::size_t number = 0;
            writer.array("columns", view.profile.columns,
                         [&](const ColumnProfile& column) { writer.object("", [&] { writeColumn(writer, column, ++number); }); });
            writer.texts("commands", view.commands);
        });
    }

    static void printTsv(const TableView& view, const std::string& name)
    {
        TsvWriter writer(std::cout);
        std::size_t number = 0;
        for (const ColumnProfile& column : view.profile.columns)
            writer.object("", [&] {
                writer.texts("files", {name});
                writeColumn(writer, column, ++number);
            });
        writer.finish();
    }

    void writePage(const TableView& view, const std::string& name, const std::string& taken) const
    {
        OutputFile file(pageName, "the page");
        if (file.isDirect()) throw CannotAnalyse(shown(pageName) + ": is no file");
        PageFile data{view.name, "", ""};
        setFingerprint(data, name, taken);
        file.write(viewPage(view, {data, commandLine(), versionText()}));
        file.keep();
    }

    std::optional<std::string> givenName;
    std::string pageName;
    TableOptions tableOptions;
    bool asJson = false;
    bool asTsv = false;
    bool isToBeShown = false;
};

}  // namespace

CommandEntry columnsCommand()
{
    return {"columns", "look at the columns of a table before anything is tested", "wqstat columns plants.csv", make<Columns>};
}

}  // namespace wqstat
