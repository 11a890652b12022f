#include "limited_memory.h"

#include <cstdlib>
#include <new>

std::size_t wq_fuzz::LimitedMemory::largestBlock = std::numeric_limits<std::size_t>::max();

// What these hand out is the sanitizer's memory, watched as ever.

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return size > wq_fuzz::LimitedMemory::largestBlock ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size)
{
    void* const block = operator new(size, std::nothrow);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
