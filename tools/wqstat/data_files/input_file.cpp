#include "input_file.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "command_line/progress.h"
#include "table_hint.h"
#include "text_source.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <streambuf>
#include <system_error>

namespace wqstat {

namespace {

/** What is read of another stream, shown to a handler on its way. */
class WatchedBuffer final : public std::streambuf {
public:
    WatchedBuffer(std::istream& watched, const BytesHandler& handler) : source(watched), handle(handler) {}

private:
    std::streamsize xsgetn(char* to, std::streamsize room) override
    {
        const std::streamsize taken = source.rdbuf()->sgetn(to, room);
        handle({to, static_cast<std::size_t>(taken)});
        return taken;
    }

    std::istream& source;
    const BytesHandler& handle;
};

}  // namespace

InputFile::InputFile(const std::string& fileName, Layout fileLayout, Surprise what, const TableOptions& options, const BytesHandler& handle)
    : givenName(shown(fileName)),
      readablePath(fileName),
      file(fileName == "-" ? identityOf(STDIN_FILENO) : identityOf(fileName)),
      layout(fileLayout),
      surprise(what),
      tables(options)
{
    if (fileName == "-") {
        givenName = "standard input";
        progress().show("reading " + givenName);
        checkCopying(std::cin, handle);
        return;
    }
    if (fileName.empty()) givenName = "''";
    std::error_code ignored;
    if (std::filesystem::is_directory(fileName, ignored)) throw CannotAnalyse(givenName + ": " + reason(EISDIR));
    errno = 0;
    std::ifstream stream(fileName, std::ios_base::binary);
    if (!stream) throw CannotAnalyse(givenName + ": " + reason(errno));
    if (file && file->regular) {
        const std::uintmax_t size = std::filesystem::file_size(fileName, ignored);
        progress().show("checking " + givenName, ignored ? 0 : size);
        check(stream);
    } else {
        progress().show("reading " + givenName);
        checkCopying(stream, handle);
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

void InputFile::check(std::istream& source)
{
    lines = checkLines(source, givenName, layout, surprise, copy.get());
    const std::string hint = lines.tableStart.empty() ? "" : tableHint(lines.tableStart, tables);
    if (!hint.empty()) throw CannotAnalyse(givenName + " " + hint);
    if (lines.stopLine != 0) throw CannotAnalyse(givenName + ":" + std::to_string(lines.stopLine) + ": " + lines.stopReason);
    if (source.bad()) throw CannotAnalyse(givenName + ": reading failed");
}

void InputFile::checkCopying(std::istream& source, const BytesHandler& handle)
{
    copy = makeTemporaryFile("for " + givenName);
    readablePath = pathOf(copy);
    if (handle) {
        WatchedBuffer buffer(source, handle);
        std::istream watched(&buffer);
        check(watched);
        for (std::array<char, blockSize> rest; watched.read(rest.data(), rest.size());) continue;
        if (watched.bad()) throw CannotAnalyse(givenName + ": reading failed");
    } else {
        check(source);
    }
    if (std::fflush(copy.get()) != 0 || std::ferror(copy.get()) != 0)
        throw CannotAnalyse(givenName + ": the temporary file cannot be written" + because(errno));
    std::rewind(copy.get());
}

}  // namespace wqstat
