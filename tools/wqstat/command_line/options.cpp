#include "options.h"

#include "arguments.h"
#include "failure.h"
#include "pictures/gnuplot.h"

#include <CLI/CLI.hpp>

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

constexpr OpenRange fontSizes{2.0, 100.0, "between 2 and 100"};
constexpr OpenRange dotsPerInch{20.0, 2400.0, "between 20 and 2400"};

CLI::Option* addOptionalReal(CLI::App& app, const std::string& name, std::optional<double>& value, OpenRange range,
                             const std::string& description)
{
    const auto store = [name, range, &value](const std::string& text) {
        value = readArgument(name, [&] { return realArgument(text); });
        if (!(range.above < *value && *value < range.below)) throw WrongUsage(name + ": " + inQuotes(text) + " is not " + range.name);
    };
    return app.add_option_function<std::string>(name, store, description)->type_name("NUMBER");
}

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

void Views::declare(CLI::App& app, bool hasGroups)
{
    CLI::Option* const json = app.add_flag("--json", asJson, "print all results as JSON instead of the report");
    CLI::Option* const tsv =
        app.add_flag("--tsv", asTsv, "print all results as one row of a tab-separated table instead of the report")->excludes(json);
    for (CLI::Option* const option : app.get_options(isAddedToReport)) {
        json->excludes(option);
        tsv->excludes(option);
    }
    if (hasGroups) app.add_flag("--observations", withObservations, "with --json: the observations of each group too")->needs(json);
    app.add_flag("--textbook", withTextbook, "after the report print exact probabilities, critical values, limits and decisions");
    app.add_flag("--no-warnings", withoutWarnings,
                 "say nothing of decisions that differ from the exact ones, or of data that look unlike what is meant");
}

void Views::declarePlot(CLI::App& app, const PlotChoices& choices)
{
    const auto store = [this](const std::string& name) {
        checkPictureName(name);
        picture.fileName = name;
    };
    app.add_option_function<std::string>("--plot", store, "draw a picture to a file, .svg, .png or .pdf")->type_name("FILE");
    app.add_flag("--open", isToBeShown, "show the page of --html, or the picture of --plot, with xdg-open");
    app.add_option("--html", page, "write a page with the results, the picture and how they were made")
        ->type_name("FILE")
        ->check([](const std::string& name) { return name.empty() ? "the name of a file is needed" : ""; });
    app.add_option("--x-label", picture.xLabel, "what the x axis of the picture shows, with its unit")->type_name("TEXT");
    app.add_option("--y-label", picture.yLabel, "what the y axis of the picture shows, with its unit")->type_name("TEXT");
    app.add_option_function<std::string>(
           "--title", [this](const std::string& text) { picture.title = text; }, "title of the picture; '' for none")
        ->type_name("TEXT");
    const auto storeSize = [this](const std::string& text) { readArgument("--size", [&] { return setSize(picture.canvas, text); }); };
    app.add_option_function<std::string>("--size", storeSize,
                                         "size of the picture, such as 85x60mm, or 800x600px, which it has unless given")
        ->type_name("WIDTHxHEIGHT");
    addOptionalReal(app, "--font-size", picture.fontSize, fontSizes,
                    "letters of the picture, in points; 11.25 unless given, less where it is small");
    addOptionalReal(app, "--dpi", picture.dots, dotsPerInch,
                    "with --plot FILE.png: dots to an inch; 96 unless given, 300 with a size in mm");
    if (!choices.logarithmic.empty()) {
        std::vector<std::string> axes{"none"};
        for (const char axis : choices.logarithmic) axes.insert(axes.end() - 1, std::string(1, axis));
        if (choices.logarithmic.size() > 1) axes.insert(axes.end() - 1, choices.logarithmic);
        app.add_option_function<std::string>(
               "--log", [this](const std::string& text) { picture.logarithmic = text == "none" ? "" : text; },
               "axes of the picture that are logarithmic; unless given those of the model, where the data reach over two decades")
            ->check(CLI::IsMember(axes))
            ->type_name("AXES");
    }
    if (choices.residuals) app.add_flag("--residuals", picture.residuals, "below the picture show what the line leaves of each y");
    app.parse_complete_callback([this, &app] { requirePicture(app); });
}

/** Words about a picture that nobody wants are a mistake. */
void Views::requirePicture(const CLI::App& app) const
{
    if (picture.dots && !hasDots(picture.fileName)) throw WrongUsage("--dpi requires --plot FILE.png: other pictures have no dots");
    if (!picture.fileName.empty() || !page.empty()) return;
    for (const char* const name : {"--x-label", "--y-label", "--title", "--size", "--font-size", "--log", "--residuals"}) {
        const CLI::Option* const option = app.get_option_no_throw(name);
        if (option != nullptr && option->count() > 0) throw WrongUsage(std::string(name) + " requires --plot or --html");
    }
}

}  // namespace wqstat
