#include "temporary_file.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "command_line/interruption.h"

#include <stdlib.h>  // mkostemp
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace wqstat {

TemporaryFile makeTemporaryFile(const std::string& purpose)
{
    const char* const named = std::getenv("TMPDIR");
    const std::string folder = named != nullptr && *named != '\0' ? named : "/tmp";
    std::string path = folder + "/wqstat-XXXXXX";
    const UninterruptedThread untilItHasNoName;
    const int descriptor = mkostemp(path.data(), O_CLOEXEC);
    const auto fail = [&](int error) {
        throw CannotAnalyse("no temporary file can be made " + purpose + " in " + shown(folder) + ": " +
                            std::generic_category().message(error));
    };
    if (descriptor < 0) fail(errno);
    unlink(path.c_str());
    TemporaryFile file(fdopen(descriptor, "w+b"), std::fclose);
    if (!file) {
        const int error = errno;
        close(descriptor);
        fail(error);
    }
    return file;
}

std::string pathOf(const TemporaryFile& file) { return "/dev/fd/" + std::to_string(fileno(file.get())); }

}  // namespace wqstat
