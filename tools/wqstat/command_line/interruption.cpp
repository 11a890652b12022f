#include "interruption.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <initializer_list>
#include <string_view>

namespace wqstat {

namespace {

constexpr std::initializer_list<int> endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE};

// A signal may come at any moment: nothing here takes a lock.
std::atomic<const char*> unfinishedFile{nullptr};
std::atomic<std::size_t> lineLength{0};
std::atomic<bool> isDrawing{false};
std::atomic<bool> isEnding{false};

void put(std::string_view text)
{
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    static_cast<void>(written);  // a line that does not appear is no loss
}

void wipeLine()
{
    constexpr std::string_view blanks = "                                                                ";
    put("\r");
    for (std::size_t left = lineLength; left > 0;) {
        const std::size_t count = std::min(left, blanks.size());
        put(blanks.substr(0, count));
        left -= count;
    }
    put("\r");
}

/**
 * Calls only what a signal handler may. A further signal while it works changes nothing: timeout(1) sends its own twice, to the program and
 * to the program's group, and two keys may be struck. It ends what a terminal that is held keeps waiting.
 */
extern "C" void cleanUp(int number)
{
    constexpr int patience = 200;  // milliseconds; a terminal that is held takes nothing
    if (isEnding.exchange(true)) return;
    if (const char* const path = unfinishedFile) unlink(path);
    for (int waited = 0; isDrawing && waited < patience; ++waited) poll(nullptr, 0, 1);
    if (lineLength > 0) wipeLine();
    struct sigaction usual {};
    usual.sa_handler = SIG_DFL;
    sigaction(number, &usual, nullptr);
    raise(number);  // which ends the program now: see SA_NODEFER
}

sigset_t allEndingSignals()
{
    sigset_t all;
    sigemptyset(&all);
    for (const int number : endingSignals) sigaddset(&all, number);
    return all;
}

}  // namespace

void cleanUpWhenInterrupted()
{
    struct sigaction action {};
    action.sa_handler = cleanUp;
    action.sa_flags = static_cast<int>(SA_NODEFER);
    for (const int number : endingSignals) {
        struct sigaction before {};
        if (sigaction(number, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
    }
}

UninterruptedThread::UninterruptedThread()
{
    const sigset_t all = allEndingSignals();
    pthread_sigmask(SIG_BLOCK, &all, &before);
}

UninterruptedThread::~UninterruptedThread() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }

void setUnfinishedFile(const char* path) { unfinishedFile = path; }

void writeProgressLine(const std::string& text, std::size_t shown)
{
    isDrawing = true;
    if (!isEnding) {
        lineLength = std::max<std::size_t>(lineLength, shown);  // until it is written either may stand there
        put(text);
        lineLength = shown;
    }
    isDrawing = false;
}

}  // namespace wqstat
