#include "inputs.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <stdexcept>

namespace wq_bench {

namespace {

using Generator = std::mt19937_64;

std::string& folder()
{
    static std::string path = ".";
    return path;
}

double uniform(Generator& random) { return (static_cast<double>(random() >> 11) + 0.5) * 0x1p-53; }

double normal(Generator& random) { return std::sqrt(-2.0 * std::log(uniform(random))) * std::cos(6.283185307179586 * uniform(random)); }

void write(const std::string& name, const std::vector<double>& values)
{
    std::ofstream file(inFolder(name + ".f64"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(values.data()), static_cast<std::streamsize>(values.size() * sizeof(double)));
    if (!file.flush()) throw std::runtime_error("cannot write " + inFolder(name + ".f64"));
}

/** n values, each made from a generator of the input's own. */
void makeValues(const std::string& name, std::size_t n, const std::function<double(Generator&)>& value)
{
    if (std::filesystem::exists(inFolder(name + ".f64"))) return;
    std::seed_seq seed(name.begin(), name.end());
    Generator random(seed);
    std::vector<double> values(n);
    for (double& v : values) v = value(random);
    write(name, values);
}

/** A text of one line for each of n rows of `width` values. */
void makeText(const std::string& name, const std::string& from, std::size_t n, const char* format, const std::string& from2 = "")
{
    if (std::filesystem::exists(inFolder(name))) return;
    const double* const first = input(from, n);
    const double* const second = from2.empty() ? first : input(from2, n);
    std::FILE* const file = std::fopen(inFolder(name).c_str(), "w");
    if (file == nullptr) throw std::runtime_error("cannot write " + inFolder(name));
    for (std::size_t i = 0; i < n; ++i) std::fprintf(file, format, first[i], second[i]);
    if (std::fclose(file) != 0) throw std::runtime_error("cannot write " + inFolder(name));
}

/** 1000 argument tuples. */
void makeArguments(const std::string& name, const std::function<std::vector<double>(Generator&)>& tuple)
{
    std::vector<double> table;
    Generator random(20261121);
    for (int i = 0; i < 1000; ++i) {
        const std::vector<double> row = tuple(random);
        table.insert(table.end(), row.begin(), row.end());
    }
    write(name, table);
}

double count(Generator& random, std::uint64_t low, std::uint64_t high) { return static_cast<double>(low + random() % (high - low + 1)); }

}  // namespace

void setFolder(const std::string& path) { folder() = path; }

std::string inFolder(const std::string& name) { return folder() + "/" + name; }

void makeInputs()
{
    makeValues("normal", mostValues, [](Generator& r) { return std::max(0.5, 50.0 + 10.0 * normal(r)); });
    makeValues("uniform", mostValues, [](Generator& r) { return 100.0 * uniform(r); });
    makeValues("lognormal", mostValues, [](Generator& r) { return std::exp(2.0 * normal(r)); });
    makeValues("rounded", mostValues, [](Generator& r) { return std::max(0.5, std::round(500.0 + 100.0 * normal(r)) / 10.0); });
    makeValues("x", mostPairs, [](Generator& r) { return 20.0 + 5.0 * normal(r); });
    if (!std::filesystem::exists(inFolder("y.f64"))) {
        Generator random(17);
        const double* const x = input("x", mostPairs);
        std::vector<double> y(mostPairs);
        for (std::size_t i = 0; i < mostPairs; ++i) y[i] = 3.0 + 0.25 * x[i] + 2.0 * normal(random);
        write("y", y);
    }
    if (!std::filesystem::exists(inFolder("ascending.f64"))) {
        const double* const values = input("normal", mostValues);
        std::vector<double> sorted(values, values + mostValues);
        std::sort(sorted.begin(), sorted.end());
        write("ascending", sorted);
    }
    for (const std::uint64_t groups : {10u, 100u, 1000u, 10000u, 100000u, 1000000u})
        makeValues("groups-" + std::to_string(groups), groupedPairs, [groups](Generator& r) { return count(r, 1, groups); });
    makeValues("grouped", groupedPairs, [](Generator& r) { return 50.0 + 10.0 * normal(r); });
    makeValues("decimals", mostValues, [](Generator& r) { return count(r, 0, 999999) / 1000.0; });

    makeText("numbers-17-digits.txt", "normal", mostValues, "%.17g\n");
    makeText("numbers-3-decimals.txt", "decimals", mostValues, "%.3f\n");
    makeText("pairs.txt", "decimals", pairsInFile, "%.3f;%.3f\n", "decimals");

    // Probabilities are of a tail between 0.001 and 0.999 or so; degrees of freedom of everyday tables and samples.
    makeArguments("chi-square-prob", [](Generator& r) {
        const double df = count(r, 1, 30);
        return std::vector<double>{df * (0.1 + 2.4 * uniform(r)), df};
    });
    makeArguments("F-prob", [](Generator& r) { return std::vector<double>{0.2 + 4.8 * uniform(r), count(r, 1, 30), count(r, 1, 30)}; });
    makeArguments("F-point", [](Generator& r) {
        const double levels[] = {0.9, 0.95, 0.975, 0.99};
        return std::vector<double>{levels[r() % 4], count(r, 2, 30), count(r, 2, 30)};
    });
    makeArguments("t-prob", [](Generator& r) { return std::vector<double>{5.0 * uniform(r), 10.0}; });
    makeArguments("t-point", [](Generator& r) { return std::vector<double>{0.001 + 0.2 * uniform(r), count(r, 3, 100)}; });
    makeArguments("chi-square-point", [](Generator& r) { return std::vector<double>{0.5 + 0.499 * uniform(r), count(r, 1, 30)}; });
    makeArguments("normal-point", [](Generator& r) { return std::vector<double>{0.001 + 0.998 * uniform(r)}; });
}

namespace {

std::vector<double> readValues(const std::string& name)
{
    const std::string path = inFolder(name + ".f64");
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path);
    std::vector<double> values(std::filesystem::file_size(path) / sizeof(double));
    file.read(reinterpret_cast<char*>(values.data()), static_cast<std::streamsize>(values.size() * sizeof(double)));
    return values;
}

const std::vector<double>& kept(const std::string& name)
{
    static std::map<std::string, std::vector<double>> inputs;
    const auto found = inputs.find(name);
    return found != inputs.end() ? found->second : inputs.emplace(name, readValues(name)).first->second;
}

}  // namespace

const double* input(const std::string& name, std::size_t n)
{
    const std::vector<double>& values = kept(name);
    if (values.size() < n) throw std::runtime_error("too few values in " + name);
    return values.data();
}

const std::vector<double>& arguments(const std::string& name) { return kept(name); }

}  // namespace wq_bench
