#include "manual_page.h"

#include <sstream>

namespace wqstat {

namespace {

constexpr const char* head = R"(.Dd November 21, 2026
.Dt WQSTAT 1
.Os
.Sh NAME
.Nm wqstat
.Nd classical statistics of data files
.Sh SYNOPSIS
)";

constexpr const char* sectionDescription = R"(.Sh DESCRIPTION
.Nm
runs the analyses of the library libwq_stat on data files and prints their reports.
It also gives the library's distribution functions and its random numbers to the shell.
.Pp
Report, textbook, details and listing come in this order on standard output.
Numbers have a decimal point whatever the locale.
On a terminal, work that takes longer than a second shows its progress on standard error.
)";

constexpr const char* ending = R"(.Sh INPUT FILES
Data files are text.
A line with
.Ql #
anywhere is a comment, which the report prints, but for a series file.
A line that begins with
.Ql <<
ends the data, except in a series file.
Lines are cut at 254 characters, and reading ends with one that is longer.
A file named
.Ql -
is standard input.
.Bl -tag -width Ds
.It one sample Pq Cm describe , frequency , variances
A number per line.
.It pairs Pq Cm pairs , regress , correlate , anova , fit , ks , circular
x and y per line, separated by
.Ql \&: ,
.Ql \&;
or
.Ql | ;
a blank separates nothing.
For
.Cm anova
x is the group; for
.Cm fit
x is the observed and y the expected frequency of a class; for
.Cm ks
they are the frequencies of the two samples; for
.Cm circular
x is the angle and y its frequency.
.It series Pq Cm multiy
x, y and how often the pair occurred, separated likewise.
.El
.Pp
Lines that the library reads in a way that their author hardly meant are named in warnings on standard error.
The analysis is made all the same.
.Sh EXIT STATUS
.Bl -tag -width Ds
.It 0
The work is done.
.It 1
The data could not be analysed, or the results not written.
.It 2
Wrong usage.
.El
.Pp
With 1 or 2, one line on standard error says why.
.Sh SEE ALSO
.Xr gnuplot 1 ,
.Xr R 1
.Pp
The manual of the library explains every report line by line.
.Sh CAVEATS
The library's distribution functions are short approximations, and some of them leave the textbook visibly: odd degrees of freedom of
Student's t, one degree of freedom in the numerator of F.
Decisions rest on them.
.Fl Fl textbook
prints the exact values beside them and says where a decision differs.
)";

/** What stands for a character that means something to the formatter, or that it would print as another one; null for all others. */
const char* escapeOf(char c)
{
    switch (c) {
    case '\\':
        return "\\e";
    case '^':
        return "\\(ha";
    case '~':
        return "\\(ti";
    case '`':
        return "\\(ga";
    default:
        return nullptr;
    }
}

/** Prose, every sentence on a line of its own. */
std::string prose(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        const bool atLineStart = result.empty() || result.back() == '\n';
        if (atLineStart && (c == '.' || c == '\'')) result += "\\&";
        if (const char* const escape = escapeOf(c))
            result += escape;
        else
            result += c == ' ' && !atLineStart && result.back() == '.' ? '\n' : c;
    }
    return result;
}

/** A command line, its hyphens such that they can be copied. */
std::string code(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (const char* const escape = escapeOf(c))
            result += escape;
        else
            result += c == '-' ? "\\-" : std::string(1, c);
    }
    return result;
}

std::string sentence(const std::string& text)
{
    std::string line = prose(text);
    if (!line.empty() && line.front() >= 'a' && line.front() <= 'z') line.front() = static_cast<char>(line.front() - 'a' + 'A');
    return line + ".\n";
}

std::string listOf(const std::vector<OptionDescription>& options)
{
    std::string list = ".Bl -tag -width Ds\n";
    for (const OptionDescription& option : options) {
        const bool isOperand = option.name[0] != '-';
        list += isOperand ? ".It Ar " + option.name : ".It Fl Fl " + option.name.substr(2);
        for (const std::string& value : option.values) list += " Ar " + value;
        list += "\n" + sentence(option.text);
    }
    return list + ".El\n";
}

std::string synopsis(const CommandDescription& command)
{
    std::string line = ".Nm\n.Cm " + command.name + "\n.Op Ar options\n";
    std::istringstream operands(command.operands);
    for (std::string operand; operands >> operand;) {
        const bool isList = operand[0] == '[';
        line += isList ? ".Op Ar " + operand.substr(1, operand.find('.') - 1) + " ...\n" : ".Ar " + operand + "\n";
    }
    return line;
}

}  // namespace

std::string manualPage(const std::vector<OptionDescription>& options, const std::vector<CommandDescription>& commands)
{
    std::string page = head;
    for (const CommandDescription& command : commands) page += synopsis(command);
    page += ".Nm\n.Fl Fl help | Fl Fl version\n";
    page += sectionDescription;
    page += ".Pp\nThe options of the program itself:\n" + listOf(options);
    page += ".Sh COMMANDS\n";
    for (const CommandDescription& command : commands) {
        page += ".Ss " + command.name + "\n" + sentence(command.summary);
        std::vector<OptionDescription> rows = command.operandTexts;
        for (const OptionDescription& option : command.options)
            if (option.name != "--help") rows.push_back(option);
        page += listOf(rows);
        if (!command.notes.empty()) page += ".Pp\n" + prose(command.notes) + "\n";
        page += ".Pp\nExample:\n.Bd -literal -offset indent\n" + code(command.example) + "\n.Ed\n";
    }
    return page + ending;
}

}  // namespace wqstat
