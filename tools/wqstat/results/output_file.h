// A file for results that appears only when it is whole.
#pragma once

#include "data_files/file_identity.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/**
 * A file that is written beside its place, under a name of its own, and takes the place when it is whole; until then what stands there
 * stays. What was there keeps its permissions; where the name is a link, the file behind it is meant, be it there or not.
 * Pipes, terminals and devices cannot be replaced: they are written directly.
 */
class OutputFile {
public:
    /**
     * @param content what it holds, for messages: "the picture".
     * @throws CannotAnalyse when the file cannot be written.
     */
    OutputFile(const std::string& fileName, std::string content);

    /** The name to write by. */
    const std::string& path() const { return isDirect() ? givenName : unfinished.path; }

    /** Whether the name means no file on a disk. */
    bool isDirect() const { return unfinished.descriptor < 0; }

    /** Writes all of the text; not where the file is written directly. @throws CannotAnalyse */
    void write(std::string_view text) const;

    /** Puts the file in its place. @throws CannotAnalyse */
    void keep();

    /** @throws CannotAnalyse which says that the file cannot be written. @param error errno, which says why; 0 where that is not known. */
    [[noreturn]] void fail(int error) const;

private:
    /** Goes with the object, unless it has got its place by then. */
    struct Unfinished {
        Unfinished() = default;
        ~Unfinished();
        Unfinished(const Unfinished&) = delete;
        Unfinished& operator=(const Unfinished&) = delete;

        std::string path;
        int descriptor = -1;
    };

    void createBeside(bool replaces);
    void takePermissions() const;

    std::string givenName;
    std::string contentName;
    std::filesystem::path target;  // behind links
    Unfinished unfinished;
};

/**
 * A mistyped name must not cost the data. @throws WrongUsage where the name of a file that is to be written means a data file, or where the
 * shell has put the report, the messages or what a loop reads.
 */
void guardOutput(const std::string& option, const std::string& name, const std::vector<std::optional<FileIdentity>>& dataFiles);

/** The path of the file that a name means when links are followed, also those that lead to no file yet. */
std::filesystem::path behindLinks(const std::filesystem::path& name);

}  // namespace wqstat
