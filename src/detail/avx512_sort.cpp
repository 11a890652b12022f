#include "avx512_sort.h"

#if defined(__x86_64__) && defined(__GNUC__)

#  include <algorithm>
#  include <array>
#  include <cstdint>
#  include <limits>

#  include <immintrin.h>

// Every function that touches a vector is compiled for AVX-512, and none of them runs before the processor was asked.
#  define WQ_AVX512 __attribute__((target("avx512f,popcnt")))
#  define WQ_AVX512_INLINE WQ_AVX512 __attribute__((always_inline)) inline

// For functions that keep vectors in memory. To find uses after return the sanitizer of GCC 12 moves a function's frame to a stack of its own, where
// vectors are not aligned as their aligned stores need.
#  define WQ_ALIGNED_FRAME __attribute__((no_sanitize_address))

namespace wq_lib::detail {

namespace {

using Vector = __m512d;
constexpr std::size_t lanes = 8;
constexpr std::uint8_t allLanes = 0xFF;

// ---------------------------------------------------------------- few values: Batcher's bitonic network (1968)

constexpr std::size_t mostVectors = 16;
constexpr std::size_t networkValues = mostVectors * lanes;

// The unmasked forms of these instructions start from a vector without a value in GCC's header, which warns of it.
WQ_AVX512_INLINE Vector swapNeighbours(Vector v) { return _mm512_maskz_permute_pd(allLanes, v, 0x55); }
WQ_AVX512_INLINE Vector swapPairs(Vector v) { return _mm512_maskz_permutex_pd(allLanes, v, 0x4E); }
WQ_AVX512_INLINE Vector swapHalves(Vector v) { return _mm512_maskz_shuffle_f64x2(allLanes, v, v, 0x4E); }
WQ_AVX512_INLINE Vector reverseFours(Vector v) { return _mm512_maskz_permutex_pd(allLanes, v, 0x1B); }
WQ_AVX512_INLINE Vector reverse(Vector v) { return _mm512_maskz_permutexvar_pd(allLanes, _mm512_set_epi64(0, 1, 2, 3, 4, 5, 6, 7), v); }

WQ_AVX512_INLINE Vector smaller(Vector a, Vector b) { return _mm512_maskz_min_pd(allLanes, a, b); }
WQ_AVX512_INLINE Vector larger(Vector a, Vector b) { return _mm512_maskz_max_pd(allLanes, a, b); }

/** Lane by lane the larger of two values where `upper` has a one, else the smaller. */
WQ_AVX512_INLINE Vector exchange(Vector v, Vector partner, std::uint8_t upper)
{
    return _mm512_mask_max_pd(smaller(v, partner), upper, v, partner);
}

/** Puts the smaller values into a, the larger ones into b. */
WQ_AVX512_INLINE void exchange(Vector& a, Vector& b)
{
    const Vector low = smaller(a, b);
    b = larger(a, b);
    a = low;
}

/** Sorts each vector for itself. Step by step over all of them, since each step waits for the latency of the one before it; so do the loops below. */
template <std::size_t vectors>
WQ_AVX512_INLINE void sortEach(Vector* v)
{
    for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapNeighbours(v[i]), 0b10101010);
    for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], reverseFours(v[i]), 0b11001100);
    for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapNeighbours(v[i]), 0b10101010);
    for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], reverse(v[i]), 0b11110000);
    for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapPairs(v[i]), 0b11001100);
    for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapNeighbours(v[i]), 0b10101010);
}

/** Sorts each vector that is bitonic: values that rise and then fall, or are such a sequence turned round. */
template <std::size_t vectors>
WQ_AVX512_INLINE void sortEachBitonic(Vector* v)
{
    for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapHalves(v[i]), 0b11110000);
    for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapPairs(v[i]), 0b11001100);
    for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapNeighbours(v[i]), 0b10101010);
}

/** Merges sorted runs of half as many vectors into runs of `run` vectors, and so on, until all is one run. */
template <std::size_t run, std::size_t vectors>
WQ_AVX512_INLINE void mergeRuns(Vector* v)
{
    if constexpr (run <= vectors) {
        for (std::size_t begin = 0; begin < vectors; begin += run) {
            for (std::size_t i = 0, k = run - 1; i < run / 2; ++i, --k) {
                const Vector partner = reverse(v[begin + k]);
                v[begin + k] = larger(v[begin + i], partner);
                v[begin + i] = smaller(v[begin + i], partner);
            }
            for (std::size_t half = run / 4; half > 0; half /= 2)
                for (std::size_t part = begin; part < begin + run; part += 2 * half)
                    for (std::size_t i = part; i < part + half; ++i) exchange(v[i], v[i + half]);
        }
        sortEachBitonic<vectors>(v);
        mergeRuns<2 * run, vectors>(v);
    }
}

/** Sorts up to 8 `vectors` values, in registers. */
template <std::size_t vectors>
WQ_AVX512 WQ_ALIGNED_FRAME void sortInRegisters(double* values, std::size_t n)
{
    const std::size_t whole = n / lanes;  // vectors
    const std::size_t rest = n % lanes;   // values of one more
    const Vector infinity = _mm512_set1_pd(std::numeric_limits<double>::infinity());
    Vector v[vectors];
    for (std::size_t i = 0; i < vectors; ++i) {
        const auto filled = static_cast<__mmask8>(i < whole ? allLanes : i == whole ? (1u << rest) - 1 : 0u);
        v[i] = _mm512_mask_loadu_pd(infinity, filled, values + std::min(i, whole) * lanes);
    }
    sortEach<vectors>(v);
    mergeRuns<2, vectors>(v);
    for (std::size_t i = 0; i < vectors; ++i) {
        if (i < whole) _mm512_storeu_pd(values + i * lanes, v[i]);
        if (i == whole) {  // value by value: a masked store takes longer than sorting a vector does
            alignas(sizeof(Vector)) double last[lanes];
            _mm512_store_pd(last, v[i]);
            for (std::size_t k = 0; k < rest; ++k) values[i * lanes + k] = last[k];
        }
    }
}

