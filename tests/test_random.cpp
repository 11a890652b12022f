// Random generator: the sequence, the counter, the weighted choice.
#include <wq_stat/random.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/bits.h"

using namespace wq_lib;

namespace {

constexpr unsigned largest = 0xFFFFFFFFu;

// MT19937 as Matsumoto and Nishimura (1998) published it, with the initialisation of 2002.
class Twister {
public:
    explicit Twister(std::uint32_t seed)
    {
        state[0] = seed;
        for (std::uint32_t i = 1; i < size; ++i) state[i] = 1812433253u * (state[i - 1] ^ (state[i - 1] >> 30)) + i;
    }

    std::uint32_t next()
    {
        if (position == size) turn();
        std::uint32_t y = state[position++];
        y ^= y >> 11;
        y ^= (y << 7) & 0x9D2C5680u;
        y ^= (y << 15) & 0xEFC60000u;
        return y ^ (y >> 18);
    }

    void skip(int n)
    {
        while (n-- > 0) next();
    }

    // A real in [0, 1) from two words, the low one first.
    double real()
    {
        const double low = next();
        const double high = next();
        return (low + high * 4294967296.0) / 18446744073709551616.0;
    }

private:
    static constexpr std::size_t size = 624;

    void turn()
    {
        for (std::size_t i = 0; i < size; ++i) {
            const std::uint32_t y = (state[i] & 0x80000000u) | (state[(i + 1) % size] & 0x7FFFFFFFu);
            state[i] = state[(i + 397) % size] ^ (y >> 1) ^ ((y & 1u) != 0 ? 0x9908B0DFu : 0u);
        }
        position = 0;
    }

    std::array<std::uint32_t, size> state{};
    std::size_t position = size;
};

// The state every generator starts in.
Twister started()
{
    Twister twister(0);
    twister.skip(999);
    return twister;
}

// A generator that gives the reals it is told to, and counts what it is asked for.
class Scripted : public RandomGenerator {
public:
    explicit Scripted(std::vector<double> values = {}) : reals(std::move(values)) {}

    void initialize() override {}
    using RandomGenerator::getInteger;
    unsigned int getInteger() override
    {
        ++integers;
        return 17;
    }
    unsigned int getInteger(unsigned int n) override
    {
        asked.push_back(n);
        return n / 2;
    }
    double getReal() override
    {
        const double value = reals[drawn++ % reals.size()];
        return value;
    }

    std::vector<double> reals;
    std::size_t drawn = 0;
    std::size_t integers = 0;
    std::vector<unsigned> asked;
};

}  // namespace

TEST(Random, theTwisterOfThisTestIsTheStandardOne)  // the 10000th value of the default engine is prescribed by the C++ standard
{
    Twister twister(5489);
    twister.skip(9999);
    EXPECT_EQ(twister.next(), 4123659995u);
}

TEST(Random, startsInTheSameStateEachTime)
{
    for (int round = 0; round < 3; ++round) {
        RandomCpp11 generator;
        EXPECT_EQ(generator.getDraws(), 999u);
        EXPECT_EQ(generator.getGeneratorName(), "Mersenne Twister");
        Twister twister = started();
        for (int i = 0; i < 2000; ++i) ASSERT_EQ(generator.getInteger(), twister.next()) << i;
        EXPECT_EQ(generator.getDraws(), 2999u);
    }
}

TEST(Random, firstIntegersOfTheSequence)
{
    std::mt19937 engine(0);
    engine.discard(999);
    RandomCpp11 generator;
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(generator.getInteger(), engine());
}

TEST(Random, initializeStartsAgain)
{
    RandomCpp11 generator;
    const unsigned first = generator.getInteger();
    generator.getReal();
    generator.initialize();
    EXPECT_EQ(generator.getInteger(), first);
    EXPECT_EQ(generator.getDraws(), 999u + 1 + 1 + 999 + 1) << "the counter goes on";
}

TEST(Random, seedStartsTheSequenceOfAnySeed)
{
    for (const unsigned start : {0u, 1u, 5489u, largest}) {
        SCOPED_TRACE(start);
        RandomCpp11 generator;
        generator.getReal();
        generator.warmUp(700);
        generator.seed(start);
        EXPECT_EQ(generator.getDraws(), 999u);
        EXPECT_EQ(generator.getGeneratorName(), "Mersenne Twister");
        Twister twister(start);
        twister.skip(999);
        for (int i = 0; i < 2000; ++i) ASSERT_EQ(generator.getInteger(), twister.next()) << i;
        EXPECT_EQ(generator.getDraws(), 2999u);
    }
    RandomCpp11 standard;
    standard.seed(5489);
    standard.warmUp(9001);  // 9000 draws
    EXPECT_EQ(standard.getInteger(), 4123659995u) << "the 10000th, prescribed by the C++ standard";
    standard.initialize();
    EXPECT_EQ(standard.getInteger(), RandomCpp11().getInteger()) << "that of seed 0 again";
}

