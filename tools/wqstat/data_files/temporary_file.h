// Files for what has to lie on a disk for a while.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace wqstat {

using TemporaryFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/**
 * An empty file without a name, for reading and writing, that goes with the program. It lies in the folder that the environment variable
 * TMPDIR names, or else in the system's.
 * @param purpose what it is for, as the message says it: "for gnuplot".
 * @throws CannotAnalyse when none can be made.
 */
TemporaryFile makeTemporaryFile(const std::string& purpose);

/** A path by which the open file can be read. */
std::string pathOf(const TemporaryFile& file);

}  // namespace wqstat
