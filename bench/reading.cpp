// Reading text files of numbers, from the page cache.
#include "contenders.h"
#include "inputs.h"

#include <wq_stat/basic_stat.h>
#include <wq_stat/basic_xy_stat.h>

#include <support/plain_readers.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string>

namespace wq_bench {

namespace {

/** Numbers read and, of them, how many differ from the number that was written, how many by more than its last bit. */
Answers compared(std::size_t n, const std::function<double(std::size_t)>& read, const double* written)
{
    double different = 0.0;
    double farther = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double value = read(i);
        if (value == written[i]) continue;
        ++different;
        if (!(std::fabs(value - written[i]) <= 4.5e-16 * std::fabs(written[i]))) ++farther;
    }
    return {static_cast<double>(n), different, farther};
}

struct File {
    std::string path;
};

std::string contentOf(const std::string& path)
{
    std::string text;
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    std::fseek(file, 0, SEEK_END);
    text.resize(static_cast<std::size_t>(std::ftell(file)));
    std::rewind(file);
    if (std::fread(text.data(), 1, text.size(), file) != text.size()) text.clear();
    std::fclose(file);
    return text;
}

std::vector<double> fromChars(const std::string& path)
{
    std::vector<double> values;
    const std::string text = contentOf(path);
    const char* const end = text.data() + text.size();
    for (const char* next = text.data(); next < end; ++next) {
        double value = 0.0;
        next = std::from_chars(next, end, value).ptr;
        values.push_back(value);
    }
    return values;
}

std::vector<wq_lib::data_pair> fromCharsPairs(const std::string& path)
{
    std::vector<wq_lib::data_pair> pairs;
    const std::string text = contentOf(path);
    const char* const end = text.data() + text.size();
    for (const char* next = text.data(); next < end; ++next) {
        wq_lib::data_pair pair;
        next = std::from_chars(next, end, pair.x).ptr;
        next = std::from_chars(next + 1, end, pair.y).ptr;
        pairs.push_back(pair);
    }
    return pairs;
}

/** What is timed is the reading; the comparison is part of the answers alone. */
template <typename Read, typename Compare>
void enterReader(const std::string& row, const std::string& name, const std::string& fileName, Read read, Compare compare)
{
    const auto path = [fileName] { return std::make_unique<File>(File{inFolder(fileName)}); };
    const auto timing = [read, path](benchmark::State& state) {
        const auto file = path();
        for (auto _ : state) {
            const double begin = cpuSeconds();
            const auto result = read(file->path);
            const double end = cpuSeconds();
            benchmark::DoNotOptimize(result);
            state.SetIterationTime(end - begin);
        }
        state.counters["calls"] = 1;
    };
    detail::enter(row, name, timing, [read, compare, path] { return compare(read(path()->path)); });
}

std::unique_ptr<wq_lib::BasicStatistics> libraryValues(const std::string& path)
{
    auto sample = std::make_unique<wq_lib::BasicStatistics>();
    sample->readDataFile(path);
    return sample;
}

std::unique_ptr<wq_lib::BasicXyStatistics> libraryPairs(const std::string& path)
{
    auto sample = std::make_unique<wq_lib::BasicXyStatistics>();
    sample->readDataFile(path);
    return sample;
}

wq_test::Reading plainValues(const std::string& path) { return wq_test::plainOneSample(path); }

wq_test::Reading plainPairs(const std::string& path) { return wq_test::plainPairs(path); }

void enterValues(const std::string& row, const std::string& fileName, const std::string& written)
{
    const auto source = [written] { return input(written, mostValues); };
    const auto compare = [source](const std::vector<double>& values) {
        return compared(
            values.size(), [&values](std::size_t i) { return values[i]; }, source());
    };
    enterReader(row, "wq_stat", fileName, libraryValues, [source](const std::unique_ptr<wq_lib::BasicStatistics>& sample) {
        return compared(
            sample->getSampleSize(), [&sample](std::size_t i) { return sample->getDataPoint(i); }, source());
    });
    enterReader(row, "plain", fileName, plainValues, [source](const wq_test::Reading& reading) {
        return compared(
            reading.data.size(), [&reading](std::size_t i) { return reading.data[i].first; }, source());
    });
    enterReader(row, "std", fileName, fromChars, compare);
}

}  // namespace

void enterReading()
{
    enterValues("reading-17-digits/10000000", "numbers-17-digits.txt", "normal");
    enterValues("reading-3-decimals/10000000", "numbers-3-decimals.txt", "decimals");

    const std::string row = "reading-pairs/5000000";
    const auto compare = [](const std::vector<wq_lib::data_pair>& pairs) {
        const double* const written = input("decimals", pairsInFile);
        Answers answers = compared(
            pairs.size(), [&pairs](std::size_t i) { return pairs[i].x; }, written);
        const Answers ofY = compared(
            pairs.size(), [&pairs](std::size_t i) { return pairs[i].y; }, written);
        answers[1] += ofY[1];
        answers[2] += ofY[2];
        return answers;
    };
    enterReader(row, "wq_stat", "pairs.txt", libraryPairs, [compare](const std::unique_ptr<wq_lib::BasicXyStatistics>& sample) {
        std::vector<wq_lib::data_pair> pairs(sample->getSampleSize());
        for (std::size_t i = 0; i < pairs.size(); ++i) pairs[i] = sample->getDataPair(i);
        return compare(pairs);
    });
    enterReader(row, "plain", "pairs.txt", plainPairs, [compare](const wq_test::Reading& reading) {
        std::vector<wq_lib::data_pair> pairs;
        for (const auto& [x, y] : reading.data) pairs.push_back({x, y});
        return compare(pairs);
    });
    enterReader(row, "std", "pairs.txt", fromCharsPairs, compare);
}

}  // namespace wq_bench
