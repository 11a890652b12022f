// Where some characters stand among sixty-four: a bit each.
#pragma once

#include "numbers/plain_decimal.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

#if defined __SSE2__ && !defined WQSTAT_WITHOUT_VECTORS
#  define WQSTAT_WITH_SSE2
#  include <emmintrin.h>
#endif

namespace wqstat {

constexpr std::size_t charactersMarked = 64;

/** Sixty-four characters, loaded once and compared with others. */
class CharacterMarks {
public:
    /** @param text at least charactersMarked characters. */
    explicit CharacterMarks(const char* text);

    /** Bit i is set where character i is one of those wanted. */
    template <typename... Characters>
    std::uint64_t ofAny(Characters... wanted) const;

private:
#ifdef WQSTAT_WITH_SSE2
    __m128i parts[4];
#else
    std::uint64_t parts[8];
#endif
};

inline CharacterMarks::CharacterMarks(const char* text)
{
#ifdef WQSTAT_WITH_SSE2
    std::memcpy(parts, text, sizeof parts);
#else
    for (std::size_t i = 0; i < std::size(parts); ++i) parts[i] = wq_lib::detail::eightCharacters(text + 8 * i);
#endif
}

#ifdef WQSTAT_WITH_SSE2

template <typename... Characters>
inline std::uint64_t CharacterMarks::ofAny(Characters... wanted) const
{
    const auto bits = [&](int i) {
        const int marks = _mm_movemask_epi8((... | _mm_cmpeq_epi8(parts[i], _mm_set1_epi8(wanted))));
        return static_cast<std::uint64_t>(static_cast<unsigned>(marks)) << (16 * i);
    };
    return bits(0) | bits(1) | bits(2) | bits(3);
}

#else

/** The highest bit of every byte that is 0, and no other (Lamport, "Multiple byte processing with full-word instructions", 1975). */
inline std::uint64_t zeroBytes(std::uint64_t bytes)
{
    constexpr std::uint64_t lowBits = 0x7f7f7f7f7f7f7f7fu;
    return ~(((bytes & lowBits) + lowBits) | bytes | lowBits);
}

template <typename... Characters>
inline std::uint64_t CharacterMarks::ofAny(Characters... wanted) const
{
    constexpr std::uint64_t everyByte = 0x0101010101010101u;
    constexpr std::uint64_t gather = 0x0102040810204080u;  // the product brings the lowest bits of the bytes together in the highest byte
    std::uint64_t marks = 0;
    for (std::size_t i = 0; i < std::size(parts); ++i) {
        const std::uint64_t found = (... | zeroBytes(parts[i] ^ (everyByte * static_cast<unsigned char>(wanted))));
        marks |= ((found >> 7) * gather >> 56) << (8 * i);
    }
    return marks;
}

#endif

}  // namespace wqstat
