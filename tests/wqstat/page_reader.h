// What a page of --html holds, as read_page.py reads it.
#pragma once

#include "commands.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace wq_test {

inline Words withPage(const Words& arguments, const std::string& file) { return with(arguments, {"--html", file}); }

// What read_page.py finds.
struct Page {
    std::vector<std::pair<std::string, std::string>> figures;    // path and value
    std::vector<std::pair<std::string, std::string>> decisions;  // path and word
    Words titles;
    Words languages;
    Words commands;
    Words texts;
    Words faults;  // scripts, addresses outside, elements that are not closed
};

inline std::vector<std::string> parts(const std::string& line)
{
    std::vector<std::string> all(1);
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\t') {
            all.emplace_back();
        } else if (line[i] == '\\') {
            const char next = line.at(++i);
            all.back() += next == 'n' ? '\n' : next == 't' ? '\t' : '\\';
        } else {
            all.back() += line[i];
        }
    }
    return all;
}

// What a reader sees has to be the figure, rounded to the digits that are shown: at least three, and all of those of a whole number.
inline void addFigure(Page& page, const std::string& path, const std::string& value, const std::string& shown)
{
    page.figures.emplace_back(path, value);
    if (value == "NaN" || shown == "n/a") {
        EXPECT_EQ(value == "NaN", shown == "n/a") << path << ": " << value << " is shown as " << shown;
        return;
    }
    if (shown == "< 1e-300" || shown == "> 0.999999999999999") {
        EXPECT_EQ(value, shown[0] == '<' ? "0" : "1") << path;
        return;
    }
    const double exact = std::stod(value);
    std::string rounded;
    for (int digits = 3; digits <= 15 && rounded != shown; ++digits) {
        char text[64];
        std::snprintf(text, sizeof text, "%.*g", digits, exact);
        rounded = std::strtod(text, nullptr) == std::strtod(shown.c_str(), nullptr) ? shown : text;
    }
    if (exact == std::round(exact) && std::fabs(exact) < 1e15) {
        EXPECT_EQ(std::strtod(shown.c_str(), nullptr), exact) << path << ": a whole number is shown as " << shown;
    }
    EXPECT_EQ(rounded, shown) << path << ": " << value;
}

// Limits that differ are shown so that a reader sees it, whatever the numbers have in common.
class SeenLimits {
public:
    void add(const std::string& path, const std::string& value, const std::string& shown)
    {
        const std::size_t end = path.rfind('/') + 1;
        if (path.substr(end) == "lower") lower = {path.substr(0, end), {value, shown}};
        if (path.substr(end) != "upper" || path.substr(0, end) != lower.first) return;
        EXPECT_EQ(lower.second.first == value, lower.second.second == shown)
            << path << ": " << lower.second.first << " and " << value << " are both shown as " << shown;
    }

private:
    std::pair<std::string, std::pair<std::string, std::string>> lower;  // path of both; value and what is shown
};

inline Page pageIn(const std::string& file)
{
    const Outcome outcome = runCommand({"python3", std::string(WQ_TEST_DIR) + "/wqstat/read_page.py", file});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    Page page;
    SeenLimits limits;
    std::istringstream lines(outcome.output);
    for (std::string line; std::getline(lines, line);) {
        const std::vector<std::string> found = parts(line);
        if (found[0] == "figure") {
            addFigure(page, found[1], found[2], found[3]);
            limits.add(found[1], found[2], found[3]);
        } else if (found[0] == "decision")
            page.decisions.emplace_back(found[1], found[2]);
        else if (found[0] == "title")
            page.titles.push_back(found[1]);
        else if (found[0] == "lang")
            page.languages.push_back(found[1]);
        else if (found[0] == "command")
            page.commands.push_back(found[1]);
        else if (found[0] == "text")
            page.texts.push_back(found[1]);
        else
            page.faults.push_back(line);
    }
    return page;
}

}  // namespace wq_test
