#include <wq_stat/random.h>

#include "detail/twister.h"

#include <utility>

namespace wq_lib {

namespace {

constexpr std::size_t warmUpLength = 1000;  // 999 draws

/**
 * A uniform integer in 0 ... n: the high half of a draw times the number of results, where the low half does not fall among those that
 * would favour some of them. Lemire (2019), "Fast random integer generation in an interval". The distribution of libstdc++ draws so, from
 * GCC 11 on; those of other standard libraries draw other numbers from the same engine.
 */
unsigned int uniformUpTo(unsigned int n, std::mt19937& engine)
{
    const auto draw = [&engine] { return std::uint32_t{detail::nextInteger(engine)}; };
    const std::uint32_t results = std::uint32_t{n} + 1;
    if (results == 0) return draw();  // all 2^32
    std::uint64_t product = std::uint64_t{draw()} * results;
    if (static_cast<std::uint32_t>(product) < results) {
        const std::uint32_t unfair = (0 - results) % results;
        while (static_cast<std::uint32_t>(product) < unfair) product = std::uint64_t{draw()} * results;
    }
    return static_cast<unsigned int>(product >> 32);
}

}  // namespace

// ---------------------------------------------------------------- RandomGenerator

RandomGenerator::~RandomGenerator() = default;

unsigned int RandomGenerator::getInteger(unsigned int low, unsigned int high) { return getInteger(high - low) + low; }

unsigned int RandomGenerator::getInteger(std::vector<double> weights)
{
    if (weights.size() == 1) return 0;  // without a draw
    const double r = getReal();
    double sum = 0.0;
    unsigned int i = 0;
    for (const double weight : weights) {
        if (sum <= r && r < sum + weight) break;
        sum += weight;
        ++i;
    }
    return i;  // one past the last index for a draw beyond the sum of the weights
}

void RandomGenerator::warmUp(std::size_t n)
{
    for (std::size_t i = 1; i < n; ++i) getInteger();  // n - 1 draws
}

void RandomGenerator::setGeneratorName(std::string name) { generatorName = std::move(name); }

// ---------------------------------------------------------------- RandomCpp11

// MT19937 (Matsumoto and Nishimura 1998), as the standard library has it.
RandomCpp11::RandomCpp11() : engine(5489)  // the engine's own default; initialize() seeds anew
{
    setGeneratorName("Mersenne Twister");
    RandomCpp11::initialize();
}

RandomCpp11::~RandomCpp11() = default;

void RandomCpp11::initialize()
{
    engine.seed(0);
    warmUp(warmUpLength);
}

void RandomCpp11::seed(unsigned int start)
{
    engine.seed(start);
    setDraws(0);
    warmUp(warmUpLength);
}

unsigned int RandomCpp11::getInteger()
{
    ++draws;
    return detail::nextInteger(engine);
}

unsigned int RandomCpp11::getInteger(unsigned int n)
{
    ++draws;
    return uniformUpTo(n, engine);
}

unsigned int RandomCpp11::getInteger(unsigned int low, unsigned int high) { return RandomGenerator::getInteger(low, high); }

unsigned int RandomCpp11::getInteger(std::vector<double> weights) { return RandomGenerator::getInteger(weights); }

// Aligned, so that it takes as few lines as it can of the cache that holds decoded instructions: a twelfth of its time.
[[gnu::aligned(64)]] double RandomCpp11::getReal()
{
    ++draws;
    return detail::nextReal(engine);
}

RandomCpp11 Random;

}  // namespace wq_lib
