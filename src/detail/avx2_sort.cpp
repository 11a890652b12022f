#include "vector_sort.h"

#if defined(__x86_64__) && defined(__GNUC__)

#  include <array>
#  include <cstdint>

// Every function that touches a vector is compiled for AVX2, and none of them runs before the processor was asked.
#  define WQ_TARGET __attribute__((target("avx2,popcnt")))
#  include "vector_quicksort.h"

namespace wq_lib::detail {

namespace {

/** The halves of four lanes, in an order of the lanes: AVX2 moves halves of doubles only, where lanes are to go anywhere. */
struct alignas(32) HalvesOfLanes {
    std::int32_t halves[8];
};

/** For every set of lanes these, followed by the other lanes. */
constexpr std::array<HalvesOfLanes, 16> lanesInFront()
{
    std::array<HalvesOfLanes, 16> orders{};
    for (unsigned set = 0; set < orders.size(); ++set) {
        std::size_t next = 0;
        for (const unsigned wanted : {1u, 0u})
            for (int lane = 0; lane < 4; ++lane)
                if (((set >> lane) & 1) == wanted) {
                    orders[set].halves[next++] = 2 * lane;
                    orders[set].halves[next++] = 2 * lane + 1;
                }
    }
    return orders;
}

constexpr std::array<HalvesOfLanes, 16> laneOrders = lanesInFront();

struct Avx2 {
    using Vector = __m256d;
    static constexpr std::size_t lanes = 4;

    WQ_TARGET_INLINE static Vector load(const double* values) { return _mm256_loadu_pd(values); }
    WQ_TARGET_INLINE static void store(double* values, Vector v) { _mm256_storeu_pd(values, v); }
    WQ_TARGET_INLINE static Vector repeat(double value) { return _mm256_set1_pd(value); }

    WQ_TARGET_INLINE static Vector loadFirst(const double* values, std::size_t count)
    {
        const __m256i lane = _mm256_set_epi64x(3, 2, 1, 0);
        const __m256i filled = _mm256_cmpgt_epi64(_mm256_set1_epi64x(static_cast<long long>(count)), lane);
        const Vector infinity = repeat(std::numeric_limits<double>::infinity());
        return _mm256_blendv_pd(infinity, _mm256_maskload_pd(values, filled), _mm256_castsi256_pd(filled));
    }

    WQ_TARGET_INLINE static Vector swapNeighbours(Vector v) { return _mm256_permute_pd(v, 0x5); }
    WQ_TARGET_INLINE static Vector swapPairs(Vector v) { return _mm256_permute4x64_pd(v, 0x4E); }
    WQ_TARGET_INLINE static Vector reverse(Vector v) { return _mm256_permute4x64_pd(v, 0x1B); }

    WQ_TARGET_INLINE static Vector smaller(Vector a, Vector b) { return _mm256_min_pd(a, b); }
    WQ_TARGET_INLINE static Vector larger(Vector a, Vector b) { return _mm256_max_pd(a, b); }

    /** Lane by lane the larger of two values where `upper` has a one, else the smaller. */
    template <int upper>
    WQ_TARGET_INLINE static Vector exchange(Vector v, Vector partner)
    {
        return _mm256_blend_pd(smaller(v, partner), larger(v, partner), upper);
    }

    // Step by step over all vectors, since each step waits for the latency of the one before it.
    template <std::size_t vectors>
    WQ_TARGET_INLINE static void sortEach(Vector* v)
    {
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange<0b1010>(v[i], swapNeighbours(v[i]));
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange<0b1100>(v[i], reverse(v[i]));
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange<0b1010>(v[i], swapNeighbours(v[i]));
    }

    template <std::size_t vectors>
    WQ_TARGET_INLINE static void sortEachBitonic(Vector* v)
    {
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange<0b1100>(v[i], swapPairs(v[i]));
        for (std::size_t i = 0; i < vectors; ++i) v[i] = exchange<0b1010>(v[i], swapNeighbours(v[i]));
    }

    template <int order>
    WQ_TARGET_INLINE static std::size_t arrange(Vector& v, Vector pivot)
    {
        const auto inFront = static_cast<unsigned>(_mm256_movemask_pd(_mm256_cmp_pd(v, pivot, order)));
        const __m256i halves = _mm256_load_si256(reinterpret_cast<const __m256i*>(&laneOrders[inFront]));
        v = _mm256_castsi256_pd(_mm256_permutevar8x32_epi32(_mm256_castpd_si256(v), halves));
        return static_cast<std::size_t>(__builtin_popcount(inFront));
    }
};

}  // namespace

bool hasAvx2()
{
    if (losesSubnormalValues()) return false;
    static const bool supported = [] {
        __builtin_cpu_init();  // a host's static object may come before the run-time library's own
        return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
    }();
    return supported;
}

void sortByAvx2(double* values, std::size_t n) { VectorQuicksort<Avx2>::sort(values, n); }
void sortByAvx2(double* values, std::size_t n, int partitions) { VectorQuicksort<Avx2>::sortParts(values, n, partitions); }

}  // namespace wq_lib::detail

#else

namespace wq_lib::detail {

bool hasAvx2() { return false; }
void sortByAvx2(double*, std::size_t) {}
void sortByAvx2(double*, std::size_t, int) {}

}  // namespace wq_lib::detail

#endif
