// Quicksort by vectors, for one set of instructions: avx2_sort.cpp and avx512_sort.cpp include it, each with operations of its own.
#ifndef WQ_STAT_DETAIL_VECTOR_QUICKSORT_H
#define WQ_STAT_DETAIL_VECTOR_QUICKSORT_H

#include <algorithm>
#include <cstddef>
#include <limits>

#include <immintrin.h>

#ifndef WQ_TARGET
#  error "define WQ_TARGET: the attribute of functions that use these instructions"
#endif

#define WQ_TARGET_INLINE WQ_TARGET __attribute__((always_inline)) inline

// For functions that keep vectors in memory. To find uses after return the sanitizer of GCC 12 moves a function's frame to a stack of its
// own, where vectors are not aligned as their aligned stores need.
#define WQ_ALIGNED_FRAME __attribute__((no_sanitize_address))

// Nameless, because each of its two readers makes other functions of it.
namespace wq_lib::detail {
namespace {

/** Whether the processor takes subnormal values for 0: a host's setting, in which exchanging them makes them 0. */
inline bool losesSubnormalValues()
{
    constexpr unsigned denormalsAreZero = 0x40;
    return (_mm_getcsr() & denormalsAreZero) != 0;
}

/**
 * @tparam V the operations: `Vector`, of `lanes` doubles; `load`, `loadFirst` (`count` values, and infinity in the other lanes), `store`,
 *   `repeat`; `smaller` and `larger`, lane by lane; `reverse`; `sortEach`, which sorts each of several vectors for itself, and
 * `sortEachBitonic`, which does so with bitonic ones (values that rise and then fall, or are such a sequence turned round); and
 * `arrange<order>`, which moves the values in order with a pivot to the front of a vector and returns their number.
 */
template <typename V>
struct VectorQuicksort {
    using Vector = typename V::Vector;
    static constexpr std::size_t lanes = V::lanes;

    // ------------------------------------------------------------ few values: Batcher's bitonic network (1968)

    static constexpr std::size_t mostVectors = 16;
    static constexpr std::size_t networkValues = mostVectors * lanes;

    /** Puts the smaller values into a, the larger ones into b. */
    WQ_TARGET_INLINE static void exchange(Vector& a, Vector& b)
    {
        const Vector low = V::smaller(a, b);
        b = V::larger(a, b);
        a = low;
    }

    /** Merges sorted runs of half as many vectors into runs of `run` vectors, and so on, until all is one run. */
    template <std::size_t run, std::size_t vectors>
    WQ_TARGET_INLINE static void mergeRuns(Vector* v)
    {
        if constexpr (run <= vectors) {
            for (std::size_t begin = 0; begin < vectors; begin += run) {
                for (std::size_t i = 0, k = run - 1; i < run / 2; ++i, --k) {
                    const Vector partner = V::reverse(v[begin + k]);
                    v[begin + k] = V::larger(v[begin + i], partner);
                    v[begin + i] = V::smaller(v[begin + i], partner);
                }
                for (std::size_t half = run / 4; half > 0; half /= 2)
                    for (std::size_t part = begin; part < begin + run; part += 2 * half)
                        for (std::size_t i = part; i < part + half; ++i) exchange(v[i], v[i + half]);
            }
            V::template sortEachBitonic<vectors>(v);
            mergeRuns<2 * run, vectors>(v);
        }
    }

    /** Sorts up to `vectors` vectors of values, in registers. */
    template <std::size_t vectors>
    WQ_TARGET WQ_ALIGNED_FRAME static void sortInRegisters(double* values, std::size_t n)
    {
        const std::size_t whole = n / lanes;  // vectors
        const std::size_t rest = n % lanes;   // values of one more
        Vector v[vectors];
        for (std::size_t i = 0; i < vectors; ++i)
            v[i] = V::loadFirst(values + std::min(i, whole) * lanes, i < whole ? lanes : i == whole ? rest : 0);
        V::template sortEach<vectors>(v);
        mergeRuns<2, vectors>(v);
        for (std::size_t i = 0; i < vectors; ++i) {
            if (i < whole) V::store(values + i * lanes, v[i]);
            if (i == whole) {  // value by value: a masked store takes longer than sorting a vector does
                alignas(sizeof(Vector)) double last[lanes];
                V::store(last, v[i]);
                for (std::size_t k = 0; k < rest; ++k) values[i * lanes + k] = last[k];
            }
        }
    }

    /** @param n up to networkValues. */
    static void sortFew(double* values, std::size_t n)
    {
        if (n <= lanes)
            sortInRegisters<1>(values, n);
        else if (n <= 2 * lanes)
            sortInRegisters<2>(values, n);
        else if (n <= 4 * lanes)
            sortInRegisters<4>(values, n);
        else if (n <= 8 * lanes)
            sortInRegisters<8>(values, n);
        else
            sortInRegisters<mostVectors>(values, n);
    }