/** @param n up to networkValues. */
void sortFew(double* values, std::size_t n)
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

// ---------------------------------------------------------------- many values: quicksort

constexpr std::size_t blockVectors = 8;  // read at once from one side
constexpr std::size_t blockValues = blockVectors * lanes;
constexpr std::ptrdiff_t prefetchAhead = 4 * blockValues;  // from the block that is worked on to the one that is prefetched
static_assert(networkValues >= 2 * blockValues, "what is partitioned has a block on either side to hold back");

/** For every set of lanes their numbers, a byte each, followed by those of the other lanes. */
constexpr std::array<std::uint64_t, 256> lanesInFront()
{
    std::array<std::uint64_t, 256> orders{};
    for (std::uint64_t set = 0; set < orders.size(); ++set) {
        unsigned shift = 0;
        for (const std::uint64_t wanted : {1u, 0u})
            for (std::uint64_t lane = 0; lane < lanes; ++lane)
                if (((set >> lane) & 1) == wanted) {
                    orders[set] |= lane << shift;
                    shift += 8;
                }
    }
    return orders;
}

constexpr std::array<std::uint64_t, 256> laneOrders = lanesInFront();

/** The room between the two parts of a partition, which grow towards each other. */
template <int order>
struct Room {
    double* begin;
    double* end;
    double pivot;

    /** Adds the values in order with the pivot to the front part, the others to the back part. Either side must have room for a vector. */
    WQ_AVX512_INLINE void put(Vector v)
    {
        const unsigned inFront = _mm512_cmp_pd_mask(v, _mm512_set1_pd(pivot), order);
        const __m128i laneOrder = _mm_cvtsi64_si128(static_cast<long long>(laneOrders[inFront]));
        const Vector arranged = _mm512_maskz_permutexvar_pd(allLanes, _mm512_maskz_cvtepu8_epi64(allLanes, laneOrder), v);
        const auto count = static_cast<std::size_t>(__builtin_popcount(inFront));
        _mm512_storeu_pd(begin, arranged);
        _mm512_storeu_pd(end - lanes, arranged);
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
WQ_AVX512 WQ_ALIGNED_FRAME std::size_t partition(double* values, std::size_t n, double pivot)
{
    double* unreadBegin = values + blockValues;
    double* unreadEnd = values + n - blockValues;
    Vector heldBack[2 * blockVectors];
    for (std::size_t i = 0; i < blockVectors; ++i) heldBack[i] = _mm512_loadu_pd(values + i * lanes);
    for (std::size_t i = 0; i < blockVectors; ++i) heldBack[blockVectors + i] = _mm512_loadu_pd(unreadEnd + i * lanes);

    Room<order> room{values, values + n, pivot};
    while (static_cast<std::size_t>(unreadEnd - unreadBegin) >= blockValues) {
        const double* block = unreadBegin;
        if (unreadBegin - room.begin <= room.end - unreadEnd)
            unreadBegin += blockValues;
        else
            block = unreadEnd -= blockValues;
        if (unreadEnd - unreadBegin > prefetchAhead) {
            const double* const later = block == unreadEnd ? block - prefetchAhead : block + prefetchAhead;
            for (std::size_t i = 0; i < blockVectors; ++i) __builtin_prefetch(later + i * lanes);
        }
        Vector v[blockVectors];
        for (std::size_t i = 0; i < blockVectors; ++i) v[i] = _mm512_loadu_pd(block + i * lanes);
        for (std::size_t i = 0; i < blockVectors; ++i) room.put(v[i]);
    }

    double rest[blockValues];
    const double* const restEnd = std::copy(unreadBegin, unreadEnd, rest);
    const double* value = rest;
    for (; restEnd - value >= static_cast<std::ptrdiff_t>(lanes); value += lanes) room.put(_mm512_loadu_pd(value));
    for (; value != restEnd; ++value) room.put(*value);
    for (const Vector& v : heldBack) room.put(v);
    return static_cast<std::size_t>(room.begin - values);
}

/** The median of some values spread over all: more of them the more there is to win by a good partition. */
double pivotOf(const double* values, std::size_t n)
{
    double some[networkValues];
    const std::size_t count = n >= 16384 ? 128 : n >= 1024 ? 32 : 8;
    const std::size_t distance = n / count;
    for (std::size_t i = 0; i < count; ++i) some[i] = values[i * distance + distance / 2];
    sortFew(some, count);
    return some[count / 2];
}

void sortParts(double* values, std::size_t n, int partitions)
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

}  // namespace

bool hasAvx512()
{
    constexpr unsigned denormalsAreZero = 0x40;
    if ((_mm_getcsr() & denormalsAreZero) != 0) return false;  // a host's setting, in which exchanging subnormal values makes them 0
    static const bool supported = [] {
        __builtin_cpu_init();  // a host's static object may come before the run-time library's own
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("popcnt");
    }();
    return supported;
}

void sortByAvx512(double* values, std::size_t n)
{
    int partitions = 0;
    for (std::size_t rest = n; rest > 1; rest /= 2) partitions += 2;
    sortByAvx512(values, n, partitions);
}

void sortByAvx512(double* values, std::size_t n, int partitions) { sortParts(values, n, partitions); }

}  // namespace wq_lib::detail

#else

namespace wq_lib::detail {

bool hasAvx512() { return false; }
void sortByAvx512(double*, std::size_t) {}
void sortByAvx512(double*, std::size_t, int) {}

}  // namespace wq_lib::detail

#endif
