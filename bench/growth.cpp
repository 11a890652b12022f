// Time and memory of one analysis of n observations: growth ANALYSIS N [GROUPS] prints the processor seconds of an analysis (median),
// and in bytes what the loaded object holds and the peak while it is analysed, both above the process before it. growth list names
// the analyses.
#include "contenders.h"

#include <wq_stat/wq_stat.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace {

using wq_lib::BasicStatistics;

/** The figure of a line of /proc/self/status, in bytes. */
double memory(const std::string& label)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, label.size(), label) == 0) return 1024.0 * std::stod(line.substr(label.size() + 1));
    return std::nan("");
}

/** Lets the peak begin anew at what the process holds now. */
void forgetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

/** Observations as they come; loaded one by one, so that nothing but the object holds them. */
class Source {
public:
    explicit Source(std::size_t groups) : groupCount(groups) {}
    double value() { return 0.5 + 100.0 * uniform(); }
    double group() { return static_cast<double>(1 + random() % groupCount); }
    double angle() { return 3.0 * uniform(); }
    double frequency() { return static_cast<double>(1 + random() % 9); }

private:
    double uniform() { return static_cast<double>(random() >> 11) * 0x1p-53; }

    std::mt19937_64 random{20261121};
    std::size_t groupCount;
};

template <typename T, typename Add>
std::unique_ptr<BasicStatistics> filled(std::size_t n, Add add)
{
    auto sample = std::make_unique<T>();
    sample->initDataList(n);
    for (std::size_t i = 0; i < n; ++i) add(*sample);
    return sample;
}

template <typename T>
std::unique_ptr<BasicStatistics> filledWithValues(std::size_t n, Source& source)
{
    return filled<T>(n, [&source](T& sample) { sample.BasicStatistics::add(source.value()); });
}

template <typename T>
std::unique_ptr<BasicStatistics> filledWithLine(std::size_t n, Source& source)
{
    return filled<T>(n, [&source](T& sample) {
        const double x = source.value();
        sample.add(x, 3.0 + 0.25 * x + 0.1 * source.value());
    });
}

template <typename T>
std::unique_ptr<BasicStatistics> filledWithGroups(std::size_t n, Source& source)
{
    return filled<T>(n, [&source](T& sample) {
        const double id = source.group();
        sample.add(id, source.value());
    });
}

template <typename T>
std::unique_ptr<BasicStatistics> filledWithFrequencies(std::size_t n, Source& source)
{
    return filled<T>(n, [&source](T& sample) {
        const double first = source.frequency();
        sample.add(first, source.frequency());
    });
}

std::unique_ptr<BasicStatistics> filledWithAngles(std::size_t n, Source& source)
{
    return filled<wq_lib::Circular>(n, [&source](wq_lib::Circular& sample) { sample.add(source.angle(), 0.0); });
}

void analyse(BasicStatistics& sample) { sample.analyse(); }

void tabulate(BasicStatistics& sample)
{
    auto& frequency = static_cast<wq_lib::Frequency&>(sample);
    frequency.autoClassWidth(20);
    frequency.initFrequency(20);
    frequency.buildTable();
    frequency.analyse();
}

void group(BasicStatistics& sample)
{
    auto& anova = static_cast<wq_lib::SingleAnova&>(sample);
    anova.createSeries();
    anova.analyse();
}

void accumulate(BasicStatistics& sample)
{
    auto& test = static_cast<wq_lib::KolmogorovSmirnov2&>(sample);
    test.setDataRange();
    test.cumulative();
    test.analyse();
}

struct Analysis {
    const char* name;
    std::unique_ptr<BasicStatistics> (*fill)(std::size_t n, Source& source);
    void (*run)(BasicStatistics& sample);
};

const Analysis analyses[] = {
    {"BasicStatistics", filledWithValues<wq_lib::BasicStatistics>, analyse},
    {"Frequency", filledWithValues<wq_lib::Frequency>, tabulate},
    {"BasicXyStatistics", filledWithLine<wq_lib::BasicXyStatistics>, analyse},
    {"LinearRegression", filledWithLine<wq_lib::LinearRegression>, analyse},
    {"LogarithmicRegression", filledWithLine<wq_lib::LogarithmicRegression>, analyse},
    {"ExponentialRegression", filledWithLine<wq_lib::ExponentialRegression>, analyse},
    {"PowerRegression", filledWithLine<wq_lib::PowerRegression>, analyse},
    {"Correlation", filledWithLine<wq_lib::Correlation>, analyse},
    {"SingleAnova", filledWithGroups<wq_lib::SingleAnova>, group},
    {"LinearRegressionMultiY", filledWithGroups<wq_lib::LinearRegressionMultiY>, group},
    {"GoodnessOfFit", filledWithFrequencies<wq_lib::GoodnessOfFit>, analyse},
    {"KolmogorovSmirnov2", filledWithFrequencies<wq_lib::KolmogorovSmirnov2>, accumulate},
    {"Circular", filledWithAngles, analyse},
};

void measure(const Analysis& analysis, std::size_t n, std::size_t groups)
{
    Source source(groups);
    const double before = memory("VmRSS:");
    double held = 0.0;
    double peak = 0.0;
    std::vector<double> seconds;
    for (double spent = 0.0; spent < 0.05 && seconds.size() < 1000;) {
        const auto sample = analysis.fill(n, source);
        if (seconds.empty()) {
            held = memory("VmRSS:") - before;
            forgetPeak();
        }
        const double begin = wq_bench::cpuSeconds();
        analysis.run(*sample);
        seconds.push_back(wq_bench::cpuSeconds() - begin);
        spent += seconds.back();
        if (seconds.size() == 1) peak = memory("VmHWM:") - before;
    }
    std::nth_element(seconds.begin(), seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2), seconds.end());
    std::printf("%.9g %.0f %.0f\n", seconds[seconds.size() / 2], held, peak);
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string name = argc > 1 ? argv[1] : "";
    if (name == "list")
        for (const Analysis& analysis : analyses) std::printf("%s\n", analysis.name);
    if (name == "list") return 0;
    for (const Analysis& analysis : analyses) {
        if (name != analysis.name || argc < 3) continue;
        measure(analysis, std::stoul(argv[2]), argc > 3 ? std::stoul(argv[3]) : 10);
        return 0;
    }
    std::cerr << "usage: wq_growth ANALYSIS N [GROUPS], or wq_growth list\n";
    return 2;
}
