// A data file, as a page names it.
#pragma once

#include "data_files/text_source.h"
#include "results/sha256.h"

#include <optional>
#include <string>

namespace wqstat {

struct PageFile {
    /** Where it can be read again. */
    enum class Place {
        disk,
        standardInput,  ///< not without what was given there
        stream          ///< as little: a pipe or a device with a name
    };

    std::string name;
    std::string read;    ///< how much of what: "29 observations read"
    std::string sha256;  ///< empty where it could not be read to its end
    Place place = Place::disk;
};

/** The SHA-256 of what can be read only once, taken while that is read. */
class StreamFingerprint {
public:
    /** @param isWanted without it, and of a file on a disk, nothing is taken. @param fileName "-" is standard input. */
    StreamFingerprint(const std::string& fileName, bool isWanted);

    /** For what reads it, while this lives; empty where nothing is taken. */
    BytesHandler handler();

    /** When it has been read to its end; empty where nothing was taken. */
    std::string text() const { return sum ? sum->text() : ""; }

private:
    std::optional<Sha256> sum;
};

/**
 * Says where the file is, and sets its fingerprint.
 * @param taken of what can be read only once. @throws CannotAnalyse for a file on a disk that cannot be read.
 */
void setFingerprint(PageFile& file, const std::string& fileName, const std::string& taken);

}  // namespace wqstat
