#include "options.h"

#include "arguments.h"
#include "failure.h"

#include <vector>

namespace wqstat {

namespace {

/** An argument error that names its option. */
template <typename Convert>
auto valueOf(const std::string& option, const std::string& text, Convert convert)
{
    try {
        return convert(text);
    } catch (const WrongUsage& problem) {
        throw WrongUsage(option + ": " + problem.what());
    }
}

}  // namespace

CLI::Option* addReal(CLI::App& app, const std::string& name, double& value, OpenRange range, const std::string& description)
{
    const auto store = [name, range, &value](const std::string& text) {
        value = valueOf(name, text, realArgument);
        if (!(range.above < value && value < range.below)) throw WrongUsage(name + ": " + inQuotes(text) + " is not " + range.name);
    };
    return app.add_option_function<std::string>(name, store, description)->type_name("NUMBER");
}

CLI::Option* addCount(CLI::App& app, const std::string& name, std::size_t& value, std::size_t least, std::size_t most,
                      const std::string& description)
{
    const auto store = [name, least, most, &value](const std::string& text) {
        value = valueOf(name, text, countArgument);
        if (value < least) throw WrongUsage(name + ": " + inQuotes(text) + " is less than " + std::to_string(least));
        if (value > most) throw WrongUsage(name + ": " + inQuotes(text) + " is more than " + std::to_string(most));
    };
    return app.add_option_function<std::string>(name, store, description)->type_name("COUNT");
}

void Outputs::declare(CLI::App& app, const OutputNames& names)
{
    const auto store = [this](const std::vector<std::string>& positions) {
        range = ListRange{valueOf("--list", positions[0], countArgument), valueOf("--list", positions[1], countArgument)};
        if (range->from > range->to) throw WrongUsage("--list: FROM " + positions[0] + " lies behind TO " + positions[1]);
    };
    app.add_option_function<std::vector<std::string>>(
           "--list", store, "after the report list the " + names.listed + " at positions FROM to TO, counted from 0")
        ->expected(2)
        ->type_name("FROM TO");
    app.add_option("--export", fileName, "write the " + names.exported + " to a tab-separated file that R reads")->type_name("FILE");
}

}  // namespace wqstat
