#include "table_options.h"

#include "command_line/arguments.h"
#include "command_line/command_words.h"
#include "command_line/failure.h"
#include "separator.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>

namespace wqstat {

namespace {

std::string namesColumn(const std::string& name) { return name.empty() ? "the name of a column is needed" : ""; }

}  // namespace

std::vector<Column> chosen(const std::vector<const ColumnOption*>& needed, const std::vector<const ColumnOption*>& possible)
{
    std::vector<Column> columns;
    for (const ColumnOption* column : needed) {
        if (!column->given()) throw WrongUsage(std::string(column->option) + " is needed, the column of " + column->meaning);
        columns.push_back(column->column());
    }
    for (const ColumnOption* column : possible)
        if (column->given()) columns.push_back(column->column());
    return columns;
}

void TableOptions::addColumn(CLI::App& app, ColumnOption& column)
{
    columns.push_back(&column);
    app.add_option(column.option, column.name, std::string("in a table: the column of ") + column.meaning + ", by its title or number")
        ->type_name("NAME")
        ->check(namesColumn);
}

void TableOptions::declareFormat(CLI::App& app)
{
    if (columns.empty()) return;
    declareReading(app);
    CLI::Option* const refuse =
        app.add_flag("--na-error", tableFormat.refuseMissing, "refuse a table with a missing value in a used column");
    CLI::Option* const by =
        app.add_option("--by", byColumn, "in a table: analyse the rows of each value of this column by themselves, by its title or number");
    by->type_name("NAME")->check(namesColumn);
    formatOptions.insert(formatOptions.end(), {refuse, by});
}

void TableOptions::declareReading(CLI::App& app)
{
    const auto setSeparator = [this](const std::string& text) {
        tableFormat.separator = readArgument("--separator", [&] { return separatorArgument(text); });
    };
    CLI::Option* const separator = app.add_option_function<std::string>(
        "--separator", setSeparator,
        "in a table: what separates columns, comma, semicolon, tab, bar, blanks or a character; found out unless given");
    separator->type_name("NAME");
    CLI::Option* const comma =
        app.add_flag("--decimal-comma", tableFormat.decimalComma, "in a table: numbers have a decimal comma; found out unless given");
    CLI::Option* const point =
        app.add_flag("--decimal-point", tableFormat.decimalPoint, "in a table: numbers have a decimal point, whatever other columns have");
    point->excludes(comma);
    CLI::Option* const without = app.add_flag_callback(
        "--no-header", [this] { tableFormat.header = TableFormat::Header::absent; },
        "the table's first line holds data, not the columns' titles");
    CLI::Option* const with = app.add_flag_callback(
        "--header", [this] { tableFormat.header = TableFormat::Header::present; },
        "the table's first line holds the columns' titles, even if all of them are numbers");
    with->excludes(without);
    const auto setMissing = [this](const std::string& texts) { tableFormat.missing = commaSeparated(texts); };
    CLI::Option* const missing = app.add_option_function<std::string>(
        "--na", setMissing, "in a table: what stands for a missing value besides nothing; NA,N/A,NaN,nan,-,. unless given");
    missing->type_name("TEXT,...");
    CLI::Option* const tell = app.add_flag("--verbose", isVerbose, "say on standard error how the table was read");
    formatOptions = {separator, comma, point, without, with, missing, tell};
}

std::vector<std::string> TableOptions::readingWords() const
{
    std::vector<std::string> words;
    for (const CLI::Option* option : formatOptions) {
        if (option->count() == 0 || option->get_name() == "--verbose") continue;
        const bool isFlag = option->get_expected_max() == 0;
        const std::vector<std::string> more =
            isFlag ? std::vector<std::string>{option->get_name()} : optionWords(option->get_name(), option->results().back());
        words.insert(words.end(), more.begin(), more.end());
    }
    return words;
}

std::vector<const ColumnOption*> TableOptions::typical() const
{
    std::vector<const ColumnOption*> found;
    std::copy_if(columns.begin(), columns.end(), std::back_inserter(found), [](const ColumnOption* column) { return column->isTypical; });
    return found;
}

bool TableOptions::isTable() const
{
    if (std::any_of(columns.begin(), columns.end(), [](const ColumnOption* column) { return column->given(); })) return true;
    for (const CLI::Option* option : formatOptions)
        if (option->count() > 0)
            throw WrongUsage(option->get_name() + " is for tables: name a column, such as " + columns.front()->option + " NAME");
    return false;
}

}  // namespace wqstat
