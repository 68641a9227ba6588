#include "VFixedHeap/VxHeap.h"

#include <basutl/BuVariable.h>

#include <algorithm>
#include <cstring>

using namespace fixedheap;

namespace vxheap {

constinit State state;

namespace {

bool IsSwitchedOff()
{
    static const bool switchedOff =
        BuVariableGetBoolean("DISABLE_VX_HEAP", false) || BuVariableGetBoolean("QD_DVP_DEBUG_VERSION", false);
    return switchedOff;
}

// Gives a class its pages, which start with page `first` at `memory`.
void SetUp(PageSet& set, const SizeClass& row, std::size_t first, char* memory)
{
    set.blockSize = row.blockSize;
    set.blocksPerPage = row.blocksPerPage;
    set.pageCount = row.pages;
    set.pages = state.pageOrder + first;
    for (unsigned int i = 0; i < row.pages; ++i) {
        Page& page = state.pages[first + i];
        Clear(page, memory + std::size_t{i} * row.blockSize * row.blocksPerPage);
        page.number = i;
        page.owner = &set;
        set.pages[i] = &page;
    }
    set.current = set.pages[0];
}

}  // namespace

void* AllocateUncommon(std::size_t size)
{
    PageSet& set = ClassOf(size);
    if (Page* const page = CurrentPage(set))
        return Pop(set, *page);
    return std::malloc(size);
}

void ReleaseUncommon(Page& page, Block* block)
{
    if (page.usedCount != 0)
        PutBack(*page.owner, page, block);
}

std::size_t UsedBlocks()
{
    std::size_t count = 0;
    for (const Page& page : state.pages)
        count += page.usedCount;
    return count;
}

bool IsValid()
{
    return std::all_of(std::begin(state.classes), std::end(state.classes),
                       [](const PageSet& set) { return fixedheap::IsValid(set); });
}

void Reset()
{
    std::free(reinterpret_cast<void*>(state.region));
    state = State();
}

}  // namespace vxheap

void InitVxHeap()
{
    using namespace vxheap;
    if (IsVxHeapEnabled() || IsSwitchedOff())
        return;
    char* memory = static_cast<char*>(std::calloc(RegionSize, 1));
    if (memory == nullptr)
        return ReportExhaustedMemory();
    state.region = reinterpret_cast<std::uintptr_t>(memory);
    state.regionSize = RegionSize;
    std::size_t page = 0;
    for (std::size_t i = 0; i < ClassCount; ++i) {
        const SizeClass& row = sizeClasses[i];
        SetUp(state.classes[i], row, page, memory);
        memory += std::size_t{row.pages} * row.blockSize * row.blocksPerPage;
        page += row.pages;
    }
}

bool IsVxHeapEnabled()
{
    return vxheap::state.regionSize != 0;
}

void* VxMalloc(std::size_t size)
{
    return vxheap::Allocate(size);
}

void* VxRealloc(void* block, std::size_t size)
{
    const std::size_t offset = vxheap::RegionOffset(block);
    if (offset >= vxheap::state.regionSize)
        return std::realloc(block, size);
    const PageSet& own = *vxheap::state.pages[vxheap::PageOfOffset(offset)].owner;
    if (&vxheap::ClassOf(size) == &own)
        return block;
    if (size == 0) {
        vxheap::Release(block);
        return nullptr;
    }
    void* const moved = vxheap::Allocate(size);
    if (moved == nullptr)
        return nullptr;
    const std::size_t kept = std::min<std::size_t>(size, own.blockSize);
    std::memcpy(moved, block, kept);
    std::memset(static_cast<char*>(moved) + kept, 0, size - kept);
    vxheap::Release(block);
    return moved;
}

void VxFree(void* block)
{
    vxheap::Release(block);
}
