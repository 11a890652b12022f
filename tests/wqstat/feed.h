// A named pipe that a test writes into while a program reads it.
#pragma once

#include "support/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace wq_test {

// It is opened for writing by the first give() or end(), which wait until the program opens it for reading.
class Feed {
public:
    explicit Feed(const TempFolder& folder) : name(folder.path("feed"))
    {
        if (mkfifo(name.c_str(), 0600) != 0) throw std::runtime_error("no pipe");
    }
    ~Feed()
    {
        if (descriptor >= 0) close(descriptor);
    }
    Feed(const Feed&) = delete;
    Feed& operator=(const Feed&) = delete;

    const std::string& path() const { return name; }

    void give(const std::string& text)
    {
        openOnce();
        if (write(descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size())) throw std::runtime_error("no reader");
    }

    void end()
    {
        openOnce();
        close(descriptor);
        descriptor = -1;
    }

private:
    void openOnce()
    {
        if (descriptor < 0) descriptor = open(name.c_str(), O_WRONLY);
    }

    std::string name;
    int descriptor = -1;
};

}  // namespace wq_test
