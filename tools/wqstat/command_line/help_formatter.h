// How --help prints options and operands.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <utility>

namespace wqstat {

/** The usual layout, without the parser's own notes on each option; what excludes what, the descriptions say. */
class HelpFormatter : public CLI::Formatter {
public:
    /** @param operandsText what stands behind the options where the parser does not know it. */
    explicit HelpFormatter(std::string operandsText = "") : operands(std::move(operandsText)) { column_width(22); }

    const std::string& operandsText() const { return operands; }

    std::string make_usage(const CLI::App* app, std::string name) const override
    {
        std::string usage = CLI::Formatter::make_usage(app, name);
        const std::size_t end = usage.find_last_not_of('\n') + 1;
        return operands.empty() ? usage : usage.insert(end, " " + operands);
    }

    std::string make_option_opts(const CLI::Option* option) const override
    {
        const std::string& type = option->get_type_name();
        return type.empty() || option->get_positional() ? "" : " " + type.substr(0, type.find(':'));
    }

private:
    std::string operands;
};

}  // namespace wqstat
