#include "start_up.h"

#include "failure.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace wqstat {

namespace {

constexpr std::size_t stackShare = 512 * 1024;  // more than the deepest calls need
constexpr std::size_t heapShare = 1024 * 1024;  // what exceptions and the first texts need
constexpr std::size_t page = 4096;

bool openStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) >= 0 || errno != EBADF) continue;
        const int cannotBeUsed = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (open("/dev/null", cannotBeUsed) != stream) return false;  // the lowest free one, as those below are open
    }
    return true;
}

/** Makes the system give the stack its pages: a program whose stack cannot grow ends by a signal, and cannot say why. */
[[gnu::noinline]] void growStack()
{
    volatile char bytes[stackShare];
    for (std::size_t end = stackShare; end >= page; end -= page) bytes[end - 1] = 0;
    static_cast<void>(bytes[0]);
}

bool takeFirstMemory()
{
    void* const found = mmap(nullptr, stackShare + heapShare, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (found == MAP_FAILED) return false;
    munmap(found, stackShare + heapShare);
    growStack();
    return true;
}

[[noreturn]] void giveUp(std::string_view reason)
{
    for (const std::string_view text : {std::string_view("wqstat: "), reason, std::string_view("\n")}) {
        const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
        static_cast<void>(written);
    }
    _exit(couldNotAnalyse);
}

}  // namespace

void startUp()
{
    if (!openStandardStreams()) giveUp("the standard streams are closed, and cannot be opened");
    if (!takeFirstMemory()) giveUp(noMemory);
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace wqstat

// Not before the sanitizers have begun.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#  define WQSTAT_SANITIZED
#elif defined(__has_feature)
#  if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#    define WQSTAT_SANITIZED
#  endif
#endif
#if defined(__GLIBC__) && !defined(WQSTAT_SANITIZED)
[[gnu::section(".preinit_array"), gnu::used]] static void (*const beforeTheLibraries)() = wqstat::startUp;
#endif
