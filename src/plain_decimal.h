// Plain decimals such as 12.75 to doubles: eight digits at a time, exactly rounded without a general conversion.
#ifndef WQ_STAT_SRC_PLAIN_DECIMAL_H
#define WQ_STAT_SRC_PLAIN_DECIMAL_H

#include "wide_product.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace wq_lib::detail {

constexpr int mostPlainDigits = 19;           // 10^19 is below 2^64
constexpr std::size_t plainDecimalSlack = 8;  // characters behind a text that scanning it may read

/** Digits with at most one point among them: digits / 10^decimals. */
struct PlainDecimal {
    std::uint64_t digits = 0;   // wraps where there are more than mostPlainDigits
    std::ptrdiff_t count = 0;   // of digits, leading zeros included
    std::ptrdiff_t decimals = 0;
    const char* end = nullptr;  // behind the last character that belongs to it

    bool isConvertible() const { return count >= 1 && count <= mostPlainDigits; }
};

/** Eight characters as a number, the first one lowest, on every processor. */
inline std::uint64_t eightCharacters(const char* text)
{
    const auto byte = [text](int i) { return static_cast<std::uint64_t>(static_cast<unsigned char>(text[i])) << (8 * i); };
    return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
}

/** The number that eight decimal digits make, each in a byte of its own, the first one lowest. */
inline std::uint64_t numberOfEight(std::uint64_t digits)
{
    const std::uint64_t pairs = digits * 10 + (digits >> 8);
    constexpr std::uint64_t everyOtherPair = 0x000000FF000000FFu;
    return ((pairs & everyOtherPair) * 0x000F424000000064u + ((pairs >> 16) & everyOtherPair) * 0x0000271000000001u) >> 32;
}

/** The same of four digits, whatever follows them. */
inline std::uint64_t numberOfFour(std::uint64_t digits)
{
    const std::uint64_t pairs = digits * 10 + (digits >> 8);
    return (pairs & 0xFFu) * 100 + ((pairs >> 16) & 0xFFu);
}

/** Takes digits off the text as long as there are any, appending them to the number. @return the end of the digits. */
inline const char* takeDigits(const char* text, std::uint64_t& number)
{
    for (;; text += 8) {
        const std::uint64_t values = eightCharacters(text) ^ 0x3030303030303030u;  // a digit becomes its value
        const std::uint64_t others = ((values + 0x7676767676767676u) | values) & 0x8080808080808080u;
        if (others == 0) {
            number = number * 100000000u + numberOfEight(values);
            continue;
        }
        if ((others & 0xFFFFFFFFu) == 0) {
            number = number * 10000u + numberOfFour(values);
            text += 4;
        }
        break;
    }
    // One by one: the processor guesses the length, and so goes on to the next number before this one is known.
    for (; *text >= '0' && *text <= '9'; ++text) number = number * 10 + static_cast<std::uint64_t>(*text - '0');
    return text;
}

/** @param text ends with a character that is neither a digit nor a point, with plainDecimalSlack readable characters from there. */
inline PlainDecimal scanPlainDecimal(const char* text)
{
    PlainDecimal result;
    result.end = takeDigits(text, result.digits);
    result.count = result.end - text;
    if (*result.end == '.') {
        const char* const fraction = result.end + 1;
        result.end = takeDigits(fraction, result.digits);
        result.decimals = result.end - fraction;
        result.count += result.decimals;
    }
    return result;
}

/**
 * The nearest double, ties to even.
 * @param number convertible.
 * @return false for about one number of sixteen digits and more in a thousand, which a product of 128 bits leaves undecided, and for
 *         those in the middle between two doubles.
 */
inline bool nearestDouble(const PlainDecimal& number, double& value)
{
    static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                        1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
    constexpr std::uint64_t exactIntegers = std::uint64_t{1} << 53;
    if (number.digits <= exactIntegers) {  // both operands are exact, so that the quotient is rounded once, as it must be
        value = static_cast<double>(static_cast<std::int64_t>(number.digits)) / powers[number.decimals];
        return true;
    }

    // 10^-decimals as factor 2^-exponent, the factor cut to 64 bits.
    struct Reciprocal {
        std::uint64_t factor;
        int exponent;
    };
    static constexpr Reciprocal reciprocals[] = {
        {0x8000000000000000u, 63}, {0xCCCCCCCCCCCCCCCCu, 67}, {0xA3D70A3D70A3D70Au, 70}, {0x83126E978D4FDF3Bu, 73},
        {0xD1B71758E219652Bu, 77}, {0xA7C5AC471B478423u, 80}, {0x8637BD05AF6C69B5u, 83}, {0xD6BF94D5E57A42BCu, 87},
        {0xABCC77118461CEFCu, 90}, {0x89705F4136B4A597u, 93}, {0xDBE6FECEBDEDD5BEu, 97}, {0xAFEBFF0BCB24AAFEu, 100},
        {0x8CBCCC096F5088CBu, 103}, {0xE12E13424BB40E13u, 107}, {0xB424DC35095CD80Fu, 110}, {0x901D7CF73AB0ACD9u, 113},
        {0xE69594BEC44DE15Bu, 117}, {0xB877AA3236A4B449u, 120}, {0x9392EE8E921D5D07u, 123}, {0xEC1E4A7DB69561A5u, 127},
    };
    const Reciprocal reciprocal = reciprocals[number.decimals];

    const double size = static_cast<double>(static_cast<std::int64_t>(number.digits >> 11));  // exact; its exponent tells the highest bit
    std::uint64_t sizeBits;
    std::memcpy(&sizeBits, &size, sizeof sizeBits);
    const int leadingZeros = 1023 + 52 - static_cast<int>(sizeBits >> 52);

    // The quotient in units of 2^(64 - leadingZeros - exponent) lies in [high, high + 2).
    const std::uint64_t high = product(number.digits << leadingZeros, reciprocal.factor).high;
    const int surplus = (high >> 63) != 0 ? 11 : 10;  // bits beyond the 53 of a double
    const std::uint64_t half = std::uint64_t{1} << (surplus - 1);
    const std::uint64_t rest = high & (2 * half - 1);
    if (rest == half - 1 || rest == half) return false;
    const std::uint64_t significand = (high >> surplus) + (rest > half ? 1 : 0);  // 2^52 ... 2^53
    const int exponent = 64 - leadingZeros - reciprocal.exponent + surplus;
    const std::uint64_t bits = (static_cast<std::uint64_t>(exponent + 1023 + 52 - 1) << 52) + significand;
    std::memcpy(&value, &bits, sizeof value);
    return true;
}

}  // namespace wq_lib::detail

#endif
