// Doubles in fixed notation, exactly rounded, by 128-bit integer arithmetic.
#ifndef WQ_NUMBERS_FIXED_NOTATION_H
#define WQ_NUMBERS_FIXED_NOTATION_H

#include "powers_of_ten.h"
#include "wide_product.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace wq_lib::detail {

constexpr int mostFixedDecimals = mostZeros;
constexpr int longestFixedText = 48;  // sign, 20 digits, point, 19 decimals

constexpr char digitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839404142434445464748495051525354555657585960"
    "616263646566676869707172737475767778798081828384858687888990919293949596979899";

/** Writes the pair of digits of a number below 100. */
inline void writePair(char* out, std::uint32_t number) { std::memcpy(out, digitPairs + 2 * number, 2); }

/** Writes a number below 10^8 as eight digits. */
inline void writeEightDigits(char* out, std::uint32_t number)
{
    const std::uint32_t high = number / 10000;
    const std::uint32_t low = number % 10000;
    writePair(out, high / 100);
    writePair(out + 2, high % 100);
    writePair(out + 4, low / 100);
    writePair(out + 6, low % 100);
}

/** Writes a number as so many digits, which are enough for it. @return the end. */
inline char* writeDigits(char* out, std::uint64_t number, int count)
{
    char* const end = out + count;
    for (; count >= 8; number /= 100000000u) writeEightDigits(out + (count -= 8), static_cast<std::uint32_t>(number % 100000000u));
    auto rest = static_cast<std::uint32_t>(number);
    for (; count >= 2; rest /= 100) writePair(out + (count -= 2), rest % 100);
    if (count == 1) *out = static_cast<char>('0' + rest);
    return end;
}

/** A number scaled by 2^-shift, 0 < shift < 128: whole part, and what is left compared with one half. */
struct Scaled {
    std::uint64_t whole;
    bool halfOrMore;
    bool exactlyHalf;
};

inline Scaled scaleByPowerOfTwo(Wide number, int shift)
{
    if (shift > 64) {
        const int rest = shift - 64;
        const std::uint64_t half = std::uint64_t{1} << (rest - 1);
        const std::uint64_t remainder = rest == 64 ? number.high : number.high & ((half << 1) - 1);
        return {rest == 64 ? 0 : number.high >> rest, remainder >= half, remainder == half && number.low == 0};
    }
    const std::uint64_t half = std::uint64_t{1} << (shift - 1);
    if (shift == 64) return {number.high, number.low >= half, number.low == half};
    const std::uint64_t remainder = number.low & ((half << 1) - 1);
    return {(number.high << (64 - shift)) | (number.low >> shift), remainder >= half, remainder == half};
}

/**
 * Writes a number as std::to_chars does in fixed notation, rounded to even.
 * @param out room for longestFixedText characters.
 * @param decimals 0 ... mostFixedDecimals.
 * @return the end of the text; nullptr, and nothing written, for a number that is not finite or not below 2^63.
 */
inline char* writeFixed(char* out, double value, int decimals)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    const int field = static_cast<int>((bits >> 52) & 0x7FF);
    std::uint64_t significand = bits & ((std::uint64_t{1} << 52) - 1);
    if (field != 0) significand |= std::uint64_t{1} << 52;
    const int exponent = field == 0 ? -1074 : field - 1075;  // the number is significand 2^exponent
    if (exponent > 10) return nullptr;

    const std::uint64_t power = powersOfTen[static_cast<std::size_t>(decimals)];
    std::uint64_t whole = 0;
    std::uint64_t fraction = 0;  // in units of 10^-decimals
    if (exponent >= 0) {
        whole = significand << exponent;
    } else {
        const int shift = -exponent;
        std::uint64_t rest = significand;
        if (shift < 53) {
            whole = significand >> shift;
            rest = significand & ((std::uint64_t{1} << shift) - 1);
        }
        if (shift < 118) {  // else rest 10^decimals < 2^117 is less than a half
            const Scaled scaled = scaleByPowerOfTwo(product(rest, power), shift);
            fraction = scaled.whole;
            const auto lastIsOdd = static_cast<unsigned>((decimals == 0 ? whole : fraction) & 1);
            const auto roundsTies = static_cast<unsigned>(!scaled.exactlyHalf) | lastIsOdd;
            fraction += static_cast<unsigned>(scaled.halfOrMore) & roundsTies;  // no branch: half of all numbers would take it
            if (fraction == power) {
                fraction = 0;
                ++whole;
            }
        }
    }
    if ((bits >> 63) != 0) *out++ = '-';
    out = std::to_chars(out, out + 20, whole).ptr;
    if (decimals == 0) return out;
    *out++ = '.';
    return writeDigits(out, fraction, decimals);
}

}  // namespace wq_lib::detail

#endif
