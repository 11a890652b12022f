// A data file: opened, checked line by line, and ready for the library to read it by name.
#pragma once

#include "line_check.h"

#include <cstddef>
#include <cstdio>
#include <istream>
#include <memory>
#include <string>
#include <vector>

namespace wqstat {

/**
 * A data file that holds numbers where its layout has them. Standard input, pipes and devices can be read only once, while the
 * library reads a file after the check has: what they hold is copied to a temporary file without a name, which goes with the program.
 */
class InputFile {
public:
    /**
     * @param fileName a path; "-" means standard input.
     * @throws CannotAnalyse when it cannot be opened, or with the line and the text that the library would refuse.
     */
    InputFile(const std::string& fileName, Layout layout);

    /** The name for messages. */
    const std::string& name() const { return givenName; }

    /** The name to read it by, once. */
    const std::string& path() const { return readablePath; }

    /** One line of text for each surprise. */
    const std::vector<std::string>& warnings() const { return lines.warnings; }

    /** @throws CannotAnalyse unless held, the number of observations that were read, is at least least. */
    void require(std::size_t held, std::size_t least) const;

private:
    void check(std::istream& source, Layout layout);
    void checkCopying(std::istream& source, Layout layout);

    std::string givenName;
    std::string readablePath;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> copy{nullptr, std::fclose};
    LineCheck lines;
};

}  // namespace wqstat
