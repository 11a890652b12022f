// Which file a name or an open stream really is.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace wqstat {

/** Two names mean one file when these are equal: behind links, as /dev/stdin or /dev/fd/N, and as names of a hard link. */
struct FileIdentity {
    dev_t device;
    ino_t inode;
    bool regular;  ///< a file on a disk, which loses what it holds when another writes into it; not a pipe, a terminal or a device

    friend bool operator==(const FileIdentity& a, const FileIdentity& b) { return a.device == b.device && a.inode == b.inode; }
};

/** Nothing when there is no such file, or it cannot be looked at. */
std::optional<FileIdentity> identityOf(const std::string& path);
std::optional<FileIdentity> identityOf(int descriptor);

}  // namespace wqstat
