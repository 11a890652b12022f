// Draws from the Mersenne Twister, compiled for several processors.
#ifndef WQ_STAT_DETAIL_TWISTER_H
#define WQ_STAT_DETAIL_TWISTER_H

#include <random>

namespace wq_lib::detail {

/** Ways to draw one number; the engine's sequence and the bits of the numbers are the same for all processors. */
struct TwisterDraws {
    unsigned int (*integer)(std::mt19937& engine);  // 0 ... 4294967295
    double (*real)(std::mt19937& engine);           // 0 <= value < 1
};

/** For every processor. */
TwisterDraws baselineDraws();

/** For this processor: where it has AVX2 the engine makes its next 624 numbers by vectors. */
TwisterDraws bestDraws();

/** The best ones, chosen when the library is loaded. */
extern TwisterDraws twisterDraws;

}  // namespace wq_lib::detail

#endif
