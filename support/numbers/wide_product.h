// The whole product of two 64-bit numbers.
#ifndef WQ_NUMBERS_WIDE_PRODUCT_H
#define WQ_NUMBERS_WIDE_PRODUCT_H

#include <cstdint>

namespace wq_lib::detail {

/** high 2^64 + low */
struct Wide {
    std::uint64_t high;
    std::uint64_t low;
};

/** From four products of 32-bit halves (Knuth, The Art of Computer Programming 2, 4.3.1, algorithm M). */
inline Wide productOfHalves(std::uint64_t a, std::uint64_t b)
{
    const std::uint64_t aHigh = a >> 32, aLow = a & 0xFFFFFFFFu;
    const std::uint64_t bHigh = b >> 32, bLow = b & 0xFFFFFFFFu;
    const std::uint64_t low = aLow * bLow;
    const std::uint64_t middle1 = aHigh * bLow + (low >> 32);
    const std::uint64_t middle2 = aLow * bHigh + (middle1 & 0xFFFFFFFFu);
    return {aHigh * bHigh + (middle1 >> 32) + (middle2 >> 32), (middle2 << 32) | (low & 0xFFFFFFFFu)};
}

/** By the processor's own wide multiplication where the compiler offers it. */
inline Wide product(std::uint64_t a, std::uint64_t b)
{
#ifdef __SIZEOF_INT128__
    __extension__ using Integer128 = unsigned __int128;
    const Integer128 whole = static_cast<Integer128>(a) * b;
    return {static_cast<std::uint64_t>(whole >> 64), static_cast<std::uint64_t>(whole)};
#else
    return productOfHalves(a, b);
#endif
}

}  // namespace wq_lib::detail

#endif
