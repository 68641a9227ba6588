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

// Gives a class its pages, of which the first has number `first` and stands at offset `start` of the region.
void SetUp(PageSet& set, const SizeClass& row, std::size_t first, std::size_t start)
{
    set.blockSize = row.blockSize;
    set.blocksPerPage = row.blocksPerPage;
    set.pages.first = state.pageOrder + first;
    set.pages.count = row.pages;
    for (unsigned int i = 0; i < row.pages; ++i) {
        HeapPage& page = state.pages[first + i];
        Clear(page, reinterpret_cast<void*>(state.region + start + i * PageBytes(row)));
        page.number = i;
        page.owner = &set;
        page.isAlone = i == 0;
        set.pages.first[i] = &page;
    }
    set.current = set.pages.first[0];
}

// A class whose first page is alone takes from it and has used no other one.
bool IsValidClass(const PageSet& set)
{
    if (!fixedheap::IsValid(set))
        return false;
    if (set.pages.count == 0 || !static_cast<const HeapPage*>(set.pages.first[0])->isAlone)
        return true;
    return set.current == set.pages.first[0] &&
           std::all_of(set.pages.begin() + 1, set.pages.end(),
                       [](const Page* page) { return page->untouched == page->memory; });
}

}  // namespace

// The few pages of a class are searched from the first one: releasing takes no note of the first open page.

void* AllocateUncommon(std::size_t size)
{
    PageSet& set = ClassOf(size);
    if (set.pages.count == 0)
        return std::malloc(size);
    Page* const page = CurrentPage(set);
    set.firstOpen = 0;
    if (page != set.pages.first[0])
        static_cast<HeapPage*>(set.pages.first[0])->isAlone = false;
    return page != nullptr ? Pop(set, *page) : std::malloc(size);
}

void ReleaseUncommon(Page& page, Block* block)
{
    PageSet& set = *page.owner;
    if (page.usedCount > 1) {
        Push(page, block);
        set.current = &page;
    } else if (page.usedCount == 1) {
        PutBack(set, page, block);
        CurrentPage(set);
        set.firstOpen = 0;
    }
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
    return std::all_of(std::begin(state.classes), std::end(state.classes), IsValidClass);
}

void Reset()
{
    if (IsVxHeapEnabled())
        std::free(reinterpret_cast<void*>(state.region));
    state = State();
}

}  // namespace vxheap

void InitVxHeap()
{
    using namespace vxheap;
    if (IsVxHeapEnabled() || IsSwitchedOff())
        return;
    void* const region = std::calloc(RegionSize, 1);
    if (region == nullptr)
        return ReportExhaustedMemory();
    state.region = reinterpret_cast<std::uintptr_t>(region);
    std::size_t first = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i < ClassCount; ++i) {
        const SizeClass& row = sizeClasses[i];
        SetUp(state.classes[i], row, first, start);
        first += row.pages;
        start += row.pages * PageBytes(row);
    }
}

bool IsVxHeapEnabled()
{
    return vxheap::state.region != vxheap::NoRegion;
}

// The common path of VxMalloc, and that of VxFree, fits one line of the instruction cache.
[[gnu::aligned(64)]] void* VxMalloc(std::size_t size)
{
    return vxheap::Allocate(size);
}

void* VxRealloc(void* block, std::size_t size)
{
    const std::size_t offset = vxheap::RegionOffset(block);
    if (offset >= vxheap::RegionSize)
        return std::realloc(block, size);
    const PageSet& own = *vxheap::PageAt(offset).owner;
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

[[gnu::aligned(64)]] void VxFree(void* block)
{
    vxheap::Release(block);
}
