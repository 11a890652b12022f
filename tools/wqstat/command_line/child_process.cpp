#include "child_process.h"

#include "arguments.h"
#include "failure.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#if defined(__unix__) || defined(__APPLE__)
#  include <spawn.h>
#  include <sys/wait.h>
#  include <unistd.h>

#  include <cerrno>
#  include <csignal>
extern char** environ;
#endif

namespace wqstat {

#if defined(__unix__) || defined(__APPLE__)

namespace {

std::string reason(int error) { return std::generic_category().message(error); }

/** The last line that says something: before it gnuplot repeats the command. */
std::string lastLine(const std::string& text)
{
    const std::size_t end = text.find_last_not_of(" \t\r\n");
    if (end == std::string::npos) return "";
    const std::size_t begin = text.find_last_of('\n', end);
    const std::string line = text.substr(begin + 1, end - begin);  // npos + 1 is 0
    return line.substr(line.find_first_not_of(" \t"));
}

}  // namespace

std::string programOnPath(const std::string& name)
{
    namespace fs = std::filesystem;
    const char* const path = std::getenv("PATH");
    const std::string folders = path == nullptr ? "/usr/bin:/bin" : path;
    for (std::size_t begin = 0; begin <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', begin), folders.size());
        const std::string candidate = folders.substr(begin, end - begin) + "/" + name;
        std::error_code ignored;
        // An empty entry would mean the current folder, which nobody wants to run programs from.
        if (end > begin && fs::is_regular_file(candidate, ignored) && access(candidate.c_str(), X_OK) == 0) return candidate;
        begin = end + 1;
    }
    return "";
}

int runProgram(const std::string& path, const std::vector<std::string>& arguments, const ChildStreams& streams)
{
    std::signal(SIGCHLD, SIG_DFL);  // where a parent had it ignored, the exit status would be lost
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    int failed = posix_spawn_file_actions_adddup2(&actions, streams.input, STDIN_FILENO);
    if (failed == 0) failed = posix_spawn_file_actions_adddup2(&actions, streams.output, STDOUT_FILENO);
    if (failed == 0) failed = posix_spawn_file_actions_adddup2(&actions, streams.errors, STDERR_FILENO);
    std::vector<std::string> texts{path};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> words;
    for (std::string& text : texts) words.push_back(text.data());
    words.push_back(nullptr);
    pid_t child = 0;
    if (failed == 0) failed = posix_spawn(&child, path.c_str(), &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) throw CannotAnalyse(shown(path) + ": cannot be started: " + reason(failed));
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

std::string failureOf(const std::string& name, int status, const std::string& messages)
{
    std::string text = name + " failed";
    if (WIFSIGNALED(status))
        text += " (signal " + std::to_string(WTERMSIG(status)) + ")";
    else
        text += " (exit status " + std::to_string(WEXITSTATUS(status)) + ")";
    const std::string line = lastLine(messages);
    return line.empty() ? text : text + ": " + shown(line);
}

#else

std::string programOnPath(const std::string&) { return ""; }

int runProgram(const std::string& path, const std::vector<std::string>&, const ChildStreams&)
{
    throw CannotAnalyse(shown(path) + ": cannot be started on this system");
}

std::string failureOf(const std::string& name, int, const std::string&) { return name + " failed"; }

#endif

}  // namespace wqstat
