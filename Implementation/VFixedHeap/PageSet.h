// The pages of one block size, and what VFixedHeap and the block heap do with them.
//
// The free list of a page looks as if all blocks had been linked in address order when the page was made, but links
// are written only as blocks come near to being used: the list ends in `untouched`, behind which all blocks are free.
// So a page costs nothing until it is used.
//
// The search for the first page with room is put off until a block is wanted (CurrentPage): a page that became full
// stays the current one, and one that became empty leaves `soughtPage` in its place. Nothing can tell this from
// searching at once: any block that is released in between makes its page the current one, unless that page becomes
// empty, and then the search is made first.
#pragma once

#include <TuvoUtil/FixedHeap.h>

namespace fixedheap {

using Block = _VFixedHeapBlockStr;
using Page = _VFixedHeapPageStr;

// Stand for "no current page" and for "the first page with room", so that taking a block needs no test for either:
// both look like full pages. Never written.
inline constinit Page noPage{};
inline constinit Page soughtPage{};

// Pages in some order. Grows by 25 at a time; taking one out moves the shorter side, so that pages may come and go at
// either end in constant time.
struct PageArray
{
    Page** first = nullptr;
    unsigned int count = 0;
    unsigned int capacity = 0;  // of the storage
    Page** storage = nullptr;

    Page** begin() const { return first; }
    Page** end() const { return first + count; }
};

struct PageSet
{
    Page* current = &noPage;
    PageArray pages;  // in order of creation
    unsigned int blockSize = 0;
    unsigned int blocksPerPage = 0;
    unsigned int firstOpen = 0;   // all pages before this one are full
    unsigned int owners = 1;      // heaps that share the set
    PageArray byAddress;          // the same pages; unused by the block heap
    unsigned long long made = 0;  // pages ever appended, the next page's number
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

// Takes back a block of a page that has used ones. The page becomes the current one; but when it became empty, the
// current page stays if it is another one, and is the first page with room if not.
void PutBack(PageSet& set, Page& page, Block* block);

// Takes a page in as the last one. False when memory is exhausted.
bool Append(PageSet& set, Page& page);

// Takes a page out; its record stays. When it was the current one, the first page with room follows. False when the
// page belongs to another set.
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
