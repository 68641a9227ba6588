// The memory of one decoding. The decoder asks for blocks without saying for which decoding, and neither gives all of them
// back after a failure nor looks at every one that it could not get. So the blocks are kept here: a block that cannot be
// had ends the decoding by an exception, and what is left at the end is given back.
//
//   DecoderBlocks blocks;             // from now on those of this thread
//   void* const pixels = Decode();    // calls Allocate, Resize and Free
//   blocks.GiveAway(pixels);          // outlives the blocks
#pragma once

#include "TuvoMemory/HeapArray.h"

#include <cstddef>

namespace image {

class DecoderBlocks
{
public:
    // One at a time in each thread. Throws std::bad_alloc.
    DecoderBlocks();
    ~DecoderBlocks();
    DecoderBlocks(const DecoderBlocks&) = delete;
    DecoderBlocks& operator=(const DecoderBlocks&) = delete;

    // For the blocks of this thread. Blocks are those of std::free, new ones all zero, so that nothing which was in memory
    // before shows in an image. The first two throw std::bad_alloc; Resize takes null too.
    static void* Allocate(std::size_t size);
    static void* Resize(void* block, std::size_t size);
    static void Free(void* block) noexcept;

    // Forgets a block; null does nothing.
    void GiveAway(const void* block) noexcept;

private:
    void*& PlaceOf(const void* block) noexcept;

    HeapArray<void*> m_blocks;  // few at a time; the last one made is mostly the first one freed
};

}  // namespace image
