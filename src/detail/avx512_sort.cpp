#include "vector_sort.h"

#if defined(__x86_64__) && defined(__GNUC__)

#  include <array>
#  include <cstdint>

// Every function that touches a vector is compiled for AVX-512, and none of them runs before the processor was asked.
#  define WQ_TARGET __attribute__((target("avx512f,popcnt")))
#  include "vector_quicksort.h"

namespace wq_lib::detail {

namespace {

constexpr std::uint8_t allLanes = 0xFF;

/** For every set of lanes their numbers, a byte each, followed by those of the other lanes. */
constexpr std::array<std::uint64_t, 256> lanesInFront()
{
    std::array<std::uint64_t, 256> orders{};
    for (std::uint64_t set = 0; set < orders.size(); ++set) {
        unsigned shift = 0;
        for (const std::uint64_t wanted : {1u, 0u})
            for (std::uint64_t lane = 0; lane < 8; ++lane)
                if (((set >> lane) & 1) == wanted) {
                    orders[set] |= lane << shift;
                    shift += 8;
                }
    }
    return orders;
}

constexpr std::array<std::uint64_t, 256> laneOrders = lanesInFront();

struct Avx512 {
    using Vector = __m512d;
    static constexpr std::size_t lanes = 8;

    WQ_TARGET_INLINE static Vector load(const double* values) { return _mm512_loadu_pd(values); }
    WQ_TARGET_INLINE static void store(double* values, Vector v) { _mm512_storeu_pd(values, v); }
    WQ_TARGET_INLINE static Vector repeat(double value) { return _mm512_set1_pd(value); }

    WQ_TARGET_INLINE static Vector loadFirst(const double* values, std::size_t count)
    {
        const auto filled = static_cast<__mmask8>((1u << count) - 1);
        return _mm512_mask_loadu_pd(repeat(std::numeric_limits<double>::infinity()), filled, values);
    }

    // The unmasked forms of these instructions start from a vector without a value in GCC's header, which warns of it.
    WQ_TARGET_INLINE static Vector swapNeighbours(Vector v) { return _mm512_maskz_permute_pd(allLanes, v, 0x55); }
    WQ_TARGET_INLINE static Vector swapPairs(Vector v) { return _mm512_maskz_permutex_pd(allLanes, v, 0x4E); }
    WQ_TARGET_INLINE static Vector swapHalves(Vector v) { return _mm512_maskz_shuffle_f64x2(allLanes, v, v, 0x4E); }
    WQ_TARGET_INLINE static Vector reverseFours(Vector v) { return _mm512_maskz_permutex_pd(allLanes, v, 0x1B); }
    WQ_TARGET_INLINE static Vector reverse(Vector v)
    {
        return _mm512_maskz_permutexvar_pd(allLanes, _mm512_set_epi64(0, 1, 2, 3, 4, 5, 6, 7), v);
    }

    WQ_TARGET_INLINE static Vector smaller(Vector a, Vector b) { return _mm512_maskz_min_pd(allLanes, a, b); }
    WQ_TARGET_INLINE static Vector larger(Vector a, Vector b) { return _mm512_maskz_max_pd(allLanes, a, b); }

    /** Lane by lane the larger of two values where `upper` has a one, else the smaller. */
    WQ_TARGET_INLINE static Vector exchange(Vector v, Vector partner, std::uint8_t upper)
    {
        return _mm512_mask_max_pd(smaller(v, partner), upper, v, partner);
    }

    // Step by step over all vectors, since each step waits for the latency of the one before it.
    template <std::size_t vectors>
    WQ_TARGET_INLINE static void sortEach(Vector* v)
    {
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapNeighbours(v[i]), 0b10101010);
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], reverseFours(v[i]), 0b11001100);
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapNeighbours(v[i]), 0b10101010);
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], reverse(v[i]), 0b11110000);
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapPairs(v[i]), 0b11001100);
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapNeighbours(v[i]), 0b10101010);
    }

    template <std::size_t vectors>
    WQ_TARGET_INLINE static void sortEachBitonic(Vector* v)
    {
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapHalves(v[i]), 0b11110000);
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapPairs(v[i]), 0b11001100);
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange(v[i], swapNeighbours(v[i]), 0b10101010);
    }

    template <int order>
    WQ_TARGET_INLINE static std::size_t arrange(Vector& v, Vector pivot)
    {
        const unsigned inFront = _mm512_cmp_pd_mask(v, pivot, order);
        const __m128i laneOrder = _mm_cvtsi64_si128(static_cast<long long>(laneOrders[inFront]));
        v = _mm512_maskz_permutexvar_pd(allLanes, _mm512_maskz_cvtepu8_epi64(allLanes, laneOrder), v);
        return static_cast<std::size_t>(__builtin_popcount(inFront));
    }
};

}  // namespace

bool hasAvx512()
{
    if (losesSubnormalValues()) return false;
    static const bool supported = [] {
        __builtin_cpu_init();  // a host's static object may come before the run-time library's own
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("popcnt");
    }();
    return supported;
}

void sortByAvx512(double* values, std::size_t n) { VectorQuicksort<Avx512>::sort(values, n); }
void sortByAvx512(double* values, std::size_t n, int partitions) { VectorQuicksort<Avx512>::sortParts(values, n, partitions); }

}  // namespace wq_lib::detail

#else

namespace wq_lib::detail {

bool hasAvx512() { return false; }
void sortByAvx512(double*, std::size_t) {}
void sortByAvx512(double*, std::size_t, int) {}

}  // namespace wq_lib::detail

#endif
