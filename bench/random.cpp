// Random numbers, draw by draw.
#include "contenders.h"
#include "drawn_ahead.h"

#include <wq_stat/random.h>

#include <boost/random/generate_canonical.hpp>
#include <boost/random/mersenne_twister.hpp>
#include <boost/random/uniform_01.hpp>
#include <gsl/gsl_rng.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace wq_bench {

namespace {

constexpr std::size_t draws = 1000000;
constexpr std::size_t discarded = 999;  // as the library's generator starts

/** What a million draws are like, and the first five of a generator that started as the library's did; NaN for another start. */
template <typename Draw>
Answers describe(Draw draw, bool sameStart)
{
    Answers answers(5, std::nan(""));
    double sum = 0.0;
    double smallest = HUGE_VAL;
    double largest = -HUGE_VAL;
    for (std::size_t i = 0; i < draws; ++i) {
        const double value = static_cast<double>(draw());
        if (sameStart && i < 5) answers[i] = value;
        sum += value;
        smallest = std::min(smallest, value);
        largest = std::max(largest, value);
    }
    answers.insert(answers.end(), {sum / static_cast<double>(draws), smallest, largest});
    return answers;
}

/** @param make a generator in its starting state. @param draw one number from it. */
template <typename Make, typename Draw>
void enterGenerator(const std::string& row, const std::string& name, bool sameStart, Make make, Draw draw)
{
    const auto timing = [make, draw](benchmark::State& state) {
        auto generator = make();
        for (auto _ : state) {
            const double begin = cpuSeconds();
            for (std::size_t i = 0; i < draws; ++i) benchmark::DoNotOptimize(draw(*generator));
            state.SetIterationTime(cpuSeconds() - begin);
        }
        state.counters["calls"] = 1;
    };
    detail::enter(row, name, timing, [make, draw, sameStart] {
        auto generator = make();
        return describe([&generator, draw] { return draw(*generator); }, sameStart);
    });
}

template <typename Engine>
std::unique_ptr<Engine> started()
{
    auto engine = std::make_unique<Engine>(0u);
    engine->discard(discarded);
    return engine;
}

struct FreeGenerator {
    void operator()(gsl_rng* generator) const { gsl_rng_free(generator); }
};

std::unique_ptr<gsl_rng, FreeGenerator> gslGenerator() { return std::unique_ptr<gsl_rng, FreeGenerator>(gsl_rng_alloc(gsl_rng_mt19937)); }

/** @param draw a number from an engine of the standard library. */
template <typename Draw>
auto drawnAhead(Draw draw)
{
    return [draw] {
        const auto engine = started<std::mt19937>();
        std::vector<decltype(draw(*engine))> numbers(std::size_t{1} << 20);
        for (auto& number : numbers) number = draw(*engine);
        return handingOver(std::move(numbers));
    };
}

}  // namespace

void enterRandom()
{
    const auto library = [] { return std::make_unique<wq_lib::RandomCpp11>(); };
    const auto integer = [](std::mt19937& g) { return std::uniform_int_distribution<unsigned int>(0, 0xFFFFFFFFu)(g); };
    const auto real = [](std::mt19937& g) { return std::uniform_real_distribution<double>(0.0, 1.0)(g); };

    enterGenerator("random-integer", "wq_stat", true, library, [](wq_lib::RandomCpp11& g) { return g.getInteger(); });
    enterGenerator("random-integer", "limit", true, drawnAhead(integer), [](DrawnAhead<unsigned int>& g) { return g.next(); });
    enterGenerator("random-integer", "plain", true, started<std::mt19937>, integer);
    enterGenerator("random-integer", "boost", true, started<boost::random::mt19937>, [](boost::random::mt19937& g) { return g(); });
    enterGenerator("random-integer", "gsl", false, gslGenerator, [](gsl_rng& g) { return gsl_rng_get(&g); });

    enterGenerator("random-real", "wq_stat", true, library, [](wq_lib::RandomCpp11& g) { return g.getReal(); });
    enterGenerator("random-real", "limit", true, drawnAhead(real), [](DrawnAhead<double>& g) { return g.next(); });
    enterGenerator("random-real", "plain", true, started<std::mt19937>, real);
    enterGenerator("random-real", "boost", false, started<boost::random::mt19937>,
                   [](boost::random::mt19937& g) { return boost::random::generate_canonical<double, 53>(g); });
    enterGenerator("random-real", "boost-32", false, started<boost::random::mt19937>,
                   [](boost::random::mt19937& g) { return boost::random::uniform_01<double>()(g); });
    enterGenerator("random-real", "gsl", false, gslGenerator, [](gsl_rng& g) { return gsl_rng_uniform(&g); });
}

}  // namespace wq_bench
