// The pages of one block size, and what VFixedHeap and the block heap do with them.
//
// The free list of a page looks as if all blocks had been linked in address order when the page was made, but links are
// written only as blocks come near to being used: the list ends in `untouched`, behind which all blocks are free. So a
// page costs nothing until it is used.
//
// A page that became full stays the current page until the next look at it (CurrentPage), which moves on to the first
// page with room. Nothing can tell this from moving on at once: no block became free in between, or its page would have
// become the current one.
#pragma once

#include <TuvoUtil/FixedHeap.h>

namespace fixedheap {

using Block = _VFixedHeapBlockStr;
using Page = _VFixedHeapPageStr;

// Stands for "no current page", so that taking a block needs no test for null. Never written.
inline constinit Page noPage{};

struct PageSet
{
    Page* current = &noPage;
    Page** pages = nullptr;  // in order of creation
    unsigned int blockSize = 0;
    unsigned int pageCount = 0;
    unsigned int blocksPerPage = 0;
    unsigned int firstOpen = 0;   // all pages before this one are full
    Page** byAddress = nullptr;   // the same pages by address; unused by the block heap
    unsigned long long made = 0;  // pages ever appended, the next page's number
    unsigned int owners = 1;      // heaps that share the set
};

// ---- One page ------------------------------------------------------------------------------------------------------

// Whether a block can be popped. Else the page is full, or its first free block is an untouched one.
inline bool HasLinkedBlock(const Page& page)
{
    return page.freeList != page.untouched;
}

inline void* PopLinked(Page& page)
{
    Block* const block = page.freeList;
    page.freeList = block->next;
    ++page.usedCount;
    return block;
}

inline void Push(Page& page, Block* block)
{
    block->next = page.freeList;
    page.freeList = block;
    --page.usedCount;
}

// Makes all blocks of a page free.
void Clear(Page& page, void* memory);

// Takes the first free block of a page that is not full.
void* Pop(const PageSet& set, Page& page);

// Whether an address lies between the first byte and the start of the last block.
bool Holds(const PageSet& set, const Page& page, const Block* block);

// ---- The pages of a heap -------------------------------------------------------------------------------------------

// The page that the next block comes from; null for none.
Page* CurrentPage(PageSet& set);

// The first page with a free block; null for none.
Page* FirstOpenPage(PageSet& set);

// Takes back a block of a page that has used ones. The page becomes the current one, unless it became empty: then the
// current page stays when it is another one, else the first page with room follows.
void PutBack(PageSet& set, Page& page, Block* block);

// Takes a page in as the last one. False when memory is exhausted.
bool Append(PageSet& set, Page& page);

// Takes a page out; its record stays. False when the page belongs to another set.
bool Remove(PageSet& set, Page& page);

// The page that holds a block. ByNumber computes its place, which is right for pages that lie one behind the other.
Page* FindByAddress(const PageSet& set, const Block* block);
Page* FindByNumber(const PageSet& set, const Block* block);

// Whether lists, counts, order and ownership of all pages are consistent. Walks all linked free blocks.
bool IsValid(const PageSet& set);

// Lets tests look into a heap.
struct Inspector
{
    static PageSet& Pages(VFixedHeap& heap) { return *heap.m_pageSet; }
};

// Tells on standard error that malloc gave nothing.
void ReportExhaustedMemory();

}  // namespace fixedheap
