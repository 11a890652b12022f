// What the analyses need to know of the data they were given, wherever these came from.
#pragma once

#include "command_line/sentence.h"
#include "file_identity.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace wqstat {

class Input {
public:
    virtual ~Input() = default;

    /** The name for messages. */
    virtual const std::string& name() const = 0;

    /** What the name really is: of a copy, the file that was copied. */
    virtual const std::optional<FileIdentity>& identity() const = 0;

    /** One line of text for each surprise. */
    virtual std::vector<Sentence> warnings() const = 0;

    /** How many rows of a table were read, those that were left out included; nullptr where it is no table. */
    virtual const std::size_t* rowsRead() const { return nullptr; }

    /** @throws CannotAnalyse unless held, the number of observations that were read, is at least least. */
    virtual void require(std::size_t held, std::size_t least) const = 0;

protected:
    Input() = default;
    Input(const Input&) = default;
    Input& operator=(const Input&) = default;
};

}  // namespace wqstat
