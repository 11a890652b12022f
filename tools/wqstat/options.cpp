#include "options.h"

#include "arguments.h"
#include "failure.h"
#include "gnuplot.h"

#include <vector>

namespace wqstat {

CLI::Option* addReal(CLI::App& app, const std::string& name, double& value, OpenRange range, const std::string& description)
{
    const auto store = [name, range, &value](const std::string& text) {
        value = readArgument(name, [&] { return realArgument(text); });
        if (!(range.above < value && value < range.below)) throw WrongUsage(name + ": " + inQuotes(text) + " is not " + range.name);
    };
    return app.add_option_function<std::string>(name, store, description)->type_name("NUMBER");
}

CLI::Option* addCount(CLI::App& app, const std::string& name, std::size_t& value, std::size_t least, std::size_t most,
                      const std::string& description)
{
    const auto store = [name, least, most, &value](const std::string& text) {
        value = readArgument(name, [&] { return countArgument(text); });
        if (value < least) throw WrongUsage(name + ": " + inQuotes(text) + " is less than " + std::to_string(least));
        if (value > most) throw WrongUsage(name + ": " + inQuotes(text) + " is more than " + std::to_string(most));
    };
    return app.add_option_function<std::string>(name, store, description)->type_name("COUNT");
}

namespace {

/** What prints more than the report holds; in a JSON document all of it is there already. */
bool isAddedToReport(const CLI::Option* option)
{
    const std::string name = option->get_name();
    return name == "--list" || name == "--details" || name == "--frequencies";
}

}  // namespace

void Outputs::declare(CLI::App& app, const OutputNames& names)
{
    const auto store = [this](const std::vector<std::string>& positions) {
        range = ListRange{readArgument("--list", [&] { return countArgument(positions[0]); }),
                          readArgument("--list", [&] { return countArgument(positions[1]); })};
        if (range->from > range->to) throw WrongUsage("--list: FROM " + positions[0] + " lies behind TO " + positions[1]);
    };
    app.add_option_function<std::vector<std::string>>(
           "--list", store, "after the report list the " + names.listed + " at positions FROM to TO, counted from 0")
        ->expected(2)
        ->allow_extra_args(false)
        ->type_name("FROM TO");
    app.add_option("--export", fileName, "write the " + names.exported + " to a tab-separated file that R reads")
        ->type_name("FILE")
        ->check([](const std::string& name) { return name.empty() ? "the name of a file is needed" : ""; });
}

void Views::declare(CLI::App& app, bool hasTest)
{
    CLI::Option* const json = app.add_flag("--json", asJson, "print all results as JSON instead of the report");
    for (CLI::Option* const option : app.get_options(isAddedToReport)) json->excludes(option);
    if (hasTest) app.add_flag("--textbook", withTextbook, "after the report print exact probabilities, critical values, limits and decisions");
}

void Views::declarePlot(CLI::App& app)
{
    const auto store = [this](const std::string& name) {
        checkPictureName(name);
        picture.fileName = name;
    };
    CLI::Option* const plot =
        app.add_option_function<std::string>("--plot", store, "draw a picture to a file, .svg, .png or .pdf")->type_name("FILE");
    app.add_option("--x-label", picture.xLabel, "with --plot: what the x axis shows, with its unit")->type_name("TEXT")->needs(plot);
    app.add_option("--y-label", picture.yLabel, "with --plot: what the y axis shows, with its unit")->type_name("TEXT")->needs(plot);
}

}  // namespace wqstat
