// What gnuplot itself makes of a quoted text.
#include "program.h"
#include "support/plain_gnuplot.h"

#include <pictures/gnuplot_code.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace wq_test;

// Every two and three of the characters that mean something to gnuplot, and every single byte.
std::vector<std::string> oddTexts()
{
    const std::string special = "\\\"'`@{}%#!$\n\r \t\x01"
                                "0xn,;()[]\x80\xc3";
    std::vector<std::string> texts;
    for (int byte = 0; byte < 256; ++byte) texts.push_back(std::string(1, static_cast<char>(byte)));
    for (const char a : special)
        for (const char b : special) {
            texts.push_back({a, b});
            for (const char c : special) texts.push_back({a, b, c});
        }
    return texts;
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

TEST(GnuplotCode, textsAreReadByGnuplotAsTheyAreShown)
{
    const std::vector<std::string> texts = oddTexts();
    std::string script = "set print '-'\nmacro = 'replaced'\n";
    for (const std::string& text : texts) script += "print " + wqstat::quotedText("<" + text + ">").source() + "\n";
    const TempFolder folder;
    const Outcome outcome = runCommand({"gnuplot", "-d", folder.write("script", script)});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    const std::vector<std::string> printed = linesOf(outcome.output);
    ASSERT_EQ(printed.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(printed[i], "<" + plainVisible(texts[i]) + ">");
}

TEST(GnuplotCode, theParserOfTheTestsReadsAsGnuplotDoes)
{
    for (const std::string& text : oddTexts()) {
        const GnuplotString read = readAsGnuplot(wqstat::quotedText(text).source());
        EXPECT_EQ(read.problem, "") << plainVisible(text);
        EXPECT_EQ(read.text, plainVisible(text));
        EXPECT_EQ(printedAsFormat(readAsGnuplot(wqstat::quotedTick(text).source()).text), plainVisible(text));
    }
    for (const char* const source : {"\"a", "a\"", "\"a\"b\"", "\"`ls`\"", "\"@x\"", "\"{\"", "\"a\nb\"", "\"\\n\"", "\"\\047\"", "\"\\\""})
        EXPECT_NE(readAsGnuplot(source).problem, "") << source;
}

}  // namespace
