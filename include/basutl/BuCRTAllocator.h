// Memory for basutl's containers, straight from the C runtime: nothing of it is tracked or counted.
#pragma once

#include <cstddef>
#include <cstdlib>

struct BuCRTAllocator
{
    static void* Allocate(std::size_t size) noexcept { return std::malloc(size); }  // null when exhausted
    static void Release(void* block) noexcept { std::free(block); }                 // null does nothing
};
