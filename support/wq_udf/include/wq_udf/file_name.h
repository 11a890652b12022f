#ifndef WQ_UDF_FILE_NAME_H
#define WQ_UDF_FILE_NAME_H

/// @file
/// File names in their parts.

#include <wq_udf/export.h>

#include <string>

namespace wq_lib {

/** The parts of a path. Written one after the other they are the path again. */
struct name_of_file {
    std::string folder;     ///< up to and including the last '/'; empty when there is none
    std::string name;       ///< the file's own name without its extension
    std::string extension;  ///< from the last '.' of the file's own name, the dot included; a leading dot starts none
};

/** Splits a path into folder, name and extension. The path itself is not changed. */
WQ_UDF_EXPORT name_of_file splitFileName(std::string& path);

/** Something that has a file name: the first base of every file writer. */
class WQ_UDF_EXPORT FileName {
public:
    /** Replaces the name. The path itself is not changed. */
    void setFileName(std::string& path) { fileName = splitFileName(path); }

    /** @return the whole path. */
    std::string getFileName() const { return fileName.folder + fileName.name + fileName.extension; }

protected:
    name_of_file fileName;  ///< in its parts
};

}  // namespace wq_lib

#endif
