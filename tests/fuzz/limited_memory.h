// While an object of this class lives, a block of memory that is too large is refused with std::bad_alloc, as by a machine that has no
// more. The sanitizer's own operator new would end the program there.
#pragma once

#include <cstddef>
#include <limits>

namespace wq_fuzz {

class LimitedMemory {
public:
    LimitedMemory() { largestBlock = std::size_t{16} << 20; }
    ~LimitedMemory() { largestBlock = std::numeric_limits<std::size_t>::max(); }
    LimitedMemory(const LimitedMemory&) = delete;
    LimitedMemory& operator=(const LimitedMemory&) = delete;

    static std::size_t largestBlock;
};

}  // namespace wq_fuzz
