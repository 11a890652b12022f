// The two ways a command fails; main() turns them into one line on standard error and the exit status.
#pragma once

#include <stdexcept>
#include <string>
#include <system_error>

namespace wqstat {

enum ExitStatus : int { done = 0, couldNotAnalyse = 1, wrongUsage = 2 };

/** The data, or the place results go to, do not allow what was asked for. */
class CannotAnalyse : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/** The command line asks for something that does not exist or makes no sense. */
class WrongUsage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/** ": No space left on device", behind what could not be done; empty where the system gives no reason. @param error errno, or 0 */
inline std::string because(int error) { return error == 0 ? "" : ": " + std::generic_category().message(error); }

/** What read() returns; wrong usage that it meets is told with the name of the argument. */
template <typename Read>
auto readArgument(const std::string& argument, Read read)
{
    try {
        return read();
    } catch (const WrongUsage& problem) {
        throw WrongUsage(argument + ": " + problem.what());
    }
}

}  // namespace wqstat
