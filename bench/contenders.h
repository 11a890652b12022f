// The ways of doing a row's work: what is prepared, what is timed, and what it answers.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace wq_bench {

/** Figures that all contenders of a row give in the same order. NaN: this contender does not compute the figure. */
using Answers = std::vector<double>;

/** @return processor time of this process, user and system, in seconds. */
double cpuSeconds();

/** By row, then by contender: does the work once. */
std::map<std::string, std::map<std::string, std::function<Answers()>>>& answers();

/** How many calls are timed together, so that the clock is no part of the figure: few for large n. */
inline std::size_t callsFor(std::size_t n) { return n >= 32768 ? 1 : 32768 / (n + 1) + 1; }

namespace detail {
void enter(const std::string& row, const std::string& name, std::function<void(benchmark::State&)> timing, std::function<Answers()> once);

/** Lets no part of a result be left out as unused. */
template <typename Figures>
void use(const Figures& figures)
{
    benchmark::DoNotOptimize(figures);
    benchmark::ClobberMemory();
}

template <typename Prepare, typename Work>
std::function<Answers()> once(Prepare prepare, Work work)
{
    return [prepare, work] {
        const auto input = prepare();
        const auto& figures = work(*input);
        return Answers(std::begin(figures), std::end(figures));
    };
}
}  // namespace detail

/**
 * Enters a way that uses up its input, as sorting in place does; every call gets its own.
 * @param calls timed together.
 * @param prepare makes the input of call 0, 1, ..., a std::unique_ptr; not timed. The contenders are compared with that of call 0.
 * @param work what is timed; its result is a range of figures.
 */
template <typename Prepare, typename Work>
void contenderWithFreshInput(const std::string& row, const std::string& name, std::size_t calls, Prepare prepare, Work work)
{
    const auto timing = [calls, prepare, work](benchmark::State& state) {
        std::size_t call = 0;
        for (auto _ : state) {
            std::vector<decltype(prepare(call))> inputs;
            for (std::size_t i = 0; i < calls; ++i) inputs.push_back(prepare(call++));
            const double begin = cpuSeconds();
            for (auto& input : inputs) detail::use(work(*input));
            state.SetIterationTime(cpuSeconds() - begin);
        }
        state.counters["calls"] = static_cast<double>(calls);
    };
    detail::enter(row, name, timing, detail::once([prepare] { return prepare(0); }, work));
}

/** Enters a way that leaves its input as it was. */
template <typename Prepare, typename Work>
void contender(const std::string& row, const std::string& name, std::size_t calls, Prepare prepare, Work work)
{
    const auto timing = [calls, prepare, work](benchmark::State& state) {
        const auto input = prepare();
        for (auto _ : state) {
            const double begin = cpuSeconds();
            for (std::size_t i = 0; i < calls; ++i) {
                detail::use(work(*input));
            }
            state.SetIterationTime(cpuSeconds() - begin);
        }
        state.counters["calls"] = static_cast<double>(calls);
    };
    detail::enter(row, name, timing, detail::once(prepare, work));
}

void enterOneSample();
void enterRegression();
void enterGrouping();
void enterReading();
void enterExporting();
void enterDistributions();
void enterRandom();

}  // namespace wq_bench
