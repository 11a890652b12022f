// Draws from the Mersenne Twister, compiled for several processors.
#ifndef WQ_STAT_DETAIL_TWISTER_H
#define WQ_STAT_DETAIL_TWISTER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <type_traits>

#if defined(__GLIBCXX__) && defined(__x86_64__) && defined(__LP64__)  // where the engine keeps its numbers in 64 bits
#  define WQ_TWO_NUMBERS_AT_ONCE
#  include <immintrin.h>
#endif

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

#ifdef __GLIBCXX__

/**
 * The numbers that GNU's engine has made and not yet handed out: it makes 624 at once and keeps them before the count of those that are
 * drawn, a layout which its binary interface fixes. Taking one that is made spares the call of what may have to make more.
 */
class MadeNumbers {
public:
    explicit MadeNumbers(std::mt19937& engine) : bytes(reinterpret_cast<unsigned char*>(&engine))
    {
        std::memcpy(&drawn, bytes + drawnAt, sizeof drawn);
    }

    bool hold(std::size_t numbers) const { return drawn + numbers <= std::mt19937::state_size; }

    std::uint32_t take()
    {
        Word word;
        std::memcpy(&word, bytes + drawn * sizeof word, sizeof word);
        count(1);
        return tempered(static_cast<std::uint32_t>(word));
    }

#  ifdef WQ_TWO_NUMBERS_AT_ONCE
    /** @return a real of two numbers, the first one less significant, as std::generate_canonical<double, 53> makes it. */
    double takeReal()
    {
        __m128i two = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + drawn * sizeof(Word)));
        count(2);
        // As tempered(), each number in 64 bits.
        two = _mm_xor_si128(two, _mm_srli_epi64(two, 11));
        two = _mm_xor_si128(two, _mm_and_si128(_mm_slli_epi64(two, 7), _mm_set1_epi64x(0x9D2C5680)));
        two = _mm_xor_si128(two, _mm_and_si128(_mm_slli_epi64(two, 15), _mm_set1_epi64x(0xEFC60000)));
        two = _mm_xor_si128(two, _mm_srli_epi64(two, 18));
        // As the last bits of 2^52, whose unit is 1. That less 2^52 is exact, but -0 for 0 where the host rounds down.
        const __m128i large = _mm_set1_epi64x(0x4330000000000000);
        const __m128d numbers = _mm_sub_pd(_mm_castsi128_pd(_mm_or_si128(two, large)), _mm_castsi128_pd(large));
        const __m128d parts = _mm_mul_pd(numbers, _mm_set_pd(0x1p-32, 0x1p-64));
        const __m128d sum = _mm_add_sd(parts, _mm_unpackhi_pd(parts, parts));
        const double real = _mm_cvtsd_f64(_mm_and_pd(sum, _mm_castsi128_pd(_mm_set1_epi64x(0x7FFFFFFFFFFFFFFF))));
        return std::min(real, 0x1.fffffffffffffp-1);  // the sum may have been rounded up to 1
    }
#  endif

private:
    using Word = std::mt19937::result_type;
    static constexpr std::size_t drawnAt = std::mt19937::state_size * sizeof(Word);
    static_assert(std::is_trivially_copyable_v<std::mt19937> && sizeof(std::mt19937) == drawnAt + sizeof(std::size_t));

    void count(std::size_t taken)
    {
        drawn += taken;
        std::memcpy(bytes + drawnAt, &drawn, sizeof drawn);
    }

    /** Matsumoto and Nishimura (1998), eq. 2.2 to 2.5. */
    static std::uint32_t tempered(std::uint32_t y)
    {
        y ^= y >> 11;
        y ^= (y << 7) & 0x9D2C5680u;
        y ^= (y << 15) & 0xEFC60000u;
        return y ^ (y >> 18);
    }

    unsigned char* bytes;
    std::size_t drawn;
};

#endif

/** @return an integer, 0 ... 4294967295. */
inline unsigned int nextInteger(std::mt19937& engine)
{
#ifdef __GLIBCXX__
    MadeNumbers made(engine);
    if (__builtin_expect(made.hold(1), 1)) return made.take();
#endif
    return twisterDraws.integer(engine);
}

/** @return a real, 0 <= value < 1. */
inline double nextReal(std::mt19937& engine)
{
#ifdef WQ_TWO_NUMBERS_AT_ONCE
    MadeNumbers made(engine);
    if (__builtin_expect(made.hold(2), 1)) return made.takeReal();
#endif
    return twisterDraws.real(engine);
}

}  // namespace wq_lib::detail

#endif
