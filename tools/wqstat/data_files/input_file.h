// A data file: opened, checked line by line, and ready for the library to read it by name.
#pragma once

#include "input.h"
#include "line_check.h"
#include "table_options.h"
#include "temporary_file.h"
#include "text_source.h"

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace wqstat {

/**
 * A data file that holds numbers where its layout has them. Standard input, pipes and devices can be read only once, while the
 * library reads a file after the check has: what they hold is copied to a temporary file without a name, which goes with the program.
 */
class InputFile final : public Input {
public:
    /**
     * @param fileName a path; "-" means standard input.
     * @param surprise what becomes of a line that the library reads otherwise than meant.
     * @param tables names what a table would be read by, for someone who gives one.
     * @param handle may be empty; it is given all bytes of what can be read only once, those behind the data too.
     * @throws CannotAnalyse when it cannot be opened, or with the line and the text that the library would refuse.
     */
    InputFile(const std::string& fileName, Layout layout, Surprise surprise, const TableOptions& tables, const BytesHandler& handle = {});

    const std::string& name() const override { return givenName; }

    /** The name to read it by, once. */
    const std::string& path() const { return readablePath; }

    const std::optional<FileIdentity>& identity() const override { return file; }
    std::vector<Sentence> warnings() const override { return lines.warnings; }

    void require(std::size_t held, std::size_t least) const override;

private:
    void check(std::istream& source);
    void checkCopying(std::istream& source, const BytesHandler& handle);

    std::string givenName;
    std::string readablePath;
    std::optional<FileIdentity> file;
    TemporaryFile copy{nullptr, std::fclose};
    Layout layout;
    Surprise surprise;
    const TableOptions& tables;
    LineCheck lines;
};

}  // namespace wqstat
