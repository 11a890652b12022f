#include "input_file.h"

#include "arguments.h"
#include "failure.h"
#include "progress.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#if defined(__unix__) || defined(__APPLE__)
#  include <stdio.h>
#endif

namespace wqstat {

namespace {

std::string reason(int error) { return error == 0 ? "cannot be opened" : std::generic_category().message(error); }

/** A path that reads an open file without a name; empty where the system has none. */
std::string pathOf(std::FILE* file)
{
#if defined(__unix__) || defined(__APPLE__)
    return "/dev/fd/" + std::to_string(fileno(file));
#else
    return "";
#endif
}

}  // namespace

InputFile::InputFile(const std::string& fileName, Layout layout) : givenName(shown(fileName)), readablePath(fileName)
{
    if (fileName == "-") {
        givenName = "standard input";
        progress().show("reading " + givenName);
        checkCopying(std::cin, layout);
        return;
    }
    if (fileName.empty()) givenName = "''";
    std::error_code ignored;
    if (std::filesystem::is_directory(fileName, ignored)) throw CannotAnalyse(givenName + ": " + reason(EISDIR));
    errno = 0;
    std::ifstream file(fileName, std::ios_base::binary);
    if (!file) throw CannotAnalyse(givenName + ": " + reason(errno));
    if (std::filesystem::is_regular_file(fileName, ignored)) {
        const std::uintmax_t size = std::filesystem::file_size(fileName, ignored);
        progress().show("checking " + givenName, ignored ? 0 : size);
        check(file, layout);
    } else {
        progress().show("reading " + givenName);
        checkCopying(file, layout);
    }
}

void InputFile::require(std::size_t held, std::size_t least) const
{
    if (held >= least) return;
    std::string text = givenName + ": ";
    if (held == 0)
        text += lines.lacksCounts ? "no line names a repeat count (x; y; count), so there are no data" : "no data";
    else
        text +=
            std::to_string(held) + (held == 1 ? " observation" : " observations") + ", at least " + std::to_string(least) + " are needed";
    if (lines.cutLine != 0) text += " (line " + std::to_string(lines.cutLine) + " is longer than 254 characters, and reading ends with it)";
    throw CannotAnalyse(text);
}

void InputFile::check(std::istream& source, Layout layout)
{
    lines = checkLines(source, givenName, layout, copy.get());
    if (lines.stopLine != 0) throw CannotAnalyse(givenName + ":" + std::to_string(lines.stopLine) + ": " + lines.stopReason);
    if (source.bad()) throw CannotAnalyse(givenName + ": reading failed");
}

void InputFile::checkCopying(std::istream& source, Layout layout)
{
    copy.reset(std::tmpfile());
    if (!copy) throw CannotAnalyse(givenName + ": no temporary file can be made: " + reason(errno));
    readablePath = pathOf(copy.get());
    if (readablePath.empty()) throw CannotAnalyse(givenName + ": only files can be read on this system");
    check(source, layout);
    if (std::fflush(copy.get()) != 0 || std::ferror(copy.get()) != 0)
        throw CannotAnalyse(givenName + ": the temporary file cannot be written");
    std::rewind(copy.get());
}

}  // namespace wqstat
