// What the program is busy with, for someone who waits at a terminal.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace wqstat {

/**
 * One line on standard error that says what is going on, how far it has come or how long it has lasted, and that goes when the work is
 * done. It appears when the work has lasted a second, and never where standard error is no terminal. There is one terminal, and one
 * object: progress().
 */
class Progress {
public:
    Progress();
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /** Names what is being done from here on. @param size of the work, to tell how far it has come; 0 when it is not known. */
    void show(const std::string& activity, std::uint64_t size = 0);

    /** Counts work as done. */
    void advance(std::uint64_t work);

    /** Takes the line away; the second starts anew with the next show(). To be called before anything is printed. */
    void hide();

private:
    using Clock = std::chrono::steady_clock;

    void run();
    std::string text() const;
    void draw(const std::string& line);

    const bool onTerminal;
    std::thread timer;
    mutable std::mutex mutex;
    std::condition_variable change;
    bool hidden = true;
    std::string activity;
    std::uint64_t size = 0;
    std::uint64_t done = 0;
    Clock::time_point begin;
    std::size_t drawn = 0;  // characters of the line that stands there
};

Progress& progress();

/** Whether what is printed goes to a terminal, where it shows by itself that work goes on. */
bool printsOnTerminal();

}  // namespace wqstat
