// The block heap of the process, for inlining where memory is taken and released: a few instructions on the common path,
// the rest out of line.
#pragma once

#include "VFixedHeap/PageSet.h"
#include "VFixedHeap/SizeClasses.h"

#include <cstdint>
#include <cstdlib>

namespace vxheap {

// On a cache line of its own.
struct alignas(64) ClassPages : fixedheap::PageSet
{};

// While the heap is off no address lies in the region and no class has a page, so the common paths need not ask.
struct State
{
    std::uintptr_t region = 0;
    std::size_t regionSize = 0;
    ClassPages classes[ClassCount + 1];  // the last one, of sizes that no class holds, never has a page
    fixedheap::Page pages[PageCount] = {};
    fixedheap::Page* pageOrder[PageCount] = {};
};

extern constinit State state;

void* AllocateUncommon(std::size_t size);
void ReleaseUncommon(fixedheap::Page& page, fixedheap::Block* block);

inline fixedheap::PageSet& ClassOf(std::size_t size)
{
    return state.classes[size <= LargestBlock ? classOfSize[size] : NoClass];
}

// The offset of an address in the region; state.regionSize or more for an address outside.
inline std::size_t RegionOffset(const void* address)
{
    return reinterpret_cast<std::uintptr_t>(address) - state.region;
}

// Whether the released block only has to be pushed, and its page to become the current one: the page was not full, and
// does not become empty or is the one that would be chosen then.
inline bool IsPlainRelease(const fixedheap::Page& page)
{
    const fixedheap::PageSet& set = *page.owner;
    return page.freeList != nullptr &&
           (page.usedCount > 1 || (page.usedCount == 1 && set.current == &page && set.pages[set.firstOpen] == &page));
}

// What VxMalloc does.
inline void* Allocate(std::size_t size)
{
    if (size > LargestBlock)
        return std::malloc(size);
    fixedheap::Page& page = *state.classes[classOfSize[size]].current;
    if (!fixedheap::HasLinkedBlock(page)) [[unlikely]]
        return AllocateUncommon(size);
    return fixedheap::PopLinked(page);
}

// What VxFree does.
inline void Release(void* block)
{
    const std::size_t offset = RegionOffset(block);
    if (offset >= state.regionSize)
        return std::free(block);
    fixedheap::Page& page = state.pages[PageOfOffset(offset)];
    if (!IsPlainRelease(page)) [[unlikely]]
        return ReleaseUncommon(page, static_cast<fixedheap::Block*>(block));
    fixedheap::Push(page, static_cast<fixedheap::Block*>(block));
    page.owner->current = &page;
}

// ---- For tests -----------------------------------------------------------------------------------------------------

// Blocks in use, over all classes.
std::size_t UsedBlocks();

// Whether all eight classes are consistent, each with its pages and its part of the region.
bool IsValid();

// Frees the region, blocks in use or not, and switches the heap off.
void Reset();

}  // namespace vxheap
