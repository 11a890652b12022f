// Runs the command-line host and keeps what it prints.
#pragma once

#include "support/files.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

extern char** environ;

namespace wq_test {

using Words = std::vector<std::string>;

// How a program ended and what it printed.
struct Outcome {
    int status = -1;  // -1: not by itself
    std::string output;
    std::string errors;
};

inline bool operator==(const Outcome& a, const Outcome& b) { return a.status == b.status && a.output == b.output && a.errors == b.errors; }

inline std::ostream& operator<<(std::ostream& stream, const Outcome& outcome)
{
    return stream << "status " << outcome.status << "\nstandard output:\n" << outcome.output << "standard error:\n" << outcome.errors;
}

// Where the streams of a program are; standard output and error go to files of the test's unless named.
struct Streams {
    std::string input = "/dev/null";
    std::string output;
    std::string errors = "";
};

// Runs a command line; its first word is looked for as the shell does.
inline Outcome runCommand(Words words, const Streams& streams = {})
{
    const TempFolder folder;
    const std::string output = streams.output.empty() ? folder.path("output") : streams.output;
    const std::string errors = streams.errors.empty() ? folder.path("errors") : streams.errors;

    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, streams.input.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY, 0600);
    pid_t child = 0;
    const int failed = posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) throw std::runtime_error("cannot run " + words[0]);

    int ended = 0;
    while (waitpid(child, &ended, 0) < 0) {
    }
    Outcome outcome;
    if (WIFEXITED(ended)) outcome.status = WEXITSTATUS(ended);
    if (streams.output.empty()) outcome.output = contentOf(output);
    if (streams.errors.empty()) outcome.errors = contentOf(errors);
    return outcome;
}

// The program: the one built beside the tests, or another build of it that the environment names.
inline std::string wqstat()
{
    const char* const other = std::getenv("WQ_TEST_WQSTAT");
    return other == nullptr ? WQSTAT : other;
}

inline Outcome run(Words arguments, const Streams& streams = {})
{
    arguments.insert(arguments.begin(), wqstat());
    return runCommand(std::move(arguments), streams);
}

}  // namespace wq_test
