// A file in memory, under a path that the library can open. Linux only.
#pragma once

#include "target.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace wq_fuzz {

class MemoryFile {
public:
    MemoryFile() : descriptor(memfd_create("wq_stat", MFD_CLOEXEC)) { require(descriptor >= 0, "no file in memory"); }
    ~MemoryFile() { close(descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor); }

    void write(std::string_view content) const
    {
        require(ftruncate(descriptor, 0) == 0, "the file in memory cannot be emptied");
        while (!content.empty()) {
            const ssize_t written = pwrite(descriptor, content.data(), content.size(), lseek(descriptor, 0, SEEK_END));
            require(written > 0, "the file in memory cannot be written");
            content.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    std::string content() const
    {
        std::string text(static_cast<std::size_t>(lseek(descriptor, 0, SEEK_END)), '\0');
        std::size_t done = 0;
        while (done < text.size()) {
            const ssize_t got = pread(descriptor, text.data() + done, text.size() - done, static_cast<off_t>(done));
            require(got > 0, "the file in memory cannot be read");
            done += static_cast<std::size_t>(got);
        }
        return text;
    }

private:
    int descriptor;
};

}  // namespace wq_fuzz
