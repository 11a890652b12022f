// Writing values with 12 decimals, one per line, into a file.
#include "contenders.h"
#include "inputs.h"

#include <wq_stat/basic_stat.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iomanip>
#include <iterator>

namespace wq_bench {

namespace {

constexpr int decimals = 12;

/** A file to be written anew, and what is written into it. */
struct Export {
    std::string path;
    const double* values = nullptr;
    std::size_t n = 0;
    std::unique_ptr<wq_lib::BasicStatistics> sample;  // for the library alone

    ~Export() { std::remove(path.c_str()); }
};

/** Rows below the heading, bytes in them, and a hash of these (FNV-1a, 53 bits of it); they tell nothing of a file with fewer digits. */
Answers describe(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string line;
    double lines = 0.0;
    double bytes = 0.0;
    std::uint64_t hash = 14695981039346656037u;
    while (std::getline(file, line)) {
        if (line.empty() || line[0] == '#' || line == "DATA") continue;
        ++lines;
        line += '\n';
        bytes += static_cast<double>(line.size());
        for (const char c : line) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    }
    return {lines, bytes, static_cast<double>(hash >> 11)};
}

void writeByLibrary(Export& target) { target.sample->exportToR(target.path, "normal values"); }

void writeByStream(Export& target)
{
    std::ofstream file(target.path, std::ios::binary);
    file << std::fixed << std::setprecision(decimals);
    for (std::size_t i = 0; i < target.n; ++i) file << target.values[i] << '\n';
}

void writeByToChars(Export& target)
{
    std::FILE* const file = std::fopen(target.path.c_str(), "wb");
    std::vector<char> buffer(1 << 16);
    char* const limit = buffer.data() + buffer.size() - 400;  // room for the longest double
    char* end = buffer.data();
    for (std::size_t i = 0; i < target.n; ++i) {
        end = std::to_chars(end, buffer.data() + buffer.size(), target.values[i], std::chars_format::fixed, decimals).ptr;
        *end++ = '\n';
        if (end > limit) {
            std::fwrite(buffer.data(), 1, static_cast<std::size_t>(end - buffer.data()), file);
            end = buffer.data();
        }
    }
    std::fwrite(buffer.data(), 1, static_cast<std::size_t>(end - buffer.data()), file);
    std::fclose(file);
}

void enterWriter(const std::string& row, const std::string& name, std::size_t n, void (*write)(Export&))
{
    const auto prepare = [name, n] {
        auto target = std::make_unique<Export>();
        target->path = inFolder("export-" + name + ".txt");
        target->values = input("normal", n);
        target->n = n;
        if (name == "wq_stat") {
            target->sample = std::make_unique<wq_lib::BasicStatistics>();
            target->sample->copyFrom(std::vector<double>(target->values, target->values + n));
        }
        return target;
    };
    const auto timing = [prepare, write](benchmark::State& state) {
        for (auto _ : state) {
            const auto target = prepare();
            const double begin = cpuSeconds();
            write(*target);
            state.SetIterationTime(cpuSeconds() - begin);
        }
        state.counters["calls"] = 1;
    };
    detail::enter(row, name, timing, [prepare, write] {
        const auto target = prepare();
        write(*target);
        return describe(target->path);
    });
}

}  // namespace

void enterExporting()
{
    const std::string row = "exporting/10000000";
    enterWriter(row, "wq_stat", mostValues, writeByLibrary);
    enterWriter(row, "plain", mostValues, writeByStream);
    enterWriter(row, "std", mostValues, writeByToChars);
}

}  // namespace wq_bench
