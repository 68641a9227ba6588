// The block heap of the process, for inlining where memory is taken and released: a few instructions on the common
// path, the rest out of line.
#pragma once

#include "VFixedHeap/PageSet.h"
#include "VFixedHeap/SizeClasses.h"

#include <array>
#include <cstdint>
#include <cstdlib>

namespace vxheap {

// What every block needs stands on cache lines of its own.
struct alignas(64) HeapPage : fixedheap::Page
{
    // Set for the first page of a class until it was full when a block was wanted. As long as it is set, it stays the
    // current page whatever is released, so that releasing a block is no more than a push.
    bool isAlone;
};

struct alignas(64) ClassPages : fixedheap::PageSet
{};

// The base of the region while there is none: no pointer lies less than RegionSize above it.
inline constexpr std::uintptr_t NoRegion = std::uintptr_t{1} << 63;

// While the heap is off no address lies in the region and no class has a page, so the common paths need not ask.
struct State
{
    std::uintptr_t region = NoRegion;
    ClassPages classes[ClassCount + 1];  // the last one, of sizes that no class holds, never has a page
    HeapPage pages[PageCount] = {};
    fixedheap::Page* pageOrder[PageCount] = {};
};

extern constinit State state;

// The pages for each size up to LargestBlock, in grains.
inline constexpr auto setOfGrains = [] {
    std::array<fixedheap::PageSet*, classOfGrains.size()> sets{};
    for (std::size_t grains = 0; grains < sets.size(); ++grains)
        sets[grains] = &state.classes[classOfGrains[grains]];
    return sets;
}();

// The page that each step of the region belongs to.
inline constexpr auto recordOfStep = [] {
    std::array<HeapPage*, RegionSize / StepBytes> records{};
    for (std::size_t step = 0; step < records.size(); ++step)
        records[step] = &state.pages[pageOfStep[step]];
    return records;
}();

[[gnu::noinline]] void* AllocateUncommon(std::size_t size);
[[gnu::noinline]] void ReleaseUncommon(fixedheap::Page& page, fixedheap::Block* block);

inline fixedheap::PageSet& ClassOf(std::size_t size)
{
    return size <= LargestBlock ? *setOfGrains[GrainsOf(size)] : state.classes[NoClass];
}

// The offset of an address in the region; RegionSize or more for an address outside.
inline std::size_t RegionOffset(const void* address)
{
    return reinterpret_cast<std::uintptr_t>(address) - state.region;
}

// The page of an offset below RegionSize.
inline HeapPage& PageAt(std::size_t offset)
{
    return *recordOfStep[StepOf(offset)];
}

// What VxMalloc does.
inline void* Allocate(std::size_t size)
{
    if (size > LargestBlock)
        return std::malloc(size);
    fixedheap::Page& page = *setOfGrains[GrainsOf(size)]->current;
    if (!fixedheap::HasLinkedBlock(page)) [[unlikely]]
        return AllocateUncommon(size);
    return fixedheap::PopLinked(page);
}

// Gives back a block at an offset below RegionSize.
inline void ReleaseAt(std::size_t offset, void* block)
{
    HeapPage& page = PageAt(offset);
    if (!page.isAlone) [[unlikely]]
        return ReleaseUncommon(page, static_cast<fixedheap::Block*>(block));
    fixedheap::Push(page, static_cast<fixedheap::Block*>(block));
}

// What VxFree does.
inline void Release(void* block)
{
    const std::size_t offset = RegionOffset(block);
    if (offset >= RegionSize)
        return std::free(block);
    ReleaseAt(offset, block);
}

// ---- For tests -----------------------------------------------------------------------------------------------------

// Blocks in use, over all classes.
std::size_t UsedBlocks();

// Whether all eight classes are consistent, each with its pages and its part of the region.
bool IsValid();

// Frees the region, blocks in use or not, and switches the heap off.
void Reset();

}  // namespace vxheap
