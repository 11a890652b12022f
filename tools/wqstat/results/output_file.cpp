#include "output_file.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "command_line/interruption.h"
#include "data_files/file_identity.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

namespace wqstat {

namespace {

/** Whether everything that was written lies on the disk, as far as the system can tell. */
bool isStored(int descriptor) { return fsync(descriptor) == 0 || errno == EINVAL || errno == EROFS || errno == ENOSYS; }

}  // namespace

std::filesystem::path behindLinks(const std::filesystem::path& name)
{
    constexpr int longestChain = 40;  // as the system has it
    std::filesystem::path path = name;
    std::error_code ignored;
    for (int links = 0; links < longestChain && is_symlink(path, ignored); ++links) path = path.parent_path() / read_symlink(path, ignored);
    return path;
}

void guardOutput(const std::string& option, const std::string& name, const std::vector<std::optional<FileIdentity>>& dataFiles)
{
    const std::optional<FileIdentity> written = identityOf(name);
    if (!written || !written->regular) return;
    for (const std::optional<FileIdentity>& dataFile : dataFiles)
        if (written == dataFile) throw WrongUsage(option + ": " + shown(name) + " is the data file");
    const std::pair<int, const char*> streams[] = {{STDIN_FILENO, "input"}, {STDOUT_FILENO, "output"}, {STDERR_FILENO, "error"}};
    for (const auto& [stream, streamName] : streams)
        if (written == identityOf(stream)) throw WrongUsage(option + ": " + shown(name) + " is standard " + streamName);
}

OutputFile::Unfinished::~Unfinished()
{
    if (descriptor < 0) return;
    close(descriptor);
    unlink(path.c_str());
    setUnfinishedFile(nullptr);
}

OutputFile::OutputFile(const std::string& fileName, std::string content)
    : givenName(fileName),
      contentName(std::move(content)),
      target(behindLinks(fileName))
{
    const std::optional<FileIdentity> there = identityOf(fileName);
    if (there && !there->regular) return;
    if (there && !(identityOf(target.string()) == there)) return;  // an open file without a name, /dev/fd/N
    if (there && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) fail(errno);
    std::error_code ignored;
    if (is_symlink(target, ignored)) fail(ELOOP);
    createBeside(there.has_value());
    if (there) takePermissions();
}

void OutputFile::createBeside(bool replaces)
{
    const UninterruptedThread untilItIsKnown;
    for (int attempt = 0; attempt < 100 && isDirect(); ++attempt) {  // a killed run may have left its own behind
        const std::string name = ".wqstat-" + std::to_string(getpid()) + "-" + std::to_string(attempt) + ".part";
        unfinished.path = (target.parent_path() / name).string();
        unfinished.descriptor = open(unfinished.path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, replaces ? 0600 : 0666);
        if (isDirect() && errno != EEXIST) break;
    }
    if (isDirect()) fail(errno);
    setUnfinishedFile(unfinished.path.c_str());
}

/** Owner and group where that is allowed; only the administrator may give a file away. That takes set-user-id bits away, so it comes first.
 */
void OutputFile::takePermissions() const
{
    struct stat old {};
    if (stat(target.c_str(), &old) != 0) return;
    const bool owned = fchown(unfinished.descriptor, old.st_uid, old.st_gid) == 0;
    if (fchmod(unfinished.descriptor, old.st_mode & (owned ? 07777U : 0777U)) != 0) fail(errno);
}

void OutputFile::write(std::string_view text) const
{
    while (!text.empty()) {
        const ssize_t written = ::write(unfinished.descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) fail(written < 0 ? errno : ENOSPC);
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

void OutputFile::keep()
{
    if (isDirect()) return;
    if (!isStored(unfinished.descriptor) || std::rename(unfinished.path.c_str(), target.c_str()) != 0) fail(errno);
}

void OutputFile::fail(int error) const
{
    throw CannotAnalyse(shown(givenName) + ": " + contentName + " cannot be written" + because(error));
}

}  // namespace wqstat
