#include "file_identity.h"

#include <sys/stat.h>

namespace wqstat {

namespace {

std::optional<FileIdentity> identity(int failed, const struct stat& status)
{
    if (failed != 0) return {};
    return FileIdentity{status.st_dev, status.st_ino, S_ISREG(status.st_mode)};
}

}  // namespace

std::optional<FileIdentity> identityOf(const std::string& path)
{
    struct stat status {};
    const int failed = stat(path.c_str(), &status);
    return identity(failed, status);
}

std::optional<FileIdentity> identityOf(int descriptor)
{
    struct stat status {};
    const int failed = fstat(descriptor, &status);
    return identity(failed, status);
}

}  // namespace wqstat
