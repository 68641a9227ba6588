#include "VFixedHeap/PageSet.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace fixedheap {

namespace {

constexpr unsigned int PageArrayStep = 25;
constexpr unsigned int LinkedAheadBytes = 4096;  // links are written for about this much memory at a time

std::uintptr_t AddressOf(const void* pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

Block* BlockAt(const PageSet& set, const Page& page, std::size_t index)
{
    return reinterpret_cast<Block*>(static_cast<char*>(page.memory) + index * set.blockSize);
}

void LinkUntouched(const PageSet& set, Page& page)
{
    Block* const last = BlockAt(set, page, set.blocksPerPage - 1);
    Block* block = page.untouched;
    for (unsigned int bytes = 0; bytes < LinkedAheadBytes && block != nullptr; bytes += set.blockSize) {
        block->next =
            block == last ? nullptr : reinterpret_cast<Block*>(reinterpret_cast<char*>(block) + set.blockSize);
        block = block->next;
    }
    page.untouched = block;
}

unsigned int IndexOf(const PageSet& set, const Page& page)
{
    Page** const end = set.pages + set.pageCount;
    Page** const place =
        std::lower_bound(set.pages, end, page.number,
                         [](const Page* other, unsigned long long number) { return other->number < number; });
    return static_cast<unsigned int>(place - set.pages);
}

// The place in the index by address of the first page that starts behind an address.
Page** FirstBehind(const PageSet& set, const void* address)
{
    return std::upper_bound(set.byAddress, set.byAddress + set.pageCount, AddressOf(address),
                            [](std::uintptr_t sought, const Page* page) { return sought < AddressOf(page->memory); });
}

bool MakeRoom(Page**& array, unsigned int count)
{
    void* const larger = std::realloc(array, (std::size_t{count} + PageArrayStep) * sizeof(Page*));
    if (larger != nullptr)
        array = static_cast<Page**>(larger);
    return larger != nullptr;
}

// Whether the free list holds each of the blocks that are neither in use nor untouched, and ends where it has to.
bool IsValid(const PageSet& set, const Page& page)
{
    const std::uintptr_t start = AddressOf(page.memory);
    const std::uintptr_t end = AddressOf(BlockAt(set, page, set.blocksPerPage));
    const std::uintptr_t untouched = page.untouched != nullptr ? AddressOf(page.untouched) : end;
    std::size_t toVisit = (untouched - start) / set.blockSize - page.usedCount;
    const Block* block = page.freeList;
    for (; block != page.untouched && toVisit > 0; block = block->next, --toVisit)
        if (AddressOf(block) < start || AddressOf(block) >= untouched ||
            (AddressOf(block) - start) % set.blockSize != 0)
            return false;
    return block == page.untouched && toVisit == 0;
}

// Whether both arrays hold the same pages, each in its order.
bool IsOrdered(const PageSet& set)
{
    const auto byNumber = [](const Page* left, const Page* right) { return left->number < right->number; };
    const auto byAddress = [](const Page* left, const Page* right) { return left->memory < right->memory; };
    const auto isListed = [&set](const Page* page) {
        return page->owner == &set && set.pages[IndexOf(set, *page)] == page;
    };
    return std::is_sorted(set.pages, set.pages + set.pageCount, byNumber) &&
           (set.byAddress == nullptr || (std::is_sorted(set.byAddress, set.byAddress + set.pageCount, byAddress) &&
                                         std::all_of(set.byAddress, set.byAddress + set.pageCount, isListed)));
}

}  // namespace

void Clear(Page& page, void* memory)
{
    page.memory = memory;
    page.freeList = static_cast<Block*>(memory);
    page.untouched = page.freeList;
    page.usedCount = 0;
}

void* Pop(const PageSet& set, Page& page)
{
    if (!HasLinkedBlock(page))
        LinkUntouched(set, page);
    return PopLinked(page);
}

bool Holds(const PageSet& set, const Page& page, const Block* block)
{
    return page.memory != nullptr && AddressOf(block) >= AddressOf(page.memory) &&
           AddressOf(block) <= AddressOf(BlockAt(set, page, set.blocksPerPage - 1));
}

Page* CurrentPage(PageSet& set)
{
    if (set.current == &noPage)
        return nullptr;
    if (set.current->freeList != nullptr)
        return set.current;
    Page* const open = FirstOpenPage(set);
    set.current = open != nullptr ? open : &noPage;
    return open;
}

Page* FirstOpenPage(PageSet& set)
{
    while (set.firstOpen < set.pageCount && set.pages[set.firstOpen]->freeList == nullptr)
        ++set.firstOpen;
    return set.firstOpen < set.pageCount ? set.pages[set.firstOpen] : nullptr;
}

void PutBack(PageSet& set, Page& page, Block* block)
{
    const bool empties = page.usedCount == 1;
    const Page* const current = empties ? CurrentPage(set) : nullptr;
    if (page.freeList == nullptr)
        set.firstOpen = std::min(set.firstOpen, IndexOf(set, page));
    Push(page, block);
    if (!empties)
        set.current = &page;
    else if (current == nullptr || current == &page)
        set.current = FirstOpenPage(set);
}

bool Append(PageSet& set, Page& page)
{
    if (set.pageCount % PageArrayStep == 0 &&
        !(MakeRoom(set.pages, set.pageCount) && MakeRoom(set.byAddress, set.pageCount)))
        return false;
    Page** const place = FirstBehind(set, page.memory);
    std::copy_backward(place, set.byAddress + set.pageCount, set.byAddress + set.pageCount + 1);
    *place = &page;
    set.pages[set.pageCount++] = &page;
    page.number = set.made++;
    page.owner = &set;
    return true;
}

bool Remove(PageSet& set, Page& page)
{
    if (page.owner != &set)
        return false;
    const unsigned int index = IndexOf(set, page);
    std::copy(set.pages + index + 1, set.pages + set.pageCount, set.pages + index);
    Page** const place = std::find(std::lower_bound(set.byAddress, set.byAddress + set.pageCount, &page,
                                                    [](const Page* left, const Page* right) {
                                                        return AddressOf(left->memory) < AddressOf(right->memory);
                                                    }),
                                   set.byAddress + set.pageCount, &page);
    std::copy(place + 1, set.byAddress + set.pageCount, place);
    --set.pageCount;
    set.firstOpen -= index < set.firstOpen;
    if (set.current == &page)
        set.current = &noPage;
    page.owner = nullptr;
    return true;
}

Page* FindByAddress(const PageSet& set, const Block* block)
{
    if (Holds(set, *set.current, block))
        return set.current;
    Page** const behind = FirstBehind(set, block);
    return behind != set.byAddress && Holds(set, *behind[-1], block) ? behind[-1] : nullptr;
}

Page* FindByNumber(const PageSet& set, const Block* block)
{
    const std::size_t pageBytes = std::size_t{set.blockSize} * set.blocksPerPage;
    if (set.pageCount == 0 || pageBytes == 0 || AddressOf(block) < AddressOf(set.pages[0]->memory))
        return nullptr;
    const std::size_t number = (AddressOf(block) - AddressOf(set.pages[0]->memory)) / pageBytes;
    return number < set.pageCount && Holds(set, *set.pages[number], block) ? set.pages[number] : nullptr;
}

bool IsValid(const PageSet& set)
{
    bool currentIsKnown = set.current == &noPage;
    for (unsigned int i = 0; i < set.pageCount; ++i) {
        const Page& page = *set.pages[i];
        currentIsKnown = currentIsKnown || set.current == &page;
        if (page.owner != &set || !IsValid(set, page) || (i < set.firstOpen && page.freeList != nullptr))
            return false;
    }
    return currentIsKnown && set.firstOpen <= set.pageCount && set.owners > 0 && IsOrdered(set);
}

void ReportExhaustedMemory()
{
    std::fputs("Memory allocation Error <malloc>: Null returned\n", stderr);
}

}  // namespace fixedheap
