// What a page of wqstat holds, as a reader of HTML finds it.
#pragma once

#include "program.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace wq_test {

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

inline std::vector<std::string> partsOfFinding(const std::string& line)
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

inline Page pageIn(const std::string& file)
{
    const Outcome outcome = runCommand({"python3", std::string(WQ_TEST_DIR) + "/wqstat/read_page.py", file});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    Page page;
    std::istringstream lines(outcome.output);
    for (std::string line; std::getline(lines, line);) {
        const std::vector<std::string> found = partsOfFinding(line);
        if (found[0] == "figure")
            page.figures.emplace_back(found[1], found[2]);
        else if (found[0] == "decision")
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
