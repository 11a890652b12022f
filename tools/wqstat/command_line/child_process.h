// Other programs, started without a shell.
#pragma once

#include <string>
#include <vector>

namespace wqstat {

/** The path of a program, looked for in the folders of PATH; empty when it is not there. */
std::string programOnPath(const std::string& name);

/** The descriptors that a program has as its standard streams. */
struct ChildStreams {
    int input;
    int output;
    int errors;
};

/**
 * Runs a program to its end.
 * @param arguments without its name.
 * @return how it ended, as waitpid() has it. @throws CannotAnalyse when it cannot be started.
 */
int runProgram(const std::string& path, const std::vector<std::string>& arguments, const ChildStreams& streams);

/** "gnuplot failed (exit status 1): line 3: undefined variable". @param messages what it wrote, of which the last line is told. */
std::string failureOf(const std::string& name, int status, const std::string& messages);

}  // namespace wqstat
