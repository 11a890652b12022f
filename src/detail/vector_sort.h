// Sorts doubles with the vectors of x86-64 processors that have wide ones.
#ifndef WQ_STAT_DETAIL_VECTOR_SORT_H
#define WQ_STAT_DETAIL_VECTOR_SORT_H

#include <cstddef>

namespace wq_lib::detail {

/** Whether the processor, as it is set now, has the instructions and moves every value unchanged: not when it takes subnormal values for 0.
 */
bool hasAvx512();
bool hasAvx2();

/**
 * Sorts numbers in ascending order where hasAvx512(), in place and without further memory. Of zeros of both signs it makes any number
 * negative.
 */
void sortByAvx512(double* values, std::size_t n);

/** The same, with a limit to how deep partitions are partitioned again: what is still long then is sorted by comparisons. */
void sortByAvx512(double* values, std::size_t n, int partitions);

/** The same two where hasAvx2(). */
void sortByAvx2(double* values, std::size_t n);
void sortByAvx2(double* values, std::size_t n, int partitions);

}  // namespace wq_lib::detail

#endif
