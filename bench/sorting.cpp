// Sorting of samples of many shapes and sizes beside std::sort: sorting [LARGEST] prints, for samples of up to LARGEST values (a million),
// the greatest ratio of the library's time to that of std::sort, by vectors where the processor has them, and without. Status 1 when one
// exceeds 1.3.
#include "contenders.h"

#include "../src/detail/sample_sort.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

namespace {

using Generator = std::mt19937_64;
using Sample = std::vector<double>;

double uniform(Generator& random) { return static_cast<double>(random() >> 11) * 0x1p-53; }
double normal(Generator& random) { return std::normal_distribution<double>()(random); }

/** A kind of sample: its value i of n. */
struct Shape {
    const char* name;
    double (*value)(Generator& random, std::size_t i, std::size_t n, std::size_t at);  // at: a place, by chance, the same for a sample
};

double real(std::size_t i) { return static_cast<double>(i); }

// clang-format off
const Shape shapes[] = {
    {"uniform", [](Generator& r, std::size_t, std::size_t, std::size_t) { return uniform(r); }},
    {"normal", [](Generator& r, std::size_t, std::size_t, std::size_t) { return normal(r); }},
    {"exponential", [](Generator& r, std::size_t, std::size_t, std::size_t) { return -std::log(1.0 - uniform(r)); }},
    {"log-normal", [](Generator& r, std::size_t, std::size_t, std::size_t) { return std::exp(normal(r)); }},
    {"log-normal, wide", [](Generator& r, std::size_t, std::size_t, std::size_t) { return std::exp(4.0 * normal(r)); }},
    {"Cauchy", [](Generator& r, std::size_t, std::size_t, std::size_t) { return normal(r) / normal(r); }},
    {"ascending", [](Generator&, std::size_t i, std::size_t, std::size_t) { return real(i); }},
    {"30 decades", [](Generator& r, std::size_t, std::size_t, std::size_t) { return std::pow(10.0, 30.0 * uniform(r)); }},
    {"600 decades", [](Generator& r, std::size_t, std::size_t, std::size_t) { return std::pow(10.0, 600.0 * uniform(r) - 300.0); }},
    {"both signs, 30 decades", [](Generator& r, std::size_t, std::size_t, std::size_t) { return (r() % 2 == 0 ? 1.0 : -1.0) * std::pow(10.0, 30.0 * uniform(r)); }},
    {"whole numbers 0 ... 1", [](Generator& r, std::size_t, std::size_t, std::size_t) { return static_cast<double>(r() % 2); }},
    {"whole numbers 0 ... 9", [](Generator& r, std::size_t, std::size_t, std::size_t) { return static_cast<double>(r() % 10); }},
    {"2 decimals", [](Generator& r, std::size_t, std::size_t, std::size_t) { return std::round(1000.0 * normal(r)) / 100.0; }},
    {"0 and -0", [](Generator& r, std::size_t, std::size_t, std::size_t) { return r() % 2 == 0 ? 0.0 : -0.0; }},
    {"0, -0 and whole numbers", [](Generator& r, std::size_t, std::size_t, std::size_t) { return r() % 2 == 0 ? -0.0 : static_cast<double>(r() % 3) - 1.0; }},
    {"0, -0 and normal", [](Generator& r, std::size_t, std::size_t, std::size_t) { return r() % 8 == 0 ? 0.0 : r() % 8 == 0 ? -0.0 : normal(r); }},
    {"0, -0 and 30 decades", [](Generator& r, std::size_t, std::size_t, std::size_t) { return r() % 8 == 0 ? -0.0 : r() % 8 == 0 ? 0.0 : std::pow(10.0, 30.0 * uniform(r)); }},
    {"one far away", [](Generator& r, std::size_t i, std::size_t, std::size_t at) { return i == at ? 1e300 : uniform(r); }},
    {"two crowds far apart", [](Generator& r, std::size_t, std::size_t, std::size_t) { return (r() % 2 == 0 ? 1e12 : -1e12) + uniform(r); }},
    {"crowds within crowds", [](Generator& r, std::size_t i, std::size_t, std::size_t) { return std::pow(0.5, static_cast<double>(i % 900)) * (1.0 + uniform(r)); }},
    {"descending", [](Generator&, std::size_t i, std::size_t n, std::size_t) { return real(n - i); }},
    {"ascending, the last one out of place", [](Generator&, std::size_t i, std::size_t n, std::size_t at) { return i + 1 == n ? real(at) - 0.5 : real(i); }},
    {"ascending and descending", [](Generator&, std::size_t i, std::size_t n, std::size_t at) { return real(i < at ? i : n + at - i); }},
    {"saw", [](Generator&, std::size_t i, std::size_t n, std::size_t at) { return real((i + at) % (2 + at % (n / 4 + 2))); }},
};
// clang-format on

constexpr std::size_t sizes[] = {2,   3,   4,   6,    8,    12,   16,    24,    30,    48,    64,     100,    150,    200,
                                 300, 511, 512, 1000, 2000, 5000, 10000, 16384, 20000, 50000, 100000, 300000, 1000000};

/** Samples that are sorted together, so that the clock is no part of the figure, and different ones, so that no branch is learned by heart.
 */
std::vector<Sample> samplesOf(const Shape& shape, std::size_t n)
{
    Generator random(20261122);
    std::vector<Sample> samples(std::max<std::size_t>(1, 40000 / n), Sample(n));
    for (Sample& sample : samples) {
        const std::size_t at = random() % n;
        for (std::size_t i = 0; i < n; ++i) sample[i] = shape.value(random, i, n, at);
    }
    return samples;
}

template <typename Sort>
double secondsOf(const std::vector<Sample>& samples, Sort sort)
{
    std::vector<Sample> sorted = samples;
    const double begin = wq_bench::cpuSeconds();
    for (Sample& sample : sorted) sort(sample);
    return wq_bench::cpuSeconds() - begin;
}

constexpr double mostAllowed = 1.3;
using Ratios = std::array<double, 2>;  // with vectors, without

/** Of the least times of some rounds, in which the three ways take turns; more rounds where chance may have had a part. */
Ratios measure(const std::vector<Sample>& samples)
{
    constexpr double never = std::numeric_limits<double>::infinity();
    double standard = never;
    std::array<double, 2> library = {never, never};
    const int rounds = samples.size() > 1 ? 15 : 5;
    for (int round = 0; round < 4 * rounds; ++round) {
        if (round >= rounds && std::max(library[0], library[1]) <= mostAllowed * standard) break;
        standard = std::min(standard, secondsOf(samples, [](Sample& sample) { std::sort(sample.begin(), sample.end()); }));
        library[0] = std::min(library[0], secondsOf(samples, wq_lib::detail::sortSample));
        library[1] = std::min(library[1], secondsOf(samples, wq_lib::detail::sortSampleAnywhere));
    }
    return {library[0] / standard, library[1] / standard};
}

/** The greatest ratio of a shape, and the mean of all (geometric). */
struct Summary {
    double greatest = 0.0;
    std::size_t ofSize = 0;
    double sumOfLogs = 0.0;

    void take(double ratio, std::size_t n)
    {
        if (ratio > greatest) ofSize = n;
        greatest = std::max(greatest, ratio);
        sumOfLogs += std::log(ratio);
    }
};

}  // namespace

int main(int argc, char** argv)
{
    const std::size_t largest = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1000000;
    bool allowed = true;
    std::printf("| shape | with vectors: mean | greatest | of n | without: mean | greatest | of n |\n|---|---|---|---|---|---|---|\n");
    for (const Shape& shape : shapes) {
        std::array<Summary, 2> ways;
        double count = 0.0;
        for (const std::size_t n : sizes) {
            if (n > largest) break;
            const Ratios ratios = measure(samplesOf(shape, n));
            for (std::size_t way = 0; way < 2; ++way) ways[way].take(ratios[way], n);
            count += 1.0;
        }
        std::printf("| %s |", shape.name);
        for (const Summary& way : ways) {
            std::printf(" %.2f | %.2f | %zu |", std::exp(way.sumOfLogs / count), way.greatest, way.ofSize);
            allowed = allowed && way.greatest <= mostAllowed;
        }
        std::printf("\n");
        std::fflush(stdout);
    }
    return allowed ? 0 : 1;
}