TEST(Random, reals)
{
    RandomCpp11 generator;
    Twister twister = started();
    double least = 1.0, greatest = 0.0;
    for (int i = 0; i < 20000; ++i) {
        const double value = generator.getReal();
        ASSERT_PRED_FORMAT2(wq_test::SameBits, value, twister.real());
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    }
    EXPECT_GE(least, 0.0);
    EXPECT_LT(greatest, 1.0);
    EXPECT_LT(least, 0.001);
    EXPECT_GT(greatest, 0.999);
    EXPECT_EQ(generator.getDraws(), 999u + 20000u) << "one draw each, although the engine gives two words";
}

TEST(Random, integersUpToN)
{
    RandomCpp11 generator;
    std::mt19937 engine(0);
    engine.discard(999);
    for (const unsigned n : {0u, 1u, 5u, 6u, 99u, 1000000u, 0x7FFFFFFFu, 0x80000000u, largest - 1, largest})
        for (int i = 0; i < 200; ++i) {
            const unsigned value = generator.getInteger(n);
            ASSERT_LE(value, n);
            ASSERT_EQ(value, std::uniform_int_distribution<unsigned>(0, n)(engine));
        }
    EXPECT_EQ(generator.getDraws(), 999u + 2000u);
}

TEST(Random, bothEndsAreIncluded)
{
    RandomCpp11 generator;
    std::set<unsigned> upToFive, threeToSix;
    for (int i = 0; i < 500; ++i) {
        EXPECT_EQ(generator.getInteger(0u), 0u);
        upToFive.insert(generator.getInteger(5u));
        threeToSix.insert(generator.getInteger(3u, 6u));
        EXPECT_EQ(generator.getInteger(3u, 3u), 3u);
        EXPECT_EQ(generator.getInteger(largest, largest), largest);
    }
    EXPECT_EQ(upToFive, (std::set<unsigned>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(threeToSix, (std::set<unsigned>{3, 4, 5, 6}));
}

TEST(Random, aRangeIsDrawnThroughTheOneArgument)
{
    Scripted generator;
    EXPECT_EQ(generator.getInteger(10u, 20u), 15u);
    EXPECT_EQ(generator.getInteger(7u, 7u), 7u);
    EXPECT_EQ(generator.getInteger(20u, 10u), 0x7FFFFFFBu + 20u);  // 10 - 20 wraps to 2^32 - 10, halved by the script
    EXPECT_EQ(generator.getInteger(1u, 0u), 0x80000000u);
    EXPECT_EQ(generator.asked, (std::vector<unsigned>{10, 0, largest - 9, largest}));

    RandomCpp11 ours, same;
    for (int i = 0; i < 100; ++i) EXPECT_EQ(ours.getInteger(40u, 90u), same.getInteger(50u) + 40u);
    EXPECT_EQ(ours.getDraws(), same.getDraws());
}

TEST(Random, weightedChoice)
{
    const struct {
        const char* shows;
        std::vector<double> weights;
        double draw;
        unsigned index;
    } rows[] = {
        {"first of two", {0.5, 0.5}, 0.0, 0},
        {"still the first", {0.5, 0.5}, 0.4999999999999999, 0},
        {"a draw on the border is of the next", {0.5, 0.5}, 0.5, 1},
        {"last", {0.5, 0.5}, 0.9999999999999999, 1},
        {"beyond the total", {0.2, 0.2}, 0.4, 2},
        {"far beyond the total", {0.2, 0.2}, 0.99, 2},
        {"just inside the total", {0.2, 0.2}, 0.3999999999999999, 1},
        {"a weight of 0 is never chosen", {0.0, 0.5, 0.5}, 0.0, 1},
        {"nor between others", {0.5, 0.0, 0.5}, 0.5, 2},
        {"nor at the end", {1.0, 0.0}, 0.9999999999999999, 0},
        {"all 0", {0.0, 0.0, 0.0}, 0.0, 3},
        {"total above 1", {2.0, 3.0}, 0.9, 0},
        {"empty", {}, 0.5, 0},
        {"negative weights take back", {0.5, -0.25, 0.5}, 0.6, 2},
        {"a weight that is no number stops the search", {std::numeric_limits<double>::quiet_NaN(), 1.0}, 0.5, 2},
        {"infinite", {0.5, std::numeric_limits<double>::infinity()}, 0.75, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        Scripted generator({row.draw});
        EXPECT_EQ(generator.getInteger(row.weights), row.index);
        EXPECT_EQ(generator.drawn, 1u);
    }
}

TEST(Random, aSingleWeightNeedsNoDraw)
{
    for (const double weight : {1.0, 0.5, 0.0, -1.0}) {
        Scripted generator({0.75});
        EXPECT_EQ(generator.getInteger(std::vector<double>{weight}), 0u);
        EXPECT_EQ(generator.drawn, 0u);
    }
    RandomCpp11 generator;
    EXPECT_EQ(generator.getInteger({1.0}), 0u);
    EXPECT_EQ(generator.getDraws(), 999u);
    EXPECT_EQ(generator.getInteger(std::vector<double>()), 0u);
    EXPECT_EQ(generator.getDraws(), 1000u);
}

TEST(Random, weightsWrittenInPlace)
{
    RandomCpp11 generator;
    RandomGenerator& base = generator;
    std::set<unsigned> indices;
    for (int i = 0; i < 200; ++i) {
        indices.insert(generator.getInteger({0.5, 0.5}));
        indices.insert(base.getInteger({0.5, 0.5}));
    }
    EXPECT_EQ(indices, (std::set<unsigned>{0, 1}));
    EXPECT_EQ(base.getInteger({1.0}), 0u);
    EXPECT_EQ(generator.getDraws(), 999u + 400u);
}

TEST(Random, weightedChoiceFollowsTheDraws)
{
    RandomCpp11 generator, reals;
    const std::vector<double> weights = {0.1, 0.0, 0.6, 0.2};  // sums to 0.9
    std::array<int, 5> counts{};
    for (int i = 0; i < 20000; ++i) {
        const double r = reals.getReal();
        double sum = 0.0;
        unsigned expected = 0;
        for (; expected < weights.size(); ++expected) {
            if (sum <= r && r < sum + weights[expected]) break;
            sum += weights[expected];
        }
        const unsigned index = generator.getInteger(weights);
        ASSERT_EQ(index, expected);
        ++counts[index];
    }
    EXPECT_EQ(counts[1], 0);
    EXPECT_NEAR(counts[0], 2000, 250);  // five standard deviations and more
    EXPECT_NEAR(counts[2], 12000, 400);
    EXPECT_NEAR(counts[3], 4000, 300);
    EXPECT_NEAR(counts[4], 2000, 250);
}

TEST(Random, warmUpDrawsOneLess)
{
    for (const std::size_t n : {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{10}}) {
        Scripted script;
        script.warmUp(n);
        EXPECT_EQ(script.integers, n < 2 ? 0 : n - 1);

        RandomCpp11 generator;
        generator.warmUp(n);
        EXPECT_EQ(generator.getDraws(), 999u + script.integers);
        Twister twister = started();
        twister.skip(static_cast<int>(script.integers));
        EXPECT_EQ(generator.getInteger(), twister.next());
    }
}

TEST(Random, nameAndCounterCanBeSet)
{
    Scripted base;
    EXPECT_EQ(base.getGeneratorName(), "");
    EXPECT_EQ(base.getDraws(), 0u);
    base.setGeneratorName("script");
    EXPECT_EQ(base.getGeneratorName(), "script");

    RandomCpp11 generator;
    generator.setDraws(0);
    generator.getInteger();
    generator.getInteger(3u);
    generator.getInteger(3u, 4u);
    generator.getReal();
    generator.getInteger({0.5, 0.5});
    EXPECT_EQ(generator.getDraws(), 5u);
    generator.setDraws(std::numeric_limits<unsigned long long>::max());
    generator.getReal();
    EXPECT_EQ(generator.getDraws(), 0u);
}

TEST(Random, theSharedGeneratorIsThereFromTheStart)
{
    // The first use in this program: no other test draws from it.
    EXPECT_EQ(Random.getDraws(), 999u);
    EXPECT_EQ(Random.getGeneratorName(), "Mersenne Twister");
    Twister twister = started();
    EXPECT_EQ(Random.getInteger(), twister.next());
    EXPECT_EQ(Random.getInteger(), twister.next());
    EXPECT_SAME_BITS(Random.getReal(), twister.real());
    EXPECT_EQ(Random.getDraws(), 1002u);
    static_assert(std::is_same_v<decltype(Random), RandomCpp11>);
}

TEST(Random, eachObjectHasItsOwnSequence)
{
    RandomCpp11 a, b;
    for (int i = 0; i < 10; ++i) a.getInteger();
    RandomCpp11 c = a;  // a copy goes on where the original stands
    EXPECT_EQ(c.getDraws(), 1009u);
    EXPECT_EQ(c.getInteger(), a.getInteger());
    EXPECT_EQ(b.getInteger(), started().next());
}

TEST(Random, usedThroughTheBase)
{
    RandomCpp11 generator;
    RandomGenerator& base = generator;
    Twister twister = started();
    EXPECT_EQ(base.getInteger(), twister.next());
    EXPECT_SAME_BITS(base.getReal(), twister.real());
    base.initialize();
    EXPECT_EQ(base.getInteger(), started().next());
    EXPECT_EQ(base.getInteger(0u), 0u);
    EXPECT_EQ(base.getInteger(8u, 8u), 8u);
    EXPECT_EQ(base.getInteger(std::vector<double>{1.0}), 0u);
}
