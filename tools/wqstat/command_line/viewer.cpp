#include "viewer.h"

#include "child_process.h"
#include "failure.h"

#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace wqstat {

namespace {

constexpr char viewer[] = "xdg-open";

/** Both ends of what a viewer has to say: nothing. */
class Nowhere {
public:
    Nowhere() : descriptor(open("/dev/null", O_RDWR | O_CLOEXEC)) {}
    ~Nowhere()
    {
        if (descriptor >= 0) close(descriptor);
    }
    Nowhere(const Nowhere&) = delete;
    Nowhere& operator=(const Nowhere&) = delete;

    const int descriptor;
};

}  // namespace

void requireViewer()
{
    if (programOnPath(viewer).empty()) throw CannotAnalyse("--open: there is no program xdg-open (Debian package: xdg-utils)");
}

void show(const std::string& fileName)
{
    requireViewer();
    const Nowhere nowhere;
    const std::string path = std::filesystem::absolute(fileName).string();  // no option, no address
    const int status = runProgram(programOnPath(viewer), {path}, {nowhere.descriptor, nowhere.descriptor, nowhere.descriptor});
    if (status != 0) throw CannotAnalyse("--open: " + failureOf(viewer, status, ""));
}

}  // namespace wqstat
