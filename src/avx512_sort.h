// Sorts doubles with vectors of 512 bits, on x86-64 processors that have them.
#ifndef WQ_STAT_SRC_AVX512_SORT_H
#define WQ_STAT_SRC_AVX512_SORT_H

#include <cstddef>

namespace wq_lib::detail {

/**
 * Sorts in ascending order, in place and without further memory.
 * @return false, and nothing changed, on a processor without AVX-512 or set to take subnormal values for 0, and for values that vectors
 *         do not order as a stable sort does: those with a NaN or a negative zero among them.
 */
bool sortByAvx512(double* values, std::size_t n);

/** The same, with a limit to how often parts are divided: those that are still long are sorted by comparisons. */
bool sortByAvx512(double* values, std::size_t n, int divisions);

}  // namespace wq_lib::detail

#endif
