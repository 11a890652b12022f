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

/** Digits with at most one point among them: digits / 10^decimals, and its negative where a minus stands before. */
struct PlainDecimal {
    std::uint64_t digits = 0;  // wraps where there are more than mostPlainDigits
    std::ptrdiff_t count = 0;  // of digits, leading zeros included
    std::ptrdiff_t decimals = 0;
    bool minus = false;
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

/** Eight characters, the first one lowest. */
struct EightScanned {
    explicit EightScanned(const char* text) : values(eightCharacters(text) ^ 0x3030303030303030u) {}

    /**
     * The highest bit of the byte of each that is no digit, by a sum that carries into it (Lamport, "Multiple byte processing with
     * full-word instructions", 1975).
     */
    std::uint64_t others() const { return ((values + 0x7676767676767676u) | values) & 0x8080808080808080u; }

    std::uint64_t values;  // a digit as its value
};

/** @param others some. @return eight times the number of characters before the first of them. */
inline unsigned bitsBefore(std::uint64_t others)
{
#ifdef __GNUC__
    return static_cast<unsigned>(__builtin_ctzll(others)) & ~7u;
#else
    const std::uint64_t upToIt = (others ^ (others - 1)) & 0x0101010101010101u;
    return 8 * (static_cast<unsigned>((upToIt * 0x0101010101010101u) >> 56) - 1);
#endif
}

/** The condition, decided by a jump: the processor foresees it, and goes on to the next number before this one is known. */
inline bool byAJump(bool condition)
{
#ifdef __GNUC__
    return __builtin_expect(condition ? 1 : 0, 0) != 0;
#else
    return condition;
#endif
}

/** Takes digits off the text as long as there are any, appending them to the number. @return the end of the digits. */
inline const char* takeDigits(const char* text, std::uint64_t& number)
{
    EightScanned eight(text);
    while (eight.others() == 0) {
        number = number * 100000000u + numberOfEight(eight.values);
        text += 8;
        eight = EightScanned(text);
    }
    std::uint64_t values = eight.values;
    std::uint64_t others = eight.others();
    if ((others & 0x80808080u) == 0) {
        number = number * 10000u + numberOfFour(values);
        text += 4;
        values >>= 32;
        others >>= 32;
    }
    if (byAJump((others & 0x80u) != 0)) return text;
    if (byAJump((others & 0x8000u) != 0)) {
        number = number * 10u + (values & 0xFFu);
        return text + 1;
    }
    if (byAJump((others & 0x800000u) != 0)) {
        number = number * 100u + (values & 0xFFu) * 10u + ((values >> 8) & 0xFFu);
        return text + 2;
    }
    number = number * 1000u + numberOfFour(values << 8);
    return text + 3;
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

/** The same with a minus before it or none. */
inline PlainDecimal scanSignedDecimal(const char* text)
{
    const bool minus = *text == '-';
    PlainDecimal result = scanPlainDecimal(minus ? text + 1 : text);
    result.minus = minus;
    return result;
}

/**
 * The same for up to seven characters behind the sign with a point among them, and no jump that depends on where it stands: lengths that
 * vary are hard to foresee.
 * @return no digits at all for any other text.
 */
inline PlainDecimal scanShortDecimal(const char* text)
{
    const EightScanned first(text);
    const bool minus = (first.values & 0xFFu) == ('-' ^ '0');  // of what is loaded already
    const EightScanned eight = minus ? EightScanned(text + 1) : first;
    const std::uint64_t others = eight.others();
    const std::uint64_t behind = others & (others - 1);
    PlainDecimal result;
    if (behind == 0) return result;
    const unsigned whole = bitsBefore(others);
    const unsigned all = bitsBefore(behind);
    if (((eight.values >> whole) & 0xFFu) != ('.' ^ '0') || all == 8) return result;
    const std::uint64_t beforePoint = (std::uint64_t{1} << whole) - 1;
    const std::uint64_t joined = (eight.values & beforePoint) | ((eight.values >> 8) & ~beforePoint);
    result.digits = numberOfEight(joined << (64 + 8 - all));  // with zeros before
    result.count = all / 8 - 1;
    result.decimals = result.count - whole / 8;
    result.end = text + (minus ? 1 : 0) + all / 8;
    result.minus = minus;
    return result;
}

/**
 * The nearest double, ties to even: exact operands up to 2^53 (Clinger, "How to read floating point numbers accurately", 1990), beyond that
 * the product with a reciprocal cut to 64 bits, where its error cannot matter (Lemire, "Number parsing at a gigabyte per second", 2021).
 * @param number convertible.
 * @return false for about one number of sixteen digits and more in five hundred, which a product of 128 bits leaves undecided, and for
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

    // In units of 2^(64 - leadingZeros - exponent) the quotient lies in [high, high + 2); in half of them, where that brings the highest
    // bit to the top, in [high, high + 4).
    std::uint64_t high = product(number.digits << leadingZeros, reciprocal.factor).high;
    const int moved = (high >> 63) != 0 ? 0 : 1;
    high <<= moved;
    constexpr int surplus = 11;  // bits beyond the 53 of a double
    constexpr std::uint64_t half = std::uint64_t{1} << (surplus - 1);
    const std::uint64_t rest = high & (2 * half - 1);
    if (rest > half - 4 && rest <= half) return false;
    const std::uint64_t significand = (high >> surplus) + (rest > half ? 1 : 0);  // 2^52 ... 2^53
    const int exponent = 64 - leadingZeros - reciprocal.exponent - moved + surplus;
    const std::uint64_t bits = (static_cast<std::uint64_t>(exponent + 1023 + 52 - 1) << 52) + significand;
    std::memcpy(&value, &bits, sizeof value);
    return true;
}

}  // namespace wq_lib::detail

#endif
