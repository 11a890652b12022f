#include "logarithms.h"

#include <algorithm>
#include <cmath>

#if defined(__x86_64__) && defined(__GLIBC__) && defined(__GNUC__)
#  define WQ_LOGARITHMS_BY_VECTORS
#  include <immintrin.h>

#  include <array>
#  include <cstdint>
#endif

namespace wq_lib::detail {

namespace {

double logarithm(double value) { return value > 0.0 ? std::log(value) : 0.0; }

}  // namespace

bool logarithmsOneByOne(const double* values, std::size_t n, double* results)
{
    bool allNormal = true;
    for (std::size_t i = 0; i < n; ++i) {
        results[i] = logarithm(values[i]);
        allNormal = allNormal && std::isnormal(values[i]) && values[i] > 0.0;
    }
    return allNormal;
}

#ifdef WQ_LOGARITHMS_BY_VECTORS

namespace {

/*
 * Four logarithms at once, and the very bits of std::log. That of the GNU C library is within 0.52 units in the last place of the true
 * logarithm (its source says 0.519). So where the true one is nearer than 0.48 units to a double, std::log can give no other double; one in
 * twenty-five is not, and is left to std::log itself.
 *
 * A value is 2^k z. With 1/c near 1/z, in so few bits that r = z/c - 1 is exact, its logarithm is k log 2 + log c + log(1 + r): the first
 * two from a table, in more digits than a double has, the last one by its series (Tang 1990, "Table-driven implementation of the logarithm
 * function in IEEE floating-point arithmetic").
 */

constexpr int sharesBits = 8;                             // z lies in one of 256 shares of its octave, the table's rows
constexpr std::uint64_t smallestZ = 0x3FE6000000000000u;  // 0.6875: z is 0.6875 ... 1.375, so that k is 0 on both sides of 1

/** A logarithm as a multiple of 2^-42, which stays exact times k, and what that lacks. */
struct TwoParts {
    double high;
    double low;
};

struct alignas(32) Share {
    double inverse;  // 1/c, a multiple of 1/256
    TwoParts logC;
    double unused;
};

__extension__ using Fixed = unsigned __int128;  // in units of 2^-100
constexpr int fixedBits = 100;

/** @return |log(256 / numerator)|, from log((1+x)/(1-x)) = 2 (x + x^3/3 + x^5/5 + ...). */
constexpr Fixed magnitudeOfLogarithm(unsigned numerator)
{
    const unsigned difference = numerator < 256 ? 256 - numerator : numerator - 256;
    const unsigned sum = 256 + numerator;
    Fixed power = (Fixed{2 * difference} << fixedBits) / sum;
    Fixed total = 0;
    for (unsigned odd = 1; power != 0; odd += 2) {
        total += power / odd;
        power = power * difference / sum * difference / sum;
    }
    return total;
}

/** @return log(256 / numerator). */
constexpr TwoParts logarithmOfInverse(unsigned numerator)
{
    constexpr int lowBits = fixedBits - 42;
    const Fixed magnitude = magnitudeOfLogarithm(numerator);
    const double sign = numerator < 256 ? 1.0 : -1.0;
    const Fixed high = magnitude >> lowBits;
    const Fixed low = magnitude - (high << lowBits);
    return {sign * static_cast<double>(static_cast<std::uint64_t>(high)) * 0x1p-42,
            sign * static_cast<double>(static_cast<std::uint64_t>(low)) * 0x1p-100};
}

constexpr unsigned one = 160;  // the first share from 1 on

constexpr std::array<Share, 1 << sharesBits> sharesOfAnOctave()
{
    std::array<Share, 1 << sharesBits> shares{};
    for (unsigned i = 0; i < shares.size(); ++i) {
        // The middle of the share: those below 1 are half as wide as those from 1 on.
        const double middle = i < one ? 1.0 - (one - i - 0.5) / 512.0 : 1.0 + (i - one + 0.5) / 256.0;
        const unsigned numerator = static_cast<unsigned>(256.0 / middle + 0.5);
        shares[i] = {numerator / 256.0, logarithmOfInverse(numerator), 0.0};
    }
    return shares;
}

constexpr std::array<Share, 1 << sharesBits> shares = sharesOfAnOctave();
static_assert(shares[one - 1].inverse == 1.0 && shares[one].inverse == 1.0, "beside 1 a logarithm is small, and has to be that of r alone");
constexpr TwoParts logTwo = logarithmOfInverse(128);

#  define WQ_TARGET __attribute__((target("avx2,fma")))
#  define WQ_TARGET_INLINE WQ_TARGET __attribute__((always_inline)) inline

WQ_TARGET_INLINE __m256i whole(std::uint64_t value) { return _mm256_set1_epi64x(static_cast<long long>(value)); }
WQ_TARGET_INLINE __m256d real(double value) { return _mm256_set1_pd(value); }
WQ_TARGET_INLINE __m256d row(long long i) { return _mm256_load_pd(&shares[static_cast<std::size_t>(i)].inverse); }

/** Which of the four, as bits. */
struct Four {
    int left;    // to std::log, or to be 0
    int normal;  // positive and neither subnormal nor infinite
};

WQ_TARGET_INLINE Four fourLogarithms(const double* values, double* results)
{
    const __m256i bits = _mm256_castpd_si256(_mm256_loadu_pd(values));
    // As an unsigned comparison: bits - smallest < infinity - smallest.
    const __m256i isNormal = _mm256_cmpgt_epi64(whole(0xFFE0000000000000u), _mm256_add_epi64(bits, whole(0x7FF0000000000000u)));

    // The exponent by the bits of a large double, whose unit is 1.
    constexpr std::uint64_t bias = 1024;
    const __m256i fromSmallest = _mm256_add_epi64(bits, whole((bias << 52) - smallestZ));
    const __m256i exponent = _mm256_srli_epi64(fromSmallest, 52);
    const __m256d k = _mm256_sub_pd(_mm256_castsi256_pd(_mm256_or_si256(exponent, whole(0x4330000000000000u))), real(0x1p52 + bias));
    const __m256d z = _mm256_castsi256_pd(_mm256_sub_epi64(bits, _mm256_slli_epi64(_mm256_sub_epi64(exponent, whole(bias)), 52)));

    const __m256i place = _mm256_and_si256(_mm256_srli_epi64(fromSmallest, 52 - sharesBits), whole(shares.size() - 1));
    const __m128i place01 = _mm256_castsi256_si128(place);
    const __m128i place23 = _mm256_extracti128_si256(place, 1);
    const __m256d row0 = row(_mm_cvtsi128_si64(place01));
    const __m256d row1 = row(_mm_extract_epi64(place01, 1));
    const __m256d row2 = row(_mm_cvtsi128_si64(place23));
    const __m256d row3 = row(_mm_extract_epi64(place23, 1));
    const __m256d even01 = _mm256_unpacklo_pd(row0, row1);
    const __m256d even23 = _mm256_unpacklo_pd(row2, row3);
    const __m256d inverse = _mm256_permute2f128_pd(even01, even23, 0x20);
    const __m256d logCLow = _mm256_permute2f128_pd(even01, even23, 0x31);
    const __m256d logCHigh = _mm256_permute2f128_pd(_mm256_unpackhi_pd(row0, row1), _mm256_unpackhi_pd(row2, row3), 0x20);

    // log(1+r) = r - r^2/2 + r^3/3 - ...; of the second term what rounding cut off too.
    const __m256d r = _mm256_fmsub_pd(z, inverse, real(1.0));
    const __m256d minusHalfR = _mm256_mul_pd(r, real(-0.5));
    const __m256d second = _mm256_mul_pd(minusHalfR, r);
    const __m256d secondLow = _mm256_fmsub_pd(minusHalfR, r, second);
    const __m256d square = _mm256_mul_pd(r, r);
    const __m256d terms34 = _mm256_fmadd_pd(r, real(-1.0 / 4.0), real(1.0 / 3.0));
    const __m256d terms56 = _mm256_fmadd_pd(r, real(-1.0 / 6.0), real(1.0 / 5.0));
    const __m256d terms78 = _mm256_fmadd_pd(r, real(-1.0 / 8.0), real(1.0 / 7.0));
    const __m256d series = _mm256_fmadd_pd(square, _mm256_fmadd_pd(square, terms78, terms56), terms34);
    const __m256d cube = _mm256_mul_pd(square, r);

    // Sums, and what each of them lacks (Dekker 1971).
    const __m256d large = _mm256_fmadd_pd(k, real(logTwo.high), logCHigh);  // exact
    const __m256d first = _mm256_add_pd(large, r);
    const __m256d firstLow = _mm256_add_pd(_mm256_sub_pd(large, first), r);
    const __m256d high = _mm256_add_pd(first, second);
    const __m256d highLow = _mm256_add_pd(_mm256_sub_pd(first, high), second);
    const __m256d known = _mm256_add_pd(_mm256_fmadd_pd(k, real(logTwo.low), logCLow), _mm256_add_pd(firstLow, highLow));
    const __m256d low = _mm256_fmadd_pd(cube, series, _mm256_add_pd(known, secondLow));
    const __m256d result = _mm256_add_pd(high, low);
    const __m256d lacks = _mm256_add_pd(_mm256_sub_pd(high, result), low);

    // Where the result lacks more than 0.48 units, that and a little more rounds to another one.
    const __m256d other = _mm256_fmadd_pd(lacks, real(0.5 / 0.48), result);
    const __m256d isClear = _mm256_cmp_pd(other, result, _CMP_EQ_OQ);
    _mm256_storeu_pd(results, result);
    const __m256d normal = _mm256_castsi256_pd(isNormal);
    return {0xF & ~_mm256_movemask_pd(_mm256_and_pd(isClear, normal)), _mm256_movemask_pd(normal)};
}

WQ_TARGET bool logarithmsByAvx2(const double* values, std::size_t n, double* results)
{
    constexpr std::size_t most = 64;
    int normal = 0xF;
    std::size_t i = 0;
    while (n - i >= 4) {
        const std::size_t begin = i;
        const std::size_t end = begin + std::min(most, n - begin);
        std::uint64_t left = 0;
        for (; i + 4 <= end; i += 4) {
            const Four four = fourLogarithms(values + i, results + i);
            left |= static_cast<std::uint64_t>(four.left) << (i - begin);
            normal &= four.normal;
        }
        for (; left != 0; left &= left - 1) {
            const std::size_t k = begin + static_cast<std::size_t>(__builtin_ctzll(left));
            results[k] = logarithm(values[k]);
        }
    }
    const bool restIsNormal = logarithmsOneByOne(values + i, n - i, results + i);
    return normal == 0xF && restIsNormal;
}

/** Whether the processor has the instructions and rounds to nearest, as it is set now. */
bool vectorsFit()
{
    static const bool hasVectors = [] {
        __builtin_cpu_init();  // a host's static object may come before the run-time library's own
        return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
    }();
    constexpr unsigned roundingBits = 0x6000;
    return hasVectors && (_mm_getcsr() & roundingBits) == 0;
}

}  // namespace

bool logarithms(const double* values, std::size_t n, double* results)
{
    if (vectorsFit()) return logarithmsByAvx2(values, n, results);
    return logarithmsOneByOne(values, n, results);
}

#else

bool logarithms(const double* values, std::size_t n, double* results) { return logarithmsOneByOne(values, n, results); }

#endif

}  // namespace wq_lib::detail
