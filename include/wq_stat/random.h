#ifndef WQ_STAT_RANDOM_H
#define WQ_STAT_RANDOM_H

/// @file
/// Random numbers.

#include <wq_stat/export.h>

#include <cstddef>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace wq_lib {

/** A source of random numbers that counts its draws. One thread at a time may use it. */
class WQ_STAT_EXPORT RandomGenerator {
public:
    RandomGenerator() = default;
    virtual ~RandomGenerator();

    /** Brings the generator into its starting state. */
    virtual void initialize() = 0;

    /** @return a uniform integer, 0 ... 4294967295. */
    virtual unsigned int getInteger() = 0;

    /** @return a uniform integer, 0 ... n, both ends included. */
    virtual unsigned int getInteger(unsigned int n) = 0;

    /** @return a uniform integer, low ... high, both ends included; high - low wraps when low > high. */
    virtual unsigned int getInteger(unsigned int low, unsigned int high);

    /**
     * Weighted choice.
     * @param weights probabilities that sum to 1; neither checked nor scaled.
     * @return index i with probability weights[i]; the number of weights when the draw falls beyond their total. A single
     *         weight gives 0 without a draw, an empty list gives 0 after one.
     */
    virtual unsigned int getInteger(std::vector<double> weights);

    /** @return a uniform real, 0 <= value < 1. */
    virtual double getReal() = 0;

    /** Weighted choice among weights written in place: getInteger({0.2, 0.8}). */
    unsigned int getInteger(std::initializer_list<double> weights) { return getInteger(std::vector<double>(weights)); }

    /** Draws n - 1 integers and discards them; none for n = 0. */
    void warmUp(std::size_t n);

    /** What the method is called; nothing depends on it. */
    void setGeneratorName(std::string name);
    std::string getGeneratorName() const { return generatorName; }  ///< the name, as set

    /** The number of calls that drew a value; a host may set it. */
    void setDraws(unsigned long long count) { draws = count; }
    unsigned long long getDraws() const { return draws; }  ///< the counter

protected:
    std::string generatorName;     ///< of the method, for messages of a host
    unsigned long long draws = 0;  ///< values drawn so far
};

/**
 * The 32-bit Mersenne Twister of the standard library (Matsumoto and Nishimura 1998, MT19937).
 * Every object starts in the same state, seed 0 and 999 discarded draws, so that a run can be repeated;
 * getDraws() is 999 then. Nothing is seeded from time or entropy.
 */
class WQ_STAT_EXPORT RandomCpp11 : public RandomGenerator {
public:
    RandomCpp11();
    ~RandomCpp11() override;

    /** Seeds with 0 and discards 999 draws. */
    void initialize() override;

    /**
     * Starts the sequence of another seed as a new object starts that of 0: discards 999 draws, and counts from there, so that
     * getDraws() is 999 then, whatever was drawn before.
     * @param start any number; 0 gives the state of a new object.
     */
    void seed(unsigned int start);

    using RandomGenerator::getInteger;
    unsigned int getInteger() override;
    unsigned int getInteger(unsigned int n) override;
    unsigned int getInteger(unsigned int low, unsigned int high) override;
    unsigned int getInteger(std::vector<double> weights) override;
    double getReal() override;

protected:
    std::mt19937 engine;  ///< its sequence is fixed by the C++ standard
};

/** The generator that all parts of a host share; made when the library is loaded. */
extern WQ_STAT_EXPORT RandomCpp11 Random;

}  // namespace wq_lib

#endif
