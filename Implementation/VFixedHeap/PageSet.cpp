#include "VFixedHeap/PageSet.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace fixedheap {

namespace {

constexpr unsigned int PageArrayStep = 25;       // pages that a page array grows by
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

// ---- PageArray -----------------------------------------------------------------------------------------------------

// Makes room for one more page at the end. False when memory is exhausted.
bool Reserve(PageArray& array)
{
    const auto before = static_cast<unsigned int>(array.first - array.storage);
    if (before + array.count < array.capacity)
        return true;
    if (before >= PageArrayStep) {
        std::copy(array.begin(), array.end(), array.storage);
        array.first = array.storage;
        return true;
    }
    void* const larger = std::realloc(array.storage, (std::size_t{array.capacity} + PageArrayStep) * sizeof(Page*));
    if (larger == nullptr)
        return false;
    array.storage = static_cast<Page**>(larger);
    array.first = array.storage + before;
    array.capacity += PageArrayStep;
    return true;
}

void Insert(PageArray& array, Page** place, Page& page)
{
    std::copy_backward(place, array.end(), array.end() + 1);
    *place = &page;
    ++array.count;
}

void Erase(PageArray& array, Page** place)
{
    if (place - array.begin() < array.end() - place)
        array.first = std::copy_backward(array.begin(), place, place + 1);
    else
        std::copy(place + 1, array.end(), place);
    --array.count;
}

// ---- Places --------------------------------------------------------------------------------------------------------

Page** PlaceByNumber(const PageSet& set, const Page& page)
{
    return std::lower_bound(set.pages.begin(), set.pages.end(), page.number,
                            [](const Page* other, unsigned long long number) { return other->number < number; });
}

// The first page that starts behind an address.
Page** PlaceBehind(const PageSet& set, const void* address)
{
    return std::upper_bound(set.byAddress.begin(), set.byAddress.end(), AddressOf(address),
                            [](std::uintptr_t sought, const Page* page) { return sought < AddressOf(page->memory); });
}

// Goes back from the last page of that address: nothing forbids to insert the same memory twice.
Page** PlaceByAddress(const PageSet& set, const Page& page)
{
    Page** place = PlaceBehind(set, page.memory);
    while (*--place != &page) {
    }
    return place;
}

// ---- Invariants ----------------------------------------------------------------------------------------------------

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
    const auto isListed = [&set](const Page* page) { return *PlaceByNumber(set, *page) == page; };
    return std::is_sorted(set.pages.begin(), set.pages.end(), byNumber) &&
           std::is_sorted(set.byAddress.begin(), set.byAddress.end(), byAddress) &&
           std::all_of(set.byAddress.begin(), set.byAddress.end(), isListed) &&
           (set.byAddress.count == set.pages.count || set.byAddress.storage == nullptr);
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
    while (set.firstOpen < set.pages.count && set.pages.first[set.firstOpen]->freeList == nullptr)
        ++set.firstOpen;
    return set.firstOpen < set.pages.count ? set.pages.first[set.firstOpen] : nullptr;
}

void PutBack(PageSet& set, Page& page, Block* block)
{
    const bool empties = page.usedCount == 1;
    const Page* const current = empties ? CurrentPage(set) : nullptr;
    if (page.freeList == nullptr)
        set.firstOpen =
            std::min(set.firstOpen, static_cast<unsigned int>(PlaceByNumber(set, page) - set.pages.begin()));
    Push(page, block);
    if (!empties)
        set.current = &page;
    else if (current == nullptr || current == &page)
        set.current = &soughtPage;
}

bool Append(PageSet& set, Page& page)
{
    if (!Reserve(set.pages) || !Reserve(set.byAddress))
        return false;
    Insert(set.pages, set.pages.end(), page);
    Insert(set.byAddress, PlaceBehind(set, page.memory), page);
    page.number = set.made++;
    page.owner = &set;
    return true;
}

bool Remove(PageSet& set, Page& page)
{
    if (page.owner != &set)
        return false;
    Page** const place = PlaceByNumber(set, page);
    set.firstOpen -= place - set.pages.begin() < set.firstOpen;
    Erase(set.pages, place);
    Erase(set.byAddress, PlaceByAddress(set, page));
    if (set.current == &page)
        set.current = &soughtPage;
    page.owner = nullptr;
    return true;
}

Page* FindByAddress(const PageSet& set, const Block* block)
{
    if (Holds(set, *set.current, block))
        return set.current;
    Page** const behind = PlaceBehind(set, block);
    return behind != set.byAddress.begin() && Holds(set, *behind[-1], block) ? behind[-1] : nullptr;
}

Page* FindByNumber(const PageSet& set, const Block* block)
{
    const std::size_t pageBytes = std::size_t{set.blockSize} * set.blocksPerPage;
    if (set.pages.count == 0 || pageBytes == 0)
        return nullptr;
    // An address before the first page gives a number beyond the last one, or a page that does not hold it.
    const std::size_t number = (AddressOf(block) - AddressOf(set.pages.first[0]->memory)) / pageBytes;
    return number < set.pages.count && Holds(set, *set.pages.first[number], block) ? set.pages.first[number] : nullptr;
}

bool IsValid(const PageSet& set)
{
    bool currentIsKnown = set.current == &noPage || set.current == &soughtPage;
    for (unsigned int i = 0; i < set.pages.count; ++i) {
        const Page& page = *set.pages.first[i];
        currentIsKnown = currentIsKnown || set.current == &page;
        if (page.owner != &set || !IsValid(set, page) || (i < set.firstOpen && page.freeList != nullptr))
            return false;
    }
    return currentIsKnown && set.firstOpen <= set.pages.count && set.owners > 0 && IsOrdered(set);
}

void ReportExhaustedMemory()
{
    std::fputs("Memory allocation Error <malloc>: Null returned\n", stderr);
}

}  // namespace fixedheap