    // ------------------------------------------------------------ many values: quicksort

    static constexpr std::size_t blockVectors = 8;  // read at once from one side
    static constexpr std::size_t blockValues = blockVectors * lanes;
    static constexpr std::ptrdiff_t prefetchAhead = 4 * blockValues;  // from the block that is worked on to the one that is prefetched
    static constexpr std::size_t lineValues = 8;                      // a cache line
    static_assert(networkValues >= 2 * blockValues, "what is partitioned has a block on either side to hold back");

    /** The room between the two parts of a partition, which grow towards each other. */
    template <int order>
    struct Room {
        double* begin;
        double* end;
        double pivot;

        /** Adds the values in order with the pivot to the front part, the others to the back part. Either side must have room for a vector.
         */
        WQ_TARGET_INLINE void put(Vector v)
        {
            const std::size_t count = V::template arrange<order>(v, V::repeat(pivot));
            V::store(begin, v);
            V::store(end - lanes, v);
            begin += count;
            end -= lanes - count;
        }

        void put(double value)
        {
            if (order == _CMP_LT_OQ ? value < pivot : value <= pivot)
                *begin++ = value;
            else
                *--end = value;
        }
    };

    /**
     * Moves the values less than the pivot (or, by the order _CMP_LE_OQ, not greater) to the front. The first and the last block stay in
     * registers until the end: with the next block always read from the side that has less room left, either side has room for all of it.
     * @param n at least two blocks.
     * @return how many values are in front.
     */
    template <int order>
    WQ_TARGET WQ_ALIGNED_FRAME static std::size_t partition(double* values, std::size_t n, double pivot)
    {
        double* unreadBegin = values + blockValues;
        double* unreadEnd = values + n - blockValues;
        Vector heldBack[2 * blockVectors];
        for (std::size_t i = 0; i < blockVectors; ++i) heldBack[i] = V::load(values + i * lanes);
        for (std::size_t i = 0; i < blockVectors; ++i) heldBack[blockVectors + i] = V::load(unreadEnd + i * lanes);

        Room<order> room{values, values + n, pivot};
        while (static_cast<std::size_t>(unreadEnd - unreadBegin) >= blockValues) {
            const double* block = unreadBegin;
            if (unreadBegin - room.begin <= room.end - unreadEnd)
                unreadBegin += blockValues;
            else
                block = unreadEnd -= blockValues;
            if (unreadEnd - unreadBegin > prefetchAhead) {
                const double* const later = block == unreadEnd ? block - prefetchAhead : block + prefetchAhead;
                for (std::size_t i = 0; i < blockValues; i += lineValues) __builtin_prefetch(later + i);
            }
            Vector v[blockVectors];
            for (std::size_t i = 0; i < blockVectors; ++i) v[i] = V::load(block + i * lanes);
            for (std::size_t i = 0; i < blockVectors; ++i) room.put(v[i]);
        }

        double rest[blockValues];
        const double* const restEnd = std::copy(unreadBegin, unreadEnd, rest);
        const double* value = rest;
        for (; restEnd - value >= static_cast<std::ptrdiff_t>(lanes); value += lanes) room.put(V::load(value));
        for (; value != restEnd; ++value) room.put(*value);
        for (const Vector& v : heldBack) room.put(v);
        return static_cast<std::size_t>(room.begin - values);
    }

    /** The median of some values spread over all: more of them the more there is to win by a good partition. */
    static double pivotOf(const double* values, std::size_t n)
    {
        double some[networkValues];
        const std::size_t count = n >= 16384 ? networkValues : n >= 1024 ? 32 : 8;
        const std::size_t distance = n / count;
        for (std::size_t i = 0; i < count; ++i) some[i] = values[i * distance + distance / 2];
        sortFew(some, count);
        return some[count / 2];
    }

    static void sortParts(double* values, std::size_t n, int partitions)
    {
        for (; n > networkValues; --partitions) {
            if (partitions == 0) {
                std::sort(values, values + n);
                return;
            }
            const double pivot = pivotOf(values, n);
            std::size_t inFront = partition<_CMP_LT_OQ>(values, n, pivot);
            if (inFront == 0)  // the pivot is the smallest value: all values equal to it have found their place
                inFront = partition<_CMP_LE_OQ>(values, n, pivot);
            else
                sortParts(values, inFront, partitions - 1);
            values += inFront;
            n -= inFront;
        }
        sortFew(values, n);
    }

    static void sort(double* values, std::size_t n)
    {
        int partitions = 0;
        for (std::size_t rest = n; rest > 1; rest /= 2) partitions += 2;
        sortParts(values, n, partitions);
    }
};

}  // namespace
}  // namespace wq_lib::detail

#endif
