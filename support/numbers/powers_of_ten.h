// The powers of ten below 2^64, and their reciprocals.
#ifndef WQ_NUMBERS_POWERS_OF_TEN_H
#define WQ_NUMBERS_POWERS_OF_TEN_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace wq_lib::detail {

constexpr int mostZeros = 19;  // 10^19 < 2^64 < 10^20

/** factor / 2^exponent, with the highest bit of the factor set. */
struct Reciprocal {
    std::uint64_t factor = 0;
    int exponent = 0;
};

/** 1/divisor cut to 64 bits, by long division; the divisor may be any number from 1 on. */
constexpr Reciprocal reciprocalOf(std::uint64_t divisor)
{
    Reciprocal result;
    std::uint64_t rest = 1;
    if (divisor == 1) {
        result.factor = 1;
        rest = 0;
    }
    for (; (result.factor >> 63) == 0; ++result.exponent) {
        const bool fits = rest >= divisor - rest;  // 2 rest >= divisor, where 2 rest may not fit 64 bits
        result.factor = 2 * result.factor + (fits ? 1 : 0);
        rest = fits ? rest - (divisor - rest) : 2 * rest;
    }
    return result;
}

/** of(10^0), of(10^1) ... of(10^19). */
template <typename Function>
constexpr auto forPowersOfTen(Function of)
{
    std::array<decltype(of(std::uint64_t{1})), mostZeros + 1> values{};
    std::uint64_t power = 1;
    for (std::size_t zeros = 0; zeros < values.size(); ++zeros, power *= 10) values[zeros] = of(power);
    return values;
}

inline constexpr auto powersOfTen = forPowersOfTen([](std::uint64_t power) { return power; });

}  // namespace wq_lib::detail

#endif
