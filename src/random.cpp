#include <wq_stat/random.h>

#include <cmath>
#include <cstdint>
#include <utility>

namespace wq_lib {

// ---------------------------------------------------------------- RandomGenerator

RandomGenerator::~RandomGenerator() = default;

unsigned int RandomGenerator::getInteger(unsigned int low, unsigned int high) { return getInteger(high - low) + low; }

unsigned int RandomGenerator::getInteger(std::vector<double> weights)
{
    if (weights.size() == 1) return 0;
    const double r = getReal();
    double sum = 0.0;
    unsigned int i = 0;
    for (const double weight : weights) {
        if (sum <= r && r < sum + weight) break;
        sum += weight;
        ++i;
    }
    return i;
}

void RandomGenerator::warmUp(std::size_t n)
{
    for (std::size_t i = 1; i < n; ++i) getInteger();
}

void RandomGenerator::setGeneratorName(std::string name) { generatorName = std::move(name); }

// ---------------------------------------------------------------- RandomCpp11

RandomCpp11::RandomCpp11() : engine(5489)  // the engine's own default; initialize() seeds anew
{
    setGeneratorName("Mersenne Twister");
    RandomCpp11::initialize();
}

RandomCpp11::~RandomCpp11() = default;

void RandomCpp11::initialize()
{
    engine.seed(0);
    warmUp(1000);
}

unsigned int RandomCpp11::getInteger()
{
    ++draws;
    return static_cast<unsigned int>(engine());  // what a uniform distribution over all 32-bit integers gives
}

unsigned int RandomCpp11::getInteger(unsigned int n)
{
    ++draws;
    return std::uniform_int_distribution<unsigned int>(0, n)(engine);
}

unsigned int RandomCpp11::getInteger(unsigned int low, unsigned int high) { return RandomGenerator::getInteger(low, high); }

unsigned int RandomCpp11::getInteger(std::vector<double> weights) { return RandomGenerator::getInteger(weights); }

double RandomCpp11::getReal()
{
    // As std::generate_canonical<double, 53> with this engine: two draws, the first one less significant.
    ++draws;
    const double low = static_cast<double>(static_cast<std::uint32_t>(engine()));
    const double high = static_cast<double>(static_cast<std::uint32_t>(engine()));
    const double real = (low + high * 0x1p32) * 0x1p-64;
    return real < 1.0 ? real : std::nextafter(1.0, 0.0);  // the sum may have been rounded up
}

RandomCpp11 Random;

}  // namespace wq_lib
