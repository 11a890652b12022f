// The indices from dataStart to dataEnd (inclusive) that are really stored.
#ifndef WQ_STAT_DETAIL_STORED_RANGE_H
#define WQ_STAT_DETAIL_STORED_RANGE_H

#include <algorithm>
#include <cstddef>

namespace wq_lib::detail {

/** Half-open range of indices. */
struct StoredRange {
    std::size_t begin;
    std::size_t end;
};

/** @return first ... last (inclusive), cut to what is stored; no index when last < first. An end of 2^64 - 1 does not wrap. */
inline StoredRange storedRange(std::size_t first, std::size_t last, std::size_t stored)
{
    const std::size_t end = last < stored ? last + 1 : stored;
    return {std::min(first, end), end};
}

}  // namespace wq_lib::detail

#endif
