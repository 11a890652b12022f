// replay FILE|FOLDER...: hands files to a fuzz target, for builds that have no fuzzer.

#include "target.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

int main(int count, char** arguments)
{
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < count; ++i) {
        if (!std::filesystem::is_directory(arguments[i])) {
            files.emplace_back(arguments[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());

    for (const auto& path : files) {
        std::cerr << path.string() << '\n';
        std::ifstream file(path, std::ios::binary);
        const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        if (!file) {
            std::cerr << "cannot be read\n";
            return 1;
        }
        // Memory of exactly this size, so that a step beyond its end shows.
        const std::vector<std::uint8_t> bytes(content.begin(), content.end());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::cerr << files.size() << " inputs\n";
    return files.empty() ? 1 : 0;
}
