// Files that tests write, read and compare.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

namespace wq_test {

// A folder of the test's own, removed with everything in it.
class TempFolder {
public:
    TempFolder()
    {
        std::random_device number;
        do folder = std::filesystem::temp_directory_path() / ("wq_stat-test-" + std::to_string(number()));
        while (!std::filesystem::create_directory(folder));
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string path(const std::string& name) const { return (folder / name).string(); }

    // Writes a file and tells its path.
    std::string write(const std::string& name, const std::string& content) const
    {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

private:
    std::filesystem::path folder;
};

inline std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The expected text tests/golden/NAME, made by the programs in tests/reference.
inline std::string golden(const std::string& name) { return contentOf(std::string(WQ_TEST_DIR) + "/golden/" + name); }

// A data file that the project ships.
inline std::string shipped(const std::string& name) { return std::string(WQ_SOURCE_DIR) + "/examples/data/" + name; }

// A file of the reference data that the project does not ship; WQ_REFERENCE_DATA names their folder. Empty where it is not there.
inline std::string reference(const std::string& name)
{
    const char* folder = std::getenv("WQ_REFERENCE_DATA");
    if (folder == nullptr || *folder == '\0') return "";
    const std::string path = std::string(folder) + "/" + name;
    return std::filesystem::exists(path) ? path : "";
}

}  // namespace wq_test
