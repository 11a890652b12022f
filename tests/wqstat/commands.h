// The commands that analyse data files, each with lines of its own kind, and how a run of them ends.
#pragma once

#include "program.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace wq_test {

constexpr int done = 0;
constexpr int couldNotAnalyse = 1;
constexpr int wrongUsage = 2;

inline Outcome failed(int status, const std::string& text) { return {status, "", "wqstat: " + text + "\n"}; }
inline Outcome cannotAnalyse(const std::string& text) { return failed(couldNotAnalyse, text); }
inline Outcome refused(const std::string& text, const std::string& command)
{
    return failed(wrongUsage, text + " (see wqstat " + (command.empty() ? "" : command + " ") + "--help)");
}

inline Words with(Words words, const Words& more)
{
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

inline std::string joined(const Words& words)
{
    std::string text;
    for (const std::string& word : words) text += " " + word;
    return text;
}

// A command on one data file; FILE stands for the file.
struct AnalysisCommand {
    Words arguments;
    std::string goodLine;
    std::string badLine;
    std::string badField;  // as the message shows it
    std::size_t least;     // observations
};

inline const AnalysisCommand analyses[] = {
    {{"describe", "FILE"}, "1.5", "x", "x", 3},
    {{"frequency", "FILE"}, "2", "1e999", "1e999", 3},
    {{"variances", "FILE", shipped("cavendish.txt")}, "2.5", "-", "-", 3},
    {{"variances", shipped("cavendish.txt"), "FILE"}, "2.5", " ", " ", 3},
    {{"pairs", "FILE"}, "1;2", "3;y", "y", 2},
    {{"regress", "--model", "linear", "FILE"}, "1:2", "1:y", "y", 2},
    {{"regress", "--model", "logarithmic", "FILE"}, "1|2", "3||;:", "", 1},
    {{"regress", "--model", "exponential", "FILE"}, "1;2", "1;--2", "--2", 1},
    {{"regress", "--model", "power", "FILE"}, "1;2", "1; ", " ", 1},
    {{"correlate", "FILE"}, "1;2", "1;two", "two", 2},
    {{"anova", "FILE"}, "1;2", "1;.", ".", 1},
    {{"multiy", "FILE"}, "1;2;1", "x;2;1", "x", 1},
    {{"fit", "FILE"}, "3;4", "3;e4", "e4", 1},
    {{"ks", "FILE"}, "3;4", "3;\t", "\\t", 1},
    {{"circular", "FILE"}, "1;0", "1;N", "N", 1},
};

inline Words withFile(Words arguments, const std::string& file)
{
    std::replace(arguments.begin(), arguments.end(), std::string("FILE"), file);
    return arguments;
}

}  // namespace wq_test
