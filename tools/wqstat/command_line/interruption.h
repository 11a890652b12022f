// Leaves terminal and disk clean when a signal ends the program.
#pragma once

#include <csignal>
#include <cstddef>
#include <string>

namespace wqstat {

/**
 * From here on a signal that ends the program (Ctrl-C, a terminal that is closed, a reader that is gone) first takes the progress line
 * away and removes the file that is not whole; then the program ends by it as it would have. A signal that is ignored stays ignored.
 */
void cleanUpWhenInterrupted();

/** While it lives, such a signal waits, as far as this thread goes; threads that begin meanwhile leave it to others for good. */
class UninterruptedThread {
public:
    UninterruptedThread();
    ~UninterruptedThread();
    UninterruptedThread(const UninterruptedThread&) = delete;
    UninterruptedThread& operator=(const UninterruptedThread&) = delete;

private:
    sigset_t before;
};

/** The file that is not whole, of which there is one at a time; null for none. The path has to stay where it is. */
void setUnfinishedFile(const char* path);

/** Writes the progress line to standard error, unless a signal has come. @param shown how many characters of it stand there then. */
void writeProgressLine(const std::string& text, std::size_t shown);

}  // namespace wqstat
