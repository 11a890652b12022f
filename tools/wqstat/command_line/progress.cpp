#include "progress.h"

#include "interruption.h"
#include "terminal.h"

#include <algorithm>
#include <system_error>

#if defined(__unix__) || defined(__APPLE__)
#  include <sys/ioctl.h>
#  include <unistd.h>
#endif

namespace wqstat {

namespace {

using namespace std::chrono_literals;

#if defined(__unix__) || defined(__APPLE__)
std::size_t columns()
{
    winsize window{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 1 ? window.ws_col : 80;
}
#else
std::size_t columns() { return 80; }
#endif

}  // namespace

Progress::Progress() : onTerminal(errorIsTerminal()) {}

Progress::~Progress() { hide(); }

void Progress::show(const std::string& newActivity, std::uint64_t newSize)
{
    if (!onTerminal) return;
    const std::lock_guard<std::mutex> lock(mutex);
    activity = newActivity;
    size = newSize;
    done = 0;
    if (!hidden) return;
    begin = Clock::now();
    hidden = false;
    const UninterruptedThread untilItRuns;  // signals are for the thread that can wait for this one
    try {
        timer = std::thread([this] { run(); });
    } catch (const std::system_error&) {  // no further thread is to be had: the work goes on unseen
        hidden = true;
    }
}

void Progress::advance(std::uint64_t work)
{
    if (!onTerminal) return;
    const std::lock_guard<std::mutex> lock(mutex);
    done += work;
}

void Progress::hide()
{
    if (!timer.joinable()) return;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        hidden = true;
    }
    change.notify_all();
    timer.join();
}

void Progress::run()
{
    std::unique_lock<std::mutex> lock(mutex);
    const auto isHidden = [this] { return hidden; };
    change.wait_for(lock, 1s, isHidden);
    while (!hidden) {
        draw(text());
        change.wait_for(lock, 200ms, isHidden);
    }
    if (drawn > 0) draw("");
}

std::string Progress::text() const
{
    const std::string what = "wqstat: " + activity;
    if (size > 0) return what + ", " + std::to_string(100 * std::min(done, size) / size) + " %";
    return what + ", " + std::to_string(std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin).count()) + " s";
}

/** Replaces the line, which stays shorter than the terminal is wide, so that a return leads back to its begin. */
void Progress::draw(const std::string& line)
{
    const auto isInsideCharacter = [&line](std::size_t i) { return i < line.size() && (line[i] & 0xc0) == 0x80; };  // UTF-8
    std::size_t length = std::min(line.size(), columns() - 1);
    while (isInsideCharacter(length)) --length;
    std::string shown = line.substr(0, length);
    if (length < drawn) shown.append(drawn - length, ' ');
    writeProgressLine("\r" + shown + (length == 0 ? "\r" : ""), length);
    drawn = length;
}

Progress& progress()
{
    static Progress ofTheProgram;
    return ofTheProgram;
}

bool printsOnTerminal() { return outputIsTerminal(); }

}  // namespace wqstat
