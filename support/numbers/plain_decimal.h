// Plain decimals such as 12.75 to doubles: eight digits at a time, exactly rounded without a general conversion.
#ifndef WQ_NUMBERS_PLAIN_DECIMAL_H
#define WQ_NUMBERS_PLAIN_DECIMAL_H

#include "powers_of_ten.h"
#include "wide_product.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace wq_lib::detail {

constexpr int mostPlainDigits = mostZeros;
constexpr std::size_t plainDecimalSlack = 8;  // characters behind a text that scanning it may read

/** Digits with at most one point among them: digits / 10^decimals. */
struct PlainDecimal {
    std::uint64_t digits = 0;  // wraps where there are more than mostPlainDigits
    std::ptrdiff_t count = 0;  // of digits, leading zeros included
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

/**
 * The number that eight decimal digits make, each in a byte of its own, the first one lowest: neighbours become pairs, and two products add
 * up the pairs with their weights. Source: Lemire, "Number parsing at a gigabyte per second" (2021).
 */
inline std::uint64_t numberOfEight(std::uint64_t digits)
{
    const std::uint64_t pairs = digits * 10 + (digits >> 8);
    constexpr std::uint64_t everyOtherPair = 0x000000FF000000FFu;
    constexpr std::uint64_t weights1 = 100 + (std::uint64_t{1000000} << 32);
    constexpr std::uint64_t weights2 = 1 + (std::uint64_t{10000} << 32);
    return ((pairs & everyOtherPair) * weights1 + ((pairs >> 16) & everyOtherPair) * weights2) >> 32;
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
        // The highest bit of every byte above 9, by a sum that carries into it (Lamport, "Multiple byte processing with full-word
        // instructions", 1975).
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
    // One by one: the processor predicts the length, and so goes on to the next number before this one is known.
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
 * The nearest double, ties to even: exact operands up to 2^53 (Clinger, "How to read floating point numbers accurately", 1990), beyond that
 * the product with a reciprocal cut to 64 bits, where its error cannot matter (Lemire, "Number parsing at a gigabyte per second", 2021).
 * @param number convertible.
 * @return false for about one number of sixteen digits and more in a thousand, which a product of 128 bits leaves undecided, and for
 *         those in the middle between two doubles.
 */
inline bool nearestDouble(const PlainDecimal& number, double& value)
{
    static constexpr auto powers = forPowersOfTen([](std::uint64_t power) { return static_cast<double>(power); });  // exact up to 10^22
    const auto decimals = static_cast<std::size_t>(number.decimals);
    constexpr std::uint64_t exactIntegers = std::uint64_t{1} << 53;
    if (number.digits <= exactIntegers) {  // both operands are exact, so that the quotient is rounded once, as it must be
        value = static_cast<double>(static_cast<std::int64_t>(number.digits)) / powers[decimals];
        return true;
    }

    static constexpr auto reciprocals = forPowersOfTen(reciprocalOf);
    const Reciprocal reciprocal = reciprocals[decimals];

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
